/* The C interface to the BLAS (CBLAS) of libblas.so.3 and libcblas.so.3:
 * integers are int, scalars of the real routines by value and of the complex
 * ones by address, matrices in row-major or column-major layout. Argument
 * errors go to cblas_xerbla with the 1-based position of the bad argument
 * (the layout is argument 1), which prints it to standard error and ends the
 * process with exit(-1), as the reference CBLAS does; a program may replace
 * cblas_xerbla with its own, and the call returns having done nothing when
 * that one returns. */
#ifndef ORK_CBLAS_H
#define ORK_CBLAS_H
#include <stddef.h>
#include "ork/types.h"
ORK_BEGIN_C

typedef enum CBLAS_LAYOUT { CblasRowMajor = 101, CblasColMajor = 102 } CBLAS_LAYOUT;
typedef enum CBLAS_TRANSPOSE { CblasNoTrans = 111, CblasTrans = 112, CblasConjTrans = 113 } CBLAS_TRANSPOSE;
typedef enum CBLAS_UPLO { CblasUpper = 121, CblasLower = 122 } CBLAS_UPLO;
typedef enum CBLAS_DIAG { CblasNonUnit = 131, CblasUnit = 132 } CBLAS_DIAG;
typedef enum CBLAS_SIDE { CblasLeft = 141, CblasRight = 142 } CBLAS_SIDE;
typedef CBLAS_LAYOUT CBLAS_ORDER;
/* i?amax: the 0-based index of the first element of largest |re| + |im|. */
#define CBLAS_INDEX size_t

/* Flags set around an argument-error report: RowMajorStrg (1 when the call
 * was row-major) and CBLAS_CallFromC (1 while a CBLAS call reports through
 * xerbla_). */
extern int RowMajorStrg;
extern int CBLAS_CallFromC;
void cblas_xerbla(int p, const char *rout, const char *form, ...);

