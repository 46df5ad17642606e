// Export table of the matrix-multiply family: complex products from three
// real products, real-times-complex products, the family-10h engine's
// building blocks and pieces, and the htn pieces of libork's threading. Each
// line unwraps its by-address arguments and forwards to a template of
// blas/gemm/.
#include "blas/gemm/gemm3m.h"
#include "blas/gemm/htn.h"
#include "blas/gemm/mixed.h"
#include "ork/gemm_kernels.h"

using namespace ork;
using namespace ork::gemm;

namespace {

}  // namespace

// ---- three real products. p: BLAS letter; R: real type; C: complex C type.
#define ORK_GEMM3M(p, R, C) \
    ORK_API void ork_blas_x##p##gemm3m(const char* ta, const char* tb, const ork_int* m, const ork_int* n, const ork_int* k, const C* alpha, const C* a, const ork_int* lda, const C* b, const ork_int* ldb, const C* beta, C* c, const ork_int* ldc) { gemm3m<R>(trans_of<cx<R>>(ta), trans_of<cx<R>>(tb), *m, *n, *k, *as_elem(alpha), as_elem(a), *lda, as_elem(b), *ldb, *as_elem(beta), as_elem(c), *ldc); } \
    ORK_API ork_int ork_blas_##p##gemm3m_copyan(const ork_int* h, const ork_int* kk, const C* a, const ork_int* lda, R* dest, const C* alpha, const ork_int* part) { return pack_a3m_part<R>('N', *h, *kk, as_elem(a), *lda, dest, *as_elem(alpha), *part); } \
    ORK_API ork_int ork_blas_##p##gemm3m_copyat(const ork_int* h, const ork_int* kk, const C* a, const ork_int* lda, R* dest, const C* alpha, const ork_int* part) { return pack_a3m_part<R>('T', *h, *kk, as_elem(a), *lda, dest, *as_elem(alpha), *part); } \
    ORK_API ork_int ork_blas_##p##gemm3m_copyac(const ork_int* h, const ork_int* kk, const C* a, const ork_int* lda, R* dest, const C* alpha, const ork_int* part) { return pack_a3m_part<R>('C', *h, *kk, as_elem(a), *lda, dest, *as_elem(alpha), *part); } \
    ORK_API void ork_blas_##p##gemm3m_copybn(const ork_int* kk, const ork_int* w, const C* b, const ork_int* ldb, R* dest, const ork_int* part) { pack_b3m_part<R>('N', *kk, *w, as_elem(b), *ldb, dest, *part); } \
    ORK_API void ork_blas_##p##gemm3m_copybt(const ork_int* kk, const ork_int* w, const C* b, const ork_int* ldb, R* dest, const ork_int* part) { pack_b3m_part<R>('T', *kk, *w, as_elem(b), *ldb, dest, *part); } \
    ORK_API void ork_blas_##p##gemm3m_copybc(const ork_int* kk, const ork_int* w, const C* b, const ork_int* ldb, R* dest, const ork_int* part) { pack_b3m_part<R>('C', *kk, *w, as_elem(b), *ldb, dest, *part); }
ORK_GEMM3M(c, float, ork_complex8)
ORK_GEMM3M(z, double, ork_complex16)

