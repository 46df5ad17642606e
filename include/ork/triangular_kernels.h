/* Kernel-library names of the triangular level-2 kernels (64-bit integers,
 * every argument by address, flags read by their first letter). Defined by
 * libork_<generation>.so; they check nothing. The user-level names
 * (ork_blas_?trsv, ?tbmv, ?tpmv, ?tbsv, ?tpsv) that the kernel library also
 * defines are declared in ork/blas_level2.h.
 *
 * x?trmv: x := op(A)*x, A triangular, same arguments as ork_blas_?trmv.
 *
 * x?trmv_in_thread(uplo, trans, diag, n, a, lda, x, incx, y, first, len):
 *   y[0 .. len-1] := elements first+1 .. first+len (1-based) of op(A)*x, with
 *   y contiguous and x left unchanged; 0 <= first, first + len <= n. Each
 *   element is computed by the same operations in the same order whatever
 *   the range, and the same as x?trmv computes it when incx is 1, so pieces
 *   over disjoint ranges put together give x?trmv's bits. libork splits one
 *   product into such ranges over its threads.
 *
 * ?trsv_<u><t><d>: one diagonal block of ?trsv solved in place. u: l lower,
 *   u upper; t: n no transpose, t transposed, c conjugate-transposed (complex
 *   only); d: n non-unit, u unit diagonal (not read). Arguments: nb (block
 *   order), a (the block's first diagonal element), lda, x (the block's first
 *   unknown; unknown k lies at x + k*incx, for either sign of incx), incx. */
#ifndef ORK_TRIANGULAR_KERNELS_H
#define ORK_TRIANGULAR_KERNELS_H

#include "ork/types.h"

ORK_BEGIN_C

