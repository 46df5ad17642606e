# The matrix-multiply engine: libork's ?gemm entries, the drivers behind
# them, their building blocks and the loop-nest pieces libork's threading
# runs. One row per routine and element type. Read by frame/gen/orkgen.py.
from orkgen import CZ, INT, SDCZ, C as C_, D, S, Z, Routine, array, dim, family, flag, index, ld, scalar, workspace

f = family(
    "gemm", "The matrix-multiply engine",
    kernel_header_includes=["ork/gemm_family_kernels.h"],
    kernel_prelude="using namespace ork;\nusing namespace ork::gemm;\nusing namespace ork::gemm::entries;",
)

B = "ork::core::gemm::"  # the bodies, core/gemm.h
MN = "*m > 0 && *n > 0"


def product_args(A, C, given=False, beta=True):
    """transa, transb, m, n, k, alpha, a, lda, b, ldb[, beta], c, ldc of a
    product C := alpha*op(A)*op(B) + beta*C, A of element type A; the
    string transa as given (to pass its letter on as written) when `given`"""
    na, nb = 'check::is(transa, "N")', 'check::is(transb, "N")'
    rows_a, cols_a = f"{na} ? *m : *k", f"{na} ? *k : *m"
    rows_b, cols_b = f"{nb} ? *k : *n", f"{nb} ? *n : *k"
    reads = f"{MN} && *k > 0"
    return ([flag("transa", "NTC", as_given=given), flag("transb", "NTC"), dim("m"), dim("n"), dim("k"),
             scalar("alpha", C), array("a", A, reads), ld("lda", f"check::at_least_1({rows_a})", A, rows_a, cols_a),
             array("b", C, reads), ld("ldb", f"check::at_least_1({rows_b})", C, rows_b, cols_b)]
            + ([scalar("beta", C)] if beta else [])
            + [array("c", C, MN, out=True), ld("ldc", "check::at_least_1(*m)", C, "*m", "*n")])


PRODUCT_QUICK = "*m == 0 || *n == 0 || ((*k == 0 || check::is_zero(*alpha)) && check::is_one(*beta))"


def T_(C):
    return f"elem_t<{C}>"


# ---- the drivers behind libork's entries, and the alternative engine
for T in SDCZ:
    C, p = T.c, T.letter
    f.add(Routine(f"ork_blas_{p}gemm", kernel=f"ork_blas_x{p}gemm", impl=f"driver<{T_(C)}>", body=B + "gemm",
                  quick=PRODUCT_QUICK,
                  doc="C := alpha*op(A)*op(B) + beta*C, op by the first letter of transa and transb: N, T or C "
                      "(C conjugates; for real types T and C agree); long products are split over threads by "
                      "columns (or rows) of C, the same bits whatever the number of threads",
                  kernel_doc="---- drivers; the real ones hand AMD family-10h parts to the _brc engine",
                  args=product_args(C, C, given=True)))
for name, T in [("xdgemm0_brc", "double"), ("xdgemm1_brc", "double"), ("xsgemm0_brc", "float")]:
    f.add(Routine(f"ork_blas_{name}", kernel=f"ork_blas_{name}", checked=False, bound=False, impl=f"brc<{T}>",
                  doc="the alternative engine for AMD family-10h parts, same arguments",
                  args=product_args(T, T, given=True)))

# ---- building blocks
BLOCKS = """---- building blocks
 * scalm: C := beta*C (beta = 0 stores zeros); zerom: C := 0;
 * pst: the plain product C := alpha*op(A)*op(B) + beta*C;
 * copya?: pack alpha*op(A) rows h x kk, returns the rows packed (whole groups
 *   of the generation's group height, ?gemm_layout);
 * copyb?: pack op(B) kk x w (w a multiple of the generation's q);
 * inner, inner_general: C += packed A * packed B over a depth kkr (a
 *   multiple of 4) with kkr times the layout's scratch bytes of 64-byte
 *   aligned scratch; the cell and the beta copies are accepted and not used.
 * layout: what the loaded generation's engine does for a product of depth k:
 *   info[0] rows of a packed A group, info[1] q, info[2..4] the panel widths
 *   of packed B (as many of the first as fit, then at most one of each
 *   narrower one), info[5] scratch bytes per depth row, info[6] 1 when the
 *   kernel sums with fused multiply-adds, info[7] the depth of a full depth
 *   block, info[8] 1 when the short depth block comes first (else last)."""


