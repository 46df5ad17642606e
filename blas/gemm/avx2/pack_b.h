// The plain-B packer of the fused generations (AVX2, and AVX-512 with the
// same 32-byte transposes): pw columns of op(B) = B gathered into depth rows
// of a packed panel by register transposes (vector loads down each column,
// whole rows stored), in place of one strided scalar load per element.
#pragma once

#include <immintrin.h>

#include "frame/types.h"

namespace ork::gemm::avx2_pack {

// Stores of one 64-bit value, low or high half, through the may-alias
// vector type (the destination may hold floats or single complex values).
__attribute__((always_inline)) inline void store_lo(double* p, __m128d v) {
    _mm_storel_epi64(reinterpret_cast<__m128i*>(p), _mm_castpd_si128(v));
}
__attribute__((always_inline)) inline void store_hi(double* p, __m128d v) { store_lo(p, _mm_unpackhi_pd(v, v)); }

// Four rows of P 64-bit values from P column vectors of four: row i of the
// result is (c[0][i], ..., c[P-1][i]), stored at out[i].
template <int P>
__attribute__((always_inline)) inline void rows_of_four(const __m256d (&c)[P], double* const (&out)[4]) {
    constexpr int full = P / 4 * 4;
#pragma GCC unroll 2
    for (int g = 0; g < full; g += 4) {
        const __m256d t0 = _mm256_unpacklo_pd(c[g], c[g + 1]), t1 = _mm256_unpackhi_pd(c[g], c[g + 1]);
        const __m256d t2 = _mm256_unpacklo_pd(c[g + 2], c[g + 3]), t3 = _mm256_unpackhi_pd(c[g + 2], c[g + 3]);
        _mm256_storeu_pd(out[0] + g, _mm256_permute2f128_pd(t0, t2, 0x20));
        _mm256_storeu_pd(out[1] + g, _mm256_permute2f128_pd(t1, t3, 0x20));
        _mm256_storeu_pd(out[2] + g, _mm256_permute2f128_pd(t0, t2, 0x31));
        _mm256_storeu_pd(out[3] + g, _mm256_permute2f128_pd(t1, t3, 0x31));
    }
    constexpr int g = full;
    if constexpr (P - full == 3) {
        const __m256d t0 = _mm256_unpacklo_pd(c[g], c[g + 1]), t1 = _mm256_unpackhi_pd(c[g], c[g + 1]);
        const __m128d e0 = _mm256_castpd256_pd128(c[g + 2]), e1 = _mm256_extractf128_pd(c[g + 2], 1);
        _mm_storeu_pd(out[0] + g, _mm256_castpd256_pd128(t0));
        _mm_storeu_pd(out[1] + g, _mm256_castpd256_pd128(t1));
        _mm_storeu_pd(out[2] + g, _mm256_extractf128_pd(t0, 1));
        _mm_storeu_pd(out[3] + g, _mm256_extractf128_pd(t1, 1));
        store_lo(out[0] + g + 2, e0);
        store_hi(out[1] + g + 2, e0);
        store_lo(out[2] + g + 2, e1);
        store_hi(out[3] + g + 2, e1);
    } else if constexpr (P - full == 2) {
        const __m256d t0 = _mm256_unpacklo_pd(c[g], c[g + 1]), t1 = _mm256_unpackhi_pd(c[g], c[g + 1]);
        _mm_storeu_pd(out[0] + g, _mm256_castpd256_pd128(t0));
        _mm_storeu_pd(out[1] + g, _mm256_castpd256_pd128(t1));
        _mm_storeu_pd(out[2] + g, _mm256_extractf128_pd(t0, 1));
        _mm_storeu_pd(out[3] + g, _mm256_extractf128_pd(t1, 1));
    } else if constexpr (P - full == 1) {
        const __m128d e0 = _mm256_castpd256_pd128(c[g]), e1 = _mm256_extractf128_pd(c[g], 1);
        store_lo(out[0] + g, e0);
        store_hi(out[1] + g, e0);
        store_lo(out[2] + g, e1);
        store_hi(out[3] + g, e1);
    }
}

// Depth rows 0 .. kk-1 of PW columns of B (leading dimension ldb) into
// dest, row r at dest + PW*r. T is 4 or 8 bytes wide (float, double, single
// complex); a float row pairs its columns into 64-bit values first.
template <class T, int PW>
void panel(idx kk, const T* b, idx ldb, T* dest) {
    constexpr bool single = sizeof(T) == 4;
    constexpr int rows = single ? 8 : 4, P = single ? PW / 2 : PW;  // rows per step; 64-bit values per row
    static_assert(sizeof(T) == 8 || (single && PW % 2 == 0), "64-bit values, or float columns in pairs");
    idx r = 0;
    for (; r + rows <= kk; r += rows) {
        const T* s = b + r;
        T* d = dest + PW * r;
        if constexpr (single) {
            // (c0[i], c1[i]) pairs: rows 0, 1, 4, 5 in lo, rows 2, 3, 6, 7 in hi
            __m256d lo[P], hi[P];
#pragma GCC unroll 6
            for (int j = 0; j < P; ++j) {
                const __m256 a = _mm256_loadu_ps(reinterpret_cast<const float*>(s + 2 * j * ldb)),
                             c = _mm256_loadu_ps(reinterpret_cast<const float*>(s + (2 * j + 1) * ldb));
                lo[j] = _mm256_castps_pd(_mm256_unpacklo_ps(a, c));
                hi[j] = _mm256_castps_pd(_mm256_unpackhi_ps(a, c));
            }
            double* dd = reinterpret_cast<double*>(d);
            double* const lo_rows[4] = {dd, dd + P, dd + 4 * P, dd + 5 * P};
            double* const hi_rows[4] = {dd + 2 * P, dd + 3 * P, dd + 6 * P, dd + 7 * P};
            rows_of_four<P>(lo, lo_rows);
            rows_of_four<P>(hi, hi_rows);
        } else {
            __m256d c[P];
#pragma GCC unroll 6
            for (int j = 0; j < P; ++j) c[j] = _mm256_loadu_pd(reinterpret_cast<const double*>(s + j * ldb));
            double* dd = reinterpret_cast<double*>(d);
            double* const out[4] = {dd, dd + P, dd + 2 * P, dd + 3 * P};
            rows_of_four<P>(c, out);
        }
    }
    for (; r < kk; ++r)
        for (int j = 0; j < PW; ++j) dest[PW * r + j] = b[r + j * ldb];
}

}  // namespace ork::gemm::avx2_pack
