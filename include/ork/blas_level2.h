/* Level-2 BLAS entries by their standard names, ork_blas_<routine>: 64-bit
 * integers, every argument by address, flags read by their first letter,
 * packed and band storage as in the reference BLAS. libork defines them all
 * (argument checks, kernel choice, threads); the kernel library defines the
 * same names as its unchecked kernels. The triangular ones are below, the
 * products and updates in ork/level2.h. */
#ifndef ORK_BLAS_LEVEL2_H
#define ORK_BLAS_LEVEL2_H

#include "ork/types.h"
#include "ork/level2.h"

ORK_BEGIN_C

/* x := op(A)*x, A triangular (tr: full, tb: band with k diagonals, tp: packed); diag U: unit */
void ork_blas_strmv(const char *uplo, const char *trans, const char *diag, const ork_int *n, const float *a, const ork_int *lda, float *x, const ork_int *incx);
void ork_blas_dtrmv(const char *uplo, const char *trans, const char *diag, const ork_int *n, const double *a, const ork_int *lda, double *x, const ork_int *incx);
void ork_blas_ctrmv(const char *uplo, const char *trans, const char *diag, const ork_int *n, const ork_complex8 *a, const ork_int *lda, ork_complex8 *x, const ork_int *incx);
void ork_blas_ztrmv(const char *uplo, const char *trans, const char *diag, const ork_int *n, const ork_complex16 *a, const ork_int *lda, ork_complex16 *x, const ork_int *incx);
void ork_blas_stbmv(const char *uplo, const char *trans, const char *diag, const ork_int *n, const ork_int *k, const float *a, const ork_int *lda, float *x, const ork_int *incx);
void ork_blas_dtbmv(const char *uplo, const char *trans, const char *diag, const ork_int *n, const ork_int *k, const double *a, const ork_int *lda, double *x, const ork_int *incx);
void ork_blas_ctbmv(const char *uplo, const char *trans, const char *diag, const ork_int *n, const ork_int *k, const ork_complex8 *a, const ork_int *lda, ork_complex8 *x, const ork_int *incx);
void ork_blas_ztbmv(const char *uplo, const char *trans, const char *diag, const ork_int *n, const ork_int *k, const ork_complex16 *a, const ork_int *lda, ork_complex16 *x, const ork_int *incx);
void ork_blas_stpmv(const char *uplo, const char *trans, const char *diag, const ork_int *n, const float *ap, float *x, const ork_int *incx);
void ork_blas_dtpmv(const char *uplo, const char *trans, const char *diag, const ork_int *n, const double *ap, double *x, const ork_int *incx);
void ork_blas_ctpmv(const char *uplo, const char *trans, const char *diag, const ork_int *n, const ork_complex8 *ap, ork_complex8 *x, const ork_int *incx);
void ork_blas_ztpmv(const char *uplo, const char *trans, const char *diag, const ork_int *n, const ork_complex16 *ap, ork_complex16 *x, const ork_int *incx);
/* x := inv(op(A))*x, the same storages; no test for singularity */
void ork_blas_strsv(const char *uplo, const char *trans, const char *diag, const ork_int *n, const float *a, const ork_int *lda, float *x, const ork_int *incx);
void ork_blas_dtrsv(const char *uplo, const char *trans, const char *diag, const ork_int *n, const double *a, const ork_int *lda, double *x, const ork_int *incx);
void ork_blas_ctrsv(const char *uplo, const char *trans, const char *diag, const ork_int *n, const ork_complex8 *a, const ork_int *lda, ork_complex8 *x, const ork_int *incx);
void ork_blas_ztrsv(const char *uplo, const char *trans, const char *diag, const ork_int *n, const ork_complex16 *a, const ork_int *lda, ork_complex16 *x, const ork_int *incx);
void ork_blas_stbsv(const char *uplo, const char *trans, const char *diag, const ork_int *n, const ork_int *k, const float *a, const ork_int *lda, float *x, const ork_int *incx);
void ork_blas_dtbsv(const char *uplo, const char *trans, const char *diag, const ork_int *n, const ork_int *k, const double *a, const ork_int *lda, double *x, const ork_int *incx);
void ork_blas_ctbsv(const char *uplo, const char *trans, const char *diag, const ork_int *n, const ork_int *k, const ork_complex8 *a, const ork_int *lda, ork_complex8 *x, const ork_int *incx);
void ork_blas_ztbsv(const char *uplo, const char *trans, const char *diag, const ork_int *n, const ork_int *k, const ork_complex16 *a, const ork_int *lda, ork_complex16 *x, const ork_int *incx);
void ork_blas_stpsv(const char *uplo, const char *trans, const char *diag, const ork_int *n, const float *ap, float *x, const ork_int *incx);
void ork_blas_dtpsv(const char *uplo, const char *trans, const char *diag, const ork_int *n, const double *ap, double *x, const ork_int *incx);
void ork_blas_ctpsv(const char *uplo, const char *trans, const char *diag, const ork_int *n, const ork_complex8 *ap, ork_complex8 *x, const ork_int *incx);
void ork_blas_ztpsv(const char *uplo, const char *trans, const char *diag, const ork_int *n, const ork_complex16 *ap, ork_complex16 *x, const ork_int *incx);

ORK_END_C

#endif
