// The transposition kernels with the arguments of their exports, unwrapped:
// what the generated shims of trans/table.py call where a kernel template
// takes another shape (fixed unit strides, the square kernels' unread
// arguments).
#pragma once

#include "trans/transpose.h"

namespace ork::trans::entries {

template <class T>
void omatcopy(char ordering, char trans, uidx rows, uidx cols, T alpha, const T* a, uidx lda, T* b, uidx ldb) {
    omatcopy2(ordering, trans, rows, cols, alpha, a, lda, 1, b, ldb, 1);
}
// a recursive copy kernel (rec_n, rec_t) with unit element strides
template <auto F, class T>
void unit_strides(uidx rows, uidx cols, T alpha, const T* a, uidx lda, T* b, uidx ldb) {
    F(rows, cols, alpha, a, lda, 1, b, ldb, 1);
}
// a square in-place kernel: rows = cols and lda = ldb, so cols and ldb go unread
template <auto F, class T>
void square(uidx rows, uidx, T alpha, T* ab, uidx lda, uidx) {
    F(rows, alpha, ab, lda);
}

}  // namespace ork::trans::entries
