# The standard Fortran BLAS interface of libblas.so.3: which routines it
# wraps and how. Each wrapper's arguments are those of libork's entry
# ork_blas_<routine> in its own family table; core/stdblas/generate.py turns
# them into the Fortran forms (name_ with 32-bit integers, name_64_ with
# 64-bit, hidden flag lengths, the sub forms of the functions). Read by
# frame/gen/orkgen.py; the CBLAS (core/stdblas/cblas.cpp) is written by hand.
import importlib.util
import pathlib

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
