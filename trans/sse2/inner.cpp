// SSE2 inner kernels of transposition and scaled addition: 16 bytes (two
// doubles, four floats, one or two complex elements) per step, 2 x 2 and
// 4 x 4 register transposes in the tiles of the panel walk.
#include "trans/inner.h"
#include "trans/recursion.h"

#include <type_traits>

#include "frame/sse2/simd.h"

namespace ork::trans::inner {
namespace {

using sse2::aligned16;

// Lane arithmetic for one element type: a scalar alpha held as broadcast
// parts, and alpha*op(x) on a vector of whole elements with the scalar
// formulas' operations (re = ar*xr - ai*xi, im = ar*xi + ai*xr).
template <class T> struct lanes;

template <class R> struct real_lanes {
    using S = sse2::simd<R>;
    using V = typename S::V;
    static constexpr uidx per = S::lanes;
    struct scalar {
        V a;
        explicit scalar(R alpha) : a(S::set1(alpha)) {}
    };
    static V load(const R* p) { return S::loadu(p); }
    static void store(R* p, V v) { S::storeu(p, v); }
    static V add(V a, V b) { return S::add(a, b); }
    template <bool Conj> static V mul(const scalar& s, V x) { return S::mul(s.a, x); }
};
template <> struct lanes<float> : real_lanes<float> {};
template <> struct lanes<double> : real_lanes<double> {};

template <> struct lanes<cx<double>> {
    using V = __m128d;
    static constexpr uidx per = 1;
    struct scalar {
        V re, im;
        explicit scalar(cx<double> a) : re(_mm_set1_pd(a.re)), im(_mm_set1_pd(a.im)) {}
    };
    static V load(const cx<double>* p) { return _mm_loadu_pd(&p->re); }
    static void store(cx<double>* p, V v) { _mm_storeu_pd(&p->re, v); }
    static V add(V a, V b) { return _mm_add_pd(a, b); }
    template <bool Conj> static V mul(const scalar& s, V x) {
        if constexpr (Conj) x = _mm_xor_pd(x, _mm_set_pd(-0.0, 0.0));
        V swapped = _mm_xor_pd(_mm_shuffle_pd(x, x, 1), _mm_set_pd(0.0, -0.0));  // [-im, re]
        return _mm_add_pd(_mm_mul_pd(s.re, x), _mm_mul_pd(s.im, swapped));
    }
};

template <> struct lanes<cx<float>> {
    using V = __m128;
    static constexpr uidx per = 2;
    struct scalar {
        V re, im;
        explicit scalar(cx<float> a) : re(_mm_set1_ps(a.re)), im(_mm_set1_ps(a.im)) {}
    };
    static V load(const cx<float>* p) { return _mm_loadu_ps(&p->re); }
    static void store(cx<float>* p, V v) { _mm_storeu_ps(&p->re, v); }
    static V add(V a, V b) { return _mm_add_ps(a, b); }
    template <bool Conj> static V mul(const scalar& s, V x) {
        if constexpr (Conj) x = _mm_xor_ps(x, _mm_set_ps(-0.0f, 0.0f, -0.0f, 0.0f));
        V swapped = _mm_xor_ps(_mm_shuffle_ps(x, x, _MM_SHUFFLE(2, 3, 0, 1)), _mm_set_ps(0.0f, -0.0f, 0.0f, -0.0f));
        return _mm_add_ps(_mm_mul_ps(s.re, x), _mm_mul_ps(s.im, swapped));
    }
};

template <class T, bool Conj> inline T moved(T alpha, T a) {
    if constexpr (Conj) return alpha * conj(a);
    else return alpha * a;
}

// one(j) for single elements, vec(j) for a vector of whole elements from j:
// the first elements alone until out is 16-byte aligned when n >= 9.
template <class T, class One, class Vec>
inline void along(uidx n, T* out, One one, Vec vec) {
    constexpr uidx per = lanes<T>::per;
    uidx j = 0;
    if (n >= 9)
        while (j < per && j < n && !aligned16(out + j)) one(j++);
    for (; j + per <= n; j += per) vec(j);
    for (; j < n; ++j) one(j);
}

}  // namespace

template <class T, bool Conj>
void scale(uidx n, T alpha, const T* a, T* b) {
    using L = lanes<T>;
    const typename L::scalar s(alpha);
    along(
        n, b, [&](uidx j) { b[j] = moved<T, Conj>(alpha, a[j]); },
        [&](uidx j) { L::store(b + j, L::template mul<Conj>(s, L::load(a + j))); });
}

template <class T, bool ConjA, bool ConjB>
void axpby(uidx n, T alpha, const T* a, T beta, const T* b, T* c) {
    using L = lanes<T>;
    const typename L::scalar sa(alpha), sb(beta);
    along(
        n, c, [&](uidx j) { c[j] = moved<T, ConjA>(alpha, a[j]) + moved<T, ConjB>(beta, b[j]); },
        [&](uidx j) {
            auto x = L::template mul<ConjA>(sa, L::load(a + j));
            auto y = L::template mul<ConjB>(sb, L::load(b + j));
            L::store(c + j, L::add(x, y));
        });
}

namespace {

template <class T, bool Conj>
inline void tile_scalar(uidx i0, uidx rows, uidx j0, uidx cols, T alpha, const T* a, uidx lda, T* b, uidx ldb) {
    for (uidx i = i0; i < rows; ++i)
        for (uidx j = j0; j < cols; ++j) b[j * ldb + i] = moved<T, Conj>(alpha, a[i * lda + j]);
}

// 2 x 2 register transposes over the even part, single elements at the
// odd edges: for complex single, two elements per vector.
template <class T, bool Conj, class Pair>
inline void tile_pairs(uidx rows, uidx cols, T alpha, const typename lanes<T>::scalar& s, const T* a, uidx lda,
                       T* b, uidx ldb, Pair pair) {
    using L = lanes<T>;
    const uidx r2 = rows & ~uidx(1), c2 = cols & ~uidx(1);
    for (uidx i = 0; i < r2; i += 2)
        for (uidx j = 0; j < c2; j += 2) {
            typename L::V x = L::load(a + i * lda + j), y = L::load(a + (i + 1) * lda + j), lo, hi;
            pair(x, y, lo, hi);  // lo = [x0, y0], hi = [x1, y1]
            L::store(b + j * ldb + i, L::template mul<Conj>(s, lo));
            L::store(b + (j + 1) * ldb + i, L::template mul<Conj>(s, hi));
        }
    tile_scalar<T, Conj>(0, r2, c2, cols, alpha, a, lda, b, ldb);
    tile_scalar<T, Conj>(r2, rows, 0, cols, alpha, a, lda, b, ldb);
}

// Doubles: 2 x 2 transposes, and at an odd edge a pair from two rows (odd
// column) or a pair of one row stored as two halves (odd row).
inline void tile_double(uidx rows, uidx cols, __m128d s, double alpha, const double* a, uidx lda, double* b,
                        uidx ldb) {
    uidx i = 0;
    for (; i + 2 <= rows; i += 2) {
        const double *a0 = a + i * lda, *a1 = a0 + lda;
        uidx j = 0;
        for (; j + 2 <= cols; j += 2) {
            __m128d x = _mm_loadu_pd(a0 + j), y = _mm_loadu_pd(a1 + j);
            _mm_storeu_pd(b + j * ldb + i, _mm_mul_pd(s, _mm_unpacklo_pd(x, y)));
            _mm_storeu_pd(b + (j + 1) * ldb + i, _mm_mul_pd(s, _mm_unpackhi_pd(x, y)));
        }
        if (j < cols) _mm_storeu_pd(b + j * ldb + i, _mm_mul_pd(s, _mm_loadh_pd(_mm_load_sd(a0 + j), a1 + j)));
    }
    if (i < rows) {
        const double* a0 = a + i * lda;
        uidx j = 0;
        for (; j + 2 <= cols; j += 2) {
            __m128d x = _mm_mul_pd(s, _mm_loadu_pd(a0 + j));
            _mm_storel_pd(b + j * ldb + i, x);
            _mm_storeh_pd(b + (j + 1) * ldb + i, x);
        }
        if (j < cols) b[j * ldb + i] = alpha * a0[j];
    }
}

// Tiles 2 to 4 wide each way, as the tiles of a large matrix are: the 2 x 2
// transposes at rows {0, r-2} and columns {0, c-2} cover the tile, the
// overlap of a width of 3 being written twice with the same values; no
// branch on the shape, which changes from tile to tile.
inline void tile_double_2to4(uidx rows, uidx cols, __m128d s, const double* a, uidx lda, double* b, uidx ldb) {
    const uidx i1 = rows - 2, j1 = cols - 2;
    const double *a0 = a, *a1 = a + lda, *a2 = a + i1 * lda, *a3 = a2 + lda;
    auto block = [&](const double* x, const double* y, uidx i, uidx j) {
        __m128d u = _mm_loadu_pd(x + j), v = _mm_loadu_pd(y + j);
        _mm_storeu_pd(b + j * ldb + i, _mm_mul_pd(s, _mm_unpacklo_pd(u, v)));
        _mm_storeu_pd(b + (j + 1) * ldb + i, _mm_mul_pd(s, _mm_unpackhi_pd(u, v)));
    };
    block(a0, a1, 0, 0);
    block(a0, a1, 0, j1);
    block(a2, a3, i1, 0);
    block(a2, a3, i1, j1);
}

}  // namespace

template <class T, bool Conj>
void rec_t(uidx rows, uidx cols, T alpha, const T* a, uidx lda, T* b, uidx ldb) {
    using L = lanes<T>;
    const typename L::scalar s(alpha);
    if constexpr (std::is_same_v<T, double>) {
        panels_t(rows, cols, a, lda, b, ldb, [&](uidx r, uidx c, const T* at, T* bt) {
            if (r >= 2 && c >= 2) tile_double_2to4(r, c, s.a, at, lda, bt, ldb);
            else tile_double(r, c, s.a, alpha, at, lda, bt, ldb);
        });
    } else if constexpr (std::is_same_v<T, cx<float>>) {
        panels_t(rows, cols, a, lda, b, ldb, [&](uidx r, uidx c, const T* at, T* bt) {
            tile_pairs<T, Conj>(r, c, alpha, s, at, lda, bt, ldb, [](__m128 x, __m128 y, __m128& lo, __m128& hi) {
                lo = _mm_movelh_ps(x, y);
                hi = _mm_movehl_ps(y, x);
            });
        });
    } else if constexpr (std::is_same_v<T, float>) {
        panels_t(rows, cols, a, lda, b, ldb, [&](uidx r, uidx c, const T* at, T* bt) {
            if (r == 4 && c == 4) {
                __m128 r0 = _mm_loadu_ps(at), r1 = _mm_loadu_ps(at + lda), r2 = _mm_loadu_ps(at + 2 * lda),
                       r3 = _mm_loadu_ps(at + 3 * lda);
                _MM_TRANSPOSE4_PS(r0, r1, r2, r3);
                _mm_storeu_ps(bt, _mm_mul_ps(s.a, r0));
                _mm_storeu_ps(bt + ldb, _mm_mul_ps(s.a, r1));
                _mm_storeu_ps(bt + 2 * ldb, _mm_mul_ps(s.a, r2));
                _mm_storeu_ps(bt + 3 * ldb, _mm_mul_ps(s.a, r3));
            } else {
                tile_scalar<T, Conj>(0, r, 0, c, alpha, at, lda, bt, ldb);
            }
        });
    } else {
        panels_t(rows, cols, a, lda, b, ldb, [&](uidx r, uidx c, const T* at, T* bt) {
            for (uidx i = 0; i < r; ++i)
                for (uidx j = 0; j < c; ++j)
                    L::store(bt + j * ldb + i, L::template mul<Conj>(s, L::load(at + i * lda + j)));
        });
    }
}

// Every type with both conjugation settings (conjugation is the identity on
// the reals, whose dispatchers never ask for it but share the code paths).
#define ORK_TRANS_INNER(T)                                                          \
    template void scale<T, false>(uidx, T, const T*, T*);                           \
    template void scale<T, true>(uidx, T, const T*, T*);                            \
    template void rec_t<T, false>(uidx, uidx, T, const T*, uidx, T*, uidx);         \
    template void rec_t<T, true>(uidx, uidx, T, const T*, uidx, T*, uidx);          \
    template void axpby<T, false, false>(uidx, T, const T*, T, const T*, T*);       \
    template void axpby<T, false, true>(uidx, T, const T*, T, const T*, T*);        \
    template void axpby<T, true, false>(uidx, T, const T*, T, const T*, T*);        \
    template void axpby<T, true, true>(uidx, T, const T*, T, const T*, T*);
ORK_TRANS_INNER(float)
ORK_TRANS_INNER(double)
ORK_TRANS_INNER(cx<float>)
ORK_TRANS_INNER(cx<double>)

}  // namespace ork::trans::inner
