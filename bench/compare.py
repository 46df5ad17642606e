#!/usr/bin/env python3
"""Run a Google Benchmark program of ork's and compare ork with a peer library.

Benchmarks are named <routine>/<lib>/<args...>, optionally with threads:<t>
among the arguments (Google Benchmark may append real_time and the like).
Every ork result is paired with the result of the same routine and arguments
for the peer (openblas by default), and the table shows both throughputs and
their ratio ork/peer: above 1, ork is faster.

    python3 bench/compare.py                      # build/release/bin/ork-bench-level1
    python3 bench/compare.py path/to/ork-bench-x --min-time 0.5 --repetitions 5
    python3 bench/compare.py --json-in saved.json # compare a saved run
    python3 bench/compare.py --benchmark_filter=ddot     # any --benchmark_* flag is passed on

Standard library only.
"""

import argparse
import json
import math
import os
import subprocess
import sys

REPO = os.path.dirname(os.path.dirname(os.path.abspath(__file__)))
DEFAULT_BINARY = os.path.join(REPO, "build", "release", "bin", "ork-bench-level1")

# Name fields Google Benchmark appends that are not arguments of the call.
TIMING_MARKERS = ("real_time", "process_time", "manual_time")
RUN_OPTION_PREFIXES = ("min_time:", "min_warmup_time:", "iterations:", "repeats:")


def parse_name(name):
    """Split '<routine>/<lib>/<args...>' into (routine, lib, args, threads).

    args keeps the order of the remaining fields, without threads:<t> and the
    fields that only say how the benchmark was timed."""
    fields = name.split("/")
    if len(fields) < 2:
        return None
    routine, lib, rest = fields[0], fields[1], fields[2:]
    args, threads = [], 1
    for f in rest:
        if f in TIMING_MARKERS or f.startswith(RUN_OPTION_PREFIXES):
            continue
        if f.startswith("threads:"):
            try:
                threads = int(f[len("threads:"):])
                continue
            except ValueError:
                pass
        args.append(f)
    return routine, lib, tuple(args), threads


def uses_real_time(entry):
    return "/real_time" in entry.get("run_name", entry["name"])


def seconds(entry):
    """Time per iteration in seconds: wall clock when the benchmark was timed
    that way, else the CPU time of the thread that ran it."""
    unit = {"ns": 1e-9, "us": 1e-6, "ms": 1e-3, "s": 1.0}[entry.get("time_unit", "ns")]
    return entry["real_time" if uses_real_time(entry) else "cpu_time"] * unit


def pick_results(benchmarks):
    """One entry per benchmark: the median when repetitions were aggregated,
    else the (last) single run; {run_name: entry}. The coefficient of
    variation of the time over the repetitions, a fraction, is attached as
    "_cv" when it was reported."""
    singles, medians, cvs = {}, {}, {}
    for b in benchmarks:
        run_name = b.get("run_name", b["name"])
        if b.get("run_type") == "aggregate":
            if b.get("aggregate_name") == "median":
                medians[run_name] = b
            elif b.get("aggregate_name") == "cv":
                cvs[run_name] = b
        else:
            singles[run_name] = b
    chosen = {}
    for run_name in list(dict.fromkeys(list(medians) + list(singles))):
        entry = dict(medians.get(run_name) or singles[run_name])
        cv = cvs.get(run_name)
        if cv is not None:
            entry["_cv"] = cv["real_time" if uses_real_time(cv) else "cpu_time"]
        chosen[run_name] = entry
    return chosen


def run_binary(binary, min_time, repetitions, extra):
    if not os.path.exists(binary):
        sys.exit(f"compare.py: no benchmark program at {binary}; build it first "
                 "(cmake --preset release && cmake --build --preset release)")
    cmd = [binary, "--benchmark_format=json"]
    if min_time:
        cmd.append(f"--benchmark_min_time={min_time}")
    if repetitions and repetitions > 1:
        cmd += [f"--benchmark_repetitions={repetitions}", "--benchmark_report_aggregates_only=true"]
    cmd += extra
    print("running: " + " ".join(cmd), file=sys.stderr, flush=True)
    proc = subprocess.run(cmd, stdout=subprocess.PIPE, text=True)
    if proc.returncode != 0:
        sys.exit(f"compare.py: {binary} exited with status {proc.returncode}")
    return json.loads(proc.stdout)


def fmt_rate(bps):
    return "-" if bps is None else f"{bps / 1e9:.2f}"


def fmt_cv(cv):
    return "" if cv is None else f"{100 * cv:.1f}"


def compare(data, lib, peer):
    """Rows (routine, args, threads, lib entry, peer entry) in the order the
    lib's benchmarks ran; peer-only benchmarks come last."""
    results = pick_results(data.get("benchmarks", []))
    by_key = {}
    order = []
    for run_name, entry in results.items():
        parsed = parse_name(run_name)
        if parsed is None:
            continue
        routine, who, args, threads = parsed
        if who not in (lib, peer):
            continue
        key = (routine, args, threads)
        if key not in by_key:
            by_key[key] = {}
            order.append(key)
        by_key[key][who] = entry
    return [(k[0], k[1], k[2], by_key[k].get(lib), by_key[k].get(peer)) for k in order]


def metric(entry):
    """(throughput in bytes/s or None, time in s) of one result; None for a
    missing or failed one."""
    if entry is None or entry.get("error_occurred"):
        return None
    return entry.get("bytes_per_second"), seconds(entry)


