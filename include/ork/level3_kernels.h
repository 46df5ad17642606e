/* Kernel-library names of the level-3 routines besides the general product:
 * the x-prefixed kernels behind libork's entries of ork/blas_level3.h, with
 * the same argument lists (64-bit integers, every argument by address), and
 * the recursive symmetric product. Defined by libork_<generation>.so; these
 * do no argument checking. */
#ifndef ORK_LEVEL3_KERNELS_H
#define ORK_LEVEL3_KERNELS_H

#include "ork/types.h"

ORK_BEGIN_C

/* C := alpha*A*B + beta*C (side L) or alpha*B*A + beta*C (side R), A symmetric (hemm: Hermitian) */
void ork_blas_xssymm(const char *side, const char *uplo, const ork_int *m, const ork_int *n, const float *alpha, const float *a, const ork_int *lda, const float *b, const ork_int *ldb, const float *beta, float *c, const ork_int *ldc);
void ork_blas_xdsymm(const char *side, const char *uplo, const ork_int *m, const ork_int *n, const double *alpha, const double *a, const ork_int *lda, const double *b, const ork_int *ldb, const double *beta, double *c, const ork_int *ldc);
void ork_blas_xcsymm(const char *side, const char *uplo, const ork_int *m, const ork_int *n, const ork_complex8 *alpha, const ork_complex8 *a, const ork_int *lda, const ork_complex8 *b, const ork_int *ldb, const ork_complex8 *beta, ork_complex8 *c, const ork_int *ldc);
void ork_blas_xzsymm(const char *side, const char *uplo, const ork_int *m, const ork_int *n, const ork_complex16 *alpha, const ork_complex16 *a, const ork_int *lda, const ork_complex16 *b, const ork_int *ldb, const ork_complex16 *beta, ork_complex16 *c, const ork_int *ldc);
void ork_blas_xchemm(const char *side, const char *uplo, const ork_int *m, const ork_int *n, const ork_complex8 *alpha, const ork_complex8 *a, const ork_int *lda, const ork_complex8 *b, const ork_int *ldb, const ork_complex8 *beta, ork_complex8 *c, const ork_int *ldc);
void ork_blas_xzhemm(const char *side, const char *uplo, const ork_int *m, const ork_int *n, const ork_complex16 *alpha, const ork_complex16 *a, const ork_int *lda, const ork_complex16 *b, const ork_int *ldb, const ork_complex16 *beta, ork_complex16 *c, const ork_int *ldc);
/* C += alpha*A*B (side L) or alpha*B*A (side R), C already scaled by beta; work: 524288 bytes, 64-byte aligned */
void ork_blas_xssymm_recursive(const char *side, const char *uplo, const ork_int *m, const ork_int *n, const float *alpha, const float *a, const ork_int *lda, const float *b, const ork_int *ldb, float *c, const ork_int *ldc, void *work);
void ork_blas_xdsymm_recursive(const char *side, const char *uplo, const ork_int *m, const ork_int *n, const double *alpha, const double *a, const ork_int *lda, const double *b, const ork_int *ldb, double *c, const ork_int *ldc, void *work);
void ork_blas_xcsymm_recursive(const char *side, const char *uplo, const ork_int *m, const ork_int *n, const ork_complex8 *alpha, const ork_complex8 *a, const ork_int *lda, const ork_complex8 *b, const ork_int *ldb, ork_complex8 *c, const ork_int *ldc, void *work);
void ork_blas_xzsymm_recursive(const char *side, const char *uplo, const ork_int *m, const ork_int *n, const ork_complex16 *alpha, const ork_complex16 *a, const ork_int *lda, const ork_complex16 *b, const ork_int *ldb, ork_complex16 *c, const ork_int *ldc, void *work);
/* rank-k updates of one triangle of C */
void ork_blas_xssyrk(const char *uplo, const char *trans, const ork_int *n, const ork_int *k, const float *alpha, const float *a, const ork_int *lda, const float *beta, float *c, const ork_int *ldc);
void ork_blas_xdsyrk(const char *uplo, const char *trans, const ork_int *n, const ork_int *k, const double *alpha, const double *a, const ork_int *lda, const double *beta, double *c, const ork_int *ldc);
void ork_blas_xcsyrk(const char *uplo, const char *trans, const ork_int *n, const ork_int *k, const ork_complex8 *alpha, const ork_complex8 *a, const ork_int *lda, const ork_complex8 *beta, ork_complex8 *c, const ork_int *ldc);
void ork_blas_xzsyrk(const char *uplo, const char *trans, const ork_int *n, const ork_int *k, const ork_complex16 *alpha, const ork_complex16 *a, const ork_int *lda, const ork_complex16 *beta, ork_complex16 *c, const ork_int *ldc);
void ork_blas_xcherk(const char *uplo, const char *trans, const ork_int *n, const ork_int *k, const float *alpha, const ork_complex8 *a, const ork_int *lda, const float *beta, ork_complex8 *c, const ork_int *ldc);
void ork_blas_xzherk(const char *uplo, const char *trans, const ork_int *n, const ork_int *k, const double *alpha, const ork_complex16 *a, const ork_int *lda, const double *beta, ork_complex16 *c, const ork_int *ldc);
/* rank-2k updates of one triangle of C */
void ork_blas_xssyr2k(const char *uplo, const char *trans, const ork_int *n, const ork_int *k, const float *alpha, const float *a, const ork_int *lda, const float *b, const ork_int *ldb, const float *beta, float *c, const ork_int *ldc);
void ork_blas_xdsyr2k(const char *uplo, const char *trans, const ork_int *n, const ork_int *k, const double *alpha, const double *a, const ork_int *lda, const double *b, const ork_int *ldb, const double *beta, double *c, const ork_int *ldc);
void ork_blas_xcsyr2k(const char *uplo, const char *trans, const ork_int *n, const ork_int *k, const ork_complex8 *alpha, const ork_complex8 *a, const ork_int *lda, const ork_complex8 *b, const ork_int *ldb, const ork_complex8 *beta, ork_complex8 *c, const ork_int *ldc);
void ork_blas_xzsyr2k(const char *uplo, const char *trans, const ork_int *n, const ork_int *k, const ork_complex16 *alpha, const ork_complex16 *a, const ork_int *lda, const ork_complex16 *b, const ork_int *ldb, const ork_complex16 *beta, ork_complex16 *c, const ork_int *ldc);
void ork_blas_xcher2k(const char *uplo, const char *trans, const ork_int *n, const ork_int *k, const ork_complex8 *alpha, const ork_complex8 *a, const ork_int *lda, const ork_complex8 *b, const ork_int *ldb, const float *beta, ork_complex8 *c, const ork_int *ldc);
void ork_blas_xzher2k(const char *uplo, const char *trans, const ork_int *n, const ork_int *k, const ork_complex16 *alpha, const ork_complex16 *a, const ork_int *lda, const ork_complex16 *b, const ork_int *ldb, const double *beta, ork_complex16 *c, const ork_int *ldc);
/* triangular multiply and solve, B overwritten */
void ork_blas_xstrmm(const char *side, const char *uplo, const char *transa, const char *diag, const ork_int *m, const ork_int *n, const float *alpha, const float *a, const ork_int *lda, float *b, const ork_int *ldb);
void ork_blas_xdtrmm(const char *side, const char *uplo, const char *transa, const char *diag, const ork_int *m, const ork_int *n, const double *alpha, const double *a, const ork_int *lda, double *b, const ork_int *ldb);
void ork_blas_xctrmm(const char *side, const char *uplo, const char *transa, const char *diag, const ork_int *m, const ork_int *n, const ork_complex8 *alpha, const ork_complex8 *a, const ork_int *lda, ork_complex8 *b, const ork_int *ldb);
void ork_blas_xztrmm(const char *side, const char *uplo, const char *transa, const char *diag, const ork_int *m, const ork_int *n, const ork_complex16 *alpha, const ork_complex16 *a, const ork_int *lda, ork_complex16 *b, const ork_int *ldb);
void ork_blas_xstrsm(const char *side, const char *uplo, const char *transa, const char *diag, const ork_int *m, const ork_int *n, const float *alpha, const float *a, const ork_int *lda, float *b, const ork_int *ldb);
void ork_blas_xdtrsm(const char *side, const char *uplo, const char *transa, const char *diag, const ork_int *m, const ork_int *n, const double *alpha, const double *a, const ork_int *lda, double *b, const ork_int *ldb);
void ork_blas_xctrsm(const char *side, const char *uplo, const char *transa, const char *diag, const ork_int *m, const ork_int *n, const ork_complex8 *alpha, const ork_complex8 *a, const ork_int *lda, ork_complex8 *b, const ork_int *ldb);
void ork_blas_xztrsm(const char *side, const char *uplo, const char *transa, const char *diag, const ork_int *m, const ork_int *n, const ork_complex16 *alpha, const ork_complex16 *a, const ork_int *lda, ork_complex16 *b, const ork_int *ldb);

ORK_END_C

#endif
