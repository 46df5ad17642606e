// The inner kernel of the matrix-multiply engine: the narrow interface each
// processor generation implements (blas/gemm/<generation>/inner.cpp).
#pragma once

#include "blas/gemm/shape.h"
#include "frame/simd/complex.h"

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

// C(0 .. h-1, 0 .. w-1) += alpha*A*op(B) over depth kk with neither operand
// packed: A plain (column-major, h rows in whole groups), op(B) = B (tb 'N')
// or its transpose ('T'), w a multiple of q; each element gets the bits that
// packing both and multiply() give it. Only for the generations whose tuning
// table has direct_max.
void multiply_direct(char tb, idx h, idx w, idx kk, double alpha, const double* a, idx lda, const double* b, idx ldb,
                     double* c, idx ldc);
void multiply_direct(char tb, idx h, idx w, idx kk, float alpha, const float* a, idx lda, const float* b, idx ldb,
                     float* c, idx ldc);

// dest := the pw-column panel of a plain B (op(B) = B, columns b, b + ldb,
// ...) over depth rows 0 .. kk-1, row r at dest + pw*r: the packed-B panel
// layout of shape.h, rows past kk not written. For the generations whose
// tuning table sets own_b_packer; pw is one of the table's widths.
void pack_b_plain(idx kk, idx pw, const double* b, idx ldb, double* dest);
void pack_b_plain(idx kk, idx pw, const float* b, idx ldb, float* dest);
void pack_b_plain(idx kk, idx pw, const cx<double>* b, idx ldb, cx<double>* dest);
void pack_b_plain(idx kk, idx pw, const cx<float>* b, idx ldb, cx<float>* dest);

// Wrap-up of a register block: C(0 .. MV*lanes/cb - 1, 0 .. PW-1) += the
// accumulators, one vector of rows per acc[m][column] (for complex types two,
// the sums against re(b) and im(b), combined first); aligned accesses when
// the caller knows every column of the block is vector-aligned.
template <class S, class T, int PW, int MV, class V>
__attribute__((always_inline)) inline void add_block(const V (&acc)[MV][PW * (is_complex<T> ? 2 : 1)], T* cg,
                                                     idx ldc, bool aligned) {
    using R = real_t<T>;
#pragma GCC unroll 24
    for (int col = 0; col < PW; ++col) {
        R* cc = reinterpret_cast<R*>(cg + col * ldc);
#pragma GCC unroll 4
        for (int m = 0; m < MV; ++m) {
            V sum;
            if constexpr (is_complex<T>) sum = ork::simd::combine<S>(acc[m][2 * col], acc[m][2 * col + 1]);
            else sum = acc[m][col];
            R* p = cc + m * S::lanes;
            if (aligned) S::store(p, S::add(S::load(p), sum));
            else S::storeu(p, S::add(S::loadu(p), sum));
        }
    }
}

// The kernel for a block of depth kkr: the fixed-depth form at 128.
template <class T>
void multiply_block(idx h, idx w, idx kkr, const T* pa, const T* pb, T* c, idx ldc, void* scratch) {
    if (kkr == 128) multiply_128(h, w, pa, pb, c, ldc, scratch);
    else multiply(h, w, kkr, pa, pb, c, ldc, scratch);
}

}  // namespace ork::gemm::inner
