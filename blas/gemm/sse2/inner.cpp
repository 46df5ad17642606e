// Inner kernels of the matrix-multiply engine for the baseline generation,
// in SSE2 intrinsics: twelve 16-byte accumulators per block of C.
//
// Each B value of the panel in hand is first broadcast into a scratch copy
// (two doubles or four singles per 16 bytes; the real and imaginary parts
// separately for complex), so that one packed multiply applies it to a whole
// vector of A rows without a shuffle in the depth loop. Per depth step a
// double 2 x 12 block then costs one A load and twelve multiply-adds with
// memory operands.
#include <xmmintrin.h>

#include <cstdint>

#include "blas/gemm/inner.h"
#include "frame/simd/sse2.h"

namespace ork::gemm::inner {
namespace {

template <class R> using simd = ork::simd::sse2<R>;

// One panel of PW columns against all row groups of packed A. KFIX fixes the
// depth at compile time (0: kkr at run time).
template <class T, int PW, int KFIX>
void panel(idx h, idx kkr_run, const T* pa, const T* pb, T* c, idx ldc, void* scratch) {
    using R = real_t<T>;
    using S = simd<R>;
    using V = typename S::V;
    constexpr int cb = is_complex<T> ? 2 : 1;          // accumulators per column
    constexpr int nv = PW * cb;                         // broadcast vectors per depth row
    constexpr int per_vec = S::lanes / cb;              // elements of T per vector
    constexpr int ra = shape<T>::ra, mv = ra / per_vec; // A vectors per depth step
    static_assert(mv * nv <= 12, "twelve accumulators");
    const idx kkr = KFIX ? KFIX : kkr_run;

    // the broadcast copy of the panel, depth row by depth row
    V* bs = static_cast<V*>(scratch);
    const R* pbr = reinterpret_cast<const R*>(pb);
    for (idx r = 0; r < kkr; ++r)
#pragma GCC unroll 12
        for (int v = 0; v < nv; ++v) bs[r * nv + v] = S::set1(pbr[r * nv + v]);

    const R* par = reinterpret_cast<const R*>(pa);
    for (idx g = 0; g < h / ra; ++g) {
        V acc[mv][nv];
#pragma GCC unroll 12
        for (int v = 0; v < nv; ++v)
#pragma GCC unroll 3
            for (int m = 0; m < mv; ++m) acc[m][v] = S::zero();
        const R* ap = par + g * ra * kkr * cb;
        const V* bp = bs;
        T* cg = c + g * ra;
        // the columns of C this block updates, fetched while it multiplies
#pragma GCC unroll 12
        for (int col = 0; col < PW; ++col) _mm_prefetch(reinterpret_cast<const char*>(cg + col * ldc), _MM_HINT_T0);
        // One depth step per turn: unrolling further makes GCC spill
        // accumulators; the loop costs two of ~37 instructions a step.
#pragma GCC unroll 1
        for (idx r = 0; r < kkr; ++r) {
            V a[mv];
#pragma GCC unroll 3
            for (int m = 0; m < mv; ++m) a[m] = S::load(ap + m * S::lanes);
#pragma GCC unroll 12
            for (int v = 0; v < nv; ++v)
#pragma GCC unroll 3
                for (int m = 0; m < mv; ++m) acc[m][v] = S::add(acc[m][v], S::mul(a[m], bp[v]));
            ap += ra * cb;
            bp += nv;
        }
        // wrap-up: add the block into C, column by column
        const bool aligned = (reinterpret_cast<std::uintptr_t>(cg) & 15) == 0 && (ldc * sizeof(T)) % 16 == 0;
        add_block<S, T, PW, mv>(acc, cg, ldc, aligned);
    }
}

template <class T, int KFIX>
void run(idx h, idx w, idx kkr, const T* pa, const T* pb, T* c, idx ldc, void* scratch) {
    for_each_panel_fixed<T>(w, [&](idx c0, auto pw) {
        panel<T, decltype(pw)::value, KFIX>(h, kkr, pa, pb + c0 * kkr, c + c0 * ldc, ldc, scratch);
    });
}

}  // namespace

void multiply(idx h, idx w, idx kkr, const double* pa, const double* pb, double* c, idx ldc, void* s) { run<double, 0>(h, w, kkr, pa, pb, c, ldc, s); }
void multiply(idx h, idx w, idx kkr, const float* pa, const float* pb, float* c, idx ldc, void* s) { run<float, 0>(h, w, kkr, pa, pb, c, ldc, s); }
void multiply(idx h, idx w, idx kkr, const cx<double>* pa, const cx<double>* pb, cx<double>* c, idx ldc, void* s) { run<cx<double>, 0>(h, w, kkr, pa, pb, c, ldc, s); }
void multiply(idx h, idx w, idx kkr, const cx<float>* pa, const cx<float>* pb, cx<float>* c, idx ldc, void* s) { run<cx<float>, 0>(h, w, kkr, pa, pb, c, ldc, s); }
void multiply_128(idx h, idx w, const double* pa, const double* pb, double* c, idx ldc, void* s) { run<double, 128>(h, w, 128, pa, pb, c, ldc, s); }
void multiply_128(idx h, idx w, const float* pa, const float* pb, float* c, idx ldc, void* s) { run<float, 128>(h, w, 128, pa, pb, c, ldc, s); }
void multiply_128(idx h, idx w, const cx<double>* pa, const cx<double>* pb, cx<double>* c, idx ldc, void* s) { run<cx<double>, 128>(h, w, 128, pa, pb, c, ldc, s); }
void multiply_128(idx h, idx w, const cx<float>* pa, const cx<float>* pb, cx<float>* c, idx ldc, void* s) { run<cx<float>, 128>(h, w, 128, pa, pb, c, ldc, s); }

}  // namespace ork::gemm::inner
