// Inner kernels of the matrix-multiply engine for the generations with fused
// multiply-add (AVX2 and, built again under its flags, AVX-512): the
// template of fused_kernel.h over the generation's own vectors, with the
// register blocks of its tuning table.
#include "blas/gemm/fused_kernel.h"
#include "frame/simd/native.h"

namespace ork::gemm::inner {
namespace {

template <class T, int KFIX> void run(idx h, idx w, idx kkr, const T* pa, const T* pb, T* c, idx ldc) {
    fused_kernel::run<simd::native<real_t<T>>, T, KFIX>(h, w, kkr, pa, pb, c, ldc);
}

}  // namespace

void multiply(idx h, idx w, idx kkr, const double* pa, const double* pb, double* c, idx ldc, void*) { run<double, 0>(h, w, kkr, pa, pb, c, ldc); }
void multiply(idx h, idx w, idx kkr, const float* pa, const float* pb, float* c, idx ldc, void*) { run<float, 0>(h, w, kkr, pa, pb, c, ldc); }
void multiply(idx h, idx w, idx kkr, const cx<double>* pa, const cx<double>* pb, cx<double>* c, idx ldc, void*) { run<cx<double>, 0>(h, w, kkr, pa, pb, c, ldc); }
void multiply(idx h, idx w, idx kkr, const cx<float>* pa, const cx<float>* pb, cx<float>* c, idx ldc, void*) { run<cx<float>, 0>(h, w, kkr, pa, pb, c, ldc); }
void multiply_128(idx h, idx w, const double* pa, const double* pb, double* c, idx ldc, void*) { run<double, 128>(h, w, 128, pa, pb, c, ldc); }
void multiply_128(idx h, idx w, const float* pa, const float* pb, float* c, idx ldc, void*) { run<float, 128>(h, w, 128, pa, pb, c, ldc); }
void multiply_128(idx h, idx w, const cx<double>* pa, const cx<double>* pb, cx<double>* c, idx ldc, void*) { run<cx<double>, 128>(h, w, 128, pa, pb, c, ldc); }
void multiply_128(idx h, idx w, const cx<float>* pa, const cx<float>* pb, cx<float>* c, idx ldc, void*) { run<cx<float>, 128>(h, w, 128, pa, pb, c, ldc); }

}  // namespace ork::gemm::inner
