#!/usr/bin/env python3
"""Run a Google Benchmark program of ork's and compare ork with a peer library.

Benchmarks are named <routine>/<lib>/<args...>, optionally with threads:<t>
among the arguments (Google Benchmark may append real_time and the like).
Every ork result is paired with the result of the same routine and arguments
for the peer (openblas by default), and the table shows both speeds
(throughput in GB/s, or GFLOP/s for programs that report a GFLOPS counter)
and their ratio ork/peer: above 1, ork is faster.

    python3 bench/compare.py                      # level 1: build/release/bin/ork-bench-level1
    python3 bench/compare.py level1               # the same
    python3 bench/compare.py gemm                 # ork-bench-gemm, twice: OpenBLAS native and Core2
    python3 bench/compare.py all                  # level1, then gemm
    python3 bench/compare.py path/to/ork-bench-x --min-time 0.5 --repetitions 5
    python3 bench/compare.py gemm path/to/ork-bench-gemm --benchmark_filter=dgemm
    python3 bench/compare.py --json-in saved.json # compare a saved run
    python3 bench/compare.py --benchmark_filter=ddot     # any --benchmark_* flag is passed on
    python3 bench/compare.py gemm --generations   # each kernel library present against OpenBLAS native

The gemm comparison runs the program once per OpenBLAS core type
(--coretypes, default "native,Core2": OPENBLAS_CORETYPE unset, then set to
Core2, which makes OpenBLAS use its SSE2-era kernels when it is loaded). Each
ratio is taken within one run, where ork and OpenBLAS alternate on the same
data; the table shows ork's speed from each run beside the peer's.

With --generations the program runs once per kernel library present next to
libork (libork_baseline.so, libork_avx2.so, libork_avx512.so; ORK_CPU_DETECT
picks it), each time against OpenBLAS's native kernels in the same process;
a generation the processor cannot run is reported and left out.

Standard library only.
"""

import argparse
import json
import math
import os
import subprocess
import sys

REPO = os.path.dirname(os.path.dirname(os.path.abspath(__file__)))
DEFAULT_BIN_DIR = os.path.join(REPO, "build", "release", "bin")
PROGRAMS = {"level1": "ork-bench-level1", "gemm": "ork-bench-gemm", "trans": "ork-bench-trans", "triangular": "ork-bench-triangular",
            "level3": "ork-bench-level3", "level2": "ork-bench-level2"}
# Per mode: --benchmark_min_time and repetitions unless given. The gemm
# program runs its longest products (a second or more per call) once,
# whatever the repetitions.
MODE_DEFAULTS = {"level1": ("0.2", 5), "gemm": ("0.05", 3), "trans": ("0.5", 3), "triangular": ("0.2", 3),
                 "level3": ("0.05", 3), "level2": ("0.2", 3)}

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
    singles, medians, cvs, order = {}, {}, {}, []
    for b in benchmarks:
        run_name = b.get("run_name", b["name"])
        if run_name not in order:
            order.append(run_name)  # the order the program ran them in
        if b.get("run_type") == "aggregate":
            if b.get("aggregate_name") == "median":
                medians[run_name] = b
            elif b.get("aggregate_name") == "cv":
                cvs[run_name] = b
        else:
            singles[run_name] = b
    chosen = {}
    for run_name in order:
        if run_name not in medians and run_name not in singles:
            continue
        entry = dict(medians.get(run_name) or singles[run_name])
        cv = cvs.get(run_name)
        if cv is not None:
            entry["_cv"] = cv["real_time" if uses_real_time(cv) else "cpu_time"]
        chosen[run_name] = entry
    return chosen


