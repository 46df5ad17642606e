// The matrix-multiply engine's tuning for the baseline generation (SSE2):
// register blocks, scratch, blocking, thresholds and workspace carving.
//
// These values are the baseline's fixed behaviour: the double plan (depth,
// row and column blocks and the workspace's byte layout) is fixed; the single and complex plans were set when the
// engine was written (9aa1b67, 2026-11-21), and bench/results/gemm.md records
// them measured by bench/gemm_bench.cpp against OpenBLAS's Core2 kernels on a
// two-core Intel Xeon KVM guest. They are frozen: tests and the reference
// testers hold the bits they give.
#pragma once

#include "frame/types.h"

// The attribute of the generic code that sums in the kernels' arithmetic
// (driver.h, add_chunk_sums): none: no fused multiply-add here.
#define ORK_GEMM_SUMS

namespace ork::gemm {

template <class T> struct tuning;

// Fields (counts of elements unless said otherwise):
//   ra, q, widths  register block: rows of a packed A group; packed B columns
//                  in panels of widths[0], then at most one of each narrower
//                  width, so w must be a multiple of q
//   scratch        bytes per depth row of the kernel's broadcast copy of one
//                  B panel (widths[0] values, two vectors each when complex)
//   fused          the kernel sums with fused multiply-adds
//   own_b_packer   plain B panels are packed by inner::pack_b_plain rather
//                  than by pack.h's loop
//   kb, mb, nb     depth, row and column blocks
//   small_below    m, n or k below this: one plain product
//   ws_*           the workspace carving of the type's plan (driver.h)

// 2 x 12: two rows of doubles per vector, one vector per column, twelve
// accumulators; each B value is stored twice (16 bytes) in the scratch.
template <> struct tuning<double> {
    static constexpr int ra = 2, q = 4, widths[3] = {12, 8, 4};
    static constexpr idx scratch = 12 * 16;
    static constexpr bool fused = false, own_b_packer = false;
    static constexpr idx kb = 128, mb = 512, nb = 4992, small_below = 2;
    // shallow, large products (k <= 2*kb, m + n >= shallow_sum): taller row
    // blocks for shallower depth blocks, shallow_rows[i] up to depth
    // shallow_depth[i], the last for deeper ones
    static constexpr idx shallow_sum = 10000, shallow_depth[3] = {16, 32, 64},
                         shallow_rows[4] = {1536, 1024, 768, 512};
    // A from the page after the block's start; q = start + kb*mb*8 + ws_a_gap
    // (A's end plus at most 4096 of page rounding plus 4608 spare); the
    // scratch at q rounded down to 128, plus ws_scratch_at; B on the page
    // after q + kb*scratch + ws_b_at; the block is the three regions plus
    // ws_extra (= ws_a_gap + ws_b_at + 4096 of page rounding + 4608 spare).
    static constexpr idx ws_a_gap = 8704, ws_scratch_at = 640, ws_b_at = 768, ws_extra = 18176;
};

// 8 x 4: two vectors of four rows, four columns, eight accumulators (the
// broadcast copy of a wider panel would not fit the scratch region; groups
// of 8 rows leave no leftover rows for the usual power-of-two sizes). Depth
// blocks of 112, the short one first; the packed path from 8 x 8 x 8 on.
template <> struct tuning<float> {
    static constexpr int ra = 8, q = 4, widths[3] = {4, 4, 4};
    static constexpr idx scratch = 4 * 16;
    static constexpr bool fused = false, own_b_packer = false;
    static constexpr idx kb = 112, mb = 648, nb = 2000, small_below = 8;
    // A from the page after the start; the scratch at (start + 4096 + mb*kb*4
    // + ws_a_gap) rounded down to 128, plus ws_scratch_at; B on the page after
    // the scratch's base + ws_scratch_at + kb*scratch + ws_b_gap; the block
    // is B's offset + kb*nb*4 + ws_extra (two pages: rounding and spare).
    static constexpr idx ws_a_gap = 1024, ws_scratch_at = 256, ws_b_gap = 512, ws_extra = 8192;
};

// 1 x 6 (double) and 2 x 6 (single): one vector of complex values, two
// accumulators per column (the sums against re(b) and im(b)); the scratch
// holds re and im of each B value broadcast. Depth blocks of 64, rows 320,
// columns up to 2048.
template <class R> struct complex_tuning {
    static constexpr int ra = 16 / int(2 * sizeof(R)), q = 2, widths[3] = {6, 4, 2};
    static constexpr idx scratch = 6 * 2 * 16;
    static constexpr bool fused = false, own_b_packer = false;
    static constexpr idx kb = 64, mb = 320, nb = 2048, small_below = 2;
    // A from the page after the start; the scratch at (start + 4096 + A's
    // bytes) rounded down to 128, plus ws_scratch_at; B on the page after
    // start + 4096 + A's bytes + ws_scratch_at + kb*scratch; the block is
    // A's and B's bytes plus ws_extra (512*nb + 189696 bytes single,
    // 1024*nb + 353536 double).
    static constexpr idx ws_scratch_at = 128, ws_extra = 25856;
};
template <> struct tuning<cx<double>> : complex_tuning<double> {};
template <> struct tuning<cx<float>> : complex_tuning<float> {};

}  // namespace ork::gemm
