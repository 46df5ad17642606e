// libork's transposition and scaled addition entries: argument checks, then
// the kernel library's dispatcher; large out-of-place calls are split over
// threads by row blocks (each element is computed once whatever the
// split, so the results do not depend on the thread count).
#include <cstdint>
#include <cstring>
#include <initializer_list>

#include "core/core.h"

using ork::core::entry;
using ork::core::kernel_table;
using u64 = std::uint64_t;

namespace {

const kernel_table& K() { return ork::core::kernels(); }

// Below this many elements per thread the parallel region costs more than
// it saves (a transposition moves about 1 GB/s per core at worst).
constexpr u64 per_thread_min = u64(1) << 17;

// Side of the tiles an out-of-place transposition is cut into.
constexpr u64 transpose_tile = 128;

int threads_for(u64 work) {
    u64 k = work / per_thread_min;
    u64 t = u64(ork::core::max_threads());
    return k < 1 ? 1 : int(k < t ? k : t);
}

// f(i0, len) on consecutive row blocks [i0, i0 + len), one per thread.
template <class F>
void row_blocks(u64 rows, int t, F f) {
    if (t <= 1) return f(u64(0), rows);
    ork::core::parallel_for(t, t, [&](int k) {
        u64 i0 = rows * u64(k) / u64(t);
        f(i0, rows * u64(k + 1) / u64(t) - i0);
    });
}

int ordering_of(char c) { return (c == 'R' || c == 'r') ? 1 : (c == 'C' || c == 'c') ? 0 : -1; }
// 0 no transposition, 1 transposition, -1 unknown
int transposed_of(char c) {
    switch (c) {
    case 'N': case 'n': case 'R': case 'r': return 0;
    case 'T': case 't': case 'C': case 'c': return 1;
    default: return -1;
    }
}
u64 at_least_one(u64 n) { return n < 1 ? 1 : n; }

// The row-major view of an ordering: rows and columns as the kernels see them.
struct view {
    u64 rows = 0, cols = 0;
    bool empty() const { return rows == 0 || cols == 0; }
};
view view_of(int row_major, u64 rows, u64 cols) { return row_major ? view{rows, cols} : view{cols, rows}; }

// The checks every entry begins with, in argument order; each returns false
// after reporting. They fill in the row-major view: rows r by columns c.
struct checker {
    entry e;
    int position = 0;
    bool ok = true;
    explicit checker(const char* name) : e(name) {}
    // the next argument must be present and, when it is, satisfy good
    template <class P, class G>
    checker& arg(const P* p, G good) {
        ++position;
        if (ok && (!p || !good(*p))) ok = e.fail(position);
        return *this;
    }
    template <class P>
    checker& arg(const P* p) {
        return arg(p, [](const P&) { return true; });
    }
    // an array, needed only when there is something to read or write
    checker& array(const void* p, bool needed) {
        ++position;
        if (ok && needed && !p) ok = e.fail(position);
        return *this;
    }
    // after the arguments: the array whose leading dimension (or stride) is
    // at `at` reaches no further than a byte offset can (core.h: addressable)
    checker& reaches(std::size_t element_bytes, int at, std::initializer_list<ork::core::reach> dims) {
        if (ok && !ork::core::addressable(element_bytes, dims)) ok = e.fail(at);
        return *this;
    }
    // ordering, trans, rows, cols: the first four arguments of the copies;
    // sets t (transposing) and v, the row-major view.
    template <class View>
    checker& copies_head(const char* ordering, const char* trans, const u64* rows, const u64* cols, int& t, View& v) {
        int row_major = -1;
        arg(ordering, [&](char c) { return (row_major = ordering_of(c)) >= 0; })
            .arg(trans, [&](char c) { return (t = transposed_of(c)) >= 0; })
            .arg(rows)
            .arg(cols);
        if (ok) v = view_of(row_major, *rows, *cols);
        return *this;
    }
};

// ---- entry shapes; Kf is the kernel_table member to call

// B := alpha*op(A) out of place in the row-major view v of A, split over
// threads by row blocks of A.
template <auto Kf, class C>
void scaled_copy(int t, const char* trans, view v, const C* alpha, const C* a, u64 LDA, C* b, u64 LDB) {
    row_blocks(v.rows, threads_for(v.rows * v.cols), [&](u64 i0, u64 len) {
        if (!t) return (K().*Kf)("R", trans, &len, &v.cols, alpha, a + i0 * LDA, &LDA, b + i0 * LDB, &LDB);
        // A transposition goes tile by tile: halving a tile of transpose_tile
        // rows and columns ends in whole 4 x 4 leaves, where halving an
        // awkward size such as 5000 x 3000 ends in leaves of two or three.
        for (u64 r = 0; r < len; r += transpose_tile)
            for (u64 c = 0; c < v.cols; c += transpose_tile) {
                const u64 h = len - r < transpose_tile ? len - r : transpose_tile;
                const u64 w = v.cols - c < transpose_tile ? v.cols - c : transpose_tile;
                (K().*Kf)("R", trans, &h, &w, alpha, a + (i0 + r) * LDA + c, &LDA, b + c * LDB + i0 + r, &LDB);
            }
    });
}


template <auto Kf, class C>
void omatcopy(const char* name, const char* ordering, const char* trans, const u64* rows, const u64* cols,
              const C* alpha, const C* a, const u64* lda, C* b, const u64* ldb) {
    checker ck(name);
    int t = -1;
    view v;
    ck.copies_head(ordering, trans, rows, cols, t, v);
    ck.arg(alpha)
        .array(a, !v.empty())
        .arg(lda, [&](u64 n) { return n >= at_least_one(v.cols); })
        .array(b, !v.empty())
        .arg(ldb, [&](u64 n) { return n >= at_least_one(t ? v.rows : v.cols); });
    if (!ck.ok || v.empty()) return;
    ck.reaches(sizeof(C), 7, {{v.rows, *lda}, {v.cols, 1}}).reaches(sizeof(C), 9, {{t ? v.cols : v.rows, *ldb}, {t ? v.rows : v.cols, 1}});
    if (!ck.ok) return;
    scaled_copy<Kf>(t, trans, v, alpha, a, *lda, b, *ldb);
}

template <auto Kf, class C>
void omatcopy2(const char* name, const char* ordering, const char* trans, const u64* rows, const u64* cols,
               const C* alpha, const C* a, const u64* lda, const u64* stridea, C* b, const u64* ldb,
               const u64* strideb) {
    checker ck(name);
    int t = -1;
    view v;
    auto positive = [](u64 n) { return n >= 1; };
    ck.copies_head(ordering, trans, rows, cols, t, v);
    ck.arg(alpha).array(a, !v.empty()).arg(lda, positive).arg(stridea, positive);
    ck.array(b, !v.empty()).arg(ldb, positive).arg(strideb, positive);
    if (!ck.ok || v.empty()) return;
    // the leading dimension first, then the stride on top of it
    const u64 br = t ? v.cols : v.rows, bc = t ? v.rows : v.cols;
    ck.reaches(sizeof(C), 7, {{v.rows, *lda}, {v.cols, 1}})
        .reaches(sizeof(C), 8, {{v.rows, *lda}, {v.cols, *stridea}})
        .reaches(sizeof(C), 10, {{br, *ldb}, {bc, 1}})
        .reaches(sizeof(C), 11, {{br, *ldb}, {bc, *strideb}});
    if (!ck.ok) return;
    const u64 LDA = *lda, LDB = *ldb, SB = *strideb;
    row_blocks(v.rows, threads_for(v.rows * v.cols), [&](u64 i0, u64 len) {
        (K().*Kf)("R", trans, &len, &v.cols, alpha, a + i0 * LDA, lda, stridea, b + i0 * (t ? SB : LDB), ldb,
                  strideb);
    });
}

// In place. A transposition that the kernel cannot do as a square goes,
// when the memory can be had, out of place into a buffer (tiled and split
// as above) and is copied back: the kernel's cycle following needs no
// memory, but its leader test walks each cycle again from every position.
// Each element is alpha times its source (conjugated for 'C') either way,
// so both paths give the same bits. Otherwise one call: the cycles of a
// transposition span the whole array.
template <auto Kf, auto Copy, class C>
void imatcopy(const char* name, const char* ordering, const char* trans, const u64* rows, const u64* cols,
              const C* alpha, C* ab, const u64* lda, const u64* ldb) {
    checker ck(name);
    int t = -1;
    view v;
    ck.copies_head(ordering, trans, rows, cols, t, v);
    ck.arg(alpha)
        .array(ab, !v.empty())
        .arg(lda, [&](u64 n) { return n >= at_least_one(v.cols); })
        .arg(ldb, [&](u64 n) { return n >= at_least_one(t ? v.rows : v.cols); });
    if (!ck.ok || v.empty()) return;
    ck.reaches(sizeof(C), 7, {{v.rows, *lda}, {v.cols, 1}}).reaches(sizeof(C), 8, {{t ? v.cols : v.rows, *ldb}, {t ? v.rows : v.cols, 1}});
    if (!ck.ok) return;
    const bool square = v.rows == v.cols && *lda == *ldb && *lda == v.cols;
    C* buffer = t && !square ? static_cast<C*>(ork::core::allocate_filled(v.rows * v.cols * sizeof(C))) : nullptr;
    if (!buffer) return (K().*Kf)(ordering, trans, rows, cols, alpha, ab, lda, ldb);
    // the result is v.cols rows of v.rows elements, row distance ldb
    scaled_copy<Copy>(t, trans, v, alpha, ab, *lda, buffer, v.rows);
    // back row by row, or when the rows are packed as one block per thread
    // (the C library streams large copies past the cache)
    const u64 LDB = *ldb, total = v.rows * v.cols;
    if (LDB == v.rows)
        row_blocks(total, threads_for(total), [&](u64 i0, u64 len) {
            std::memcpy(ab + i0, buffer + i0, len * sizeof(C));
        });
    else
        row_blocks(v.cols, threads_for(total), [&](u64 i0, u64 len) {
            for (u64 i = i0; i < i0 + len; ++i) std::memcpy(ab + i * LDB, buffer + i * v.rows, v.rows * sizeof(C));
        });
    ork::core::deallocate(buffer);
}

// [p, p + n) and [q, q + m) share an element
template <class C>
bool overlap(const C* p, u64 n, const C* q, u64 m) {
    auto a = reinterpret_cast<std::uintptr_t>(p), b = reinterpret_cast<std::uintptr_t>(q);
    return a < b + m * sizeof(C) && b < a + n * sizeof(C);
}

template <auto Kf, class C>
void omatadd(const char* name, const char* ordering, const char* transa, const char* transb, const u64* rows,
             const u64* cols, const C* alpha, const C* a, const u64* lda, const C* beta, const C* b, const u64* ldb,
             C* c, const u64* ldc) {
    checker ck(name);
    int row_major = -1, ta = -1, tb = -1;
    view v;
    ck.arg(ordering, [&](char x) { return (row_major = ordering_of(x)) >= 0; })
        .arg(transa, [&](char x) { return (ta = transposed_of(x)) >= 0; })
        .arg(transb, [&](char x) { return (tb = transposed_of(x)) >= 0; })
        .arg(rows)
        .arg(cols);
    if (ck.ok) v = view_of(row_major, *rows, *cols);
    ck.arg(alpha)
        .array(a, !v.empty())
        .arg(lda, [&](u64 n) { return n >= at_least_one(ta ? v.rows : v.cols); })
        .arg(beta)
        .array(b, !v.empty())
        .arg(ldb, [&](u64 n) { return n >= at_least_one(tb ? v.rows : v.cols); })
        .array(c, !v.empty())
        .arg(ldc, [&](u64 n) { return n >= at_least_one(v.cols); });
    if (!ck.ok || v.empty()) return;
    ck.reaches(sizeof(C), 8, {{ta ? v.cols : v.rows, *lda}, {ta ? v.rows : v.cols, 1}})
        .reaches(sizeof(C), 11, {{tb ? v.cols : v.rows, *ldb}, {tb ? v.rows : v.cols, 1}})
        .reaches(sizeof(C), 13, {{v.rows, *ldc}, {v.cols, 1}});
    if (!ck.ok) return;
    const u64 LDA = *lda, LDB = *ldb, LDC = *ldc;
    // The in-place forms keep one call: their order of updates is the kernel's.
    const u64 a_len = (ta ? v.cols : v.rows) * LDA, b_len = (tb ? v.cols : v.rows) * LDB, c_len = v.rows * LDC;
    const bool apart = !overlap(a, a_len, c, c_len) && !overlap(b, b_len, c, c_len);
    row_blocks(v.rows, apart ? threads_for(v.rows * v.cols) : 1, [&](u64 i0, u64 len) {
        (K().*Kf)("R", transa, transb, &len, &v.cols, alpha, a + (ta ? i0 : i0 * LDA), lda, beta,
                  b + (tb ? i0 : i0 * LDB), ldb, c + i0 * LDC, ldc);
    });
}

}  // namespace

