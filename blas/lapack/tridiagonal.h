// Tridiagonal solvers: a general matrix by Gaussian elimination with partial
// pivoting, and a factored positive definite one (L*D*L^H or U^H*D*U with
// unit bidiagonal L, U and real diagonal D).
#pragma once

#include <cstddef>

#include "blas/lapack/scalar.h"
#include "ork/service.h"

namespace ork::lapack {

// Solves A*X = B for the n x n tridiagonal A (sub-diagonal dl, diagonal d,
// super-diagonal du) and nrhs columns of B, by rows. On return d and du hold
// the diagonal and super-diagonal of U, dl[0 .. n-3] its second
// super-diagonal. Rows k and k+1 are interchanged where |dl[k]| > |d[k]|
// (|re| + |im| for complex). Returns 0, or the first k (1-based) with
// U(k,k) exactly 0, in which case no solution is computed.
template <class T>
idx gtsv(idx n, idx nrhs, T* dl, T* d, T* du, T* b, idx ldb) {
    if (n <= 0) return 0;
    auto B = [&](idx i, idx j) -> T& { return b[i + j * ldb]; };
    for (idx k = 0; k + 1 < n; ++k) {
        if (is_zero(dl[k])) {
            if (is_zero(d[k])) return k + 1;  // nothing below to pivot on
        } else if (abs1(d[k]) >= abs1(dl[k])) {
            const T mult = div(dl[k], d[k]);
            d[k + 1] = d[k + 1] - mult * du[k];
            for (idx j = 0; j < nrhs; ++j) B(k + 1, j) = B(k + 1, j) - mult * B(k, j);
            if (k + 2 < n) dl[k] = zero<T>();
        } else {
            const T mult = div(d[k], dl[k]);
            d[k] = dl[k];
            const T temp = d[k + 1];
            d[k + 1] = du[k] - mult * temp;
            if (k + 2 < n) {
                dl[k] = du[k + 1];
                du[k + 1] = neg(mult * dl[k]);
            }
            du[k] = temp;
            for (idx j = 0; j < nrhs; ++j) {
                const T t = B(k, j);
                B(k, j) = B(k + 1, j);
                B(k + 1, j) = t - mult * B(k + 1, j);
            }
        }
    }
    if (is_zero(d[n - 1])) return n;
    for (idx j = 0; j < nrhs; ++j) {
        T* x = b + j * ldb;
        x[n - 1] = div(x[n - 1], d[n - 1]);
        if (n > 1) x[n - 2] = div(x[n - 2] - du[n - 2] * x[n - 1], d[n - 2]);
        for (idx k = n - 3; k >= 0; --k) x[k] = div(x[k] - du[k] * x[k + 1] - dl[k] * x[k + 2], d[k]);
    }
    return 0;
}

// ---- factored positive definite tridiagonal solve. Upper: A = U^H*D*U with
// e the super-diagonal of U; otherwise A = L*D*L^H with e the sub-diagonal of
// L (for reals both are L*D*L^T). Each column of B goes through the forward
// recurrence x[i] -= x[i-1]*f(e[i-1]) and the backward one
// x[i] = x[i]/d[i] - x[i+1]*g(e[i]), where f and g are conj and identity
// (upper) or the other way round; every element gets exactly those
// operations, whichever path below runs.
template <class T, bool Upper> T fwd_e(T e) { return Upper ? conj(e) : e; }
template <class T, bool Upper> T bwd_e(T e) { return Upper ? e : conj(e); }

template <class T, bool Upper>
void ptts2_column(idx n, const real_t<T>* d, const T* e, T* x) {
    for (idx i = 1; i < n; ++i) x[i] = x[i] - x[i - 1] * fwd_e<T, Upper>(e[i - 1]);
    x[n - 1] = div(x[n - 1], d[n - 1]);
    for (idx i = n - 2; i >= 0; --i) x[i] = div(x[i], d[i]) - x[i + 1] * bwd_e<T, Upper>(e[i]);
}

// The same recurrences on W columns at once, held row-interleaved in w
// (w[i*W + r] = row i of column r): W independent chains per step, which
// hides the latency of the recurrence and lets the compiler use vectors
// (kept as loops: a fully unrolled row would not be vectorised).
template <class T, bool Upper, idx W>
void ptts2_interleaved(idx n, const real_t<T>* d, const T* e, T* w) {
    for (idx i = 1; i < n; ++i) {
        const T f = fwd_e<T, Upper>(e[i - 1]);
        T* row = w + i * W;
        const T* prev = row - W;
#pragma GCC unroll 1
        for (idx r = 0; r < W; ++r) row[r] = row[r] - prev[r] * f;
    }
    T* last = w + (n - 1) * W;
    for (idx r = 0; r < W; ++r) last[r] = div(last[r], d[n - 1]);
    for (idx i = n - 2; i >= 0; --i) {
        const T g = bwd_e<T, Upper>(e[i]);
        const real_t<T> di = d[i];
        T* row = w + i * W;
        const T* next = row + W;
#pragma GCC unroll 1
        for (idx r = 0; r < W; ++r) row[r] = div(row[r], di) - next[r] * g;
    }
}

// Columns solved together through the workspace: 128 bytes of each row.
template <class T> inline constexpr idx ptts2_lanes = idx(128 / sizeof(T));
// Above this many rows the interleaved copy no longer stays in cache.
inline constexpr idx ptts2_max_buffered_rows = idx(1) << 15;

template <class T, bool Upper>
void ptts2(idx n, idx nrhs, const real_t<T>* d, const T* e, T* b, idx ldb) {
    if (n <= 0 || nrhs <= 0) return;
    if (n == 1) {
        const real_t<T> r = real_t<T>(1) / d[0];
        for (idx j = 0; j < nrhs; ++j) b[j * ldb] = rmul(r, b[j * ldb]);
        return;
    }
    constexpr idx W = ptts2_lanes<T>;
    // Workspace only where it helps: several columns, and n >= 4.
    T* w = nullptr;
    if (n >= 4 && nrhs >= 2 && n <= ptts2_max_buffered_rows)
        w = static_cast<T*>(ork_serv_allocate(std::size_t(n * W) * sizeof(T), 64));
    if (!w) {
        for (idx j = 0; j < nrhs; ++j) ptts2_column<T, Upper>(n, d, e, b + j * ldb);
        return;
    }
    for (idx j0 = 0; j0 < nrhs; j0 += W) {
        const idx cols = nrhs - j0 < W ? nrhs - j0 : W;
        for (idx r = 0; r < W; ++r) {
            if (r < cols) {
                const T* src = b + (j0 + r) * ldb;
                for (idx i = 0; i < n; ++i) w[i * W + r] = src[i];
            } else {  // idle lanes: zeros, which stay finite
                for (idx i = 0; i < n; ++i) w[i * W + r] = zero<T>();
            }
        }
        ptts2_interleaved<T, Upper, W>(n, d, e, w);
        for (idx r = 0; r < cols; ++r) {
            T* dst = b + (j0 + r) * ldb;
            for (idx i = 0; i < n; ++i) dst[i] = w[i * W + r];
        }
    }
    ork_serv_deallocate(w);
}

}  // namespace ork::lapack
