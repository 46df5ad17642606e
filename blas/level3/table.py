# The level-3 routines besides the general product (symmetric and Hermitian
# products, rank-k and rank-2k updates, triangular multiply and solve): one
# row per routine and element type. Read by frame/gen/orkgen.py.
from orkgen import CZ, SDCZ, Routine, array, dim, family, flag, ld, scalar, workspace

f = family(
    "level3", "Level-3 routines besides the general product",
    kernel_prelude="using namespace ork;\nusing namespace ork::level3::entries;",
)

B = "ork::core::level3::"  # the bodies, core/level3.h
MN = "*m > 0 && *n > 0"
ORDER_A = 'check::is(side, "L") ? *m : *n'  # the order of A: m on the left, n on the right


def side_product(C):
    """side, uplo, m, n, alpha, A (order m or n), B (m x n): the start of symm and hemm"""
    return [flag("side", "LR"), flag("uplo", "UL"), dim("m"), dim("n"), scalar("alpha", C), array("a", C, MN),
            ld("lda", f"check::at_least_1({ORDER_A})", C, ORDER_A, ORDER_A), array("b", C, MN),
            ld("ldb", "check::at_least_1(*m)", C, "*m", "*n")]


# ---- symmetric and Hermitian products: C := alpha*A*B + beta*C (side L) or
# alpha*B*A + beta*C (side R); the kernels' recursive form adds alpha*A*B to
# a C already scaled, in the caller's workspace
for name, herm, types in [("symm", False, SDCZ), ("hemm", True, CZ)]:
    for T in types:
        C, p = T.c, T.letter
        f.add(Routine(f"ork_blas_{p}{name}", kernel=f"ork_blas_x{p}{name}", impl=f"symm<elem_t<{C}>, {str(herm).lower()}>",
                      body=B + "symm", quick="*m == 0 || *n == 0 || (check::is_zero(*alpha) && check::is_one(*beta))",
                      doc="C := alpha*A*B + beta*C (side L) or alpha*B*A + beta*C (side R), A symmetric (hemm: "
                          "Hermitian) of order m or n, triangle by uplo",
                      args=side_product(C) + [scalar("beta", C), array("c", C, MN, out=True),
                                              ld("ldc", "check::at_least_1(*m)", C, "*m", "*n")]))
for T in SDCZ:
    C, p = T.c, T.letter
    f.add(Routine(f"ork_blas_x{p}symm_recursive", kernel=f"ork_blas_x{p}symm_recursive", checked=False, bound=False,
                  impl=f"symm_recursive<elem_t<{C}>, false>",
                  doc="C += alpha*A*B (side L) or alpha*B*A (side R), C already scaled by beta; work: 524288 bytes, "
                      "64-byte aligned",
                  args=side_product(C) + [array("c", C, out=True), ld("ldc", "1"), workspace("work")]))

# ---- rank-k and rank-2k updates of one triangle of C: the transposition
# letters are N, T (and C, read as T) for the real types, N and T for the
# complex symmetric ones, N and C for the Hermitian ones; herk's alpha and
# beta and her2k's beta are real
ROWS, COLS = 'check::is(trans, "N") ? *n : *k', 'check::is(trans, "N") ? *k : *n'


def rank_args(T, herm, two, real_alpha):
    C, R = T.c, T.real
    ops = "NC" if herm else "NT" if T.complex else "NTC"
    operands = []
    for x in "ab" if two else "a":
        operands += [array(x, C, "*n > 0 && *k > 0"), ld("ld" + x, f"check::at_least_1({ROWS})", C, ROWS, COLS)]
    return ([flag("uplo", "UL"), flag("trans", ops), dim("n"), dim("k"), scalar("alpha", R if real_alpha else C)]
            + operands + [scalar("beta", R if herm else C), array("c", C, "*n > 0", out=True),
                          ld("ldc", "check::at_least_1(*n)", C, "*n", "*n")])


RANK_QUICK = "*n == 0 || ((*k == 0 || check::is_zero(*alpha)) && check::is_one(*beta))"
RANK_K = "C := alpha*A*A' + beta*C (trans N) or alpha*A'*A + beta*C (T; herk: C, conjugate transpose, real " \
         "alpha and beta), on the triangle by uplo"
RANK_2K = "C := alpha*A*B' + alpha*B*A' + beta*C or the transposed form (her2k: alpha*A*B^H + conj(alpha)*B*A^H, " \
          "real beta)"
for name, herm, two, types, doc in [("syrk", False, False, SDCZ, RANK_K), ("herk", True, False, CZ, RANK_K),
                                    ("syr2k", False, True, SDCZ, RANK_2K), ("her2k", True, True, CZ, RANK_2K)]:
    form = "rank_2k" if two else "rank_k"
    hm = str(herm).lower()
    for T in types:
        p = T.letter
        f.add(Routine(f"ork_blas_{p}{name}", kernel=f"ork_blas_x{p}{name}", impl=f"{form}<elem_t<{T.c}>, {hm}>",
                      body=B + f"{form}<{hm}>", quick=RANK_QUICK, doc=doc,
                      args=rank_args(T, herm, two, herm and not two)))

# ---- triangular multiply and solve, B overwritten
for name in ("trmm", "trsm"):
    for T in SDCZ:
        C, p = T.c, T.letter
        f.add(Routine(f"ork_blas_{p}{name}", kernel=f"ork_blas_x{p}{name}", impl=f"{name}<elem_t<{C}>>",
                      body=B + "triangular", quick="*m == 0 || *n == 0",
                      doc="B := alpha*op(A)*B (side L) or alpha*B*op(A) (side R), A triangular; trsm solves "
                          "op(A)*X = alpha*B or X*op(A) = alpha*B, X over B",
                      args=[flag("side", "LR"), flag("uplo", "UL"), flag("transa", "NTC"), flag("diag", "UN"),
                            dim("m"), dim("n"), scalar("alpha", C), array("a", C, MN),
                            ld("lda", f"check::at_least_1({ORDER_A})", C, ORDER_A, ORDER_A),
                            array("b", C, MN, out=True), ld("ldb", "check::at_least_1(*m)", C, "*m", "*n")]))
