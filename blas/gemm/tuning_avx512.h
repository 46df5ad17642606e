// The matrix-multiply engine's tuning for the AVX-512 generation: register
// blocks, blocking, thresholds and workspace carving.
//
// Register blocks: 32 vector registers of 64 bytes, 24 of them accumulators.
// Chosen 2026-11-25 on an AMD EPYC (Zen 4: 32 KiB L1d, 1 MiB L2; two cores
// of a KVM guest) from the cache sizes, not by a sweep, and measured once,
// under heavy load, against OpenBLAS with bench/gemm_bench.cpp
// (ORK_KERNEL_LIBRARY=.../libork_avx512.so python3 bench/compare.py gemm):
// bench/results/gemm_avx.md. A sweep on a quiet machine should revisit kb
// and mb.
// direct_max: as in tuning_avx2.h (products up to 128 in every dimension
// read A and B in place); the same run: at 64 dgemm 0.83 -> 0.96, sgemm
// 0.82 -> 0.90; at 128 1.12-1.19.
// Field meanings: tuning_sse2.h; workspace carving as in tuning_avx2.h.
#pragma once

#include "blas/gemm/tuning_paged.h"

namespace ork::gemm {

template <class T> struct tuning;

// 32 x 6: four vectors of eight rows, six columns (four A loads and six
// broadcasts per 24 fused multiply-adds; 16 x 12 took twelve broadcasts and
// ran 3-6% slower on Zen 4, whose 64-byte operations go through 32-byte
// halves). Row blocks of 320 (655 KiB of packed A in the 1 MiB L2). Swept
// 2026-11-25 on the machine above with bench/gemm_bench.cpp, ork against
// ork (kb 128-384, mb 128-384, 16 x 12 against 32 x 6; CPU-time GFLOP/s,
// best of 2-3 rounds, load average 11-13): differences in kb and mb stayed
// within 2-3%; bench/results/gemm_avx.md.
template <> struct tuning<double> : paged_workspace {
    static constexpr int ra = 32, q = 2, widths[3] = {6, 4, 2};
    static constexpr idx kb = 256, mb = 320, nb = 4096, small_below = 2, direct_max = 128;
    static constexpr idx shallow_sum = idx(1) << 62, shallow_depth[3] = {0, 0, 0}, shallow_rows[4] = {mb, mb, mb, mb};
};

// 32 x 12: two vectors of sixteen rows, twelve columns.
template <> struct tuning<float> : paged_workspace {
    static constexpr int ra = 32, q = 4, widths[3] = {12, 8, 4};
    static constexpr idx kb = 384, mb = 192, nb = 4096, small_below = 8, direct_max = 128;
    static constexpr idx ws_a_gap = 1024, ws_scratch_at = 256, ws_b_gap = 512, ws_extra = 8192;
};

// 8 x 6 (double) and 16 x 6 (single): two vectors of complex values, six
// columns, two accumulators per column.
template <class R> struct complex_tuning : paged_workspace {
    static constexpr int ra = 2 * 64 / int(2 * sizeof(R)), q = 2, widths[3] = {6, 4, 2};
    static constexpr idx kb = 256, mb = 96, nb = 2048, small_below = 2;
    static constexpr idx ws_scratch_at = 128, ws_extra = 12288;
};
template <> struct tuning<cx<double>> : complex_tuning<double> {};
template <> struct tuning<cx<float>> : complex_tuning<float> {};

}  // namespace ork::gemm