def run_binary(binary, min_time, repetitions, extra, env=None, note=""):
    if not os.path.exists(binary):
        sys.exit(f"compare.py: no benchmark program at {binary}; build it first "
                 "(cmake --preset release && cmake --build --preset release)")
    cmd = [binary, "--benchmark_format=json"]
    if min_time:
        cmd.append(f"--benchmark_min_time={min_time}")
    if repetitions and repetitions > 1:
        cmd += [f"--benchmark_repetitions={repetitions}", "--benchmark_report_aggregates_only=true"]
    cmd += extra
    print("running: " + note + " ".join(cmd), file=sys.stderr, flush=True)
    proc = subprocess.run(cmd, stdout=subprocess.PIPE, text=True, env=env)
    if proc.returncode != 0:
        sys.exit(f"compare.py: {binary} exited with status {proc.returncode}")
    if not proc.stdout.strip():
        sys.exit(f"compare.py: {binary} printed no results (did the filter match no benchmark?)")
    return json.loads(proc.stdout)


def fmt_rate(bps):
    return "-" if bps is None else f"{bps / 1e9:.2f}"


def gflops(entry):
    """GFLOP/s of one result (1e9 operations per second), or None: the
    program's GFLOPS counter, else its per-call "flop" over the time."""
    if entry is None or entry.get("error_occurred"):
        return None
    if entry.get("GFLOPS") is not None:
        return float(entry["GFLOPS"])
    if entry.get("flop") is not None:
        t = seconds(entry)
        return entry["flop"] / t / 1e9 if t > 0 else None
    return None


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
    """(rate or None, time in s) of one result, the rate in bytes/s, or in
    floating-point operations per second for a program that counts them;
    None for a missing or failed one."""
    if entry is None or entry.get("error_occurred"):
        return None
    g = gflops(entry)
    return (g * 1e9 if g is not None else entry.get("bytes_per_second")), seconds(entry)


def counts_flops(rows):
    return any(gflops(e) is not None for r in rows for e in r[3:])


def ratio(mine, theirs):
    """lib/peer speed ratio: throughputs when both have one, else inverse times."""
    if mine is None or theirs is None:
        return None
    if mine[0] and theirs[0]:
        return mine[0] / theirs[0]
    return theirs[1] / mine[1] if mine[1] > 0 else None


def print_table(rows, lib, peer, markdown, slow_below):
    single_numbers = all(len(a) == 1 and a[0].isdigit() for _, a, _, _, _ in rows)
    unit = "GFLOP/s" if counts_flops(rows) else "GB/s"
    head = ["routine", "n" if single_numbers else "args", "threads",
            f"{lib} {unit}", f"{peer} {unit}", f"{lib}/{peer}", f"{lib} cv%", f"{peer} cv%", ""]
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
        what = "GFLOP/s = 1e9 operations per second" if unit == "GFLOP/s" else "GB/s = 1e9 bytes per second"
        print(f"\n{len(ratios)} pairs; geometric mean of {lib}/{peer}: {gm:.2f} "
              f"(> 1: {lib} faster); {what}")


def print_lines(head, table, markdown, right):
    if markdown:
        print("| " + " | ".join(h or "note" for h in head) + " |")
        print("|" + "|".join("---" for _ in head) + "|")
        for row in table:
            print("| " + " | ".join(row) + " |")
        return
    widths = [max(len(str(x)) for x in col) for col in zip(head, *table)]

    def line(cells):
        return "  ".join(c.rjust(w) if i in right else c.ljust(w)
                         for i, (c, w) in enumerate(zip(cells, widths))).rstrip()
    print(line(head))
    print(line(["-" * w for w in widths]))
    for row in table:
        print(line(row))


def coretype_label(ct):
    return "native" if ct.lower() == "native" else ct


def gemm_rows(runs, lib, peer):
    """One row per (routine, args, threads) in the order of the first run:
    [key, [(lib entry, peer entry) per run]]."""
    per_run = []
    order = []
    for _, data in runs:
        found = {}
        for routine, args, threads, mine, theirs in compare(data, lib, peer):
            key = (routine, args, threads)
            found[key] = (mine, theirs)
            if key not in order:
                order.append(key)
        per_run.append(found)
    return [(key, [found.get(key, (None, None)) for found in per_run]) for key in order]


