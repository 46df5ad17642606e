// libork's triangular level-2 entries: the reference argument checks, then
// the kernel of the loaded library. Large products x := op(A)*x are split
// over threads into ranges of the result of equal work; the solve's
// threads come from the dispatched gemv it calls.
#include <cmath>

#include "core/core.h"

using ork::core::entry;
using ork::core::kernel_table;
using idx = ork_int;

namespace {

const kernel_table& K() { return ork::core::kernels(); }

bool bad_flag(const char* f, const char* allowed) {
    if (!f) return true;
    for (; *allowed; ++allowed)
        if (ork_serv_lsame(f, allowed, 1, 1)) return false;
    return true;
}

// uplo, trans, diag, n at positions 1 to 4, as every routine here has them.
bool flags_ok(const entry& e, const char* uplo, const char* trans, const char* diag, const idx* n) {
    if (bad_flag(uplo, "UL")) return e.fail(1);
    if (bad_flag(trans, "NTC")) return e.fail(2);
    if (bad_flag(diag, "UN")) return e.fail(3);
    if (!n || *n < 0) return e.fail(4);
    return true;
}

// The full-storage routines: a 5, lda 6 (lda < max(1, n)), x 7, incx 8.
template <class C>
bool full_ok(const char* name, const char* uplo, const char* trans, const char* diag, const idx* n, const C* a,
             const idx* lda, const C* x, const idx* incx) {
    entry e(name);
    if (!flags_ok(e, uplo, trans, diag, n)) return false;
    if (!a && *n > 0) return e.fail(5);
    if (!lda || *lda < (*n > 1 ? *n : 1)) return e.fail(6);
    if (!x && *n > 0) return e.fail(7);
    if (!incx || *incx == 0) return e.fail(8);
    if (!ork::core::matrix_fits<C>(*n, *n, *lda)) return e.fail(6);
    if (!ork::core::vector_fits<C>(*n, *incx)) return e.fail(8);
    return *n > 0;
}

// Band: k 5, a 6, lda 7 (lda < k+1), x 8, incx 9.
template <class C>
bool band_ok(const char* name, const char* uplo, const char* trans, const char* diag, const idx* n, const idx* k,
             const C* a, const idx* lda, const C* x, const idx* incx) {
    entry e(name);
    if (!flags_ok(e, uplo, trans, diag, n)) return false;
    if (!k || *k < 0) return e.fail(5);
    if (!a && *n > 0) return e.fail(6);
    if (!lda || *lda < *k + 1) return e.fail(7);
    if (!x && *n > 0) return e.fail(8);
    if (!incx || *incx == 0) return e.fail(9);
    if (!ork::core::matrix_fits<C>(*k + 1, *n, *lda)) return e.fail(7);
    if (!ork::core::vector_fits<C>(*n, *incx)) return e.fail(9);
    return *n > 0;
}

// Packed: ap 5, x 6, incx 7.
template <class C>
bool packed_ok(const char* name, const char* uplo, const char* trans, const char* diag, const idx* n, const C* ap,
               const C* x, const idx* incx) {
    entry e(name);
    if (!flags_ok(e, uplo, trans, diag, n)) return false;
    if (!ap && *n > 0) return e.fail(5);
    if (!x && *n > 0) return e.fail(6);
    if (!incx || *incx == 0) return e.fail(7);
    if (!ork::core::packed_fits<C>(*n)) return e.fail(4);
    if (!ork::core::vector_fits<C>(*n, *incx)) return e.fail(7);
    return *n > 0;
}

// Below this many elements of the triangle per thread a split does not pay.
constexpr double trmv_per_thread = 1 << 17;

// x := op(A)*x. Large products: ranges of the result of about equal area of
// the triangle, one per thread, into a contiguous result from a contiguous
// copy of x; each element has the same bits as the kernel computes whole.
template <auto Whole, auto Piece, class C>
void trmv(const char* name, const char* uplo, const char* trans, const char* diag, const idx* n, const C* a,
          const idx* lda, C* x, const idx* incx) {
    if (!full_ok(name, uplo, trans, diag, n, a, lda, x, incx)) return;
    const idx N = *n, inc = *incx;
    const double area = 0.5 * double(N) * double(N + 1);
    const int most = ork::core::max_threads();
    const int t = area / trmv_per_thread < most ? int(area / trmv_per_thread) : most;
    // a contiguous result, and a contiguous copy of x for other increments;
    // without room for them, the kernel on the whole (the same bits)
    C* y = t < 2 ? nullptr : static_cast<C*>(ork::core::allocate(std::size_t(N) * sizeof(C) * (inc == 1 ? 1 : 2), 64));
    if (!y) return (K().*Whole)(uplo, trans, diag, n, a, lda, x, incx);
    const C* xs = x;
    auto logical = [&](idx i) -> C& { return inc > 0 ? x[i * inc] : x[(N - 1 - i) * -inc]; };
    if (inc != 1) {
        C* xc = y + N;
        for (idx i = 0; i < N; ++i) xc[i] = logical(i);
        xs = xc;
    }
    // result i costs about i+1 (rows of upper transposed, lower not
    // transposed) or N-i: boundary k of t at sqrt(k/t) of the way
    const bool rising = ork_serv_lsame(uplo, "U", 1, 1) != ork_serv_lsame(trans, "N", 1, 1);
    auto edge = [&](int k) -> idx {
        if (k <= 0) return 0;
        if (k >= t) return N;
        const double f = std::sqrt(rising ? double(k) / t : 1.0 - double(k) / t);
        const idx b = idx(double(N) * f);
        return rising ? b : N - b;
    };
    const idx one = 1;
    ork::core::parallel_for(t, t, [&](int k) {
        const idx first = edge(k), len = edge(k + 1) - first;
        if (len > 0) (K().*Piece)(uplo, trans, diag, n, a, lda, xs, &one, y + first, &first, &len);
    });
    for (idx i = 0; i < N; ++i) logical(i) = y[i];
    ork::core::deallocate(y);
}

}  // namespace

