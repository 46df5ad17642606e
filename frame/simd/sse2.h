// The baseline generation's vector vocabulary: 16-byte SSE2 vectors of
// doubles or floats, with no fused multiply-add.
#pragma once

#include <emmintrin.h>

namespace ork::simd {

template <class R> struct sse2;

template <> struct sse2<double> {
    using R = double;
    using V = __m128d;
    static constexpr int lanes = 2, bytes = 16;
    static constexpr bool fused = false;
    static V zero() { return _mm_setzero_pd(); }
    static V set1(double v) { return _mm_set1_pd(v); }
    // [a, b, a, b, ...]: the parts of one complex value in every pair
    static V pairs(double a, double b) { return _mm_set_pd(b, a); }
    static V load(const double* p) { return _mm_load_pd(p); }
    static V loadu(const double* p) { return _mm_loadu_pd(p); }
    static void store(double* p, V v) { _mm_store_pd(p, v); }
    static void storeu(double* p, V v) { _mm_storeu_pd(p, v); }
    static V add(V a, V b) { return _mm_add_pd(a, b); }
    static V sub(V a, V b) { return _mm_sub_pd(a, b); }
    static V mul(V a, V b) { return _mm_mul_pd(a, b); }
    static V div(V a, V b) { return _mm_div_pd(a, b); }
    static V max(V a, V b) { return _mm_max_pd(a, b); }
    static V min(V a, V b) { return _mm_min_pd(a, b); }
    static V abs(V a) { return _mm_andnot_pd(_mm_set1_pd(-0.0), a); }
    static V unord(V a, V b) { return _mm_cmpunord_pd(a, b); }
    // all-ones lanes where a > b (a == b), ordered: false with NaN
    static V gt(V a, V b) { return _mm_cmpgt_pd(a, b); }
    static V eq(V a, V b) { return _mm_cmpeq_pd(a, b); }
    static V bor(V a, V b) { return _mm_or_pd(a, b); }
    static V bxor(V a, V b) { return _mm_xor_pd(a, b); }
    static bool any(V a) { return _mm_movemask_pd(a) != 0; }
    // lane k's sign bit (mask) or lowest bit (low_bits) as bit k
    static unsigned mask(V a) { return unsigned(_mm_movemask_pd(a)); }
    static unsigned low_bits(V a) { return unsigned(_mm_movemask_pd(_mm_castsi128_pd(_mm_slli_epi64(_mm_castpd_si128(a), 63)))); }
    static double first(V a) { return _mm_cvtsd_f64(a); }
    // lanes rotated by one: [a1, a0]
    static V rotate(V a) { return _mm_shuffle_pd(a, a, 1); }
    // the two parts of each complex value exchanged: [a1, a0]
    static V swap_pairs(V a) { return _mm_shuffle_pd(a, a, 1); }
};

template <> struct sse2<float> {
    using R = float;
    using V = __m128;
    static constexpr int lanes = 4, bytes = 16;
    static constexpr bool fused = false;
    static V zero() { return _mm_setzero_ps(); }
    static V set1(float v) { return _mm_set1_ps(v); }
    static V pairs(float a, float b) { return _mm_set_ps(b, a, b, a); }
    static V load(const float* p) { return _mm_load_ps(p); }
    static V loadu(const float* p) { return _mm_loadu_ps(p); }
    static void store(float* p, V v) { _mm_store_ps(p, v); }
    static void storeu(float* p, V v) { _mm_storeu_ps(p, v); }
    static V add(V a, V b) { return _mm_add_ps(a, b); }
    static V sub(V a, V b) { return _mm_sub_ps(a, b); }
    static V mul(V a, V b) { return _mm_mul_ps(a, b); }
    static V max(V a, V b) { return _mm_max_ps(a, b); }
    static V min(V a, V b) { return _mm_min_ps(a, b); }
    static V abs(V a) { return _mm_andnot_ps(_mm_set1_ps(-0.0f), a); }
    static V unord(V a, V b) { return _mm_cmpunord_ps(a, b); }
    static V bor(V a, V b) { return _mm_or_ps(a, b); }
    static V bxor(V a, V b) { return _mm_xor_ps(a, b); }
    static bool any(V a) { return _mm_movemask_ps(a) != 0; }
    static float first(V a) { return _mm_cvtss_f32(a); }
    static V rotate(V a) { return _mm_shuffle_ps(a, a, _MM_SHUFFLE(0, 3, 2, 1)); }
    static V swap_pairs(V a) { return _mm_shuffle_ps(a, a, _MM_SHUFFLE(2, 3, 0, 1)); }
};

}  // namespace ork::simd