def print_gemm_table(runs, lib, peer, markdown, slow_below):
    """shape, type, threads; per run: ork GFLOP/s, peer GFLOP/s, ratio; ork's
    two-thread over one-thread speed (first run); the largest cv%."""
    rows = gemm_rows(runs, lib, peer)
    labels = [coretype_label(ct) for ct, _ in runs]
    head = ["shape", "type", "threads"]
    for i, lab in enumerate(labels):
        mark = "'" * i  # ork of the second run is ork', and so on
        head += [f"{lib}{mark}", f"{peer} {lab}", f"{lib}{mark}/{lab}"]
    # two-thread over one-thread speed of both libraries in the last run (the
    # like-for-like one when OpenBLAS ran on its Core2 kernels)
    last = len(runs) - 1
    head += [f"{lib}{chr(39) * last} 2T/1T", f"{labels[last]} 2T/1T", "cv%", ""]
    speed = {(k[0], k[1], k[2]): (gflops(pairs[last][0]), gflops(pairs[last][1])) for k, pairs in rows}
    table, ratios, problems = [], [[] for _ in runs], []
    for (routine, args, threads), pairs in rows:
        cells = ["/".join(args), routine[:1] if routine.endswith("gemm") else routine, str(threads)]
        notes, cvs = [], []
        for i, (mine, theirs) in enumerate(pairs):
            g, h = gflops(mine), gflops(theirs)
            r = g / h if g and h else None
            if r is not None:
                ratios[i].append(r)
                # the native kernels use wider vectors than ork's baseline:
                # flagged only when they are all that ran
                if r < slow_below and (labels[i] != "native" or len(runs) == 1):
                    notes.append(f"slower than {labels[i]}")
            for who, e in ((lib, mine), (peer, theirs)):
                if e is not None and e.get("error_occurred"):
                    notes.append(f"{who} error ({labels[i]}): {e.get('error_message', '')}")
                    problems.append(e)
                if e is not None and e.get("_cv") is not None:
                    cvs.append(e["_cv"])
            if mine is not None and theirs is None and any(p[1] for p in pairs):
                notes.append(f"no {peer} twin ({labels[i]})")
                problems.append(mine)
            cells += ["-" if g is None else f"{g:.2f}", "-" if h is None else f"{h:.2f}",
                      "-" if r is None else f"{r:.2f}"]
        one, two = speed.get((routine, args, 1), (None, None)), speed[(routine, args, threads)]
        for i in (0, 1):
            cells.append(f"{two[i] / one[i]:.2f}" if threads == 2 and one[i] and two[i] else "")
        cells.append(f"{100 * max(cvs):.1f}" if cvs else "")
        cells.append("; ".join(dict.fromkeys(notes)))
        table.append(cells)
    right = set(range(2, len(head) - 1))
    print_lines(head, table, markdown, right)
    print()
    for i, lab in enumerate(labels):
        if ratios[i]:
            gm = math.exp(sum(math.log(r) for r in ratios[i]) / len(ratios[i]))
            print(f"{lab}: {len(ratios[i])} pairs; geometric mean of {lib}/{peer}: {gm:.2f}")
    runs_text = ", ".join(f"{lib}{chr(39) * i} in the {lab} run" for i, lab in enumerate(labels))
    print(f"GFLOP/s = 1e9 operations per second (2mnk real, 8mnk complex); {runs_text}; "
          f"each ratio within its own run, > 1: {lib} faster; "
          f"2T/1T: two-thread speed over one-thread speed of the same shape ({labels[last]} run); "
          "cv%: the largest coefficient of variation of the row's times over repetitions "
          "(none where a product ran once)")
    # the leading-dimension pairs, in every run
    for (routine, args, threads), pairs in rows:
        if len(args) == 2 and args[1].startswith("ld:") and threads == 1:
            square = dict(rows).get((routine, (args[0],), 1))
            for i, lab in enumerate(labels):
                padded, plain = gflops(pairs[i][0]), gflops(square[i][0]) if square else None
                if padded and plain:
                    print(f"{routine} {args[0]}, {lab} run: {lib} at ld {args[0].split('x')[0]} {plain:.2f} GFLOP/s, "
                          f"at {args[1]} {padded:.2f} GFLOP/s (ratio {plain / padded:.2f})")
    return problems


