// Packing of op(A) blocks and op(B) panels into the layouts of shape.h.
#pragma once

#include "blas/gemm/shape.h"

namespace ork::gemm {

// alpha*op(A)(0 .. h'-1, 0 .. kk-1) with h' = h rounded down to a whole
// group of rows; returns h'. Reads one depth column of op(A) at a time.
template <class T>
idx pack_a(char t, idx h, idx kk, const T* a, idx lda, T* dest, T alpha) {
    constexpr idx ra = shape<T>::ra;
    const idx hp = h - h % ra, kkr = round_up4(kk), groups = hp / ra;
    for (idx j = 0; j < kk; ++j) {
        if (t == 'N') {
            const T* col = a + j * lda;
            for (idx g = 0; g < groups; ++g)
                for (idx r = 0; r < ra; ++r) dest[g * ra * kkr + j * ra + r] = alpha * col[g * ra + r];
        } else {
            for (idx g = 0; g < groups; ++g)
                for (idx r = 0; r < ra; ++r) {
                    T v = a[j + (g * ra + r) * lda];
                    dest[g * ra * kkr + j * ra + r] = alpha * (t == 'C' ? conj(v) : v);
                }
        }
    }
    for (idx g = 0; g < groups; ++g)
        for (idx j = kk * ra; j < kkr * ra; ++j) dest[g * ra * kkr + j] = zero<T>();
    return hp;
}

// op(B)(0 .. kk-1, 0 .. w-1), w a multiple of q, in panels.
template <class T>
void pack_b(char t, idx kk, idx w, const T* b, idx ldb, T* dest) {
    const idx kkr = round_up4(kk);
    for_each_panel<T>(w, [&](idx c0, idx pw) {
        T* p = dest + c0 * kkr;
        for (idx r = 0; r < kk; ++r)
            for (idx c = 0; c < pw; ++c) p[pw * r + c] = op_at(t, b, ldb, r, c0 + c);
        for (idx r = kk * pw; r < kkr * pw; ++r) p[r] = zero<T>();
    });
}

}  // namespace ork::gemm
