// Export table of the triangular level-2 kernels: the blocked solve ?trsv and
// its diagonal-block kernels, x?trmv and its range piece, and the band and
// packed products and solves, for s, d, c and z. Each line unwraps its
// by-address arguments and forwards to a template of blas/level2/triangular.h.
#include <cstddef>

#include "blas/level2/triangular.h"
#include "frame/export.h"
#include "frame/upcall.h"
#include "ork/blas_level2.h"
#include "ork/triangular_kernels.h"

using namespace ork;

namespace {

// The flags decoded once: U upper, T or C transposed (C conjugating complex
// data), U unit diagonal.
struct tri_flags {
    bool upper, trans, conj, unit;
    template <class T>
    static tri_flags of(const char* uplo, const char* trans, const char* diag) {
        const char t = flag(trans);
        return {flag(uplo) == 'U', t != 'N', is_complex<T> && t == 'C', flag(diag) == 'U'};
    }
};

template <class T, class C>
void trsv(const char* uplo, const char* trans, const char* diag, const ork_int* n, const C* a, const ork_int* lda,
          C* x, const ork_int* incx) {
    const auto f = tri_flags::of<T>(uplo, trans, diag);
    // the complex kernels name the operation in words; the real ones pass the caller's flag on
    const char* op = !is_complex<T> ? trans : !f.trans ? "No transpose" : f.conj ? "Conjugate transpose" : "Transpose";
    const C minus = to_c(zero<T>() - one<T>()), plus = to_c(one<T>());
    auto c = [](const T* p) { return reinterpret_cast<const C*>(p); };
    blas::trsv<T>(f.upper, f.trans, f.conj, f.unit, *n, as_elem(a), *lda, as_elem(x), *incx,
                  [&](idx m, idx nc, const T* as, const T* xs, T* ys) {
                      upcall::gemv_with_length<C>()(op, &m, &nc, &minus, c(as), lda, c(xs), incx, &plus,
                                                    reinterpret_cast<C*>(ys), incx, 1);
                  });
}

// x := op(A)*x through a contiguous result (and a contiguous copy of x for
// other increments), so that it has the bits of the range pieces; without
// workspace, the reference loops in place.
template <class T>
void trmv(tri_flags f, idx n, const T* a, idx lda, T* x, idx incx) {
    if (n <= 0) return;
    const std::size_t len = std::size_t(n) * (incx == 1 ? 1 : 2);
    T* w = static_cast<T*>(ork_serv_allocate(len * sizeof(T), 64));
    if (!w) return blas::tri_mv(blas::full_storage<T>{a, lda, n, f.upper}, f.upper, f.trans, f.conj, f.unit, n, x, incx);
    const strided<T> xv(n, x, incx);
    const T* xc = x;
    if (incx != 1) {
        for (idx i = 0; i < n; ++i) w[n + i] = xv[i];
        xc = w + n;
    }
    blas::trmv_range(f.upper, f.trans, f.conj, f.unit, n, a, lda, xc, 1, w, 0, n);
    for (idx i = 0; i < n; ++i) xv[i] = w[i];
    ork_serv_deallocate(w);
}

}  // namespace

#define ORK_FOR_TYPES(X) X(s, float, float) X(d, double, double) X(c, cx<float>, ork_complex8) X(z, cx<double>, ork_complex16)
#define ORK_TRI_FLAGS tri_flags::of<T>(uplo, trans, diag)
#define ORK_TRI_ARGS const char *uplo, const char *trans, const char *diag, const ork_int *n

