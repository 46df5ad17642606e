// The split rule of the cache-oblivious transposition, shared by the strided
// generic kernel and the unit-stride inner kernels (which inline their tile
// copy into it).
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

}  // namespace ork::trans
