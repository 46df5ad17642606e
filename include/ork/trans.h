/* Matrix transposition, copy and scaled addition: B = alpha*op(A) out of
 * place (omatcopy, omatcopy2 with element strides), AB = alpha*op(AB) in
 * place (imatcopy), C = alpha*op(A) + beta*op(B) (omatadd). Every argument by
 * address; dimensions, leading dimensions and strides unsigned 64-bit.
 * ordering: 'R' row-major or 'C' column-major; rows and cols are those of the
 * source as stored (of C for omatadd). trans: 'N' none, 'T' transpose, 'R'
 * conjugate, 'C' conjugate transpose ('R' reads as 'N' and 'C' as 'T' for the
 * real types). imatcopy's result has leading dimension ldb.
 *
 * libork defines the checked entries ork_trans_<x><routine>: they report the
 * 1-based position of the first bad argument (unknown letter, leading
 * dimension too small, zero stride, null pointer) and split large
 * out-of-place calls over threads. The kernel library defines the unchecked
 * dispatchers ork_trans_ork_<x><routine>, which do nothing for an unknown
 * letter, and the row-major kernels they choose from. Nothing allocates. */
#ifndef ORK_TRANS_H
#define ORK_TRANS_H

#include "ork/types.h"

ORK_BEGIN_C

/* ---- libork: checked entries */
void ork_trans_somatcopy(const char *ordering, const char *trans, const uint64_t *rows, const uint64_t *cols, const float *alpha, const float *a, const uint64_t *lda, float *b, const uint64_t *ldb);
void ork_trans_somatcopy2(const char *ordering, const char *trans, const uint64_t *rows, const uint64_t *cols, const float *alpha, const float *a, const uint64_t *lda, const uint64_t *stridea, float *b, const uint64_t *ldb, const uint64_t *strideb);
void ork_trans_simatcopy(const char *ordering, const char *trans, const uint64_t *rows, const uint64_t *cols, const float *alpha, float *ab, const uint64_t *lda, const uint64_t *ldb);
void ork_trans_somatadd(const char *ordering, const char *transa, const char *transb, const uint64_t *rows, const uint64_t *cols, const float *alpha, const float *a, const uint64_t *lda, const float *beta, const float *b, const uint64_t *ldb, float *c, const uint64_t *ldc);
void ork_trans_domatcopy(const char *ordering, const char *trans, const uint64_t *rows, const uint64_t *cols, const double *alpha, const double *a, const uint64_t *lda, double *b, const uint64_t *ldb);
void ork_trans_domatcopy2(const char *ordering, const char *trans, const uint64_t *rows, const uint64_t *cols, const double *alpha, const double *a, const uint64_t *lda, const uint64_t *stridea, double *b, const uint64_t *ldb, const uint64_t *strideb);
void ork_trans_dimatcopy(const char *ordering, const char *trans, const uint64_t *rows, const uint64_t *cols, const double *alpha, double *ab, const uint64_t *lda, const uint64_t *ldb);
void ork_trans_domatadd(const char *ordering, const char *transa, const char *transb, const uint64_t *rows, const uint64_t *cols, const double *alpha, const double *a, const uint64_t *lda, const double *beta, const double *b, const uint64_t *ldb, double *c, const uint64_t *ldc);
void ork_trans_comatcopy(const char *ordering, const char *trans, const uint64_t *rows, const uint64_t *cols, const ork_complex8 *alpha, const ork_complex8 *a, const uint64_t *lda, ork_complex8 *b, const uint64_t *ldb);
void ork_trans_comatcopy2(const char *ordering, const char *trans, const uint64_t *rows, const uint64_t *cols, const ork_complex8 *alpha, const ork_complex8 *a, const uint64_t *lda, const uint64_t *stridea, ork_complex8 *b, const uint64_t *ldb, const uint64_t *strideb);
void ork_trans_cimatcopy(const char *ordering, const char *trans, const uint64_t *rows, const uint64_t *cols, const ork_complex8 *alpha, ork_complex8 *ab, const uint64_t *lda, const uint64_t *ldb);
void ork_trans_comatadd(const char *ordering, const char *transa, const char *transb, const uint64_t *rows, const uint64_t *cols, const ork_complex8 *alpha, const ork_complex8 *a, const uint64_t *lda, const ork_complex8 *beta, const ork_complex8 *b, const uint64_t *ldb, ork_complex8 *c, const uint64_t *ldc);
void ork_trans_zomatcopy(const char *ordering, const char *trans, const uint64_t *rows, const uint64_t *cols, const ork_complex16 *alpha, const ork_complex16 *a, const uint64_t *lda, ork_complex16 *b, const uint64_t *ldb);
void ork_trans_zomatcopy2(const char *ordering, const char *trans, const uint64_t *rows, const uint64_t *cols, const ork_complex16 *alpha, const ork_complex16 *a, const uint64_t *lda, const uint64_t *stridea, ork_complex16 *b, const uint64_t *ldb, const uint64_t *strideb);
void ork_trans_zimatcopy(const char *ordering, const char *trans, const uint64_t *rows, const uint64_t *cols, const ork_complex16 *alpha, ork_complex16 *ab, const uint64_t *lda, const uint64_t *ldb);
void ork_trans_zomatadd(const char *ordering, const char *transa, const char *transb, const uint64_t *rows, const uint64_t *cols, const ork_complex16 *alpha, const ork_complex16 *a, const uint64_t *lda, const ork_complex16 *beta, const ork_complex16 *b, const uint64_t *ldb, ork_complex16 *c, const uint64_t *ldc);

