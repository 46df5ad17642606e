// The bodies of libork's level-1 entries: what the checked entries of
// core/level1_entries.cpp (generated from blas/level1/table.py) hand over to
// once the arguments have passed. Each runs the kernel of the loaded library,
// split over threads when the vectors are long.
//
// Splits and their bits: the element-wise routines (axpy, copy, swap, scal,
// rot, rotm) give each element the single-thread bits. The reductions over
// long vectors (dot, asum, sdsdot) are summed in fixed blocks added in block
// order, so their value depends on n alone, never on the number of threads;
// nrm2 (whose order of operations is fixed) and the index searches run whole.
#pragma once

#include <type_traits>

#include "core/core.h"

namespace ork::core::level1 {

using idx = ork_int;

// Below this many elements per thread a parallel region costs more than it
// saves (level 1 runs at memory speed: 64K doubles stream in ~10 us).
constexpr idx per_thread_min = 1 << 16;

inline int threads_for(idx work) {
    if (work < 2 * per_thread_min) return 1;  // without asking for the setting
    idx k = work / per_thread_min;
    int t = max_threads();
    return k < 1 ? 1 : (k < t ? int(k) : t);
}

// f(i0, len) on consecutive pieces [i0, i0 + len), one per thread.
template <class F>
void pieces(idx n, int t, F f) {
    if (t <= 1) return f(idx(0), n);
    parallel_for(t, t, [&](int k) {
        idx i0 = n * k / t;
        f(i0, n * (k + 1) / t - i0);
    });
}

// Long reductions: fixed blocks of reduce_block elements, their partial
// results added in block order.
constexpr idx reduce_block = 1 << 16;

template <class R> R add(R a, R b) {
    if constexpr (std::is_arithmetic_v<R>) return a + b;
    else return R{a.re + b.re, a.im + b.im};
}

template <class R, class F>
R blockwise(idx n, const F& partial) {
    if (n < 2 * reduce_block) return partial(idx(0), n);
    const idx blocks = (n + reduce_block - 1) / reduce_block;
    auto block = [&](idx b) {
        const idx i0 = b * reduce_block;
        return partial(i0, n - i0 < reduce_block ? n - i0 : reduce_block);
    };
    // Without room for the partial results, one thread adds each to the sum
    // as it is made: the same additions in the same order.
    R* parts = static_cast<R*>(allocate(std::size_t(blocks) * sizeof(R), 64));
    if (!parts) {
        R s = block(0);
        for (idx b = 1; b < blocks; ++b) s = add(s, block(b));
        return s;
    }
    const int t = threads_for(n);
    parallel_for(t, t, [&](int k) {  // a run of whole blocks each
        for (idx b = blocks * k / t; b < blocks * (k + 1) / t; ++b) parts[b] = block(b);
    });
    R s = parts[0];
    for (idx b = 1; b < blocks; ++b) s = add(s, parts[b]);
    deallocate(parts);
    return s;
}

// y := alpha*x + y, in pieces of y
template <class K, class A, class C>
void axpy(const entry&, K k, const idx* n, const A* alpha, const C* x, const idx* incx, C* y, const idx* incy) {
    const idx N = *n, ix = *incx, iy = *incy;
    pieces(N, iy != 0 ? threads_for(N) : 1, [&](idx i0, idx len) {
        k(&len, alpha, sub(x, N, ix, i0, len), &ix, sub(y, N, iy, i0, len), &iy);
    });
}

// (n, x, incx, y, incy, extra...), element-wise: copy, swap, rot, rotm; split
// unless an increment 0 makes every piece write the same element
template <bool XWritten, class K, class X, class Y, class... S>
void pair(const entry&, K k, const idx* n, X* x, const idx* incx, Y* y, const idx* incy, const S*... extra) {
    const idx N = *n, ix = *incx, iy = *incy;
    const bool split = iy != 0 && (!XWritten || ix != 0);
    pieces(N, split ? threads_for(N) : 1, [&](idx i0, idx len) {
        k(&len, sub(x, N, ix, i0, len), &ix, sub(y, N, iy, i0, len), &iy, extra...);
    });
}

// x := alpha*x
template <class K, class A, class C>
void scal(const entry&, K k, const idx* n, const A* alpha, C* x, const idx* incx) {
    const idx N = *n, ix = *incx;
    pieces(N, ix != 0 ? threads_for(N) : 1, [&](idx i0, idx len) { k(&len, alpha, sub(x, N, ix, i0, len), &ix); });
}

// the dot products, blockwise
template <class K, class C>
auto dot(const entry&, K k, const idx* n, const C* x, const idx* incx, const C* y, const idx* incy) {
    using R = decltype(k(n, x, incx, y, incy));
    const idx N = *n, ix = *incx, iy = *incy;
    if (N < 2 * reduce_block) return k(n, x, incx, y, incy);  // one block: straight to the kernel
    return blockwise<R>(N, [&](idx i0, idx len) {
        return k(&len, sub(x, N, ix, i0, len), &ix, sub(y, N, iy, i0, len), &iy);
    });
}

// sdsdot: the double partial sums of dsdot added to sb in order, rounded once
template <class K>
float sdsdot(const entry&, K k, const idx* n, const float* sb, const float* x, const idx* incx, const float* y,
             const idx* incy) {
    if (*n < 2 * reduce_block) return k(n, sb, x, incx, y, incy);
    const idx N = *n, ix = *incx, iy = *incy;
    const double s = blockwise<double>(N, [&](idx i0, idx len) {
        return kernels().ork_blas_dsdot(&len, sub(x, N, ix, i0, len), &ix, sub(y, N, iy, i0, len), &iy);
    });
    return float(double(*sb) + s);
}

// asum: summed forward from x[0] by |incx|, blockwise
template <class K, class C>
auto asum(const entry&, K k, const idx* n, const C* x, const idx* incx) {
    using R = decltype(k(n, x, incx));
    const idx step = *incx < 0 ? -*incx : *incx;
    return blockwise<R>(*n, [&](idx i0, idx len) { return k(&len, x + i0 * step, &step); });
}

// computed whole by the kernel: nrm2 (whose order of operations is fixed),
// i?amax, i?amin, and everything short or not split
template <class K, class... A>
auto whole(const entry&, K k, A... a) {
    return k(a...);
}

}  // namespace ork::core::level1
