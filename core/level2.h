// The bodies of libork's level-2 products and updates (the triangular ones
// apart): what the checked entries of core/level2_entries.cpp (generated from
// blas/level2/table.py) hand over to once the arguments have passed. Each
// runs the kernel of the loaded library, split over threads when the matrix
// is large.
//
// Splits and their bits: gemv and gbmv (rows of y for N, its elements for T
// and C), ger (columns) and the real syr and syr2 (column ranges through the
// _in_thread pieces) give the single-thread bits. her and her2 split as gerc
// on the off-diagonal block plus the kernel on the diagonal block, the same
// operations for finite data. symv and hemv split the stored triangle into
// column ranges, each thread adding the block beside its diagonal block to
// two sides of y (one through a buffer): their rounding then depends on the
// number of threads. The band and packed symmetric forms run whole.
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

// ---- symmetric and Hermitian products. Full storage splits the stored
// triangle into column ranges of nearly equal area, so that each thread reads
// its part of A once: the kernel on the diagonal block, then the block beside
// it a few columns at a time (small enough to stay in the core's cache), once
// transposed into the thread's own rows of y and once into a buffer of the
// thread's own for the other rows, which the caller's thread adds to y in
// order of thread once all have finished. Without the buffers, and for band
// and packed storage, the kernel runs whole.
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
    const int t = threads_for(N * N);
    if (t <= 1) return kernel(uplo, n, alpha, a, lda, x, incx, beta, y, incy);
    C* w = static_cast<C*>(allocate(std::size_t(N) * std::size_t(t) * sizeof(C), 64));
    if (!w) return kernel(uplo, n, alpha, a, lda, x, incx, beta, y, incy);
    const idx LDA = *lda, ix = *incx, iy = *incy, unit = 1;
    const bool upper = is(uplo, "U");
    const C zero{}, one = check::one<C>();
    const auto bound = by_area(N, t, upper);
    ork::core::parallel_for(t, t, [&](int piece) {
        const idx j0 = bound(piece), j1 = bound(piece + 1);
        idx len = j1 - j0;
        if (len <= 0) return;
        C* ys = sub(y, N, iy, j0, len);
        const C* xs = sub(x, N, ix, j0, len);
        kernel(uplo, &len, alpha, a + j0 + j0 * LDA, lda, xs, incx, beta, ys, incy);
        // the stored block beside the diagonal block: rows [o0, o0 + other)
        idx other = upper ? j0 : N - j1;
        const idx o0 = upper ? 0 : j1, step = beside_columns(other);
        if (other <= 0) return;
        const C* xo = sub(x, N, ix, o0, other);
        C* wp = w + std::size_t(N) * std::size_t(piece);
        for (idx c0 = 0; c0 < len; c0 += step) {
            idx cl = len - c0 < step ? len - c0 : step;
            const C* blk = a + o0 + (j0 + c0) * LDA;
            // y's rows of these columns from the mirrored block, then the
            // block's own rows into the buffer
            kern<C>::gemv()(kern<C>::trans_flag, &other, &cl, alpha, blk, lda, xo, incx, &one,
                            sub(ys, len, iy, c0, cl), incy);
            kern<C>::gemv()("No transpose", &other, &cl, alpha, blk, lda, sub(xs, len, ix, c0, cl), incx,
                            c0 == 0 ? &zero : &one, wp, &unit);
        }
    });
    for (int piece = 0; piece < t; ++piece) {
        const idx j0 = bound(piece), j1 = bound(piece + 1);
        idx other = upper ? j0 : N - j1;
        if (j1 > j0 && other > 0)
            kern<C>::axpy()(&other, &one, w + std::size_t(N) * std::size_t(piece), &unit,
                             sub(y, N, iy, upper ? 0 : j1, other), incy);
    }
    deallocate(w);
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

// ---- symmetric and Hermitian updates of full storage: whole on one thread;
// else column ranges of nearly equal area, through the real kernels' column
// pieces, or (her, her2) gerc beside the diagonal block and the kernel on it
template <class F>
void by_columns(const char* uplo, idx n, F columns) {
    const int t = threads_for(n * n / 2);
    const int p = t * pieces_per_thread;
    ranges(t, p, by_area(n, p, is(uplo, "U")), [&](idx j0, idx j1) {
        if (j1 > j0) columns(j0, j1);
    });
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
    if (threads_for(*n * *n / 2) <= 1) return kernel(uplo, n, alpha, x, incx, a, lda);
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
    if (threads_for(*n * *n / 2) <= 1) return kernel(uplo, n, alpha, x, incx, y, incy, a, lda);
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
