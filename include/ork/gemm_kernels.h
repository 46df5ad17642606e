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
 *   block, info[8] 1 when the short depth block comes first (else last). */
void ork_blas_sgemm_layout(const ork_int *k, ork_int *info);
void ork_blas_dgemm_layout(const ork_int *k, ork_int *info);
void ork_blas_cgemm_layout(const ork_int *k, ork_int *info);
void ork_blas_zgemm_layout(const ork_int *k, ork_int *info);
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


/* ---- complex products from three real products: x?gemm3m has the
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
 * part: 0 real part, 1 imaginary part, 2 (or anything else) their sum. */
void ork_blas_xcgemm3m(const char *transa, const char *transb, const ork_int *m, const ork_int *n, const ork_int *k, const ork_complex8 *alpha, const ork_complex8 *a, const ork_int *lda, const ork_complex8 *b, const ork_int *ldb, const ork_complex8 *beta, ork_complex8 *c, const ork_int *ldc);
ork_int ork_blas_cgemm3m_copyan(const ork_int *h, const ork_int *kk, const ork_complex8 *a, const ork_int *lda, float *dest, const ork_complex8 *alpha, const ork_int *part);
ork_int ork_blas_cgemm3m_copyat(const ork_int *h, const ork_int *kk, const ork_complex8 *a, const ork_int *lda, float *dest, const ork_complex8 *alpha, const ork_int *part);
ork_int ork_blas_cgemm3m_copyac(const ork_int *h, const ork_int *kk, const ork_complex8 *a, const ork_int *lda, float *dest, const ork_complex8 *alpha, const ork_int *part);
void ork_blas_cgemm3m_copybn(const ork_int *kk, const ork_int *w, const ork_complex8 *b, const ork_int *ldb, float *dest, const ork_int *part);
void ork_blas_cgemm3m_copybt(const ork_int *kk, const ork_int *w, const ork_complex8 *b, const ork_int *ldb, float *dest, const ork_int *part);
void ork_blas_cgemm3m_copybc(const ork_int *kk, const ork_int *w, const ork_complex8 *b, const ork_int *ldb, float *dest, const ork_int *part);
void ork_blas_xzgemm3m(const char *transa, const char *transb, const ork_int *m, const ork_int *n, const ork_int *k, const ork_complex16 *alpha, const ork_complex16 *a, const ork_int *lda, const ork_complex16 *b, const ork_int *ldb, const ork_complex16 *beta, ork_complex16 *c, const ork_int *ldc);
ork_int ork_blas_zgemm3m_copyan(const ork_int *h, const ork_int *kk, const ork_complex16 *a, const ork_int *lda, double *dest, const ork_complex16 *alpha, const ork_int *part);
ork_int ork_blas_zgemm3m_copyat(const ork_int *h, const ork_int *kk, const ork_complex16 *a, const ork_int *lda, double *dest, const ork_complex16 *alpha, const ork_int *part);
ork_int ork_blas_zgemm3m_copyac(const ork_int *h, const ork_int *kk, const ork_complex16 *a, const ork_int *lda, double *dest, const ork_complex16 *alpha, const ork_int *part);
void ork_blas_zgemm3m_copybn(const ork_int *kk, const ork_int *w, const ork_complex16 *b, const ork_int *ldb, double *dest, const ork_int *part);
void ork_blas_zgemm3m_copybt(const ork_int *kk, const ork_int *w, const ork_complex16 *b, const ork_int *ldb, double *dest, const ork_int *part);
void ork_blas_zgemm3m_copybc(const ork_int *kk, const ork_int *w, const ork_complex16 *b, const ork_int *ldb, double *dest, const ork_int *part);

/* ---- real A times complex B: C := alpha*op(A)*op(B) + beta*C with A real
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
 *   nb = 512). */
