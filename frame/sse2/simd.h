// 16-byte vectors of the baseline generation, one traits type per real
// element type, so that kernels are written once for single and double.
#pragma once

#include <emmintrin.h>

#include <cstdint>

namespace ork::sse2 {

template <class R> struct simd;

template <> struct simd<double> {
    using V = __m128d;
    static constexpr int lanes = 2;
    static V zero() { return _mm_setzero_pd(); }
    static V set1(double v) { return _mm_set1_pd(v); }
    static V load(const double* p) { return _mm_load_pd(p); }
    static V loadu(const double* p) { return _mm_loadu_pd(p); }
    static void store(double* p, V v) { _mm_store_pd(p, v); }
    static void storeu(double* p, V v) { _mm_storeu_pd(p, v); }
    static V add(V a, V b) { return _mm_add_pd(a, b); }
    static V mul(V a, V b) { return _mm_mul_pd(a, b); }
    static V max(V a, V b) { return _mm_max_pd(a, b); }
    static V min(V a, V b) { return _mm_min_pd(a, b); }
    static V abs(V a) { return _mm_andnot_pd(_mm_set1_pd(-0.0), a); }
    static V unord(V a, V b) { return _mm_cmpunord_pd(a, b); }
    static V bor(V a, V b) { return _mm_or_pd(a, b); }
    static bool any(V a) { return _mm_movemask_pd(a) != 0; }
    static double first(V a) { return _mm_cvtsd_f64(a); }
    // lanes rotated by one: [a1, a0]
    static V rotate(V a) { return _mm_shuffle_pd(a, a, 1); }
    // Lanes of complex values [re, im]: r = sum a*b_re and i = sum a*b_im
    // combine to (r.re - i.im, r.im + i.re), the complex product's sum.
    static V combine(V r, V i) { return _mm_add_pd(r, _mm_mul_pd(_mm_shuffle_pd(i, i, 1), _mm_set_pd(1.0, -1.0))); }
};

template <> struct simd<float> {
    using V = __m128;
    static constexpr int lanes = 4;
    static V zero() { return _mm_setzero_ps(); }
    static V set1(float v) { return _mm_set1_ps(v); }
    static V load(const float* p) { return _mm_load_ps(p); }
    static V loadu(const float* p) { return _mm_loadu_ps(p); }
    static void store(float* p, V v) { _mm_store_ps(p, v); }
    static void storeu(float* p, V v) { _mm_storeu_ps(p, v); }
    static V add(V a, V b) { return _mm_add_ps(a, b); }
    static V mul(V a, V b) { return _mm_mul_ps(a, b); }
    static V max(V a, V b) { return _mm_max_ps(a, b); }
    static V min(V a, V b) { return _mm_min_ps(a, b); }
    static V abs(V a) { return _mm_andnot_ps(_mm_set1_ps(-0.0f), a); }
    static V unord(V a, V b) { return _mm_cmpunord_ps(a, b); }
    static V bor(V a, V b) { return _mm_or_ps(a, b); }
    static bool any(V a) { return _mm_movemask_ps(a) != 0; }
    static float first(V a) { return _mm_cvtss_f32(a); }
    static V rotate(V a) { return _mm_shuffle_ps(a, a, _MM_SHUFFLE(0, 3, 2, 1)); }
    static V combine(V r, V i) {
        return _mm_add_ps(r, _mm_mul_ps(_mm_shuffle_ps(i, i, _MM_SHUFFLE(2, 3, 0, 1)), _mm_set_ps(1, -1, 1, -1)));
    }
};

inline bool aligned16(const void* p) { return (reinterpret_cast<std::uintptr_t>(p) & 15) == 0; }

// x and y can be brought to 16-byte alignment together by peeling whole
// elements of `elem` bytes.
inline bool co_aligned(const void* x, const void* y, std::uintptr_t elem) {
    auto a = reinterpret_cast<std::uintptr_t>(x), b = reinterpret_cast<std::uintptr_t>(y);
    return ((a ^ b) & 15) == 0 && (a & (elem - 1)) == 0;
}

}  // namespace ork::sse2
