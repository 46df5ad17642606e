// The workspace carving shared by the generations whose kernels keep no
// scratch copy of B (tuning_avx2.h, tuning_avx512.h).
#pragma once

#include "frame/types.h"

// The attribute of the generic code that sums in the kernels' arithmetic
// (driver.h, add_chunk_sums): fused multiply-add enabled, as the kernels use it.
#define ORK_GEMM_SUMS __attribute__((target("fma")))

namespace ork::gemm {

// Each plan's regions as the baseline carves them (tuning_sse2.h), with no
// kernel scratch; and sums fused.
struct paged_workspace {
    static constexpr idx scratch = 0;
    static constexpr bool fused = true;
    // plain B is packed by inner::pack_b_plain (register transposes)
    static constexpr bool own_b_packer = true;
    // the rows below the last whole group go through the packed kernel as
    // one group padded with zero rows (driver.h: leftover_group) rather
    // than summed element by element; measured 2026-11-26 on the two-core
    // Zen 4 guest of tuning_avx2.h with bench/gemm_bench.cpp (python3
    // bench/compare.py gemm --generations, load average 6-9): 1001 x 1003 x
    // 999 against OpenBLAS, CPU time, AVX2 sgemm 0.89 -> 0.99, dgemm 0.93 ->
    // 0.98, AVX-512 0.91 -> 0.95 and 0.96 -> 0.97 (bench/results/gemm_avx.md)
    static constexpr bool group_leftovers = true;
    // double plan
    static constexpr idx ws_a_gap = 8704, ws_scratch_at = 640, ws_b_at = 768, ws_extra = 18176;
};

}  // namespace ork::gemm
