/* BLAS entries by their standard names, ork_blas_<routine>: 64-bit integers,
 * every argument by address, character flags read by their first letter.
 *
 * libork defines every name below: it checks the arguments, picks the kernel
 * library for this processor and splits large calls over threads. Applications
 * call these. The kernel libraries also define some of them as unchecked kernels
 * of their own (exports/baseline/ lists which); the loader binds a caller to
 * whichever definition it finds first, libork's when an application links it. */
#ifndef ORK_BLAS_H
#define ORK_BLAS_H

#include "ork/types.h"
#include "ork/level1.h"
#include "ork/level2.h"

ORK_BEGIN_C

/* ---- levels 1 and 2: ork/level1.h, ork/level2.h ---- */

/* ---- level 3: C := alpha*op(A)*op(B) + beta*C, op by the first letter of
 * transa and transb: N, T or C (C conjugates; for real types T and C agree).
 * Long products are split over threads by columns (or rows) of C; the result
 * is the same bits whatever the number of threads. */
void ork_blas_sgemm(const char *transa, const char *transb, const ork_int *m, const ork_int *n, const ork_int *k, const float *alpha, const float *a, const ork_int *lda, const float *b, const ork_int *ldb, const float *beta, float *c, const ork_int *ldc);
void ork_blas_dgemm(const char *transa, const char *transb, const ork_int *m, const ork_int *n, const ork_int *k, const double *alpha, const double *a, const ork_int *lda, const double *b, const ork_int *ldb, const double *beta, double *c, const ork_int *ldc);
void ork_blas_cgemm(const char *transa, const char *transb, const ork_int *m, const ork_int *n, const ork_int *k, const ork_complex8 *alpha, const ork_complex8 *a, const ork_int *lda, const ork_complex8 *b, const ork_int *ldb, const ork_complex8 *beta, ork_complex8 *c, const ork_int *ldc);
void ork_blas_zgemm(const char *transa, const char *transb, const ork_int *m, const ork_int *n, const ork_int *k, const ork_complex16 *alpha, const ork_complex16 *a, const ork_int *lda, const ork_complex16 *b, const ork_int *ldb, const ork_complex16 *beta, ork_complex16 *c, const ork_int *ldc);

/* ---- level 3, the matrix-multiply family; arguments as in ?gemm.
 * cgemm3m, zgemm3m: the complex product from three real products (per term,
 * Re = Ar*Br - Ai*Bi, Im = (Ar + Ai)*(Br + Bi) - Ar*Br - Ai*Bi, with
 * A' = alpha*op(A)): faster, the imaginary part accurate relative to
 * (|Ar| + |Ai|)*(|Br| + |Bi|) rather than to its terms.
 * scgemm, dzgemm: A real (op(A) by transa: N, or T and C alike), alpha, beta,
 * B and C complex.
 * Long products are split over threads by columns of C; the result is the
 * same bits whatever the number of threads. */
void ork_blas_cgemm3m(const char *transa, const char *transb, const ork_int *m, const ork_int *n, const ork_int *k, const ork_complex8 *alpha, const ork_complex8 *a, const ork_int *lda, const ork_complex8 *b, const ork_int *ldb, const ork_complex8 *beta, ork_complex8 *c, const ork_int *ldc);
void ork_blas_zgemm3m(const char *transa, const char *transb, const ork_int *m, const ork_int *n, const ork_int *k, const ork_complex16 *alpha, const ork_complex16 *a, const ork_int *lda, const ork_complex16 *b, const ork_int *ldb, const ork_complex16 *beta, ork_complex16 *c, const ork_int *ldc);
void ork_blas_scgemm(const char *transa, const char *transb, const ork_int *m, const ork_int *n, const ork_int *k, const ork_complex8 *alpha, const float *a, const ork_int *lda, const ork_complex8 *b, const ork_int *ldb, const ork_complex8 *beta, ork_complex8 *c, const ork_int *ldc);
void ork_blas_dzgemm(const char *transa, const char *transb, const ork_int *m, const ork_int *n, const ork_int *k, const ork_complex16 *alpha, const double *a, const ork_int *lda, const ork_complex16 *b, const ork_int *ldb, const ork_complex16 *beta, ork_complex16 *c, const ork_int *ldc);

ORK_END_C

#endif
