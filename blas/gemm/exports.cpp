// Export table of the matrix-multiply engine: drivers, their building blocks
// and the loop-nest pieces, for s, d, c and z. Each line unwraps its
// by-address arguments and forwards to a template of blas/gemm/.
#include "blas/gemm/pieces.h"
#include "ork/gemm_kernels.h"

using namespace ork;
using namespace ork::gemm;

namespace {

template <class T, class C>
void driver(const char* ta, const char* tb, const ork_int* m, const ork_int* n, const ork_int* k, const C* alpha,
            const C* a, const ork_int* lda, const C* b, const ork_int* ldb, const C* beta, C* c, const ork_int* ldc) {
    product<T>(trans_of<T>(ta), trans_of<T>(tb), *m, *n, *k, *as_elem(alpha), as_elem(a), *lda, as_elem(b), *ldb,
               *as_elem(beta), as_elem(c), *ldc, *ta);
}

// What the generation's engine does for a product of depth k (gemm_kernels.h).
template <class T> void layout(idx k, ork_int* info) {
    using P = tuning<T>;
    info[0] = P::ra;
    info[1] = P::q;
    for (int i = 0; i < 3; ++i) info[2 + i] = P::widths[i];
    info[5] = P::scratch;
    info[6] = P::fused;
    idx first = -1, full = 0;
    engine<T>::depth_blocks(k, [&](idx, idx kk) {
        if (first < 0) first = kk;
        if (kk > full) full = kk;
    });
    info[7] = full;
    info[8] = first >= 0 && first < full;
}

}  // namespace

// ---- drivers
#define ORK_GEMM_DRIVER(name, T, C) \
    ORK_API void ork_blas_##name(const char* ta, const char* tb, const ork_int* m, const ork_int* n, const ork_int* k, const C* alpha, const C* a, const ork_int* lda, const C* b, const ork_int* ldb, const C* beta, C* c, const ork_int* ldc) { driver<T>(ta, tb, m, n, k, alpha, a, lda, b, ldb, beta, c, ldc); }
ORK_GEMM_DRIVER(xsgemm, float, float)
ORK_GEMM_DRIVER(xdgemm, double, double)
ORK_GEMM_DRIVER(xcgemm, cx<float>, ork_complex8)
ORK_GEMM_DRIVER(xzgemm, cx<double>, ork_complex16)

// ---- the alternative engine for AMD family-10h parts (no processor test)
#define ORK_GEMM_BRC(name, T) \
    ORK_API void ork_blas_##name(const char* ta, const char* tb, const ork_int* m, const ork_int* n, const ork_int* k, const T* alpha, const T* a, const ork_int* lda, const T* b, const ork_int* ldb, const T* beta, T* c, const ork_int* ldc) { gemm::gemm<T, brc_engine<T>>(trans_of<T>(ta), trans_of<T>(tb), *m, *n, *k, *alpha, a, *lda, b, *ldb, *beta, c, *ldc, *ta); }
ORK_GEMM_BRC(xdgemm0_brc, double)
ORK_GEMM_BRC(xdgemm1_brc, double)
ORK_GEMM_BRC(xsgemm0_brc, float)

// ---- building blocks: C scaling and clearing, the plain product, packers,
// inner kernels. p: BLAS letter; T: kernel type; C: C type of the header.
#define ORK_GEMM_BLOCKS(p, T, C) \
    ORK_API void ork_blas_##p##gemm_scalm(const ork_int* m, const ork_int* n, const C* beta, C* c, const ork_int* ldc) { scalm(*m, *n, *as_elem(beta), as_elem(c), *ldc); } \
    ORK_API void ork_blas_##p##gemm_zerom(const ork_int* m, const ork_int* n, C* c, const ork_int* ldc) { zerom(*m, *n, as_elem(c), *ldc); } \
    ORK_API void ork_blas_##p##gemm_pst(const char* ta, const char* tb, const ork_int* m, const ork_int* n, const ork_int* k, const C* alpha, const C* a, const ork_int* lda, const C* b, const ork_int* ldb, const C* beta, C* c, const ork_int* ldc) { pst(trans_of<T>(ta), trans_of<T>(tb), *m, *n, *k, *as_elem(alpha), as_elem(a), *lda, as_elem(b), *ldb, *as_elem(beta), as_elem(c), *ldc); } \
    ORK_API ork_int ork_blas_##p##gemm_copyan(const ork_int* h, const ork_int* kk, const C* a, const ork_int* lda, C* dest, const C* alpha) { return pack_a('N', *h, *kk, as_elem(a), *lda, as_elem(dest), *as_elem(alpha)); } \
    ORK_API ork_int ork_blas_##p##gemm_copyat(const ork_int* h, const ork_int* kk, const C* a, const ork_int* lda, C* dest, const C* alpha) { return pack_a('T', *h, *kk, as_elem(a), *lda, as_elem(dest), *as_elem(alpha)); } \
    ORK_API void ork_blas_##p##gemm_copybn(const ork_int* kk, const ork_int* w, const C* b, const ork_int* ldb, C* dest) { pack_b('N', *kk, *w, as_elem(b), *ldb, as_elem(dest)); } \
    ORK_API void ork_blas_##p##gemm_copybt(const ork_int* kk, const ork_int* w, const C* b, const ork_int* ldb, C* dest) { pack_b('T', *kk, *w, as_elem(b), *ldb, as_elem(dest)); } \
    ORK_API void ork_blas_##p##gemm_inner(const ork_int* h, const ork_int* w, const ork_int* kkr, const C* pa, const C* pb, ork_int*, C* c, const ork_int* ldc, void* scratch, const C*) { inner::multiply(*h, *w, *kkr, as_elem(pa), as_elem(pb), as_elem(c), *ldc, scratch); } \
    ORK_API void ork_blas_##p##gemm_inner_general(const ork_int* h, const ork_int* w, const ork_int* kkr, const C* pa, const C* pb, ork_int*, C* c, const ork_int* ldc, void* scratch, const C*) { inner::multiply_block(*h, *w, *kkr, as_elem(pa), as_elem(pb), as_elem(c), *ldc, scratch); }
