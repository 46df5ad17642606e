# The level-2 products and updates (the triangular ones are a family of their
# own): one row per routine and element type. Read by frame/gen/orkgen.py.
from orkgen import CZ, SD, SDCZ, array, dim, family, flag, index, inc, ld, packed, scalar, Routine

f = family(
    "level2", "Level-2 products and updates",
    kernel_prelude="using namespace ork;\nusing namespace ork::blas::entries;\nusing blas::gemv;\nusing blas::gbmv;\nusing blas::ger;",
)

B = "ork::core::level2::"  # the bodies, core/level2.h
WHOLE = "ork::core::whole"  # the body of an entry that splits nothing, core/core.h
NOTHING = "*{m} == 0 || *{n} == 0 || (check::is_zero(*alpha) && check::is_one(*beta))"


def vec(name, t, length, needed, out=False):
    """a vector and its increment"""
    return [array(name, t, needed, out), inc("inc" + name, t, length)]


# ---- general products: y := alpha*op(A)*x + beta*y
for T in SDCZ:
    C, p = T.c, T.letter
    any_ = "*m > 0 && *n > 0"
    lenx, leny = 'check::is(trans, "N") ? *n : *m', 'check::is(trans, "N") ? *m : *n'
    tail = vec("x", C, lenx, any_) + [scalar("beta", C)] + vec("y", C, leny, any_, out=True)
    f.add(Routine(f"ork_blas_{p}gemv", kernel=f"ork_blas_x{p}gemv", impl="gemv", body=B + "gemv",
                  doc="y := alpha*op(A)*x + beta*y, A general (gb: band with kl sub- and ku super-diagonals)",
                  quick=NOTHING.format(m="m", n="n"),
                  args=[flag("trans", "NTC"), dim("m"), dim("n"), scalar("alpha", C), array("a", C, any_),
                        ld("lda", "check::at_least_1(*m)", C, "*m", "*n")] + tail))
    f.add(Routine(f"ork_blas_{p}gbmv", kernel=f"ork_blas_{p}gbmv", impl="gbmv", body=B + "gbmv",
                  doc="y := alpha*op(A)*x + beta*y, A general (gb: band with kl sub- and ku super-diagonals)",
                  quick=NOTHING.format(m="m", n="n"),
                  args=[flag("trans", "NTC"), dim("m"), dim("n"), dim("kl"), dim("ku"), scalar("alpha", C),
                        array("a", C, any_), ld("lda", "*kl + *ku + 1", C, "*kl + *ku + 1", "*n")] + tail))

# ---- symmetric and Hermitian products: full (kernel x?symv for the reals),
# band and packed storage
for T in SDCZ:
    C, p, h = T.c, T.letter, ("h" if T.complex else "s")
    E, herm = f"elem_t<{C}>", str(T.complex).lower()
    doc = f"y := alpha*A*x + beta*y, A {'Hermitian' if T.complex else 'symmetric'} " \
          f"({h}{'e' if T.complex else 'y'}: full storage, {h}b: band, {h}p: packed), triangle by uplo" + \
          (" (the imaginary parts of the diagonal are not read)" if T.complex else "")
    tail = vec("x", C, "*n", "*n > 0") + [scalar("beta", C)] + vec("y", C, "*n", "*n > 0", out=True)
    quick = "*n == 0 || (check::is_zero(*alpha) && check::is_one(*beta))"
    full = f"ork_blas_{p}{'hemv' if T.complex else 'symv'}"
    f.add(Routine(full, kernel=full if T.complex else f"ork_blas_x{p}symv", impl=f"symv<{E}, {herm}>",
                  body=B + "symv", doc=doc, quick=quick,
                  args=[flag("uplo", "UL"), dim("n"), scalar("alpha", C), array("a", C, "*n > 0"),
                        ld("lda", "check::at_least_1(*n)", C, "*n", "*n")] + tail))
    f.add(Routine(f"ork_blas_{p}{h}bmv", kernel=f"ork_blas_{p}{h}bmv", impl=f"sbmv<{E}, {herm}>", body=WHOLE,
                  doc=doc, quick=quick,
                  args=[flag("uplo", "UL"), dim("n"), dim("k"), scalar("alpha", C), array("a", C, "*n > 0"),
                        ld("lda", "*k + 1", C, "*k + 1", "*n")] + tail))
    f.add(Routine(f"ork_blas_{p}{h}pmv", kernel=f"ork_blas_{p}{h}pmv", impl=f"spmv<{E}, {herm}>", body=WHOLE,
                  doc=doc, quick=quick,
                  args=[flag("uplo", "UL"), dim("n"), scalar("alpha", C), packed("ap", C, "n")] + tail))

