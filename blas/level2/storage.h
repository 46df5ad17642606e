// Storages of the level-2 matrices and the small helpers their templates
// share. A storage gives, for column j, a pointer p with p[i] the element
// (i, j), and how far from the diagonal its stored band reaches; full,
// band and packed triangles then run the same column loops.
#pragma once

#include "blas/level1/compensated.h"
#include "blas/level1/level1.h"
#include "frame/vector.h"

namespace ork::blas {

// Full storage, column-major with leading dimension lda.
template <class T> struct dense {
    T* a;
    idx lda;
    idx reach;  // no limit: the order of the matrix
    T* col(idx j, bool) const { return a + j * lda; }
};

// Band storage of a triangle: the diagonals as rows of an lda-by-n array,
// the diagonal in row k (upper) or row 0 (lower).
template <class T> struct band {
    T* a;
    idx lda, reach;  // reach = k
    T* col(idx j, bool upper) const { return a + j * lda + (upper ? reach - j : -j); }
};

// A triangle packed column by column.
template <class T> struct packed {
    T* a;
    idx n, reach;  // reach = n
    T* col(idx j, bool upper) const { return upper ? a + j * (j + 1) / 2 : a + j * n - j * (j + 1) / 2; }
};

// The stored rows [lo, hi) of column j of a triangle of order n whose band
// reaches `reach` diagonals from the main one, the diagonal included.
struct rows {
    idx lo, hi;
};
inline rows triangle_rows(idx j, idx n, idx reach, bool upper) {
    if (upper) return {j - reach > 0 ? j - reach : 0, j + 1};
    return {j, j + reach + 1 < n ? j + reach + 1 : n};
}

// a*b where either may be real; a real times a complex scales both parts,
// as the reference does for real alpha and for the real diagonal.
template <class A, class B> auto times(A a, B b) {
    if constexpr (is_complex<A> == is_complex<B>) return a * b;
    else if constexpr (is_complex<A>) return b * a;
    else return a * b;
}

template <class T> T real_part(T a) {
    if constexpr (is_complex<T>) return T{a.re, 0};
    else return a;
}

// Sums over one run of a column, blocks counted from its first element and
// added with compensation: sum op(a_i)*x_i of contiguous vectors by the
// level-1 dot kernel on blocks of 1024, and sum term(i) for strided ones by a
// plain running sum on blocks of 256.
template <class T>
T run_dot(idx m, const T* a, const T* x, bool conj) {
    return blockwise_sum<T>(m, 1024, [&](idx i0, idx len) {
        if constexpr (is_complex<T>) return inner::dot(len, a + i0, x + i0, conj);
        else return inner::dot(len, a + i0, x + i0);
    });
}
template <class T, class Term>
T run_sum(idx m, Term term) {
    return blocked_sum<T>(m, 256, term);
}

// y := beta*y over n elements; beta = 0 stores zeros, so NaN does not survive.
template <class T> void scale_vector(idx n, T beta, T* y, idx incy) {
    if (beta == one<T>()) return;
    strided yv(n, y, incy);
    if (beta == zero<T>())
        for (idx i = 0; i < n; ++i) yv[i] = zero<T>();
    else if (incy == 1 || incy == -1)
        inner::scal(n, beta, y);
    else
        for (idx i = 0; i < n; ++i) yv[i] = beta * yv[i];
}

}  // namespace ork::blas
