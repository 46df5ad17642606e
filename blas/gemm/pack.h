// Packing of op(A) blocks and op(B) panels into the layouts of shape.h.
#pragma once

#include "blas/gemm/inner.h"
#include "blas/gemm/shape.h"

namespace ork::gemm {

// The packers move values of one type, never through another precision, so
// straight-line vectorisation (off in the kernel libraries by default) is
// safe here and pays: a row group is one or a few vectors.
#define ORK_PACKER __attribute__((optimize("tree-slp-vectorize")))

// alpha*op(A)(0 .. h'-1, 0 .. kk-1) with h' = h rounded down to a whole
// group of rows; returns h'. A plain source is read a cache line of rows at
// a time (several groups) across the depth, so that each line is read once
// and the groups are written as sequential streams; leading dimensions that
// are powers of two would otherwise make the strided side thrash one cache
// set. A transposed source is read column by column, one group at a time.
template <class T>
ORK_PACKER idx pack_a(char t, idx h, idx kk, const T* a, idx lda, T* dest, T alpha) {
    constexpr idx ra = shape<T>::ra;
    constexpr idx line = 64 / (ra * sizeof(T)) > 0 ? 64 / (ra * sizeof(T)) : 1;  // groups per cache line
    const idx hp = h - h % ra, kkr = round_up4(kk), groups = hp / ra;
    auto pad = [&](T* d) {
        for (idx j = kk * ra; j < kkr * ra; ++j) d[j] = zero<T>();
    };
    if (t == 'N') {
        idx g = 0;
        for (; g + line <= groups; g += line) {
            const T* src = a + g * ra;
            T* d = dest + g * ra * kkr;
            for (idx j = 0; j < kk; ++j, src += lda)
                for (idx q = 0; q < line; ++q)
                    for (idx r = 0; r < ra; ++r) d[q * ra * kkr + j * ra + r] = alpha * src[q * ra + r];
        }
        for (; g < groups; ++g) {
            const T* src = a + g * ra;
            T* d = dest + g * ra * kkr;
            for (idx j = 0; j < kk; ++j, src += lda)
                for (idx r = 0; r < ra; ++r) d[j * ra + r] = alpha * src[r];
        }
    } else {
        for (idx g = 0; g < groups; ++g) {
            T* d = dest + g * ra * kkr;
            for (idx r = 0; r < ra; ++r) {
                const T* src = a + (g * ra + r) * lda;
                for (idx j = 0; j < kk; ++j) d[j * ra + r] = alpha * (t == 'C' ? conj(src[j]) : src[j]);
            }
        }
    }
    for (idx g = 0; g < groups; ++g) pad(dest + g * ra * kkr);
    return hp;
}

// op(B)(0 .. kk-1, 0 .. w-1), w a multiple of q, in panels: a plain source
// is gathered from pw columns in step (by the generation's own packer where
// its table says it has one), a transposed one copied row by row.
template <class T>
ORK_PACKER void pack_b(char t, idx kk, idx w, const T* b, idx ldb, T* dest) {
    const idx kkr = round_up4(kk);
    for_each_panel<T>(w, [&](idx c0, idx pw) {
        T* p = dest + c0 * kkr;
        if (t == 'N') {
            const T* src = b + c0 * ldb;
            if constexpr (shape<T>::own_b_packer) {
                inner::pack_b_plain(kk, pw, src, ldb, p);
            } else {
                for (idx r = 0; r < kk; ++r)
                    for (idx c = 0; c < pw; ++c) p[pw * r + c] = src[r + c * ldb];
            }
        } else {
            const T* src = b + c0;
            for (idx r = 0; r < kk; ++r, src += ldb)
                for (idx c = 0; c < pw; ++c) p[pw * r + c] = t == 'C' ? conj(src[c]) : src[c];
        }
        for (idx r = kk * pw; r < kkr * pw; ++r) p[r] = zero<T>();
    });
}

}  // namespace ork::gemm