def print_context(ctx, keys):
    for key in keys:
        if key in ctx:
            print(f"{key}: {ctx[key]}")


def run_gemm(binary, args, extra):
    """The gemm program once per core type; [(core type, results)]."""
    runs = []
    for ct in [c.strip() for c in args.coretypes.split(",") if c.strip()]:
        env = dict(os.environ)
        env.pop("OPENBLAS_CORETYPE", None)
        if ct.lower() != "native":
            env["OPENBLAS_CORETYPE"] = ct
        note = "" if ct.lower() == "native" else f"OPENBLAS_CORETYPE={ct} "
        runs.append((ct, run_binary(binary, args.min_time, args.repetitions, extra, env, note)))
    return runs


def gemm_mode(args, extra, binary):
    if args.json_in:
        with open(args.json_in) as f:
            saved = json.load(f)
        # a saved gemm comparison, or one plain run of the program
        runs = [(r["coretype"], r["results"]) for r in saved["runs"]] if "runs" in saved else [("native", saved)]
    else:
        runs = run_gemm(binary, args, extra)
    if args.json_out:
        with open(args.json_out, "w") as f:
            json.dump({"runs": [{"coretype": ct, "results": d} for ct, d in runs]}, f, indent=1)
    print_context(runs[0][1].get("context", {}), ("host_name", "num_cpus", "mhz_per_cpu", "ork",
                                                  "ork_kernel_generation", "cpu_generation", "openblas"))
    wrong_core = []
    for ct, data in runs:
        ctx = data.get("context", {})
        core = ctx.get("openblas_core", "?")
        print(f"openblas {coretype_label(ct)} run: core {core}; {ctx.get('openblas_config', '')}")
        if ct.lower() != "native" and core.lower() != ct.lower():
            wrong_core.append((ct, core))
            print(f"compare.py: OPENBLAS_CORETYPE={ct} but OpenBLAS reports core {core}", file=sys.stderr)
    print()
    if not any(compare(d, args.lib, args.peer) for _, d in runs):
        sys.exit(f"compare.py: no benchmark named <routine>/{args.lib}|{args.peer}/... in the results")
    problems = print_gemm_table(runs, args.lib, args.peer, args.markdown, args.slow_below)
    if args.strict and (problems or wrong_core):
        print(f"compare.py: {len(problems)} failed or without a twin, {len(wrong_core)} runs on the wrong core",
              file=sys.stderr)
        sys.exit(3)

# The kernel libraries, in order, with the ORK_CPU_DETECT value that loads each.
GENERATIONS = (("baseline", 0), ("avx2", 1), ("avx512", 2))


def run_generations(binary, args, extra):
    """The program once per kernel library present; [(generation, results)]."""
    lib_dir = os.path.join(os.path.dirname(os.path.dirname(os.path.abspath(binary))), "lib")
    runs = []
    for name, number in GENERATIONS:
        if not os.path.exists(os.path.join(lib_dir, f"libork_{name}.so")):
            print(f"compare.py: {name}: no libork_{name}.so in {lib_dir}; left out", file=sys.stderr)
            continue
        env = dict(os.environ)
        for var in ("OPENBLAS_CORETYPE", "ORK_KERNEL_LIBRARY"):
            env.pop(var, None)
        env["ORK_CPU_DETECT"] = str(number)
        data = run_binary(binary, args.min_time, args.repetitions, extra, env, f"ORK_CPU_DETECT={number} ")
        loaded = data.get("context", {}).get("ork_kernel_generation", "?")
        if loaded != name:
            print(f"compare.py: {name}: this processor does not run it (ork loaded {loaded}); left out",
                  file=sys.stderr)
            continue
        runs.append((name, data))
    return runs


