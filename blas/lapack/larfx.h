// An elementary reflector H = I - tau*v*v^H applied to an m x n matrix C:
// C := H*C (left, v of length m) or C := C*H (right, v of length n).
#pragma once

#include "blas/lapack/scalar.h"

namespace ork::lapack {

// Two passes over cache-sized pieces of C, both through the contiguous
// level-1 inner kernels. Left: per column j, w_j = (C^H v)_j = sum conj(c_ij)
// v_i, then c_j -= (tau*conj(w_j))*v; a column is one piece. Right: per block
// of rows, w = C v by column axpys into work, then c_j -= (tau*conj(v_j))*w;
// the block is as tall as keeps it in cache. work: n elements (left) or m
// (right), which end up holding w.
template <class T>
void larfx(bool left, idx m, idx n, const T* v, T tau, T* c, idx ldc, T* work) {
    if (m <= 0 || n <= 0 || is_zero(tau)) return;
    if (left) {
        for (idx j = 0; j < n; ++j) {
            T* cj = c + j * ldc;
            const T w = dotc(m, cj, v);
            work[j] = w;
            axpy(m, neg(tau * conj(w)), v, cj);
        }
        return;
    }
    // rows per block: about 256 KiB of C, a multiple of 8, and at least 256
    // so that the axpys stay long enough to run at speed
    idx rows = idx(256 * 1024 / sizeof(T)) / n / 8 * 8;
    if (rows < 256) rows = 256;
    for (idx i0 = 0; i0 < m; i0 += rows) {
        const idx len = m - i0 < rows ? m - i0 : rows;
        T* w = work + i0;
        for (idx i = 0; i < len; ++i) w[i] = zero<T>();
        for (idx j = 0; j < n; ++j) axpy(len, v[j], c + i0 + j * ldc, w);
        for (idx j = 0; j < n; ++j) axpy(len, neg(tau * conj(v[j])), w, c + i0 + j * ldc);
    }
}

}  // namespace ork::lapack
