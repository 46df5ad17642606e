// Factorisations of small dense matrices, lower triangle only: Cholesky
// (L*L^H) and symmetric indefinite with Bunch-Kaufman diagonal pivoting
// (P*L*D*L^T*P^T; complex symmetric, not Hermitian, for complex elements).
#pragma once

#include <cmath>

#include "blas/lapack/scalar.h"

namespace ork::lapack {

// A = L*L^H on the lower triangle of the n x n matrix at a; the strict upper
// triangle is not touched. Column j is brought up to date from the columns
// left of it with contiguous axpys (row j included, which gives the diagonal:
// x*conj(x) has an exactly zero imaginary part), then scaled by 1/L(j,j).
// Returns 0, or the order of the first leading minor that is not positive
// definite; its diagonal element then holds the value that was not positive.
template <class T>
idx potrf_l(idx n, T* a, idx lda) {
    using R = real_t<T>;
    for (idx j = 0; j < n; ++j) {
        T* col = a + j * lda;
        for (idx k = 0; k < j; ++k) {
            const T* left = a + k * lda;
            axpy(n - j, neg(conj(left[j])), left + j, col + j);
        }
        R ajj = real_part(col[j]);
        if (!(ajj > 0)) {  // also a NaN
            col[j] = from_real<T>(ajj);
            return j + 1;
        }
        ajj = std::sqrt(ajj);
        col[j] = from_real<T>(ajj);
        const R r = R(1) / ajj;
        for (idx i = j + 1; i < n; ++i) col[i] = rmul(r, col[i]);
    }
    return 0;
}

// First index of the largest |re| + |im| among n elements at stride inc;
// the first of equal magnitudes wins.
template <class T>
idx iamax(idx n, const T* x, idx inc) {
    idx best = 0;
    real_t<T> big = abs1(x[0]);
    for (idx i = 1; i < n; ++i)
        if (abs1(x[i * inc]) > big) big = abs1(x[i * inc]), best = i;
    return best;
}

template <class T> void swap_elems(T& x, T& y) {
    T t = x;
    x = y;
    y = t;
}

// A = P*L*D*L^T*P^T on the lower triangle, D with 1x1 and 2x2 blocks. ipiv
// (1-based) as usual: ipiv[k] = p > 0, a 1x1 block after rows and columns k
// and p were interchanged; ipiv[k] = ipiv[k+1] = -p, a 2x2 block after k+1
// and p were. Returns 0, or the first k (1-based) whose D(k,k) is exactly 0.
template <class T>
idx sytrf_l(idx n, T* a, idx lda, idx* ipiv) {
    using R = real_t<T>;
    const R alpha = (R(1) + std::sqrt(R(17))) / R(8);
    auto A = [&](idx i, idx j) -> T& { return a[i + j * lda]; };
    idx info = 0;
    for (idx k = 0; k < n;) {
        idx kstep = 1, kp = k;
        const R absakk = abs1(A(k, k));
        idx imax = k;
        R colmax = 0;
        if (k + 1 < n) {
            imax = k + 1 + iamax(n - k - 1, &A(k + 1, k), 1);
            colmax = abs1(A(imax, k));
        }
        if ((absakk > colmax ? absakk : colmax) == 0 || absakk != absakk) {
            // column k is zero (or NaN): D(k,k) = A(k,k), nothing to eliminate
            if (info == 0) info = k + 1;
        } else {
            if (absakk < alpha * colmax) {
                // the largest off-diagonal magnitude in row and column imax
                idx jmax = k + iamax(imax - k, &A(imax, k), lda);
                R rowmax = abs1(A(imax, jmax));
                if (imax + 1 < n) {
                    jmax = imax + 1 + iamax(n - imax - 1, &A(imax + 1, imax), 1);
                    const R r = abs1(A(jmax, imax));
                    if (r > rowmax) rowmax = r;
                }
                if (absakk >= alpha * colmax * (colmax / rowmax)) kp = k;
                else if (abs1(A(imax, imax)) >= alpha * rowmax) kp = imax;
                else kp = imax, kstep = 2;
            }
            const idx kk = k + kstep - 1;
            if (kp != kk) {  // interchange rows and columns kk and kp of the trailing matrix
                for (idx i = kp + 1; i < n; ++i) swap_elems(A(i, kk), A(i, kp));
                for (idx j = kk + 1; j < kp; ++j) swap_elems(A(j, kk), A(kp, j));
                swap_elems(A(kk, kk), A(kp, kp));
                if (kstep == 2) swap_elems(A(k + 1, k), A(kp, k));
            }
            if (kstep == 1) {
                if (k + 1 < n) {
                    // A22 -= x*d11*x^T, then the column becomes x*d11
                    const T d11 = recip(A(k, k));
                    for (idx j = k + 1; j < n; ++j) axpy(n - j, neg(d11 * A(j, k)), &A(j, k), &A(j, j));
                    for (idx i = k + 1; i < n; ++i) A(i, k) = d11 * A(i, k);
                }
            } else if (k + 2 < n) {
                // A22 -= [x y]*inv(D)*[x y]^T with the 2x2 inverse in scaled form
                T d21 = A(k + 1, k);
                const T d11 = div(A(k + 1, k + 1), d21), d22 = div(A(k, k), d21);
                const T t = recip(d11 * d22 - one<T>());
                d21 = div(t, d21);
                for (idx j = k + 2; j < n; ++j) {
                    const T wk = d21 * (d11 * A(j, k) - A(j, k + 1));
                    const T wkp1 = d21 * (d22 * A(j, k + 1) - A(j, k));
                    axpy(n - j, neg(wk), &A(j, k), &A(j, j));
                    axpy(n - j, neg(wkp1), &A(j, k + 1), &A(j, j));
                    A(j, k) = wk;
                    A(j, k + 1) = wkp1;
                }
            }
        }
        if (kstep == 1) {
            ipiv[k] = kp + 1;
        } else {
            ipiv[k] = ipiv[k + 1] = -(kp + 1);
        }
        k += kstep;
    }
    return info;
}

}  // namespace ork::lapack
