/* BLAS entries by their standard names, ork_blas_<routine>: 64-bit integers,
 * every argument by address, character flags read by their first letter.
 *
 * libork defines every name below: it checks the arguments, picks the kernel
 * library for this processor and splits large calls over threads. Applications
 * call these. The kernel library also defines the names marked [k] as kernels
 * of its own (it has no argument checks); the loader binds a caller to
 * whichever definition it finds first, libork's when an application links it. */
#ifndef ORK_BLAS_H
#define ORK_BLAS_H

#include "ork/types.h"
#include "ork/level2.h"

ORK_BEGIN_C

/* ---- level 1: y := alpha*x + y, y := x, x <-> y ---- */
void ork_blas_saxpy(const ork_int *n, const float *alpha, const float *x, const ork_int *incx, float *y, const ork_int *incy);
void ork_blas_daxpy(const ork_int *n, const double *alpha, const double *x, const ork_int *incx, double *y, const ork_int *incy);
void ork_blas_caxpy(const ork_int *n, const ork_complex8 *alpha, const ork_complex8 *x, const ork_int *incx, ork_complex8 *y, const ork_int *incy);
void ork_blas_zaxpy(const ork_int *n, const ork_complex16 *alpha, const ork_complex16 *x, const ork_int *incx, ork_complex16 *y, const ork_int *incy);
void ork_blas_scopy(const ork_int *n, const float *x, const ork_int *incx, float *y, const ork_int *incy);
void ork_blas_dcopy(const ork_int *n, const double *x, const ork_int *incx, double *y, const ork_int *incy);
void ork_blas_ccopy(const ork_int *n, const ork_complex8 *x, const ork_int *incx, ork_complex8 *y, const ork_int *incy);
void ork_blas_zcopy(const ork_int *n, const ork_complex16 *x, const ork_int *incx, ork_complex16 *y, const ork_int *incy);
void ork_blas_sswap(const ork_int *n, float *x, const ork_int *incx, float *y, const ork_int *incy);
void ork_blas_dswap(const ork_int *n, double *x, const ork_int *incx, double *y, const ork_int *incy);
void ork_blas_cswap(const ork_int *n, ork_complex8 *x, const ork_int *incx, ork_complex8 *y, const ork_int *incy);
void ork_blas_zswap(const ork_int *n, ork_complex16 *x, const ork_int *incx, ork_complex16 *y, const ork_int *incy);

/* ---- x := alpha*x [k] ---- */
void ork_blas_sscal(const ork_int *n, const float *alpha, float *x, const ork_int *incx);
void ork_blas_dscal(const ork_int *n, const double *alpha, double *x, const ork_int *incx);
void ork_blas_cscal(const ork_int *n, const ork_complex8 *alpha, ork_complex8 *x, const ork_int *incx);
void ork_blas_zscal(const ork_int *n, const ork_complex16 *alpha, ork_complex16 *x, const ork_int *incx);
void ork_blas_csscal(const ork_int *n, const float *alpha, ork_complex8 *x, const ork_int *incx);
void ork_blas_zdscal(const ork_int *n, const double *alpha, ork_complex16 *x, const ork_int *incx);

/* ---- dot products; c conjugates x, u does not ---- */
float ork_blas_sdot(const ork_int *n, const float *x, const ork_int *incx, const float *y, const ork_int *incy);
double ork_blas_ddot(const ork_int *n, const double *x, const ork_int *incx, const double *y, const ork_int *incy);
ork_complex8 ork_blas_cdotc(const ork_int *n, const ork_complex8 *x, const ork_int *incx, const ork_complex8 *y, const ork_int *incy);
ork_complex8 ork_blas_cdotu(const ork_int *n, const ork_complex8 *x, const ork_int *incx, const ork_complex8 *y, const ork_int *incy); /* [k] */
ork_complex16 ork_blas_zdotc(const ork_int *n, const ork_complex16 *x, const ork_int *incx, const ork_complex16 *y, const ork_int *incy); /* [k] */
ork_complex16 ork_blas_zdotu(const ork_int *n, const ork_complex16 *x, const ork_int *incx, const ork_complex16 *y, const ork_int *incy); /* [k] */
/* single inputs accumulated in double [k] */
double ork_blas_dsdot(const ork_int *n, const float *x, const ork_int *incx, const float *y, const ork_int *incy);
float ork_blas_sdsdot(const ork_int *n, const float *sb, const float *x, const ork_int *incx, const float *y, const ork_int *incy);

