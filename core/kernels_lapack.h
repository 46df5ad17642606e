// The small LAPACK-level kernels that libork binds, by exported name.
#pragma once

#include "ork/lapack_kernels.h"

#define ORK_CORE_KERNELS_LAPACK(X) \
    X(ork_blas_cgtsv_small) X(ork_blas_clarfx) X(ork_blas_clasr) X(ork_blas_clasr_lbb)                \
    X(ork_blas_clasr_lbf) X(ork_blas_clasr_ltb) X(ork_blas_clasr_ltf) X(ork_blas_clasr_lvb)           \
    X(ork_blas_clasr_lvf) X(ork_blas_clasr_rbb) X(ork_blas_clasr_rbf) X(ork_blas_clasr_rtb)           \
    X(ork_blas_clasr_rtf) X(ork_blas_clasr_rvb) X(ork_blas_clasr_rvf) X(ork_blas_cpotrf_l_small)      \
    X(ork_blas_cptts2) X(ork_blas_csytrf_l_small) X(ork_blas_dgtsv_small) X(ork_blas_dlarfx)          \
    X(ork_blas_dlasr) X(ork_blas_dlasr_lbb) X(ork_blas_dlasr_lbf) X(ork_blas_dlasr_ltb)               \
    X(ork_blas_dlasr_ltf) X(ork_blas_dlasr_lvb) X(ork_blas_dlasr_lvf) X(ork_blas_dlasr_rbb)           \
    X(ork_blas_dlasr_rbf) X(ork_blas_dlasr_rtb) X(ork_blas_dlasr_rtf) X(ork_blas_dlasr_rvb)           \
    X(ork_blas_dlasr_rvf) X(ork_blas_dpotrf_l_small) X(ork_blas_dptts2) X(ork_blas_dsytrf_l_small)    \
    X(ork_blas_sgtsv_small) X(ork_blas_slarfx) X(ork_blas_slasr) X(ork_blas_slasr_lbb)                \
    X(ork_blas_slasr_lbf) X(ork_blas_slasr_ltb) X(ork_blas_slasr_ltf) X(ork_blas_slasr_lvb)           \
    X(ork_blas_slasr_lvf) X(ork_blas_slasr_rbb) X(ork_blas_slasr_rbf) X(ork_blas_slasr_rtb)           \
    X(ork_blas_slasr_rtf) X(ork_blas_slasr_rvb) X(ork_blas_slasr_rvf) X(ork_blas_spotrf_l_small)      \
    X(ork_blas_sptts2) X(ork_blas_ssytrf_l_small) X(ork_blas_zgtsv_small) X(ork_blas_zlarfx)          \
    X(ork_blas_zlasr) X(ork_blas_zlasr_lbb) X(ork_blas_zlasr_lbf) X(ork_blas_zlasr_ltb)               \
    X(ork_blas_zlasr_ltf) X(ork_blas_zlasr_lvb) X(ork_blas_zlasr_lvf) X(ork_blas_zlasr_rbb)           \
    X(ork_blas_zlasr_rbf) X(ork_blas_zlasr_rtb) X(ork_blas_zlasr_rtf) X(ork_blas_zlasr_rvb)           \
    X(ork_blas_zlasr_rvf) X(ork_blas_zpotrf_l_small) X(ork_blas_zptts2) X(ork_blas_zsytrf_l_small)
