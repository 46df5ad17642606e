// The unit-stride inner kernels of level 1: the narrow interface that each
// processor generation implements (blas/level1/<generation>/inner.cpp). The
// generic templates handle flags, increments and quick returns and call these
// only for contiguous vectors with n > 0.
#pragma once

#include <cstddef>

#include "frame/types.h"

namespace ork::inner {

// y += alpha*x
void axpy(idx n, float alpha, const float* x, float* y);
void axpy(idx n, double alpha, const double* x, double* y);
void axpy(idx n, cx<float> alpha, const cx<float>* x, cx<float>* y);
void axpy(idx n, cx<double> alpha, const cx<double>* x, cx<double>* y);

// x *= alpha (complex by complex here; complex by real goes to the real form)
void scal(idx n, float alpha, float* x);
void scal(idx n, double alpha, double* x);
void scal(idx n, cx<float> alpha, cx<float>* x);
void scal(idx n, cx<double> alpha, cx<double>* x);

// Byte moves for copy and swap of every element type.
void copy_bytes(std::size_t bytes, const void* x, void* y);
void swap_bytes(std::size_t bytes, void* x, void* y);

// sum x_i*y_i; the complex forms conjugate x when conj_x is set.
float dot(idx n, const float* x, const float* y);
double dot(idx n, const double* x, const double* y);
cx<float> dot(idx n, const cx<float>* x, const cx<float>* y, bool conj_x);
cx<double> dot(idx n, const cx<double>* x, const cx<double>* y, bool conj_x);
// sum of float products accumulated in double, from start
double dot_widened(idx n, const float* x, const float* y, double start);

// sum |x_i|; reals only (a complex vector is summed as 2n reals)
float asum(idx n, const float* x);
double asum(idx n, const double* x);

// 1-based index of the largest (want_max) or smallest |x_i|, n >= 2, by the
// exact rule of blas::iamax: the present best is replaced unless it compares
// >= (<=) with the candidate, so the first of equal values wins and NaN is
// taken when met, together with the element right after it.
idx iamax(idx n, const float* x, bool want_max);
idx iamax(idx n, const double* x, bool want_max);

// Continues the scaled one-pass sum of squares (blas::scaled_norm) over n
// contiguous doubles from the state (scale, ssq), with exactly its operations.
void scaled_ssq(idx n, const double* x, double& scale, double& ssq);

// sum x_i^2 of floats accumulated in double: no scaling is needed, since the
// square of any float is a normal double.
double sumsq_widened(idx n, const float* x);

}  // namespace ork::inner