def block(name, impl, args, returns="void", bound=False):
    f.add(Routine(name, kernel=name, checked=False, bound=bound, impl=impl, returns=returns, doc=BLOCKS, args=args))


for T in SDCZ:
    block(f"ork_blas_{T.letter}gemm_layout", f"layout<{T_(T.c)}>", [index("k"), array("info", INT, out=True)])
for T in SDCZ:
    C, p, E = T.c, T.letter, T_(T.c)
    ops = "NTC" if T.complex else "NT"
    block(f"ork_blas_{p}gemm_scalm", "scalm", [dim("m"), dim("n"), scalar("beta", C), array("c", C, out=True),
                                               ld("ldc", "1")], bound=True)
    block(f"ork_blas_{p}gemm_zerom", "zerom", [dim("m"), dim("n"), array("c", C, out=True), ld("ldc", "1")],
          bound=T.complex)
    block(f"ork_blas_{p}gemm_pst", f"plain<{E}>", product_args(C, C))
    for op in ops:
        block(f"ork_blas_{p}gemm_copya{op.lower()}", f"copy_a<'{op}'>",
              [index("h"), index("kk"), array("a", C), ld("lda", "1"), array("dest", C, out=True),
               scalar("alpha", C)], returns=INT)
    for op in ops:
        block(f"ork_blas_{p}gemm_copyb{op.lower()}", f"copy_b<'{op}'>",
              [index("kk"), index("w"), array("b", C), ld("ldb", "1"), array("dest", C, out=True)])
    for name in ("inner", "inner_general"):
        block(f"ork_blas_{p}gemm_{name}", f"{'inner_kernel' if name == 'inner' else name}<{E}>",
              [index("h"), index("w"), index("kkr"), array("packed_a", C), array("packed_b", C),
               array("cell", INT, out=True), array("c", C, out=True), ld("ldc", "1"), workspace("scratch"),
               array("beta_copies", C)])

# ---- the loop-nest pieces
PIECES = """---- loop-nest pieces (C must already hold beta*C)
 * _0: C += alpha*op(A)*op(B), column blocks outermost; _1: the same result,
 *   bit for bit, with row blocks outermost;
 * _bcopied: the packed rows (whole groups) of m x w against a kk x w panel
 *   of op(B) packed by copyb?; leftover rows untouched;
 * _abcopied: the inner kernel alone on packed A (h rows) and packed B;
 * _acopied_in_thread: packed A (h rows, depth kk) against op(B)(kk x n),
 *   which it packs; the last n mod q columns untouched.
 * Packed operands must be 16-byte aligned."""
for T in SDCZ:
    C, p, E = T.c, T.letter, T_(T.c)
    x = f"ork_blas_x{p}gemm"
    real = "_0" if not T.complex else ""
    pieces = [(f"{x}_0", f"uniform<{E}, false>", product_args(C, C, beta=False), True),
              (f"{x}_1", f"uniform<{E}, true>", product_args(C, C, beta=False), True),
              (f"{x}{real}_bcopied", f"against_b<{E}>",
               [flag("transa", "NTC"), index("m"), index("kk"), index("w"), scalar("alpha", C), array("a", C),
                ld("lda", "1"), array("packed_b", C), array("c", C, out=True), ld("ldc", "1")], False),
              (f"{x}{real}_abcopied", "ab_packed",
               [index("h"), index("w"), index("kkr"), array("packed_a", C), array("packed_b", C),
                array("c", C, out=True), ld("ldc", "1")], False),
              (f"{x}{'_1' if not T.complex else ''}_acopied_in_thread", f"against_a<{E}>",
               [flag("transb", "NTC"), index("kk"), index("n"), index("h"), array("packed_a", C), array("b", C),
                ld("ldb", "1"), array("c", C, out=True), ld("ldc", "1")], False)]
    for name, impl, args, bound in pieces:
        f.add(Routine(name, kernel=name, checked=False, bound=bound, impl=impl, doc=PIECES, args=args))


