// Rank-1 and rank-2 updates of level 2, over the element type: general
// (ger, geru, gerc) and symmetric or Hermitian in full or packed storage (one
// template for syr, spr, her, hpr, syr2, spr2, her2, hpr2). Each column is
// one axpy (rank 1) or one fused pair of axpys (rank 2) over its rows; every
// element gets the same operations on every path, so a split over columns
// gives the bits of the whole update.
#pragma once

#include "blas/level2/inner.h"
#include "blas/level2/storage.h"

namespace ork::blas {

// A := alpha*x*op(y)' + A, op = conj when Conj; columns [j0, j1) only.
template <class T, bool Conj>
void ger(idx m, idx n, T alpha, const T* x, idx incx, const T* y, idx incy, T* a, idx lda) {
    if (m <= 0 || n <= 0 || alpha == zero<T>()) return;
    strided xv(m, x, incx);
    strided yv(n, y, incy);
    for (idx j = 0; j < n; ++j) {
        if (yv[j] == zero<T>()) continue;
        const T t = alpha * (Conj ? conj(yv[j]) : yv[j]);
        T* col = a + j * lda;
        if (incx == 1) inner::axpy(m, t, x, col);
        else
            for (idx i = 0; i < m; ++i) col[i] += xv[i] * t;
    }
}

// Rank 1 (Two = false): A := alpha*x*op(x)' + A, alpha real for Hermitian.
// Rank 2: A := alpha*x*op(y)' + op(alpha)*y*op(x)' + A.
// Only the triangle named by upper, in storage S, and only its columns
// [j0, j1); a Hermitian diagonal is kept real. As in the reference, a column
// whose x_j (and y_j) are zero is left alone but for that diagonal.
template <class T, bool Herm, bool Two, class A, class S>
void symmetric_update(bool upper, idx n, A alpha, const T* x, idx incx, const T* y, idx incy, S st, idx j0,
                      idx j1) {
    if (n <= 0 || alpha == zero<A>()) return;
    strided xv(n, x, incx);
    strided yv(n, Two ? y : x, Two ? incy : incx);
    auto op = [](T v) { return Herm ? conj(v) : v; };
    const bool unit = incx == 1 && (!Two || incy == 1);
    for (idx j = j0; j < j1; ++j) {
        T* p = st.col(j, upper);
        const bool skip = xv[j] == zero<T>() && (!Two || yv[j] == zero<T>());
        if (skip) {
            if constexpr (Herm) p[j].im = 0;
            continue;
        }
        // rank 1: t1 = alpha*op(x_j); rank 2: t1 = alpha*op(y_j), t2 = op(alpha*x_j)
        const T t1 = times(alpha, op(yv[j]));
        const T t2 = Two ? op(times(alpha, xv[j])) : zero<T>();
        rows r = triangle_rows(j, n, st.reach, upper);
        if (Herm) {  // the diagonal on its own, below
            if (upper) --r.hi;
            else ++r.lo;
        }
        const idx len = r.hi - r.lo;
        if (len > 0 && unit) {
            if constexpr (Two) inner::axpy2(len, x + r.lo, t1, y + r.lo, t2, p + r.lo);
            else inner::axpy(len, t1, x + r.lo, p + r.lo);
        } else {
            for (idx i = r.lo; i < r.hi; ++i) {
                if constexpr (Two) p[i] = p[i] + xv[i] * t1 + yv[i] * t2;
                else p[i] += xv[i] * t1;
            }
        }
        if constexpr (Herm) {
            T d = xv[j] * t1;
            if constexpr (Two) d = d + yv[j] * t2;
            p[j] = T{p[j].re + d.re, 0};
        }
    }
}

}  // namespace ork::blas
