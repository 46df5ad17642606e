#!/usr/bin/env python3
"""Compares a built shared library with its checked-in export list.

Checks that the library defines exactly the listed dynamic symbols, that every
undefined symbol is either versioned from the C runtime or in the import list,
that it needs no library outside the allowed set, that it reaches none of its
own kernels of a given prefix through their symbols, and that every listed name
is declared in a public header.
"""
import argparse
import pathlib
import re
import subprocess
import sys


def read_list(path):
    names = []
    for line in pathlib.Path(path).read_text().splitlines():
        line = line.strip()
        if line and not line.startswith("#"):
            names.append(line)
    return names


def dynamic_symbols(lib):
    out = subprocess.run(["nm", "-D", lib], check=True, capture_output=True, text=True).stdout
    defined, undefined = set(), []
    for line in out.splitlines():
        parts = line.split()
        if len(parts) == 3:
            defined.add(parts[2])
        elif len(parts) == 2:
            undefined.append((parts[0], parts[1]))
    return defined, undefined


def bound_by_symbol(lib):
    """Names the library's own code reaches through its relocations (PLT or GOT)."""
    out = subprocess.run(["readelf", "-rW", lib], check=True, capture_output=True, text=True).stdout
    return {m.group(1) for m in re.finditer(r"R_X86_64_(?:JUMP_SLOT|GLOB_DAT|64)\s+\S+\s+(\S+?)(?:@\S*)?\s", out)}


def needed(lib):
    out = subprocess.run(["readelf", "-d", lib], check=True, capture_output=True, text=True).stdout
    return re.findall(r"\(NEEDED\)\s+Shared library: \[([^\]]+)\]", out)


def main():
    ap = argparse.ArgumentParser()
    ap.add_argument("--lib", required=True)
    ap.add_argument("--exports", required=True, nargs="+", help="export list files, joined")
    ap.add_argument("--imports", help="names the library may leave undefined")
    ap.add_argument("--provider", nargs="+", help="export lists of the library that provides the imports")
    ap.add_argument("--allow-needed", nargs="*", default=None,
                    help="shared objects the library may need (prefix match)")
    ap.add_argument("--allow-undefined-prefix", nargs="*", default=[],
                    help="undefined names allowed by prefix (sanitizer runtimes)")
    ap.add_argument("--not-bound-prefix",
                    help="exports with this prefix that the library must call directly, never through the symbol")
    ap.add_argument("--headers", help="folder of public headers that must declare every export")
    ap.add_argument("--expect-count", type=int, help="number of exports the list must hold")
    args = ap.parse_args()

    problems = []
    expected = [name for path in args.exports for name in read_list(path)]
    if len(set(expected)) != len(expected):
        problems.append("the export list repeats names")
    if args.expect_count is not None and len(expected) != args.expect_count:
        problems.append(f"the export list holds {len(expected)} names, not {args.expect_count}")

    defined, undefined = dynamic_symbols(args.lib)
    for name in sorted(set(expected) - defined):
        problems.append(f"missing export: {name}")
    for name in sorted(defined - set(expected)):
        problems.append(f"unexpected export: {name}")

    if args.imports is not None:
        allowed = set(read_list(args.imports))
        if args.provider:
            provided = {name for path in args.provider for name in read_list(path)}
            for name in sorted(allowed - provided):
                problems.append(f"import {name} is not exported by the provider")
        for kind, name in undefined:
            if "@" in name or kind == "w":
                continue  # versioned C runtime symbol, or a weak reference of the toolchain
            if name not in allowed and not name.startswith(tuple(args.allow_undefined_prefix)):
                problems.append(f"unexpected undefined symbol: {name}")

    if args.not_bound_prefix:
        for name in sorted(bound_by_symbol(args.lib) & defined):
            if name.startswith(args.not_bound_prefix):
                problems.append(f"calls its own export through the symbol: {name}")

    if args.allow_needed is not None:
        for lib in needed(args.lib):
            if not any(lib.startswith(prefix) for prefix in args.allow_needed):
                problems.append(f"needs a library outside the allowed set: {lib}")

    if args.headers:
        text = "\n".join(p.read_text() for p in pathlib.Path(args.headers).rglob("*.h"))
        declared = set(re.findall(r"\b([A-Za-z_][A-Za-z0-9_]*)\s*\(", text))
        for name in expected:
            if name not in declared:
                problems.append(f"export not declared in a public header: {name}")

    for p in problems:
        print(p)
    print(f"{args.lib}: {len(defined)} exports checked, {len(problems)} problems")
    return 1 if problems else 0


if __name__ == "__main__":
    sys.exit(main())
