# The small LAPACK-level routines (factorisations, tridiagonal solves,
# reflectors, rotation sequences): one row per routine and element type.
# libork checks each under the kernel's own name. Read by frame/gen/orkgen.py.
from orkgen import INT, SDCZ, array, dim, family, flag, given, info, ld, scalar, Routine

f = family(
    "lapack", "Small LAPACK-level routines",
    kernel_header="",  # every kernel is libork's checked name: no kernel-only header
    kernel_prelude="using namespace ork;\nusing namespace ork::lapack::entries;",
)

B = "ork::core::lapack::"  # the bodies, core/lapack.h
WHOLE = "ork::core::whole"  # the body of an entry that splits nothing, core/core.h
POTRF = ("A = L*L^H, lower triangle (the upper one is not touched); info = 0, or the order of the first leading "
         "minor that is not positive definite")
SYTRF = ("A = P*L*D*L^T*P^T, lower, Bunch-Kaufman pivoting, D with 1x1 and 2x2 blocks (complex symmetric for c, z); "
         "ipiv 1-based, -p on both rows of a 2x2 block; info = 0, or the first k with D(k,k) exactly zero")
GTSV = ("A*X = B, A tridiagonal (dl, d, du), partial pivoting; on return d, du and dl[0 .. n-3] hold U; info = 0, "
        "or the first k with U(k,k) exactly zero")
PTTS2 = ("A*X = B with A factored, real diagonal d: s, d as L*D*L^T with e the sub-diagonal of L; c, z as U^H*D*U "
         "(iuplo = 1, e the super-diagonal of U) or L*D*L^H (otherwise). Workspace from ork_serv_allocate for "
         "n >= 4 and several columns of B; without it the same results, one column at a time")
LARFX = "C := H*C (side L) or C*H (side R), H = I - tau*v*v^H; work holds n (L) or m (R) elements"
LASR = ("A := P*A (side L, P of order m) or A*P^T (side R, P of order n), P a sequence of z-1 plane rotations "
        "[c(k) s(k); -s(k) c(k)], c and s real, in the planes (k, k+1) (pivot V), (1, k+1) (T) or (k, z) (B); "
        "direct F: P = P(z-1)*...*P(1), B: P = P(1)*...*P(z-1). ?lasr picks one of the twelve "
        "?lasr_<side><pivot><direct> by its flags")
PIVOTS = {"v": "variable", "t": "top", "b": "bottom"}
ANY = "*m > 0 && *n > 0"

for T in SDCZ:
    C, R, p, E = T.c, T.real, T.letter, f"elem_t<{T.c}>"
    square = [array("a", C, "*n > 0", out=True), ld("lda", "check::at_least_1(*n)", C, "*n", "*n")]
    f.add(Routine(f"ork_blas_{p}potrf_l_small", kernel=f"ork_blas_{p}potrf_l_small", impl=f"lapack::potrf_l<{E}>",
                  body=WHOLE, doc=POTRF, quick="*n == 0", args=[dim("n")] + square + [info("info")]))
    f.add(Routine(f"ork_blas_{p}sytrf_l_small", kernel=f"ork_blas_{p}sytrf_l_small", impl=f"lapack::sytrf_l<{E}>",
                  body=WHOLE, doc=SYTRF, quick="*n == 0",
                  args=[dim("n")] + square + [array("ipiv", INT, "*n > 0", out=True), info("info")]))
    f.add(Routine(f"ork_blas_{p}gtsv_small", kernel=f"ork_blas_{p}gtsv_small", impl=f"lapack::gtsv<{E}>",
                  body=WHOLE, doc=GTSV, quick="*n == 0",
                  args=[dim("n", C), dim("nrhs"), array("dl", C, "*n > 1", out=True), array("d", C, "*n > 0", out=True),
                        array("du", C, "*n > 1", out=True), array("b", C, "*n > 0 && *nrhs > 0", out=True),
                        ld("ldb", "check::at_least_1(*n)", C, "*n", "*nrhs"), info("info")]))
    # the complex forms lead with iuplo, which picks the factorisation
    f.add(Routine(f"ork_blas_{p}ptts2", kernel=f"ork_blas_{p}ptts2", impl=f"ptts2<{E}>", body=B + "ptts2", doc=PTTS2,
                  quick="*n == 0 || *nrhs == 0",
                  args=([given("iuplo")] if T.complex else [])
                  + [dim("n"), dim("nrhs"), array("d", R, "*n > 0"), array("e", C, "*n > 1"),
                     array("b", C, "*n > 0 && *nrhs > 0", out=True),
                     ld("ldb", "check::at_least_1(*n)", C, "*n", "*nrhs")]))
    f.add(Routine(f"ork_blas_{p}larfx", kernel=f"ork_blas_{p}larfx", impl=f"larfx<{E}>", body=B + "larfx", doc=LARFX,
                  quick="*m == 0 || *n == 0",
                  args=[flag("side", "LR"), dim("m"), dim("n"), array("v", C, ANY), scalar("tau", C),
                        array("c", C, ANY, out=True), ld("ldc", "check::at_least_1(*m)", C, "*m", "*n"),
                        array("work", C, ANY, out=True)]))

    def rotations(rotating):  # c, s, a, lda of a sequence of rotations of `rotating` + 1 planes
        return [array("c", R, f"{ANY} && {rotating} > 1"), array("s", R, f"{ANY} && {rotating} > 1"),
                array("a", C, ANY, out=True), ld("lda", "check::at_least_1(*m)", C, "*m", "*n")]
    variants = [f"ork_blas_{p}lasr_{s}{v}{d}" for s in "lr" for v in PIVOTS for d in "fb"]
    f.add(Routine(f"ork_blas_{p}lasr", kernel=f"ork_blas_{p}lasr", kernels=tuple(variants), impl=f"lasr<{E}>",
                  body=B + "lasr", doc=LASR, quick="*m == 0 || *n == 0",
                  args=[flag("side", "LR"), flag("pivot", "VTB"), flag("direct", "FB"), dim("m"), dim("n")]
                  + rotations('(check::is(side, "L") ? *m : *n)')))
    for name in variants:
        s, v, d = name[-3:]
        f.add(Routine(name, kernel=name, impl=f"lapack::lasr<{E}, {str(s == 'l').lower()}, lapack::pivot::{PIVOTS[v]}, "
                                              f"{str(d == 'f').lower()}>",
                      body=B + f"rotations<{str(s == 'l').lower()}>", doc=LASR, quick="*m == 0 || *n == 0",
                      args=[dim("m"), dim("n")] + rotations("*m" if s == "l" else "*n")))
