// The matrix-multiply engine's operations with the arguments of its exports,
// unwrapped (flags as letters, integers and scalars by value): what the
// generated shims of blas/gemm/table.py call, where the engine's templates
// take other shapes.
#pragma once

#include "blas/gemm/gemm3m.h"
#include "blas/gemm/htn.h"
#include "blas/gemm/mixed.h"
#include "blas/gemm/pieces.h"

namespace ork::gemm::entries {

// The drivers: C := alpha*op(A)*op(B) + beta*C, as product() runs it (AMD
// family-10h parts of the baseline generation take the alternative engine).
// `ta` is the caller's string, whose letter as written the leftover columns
// pass on to gemv.
template <class T>
void driver(const char* ta, char tb, idx m, idx n, idx k, T alpha, const T* a, idx lda, const T* b, idx ldb, T beta,
            T* c, idx ldc) {
    product<T>(trans_of<T>(ta), trans_of<T>(tb), m, n, k, alpha, a, lda, b, ldb, beta, c, ldc, *ta);
}
// The alternative engine itself (no processor test).
template <class T>
void brc(const char* ta, char tb, idx m, idx n, idx k, T alpha, const T* a, idx lda, const T* b, idx ldb, T beta,
         T* c, idx ldc) {
    gemm<T, brc_engine<T>>(trans_of<T>(ta), trans_of<T>(tb), m, n, k, alpha, a, lda, b, ldb, beta, c, ldc, *ta);
}

// Building blocks: the plain product, the packers by op letter, the inner
// kernels (the cell and the beta copies are accepted and not used).
template <class T>
void plain(char ta, char tb, idx m, idx n, idx k, T alpha, const T* a, idx lda, const T* b, idx ldb, T beta, T* c,
           idx ldc) {
    pst(trans_of<T>(ta), trans_of<T>(tb), m, n, k, alpha, a, lda, b, ldb, beta, c, ldc);
}
template <char Op, class T> idx copy_a(idx h, idx kk, const T* a, idx lda, T* dest, T alpha) {
    return pack_a(Op, h, kk, a, lda, dest, alpha);
}
template <char Op, class T> void copy_b(idx kk, idx w, const T* b, idx ldb, T* dest) { pack_b(Op, kk, w, b, ldb, dest); }
template <class T>
void inner_kernel(idx h, idx w, idx kkr, const T* pa, const T* pb, ork_int*, T* c, idx ldc, void* scratch, const T*) {
    inner::multiply(h, w, kkr, pa, pb, c, ldc, scratch);
}
template <class T>
void inner_general(idx h, idx w, idx kkr, const T* pa, const T* pb, ork_int*, T* c, idx ldc, void* scratch, const T*) {
    inner::multiply_block(h, w, kkr, pa, pb, c, ldc, scratch);
}

// The loop-nest pieces: C += alpha*op(A)*op(B) with column blocks (RowsOuter
// false) or row blocks outermost, and the pieces on operands the caller packed.
template <class T, bool RowsOuter>
void uniform(char ta, char tb, idx m, idx n, idx k, T alpha, const T* a, idx lda, const T* b, idx ldb, T* c, idx ldc) {
    accumulate_uniform<T, engine<T>, RowsOuter>(trans_of<T>(ta), trans_of<T>(tb), m, n, k, alpha, a, lda, b, ldb, c,
                                               ldc);
}
template <class T, class E = engine<T>>
void against_b(char ta, idx m, idx kk, idx w, T alpha, const T* a, idx lda, const T* pb, T* c, idx ldc) {
    b_packed<T, E>(trans_of<T>(ta), m, kk, w, alpha, a, lda, pb, c, ldc);
}
template <class T, class E = engine<T>>
void against_a(char tb, idx kk, idx n, idx h, const T* pa, const T* b, idx ldb, T* c, idx ldc) {
    a_packed<T, E>(trans_of<T>(tb), kk, n, h, pa, b, ldb, c, ldc);
}

// Loop-nest pieces over another engine E: C += alpha*op(A)*op(B) with
// column blocks or row blocks outermost; `ta` the caller's string.
template <class T, class E>
void columns(const char* ta, char tb, idx m, idx n, idx k, T alpha, const T* a, idx lda, const T* b, idx ldb, T* c,
             idx ldc) {
    accumulate<T, E>(trans_of<T>(ta), trans_of<T>(tb), m, n, k, alpha, a, lda, b, ldb, c, ldc, *ta);
}
template <class T, class E>
void rows(const char* ta, char tb, idx m, idx n, idx k, T alpha, const T* a, idx lda, const T* b, idx ldb, T* c,
          idx ldc) {
    accumulate_rows_outer<T, E>(trans_of<T>(ta), trans_of<T>(tb), m, n, k, alpha, a, lda, b, ldb, c, ldc, *ta);
}
// C := beta*C unless beta is 1 (the family-10h engine's beta pass).
template <class T> void scale_unless_one(idx m, idx n, T beta, T* c, idx ldc) {
    if (beta != 1) scalm(m, n, beta, c, ldc);
}

// Complex products from three real products, and their packers of one
// part (0 real, 1 imaginary, else their sum) by op letter.
template <class R>
void three_products(char ta, char tb, idx m, idx n, idx k, cx<R> alpha, const cx<R>* a, idx lda, const cx<R>* b,
                    idx ldb, cx<R> beta, cx<R>* c, idx ldc) {
    gemm3m<R>(trans_of<cx<R>>(ta), trans_of<cx<R>>(tb), m, n, k, alpha, a, lda, b, ldb, beta, c, ldc);
}
template <char Op, class R>
idx copy_a3m(idx h, idx kk, const cx<R>* a, idx lda, R* dest, cx<R> alpha, idx part) {
    return pack_a3m_part<R>(Op, h, kk, a, lda, dest, alpha, part);
}
template <char Op, class R> void copy_b3m(idx kk, idx w, const cx<R>* b, idx ldb, R* dest, idx part) {
    pack_b3m_part<R>(Op, kk, w, b, ldb, dest, part);
}

// Real A times complex B: the driver, the plain product, the split of B.
template <class R>
void mixed(char ta, char tb, idx m, idx n, idx k, cx<R> alpha, const R* a, idx lda, const cx<R>* b, idx ldb,
           cx<R> beta, cx<R>* c, idx ldc) {
    gemm_mixed<R>(trans_of<R>(ta), trans_of<cx<R>>(tb), m, n, k, alpha, a, lda, b, ldb, beta, c, ldc);
}
template <class R>
void mixed_plain(char ta, char tb, idx m, idx n, idx k, cx<R> alpha, const R* a, idx lda, const cx<R>* b, idx ldb,
                 cx<R> beta, cx<R>* c, idx ldc) {
    pst_mixed<R>(trans_of<R>(ta), trans_of<cx<R>>(tb), m, n, k, alpha, a, lda, b, ldb, beta, c, ldc);
}
template <class R>
void mixed_split_b(char tb, idx kk, idx w, const cx<R>* b, idx ldb, cx<R> alpha, R* b_re, R* b_im, idx ld) {
    split_b<R>(trans_of<cx<R>>(tb), kk, w, b, ldb, alpha, b_re, b_im, ld);
}

// What the generation's engine does for a product of depth k (gemm_kernels.h).
template <class T> void layout(idx k, ork_int* info) {
    using P = tuning<T>;
    info[0] = P::ra;
    info[1] = P::q;
    for (int i = 0; i < 3; ++i) info[2 + i] = P::widths[i];
    info[5] = P::scratch;
    info[6] = P::fused;
    idx first = -1, full = 0;
    engine<T>::depth_blocks(k, [&](idx, idx kk) {
        if (first < 0) first = kk;
        if (kk > full) full = kk;
    });
    info[7] = full;
    info[8] = first >= 0 && first < full;
}

}  // namespace ork::gemm::entries
