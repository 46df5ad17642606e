#!/usr/bin/env python3
"""The checked-in output of core/stdblas/generate.py is what it writes now
(after a change to a family table or to core/stdblas/table.py)."""
import pathlib
import subprocess
import sys
import tempfile

root = pathlib.Path(sys.argv[1])
files = ["core/stdblas/fortran.cpp", "include/ork/fblas.h", "exports/stdblas/libblas_fortran.txt"]
with tempfile.TemporaryDirectory() as out:
    subprocess.run([sys.executable, str(root / "core/stdblas/generate.py"), "--out", out], check=True)
    stale = [f for f in files if (pathlib.Path(out) / f).read_text() != (root / f).read_text()]
for f in stale:
    print(f"{f} differs from the generator's output: run core/stdblas/generate.py")
sys.exit(1 if stale else 0)
