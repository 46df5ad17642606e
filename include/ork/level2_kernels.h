/* Kernel-library-only names of the level-2 products and updates: the x main
 * entries that libork dispatches ?symv and ?syr2 to, and the pieces that let
 * libork split a symmetric update over threads. Unchecked; 64-bit integers,
 * every argument by address. (x?gemv, xssyr and xdsyr are in
 * ork/blas_kernels.h; the other level-2 kernels carry their standard names,
 * ork/blas_level2.h.) */
#ifndef ORK_LEVEL2_KERNELS_H
#define ORK_LEVEL2_KERNELS_H

#include "ork/types.h"

ORK_BEGIN_C

/* y := alpha*A*x + beta*y, A symmetric, the triangle named by uplo */
void ork_blas_xssymv(const char *uplo, const ork_int *n, const float *alpha, const float *a, const ork_int *lda, const float *x, const ork_int *incx, const float *beta, float *y, const ork_int *incy);
void ork_blas_xdsymv(const char *uplo, const ork_int *n, const double *alpha, const double *a, const ork_int *lda, const double *x, const ork_int *incx, const double *beta, double *y, const ork_int *incy);
/* A := alpha*x*y' + alpha*y*x' + A on the triangle named by uplo */
void ork_blas_xssyr2(const char *uplo, const ork_int *n, const float *alpha, const float *x, const ork_int *incx, const float *y, const ork_int *incy, float *a, const ork_int *lda);
void ork_blas_xdsyr2(const char *uplo, const ork_int *n, const double *alpha, const double *x, const ork_int *incx, const double *y, const ork_int *incy, double *a, const ork_int *lda);

/* Pieces of ?syr and ?syr2: the arguments of the whole update, then the
 * 1-based inclusive range first..last of the columns of A to update
 * (1 <= first, last <= n; nothing when first > last). Column j of the
 * triangle is rows 1..j (uplo U) or j..n (uplo L) of column j of A; x and y
 * are the whole vectors, addressed as in the whole update. Pieces on disjoint
 * column ranges write disjoint parts of A, and every element gets the
 * operations of the whole update. */
void ork_blas_xssyr_in_thread(const char *uplo, const ork_int *n, const float *alpha, const float *x, const ork_int *incx, float *a, const ork_int *lda, const ork_int *first, const ork_int *last);
void ork_blas_xdsyr_in_thread(const char *uplo, const ork_int *n, const double *alpha, const double *x, const ork_int *incx, double *a, const ork_int *lda, const ork_int *first, const ork_int *last);
void ork_blas_xssyr2_in_thread(const char *uplo, const ork_int *n, const float *alpha, const float *x, const ork_int *incx, const float *y, const ork_int *incy, float *a, const ork_int *lda, const ork_int *first, const ork_int *last);
void ork_blas_xdsyr2_in_thread(const char *uplo, const ork_int *n, const double *alpha, const double *x, const ork_int *incx, const double *y, const ork_int *incy, double *a, const ork_int *lda, const ork_int *first, const ork_int *last);

ORK_END_C

#endif
