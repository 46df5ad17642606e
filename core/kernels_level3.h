// The level-3 kernels besides the matrix-multiply family that libork binds, by exported name.
#pragma once

#include "ork/blas_level3.h"
#include "ork/level3_kernels.h"

#define ORK_CORE_KERNELS_LEVEL3(X)                                                            \
    X(ork_blas_xssymm) X(ork_blas_xdsymm) X(ork_blas_xcsymm) X(ork_blas_xzsymm)               \
    X(ork_blas_xchemm) X(ork_blas_xzhemm)                                                     \
    X(ork_blas_xssyrk) X(ork_blas_xdsyrk) X(ork_blas_xcsyrk) X(ork_blas_xzsyrk)               \
    X(ork_blas_xcherk) X(ork_blas_xzherk)                                                     \
    X(ork_blas_xssyr2k) X(ork_blas_xdsyr2k) X(ork_blas_xcsyr2k) X(ork_blas_xzsyr2k)           \
    X(ork_blas_xcher2k) X(ork_blas_xzher2k)                                                   \
    X(ork_blas_xstrmm) X(ork_blas_xdtrmm) X(ork_blas_xctrmm) X(ork_blas_xztrmm)               \
    X(ork_blas_xstrsm) X(ork_blas_xdtrsm) X(ork_blas_xctrsm) X(ork_blas_xztrsm)