/* ---- kernel library: dispatchers */
void ork_trans_ork_somatcopy(const char *ordering, const char *trans, const uint64_t *rows, const uint64_t *cols, const float *alpha, const float *a, const uint64_t *lda, float *b, const uint64_t *ldb);
void ork_trans_ork_somatcopy2(const char *ordering, const char *trans, const uint64_t *rows, const uint64_t *cols, const float *alpha, const float *a, const uint64_t *lda, const uint64_t *stridea, float *b, const uint64_t *ldb, const uint64_t *strideb);
void ork_trans_ork_simatcopy(const char *ordering, const char *trans, const uint64_t *rows, const uint64_t *cols, const float *alpha, float *ab, const uint64_t *lda, const uint64_t *ldb);
void ork_trans_ork_somatadd(const char *ordering, const char *transa, const char *transb, const uint64_t *rows, const uint64_t *cols, const float *alpha, const float *a, const uint64_t *lda, const float *beta, const float *b, const uint64_t *ldb, float *c, const uint64_t *ldc);
void ork_trans_ork_domatcopy(const char *ordering, const char *trans, const uint64_t *rows, const uint64_t *cols, const double *alpha, const double *a, const uint64_t *lda, double *b, const uint64_t *ldb);
void ork_trans_ork_domatcopy2(const char *ordering, const char *trans, const uint64_t *rows, const uint64_t *cols, const double *alpha, const double *a, const uint64_t *lda, const uint64_t *stridea, double *b, const uint64_t *ldb, const uint64_t *strideb);
void ork_trans_ork_dimatcopy(const char *ordering, const char *trans, const uint64_t *rows, const uint64_t *cols, const double *alpha, double *ab, const uint64_t *lda, const uint64_t *ldb);
void ork_trans_ork_domatadd(const char *ordering, const char *transa, const char *transb, const uint64_t *rows, const uint64_t *cols, const double *alpha, const double *a, const uint64_t *lda, const double *beta, const double *b, const uint64_t *ldb, double *c, const uint64_t *ldc);
void ork_trans_ork_comatcopy(const char *ordering, const char *trans, const uint64_t *rows, const uint64_t *cols, const ork_complex8 *alpha, const ork_complex8 *a, const uint64_t *lda, ork_complex8 *b, const uint64_t *ldb);
void ork_trans_ork_comatcopy2(const char *ordering, const char *trans, const uint64_t *rows, const uint64_t *cols, const ork_complex8 *alpha, const ork_complex8 *a, const uint64_t *lda, const uint64_t *stridea, ork_complex8 *b, const uint64_t *ldb, const uint64_t *strideb);
void ork_trans_ork_cimatcopy(const char *ordering, const char *trans, const uint64_t *rows, const uint64_t *cols, const ork_complex8 *alpha, ork_complex8 *ab, const uint64_t *lda, const uint64_t *ldb);
void ork_trans_ork_comatadd(const char *ordering, const char *transa, const char *transb, const uint64_t *rows, const uint64_t *cols, const ork_complex8 *alpha, const ork_complex8 *a, const uint64_t *lda, const ork_complex8 *beta, const ork_complex8 *b, const uint64_t *ldb, ork_complex8 *c, const uint64_t *ldc);
void ork_trans_ork_zomatcopy(const char *ordering, const char *trans, const uint64_t *rows, const uint64_t *cols, const ork_complex16 *alpha, const ork_complex16 *a, const uint64_t *lda, ork_complex16 *b, const uint64_t *ldb);
void ork_trans_ork_zomatcopy2(const char *ordering, const char *trans, const uint64_t *rows, const uint64_t *cols, const ork_complex16 *alpha, const ork_complex16 *a, const uint64_t *lda, const uint64_t *stridea, ork_complex16 *b, const uint64_t *ldb, const uint64_t *strideb);
void ork_trans_ork_zimatcopy(const char *ordering, const char *trans, const uint64_t *rows, const uint64_t *cols, const ork_complex16 *alpha, ork_complex16 *ab, const uint64_t *lda, const uint64_t *ldb);
void ork_trans_ork_zomatadd(const char *ordering, const char *transa, const char *transb, const uint64_t *rows, const uint64_t *cols, const ork_complex16 *alpha, const ork_complex16 *a, const uint64_t *lda, const ork_complex16 *beta, const ork_complex16 *b, const uint64_t *ldb, ork_complex16 *c, const uint64_t *ldc);

