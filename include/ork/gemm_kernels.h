/* Kernel-library names of the matrix-multiply engine: the x?gemm drivers
 * (C := alpha*op(A)*op(B) + beta*C, 64-bit integers, every argument by
 * address), their building blocks, and the loop-nest pieces libork's
 * threading runs on disjoint parts of C. Defined by libork_<generation>.so;
 * these do no argument checking. */
#ifndef ORK_GEMM_KERNELS_H
#define ORK_GEMM_KERNELS_H

#include "ork/types.h"

ORK_BEGIN_C

/* ---- drivers; the real ones hand AMD family-10h parts to the _brc engine */
void ork_blas_xsgemm(const char *transa, const char *transb, const ork_int *m, const ork_int *n, const ork_int *k, const float *alpha, const float *a, const ork_int *lda, const float *b, const ork_int *ldb, const float *beta, float *c, const ork_int *ldc);
void ork_blas_xdgemm(const char *transa, const char *transb, const ork_int *m, const ork_int *n, const ork_int *k, const double *alpha, const double *a, const ork_int *lda, const double *b, const ork_int *ldb, const double *beta, double *c, const ork_int *ldc);
void ork_blas_xcgemm(const char *transa, const char *transb, const ork_int *m, const ork_int *n, const ork_int *k, const ork_complex8 *alpha, const ork_complex8 *a, const ork_int *lda, const ork_complex8 *b, const ork_int *ldb, const ork_complex8 *beta, ork_complex8 *c, const ork_int *ldc);
void ork_blas_xzgemm(const char *transa, const char *transb, const ork_int *m, const ork_int *n, const ork_int *k, const ork_complex16 *alpha, const ork_complex16 *a, const ork_int *lda, const ork_complex16 *b, const ork_int *ldb, const ork_complex16 *beta, ork_complex16 *c, const ork_int *ldc);
/* the alternative engine for AMD family-10h parts, same arguments */
void ork_blas_xdgemm0_brc(const char *transa, const char *transb, const ork_int *m, const ork_int *n, const ork_int *k, const double *alpha, const double *a, const ork_int *lda, const double *b, const ork_int *ldb, const double *beta, double *c, const ork_int *ldc);
void ork_blas_xdgemm1_brc(const char *transa, const char *transb, const ork_int *m, const ork_int *n, const ork_int *k, const double *alpha, const double *a, const ork_int *lda, const double *b, const ork_int *ldb, const double *beta, double *c, const ork_int *ldc);
void ork_blas_xsgemm0_brc(const char *transa, const char *transb, const ork_int *m, const ork_int *n, const ork_int *k, const float *alpha, const float *a, const ork_int *lda, const float *b, const ork_int *ldb, const float *beta, float *c, const ork_int *ldc);

/* ---- building blocks
 * scalm: C := beta*C (beta = 0 stores zeros); zerom: C := 0;
 * pst: the plain product C := alpha*op(A)*op(B) + beta*C;
 * copya?: pack alpha*op(A) rows h x kk, returns the rows packed (whole groups:
 *   2 for d, 12 for s, 1 for z, 2 for c);
 * copyb?: pack op(B) kk x w (w a multiple of 4 for s, d; of 2 for c, z);
 * inner, inner_general: C += packed A * packed B over a depth kkr (a
 *   multiple of 4) with kkr*192 bytes of 16-byte aligned scratch; the cell and
 *   the beta copies are accepted and not used. */
