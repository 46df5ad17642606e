#!/usr/bin/python3
"""Debian's numpy and scipy on ork's libblas.so.3 (run with LD_LIBRARY_PATH set
to the folder given as the argument, which also holds the reference LAPACK).

Checks that ork's libblas.so.3 is mapped and no other BLAS is, that scipy's
Fortran BLAS wrappers resolve every name they need, and that a product, a
solve and a symmetric eigenproblem agree with residuals in long double; then
runs numpy's and scipy's own linear-algebra test suites with pytest in this
same process, and checks the mapping again after them.
Usage: numpy_scipy.py LIB_FOLDER [pytest arguments, e.g. -k name]
"""
import os
import subprocess
import sys
import tempfile
import time

import numpy as np
import scipy.linalg
import scipy.linalg.blas as fblas
import scipy.linalg.cython_blas  # noqa: F401  (maps the module whose names are checked)
import scipy.linalg.cython_lapack  # noqa: F401

folder = os.path.realpath(sys.argv[1])
problems = []


def check(ok, what):
    print(f"{'ok' if ok else 'FAILED'}: {what}")
    if not ok:
        problems.append(what)


# ---- what is mapped: ork's libblas.so.3, no other BLAS, the reference LAPACK
ork_blas = os.path.realpath(os.path.join(folder, "libblas.so.3"))
reference_lapack = os.path.realpath(os.path.join(folder, "liblapack.so.3"))


def check_mapped(when):
    with open("/proc/self/maps") as f:
        mapped = {line.split()[-1] for line in f if "/" in line}
    libs = [p for p in mapped if os.path.basename(p).startswith("lib")]
    blas = sorted(p for p in libs if "blas" in os.path.basename(p) or "blis" in p)
    check(ork_blas in {os.path.realpath(p) for p in blas}, f"{when}: ork's libblas.so.3 is mapped ({ork_blas})")
    others = [p for p in blas if os.path.realpath(p) != ork_blas]
    check(not others, f"{when}: no other BLAS is mapped: {others}")
    lapack = [p for p in mapped if "liblapack" in p]
    check(lapack and all(os.path.realpath(p) == reference_lapack for p in lapack),
          f"{when}: only the reference LAPACK ({reference_lapack}) is mapped: {lapack}")
    return mapped, lapack


mapped, lapack = check_mapped("before the suites")

# ---- every Fortran name scipy's BLAS and LAPACK modules leave undefined is
# defined by ork's libblas.so.3 or the LAPACK on top of it
def symbols(path, undefined):
    out = subprocess.run(["nm", "-D", "--undefined-only" if undefined else "--defined-only", path],
                         check=True, capture_output=True, text=True).stdout
    return {line.split()[-1] for line in out.splitlines()
            if line.split()[-1].endswith("_") and not line.split()[-1].startswith("_")}


modules = [p for p in mapped if "scipy/linalg/" in p and ("blas" in p or "lapack" in p)]
needed = set().union(*(symbols(p, True) for p in modules)) if modules else set()
provided = symbols(ork_blas, False) | set().union(*(symbols(p, False) for p in lapack))
missing = sorted(needed - provided)
check(len(needed) > 100 and not missing,
      f"{len(needed)} Fortran names scipy needs from {len(modules)} modules resolved; missing {missing[:10]}")
from_blas = needed & symbols(ork_blas, False)
check(len(from_blas) > 100, f"{len(from_blas)} of them come from ork's libblas.so.3")

rng = np.random.default_rng(7)
L = np.longdouble


def rel(resid, scale):
    return float(np.max(np.abs(resid)) / scale)


# ---- a product through dgemm and zgemm
n = 300
a, b = rng.standard_normal((n, n)), rng.standard_normal((n, n))
c = fblas.dgemm(1.0, a, b)
exact = a.astype(L) @ b.astype(L)
check(rel(c - exact, n * np.max(np.abs(exact))) < 1e-15, "dgemm against long double")
za = a + 1j * rng.standard_normal((n, n))
zb = b + 1j * rng.standard_normal((n, n))
zc = fblas.zgemm(1.0, za, zb, trans_a=2)
zex_re = za.real.T.astype(L) @ zb.real.astype(L) + za.imag.T.astype(L) @ zb.imag.astype(L)
zex_im = za.real.T.astype(L) @ zb.imag.astype(L) - za.imag.T.astype(L) @ zb.real.astype(L)
check(rel(zc.real - zex_re, n * np.max(np.abs(zex_re))) < 1e-15 and
      rel(zc.imag - zex_im, n * np.max(np.abs(zex_im))) < 1e-15, "zgemm (conjugate transpose) against long double")

# ---- a solve: the residual of A x = b in long double, relative to |A| |x|
x = scipy.linalg.solve(a, b[:, :5])
r = a.astype(L) @ x.astype(L) - b[:, :5].astype(L)
check(rel(r, np.max(np.abs(a).astype(L) @ np.abs(x).astype(L))) < 1e-13, "solve residual")

# ---- a symmetric eigenproblem: A V - V diag(w) and V'V - I in long double
s = a + a.T
w, v = scipy.linalg.eigh(s)
vl = v.astype(L)
res = s.astype(L) @ vl - vl * w.astype(L)
check(rel(res, np.max(np.abs(w)) * n) < 1e-14, "eigh residual")
check(rel(vl.T @ vl - np.eye(n, dtype=L), n) < 1e-14, "eigh orthogonality")
# the same eigenvalues from the general (nonsymmetric) solver
wg = np.sort(scipy.linalg.eigvals(s).real)
check(rel(wg - w, np.max(np.abs(w))) < 1e-12, "eigvals agrees with eigh")

# ---- numpy's and scipy's own suites, here (pytest writes neither its cache
# nor compiled files into the installed packages; hypothesis keeps its
# database in a scratch folder).
import pytest  # noqa: E402

suites = [os.path.join(os.path.dirname(m.__file__), "linalg", "tests") for m in (np, scipy)]
sys.dont_write_bytecode = True
start = time.monotonic()
with tempfile.TemporaryDirectory(prefix="ork-numpy-scipy-") as scratch:
    os.chdir(scratch)
    status = pytest.main(["-q", "-p", "no:cacheprovider", "-rfE", "--color=no", *suites, *sys.argv[2:]])
print(f"numpy's and scipy's linear-algebra suites: pytest status {int(status)} in {time.monotonic() - start:.0f} s")
check(status == 0, "numpy's and scipy's linear-algebra suites pass")
check_mapped("after the suites")

print("passed" if not problems else f"FAILED: {len(problems)} problems")
sys.exit(1 if problems else 0)
