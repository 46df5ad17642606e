// The "htn" blocking of the matrix-multiply engine, used by libork's
// threading only: the plan of the main engine with depth blocks of 192 and
// row blocks of 384, so that one thread's packed A block (384 x 192) and its
// share of B stay in a private L2 while the other threads work on theirs.
#pragma once

#include "blas/gemm/brc.h"

namespace ork::gemm {

template <class T> struct htn_engine : engine<T> {
    static constexpr idx kbh = 192, mbh = 384;
    static_assert(mbh % shape<T>::ra == 0, "row blocks of whole packed groups");
    static idx mb(idx, idx, idx) { return mbh; }
    template <class F> static void depth_blocks(idx k, F f) {
        for (idx k0 = 0; k0 < k; k0 += kbh) f(k0, k - k0 < kbh ? k - k0 : kbh);
    }
    // The packed A block, then the kernel's scratch, then one packed B
    // block of nb(n) columns, each on pages of its own.
    static workspace<T> take(idx, idx n, idx) {
        const std::size_t NB = std::size_t(engine<T>::nb(n)), es = sizeof(T);
        workspace<T> w;
        char* p = static_cast<char*>(ork_serv_allocate(kbh * 192 + kbh * mbh * es + kbh * NB * es + 3 * 4096, 128));
        if (!p) return w;
        w.block = p;
        w.a = reinterpret_cast<T*>(page_after(p));
        w.scratch = page_after(p + kbh * mbh * es);
        w.b = reinterpret_cast<T*>(page_after(p + kbh * mbh * es + 4096 + kbh * 192));
        return w;
    }
};

template <class T> struct full_depth<htn_engine<T>> {
    static constexpr idx value = htn_engine<T>::kbh;
};

}  // namespace ork::gemm