/* ---- mixed and magnitude helpers ---- */
float cblas_sdsdot(const int n, const float alpha, const float *x, const int incx, const float *y, const int incy);
double cblas_dsdot(const int n, const float *x, const int incx, const float *y, const int incy);
float cblas_scabs1(const void *z);
double cblas_dcabs1(const void *z);
/* ---- single ---- */
void cblas_sswap(const int n, float *x, const int incx, float *y, const int incy);
void cblas_scopy(const int n, const float *x, const int incx, float *y, const int incy);
void cblas_saxpy(const int n, const float alpha, const float *x, const int incx, float *y, const int incy);
void cblas_sscal(const int n, const float alpha, float *x, const int incx);
float cblas_sdot(const int n, const float *x, const int incx, const float *y, const int incy);
float cblas_snrm2(const int n, const float *x, const int incx);
float cblas_sasum(const int n, const float *x, const int incx);
CBLAS_INDEX cblas_isamax(const int n, const float *x, const int incx);
void cblas_srotg(float *a, float *b, float *c, float *s);
void cblas_srotmg(float *d1, float *d2, float *b1, const float b2, float *param);
void cblas_srot(const int n, float *x, const int incx, float *y, const int incy, const float c, const float s);
void cblas_srotm(const int n, float *x, const int incx, float *y, const int incy, const float *param);
void cblas_sgemv(CBLAS_LAYOUT layout, CBLAS_TRANSPOSE trans, const int m, const int n, float alpha, const float *a, const int lda, const float *x, const int incx, float beta, float *y, const int incy);
void cblas_sgbmv(CBLAS_LAYOUT layout, CBLAS_TRANSPOSE trans, const int m, const int n, const int kl, const int ku, float alpha, const float *a, const int lda, const float *x, const int incx, float beta, float *y, const int incy);
void cblas_strmv(CBLAS_LAYOUT layout, CBLAS_UPLO uplo, CBLAS_TRANSPOSE trans, CBLAS_DIAG diag, const int n, const float *a, const int lda, float *x, const int incx);
void cblas_stbmv(CBLAS_LAYOUT layout, CBLAS_UPLO uplo, CBLAS_TRANSPOSE trans, CBLAS_DIAG diag, const int n, const int k, const float *a, const int lda, float *x, const int incx);
void cblas_stpmv(CBLAS_LAYOUT layout, CBLAS_UPLO uplo, CBLAS_TRANSPOSE trans, CBLAS_DIAG diag, const int n, const float *ap, float *x, const int incx);
void cblas_strsv(CBLAS_LAYOUT layout, CBLAS_UPLO uplo, CBLAS_TRANSPOSE trans, CBLAS_DIAG diag, const int n, const float *a, const int lda, float *x, const int incx);
void cblas_stbsv(CBLAS_LAYOUT layout, CBLAS_UPLO uplo, CBLAS_TRANSPOSE trans, CBLAS_DIAG diag, const int n, const int k, const float *a, const int lda, float *x, const int incx);
void cblas_stpsv(CBLAS_LAYOUT layout, CBLAS_UPLO uplo, CBLAS_TRANSPOSE trans, CBLAS_DIAG diag, const int n, const float *ap, float *x, const int incx);
void cblas_ssymv(CBLAS_LAYOUT layout, CBLAS_UPLO uplo, const int n, float alpha, const float *a, const int lda, const float *x, const int incx, float beta, float *y, const int incy);
void cblas_ssbmv(CBLAS_LAYOUT layout, CBLAS_UPLO uplo, const int n, const int k, float alpha, const float *a, const int lda, const float *x, const int incx, float beta, float *y, const int incy);
void cblas_sspmv(CBLAS_LAYOUT layout, CBLAS_UPLO uplo, const int n, float alpha, const float *ap, const float *x, const int incx, float beta, float *y, const int incy);
void cblas_sger(CBLAS_LAYOUT layout, const int m, const int n, float alpha, const float *x, const int incx, const float *y, const int incy, float *a, const int lda);
void cblas_ssyr(CBLAS_LAYOUT layout, CBLAS_UPLO uplo, const int n, float alpha, const float *x, const int incx, float *a, const int lda);
void cblas_sspr(CBLAS_LAYOUT layout, CBLAS_UPLO uplo, const int n, float alpha, const float *x, const int incx, float *ap);
void cblas_ssyr2(CBLAS_LAYOUT layout, CBLAS_UPLO uplo, const int n, float alpha, const float *x, const int incx, const float *y, const int incy, float *a, const int lda);
void cblas_sspr2(CBLAS_LAYOUT layout, CBLAS_UPLO uplo, const int n, float alpha, const float *x, const int incx, const float *y, const int incy, float *ap);
void cblas_sgemm(CBLAS_LAYOUT layout, CBLAS_TRANSPOSE transa, CBLAS_TRANSPOSE transb, const int m, const int n, const int k, float alpha, const float *a, const int lda, const float *b, const int ldb, float beta, float *c, const int ldc);
void cblas_ssymm(CBLAS_LAYOUT layout, CBLAS_SIDE side, CBLAS_UPLO uplo, const int m, const int n, float alpha, const float *a, const int lda, const float *b, const int ldb, float beta, float *c, const int ldc);
void cblas_ssyrk(CBLAS_LAYOUT layout, CBLAS_UPLO uplo, CBLAS_TRANSPOSE trans, const int n, const int k, float alpha, const float *a, const int lda, float beta, float *c, const int ldc);
void cblas_ssyr2k(CBLAS_LAYOUT layout, CBLAS_UPLO uplo, CBLAS_TRANSPOSE trans, const int n, const int k, float alpha, const float *a, const int lda, const float *b, const int ldb, float beta, float *c, const int ldc);
void cblas_strmm(CBLAS_LAYOUT layout, CBLAS_SIDE side, CBLAS_UPLO uplo, CBLAS_TRANSPOSE transa, CBLAS_DIAG diag, const int m, const int n, float alpha, const float *a, const int lda, float *b, const int ldb);
void cblas_strsm(CBLAS_LAYOUT layout, CBLAS_SIDE side, CBLAS_UPLO uplo, CBLAS_TRANSPOSE transa, CBLAS_DIAG diag, const int m, const int n, float alpha, const float *a, const int lda, float *b, const int ldb);
/* ---- double ---- */
void cblas_dswap(const int n, double *x, const int incx, double *y, const int incy);
void cblas_dcopy(const int n, const double *x, const int incx, double *y, const int incy);
void cblas_daxpy(const int n, const double alpha, const double *x, const int incx, double *y, const int incy);
void cblas_dscal(const int n, const double alpha, double *x, const int incx);
double cblas_ddot(const int n, const double *x, const int incx, const double *y, const int incy);
double cblas_dnrm2(const int n, const double *x, const int incx);
double cblas_dasum(const int n, const double *x, const int incx);
CBLAS_INDEX cblas_idamax(const int n, const double *x, const int incx);
void cblas_drotg(double *a, double *b, double *c, double *s);
void cblas_drotmg(double *d1, double *d2, double *b1, const double b2, double *param);
void cblas_drot(const int n, double *x, const int incx, double *y, const int incy, const double c, const double s);
void cblas_drotm(const int n, double *x, const int incx, double *y, const int incy, const double *param);
void cblas_dgemv(CBLAS_LAYOUT layout, CBLAS_TRANSPOSE trans, const int m, const int n, double alpha, const double *a, const int lda, const double *x, const int incx, double beta, double *y, const int incy);
void cblas_dgbmv(CBLAS_LAYOUT layout, CBLAS_TRANSPOSE trans, const int m, const int n, const int kl, const int ku, double alpha, const double *a, const int lda, const double *x, const int incx, double beta, double *y, const int incy);
void cblas_dtrmv(CBLAS_LAYOUT layout, CBLAS_UPLO uplo, CBLAS_TRANSPOSE trans, CBLAS_DIAG diag, const int n, const double *a, const int lda, double *x, const int incx);
void cblas_dtbmv(CBLAS_LAYOUT layout, CBLAS_UPLO uplo, CBLAS_TRANSPOSE trans, CBLAS_DIAG diag, const int n, const int k, const double *a, const int lda, double *x, const int incx);
void cblas_dtpmv(CBLAS_LAYOUT layout, CBLAS_UPLO uplo, CBLAS_TRANSPOSE trans, CBLAS_DIAG diag, const int n, const double *ap, double *x, const int incx);
void cblas_dtrsv(CBLAS_LAYOUT layout, CBLAS_UPLO uplo, CBLAS_TRANSPOSE trans, CBLAS_DIAG diag, const int n, const double *a, const int lda, double *x, const int incx);
void cblas_dtbsv(CBLAS_LAYOUT layout, CBLAS_UPLO uplo, CBLAS_TRANSPOSE trans, CBLAS_DIAG diag, const int n, const int k, const double *a, const int lda, double *x, const int incx);
void cblas_dtpsv(CBLAS_LAYOUT layout, CBLAS_UPLO uplo, CBLAS_TRANSPOSE trans, CBLAS_DIAG diag, const int n, const double *ap, double *x, const int incx);
void cblas_dsymv(CBLAS_LAYOUT layout, CBLAS_UPLO uplo, const int n, double alpha, const double *a, const int lda, const double *x, const int incx, double beta, double *y, const int incy);
void cblas_dsbmv(CBLAS_LAYOUT layout, CBLAS_UPLO uplo, const int n, const int k, double alpha, const double *a, const int lda, const double *x, const int incx, double beta, double *y, const int incy);
void cblas_dspmv(CBLAS_LAYOUT layout, CBLAS_UPLO uplo, const int n, double alpha, const double *ap, const double *x, const int incx, double beta, double *y, const int incy);
void cblas_dger(CBLAS_LAYOUT layout, const int m, const int n, double alpha, const double *x, const int incx, const double *y, const int incy, double *a, const int lda);
void cblas_dsyr(CBLAS_LAYOUT layout, CBLAS_UPLO uplo, const int n, double alpha, const double *x, const int incx, double *a, const int lda);
void cblas_dspr(CBLAS_LAYOUT layout, CBLAS_UPLO uplo, const int n, double alpha, const double *x, const int incx, double *ap);
void cblas_dsyr2(CBLAS_LAYOUT layout, CBLAS_UPLO uplo, const int n, double alpha, const double *x, const int incx, const double *y, const int incy, double *a, const int lda);
void cblas_dspr2(CBLAS_LAYOUT layout, CBLAS_UPLO uplo, const int n, double alpha, const double *x, const int incx, const double *y, const int incy, double *ap);
void cblas_dgemm(CBLAS_LAYOUT layout, CBLAS_TRANSPOSE transa, CBLAS_TRANSPOSE transb, const int m, const int n, const int k, double alpha, const double *a, const int lda, const double *b, const int ldb, double beta, double *c, const int ldc);
void cblas_dsymm(CBLAS_LAYOUT layout, CBLAS_SIDE side, CBLAS_UPLO uplo, const int m, const int n, double alpha, const double *a, const int lda, const double *b, const int ldb, double beta, double *c, const int ldc);
void cblas_dsyrk(CBLAS_LAYOUT layout, CBLAS_UPLO uplo, CBLAS_TRANSPOSE trans, const int n, const int k, double alpha, const double *a, const int lda, double beta, double *c, const int ldc);
void cblas_dsyr2k(CBLAS_LAYOUT layout, CBLAS_UPLO uplo, CBLAS_TRANSPOSE trans, const int n, const int k, double alpha, const double *a, const int lda, const double *b, const int ldb, double beta, double *c, const int ldc);
void cblas_dtrmm(CBLAS_LAYOUT layout, CBLAS_SIDE side, CBLAS_UPLO uplo, CBLAS_TRANSPOSE transa, CBLAS_DIAG diag, const int m, const int n, double alpha, const double *a, const int lda, double *b, const int ldb);
void cblas_dtrsm(CBLAS_LAYOUT layout, CBLAS_SIDE side, CBLAS_UPLO uplo, CBLAS_TRANSPOSE transa, CBLAS_DIAG diag, const int m, const int n, double alpha, const double *a, const int lda, double *b, const int ldb);
/* ---- single complex ---- */
void cblas_cswap(const int n, void *x, const int incx, void *y, const int incy);
void cblas_ccopy(const int n, const void *x, const int incx, void *y, const int incy);
void cblas_caxpy(const int n, const void *alpha, const void *x, const int incx, void *y, const int incy);
void cblas_cscal(const int n, const void *alpha, void *x, const int incx);
void cblas_csscal(const int n, const float alpha, void *x, const int incx);
void cblas_cdotu_sub(const int n, const void *x, const int incx, const void *y, const int incy, void *dotu);
void cblas_cdotc_sub(const int n, const void *x, const int incx, const void *y, const int incy, void *dotc);
float cblas_scnrm2(const int n, const void *x, const int incx);
float cblas_scasum(const int n, const void *x, const int incx);
CBLAS_INDEX cblas_icamax(const int n, const void *x, const int incx);
void cblas_crotg(void *a, void *b, float *c, void *s);
void cblas_csrot(const int n, void *x, const int incx, void *y, const int incy, const float c, const float s);
void cblas_cgemv(CBLAS_LAYOUT layout, CBLAS_TRANSPOSE trans, const int m, const int n, const void *alpha, const void *a, const int lda, const void *x, const int incx, const void *beta, void *y, const int incy);
void cblas_cgbmv(CBLAS_LAYOUT layout, CBLAS_TRANSPOSE trans, const int m, const int n, const int kl, const int ku, const void *alpha, const void *a, const int lda, const void *x, const int incx, const void *beta, void *y, const int incy);
void cblas_ctrmv(CBLAS_LAYOUT layout, CBLAS_UPLO uplo, CBLAS_TRANSPOSE trans, CBLAS_DIAG diag, const int n, const void *a, const int lda, void *x, const int incx);
void cblas_ctbmv(CBLAS_LAYOUT layout, CBLAS_UPLO uplo, CBLAS_TRANSPOSE trans, CBLAS_DIAG diag, const int n, const int k, const void *a, const int lda, void *x, const int incx);
void cblas_ctpmv(CBLAS_LAYOUT layout, CBLAS_UPLO uplo, CBLAS_TRANSPOSE trans, CBLAS_DIAG diag, const int n, const void *ap, void *x, const int incx);
void cblas_ctrsv(CBLAS_LAYOUT layout, CBLAS_UPLO uplo, CBLAS_TRANSPOSE trans, CBLAS_DIAG diag, const int n, const void *a, const int lda, void *x, const int incx);
void cblas_ctbsv(CBLAS_LAYOUT layout, CBLAS_UPLO uplo, CBLAS_TRANSPOSE trans, CBLAS_DIAG diag, const int n, const int k, const void *a, const int lda, void *x, const int incx);
void cblas_ctpsv(CBLAS_LAYOUT layout, CBLAS_UPLO uplo, CBLAS_TRANSPOSE trans, CBLAS_DIAG diag, const int n, const void *ap, void *x, const int incx);
void cblas_chemv(CBLAS_LAYOUT layout, CBLAS_UPLO uplo, const int n, const void *alpha, const void *a, const int lda, const void *x, const int incx, const void *beta, void *y, const int incy);
void cblas_chbmv(CBLAS_LAYOUT layout, CBLAS_UPLO uplo, const int n, const int k, const void *alpha, const void *a, const int lda, const void *x, const int incx, const void *beta, void *y, const int incy);
void cblas_chpmv(CBLAS_LAYOUT layout, CBLAS_UPLO uplo, const int n, const void *alpha, const void *ap, const void *x, const int incx, const void *beta, void *y, const int incy);
void cblas_cgeru(CBLAS_LAYOUT layout, const int m, const int n, const void *alpha, const void *x, const int incx, const void *y, const int incy, void *a, const int lda);
void cblas_cgerc(CBLAS_LAYOUT layout, const int m, const int n, const void *alpha, const void *x, const int incx, const void *y, const int incy, void *a, const int lda);
void cblas_cher(CBLAS_LAYOUT layout, CBLAS_UPLO uplo, const int n, const float alpha, const void *x, const int incx, void *a, const int lda);
void cblas_chpr(CBLAS_LAYOUT layout, CBLAS_UPLO uplo, const int n, const float alpha, const void *x, const int incx, void *ap);
void cblas_cher2(CBLAS_LAYOUT layout, CBLAS_UPLO uplo, const int n, const void *alpha, const void *x, const int incx, const void *y, const int incy, void *a, const int lda);
void cblas_chpr2(CBLAS_LAYOUT layout, CBLAS_UPLO uplo, const int n, const void *alpha, const void *x, const int incx, const void *y, const int incy, void *ap);
void cblas_cgemm(CBLAS_LAYOUT layout, CBLAS_TRANSPOSE transa, CBLAS_TRANSPOSE transb, const int m, const int n, const int k, const void *alpha, const void *a, const int lda, const void *b, const int ldb, const void *beta, void *c, const int ldc);
void cblas_csymm(CBLAS_LAYOUT layout, CBLAS_SIDE side, CBLAS_UPLO uplo, const int m, const int n, const void *alpha, const void *a, const int lda, const void *b, const int ldb, const void *beta, void *c, const int ldc);
void cblas_csyrk(CBLAS_LAYOUT layout, CBLAS_UPLO uplo, CBLAS_TRANSPOSE trans, const int n, const int k, const void *alpha, const void *a, const int lda, const void *beta, void *c, const int ldc);
void cblas_csyr2k(CBLAS_LAYOUT layout, CBLAS_UPLO uplo, CBLAS_TRANSPOSE trans, const int n, const int k, const void *alpha, const void *a, const int lda, const void *b, const int ldb, const void *beta, void *c, const int ldc);
void cblas_chemm(CBLAS_LAYOUT layout, CBLAS_SIDE side, CBLAS_UPLO uplo, const int m, const int n, const void *alpha, const void *a, const int lda, const void *b, const int ldb, const void *beta, void *c, const int ldc);
void cblas_cherk(CBLAS_LAYOUT layout, CBLAS_UPLO uplo, CBLAS_TRANSPOSE trans, const int n, const int k, const float alpha, const void *a, const int lda, const float beta, void *c, const int ldc);
void cblas_cher2k(CBLAS_LAYOUT layout, CBLAS_UPLO uplo, CBLAS_TRANSPOSE trans, const int n, const int k, const void *alpha, const void *a, const int lda, const void *b, const int ldb, const float beta, void *c, const int ldc);
void cblas_ctrmm(CBLAS_LAYOUT layout, CBLAS_SIDE side, CBLAS_UPLO uplo, CBLAS_TRANSPOSE transa, CBLAS_DIAG diag, const int m, const int n, const void *alpha, const void *a, const int lda, void *b, const int ldb);
void cblas_ctrsm(CBLAS_LAYOUT layout, CBLAS_SIDE side, CBLAS_UPLO uplo, CBLAS_TRANSPOSE transa, CBLAS_DIAG diag, const int m, const int n, const void *alpha, const void *a, const int lda, void *b, const int ldb);
/* ---- double complex ---- */
void cblas_zswap(const int n, void *x, const int incx, void *y, const int incy);
void cblas_zcopy(const int n, const void *x, const int incx, void *y, const int incy);
void cblas_zaxpy(const int n, const void *alpha, const void *x, const int incx, void *y, const int incy);
void cblas_zscal(const int n, const void *alpha, void *x, const int incx);
void cblas_zdscal(const int n, const double alpha, void *x, const int incx);
void cblas_zdotu_sub(const int n, const void *x, const int incx, const void *y, const int incy, void *dotu);
void cblas_zdotc_sub(const int n, const void *x, const int incx, const void *y, const int incy, void *dotc);
double cblas_dznrm2(const int n, const void *x, const int incx);
double cblas_dzasum(const int n, const void *x, const int incx);
CBLAS_INDEX cblas_izamax(const int n, const void *x, const int incx);
void cblas_zrotg(void *a, void *b, double *c, void *s);
void cblas_zdrot(const int n, void *x, const int incx, void *y, const int incy, const double c, const double s);
void cblas_zgemv(CBLAS_LAYOUT layout, CBLAS_TRANSPOSE trans, const int m, const int n, const void *alpha, const void *a, const int lda, const void *x, const int incx, const void *beta, void *y, const int incy);
void cblas_zgbmv(CBLAS_LAYOUT layout, CBLAS_TRANSPOSE trans, const int m, const int n, const int kl, const int ku, const void *alpha, const void *a, const int lda, const void *x, const int incx, const void *beta, void *y, const int incy);
void cblas_ztrmv(CBLAS_LAYOUT layout, CBLAS_UPLO uplo, CBLAS_TRANSPOSE trans, CBLAS_DIAG diag, const int n, const void *a, const int lda, void *x, const int incx);
void cblas_ztbmv(CBLAS_LAYOUT layout, CBLAS_UPLO uplo, CBLAS_TRANSPOSE trans, CBLAS_DIAG diag, const int n, const int k, const void *a, const int lda, void *x, const int incx);
void cblas_ztpmv(CBLAS_LAYOUT layout, CBLAS_UPLO uplo, CBLAS_TRANSPOSE trans, CBLAS_DIAG diag, const int n, const void *ap, void *x, const int incx);
void cblas_ztrsv(CBLAS_LAYOUT layout, CBLAS_UPLO uplo, CBLAS_TRANSPOSE trans, CBLAS_DIAG diag, const int n, const void *a, const int lda, void *x, const int incx);
void cblas_ztbsv(CBLAS_LAYOUT layout, CBLAS_UPLO uplo, CBLAS_TRANSPOSE trans, CBLAS_DIAG diag, const int n, const int k, const void *a, const int lda, void *x, const int incx);
void cblas_ztpsv(CBLAS_LAYOUT layout, CBLAS_UPLO uplo, CBLAS_TRANSPOSE trans, CBLAS_DIAG diag, const int n, const void *ap, void *x, const int incx);
void cblas_zhemv(CBLAS_LAYOUT layout, CBLAS_UPLO uplo, const int n, const void *alpha, const void *a, const int lda, const void *x, const int incx, const void *beta, void *y, const int incy);
void cblas_zhbmv(CBLAS_LAYOUT layout, CBLAS_UPLO uplo, const int n, const int k, const void *alpha, const void *a, const int lda, const void *x, const int incx, const void *beta, void *y, const int incy);
void cblas_zhpmv(CBLAS_LAYOUT layout, CBLAS_UPLO uplo, const int n, const void *alpha, const void *ap, const void *x, const int incx, const void *beta, void *y, const int incy);
void cblas_zgeru(CBLAS_LAYOUT layout, const int m, const int n, const void *alpha, const void *x, const int incx, const void *y, const int incy, void *a, const int lda);
void cblas_zgerc(CBLAS_LAYOUT layout, const int m, const int n, const void *alpha, const void *x, const int incx, const void *y, const int incy, void *a, const int lda);
void cblas_zher(CBLAS_LAYOUT layout, CBLAS_UPLO uplo, const int n, const double alpha, const void *x, const int incx, void *a, const int lda);
void cblas_zhpr(CBLAS_LAYOUT layout, CBLAS_UPLO uplo, const int n, const double alpha, const void *x, const int incx, void *ap);
void cblas_zher2(CBLAS_LAYOUT layout, CBLAS_UPLO uplo, const int n, const void *alpha, const void *x, const int incx, const void *y, const int incy, void *a, const int lda);
void cblas_zhpr2(CBLAS_LAYOUT layout, CBLAS_UPLO uplo, const int n, const void *alpha, const void *x, const int incx, const void *y, const int incy, void *ap);
void cblas_zgemm(CBLAS_LAYOUT layout, CBLAS_TRANSPOSE transa, CBLAS_TRANSPOSE transb, const int m, const int n, const int k, const void *alpha, const void *a, const int lda, const void *b, const int ldb, const void *beta, void *c, const int ldc);
void cblas_zsymm(CBLAS_LAYOUT layout, CBLAS_SIDE side, CBLAS_UPLO uplo, const int m, const int n, const void *alpha, const void *a, const int lda, const void *b, const int ldb, const void *beta, void *c, const int ldc);
void cblas_zsyrk(CBLAS_LAYOUT layout, CBLAS_UPLO uplo, CBLAS_TRANSPOSE trans, const int n, const int k, const void *alpha, const void *a, const int lda, const void *beta, void *c, const int ldc);
void cblas_zsyr2k(CBLAS_LAYOUT layout, CBLAS_UPLO uplo, CBLAS_TRANSPOSE trans, const int n, const int k, const void *alpha, const void *a, const int lda, const void *b, const int ldb, const void *beta, void *c, const int ldc);
void cblas_zhemm(CBLAS_LAYOUT layout, CBLAS_SIDE side, CBLAS_UPLO uplo, const int m, const int n, const void *alpha, const void *a, const int lda, const void *b, const int ldb, const void *beta, void *c, const int ldc);
void cblas_zherk(CBLAS_LAYOUT layout, CBLAS_UPLO uplo, CBLAS_TRANSPOSE trans, const int n, const int k, const double alpha, const void *a, const int lda, const double beta, void *c, const int ldc);
void cblas_zher2k(CBLAS_LAYOUT layout, CBLAS_UPLO uplo, CBLAS_TRANSPOSE trans, const int n, const int k, const void *alpha, const void *a, const int lda, const void *b, const int ldb, const double beta, void *c, const int ldc);
void cblas_ztrmm(CBLAS_LAYOUT layout, CBLAS_SIDE side, CBLAS_UPLO uplo, CBLAS_TRANSPOSE transa, CBLAS_DIAG diag, const int m, const int n, const void *alpha, const void *a, const int lda, void *b, const int ldb);
void cblas_ztrsm(CBLAS_LAYOUT layout, CBLAS_SIDE side, CBLAS_UPLO uplo, CBLAS_TRANSPOSE transa, CBLAS_DIAG diag, const int m, const int n, const void *alpha, const void *a, const int lda, void *b, const int ldb);

ORK_END_C
#endif