def print_generations_table(runs, lib, peer, markdown, slow_below):
    """routine, args, threads; per generation: ork's speed, the peer's in the
    same run, and their ratio; then the geometric mean per generation."""
    rows = gemm_rows(runs, lib, peer)
    flops = any(gflops(e) is not None for _, pairs in rows for pair in pairs for e in pair)
    unit = "GFLOP/s" if flops else "GB/s"
    head = ["routine", "args", "threads"]
    for name, _ in runs:
        head += [f"{lib} {name}", peer, f"{name}/{peer}"]
    head.append("")
    table, ratios, problems = [], [[] for _ in runs], []
    for (routine, args, threads), pairs in rows:
        cells, notes = [routine, "/".join(args), str(threads)], []
        for i, (mine, theirs) in enumerate(pairs):
            m, t = metric(mine), metric(theirs)
            r = ratio(m, t)
            if r is not None:
                ratios[i].append(r)
                if r < slow_below:
                    notes.append(f"{runs[i][0]} slower")
            for who, e in ((lib, mine), (peer, theirs)):
                if e is not None and e.get("error_occurred"):
                    notes.append(f"{who} error ({runs[i][0]}): {e.get('error_message', '')}")
                    problems.append(e)
            if mine is None or theirs is None:
                problems.append((routine, args, threads, runs[i][0]))
            cells += [fmt_rate(m[0] if m else None), fmt_rate(t[0] if t else None), "-" if r is None else f"{r:.2f}"]
        cells.append("; ".join(notes))
        table.append(cells)
    print_lines(head, table, markdown, set(range(1, len(head) - 1)))
    print()
    for i, (name, _) in enumerate(runs):
        if ratios[i]:
            gm = math.exp(sum(math.log(r) for r in ratios[i]) / len(ratios[i]))
            print(f"{name}: {len(ratios[i])} pairs; geometric mean of {lib}/{peer}: {gm:.2f}")
    print(f"{unit} = 1e9 {'operations' if flops else 'bytes'} per second; one run per kernel library, "
          f"{peer} at its native kernels in each; each ratio within its own run, > 1: {lib} faster")
    return problems


def generations_mode(args, extra, binary):
    if args.json_in:
        with open(args.json_in) as f:
            runs = [(r["generation"], r["results"]) for r in json.load(f)["generations"]]
    else:
        runs = run_generations(binary, args, extra)
    if args.json_out:
        with open(args.json_out, "w") as f:
            json.dump({"generations": [{"generation": g, "results": d} for g, d in runs]}, f, indent=1)
    if not runs:
        sys.exit("compare.py: no kernel library could be run")
    # the last run's: the highest generation, which ORK_CPU_DETECT did not lower
    print_context(runs[-1][1].get("context", {}), ("host_name", "num_cpus", "mhz_per_cpu", "ork", "cpu_generation",
                                                   "openblas_config", "openblas"))
    for name, data in runs:
        print(f"{name} run: openblas core {data.get('context', {}).get('openblas_core', '?')}")
    print()
    problems = print_generations_table(runs, args.lib, args.peer, args.markdown, args.slow_below)
    if args.strict and problems:
        print(f"compare.py: {len(problems)} failed or without a twin", file=sys.stderr)
        sys.exit(3)


def single_mode(args, extra, binary):
    if args.json_in:
        with open(args.json_in) as f:
            data = json.load(f)
    else:
        data = run_binary(binary, args.min_time, args.repetitions, extra)
    if args.json_out:
        with open(args.json_out, "w") as f:
            json.dump(data, f, indent=1)

    print_context(data.get("context", {}), ("host_name", "num_cpus", "mhz_per_cpu", "ork", "ork_kernel_generation",
                                            "cpu_generation", "openblas_config", "openblas"))
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