/* ---- norms, sums, index searches [k] ---- */
float ork_blas_snrm2(const ork_int *n, const float *x, const ork_int *incx);
double ork_blas_dnrm2(const ork_int *n, const double *x, const ork_int *incx);
float ork_blas_scnrm2(const ork_int *n, const ork_complex8 *x, const ork_int *incx);
double ork_blas_dznrm2(const ork_int *n, const ork_complex16 *x, const ork_int *incx);
float ork_blas_sasum(const ork_int *n, const float *x, const ork_int *incx);
double ork_blas_dasum(const ork_int *n, const double *x, const ork_int *incx);
float ork_blas_scasum(const ork_int *n, const ork_complex8 *x, const ork_int *incx);
double ork_blas_dzasum(const ork_int *n, const ork_complex16 *x, const ork_int *incx);
double ork_blas_dcabs1(const ork_complex16 *z);
/* 1-based index of the largest (amax) or smallest (amin) |re| + |im|; 0 for
 * n <= 0 or incx <= 0; the first of equal magnitudes wins. */
ork_int ork_blas_isamax(const ork_int *n, const float *x, const ork_int *incx);
ork_int ork_blas_idamax(const ork_int *n, const double *x, const ork_int *incx);
ork_int ork_blas_icamax(const ork_int *n, const ork_complex8 *x, const ork_int *incx);
ork_int ork_blas_izamax(const ork_int *n, const ork_complex16 *x, const ork_int *incx);
ork_int ork_blas_isamin(const ork_int *n, const float *x, const ork_int *incx);
ork_int ork_blas_idamin(const ork_int *n, const double *x, const ork_int *incx);
ork_int ork_blas_icamin(const ork_int *n, const ork_complex8 *x, const ork_int *incx);
ork_int ork_blas_izamin(const ork_int *n, const ork_complex16 *x, const ork_int *incx);

/* ---- plane rotations: (x, y) := (c*x + s*y, c*y - s*x); crot/zrot use conj(s) for y ---- */
void ork_blas_srot(const ork_int *n, float *x, const ork_int *incx, float *y, const ork_int *incy, const float *c, const float *s);
void ork_blas_drot(const ork_int *n, double *x, const ork_int *incx, double *y, const ork_int *incy, const double *c, const double *s);
void ork_blas_csrot(const ork_int *n, ork_complex8 *x, const ork_int *incx, ork_complex8 *y, const ork_int *incy, const float *c, const float *s);
void ork_blas_zdrot(const ork_int *n, ork_complex16 *x, const ork_int *incx, ork_complex16 *y, const ork_int *incy, const double *c, const double *s);
void ork_blas_crot(const ork_int *n, ork_complex8 *x, const ork_int *incx, ork_complex8 *y, const ork_int *incy, const float *c, const ork_complex8 *s);
void ork_blas_zrot(const ork_int *n, ork_complex16 *x, const ork_int *incx, ork_complex16 *y, const ork_int *incy, const double *c, const ork_complex16 *s);
/* rotation generators [k]: a and b are overwritten (a := r; b := z for the
 * real forms, b untouched for the complex forms) */
void ork_blas_srotg(float *a, float *b, float *c, float *s);
void ork_blas_drotg(double *a, double *b, double *c, double *s);
void ork_blas_crotg(ork_complex8 *a, const ork_complex8 *b, float *c, ork_complex8 *s);
void ork_blas_zrotg(ork_complex16 *a, const ork_complex16 *b, double *c, ork_complex16 *s);
/* modified rotations [k]; param = flag, h11, h21, h12, h22 */
void ork_blas_srotm(const ork_int *n, float *x, const ork_int *incx, float *y, const ork_int *incy, const float *param);
void ork_blas_drotm(const ork_int *n, double *x, const ork_int *incx, double *y, const ork_int *incy, const double *param);
void ork_blas_srotmg(float *d1, float *d2, float *x1, const float *y1, float *param);
void ork_blas_drotmg(double *d1, double *d2, double *x1, const double *y1, double *param);
/* an elementary reflector of order 2 or 3 across contiguous vectors [k]:
 * t := (x + v*y [+ w*z])*tau; x -= t; y -= t*v [; z -= t*w] */
