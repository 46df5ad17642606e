// The inner kernel of the matrix-multiply engine: the narrow interface each
// processor generation implements (blas/gemm/<generation>/inner.cpp).
#pragma once

#include "blas/gemm/shape.h"

namespace ork::gemm::inner {

// C(0 .. h-1, 0 .. w-1) += packed A (h rows, a whole number of groups) times
// packed B (w columns, a multiple of q), over a depth of kkr (a multiple of
// 4). `scratch` is kkr*tuning<T>::scratch bytes, 64-byte aligned, for the
// kernel's own copy of one B panel where it keeps one. Each element of C receives the sum over the depth formed in
// increasing order in one accumulator, then added to C once; so the result
// of an element does not depend on where in a block it lies.
void multiply(idx h, idx w, idx kkr, const double* pa, const double* pb, double* c, idx ldc, void* scratch);
void multiply(idx h, idx w, idx kkr, const float* pa, const float* pb, float* c, idx ldc, void* scratch);
void multiply(idx h, idx w, idx kkr, const cx<double>* pa, const cx<double>* pb, cx<double>* c, idx ldc,
              void* scratch);
void multiply(idx h, idx w, idx kkr, const cx<float>* pa, const cx<float>* pb, cx<float>* c, idx ldc,
              void* scratch);

// The same for the full depth block of 128, with the depth loop count fixed.
void multiply_128(idx h, idx w, const double* pa, const double* pb, double* c, idx ldc, void* scratch);
void multiply_128(idx h, idx w, const float* pa, const float* pb, float* c, idx ldc, void* scratch);
void multiply_128(idx h, idx w, const cx<double>* pa, const cx<double>* pb, cx<double>* c, idx ldc, void* scratch);
void multiply_128(idx h, idx w, const cx<float>* pa, const cx<float>* pb, cx<float>* c, idx ldc, void* scratch);

// The kernel for a block of depth kkr: the fixed-depth form at 128.
template <class T>
void multiply_block(idx h, idx w, idx kkr, const T* pa, const T* pb, T* c, idx ldc, void* scratch) {
    if (kkr == 128) multiply_128(h, w, pa, pb, c, ldc, scratch);
    else multiply(h, w, kkr, pa, pb, c, ldc, scratch);
}

}  // namespace ork::gemm::inner