ORK_GEMM_BLOCKS(s, float, float)
ORK_GEMM_BLOCKS(d, double, double)
ORK_GEMM_BLOCKS(c, cx<float>, ork_complex8)
ORK_GEMM_BLOCKS(z, cx<double>, ork_complex16)
// conjugate-transposed sources of the complex packers
#define ORK_GEMM_CONJ_PACKERS(p, C) \
    ORK_API ork_int ork_blas_##p##gemm_copyac(const ork_int* h, const ork_int* kk, const C* a, const ork_int* lda, C* dest, const C* alpha) { return pack_a('C', *h, *kk, as_elem(a), *lda, as_elem(dest), *as_elem(alpha)); } \
    ORK_API void ork_blas_##p##gemm_copybc(const ork_int* kk, const ork_int* w, const C* b, const ork_int* ldb, C* dest) { pack_b('C', *kk, *w, as_elem(b), *ldb, as_elem(dest)); }
ORK_GEMM_CONJ_PACKERS(c, ork_complex8)
ORK_GEMM_CONJ_PACKERS(z, ork_complex16)

// ---- loop-nest pieces for threading. name prefix, kernel type, C type.
// _0: C += alpha*op(A)*op(B), column blocks outermost; _1: row blocks
// outermost (same result bit for bit). Unlike the drivers, both compute what
// the packed path leaves over in the packed kernel's order, so an element's
// bits do not depend on the shape of the call. b-packed, ab-packed and a-packed
// pieces work on panels their caller has packed.
#define ORK_GEMM_PIECES(x, bpk, abpk, apk, T, C) \
    ORK_API void ork_blas_##x##_0(const char* ta, const char* tb, const ork_int* m, const ork_int* n, const ork_int* k, const C* alpha, const C* a, const ork_int* lda, const C* b, const ork_int* ldb, C* c, const ork_int* ldc) { accumulate_uniform<T, engine<T>, false>(trans_of<T>(ta), trans_of<T>(tb), *m, *n, *k, *as_elem(alpha), as_elem(a), *lda, as_elem(b), *ldb, as_elem(c), *ldc); } \
    ORK_API void ork_blas_##x##_1(const char* ta, const char* tb, const ork_int* m, const ork_int* n, const ork_int* k, const C* alpha, const C* a, const ork_int* lda, const C* b, const ork_int* ldb, C* c, const ork_int* ldc) { accumulate_uniform<T, engine<T>, true>(trans_of<T>(ta), trans_of<T>(tb), *m, *n, *k, *as_elem(alpha), as_elem(a), *lda, as_elem(b), *ldb, as_elem(c), *ldc); } \
    ORK_API void ork_blas_##x##bpk(const char* ta, const ork_int* m, const ork_int* kk, const ork_int* w, const C* alpha, const C* a, const ork_int* lda, const C* pb, C* c, const ork_int* ldc) { b_packed(trans_of<T>(ta), *m, *kk, *w, *as_elem(alpha), as_elem(a), *lda, as_elem(pb), as_elem(c), *ldc); } \
    ORK_API void ork_blas_##x##abpk(const ork_int* h, const ork_int* w, const ork_int* kkr, const C* pa, const C* pb, C* c, const ork_int* ldc) { ab_packed(*h, *w, *kkr, as_elem(pa), as_elem(pb), as_elem(c), *ldc); } \
    ORK_API void ork_blas_##x##apk(const char* tb, const ork_int* kk, const ork_int* n, const ork_int* h, const C* pa, const C* b, const ork_int* ldb, C* c, const ork_int* ldc) { a_packed(trans_of<T>(tb), *kk, *n, *h, as_elem(pa), as_elem(b), *ldb, as_elem(c), *ldc); }
ORK_GEMM_PIECES(xsgemm, _0_bcopied, _0_abcopied, _1_acopied_in_thread, float, float)
ORK_GEMM_PIECES(xdgemm, _0_bcopied, _0_abcopied, _1_acopied_in_thread, double, double)
ORK_GEMM_PIECES(xcgemm, _bcopied, _abcopied, _acopied_in_thread, cx<float>, ork_complex8)
ORK_GEMM_PIECES(xzgemm, _bcopied, _abcopied, _acopied_in_thread, cx<double>, ork_complex16)

// ---- the loaded generation's layout and depth blocks
ORK_API void ork_blas_sgemm_layout(const ork_int* k, ork_int* info) { layout<float>(*k, info); }
ORK_API void ork_blas_dgemm_layout(const ork_int* k, ork_int* info) { layout<double>(*k, info); }
ORK_API void ork_blas_cgemm_layout(const ork_int* k, ork_int* info) { layout<cx<float>>(*k, info); }
ORK_API void ork_blas_zgemm_layout(const ork_int* k, ork_int* info) { layout<cx<double>>(*k, info); }
