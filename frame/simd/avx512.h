// The AVX-512 generation's vector vocabulary (F, DQ, BW and VL: what every
// AVX-512 server has): 64-byte vectors of doubles or floats, with fused
// multiply-add for kernels whose order is free.
#pragma once

#include <immintrin.h>

namespace ork::simd {

template <class R> struct avx512;

template <> struct avx512<double> {
    using R = double;
    using V = __m512d;
    static constexpr int lanes = 8, bytes = 64;
    static constexpr bool fused = true;
    static V zero() { return _mm512_setzero_pd(); }
    static V set1(double v) { return _mm512_set1_pd(v); }
    static V broadcast(const double* p) { return _mm512_set1_pd(*p); }
    static V pairs(double a, double b) { return _mm512_set_pd(b, a, b, a, b, a, b, a); }
    static V load(const double* p) { return _mm512_load_pd(p); }
    static V loadu(const double* p) { return _mm512_loadu_pd(p); }
    static void store(double* p, V v) { _mm512_store_pd(p, v); }
    static void storeu(double* p, V v) { _mm512_storeu_pd(p, v); }
    // the first n < lanes values at p, the other lanes zero; and their store
    static V load_first(const double* p, long n) { return _mm512_maskz_loadu_pd(__mmask8((1u << n) - 1), p); }
    static void store_first(double* p, V v, long n) { _mm512_mask_storeu_pd(p, __mmask8((1u << n) - 1), v); }
    static V add(V a, V b) { return _mm512_add_pd(a, b); }
    static V sub(V a, V b) { return _mm512_sub_pd(a, b); }
    static V mul(V a, V b) { return _mm512_mul_pd(a, b); }
    static V fma(V a, V b, V c) { return _mm512_fmadd_pd(a, b, c); }
    static V max(V a, V b) { return _mm512_max_pd(a, b); }
    static V min(V a, V b) { return _mm512_min_pd(a, b); }
    static V abs(V a) { return _mm512_abs_pd(a); }
    static V bxor(V a, V b) { return _mm512_xor_pd(a, b); }
    static double first(V a) { return _mm512_cvtsd_f64(a); }
    static V rotate(V a) { return _mm512_permutexvar_pd(_mm512_setr_epi64(1, 2, 3, 4, 5, 6, 7, 0), a); }
    static V swap_pairs(V a) { return _mm512_shuffle_pd(a, a, 0b01010101); }
};

template <> struct avx512<float> {
    using R = float;
    using V = __m512;
    static constexpr int lanes = 16, bytes = 64;
    static constexpr bool fused = true;
    static V zero() { return _mm512_setzero_ps(); }
    static V set1(float v) { return _mm512_set1_ps(v); }
    static V broadcast(const float* p) { return _mm512_set1_ps(*p); }
    static V pairs(float a, float b) {
        return _mm512_set_ps(b, a, b, a, b, a, b, a, b, a, b, a, b, a, b, a);
    }
    static V load(const float* p) { return _mm512_load_ps(p); }
    static V loadu(const float* p) { return _mm512_loadu_ps(p); }
    static void store(float* p, V v) { _mm512_store_ps(p, v); }
    static void storeu(float* p, V v) { _mm512_storeu_ps(p, v); }
    static V load_first(const float* p, long n) { return _mm512_maskz_loadu_ps(__mmask16((1u << n) - 1), p); }
    static void store_first(float* p, V v, long n) { _mm512_mask_storeu_ps(p, __mmask16((1u << n) - 1), v); }
    static V add(V a, V b) { return _mm512_add_ps(a, b); }
    static V sub(V a, V b) { return _mm512_sub_ps(a, b); }
    static V mul(V a, V b) { return _mm512_mul_ps(a, b); }
    static V fma(V a, V b, V c) { return _mm512_fmadd_ps(a, b, c); }
    static V max(V a, V b) { return _mm512_max_ps(a, b); }
    static V min(V a, V b) { return _mm512_min_ps(a, b); }
    static V abs(V a) { return _mm512_abs_ps(a); }
    static V bxor(V a, V b) { return _mm512_xor_ps(a, b); }
    static float first(V a) { return _mm512_cvtss_f32(a); }
    static V rotate(V a) {
        return _mm512_permutexvar_ps(_mm512_setr_epi32(1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 0), a);
    }
    static V swap_pairs(V a) { return _mm512_shuffle_ps(a, a, _MM_SHUFFLE(2, 3, 0, 1)); }
};

}  // namespace ork::simd
