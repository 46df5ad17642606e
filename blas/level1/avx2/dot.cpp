// The real dot products of the AVX2 and AVX-512 generations: the baseline's
// partial sums and combining tree (sse2/dot.cpp) held two 16-byte vectors to
// a 32-byte one, so each partial sum gets the same operations in the same
// order (multiply, then add; no fused multiply-add) and the result the
// baseline's bits, with half the instructions.
#include <immintrin.h>

#include "blas/level1/inner.h"

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

}  // namespace

// Sixteen partial sums, element i to s(i mod 16); the two lanes of the tree,
// then the n mod 16 last products one by one.
double dot(idx n, const double* x, const double* y) {
    __m256d w[4];
    for (auto& v : w) v = _mm256_setzero_pd();
    idx i = 0;
    for (; i + 16 <= n; i += 16) {
#pragma GCC unroll 4
        for (int k = 0; k < 4; ++k)
            w[k] = _mm256_add_pd(w[k], _mm256_mul_pd(_mm256_loadu_pd(x + i + 4 * k), _mm256_loadu_pd(y + i + 4 * k)));
    }
    const __m128d t = tree(w);
    double r = _mm_cvtsd_f64(t) + _mm_cvtsd_f64(_mm_unpackhi_pd(t, t));
    for (; i < n; ++i) r += x[i] * y[i];
    return r;
}

// Thirty-two single partial sums, combined like the double ones; then the
// four lanes as (l0 + l2) + (l1 + l3).
float dot(idx n, const float* x, const float* y) {
    __m256 w[4];
    for (auto& v : w) v = _mm256_setzero_ps();
    idx i = 0;
    for (; i + 32 <= n; i += 32) {
#pragma GCC unroll 4
        for (int k = 0; k < 4; ++k)
            w[k] = _mm256_add_ps(w[k], _mm256_mul_ps(_mm256_loadu_ps(x + i + 8 * k), _mm256_loadu_ps(y + i + 8 * k)));
    }
    __m128 t = tree(w);
    t = _mm_add_ps(t, _mm_movehl_ps(t, t));
    float r = _mm_cvtss_f32(t) + _mm_cvtss_f32(_mm_shuffle_ps(t, t, 1));
    for (; i < n; ++i) r += x[i] * y[i];
    return r;
}

}  // namespace ork::inner