# ================================================================ the family
# Complex products from three real products, real-times-complex products,
# the family-10h engine's building blocks and pieces, and the htn pieces of
# libork's threading.
g = family(
    "gemm_family", "The matrix-multiply family",
    kernel_source="blas/gemm/exports_family.cpp",  # the engine's table, shims apart
    kernel_prelude="using namespace ork;\nusing namespace ork::gemm;\nusing namespace ork::gemm::entries;",
)
FAMILY_DOC = ("C := alpha*op(A)*op(B) + beta*C, arguments as in ?gemm. cgemm3m, zgemm3m: the complex product from "
              "three real products (per term, Re = Ar*Br - Ai*Bi, Im = (Ar + Ai)*(Br + Bi) - Ar*Br - Ai*Bi, with "
              "A' = alpha*op(A)): faster, the imaginary part accurate relative to (|Ar| + |Ai|)*(|Br| + |Bi|) "
              "rather than to its terms. scgemm, dzgemm: A real (op(A) by transa: N, or T and C alike), alpha, "
              "beta, B and C complex. Long products are split over threads by columns of C; the result is the same "
              "bits whatever the number of threads")


def kernel(name, impl, args, doc, returns="void"):
    g.add(Routine(name, kernel=name, checked=False, bound=False, impl=impl, returns=returns, doc=doc, args=args))


def copy_a_args(C, dest):
    return [index("h"), index("kk"), array("a", C), ld("lda", "1"), array("dest", dest, out=True), scalar("alpha", C)]


def copy_b_args(C, dest):
    return [index("kk"), index("w"), array("b", C), ld("ldb", "1"), array("dest", dest, out=True)]


# ---- three real products
THREE = """---- complex products from three real products: x?gemm3m has the
 * arguments and beta pass of x?gemm. With A' = alpha*op(A) = Ar + i*Ai and
 * op(B) = Br + i*Bi, per depth block P1 = Ar*Br, P2 = Ai*Bi,
 * P3 = (Ar + Ai)*(Br + Bi); Re C += P1 - P2, Im C += (P3 - P1) - P2, the
 * products by the real inner kernel.
 * ?gemm3m_copya?: part `part` of alpha*op(A) rows h x kk (op by the last
 *   letter: n, t, c), in the packed A layout of the real type (float for c,
 *   double for z); returns the rows packed (whole groups, as the real
 *   type's copyan);
 * ?gemm3m_copyb?: part `part` of op(B) kk x w (w a multiple of 4) in the
 *   packed B layout of the real type;
 * part: 0 real part, 1 imaginary part, 2 (or anything else) their sum."""
for T in CZ:
    C, p, R = T.c, T.letter, T.real
    g.add(Routine(f"ork_blas_{p}gemm3m", kernel=f"ork_blas_x{p}gemm3m", impl=f"three_products<{R}>",
                  body=B + "product", quick=PRODUCT_QUICK, doc=FAMILY_DOC, kernel_doc=THREE,
                  args=product_args(C, C)))
    for op in "NTC":
        kernel(f"ork_blas_{p}gemm3m_copya{op.lower()}", f"copy_a3m<'{op}'>", copy_a_args(C, R) + [index("part")],
               THREE, returns=INT)
    for op in "NTC":
        kernel(f"ork_blas_{p}gemm3m_copyb{op.lower()}", f"copy_b3m<'{op}'>", copy_b_args(C, R) + [index("part")],
               THREE)

# ---- real A times complex B
MIXED = """---- real A times complex B: C := alpha*op(A)*op(B) + beta*C with A real
 * (op(A) by transa: N, or T and C alike), alpha, beta, B and C complex.
 * x??gemm: the beta pass (mscale), then per block B' = alpha*op(B) is
 *   separated (copyb), C separated (copyc_fwd), Re C += op(A)*Re B' and
 *   Im C += op(A)*Im B' by x?gemm (transb N), and C interleaved back
 *   (copyc_bwd); m or k below 8 and the last n mod 8 columns take ??gemm_pst.
 * ??gemm_mscale: C := beta*C (beta = 0 clears C, beta = 1 leaves it);
 * ??gemm_pst: the plain product with the arguments of x??gemm;
 * ??gemm_copyb: b_re, b_im (leading dimension ld) := Re, Im of
 *   alpha*op(B)(0 .. kk-1, 0 .. w-1), op by transb: N, T or C;
 * ??gemm_copyc_fwd: c_re, c_im (leading dimension ld) := Re, Im of C, m x n;
 *   copyc_bwd: C := c_re + i*c_im;
 * ??gemm_getbufs: the one workspace of x??gemm (50256384 bytes for dz,
 *   45136384 for sc, from ork_serv_allocate): returns the block for
 *   ??gemm_freebufs (null when memory is exhausted) and sets its regions,
 *   b_re and b_im of kb x nb, c_re and c_im of mb x nb (leading dimensions kb
 *   and mb; dz: kb = 2048, mb = 4080, nb = 512; sc: kb = 4096, mb = 6912,
 *   nb = 512)."""