// ---- real A times complex B. pc: BLAS letters; R: real type; C: complex C type.
#define ORK_GEMM_MIXED(pc, R, C) \
    ORK_API void ork_blas_x##pc##gemm(const char* ta, const char* tb, const ork_int* m, const ork_int* n, const ork_int* k, const C* alpha, const R* a, const ork_int* lda, const C* b, const ork_int* ldb, const C* beta, C* c, const ork_int* ldc) { gemm_mixed<R>(trans_of<R>(ta), trans_of<cx<R>>(tb), *m, *n, *k, *as_elem(alpha), a, *lda, as_elem(b), *ldb, *as_elem(beta), as_elem(c), *ldc); } \
    ORK_API void ork_blas_##pc##gemm_pst(const char* ta, const char* tb, const ork_int* m, const ork_int* n, const ork_int* k, const C* alpha, const R* a, const ork_int* lda, const C* b, const ork_int* ldb, const C* beta, C* c, const ork_int* ldc) { pst_mixed<R>(trans_of<R>(ta), trans_of<cx<R>>(tb), *m, *n, *k, *as_elem(alpha), a, *lda, as_elem(b), *ldb, *as_elem(beta), as_elem(c), *ldc); } \
    ORK_API void ork_blas_##pc##gemm_mscale(const ork_int* m, const ork_int* n, const C* beta, C* c, const ork_int* ldc) { mscale<R>(*m, *n, *as_elem(beta), as_elem(c), *ldc); } \
    ORK_API void ork_blas_##pc##gemm_copyb(const char* tb, const ork_int* kk, const ork_int* w, const C* b, const ork_int* ldb, const C* alpha, R* b_re, R* b_im, const ork_int* ld) { split_b<R>(trans_of<cx<R>>(tb), *kk, *w, as_elem(b), *ldb, *as_elem(alpha), b_re, b_im, *ld); } \
    ORK_API void ork_blas_##pc##gemm_copyc_fwd(const ork_int* m, const ork_int* n, const C* c, const ork_int* ldc, R* c_re, R* c_im, const ork_int* ld) { split_c<R>(*m, *n, as_elem(c), *ldc, c_re, c_im, *ld); } \
    ORK_API void ork_blas_##pc##gemm_copyc_bwd(const ork_int* m, const ork_int* n, const R* c_re, const R* c_im, const ork_int* ld, C* c, const ork_int* ldc) { join_c<R>(*m, *n, c_re, c_im, *ld, as_elem(c), *ldc); } \
    ORK_API void* ork_blas_##pc##gemm_getbufs(R** b_re, R** b_im, R** c_re, R** c_im) { return mixed_getbufs<R>(b_re, b_im, c_re, c_im); } \
    ORK_API void ork_blas_##pc##gemm_freebufs(void* block) { mixed_freebufs(block); }
ORK_GEMM_MIXED(dz, double, ork_complex16)
ORK_GEMM_MIXED(sc, float, ork_complex8)

// ---- the family-10h engine's building blocks. p: BLAS letter; T: real type.
#define ORK_BRC_BLOCKS(p, T) \
    ORK_API void* ork_blas_##p##gemm_getbufs_brc(const ork_int* m, const ork_int* n, const ork_int* k, T** packed_a, T** packed_b, void** scratch) { return get_bufs<T, brc_engine<T>>(*m, *n, *k, packed_a, packed_b, scratch); } \
    ORK_API void ork_blas_##p##gemm_freebufs_brc(void* block) { ork_serv_deallocate(block); } \
    ORK_API ork_int ork_blas_##p##gemm_copyan_0_brc(const ork_int* h, const ork_int* kk, const T* a, const ork_int* lda, T* dest, const T* alpha) { return pack_a('N', *h, *kk, a, *lda, dest, *alpha); } \
    ORK_API ork_int ork_blas_##p##gemm_copyat_0_brc(const ork_int* h, const ork_int* kk, const T* a, const ork_int* lda, T* dest, const T* alpha) { return pack_a('T', *h, *kk, a, *lda, dest, *alpha); } \
    ORK_API void ork_blas_##p##gemm_copybn_brc(const ork_int* kk, const ork_int* w, const T* b, const ork_int* ldb, T* dest) { pack_b('N', *kk, *w, b, *ldb, dest); } \
    ORK_API void ork_blas_##p##gemm_copybt_brc(const ork_int* kk, const ork_int* w, const T* b, const ork_int* ldb, T* dest) { pack_b('T', *kk, *w, b, *ldb, dest); } \
    ORK_API void ork_blas_##p##gemm_kernel0_0_brc(const ork_int* h, const ork_int* w, const ork_int* kkr, const T* packed_a, const T* packed_b, T* c, const ork_int* ldc, void* scratch) { inner::multiply_block(*h, *w, *kkr, packed_a, packed_b, c, *ldc, scratch); } \
    ORK_API void ork_blas_##p##gemm_mscale_brc(const ork_int* m, const ork_int* n, const T* beta, T* c, const ork_int* ldc) { if (*beta != 1) scalm(*m, *n, *beta, c, *ldc); } \
    ORK_API void ork_blas_##p##gemm_pst_brc(const char* ta, const char* tb, const ork_int* m, const ork_int* n, const ork_int* k, const T* alpha, const T* a, const ork_int* lda, const T* b, const ork_int* ldb, const T* beta, T* c, const ork_int* ldc) { pst(trans_of<T>(ta), trans_of<T>(tb), *m, *n, *k, *alpha, a, *lda, b, *ldb, *beta, c, *ldc); }
