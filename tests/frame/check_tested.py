#!/usr/bin/env python3
"""Fails for an exported name of a family manifest (tests/manifest/*.txt) that
no test names.

A test names a routine by its full name, by its short name (the name after
the library prefix, e.g. dgbmv or xdsyr_in_thread, as the tests' type tables
spell it), by a token-pasted stem (##gbmv, the type letter pasted in) or by
a stem in a string literal ("gtsv_small" or "omatcopy_rec_n", the type
letter prefixed at run time). A
kernel behind one of libork's checked entries is reached through the entry.
The names of tests/frame/untested.txt are known to be untested; one that a
test names must leave that list.
"""
import pathlib
import re
import sys

ROOT = pathlib.Path(__file__).resolve().parents[2]
SOURCES = ("*.cpp", "*.h", "*.c", "*.py")


def tokens():
    words, pasted = set(), set()
    for pattern in SOURCES:
        for path in (ROOT / "tests").rglob(pattern):
            if "manifest" in path.parts or path.name == "tables_test.py":
                continue
            text = path.read_text(errors="replace")
            words.update(re.findall(r"\b\w+\b", text))
            pasted.update(re.findall(r"##\s*(\w+)", text))
            pasted.update(re.findall(r'"(\w+)"', text))
    return words, pasted


def main():
    words, pasted = tokens()
    known = {l.strip() for l in (ROOT / "tests/frame/untested.txt").read_text().splitlines()
             if l.strip() and not l.startswith("#")}
    missing, named = [], []
    for manifest in sorted((ROOT / "tests/manifest").glob("*.txt")):
        for line in manifest.read_text().splitlines():
            if not line or line.startswith("#"):
                continue
            name, where = line.split()[:2]
            if where.startswith("kernel-of:"):  # reached through its checked entry
                name = where.split(":", 1)[1]
            short = re.sub(r"^ork_[a-z]+_(lp64_)?", "", name)
            # i##p##amax: the index searches; "omatcopy_rec_n": a transposition
            # kernel, ork_<type letter> after the library prefix
            stem = re.sub(r"^(ork_)?i?x?[sdcz]", "", short)
            tested = name in words or short in words or stem in pasted
            if tested and name in known:
                named.append(name)
            elif not tested and name not in known:
                missing.append(f"{manifest.stem}: {name}")
    if missing:
        print("names no test calls:\n  " + "\n  ".join(missing))
    if named:
        print("named by a test now; take them out of tests/frame/untested.txt:\n  " + "\n  ".join(named))
    if missing or named:
        return 1
    print(f"every manifest name is named by a test but the {len(known)} of tests/frame/untested.txt")
    return 0


if __name__ == "__main__":
    sys.exit(main())