# ---- general rank-1 updates: A := alpha*x*op(y)' + A
for T, name, cj in [(T, f"{T.letter}ger", False) for T in SD] + \
                   [(T, f"{T.letter}ger{u}", u == "c") for T in CZ for u in "uc"]:
    C, any_ = T.c, "*m > 0 && *n > 0"
    f.add(Routine(f"ork_blas_{name}", kernel=f"ork_blas_{name}", impl=f"ger<elem_t<{C}>, {str(cj).lower()}>",
                  body=B + "ger", doc="A := alpha*x*y' + A (geru), alpha*x*conj(y)' + A (gerc)",
                  quick="*m == 0 || *n == 0 || check::is_zero(*alpha)",
                  args=[dim("m"), dim("n"), scalar("alpha", C)] + vec("x", C, "*m", any_) + vec("y", C, "*n", any_)
                  + [array("a", C, any_, out=True), ld("lda", "check::at_least_1(*m)", C, "*m", "*n")]))

# ---- symmetric and Hermitian rank-1 and rank-2 updates, full and packed;
# the real full forms run as kernels x?syr and x?syr2, and libork splits them
# over threads through their column pieces
for T in SDCZ:
    C, p, R = T.c, T.letter, T.real
    E, herm = f"elem_t<{C}>", str(T.complex).lower()
    s = "her" if T.complex else "syr"
    sp = "hpr" if T.complex else "spr"
    one = [flag("uplo", "UL"), dim("n"), scalar("alpha", R)] + vec("x", C, "*n", "*n > 0")
    two = [flag("uplo", "UL"), dim("n"), scalar("alpha", C)] + vec("x", C, "*n", "*n > 0") + vec("y", C, "*n", "*n > 0")
    full = [array("a", C, "*n > 0", out=True), ld("lda", "check::at_least_1(*n)", C, "*n", "*n")]
    pk = [packed("ap", C, "n", out=True)]
    quick = "*n == 0 || check::is_zero(*alpha)"
    kind = "Hermitian" if T.complex else "symmetric"
    d1 = f"A := alpha*x*x{'^H' if T.complex else chr(39)} + A, A {kind}, triangle by uplo (full or packed)" + \
         (", alpha real; the diagonal's imaginary parts are set to zero" if T.complex else "")
    d2 = f"A := alpha*x*y{'^H' if T.complex else chr(39)} + conj(alpha)*y*x{'^H' if T.complex else chr(39)} + A, " \
         f"A {kind} (full or packed)"
    x = "" if T.complex else "x"
    f.add(Routine(f"ork_blas_{p}{s}", kernel=f"ork_blas_{x}{p}{s}", impl=f"syr<{E}, {herm}>", body=B + "syr",
                  doc=d1, quick=quick, args=one + full))
    f.add(Routine(f"ork_blas_{p}{sp}", kernel=f"ork_blas_{p}{sp}", impl=f"spr<{E}, {herm}>", body=WHOLE,
                  doc=d1, quick=quick, args=one + pk))
    f.add(Routine(f"ork_blas_{p}{s}2", kernel=f"ork_blas_{x}{p}{s}2", impl=f"syr2<{E}, {herm}>", body=B + "syr2",
                  doc=d2, quick=quick, args=two + full))
    f.add(Routine(f"ork_blas_{p}{sp}2", kernel=f"ork_blas_{p}{sp}2", impl=f"spr2<{E}, {herm}>", body=WHOLE,
                  doc=d2, quick=quick, args=two + pk))
    if not T.complex:
        piece = "Columns first..last (1-based, inclusive) of ?syr and ?syr2; disjoint ranges write disjoint parts of A"
        for name, args, impl in [(f"ork_blas_x{p}syr_in_thread", one, "syr_piece"),
                                 (f"ork_blas_x{p}syr2_in_thread", two, "syr2_piece")]:
            f.add(Routine(name, kernel=name, checked=False, impl=f"{impl}<{C}>", doc=piece,
                          args=args + full + [index("first"), index("last")]))
