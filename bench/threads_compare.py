#!/usr/bin/env python3
"""Small-call cost of libork's threading, for one libork or two side by side.

Runs ork-bench-threads (build/release/bin unless --program) once per libork
folder given with --libork (a folder holding libork.so and its kernel
library, put first on LD_LIBRARY_PATH; "build" for the program's own),
alternating them for --rounds rounds so that both see the same load, and
prints the median time per call of each benchmark: ork under each libork,
OpenBLAS, and the ratios (> 1: the later libork is faster; ork/OpenBLAS
speed within each run).

    python3 bench/threads_compare.py                          # this build alone
    python3 bench/threads_compare.py --libork /tmp/old build  # before and after

Standard library only.
"""

import argparse
import json
import os
import statistics
import subprocess
import sys

REPO = os.path.dirname(os.path.dirname(os.path.abspath(__file__)))


def run(program, libork, min_time, extra):
    env = dict(os.environ)
    if libork != "build":
        env["LD_LIBRARY_PATH"] = os.path.abspath(libork) + (
            ":" + env["LD_LIBRARY_PATH"] if env.get("LD_LIBRARY_PATH") else "")
    cmd = [program, "--benchmark_format=json", f"--benchmark_min_time={min_time}"] + extra
    print("running: " + ("" if libork == "build" else f"LD_LIBRARY_PATH={libork} ") + " ".join(cmd),
          file=sys.stderr, flush=True)
    out = subprocess.run(cmd, stdout=subprocess.PIPE, text=True, env=env, check=True).stdout
    data = json.loads(out)
    return data["context"], {b["run_name"]: b["real_time"] for b in data["benchmarks"]
                             if b.get("run_type") != "aggregate"}


def main():
    ap = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    ap.add_argument("--program", default=os.path.join(REPO, "build", "release", "bin", "ork-bench-threads"))
    ap.add_argument("--libork", action="append", help="folder of a libork to time (repeatable; default: build)")
    ap.add_argument("--rounds", type=int, default=3)
    ap.add_argument("--min-time", default="0.1")
    ap.add_argument("--markdown", action="store_true")
    args, extra = ap.parse_known_args()
    libs = args.libork or ["build"]
    times = {lib: {} for lib in libs}
    context = {}
    for _ in range(args.rounds):
        for lib in libs:
            context, t = run(args.program, lib, args.min_time, extra)
            for name, us in t.items():
                times[lib].setdefault(name, []).append(us)
    for key in ("host_name", "num_cpus", "mhz_per_cpu", "load_avg", "ork_threads_default", "openblas"):
        if key in context:
            print(f"{key}: {context[key]}")
    print(f"rounds: {args.rounds}, median time per call in microseconds\n")

    def med(lib, name):
        v = times[lib].get(name)
        return statistics.median(v) if v else None

    names = [n for n in times[libs[0]] if "/ork/" in n]
    head = ["benchmark"] + [f"ork {i + 1}" for i in range(len(libs))]
    if len(libs) > 1:
        head.append(f"ork {len(libs)}/1 speed")
    head += [f"openblas {i + 1}" for i in range(len(libs))] + [f"ork {i + 1}/openblas" for i in range(len(libs))]
    rows = []
    for name in names:
        ork = [med(lib, name) for lib in libs]
        # the peer from the same runs as each libork
        peer = [med(lib, name.replace("/ork/", "/openblas/")) for lib in libs]
        row = [name.replace("/ork", "").replace("/manual_time", "")] + [f"{t:.1f}" for t in ork]
        if len(libs) > 1:
            row.append(f"{ork[0] / ork[-1]:.2f}")
        row += ["-" if p is None else f"{p:.1f}" for p in peer]
        row += ["-" if p is None else f"{p / t:.2f}" for p, t in zip(peer, ork)]
        rows.append(row)
    if args.markdown:
        print("| " + " | ".join(head) + " |")
        print("|" + "|".join("---" for _ in head) + "|")
        for r in rows:
            print("| " + " | ".join(r) + " |")
    else:
        widths = [max(len(x) for x in col) for col in zip(head, *rows)]
        for r in [head] + rows:
            print("  ".join(c.ljust(w) if i == 0 else c.rjust(w) for i, (c, w) in enumerate(zip(r, widths))))


if __name__ == "__main__":
    main()