void ork_blas_xdzgemm(const char *transa, const char *transb, const ork_int *m, const ork_int *n, const ork_int *k, const ork_complex16 *alpha, const double *a, const ork_int *lda, const ork_complex16 *b, const ork_int *ldb, const ork_complex16 *beta, ork_complex16 *c, const ork_int *ldc);
void ork_blas_dzgemm_mscale(const ork_int *m, const ork_int *n, const ork_complex16 *beta, ork_complex16 *c, const ork_int *ldc);
void ork_blas_dzgemm_pst(const char *transa, const char *transb, const ork_int *m, const ork_int *n, const ork_int *k, const ork_complex16 *alpha, const double *a, const ork_int *lda, const ork_complex16 *b, const ork_int *ldb, const ork_complex16 *beta, ork_complex16 *c, const ork_int *ldc);
void ork_blas_dzgemm_copyb(const char *transb, const ork_int *kk, const ork_int *w, const ork_complex16 *b, const ork_int *ldb, const ork_complex16 *alpha, double *b_re, double *b_im, const ork_int *ld);
void ork_blas_dzgemm_copyc_fwd(const ork_int *m, const ork_int *n, const ork_complex16 *c, const ork_int *ldc, double *c_re, double *c_im, const ork_int *ld);
void ork_blas_dzgemm_copyc_bwd(const ork_int *m, const ork_int *n, const double *c_re, const double *c_im, const ork_int *ld, ork_complex16 *c, const ork_int *ldc);
void *ork_blas_dzgemm_getbufs(double **b_re, double **b_im, double **c_re, double **c_im);
void ork_blas_dzgemm_freebufs(void *block);
void ork_blas_xscgemm(const char *transa, const char *transb, const ork_int *m, const ork_int *n, const ork_int *k, const ork_complex8 *alpha, const float *a, const ork_int *lda, const ork_complex8 *b, const ork_int *ldb, const ork_complex8 *beta, ork_complex8 *c, const ork_int *ldc);
void ork_blas_scgemm_mscale(const ork_int *m, const ork_int *n, const ork_complex8 *beta, ork_complex8 *c, const ork_int *ldc);
void ork_blas_scgemm_pst(const char *transa, const char *transb, const ork_int *m, const ork_int *n, const ork_int *k, const ork_complex8 *alpha, const float *a, const ork_int *lda, const ork_complex8 *b, const ork_int *ldb, const ork_complex8 *beta, ork_complex8 *c, const ork_int *ldc);
void ork_blas_scgemm_copyb(const char *transb, const ork_int *kk, const ork_int *w, const ork_complex8 *b, const ork_int *ldb, const ork_complex8 *alpha, float *b_re, float *b_im, const ork_int *ld);
void ork_blas_scgemm_copyc_fwd(const ork_int *m, const ork_int *n, const ork_complex8 *c, const ork_int *ldc, float *c_re, float *c_im, const ork_int *ld);
void ork_blas_scgemm_copyc_bwd(const ork_int *m, const ork_int *n, const float *c_re, const float *c_im, const ork_int *ld, ork_complex8 *c, const ork_int *ldc);
void *ork_blas_scgemm_getbufs(float **b_re, float **b_im, float **c_re, float **c_im);
void ork_blas_scgemm_freebufs(void *block);

/* ---- the family-10h engine (depth blocks of 256, row blocks of 256 rows
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
 *   _0_abcopied and _1_acopied_in_thread, with this engine's blocking. */
