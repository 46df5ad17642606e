// Inner kernels of the matrix-multiply engine for the generations with fused
// multiply-add (AVX2 and, built again under its flags, AVX-512): the
// template of fused_kernel.h over the generation's own vectors, with the
// register blocks of its tuning table.
#include "blas/gemm/avx2/pack_b.h"
#include "blas/gemm/fused_kernel.h"
#include "frame/simd/native.h"

namespace ork::gemm::inner {
namespace {

template <class T, int KFIX> void run(idx h, idx w, idx kkr, const T* pa, const T* pb, T* c, idx ldc) {
    fused_kernel::run<simd::native<real_t<T>>, T, KFIX>(h, w, kkr, pa, pb, c, ldc);
}

// Each panel width of the table with its own transposer.
template <class T> void pack_plain(idx kk, idx pw, const T* b, idx ldb, T* dest) {
    constexpr auto& wd = tuning<T>::widths;
    if (pw == wd[0]) avx2_pack::panel<T, wd[0]>(kk, b, ldb, dest);
    else if (pw == wd[1]) avx2_pack::panel<T, wd[1]>(kk, b, ldb, dest);
    else avx2_pack::panel<T, wd[2]>(kk, b, ldb, dest);
}

template <class T> void direct(char tb, idx h, idx w, idx kk, T alpha, const T* a, idx lda, const T* b, idx ldb, T* c, idx ldc) {
    using S = simd::native<T>;
    const bool scale = !(alpha == T(1));
    if (tb == 'N') {
        if (scale) fused_kernel::run_direct<S, T, 'N', true>(h, w, kk, alpha, a, lda, b, ldb, c, ldc);
        else fused_kernel::run_direct<S, T, 'N', false>(h, w, kk, alpha, a, lda, b, ldb, c, ldc);
    } else {
        if (scale) fused_kernel::run_direct<S, T, 'T', true>(h, w, kk, alpha, a, lda, b, ldb, c, ldc);
        else fused_kernel::run_direct<S, T, 'T', false>(h, w, kk, alpha, a, lda, b, ldb, c, ldc);
    }
}

}  // namespace

void pack_b_plain(idx kk, idx pw, const double* b, idx ldb, double* dest) { pack_plain(kk, pw, b, ldb, dest); }
void pack_b_plain(idx kk, idx pw, const float* b, idx ldb, float* dest) { pack_plain(kk, pw, b, ldb, dest); }
void pack_b_plain(idx kk, idx pw, const cx<float>* b, idx ldb, cx<float>* dest) { pack_plain(kk, pw, b, ldb, dest); }
// 16-byte values: each is one vector already, copied whole.
void pack_b_plain(idx kk, idx pw, const cx<double>* b, idx ldb, cx<double>* dest) {
    double* d = reinterpret_cast<double*>(dest);
    for (idx r = 0; r < kk; ++r)
        for (idx j = 0; j < pw; ++j)
            _mm_storeu_pd(d + 2 * (pw * r + j), _mm_loadu_pd(reinterpret_cast<const double*>(b + r + j * ldb)));
}

void multiply_direct(char tb, idx h, idx w, idx kk, double alpha, const double* a, idx lda, const double* b, idx ldb, double* c, idx ldc) { direct(tb, h, w, kk, alpha, a, lda, b, ldb, c, ldc); }
void multiply_direct(char tb, idx h, idx w, idx kk, float alpha, const float* a, idx lda, const float* b, idx ldb, float* c, idx ldc) { direct(tb, h, w, kk, alpha, a, lda, b, ldb, c, ldc); }
void multiply(idx h, idx w, idx kkr, const double* pa, const double* pb, double* c, idx ldc, void*) { run<double, 0>(h, w, kkr, pa, pb, c, ldc); }
void multiply(idx h, idx w, idx kkr, const float* pa, const float* pb, float* c, idx ldc, void*) { run<float, 0>(h, w, kkr, pa, pb, c, ldc); }
void multiply(idx h, idx w, idx kkr, const cx<double>* pa, const cx<double>* pb, cx<double>* c, idx ldc, void*) { run<cx<double>, 0>(h, w, kkr, pa, pb, c, ldc); }
void multiply(idx h, idx w, idx kkr, const cx<float>* pa, const cx<float>* pb, cx<float>* c, idx ldc, void*) { run<cx<float>, 0>(h, w, kkr, pa, pb, c, ldc); }
void multiply_128(idx h, idx w, const double* pa, const double* pb, double* c, idx ldc, void*) { run<double, 128>(h, w, 128, pa, pb, c, ldc); }
void multiply_128(idx h, idx w, const float* pa, const float* pb, float* c, idx ldc, void*) { run<float, 128>(h, w, 128, pa, pb, c, ldc); }
void multiply_128(idx h, idx w, const cx<double>* pa, const cx<double>* pb, cx<double>* c, idx ldc, void*) { run<cx<double>, 128>(h, w, 128, pa, pb, c, ldc); }
void multiply_128(idx h, idx w, const cx<float>* pa, const cx<float>* pb, cx<float>* c, idx ldc, void*) { run<cx<float>, 128>(h, w, 128, pa, pb, c, ldc); }

}  // namespace ork::gemm::inner
