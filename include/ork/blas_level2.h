/* Level-2 BLAS entries by their standard names, ork_blas_<routine>: 64-bit
 * integers, every argument by address, flags read by their first letter,
 * packed and band storage as in the reference BLAS. libork defines them all
 * (argument checks, kernel choice, threads); the kernel library defines the
 * same names as its unchecked kernels. ?gemv and ?syr are in ork/blas.h. */
#ifndef ORK_BLAS_LEVEL2_H
#define ORK_BLAS_LEVEL2_H

#include "ork/types.h"

ORK_BEGIN_C

/* y := alpha*op(A)*x + beta*y, A general band with kl sub- and ku super-diagonals */
void ork_blas_sgbmv(const char *trans, const ork_int *m, const ork_int *n, const ork_int *kl, const ork_int *ku, const float *alpha, const float *a, const ork_int *lda, const float *x, const ork_int *incx, const float *beta, float *y, const ork_int *incy);
void ork_blas_dgbmv(const char *trans, const ork_int *m, const ork_int *n, const ork_int *kl, const ork_int *ku, const double *alpha, const double *a, const ork_int *lda, const double *x, const ork_int *incx, const double *beta, double *y, const ork_int *incy);
void ork_blas_cgbmv(const char *trans, const ork_int *m, const ork_int *n, const ork_int *kl, const ork_int *ku, const ork_complex8 *alpha, const ork_complex8 *a, const ork_int *lda, const ork_complex8 *x, const ork_int *incx, const ork_complex8 *beta, ork_complex8 *y, const ork_int *incy);
void ork_blas_zgbmv(const char *trans, const ork_int *m, const ork_int *n, const ork_int *kl, const ork_int *ku, const ork_complex16 *alpha, const ork_complex16 *a, const ork_int *lda, const ork_complex16 *x, const ork_int *incx, const ork_complex16 *beta, ork_complex16 *y, const ork_int *incy);
/* y := alpha*A*x + beta*y, A symmetric (sy: full storage, sb: band, sp: packed), triangle by uplo */
void ork_blas_ssymv(const char *uplo, const ork_int *n, const float *alpha, const float *a, const ork_int *lda, const float *x, const ork_int *incx, const float *beta, float *y, const ork_int *incy);
void ork_blas_dsymv(const char *uplo, const ork_int *n, const double *alpha, const double *a, const ork_int *lda, const double *x, const ork_int *incx, const double *beta, double *y, const ork_int *incy);
void ork_blas_ssbmv(const char *uplo, const ork_int *n, const ork_int *k, const float *alpha, const float *a, const ork_int *lda, const float *x, const ork_int *incx, const float *beta, float *y, const ork_int *incy);
void ork_blas_dsbmv(const char *uplo, const ork_int *n, const ork_int *k, const double *alpha, const double *a, const ork_int *lda, const double *x, const ork_int *incx, const double *beta, double *y, const ork_int *incy);
void ork_blas_sspmv(const char *uplo, const ork_int *n, const float *alpha, const float *ap, const float *x, const ork_int *incx, const float *beta, float *y, const ork_int *incy);
void ork_blas_dspmv(const char *uplo, const ork_int *n, const double *alpha, const double *ap, const double *x, const ork_int *incx, const double *beta, double *y, const ork_int *incy);
/* the same with A Hermitian (the imaginary parts of its diagonal are not read) */
void ork_blas_chemv(const char *uplo, const ork_int *n, const ork_complex8 *alpha, const ork_complex8 *a, const ork_int *lda, const ork_complex8 *x, const ork_int *incx, const ork_complex8 *beta, ork_complex8 *y, const ork_int *incy);
void ork_blas_zhemv(const char *uplo, const ork_int *n, const ork_complex16 *alpha, const ork_complex16 *a, const ork_int *lda, const ork_complex16 *x, const ork_int *incx, const ork_complex16 *beta, ork_complex16 *y, const ork_int *incy);
void ork_blas_chbmv(const char *uplo, const ork_int *n, const ork_int *k, const ork_complex8 *alpha, const ork_complex8 *a, const ork_int *lda, const ork_complex8 *x, const ork_int *incx, const ork_complex8 *beta, ork_complex8 *y, const ork_int *incy);
void ork_blas_zhbmv(const char *uplo, const ork_int *n, const ork_int *k, const ork_complex16 *alpha, const ork_complex16 *a, const ork_int *lda, const ork_complex16 *x, const ork_int *incx, const ork_complex16 *beta, ork_complex16 *y, const ork_int *incy);
void ork_blas_chpmv(const char *uplo, const ork_int *n, const ork_complex8 *alpha, const ork_complex8 *ap, const ork_complex8 *x, const ork_int *incx, const ork_complex8 *beta, ork_complex8 *y, const ork_int *incy);
void ork_blas_zhpmv(const char *uplo, const ork_int *n, const ork_complex16 *alpha, const ork_complex16 *ap, const ork_complex16 *x, const ork_int *incx, const ork_complex16 *beta, ork_complex16 *y, const ork_int *incy);
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
/* A := alpha*x*y' + A (gerc: alpha*x*conj(y)' + A) */
void ork_blas_sger(const ork_int *m, const ork_int *n, const float *alpha, const float *x, const ork_int *incx, const float *y, const ork_int *incy, float *a, const ork_int *lda);
void ork_blas_dger(const ork_int *m, const ork_int *n, const double *alpha, const double *x, const ork_int *incx, const double *y, const ork_int *incy, double *a, const ork_int *lda);
void ork_blas_cgeru(const ork_int *m, const ork_int *n, const ork_complex8 *alpha, const ork_complex8 *x, const ork_int *incx, const ork_complex8 *y, const ork_int *incy, ork_complex8 *a, const ork_int *lda);
void ork_blas_zgeru(const ork_int *m, const ork_int *n, const ork_complex16 *alpha, const ork_complex16 *x, const ork_int *incx, const ork_complex16 *y, const ork_int *incy, ork_complex16 *a, const ork_int *lda);
void ork_blas_cgerc(const ork_int *m, const ork_int *n, const ork_complex8 *alpha, const ork_complex8 *x, const ork_int *incx, const ork_complex8 *y, const ork_int *incy, ork_complex8 *a, const ork_int *lda);
void ork_blas_zgerc(const ork_int *m, const ork_int *n, const ork_complex16 *alpha, const ork_complex16 *x, const ork_int *incx, const ork_complex16 *y, const ork_int *incy, ork_complex16 *a, const ork_int *lda);
/* symmetric updates of the triangle named by uplo: A := alpha*x*x' + A (spr packed), A := alpha*x*y' + alpha*y*x' + A (syr2, spr2) */
void ork_blas_sspr(const char *uplo, const ork_int *n, const float *alpha, const float *x, const ork_int *incx, float *ap);
void ork_blas_dspr(const char *uplo, const ork_int *n, const double *alpha, const double *x, const ork_int *incx, double *ap);
void ork_blas_ssyr2(const char *uplo, const ork_int *n, const float *alpha, const float *x, const ork_int *incx, const float *y, const ork_int *incy, float *a, const ork_int *lda);
void ork_blas_dsyr2(const char *uplo, const ork_int *n, const double *alpha, const double *x, const ork_int *incx, const double *y, const ork_int *incy, double *a, const ork_int *lda);
void ork_blas_sspr2(const char *uplo, const ork_int *n, const float *alpha, const float *x, const ork_int *incx, const float *y, const ork_int *incy, float *ap);
void ork_blas_dspr2(const char *uplo, const ork_int *n, const double *alpha, const double *x, const ork_int *incx, const double *y, const ork_int *incy, double *ap);
/* Hermitian updates: A := alpha*x*x^H + A with real alpha (her, hpr), A := alpha*x*y^H + conj(alpha)*y*x^H + A (her2, hpr2); the diagonal's imaginary parts are set to zero */
void ork_blas_cher(const char *uplo, const ork_int *n, const float *alpha, const ork_complex8 *x, const ork_int *incx, ork_complex8 *a, const ork_int *lda);
void ork_blas_zher(const char *uplo, const ork_int *n, const double *alpha, const ork_complex16 *x, const ork_int *incx, ork_complex16 *a, const ork_int *lda);
void ork_blas_chpr(const char *uplo, const ork_int *n, const float *alpha, const ork_complex8 *x, const ork_int *incx, ork_complex8 *ap);
void ork_blas_zhpr(const char *uplo, const ork_int *n, const double *alpha, const ork_complex16 *x, const ork_int *incx, ork_complex16 *ap);
void ork_blas_cher2(const char *uplo, const ork_int *n, const ork_complex8 *alpha, const ork_complex8 *x, const ork_int *incx, const ork_complex8 *y, const ork_int *incy, ork_complex8 *a, const ork_int *lda);
void ork_blas_zher2(const char *uplo, const ork_int *n, const ork_complex16 *alpha, const ork_complex16 *x, const ork_int *incx, const ork_complex16 *y, const ork_int *incy, ork_complex16 *a, const ork_int *lda);
void ork_blas_chpr2(const char *uplo, const ork_int *n, const ork_complex8 *alpha, const ork_complex8 *x, const ork_int *incx, const ork_complex8 *y, const ork_int *incy, ork_complex8 *ap);
void ork_blas_zhpr2(const char *uplo, const ork_int *n, const ork_complex16 *alpha, const ork_complex16 *x, const ork_int *incx, const ork_complex16 *y, const ork_int *incy, ork_complex16 *ap);

ORK_END_C

#endif
