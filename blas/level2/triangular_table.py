# The triangular level-2 products and solves (full, band and packed storage)
# with the kernels behind them: one row per routine and element type. Read
# by frame/gen/orkgen.py.
from orkgen import SDCZ, array, dim, family, flag, index, inc, ld, packed, Routine

f = family(
    "triangular", "Triangular level-2 products and solves",
    kernel_prelude="using namespace ork;\nusing namespace ork::blas::entries;",
)

B = "ork::core::triangular::"  # the bodies, core/triangular.h
WHOLE = "ork::core::whole"  # the body of an entry that splits nothing, core/core.h
FLAGS = [flag("uplo", "UL"), flag("trans", "NTC"), flag("diag", "UN"), dim("n")]
MV = "x := op(A)*x, A triangular (tr: full, tb: band with k diagonals, tp: packed); diag U: unit"
SV = "x := inv(op(A))*x, the same storages; no test for singularity"
PIECE = ("y[0 .. len-1] := elements first+1 .. first+len (1-based) of op(A)*x, y contiguous, x unchanged, "
         "0 <= first, first + len <= n: each element has the bits x?trmv gives it at incx 1, whatever the range")
BLOCK = ("One diagonal block of ?trsv solved in place, ?trsv_<uplo><trans><diag> (l/u; n, t, c complex only; "
         "n/u): nb its order, a its first diagonal element, x its first unknown (unknown k at x + k*incx)")

for T in SDCZ:
    C, p, E = T.c, T.letter, f"elem_t<{T.c}>"
    x = [array("x", C, "*n > 0", out=True), inc("incx", C, "*n")]
    full = [array("a", C, "*n > 0"), ld("lda", "check::at_least_1(*n)", C, "*n", "*n")] + x
    band = [dim("k"), array("a", C, "*n > 0"), ld("lda", "*k + 1", C, "*k + 1", "*n")] + x
    pk = [packed("ap", C, "n")] + x
    for op, doc in [("mv", MV), ("sv", SV)]:
        if op == "mv":  # libork splits the full product over threads through its range pieces
            f.add(Routine(f"ork_blas_{p}trmv", kernel=f"ork_blas_x{p}trmv", kernels=(f"ork_blas_x{p}trmv_in_thread",),
                          impl=f"trmv<{E}>", body=B + "trmv", doc=doc, quick="*n == 0", args=FLAGS + full))
        else:
            # the solve hands its caller's trans on to gemv
            solve = [FLAGS[0], flag("trans", "NTC", as_given=True)] + FLAGS[2:]
            f.add(Routine(f"ork_blas_{p}trsv", kernel=f"ork_blas_{p}trsv", impl=f"trsv<{E}>", body=WHOLE,
                          doc=doc, quick="*n == 0", args=solve + full))
        f.add(Routine(f"ork_blas_{p}tb{op}", kernel=f"ork_blas_{p}tb{op}", impl=f"tb{op}<{E}>", body=WHOLE,
                      doc=doc, quick="*n == 0", args=FLAGS + band))
        f.add(Routine(f"ork_blas_{p}tp{op}", kernel=f"ork_blas_{p}tp{op}", impl=f"tp{op}<{E}>", body=WHOLE,
                      doc=doc, quick="*n == 0", args=FLAGS + pk))
    f.add(Routine(f"ork_blas_x{p}trmv_in_thread", kernel=f"ork_blas_x{p}trmv_in_thread", checked=False,
                  impl=f"trmv_piece<{E}>", doc=PIECE,
                  args=FLAGS + [array("a", C), ld("lda", ""), array("x", C), inc("incx"), array("y", C, out=True),
                                index("first"), index("len")]))
    for u in "lu":
        for t in ("ntc" if T.complex else "nt"):
            for d in "nu":
                f.add(Routine(f"ork_blas_{p}trsv_{u}{t}{d}", kernel=f"ork_blas_{p}trsv_{u}{t}{d}", checked=False,
                              impl=f"blas::trsv_block<{E}, {str(u == 'l').lower()}, {str(t != 'n').lower()}, "
                                   f"{str(t == 'c').lower()}, {str(d == 'u').lower()}>", doc=BLOCK,
                              args=[index("nb"), array("a", C), ld("lda", ""), array("x", C, out=True), inc("incx")]))
