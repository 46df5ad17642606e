// Level-1 element-wise inner kernels (axpy, scal, copy, swap): the templates
// of blas/level1/vector_kernels.h over the vectors of the generation being
// built; every generation lists this file among its own inner kernels.
#include "blas/level1/inner.h"
#include "blas/level1/vector_kernels.h"
#include "frame/simd/native.h"

namespace ork::inner {
namespace {
template <class R> using S = simd::native<R>;
}  // namespace

void axpy(idx n, double alpha, const double* x, double* y) { vec::axpy<S<double>>(n, alpha, x, y); }
void axpy(idx n, float alpha, const float* x, float* y) { vec::axpy<S<float>>(n, alpha, x, y); }
void axpy(idx n, cx<double> alpha, const cx<double>* x, cx<double>* y) { vec::axpy<S<double>>(n, alpha, x, y); }
void axpy(idx n, cx<float> alpha, const cx<float>* x, cx<float>* y) { vec::axpy<S<float>>(n, alpha, x, y); }
void scal(idx n, double alpha, double* x) { vec::scal<S<double>>(n, alpha, x); }
void scal(idx n, float alpha, float* x) { vec::scal<S<float>>(n, alpha, x); }
void scal(idx n, cx<double> alpha, cx<double>* x) { vec::scal<S<double>>(n, alpha, x); }
void scal(idx n, cx<float> alpha, cx<float>* x) { vec::scal<S<float>>(n, alpha, x); }
void copy_bytes(std::size_t bytes, const void* x, void* y) { vec::copy_bytes<S<double>>(bytes, x, y); }
void swap_bytes(std::size_t bytes, void* x, void* y) { vec::swap_bytes<S<double>>(bytes, x, y); }

}  // namespace ork::inner
