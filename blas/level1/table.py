# The level-1 vector routines, their sparse forms and the rotations: one row
# per routine and element type. Read by frame/gen/orkgen.py.
from orkgen import ALWAYS, CZ, D, INT, S, SD, SDCZ, C as C8, Z as Z16, array, count, family, scalar, stride, Routine

f = family(
    "level1", "Level-1 vector routines",
    kernel_prelude="using namespace ork;",
)

B = "ork::core::level1::"  # the bodies, core/level1.h
ANY = "*n > 0"
NONE = "*n <= 0"


def vec(name, t, needed=ANY, out=False, length="*n"):
    """a vector and its increment (0 allowed), addressable over `length` elements"""
    return [array(name, t, needed, out), stride("inc" + name, t, length)]


def add(name, kernel=None, **kw):
    f.add(Routine(f"ork_blas_{name}", kernel=f"ork_blas_{kernel or name}", **kw))


# ---- y := alpha*x + y, y := x, x <-> y: kernels x?axpy, x?copy, x?swap
for T in SDCZ:
    C, p = T.c, T.letter
    add(f"{p}axpy", f"x{p}axpy", impl="blas::axpy", body=B + "axpy", quick=NONE, lp64=True,
        doc="y := alpha*x + y, y := x, x <-> y",
        args=[count("n"), scalar("alpha", C)] + vec("x", C) + vec("y", C, out=True))
    add(f"{p}copy", f"x{p}copy", impl="blas::copy", body=B + "pair<false>", quick=NONE, lp64=True,
        doc="y := alpha*x + y, y := x, x <-> y", args=[count("n")] + vec("x", C) + vec("y", C, out=True))
    add(f"{p}swap", f"x{p}swap", impl="blas::swap", body=B + "pair<true>", quick=NONE,
        doc="y := alpha*x + y, y := x, x <-> y", args=[count("n")] + vec("x", C, out=True) + vec("y", C, out=True))

# ---- x := alpha*x
for T, A in [(T, T) for T in SDCZ] + [(C8, S), (Z16, D)]:
    name = f"{T.letter}{'' if A is T else A.letter}scal"
    add(name, impl="blas::scal", body=B + "scal", quick=NONE, lp64=A is T, doc="x := alpha*x",
        args=[count("n"), scalar("alpha", A.c)] + vec("x", T.c, out=True))

# ---- dot products (kernels x?dot for the reals and xcdotc): c conjugates x, u does not
for T, name, kernel, conj in [(S, "sdot", "xsdot", False), (D, "ddot", "xddot", False),
                              (C8, "cdotc", "xcdotc", True), (C8, "cdotu", "cdotu", False),
                              (Z16, "zdotc", "zdotc", True), (Z16, "zdotu", "zdotu", False)]:
    C = T.c
    add(name, kernel, impl=f"blas::entries::dot<elem_t<{C}>, {str(conj).lower()}>", body=B + "dot", quick=NONE,
        returns=C, lp64=not conj, doc="dot products; c conjugates x, u does not",
        args=[count("n")] + vec("x", C) + vec("y", C))
doc = "single inputs accumulated in double; sdsdot adds the sum to sb, rounded once"
add("dsdot", impl="blas::entries::dsdot", body=B + "dot", quick=NONE, returns="double", doc=doc,
    args=[count("n")] + vec("x", "float") + vec("y", "float"))
add("sdsdot", impl="blas::entries::sdsdot", body=B + "sdsdot", quick=NONE, quick_result="float(double(*sb))",
    returns="float", doc=doc, args=[count("n"), scalar("sb", "float")] + vec("x", "float") + vec("y", "float"))

# ---- norms, sums, index searches
for T in SDCZ:
    C, R = T.c, T.real
    p = T.letter if not T.complex else {"c": "sc", "z": "dz"}[T.letter]
    for op, body in [("nrm2", "whole"), ("asum", "asum")]:
        add(f"{p}{op}", impl=f"blas::{op}", body=B + body, quick=NONE, returns=R, doc="norms, sums",
            args=[count("n")] + vec("x", C))
add("dcabs1", impl="abs1", body=B + "whole", returns="double", doc="norms, sums", args=[scalar("z", Z16.c)])
for op, largest in [("amax", True), ("amin", False)]:
    for T in SDCZ:
        C = T.c
        add(f"i{T.letter}{op}", impl=f"blas::iamax<elem_t<{C}>, {str(largest).lower()}>", body=B + "whole",
            quick=NONE, returns=INT,
            doc="1-based index of the largest (amax) or smallest (amin) |re| + |im|; 0 for n <= 0 or incx <= 0; "
                "the first of equal magnitudes wins",
            args=[count("n")] + vec("x", C))

# ---- plane rotations (kernels x?rot): (x, y) := (c*x + s*y, c*y - s*x); crot/zrot use conj(s) for y
for T, S_ in [(S, S), (D, D), (C8, S), (Z16, D), (C8, C8), (Z16, Z16)]:
    name = f"{T.letter}{'' if S_ is T or S_.complex else S_.letter}rot"
    C = T.c
    add(name, f"x{name}", impl="blas::rot", body=B + "pair<true>", quick=NONE,
        doc="plane rotations: (x, y) := (c*x + s*y, c*y - s*x); crot/zrot use conj(s) for y",
        args=[count("n")] + vec("x", C, out=True) + vec("y", C, out=True) + [scalar("c", T.real), scalar("s", S_.c)])

