// The matrix-multiply engine's tuning table of the generation being built:
// its own where it has one, else its parent's (avx512 -> avx2 -> sse2).
#pragma once

#if !defined(ORK_GENERATION) || ORK_GENERATION == 0
#include "blas/gemm/tuning_sse2.h"
#elif ORK_GENERATION == 1
#include "blas/gemm/tuning_avx2.h"
#else
#include "blas/gemm/tuning_avx512.h"
#endif