for T, pc in [(Z, "dz"), (C_, "sc")]:
    C, R = T.c, T.real
    g.add(Routine(f"ork_blas_{pc}gemm", kernel=f"ork_blas_x{pc}gemm", impl=f"mixed<{R}>", body=B + "product",
                  quick=PRODUCT_QUICK, doc=FAMILY_DOC, kernel_doc=MIXED, args=product_args(R, C)))
    kernel(f"ork_blas_{pc}gemm_mscale", f"mscale<{R}>",
           [dim("m"), dim("n"), scalar("beta", C), array("c", C, out=True), ld("ldc", "1")], MIXED)
    kernel(f"ork_blas_{pc}gemm_pst", f"mixed_plain<{R}>", product_args(R, C), MIXED)
    kernel(f"ork_blas_{pc}gemm_copyb", f"mixed_split_b<{R}>",
           [flag("transb", "NTC"), index("kk"), index("w"), array("b", C), ld("ldb", "1"), scalar("alpha", C),
            array("b_re", R, out=True), array("b_im", R, out=True), ld("ld", "1")], MIXED)
    kernel(f"ork_blas_{pc}gemm_copyc_fwd", f"split_c<{R}>",
           [dim("m"), dim("n"), array("c", C), ld("ldc", "1"), array("c_re", R, out=True),
            array("c_im", R, out=True), ld("ld", "1")], MIXED)
    kernel(f"ork_blas_{pc}gemm_copyc_bwd", f"join_c<{R}>",
           [dim("m"), dim("n"), array("c_re", R), array("c_im", R), ld("ld", "1"), array("c", C, out=True),
            ld("ldc", "1")], MIXED)
    kernel(f"ork_blas_{pc}gemm_getbufs", f"mixed_getbufs<{R}>",
           [array(x, R + " *", out=True) for x in ("b_re", "b_im", "c_re", "c_im")], MIXED, returns="void *")
    kernel(f"ork_blas_{pc}gemm_freebufs", "mixed_freebufs", [workspace("block")], MIXED)

# ---- the family-10h engine
BRC = """---- the family-10h engine (depth blocks of 256, row blocks of 256 rows
 * rounded down to whole groups; the packed layouts of the main engine)
 * ?gemm_blk_info_*: info[0] = kb (depth of a full depth block), info[1] = mb
 *   (rows of a full row block), info[2] = nb (columns of a column block for
 *   this n) of the m x n x k product;
 * ?gemm_getbufs_brc: the engine's workspace for m x n x k: returns the block
 *   for ?gemm_freebufs_brc (null when memory is exhausted) and sets its
 *   regions: packed A (mb x kb), packed B (kb x nb), the kernel's scratch
 *   (kb*192 bytes);
 * copya?_0_brc, copyb?_brc: the packers (as ?gemm_copya?, ?gemm_copyb?);
 * ?gemm_kernel0_0_brc: C += packed A (h rows) * packed B (w columns) over a
 *   depth kkr (a multiple of 4), with the caller's scratch (kkr*192 bytes,
 *   16-byte aligned);
 * ?gemm_mscale_brc: C := beta*C (beta = 0 stores zeros, 1 leaves C);
 * ?gemm_pst_brc: the plain product, as ?gemm_pst;
 * pieces x?gemm?_brc_*: as the main engine's x?gemm_0, _1, _0_bcopied,
 *   _0_abcopied and _1_acopied_in_thread, with this engine's blocking."""


def blk_info(name, R, engine, doc):
    kernel(name, f"blk_info<{R}, {engine}>", [index("m"), index("n"), index("k"), array("info", INT, out=True)], doc)


def pieces(R, E, engine, doc, names):
    """the loop-nest pieces over `engine` (elements of C type R, kernel type
    E), under the names given by role"""
    for role, name in names:
        if role in ("cols", "rows"):
            impl = f"{'columns' if role == 'cols' else 'rows'}<{E}, {engine}>"
            kernel(name, impl, [flag("transa", "NTC", as_given=True)] + product_args(R, R, beta=False)[1:], doc)
        elif role == "b":
            kernel(name, f"against_b<{E}, {engine}>",
                   [flag("transa", "NTC"), index("m"), index("kk"), index("w"), scalar("alpha", R), array("a", R),
                    ld("lda", "1"), array("packed_b", R), array("c", R, out=True), ld("ldc", "1")], doc)
        elif role == "ab":
            kernel(name, "ab_packed", [index("h"), index("w"), index("kkr"), array("packed_a", R),
                                       array("packed_b", R), array("c", R, out=True), ld("ldc", "1")], doc)
        else:
            kernel(name, f"against_a<{E}, {engine}>",
                   [flag("transb", "NTC"), index("kk"), index("n"), index("h"), array("packed_a", R), array("b", R),
                    ld("ldb", "1"), array("c", R, out=True), ld("ldc", "1")], doc)