void ork_blas_xstrmv(const char *uplo, const char *trans, const char *diag, const ork_int *n, const float *a, const ork_int *lda, float *x, const ork_int *incx);
void ork_blas_xstrmv_in_thread(const char *uplo, const char *trans, const char *diag, const ork_int *n, const float *a, const ork_int *lda, const float *x, const ork_int *incx, float *y, const ork_int *first, const ork_int *len);
void ork_blas_xdtrmv(const char *uplo, const char *trans, const char *diag, const ork_int *n, const double *a, const ork_int *lda, double *x, const ork_int *incx);
void ork_blas_xdtrmv_in_thread(const char *uplo, const char *trans, const char *diag, const ork_int *n, const double *a, const ork_int *lda, const double *x, const ork_int *incx, double *y, const ork_int *first, const ork_int *len);
void ork_blas_xctrmv(const char *uplo, const char *trans, const char *diag, const ork_int *n, const ork_complex8 *a, const ork_int *lda, ork_complex8 *x, const ork_int *incx);
void ork_blas_xctrmv_in_thread(const char *uplo, const char *trans, const char *diag, const ork_int *n, const ork_complex8 *a, const ork_int *lda, const ork_complex8 *x, const ork_int *incx, ork_complex8 *y, const ork_int *first, const ork_int *len);
void ork_blas_xztrmv(const char *uplo, const char *trans, const char *diag, const ork_int *n, const ork_complex16 *a, const ork_int *lda, ork_complex16 *x, const ork_int *incx);
void ork_blas_xztrmv_in_thread(const char *uplo, const char *trans, const char *diag, const ork_int *n, const ork_complex16 *a, const ork_int *lda, const ork_complex16 *x, const ork_int *incx, ork_complex16 *y, const ork_int *first, const ork_int *len);
void ork_blas_strsv_lnn(const ork_int *nb, const float *a, const ork_int *lda, float *x, const ork_int *incx);
void ork_blas_strsv_lnu(const ork_int *nb, const float *a, const ork_int *lda, float *x, const ork_int *incx);
void ork_blas_strsv_ltn(const ork_int *nb, const float *a, const ork_int *lda, float *x, const ork_int *incx);
void ork_blas_strsv_ltu(const ork_int *nb, const float *a, const ork_int *lda, float *x, const ork_int *incx);
void ork_blas_strsv_unn(const ork_int *nb, const float *a, const ork_int *lda, float *x, const ork_int *incx);
void ork_blas_strsv_unu(const ork_int *nb, const float *a, const ork_int *lda, float *x, const ork_int *incx);
void ork_blas_strsv_utn(const ork_int *nb, const float *a, const ork_int *lda, float *x, const ork_int *incx);
void ork_blas_strsv_utu(const ork_int *nb, const float *a, const ork_int *lda, float *x, const ork_int *incx);
void ork_blas_dtrsv_lnn(const ork_int *nb, const double *a, const ork_int *lda, double *x, const ork_int *incx);
void ork_blas_dtrsv_lnu(const ork_int *nb, const double *a, const ork_int *lda, double *x, const ork_int *incx);
void ork_blas_dtrsv_ltn(const ork_int *nb, const double *a, const ork_int *lda, double *x, const ork_int *incx);
void ork_blas_dtrsv_ltu(const ork_int *nb, const double *a, const ork_int *lda, double *x, const ork_int *incx);
void ork_blas_dtrsv_unn(const ork_int *nb, const double *a, const ork_int *lda, double *x, const ork_int *incx);
void ork_blas_dtrsv_unu(const ork_int *nb, const double *a, const ork_int *lda, double *x, const ork_int *incx);
void ork_blas_dtrsv_utn(const ork_int *nb, const double *a, const ork_int *lda, double *x, const ork_int *incx);
void ork_blas_dtrsv_utu(const ork_int *nb, const double *a, const ork_int *lda, double *x, const ork_int *incx);
void ork_blas_ctrsv_lnn(const ork_int *nb, const ork_complex8 *a, const ork_int *lda, ork_complex8 *x, const ork_int *incx);
void ork_blas_ctrsv_lnu(const ork_int *nb, const ork_complex8 *a, const ork_int *lda, ork_complex8 *x, const ork_int *incx);
void ork_blas_ctrsv_ltn(const ork_int *nb, const ork_complex8 *a, const ork_int *lda, ork_complex8 *x, const ork_int *incx);
void ork_blas_ctrsv_ltu(const ork_int *nb, const ork_complex8 *a, const ork_int *lda, ork_complex8 *x, const ork_int *incx);
void ork_blas_ctrsv_lcn(const ork_int *nb, const ork_complex8 *a, const ork_int *lda, ork_complex8 *x, const ork_int *incx);
void ork_blas_ctrsv_lcu(const ork_int *nb, const ork_complex8 *a, const ork_int *lda, ork_complex8 *x, const ork_int *incx);
void ork_blas_ctrsv_unn(const ork_int *nb, const ork_complex8 *a, const ork_int *lda, ork_complex8 *x, const ork_int *incx);
void ork_blas_ctrsv_unu(const ork_int *nb, const ork_complex8 *a, const ork_int *lda, ork_complex8 *x, const ork_int *incx);
void ork_blas_ctrsv_utn(const ork_int *nb, const ork_complex8 *a, const ork_int *lda, ork_complex8 *x, const ork_int *incx);
void ork_blas_ctrsv_utu(const ork_int *nb, const ork_complex8 *a, const ork_int *lda, ork_complex8 *x, const ork_int *incx);
void ork_blas_ctrsv_ucn(const ork_int *nb, const ork_complex8 *a, const ork_int *lda, ork_complex8 *x, const ork_int *incx);
void ork_blas_ctrsv_ucu(const ork_int *nb, const ork_complex8 *a, const ork_int *lda, ork_complex8 *x, const ork_int *incx);
void ork_blas_ztrsv_lnn(const ork_int *nb, const ork_complex16 *a, const ork_int *lda, ork_complex16 *x, const ork_int *incx);
void ork_blas_ztrsv_lnu(const ork_int *nb, const ork_complex16 *a, const ork_int *lda, ork_complex16 *x, const ork_int *incx);
void ork_blas_ztrsv_ltn(const ork_int *nb, const ork_complex16 *a, const ork_int *lda, ork_complex16 *x, const ork_int *incx);
void ork_blas_ztrsv_ltu(const ork_int *nb, const ork_complex16 *a, const ork_int *lda, ork_complex16 *x, const ork_int *incx);
void ork_blas_ztrsv_lcn(const ork_int *nb, const ork_complex16 *a, const ork_int *lda, ork_complex16 *x, const ork_int *incx);
void ork_blas_ztrsv_lcu(const ork_int *nb, const ork_complex16 *a, const ork_int *lda, ork_complex16 *x, const ork_int *incx);
void ork_blas_ztrsv_unn(const ork_int *nb, const ork_complex16 *a, const ork_int *lda, ork_complex16 *x, const ork_int *incx);
void ork_blas_ztrsv_unu(const ork_int *nb, const ork_complex16 *a, const ork_int *lda, ork_complex16 *x, const ork_int *incx);
void ork_blas_ztrsv_utn(const ork_int *nb, const ork_complex16 *a, const ork_int *lda, ork_complex16 *x, const ork_int *incx);
void ork_blas_ztrsv_utu(const ork_int *nb, const ork_complex16 *a, const ork_int *lda, ork_complex16 *x, const ork_int *incx);
void ork_blas_ztrsv_ucn(const ork_int *nb, const ork_complex16 *a, const ork_int *lda, ork_complex16 *x, const ork_int *incx);
void ork_blas_ztrsv_ucu(const ork_int *nb, const ork_complex16 *a, const ork_int *lda, ork_complex16 *x, const ork_int *incx);

ORK_END_C

#endif
