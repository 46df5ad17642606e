#!/usr/bin/env python3
"""Fails when a shared library holds a VEX- or EVEX-encoded instruction.

The baseline kernel library must run on any x86-64 processor. Its code is
disassembled with objdump; an instruction is VEX or EVEX when its opcode,
after any segment or address-size prefix, starts with C4, C5 (VEX) or 62
(EVEX): in 64-bit mode those bytes have no other meaning. The mnemonic and
register names are checked as well (v-prefixed forms, ymm, zmm, opmask
registers), so that a disassembler quirk cannot hide one.
"""
import re
import subprocess
import sys

SKIPPED_PREFIXES = {"26", "2e", "36", "3e", "64", "65", "67"}
# objdump -d: "  addr:\tbytes \tmnemonic operands"
LINE = re.compile(r"^\s*([0-9a-f]+):\t((?:[0-9a-f]{2} )+)\s*\t(\S+)\s*(.*)$")
WIDE_REGISTER = re.compile(r"%(?:ymm|zmm)\d+|%k[0-7]\b")


def offending(disassembly):
    found = []
    function = "?"
    for line in disassembly.splitlines():
        if line.endswith(">:"):
            function = line.split("<", 1)[-1][:-2]
            continue
        m = LINE.match(line)
        if not m:
            continue
        code = m.group(2).split()
        while code and code[0] in SKIPPED_PREFIXES:
            code = code[1:]
        mnemonic, operands = m.group(3), m.group(4)
        if (code and code[0] in ("c4", "c5", "62")) or WIDE_REGISTER.search(operands) or (
                mnemonic.startswith("v") and mnemonic not in ("verr", "verw")):
            found.append(f"{function}: {line.strip()}")
    return found


def main():
    if len(sys.argv) != 2:
        print("usage: check_no_vex.py LIBRARY")
        return 2
    lib = sys.argv[1]
    out = subprocess.run(["objdump", "-d", "-w", lib],
                         check=True, capture_output=True, text=True).stdout
    found = offending(out)
    for f in found[:50]:
        print(f)
    if len(found) > 50:
        print(f"... and {len(found) - 50} more")
    instructions = sum(1 for line in out.splitlines() if LINE.match(line))
    print(f"{lib}: {instructions} instructions, {len(found)} VEX or EVEX")
    if instructions == 0:
        print("no instruction was disassembled")
        return 1
    return 1 if found else 0


if __name__ == "__main__":
    sys.exit(main())