/* ---- kernel library: row-major kernels, the dispatcher's name plus
 * rec_<op> (omatcopy, omatcopy2), square_<op> (rows = cols = lda = ldb; cols
 * and ldb unread), mipt_<op> (in place from lda to ldb by cycle following),
 * <opA><opB> (omatadd; rows x cols of C), and rec_nt: C = alpha*C +
 * beta*B^T in place, the recursion behind omatadd_nt when C is A. */
void ork_trans_ork_somatcopy_rec_n(const uint64_t *rows, const uint64_t *cols, const float *alpha, const float *a, const uint64_t *lda, float *b, const uint64_t *ldb);
void ork_trans_ork_somatcopy2_rec_n(const uint64_t *rows, const uint64_t *cols, const float *alpha, const float *a, const uint64_t *lda, const uint64_t *stridea, float *b, const uint64_t *ldb, const uint64_t *strideb);
void ork_trans_ork_somatcopy_rec_t(const uint64_t *rows, const uint64_t *cols, const float *alpha, const float *a, const uint64_t *lda, float *b, const uint64_t *ldb);
void ork_trans_ork_somatcopy2_rec_t(const uint64_t *rows, const uint64_t *cols, const float *alpha, const float *a, const uint64_t *lda, const uint64_t *stridea, float *b, const uint64_t *ldb, const uint64_t *strideb);
void ork_trans_ork_simatcopy_square_n(const uint64_t *rows, const uint64_t *cols, const float *alpha, float *ab, const uint64_t *lda, const uint64_t *ldb);
void ork_trans_ork_simatcopy_mipt_n(const uint64_t *rows, const uint64_t *cols, const float *alpha, float *ab, const uint64_t *lda, const uint64_t *ldb);
void ork_trans_ork_simatcopy_square_t(const uint64_t *rows, const uint64_t *cols, const float *alpha, float *ab, const uint64_t *lda, const uint64_t *ldb);
void ork_trans_ork_simatcopy_mipt_t(const uint64_t *rows, const uint64_t *cols, const float *alpha, float *ab, const uint64_t *lda, const uint64_t *ldb);
void ork_trans_ork_somatadd_nn(const uint64_t *rows, const uint64_t *cols, const float *alpha, const float *a, const uint64_t *lda, const float *beta, const float *b, const uint64_t *ldb, float *c, const uint64_t *ldc);
void ork_trans_ork_somatadd_nt(const uint64_t *rows, const uint64_t *cols, const float *alpha, const float *a, const uint64_t *lda, const float *beta, const float *b, const uint64_t *ldb, float *c, const uint64_t *ldc);
void ork_trans_ork_somatadd_tt(const uint64_t *rows, const uint64_t *cols, const float *alpha, const float *a, const uint64_t *lda, const float *beta, const float *b, const uint64_t *ldb, float *c, const uint64_t *ldc);
void ork_trans_ork_somatadd_rec_nt(const uint64_t *rows, const uint64_t *cols, const float *alpha, float *c, const uint64_t *ldc, const float *beta, const float *b, const uint64_t *ldb);
void ork_trans_ork_domatcopy_rec_n(const uint64_t *rows, const uint64_t *cols, const double *alpha, const double *a, const uint64_t *lda, double *b, const uint64_t *ldb);
void ork_trans_ork_domatcopy2_rec_n(const uint64_t *rows, const uint64_t *cols, const double *alpha, const double *a, const uint64_t *lda, const uint64_t *stridea, double *b, const uint64_t *ldb, const uint64_t *strideb);
void ork_trans_ork_domatcopy_rec_t(const uint64_t *rows, const uint64_t *cols, const double *alpha, const double *a, const uint64_t *lda, double *b, const uint64_t *ldb);
void ork_trans_ork_domatcopy2_rec_t(const uint64_t *rows, const uint64_t *cols, const double *alpha, const double *a, const uint64_t *lda, const uint64_t *stridea, double *b, const uint64_t *ldb, const uint64_t *strideb);
void ork_trans_ork_dimatcopy_square_n(const uint64_t *rows, const uint64_t *cols, const double *alpha, double *ab, const uint64_t *lda, const uint64_t *ldb);
void ork_trans_ork_dimatcopy_mipt_n(const uint64_t *rows, const uint64_t *cols, const double *alpha, double *ab, const uint64_t *lda, const uint64_t *ldb);
void ork_trans_ork_dimatcopy_square_t(const uint64_t *rows, const uint64_t *cols, const double *alpha, double *ab, const uint64_t *lda, const uint64_t *ldb);
void ork_trans_ork_dimatcopy_mipt_t(const uint64_t *rows, const uint64_t *cols, const double *alpha, double *ab, const uint64_t *lda, const uint64_t *ldb);
void ork_trans_ork_domatadd_nn(const uint64_t *rows, const uint64_t *cols, const double *alpha, const double *a, const uint64_t *lda, const double *beta, const double *b, const uint64_t *ldb, double *c, const uint64_t *ldc);
void ork_trans_ork_domatadd_nt(const uint64_t *rows, const uint64_t *cols, const double *alpha, const double *a, const uint64_t *lda, const double *beta, const double *b, const uint64_t *ldb, double *c, const uint64_t *ldc);
void ork_trans_ork_domatadd_tt(const uint64_t *rows, const uint64_t *cols, const double *alpha, const double *a, const uint64_t *lda, const double *beta, const double *b, const uint64_t *ldb, double *c, const uint64_t *ldc);
void ork_trans_ork_domatadd_rec_nt(const uint64_t *rows, const uint64_t *cols, const double *alpha, double *c, const uint64_t *ldc, const double *beta, const double *b, const uint64_t *ldb);
void ork_trans_ork_comatcopy_rec_n(const uint64_t *rows, const uint64_t *cols, const ork_complex8 *alpha, const ork_complex8 *a, const uint64_t *lda, ork_complex8 *b, const uint64_t *ldb);
void ork_trans_ork_comatcopy2_rec_n(const uint64_t *rows, const uint64_t *cols, const ork_complex8 *alpha, const ork_complex8 *a, const uint64_t *lda, const uint64_t *stridea, ork_complex8 *b, const uint64_t *ldb, const uint64_t *strideb);
void ork_trans_ork_comatcopy_rec_t(const uint64_t *rows, const uint64_t *cols, const ork_complex8 *alpha, const ork_complex8 *a, const uint64_t *lda, ork_complex8 *b, const uint64_t *ldb);
void ork_trans_ork_comatcopy2_rec_t(const uint64_t *rows, const uint64_t *cols, const ork_complex8 *alpha, const ork_complex8 *a, const uint64_t *lda, const uint64_t *stridea, ork_complex8 *b, const uint64_t *ldb, const uint64_t *strideb);
void ork_trans_ork_comatcopy_rec_r(const uint64_t *rows, const uint64_t *cols, const ork_complex8 *alpha, const ork_complex8 *a, const uint64_t *lda, ork_complex8 *b, const uint64_t *ldb);
void ork_trans_ork_comatcopy2_rec_r(const uint64_t *rows, const uint64_t *cols, const ork_complex8 *alpha, const ork_complex8 *a, const uint64_t *lda, const uint64_t *stridea, ork_complex8 *b, const uint64_t *ldb, const uint64_t *strideb);
void ork_trans_ork_comatcopy_rec_c(const uint64_t *rows, const uint64_t *cols, const ork_complex8 *alpha, const ork_complex8 *a, const uint64_t *lda, ork_complex8 *b, const uint64_t *ldb);
void ork_trans_ork_comatcopy2_rec_c(const uint64_t *rows, const uint64_t *cols, const ork_complex8 *alpha, const ork_complex8 *a, const uint64_t *lda, const uint64_t *stridea, ork_complex8 *b, const uint64_t *ldb, const uint64_t *strideb);
void ork_trans_ork_cimatcopy_square_n(const uint64_t *rows, const uint64_t *cols, const ork_complex8 *alpha, ork_complex8 *ab, const uint64_t *lda, const uint64_t *ldb);
void ork_trans_ork_cimatcopy_mipt_n(const uint64_t *rows, const uint64_t *cols, const ork_complex8 *alpha, ork_complex8 *ab, const uint64_t *lda, const uint64_t *ldb);
void ork_trans_ork_cimatcopy_square_t(const uint64_t *rows, const uint64_t *cols, const ork_complex8 *alpha, ork_complex8 *ab, const uint64_t *lda, const uint64_t *ldb);
void ork_trans_ork_cimatcopy_mipt_t(const uint64_t *rows, const uint64_t *cols, const ork_complex8 *alpha, ork_complex8 *ab, const uint64_t *lda, const uint64_t *ldb);
void ork_trans_ork_cimatcopy_square_r(const uint64_t *rows, const uint64_t *cols, const ork_complex8 *alpha, ork_complex8 *ab, const uint64_t *lda, const uint64_t *ldb);
void ork_trans_ork_cimatcopy_mipt_r(const uint64_t *rows, const uint64_t *cols, const ork_complex8 *alpha, ork_complex8 *ab, const uint64_t *lda, const uint64_t *ldb);
void ork_trans_ork_cimatcopy_square_c(const uint64_t *rows, const uint64_t *cols, const ork_complex8 *alpha, ork_complex8 *ab, const uint64_t *lda, const uint64_t *ldb);
void ork_trans_ork_cimatcopy_mipt_c(const uint64_t *rows, const uint64_t *cols, const ork_complex8 *alpha, ork_complex8 *ab, const uint64_t *lda, const uint64_t *ldb);
void ork_trans_ork_comatadd_nn(const uint64_t *rows, const uint64_t *cols, const ork_complex8 *alpha, const ork_complex8 *a, const uint64_t *lda, const ork_complex8 *beta, const ork_complex8 *b, const uint64_t *ldb, ork_complex8 *c, const uint64_t *ldc);
void ork_trans_ork_comatadd_nt(const uint64_t *rows, const uint64_t *cols, const ork_complex8 *alpha, const ork_complex8 *a, const uint64_t *lda, const ork_complex8 *beta, const ork_complex8 *b, const uint64_t *ldb, ork_complex8 *c, const uint64_t *ldc);
void ork_trans_ork_comatadd_tt(const uint64_t *rows, const uint64_t *cols, const ork_complex8 *alpha, const ork_complex8 *a, const uint64_t *lda, const ork_complex8 *beta, const ork_complex8 *b, const uint64_t *ldb, ork_complex8 *c, const uint64_t *ldc);
void ork_trans_ork_comatadd_nc(const uint64_t *rows, const uint64_t *cols, const ork_complex8 *alpha, const ork_complex8 *a, const uint64_t *lda, const ork_complex8 *beta, const ork_complex8 *b, const uint64_t *ldb, ork_complex8 *c, const uint64_t *ldc);
void ork_trans_ork_comatadd_tc(const uint64_t *rows, const uint64_t *cols, const ork_complex8 *alpha, const ork_complex8 *a, const uint64_t *lda, const ork_complex8 *beta, const ork_complex8 *b, const uint64_t *ldb, ork_complex8 *c, const uint64_t *ldc);
void ork_trans_ork_comatadd_cc(const uint64_t *rows, const uint64_t *cols, const ork_complex8 *alpha, const ork_complex8 *a, const uint64_t *lda, const ork_complex8 *beta, const ork_complex8 *b, const uint64_t *ldb, ork_complex8 *c, const uint64_t *ldc);
void ork_trans_ork_comatadd_rn(const uint64_t *rows, const uint64_t *cols, const ork_complex8 *alpha, const ork_complex8 *a, const uint64_t *lda, const ork_complex8 *beta, const ork_complex8 *b, const uint64_t *ldb, ork_complex8 *c, const uint64_t *ldc);
void ork_trans_ork_comatadd_rt(const uint64_t *rows, const uint64_t *cols, const ork_complex8 *alpha, const ork_complex8 *a, const uint64_t *lda, const ork_complex8 *beta, const ork_complex8 *b, const uint64_t *ldb, ork_complex8 *c, const uint64_t *ldc);
void ork_trans_ork_comatadd_rr(const uint64_t *rows, const uint64_t *cols, const ork_complex8 *alpha, const ork_complex8 *a, const uint64_t *lda, const ork_complex8 *beta, const ork_complex8 *b, const uint64_t *ldb, ork_complex8 *c, const uint64_t *ldc);
void ork_trans_ork_comatadd_rc(const uint64_t *rows, const uint64_t *cols, const ork_complex8 *alpha, const ork_complex8 *a, const uint64_t *lda, const ork_complex8 *beta, const ork_complex8 *b, const uint64_t *ldb, ork_complex8 *c, const uint64_t *ldc);
void ork_trans_ork_comatadd_rec_nt(const uint64_t *rows, const uint64_t *cols, const ork_complex8 *alpha, ork_complex8 *c, const uint64_t *ldc, const ork_complex8 *beta, const ork_complex8 *b, const uint64_t *ldb);
void ork_trans_ork_zomatcopy_rec_n(const uint64_t *rows, const uint64_t *cols, const ork_complex16 *alpha, const ork_complex16 *a, const uint64_t *lda, ork_complex16 *b, const uint64_t *ldb);
void ork_trans_ork_zomatcopy2_rec_n(const uint64_t *rows, const uint64_t *cols, const ork_complex16 *alpha, const ork_complex16 *a, const uint64_t *lda, const uint64_t *stridea, ork_complex16 *b, const uint64_t *ldb, const uint64_t *strideb);
void ork_trans_ork_zomatcopy_rec_t(const uint64_t *rows, const uint64_t *cols, const ork_complex16 *alpha, const ork_complex16 *a, const uint64_t *lda, ork_complex16 *b, const uint64_t *ldb);
void ork_trans_ork_zomatcopy2_rec_t(const uint64_t *rows, const uint64_t *cols, const ork_complex16 *alpha, const ork_complex16 *a, const uint64_t *lda, const uint64_t *stridea, ork_complex16 *b, const uint64_t *ldb, const uint64_t *strideb);
void ork_trans_ork_zomatcopy_rec_r(const uint64_t *rows, const uint64_t *cols, const ork_complex16 *alpha, const ork_complex16 *a, const uint64_t *lda, ork_complex16 *b, const uint64_t *ldb);
void ork_trans_ork_zomatcopy2_rec_r(const uint64_t *rows, const uint64_t *cols, const ork_complex16 *alpha, const ork_complex16 *a, const uint64_t *lda, const uint64_t *stridea, ork_complex16 *b, const uint64_t *ldb, const uint64_t *strideb);
void ork_trans_ork_zomatcopy_rec_c(const uint64_t *rows, const uint64_t *cols, const ork_complex16 *alpha, const ork_complex16 *a, const uint64_t *lda, ork_complex16 *b, const uint64_t *ldb);
void ork_trans_ork_zomatcopy2_rec_c(const uint64_t *rows, const uint64_t *cols, const ork_complex16 *alpha, const ork_complex16 *a, const uint64_t *lda, const uint64_t *stridea, ork_complex16 *b, const uint64_t *ldb, const uint64_t *strideb);
void ork_trans_ork_zimatcopy_square_n(const uint64_t *rows, const uint64_t *cols, const ork_complex16 *alpha, ork_complex16 *ab, const uint64_t *lda, const uint64_t *ldb);
void ork_trans_ork_zimatcopy_mipt_n(const uint64_t *rows, const uint64_t *cols, const ork_complex16 *alpha, ork_complex16 *ab, const uint64_t *lda, const uint64_t *ldb);
void ork_trans_ork_zimatcopy_square_t(const uint64_t *rows, const uint64_t *cols, const ork_complex16 *alpha, ork_complex16 *ab, const uint64_t *lda, const uint64_t *ldb);
void ork_trans_ork_zimatcopy_mipt_t(const uint64_t *rows, const uint64_t *cols, const ork_complex16 *alpha, ork_complex16 *ab, const uint64_t *lda, const uint64_t *ldb);
void ork_trans_ork_zimatcopy_square_r(const uint64_t *rows, const uint64_t *cols, const ork_complex16 *alpha, ork_complex16 *ab, const uint64_t *lda, const uint64_t *ldb);
void ork_trans_ork_zimatcopy_mipt_r(const uint64_t *rows, const uint64_t *cols, const ork_complex16 *alpha, ork_complex16 *ab, const uint64_t *lda, const uint64_t *ldb);
void ork_trans_ork_zimatcopy_square_c(const uint64_t *rows, const uint64_t *cols, const ork_complex16 *alpha, ork_complex16 *ab, const uint64_t *lda, const uint64_t *ldb);
void ork_trans_ork_zimatcopy_mipt_c(const uint64_t *rows, const uint64_t *cols, const ork_complex16 *alpha, ork_complex16 *ab, const uint64_t *lda, const uint64_t *ldb);
void ork_trans_ork_zomatadd_nn(const uint64_t *rows, const uint64_t *cols, const ork_complex16 *alpha, const ork_complex16 *a, const uint64_t *lda, const ork_complex16 *beta, const ork_complex16 *b, const uint64_t *ldb, ork_complex16 *c, const uint64_t *ldc);
void ork_trans_ork_zomatadd_nt(const uint64_t *rows, const uint64_t *cols, const ork_complex16 *alpha, const ork_complex16 *a, const uint64_t *lda, const ork_complex16 *beta, const ork_complex16 *b, const uint64_t *ldb, ork_complex16 *c, const uint64_t *ldc);
void ork_trans_ork_zomatadd_tt(const uint64_t *rows, const uint64_t *cols, const ork_complex16 *alpha, const ork_complex16 *a, const uint64_t *lda, const ork_complex16 *beta, const ork_complex16 *b, const uint64_t *ldb, ork_complex16 *c, const uint64_t *ldc);
void ork_trans_ork_zomatadd_nc(const uint64_t *rows, const uint64_t *cols, const ork_complex16 *alpha, const ork_complex16 *a, const uint64_t *lda, const ork_complex16 *beta, const ork_complex16 *b, const uint64_t *ldb, ork_complex16 *c, const uint64_t *ldc);
void ork_trans_ork_zomatadd_tc(const uint64_t *rows, const uint64_t *cols, const ork_complex16 *alpha, const ork_complex16 *a, const uint64_t *lda, const ork_complex16 *beta, const ork_complex16 *b, const uint64_t *ldb, ork_complex16 *c, const uint64_t *ldc);
void ork_trans_ork_zomatadd_cc(const uint64_t *rows, const uint64_t *cols, const ork_complex16 *alpha, const ork_complex16 *a, const uint64_t *lda, const ork_complex16 *beta, const ork_complex16 *b, const uint64_t *ldb, ork_complex16 *c, const uint64_t *ldc);
void ork_trans_ork_zomatadd_rn(const uint64_t *rows, const uint64_t *cols, const ork_complex16 *alpha, const ork_complex16 *a, const uint64_t *lda, const ork_complex16 *beta, const ork_complex16 *b, const uint64_t *ldb, ork_complex16 *c, const uint64_t *ldc);
void ork_trans_ork_zomatadd_rt(const uint64_t *rows, const uint64_t *cols, const ork_complex16 *alpha, const ork_complex16 *a, const uint64_t *lda, const ork_complex16 *beta, const ork_complex16 *b, const uint64_t *ldb, ork_complex16 *c, const uint64_t *ldc);
void ork_trans_ork_zomatadd_rr(const uint64_t *rows, const uint64_t *cols, const ork_complex16 *alpha, const ork_complex16 *a, const uint64_t *lda, const ork_complex16 *beta, const ork_complex16 *b, const uint64_t *ldb, ork_complex16 *c, const uint64_t *ldc);
void ork_trans_ork_zomatadd_rc(const uint64_t *rows, const uint64_t *cols, const ork_complex16 *alpha, const ork_complex16 *a, const uint64_t *lda, const ork_complex16 *beta, const ork_complex16 *b, const uint64_t *ldb, ork_complex16 *c, const uint64_t *ldc);
void ork_trans_ork_zomatadd_rec_nt(const uint64_t *rows, const uint64_t *cols, const ork_complex16 *alpha, ork_complex16 *c, const uint64_t *ldc, const ork_complex16 *beta, const ork_complex16 *b, const uint64_t *ldb);

/* ---- x := conj(x) over n elements; a bit set over 64-bit words of positions
 * known not to lead a permutation cycle (word k/64, bit k mod 64). */
void ork_cconj(const uint64_t *n, ork_complex8 *x);
void ork_zconj(const uint64_t *n, ork_complex16 *x);
void ork_trans_know_false_cycle(uint64_t *set, const uint64_t *k);
int ork_trans_is_known_false_cycle(const uint64_t *set, const uint64_t *k);

ORK_END_C

#endif