# ---- rotation generators: a and b are overwritten (a := r; b := z for the
# real forms, b untouched for the complex forms)
for T in SDCZ:
    C, R = T.c, T.real
    add(f"{T.letter}rotg", impl="blas::rotg", body=B + "whole",
        doc="rotation generators: a and b are overwritten (a := r; b := z for the real forms, "
            "b untouched for the complex forms)",
        args=[array("a", C, ALWAYS, out=True), array("b", C, ALWAYS, out=not T.complex),
              array("c", R, ALWAYS, out=True), array("s", C, ALWAYS, out=True)])

# ---- modified rotations; param = flag, h11, h21, h12, h22
for T in SD:
    C, p = T.c, T.letter
    doc = "modified rotations; param = flag, h11, h21, h12, h22"
    add(f"{p}rotm", impl="blas::rotm", body=B + "pair<true>", quick=NONE, doc=doc,
        args=[count("n")] + vec("x", C, out=True) + vec("y", C, out=True) + [array("param", C, ALWAYS)])
    add(f"{p}rotmg", impl="blas::rotmg", body=B + "whole", doc=doc,
        args=[array("d1", C, ALWAYS, out=True), array("d2", C, ALWAYS, out=True), array("x1", C, ALWAYS, out=True),
              scalar("y1", C), array("param", C, ALWAYS, out=True)])

# ---- reflectors of order 2 and 3 across contiguous vectors, vectors of rotations
for T in SDCZ:
    C, p = T.c, T.letter
    doc = "an elementary reflector of order 2 or 3 across contiguous vectors: t := (x + v*y [+ w*z])*tau; " \
          "x -= t; y -= t*v [; z -= t*w]"
    add(f"{p}rot2", impl="blas::rot2", body=B + "whole", doc=doc,
        args=[count("n"), array("x", C, ANY, out=True), array("y", C, ANY, out=True), scalar("v", C),
              scalar("tau", C)])
    add(f"{p}rot3", impl="blas::rot3", body=B + "whole", doc=doc,
        args=[count("n"), array("x", C, ANY, out=True), array("y", C, ANY, out=True), array("z", C, ANY, out=True),
              scalar("v", C), scalar("w", C), scalar("tau", C)])
for T in SDCZ:
    C = T.c
    add(f"{T.letter}lartv", impl="blas::lartv", body=B + "whole",
        doc="a vector of plane rotations, element by element: "
            "(x_i, y_i) := (c_i*x_i + s_i*y_i, c_i*y_i - conj(s_i)*x_i)",
        args=[count("n"), array("x", C, ANY, out=True), stride("incx"), array("y", C, ANY, out=True), stride("incy"),
              array("c", T.real, ANY), array("s", C, ANY), stride("incc")])

# ---- sparse level 1: (nz, x, indx) with 1-based indx into dense y
SP = "*nz > 0"
sparse = "sparse level 1: (nz, x, indx) with 1-based indx into dense y"
for T in SDCZ:
    C, p = T.c, T.letter
    add(f"{p}axpyi", impl="blas::axpyi", body=B + "whole", doc=sparse,
        args=[count("nz"), scalar("alpha", C), array("x", C, SP), array("indx", INT, SP), array("y", C, SP, out=True)])
for T, name, conj in [(S, "sdoti", False), (D, "ddoti", False), (C8, "cdotci", True), (C8, "cdotui", False),
                      (Z16, "zdotci", True), (Z16, "zdotui", False)]:
    C = T.c
    add(name, impl=f"blas::entries::doti<elem_t<{C}>, {str(conj).lower()}>", body=B + "whole", returns=C,
        doc=sparse, args=[count("nz"), array("x", C, SP), array("indx", INT, SP), array("y", C, SP)])
for T in SDCZ:
    C, p = T.c, T.letter
    add(f"{p}gthr", impl="blas::gthr", body=B + "whole", doc=sparse,
        args=[count("nz"), array("y", C, SP), array("x", C, SP, out=True), array("indx", INT, SP)])
    add(f"{p}gthrz", impl="blas::gthrz", body=B + "whole", doc=sparse,
        args=[count("nz"), array("y", C, SP, out=True), array("x", C, SP, out=True), array("indx", INT, SP)])
    add(f"{p}sctr", impl="blas::sctr", body=B + "whole", doc=sparse,
        args=[count("nz"), array("x", C, SP), array("indx", INT, SP), array("y", C, SP, out=True)])
for T in SD:
    C = T.c
    add(f"{T.letter}roti", impl="blas::roti", body=B + "whole", doc=sparse,
        args=[count("nz"), array("x", C, SP, out=True), array("indx", INT, SP), array("y", C, SP, out=True),
              scalar("c", C), scalar("s", C)])
