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

// A := alpha*x*op(y)' + A, op = conj when Conj. With a contiguous x four
// columns share a pass over it.
template <class T, bool Conj>
void ger(idx m, idx n, T alpha, const T* x, idx incx, const T* y, idx incy, T* a, idx lda) {
    if (m <= 0 || n <= 0 || alpha == zero<T>()) return;
    strided xv(m, x, incx);
    strided yv(n, y, incy);
    auto t_of = [&](idx j) { return alpha * (Conj ? conj(yv[j]) : yv[j]); };
    for (idx j = 0; j < n;) {
        if (incx == 1 && j + 4 <= n && yv[j] != zero<T>() && yv[j + 1] != zero<T>() && yv[j + 2] != zero<T>() &&
            yv[j + 3] != zero<T>()) {
            const T t[4] = {t_of(j), t_of(j + 1), t_of(j + 2), t_of(j + 3)};
            T* const cols[4] = {a + j * lda, a + (j + 1) * lda, a + (j + 2) * lda, a + (j + 3) * lda};
            inner::update4(m, x, t, static_cast<const T*>(nullptr), t, cols);
            j += 4;
            continue;
        }
        if (yv[j] != zero<T>()) {  // a zero y_j leaves its column alone
            const T t = t_of(j);
            T* col = a + j * lda;
            if (incx == 1) inner::axpy(m, t, x, col);
            else
                for (idx i = 0; i < m; ++i) col[i] += xv[i] * t;
        }
        ++j;
    }
}

// Rank 1 (Two = false): A := alpha*x*op(x)' + A, alpha real for Hermitian.
// Rank 2: A := alpha*x*op(y)' + op(alpha)*y*op(x)' + A.
// Only the triangle named by upper, in storage S, and only its columns
// [j0, j1); a Hermitian diagonal is kept real. As in the reference, a column
// whose x_j (and y_j) are zero is left alone but for that diagonal. With
// unit increments four columns share a pass over the rows they have in
// common.
template <class T, bool Herm, bool Two, class A, class S>
void symmetric_update(bool upper, idx n, A alpha, const T* x, idx incx, const T* y, idx incy, S st, idx j0,
                      idx j1) {
    if (n <= 0 || alpha == zero<A>()) return;
    strided xv(n, x, incx);
    strided yv(n, Two ? y : x, Two ? incy : incx);
    auto op = [](T v) { return Herm ? conj(v) : v; };
    const bool unit = incx == 1 && (!Two || incy == 1);
    auto skipped = [&](idx j) { return xv[j] == zero<T>() && (!Two || yv[j] == zero<T>()); };
    // rank 1: t1 = alpha*op(x_j); rank 2: t1 = alpha*op(y_j), t2 = op(alpha*x_j)
    auto t1_of = [&](idx j) { return times(alpha, op(yv[j])); };
    auto t2_of = [&](idx j) { return Two ? op(times(alpha, xv[j])) : zero<T>(); };
    auto stored = [&](idx j) {
        rows r = triangle_rows(j, n, st.reach, upper);
        if (Herm) {  // the diagonal on its own, below
            if (upper) --r.hi;
            else ++r.lo;
        }
        return r;
    };
    // rows [lo, hi) of column j
    auto part = [&](T* p, T t1, T t2, idx lo, idx hi) {
        if (hi <= lo) return;
        if (unit) {
            if constexpr (Two) inner::axpy2(hi - lo, x + lo, t1, y + lo, t2, p + lo);
            else inner::axpy(hi - lo, t1, x + lo, p + lo);
            return;
        }
        for (idx i = lo; i < hi; ++i) {
            if constexpr (Two) p[i] = p[i] + xv[i] * t1 + yv[i] * t2;
            else p[i] += xv[i] * t1;
        }
    };
    auto diagonal = [&](idx j, T* p, T t1, T t2) {
        if constexpr (Herm) {
            T d = xv[j] * t1;
            if constexpr (Two) d = d + yv[j] * t2;
            p[j] = T{p[j].re + d.re, 0};
        }
    };
    constexpr idx G = 4;  // columns a pass over their shared rows, with unit increments
    for (idx j = j0; j < j1;) {
        bool group = unit && j + G <= j1;
        for (idx k = 0; group && k < G; ++k) group = !skipped(j + k);
        if (!group) {
            T* p = st.col(j, upper);
            if (skipped(j)) {
                if constexpr (Herm) p[j].im = 0;
            } else {
                const T t1 = t1_of(j), t2 = t2_of(j);
                const rows r = stored(j);
                part(p, t1, t2, r.lo, r.hi);
                diagonal(j, p, t1, t2);
            }
            ++j;
            continue;
        }
        T t1[G], t2[G], *p[G], *shared[G];
        rows r[G];
        idx lo = 0, hi = n;
        for (idx k = 0; k < G; ++k) {
            t1[k] = t1_of(j + k), t2[k] = t2_of(j + k);
            p[k] = st.col(j + k, upper);
            r[k] = stored(j + k);
            if (r[k].lo > lo) lo = r[k].lo;
            if (r[k].hi < hi) hi = r[k].hi;
        }
        if (hi > lo) {
            for (idx k = 0; k < G; ++k) shared[k] = p[k] + lo;
            inner::update4(hi - lo, x + lo, t1, Two ? y + lo : nullptr, t2, shared);
        } else {
            lo = hi = n;  // no shared rows: each column goes alone
        }
        for (idx k = 0; k < G; ++k) {
            part(p[k], t1[k], t2[k], r[k].lo, lo < r[k].hi ? lo : r[k].hi);
            part(p[k], t1[k], t2[k], hi > r[k].lo ? hi : r[k].lo, r[k].hi);
            diagonal(j + k, p[k], t1[k], t2[k]);
        }
        j += G;
    }
}

}  // namespace ork::blas
