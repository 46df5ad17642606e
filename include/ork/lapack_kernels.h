/* Small LAPACK-level routines, ork_blas_<routine>: 64-bit integers, every
 * argument by address, flags read by their first letter, the LAPACK argument
 * order and meaning of the routine of the same mathematics.
 *
 * libork defines every name below: it checks the arguments (a bad one is
 * reported by its position, and where there is an info argument it is set to
 * minus that position) and splits large calls over threads. The kernel
 * library defines the same names as its unchecked kernels. */
#ifndef ORK_LAPACK_KERNELS_H
#define ORK_LAPACK_KERNELS_H

#include "ork/types.h"

ORK_BEGIN_C

/* ---- A = L*L^H, lower triangle (the upper one is not touched); info = 0, or
 * the order of the first leading minor that is not positive definite */
void ork_blas_spotrf_l_small(const ork_int *n, float *a, const ork_int *lda, ork_int *info);
void ork_blas_dpotrf_l_small(const ork_int *n, double *a, const ork_int *lda, ork_int *info);
void ork_blas_cpotrf_l_small(const ork_int *n, ork_complex8 *a, const ork_int *lda, ork_int *info);
void ork_blas_zpotrf_l_small(const ork_int *n, ork_complex16 *a, const ork_int *lda, ork_int *info);

/* ---- A = P*L*D*L^T*P^T, lower, Bunch-Kaufman pivoting, D with 1x1 and 2x2
 * blocks (complex symmetric for c, z); ipiv 1-based, -p on both rows of a 2x2
 * block; info = 0, or the first k with D(k,k) exactly zero */
void ork_blas_ssytrf_l_small(const ork_int *n, float *a, const ork_int *lda, ork_int *ipiv, ork_int *info);
void ork_blas_dsytrf_l_small(const ork_int *n, double *a, const ork_int *lda, ork_int *ipiv, ork_int *info);
void ork_blas_csytrf_l_small(const ork_int *n, ork_complex8 *a, const ork_int *lda, ork_int *ipiv, ork_int *info);
void ork_blas_zsytrf_l_small(const ork_int *n, ork_complex16 *a, const ork_int *lda, ork_int *ipiv, ork_int *info);

/* ---- A*X = B, A tridiagonal (dl, d, du), partial pivoting; on return d, du
 * and dl[0 .. n-3] hold U; info = 0, or the first k with U(k,k) exactly zero */
void ork_blas_sgtsv_small(const ork_int *n, const ork_int *nrhs, float *dl, float *d, float *du, float *b, const ork_int *ldb, ork_int *info);
void ork_blas_dgtsv_small(const ork_int *n, const ork_int *nrhs, double *dl, double *d, double *du, double *b, const ork_int *ldb, ork_int *info);
void ork_blas_cgtsv_small(const ork_int *n, const ork_int *nrhs, ork_complex8 *dl, ork_complex8 *d, ork_complex8 *du, ork_complex8 *b, const ork_int *ldb, ork_int *info);
void ork_blas_zgtsv_small(const ork_int *n, const ork_int *nrhs, ork_complex16 *dl, ork_complex16 *d, ork_complex16 *du, ork_complex16 *b, const ork_int *ldb, ork_int *info);

/* ---- A*X = B with A factored, real diagonal d: s, d as L*D*L^T with e the
 * sub-diagonal of L; c, z as U^H*D*U (iuplo = 1, e the super-diagonal of U)
 * or L*D*L^H (otherwise). Workspace from ork_serv_allocate for n >= 4 and
 * several columns of B; without it the same results, one column at a time. */
void ork_blas_sptts2(const ork_int *n, const ork_int *nrhs, const float *d, const float *e, float *b, const ork_int *ldb);
void ork_blas_dptts2(const ork_int *n, const ork_int *nrhs, const double *d, const double *e, double *b, const ork_int *ldb);
void ork_blas_cptts2(const ork_int *iuplo, const ork_int *n, const ork_int *nrhs, const float *d, const ork_complex8 *e, ork_complex8 *b, const ork_int *ldb);
void ork_blas_zptts2(const ork_int *iuplo, const ork_int *n, const ork_int *nrhs, const double *d, const ork_complex16 *e, ork_complex16 *b, const ork_int *ldb);

/* ---- C := H*C (side L) or C*H (side R), H = I - tau*v*v^H; work holds n
 * (L) or m (R) elements */
