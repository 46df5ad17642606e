// Compensated addition of block sums, for the long reductions whose order of
// summation is ours to choose: each run is cut into blocks counted from its
// first element, a block is summed plainly (vectorised partial sums), and the
// blocks' sums are added here with their rounding errors kept, so that the
// error of the whole does not grow with the length.
#pragma once

#include "frame/types.h"

namespace ork::blas {

// hi := fl(hi + v), and the exact error of that addition added into lo
// (Knuth's two-sum: six operations, no branch, exact whatever the
// magnitudes). Written with operators, so it serves reals, complex values
// and 16-byte vectors lane by lane alike.
template <class V>
inline void two_sum_into(V& hi, V& lo, V v) {
    const V s = hi + v, bb = s - hi;
    lo = lo + ((hi - (s - bb)) + (v - bb));
    hi = s;
}

// The total hi + lo; once hi is infinite or NaN its error terms are NaN,
// and hi alone is the total (as a plain sum would give).
template <class R>
inline R settle(R hi, R lo) {
    return hi - hi == 0 ? hi + lo : hi;
}
template <class R>
inline cx<R> settle(cx<R> hi, cx<R> lo) {
    return {settle(hi.re, lo.re), settle(hi.im, lo.im)};
}

template <class T>
struct compensated {
    T hi{}, lo{};
    void add(T v) { two_sum_into(hi, lo, v); }
    T total() const { return settle(hi, lo); }
};

// The sum of part(i0, len) over the blocks [i0, i0 + len) of [0, n), each
// `block` long but the last, added with compensation.
template <class T, class Part>
T blockwise_sum(idx n, idx block, Part part) {
    compensated<T> c;
    for (idx i0 = 0; i0 < n; i0 += block) c.add(part(i0, n - i0 < block ? n - i0 : block));
    return c.total();
}

// sum of term(i) over i < n: a plain running sum in each block of `block`
// terms, the blocks added with compensation (the strided forms of the
// reductions whose contiguous forms go to the inner kernels).
template <class T, class Term>
T blocked_sum(idx n, idx block, Term term) {
    return blockwise_sum<T>(n, block, [&](idx i0, idx len) {
        T s{};
        for (idx i = i0; i < i0 + len; ++i) s += term(i);
        return s;
    });
}

}  // namespace ork::blas
