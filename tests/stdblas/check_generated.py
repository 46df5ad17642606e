#!/usr/bin/env python3
"""The checked-in output of core/stdblas/generate.py is what it writes now
(after a change to a family table or to core/stdblas/table.py)."""
import pathlib
import subprocess
import sys
import tempfile

root = pathlib.Path(sys.argv[1])
with tempfile.TemporaryDirectory() as out:
    subprocess.run([sys.executable, str(root / "core/stdblas/generate.py"), "--out", out], check=True)
    written = sorted(p.relative_to(out) for p in pathlib.Path(out).rglob("*") if p.is_file())
    stale = [f for f in written if (pathlib.Path(out) / f).read_text() != (root / f).read_text()]
for f in stale:
    print(f"{f} differs from the generator's output: run core/stdblas/generate.py")
print(f"{len(written)} generated files compared")
sys.exit(1 if stale or len(written) < 7 else 0)