void ork_blas_sgemm_scalm(const ork_int *m, const ork_int *n, const float *beta, float *c, const ork_int *ldc);
void ork_blas_sgemm_zerom(const ork_int *m, const ork_int *n, float *c, const ork_int *ldc);
void ork_blas_sgemm_pst(const char *transa, const char *transb, const ork_int *m, const ork_int *n, const ork_int *k, const float *alpha, const float *a, const ork_int *lda, const float *b, const ork_int *ldb, const float *beta, float *c, const ork_int *ldc);
ork_int ork_blas_sgemm_copyan(const ork_int *h, const ork_int *kk, const float *a, const ork_int *lda, float *dest, const float *alpha);
ork_int ork_blas_sgemm_copyat(const ork_int *h, const ork_int *kk, const float *a, const ork_int *lda, float *dest, const float *alpha);
void ork_blas_sgemm_copybn(const ork_int *kk, const ork_int *w, const float *b, const ork_int *ldb, float *dest);
void ork_blas_sgemm_copybt(const ork_int *kk, const ork_int *w, const float *b, const ork_int *ldb, float *dest);
void ork_blas_sgemm_inner(const ork_int *h, const ork_int *w, const ork_int *kkr, const float *packed_a, const float *packed_b, ork_int *cell, float *c, const ork_int *ldc, void *scratch, const float *beta_copies);
void ork_blas_sgemm_inner_general(const ork_int *h, const ork_int *w, const ork_int *kkr, const float *packed_a, const float *packed_b, ork_int *cell, float *c, const ork_int *ldc, void *scratch, const float *beta_copies);
void ork_blas_dgemm_scalm(const ork_int *m, const ork_int *n, const double *beta, double *c, const ork_int *ldc);
void ork_blas_dgemm_zerom(const ork_int *m, const ork_int *n, double *c, const ork_int *ldc);
void ork_blas_dgemm_pst(const char *transa, const char *transb, const ork_int *m, const ork_int *n, const ork_int *k, const double *alpha, const double *a, const ork_int *lda, const double *b, const ork_int *ldb, const double *beta, double *c, const ork_int *ldc);
ork_int ork_blas_dgemm_copyan(const ork_int *h, const ork_int *kk, const double *a, const ork_int *lda, double *dest, const double *alpha);
ork_int ork_blas_dgemm_copyat(const ork_int *h, const ork_int *kk, const double *a, const ork_int *lda, double *dest, const double *alpha);
void ork_blas_dgemm_copybn(const ork_int *kk, const ork_int *w, const double *b, const ork_int *ldb, double *dest);
void ork_blas_dgemm_copybt(const ork_int *kk, const ork_int *w, const double *b, const ork_int *ldb, double *dest);
void ork_blas_dgemm_inner(const ork_int *h, const ork_int *w, const ork_int *kkr, const double *packed_a, const double *packed_b, ork_int *cell, double *c, const ork_int *ldc, void *scratch, const double *beta_copies);
void ork_blas_dgemm_inner_general(const ork_int *h, const ork_int *w, const ork_int *kkr, const double *packed_a, const double *packed_b, ork_int *cell, double *c, const ork_int *ldc, void *scratch, const double *beta_copies);
void ork_blas_cgemm_scalm(const ork_int *m, const ork_int *n, const ork_complex8 *beta, ork_complex8 *c, const ork_int *ldc);
void ork_blas_cgemm_zerom(const ork_int *m, const ork_int *n, ork_complex8 *c, const ork_int *ldc);
void ork_blas_cgemm_pst(const char *transa, const char *transb, const ork_int *m, const ork_int *n, const ork_int *k, const ork_complex8 *alpha, const ork_complex8 *a, const ork_int *lda, const ork_complex8 *b, const ork_int *ldb, const ork_complex8 *beta, ork_complex8 *c, const ork_int *ldc);
ork_int ork_blas_cgemm_copyan(const ork_int *h, const ork_int *kk, const ork_complex8 *a, const ork_int *lda, ork_complex8 *dest, const ork_complex8 *alpha);
ork_int ork_blas_cgemm_copyat(const ork_int *h, const ork_int *kk, const ork_complex8 *a, const ork_int *lda, ork_complex8 *dest, const ork_complex8 *alpha);
ork_int ork_blas_cgemm_copyac(const ork_int *h, const ork_int *kk, const ork_complex8 *a, const ork_int *lda, ork_complex8 *dest, const ork_complex8 *alpha);
void ork_blas_cgemm_copybn(const ork_int *kk, const ork_int *w, const ork_complex8 *b, const ork_int *ldb, ork_complex8 *dest);
void ork_blas_cgemm_copybt(const ork_int *kk, const ork_int *w, const ork_complex8 *b, const ork_int *ldb, ork_complex8 *dest);
void ork_blas_cgemm_copybc(const ork_int *kk, const ork_int *w, const ork_complex8 *b, const ork_int *ldb, ork_complex8 *dest);
void ork_blas_cgemm_inner(const ork_int *h, const ork_int *w, const ork_int *kkr, const ork_complex8 *packed_a, const ork_complex8 *packed_b, ork_int *cell, ork_complex8 *c, const ork_int *ldc, void *scratch, const ork_complex8 *beta_copies);
void ork_blas_cgemm_inner_general(const ork_int *h, const ork_int *w, const ork_int *kkr, const ork_complex8 *packed_a, const ork_complex8 *packed_b, ork_int *cell, ork_complex8 *c, const ork_int *ldc, void *scratch, const ork_complex8 *beta_copies);
void ork_blas_zgemm_scalm(const ork_int *m, const ork_int *n, const ork_complex16 *beta, ork_complex16 *c, const ork_int *ldc);
void ork_blas_zgemm_zerom(const ork_int *m, const ork_int *n, ork_complex16 *c, const ork_int *ldc);
void ork_blas_zgemm_pst(const char *transa, const char *transb, const ork_int *m, const ork_int *n, const ork_int *k, const ork_complex16 *alpha, const ork_complex16 *a, const ork_int *lda, const ork_complex16 *b, const ork_int *ldb, const ork_complex16 *beta, ork_complex16 *c, const ork_int *ldc);
ork_int ork_blas_zgemm_copyan(const ork_int *h, const ork_int *kk, const ork_complex16 *a, const ork_int *lda, ork_complex16 *dest, const ork_complex16 *alpha);
ork_int ork_blas_zgemm_copyat(const ork_int *h, const ork_int *kk, const ork_complex16 *a, const ork_int *lda, ork_complex16 *dest, const ork_complex16 *alpha);
ork_int ork_blas_zgemm_copyac(const ork_int *h, const ork_int *kk, const ork_complex16 *a, const ork_int *lda, ork_complex16 *dest, const ork_complex16 *alpha);
void ork_blas_zgemm_copybn(const ork_int *kk, const ork_int *w, const ork_complex16 *b, const ork_int *ldb, ork_complex16 *dest);
void ork_blas_zgemm_copybt(const ork_int *kk, const ork_int *w, const ork_complex16 *b, const ork_int *ldb, ork_complex16 *dest);
void ork_blas_zgemm_copybc(const ork_int *kk, const ork_int *w, const ork_complex16 *b, const ork_int *ldb, ork_complex16 *dest);
void ork_blas_zgemm_inner(const ork_int *h, const ork_int *w, const ork_int *kkr, const ork_complex16 *packed_a, const ork_complex16 *packed_b, ork_int *cell, ork_complex16 *c, const ork_int *ldc, void *scratch, const ork_complex16 *beta_copies);
void ork_blas_zgemm_inner_general(const ork_int *h, const ork_int *w, const ork_int *kkr, const ork_complex16 *packed_a, const ork_complex16 *packed_b, ork_int *cell, ork_complex16 *c, const ork_int *ldc, void *scratch, const ork_complex16 *beta_copies);

