// The real dot products of the AVX2 and AVX-512 generations: the baseline's
// partial sums and combining tree (sse2/dot.cpp) held two 16-byte vectors to
// a 32-byte one, so each partial sum gets the same operations in the same
// order (multiply, then add; no fused multiply-add) and the result the
// baseline's bits, with half the instructions.
#include <immintrin.h>

#include "blas/level1/dot_lanes.h"
#include "blas/level1/inner.h"
#include "frame/simd/avx2.h"

namespace ork::inner {
namespace {

// The baseline keeps eight 16-byte vectors of partial sums s0..s7; here w[j]
// holds s(2j) in its low half and s(2j+1) in its high half. Its tree
// ((s0 + s1) + (s2 + s3)) + ((s4 + s5) + (s6 + s7)), operands in the same
// order, down to one 16-byte vector.
__m128d tree(const __m256d (&w)[4]) {
    const __m256d x = _mm256_add_pd(_mm256_permute2f128_pd(w[0], w[1], 0x20), _mm256_permute2f128_pd(w[0], w[1], 0x31));
    const __m256d y = _mm256_add_pd(_mm256_permute2f128_pd(w[2], w[3], 0x20), _mm256_permute2f128_pd(w[2], w[3], 0x31));
    const __m256d p = _mm256_add_pd(_mm256_permute2f128_pd(x, y, 0x20), _mm256_permute2f128_pd(x, y, 0x31));
    return _mm_add_pd(_mm256_castpd256_pd128(p), _mm256_extractf128_pd(p, 1));
}
__m128 tree(const __m256 (&w)[4]) {
    const __m256 x = _mm256_add_ps(_mm256_permute2f128_ps(w[0], w[1], 0x20), _mm256_permute2f128_ps(w[0], w[1], 0x31));
    const __m256 y = _mm256_add_ps(_mm256_permute2f128_ps(w[2], w[3], 0x20), _mm256_permute2f128_ps(w[2], w[3], 0x31));
    const __m256 p = _mm256_add_ps(_mm256_permute2f128_ps(x, y, 0x20), _mm256_permute2f128_ps(x, y, 0x31));
    return _mm_add_ps(_mm256_castps256_ps128(p), _mm256_extractf128_ps(p, 1));
}

// Sixteen double (thirty-two single) partial sums, element i to s(i mod
// 16 (32)), each product added to its sum; the tree, the lanes, then the
// last n mod 16 (32) products one by one.
template <class R> R wide_dot(idx n, const R* x, const R* y) {
    using S = simd::avx2<R>;
    typename S::V w[4];
    for (auto& v : w) v = S::zero();
    idx i = 0;
    for (; i + 4 * S::lanes <= n; i += 4 * S::lanes) {
#pragma GCC unroll 4
        for (int k = 0; k < 4; ++k)
            w[k] = S::add(w[k], S::mul(S::loadu(x + i + S::lanes * k), S::loadu(y + i + S::lanes * k)));
    }
    R r = lanes(tree(w));
    for (; i < n; ++i) r += x[i] * y[i];
    return r;
}

}  // namespace

double dot(idx n, const double* x, const double* y) { return wide_dot(n, x, y); }
float dot(idx n, const float* x, const float* y) { return wide_dot(n, x, y); }

}  // namespace ork::inner
