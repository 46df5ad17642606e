// The inner kernel of the matrix-multiply engine for generations with fused
// multiply-add, written once over a vector vocabulary (frame/simd/<gen>.h)
// and instantiated under each such generation's flags (blas/gemm/avx2/).
//
// A block of C of tuning<T>::ra rows by one panel of packed B is held in
// ra/(values per vector) x pw vector accumulators (two per column when
// complex: the sums against re(b) and against im(b)). Per depth step the
// kernel loads the group's A vectors once and broadcasts each B value of the
// depth row straight from packed B, so no scratch copy is needed.
//
// Order of operations (free in this engine; within one generation every
// piece computes it the same way, see kernel_sum in driver.h): each element
// of C receives, per depth block, a sum from zero over increasing depth of
// fused multiply-adds (alpha*a)*b + s, rounded once per step, added to C once
// at the end of the block. Complex values keep the four real sums
// re(a)re(b), im(a)re(b), re(a)im(b), im(a)im(b) so, combined as
// (rr + -ii, ir + ri).
#pragma once

#include "blas/gemm/inner.h"

namespace ork::gemm::fused_kernel {

// One panel of PW columns against h rows (whole groups) of packed A. KFIX
// fixes the depth at compile time (0: kkr at run time).
template <class S, class T, int PW, int KFIX>
void panel(idx h, idx kkr_run, const T* pa, const T* pb, T* c, idx ldc) {
    using R = real_t<T>;
    using V = typename S::V;
    constexpr int cb = is_complex<T> ? 2 : 1;           // accumulators per column
    constexpr int per_vec = S::lanes / cb;              // elements of T per vector
    constexpr int ra = tuning<T>::ra, mv = ra / per_vec; // A vectors per depth step
    static_assert(mv * per_vec == ra, "a group is whole vectors");
    const idx kkr = KFIX ? KFIX : kkr_run;
    const R* par = reinterpret_cast<const R*>(pa);
    const R* pbr = reinterpret_cast<const R*>(pb);
    for (idx g = 0; g < h / ra; ++g) {
        V acc[mv][PW * cb];
#pragma GCC unroll 24
        for (int v = 0; v < PW * cb; ++v)
#pragma GCC unroll 4
            for (int m = 0; m < mv; ++m) acc[m][v] = S::zero();
        const R* ap = par + g * ra * kkr * cb;
        const R* bp = pbr;
        T* cg = c + g * ra;
        // C's block is read once, after the depth loop: fetch every line of
        // it now (ra rows may span two or three lines of a column when the
        // column is not line-aligned or ra*sizeof(T) > 64).
#pragma GCC unroll 24
        for (int col = 0; col < PW; ++col) {
            const char* c0 = reinterpret_cast<const char*>(cg + col * ldc);
#pragma GCC unroll 4
            for (int off = 0; off < ra * int(sizeof(T)); off += 64) __builtin_prefetch(c0 + off, 1);
            __builtin_prefetch(c0 + ra * int(sizeof(T)) - 1, 1);
        }
#pragma GCC unroll 2
        for (idx r = 0; r < kkr; ++r) {
            V a[mv];
#pragma GCC unroll 4
            for (int m = 0; m < mv; ++m) a[m] = S::loadu(ap + m * S::lanes);
#pragma GCC unroll 24
            for (int v = 0; v < PW * cb; ++v) {
                const V b = S::broadcast(bp + v);
#pragma GCC unroll 4
                for (int m = 0; m < mv; ++m) acc[m][v] = S::fma(a[m], b, acc[m][v]);
            }
            ap += ra * cb;
            bp += PW * cb;
        }
        inner::add_block<S, T, PW, mv>(acc, cg, ldc, false);
    }
}

// The same arithmetic with neither operand packed, for products small enough
// that packing costs more than it saves: rows of a plain A (column-major,
// leading dimension lda) read in place, h of them in whole groups, each A
// vector scaled by alpha first unless SCALE is false (alpha = 1: alpha*a is a
// itself); B values broadcast from op(B) in place, TB 'N' (column j at b +
// j*ldb) or 'T' (row l at b + l*ldb). Each element of C gets the operations
// panel() gives it on the packed operands, over depth kk rather than kk
// rounded up to 4 (the packed rows past kk are zeros, which add nothing).
template <class S, class T, int PW, char TB, bool SCALE>
void direct_panel(idx h, idx kk, T alpha, const T* a, idx lda, const T* b, idx ldb, T* c, idx ldc) {
    using V = typename S::V;
    constexpr int ra = tuning<T>::ra, mv = ra / S::lanes;
    static_assert(!is_complex<T> && mv * S::lanes == ra, "a group is whole vectors of real values");
    const V al = S::set1(alpha);
    // where B value (l, col) is: b + l*bstep + col*cstep
    const idx bstep = TB == 'N' ? 1 : ldb, cstep = TB == 'N' ? ldb : 1;
    for (idx g = 0; g < h / ra; ++g) {
        V acc[mv][PW];
#pragma GCC unroll 24
        for (int v = 0; v < PW; ++v)
#pragma GCC unroll 4
            for (int m = 0; m < mv; ++m) acc[m][v] = S::zero();
        const T* ap = a + g * ra;
        const T* bp = b;
        T* cg = c + g * ra;
#pragma GCC unroll 2
        for (idx r = 0; r < kk; ++r) {
            V av[mv];
#pragma GCC unroll 4
            for (int m = 0; m < mv; ++m) av[m] = SCALE ? S::mul(al, S::loadu(ap + m * S::lanes)) : S::loadu(ap + m * S::lanes);
#pragma GCC unroll 24
            for (int v = 0; v < PW; ++v) {
                const V bv = S::broadcast(bp + v * cstep);
#pragma GCC unroll 4
                for (int m = 0; m < mv; ++m) acc[m][v] = S::fma(av[m], bv, acc[m][v]);
            }
            ap += lda;
            bp += bstep;
        }
        inner::add_block<S, T, PW, mv>(acc, cg, ldc, false);
    }
}

// C(0 .. h-1, 0 .. w-1) += alpha*A*op(B) over depth kk by direct_panel, the
// columns in the packed path's panels.
template <class S, class T, char TB, bool SCALE>
void run_direct(idx h, idx w, idx kk, T alpha, const T* a, idx lda, const T* b, idx ldb, T* c, idx ldc) {
    for_each_panel_fixed<T>(w, [&](idx c0, auto pw) {
        direct_panel<S, T, decltype(pw)::value, TB, SCALE>(h, kk, alpha, a, lda, TB == 'N' ? b + c0 * ldb : b + c0,
                                                            ldb, c + c0 * ldc, ldc);
    });
}

// Every panel of a w-column block, each with the kernel of its width.
template <class S, class T, int KFIX>
void run(idx h, idx w, idx kkr, const T* pa, const T* pb, T* c, idx ldc) {
    for_each_panel_fixed<T>(w, [&](idx c0, auto pw) {
        panel<S, T, decltype(pw)::value, KFIX>(h, kkr, pa, pb + c0 * kkr, c + c0 * ldc, ldc);
    });
}

}  // namespace ork::gemm::fused_kernel