/* ---- loop-nest pieces (C must already hold beta*C)
 * _0: C += alpha*op(A)*op(B), column blocks outermost; _1: the same result,
 *   bit for bit, with row blocks outermost;
 * _bcopied: the packed rows (whole groups) of m x w against a kk x w panel
 *   of op(B) packed by copyb?; leftover rows untouched;
 * _abcopied: the inner kernel alone on packed A (h rows) and packed B;
 * _acopied_in_thread: packed A (h rows, depth kk) against op(B)(kk x n),
 *   which it packs; the last n mod q columns untouched.
 * Packed operands must be 16-byte aligned. */
void ork_blas_xsgemm_0(const char *transa, const char *transb, const ork_int *m, const ork_int *n, const ork_int *k, const float *alpha, const float *a, const ork_int *lda, const float *b, const ork_int *ldb, float *c, const ork_int *ldc);
void ork_blas_xsgemm_1(const char *transa, const char *transb, const ork_int *m, const ork_int *n, const ork_int *k, const float *alpha, const float *a, const ork_int *lda, const float *b, const ork_int *ldb, float *c, const ork_int *ldc);
void ork_blas_xsgemm_0_bcopied(const char *transa, const ork_int *m, const ork_int *kk, const ork_int *w, const float *alpha, const float *a, const ork_int *lda, const float *packed_b, float *c, const ork_int *ldc);
void ork_blas_xsgemm_0_abcopied(const ork_int *h, const ork_int *w, const ork_int *kkr, const float *packed_a, const float *packed_b, float *c, const ork_int *ldc);
void ork_blas_xsgemm_1_acopied_in_thread(const char *transb, const ork_int *kk, const ork_int *n, const ork_int *h, const float *packed_a, const float *b, const ork_int *ldb, float *c, const ork_int *ldc);
void ork_blas_xdgemm_0(const char *transa, const char *transb, const ork_int *m, const ork_int *n, const ork_int *k, const double *alpha, const double *a, const ork_int *lda, const double *b, const ork_int *ldb, double *c, const ork_int *ldc);
void ork_blas_xdgemm_1(const char *transa, const char *transb, const ork_int *m, const ork_int *n, const ork_int *k, const double *alpha, const double *a, const ork_int *lda, const double *b, const ork_int *ldb, double *c, const ork_int *ldc);
void ork_blas_xdgemm_0_bcopied(const char *transa, const ork_int *m, const ork_int *kk, const ork_int *w, const double *alpha, const double *a, const ork_int *lda, const double *packed_b, double *c, const ork_int *ldc);
void ork_blas_xdgemm_0_abcopied(const ork_int *h, const ork_int *w, const ork_int *kkr, const double *packed_a, const double *packed_b, double *c, const ork_int *ldc);
void ork_blas_xdgemm_1_acopied_in_thread(const char *transb, const ork_int *kk, const ork_int *n, const ork_int *h, const double *packed_a, const double *b, const ork_int *ldb, double *c, const ork_int *ldc);
void ork_blas_xcgemm_0(const char *transa, const char *transb, const ork_int *m, const ork_int *n, const ork_int *k, const ork_complex8 *alpha, const ork_complex8 *a, const ork_int *lda, const ork_complex8 *b, const ork_int *ldb, ork_complex8 *c, const ork_int *ldc);
void ork_blas_xcgemm_1(const char *transa, const char *transb, const ork_int *m, const ork_int *n, const ork_int *k, const ork_complex8 *alpha, const ork_complex8 *a, const ork_int *lda, const ork_complex8 *b, const ork_int *ldb, ork_complex8 *c, const ork_int *ldc);
void ork_blas_xcgemm_bcopied(const char *transa, const ork_int *m, const ork_int *kk, const ork_int *w, const ork_complex8 *alpha, const ork_complex8 *a, const ork_int *lda, const ork_complex8 *packed_b, ork_complex8 *c, const ork_int *ldc);
void ork_blas_xcgemm_abcopied(const ork_int *h, const ork_int *w, const ork_int *kkr, const ork_complex8 *packed_a, const ork_complex8 *packed_b, ork_complex8 *c, const ork_int *ldc);
void ork_blas_xcgemm_acopied_in_thread(const char *transb, const ork_int *kk, const ork_int *n, const ork_int *h, const ork_complex8 *packed_a, const ork_complex8 *b, const ork_int *ldb, ork_complex8 *c, const ork_int *ldc);
void ork_blas_xzgemm_0(const char *transa, const char *transb, const ork_int *m, const ork_int *n, const ork_int *k, const ork_complex16 *alpha, const ork_complex16 *a, const ork_int *lda, const ork_complex16 *b, const ork_int *ldb, ork_complex16 *c, const ork_int *ldc);
void ork_blas_xzgemm_1(const char *transa, const char *transb, const ork_int *m, const ork_int *n, const ork_int *k, const ork_complex16 *alpha, const ork_complex16 *a, const ork_int *lda, const ork_complex16 *b, const ork_int *ldb, ork_complex16 *c, const ork_int *ldc);
void ork_blas_xzgemm_bcopied(const char *transa, const ork_int *m, const ork_int *kk, const ork_int *w, const ork_complex16 *alpha, const ork_complex16 *a, const ork_int *lda, const ork_complex16 *packed_b, ork_complex16 *c, const ork_int *ldc);
void ork_blas_xzgemm_abcopied(const ork_int *h, const ork_int *w, const ork_int *kkr, const ork_complex16 *packed_a, const ork_complex16 *packed_b, ork_complex16 *c, const ork_int *ldc);
void ork_blas_xzgemm_acopied_in_thread(const char *transb, const ork_int *kk, const ork_int *n, const ork_int *h, const ork_complex16 *packed_a, const ork_complex16 *b, const ork_int *ldb, ork_complex16 *c, const ork_int *ldc);

ORK_END_C

#endif
