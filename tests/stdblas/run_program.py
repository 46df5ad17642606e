#!/usr/bin/python3
"""Runs one existing test program on ork's libblas.so.3 and judges its report.

Every run also checks, from the loader's trace, that the libblas.so.3 (and
liblapack.so.3) initialised are the ones in that folder and no other BLAS.
The program runs in a fresh scratch folder (its input files make it write
summary and snapshot files there), with LD_LIBRARY_PATH=<lib folder> so that
ork's libblas.so.3 (and whatever else that folder holds) comes first. Its exit
status says little (the BLAS testers exit 0 on failure), so the verdict comes
from the text it printed and the files it wrote:
  blas     no line with FAIL, SUSPECT, NOT DETECTED, FATAL, XERBLA WAS CALLED or
           a row of asterisks; "END OF TESTS" reached, unless --level1, where
           every "Test of subprogram" must be followed by its PASS line
  lapack   no line saying "fail" or flagged with "***", every "<n> error
           messages recorded" has n = 0, a test summary, and the run's end
Usage: run_program.py --lib DIR --kind blas|lapack [--level1] [--input FILE]... PROGRAM
Several --input files run the program once per file.
"""
import argparse
import os
import pathlib
import re
import subprocess
import sys
import tempfile
import time

BLAS_FAILURES = re.compile(r"FAIL|SUSPECT|NOT DETECTED|FATAL|XERBLA WAS CALLED|\*{5}")


def run(program, lib, stdin_path, folder, trace):
    env = dict(os.environ, LD_LIBRARY_PATH=lib, LD_DEBUG="libs", LD_DEBUG_OUTPUT=trace)
    stdin = open(stdin_path, "rb") if stdin_path else subprocess.DEVNULL
    start = time.monotonic()
    proc = subprocess.run([program], stdin=stdin, cwd=folder, env=env, capture_output=True, timeout=1800)
    seconds = time.monotonic() - start
    # the report: standard output, then every file the program wrote
    text = proc.stdout.decode(errors="replace") + proc.stderr.decode(errors="replace")
    for f in sorted(pathlib.Path(folder).iterdir()):
        text += f"\n==== {f.name}\n" + f.read_text(errors="replace")
    return proc.returncode, text, seconds


def judge_loaded(trace_folder, lib):
    """The BLAS and LAPACK the loader initialised are the ones in lib, and no other BLAS is mapped."""
    problems, inits = [], []
    for f in pathlib.Path(trace_folder).iterdir():
        inits += re.findall(r"calling init: (\S+)", f.read_text(errors="replace"))
    blas = [p for p in inits if "libblas" in p]
    if blas != [os.path.join(lib, "libblas.so.3")]:
        problems.append(f"BLAS libraries initialised: {blas}")
    for p in inits:
        if "liblapack" in p and p != os.path.join(lib, "liblapack.so.3"):
            problems.append(f"a LAPACK from elsewhere: {p}")
        if "openblas" in p or "libmkl" in p or "blis" in p:
            problems.append(f"another BLAS is loaded: {p}")
    return problems


def judge_blas(text, level1):
    problems = [line.strip() for line in text.splitlines() if BLAS_FAILURES.search(line)]
    if level1:
        tests = text.count("Test of subprogram")
        passes = len(re.findall(r"-+ PASS -+", text))
        if tests == 0 or passes != tests:
            problems.append(f"{passes} PASS lines for {tests} subprograms tested")
    else:
        if "END OF TESTS" not in text:
            problems.append("the run did not reach END OF TESTS")
        if "PASSED THE" not in text:
            problems.append("no routine reported a pass")
    return problems


def judge_lapack(text):
    # any line saying fail (threshold failures, failed error-exit tests) or
    # flagged with asterisks (error codes, illegal values) is a problem
    problems = [line.strip() for line in text.splitlines() if re.search(r"fail|\*\*\*", line, re.I)]
    failed = re.findall(r"(\d+) out of\s+(\d+) tests failed to pass the threshold", text)
    errors = re.findall(r"(\d+) error messages recorded", text)
    passed = re.findall(r"All tests for .* passed the threshold \(\s*(\d+) tests run\)", text)
    problems += [f"{n} error messages recorded" for n in errors if int(n)]
    if not passed and not failed:
        problems.append("no test summary found")
    if "End of tests" not in text and "END OF TESTS" not in text:
        problems.append("the run did not reach its end")
    return problems


def main():
    ap = argparse.ArgumentParser()
    ap.add_argument("program")
    ap.add_argument("--lib", required=True)
    ap.add_argument("--kind", choices=["blas", "lapack"], required=True)
    ap.add_argument("--level1", action="store_true")
    ap.add_argument("--input", action="append", default=[])
    args = ap.parse_args()

    status = 0
    for stdin_path in args.input or [None]:
        with tempfile.TemporaryDirectory(prefix="ork-stdblas-") as folder, \
                tempfile.TemporaryDirectory(prefix="ork-stdblas-trace-") as trace:
            code, text, seconds = run(args.program, args.lib, stdin_path, folder, os.path.join(trace, "ld"))
            problems = judge_loaded(trace, args.lib)
        problems += judge_blas(text, args.level1) if args.kind == "blas" else judge_lapack(text)
        if code != 0:
            problems.append(f"exit status {code}")
        label = f"{pathlib.Path(args.program).name} < {pathlib.Path(stdin_path).name}" if stdin_path else \
            pathlib.Path(args.program).name
        print(f"{label}: {'FAILED' if problems else 'passed'} in {seconds:.1f} s")
        if problems:
            status = 1
            print(text[-20000:])
            print("problems:\n  " + "\n  ".join(problems[:50]))
    return status


if __name__ == "__main__":
    sys.exit(main())
