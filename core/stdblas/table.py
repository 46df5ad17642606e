# The standard Fortran BLAS interface of libblas.so.3: which routines it
# wraps and how. Each wrapper's arguments are those of libork's entry
# ork_blas_<routine> in its own family table; core/stdblas/generate.py turns
# them into the Fortran forms (name_ with 32-bit integers, name_64_ with
# 64-bit, hidden flag lengths, the sub forms of the functions). Read by
# frame/gen/orkgen.py. The CBLAS is a family here too (CBLAS below): one row
# per cblas_ routine, its arguments derived from libork's entry the same way.
import importlib.util
import pathlib
from dataclasses import dataclass

# Routines that never report an argument error (the reference level 1).
LEVEL1 = """
saxpy daxpy caxpy zaxpy scopy dcopy ccopy zcopy sswap dswap cswap zswap
sscal dscal cscal zscal csscal zdscal
sdot ddot cdotc cdotu zdotc zdotu dsdot sdsdot
snrm2 dnrm2 scnrm2 dznrm2 sasum dasum scasum dzasum
isamax idamax icamax izamax
srot drot csrot zdrot srotg drotg crotg zrotg srotm drotm srotmg drotmg
dcabs1
""".split()

# Routines that check their arguments and report the first bad one to xerbla.
CHECKED = """
sgemv dgemv cgemv zgemv sgbmv dgbmv cgbmv zgbmv
strmv dtrmv ctrmv ztrmv stbmv dtbmv ctbmv ztbmv stpmv dtpmv ctpmv ztpmv
strsv dtrsv ctrsv ztrsv stbsv dtbsv ctbsv ztbsv stpsv dtpsv ctpsv ztpsv
ssymv dsymv ssbmv dsbmv sspmv dspmv chemv zhemv chbmv zhbmv chpmv zhpmv
sger dger cgeru zgeru cgerc zgerc
ssyr dsyr sspr dspr ssyr2 dsyr2 sspr2 dspr2 cher zher chpr zhpr cher2 zher2 chpr2 zhpr2
sgemm dgemm cgemm zgemm ssymm dsymm csymm zsymm chemm zhemm
ssyrk dsyrk csyrk zsyrk cherk zherk ssyr2k dsyr2k csyr2k zsyr2k cher2k zher2k
strmm dtrmm ctrmm ztrmm strsm dtrsm ctrsm ztrsm
""".split()

# Functions that also have a subroutine form <name>sub_(..., result).
SUBFORMS = """
sdot ddot dsdot sdsdot cdotc cdotu zdotc zdotu snrm2 dnrm2 scnrm2 dznrm2
sasum dasum scasum dzasum isamax idamax icamax izamax dcabs1
""".split()



# ---- CBLAS: one row per cblas_ routine, in the order of include/ork/cblas.h.
@dataclass
class Cblas:
    """cblas_<name> calls libork's ork_blas_<routine> (or `callee`). Its
    arguments are the entry's, from its family table: the layout first when a
    `wrapper` template does the layout work (core/stdblas/cblas.h: called as
    wrapper<entry, targs...>("cblas_<name>", layout, ...)), flags as enums,
    integers as int, real scalars by value, complex scalars and arrays as
    void pointers. Without a wrapper the call is direct, integers by address.
    A complex function is the _sub form, its value stored through a last
    argument named after the operation; an index comes back 0-based."""
    name: str
    group: str  # the header's heading above it
    wrapper: str = ""
    routine: str = ""  # default: name
    targs: tuple = ()
    callee: str = ""  # a routine on no table: its C name, with `args` and `returns`
    args: tuple = ()  # (role, C type, name, out) of such a routine
    returns: str = ""


CBLAS = []


def _cblas(group, name, wrapper="", **kw):
    CBLAS.append(Cblas(name, group, wrapper, **kw))


_MIXED = "mixed and magnitude helpers"
_cblas(_MIXED, "sdsdot")
_cblas(_MIXED, "dsdot")
_cblas(_MIXED, "scabs1", callee="scabs1_", args=(("scalar", "ork_complex8", "z", False),), returns="float")
_cblas(_MIXED, "dcabs1")
for _p, _group in [("s", "single"), ("d", "double"), ("c", "single complex"), ("z", "double complex")]:
    _complex = _p in "cz"
    _r = {"s": "s", "d": "d", "c": "sc", "z": "dz"}[_p]  # the prefix of the real-valued results
    for _n in ["swap", "copy", "axpy", "scal"]:
        _cblas(_group, _p + _n)
    if _complex:
        _cblas(_group, f"{_p}{'s' if _p == 'c' else 'd'}scal")
        _cblas(_group, f"{_p}dotu_sub", routine=f"{_p}dotu")
        _cblas(_group, f"{_p}dotc_sub", routine=f"{_p}dotc")
    else:
        _cblas(_group, f"{_p}dot")
    for _n in [f"{_r}nrm2", f"{_r}asum", f"i{_p}amax", f"{_p}rotg"]:
        _cblas(_group, _n)
    if _complex:
        _cblas(_group, f"{_p}{'s' if _p == 'c' else 'd'}rot")
    else:
        for _n in ["rotmg", "rot", "rotm"]:
            _cblas(_group, _p + _n)
    _cblas(_group, f"{_p}gemv", "gemv")
    _cblas(_group, f"{_p}gbmv", "gbmv")
    for _kind in ["mv", "sv"]:
        for _storage in ["tr", "tb", "tp"]:
            _cblas(_group, f"{_p}{_storage}{_kind}", f"{_storage}mv")
    _h = "h" if _complex else "s"
    _cblas(_group, f"{_p}{'he' if _complex else 'sy'}mv", "symv")
    _cblas(_group, f"{_p}{_h}bmv", "sbmv")
    _cblas(_group, f"{_p}{_h}pmv", "spmv")
    if _complex:
        _cblas(_group, f"{_p}geru", "ger")
        _cblas(_group, f"{_p}gerc", "gerc", targs=(f"ork_blas_{_p}geru",))
    else:
        _cblas(_group, f"{_p}ger", "ger")
    _s = "her" if _complex else "syr"
    _cblas(_group, f"{_p}{_s}", "syr")
    _cblas(_group, f"{_p}{_h}pr", "spr")
    _cblas(_group, f"{_p}{_s}2", "syr2")
    _cblas(_group, f"{_p}{_h}pr2", "spr2")
    _cblas(_group, f"{_p}gemm", "gemm")
    _cblas(_group, f"{_p}symm", "symmetric_mm")
    _cblas(_group, f"{_p}syrk", "rank_k")
    _cblas(_group, f"{_p}syr2k", "rank_2k")
    if _complex:
        _cblas(_group, f"{_p}hemm", "symmetric_mm")
        _cblas(_group, f"{_p}herk", "rank_k")
        _cblas(_group, f"{_p}her2k", "rank_2k")
    _cblas(_group, f"{_p}trmm", "triangular_mm")
    _cblas(_group, f"{_p}trsm", "triangular_mm")


def _files():
    here = pathlib.Path(__file__).resolve().parent
    found = importlib.util.spec_from_file_location("stdblas_generate", here / "generate.py")
    module = importlib.util.module_from_spec(found)
    found.loader.exec_module(module)
    return module.files()


try:
    from orkgen import family
except ImportError:  # imported by generate.py for its lists alone
    family = None
if family and __name__ != "table":
    family("stdblas", "The standard Fortran BLAS interface", writer=_files)
