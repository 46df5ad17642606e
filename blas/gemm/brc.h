// Loop-nest pieces over a chosen engine (those of pieces.h are bound to the
// main one), what an engine reports of its blocking and workspace, and the
// depth of the family-10h engine's blocks.
#pragma once

#include "blas/gemm/pieces.h"

namespace ork::gemm {

// Depth of a full depth block, per engine.
template <class E> struct full_depth;
template <class T> struct full_depth<brc_engine<T>> {
    static constexpr idx value = brc_engine<T>::kbb;
};

// The blocking of engine E for an m x n x k product: info[0] = kb (depth of
// a full depth block), info[1] = mb (rows of a full row block, whole packed
// groups), info[2] = nb (columns of a column block for this n).
template <class T, class E>
void blk_info(idx m, idx n, idx k, idx* info) {
    info[0] = full_depth<E>::value;
    info[1] = E::mb(m, n, k);
    info[2] = E::nb(n);
}

// The workspace engine E takes for m x n x k: returns the block to release
// (null, and null regions, when memory is exhausted) and its three regions.
template <class T, class E>
void* get_bufs(idx m, idx n, idx k, T** pa, T** pb, void** scratch) {
    workspace<T> w = E::take(m, n, k);
    const bool got = w.block != nullptr;
    *pa = got ? w.a : nullptr;
    *pb = got ? w.b : nullptr;
    *scratch = got ? w.scratch : nullptr;
    return w.block;
}

// b_packed of pieces.h with the row blocks of engine E.
template <class T, class E>
void b_packed_in(char ta, idx m, idx kk, idx w, T alpha, const T* a, idx lda, const T* pb, T* c, idx ldc) {
    if (m < shape<T>::ra || w < 1 || kk < 1) return;
    const idx mb = E::mb(m, w, kk);
    workspace<T> ws = take_for_depth<T>(m < mb ? m : mb, 0, kk);
    rows_against_panel(ta, m - m % shape<T>::ra, kk, w, mb, alpha, a, lda, pb, c, ldc, ws.a, ws.scratch);
    release(ws);
}

// a_packed of pieces.h with the column blocks of engine E.
template <class T, class E>
void a_packed_in(char tb, idx kk, idx n, idx h, const T* pa, const T* b, idx ldb, T* c, idx ldc) {
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

}  // namespace ork::gemm
