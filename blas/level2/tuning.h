// The blocking of the symmetric and Hermitian products per generation (the
// generation being built, ORK_GENERATION), with where it was chosen.
#pragma once

#include "frame/types.h"

namespace ork::blas {

struct symv_tuning {
    idx col_block;  // columns whose scaled x and sums sit on the stack
    idx row_block;  // rows whose x and y stay in L1 while a block of columns passes
    // runs of a column shorter than this (the corner of the triangle beside a
    // group of four columns) are summed in the generic code, not by a call of
    // the inner kernel
    idx short_run;
};

#if !defined(ORK_GENERATION) || ORK_GENERATION == 0
inline constexpr symv_tuning symv_blocks{256, 512, 0};
#else
// Chosen with bench/level2_bench.cpp (dsymv at n = 256, 1000 and 4000) on a
// two-core AMD EPYC (Zen 4) guest, November 2026, for AVX2 and AVX-512 alike:
// longer row blocks halve the kernel calls per column.
inline constexpr symv_tuning symv_blocks{256, 2048, 4};
#endif

}  // namespace ork::blas
