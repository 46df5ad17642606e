// The unit-stride inner kernels of the level-2 products and updates: the
// narrow interface that each processor generation implements (one source
// over the generation's vectors, blas/level2/native/inner.cpp). The
// templates of blas/level2 handle flags, storage, increments and quick
// returns and call these only with contiguous vectors.
//
// Each kernel computes every output element with the same operations in the
// same order wherever the element lies (tails are padded to full vectors), so
// a product split over rows or columns gives the bits of the whole product
// within one generation; the generations' bits differ where fused
// multiply-add is used (the products, never the updates).
#pragma once

#include "frame/types.h"

namespace ork::inner {

// y[0..m) += sum over k < n of A(:, k)*t[k], A column-major with leading
// dimension lda; several columns per pass over y. Per element: the products
// of a group of columns summed in column order, then added to y; with fused
// multiply-add (AVX2, AVX-512) added to y one by one in column order.
void gemv_n(idx m, idx n, const float* a, idx lda, const float* t, float* y);
void gemv_n(idx m, idx n, const double* a, idx lda, const double* t, double* y);
void gemv_n(idx m, idx n, const cx<float>* a, idx lda, const cx<float>* t, cx<float>* y);
void gemv_n(idx m, idx n, const cx<double>* a, idx lda, const cx<double>* t, cx<double>* y);

// r[k] += sum over i < m of op(A(i, k))*x[i] for k < n, op = conj when conj
// is set; several columns per pass over x. A column is summed in blocks of
// rows counted from row 0 whose sums are added with compensation, so the
// error does not grow with m; the order depends on m alone.
void gemv_t(idx m, idx n, const float* a, idx lda, const float* x, float* r, bool conj);
void gemv_t(idx m, idx n, const double* a, idx lda, const double* x, double* r, bool conj);
void gemv_t(idx m, idx n, const cx<float>* a, idx lda, const cx<float>* x, cx<float>* r, bool conj);
void gemv_t(idx m, idx n, const cx<double>* a, idx lda, const cx<double>* x, cx<double>* r, bool conj);

// One column of a symmetric or Hermitian product read once for both of its
// uses: y[i] += t*a[i] for i < m, and the result is sum op(a[i])*x[i],
// summed like a column of gemv_t.
float axpy_dot(idx m, const float* a, float t, const float* x, float* y, bool conj);
double axpy_dot(idx m, const double* a, double t, const double* x, double* y, bool conj);
cx<float> axpy_dot(idx m, const cx<float>* a, cx<float> t, const cx<float>* x, cx<float>* y, bool conj);
cx<double> axpy_dot(idx m, const cx<double>* a, cx<double> t, const cx<double>* x, cx<double>* y, bool conj);

// Four columns in one pass: y[i] += sum over k < 4 of t[k]*a[k][i], and
// sums[k] grows by sum op(a[k][i])*x[i].
void axpy_dot4(idx m, const float* const* a, const float* t, const float* x, float* y, float* sums, bool conj);
void axpy_dot4(idx m, const double* const* a, const double* t, const double* x, double* y, double* sums, bool conj);
void axpy_dot4(idx m, const cx<float>* const* a, const cx<float>* t, const cx<float>* x, cx<float>* y, cx<float>* sums, bool conj);
void axpy_dot4(idx m, const cx<double>* const* a, const cx<double>* t, const cx<double>* x, cx<double>* y, cx<double>* sums, bool conj);

// One column of a rank-2 update: a[i] := (a[i] + x[i]*t1) + y[i]*t2.
void axpy2(idx m, const float* x, float t1, const float* y, float t2, float* a);
void axpy2(idx m, const double* x, double t1, const double* y, double t2, double* a);
void axpy2(idx m, const cx<float>* x, cx<float> t1, const cx<float>* y, cx<float> t2, cx<float>* a);
void axpy2(idx m, const cx<double>* x, cx<double> t1, const cx<double>* y, cx<double> t2, cx<double>* a);

// Four columns of an update in one pass over x (and y): a[k][i] :=
// a[k][i] + x[i]*t1[k] when y is null, else (a[k][i] + x[i]*t1[k]) +
// y[i]*t2[k]: per element the operations of axpy and axpy2.
void update4(idx m, const float* x, const float* t1, const float* y, const float* t2, float* const* a);
void update4(idx m, const double* x, const double* t1, const double* y, const double* t2, double* const* a);
void update4(idx m, const cx<float>* x, const cx<float>* t1, const cx<float>* y, const cx<float>* t2, cx<float>* const* a);
void update4(idx m, const cx<double>* x, const cx<double>* t1, const cx<double>* y, const cx<double>* t2, cx<double>* const* a);

}  // namespace ork::inner
