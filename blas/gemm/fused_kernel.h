// The inner kernel of the matrix-multiply engine for generations with fused
// multiply-add, written once over a vector vocabulary (frame/simd/<gen>.h)
// and instantiated under each such generation's flags (blas/gemm/avx2/).
//
// A block of C of tuning<T>::ra rows by one panel of packed B is held in
// ra/(values per vector) x pw vector accumulators (two per column when
// complex: the sums against re(b) and against im(b)). Per depth step the
// kernel loads the group's A vectors once and broadcasts each B value of the
// depth row straight from packed B, so no scratch copy is needed. The same
// loop serves small products with A and B read in place (in_place_access).
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

// How the panel loop reads its operands. Each access gives the depth, the
// first A element of a group, the A vector m of a depth step, the address of
// the B value v of a depth step, and how far each operand moves per step.

// Packed operands: A in groups of ra rows by the depth, complex values as two
// reals; B in one panel, PW values (2*PW reals when complex) per depth row. KFIX
// fixes the depth at compile time (0: kkr at run time). C's block is read
// once, after the depth loop: every line of it is fetched first.
template <class S, class T, int PW, int KFIX> struct packed_access {
    using R = real_t<T>;
    static constexpr int cb = is_complex<T> ? 2 : 1;
    static constexpr bool prefetch_c = true;
    const R* a;
    const R* b;
    idx kkr;
    idx depth() const { return KFIX ? KFIX : kkr; }
    const R* a_group(idx g) const { return a + g * tuning<T>::ra * depth() * cb; }
    typename S::V a_vector(const R* ap, int m) const { return S::loadu(ap + m * S::lanes); }
    const R* b_value(const R* bp, int v) const { return bp + v; }
    static constexpr idx a_step() { return tuning<T>::ra * cb; }
    static constexpr idx b_step() { return PW * cb; }
};

// Neither operand packed, for products small enough that packing costs more
// than it saves: rows of a plain A (column-major, leading dimension lda) read
// in place, each A vector scaled by alpha first unless SCALE is false (alpha
// = 1: alpha*a is a itself); B values broadcast from op(B) in place, TB 'N'
// (column j at b + j*ldb) or 'T' (row l at b + l*ldb). Real types only. The
// depth is kk rather than kk rounded up to 4 (the packed rows past kk are
// zeros, which add nothing), so each element of C gets the operations of
// the packed operands.
template <class S, class T, char TB, bool SCALE> struct in_place_access {
    static_assert(!is_complex<T>, "the in-place operands are real");
    static constexpr bool prefetch_c = false;
    const T* a;
    const T* b;
    idx kk, lda, ldb;
    typename S::V alpha;
    idx depth() const { return kk; }
    const T* a_group(idx g) const { return a + g * tuning<T>::ra; }
    typename S::V a_vector(const T* ap, int m) const {
        const typename S::V v = S::loadu(ap + m * S::lanes);
        return SCALE ? S::mul(alpha, v) : v;
    }
    const T* b_value(const T* bp, int v) const { return bp + v * (TB == 'N' ? ldb : 1); }
    idx a_step() const { return lda; }
    idx b_step() const { return TB == 'N' ? 1 : ldb; }
};

// One panel of PW columns against h rows (whole groups) of A, its operands
// read through access X.
template <class S, class T, int PW, class X> void panel(idx h, const X x, T* c, idx ldc) {
    using V = typename S::V;
    constexpr int cb = is_complex<T> ? 2 : 1;            // accumulators per column
    constexpr int per_vec = S::lanes / cb;               // elements of T per vector
    constexpr int ra = tuning<T>::ra, mv = ra / per_vec;  // A vectors per depth step
    static_assert(mv * per_vec == ra, "a group is whole vectors");
    const idx kk = x.depth();
    for (idx g = 0; g < h / ra; ++g) {
        V acc[mv][PW * cb];
#pragma GCC unroll 24
        for (int v = 0; v < PW * cb; ++v)
#pragma GCC unroll 4
            for (int m = 0; m < mv; ++m) acc[m][v] = S::zero();
        auto ap = x.a_group(g);
        auto bp = x.b;
        T* cg = c + g * ra;
        // ra rows may span two or three lines of a column when the column is
        // not line-aligned or ra*sizeof(T) > 64
        if constexpr (X::prefetch_c) {
#pragma GCC unroll 24
            for (int col = 0; col < PW; ++col) {
                const char* c0 = reinterpret_cast<const char*>(cg + col * ldc);
#pragma GCC unroll 4
                for (int off = 0; off < ra * int(sizeof(T)); off += 64) __builtin_prefetch(c0 + off, 1);
                __builtin_prefetch(c0 + ra * int(sizeof(T)) - 1, 1);
            }
        }
#pragma GCC unroll 2
        for (idx r = 0; r < kk; ++r) {
            V a[mv];
#pragma GCC unroll 4
            for (int m = 0; m < mv; ++m) a[m] = x.a_vector(ap, m);
#pragma GCC unroll 24
            for (int v = 0; v < PW * cb; ++v) {
                const V b = S::broadcast(x.b_value(bp, v));
#pragma GCC unroll 4
                for (int m = 0; m < mv; ++m) acc[m][v] = S::fma(a[m], b, acc[m][v]);
            }
            ap += x.a_step();
            bp += x.b_step();
        }
        inner::add_block<S, T, PW, mv>(acc, cg, ldc, false);
    }
}

// C(0 .. h-1, 0 .. w-1) += alpha*A*op(B) over depth kk with the operands in
// place, the columns in the packed path's panels.
template <class S, class T, char TB, bool SCALE>
void run_direct(idx h, idx w, idx kk, T alpha, const T* a, idx lda, const T* b, idx ldb, T* c, idx ldc) {
    for_each_panel_fixed<T>(w, [&](idx c0, auto pw) {
        const T* b0 = TB == 'N' ? b + c0 * ldb : b + c0;
        panel<S, T, decltype(pw)::value>(h, in_place_access<S, T, TB, SCALE>{a, b0, kk, lda, ldb, S::set1(alpha)},
                                         c + c0 * ldc, ldc);
    });
}

// Every panel of a w-column block, each with the kernel of its width.
template <class S, class T, int KFIX>
void run(idx h, idx w, idx kkr, const T* pa, const T* pb, T* c, idx ldc) {
    for_each_panel_fixed<T>(w, [&](idx c0, auto pw) {
        using R = real_t<T>;
        using X = packed_access<S, T, decltype(pw)::value, KFIX>;
        const R* b0 = reinterpret_cast<const R*>(pb + c0 * kkr);
        panel<S, T, decltype(pw)::value>(h, X{reinterpret_cast<const R*>(pa), b0, kkr}, c + c0 * ldc, ldc);
    });
}

}  // namespace ork::gemm::fused_kernel