#define ORK_TRANS_ENTRIES(p, C)                                                                                        \
    ORK_CORE_API void ork_trans_##p##omatcopy(const char* ordering, const char* trans, const u64* rows,               \
                                              const u64* cols, const C* alpha, const C* a, const u64* lda, C* b,       \
                                              const u64* ldb) {                                                        \
        omatcopy<&kernel_table::ork_trans_ork_##p##omatcopy>("ork_trans_" #p "omatcopy", ordering, trans, rows, cols,  \
                                                             alpha, a, lda, b, ldb);                                   \
    }                                                                                                                  \
    ORK_CORE_API void ork_trans_##p##omatcopy2(const char* ordering, const char* trans, const u64* rows,              \
                                               const u64* cols, const C* alpha, const C* a, const u64* lda,            \
                                               const u64* stridea, C* b, const u64* ldb, const u64* strideb) {         \
        omatcopy2<&kernel_table::ork_trans_ork_##p##omatcopy2>("ork_trans_" #p "omatcopy2", ordering, trans, rows,     \
                                                               cols, alpha, a, lda, stridea, b, ldb, strideb);        \
    }                                                                                                                  \
    ORK_CORE_API void ork_trans_##p##imatcopy(const char* ordering, const char* trans, const u64* rows,               \
                                              const u64* cols, const C* alpha, C* ab, const u64* lda,                  \
                                              const u64* ldb) {                                                        \
        imatcopy<&kernel_table::ork_trans_ork_##p##imatcopy, &kernel_table::ork_trans_ork_##p##omatcopy>(                \
            "ork_trans_" #p "imatcopy", ordering, trans, rows, cols, alpha, ab, lda, ldb);                                                                      \
    }                                                                                                                  \
    ORK_CORE_API void ork_trans_##p##omatadd(const char* ordering, const char* transa, const char* transb,            \
                                             const u64* rows, const u64* cols, const C* alpha, const C* a,             \
                                             const u64* lda, const C* beta, const C* b, const u64* ldb, C* c,          \
                                             const u64* ldc) {                                                         \
        omatadd<&kernel_table::ork_trans_ork_##p##omatadd>("ork_trans_" #p "omatadd", ordering, transa, transb, rows,  \
                                                           cols, alpha, a, lda, beta, b, ldb, c, ldc);                \
    }
ORK_TRANS_ENTRIES(s, float)
ORK_TRANS_ENTRIES(d, double)
ORK_TRANS_ENTRIES(c, ork_complex8)
ORK_TRANS_ENTRIES(z, ork_complex16)
