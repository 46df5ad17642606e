// The blocking of the symmetric and Hermitian products per generation (the
// generation being built, ORK_GENERATION), with where it was chosen.
#pragma once

#include "frame/types.h"

namespace ork::blas::symv_blocks {

// col_block: columns whose scaled x and sums sit on the stack; rows<T>: rows
// whose x and y stay in cache while a block of columns passes; short_run:
// runs of a column shorter than this (the corner of the triangle beside a
// group of four columns) are summed in the generic code, not by a call of
// the inner kernel.
#if !defined(ORK_GENERATION) || ORK_GENERATION == 0
inline constexpr idx col_block = 256, short_run = 0;
template <class T> inline constexpr idx rows = 512;
#else
// Chosen with bench/level2_bench.cpp (dsymv at n = 256, 1000 and 4000) on a
// two-core AMD EPYC (Zen 4) guest under load, November 2026, for AVX2 and
// AVX-512 alike: blocks of 32 KB of y (4096 rows of doubles, a whole column
// at n = 4000) against 512 rows: at n = 4000 0.82-0.94x OpenBLAS with 1024
// rows, 0.98-1.05x with 4096; the short runs inline: n = 256 from 0.4x to
// 0.6x.
inline constexpr idx col_block = 256, short_run = 4;
template <class T> inline constexpr idx rows = idx(32768 / sizeof(T));
#endif

}  // namespace ork::blas::symv_blocks
