// The tile walks of transposition: the cache-oblivious split rule of the
// strided generic kernel, and the panel walk of the unit-stride inner kernels
// (which inline their tile copy into either).
#pragma once

#include <cstdint>

namespace ork::trans {

using u64 = std::uint64_t;

// The tiles of a block of at most 8 x 8 by the same rule, unrolled: after one
// split of the larger dimension, each half splits its other dimension once
// more at most.
template <class T, class Tile>
inline void split_half_rows(u64 rows, u64 cols, const T* a, u64 sa, T* b, u64 ldb, const Tile& tile) {
    if (cols > 4) {  // rows <= 4 < cols
        const u64 h = cols / 2;
        tile(rows, h, a, b);
        tile(rows, cols - h, a + h * sa, b + h * ldb);
    } else {
        tile(rows, cols, a, b);
    }
}
template <class T, class Tile>
inline void split_half_cols(u64 rows, u64 cols, const T* a, u64 lda, T* b, u64 sb, const Tile& tile) {
    if (rows > 4) {  // cols <= 4 < rows
        const u64 h = rows / 2;
        tile(h, cols, a, b);
        tile(rows - h, cols, a + h * lda, b + h * sb);
    } else {
        tile(rows, cols, a, b);
    }
}
template <class T, class Tile>
inline void split_small(u64 rows, u64 cols, const T* a, u64 lda, u64 sa, T* b, u64 ldb, u64 sb, const Tile& tile) {
    if (rows <= 4 && cols <= 4) return tile(rows, cols, a, b);
    if (rows > cols) {
        const u64 h = rows / 2;
        split_half_rows(h, cols, a, sa, b, ldb, tile);
        split_half_rows(rows - h, cols, a + h * lda, sa, b + h * sb, ldb, tile);
    } else {
        const u64 h = cols / 2;
        split_half_cols(rows, h, a, lda, b, sb, tile);
        split_half_cols(rows, cols - h, a + h * sa, lda, b + h * ldb, sb, tile);
    }
}

// While a dimension exceeds 4, the larger one (the columns on a tie) is
// halved: the floor half by recursion, the ceiling half by the loop. Tiles of
// at most 4 x 4 go to tile(rows, cols, a, b). Element (i, j) of A is at
// i*lda + j*sa and goes to j*ldb + i*sb of B. Blocks of at most 8 x 8 are
// split without further calls (split_small), in the same order.
template <class T, class Tile>
void split_t(u64 rows, u64 cols, const T* a, u64 lda, u64 sa, T* b, u64 ldb, u64 sb, const Tile& tile) {
    while (rows > 8 || cols > 8) {
        if (rows > cols) {
            const u64 h = rows / 2;
            split_t(h, cols, a, lda, sa, b, ldb, sb, tile);
            rows -= h;
            a += h * lda;
            b += h * sb;
        } else {
            const u64 h = cols / 2;
            split_t(rows, h, a, lda, sa, b, ldb, sb, tile);
            cols -= h;
            a += h * sa;
            b += h * ldb;
        }
    }
    split_small(rows, cols, a, lda, sa, b, ldb, sb, tile);
}

// Panels of transpose_panel columns of A, left to right, each walked down in
// stripes of 4 rows with tiles of at most 4 x 4 along a stripe. A stripe
// reads 4 short runs of A and adds 4 elements to each of the panel's rows of
// B, whose lines stay in L1 until the stripes below fill them; the walk is
// plain loops, where halving down to the tiles cost more than the copying.
constexpr u64 transpose_panel = 32;
template <class T, class Tile>
void panels_t(u64 rows, u64 cols, const T* a, u64 lda, T* b, u64 ldb, const Tile& tile) {
    for (u64 j0 = 0; j0 < cols; j0 += transpose_panel) {
        const u64 j1 = cols - j0 < transpose_panel ? cols : j0 + transpose_panel;
        for (u64 i = 0; i < rows; i += 4) {
            const u64 h = rows - i < 4 ? rows - i : 4;
            for (u64 j = j0; j < j1; j += 4) tile(h, j1 - j < 4 ? j1 - j : 4, a + i * lda + j, b + j * ldb + i);
        }
    }
}

}  // namespace ork::trans
