// The real dot products of the baseline generation in SSE2 intrinsics, whose
// orders are fixed (the AVX2 and AVX-512 generations keep the same partial
// sums and tree in wider vectors: avx2/dot.cpp).
#include <emmintrin.h>

#include "blas/level1/inner.h"

namespace ork::inner {

// ---- dot. Double: sixteen partial sums s0..s15, element i going to
// s(i mod 16) (eight vectors, enough to cover the add latency); they are
// combined pairwise as a tree of vectors, then the two lanes, then the n mod 16
// last products are added one by one in order.
double dot(idx n, const double* x, const double* y) {
    __m128d s[8];
    for (auto& v : s) v = _mm_setzero_pd();
    idx i = 0;
    for (; i + 16 <= n; i += 16) {
#pragma GCC unroll 8
        for (int k = 0; k < 8; ++k)
            s[k] = _mm_add_pd(s[k], _mm_mul_pd(_mm_loadu_pd(x + i + 2 * k), _mm_loadu_pd(y + i + 2 * k)));
    }
    __m128d t = _mm_add_pd(_mm_add_pd(_mm_add_pd(s[0], s[1]), _mm_add_pd(s[2], s[3])),
                           _mm_add_pd(_mm_add_pd(s[4], s[5]), _mm_add_pd(s[6], s[7])));
    double r = _mm_cvtsd_f64(t) + _mm_cvtsd_f64(_mm_unpackhi_pd(t, t));
    for (; i < n; ++i) r += x[i] * y[i];
    return r;
}

// Single: thirty-two single partial sums, combined like the double ones.
float dot(idx n, const float* x, const float* y) {
    __m128 s[8];
    for (auto& v : s) v = _mm_setzero_ps();
    idx i = 0;
    for (; i + 32 <= n; i += 32) {
#pragma GCC unroll 8
        for (int k = 0; k < 8; ++k)
            s[k] = _mm_add_ps(s[k], _mm_mul_ps(_mm_loadu_ps(x + i + 4 * k), _mm_loadu_ps(y + i + 4 * k)));
    }
    __m128 t = _mm_add_ps(_mm_add_ps(_mm_add_ps(s[0], s[1]), _mm_add_ps(s[2], s[3])),
                          _mm_add_ps(_mm_add_ps(s[4], s[5]), _mm_add_ps(s[6], s[7])));
    t = _mm_add_ps(t, _mm_movehl_ps(t, t));
    float r = _mm_cvtss_f32(t) + _mm_cvtss_f32(_mm_shuffle_ps(t, t, 1));
    for (; i < n; ++i) r += x[i] * y[i];
    return r;
}

}  // namespace ork::inner
