// Scalar arithmetic of the small LAPACK-level kernels over real and complex
// elements, and the contiguous level-1 inner kernels they build on.
#pragma once

#include <cmath>

#include "blas/level1/inner.h"
#include "frame/types.h"

namespace ork::lapack {

template <class T> constexpr T neg(T a) {
    if constexpr (is_complex<T>) return T{-a.re, -a.im};
    else return -a;
}
template <class T> constexpr bool is_zero(T a) { return a == zero<T>(); }
template <class T> constexpr T from_real(real_t<T> r) {
    if constexpr (is_complex<T>) return T{r, 0};
    else return r;
}
template <class T> constexpr real_t<T> real_part(T a) {
    if constexpr (is_complex<T>) return a.re;
    else return a;
}

// a/b; complex by complex with Smith's scaling, which avoids the overflow of
// forming |b|^2 for large b.
template <class R> R div(R a, R b) { return a / b; }
template <class R> cx<R> div(cx<R> a, cx<R> b) {
    if (std::fabs(b.re) >= std::fabs(b.im)) {
        const R r = b.im / b.re, den = b.re + b.im * r;
        return {(a.re + a.im * r) / den, (a.im - a.re * r) / den};
    }
    const R r = b.re / b.im, den = b.im + b.re * r;
    return {(a.re * r + a.im) / den, (a.im * r - a.re) / den};
}
template <class R> cx<R> div(cx<R> a, R b) { return {a.re / b, a.im / b}; }
template <class T> T recip(T a) { return div(one<T>(), a); }

// Real times element, for rotations and scalings by real factors.
template <class R> R rmul(R c, R a) { return c * a; }
template <class R> cx<R> rmul(R c, cx<R> a) { return {c * a.re, c * a.im}; }

// y += alpha*x and sum conj(x_i)*y_i over contiguous vectors, through the
// inner kernels of the processor generation (which want n > 0).
template <class T> void axpy(idx n, T alpha, const T* x, T* y) {
    if (n > 0) inner::axpy(n, alpha, x, y);
}
template <class T> T dotc(idx n, const T* x, const T* y) {
    if (n <= 0) return zero<T>();
    if constexpr (is_complex<T>) return inner::dot(n, x, y, true);
    else return inner::dot(n, x, y);
}

}  // namespace ork::lapack