ORK_BRC_BLOCKS(d, double)
ORK_BRC_BLOCKS(s, float)

// ---- blocking reports: info[0] = kb, info[1] = mb, info[2] = nb.
#define ORK_BLK_INFO(name, T, E) \
    ORK_API void ork_blas_##name(const ork_int* m, const ork_int* n, const ork_int* k, ork_int* info) { blk_info<T, E>(*m, *n, *k, info); }
ORK_BLK_INFO(dgemm_blk_info_0_brc, double, brc_engine<double>)
ORK_BLK_INFO(dgemm_blk_info_1_brc, double, brc_engine<double>)
ORK_BLK_INFO(sgemm_blk_info_0_brc, float, brc_engine<float>)
ORK_BLK_INFO(sgemm_blk_info_htn, float, htn_engine<float>)
ORK_BLK_INFO(dgemm_blk_info_htn, double, htn_engine<double>)
ORK_BLK_INFO(cgemm_blk_info_htn, cx<float>, htn_engine<cx<float>>)
ORK_BLK_INFO(zgemm_blk_info_htn, cx<double>, htn_engine<cx<double>>)

// ---- loop-nest pieces over an engine, with the main engine's semantics:
// C += alpha*op(A)*op(B) with column blocks (COLS) or row blocks (ROWS)
// outermost, and the pieces on operands the caller packed (B, AB, A).
// name: export without ork_blas_; T: kernel type; C: C type; E: engine.
#define ORK_PIECE_COLS(name, T, C, E) \
    ORK_API void ork_blas_##name(const char* ta, const char* tb, const ork_int* m, const ork_int* n, const ork_int* k, const C* alpha, const C* a, const ork_int* lda, const C* b, const ork_int* ldb, C* c, const ork_int* ldc) { accumulate<T, E>(trans_of<T>(ta), trans_of<T>(tb), *m, *n, *k, *as_elem(alpha), as_elem(a), *lda, as_elem(b), *ldb, as_elem(c), *ldc, *ta); }
#define ORK_PIECE_ROWS(name, T, C, E) \
    ORK_API void ork_blas_##name(const char* ta, const char* tb, const ork_int* m, const ork_int* n, const ork_int* k, const C* alpha, const C* a, const ork_int* lda, const C* b, const ork_int* ldb, C* c, const ork_int* ldc) { accumulate_rows_outer<T, E>(trans_of<T>(ta), trans_of<T>(tb), *m, *n, *k, *as_elem(alpha), as_elem(a), *lda, as_elem(b), *ldb, as_elem(c), *ldc, *ta); }
#define ORK_PIECE_B(name, T, C, E) \
    ORK_API void ork_blas_##name(const char* ta, const ork_int* m, const ork_int* kk, const ork_int* w, const C* alpha, const C* a, const ork_int* lda, const C* pb, C* c, const ork_int* ldc) { b_packed<T, E>(trans_of<T>(ta), *m, *kk, *w, *as_elem(alpha), as_elem(a), *lda, as_elem(pb), as_elem(c), *ldc); }