void ork_blas_slarfx(const char *side, const ork_int *m, const ork_int *n, const float *v, const float *tau, float *c, const ork_int *ldc, float *work);
void ork_blas_dlarfx(const char *side, const ork_int *m, const ork_int *n, const double *v, const double *tau, double *c, const ork_int *ldc, double *work);
void ork_blas_clarfx(const char *side, const ork_int *m, const ork_int *n, const ork_complex8 *v, const ork_complex8 *tau, ork_complex8 *c, const ork_int *ldc, ork_complex8 *work);
void ork_blas_zlarfx(const char *side, const ork_int *m, const ork_int *n, const ork_complex16 *v, const ork_complex16 *tau, ork_complex16 *c, const ork_int *ldc, ork_complex16 *work);

/* ---- A := P*A (side L, P of order m) or A*P^T (side R, P of order n), P a
 * sequence of z-1 plane rotations [c(k) s(k); -s(k) c(k)], c and s real, in
 * the planes (k, k+1) (pivot V), (1, k+1) (T) or (k, z) (B); direct F: P =
 * P(z-1)*...*P(1), B: P = P(1)*...*P(z-1). ?lasr picks one of the twelve
 * ?lasr_<side><pivot><direct> by its flags. */
void ork_blas_slasr(const char *side, const char *pivot, const char *direct, const ork_int *m, const ork_int *n, const float *c, const float *s, float *a, const ork_int *lda);
void ork_blas_slasr_lvf(const ork_int *m, const ork_int *n, const float *c, const float *s, float *a, const ork_int *lda);
void ork_blas_slasr_lvb(const ork_int *m, const ork_int *n, const float *c, const float *s, float *a, const ork_int *lda);
void ork_blas_slasr_ltf(const ork_int *m, const ork_int *n, const float *c, const float *s, float *a, const ork_int *lda);
void ork_blas_slasr_ltb(const ork_int *m, const ork_int *n, const float *c, const float *s, float *a, const ork_int *lda);
void ork_blas_slasr_lbf(const ork_int *m, const ork_int *n, const float *c, const float *s, float *a, const ork_int *lda);
void ork_blas_slasr_lbb(const ork_int *m, const ork_int *n, const float *c, const float *s, float *a, const ork_int *lda);
void ork_blas_slasr_rvf(const ork_int *m, const ork_int *n, const float *c, const float *s, float *a, const ork_int *lda);
void ork_blas_slasr_rvb(const ork_int *m, const ork_int *n, const float *c, const float *s, float *a, const ork_int *lda);
void ork_blas_slasr_rtf(const ork_int *m, const ork_int *n, const float *c, const float *s, float *a, const ork_int *lda);
void ork_blas_slasr_rtb(const ork_int *m, const ork_int *n, const float *c, const float *s, float *a, const ork_int *lda);
void ork_blas_slasr_rbf(const ork_int *m, const ork_int *n, const float *c, const float *s, float *a, const ork_int *lda);
void ork_blas_slasr_rbb(const ork_int *m, const ork_int *n, const float *c, const float *s, float *a, const ork_int *lda);
void ork_blas_dlasr(const char *side, const char *pivot, const char *direct, const ork_int *m, const ork_int *n, const double *c, const double *s, double *a, const ork_int *lda);
void ork_blas_dlasr_lvf(const ork_int *m, const ork_int *n, const double *c, const double *s, double *a, const ork_int *lda);
void ork_blas_dlasr_lvb(const ork_int *m, const ork_int *n, const double *c, const double *s, double *a, const ork_int *lda);
void ork_blas_dlasr_ltf(const ork_int *m, const ork_int *n, const double *c, const double *s, double *a, const ork_int *lda);
void ork_blas_dlasr_ltb(const ork_int *m, const ork_int *n, const double *c, const double *s, double *a, const ork_int *lda);
void ork_blas_dlasr_lbf(const ork_int *m, const ork_int *n, const double *c, const double *s, double *a, const ork_int *lda);
void ork_blas_dlasr_lbb(const ork_int *m, const ork_int *n, const double *c, const double *s, double *a, const ork_int *lda);
void ork_blas_dlasr_rvf(const ork_int *m, const ork_int *n, const double *c, const double *s, double *a, const ork_int *lda);
void ork_blas_dlasr_rvb(const ork_int *m, const ork_int *n, const double *c, const double *s, double *a, const ork_int *lda);
void ork_blas_dlasr_rtf(const ork_int *m, const ork_int *n, const double *c, const double *s, double *a, const ork_int *lda);
void ork_blas_dlasr_rtb(const ork_int *m, const ork_int *n, const double *c, const double *s, double *a, const ork_int *lda);
void ork_blas_dlasr_rbf(const ork_int *m, const ork_int *n, const double *c, const double *s, double *a, const ork_int *lda);
void ork_blas_dlasr_rbb(const ork_int *m, const ork_int *n, const double *c, const double *s, double *a, const ork_int *lda);
void ork_blas_clasr(const char *side, const char *pivot, const char *direct, const ork_int *m, const ork_int *n, const float *c, const float *s, ork_complex8 *a, const ork_int *lda);
void ork_blas_clasr_lvf(const ork_int *m, const ork_int *n, const float *c, const float *s, ork_complex8 *a, const ork_int *lda);
void ork_blas_clasr_lvb(const ork_int *m, const ork_int *n, const float *c, const float *s, ork_complex8 *a, const ork_int *lda);
void ork_blas_clasr_ltf(const ork_int *m, const ork_int *n, const float *c, const float *s, ork_complex8 *a, const ork_int *lda);
void ork_blas_clasr_ltb(const ork_int *m, const ork_int *n, const float *c, const float *s, ork_complex8 *a, const ork_int *lda);
void ork_blas_clasr_lbf(const ork_int *m, const ork_int *n, const float *c, const float *s, ork_complex8 *a, const ork_int *lda);
void ork_blas_clasr_lbb(const ork_int *m, const ork_int *n, const float *c, const float *s, ork_complex8 *a, const ork_int *lda);
void ork_blas_clasr_rvf(const ork_int *m, const ork_int *n, const float *c, const float *s, ork_complex8 *a, const ork_int *lda);
void ork_blas_clasr_rvb(const ork_int *m, const ork_int *n, const float *c, const float *s, ork_complex8 *a, const ork_int *lda);
void ork_blas_clasr_rtf(const ork_int *m, const ork_int *n, const float *c, const float *s, ork_complex8 *a, const ork_int *lda);
void ork_blas_clasr_rtb(const ork_int *m, const ork_int *n, const float *c, const float *s, ork_complex8 *a, const ork_int *lda);
void ork_blas_clasr_rbf(const ork_int *m, const ork_int *n, const float *c, const float *s, ork_complex8 *a, const ork_int *lda);
void ork_blas_clasr_rbb(const ork_int *m, const ork_int *n, const float *c, const float *s, ork_complex8 *a, const ork_int *lda);
void ork_blas_zlasr(const char *side, const char *pivot, const char *direct, const ork_int *m, const ork_int *n, const double *c, const double *s, ork_complex16 *a, const ork_int *lda);
void ork_blas_zlasr_lvf(const ork_int *m, const ork_int *n, const double *c, const double *s, ork_complex16 *a, const ork_int *lda);
void ork_blas_zlasr_lvb(const ork_int *m, const ork_int *n, const double *c, const double *s, ork_complex16 *a, const ork_int *lda);
void ork_blas_zlasr_ltf(const ork_int *m, const ork_int *n, const double *c, const double *s, ork_complex16 *a, const ork_int *lda);
void ork_blas_zlasr_ltb(const ork_int *m, const ork_int *n, const double *c, const double *s, ork_complex16 *a, const ork_int *lda);
void ork_blas_zlasr_lbf(const ork_int *m, const ork_int *n, const double *c, const double *s, ork_complex16 *a, const ork_int *lda);
void ork_blas_zlasr_lbb(const ork_int *m, const ork_int *n, const double *c, const double *s, ork_complex16 *a, const ork_int *lda);
void ork_blas_zlasr_rvf(const ork_int *m, const ork_int *n, const double *c, const double *s, ork_complex16 *a, const ork_int *lda);
void ork_blas_zlasr_rvb(const ork_int *m, const ork_int *n, const double *c, const double *s, ork_complex16 *a, const ork_int *lda);
void ork_blas_zlasr_rtf(const ork_int *m, const ork_int *n, const double *c, const double *s, ork_complex16 *a, const ork_int *lda);
void ork_blas_zlasr_rtb(const ork_int *m, const ork_int *n, const double *c, const double *s, ork_complex16 *a, const ork_int *lda);
void ork_blas_zlasr_rbf(const ork_int *m, const ork_int *n, const double *c, const double *s, ork_complex16 *a, const ork_int *lda);
void ork_blas_zlasr_rbb(const ork_int *m, const ork_int *n, const double *c, const double *s, ork_complex16 *a, const ork_int *lda);

ORK_END_C

#endif
