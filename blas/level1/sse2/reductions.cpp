// Level-1 reduction kernels of the baseline generation, in SSE2 intrinsics:
// complex dot, asum, i?amax and the sums of squares, whose orders are fixed
// (the real dot products: dot.cpp). Later
// generations build this same file under their flags (VEX encoding, no fused
// multiply-add), so they give the baseline's bits.
#include <emmintrin.h>

#include <cstdint>
#include <type_traits>

#include "blas/level1/inner.h"
#include "blas/level1/ssq.h"
#include "frame/sse2/simd.h"
#if ORK_GENERATION >= 1
#include "frame/simd/avx2.h"
#endif

namespace ork::inner {

using sse2::simd;

// The vectors of the index searches and of the sum of squares: 32 bytes where
// the generation has them. Their results (an index; the recurrence's bits) are
// the same whatever the width of the blocks' scans.
#if ORK_GENERATION >= 1
template <class R> using search_vectors = ork::simd::avx2<R>;
#else
template <class R> using search_vectors = simd<R>;
#endif

// Complex: p accumulates [xr*yr, xi*yi] and q [xi*yr, xr*yi]; then
// dotu = (p0 - p1, q0 + q1) and dotc = (p0 + p1, q1 - q0).
ORK_NO_LOOP_VECTORS cx<double> dot(idx n, const cx<double>* x, const cx<double>* y, bool conj_x) {
    auto* xd = reinterpret_cast<const double*>(x);
    auto* yd = reinterpret_cast<const double*>(y);
    __m128d p0 = _mm_setzero_pd(), p1 = p0, q0 = p0, q1 = p0;
    idx i = 0;
    for (; i + 2 <= n; i += 2) {
        __m128d a = _mm_loadu_pd(xd + 2 * i), b = _mm_loadu_pd(yd + 2 * i);
        __m128d c = _mm_loadu_pd(xd + 2 * i + 2), d = _mm_loadu_pd(yd + 2 * i + 2);
        p0 = _mm_add_pd(p0, _mm_mul_pd(a, b));
        q0 = _mm_add_pd(q0, _mm_mul_pd(_mm_shuffle_pd(a, a, 1), b));
        p1 = _mm_add_pd(p1, _mm_mul_pd(c, d));
        q1 = _mm_add_pd(q1, _mm_mul_pd(_mm_shuffle_pd(c, c, 1), d));
    }
    if (i < n) {
        __m128d a = _mm_loadu_pd(xd + 2 * i), b = _mm_loadu_pd(yd + 2 * i);
        p0 = _mm_add_pd(p0, _mm_mul_pd(a, b));
        q0 = _mm_add_pd(q0, _mm_mul_pd(_mm_shuffle_pd(a, a, 1), b));
    }
    __m128d p = _mm_add_pd(p0, p1), q = _mm_add_pd(q0, q1);
    double pl = _mm_cvtsd_f64(p), ph = _mm_cvtsd_f64(_mm_unpackhi_pd(p, p));
    double ql = _mm_cvtsd_f64(q), qh = _mm_cvtsd_f64(_mm_unpackhi_pd(q, q));
    return conj_x ? cx<double>{pl + ph, qh - ql} : cx<double>{pl - ph, ql + qh};
}

ORK_NO_LOOP_VECTORS cx<float> dot(idx n, const cx<float>* x, const cx<float>* y, bool conj_x) {
    auto* xf = reinterpret_cast<const float*>(x);
    auto* yf = reinterpret_cast<const float*>(y);
    __m128 p0 = _mm_setzero_ps(), p1 = p0, q0 = p0, q1 = p0;
    idx i = 0;
    for (; i + 4 <= n; i += 4) {
        __m128 a = _mm_loadu_ps(xf + 2 * i), b = _mm_loadu_ps(yf + 2 * i);
        __m128 c = _mm_loadu_ps(xf + 2 * i + 4), d = _mm_loadu_ps(yf + 2 * i + 4);
        p0 = _mm_add_ps(p0, _mm_mul_ps(a, b));
        q0 = _mm_add_ps(q0, _mm_mul_ps(_mm_shuffle_ps(a, a, _MM_SHUFFLE(2, 3, 0, 1)), b));
        p1 = _mm_add_ps(p1, _mm_mul_ps(c, d));
        q1 = _mm_add_ps(q1, _mm_mul_ps(_mm_shuffle_ps(c, c, _MM_SHUFFLE(2, 3, 0, 1)), d));
    }
    // lanes 0, 2 hold the [r*r, i*i] / [i*r, r*i] pairs of even elements, 1, 3 of odd
    alignas(16) float p[4], q[4];
    _mm_store_ps(p, _mm_add_ps(p0, p1));
    _mm_store_ps(q, _mm_add_ps(q0, q1));
    float prr = p[0] + p[2], pii = p[1] + p[3], qir = q[0] + q[2], qri = q[1] + q[3];
    for (; i < n; ++i) {
        prr += x[i].re * y[i].re;
        pii += x[i].im * y[i].im;
        qir += x[i].im * y[i].re;
        qri += x[i].re * y[i].im;
    }
    return conj_x ? cx<float>{prr + pii, qri - qir} : cx<float>{prr - pii, qir + qri};
}

// Single products widened to double, two at a time: partial sums s(i mod 4),
// the first starting from `start`.
double dot_widened(idx n, const float* x, const float* y, double start) {
    __m128d s0 = _mm_set_sd(start), s1 = _mm_setzero_pd();
    idx i = 0;
    for (; i + 4 <= n; i += 4) {
        __m128 a = _mm_loadu_ps(x + i), b = _mm_loadu_ps(y + i);
        s0 = _mm_add_pd(s0, _mm_mul_pd(_mm_cvtps_pd(a), _mm_cvtps_pd(b)));
        s1 = _mm_add_pd(s1, _mm_mul_pd(_mm_cvtps_pd(_mm_movehl_ps(a, a)), _mm_cvtps_pd(_mm_movehl_ps(b, b))));
    }
    __m128d s = _mm_add_pd(s0, s1);
    double r = _mm_cvtsd_f64(s) + _mm_cvtsd_f64(_mm_unpackhi_pd(s, s));
    for (; i < n; ++i) r += double(x[i]) * double(y[i]);
    return r;
}

// ---- asum: the sign bits cleared by a mask; partial sums as in dot.
double asum(idx n, const double* x) {
    const __m128d mask = _mm_castsi128_pd(_mm_set1_epi64x(0x7fffffffffffffffLL));
    __m128d s0 = _mm_setzero_pd(), s1 = s0, s2 = s0, s3 = s0;
    idx i = 0;
    for (; i + 8 <= n; i += 8) {
        s0 = _mm_add_pd(s0, _mm_and_pd(mask, _mm_loadu_pd(x + i)));
        s1 = _mm_add_pd(s1, _mm_and_pd(mask, _mm_loadu_pd(x + i + 2)));
        s2 = _mm_add_pd(s2, _mm_and_pd(mask, _mm_loadu_pd(x + i + 4)));
        s3 = _mm_add_pd(s3, _mm_and_pd(mask, _mm_loadu_pd(x + i + 6)));
    }
    __m128d s = _mm_add_pd(_mm_add_pd(s0, s1), _mm_add_pd(s2, s3));
    double r = _mm_cvtsd_f64(s) + _mm_cvtsd_f64(_mm_unpackhi_pd(s, s));
    for (; i < n; ++i) r += __builtin_fabs(x[i]);
    return r;
}

float asum(idx n, const float* x) {
    const __m128 mask = _mm_castsi128_ps(_mm_set1_epi32(0x7fffffff));
    __m128 s0 = _mm_setzero_ps(), s1 = s0, s2 = s0, s3 = s0;
    idx i = 0;
    for (; i + 16 <= n; i += 16) {
        s0 = _mm_add_ps(s0, _mm_and_ps(mask, _mm_loadu_ps(x + i)));
        s1 = _mm_add_ps(s1, _mm_and_ps(mask, _mm_loadu_ps(x + i + 4)));
        s2 = _mm_add_ps(s2, _mm_and_ps(mask, _mm_loadu_ps(x + i + 8)));
        s3 = _mm_add_ps(s3, _mm_and_ps(mask, _mm_loadu_ps(x + i + 12)));
    }
    __m128 s = _mm_add_ps(_mm_add_ps(s0, s1), _mm_add_ps(s2, s3));
    s = _mm_add_ps(s, _mm_movehl_ps(s, s));
    float r = _mm_cvtss_f32(s) + _mm_cvtss_f32(_mm_shuffle_ps(s, s, 1));
    for (; i < n; ++i) r += __builtin_fabsf(x[i]);
    return r;
}

// ---- i?amax, i?amin. Blocks of up to 128 values (a multiple of 8 vectors)
// are scanned with four vector max (min) chains, each taking the extreme of
// two vectors a step (enough to hide their latency, and few enough registers
// that none spills in 16), and an unordered compare per two vectors. A block without NaN, met
// while the present best is not NaN, changes the result only if its extreme
// beats the best strictly, and then at the extreme's first occurrence, exactly
// as the element-by-element rule would. Blocks with NaN, a NaN best and the
// tail go one by one.
namespace {

template <class R, bool Max>
idx extreme_index(idx n, const R* x) {
    using L = search_vectors<R>;
    using V = typename L::V;
    constexpr idx step = 8 * L::lanes, block = 128;
    auto pick = [](V a, V b) { return Max ? L::max(a, b) : L::min(a, b); };
    R best = abs1(x[0]);
    idx result = 1;
    auto one = [&](idx j) {
        R a = abs1(x[j]);
        if (Max ? !(best >= a) : !(best <= a)) { best = a; result = j + 1; }
    };
    idx i = 1;
    while (n - i >= step) {
        if (best != best) { one(i++); continue; }
        const idx len = n - i >= block ? block : (n - i) / step * step;
        V e[4], bad = L::zero();
        auto scan = [&](idx j, bool first) {
            V a[8];
#pragma GCC unroll 8
            for (int k = 0; k < 8; ++k) a[k] = L::abs(L::loadu(x + j + k * L::lanes));
#pragma GCC unroll 4
            for (int k = 0; k < 8; k += 2) bad = L::bor(bad, L::unord(a[k], a[k + 1]));
#pragma GCC unroll 4
            for (int k = 0; k < 4; ++k) e[k] = first ? pick(a[k], a[k + 4]) : pick(e[k], pick(a[k], a[k + 4]));
        };
        scan(i, true);
        for (idx j = i + step; j < i + len; j += step) scan(j, false);
        if (L::any(bad)) {
            for (idx j = i; j < i + len; ++j) one(j);
        } else {
            V m = pick(pick(e[0], e[1]), pick(e[2], e[3]));
            for (int k = 1; k < L::lanes; ++k) m = pick(m, L::rotate(m));
            const R ext = L::first(m);
            if (Max ? ext > best : ext < best) {
                idx j = i;
                while (abs1(x[j]) != ext) ++j;
                best = ext;
                result = j + 1;
            }
        }
        i += len;
    }
    for (; i < n; ++i) one(i);
    return result;
}

}  // namespace

idx iamax(idx n, const double* x, bool want_max) {
    return want_max ? extreme_index<double, true>(n, x) : extreme_index<double, false>(n, x);
}
idx iamax(idx n, const float* x, bool want_max) {
    return want_max ? extreme_index<float, true>(n, x) : extreme_index<float, false>(n, x);
}

// ---- the scaled sum of squares, with the recurrence's operations
// (blas::ssq_step) and their bits.
namespace {

// The recurrence over [i, end): runs of 8 in which no |x_i| exceeds a
// positive scale take the else branch for every element; their quotients are
// formed two per divpd (the same rounding as divsd), squared, and added to
// ssq one by one in order. A zero there adds +0 to ssq >= 1 (or NaN, or inf),
// which changes nothing, just as skipping it.
void ordered_ssq(const double* x, idx i, idx end, double& scale_io, double& ssq_io) {
    const __m128d sign = _mm_set1_pd(-0.0);
    double scale = scale_io, ssq = ssq_io;  // in registers: x may alias the references
    while (i < end) {
        if (scale > 0 && end - i >= 8) {
            __m128d a0 = _mm_andnot_pd(sign, _mm_loadu_pd(x + i)), a1 = _mm_andnot_pd(sign, _mm_loadu_pd(x + i + 2));
            __m128d a2 = _mm_andnot_pd(sign, _mm_loadu_pd(x + i + 4)), a3 = _mm_andnot_pd(sign, _mm_loadu_pd(x + i + 6));
            const __m128d s = _mm_set1_pd(scale);
            __m128d big = _mm_or_pd(_mm_or_pd(_mm_cmpgt_pd(a0, s), _mm_cmpgt_pd(a1, s)),
                                    _mm_or_pd(_mm_cmpgt_pd(a2, s), _mm_cmpgt_pd(a3, s)));
            if (!_mm_movemask_pd(big)) {
                __m128d q[4] = {_mm_div_pd(a0, s), _mm_div_pd(a1, s), _mm_div_pd(a2, s), _mm_div_pd(a3, s)};
                for (auto& v : q) {
                    v = _mm_mul_pd(v, v);
                    ssq = ssq + _mm_cvtsd_f64(v);
                    ssq = ssq + _mm_cvtsd_f64(_mm_unpackhi_pd(v, v));
                }
                i += 8;
                continue;
            }
        }
        for (idx stop = end - i >= 8 ? i + 8 : end; i < stop; ++i) blas::ssq_step(x[i], scale, ssq);
    }
    scale_io = scale;
    ssq_io = ssq;
}

// The lower end 2^e of the binade [2^e, 2^(e+1)) of a positive normal v.
double binade(double v) {
    std::uint64_t b;
    __builtin_memcpy(&b, &v, sizeof b);
    b &= 0xfff0000000000000u;
    __builtin_memcpy(&v, &b, sizeof v);
    return v;
}

// A block of B with no |x_i| above a positive scale adds t_i =
// (|x_i|/scale)^2 to ssq in order, the only dependent chain of the
// recurrence. While ssq stays in one binade [C, 2C) every value it takes is a
// multiple of its ulp u = C*2^-52, so ssq + t_i rounds to ssq + r_i, r_i
// being the multiple of u nearest t_i, unless t_i lies halfway between two
// (a tie), which rounds ssq to an even multiple of u. The terms come from
// vectors: C + t_i rounds the same way in the same binade, so
// r_i = (C + t_i) - C, even at a tie (C/u = 2^52 is even); a tie is
// |t_i - r_i| == u/2 (an exact difference); the parity of r_i/u is the last
// bit of C + r_i. A tie met while ssq/u is odd takes the other neighbour,
// r_i + 2(t_i - r_i); ssq/u is even after any tie, and between ties its
// parity changes with each odd r_i/u. So when the block's terms keep ssq
// below 2C it ends at ssq plus their sum, exactly: multiples of u below 2C
// add without rounding in any order, and a sum that reaches 2C anywhere stays
// there, rounding being monotonic. Answers whether the block was taken
// (false: a larger element, a NaN or infinity, or the step into the next
// binade; ssq is then unchanged).
template <idx B>
bool rounded_block(const double* x, double scale, double C, double& ssq) {
    using L = search_vectors<double>;
    using V = L::V;
    constexpr int vectors = B / L::lanes, sums = vectors < 4 ? vectors : 4;
    static_assert(B <= 64);
    const V s = L::set1(scale), c = L::set1(C), half = L::set1(C * 0x1p-53);
    V bad = L::zero(), sum[sums];
    for (auto& v : sum) v = L::zero();
    std::uint64_t big = 0, ties = 0, odd = 0;  // bit i: element i
    // The terms and their sums, and the masks of the lanes above the scale,
    // at a tie or with an odd term. AVX-512's 32 registers hold the masks
    // beside the sums in one pass; AVX2's 16 do not (taking them every time
    // costs it a sixth of its speed), so it takes them in a second pass where
    // the block has a lane above the scale or a tie: few blocks once ssq is
    // past its first binades.
    constexpr bool at_once = ORK_GENERATION >= 2;
    auto pass = [&](auto terms, auto masks) {
#pragma GCC unroll 8
        for (int k = 0; k < vectors; ++k) {
            const V a = L::abs(L::loadu(x + k * L::lanes));
            const V q = L::div(a, s);
            const V t = L::mul(q, q);
            const V v = L::add(t, c);
            const V r = L::sub(v, c);
            const V above = L::gt(a, s), at_tie = L::eq(L::abs(L::sub(t, r)), half);
            if constexpr (masks) {
                big |= L::mask(above);
                ties |= std::uint64_t(L::mask(at_tie)) << (k * L::lanes);
                odd |= std::uint64_t(L::low_bits(v)) << (k * L::lanes);
            } else {
                bad = L::bor(bad, L::bor(above, at_tie));
            }
            if constexpr (terms) sum[k % sums] = L::add(sum[k % sums], r);
        }
    };
    if constexpr (at_once) {
        pass(std::true_type{}, std::true_type{});
    } else {
        pass(std::true_type{}, std::false_type{});
        if (L::any(bad)) pass(std::false_type{}, std::true_type{});
    }
    if (big) return false;
    V v = sum[0];
    for (int k = 1; k < sums; ++k) v = L::add(v, sum[k]);
    for (int k = 1; k < L::lanes; k *= 2) {
        V w = v;
        for (int m = 0; m < k; ++m) w = L::rotate(w);
        v = L::add(v, w);
    }
    double total = L::first(v);
    if (ties) {
        std::uint64_t bits;
        __builtin_memcpy(&bits, &ssq, sizeof bits);
        unsigned parity = unsigned(bits & 1);  // of ssq/u before the next tie
        int from = 0;
        double adjust = 0;
        for (std::uint64_t m = ties; m; m &= m - 1) {
            const int j = __builtin_ctzll(m);
            const std::uint64_t between = ((1ull << j) - 1) & ~((1ull << from) - 1);  // [from, j)
            parity ^= unsigned(__builtin_popcountll(odd & between)) & 1;
            if (parity) {
                const double q = abs1(x[j]) / scale, t = q * q, r = (C + t) - C;
                adjust += 2 * (t - r);
            }
            parity = 0;
            from = j + 1;
        }
        total += adjust;
    }
    const double next = ssq + total;
    if (!(next < 2 * C)) return false;
    ssq = next;
    return true;
}

}  // namespace

// Blocks of 32 are taken whole where they can be (rounded_block); one that
// cannot is tried again as runs of 8, so that a larger element or the step
// into the next binade sends only its run of 8 to the recurrence's adds in
// order. C, the binade of ssq, is taken again after each such run. While
// ssq < 64 it changes binade every few dozen elements, so blocks of 32 are
// tried only from there on (6% at n = 1000 on Zen 4). The
// baseline's 16-byte divisions leave it bound by the divider either way
// (9.4 GB/s at n = 10^5 both ways, and slower at n = 1000 through the blocks
// redone), so it keeps the adds in order.
void scaled_ssq(idx n, const double* x, double& scale_io, double& ssq_io) {
    constexpr idx block = 32, run = 8;
    constexpr double whole_from = 64;
    if (ORK_GENERATION == 0) return ordered_ssq(x, 0, n, scale_io, ssq_io);
    double scale = scale_io, ssq = ssq_io;
    double C = 0;  // 0: not known
    auto known = [&] {
        if (C == 0 && ssq >= 1 && ssq < 0x1p1023) C = binade(ssq);  // ssq >= 1 once scale > 0
        return scale > 0 && C > 0;
    };
    idx i = 0;
    while (i < n) {
        if (n - i >= block && known() && C >= whole_from && rounded_block<block>(x + i, scale, C, ssq)) {
            i += block;
            continue;
        }
        for (const idx end = n - i >= block ? i + block : n; i < end;) {
            if (end - i >= run && known() && rounded_block<run>(x + i, scale, C, ssq)) {
                i += run;
                continue;
            }
            const idx stop = end - i >= run ? i + run : end;
            ordered_ssq(x, i, stop, scale, ssq);
            C = 0;
            i = stop;
        }
    }
    scale_io = scale;
    ssq_io = ssq;
}

double sumsq_widened(idx n, const float* x) {
    __m128d s0 = _mm_setzero_pd(), s1 = s0;
    idx i = 0;
    for (; i + 4 <= n; i += 4) {
        __m128 a = _mm_loadu_ps(x + i);
        __m128d lo = _mm_cvtps_pd(a), hi = _mm_cvtps_pd(_mm_movehl_ps(a, a));
        s0 = _mm_add_pd(s0, _mm_mul_pd(lo, lo));
        s1 = _mm_add_pd(s1, _mm_mul_pd(hi, hi));
    }
    __m128d s = _mm_add_pd(s0, s1);
    double r = _mm_cvtsd_f64(s) + _mm_cvtsd_f64(_mm_unpackhi_pd(s, s));
    for (; i < n; ++i) r += double(x[i]) * double(x[i]);
    return r;
}

}  // namespace ork::inner