void ork_blas_srot2(const ork_int *n, float *x, float *y, const float *v, const float *tau);
void ork_blas_drot2(const ork_int *n, double *x, double *y, const double *v, const double *tau);
void ork_blas_crot2(const ork_int *n, ork_complex8 *x, ork_complex8 *y, const ork_complex8 *v, const ork_complex8 *tau);
void ork_blas_zrot2(const ork_int *n, ork_complex16 *x, ork_complex16 *y, const ork_complex16 *v, const ork_complex16 *tau);
void ork_blas_srot3(const ork_int *n, float *x, float *y, float *z, const float *v, const float *w, const float *tau);
void ork_blas_drot3(const ork_int *n, double *x, double *y, double *z, const double *v, const double *w, const double *tau);
void ork_blas_crot3(const ork_int *n, ork_complex8 *x, ork_complex8 *y, ork_complex8 *z, const ork_complex8 *v, const ork_complex8 *w, const ork_complex8 *tau);
void ork_blas_zrot3(const ork_int *n, ork_complex16 *x, ork_complex16 *y, ork_complex16 *z, const ork_complex16 *v, const ork_complex16 *w, const ork_complex16 *tau);
/* a vector of plane rotations, element by element [k]:
 * (x_i, y_i) := (c_i*x_i + s_i*y_i, c_i*y_i - conj(s_i)*x_i) */
void ork_blas_slartv(const ork_int *n, float *x, const ork_int *incx, float *y, const ork_int *incy, const float *c, const float *s, const ork_int *incc);
void ork_blas_dlartv(const ork_int *n, double *x, const ork_int *incx, double *y, const ork_int *incy, const double *c, const double *s, const ork_int *incc);
void ork_blas_clartv(const ork_int *n, ork_complex8 *x, const ork_int *incx, ork_complex8 *y, const ork_int *incy, const float *c, const ork_complex8 *s, const ork_int *incc);
void ork_blas_zlartv(const ork_int *n, ork_complex16 *x, const ork_int *incx, ork_complex16 *y, const ork_int *incy, const double *c, const ork_complex16 *s, const ork_int *incc);

/* ---- sparse level 1 [k]: (nz, x, indx) with 1-based indx into dense y ---- */
void ork_blas_saxpyi(const ork_int *nz, const float *alpha, const float *x, const ork_int *indx, float *y);
void ork_blas_daxpyi(const ork_int *nz, const double *alpha, const double *x, const ork_int *indx, double *y);
void ork_blas_caxpyi(const ork_int *nz, const ork_complex8 *alpha, const ork_complex8 *x, const ork_int *indx, ork_complex8 *y);
void ork_blas_zaxpyi(const ork_int *nz, const ork_complex16 *alpha, const ork_complex16 *x, const ork_int *indx, ork_complex16 *y);
float ork_blas_sdoti(const ork_int *nz, const float *x, const ork_int *indx, const float *y);
double ork_blas_ddoti(const ork_int *nz, const double *x, const ork_int *indx, const double *y);
ork_complex8 ork_blas_cdotci(const ork_int *nz, const ork_complex8 *x, const ork_int *indx, const ork_complex8 *y);
ork_complex8 ork_blas_cdotui(const ork_int *nz, const ork_complex8 *x, const ork_int *indx, const ork_complex8 *y);
ork_complex16 ork_blas_zdotci(const ork_int *nz, const ork_complex16 *x, const ork_int *indx, const ork_complex16 *y);
ork_complex16 ork_blas_zdotui(const ork_int *nz, const ork_complex16 *x, const ork_int *indx, const ork_complex16 *y);
void ork_blas_sgthr(const ork_int *nz, const float *y, float *x, const ork_int *indx);
void ork_blas_dgthr(const ork_int *nz, const double *y, double *x, const ork_int *indx);
void ork_blas_cgthr(const ork_int *nz, const ork_complex8 *y, ork_complex8 *x, const ork_int *indx);
void ork_blas_zgthr(const ork_int *nz, const ork_complex16 *y, ork_complex16 *x, const ork_int *indx);
void ork_blas_sgthrz(const ork_int *nz, float *y, float *x, const ork_int *indx);
void ork_blas_dgthrz(const ork_int *nz, double *y, double *x, const ork_int *indx);
void ork_blas_cgthrz(const ork_int *nz, ork_complex8 *y, ork_complex8 *x, const ork_int *indx);
void ork_blas_zgthrz(const ork_int *nz, ork_complex16 *y, ork_complex16 *x, const ork_int *indx);
void ork_blas_ssctr(const ork_int *nz, const float *x, const ork_int *indx, float *y);
void ork_blas_dsctr(const ork_int *nz, const double *x, const ork_int *indx, double *y);
void ork_blas_csctr(const ork_int *nz, const ork_complex8 *x, const ork_int *indx, ork_complex8 *y);
void ork_blas_zsctr(const ork_int *nz, const ork_complex16 *x, const ork_int *indx, ork_complex16 *y);
void ork_blas_sroti(const ork_int *nz, float *x, const ork_int *indx, float *y, const float *c, const float *s);
void ork_blas_droti(const ork_int *nz, double *x, const ork_int *indx, double *y, const double *c, const double *s);

/* ---- level 2: ork/level2.h ---- */

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