#define KF(name) &kernel_table::ork_blas_##name
#define NAME(name) "ork_blas_" #name
#define ORK_TRI_ARGS const char *uplo, const char *trans, const char *diag, const idx *n

#define ORK_TRIANGULAR_ENTRIES(p, C) \
    ORK_CORE_API void ork_blas_##p##trmv(ORK_TRI_ARGS, const C* a, const idx* lda, C* x, const idx* incx) { trmv<KF(x##p##trmv), KF(x##p##trmv_in_thread)>(NAME(p##trmv), uplo, trans, diag, n, a, lda, x, incx); } \
    ORK_CORE_API void ork_blas_##p##trsv(ORK_TRI_ARGS, const C* a, const idx* lda, C* x, const idx* incx) { if (full_ok(NAME(p##trsv), uplo, trans, diag, n, a, lda, x, incx)) K().ork_blas_##p##trsv(uplo, trans, diag, n, a, lda, x, incx); } \
    ORK_CORE_API void ork_blas_##p##tbmv(ORK_TRI_ARGS, const idx* k, const C* a, const idx* lda, C* x, const idx* incx) { if (band_ok(NAME(p##tbmv), uplo, trans, diag, n, k, a, lda, x, incx)) K().ork_blas_##p##tbmv(uplo, trans, diag, n, k, a, lda, x, incx); } \
    ORK_CORE_API void ork_blas_##p##tbsv(ORK_TRI_ARGS, const idx* k, const C* a, const idx* lda, C* x, const idx* incx) { if (band_ok(NAME(p##tbsv), uplo, trans, diag, n, k, a, lda, x, incx)) K().ork_blas_##p##tbsv(uplo, trans, diag, n, k, a, lda, x, incx); } \
    ORK_CORE_API void ork_blas_##p##tpmv(ORK_TRI_ARGS, const C* ap, C* x, const idx* incx) { if (packed_ok(NAME(p##tpmv), uplo, trans, diag, n, ap, x, incx)) K().ork_blas_##p##tpmv(uplo, trans, diag, n, ap, x, incx); } \
    ORK_CORE_API void ork_blas_##p##tpsv(ORK_TRI_ARGS, const C* ap, C* x, const idx* incx) { if (packed_ok(NAME(p##tpsv), uplo, trans, diag, n, ap, x, incx)) K().ork_blas_##p##tpsv(uplo, trans, diag, n, ap, x, incx); }
ORK_TRIANGULAR_ENTRIES(s, float)
ORK_TRIANGULAR_ENTRIES(d, double)
ORK_TRIANGULAR_ENTRIES(c, ork_complex8)
ORK_TRIANGULAR_ENTRIES(z, ork_complex16)
