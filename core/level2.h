// The bodies of libork's level-2 products and updates (the triangular ones
// apart): what the checked entries of core/level2_entries.cpp (generated from
// blas/level2/table.py) hand over to once the arguments have passed. Each
// runs the kernel of the loaded library, split over threads when the matrix
// is large.
//
// Splits and their bits: within one kernel library an element gets the
// same bits whatever the number of threads (one included, and a call run
// alone inside a parallel region). gemv and gbmv (rows of y for N, its
// elements for T and C), ger (columns) and the real syr and syr2 (column
// ranges through the _in_thread pieces) give the kernel's whole bits over
// any ranges, so they cut by the thread count. symv and hemv (the triangle's
// column ranges, each adding the block beside its diagonal block to two
// sides of y, one through a buffer added in order of range), her and her2
// (gerc beside the diagonal block, the kernel on it) round by where they
// cut: their ranges come from n alone (fixed_pieces) and run on one thread
// too, so their bits are those of the split, not of the kernel whole. The
// band and packed symmetric forms run whole.
#pragma once

#include <cmath>

#include "core/checks.h"
#include "core/core.h"

namespace ork::core::level2 {

using idx = ork_int;
using check::is;

inline const kernel_table& K() { return kernels(); }

// Threads for a matrix of `work` elements: none below 2^17, then one per
// 2^16 elements up to the limit.
inline int threads_for(idx work) {
    if (work < (idx(1) << 17)) return 1;
    const idx k = work >> 16;
    const int t = ork::core::max_threads();
    return k < t ? int(k) : t;
}

// Pieces of a split whose bits depend on where it cuts (symv, hemv, her,
// her2), from the size of the work alone, never from the thread count: none
// below 2^17 elements; then 2, doubling with each fourfold growth from 2^22
// elements, at most 16 (enough threads to saturate a small machine's
// memory). A power of two, so that two threads share the pieces evenly. One
// thread runs them too, at a cost: symv's blocks beside the diagonal take
// two passes, so the fewer pieces the better (see symv).
inline int fixed_pieces(idx work) {
    if (work < (idx(1) << 17)) return 1;
    int p = 2;
    while (p < 16 && work >= (idx(1) << 20) * p * p) p *= 2;
    return p;
}

// f(k0, k1) on the ranges [bound(p), bound(p + 1)) for p < pieces, on t
// threads. More pieces than threads, taken as threads come free, keep a
// thread that loses its core (two cores, shared) from holding up the call.
template <class B, class F>
void ranges(int t, int pieces, B bound, F f) {
    if (t <= 1 || pieces <= 1) return f(bound(0), bound(pieces));
    ork::core::parallel_for(t, pieces, [&](int p) { f(bound(p), bound(p + 1)); });
}
constexpr int pieces_per_thread = 4;
// n items in t nearly equal ranges
inline auto even(idx n, int t) {
    return [=](int p) { return n * p / t; };
}
// the columns of an n-by-n triangle in t ranges of nearly equal area
inline auto by_area(idx n, int t, bool upper) {
    return [=](int p) -> idx {
        if (p == 0 || p == t) return p == 0 ? 0 : n;
        const double f = double(p) / t;
        const idx b = idx(std::llround(n * (upper ? std::sqrt(f) : 1 - std::sqrt(1 - f))));
        return b < 0 ? 0 : (b > n ? n : b);
    };
}

// ---- kernels by element type
template <class C> struct kern;
#define ORK_L2_KERN(C, p, gemv_)                                       \
    template <> struct kern<C> {                                              \
        static auto gemv() { return K().ork_blas_x##p##gemv; }                \
        static auto gbmv() { return K().ork_blas_##p##gbmv; }                 \
        static auto axpy() { return K().ork_blas_x##p##axpy; }                \
        static constexpr const char* trans_flag = gemv_;                      \
    };
ORK_L2_KERN(float, s, "Transpose")
ORK_L2_KERN(double, d, "Transpose")
ORK_L2_KERN(ork_complex8, c, "Conjugate transpose")
ORK_L2_KERN(ork_complex16, z, "Conjugate transpose")
#undef ORK_L2_KERN

// ---- general products: (trans, m, n, [kl, ku,] alpha, a, lda, x, incx,
// beta, y, incy); band when kl is given
template <class C>
void general_mv(bool band, const char* trans, const idx* m, const idx* n, const idx* kl, const idx* ku,
                const C* alpha, const C* a, const idx* lda, const C* x, const idx* incx, const C* beta, C* y,
                const idx* incy) {
    const idx M = *m, N = *n;
    const bool notrans = is(trans, "N");
    const idx LDA = *lda, ix = *incx, iy = *incy, leny = notrans ? M : N, lenx = notrans ? N : M;
    // at least 64 rows or columns of A a thread. Full N takes one range of
    // rows a thread: shorter runs down each column stream A from memory
    // markedly slower (dgemv N at n = 4000 on two threads of the two-core
    // Zen 4 guest, bench/level2_bench.cpp, November 2026: 1.13-1.21x
    // OpenBLAS against 0.81-0.98x with four ranges a thread).
    int t = threads_for(M * (band && *kl + *ku + 1 < N ? *kl + *ku + 1 : N));
    int p = t * (notrans && !band ? 1 : pieces_per_thread);
    if (p > leny / 64) p = leny / 64 > 1 ? int(leny / 64) : 1;
    ranges(t, p, even(leny, p), [&](idx k0, idx k1) {
        idx len = k1 - k0;
        if (len <= 0) return;
        C* ys = sub(y, leny, iy, k0, len);
        if (!band) {  // whole rows (N) or columns (T, C) of A and their part of y
            if (notrans) kern<C>::gemv()(trans, &len, n, alpha, a + k0, lda, x, incx, beta, ys, incy);
            else kern<C>::gemv()(trans, m, &len, alpha, a + k0 * LDA, lda, x, incx, beta, ys, incy);
            return;
        }
        // the band rows (N) or columns (T, C) [k0, k1) and the stored part
        // across them, [o0, o1), as a band of their own
        const idx KL = *kl, KU = *ku, reach_lo = notrans ? KL : KU, reach_hi = notrans ? KU : KL;
        idx o0 = k0 - reach_lo > 0 ? k0 - reach_lo : 0, o1 = k1 + reach_hi < lenx ? k1 + reach_hi : lenx;
        const C zero{}, *al = alpha;
        if (o1 <= o0) o1 = o0 + 1, al = &zero;  // nothing stored: y := beta*y alone
        idx other = o1 - o0, kl2 = notrans ? KL - (k0 - o0) : KL + (k0 - o0), ku2 = KL + KU - kl2;
        const C* xs = sub(x, lenx, ix, o0, other);
        if (notrans) kern<C>::gbmv()(trans, &len, &other, &kl2, &ku2, al, a + o0 * LDA, lda, xs, incx, beta, ys, incy);
        else kern<C>::gbmv()(trans, &other, &len, &kl2, &ku2, al, a + k0 * LDA, lda, xs, incx, beta, ys, incy);
    });
}
template <class K, class C>
void gemv(const entry&, K, const char* trans, const idx* m, const idx* n, const C* alpha, const C* a, const idx* lda,
          const C* x, const idx* incx, const C* beta, C* y, const idx* incy) {
    general_mv<C>(false, trans, m, n, nullptr, nullptr, alpha, a, lda, x, incx, beta, y, incy);
}
template <class K, class C>
void gbmv(const entry&, K, const char* trans, const idx* m, const idx* n, const idx* kl, const idx* ku,
          const C* alpha, const C* a, const idx* lda, const C* x, const idx* incx, const C* beta, C* y,
          const idx* incy) {
    general_mv<C>(true, trans, m, n, kl, ku, alpha, a, lda, x, incx, beta, y, incy);
}

// ---- symmetric and Hermitian products. Full storage of order n is cut
// into fixed_pieces(n^2) column ranges of nearly equal area of the stored
// triangle, a number from n alone: one thread or several, inside a parallel
// region or not, compute the same sums in the same order. Piece p: the
// kernel on its diagonal block (beta and the block's terms of its own rows
// of y), then the block beside it a run of columns at a time (small enough
// to stay in the core's cache), once transposed into the piece's own rows of
// y and once into a buffer of the piece's own for the other rows. When every
// piece has finished, the caller's thread adds the buffers to y in order of
// piece. Without memory for the buffers the same sums go another way (see
// symv). Below 2^17 elements, with alpha zero, and for band and packed
// storage the kernel runs whole.
//
// Pieces: fixed_pieces(n^2), at most n^2/2^14 of them. Piece p's block
// beside the diagonal then has at least n/sqrt(pieces) >= 128 rows, so its
// runs (beside_columns) are at most 512 columns, which the kernel's gemv
// takes without workspace. One thread pays for the blocks' second pass
// against the kernel whole, which reads each element once: dsymv on the
// two-core Zen 4 guest (bench/results/level2_avx.md, November 2026) about
// 0.85 of its speed at n = 1000 (in cache, two pieces) and 0.9 at n = 4000
// (four pieces).
// columns of the block beside the diagonal read while they stay in cache:
// about half a megabyte of A, half the 1 MB second-level cache of a core of
// the two-core AMD EPYC (Zen 4) guest on which the split was measured
// (bench/level2_bench.cpp, dsymv at n = 4000 on two threads, November 2026);
// a size from the cache, not a tuned one
inline idx beside_columns(idx rows) {
    const idx c = (idx(1) << 16) / (rows > 0 ? rows : 1);
    return c < 8 ? 8 : c;
}
template <class K, class C>
void symv(const entry&, K kernel, const char* uplo, const idx* n, const C* alpha, const C* a, const idx* lda,
          const C* x, const idx* incx, const C* beta, C* y, const idx* incy) {
    const idx N = *n;
    const int P = fixed_pieces(N * N);
    if (P <= 1 || check::is_zero(*alpha)) return kernel(uplo, n, alpha, a, lda, x, incx, beta, y, incy);
    const idx LDA = *lda, ix = *incx, iy = *incy, unit = 1;
    const bool upper = is(uplo, "U");
    const C zero{}, one = check::one<C>();
    const auto bound = by_area(N, P, upper);
    // piece p: columns [j0, j0 + len), beside them rows [o0, o0 + other)
    struct piece_at {
        idx j0, len, o0, other;
    };
    auto at = [&](int p) {
        const idx j0 = bound(p), j1 = bound(p + 1);
        return piece_at{j0, j1 - j0, upper ? 0 : j1, upper ? j0 : N - j1};
    };
    // The block beside piece p's diagonal block, run by run of columns: with
    // `mirrored`, transposed into the piece's own rows of y; with `out`, its
    // rows [r0, r0 + rows) times x's part into out (zeroed by the first run).
    auto beside = [&](const piece_at& q, bool mirrored, idx r0, idx rows, C* out) {
        if (q.other <= 0) return;
        const idx step = beside_columns(q.other);
        for (idx c0 = 0; c0 < q.len; c0 += step) {
            idx cl = q.len - c0 < step ? q.len - c0 : step;
            const C* blk = a + q.o0 + (q.j0 + c0) * LDA;
            if (mirrored)
                kern<C>::gemv()(kern<C>::trans_flag, &q.other, &cl, alpha, blk, lda, sub(x, N, ix, q.o0, q.other),
                                incx, &one, sub(y, N, iy, q.j0 + c0, cl), incy);
            if (out)
                kern<C>::gemv()("No transpose", &rows, &cl, alpha, blk + r0, lda, sub(x, N, ix, q.j0 + c0, cl), incx,
                                c0 == 0 ? &zero : &one, out, &unit);
        }
    };
    auto own = [&](int p, C* out) {
        piece_at q = at(p);
        if (q.len <= 0) return;
        kernel(uplo, &q.len, alpha, a + q.j0 + q.j0 * LDA, lda, sub(x, N, ix, q.j0, q.len), incx, beta,
               sub(y, N, iy, q.j0, q.len), incy);
        beside(q, true, 0, q.other, out);
    };
    idx first[17] = {};  // piece p's buffer at first[p]
    for (int p = 0; p < P; ++p) first[p + 1] = first[p] + (at(p).len > 0 ? at(p).other : 0);
    const int t = threads_for(N * N);
    C* w = static_cast<C*>(allocate(std::size_t(first[P]) * sizeof(C), 64));
    if (w) {
        parallel_for(t, P, [&](int p) { own(p, w + first[p]); });
        for (int p = 0; p < P; ++p) {
            piece_at q = at(p);
            if (first[p + 1] > first[p])
                kern<C>::axpy()(&q.other, &one, w + first[p], &unit, sub(y, N, iy, q.o0, q.other), incy);
        }
        return deallocate(w);
    }
    // No memory for the buffers: the pieces' own rows as above, then y's rows
    // a strip at a time through the stack, each strip adding the pieces
    // beside it in order of piece, their sums in the same runs of columns
    // (the kernel's gemv computes a row alike wherever it lies): the same
    // bits, for a second read of the blocks beside the diagonal.
    parallel_for(t, P, [&](int p) { own(p, nullptr); });
    constexpr idx strip = 256;
    parallel_for(t, int((N + strip - 1) / strip), [&](int s) {
        C part[strip];
        const idx s0 = idx(s) * strip, s1 = N - s0 < strip ? N : s0 + strip;
        for (int p = 0; p < P; ++p) {
            const piece_at q = at(p);
            const idx lo = s0 > q.o0 ? s0 : q.o0, hi = s1 < q.o0 + q.other ? s1 : q.o0 + q.other;
            idx rows = hi - lo;
            if (q.len <= 0 || rows <= 0) continue;
            beside(q, false, lo - q.o0, rows, part);
            kern<C>::axpy()(&rows, &one, part, &unit, sub(y, N, iy, lo, rows), incy);
        }
    });
}

// ---- general updates (m, n, alpha, x, incx, y, incy, a, lda), by columns
template <class K, class C>
void ger(const entry&, K kernel, const idx* m, const idx* n, const C* alpha, const C* x, const idx* incx, const C* y,
         const idx* incy, C* a, const idx* lda) {
    const idx M = *m, N = *n, LDA = *lda, iy = *incy;
    const int t = threads_for(M * N);
    const int p = t * pieces_per_thread;
    ranges(t, p, even(N, p), [&](idx j0, idx j1) {
        idx len = j1 - j0;
        if (len > 0) kernel(m, &len, alpha, x, incx, sub(y, N, iy, j0, len), incy, a + j0 * LDA, lda);
    });
}

// her and her2 on the columns [j0, j1): gerc on the stored block beside the
// diagonal block, then the kernel on the diagonal block.
template <class C, class Gerc, class Her>
void hermitian_columns(Gerc gerc, Her her, bool upper, idx n, const C* alpha, const C* x, idx ix, const C* y,
                       idx iy, C* a, idx lda, idx j0, idx j1) {
    idx len = j1 - j0, other = upper ? j0 : n - j1, o0 = upper ? 0 : j1;
    const C al{alpha->re, alpha->im}, alc{alpha->re, -alpha->im};
    C* off = upper ? a + j0 * lda : a + j1 + j0 * lda;
    const C* xo = sub(x, n, ix, o0, other);
    const C* xc = sub(x, n, ix, j0, len);
    if (y) {
        const C* yo = sub(y, n, iy, o0, other);
        const C* yc = sub(y, n, iy, j0, len);
        if (other > 0) {
            gerc(&other, &len, &al, xo, &ix, yc, &iy, off, &lda);
            gerc(&other, &len, &alc, yo, &iy, xc, &ix, off, &lda);
        }
        her(&len, xc, &ix, yc, &iy, a + j0 + j0 * lda, &lda);
    } else {
        if (other > 0) gerc(&other, &len, &al, xo, &ix, xc, &ix, off, &lda);
        her(&len, xc, &ix, nullptr, nullptr, a + j0 + j0 * lda, &lda);
    }
}

// ---- symmetric and Hermitian updates of full storage: column ranges of
// nearly equal area. The real ones through the kernels' column pieces, which
// give the whole update's bits for any ranges: whole on one thread. her and
// her2 through gerc beside the diagonal block and the kernel on it, whose
// complex scalars can give a zero of another sign than the kernel's real
// one: their ranges are fixed_pieces(n^2/2), on one thread too.
template <class F>
void by_columns(const char* uplo, idx n, F columns) {
    const int p = fixed_pieces(n * n / 2);
    const auto bound = by_area(n, p, is(uplo, "U"));
    ork::core::parallel_for(threads_for(n * n / 2), p, [&](int k) {
        if (bound(k + 1) > bound(k)) columns(bound(k), bound(k + 1));
    });
}
// whole: one thread for the real updates, one piece for all
template <class C> bool update_whole(idx n) {
    return (std::is_arithmetic_v<C> ? threads_for(n * n / 2) : fixed_pieces(n * n / 2)) <= 1;
}
template <class R> struct pieces;
template <> struct pieces<float> {
    static auto syr() { return K().ork_blas_xssyr_in_thread; }
    static auto syr2() { return K().ork_blas_xssyr2_in_thread; }
};
template <> struct pieces<double> {
    static auto syr() { return K().ork_blas_xdsyr_in_thread; }
    static auto syr2() { return K().ork_blas_xdsyr2_in_thread; }
};
template <class C> auto gerc_kernel() {
    if constexpr (std::is_same_v<C, ork_complex8>) return K().ork_blas_cgerc;
    else return K().ork_blas_zgerc;
}

template <class K, class A, class C>
void syr(const entry&, K kernel, const char* uplo, const idx* n, const A* alpha, const C* x, const idx* incx, C* a,
         const idx* lda) {
    if (update_whole<C>(*n)) return kernel(uplo, n, alpha, x, incx, a, lda);
    by_columns(uplo, *n, [&](idx j0, idx j1) {
        if constexpr (std::is_arithmetic_v<C>) {
            idx f = j0 + 1;
            pieces<C>::syr()(uplo, n, alpha, x, incx, a, lda, &f, &j1);
        } else {
            const C al{*alpha, 0};
            hermitian_columns(
                gerc_kernel<C>(),
                [&](const idx* nn, const C* xx, const idx* ix, const C*, const idx*, C* aa, const idx* la) {
                    kernel(uplo, nn, alpha, xx, ix, aa, la);
                },
                is(uplo, "U"), *n, &al, x, *incx, static_cast<const C*>(nullptr), 0, a, *lda, j0, j1);
        }
    });
}
template <class K, class C>
void syr2(const entry&, K kernel, const char* uplo, const idx* n, const C* alpha, const C* x, const idx* incx,
          const C* y, const idx* incy, C* a, const idx* lda) {
    if (update_whole<C>(*n)) return kernel(uplo, n, alpha, x, incx, y, incy, a, lda);
    by_columns(uplo, *n, [&](idx j0, idx j1) {
        if constexpr (std::is_arithmetic_v<C>) {
            idx f = j0 + 1;
            pieces<C>::syr2()(uplo, n, alpha, x, incx, y, incy, a, lda, &f, &j1);
        } else {
            hermitian_columns(
                gerc_kernel<C>(),
                [&](const idx* nn, const C* xx, const idx* ix, const C* yy, const idx* iy, C* aa, const idx* la) {
                    kernel(uplo, nn, alpha, xx, ix, yy, iy, aa, la);
                },
                is(uplo, "U"), *n, alpha, x, *incx, y, *incy, a, *lda, j0, j1);
        }
    });
}

}  // namespace ork::core::level2
