// The unpacked pieces of matrix multiplication: C scaling and clearing, and
// the plain product for small or leftover blocks.
#pragma once

#include "blas/gemm/shape.h"

namespace ork::gemm {

// C := 0 over m x n.
template <class T>
void zerom(idx m, idx n, T* c, idx ldc) {
    for (idx j = 0; j < n; ++j)
        for (idx i = 0; i < m; ++i) c[i + j * ldc] = zero<T>();
}

// C := beta*C over m x n, four columns at a time; beta = 0 stores zeros, so
// NaN or infinity in C do not survive.
template <class T>
void scalm(idx m, idx n, T beta, T* c, idx ldc) {
    if (beta == zero<T>()) return zerom(m, n, c, ldc);
    idx j = 0;
    for (; j + 4 <= n; j += 4) {
        T *c0 = c + j * ldc, *c1 = c0 + ldc, *c2 = c1 + ldc, *c3 = c2 + ldc;
        for (idx i = 0; i < m; ++i) {
            c0[i] = beta * c0[i];
            c1[i] = beta * c1[i];
            c2[i] = beta * c2[i];
            c3[i] = beta * c3[i];
        }
    }
    for (; j < n; ++j)
        for (idx i = 0; i < m; ++i) c[i + j * ldc] = beta * c[i + j * ldc];
}

// C := alpha*op(A)*op(B) + beta*C by plain loops: with A plain, each column
// of C gathers columns of A scaled by alpha*op(B)(l, j), l in order; with A
// transposed, each element is alpha times a dot product over l in order.
template <class T>
void pst(char ta, char tb, idx m, idx n, idx k, T alpha, const T* a, idx lda, const T* b, idx ldb, T beta, T* c,
         idx ldc) {
    if (m <= 0 || n <= 0) return;
    if (!(beta == one<T>())) scalm(m, n, beta, c, ldc);
    if (alpha == zero<T>()) return;
    for (idx j = 0; j < n; ++j) {
        T* cj = c + j * ldc;
        if (ta == 'N') {
            for (idx l = 0; l < k; ++l) {
                const T t = alpha * op_at(tb, b, ldb, l, j);
                const T* al = a + l * lda;
                for (idx i = 0; i < m; ++i) cj[i] += t * al[i];
            }
        } else {
            for (idx i = 0; i < m; ++i) {
                T s = zero<T>();
                const T* ai = a + i * lda;
                for (idx l = 0; l < k; ++l) s += (ta == 'C' ? conj(ai[l]) : ai[l]) * op_at(tb, b, ldb, l, j);
                cj[i] += alpha * s;
            }
        }
    }
}

}  // namespace ork::gemm
