// The bodies of libork's transposition and scaled addition entries: what the
// checked entries of core/trans_entries.cpp (generated from trans/table.py)
// hand over to once the arguments have passed. Large out-of-place calls are
// split over threads by row blocks (each element is computed once whatever
// the split, so the results do not depend on the thread count).
#pragma once

#include <cstdint>
#include <cstring>

#include "core/core.h"

namespace ork::core::trans {

using u64 = std::uint64_t;

// Below this many elements per thread the parallel region costs more than
// it saves (a transposition moves about 1 GB/s per core at worst).
constexpr u64 per_thread_min = u64(1) << 17;

// Side of the tiles an out-of-place transposition is cut into.
constexpr u64 transpose_tile = 128;

inline int threads_for(u64 work) {
    u64 k = work / per_thread_min;
    u64 t = u64(max_threads());
    return k < 1 ? 1 : int(k < t ? k : t);
}

// f(i0, len) on consecutive row blocks [i0, i0 + len), one per thread.
template <class F>
void row_blocks(u64 rows, int t, F f) {
    if (t <= 1) return f(u64(0), rows);
    parallel_for(t, t, [&](int k) {
        u64 i0 = rows * u64(k) / u64(t);
        f(i0, rows * u64(k + 1) / u64(t) - i0);
    });
}

// The argument tests' vocabulary (flags already tested): a transposing
// letter, and the row-major view of the stored source, rows by columns.
inline bool transposed(const char* t) { return *t == 'T' || *t == 't' || *t == 'C' || *t == 'c'; }
inline bool row_major(const char* o) { return *o == 'R' || *o == 'r'; }
inline u64 view_rows(const char* o, const u64* rows, const u64* cols) { return row_major(o) ? *rows : *cols; }
inline u64 view_cols(const char* o, const u64* rows, const u64* cols) { return row_major(o) ? *cols : *rows; }
inline u64 at_least_one(u64 n) { return n < 1 ? 1 : n; }

// The dispatchers of the copies by element type (in-place transpositions go
// through a buffer with them)
template <class C> auto copy_kernel() {
    if constexpr (std::is_same_v<C, float>) return kernels().ork_trans_ork_somatcopy;
    else if constexpr (std::is_same_v<C, double>) return kernels().ork_trans_ork_domatcopy;
    else if constexpr (std::is_same_v<C, ork_complex8>) return kernels().ork_trans_ork_comatcopy;
    else return kernels().ork_trans_ork_zomatcopy;
}

// B := alpha*op(A) out of place, rows x cols in the row-major view of A,
// split over threads by row blocks of A.
template <class K, class C>
void scaled_copy(K kernel, const char* trans, u64 rows, u64 cols, const C* alpha, const C* a, u64 LDA, C* b,
                 u64 LDB) {
    const bool t = transposed(trans);
    row_blocks(rows, threads_for(rows * cols), [&](u64 i0, u64 len) {
        if (!t) return kernel("R", trans, &len, &cols, alpha, a + i0 * LDA, &LDA, b + i0 * LDB, &LDB);
        // A transposition goes tile by tile, so that the panel walk of the
        // kernel keeps the lines of A and B it works on in cache.
        for (u64 r = 0; r < len; r += transpose_tile)
            for (u64 c = 0; c < cols; c += transpose_tile) {
                const u64 h = len - r < transpose_tile ? len - r : transpose_tile;
                const u64 w = cols - c < transpose_tile ? cols - c : transpose_tile;
                kernel("R", trans, &h, &w, alpha, a + (i0 + r) * LDA + c, &LDA, b + c * LDB + i0 + r, &LDB);
            }
    });
}

template <class K, class C>
void omatcopy(const entry&, K kernel, const char* ordering, const char* trans, const u64* rows, const u64* cols,
              const C* alpha, const C* a, const u64* lda, C* b, const u64* ldb) {
    scaled_copy(kernel, trans, view_rows(ordering, rows, cols), view_cols(ordering, rows, cols), alpha, a, *lda, b,
                *ldb);
}

template <class K, class C>
void omatcopy2(const entry&, K kernel, const char* ordering, const char* trans, const u64* rows, const u64* cols,
               const C* alpha, const C* a, const u64* lda, const u64* stridea, C* b, const u64* ldb,
               const u64* strideb) {
    u64 vr = view_rows(ordering, rows, cols), vc = view_cols(ordering, rows, cols);
    const u64 LDA = *lda, LDB = *ldb, SB = *strideb;
    const bool t = transposed(trans);
    row_blocks(vr, threads_for(vr * vc), [&](u64 i0, u64 len) {
        kernel("R", trans, &len, &vc, alpha, a + i0 * LDA, lda, stridea, b + i0 * (t ? SB : LDB), ldb, strideb);
    });
}

// In place. A transposition that the kernel cannot do as a square goes,
// when the memory can be had, out of place into a buffer (tiled and split
// as above) and is copied back: the kernel's cycle following needs no
// memory, but its leader test walks each cycle again from every position.
// Each element is alpha times its source (conjugated for 'C') either way,
// so both paths give the same bits. Otherwise one call: the cycles of a
// transposition span the whole array.
template <class K, class C>
void imatcopy(const entry&, K kernel, const char* ordering, const char* trans, const u64* rows, const u64* cols,
              const C* alpha, C* ab, const u64* lda, const u64* ldb) {
    const u64 vr = view_rows(ordering, rows, cols), vc = view_cols(ordering, rows, cols);
    const bool t = transposed(trans);
    const bool square = vr == vc && *lda == *ldb && *lda == vc;
    C* buffer = t && !square ? static_cast<C*>(allocate_filled(vr * vc * sizeof(C))) : nullptr;
    if (!buffer) return kernel(ordering, trans, rows, cols, alpha, ab, lda, ldb);
    // the result is vc rows of vr elements, row distance ldb
    scaled_copy(copy_kernel<C>(), trans, vr, vc, alpha, ab, *lda, buffer, vr);
    // back row by row, or when the rows are packed as one block per thread
    // (the C library streams large copies past the cache)
    const u64 LDB = *ldb, total = vr * vc;
    if (LDB == vr)
        row_blocks(total, threads_for(total), [&](u64 i0, u64 len) {
            std::memcpy(ab + i0, buffer + i0, len * sizeof(C));
        });
    else
        row_blocks(vc, threads_for(total), [&](u64 i0, u64 len) {
            for (u64 i = i0; i < i0 + len; ++i) std::memcpy(ab + i * LDB, buffer + i * vr, vr * sizeof(C));
        });
    deallocate(buffer);
}

// [p, p + n) and [q, q + m) share an element
template <class C>
bool overlap(const C* p, u64 n, const C* q, u64 m) {
    auto a = reinterpret_cast<std::uintptr_t>(p), b = reinterpret_cast<std::uintptr_t>(q);
    return a < b + m * sizeof(C) && b < a + n * sizeof(C);
}

template <class K, class C>
void omatadd(const entry&, K kernel, const char* ordering, const char* transa, const char* transb, const u64* rows,
             const u64* cols, const C* alpha, const C* a, const u64* lda, const C* beta, const C* b, const u64* ldb,
             C* c, const u64* ldc) {
    struct {
        u64 rows, cols;
    } v{view_rows(ordering, rows, cols), view_cols(ordering, rows, cols)};
    const bool ta = transposed(transa), tb = transposed(transb);
    const u64 LDA = *lda, LDB = *ldb, LDC = *ldc;
    // The in-place forms keep one call: their order of updates is the kernel's.
    const u64 a_len = (ta ? v.cols : v.rows) * LDA, b_len = (tb ? v.cols : v.rows) * LDB, c_len = v.rows * LDC;
    const bool apart = !overlap(a, a_len, c, c_len) && !overlap(b, b_len, c, c_len);
    row_blocks(v.rows, apart ? threads_for(v.rows * v.cols) : 1, [&](u64 i0, u64 len) {
        kernel("R", transa, transb, &len, &v.cols, alpha, a + (ta ? i0 : i0 * LDA), lda, beta,
                  b + (tb ? i0 : i0 * LDB), ldb, c + i0 * LDC, ldc);
    });
}

}  // namespace ork::core::trans
