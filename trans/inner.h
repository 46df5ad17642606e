// The contiguous inner kernels of transposition and scaled addition: the
// narrow interface each processor generation implements
// (trans/<generation>/inner.cpp). The generic kernels (trans/transpose.h)
// handle orderings, strides, splitting and in-place rules and call these on
// unit-stride pieces only. Conj applies the complex conjugate to the moved
// (source) element before scaling; it is false for the real types.
#pragma once

#include <cstdint>

#include "frame/types.h"

namespace ork::trans::inner {

using uidx = std::uint64_t;

// b[j] = alpha*op(a[j]), j = 0 .. n-1, in increasing j. b may equal a or lie
// below it (the forward in-place copy): every step loads before it stores.
// Pairs of elements per step once b is 16-byte aligned, the first element
// alone when it is not and n >= 9.
template <class T, bool Conj>
void scale(uidx n, T alpha, const T* a, T* b);

// b[j*ldb + i] = alpha*op(a[i*lda + j]) for i < rows, j < cols, rows and
// cols >= 1, by the tiles of ork::trans::panels_t (trans/recursion.h). a and
// b do not overlap.
template <class T, bool Conj>
void rec_t(uidx rows, uidx cols, T alpha, const T* a, uidx lda, T* b, uidx ldb);

// c[j] = alpha*opA(a[j]) + beta*opB(b[j]), same alignment rule as scale; c
// may equal a or b.
template <class T, bool ConjA, bool ConjB>
void axpby(uidx n, T alpha, const T* a, T beta, const T* b, T* c);

}  // namespace ork::trans::inner
