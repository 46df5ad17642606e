#!/usr/bin/env python3
"""Fails for an exported name of a family manifest (tests/manifest/*.txt) that
no test names.

A test names a routine by its full name, by its short name (the name after
the library prefix, e.g. dgbmv or xdsyr_in_thread, as the tests' type tables
spell it) or by a token-pasted stem (##gbmv, the type letter pasted in). A
kernel behind one of libork's checked entries is reached through the entry.
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
    return words, pasted


def main():
    words, pasted = tokens()
    missing = []
    for manifest in sorted((ROOT / "tests/manifest").glob("*.txt")):
        for line in manifest.read_text().splitlines():
            if not line or line.startswith("#"):
                continue
            name, where = line.split()[:2]
            if where.startswith("kernel-of:"):  # reached through its checked entry
                name = where.split(":", 1)[1]
            short = re.sub(r"^ork_[a-z]+_(lp64_)?", "", name)
            stem = re.sub(r"^i?x?[sdcz]", "", short)  # i##p##amax: the index searches
            if name in words or short in words or stem in pasted:
                continue
            missing.append(f"{manifest.stem}: {name}")
    if missing:
        print("names no test calls:\n  " + "\n  ".join(missing))
        return 1
    print("every manifest name is named by a test")
    return 0


if __name__ == "__main__":
    sys.exit(main())
