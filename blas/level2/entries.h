// The level-2 operations with the arguments of their exports, unwrapped (flags
// as letters, integers and scalars by value): what the generated shims of
// blas/level2/table.py call. Each picks the storage and the template.
#pragma once

#include "blas/level2/products.h"
#include "blas/level2/updates.h"

namespace ork::blas::entries {

// y := alpha*A*x + beta*y, A symmetric (Herm false) or Hermitian: full,
// band (k diagonals beside the main one) and packed storage
template <class T, bool Herm>
void symv(char uplo, idx n, T alpha, const T* a, idx lda, const T* x, idx incx, T beta, T* y, idx incy) {
    symmetric_mv<T, Herm>(uplo == 'U', n, alpha, dense<const T>{a, lda, n}, x, incx, beta, y, incy);
}
template <class T, bool Herm>
void sbmv(char uplo, idx n, idx k, T alpha, const T* a, idx lda, const T* x, idx incx, T beta, T* y, idx incy) {
    symmetric_mv<T, Herm>(uplo == 'U', n, alpha, band<const T>{a, lda, k}, x, incx, beta, y, incy);
}
template <class T, bool Herm>
void spmv(char uplo, idx n, T alpha, const T* ap, const T* x, idx incx, T beta, T* y, idx incy) {
    symmetric_mv<T, Herm>(uplo == 'U', n, alpha, packed<const T>{ap, n, n}, x, incx, beta, y, incy);
}

// Rank-1 and rank-2 updates of a symmetric or Hermitian A (alpha real for
// the Hermitian rank 1), full or packed; the _piece forms update the columns
// first..last (1-based, inclusive) of the whole problem.
template <class T, bool Herm, class A>
void syr(char uplo, idx n, A alpha, const T* x, idx incx, T* a, idx lda) {
    symmetric_update<T, Herm, false>(uplo == 'U', n, alpha, x, incx, static_cast<const T*>(nullptr), 0,
                                     dense<T>{a, lda, n}, 0, n);
}
template <class T, bool Herm, class A>
void spr(char uplo, idx n, A alpha, const T* x, idx incx, T* ap) {
    symmetric_update<T, Herm, false>(uplo == 'U', n, alpha, x, incx, static_cast<const T*>(nullptr), 0,
                                     packed<T>{ap, n, n}, 0, n);
}
template <class T, bool Herm>
void syr2(char uplo, idx n, T alpha, const T* x, idx incx, const T* y, idx incy, T* a, idx lda) {
    symmetric_update<T, Herm, true>(uplo == 'U', n, alpha, x, incx, y, incy, dense<T>{a, lda, n}, 0, n);
}
template <class T, bool Herm>
void spr2(char uplo, idx n, T alpha, const T* x, idx incx, const T* y, idx incy, T* ap) {
    symmetric_update<T, Herm, true>(uplo == 'U', n, alpha, x, incx, y, incy, packed<T>{ap, n, n}, 0, n);
}
template <class T>
void syr_piece(char uplo, idx n, T alpha, const T* x, idx incx, T* a, idx lda, idx first, idx last) {
    symmetric_update<T, false, false>(uplo == 'U', n, alpha, x, incx, static_cast<const T*>(nullptr), 0,
                                      dense<T>{a, lda, n}, first - 1, last);
}
template <class T>
void syr2_piece(char uplo, idx n, T alpha, const T* x, idx incx, const T* y, idx incy, T* a, idx lda, idx first,
                idx last) {
    symmetric_update<T, false, true>(uplo == 'U', n, alpha, x, incx, y, incy, dense<T>{a, lda, n}, first - 1, last);
}

}  // namespace ork::blas::entries
