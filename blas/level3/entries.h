// The level-3 operations with the arguments of their exports, unwrapped (flags
// as letters, integers and scalars by value): what the generated shims of
// blas/level3/table.py call. Each turns the letters into the templates' own
// terms (side, triangle, op of A) and calls the template of level3.h.
#pragma once

#include "blas/level3/level3.h"

namespace ork::level3::entries {

using gemm::trans_of;

// C := alpha*A*B + beta*C (side L) or alpha*B*A + beta*C, A symmetric or
// Hermitian; the recursive form adds alpha*A*B to C in the caller's workspace
template <class T, bool Herm>
void symm(char side, char uplo, idx m, idx n, T alpha, const T* a, idx lda, const T* b, idx ldb, T beta, T* c,
          idx ldc) {
    level3::symm<T, Herm>(side == 'L', uplo == 'L', m, n, alpha, a, lda, b, ldb, beta, c, ldc);
}
template <class T, bool Herm>
void symm_recursive(char side, char uplo, idx m, idx n, T alpha, const T* a, idx lda, const T* b, idx ldb, T* c,
                    idx ldc, void* work) {
    const bool left = side == 'L';
    level3::symm_recursive<T, Herm>(left, uplo == 'L', left ? m : n, left ? n : m, alpha, a, lda, b, ldb, c, ldc,
                                    static_cast<T*>(work));
}

// Rank-k and rank-2k updates; alpha (herk) and beta (herk, her2k) may be real.
template <class T, bool Herm, class A, class B>
void rank_k(char uplo, char trans, idx n, idx k, A alpha, const T* a, idx lda, B beta, T* c, idx ldc) {
    rank<T, Herm>(uplo == 'L', trans_of<T>(trans), n, k, as_element<T>(alpha), a, lda, static_cast<const T*>(nullptr), 0,
                  beta, c, ldc);
}
template <class T, bool Herm, class B>
void rank_2k(char uplo, char trans, idx n, idx k, T alpha, const T* a, idx lda, const T* b, idx ldb, B beta, T* c,
             idx ldc) {
    rank<T, Herm>(uplo == 'L', trans_of<T>(trans), n, k, alpha, a, lda, b, ldb, beta, c, ldc);
}

// Triangular multiply and solve, B overwritten.
template <class T>
void trmm(char side, char uplo, char transa, char diag, idx m, idx n, T alpha, const T* a, idx lda, T* b, idx ldb) {
    level3::trmm(tri_call{side == 'L', uplo == 'L', trans_of<T>(transa), diag == 'U'}, m, n, alpha, a, lda, b, ldb);
}
template <class T>
void trsm(char side, char uplo, char transa, char diag, idx m, idx n, T alpha, const T* a, idx lda, T* b, idx ldb) {
    level3::trsm(tri_call{side == 'L', uplo == 'L', trans_of<T>(transa), diag == 'U'}, m, n, alpha, a, lda, b, ldb);
}

}  // namespace ork::level3::entries
