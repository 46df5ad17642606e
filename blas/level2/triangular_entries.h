// The triangular level-2 operations with the arguments of their exports,
// unwrapped (flags as letters, integers by value): what the generated shims of
// blas/level2/triangular_table.py call. Each decodes the flags and picks the
// storage and the template.
#pragma once

#include <cstddef>

#include "blas/level2/triangular.h"
#include "ork/service.h"
#include "ork/types.h"

// libork's dispatched gemv, declared with the length of its flag after the
// arguments, as a Fortran-style caller passes it: the blocked solve couples
// its diagonal blocks through it (the one call from the kernel library up to
// a checked entry in this family).
#define ORK_GEMV_WITH_LENGTH(p, C)                                                                          \
    extern "C" void ork_tri_##p##gemv(const char*, const ork_int*, const ork_int*, const C*, const C*,     \
                                      const ork_int*, const C*, const ork_int*, const C*, C*, const ork_int*, \
                                      std::size_t) __asm__("ork_blas_" #p "gemv");
ORK_GEMV_WITH_LENGTH(s, float)
ORK_GEMV_WITH_LENGTH(d, double)
ORK_GEMV_WITH_LENGTH(c, ork_complex8)
ORK_GEMV_WITH_LENGTH(z, ork_complex16)
#undef ORK_GEMV_WITH_LENGTH

namespace ork::blas::entries {

// The flags decoded once: U upper, T or C transposed (C conjugating complex
// data), U unit diagonal.
struct tri_flags {
    bool upper, trans, conj, unit;
    template <class T>
    static tri_flags of(char uplo, char trans, char diag) {
        return {uplo == 'U', trans != 'N', is_complex<T> && trans == 'C', diag == 'U'};
    }
};

inline auto dispatched_gemv(float*) { return &ork_tri_sgemv; }
inline auto dispatched_gemv(double*) { return &ork_tri_dgemv; }
inline auto dispatched_gemv(cx<float>*) { return &ork_tri_cgemv; }
inline auto dispatched_gemv(cx<double>*) { return &ork_tri_zgemv; }

// x := inv(op(A))*x, blocked; the blocks beside the diagonal ones go through
// the dispatched gemv (and its threads).
template <class T>
void trsv(char uplo, const char* trans, char diag, idx n, const T* a, idx lda, T* x, idx incx) {
    using C = decltype(to_c(T{}));
    const auto f = tri_flags::of<T>(uplo, flag(trans), diag);
    // the complex kernels name the operation in words; the real ones pass the caller's flag on
    const char* op = !is_complex<T> ? trans : !f.trans ? "No transpose" : f.conj ? "Conjugate transpose" : "Transpose";
    const C minus = to_c(zero<T>() - one<T>()), plus = to_c(one<T>());
    auto c = [](const T* p) { return reinterpret_cast<const C*>(p); };
    const auto gemv = dispatched_gemv(static_cast<T*>(nullptr));
    blas::trsv<T>(f.upper, f.trans, f.conj, f.unit, n, a, lda, x, incx, [&](idx m, idx nc, const T* as, const T* xs, T* ys) {
        gemv(op, &m, &nc, &minus, c(as), &lda, c(xs), &incx, &plus, reinterpret_cast<C*>(ys), &incx, 1);
    });
}

// x := op(A)*x through a contiguous result (and a contiguous copy of x for
// other increments), so that it has the bits of the range pieces; without
// workspace, the reference loops in place.
template <class T>
void trmv(char uplo, char trans, char diag, idx n, const T* a, idx lda, T* x, idx incx) {
    const auto f = tri_flags::of<T>(uplo, trans, diag);
    if (n <= 0) return;
    const std::size_t len = std::size_t(n) * (incx == 1 ? 1 : 2);
    T* w = static_cast<T*>(ork_serv_allocate(len * sizeof(T), 64));
    if (!w) return tri_mv(full_storage<T>{a, lda, n, f.upper}, f.upper, f.trans, f.conj, f.unit, n, x, incx);
    const strided<T> xv(n, x, incx);
    const T* xc = x;
    if (incx != 1) {
        for (idx i = 0; i < n; ++i) w[n + i] = xv[i];
        xc = w + n;
    }
    trmv_range(f.upper, f.trans, f.conj, f.unit, n, a, lda, xc, 1, w, 0, n);
    for (idx i = 0; i < n; ++i) xv[i] = w[i];
    ork_serv_deallocate(w);
}
template <class T>
void trmv_piece(char uplo, char trans, char diag, idx n, const T* a, idx lda, const T* x, idx incx, T* y, idx first,
                idx len) {
    const auto f = tri_flags::of<T>(uplo, trans, diag);
    trmv_range(f.upper, f.trans, f.conj, f.unit, n, a, lda, x, incx, y, first, len);
}

// band (k diagonals beside the main one) and packed products and solves
template <class T>
void tbmv(char uplo, char trans, char diag, idx n, idx k, const T* a, idx lda, T* x, idx incx) {
    const auto f = tri_flags::of<T>(uplo, trans, diag);
    tri_mv(band_storage<T>{a, lda, n, k, f.upper}, f.upper, f.trans, f.conj, f.unit, n, x, incx);
}
template <class T>
void tbsv(char uplo, char trans, char diag, idx n, idx k, const T* a, idx lda, T* x, idx incx) {
    const auto f = tri_flags::of<T>(uplo, trans, diag);
    tri_sv(band_storage<T>{a, lda, n, k, f.upper}, f.upper, f.trans, f.conj, f.unit, n, x, incx);
}
template <class T>
void tpmv(char uplo, char trans, char diag, idx n, const T* ap, T* x, idx incx) {
    const auto f = tri_flags::of<T>(uplo, trans, diag);
    tri_mv(packed_storage<T>{ap, n, f.upper}, f.upper, f.trans, f.conj, f.unit, n, x, incx);
}
template <class T>
void tpsv(char uplo, char trans, char diag, idx n, const T* ap, T* x, idx incx) {
    const auto f = tri_flags::of<T>(uplo, trans, diag);
    tri_sv(packed_storage<T>{ap, n, f.upper}, f.upper, f.trans, f.conj, f.unit, n, x, incx);
}

}  // namespace ork::blas::entries