#define ORK_PIECE_AB(name, T, C) \
    ORK_API void ork_blas_##name(const ork_int* h, const ork_int* w, const ork_int* kkr, const C* pa, const C* pb, C* c, const ork_int* ldc) { ab_packed(*h, *w, *kkr, as_elem(pa), as_elem(pb), as_elem(c), *ldc); }
#define ORK_PIECE_A(name, T, C, E) \
    ORK_API void ork_blas_##name(const char* tb, const ork_int* kk, const ork_int* n, const ork_int* h, const C* pa, const C* b, const ork_int* ldb, C* c, const ork_int* ldc) { a_packed<T, E>(trans_of<T>(tb), *kk, *n, *h, as_elem(pa), as_elem(b), *ldb, as_elem(c), *ldc); }

#define ORK_BRC_PIECES(x, T) \
    ORK_PIECE_COLS(x##_0, T, T, brc_engine<T>) \
    ORK_PIECE_ROWS(x##_1, T, T, brc_engine<T>) \
    ORK_PIECE_B(x##_bcopied, T, T, brc_engine<T>) \
    ORK_PIECE_AB(x##_abcopied, T, T) \
    ORK_PIECE_A(x##_acopied, T, T, brc_engine<T>)
ORK_BRC_PIECES(xdgemm1_brc, double)
ORK_BRC_PIECES(xdgemm0_brc, double)
ORK_BRC_PIECES(xsgemm0_brc, float)

// ---- htn: packers (the main engine's layouts) and pieces. p: BLAS letter.
#define ORK_HTN(p, T, C) \
    ORK_API ork_int ork_blas_##p##gemm_copyan_htn(const ork_int* h, const ork_int* kk, const C* a, const ork_int* lda, C* dest, const C* alpha) { return pack_a('N', *h, *kk, as_elem(a), *lda, as_elem(dest), *as_elem(alpha)); } \
    ORK_API ork_int ork_blas_##p##gemm_copyat_htn(const ork_int* h, const ork_int* kk, const C* a, const ork_int* lda, C* dest, const C* alpha) { return pack_a('T', *h, *kk, as_elem(a), *lda, as_elem(dest), *as_elem(alpha)); } \
    ORK_API void ork_blas_##p##gemm_copybn_htn(const ork_int* kk, const ork_int* w, const C* b, const ork_int* ldb, C* dest) { pack_b('N', *kk, *w, as_elem(b), *ldb, as_elem(dest)); } \
    ORK_API void ork_blas_##p##gemm_copybt_htn(const ork_int* kk, const ork_int* w, const C* b, const ork_int* ldb, C* dest) { pack_b('T', *kk, *w, as_elem(b), *ldb, as_elem(dest)); } \
    ORK_PIECE_B(x##p##gemm_0_bcopied_htn, T, C, htn_engine<T>) \
    ORK_PIECE_AB(x##p##gemm_0_abcopied_htn, T, C) \
    ORK_PIECE_A(x##p##gemm_1_acopied_htn, T, C, htn_engine<T>) \
    ORK_PIECE_ROWS(x##p##gemm_1_thr_htn, T, C, htn_engine<T>)
ORK_HTN(s, float, float)
ORK_HTN(d, double, double)
ORK_HTN(c, cx<float>, ork_complex8)
ORK_HTN(z, cx<double>, ork_complex16)
#define ORK_HTN_CONJ(p, C) \
    ORK_API ork_int ork_blas_##p##gemm_copyac_htn(const ork_int* h, const ork_int* kk, const C* a, const ork_int* lda, C* dest, const C* alpha) { return pack_a('C', *h, *kk, as_elem(a), *lda, as_elem(dest), *as_elem(alpha)); } \
    ORK_API void ork_blas_##p##gemm_copybc_htn(const ork_int* kk, const ork_int* w, const C* b, const ork_int* ldb, C* dest) { pack_b('C', *kk, *w, as_elem(b), *ldb, as_elem(dest)); }
ORK_HTN_CONJ(c, ork_complex8)
ORK_HTN_CONJ(z, ork_complex16)
