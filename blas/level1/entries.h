// The level-1 results in the shapes of their exports (C types returned,
// sdsdot's start value second): what the generated shims of
// blas/level1/table.py call where the templates of level1.h take other shapes.
#pragma once

#include "blas/level1/level1.h"

namespace ork::blas::entries {

template <class T, bool Conj>
auto dot(idx n, const T* x, idx incx, const T* y, idx incy) {
    return to_c(blas::dot<T, Conj>(n, x, incx, y, incy));
}
template <class T, bool Conj>
auto doti(idx nz, const T* x, const idx* indx, const T* y) {
    return to_c(blas::doti<T, Conj>(nz, x, indx, y));
}
// single inputs, double products and sums; sdsdot starts from sb and rounds once
inline double dsdot(idx n, const float* x, idx incx, const float* y, idx incy) {
    return blas::dot_widened(n, x, incx, y, incy, 0.0);
}
inline float sdsdot(idx n, float sb, const float* x, idx incx, const float* y, idx incy) {
    return float(blas::dot_widened(n, x, incx, y, incy, double(sb)));
}

}  // namespace ork::blas::entries
