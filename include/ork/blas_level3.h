/* Level-3 BLAS entries besides the matrix-multiply family (ork/blas.h):
 * 64-bit integers, every argument by address, flags by their first letter.
 * libork defines them (argument checks, threads); the kernel library defines
 * the x-prefixed kernels behind them (ork_blas_xdtrsm ...). */
#ifndef ORK_BLAS_LEVEL3_H
#define ORK_BLAS_LEVEL3_H

#include "ork/types.h"

ORK_BEGIN_C

/* C := alpha*A*B + beta*C (side L) or alpha*B*A + beta*C (side R), A symmetric (hemm: Hermitian) of order m or n, triangle by uplo */
void ork_blas_ssymm(const char *side, const char *uplo, const ork_int *m, const ork_int *n, const float *alpha, const float *a, const ork_int *lda, const float *b, const ork_int *ldb, const float *beta, float *c, const ork_int *ldc);
void ork_blas_dsymm(const char *side, const char *uplo, const ork_int *m, const ork_int *n, const double *alpha, const double *a, const ork_int *lda, const double *b, const ork_int *ldb, const double *beta, double *c, const ork_int *ldc);
void ork_blas_csymm(const char *side, const char *uplo, const ork_int *m, const ork_int *n, const ork_complex8 *alpha, const ork_complex8 *a, const ork_int *lda, const ork_complex8 *b, const ork_int *ldb, const ork_complex8 *beta, ork_complex8 *c, const ork_int *ldc);
void ork_blas_zsymm(const char *side, const char *uplo, const ork_int *m, const ork_int *n, const ork_complex16 *alpha, const ork_complex16 *a, const ork_int *lda, const ork_complex16 *b, const ork_int *ldb, const ork_complex16 *beta, ork_complex16 *c, const ork_int *ldc);
void ork_blas_chemm(const char *side, const char *uplo, const ork_int *m, const ork_int *n, const ork_complex8 *alpha, const ork_complex8 *a, const ork_int *lda, const ork_complex8 *b, const ork_int *ldb, const ork_complex8 *beta, ork_complex8 *c, const ork_int *ldc);
void ork_blas_zhemm(const char *side, const char *uplo, const ork_int *m, const ork_int *n, const ork_complex16 *alpha, const ork_complex16 *a, const ork_int *lda, const ork_complex16 *b, const ork_int *ldb, const ork_complex16 *beta, ork_complex16 *c, const ork_int *ldc);
/* C := alpha*A*A' + beta*C (trans N) or alpha*A'*A + beta*C (T; herk: C, conjugate transpose, real alpha and beta), on the triangle by uplo */
void ork_blas_ssyrk(const char *uplo, const char *trans, const ork_int *n, const ork_int *k, const float *alpha, const float *a, const ork_int *lda, const float *beta, float *c, const ork_int *ldc);
void ork_blas_dsyrk(const char *uplo, const char *trans, const ork_int *n, const ork_int *k, const double *alpha, const double *a, const ork_int *lda, const double *beta, double *c, const ork_int *ldc);
void ork_blas_csyrk(const char *uplo, const char *trans, const ork_int *n, const ork_int *k, const ork_complex8 *alpha, const ork_complex8 *a, const ork_int *lda, const ork_complex8 *beta, ork_complex8 *c, const ork_int *ldc);
void ork_blas_zsyrk(const char *uplo, const char *trans, const ork_int *n, const ork_int *k, const ork_complex16 *alpha, const ork_complex16 *a, const ork_int *lda, const ork_complex16 *beta, ork_complex16 *c, const ork_int *ldc);
void ork_blas_cherk(const char *uplo, const char *trans, const ork_int *n, const ork_int *k, const float *alpha, const ork_complex8 *a, const ork_int *lda, const float *beta, ork_complex8 *c, const ork_int *ldc);
void ork_blas_zherk(const char *uplo, const char *trans, const ork_int *n, const ork_int *k, const double *alpha, const ork_complex16 *a, const ork_int *lda, const double *beta, ork_complex16 *c, const ork_int *ldc);
/* C := alpha*A*B' + alpha*B*A' + beta*C or the transposed form (her2k: alpha*A*B^H + conj(alpha)*B*A^H, real beta) */
void ork_blas_ssyr2k(const char *uplo, const char *trans, const ork_int *n, const ork_int *k, const float *alpha, const float *a, const ork_int *lda, const float *b, const ork_int *ldb, const float *beta, float *c, const ork_int *ldc);
void ork_blas_dsyr2k(const char *uplo, const char *trans, const ork_int *n, const ork_int *k, const double *alpha, const double *a, const ork_int *lda, const double *b, const ork_int *ldb, const double *beta, double *c, const ork_int *ldc);
void ork_blas_csyr2k(const char *uplo, const char *trans, const ork_int *n, const ork_int *k, const ork_complex8 *alpha, const ork_complex8 *a, const ork_int *lda, const ork_complex8 *b, const ork_int *ldb, const ork_complex8 *beta, ork_complex8 *c, const ork_int *ldc);
void ork_blas_zsyr2k(const char *uplo, const char *trans, const ork_int *n, const ork_int *k, const ork_complex16 *alpha, const ork_complex16 *a, const ork_int *lda, const ork_complex16 *b, const ork_int *ldb, const ork_complex16 *beta, ork_complex16 *c, const ork_int *ldc);
void ork_blas_cher2k(const char *uplo, const char *trans, const ork_int *n, const ork_int *k, const ork_complex8 *alpha, const ork_complex8 *a, const ork_int *lda, const ork_complex8 *b, const ork_int *ldb, const float *beta, ork_complex8 *c, const ork_int *ldc);
void ork_blas_zher2k(const char *uplo, const char *trans, const ork_int *n, const ork_int *k, const ork_complex16 *alpha, const ork_complex16 *a, const ork_int *lda, const ork_complex16 *b, const ork_int *ldb, const double *beta, ork_complex16 *c, const ork_int *ldc);
/* B := alpha*op(A)*B (side L) or alpha*B*op(A) (side R), A triangular; trsm solves op(A)*X = alpha*B or X*op(A) = alpha*B, X over B */
void ork_blas_strmm(const char *side, const char *uplo, const char *transa, const char *diag, const ork_int *m, const ork_int *n, const float *alpha, const float *a, const ork_int *lda, float *b, const ork_int *ldb);
void ork_blas_dtrmm(const char *side, const char *uplo, const char *transa, const char *diag, const ork_int *m, const ork_int *n, const double *alpha, const double *a, const ork_int *lda, double *b, const ork_int *ldb);
void ork_blas_ctrmm(const char *side, const char *uplo, const char *transa, const char *diag, const ork_int *m, const ork_int *n, const ork_complex8 *alpha, const ork_complex8 *a, const ork_int *lda, ork_complex8 *b, const ork_int *ldb);
void ork_blas_ztrmm(const char *side, const char *uplo, const char *transa, const char *diag, const ork_int *m, const ork_int *n, const ork_complex16 *alpha, const ork_complex16 *a, const ork_int *lda, ork_complex16 *b, const ork_int *ldb);
void ork_blas_strsm(const char *side, const char *uplo, const char *transa, const char *diag, const ork_int *m, const ork_int *n, const float *alpha, const float *a, const ork_int *lda, float *b, const ork_int *ldb);
void ork_blas_dtrsm(const char *side, const char *uplo, const char *transa, const char *diag, const ork_int *m, const ork_int *n, const double *alpha, const double *a, const ork_int *lda, double *b, const ork_int *ldb);
void ork_blas_ctrsm(const char *side, const char *uplo, const char *transa, const char *diag, const ork_int *m, const ork_int *n, const ork_complex8 *alpha, const ork_complex8 *a, const ork_int *lda, ork_complex8 *b, const ork_int *ldb);
void ork_blas_ztrsm(const char *side, const char *uplo, const char *transa, const char *diag, const ork_int *m, const ork_int *n, const ork_complex16 *alpha, const ork_complex16 *a, const ork_int *lda, ork_complex16 *b, const ork_int *ldb);

ORK_END_C

#endif
