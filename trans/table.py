# Matrix transposition, copy and scaled addition: libork's checked entries,
# the kernel library's dispatchers behind them and the row-major kernels they
# choose from, the conjugation and cycle-set helpers. Read by
# frame/gen/orkgen.py.
from orkgen import CZ, SDCZ, Routine, array, family, flag, ld, scalar, size

f = family(
    "trans", "Transposition and scaled addition",
    public_header="include/ork/trans_entries.h",  # included by the hand-written include/ork/trans.h
    kernel_prelude="using namespace ork;\nusing namespace ork::trans;\nusing namespace ork::trans::entries;",
    core_prelude="using namespace ork::core::trans;",
)

B = "ork::core::trans::"  # the bodies, core/trans.h
U = "uint64_t"
ANY = "*rows > 0 && *cols > 0"
QUICK = "*rows == 0 || *cols == 0"
# The row-major view of the stored source: its rows and columns
VR, VC = "view_rows(ordering, rows, cols)", "view_cols(ordering, rows, cols)"


def fits(elem, rows, ld_, cols, step="1"):
    """rows rows of cols elements, ld_ apart, elements step apart: addressable"""
    return f"ork::core::addressable(sizeof({elem}), {{{{{rows}, {ld_}}}, {{{cols}, {step}}}}})"


def least(n):
    return f"at_least_one({n})"


def op_rows(t, r, c):  # rows and columns of op(X) in the view
    return f"(transposed({t}) ? {c} : {r})", f"(transposed({t}) ? {r} : {c})"


for T in SDCZ:
    C, p, E = T.c, T.letter, f"elem_t<{T.c}>"
    head = [flag("ordering", "RC"), flag("trans", "NTRC"), size("rows"), size("cols"), scalar("alpha", C)]
    br, bc = op_rows("trans", VR, VC)
    doc_copy = "B := alpha*op(A) out of place (omatcopy2: elements stridea and strideb apart)"
    f.add(Routine(f"ork_trans_{p}omatcopy", kernel=f"ork_trans_ork_{p}omatcopy", impl="omatcopy",
                  body=B + "omatcopy", quick=QUICK, doc=doc_copy,
                  args=head + [array("a", C, ANY), ld("lda", least(VC), ctype=U, reach=fits(C, VR, "*lda", VC)),
                               array("b", C, ANY, out=True),
                               ld("ldb", least(bc), ctype=U, reach=fits(C, br, "*ldb", bc))]))
    f.add(Routine(f"ork_trans_{p}omatcopy2", kernel=f"ork_trans_ork_{p}omatcopy2", impl="omatcopy2",
                  body=B + "omatcopy2", quick=QUICK, doc=doc_copy,
                  args=head + [array("a", C, ANY), ld("lda", "1", ctype=U, reach=fits(C, VR, "*lda", VC)),
                               ld("stridea", "1", ctype=U, reach=fits(C, VR, "*lda", VC, "*stridea")),
                               array("b", C, ANY, out=True), ld("ldb", "1", ctype=U, reach=fits(C, br, "*ldb", bc)),
                               ld("strideb", "1", ctype=U, reach=fits(C, br, "*ldb", bc, "*strideb"))]))
    f.add(Routine(f"ork_trans_{p}imatcopy", kernel=f"ork_trans_ork_{p}imatcopy", impl="imatcopy",
                  body=B + "imatcopy", quick=QUICK, doc="AB := alpha*op(AB) in place; the result at leading dimension ldb",
                  args=head + [array("ab", C, ANY, out=True),
                               ld("lda", least(VC), ctype=U, reach=fits(C, VR, "*lda", VC)),
                               ld("ldb", least(bc), ctype=U, reach=fits(C, br, "*ldb", bc))]))
    ar, ac = op_rows("transa", VR, VC)
    brr, bcc = op_rows("transb", VR, VC)
    f.add(Routine(f"ork_trans_{p}omatadd", kernel=f"ork_trans_ork_{p}omatadd", impl="omatadd",
                  body=B + "omatadd", quick=QUICK, doc="C := alpha*op(A) + beta*op(B); rows and cols are C's",
                  args=[flag("ordering", "RC"), flag("transa", "NTRC"), flag("transb", "NTRC"), size("rows"),
                        size("cols"), scalar("alpha", C), array("a", C, ANY),
                        ld("lda", least(ac), ctype=U, reach=fits(C, ar, "*lda", ac)), scalar("beta", C),
                        array("b", C, ANY), ld("ldb", least(bcc), ctype=U, reach=fits(C, brr, "*ldb", bcc)),
                        array("c", C, ANY, out=True), ld("ldc", least(VC), ctype=U, reach=fits(C, VR, "*ldc", VC))]))

