// Complex arithmetic on vectors of interleaved [re, im] values, written once
// over any generation's vocabulary (frame/simd/<generation>.h).
#pragma once

#include "frame/types.h"

// For functions whose scalar complex arithmetic (tails) is compiled under a
// generation's FMA flags: GCC 12's loop vectoriser rewrites a loop of complex
// products as fused multiply-adds (vfmaddsub) even with contraction off, so
// such loops are left scalar.
#define ORK_NO_LOOP_VECTORS __attribute__((optimize("no-tree-loop-vectorize")))

namespace ork::simd {

// Multiplication of every complex value in a vector by one scalar a:
// x*re(a) + swap(x)*(-im(a), im(a)). Per part that is xr*ar + xi*(-ai) and
// xi*ar + xr*ai, which round exactly like the scalar formulas ar*xr - ai*xi
// and ar*xi + ai*xr (a negation is exact), so vector and scalar paths agree
// bit for bit.
template <class S> struct cscale {
    using V = typename S::V;
    V re, im;
    explicit cscale(cx<typename S::R> a) : re(S::set1(a.re)), im(S::pairs(-a.im, a.im)) {}
    V operator()(V x) const { return S::add(S::mul(x, re), S::mul(S::swap_pairs(x), im)); }
};

// The conjugates of the complex values in x.
template <class S> typename S::V conj(typename S::V x) { return S::bxor(x, S::pairs(0.0, -0.0)); }

// Sums of products kept as r = sum a*re(b) and i = sum a*im(b), with a the
// interleaved values: each pair of r holds (sum ar*br, sum ai*br), of i
// (sum ar*bi, sum ai*bi). The complex sum is (r.re + -i.im, r.im + i.re).
template <class S> typename S::V combine(typename S::V r, typename S::V i) {
    return S::add(r, S::mul(S::swap_pairs(i), S::pairs(-1.0, 1.0)));
}

}  // namespace ork::simd
