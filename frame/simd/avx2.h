// The AVX2 generation's vector vocabulary: 32-byte vectors of doubles or
// floats, with fused multiply-add for kernels whose order is free.
#pragma once

#include <immintrin.h>

namespace ork::simd {

template <class R> struct avx2;

template <> struct avx2<double> {
    using R = double;
    using V = __m256d;
    static constexpr int lanes = 4, bytes = 32;
    static constexpr bool fused = true;
    static V zero() { return _mm256_setzero_pd(); }
    static V set1(double v) { return _mm256_set1_pd(v); }
    static V broadcast(const double* p) { return _mm256_broadcast_sd(p); }
    static V pairs(double a, double b) { return _mm256_set_pd(b, a, b, a); }
    static V load(const double* p) { return _mm256_load_pd(p); }
    static V loadu(const double* p) { return _mm256_loadu_pd(p); }
    static void store(double* p, V v) { _mm256_store_pd(p, v); }
    static void storeu(double* p, V v) { _mm256_storeu_pd(p, v); }
    // the first n < lanes values at p, the other lanes zero; and their store
    static __m256i first_mask(long n) { return _mm256_cmpgt_epi64(_mm256_set1_epi64x(n), _mm256_setr_epi64x(0, 1, 2, 3)); }
    static V load_first(const double* p, long n) { return _mm256_maskload_pd(p, first_mask(n)); }
    static void store_first(double* p, V v, long n) { _mm256_maskstore_pd(p, first_mask(n), v); }
    static V add(V a, V b) { return _mm256_add_pd(a, b); }
    static V sub(V a, V b) { return _mm256_sub_pd(a, b); }
    static V mul(V a, V b) { return _mm256_mul_pd(a, b); }
    static V div(V a, V b) { return _mm256_div_pd(a, b); }
    // a*b + c rounded once
    static V fma(V a, V b, V c) { return _mm256_fmadd_pd(a, b, c); }
    static V max(V a, V b) { return _mm256_max_pd(a, b); }
    static V min(V a, V b) { return _mm256_min_pd(a, b); }
    static V abs(V a) { return _mm256_andnot_pd(_mm256_set1_pd(-0.0), a); }
    static V unord(V a, V b) { return _mm256_cmp_pd(a, b, _CMP_UNORD_Q); }
    // all-ones lanes where a > b (a == b), ordered: false with NaN
    static V gt(V a, V b) { return _mm256_cmp_pd(a, b, _CMP_GT_OQ); }
    static V eq(V a, V b) { return _mm256_cmp_pd(a, b, _CMP_EQ_OQ); }
    static V bor(V a, V b) { return _mm256_or_pd(a, b); }
    static V bxor(V a, V b) { return _mm256_xor_pd(a, b); }
    static bool any(V a) { return _mm256_movemask_pd(a) != 0; }
    // lane k's sign bit (mask) or lowest bit (low_bits) as bit k
    static unsigned mask(V a) { return unsigned(_mm256_movemask_pd(a)); }
    static unsigned low_bits(V a) {
        return unsigned(_mm256_movemask_pd(_mm256_castsi256_pd(_mm256_slli_epi64(_mm256_castpd_si256(a), 63))));
    }
    static double first(V a) { return _mm256_cvtsd_f64(a); }
    // lanes rotated by one: [a1, a2, a3, a0]
    static V rotate(V a) { return _mm256_permute4x64_pd(a, _MM_SHUFFLE(0, 3, 2, 1)); }
    static V swap_pairs(V a) { return _mm256_permute_pd(a, 0b0101); }
};

template <> struct avx2<float> {
    using R = float;
    using V = __m256;
    static constexpr int lanes = 8, bytes = 32;
    static constexpr bool fused = true;
    static V zero() { return _mm256_setzero_ps(); }
    static V set1(float v) { return _mm256_set1_ps(v); }
    static V broadcast(const float* p) { return _mm256_broadcast_ss(p); }
    static V pairs(float a, float b) { return _mm256_set_ps(b, a, b, a, b, a, b, a); }
    static V load(const float* p) { return _mm256_load_ps(p); }
    static V loadu(const float* p) { return _mm256_loadu_ps(p); }
    static void store(float* p, V v) { _mm256_store_ps(p, v); }
    static void storeu(float* p, V v) { _mm256_storeu_ps(p, v); }
    static __m256i first_mask(long n) {
        return _mm256_cmpgt_epi32(_mm256_set1_epi32(int(n)), _mm256_setr_epi32(0, 1, 2, 3, 4, 5, 6, 7));
    }
    static V load_first(const float* p, long n) { return _mm256_maskload_ps(p, first_mask(n)); }
    static void store_first(float* p, V v, long n) { _mm256_maskstore_ps(p, first_mask(n), v); }
    static V add(V a, V b) { return _mm256_add_ps(a, b); }
    static V sub(V a, V b) { return _mm256_sub_ps(a, b); }
    static V mul(V a, V b) { return _mm256_mul_ps(a, b); }
    static V fma(V a, V b, V c) { return _mm256_fmadd_ps(a, b, c); }
    static V max(V a, V b) { return _mm256_max_ps(a, b); }
    static V min(V a, V b) { return _mm256_min_ps(a, b); }
    static V abs(V a) { return _mm256_andnot_ps(_mm256_set1_ps(-0.0f), a); }
    static V unord(V a, V b) { return _mm256_cmp_ps(a, b, _CMP_UNORD_Q); }
    static V bor(V a, V b) { return _mm256_or_ps(a, b); }
    static V bxor(V a, V b) { return _mm256_xor_ps(a, b); }
    static bool any(V a) { return _mm256_movemask_ps(a) != 0; }
    static float first(V a) { return _mm256_cvtss_f32(a); }
    static V rotate(V a) { return _mm256_permutevar8x32_ps(a, _mm256_setr_epi32(1, 2, 3, 4, 5, 6, 7, 0)); }
    static V swap_pairs(V a) { return _mm256_permute_ps(a, _MM_SHUFFLE(2, 3, 0, 1)); }
};

}  // namespace ork::simd
