// The small LAPACK-level routines with the arguments of their exports,
// unwrapped (flags as letters, integers by value): what the generated shims of
// blas/lapack/table.py call, where the templates take other shapes.
#pragma once

#include "blas/lapack/factor.h"
#include "blas/lapack/larfx.h"
#include "blas/lapack/lasr.h"
#include "blas/lapack/tridiagonal.h"
#include "frame/vector.h"

namespace ork::lapack::entries {

// A*X = B with A factored: the real forms L*D*L^T; the complex ones U^H*D*U
// for iuplo = 1, else L*D*L^H.
template <class T>
void ptts2(idx n, idx nrhs, const real_t<T>* d, const T* e, T* b, idx ldb) {
    lapack::ptts2<T, false>(n, nrhs, d, e, b, ldb);
}
template <class T>
void ptts2(idx iuplo, idx n, idx nrhs, const real_t<T>* d, const T* e, T* b, idx ldb) {
    if (iuplo == 1) lapack::ptts2<T, true>(n, nrhs, d, e, b, ldb);
    else lapack::ptts2<T, false>(n, nrhs, d, e, b, ldb);
}

template <class T>
void larfx(char side, idx m, idx n, const T* v, T tau, T* c, idx ldc, T* work) {
    lapack::larfx(side == 'L', m, n, v, tau, c, ldc, work);
}

// The rotation-sequence kernels of one element type, by side, pivot and
// direction; flags other than L/R, V/T/B and F/B select nothing.
template <class T>
using lasr_fn = void (*)(idx, idx, const real_t<T>*, const real_t<T>*, T*, idx);

template <class T, bool Left>
lasr_fn<T> lasr_pick(char pv, bool forward) {
    switch (pv) {
    case 'V': return forward ? lapack::lasr<T, Left, pivot::variable, true> : lapack::lasr<T, Left, pivot::variable, false>;
    case 'T': return forward ? lapack::lasr<T, Left, pivot::top, true> : lapack::lasr<T, Left, pivot::top, false>;
    case 'B': return forward ? lapack::lasr<T, Left, pivot::bottom, true> : lapack::lasr<T, Left, pivot::bottom, false>;
    default: return nullptr;
    }
}

template <class T>
void lasr(char side, char pv, char direct, idx m, idx n, const real_t<T>* c, const real_t<T>* s, T* a, idx lda) {
    if ((side != 'L' && side != 'R') || (direct != 'F' && direct != 'B')) return;
    lasr_fn<T> f = side == 'L' ? lasr_pick<T, true>(pv, direct == 'F') : lasr_pick<T, false>(pv, direct == 'F');
    if (f) f(m, n, c, s, a, lda);
}

}  // namespace ork::lapack::entries
