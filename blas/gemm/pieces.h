// Pieces of the matrix-multiply loop nest that libork's threading runs on
// disjoint parts of C, and the alternative blocking for AMD family-10h parts.
#pragma once

#include "blas/gemm/driver.h"

namespace ork::gemm {

// Workspace for a piece working at any depth kk: a packed A block of `rows`
// rows, a packed B block of `cols` columns and the kernel's scratch, each
// sized for kk itself rather than for the driver's depth block.
template <class T>
workspace<T> take_for_depth(idx rows, idx cols, idx kk) {
    const std::size_t kkr = std::size_t(round_up4(kk)), es = sizeof(T);
    const std::size_t abytes = std::size_t(rows) * kkr * es, bbytes = std::size_t(cols) * kkr * es;
    workspace<T> w;
    char* p = static_cast<char*>(ork_serv_allocate(abytes + bbytes + kkr * shape<T>::scratch + 3 * 4096, 128));
    w.block = p;
    char* a = page_after(p);  // each region starts on the page after the last one ends
    char* scratch = page_after(a + abytes);
    w.a = reinterpret_cast<T*>(a);
    w.scratch = scratch;
    w.b = reinterpret_cast<T*>(page_after(scratch + kkr * shape<T>::scratch));
    return w;
}

// Rows of one depth block against a B panel already packed (kk x w, w a
// multiple of q): op(A) rows are packed here in the row blocks of engine E.
// Rows beyond the last whole group are not touched.
template <class T, class E = engine<T>>
void b_packed(char ta, idx m, idx kk, idx w, T alpha, const T* a, idx lda, const T* pb, T* c, idx ldc) {
    if (m < shape<T>::ra || w < 1 || kk < 1) return;
    const idx mb = E::mb(m, w, kk);
    workspace<T> ws = take_for_depth<T>(m < mb ? m : mb, 0, kk);
    rows_against_panel(ta, m - m % shape<T>::ra, kk, w, mb, alpha, a, lda, pb, c, ldc, ws.a, ws.scratch);
    release(ws);
}

// Both operands packed: the inner kernel alone, with scratch of its own.
template <class T>
void ab_packed(idx h, idx w, idx kkr, const T* pa, const T* pb, T* c, idx ldc) {
    if (h < 1 || w < 1 || kkr < 1) return;
    const std::size_t bytes = std::size_t(kkr) * shape<T>::scratch;
    void* scratch = bytes ? ork_serv_allocate(bytes, 128) : nullptr;
    inner::multiply_block(h, w, kkr, pa, pb, c, ldc, scratch);
    if (scratch) ork_serv_deallocate(scratch);
}

// A block already packed (h rows, depth kk): op(B)(0 .. kk-1, 0 .. n'-1) is
// packed here in the column blocks of engine E. The last n mod q columns
// are not touched.
template <class T, class E = engine<T>>
void a_packed(char tb, idx kk, idx n, idx h, const T* pa, const T* b, idx ldb, T* c, idx ldc) {
    const idx np = n - n % shape<T>::q, kkr = round_up4(kk);
    if (h < 1 || np < 1 || kk < 1) return;
    const idx nb = E::nb(np);
    workspace<T> ws = take_for_depth<T>(0, nb, kk);
    for (idx j0 = 0; j0 < np; j0 += nb) {
        const idx w = np - j0 < nb ? np - j0 : nb;
        pack_b(tb, kk, w, op_ptr(tb, b, ldb, idx(0), j0), ldb, ws.b);
        inner::multiply_block(h, w, kkr, pa, ws.b, c + j0 * ldc, ldc, ws.scratch);
    }
    release(ws);
}

// The plan of the main engine with fixed depth blocks of KB and row blocks
// of MB (whole packed groups), and a workspace of one packed A block, the
// kernel's scratch and one packed B block, each on pages of its own.
template <class T, idx KB, idx MB> struct fixed_engine : engine<T> {
    static constexpr idx kb = KB;
    static idx mb(idx, idx, idx) { return MB - MB % shape<T>::ra; }
    template <class F> static void depth_blocks(idx k, F f) {
        for (idx k0 = 0; k0 < k; k0 += KB) f(k0, k - k0 < KB ? k - k0 : KB);
    }
    static workspace<T> take(idx, idx n, idx) {
        const std::size_t NB = std::size_t(engine<T>::nb(n)), es = sizeof(T);
        workspace<T> w;
        char* p = static_cast<char*>(ork_serv_allocate(KB * shape<T>::scratch + KB * MB * es + KB * NB * es + 3 * 4096, 128));
        if (!p) return w;
        w.block = p;
        char* a = page_after(p);
        char* scratch = page_after(a + KB * MB * es);
        w.a = reinterpret_cast<T*>(a);
        w.scratch = scratch;
        w.b = reinterpret_cast<T*>(page_after(scratch + KB * shape<T>::scratch));
        return w;
    }
};

// The AMD family-10h blocking: depth and row blocks of 256, which suit its
// 64 KiB L1 and 512 KiB L2 better.
template <class T> using brc_engine = fixed_engine<T, 256, 256>;

// The processor test of the real drivers: AMD family-10h parts of the
// baseline generation take the alternative engine.
inline bool barcelona() { return ork_serv_cpu_detect() == 0 && ork_serv_cpuisitbarcelona() != 0; }

// The general product as the exported drivers run it, on arguments already
// decoded: ta and tb are op letters ('N', 'T', and 'C' for complex types
// only), ta_written the caller's letter for A (0: none; see last_columns).
// Level 3 and the mixed products call this, not the exported drivers.
template <class T>
void product(char ta, char tb, idx m, idx n, idx k, T alpha, const T* a, idx lda, const T* b, idx ldb, T beta, T* c,
             idx ldc, char ta_written = 0) {
    if (m < 1 || n < 1) return;
    if constexpr (!is_complex<T>) {
        if (barcelona())
            return gemm<T, brc_engine<T>>(ta, tb, m, n, k, alpha, a, lda, b, ldb, beta, c, ldc, ta_written);
    }
    gemm<T>(ta, tb, m, n, k, alpha, a, lda, b, ldb, beta, c, ldc, ta_written);
}

// The same product with each element of C given the bits of libork's gemm
// for it whatever the shape of the call (leftover rows and columns in the
// packed kernel's order): what level 3 builds its products from.
template <class T>
void uniform_product(char ta, char tb, idx m, idx n, idx k, T alpha, const T* a, idx lda, const T* b, idx ldb, T beta,
                     T* c, idx ldc) {
    if (m < 1 || n < 1) return;
    if constexpr (!is_complex<T>) {
        if (barcelona()) return gemm<T, brc_engine<T>, true>(ta, tb, m, n, k, alpha, a, lda, b, ldb, beta, c, ldc);
    }
    gemm<T, engine<T>, true>(ta, tb, m, n, k, alpha, a, lda, b, ldb, beta, c, ldc);
}

}  // namespace ork::gemm
