// The level-2 products and updates (besides ?gemv and ?syr, bound with the
// level-1 kernels) that libork binds, by exported name.
#pragma once

#include "ork/blas_level2.h"
#include "ork/level2_kernels.h"

#define ORK_CORE_KERNELS_LEVEL2(X)                                                              \
    X(ork_blas_sgbmv) X(ork_blas_dgbmv) X(ork_blas_cgbmv) X(ork_blas_zgbmv)                     \
    X(ork_blas_xssymv) X(ork_blas_xdsymv) X(ork_blas_chemv) X(ork_blas_zhemv)                   \
    X(ork_blas_ssbmv) X(ork_blas_dsbmv) X(ork_blas_chbmv) X(ork_blas_zhbmv)                     \
    X(ork_blas_sspmv) X(ork_blas_dspmv) X(ork_blas_chpmv) X(ork_blas_zhpmv)                     \
    X(ork_blas_sger) X(ork_blas_dger) X(ork_blas_cgeru) X(ork_blas_zgeru)                       \
    X(ork_blas_cgerc) X(ork_blas_zgerc)                                                         \
    X(ork_blas_xssyr_in_thread) X(ork_blas_xdsyr_in_thread)                                     \
    X(ork_blas_xssyr2) X(ork_blas_xdsyr2) X(ork_blas_xssyr2_in_thread) X(ork_blas_xdsyr2_in_thread) \
    X(ork_blas_sspr) X(ork_blas_dspr) X(ork_blas_sspr2) X(ork_blas_dspr2)                       \
    X(ork_blas_cher) X(ork_blas_zher) X(ork_blas_chpr) X(ork_blas_zhpr)                         \
    X(ork_blas_cher2) X(ork_blas_zher2) X(ork_blas_chpr2) X(ork_blas_zhpr2)
