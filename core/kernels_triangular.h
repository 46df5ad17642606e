// The triangular level-2 kernels (?trmv, ?trsv and their band and packed
// forms) that libork binds, by exported name.
#pragma once

#include "ork/blas_level2.h"
#include "ork/triangular_kernels.h"

#define ORK_CORE_KERNELS_TRIANGULAR_OF(X, p)                                                     \
    X(ork_blas_x##p##trmv) X(ork_blas_x##p##trmv_in_thread) X(ork_blas_##p##trsv)             \
    X(ork_blas_##p##tbmv) X(ork_blas_##p##tbsv) X(ork_blas_##p##tpmv) X(ork_blas_##p##tpsv)
#define ORK_CORE_KERNELS_TRIANGULAR(X) \
    ORK_CORE_KERNELS_TRIANGULAR_OF(X, s) ORK_CORE_KERNELS_TRIANGULAR_OF(X, d) \
    ORK_CORE_KERNELS_TRIANGULAR_OF(X, c) ORK_CORE_KERNELS_TRIANGULAR_OF(X, z)