# ---- the row-major kernels: the dispatcher's name plus rec_<op>
# (omatcopy, omatcopy2), square_<op> (rows = cols = lda = ldb; cols and ldb
# unread), mipt_<op> (in place from lda to ldb by cycle following), <opA><opB>
# (omatadd, rows x cols of C) and rec_nt (C := alpha*C + beta*B^T in place,
# the recursion behind omatadd_nt when C is A); r and c conjugate.
KDOC = "row-major kernels of the dispatchers, by operation"
for T in SDCZ:
    C, p, E = T.c, T.letter, f"elem_t<{T.c}>"
    ops = [("n", "rec_n", "false", "square_n", "mipt_n"), ("t", "rec_t", "false", "square_t", "mipt_t")]
    adds = ["nn", "nt", "tt"]
    if T.complex:
        ops += [("r", "rec_n", "true", "square_n", "mipt_n"), ("c", "rec_t", "true", "square_t", "mipt_t")]
        adds += ["nc", "tc", "cc", "rn", "rt", "rr", "rc"]
    rc = [size("rows"), size("cols"), scalar("alpha", C)]
    for o, rec, conj, sq, mipt in ops:
        k = f"ork_trans_ork_{p}"
        f.add(Routine(f"{k}omatcopy_rec_{o}", kernel=f"{k}omatcopy_rec_{o}", checked=False, doc=KDOC,
                      impl=f"unit_strides<{rec}<{E}, {conj}>>",
                      args=rc + [array("a", C), size("lda"), array("b", C, out=True), size("ldb")]))
        f.add(Routine(f"{k}omatcopy2_rec_{o}", kernel=f"{k}omatcopy2_rec_{o}", checked=False, doc=KDOC,
                      impl=f"{rec}<{E}, {conj}>",
                      args=rc + [array("a", C), size("lda"), size("stridea"), array("b", C, out=True), size("ldb"),
                                 size("strideb")]))
        inplace = rc + [array("ab", C, out=True), size("lda"), size("ldb")]
        f.add(Routine(f"{k}imatcopy_square_{o}", kernel=f"{k}imatcopy_square_{o}", checked=False, doc=KDOC,
                      impl=f"square<{sq}<{E}, {conj}>>", args=inplace))
        f.add(Routine(f"{k}imatcopy_mipt_{o}", kernel=f"{k}imatcopy_mipt_{o}", checked=False, doc=KDOC,
                      impl=f"{mipt}<{E}, {conj}>", args=inplace))
    for xy in adds:
        f.add(Routine(f"ork_trans_ork_{p}omatadd_{xy}", kernel=f"ork_trans_ork_{p}omatadd_{xy}", checked=False,
                      doc=KDOC, impl=f"add<{E}, op::{xy[0]}, op::{xy[1]}>",
                      args=rc + [array("a", C), size("lda"), scalar("beta", C), array("b", C), size("ldb"),
                                 array("c", C, out=True), size("ldc")]))
    f.add(Routine(f"ork_trans_ork_{p}omatadd_rec_nt", kernel=f"ork_trans_ork_{p}omatadd_rec_nt", checked=False,
                  doc=KDOC, impl=f"add_rec_nt<{E}, false, false>",
                  args=rc + [array("c", C, out=True), size("ldc"), scalar("beta", C), array("b", C), size("ldb")]))

# ---- x := conj(x) over n elements; a bit set over 64-bit words of positions
# known not to lead a permutation cycle (word k/64, bit k mod 64)
HDOC = "x := conj(x) over n elements; the set of positions known not to lead a cycle (word k/64, bit k mod 64)"
for T in CZ:
    f.add(Routine(f"ork_{T.letter}conj", kernel=f"ork_{T.letter}conj", checked=False, doc=HDOC,
                  impl="conj_vector", args=[size("n"), array("x", T.c, out=True)]))
f.add(Routine("ork_trans_know_false_cycle", kernel="ork_trans_know_false_cycle", checked=False, doc=HDOC,
              impl="know_false_cycle", args=[array("set", "uint64_t", out=True), size("k")]))
f.add(Routine("ork_trans_is_known_false_cycle", kernel="ork_trans_is_known_false_cycle", checked=False, doc=HDOC,
              impl="is_known_false_cycle", returns="int", args=[array("set", "uint64_t"), size("k")]))