for T, blk in [(D, ["0", "1"]), (S, ["0"])]:
    R, p = T.c, T.letter
    E = f"brc_engine<{R}>"
    for b in blk:
        blk_info(f"ork_blas_{p}gemm_blk_info_{b}_brc", R, E, BRC)
    kernel(f"ork_blas_{p}gemm_getbufs_brc", f"get_bufs<{R}, {E}>",
           [index("m"), index("n"), index("k"), array("packed_a", R + " *", out=True),
            array("packed_b", R + " *", out=True), array("scratch", "void *", out=True)], BRC, returns="void *")
    kernel(f"ork_blas_{p}gemm_freebufs_brc", "ork_serv_deallocate", [workspace("block")], BRC)
    for op in "NT":
        kernel(f"ork_blas_{p}gemm_copya{op.lower()}_0_brc", f"copy_a<'{op}'>", copy_a_args(R, R), BRC, returns=INT)
    for op in "NT":
        kernel(f"ork_blas_{p}gemm_copyb{op.lower()}_brc", f"copy_b<'{op}'>", copy_b_args(R, R), BRC)
    kernel(f"ork_blas_{p}gemm_kernel0_0_brc", "inner::multiply_block",
           [index("h"), index("w"), index("kkr"), array("packed_a", R), array("packed_b", R),
            array("c", R, out=True), ld("ldc", "1"), workspace("scratch")], BRC)
    kernel(f"ork_blas_{p}gemm_mscale_brc", "scale_unless_one",
           [dim("m"), dim("n"), scalar("beta", R), array("c", R, out=True), ld("ldc", "1")], BRC)
    kernel(f"ork_blas_{p}gemm_pst_brc", f"plain<{R}>", product_args(R, R), BRC)
for x, R in [("xdgemm1_brc", "double"), ("xdgemm0_brc", "double"), ("xsgemm0_brc", "float")]:
    pieces(R, R, f"brc_engine<{R}>", BRC,
           [("cols", f"ork_blas_{x}_0"), ("rows", f"ork_blas_{x}_1"), ("b", f"ork_blas_{x}_bcopied"),
            ("ab", f"ork_blas_{x}_abcopied"), ("a", f"ork_blas_{x}_acopied")])

# ---- the htn blocking of libork's threading
HTN = """---- the htn blocking of libork's threading (depth blocks of 192, row
 * blocks of 384; the packed layouts of the main engine)
 * ?gemm_blk_info_htn: as ?gemm_blk_info_0_brc;
 * ?gemm_copy*_htn: the packers (as ?gemm_copy*);
 * x?gemm_0_bcopied_htn, _0_abcopied_htn, _1_acopied_htn: as the main
 *   engine's pieces on packed operands, with this blocking;
 * x?gemm_1_thr_htn: C += alpha*op(A)*op(B) for one thread's slab of C (the
 *   caller passes the slab's rows of op(A), columns of op(B) and block of C),
 *   row blocks outermost."""
for T in SDCZ:
    C, p, E = T.c, T.letter, T_(T.c)
    engine = f"htn_engine<{E}>"
    blk_info(f"ork_blas_{p}gemm_blk_info_htn", E, engine, HTN)
    ops = "NTC" if T.complex else "NT"
    for op in ops:
        kernel(f"ork_blas_{p}gemm_copya{op.lower()}_htn", f"copy_a<'{op}'>", copy_a_args(C, C), HTN, returns=INT)
    for op in ops:
        kernel(f"ork_blas_{p}gemm_copyb{op.lower()}_htn", f"copy_b<'{op}'>", copy_b_args(C, C), HTN)
    x = f"ork_blas_x{p}gemm"
    pieces(C, E, engine, HTN, [("b", f"{x}_0_bcopied_htn"), ("ab", f"{x}_0_abcopied_htn"),
                               ("a", f"{x}_1_acopied_htn"), ("rows", f"{x}_1_thr_htn")])