def main():
    ap = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    ap.add_argument("what", nargs="*", metavar="[MODE] [PROGRAM]",
                    help="level1 (the default), gemm or all, and/or the benchmark program to run; "
                         "a program whose name contains 'gemm' is compared as the gemm program "
                         f"(default programs: {DEFAULT_BIN_DIR}/ork-bench-<mode>)")
    ap.add_argument("--bin-dir", default=DEFAULT_BIN_DIR,
                    help="folder of the benchmark programs when none is named (default: %(default)s)")
    ap.add_argument("--min-time", default=None,
                    help="--benchmark_min_time for each benchmark, in seconds "
                         "(default: level1 0.2, gemm 0.05)")
    ap.add_argument("--repetitions", type=int, default=None,
                    help="--benchmark_repetitions; with more than one the median is compared "
                         "(default: level1 5, gemm 3)")
    ap.add_argument("--coretypes", default="native,Core2",
                    help="gemm: one run per OpenBLAS core type, 'native' leaving OPENBLAS_CORETYPE unset "
                         "(default: %(default)s)")
    ap.add_argument("--generations", action="store_true",
                    help="one run per kernel library present (ORK_CPU_DETECT), each against the peer's "
                         "native kernels")
    ap.add_argument("--lib", default="ork", help="library under test, second name field (default: %(default)s)")
    ap.add_argument("--peer", default="openblas", help="library compared with (default: %(default)s)")
    ap.add_argument("--json-in", metavar="FILE", help="compare a saved JSON run instead of running the program")
    ap.add_argument("--json-out", metavar="FILE", help="also save the program's JSON output")
    ap.add_argument("--markdown", action="store_true", help="print a Markdown table")
    ap.add_argument("--strict", action="store_true",
                    help="exit with status 3 if a benchmark failed, or if the peer ran but a benchmark lacks its "
                         "twin, or (gemm) OpenBLAS did not take the core type asked for")
    ap.add_argument("--slow-below", type=float, default=0.9,
                    help="mark pairs whose ratio is below this (default: %(default)s)")
    args, extra = ap.parse_known_args()
    unknown = [a for a in extra if not a.startswith("--benchmark_")]
    if unknown:
        ap.error("unrecognized arguments: " + " ".join(unknown) + " (only --benchmark_* flags are passed on)")

    modes, binary = [], None
    for w in args.what:
        if w in PROGRAMS or w == "all":
            modes += list(PROGRAMS) if w == "all" else [w]
        elif binary is None:
            binary = w
        else:
            ap.error(f"more than one program: {binary}, {w}")
    if not modes:
        modes = ["gemm" if binary and "gemm" in os.path.basename(binary) else "level1"]
    if binary and len(modes) > 1:
        ap.error("name one mode with a program")
    if args.json_in and len(modes) > 1:
        ap.error("--json-in compares one saved run: name its mode")
    if args.json_out and len(modes) > 1:
        ap.error("--json-out saves one run: name one mode")

    given_min_time, given_reps = args.min_time, args.repetitions
    for i, mode in enumerate(modes):
        if i:
            print()
        args.min_time = given_min_time if given_min_time is not None else MODE_DEFAULTS[mode][0]
        args.repetitions = given_reps if given_reps is not None else MODE_DEFAULTS[mode][1]
        prog = binary or os.path.join(args.bin_dir, PROGRAMS[mode])
        if len(modes) > 1:
            print(f"== {mode}: {prog}\n")
        if args.generations:
            generations_mode(args, extra, prog)
        elif mode in ("gemm", "level3"):  # both: one run per OpenBLAS core type
            gemm_mode(args, extra, prog)
        else:
            single_mode(args, extra, prog)


if __name__ == "__main__":
    main()