void ork_blas_dgemm_blk_info_0_brc(const ork_int *m, const ork_int *n, const ork_int *k, ork_int *info);
void ork_blas_dgemm_blk_info_1_brc(const ork_int *m, const ork_int *n, const ork_int *k, ork_int *info);
void *ork_blas_dgemm_getbufs_brc(const ork_int *m, const ork_int *n, const ork_int *k, double **packed_a, double **packed_b, void **scratch);
void ork_blas_dgemm_freebufs_brc(void *block);
ork_int ork_blas_dgemm_copyan_0_brc(const ork_int *h, const ork_int *kk, const double *a, const ork_int *lda, double *dest, const double *alpha);
ork_int ork_blas_dgemm_copyat_0_brc(const ork_int *h, const ork_int *kk, const double *a, const ork_int *lda, double *dest, const double *alpha);
void ork_blas_dgemm_copybn_brc(const ork_int *kk, const ork_int *w, const double *b, const ork_int *ldb, double *dest);
void ork_blas_dgemm_copybt_brc(const ork_int *kk, const ork_int *w, const double *b, const ork_int *ldb, double *dest);
void ork_blas_dgemm_kernel0_0_brc(const ork_int *h, const ork_int *w, const ork_int *kkr, const double *packed_a, const double *packed_b, double *c, const ork_int *ldc, void *scratch);
void ork_blas_dgemm_mscale_brc(const ork_int *m, const ork_int *n, const double *beta, double *c, const ork_int *ldc);
void ork_blas_dgemm_pst_brc(const char *transa, const char *transb, const ork_int *m, const ork_int *n, const ork_int *k, const double *alpha, const double *a, const ork_int *lda, const double *b, const ork_int *ldb, const double *beta, double *c, const ork_int *ldc);
void ork_blas_sgemm_blk_info_0_brc(const ork_int *m, const ork_int *n, const ork_int *k, ork_int *info);
void *ork_blas_sgemm_getbufs_brc(const ork_int *m, const ork_int *n, const ork_int *k, float **packed_a, float **packed_b, void **scratch);
void ork_blas_sgemm_freebufs_brc(void *block);
ork_int ork_blas_sgemm_copyan_0_brc(const ork_int *h, const ork_int *kk, const float *a, const ork_int *lda, float *dest, const float *alpha);
ork_int ork_blas_sgemm_copyat_0_brc(const ork_int *h, const ork_int *kk, const float *a, const ork_int *lda, float *dest, const float *alpha);
void ork_blas_sgemm_copybn_brc(const ork_int *kk, const ork_int *w, const float *b, const ork_int *ldb, float *dest);
void ork_blas_sgemm_copybt_brc(const ork_int *kk, const ork_int *w, const float *b, const ork_int *ldb, float *dest);
void ork_blas_sgemm_kernel0_0_brc(const ork_int *h, const ork_int *w, const ork_int *kkr, const float *packed_a, const float *packed_b, float *c, const ork_int *ldc, void *scratch);
void ork_blas_sgemm_mscale_brc(const ork_int *m, const ork_int *n, const float *beta, float *c, const ork_int *ldc);
void ork_blas_sgemm_pst_brc(const char *transa, const char *transb, const ork_int *m, const ork_int *n, const ork_int *k, const float *alpha, const float *a, const ork_int *lda, const float *b, const ork_int *ldb, const float *beta, float *c, const ork_int *ldc);
void ork_blas_xdgemm1_brc_0(const char *transa, const char *transb, const ork_int *m, const ork_int *n, const ork_int *k, const double *alpha, const double *a, const ork_int *lda, const double *b, const ork_int *ldb, double *c, const ork_int *ldc);
void ork_blas_xdgemm1_brc_1(const char *transa, const char *transb, const ork_int *m, const ork_int *n, const ork_int *k, const double *alpha, const double *a, const ork_int *lda, const double *b, const ork_int *ldb, double *c, const ork_int *ldc);
void ork_blas_xdgemm1_brc_bcopied(const char *transa, const ork_int *m, const ork_int *kk, const ork_int *w, const double *alpha, const double *a, const ork_int *lda, const double *packed_b, double *c, const ork_int *ldc);
void ork_blas_xdgemm1_brc_abcopied(const ork_int *h, const ork_int *w, const ork_int *kkr, const double *packed_a, const double *packed_b, double *c, const ork_int *ldc);
void ork_blas_xdgemm1_brc_acopied(const char *transb, const ork_int *kk, const ork_int *n, const ork_int *h, const double *packed_a, const double *b, const ork_int *ldb, double *c, const ork_int *ldc);
void ork_blas_xdgemm0_brc_0(const char *transa, const char *transb, const ork_int *m, const ork_int *n, const ork_int *k, const double *alpha, const double *a, const ork_int *lda, const double *b, const ork_int *ldb, double *c, const ork_int *ldc);
void ork_blas_xdgemm0_brc_1(const char *transa, const char *transb, const ork_int *m, const ork_int *n, const ork_int *k, const double *alpha, const double *a, const ork_int *lda, const double *b, const ork_int *ldb, double *c, const ork_int *ldc);
void ork_blas_xdgemm0_brc_bcopied(const char *transa, const ork_int *m, const ork_int *kk, const ork_int *w, const double *alpha, const double *a, const ork_int *lda, const double *packed_b, double *c, const ork_int *ldc);
void ork_blas_xdgemm0_brc_abcopied(const ork_int *h, const ork_int *w, const ork_int *kkr, const double *packed_a, const double *packed_b, double *c, const ork_int *ldc);
void ork_blas_xdgemm0_brc_acopied(const char *transb, const ork_int *kk, const ork_int *n, const ork_int *h, const double *packed_a, const double *b, const ork_int *ldb, double *c, const ork_int *ldc);
void ork_blas_xsgemm0_brc_0(const char *transa, const char *transb, const ork_int *m, const ork_int *n, const ork_int *k, const float *alpha, const float *a, const ork_int *lda, const float *b, const ork_int *ldb, float *c, const ork_int *ldc);
void ork_blas_xsgemm0_brc_1(const char *transa, const char *transb, const ork_int *m, const ork_int *n, const ork_int *k, const float *alpha, const float *a, const ork_int *lda, const float *b, const ork_int *ldb, float *c, const ork_int *ldc);
void ork_blas_xsgemm0_brc_bcopied(const char *transa, const ork_int *m, const ork_int *kk, const ork_int *w, const float *alpha, const float *a, const ork_int *lda, const float *packed_b, float *c, const ork_int *ldc);
void ork_blas_xsgemm0_brc_abcopied(const ork_int *h, const ork_int *w, const ork_int *kkr, const float *packed_a, const float *packed_b, float *c, const ork_int *ldc);
void ork_blas_xsgemm0_brc_acopied(const char *transb, const ork_int *kk, const ork_int *n, const ork_int *h, const float *packed_a, const float *b, const ork_int *ldb, float *c, const ork_int *ldc);

