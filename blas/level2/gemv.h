// Matrix-vector product and symmetric rank-1 update, over the element type.
// These serve the dispatched entries that other kernels call back.
#pragma once

#include "blas/level1/level1.h"

namespace ork::blas {

// y := alpha*op(A)*x + beta*y; op from the first letter of trans (N, T, C;
// C conjugates A). beta = 0 stores zeros, so NaN in y does not survive.
template <class T>
void gemv(char trans, idx m, idx n, T alpha, const T* a, idx lda, const T* x, idx incx, T beta, T* y,
          idx incy) {
    if (m <= 0 || n <= 0 || (alpha == zero<T>() && beta == one<T>())) return;
    const bool notrans = trans == 'N';
    const bool conj_a = trans == 'C';
    const idx leny = notrans ? m : n, lenx = notrans ? n : m;
    strided yv(leny, y, incy);
    if (!(beta == one<T>())) {
        if (beta == zero<T>())
            for (idx i = 0; i < leny; ++i) yv[i] = zero<T>();
        else
            for (idx i = 0; i < leny; ++i) yv[i] = beta * yv[i];
    }
    if (alpha == zero<T>()) return;
    strided xv(lenx, x, incx);
    if (notrans) {
        // y += (alpha*x_j)*A(:, j), one column at a time
        for (idx j = 0; j < n; ++j) {
            T t = alpha * xv[j];
            const T* col = a + j * lda;
            if (incy == 1) inner::axpy(m, t, col, y);
            else
                for (idx i = 0; i < m; ++i) yv[i] += t * col[i];
        }
    } else {
        for (idx j = 0; j < n; ++j) {
            const T* col = a + j * lda;
            T t = zero<T>();
            if (incx == 1) {
                if constexpr (is_complex<T>) t = inner::dot(m, col, x, conj_a);
                else t = inner::dot(m, col, x);
            } else if (conj_a)
                for (idx i = 0; i < m; ++i) t += conj(col[i]) * xv[i];
            else
                for (idx i = 0; i < m; ++i) t += col[i] * xv[i];
            yv[j] += alpha * t;
        }
    }
}

// A := alpha*x*x' + A on the triangle named by uplo (U or L).
template <class R>
void syr(char uplo, idx n, R alpha, const R* x, idx incx, R* a, idx lda) {
    if (n <= 0 || alpha == 0) return;
    strided xv(n, x, incx);
    for (idx j = 0; j < n; ++j) {
        if (xv[j] == 0) continue;
        R t = alpha * xv[j];
        R* col = a + j * lda;
        if (uplo == 'U')
            for (idx i = 0; i <= j; ++i) col[i] += xv[i] * t;
        else
            for (idx i = j; i < n; ++i) col[i] += xv[i] * t;
    }
}

}  // namespace ork::blas
