// The matrix-multiply drivers, written once over the element type:
// C := alpha*op(A)*op(B) + beta*C by a blocked loop nest over packed panels.
//
// Per type, `engine<T>` holds what differs: the plan of the blocking, the
// workspace and how it is carved, and which quick paths come first; the
// numbers are the generation's tuning table (tuning.h). The double engine is
// the model: one beta pass, alpha folded into packed A, depth blocks halved
// when one and a bit would remain, row blocks taller for shallow, large
// products, the rows below a whole group through the plain product and the
// last n mod q columns through the dispatched gemv.
#pragma once

#include <cstdint>
#include <type_traits>

#include "blas/gemm/inner.h"
#include "blas/gemm/pack.h"
#include "blas/gemm/small.h"
#include "frame/export.h"
#include "frame/upcall.h"

namespace ork::gemm {

inline char* page_after(char* p) { return reinterpret_cast<char*>((std::uintptr_t(p) & ~std::uintptr_t(4095)) + 4096); }
inline char* floor_to(char* p, std::uintptr_t a) { return reinterpret_cast<char*>(std::uintptr_t(p) & ~(a - 1)); }

// Where one call's workspace puts its three regions.
template <class T>
struct workspace {
    void* block = nullptr;
    T* a = nullptr;        // one mb x kb block of alpha*op(A)
    T* b = nullptr;        // one kb x nb panel of op(B)
    void* scratch = nullptr;  // the inner kernel's broadcast copy of one B panel
};

template <class T> struct engine;

// ---- double: depth blocks of kb, halved for kb < k <= 2*kb so that no
// short block is left over; row blocks of mb, taller for shallow, large
// products; column blocks of up to nb. The numbers and the workspace's byte
// layout are the generation's (tuning.h).
template <> struct engine<double> {
    using P = tuning<double>;
    static constexpr idx small_below = P::small_below;
    static idx kb(idx k) {
        if (k <= P::kb || k > 2 * P::kb) return P::kb;
        idx h = (k / 2) & ~idx(3);
        return h < 4 ? 4 : h;
    }
    static idx mb(idx m, idx n, idx k) {
        if (k > 2 * P::kb || m + n < P::shallow_sum) return P::mb;
        idx kk = k < kb(k) ? k : kb(k);
        int i = 0;
        while (i < 3 && kk > P::shallow_depth[i]) ++i;
        return P::shallow_rows[i];
    }
    static idx nb(idx n) { return n < P::nb ? n : P::nb; }
    template <class F> static void depth_blocks(idx k, F f) {
        const idx b = kb(k);
        for (idx k0 = 0; k0 < k; k0 += b) f(k0, k - k0 < b ? k - k0 : b);
    }
    static workspace<double> take(idx m, idx n, idx k) {
        const std::size_t KB = std::size_t(kb(k)), MB = std::size_t(mb(m, n, k)), NB = std::size_t(nb(n));
        constexpr std::size_t S = P::scratch;
        workspace<double> w;
        char* p = static_cast<char*>(ork_serv_allocate(KB * S + KB * MB * 8 + KB * NB * 8 + P::ws_extra, 128));
        w.block = p;
        w.a = reinterpret_cast<double*>(page_after(p));
        char* q = p + KB * MB * 8 + P::ws_a_gap;
        w.scratch = floor_to(q, 128) + P::ws_scratch_at;
        w.b = reinterpret_cast<double*>(page_after(q + KB * S + P::ws_b_at));
        return w;
    }
};

// ---- single: depth blocks of kb with the short one first, packed path
// only from small_below on in every dimension.
template <> struct engine<float> {
    using P = tuning<float>;
    static constexpr idx small_below = P::small_below;
    static idx mb(idx, idx, idx) { return P::mb; }
    static idx nb(idx n) { return n < P::nb ? n : P::nb; }
    template <class F> static void depth_blocks(idx k, F f) {
        idx first = k % P::kb ? k % P::kb : P::kb;
        f(idx(0), k < first ? k : first);
        for (idx k0 = first; k0 < k; k0 += P::kb) f(k0, idx(P::kb));
    }
    static workspace<float> take(idx, idx n, idx) {
        constexpr std::size_t scratch_at = 4096 + P::mb * P::kb * 4 + P::ws_a_gap,
                              b_at = scratch_at + P::ws_scratch_at + P::kb * P::scratch + P::ws_b_gap;
        const std::size_t NB = std::size_t(nb(n));
        workspace<float> w;
        char* p = static_cast<char*>(ork_serv_allocate(NB * P::kb * 4 + b_at + P::ws_extra, 128));
        w.block = p;
        w.a = reinterpret_cast<float*>(page_after(p));
        w.b = reinterpret_cast<float*>(page_after(p + b_at));
        w.scratch = floor_to(p + scratch_at, 128) + P::ws_scratch_at;
        return w;
    }
};

// ---- complex: depth blocks of kb, row blocks of mb, column blocks of up
// to nb.
template <class R> struct complex_engine {
    using T = cx<R>;
    using P = tuning<T>;
    static constexpr idx small_below = P::small_below, kbc = P::kb, mbc = P::mb;
    static idx mb(idx, idx, idx) { return mbc; }
    static idx nb(idx n) { return n < P::nb ? n : P::nb; }
    template <class F> static void depth_blocks(idx k, F f) {
        for (idx k0 = 0; k0 < k; k0 += kbc) f(k0, k - k0 < kbc ? k - k0 : kbc);
    }
    static workspace<T> take(idx, idx n, idx) {
        constexpr std::size_t es = sizeof(T), abytes = std::size_t(mbc * kbc) * es;
        const std::size_t NB = std::size_t(nb(n));
        workspace<T> w;
        char* p = static_cast<char*>(ork_serv_allocate(kbc * es * NB + abytes + P::ws_extra, 128));
        w.block = p;
        w.a = reinterpret_cast<T*>(page_after(p));
        w.scratch = floor_to(p + 4096 + abytes, 128) + P::ws_scratch_at;
        w.b = reinterpret_cast<T*>(page_after(p + 4096 + abytes + P::ws_scratch_at + kbc * P::scratch));
        return w;
    }
};
template <> struct engine<cx<float>> : complex_engine<float> {};
template <> struct engine<cx<double>> : complex_engine<double> {};

template <class T> void release(const workspace<T>& w) { ork_serv_deallocate(w.block); }

// The packed rows of one depth block against one packed B panel: row blocks
// of mb, each packed and multiplied. Rows beyond the last whole group are
// left to the caller.
template <class T>
void rows_against_panel(char ta, idx m, idx kk, idx w, idx mb, T alpha, const T* a, idx lda, const T* pb, T* c,
                        idx ldc, T* pa, void* scratch) {
    const idx kkr = round_up4(kk);
    for (idx i0 = 0; i0 + shape<T>::ra <= m; i0 += mb) {
        const idx h = pack_a(ta, m - i0 < mb ? m - i0 : mb, kk, op_ptr(ta, a, lda, i0, 0), lda, pa, alpha);
        inner::multiply_block(h, w, kkr, pa, pb, c + i0, ldc, scratch);
    }
}

// The last n mod q columns: one matrix-vector product each over the whole
// depth through libork's dispatched gemv (its threading applies;
// frame/upcall.h), with column j of op(B) as x (conjugated into a copy for a
// conjugate-transposed B, which gemv cannot do itself). gemv gets the
// caller's letter for A as written (`ta_written`, 0 when there is none)
// when it is one gemv accepts, N, T or C in either case; another letter,
// which the real drivers read as a transpose, goes on as `ta`.
template <class T>
void last_columns(char ta, char tb, idx m, idx n, idx k, T alpha, const T* a, idx lda, const T* b, idx ldb, T* c,
                  idx ldc, char ta_written = 0) {
    const char up = char(ta_written & ~0x20);
    const char gemv_flag = up == 'N' || up == 'T' || up == 'C' ? ta_written : ta;
    const idx j1 = n - n % shape<T>::q;
    if (j1 == n) return;
    T* conj_x = nullptr;
    if (is_complex<T> && tb == 'C' && k > 0) conj_x = static_cast<T*>(ork_serv_allocate(std::size_t(k) * sizeof(T), 64));
    for (idx j = j1; j < n; ++j) {
        const T* x = op_ptr(tb, b, ldb, idx(0), j);
        idx incx = tb == 'N' ? 1 : ldb;
        if (conj_x) {
            for (idx l = 0; l < k; ++l) conj_x[l] = conj(x[l * incx]);
            x = conj_x;
            incx = 1;
        }
        if (ta == 'N') upcall::gemv(gemv_flag, m, k, alpha, a, lda, x, incx, c + j * ldc);
        else upcall::gemv(gemv_flag, k, m, alpha, a, lda, x, incx, c + j * ldc);
    }
    if (conj_x) ork_serv_deallocate(conj_x);
}

// The packed kernel's arithmetic for one element of C, without packing: per
// depth block, a sum from zero over increasing depth of (alpha*a)*b (for
// complex types the four real partial sums the kernel keeps, combined as it
// combines them), then added to C. Used for what the packed path leaves over
// when a call must give every element the same bits whatever the shape of the
// call it is part of.
// a*b + s: rounded once where the generation's kernels for T fuse, else
// twice.
inline float fused(float a, float b, float s) { return __builtin_fmaf(a, b, s); }
inline double fused(double a, double b, double s) { return __builtin_fma(a, b, s); }
template <class T, class R> inline R mul_add(R a, R b, R s) {
    if constexpr (tuning<T>::fused) return fused(a, b, s);
    else return s + a * b;
}
template <class T> struct kernel_sum {
    T s;
    void add(T a, T b) { s = mul_add<T>(a, b, s); }
    T value() const { return s; }
};
template <class R> struct kernel_sum<cx<R>> {
    using T = cx<R>;
    R rr, ir, ri, ii;  // a.re*b.re, a.im*b.re, a.re*b.im, a.im*b.im
    void add(T a, T b) {
        rr = mul_add<T>(a.re, b.re, rr);
        ir = mul_add<T>(a.im, b.re, ir);
        ri = mul_add<T>(a.re, b.im, ri);
        ii = mul_add<T>(a.im, b.im, ii);
    }
    T value() const { return {rr + -ii, ir + ri}; }
};

inline constexpr idx sum_rows = 256;  // elements of C summed side by side

// C(i, j) += the sum over l of sa(i, l)*op(B)(l, j) for i < h, j < n, with
// sa the h x kk chunk of alpha*op(A) (column-major, ld h) and b at op(B)'s
// first row of the depth block: each sum from zero in increasing depth in the
// kernel's arithmetic, four depths per pass over contiguous columns of sa.
// Compiled for the fused multiply-add of the generation's kernels where they
// fuse (ORK_GEMM_SUMS, tuning.h), so that the sums vectorise.
// Fewer than few_rows rows (a call's leftover rows): side_cols columns side
// by side, so that their sums, each a chain of dependent multiply-adds,
// overlap; each element's operations are the same.
inline constexpr idx few_rows = 16, side_cols = 8;
template <class T>
ORK_GEMM_SUMS void add_chunk_sums(char tb, idx h, idx kk, idx n, const T* sa, const T* b, idx ldb, T* c, idx ldc) {
    if (h < few_rows) {
        for (idx j0 = 0; j0 < n; j0 += side_cols) {
            const idx jn = n - j0 < side_cols ? n - j0 : side_cols;
            kernel_sum<T> acc[side_cols][few_rows];
            for (idx jj = 0; jj < jn; ++jj)
                for (idx i = 0; i < h; ++i) acc[jj][i] = kernel_sum<T>{};
            for (idx l = 0; l < kk; ++l)
                for (idx jj = 0; jj < jn; ++jj) {
                    const T bv = op_at(tb, b, ldb, l, j0 + jj);
                    for (idx i = 0; i < h; ++i) acc[jj][i].add(sa[i + l * h], bv);
                }
            for (idx jj = 0; jj < jn; ++jj)
                for (idx i = 0; i < h; ++i) c[i + (j0 + jj) * ldc] = c[i + (j0 + jj) * ldc] + acc[jj][i].value();
        }
        return;
    }
    for (idx j = 0; j < n; ++j) {
        kernel_sum<T> acc[sum_rows];  // only the h in use are cleared
        for (idx i = 0; i < h; ++i) acc[i] = kernel_sum<T>{};
        idx l = 0;
        for (; l + 4 <= kk; l += 4) {
            const T b0 = op_at(tb, b, ldb, l, j), b1 = op_at(tb, b, ldb, l + 1, j), b2 = op_at(tb, b, ldb, l + 2, j),
                    b3 = op_at(tb, b, ldb, l + 3, j);
            const T* a0 = sa + l * h;
            for (idx i = 0; i < h; ++i) {
                kernel_sum<T> s = acc[i];
                s.add(a0[i], b0);
                s.add(a0[i + h], b1);
                s.add(a0[i + 2 * h], b2);
                s.add(a0[i + 3 * h], b3);
                acc[i] = s;
            }
        }
        for (; l < kk; ++l) {
            const T bv = op_at(tb, b, ldb, l, j);
            for (idx i = 0; i < h; ++i) acc[i].add(sa[i + l * h], bv);
        }
        T* cj = c + j * ldc;
        for (idx i = 0; i < h; ++i) cj[i] = cj[i] + acc[i].value();
    }
}

// C += alpha*op(A)*op(B) with each element's operations those of the packed
// kernel: per chunk of rows and depth block, alpha*op(A) rounded as the
// packer rounds it, then the block's sums added to C in increasing depth.
// The scaled rows of A for in_kernel_order: rows x the deepest depth block.
template <class T, class E> std::size_t kernel_order_elements(idx m, idx k) {
    idx deepest = 0;
    E::depth_blocks(k, [&](idx, idx kk) { deepest = kk > deepest ? kk : deepest; });
    return std::size_t((m < sum_rows ? m : sum_rows) * deepest);
}

// `sa`: room for kernel_order_elements(m, k) values, or null to take it here.
template <class T, class E>
void in_kernel_order(char ta, char tb, idx m, idx n, idx k, T alpha, const T* a, idx lda, const T* b, idx ldb, T* c,
                     idx ldc, T* sa = nullptr) {
    if (m < 1 || n < 1 || k < 1) return;
    const bool own = !sa;
    if (own) sa = static_cast<T*>(ork_serv_allocate(kernel_order_elements<T, E>(m, k) * sizeof(T), 64));
    for (idx i0 = 0; i0 < m; i0 += sum_rows) {
        const idx h = m - i0 < sum_rows ? m - i0 : sum_rows;
        E::depth_blocks(k, [&](idx k0, idx kk) {
            for (idx l = 0; l < kk; ++l)
                for (idx i = 0; i < h; ++i) sa[i + l * h] = alpha * op_at(ta, a, lda, i0 + i, k0 + l);
            add_chunk_sums(tb, h, kk, n, sa, op_ptr(tb, b, ldb, k0, idx(0)), ldb, c + i0, ldc);
        });
    }
    if (own) ork_serv_deallocate(sa);
}

// Whether the generation sends the rows below the last whole group through
// its packed kernel too (tuning.h: group_leftovers), which gives them the
// packed rows' arithmetic; else they take the plain product.
template <class T> constexpr bool group_leftovers() {
    if constexpr (requires { tuning<T>::group_leftovers; }) return tuning<T>::group_leftovers;
    else return false;
}

// Products whose every dimension is at most the generation's direct_max
// (tuning.h; none where it has none), with A plain: the packed rows and
// columns (mp x np) by the kernel that reads both operands in place, with
// the packed path's depth blocks and so its bits. False when not taken.
template <class T, class E>
bool direct_product(char ta, char tb, idx mp, idx np, idx k, T alpha, const T* a, idx lda, const T* b, idx ldb, T* c,
                    idx ldc) {
    if constexpr (requires { tuning<T>::direct_max; }) {
        constexpr idx most = tuning<T>::direct_max;
        if (ta != 'N' || mp > most || np > most || k > most) return false;
        E::depth_blocks(k, [&](idx k0, idx kk) {
            inner::multiply_direct(tb, mp, np, kk, alpha, a + k0 * lda, lda, op_ptr(tb, b, ldb, k0, idx(0)), ldb, c, ldc);
        });
        return true;
    } else {
        return false;
    }
}

// What the nests below leave after the packed rows (mp) and columns: the
// rows below mp over the whole groups of columns, in the packed kernel's
// order where the generation groups its leftovers (room: taken by the
// caller, kernel_order_elements(m - mp, k)), else by the plain product per
// depth block; and the last n mod q columns through gemv.
template <class T, class E>
void rest_of_product(char ta, char tb, idx m, idx n, idx k, idx mp, T alpha, const T* a, idx lda, const T* b, idx ldb,
                     T* c, idx ldc, char ta_written, T* room) {
    const idx np = n - n % shape<T>::q;
    if (mp < m) {
        if constexpr (group_leftovers<T>())
            in_kernel_order<T, E>(ta, tb, m - mp, np, k, alpha, op_ptr(ta, a, lda, mp, idx(0)), lda, b, ldb, c + mp,
                                  ldc, room);
        else
            E::depth_blocks(k, [&](idx k0, idx kk) {
                pst(ta, tb, m - mp, np, kk, alpha, op_ptr(ta, a, lda, mp, k0), lda, op_ptr(tb, b, ldb, k0, idx(0)),
                    ldb, one<T>(), c + mp, ldc);
            });
    }
    last_columns(ta, tb, m, n, k, alpha, a, lda, b, ldb, c, ldc, ta_written);
}

// The h < ra rows below the last whole group against a packed B block (kk
// deep, w columns): alpha*op(A) of those rows packed as one group with zero
// rows below them, multiplied by the packed kernel into a copy of their rows
// of C (zeros below), which is copied back; leftover_cols columns a pass.
// Each element gets the operations of a packed row.
template <class T> constexpr idx leftover_cols = 16 * shape<T>::widths[0];  // whole panels
template <class T, class E> std::size_t leftover_elements(idx k) {
    idx deepest = 0;
    E::depth_blocks(k, [&](idx, idx kk) { deepest = kk > deepest ? kk : deepest; });
    return std::size_t(shape<T>::ra * (round_up4(deepest) + leftover_cols<T>));
}
template <class T>
void leftover_group(char ta, idx h, idx kk, idx w, T alpha, const T* a, idx lda, const T* pb, T* c, idx ldc, T* room,
                    void* scratch) {
    constexpr idx ra = shape<T>::ra, cols = leftover_cols<T>;
    const idx kkr = round_up4(kk);
    T *pa = room, *t = room + ra * kkr;
    for (idx j = 0; j < kkr; ++j)
        for (idx r = 0; r < ra; ++r) pa[j * ra + r] = r < h && j < kk ? alpha * op_at(ta, a, lda, r, j) : zero<T>();
    for (idx c0 = 0; c0 < w; c0 += cols) {
        const idx wc = w - c0 < cols ? w - c0 : cols;
        for (idx j = 0; j < wc; ++j)
            for (idx r = 0; r < ra; ++r) t[r + j * ra] = r < h ? c[r + (c0 + j) * ldc] : zero<T>();
        inner::multiply_block(ra, wc, kkr, pa, pb + c0 * kkr, t, ra, scratch);
        for (idx j = 0; j < wc; ++j)
            for (idx r = 0; r < h; ++r) c[r + (c0 + j) * ldc] = t[r + j * ra];
    }
}

// Room for the leftover rows of an m x k product whose packed rows end at
// mp, where the generation groups them: taken before C is written, so that
// running out of memory leaves C as it was. Null when not needed.
template <class T, class E> T* take_leftover_room(idx m, idx mp, idx k) {
    if constexpr (group_leftovers<T>()) {
        if (mp == m) return nullptr;
        const std::size_t e = kernel_order_elements<T, E>(m - mp, k), g = leftover_elements<T, E>(k);
        return static_cast<T*>(ork_serv_allocate((e > g ? e : g) * sizeof(T), 64));
    } else {
        return nullptr;
    }
}

// C += alpha*op(A)*op(B) by the blocked nest, column blocks outermost; C has
// its beta already. The plain product takes problems below the packed path.
template <class T, class E = engine<T>>
void accumulate(char ta, char tb, idx m, idx n, idx k, T alpha, const T* a, idx lda, const T* b, idx ldb, T* c,
                idx ldc, char ta_written = 0) {
    if (m < 1 || n < 1 || alpha == zero<T>()) return;
    if (m < E::small_below || n < E::small_below || k < E::small_below)
        return pst(ta, tb, m, n, k, alpha, a, lda, b, ldb, one<T>(), c, ldc);
    const idx np = n - n % shape<T>::q, mp = m - m % shape<T>::ra;
    T* room = take_leftover_room<T, E>(m, mp, k);
    if (direct_product<T, E>(ta, tb, mp, np, k, alpha, a, lda, b, ldb, c, ldc)) {
        rest_of_product<T, E>(ta, tb, m, n, k, mp, alpha, a, lda, b, ldb, c, ldc, ta_written, room);
        if (room) ork_serv_deallocate(room);
        return;
    }
    const idx mb = E::mb(m, n, k), nb = E::nb(n);
    workspace<T> ws = E::take(m, n, k);
    for (idx j0 = 0; j0 < np; j0 += nb) {
        const idx w = np - j0 < nb ? np - j0 : nb;
        E::depth_blocks(k, [&](idx k0, idx kk) {
            pack_b(tb, kk, w, op_ptr(tb, b, ldb, k0, j0), ldb, ws.b);
            rows_against_panel(ta, mp, kk, w, mb, alpha, op_ptr(ta, a, lda, idx(0), k0), lda, ws.b, c + j0 * ldc,
                               ldc, ws.a, ws.scratch);
            if (mp == m) return;
            if constexpr (group_leftovers<T>())
                leftover_group(ta, m - mp, kk, w, alpha, op_ptr(ta, a, lda, mp, k0), lda, ws.b, c + mp + j0 * ldc, ldc,
                               room, ws.scratch);
            else
                pst(ta, tb, m - mp, w, kk, alpha, op_ptr(ta, a, lda, mp, k0), lda, op_ptr(tb, b, ldb, k0, j0), ldb,
                    one<T>(), c + mp + j0 * ldc, ldc);
        });
    }
    release(ws);
    if (room) ork_serv_deallocate(room);
    last_columns(ta, tb, m, n, k, alpha, a, lda, b, ldb, c, ldc, ta_written);
}

// The same result with row blocks outermost: each block of op(A) is packed
// once per depth block and meets every column block in turn. Every element
// of C receives the same operations in the same order as in accumulate().
template <class T, class E = engine<T>>
void accumulate_rows_outer(char ta, char tb, idx m, idx n, idx k, T alpha, const T* a, idx lda, const T* b,
                           idx ldb, T* c, idx ldc, char ta_written = 0) {
    if (m < 1 || n < 1 || alpha == zero<T>()) return;
    if (m < E::small_below || n < E::small_below || k < E::small_below)
        return pst(ta, tb, m, n, k, alpha, a, lda, b, ldb, one<T>(), c, ldc);
    const idx np = n - n % shape<T>::q, mp = m - m % shape<T>::ra;
    T* room = take_leftover_room<T, E>(m, mp, k);
    if (direct_product<T, E>(ta, tb, mp, np, k, alpha, a, lda, b, ldb, c, ldc)) {
        rest_of_product<T, E>(ta, tb, m, n, k, mp, alpha, a, lda, b, ldb, c, ldc, ta_written, room);
        if (room) ork_serv_deallocate(room);
        return;
    }
    const idx mb = E::mb(m, n, k), nb = E::nb(n);
    workspace<T> ws = E::take(m, n, k);
    for (idx i0 = 0; i0 < mp; i0 += mb) {
        const idx hrows = mp - i0 < mb ? mp - i0 : mb;
        E::depth_blocks(k, [&](idx k0, idx kk) {
            const idx kkr = round_up4(kk);
            const idx h = pack_a(ta, hrows, kk, op_ptr(ta, a, lda, i0, k0), lda, ws.a, alpha);
            for (idx j0 = 0; j0 < np; j0 += nb) {
                const idx w = np - j0 < nb ? np - j0 : nb;
                pack_b(tb, kk, w, op_ptr(tb, b, ldb, k0, j0), ldb, ws.b);
                T* cc = c + i0 + j0 * ldc;
                inner::multiply_block(h, w, kkr, ws.a, ws.b, cc, ldc, ws.scratch);
            }
        });
    }
    release(ws);
    rest_of_product<T, E>(ta, tb, m, n, k, mp, alpha, a, lda, b, ldb, c, ldc, ta_written, room);
    if (room) ork_serv_deallocate(room);
}

// The loop-nest pieces' form of the product: the packed path on the whole
// row groups and panel columns, everything else (leftover rows and columns,
// products too small to pack) in the packed kernel's order. Each element of
// C then gets the same bits whatever the shape of the call, and so whatever
// the split of one product over threads.
template <class T, class E, bool RowsOuter>
void accumulate_uniform(char ta, char tb, idx m, idx n, idx k, T alpha, const T* a, idx lda, const T* b, idx ldb,
                        T* c, idx ldc) {
    if (m < 1 || n < 1 || alpha == zero<T>()) return;
    if (m < E::small_below || n < E::small_below || k < E::small_below)
        return in_kernel_order<T, E>(ta, tb, m, n, k, alpha, a, lda, b, ldb, c, ldc);
    const idx np = n - n % shape<T>::q, mp = m - m % shape<T>::ra;
    // The leftovers' workspace is taken before anything is written to C, so
    // that a caller who runs this where running out of memory leaves the
    // call early finds C as it gave it (the packed path takes its own first
    // thing too).
    const bool packed = mp >= E::small_below && np >= E::small_below;
    // where the generation groups its leftover rows, the nests take them
    // too, with the same operations
    const idx rows = packed && group_leftovers<T>() ? m : mp;
    T* sa = nullptr;
    if ((!packed || rows < m || np < n) && k > 0)
        sa = static_cast<T*>(ork_serv_allocate(kernel_order_elements<T, E>(m, k) * sizeof(T), 64));
    if (packed) {
        if (RowsOuter) accumulate_rows_outer<T, E>(ta, tb, rows, np, k, alpha, a, lda, b, ldb, c, ldc);
        else accumulate<T, E>(ta, tb, rows, np, k, alpha, a, lda, b, ldb, c, ldc);
    } else {
        in_kernel_order<T, E>(ta, tb, mp, np, k, alpha, a, lda, b, ldb, c, ldc, sa);
    }
    if (rows < m)
        in_kernel_order<T, E>(ta, tb, m - mp, np, k, alpha, op_ptr(ta, a, lda, mp, idx(0)), lda, b, ldb, c + mp, ldc, sa);
    if (np < n)
        in_kernel_order<T, E>(ta, tb, m, n - np, k, alpha, a, lda, op_ptr(tb, b, ldb, idx(0), np), ldb, c + np * ldc,
                              ldc, sa);
    if (sa) ork_serv_deallocate(sa);
}

// The whole call after the processor test: quick return, one beta pass
// (single precision first finishes an alpha = 0 call on its own), then the
// nest (Uniform: the loop-nest pieces' form, each element's bits whatever
// the shape of the call). Complex types clear C for beta = 0 rather than
// scale it.
template <class T, class E = engine<T>, bool Uniform = false>
void gemm(char ta, char tb, idx m, idx n, idx k, T alpha, const T* a, idx lda, const T* b, idx ldb, T beta, T* c,
          idx ldc, char ta_written = 0) {
    if (m < 1 || n < 1) return;
    if constexpr (std::is_same_v<T, float>) {
        if (alpha == 0) {
            if (beta == 0) zerom(m, n, c, ldc);
            else if (beta != 1) scalm(m, n, beta, c, ldc);
            return;
        }
    }
    if constexpr (is_complex<T>) {
        if (beta == zero<T>()) zerom(m, n, c, ldc);
        else if (!(beta == one<T>())) scalm(m, n, beta, c, ldc);
    } else if (!(beta == one<T>())) {
        scalm(m, n, beta, c, ldc);
    }
    if constexpr (Uniform) accumulate_uniform<T, E, false>(ta, tb, m, n, k, alpha, a, lda, b, ldb, c, ldc);
    else accumulate<T, E>(ta, tb, m, n, k, alpha, a, lda, b, ldb, c, ldc, ta_written);
}

}  // namespace ork::gemm
