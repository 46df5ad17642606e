// Triangular level-2 inner kernels of the baseline generation, in SSE2
// intrinsics, written once for single and double through simd<R>; complex
// vectors are handled as interleaved reals.
#include <emmintrin.h>

#include <cstdint>

#include "blas/level1/compensated.h"
#include "blas/level2/triangular_inner.h"
#include "frame/sse2/simd.h"

namespace ork::tri_inner {
namespace {

using sse2::aligned16;
using sse2::simd;

inline __m128d vsub(__m128d a, __m128d b) { return _mm_sub_pd(a, b); }
inline __m128 vsub(__m128 a, __m128 b) { return _mm_sub_ps(a, b); }
// [re, im] pairs: im and re swapped, re duplicated, im duplicated, and a
// vector of (r, i) repeated.
inline __m128d swap_pairs(__m128d v) { return _mm_shuffle_pd(v, v, 1); }
inline __m128 swap_pairs(__m128 v) { return _mm_shuffle_ps(v, v, _MM_SHUFFLE(2, 3, 0, 1)); }
inline __m128d dup_re(__m128d v) { return _mm_unpacklo_pd(v, v); }
inline __m128 dup_re(__m128 v) { return _mm_shuffle_ps(v, v, _MM_SHUFFLE(2, 2, 0, 0)); }
inline __m128d dup_im(__m128d v) { return _mm_unpackhi_pd(v, v); }
inline __m128 dup_im(__m128 v) { return _mm_shuffle_ps(v, v, _MM_SHUFFLE(3, 3, 1, 1)); }
inline __m128d pairs(double r, double i) { return _mm_set_pd(i, r); }
inline __m128 pairs(float r, float i) { return _mm_set_ps(i, r, i, r); }

template <class R> using V = typename simd<R>::V;
template <class R> constexpr idx L = simd<R>::lanes;

// Lanes of v added in ascending order.
template <class R>
R lane_sum(V<R> v) {
    alignas(16) R l[L<R>];
    simd<R>::store(l, v);
    R s = l[0];
    for (int k = 1; k < L<R>; ++k) s += l[k];
    return s;
}

// c*a for complex vectors by the reference formula: a*re(c) + swap(a)*(-im(c), im(c)).
template <class R>
struct cmul {
    V<R> re, im;
    explicit cmul(cx<R> c) : re(simd<R>::set1(c.re)), im(pairs(-c.im, c.im)) {}
    V<R> operator()(V<R> a) const { return simd<R>::add(simd<R>::mul(a, re), simd<R>::mul(swap_pairs(a), im)); }
};

// ---- sweep, real: fewer than nine elements a plain loop; otherwise leading
// elements until x is 16-byte aligned (one for doubles 8 but not 16 bytes off),
// then four aligned vectors of x a step (eight doubles), then the rest.
template <class R>
void sweep_real(idx m, R xj, const R* a, R* x) {
    using S = simd<R>;
    idx i = 0;
    if (m >= 9) {
        if ((reinterpret_cast<std::uintptr_t>(x) & (sizeof(R) - 1)) == 0)
            for (; !aligned16(x + i); ++i) x[i] = x[i] - xj * a[i];
        const V<R> c = S::set1(xj);
        if (aligned16(x + i)) {
            for (; i + 4 * L<R> <= m; i += 4 * L<R>)
                for (int k = 0; k < 4; ++k)
                    S::store(x + i + k * L<R>, vsub(S::load(x + i + k * L<R>), S::mul(c, S::loadu(a + i + k * L<R>))));
        }
        for (; i + L<R> <= m; i += L<R>) S::storeu(x + i, vsub(S::loadu(x + i), S::mul(c, S::loadu(a + i))));
    }
    for (; i < m; ++i) x[i] = x[i] - xj * a[i];
}

template <class R>
void sweep_cx(idx m, cx<R> xj, const cx<R>* a, cx<R>* x) {
    using S = simd<R>;
    constexpr idx CL = L<R> / 2;
    const cmul<R> mul(xj);
    auto* ar = reinterpret_cast<const R*>(a);
    auto* xr = reinterpret_cast<R*>(x);
    idx i = 0;
    for (; i + 2 * CL <= m; i += 2 * CL) {
        V<R> v0 = vsub(S::loadu(xr + 2 * i), mul(S::loadu(ar + 2 * i)));
        V<R> v1 = vsub(S::loadu(xr + 2 * i + L<R>), mul(S::loadu(ar + 2 * i + L<R>)));
        S::storeu(xr + 2 * i, v0);
        S::storeu(xr + 2 * i + L<R>, v1);
    }
    for (; i < m; ++i) x[i] = x[i] - xj * a[i];
}

// ---- gemv_cols: rows in chunks that stay in the first-level cache, four
// columns a pass, each element taking its columns in order.
constexpr idx row_chunk = 1024;

template <class R>
void gemv_cols_real(idx m, idx nc, const R* a, idx lda, const R* c, idx incc, R* y) {
    using S = simd<R>;
    for (idx i0 = 0; i0 < m; i0 += row_chunk) {
        const idx mm = m - i0 < row_chunk ? m - i0 : row_chunk;
        R* yy = y + i0;
        idx k = 0;
        for (; k + 4 <= nc; k += 4) {
            const R* a0 = a + i0 + k * lda;
            const R *a1 = a0 + lda, *a2 = a1 + lda, *a3 = a2 + lda;
            const R c0 = c[k * incc], c1 = c[(k + 1) * incc], c2 = c[(k + 2) * incc], c3 = c[(k + 3) * incc];
            const V<R> v0 = S::set1(c0), v1 = S::set1(c1), v2 = S::set1(c2), v3 = S::set1(c3);
            idx i = 0;
            for (; i + L<R> <= mm; i += L<R>) {
                V<R> t = S::add(S::loadu(yy + i), S::mul(v0, S::loadu(a0 + i)));
                t = S::add(t, S::mul(v1, S::loadu(a1 + i)));
                t = S::add(t, S::mul(v2, S::loadu(a2 + i)));
                S::storeu(yy + i, S::add(t, S::mul(v3, S::loadu(a3 + i))));
            }
            for (; i < mm; ++i) {
                R t = yy[i] + c0 * a0[i];
                t = t + c1 * a1[i];
                t = t + c2 * a2[i];
                yy[i] = t + c3 * a3[i];
            }
        }
        for (; k < nc; ++k) {
            const R* a0 = a + i0 + k * lda;
            const R c0 = c[k * incc];
            const V<R> v0 = S::set1(c0);
            idx i = 0;
            for (; i + L<R> <= mm; i += L<R>) S::storeu(yy + i, S::add(S::loadu(yy + i), S::mul(v0, S::loadu(a0 + i))));
            for (; i < mm; ++i) yy[i] = yy[i] + c0 * a0[i];
        }
    }
}

template <class R>
void gemv_cols_cx(idx m, idx nc, const cx<R>* a, idx lda, const cx<R>* c, idx incc, cx<R>* y) {
    using S = simd<R>;
    constexpr idx CL = L<R> / 2;
    for (idx i0 = 0; i0 < m; i0 += row_chunk) {
        const idx mm = m - i0 < row_chunk ? m - i0 : row_chunk;
        cx<R>* yy = y + i0;
        R* yr = reinterpret_cast<R*>(yy);
        idx k = 0;
        for (; k + 2 <= nc; k += 2) {
            const cx<R>* a0 = a + i0 + k * lda;
            const cx<R>* a1 = a0 + lda;
            const cx<R> c0 = c[k * incc], c1 = c[(k + 1) * incc];
            const cmul<R> m0(c0), m1(c1);
            auto *r0 = reinterpret_cast<const R*>(a0), *r1 = reinterpret_cast<const R*>(a1);
            idx i = 0;
            for (; i + CL <= mm; i += CL) {
                V<R> t = S::add(S::loadu(yr + 2 * i), m0(S::loadu(r0 + 2 * i)));
                S::storeu(yr + 2 * i, S::add(t, m1(S::loadu(r1 + 2 * i))));
            }
            for (; i < mm; ++i) {
                cx<R> t = yy[i] + c0 * a0[i];
                yy[i] = t + c1 * a1[i];
            }
        }
        for (; k < nc; ++k) {
            const cx<R>* a0 = a + i0 + k * lda;
            const cx<R> c0 = c[k * incc];
            const cmul<R> m0(c0);
            auto* r0 = reinterpret_cast<const R*>(a0);
            idx i = 0;
            for (; i + CL <= mm; i += CL) S::storeu(yr + 2 * i, S::add(S::loadu(yr + 2 * i), m0(S::loadu(r0 + 2 * i))));
            for (; i < mm; ++i) yy[i] = yy[i] + c0 * a0[i];
        }
    }
}

// ---- dots, real. One column's sum: the rows in blocks of sum_block counted
// from row 0 (the last m mod 2L rows apart); in a block two vectors of
// partial sums, element i of each step of 2L going to lane i mod L of vector
// (i / L) mod 2; at the block's end the two are added and go lane by lane
// into a compensated total (blas::two_sum_into), so the error does not grow
// with m. Then the lanes of the total and of its error term are each summed
// in ascending order and added, and the last m mod 2L products added one by
// one in order. NC columns share the loads of x.
constexpr idx sum_block = 256;

template <class R, int NC>
void dots_real(idx m, const R* a, idx lda, const R* x, R* out) {
    using S = simd<R>;
    V<R> hi[NC], lo[NC];
    for (int k = 0; k < NC; ++k) hi[k] = lo[k] = S::zero();
    const idx full = m - m % (2 * L<R>);
    for (idx b0 = 0; b0 < full; b0 += sum_block) {
        const idx end = full - b0 < sum_block ? full : b0 + sum_block;
        V<R> s0[NC], s1[NC];
        for (int k = 0; k < NC; ++k) s0[k] = s1[k] = S::zero();
        for (idx i = b0; i < end; i += 2 * L<R>) {
            const V<R> x0 = S::loadu(x + i), x1 = S::loadu(x + i + L<R>);
            for (int k = 0; k < NC; ++k) {
                s0[k] = S::add(s0[k], S::mul(S::loadu(a + k * lda + i), x0));
                s1[k] = S::add(s1[k], S::mul(S::loadu(a + k * lda + i + L<R>), x1));
            }
        }
        for (int k = 0; k < NC; ++k) blas::two_sum_into(hi[k], lo[k], S::add(s0[k], s1[k]));
    }
    for (int k = 0; k < NC; ++k) {
        R r = blas::settle(lane_sum<R>(hi[k]), lane_sum<R>(lo[k]));
        for (idx t = full; t < m; ++t) r += a[k * lda + t] * x[t];
        out[k] = r;
    }
}

// Complex: for each column the four real sums of a_re*x_re, a_im*x_re,
// a_re*x_im and a_im*x_im, gathered like the real ones (pairs of lanes
// instead of lanes, blocks with compensated totals), the tail added to them
// one element at a time, and then combined once: (rr - ii, ri + ir), or
// (rr + ii, ri - ir) conjugated.
template <class R, int NC>
void dots_cx(idx m, const cx<R>* a, idx lda, const cx<R>* x, cx<R>* out, bool conj) {
    using S = simd<R>;
    constexpr idx CL = L<R> / 2;
    V<R> rh[NC], rl[NC], ih[NC], il[NC];  // totals of the re and im parts of x, and their errors
    for (int k = 0; k < NC; ++k) rh[k] = rl[k] = ih[k] = il[k] = S::zero();
    auto* xr = reinterpret_cast<const R*>(x);
    const idx full = m - m % (2 * CL);
    for (idx b0 = 0; b0 < full; b0 += sum_block) {
        const idx end = full - b0 < sum_block ? full : b0 + sum_block;
        V<R> r0[NC], r1[NC], i0[NC], i1[NC];
        for (int k = 0; k < NC; ++k) r0[k] = r1[k] = i0[k] = i1[k] = S::zero();
        for (idx i = b0; i < end; i += 2 * CL) {
            const V<R> xa = S::loadu(xr + 2 * i), xb = S::loadu(xr + 2 * i + L<R>);
            const V<R> xar = dup_re(xa), xai = dup_im(xa), xbr = dup_re(xb), xbi = dup_im(xb);
            for (int k = 0; k < NC; ++k) {
                auto* ar = reinterpret_cast<const R*>(a + k * lda);
                const V<R> va = S::loadu(ar + 2 * i), vb = S::loadu(ar + 2 * i + L<R>);
                r0[k] = S::add(r0[k], S::mul(va, xar));
                i0[k] = S::add(i0[k], S::mul(va, xai));
                r1[k] = S::add(r1[k], S::mul(vb, xbr));
                i1[k] = S::add(i1[k], S::mul(vb, xbi));
            }
        }
        for (int k = 0; k < NC; ++k) {
            blas::two_sum_into(rh[k], rl[k], S::add(r0[k], r1[k]));
            blas::two_sum_into(ih[k], il[k], S::add(i0[k], i1[k]));
        }
    }
    // (a_re*x_re, a_im*x_re) pairs in r, (a_re*x_im, a_im*x_im) in i: each
    // summed over the pairs of lanes in ascending order
    auto pairs_of = [](V<R> r, V<R> i, R* s) {
        alignas(16) R lr[L<R>], li[L<R>];
        simd<R>::store(lr, r);
        simd<R>::store(li, i);
        s[0] = lr[0], s[1] = lr[1], s[2] = li[0], s[3] = li[1];
        for (int l = 2; l < L<R>; l += 2) s[0] += lr[l], s[1] += lr[l + 1], s[2] += li[l], s[3] += li[l + 1];
    };
    for (int k = 0; k < NC; ++k) {
        R h[4], e[4];
        pairs_of(rh[k], ih[k], h);
        pairs_of(rl[k], il[k], e);
        R rr = blas::settle(h[0], e[0]), ir = blas::settle(h[1], e[1]), ri = blas::settle(h[2], e[2]),
          ii = blas::settle(h[3], e[3]);
        const cx<R>* col = a + k * lda;
        for (idx t = full; t < m; ++t) {
            rr += col[t].re * x[t].re;
            ir += col[t].im * x[t].re;
            ri += col[t].re * x[t].im;
            ii += col[t].im * x[t].im;
        }
        out[k] = conj ? cx<R>{rr + ii, ri - ir} : cx<R>{rr - ii, ri + ir};
    }
}

template <class T, class F1, class F2>
void dots_by_two(idx nc, idx lda, const T* a, T* out, F1 two, F2 one) {
    idx k = 0;
    for (; k + 2 <= nc; k += 2) two(a + k * lda, out + k);
    if (k < nc) one(a + k * lda, out + k);
}

}  // namespace

void sweep(idx m, float xj, const float* a, float* x) { sweep_real(m, xj, a, x); }
void sweep(idx m, double xj, const double* a, double* x) { sweep_real(m, xj, a, x); }
void sweep(idx m, cx<float> xj, const cx<float>* a, cx<float>* x) { sweep_cx(m, xj, a, x); }
void sweep(idx m, cx<double> xj, const cx<double>* a, cx<double>* x) { sweep_cx(m, xj, a, x); }

void gemv_cols(idx m, idx nc, const float* a, idx lda, const float* c, idx incc, float* y) { gemv_cols_real(m, nc, a, lda, c, incc, y); }
void gemv_cols(idx m, idx nc, const double* a, idx lda, const double* c, idx incc, double* y) { gemv_cols_real(m, nc, a, lda, c, incc, y); }
void gemv_cols(idx m, idx nc, const cx<float>* a, idx lda, const cx<float>* c, idx incc, cx<float>* y) { gemv_cols_cx(m, nc, a, lda, c, incc, y); }
void gemv_cols(idx m, idx nc, const cx<double>* a, idx lda, const cx<double>* c, idx incc, cx<double>* y) { gemv_cols_cx(m, nc, a, lda, c, incc, y); }

template <class R>
void dots_real_all(idx m, idx nc, const R* a, idx lda, const R* x, R* out) {
    dots_by_two(nc, lda, a, out, [&](const R* ak, R* o) { dots_real<R, 2>(m, ak, lda, x, o); },
                [&](const R* ak, R* o) { dots_real<R, 1>(m, ak, lda, x, o); });
}
template <class R>
void dots_cx_all(idx m, idx nc, const cx<R>* a, idx lda, const cx<R>* x, cx<R>* out, bool conj) {
    dots_by_two(nc, lda, a, out, [&](const cx<R>* ak, cx<R>* o) { dots_cx<R, 2>(m, ak, lda, x, o, conj); },
                [&](const cx<R>* ak, cx<R>* o) { dots_cx<R, 1>(m, ak, lda, x, o, conj); });
}

void dots(idx m, idx nc, const float* a, idx lda, const float* x, float* out, bool) { dots_real_all(m, nc, a, lda, x, out); }
void dots(idx m, idx nc, const double* a, idx lda, const double* x, double* out, bool) { dots_real_all(m, nc, a, lda, x, out); }
void dots(idx m, idx nc, const cx<float>* a, idx lda, const cx<float>* x, cx<float>* out, bool conj) { dots_cx_all(m, nc, a, lda, x, out, conj); }
void dots(idx m, idx nc, const cx<double>* a, idx lda, const cx<double>* x, cx<double>* out, bool conj) { dots_cx_all(m, nc, a, lda, x, out, conj); }

}  // namespace ork::tri_inner
