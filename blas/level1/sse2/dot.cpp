// The real dot products of the baseline generation in SSE2 intrinsics, whose
// orders are fixed (the AVX2 and AVX-512 generations keep the same partial
// sums and tree in wider vectors: avx2/dot.cpp).
#include "blas/level1/dot_lanes.h"
#include "blas/level1/inner.h"
#include "frame/simd/sse2.h"

namespace ork::inner {

// ---- dot. Double: sixteen partial sums s0..s15, element i going to
// s(i mod 16) (eight vectors, enough to cover the add latency); they are
// combined pairwise as a tree of vectors, then the lanes, then the n mod 16
// last products are added one by one in order. Single: thirty-two partial
// sums, combined alike.
namespace {
template <class R> R tree_dot(idx n, const R* x, const R* y) {
    using S = simd::sse2<R>;
    typename S::V s[8];
    for (auto& v : s) v = S::zero();
    idx i = 0;
    for (; i + 8 * S::lanes <= n; i += 8 * S::lanes) {
#pragma GCC unroll 8
        for (int k = 0; k < 8; ++k)
            s[k] = S::add(s[k], S::mul(S::loadu(x + i + S::lanes * k), S::loadu(y + i + S::lanes * k)));
    }
    R r = lanes(S::add(S::add(S::add(s[0], s[1]), S::add(s[2], s[3])), S::add(S::add(s[4], s[5]), S::add(s[6], s[7]))));
    for (; i < n; ++i) r += x[i] * y[i];
    return r;
}
}  // namespace

double dot(idx n, const double* x, const double* y) { return tree_dot(n, x, y); }
float dot(idx n, const float* x, const float* y) { return tree_dot(n, x, y); }

}  // namespace ork::inner