def ratio(mine, theirs):
    """lib/peer speed ratio: throughputs when both have one, else inverse times."""
    if mine is None or theirs is None:
        return None
    if mine[0] and theirs[0]:
        return mine[0] / theirs[0]
    return theirs[1] / mine[1] if mine[1] > 0 else None


def print_table(rows, lib, peer, markdown, slow_below):
    single_numbers = all(len(a) == 1 and a[0].isdigit() for _, a, _, _, _ in rows)
    head = ["routine", "n" if single_numbers else "args", "threads",
            f"{lib} GB/s", f"{peer} GB/s", f"{lib}/{peer}", f"{lib} cv%", f"{peer} cv%", ""]
    table = []
    ratios = []
    for routine, args, threads, mine_e, theirs_e in rows:
        mine, theirs = metric(mine_e), metric(theirs_e)
        r = ratio(mine, theirs)
        if r is not None:
            ratios.append(r)
        note = ""
        if mine_e is not None and mine_e.get("error_occurred"):
            note = f"{lib} error: {mine_e.get('error_message', '')}"
        elif theirs_e is not None and theirs_e.get("error_occurred"):
            note = f"{peer} error: {theirs_e.get('error_message', '')}"
        elif theirs_e is None:
            note = f"no {peer} twin"
        elif mine_e is None:
            note = f"no {lib} twin"
        elif r is not None and r < slow_below:
            note = "slower"
        table.append([
            routine, "/".join(args), str(threads),
            fmt_rate(mine[0] if mine else None), fmt_rate(theirs[0] if theirs else None),
            "-" if r is None else f"{r:.2f}",
            fmt_cv(mine_e.get("_cv") if mine_e else None), fmt_cv(theirs_e.get("_cv") if theirs_e else None),
            note,
        ])
    # drop the noise columns when no repetitions were aggregated
    if all(not row[6] and not row[7] for row in table):
        head = head[:6] + head[8:]
        table = [row[:6] + row[8:] for row in table]
    if markdown:
        print("| " + " | ".join(h or "note" for h in head) + " |")
        print("|" + "|".join("---" for _ in head) + "|")
        for row in table:
            print("| " + " | ".join(row) + " |")
    else:
        widths = [max(len(str(x)) for x in col) for col in zip(head, *table)]
        numeric = {1, 2, 3, 4, 5, 6, 7} if len(head) == 9 else {1, 2, 3, 4, 5}
        def line(cells):
            out = []
            for i, (c, w) in enumerate(zip(cells, widths)):
                out.append(c.rjust(w) if i in numeric else c.ljust(w))
            return "  ".join(out).rstrip()
        print(line(head))
        print(line(["-" * w for w in widths]))
        for row in table:
            print(line(row))
    if ratios:
        gm = math.exp(sum(math.log(r) for r in ratios) / len(ratios))
        print(f"\n{len(ratios)} pairs; geometric mean of {lib}/{peer}: {gm:.2f} "
              f"(> 1: {lib} faster); GB/s = 1e9 bytes per second")


def main():
    ap = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    ap.add_argument("binary", nargs="?", default=DEFAULT_BINARY,
                    help="benchmark program (default: %(default)s)")
    ap.add_argument("--min-time", default="0.2",
                    help="--benchmark_min_time for each benchmark, in seconds (default: %(default)s)")
    ap.add_argument("--repetitions", type=int, default=5,
                    help="--benchmark_repetitions; with more than one the median is compared (default: %(default)s)")
    ap.add_argument("--lib", default="ork", help="library under test, second name field (default: %(default)s)")
    ap.add_argument("--peer", default="openblas", help="library compared with (default: %(default)s)")
    ap.add_argument("--json-in", metavar="FILE", help="compare a saved JSON run instead of running the program")
    ap.add_argument("--json-out", metavar="FILE", help="also save the program's JSON output")
    ap.add_argument("--markdown", action="store_true", help="print a Markdown table")
    ap.add_argument("--strict", action="store_true",
                    help="exit with status 3 if a benchmark failed, or if the peer ran but a benchmark lacks its twin")
    ap.add_argument("--slow-below", type=float, default=0.9,
                    help="mark pairs whose ratio is below this (default: %(default)s)")
    args, extra = ap.parse_known_args()
    unknown = [a for a in extra if not a.startswith("--benchmark_")]
    if unknown:
        ap.error("unrecognized arguments: " + " ".join(unknown) + " (only --benchmark_* flags are passed on)")

    if args.json_in:
        with open(args.json_in) as f:
            data = json.load(f)
    else:
        data = run_binary(args.binary, args.min_time, args.repetitions, extra)
    if args.json_out:
        with open(args.json_out, "w") as f:
            json.dump(data, f, indent=1)

    ctx = data.get("context", {})
    for key in ("host_name", "num_cpus", "mhz_per_cpu", "ork", "ork_kernel_generation", "cpu_generation",
                "openblas_config", "openblas"):
        if key in ctx:
            print(f"{key}: {ctx[key]}")
    print()

    rows = compare(data, args.lib, args.peer)
    if not rows:
        sys.exit(f"compare.py: no benchmark named <routine>/{args.lib}|{args.peer}/... in the results")
    print_table(rows, args.lib, args.peer, args.markdown, args.slow_below)
    if args.strict:
        failed = [r for r in rows for e in r[3:] if e is not None and e.get("error_occurred")]
        peer_ran = any(r[4] is not None for r in rows)
        unpaired = [r for r in rows if peer_ran and (r[3] is None or r[4] is None)]
        if failed or unpaired:
            print(f"compare.py: {len(failed)} failed, {len(unpaired)} without a twin", file=sys.stderr)
            sys.exit(3)


if __name__ == "__main__":
    main()
