// Element types of the kernels: reals, a plain complex pair, and their traits.
#pragma once

#include <cstdint>
#include <type_traits>

#include "ork/types.h"

namespace ork {

using idx = std::int64_t;

// A complex element with the reference BLAS arithmetic: no scaling in the
// product, no C99 NaN recovery. Layout-compatible with ork_complex8/16.
template <class R>
struct cx {
    R re, im;
};

template <class R> constexpr cx<R> operator+(cx<R> a, cx<R> b) { return {a.re + b.re, a.im + b.im}; }
template <class R> constexpr cx<R> operator-(cx<R> a, cx<R> b) { return {a.re - b.re, a.im - b.im}; }
template <class R> constexpr cx<R> operator*(cx<R> a, cx<R> b) {
    return {a.re * b.re - a.im * b.im, a.re * b.im + a.im * b.re};
}
template <class R> constexpr cx<R> operator*(R a, cx<R> b) { return {a * b.re, a * b.im}; }
template <class R> constexpr cx<R>& operator+=(cx<R>& a, cx<R> b) { return a = a + b; }
template <class R> constexpr cx<R>& operator-=(cx<R>& a, cx<R> b) { return a = a - b; }
template <class R> constexpr bool operator==(cx<R> a, cx<R> b) { return a.re == b.re && a.im == b.im; }

template <class T> struct real_of { using type = T; };
template <class R> struct real_of<cx<R>> { using type = R; };
template <class T> using real_t = typename real_of<T>::type;

template <class T> inline constexpr bool is_complex = !std::is_same_v<T, real_t<T>>;

// conj is the identity on reals, so one template serves dotc and dot.
template <class R> constexpr R conj(R a) { return a; }
template <class R> constexpr cx<R> conj(cx<R> a) { return {a.re, -a.im}; }

template <class T> constexpr T zero() { return T{}; }
template <class T> constexpr T one() {
    if constexpr (is_complex<T>) return T{1, 0};
    else return T(1);
}

// |x| for reals; |re| + |im| for complex (the magnitude of i?amax and asum).
template <class R> constexpr R abs1(R a) {
    if constexpr (sizeof(R) == sizeof(float)) return __builtin_fabsf(a);
    else return __builtin_fabs(a);
}
template <class R> constexpr R abs1(cx<R> a) { return abs1(a.re) + abs1(a.im); }

// The C types of the public headers and their kernel-side twins.
template <class C> struct elem_of { using type = C; };
template <> struct elem_of<ork_complex8> { using type = cx<float>; };
template <> struct elem_of<ork_complex16> { using type = cx<double>; };
template <class C> using elem_t = typename elem_of<C>::type;

template <class C> inline auto* as_elem(C* p) { return reinterpret_cast<elem_t<C>*>(p); }
template <class C> inline auto* as_elem(const C* p) { return reinterpret_cast<const elem_t<C>*>(p); }

template <class T> struct c_type_of { using type = T; };
template <> struct c_type_of<cx<float>> { using type = ork_complex8; };
template <> struct c_type_of<cx<double>> { using type = ork_complex16; };
template <class T> inline auto to_c(T v) {
    using C = typename c_type_of<T>::type;
    C r;
    static_assert(sizeof r == sizeof v);
    __builtin_memcpy(&r, &v, sizeof r);
    return r;
}

}  // namespace ork
