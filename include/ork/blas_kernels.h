/* Kernel-library-only BLAS names: the x family of main entries, which libork
 * dispatches to, and the lp64_ wrappers with 32-bit integers. Defined by
 * libork_<generation>.so; these do no argument checking. */
#ifndef ORK_BLAS_KERNELS_H
#define ORK_BLAS_KERNELS_H

#include "ork/blas.h"

ORK_BEGIN_C

/* The processor generation the kernel library was built for; 0 = baseline. */
int dll_cpu_version(void);

/* ---- main entries of level 1 ---- */
void ork_blas_xsaxpy(const ork_int *n, const float *alpha, const float *x, const ork_int *incx, float *y, const ork_int *incy);
void ork_blas_xdaxpy(const ork_int *n, const double *alpha, const double *x, const ork_int *incx, double *y, const ork_int *incy);
void ork_blas_xcaxpy(const ork_int *n, const ork_complex8 *alpha, const ork_complex8 *x, const ork_int *incx, ork_complex8 *y, const ork_int *incy);
void ork_blas_xzaxpy(const ork_int *n, const ork_complex16 *alpha, const ork_complex16 *x, const ork_int *incx, ork_complex16 *y, const ork_int *incy);
void ork_blas_xscopy(const ork_int *n, const float *x, const ork_int *incx, float *y, const ork_int *incy);
void ork_blas_xdcopy(const ork_int *n, const double *x, const ork_int *incx, double *y, const ork_int *incy);
void ork_blas_xccopy(const ork_int *n, const ork_complex8 *x, const ork_int *incx, ork_complex8 *y, const ork_int *incy);
void ork_blas_xzcopy(const ork_int *n, const ork_complex16 *x, const ork_int *incx, ork_complex16 *y, const ork_int *incy);
float ork_blas_xsdot(const ork_int *n, const float *x, const ork_int *incx, const float *y, const ork_int *incy);
double ork_blas_xddot(const ork_int *n, const double *x, const ork_int *incx, const double *y, const ork_int *incy);
ork_complex8 ork_blas_xcdotc(const ork_int *n, const ork_complex8 *x, const ork_int *incx, const ork_complex8 *y, const ork_int *incy);
void ork_blas_xsswap(const ork_int *n, float *x, const ork_int *incx, float *y, const ork_int *incy);
void ork_blas_xdswap(const ork_int *n, double *x, const ork_int *incx, double *y, const ork_int *incy);
void ork_blas_xcswap(const ork_int *n, ork_complex8 *x, const ork_int *incx, ork_complex8 *y, const ork_int *incy);
void ork_blas_xzswap(const ork_int *n, ork_complex16 *x, const ork_int *incx, ork_complex16 *y, const ork_int *incy);
void ork_blas_xsrot(const ork_int *n, float *x, const ork_int *incx, float *y, const ork_int *incy, const float *c, const float *s);
void ork_blas_xdrot(const ork_int *n, double *x, const ork_int *incx, double *y, const ork_int *incy, const double *c, const double *s);
void ork_blas_xcsrot(const ork_int *n, ork_complex8 *x, const ork_int *incx, ork_complex8 *y, const ork_int *incy, const float *c, const float *s);
void ork_blas_xzdrot(const ork_int *n, ork_complex16 *x, const ork_int *incx, ork_complex16 *y, const ork_int *incy, const double *c, const double *s);
void ork_blas_xcrot(const ork_int *n, ork_complex8 *x, const ork_int *incx, ork_complex8 *y, const ork_int *incy, const float *c, const ork_complex8 *s);
void ork_blas_xzrot(const ork_int *n, ork_complex16 *x, const ork_int *incx, ork_complex16 *y, const ork_int *incy, const double *c, const ork_complex16 *s);

/* ---- 32-bit integer wrappers: widen n and the increments, then call the
 * ork_blas_ name of the same routine through the dynamic symbol ---- */
void ork_blas_lp64_saxpy(const ork_int32 *n, const float *alpha, const float *x, const ork_int32 *incx, float *y, const ork_int32 *incy);
void ork_blas_lp64_daxpy(const ork_int32 *n, const double *alpha, const double *x, const ork_int32 *incx, double *y, const ork_int32 *incy);
void ork_blas_lp64_caxpy(const ork_int32 *n, const ork_complex8 *alpha, const ork_complex8 *x, const ork_int32 *incx, ork_complex8 *y, const ork_int32 *incy);
void ork_blas_lp64_zaxpy(const ork_int32 *n, const ork_complex16 *alpha, const ork_complex16 *x, const ork_int32 *incx, ork_complex16 *y, const ork_int32 *incy);
void ork_blas_lp64_scopy(const ork_int32 *n, const float *x, const ork_int32 *incx, float *y, const ork_int32 *incy);
void ork_blas_lp64_dcopy(const ork_int32 *n, const double *x, const ork_int32 *incx, double *y, const ork_int32 *incy);
void ork_blas_lp64_ccopy(const ork_int32 *n, const ork_complex8 *x, const ork_int32 *incx, ork_complex8 *y, const ork_int32 *incy);
void ork_blas_lp64_zcopy(const ork_int32 *n, const ork_complex16 *x, const ork_int32 *incx, ork_complex16 *y, const ork_int32 *incy);
float ork_blas_lp64_sdot(const ork_int32 *n, const float *x, const ork_int32 *incx, const float *y, const ork_int32 *incy);
double ork_blas_lp64_ddot(const ork_int32 *n, const double *x, const ork_int32 *incx, const double *y, const ork_int32 *incy);
ork_complex8 ork_blas_lp64_cdotu(const ork_int32 *n, const ork_complex8 *x, const ork_int32 *incx, const ork_complex8 *y, const ork_int32 *incy);
ork_complex16 ork_blas_lp64_zdotu(const ork_int32 *n, const ork_complex16 *x, const ork_int32 *incx, const ork_complex16 *y, const ork_int32 *incy);
void ork_blas_lp64_sscal(const ork_int32 *n, const float *alpha, float *x, const ork_int32 *incx);
void ork_blas_lp64_dscal(const ork_int32 *n, const double *alpha, double *x, const ork_int32 *incx);
void ork_blas_lp64_cscal(const ork_int32 *n, const ork_complex8 *alpha, ork_complex8 *x, const ork_int32 *incx);
void ork_blas_lp64_zscal(const ork_int32 *n, const ork_complex16 *alpha, ork_complex16 *x, const ork_int32 *incx);

ORK_END_C

#endif
