// The matrix-multiply engine's tuning for the AVX2 generation (with FMA):
// register blocks, blocking, thresholds and workspace carving.
//
// Register blocks: 16 vector registers of 32 bytes, 12 of them accumulators,
// the rest the group's A vectors and one broadcast B value. Blocking: packed
// A (mb x kb) in the 1 MiB L2, one B panel (kb x widths[0]) in the L1.
// Chosen 2026-11-25 on an AMD EPYC (Zen 4: 32 KiB L1d, 1 MiB L2; two cores
// of a KVM guest) from the cache sizes, not by a sweep, and measured once,
// under heavy load, against OpenBLAS with bench/gemm_bench.cpp
// (ORK_KERNEL_LIBRARY=.../libork_avx2.so python3 bench/compare.py gemm):
// bench/results/gemm_avx.md. Re-measured 2026-11-25 21:16 UTC on the same
// machine after the register-transpose B packer (own_b_packer) and the C
// prefetch of fused_kernel.h, all three libraries in one run
// (python3 bench/compare.py gemm --generations; load average 12-17): n >= 512
// at 0.96-1.06 of OpenBLAS on CPU time, the same file. The blocks were not
// swept for this generation; a sweep on a quiet machine should revisit kb and
// mb.
// direct_max: products whose m, n and k are all at most this (A plain) skip
// packing: the kernel reads A and B in place (inner::multiply_direct), same
// bits. Chosen 2026-11-26 on the machine above with bench/gemm_bench.cpp
// (python3 bench/compare.py gemm --generations, n = 64, 128, 256; CPU-time
// ratios to OpenBLAS in one run, load average 8-10): at 64 dgemm 0.83 -> 0.91,
// sgemm 0.82 -> 0.92; at 128 1.10-1.12, no worse than packed; 256 left
// packed (A then spills the L1 and is re-read per panel);
// bench/results/gemm_avx.md.
// Field meanings: tuning_sse2.h. No scratch: B values are broadcast from
// packed B itself.
#pragma once

#include "blas/gemm/tuning_paged.h"

namespace ork::gemm {

template <class T> struct tuning;

// 8 x 6: two vectors of four rows, six columns.
template <> struct tuning<double> : paged_workspace {
    static constexpr int ra = 8, q = 2, widths[3] = {6, 4, 2};
    static constexpr idx kb = 256, mb = 192, nb = 4096, small_below = 2, direct_max = 128;
    // no taller row blocks for shallow products
    static constexpr idx shallow_sum = idx(1) << 62, shallow_depth[3] = {0, 0, 0}, shallow_rows[4] = {mb, mb, mb, mb};
};

// 16 x 6: two vectors of eight rows, six columns; depth blocks short first.
template <> struct tuning<float> : paged_workspace {
    static constexpr int ra = 16, q = 2, widths[3] = {6, 4, 2};
    static constexpr idx kb = 384, mb = 192, nb = 4096, small_below = 8, direct_max = 128;
    static constexpr idx ws_a_gap = 1024, ws_scratch_at = 256, ws_b_gap = 512, ws_extra = 8192;
};

// 4 x 3 (double) and 8 x 3 (single): two vectors of complex values, three
// columns, two accumulators per column.
template <class R> struct complex_tuning : paged_workspace {
    static constexpr int ra = 2 * 32 / int(2 * sizeof(R)), q = 1, widths[3] = {3, 2, 1};
    static constexpr idx kb = 256, mb = 96, nb = 2048, small_below = 2;
    static constexpr idx ws_scratch_at = 128, ws_extra = 12288;
};
template <> struct tuning<cx<double>> : complex_tuning<double> {};
template <> struct tuning<cx<float>> : complex_tuning<float> {};

}  // namespace ork::gemm