/* ---- the htn blocking of libork's threading (depth blocks of 192, row
 * blocks of 384; the packed layouts of the main engine)
 * ?gemm_blk_info_htn: as ?gemm_blk_info_0_brc;
 * ?gemm_copy*_htn: the packers (as ?gemm_copy*);
 * x?gemm_0_bcopied_htn, _0_abcopied_htn, _1_acopied_htn: as the main
 *   engine's pieces on packed operands, with this blocking;
 * x?gemm_1_thr_htn: C += alpha*op(A)*op(B) for one thread's slab of C (the
 *   caller passes the slab's rows of op(A), columns of op(B) and block of C),
 *   row blocks outermost. */
void ork_blas_sgemm_blk_info_htn(const ork_int *m, const ork_int *n, const ork_int *k, ork_int *info);
ork_int ork_blas_sgemm_copyan_htn(const ork_int *h, const ork_int *kk, const float *a, const ork_int *lda, float *dest, const float *alpha);
ork_int ork_blas_sgemm_copyat_htn(const ork_int *h, const ork_int *kk, const float *a, const ork_int *lda, float *dest, const float *alpha);
void ork_blas_sgemm_copybn_htn(const ork_int *kk, const ork_int *w, const float *b, const ork_int *ldb, float *dest);
void ork_blas_sgemm_copybt_htn(const ork_int *kk, const ork_int *w, const float *b, const ork_int *ldb, float *dest);
void ork_blas_xsgemm_0_bcopied_htn(const char *transa, const ork_int *m, const ork_int *kk, const ork_int *w, const float *alpha, const float *a, const ork_int *lda, const float *packed_b, float *c, const ork_int *ldc);
void ork_blas_xsgemm_0_abcopied_htn(const ork_int *h, const ork_int *w, const ork_int *kkr, const float *packed_a, const float *packed_b, float *c, const ork_int *ldc);
void ork_blas_xsgemm_1_acopied_htn(const char *transb, const ork_int *kk, const ork_int *n, const ork_int *h, const float *packed_a, const float *b, const ork_int *ldb, float *c, const ork_int *ldc);
void ork_blas_xsgemm_1_thr_htn(const char *transa, const char *transb, const ork_int *m, const ork_int *n, const ork_int *k, const float *alpha, const float *a, const ork_int *lda, const float *b, const ork_int *ldb, float *c, const ork_int *ldc);
void ork_blas_dgemm_blk_info_htn(const ork_int *m, const ork_int *n, const ork_int *k, ork_int *info);
ork_int ork_blas_dgemm_copyan_htn(const ork_int *h, const ork_int *kk, const double *a, const ork_int *lda, double *dest, const double *alpha);
ork_int ork_blas_dgemm_copyat_htn(const ork_int *h, const ork_int *kk, const double *a, const ork_int *lda, double *dest, const double *alpha);
void ork_blas_dgemm_copybn_htn(const ork_int *kk, const ork_int *w, const double *b, const ork_int *ldb, double *dest);
void ork_blas_dgemm_copybt_htn(const ork_int *kk, const ork_int *w, const double *b, const ork_int *ldb, double *dest);
void ork_blas_xdgemm_0_bcopied_htn(const char *transa, const ork_int *m, const ork_int *kk, const ork_int *w, const double *alpha, const double *a, const ork_int *lda, const double *packed_b, double *c, const ork_int *ldc);
void ork_blas_xdgemm_0_abcopied_htn(const ork_int *h, const ork_int *w, const ork_int *kkr, const double *packed_a, const double *packed_b, double *c, const ork_int *ldc);
void ork_blas_xdgemm_1_acopied_htn(const char *transb, const ork_int *kk, const ork_int *n, const ork_int *h, const double *packed_a, const double *b, const ork_int *ldb, double *c, const ork_int *ldc);
void ork_blas_xdgemm_1_thr_htn(const char *transa, const char *transb, const ork_int *m, const ork_int *n, const ork_int *k, const double *alpha, const double *a, const ork_int *lda, const double *b, const ork_int *ldb, double *c, const ork_int *ldc);
void ork_blas_cgemm_blk_info_htn(const ork_int *m, const ork_int *n, const ork_int *k, ork_int *info);
ork_int ork_blas_cgemm_copyan_htn(const ork_int *h, const ork_int *kk, const ork_complex8 *a, const ork_int *lda, ork_complex8 *dest, const ork_complex8 *alpha);
ork_int ork_blas_cgemm_copyat_htn(const ork_int *h, const ork_int *kk, const ork_complex8 *a, const ork_int *lda, ork_complex8 *dest, const ork_complex8 *alpha);
ork_int ork_blas_cgemm_copyac_htn(const ork_int *h, const ork_int *kk, const ork_complex8 *a, const ork_int *lda, ork_complex8 *dest, const ork_complex8 *alpha);
void ork_blas_cgemm_copybn_htn(const ork_int *kk, const ork_int *w, const ork_complex8 *b, const ork_int *ldb, ork_complex8 *dest);
void ork_blas_cgemm_copybt_htn(const ork_int *kk, const ork_int *w, const ork_complex8 *b, const ork_int *ldb, ork_complex8 *dest);
void ork_blas_cgemm_copybc_htn(const ork_int *kk, const ork_int *w, const ork_complex8 *b, const ork_int *ldb, ork_complex8 *dest);
void ork_blas_xcgemm_0_bcopied_htn(const char *transa, const ork_int *m, const ork_int *kk, const ork_int *w, const ork_complex8 *alpha, const ork_complex8 *a, const ork_int *lda, const ork_complex8 *packed_b, ork_complex8 *c, const ork_int *ldc);
void ork_blas_xcgemm_0_abcopied_htn(const ork_int *h, const ork_int *w, const ork_int *kkr, const ork_complex8 *packed_a, const ork_complex8 *packed_b, ork_complex8 *c, const ork_int *ldc);
void ork_blas_xcgemm_1_acopied_htn(const char *transb, const ork_int *kk, const ork_int *n, const ork_int *h, const ork_complex8 *packed_a, const ork_complex8 *b, const ork_int *ldb, ork_complex8 *c, const ork_int *ldc);
void ork_blas_xcgemm_1_thr_htn(const char *transa, const char *transb, const ork_int *m, const ork_int *n, const ork_int *k, const ork_complex8 *alpha, const ork_complex8 *a, const ork_int *lda, const ork_complex8 *b, const ork_int *ldb, ork_complex8 *c, const ork_int *ldc);
void ork_blas_zgemm_blk_info_htn(const ork_int *m, const ork_int *n, const ork_int *k, ork_int *info);
ork_int ork_blas_zgemm_copyan_htn(const ork_int *h, const ork_int *kk, const ork_complex16 *a, const ork_int *lda, ork_complex16 *dest, const ork_complex16 *alpha);
ork_int ork_blas_zgemm_copyat_htn(const ork_int *h, const ork_int *kk, const ork_complex16 *a, const ork_int *lda, ork_complex16 *dest, const ork_complex16 *alpha);
ork_int ork_blas_zgemm_copyac_htn(const ork_int *h, const ork_int *kk, const ork_complex16 *a, const ork_int *lda, ork_complex16 *dest, const ork_complex16 *alpha);
void ork_blas_zgemm_copybn_htn(const ork_int *kk, const ork_int *w, const ork_complex16 *b, const ork_int *ldb, ork_complex16 *dest);
void ork_blas_zgemm_copybt_htn(const ork_int *kk, const ork_int *w, const ork_complex16 *b, const ork_int *ldb, ork_complex16 *dest);
void ork_blas_zgemm_copybc_htn(const ork_int *kk, const ork_int *w, const ork_complex16 *b, const ork_int *ldb, ork_complex16 *dest);
void ork_blas_xzgemm_0_bcopied_htn(const char *transa, const ork_int *m, const ork_int *kk, const ork_int *w, const ork_complex16 *alpha, const ork_complex16 *a, const ork_int *lda, const ork_complex16 *packed_b, ork_complex16 *c, const ork_int *ldc);
void ork_blas_xzgemm_0_abcopied_htn(const ork_int *h, const ork_int *w, const ork_int *kkr, const ork_complex16 *packed_a, const ork_complex16 *packed_b, ork_complex16 *c, const ork_int *ldc);
void ork_blas_xzgemm_1_acopied_htn(const char *transb, const ork_int *kk, const ork_int *n, const ork_int *h, const ork_complex16 *packed_a, const ork_complex16 *b, const ork_int *ldb, ork_complex16 *c, const ork_int *ldc);
void ork_blas_xzgemm_1_thr_htn(const char *transa, const char *transb, const ork_int *m, const ork_int *n, const ork_int *k, const ork_complex16 *alpha, const ork_complex16 *a, const ork_int *lda, const ork_complex16 *b, const ork_int *ldb, ork_complex16 *c, const ork_int *ldc);

ORK_END_C

#endif