// ---- blocked solve, products and solves in band and packed storage
#define ORK_TRIANGULAR(p, T_, C) \
    ORK_API void ork_blas_##p##trsv(ORK_TRI_ARGS, const C* a, const ork_int* lda, C* x, const ork_int* incx) { trsv<T_>(uplo, trans, diag, n, a, lda, x, incx); } \
    ORK_API void ork_blas_x##p##trmv(ORK_TRI_ARGS, const C* a, const ork_int* lda, C* x, const ork_int* incx) { using T = T_; trmv(ORK_TRI_FLAGS, *n, as_elem(a), *lda, as_elem(x), *incx); } \
    ORK_API void ork_blas_x##p##trmv_in_thread(ORK_TRI_ARGS, const C* a, const ork_int* lda, const C* x, const ork_int* incx, C* y, const ork_int* first, const ork_int* len) { using T = T_; const auto f = ORK_TRI_FLAGS; blas::trmv_range(f.upper, f.trans, f.conj, f.unit, *n, as_elem(a), *lda, as_elem(x), *incx, as_elem(y), *first, *len); } \
    ORK_API void ork_blas_##p##tbmv(ORK_TRI_ARGS, const ork_int* k, const C* a, const ork_int* lda, C* x, const ork_int* incx) { using T = T_; const auto f = ORK_TRI_FLAGS; blas::tri_mv(blas::band_storage<T>{as_elem(a), *lda, *n, *k, f.upper}, f.upper, f.trans, f.conj, f.unit, *n, as_elem(x), *incx); } \
    ORK_API void ork_blas_##p##tbsv(ORK_TRI_ARGS, const ork_int* k, const C* a, const ork_int* lda, C* x, const ork_int* incx) { using T = T_; const auto f = ORK_TRI_FLAGS; blas::tri_sv(blas::band_storage<T>{as_elem(a), *lda, *n, *k, f.upper}, f.upper, f.trans, f.conj, f.unit, *n, as_elem(x), *incx); } \
    ORK_API void ork_blas_##p##tpmv(ORK_TRI_ARGS, const C* ap, C* x, const ork_int* incx) { using T = T_; const auto f = ORK_TRI_FLAGS; blas::tri_mv(blas::packed_storage<T>{as_elem(ap), *n, f.upper}, f.upper, f.trans, f.conj, f.unit, *n, as_elem(x), *incx); } \
    ORK_API void ork_blas_##p##tpsv(ORK_TRI_ARGS, const C* ap, C* x, const ork_int* incx) { using T = T_; const auto f = ORK_TRI_FLAGS; blas::tri_sv(blas::packed_storage<T>{as_elem(ap), *n, f.upper}, f.upper, f.trans, f.conj, f.unit, *n, as_elem(x), *incx); }
ORK_FOR_TYPES(ORK_TRIANGULAR)

// ---- diagonal blocks of the solve: p, T, C, suffix, lower, transposed, conjugated, unit
#define ORK_TRSV_BLOCK(p, T, C, s, lower, trans, conj, unit) \
    ORK_API void ork_blas_##p##trsv_##s(const ork_int* nb, const C* a, const ork_int* lda, C* x, const ork_int* incx) { blas::trsv_block<T, lower, trans, conj, unit>(*nb, as_elem(a), *lda, as_elem(x), *incx); }
#define ORK_TRSV_BLOCKS(p, T, C) \
    ORK_TRSV_BLOCK(p, T, C, lnn, true, false, false, false) ORK_TRSV_BLOCK(p, T, C, lnu, true, false, false, true) \
    ORK_TRSV_BLOCK(p, T, C, ltn, true, true, false, false) ORK_TRSV_BLOCK(p, T, C, ltu, true, true, false, true) \
    ORK_TRSV_BLOCK(p, T, C, unn, false, false, false, false) ORK_TRSV_BLOCK(p, T, C, unu, false, false, false, true) \
    ORK_TRSV_BLOCK(p, T, C, utn, false, true, false, false) ORK_TRSV_BLOCK(p, T, C, utu, false, true, false, true)
#define ORK_TRSV_CONJ_BLOCKS(p, T, C) \
    ORK_TRSV_BLOCK(p, T, C, lcn, true, true, true, false) ORK_TRSV_BLOCK(p, T, C, lcu, true, true, true, true) \
    ORK_TRSV_BLOCK(p, T, C, ucn, false, true, true, false) ORK_TRSV_BLOCK(p, T, C, ucu, false, true, true, true)
ORK_FOR_TYPES(ORK_TRSV_BLOCKS)
ORK_TRSV_CONJ_BLOCKS(c, cx<float>, ork_complex8)
ORK_TRSV_CONJ_BLOCKS(z, cx<double>, ork_complex16)
