// libork's level-2 products and updates (the triangular ones apart): the
// reference argument checks, each failure reported at the reference
// position, then the kernel of the loaded library, split over
// threads when the matrix is large.
//
// Splits and their bits: gemv and gbmv (rows of y for N, its elements for T
// and C), ger (columns) and the real syr and syr2 (column ranges through the
// _in_thread pieces) give the single-thread bits. her and her2 split as gerc
// on the off-diagonal block plus the kernel on the diagonal block, the same
// operations for finite data. symv and hemv split y's rows into the kernel on
// the diagonal block plus two gemv on the blocks beside it (which are read
// twice, once by each side): their rounding then depends on the number of
// threads. The band and packed symmetric forms run whole.
#include <cmath>
#include <type_traits>

#include "core/core.h"

using ork::core::entry;
using ork::core::kernel_table;
using idx = ork_int;

namespace {

const kernel_table& K() { return ork::core::kernels(); }

// Logical elements [i0, i0 + len) of (n, x, inc), as a vector of its own.
template <class T>
T* sub(T* x, idx n, idx inc, idx i0, idx len) {
    return inc >= 0 ? x + i0 * inc : x + (n - i0 - len) * -inc;
}

// Threads for a matrix of `work` elements: none below 2^17, then one per
// 2^16 elements up to the limit.
int threads_for(idx work) {
    if (work < (idx(1) << 17)) return 1;
    const idx k = work >> 16;
    const int t = ork::core::max_threads();
    return k < t ? int(k) : t;
}

// f(k0, k1) on the ranges [bound(p), bound(p + 1)) for p < pieces, on t
// threads. More pieces than threads, taken as threads come free, keep a
// thread that loses its core (two cores, shared) from holding up the call.
template <class B, class F>
void ranges(int t, int pieces, B bound, F f) {
    if (t <= 1 || pieces <= 1) return f(bound(0), bound(pieces));
    ork::core::parallel_for(t, pieces, [&](int p) { f(bound(p), bound(p + 1)); });
}
constexpr int pieces_per_thread = 4;
// n items in t nearly equal ranges
auto even(idx n, int t) {
    return [=](int p) { return n * p / t; };
}
// the columns of an n-by-n triangle in t ranges of nearly equal area
auto by_area(idx n, int t, bool upper) {
    return [=](int p) -> idx {
        if (p == 0 || p == t) return p == 0 ? 0 : n;
        const double f = double(p) / t;
        const idx b = idx(std::llround(n * (upper ? std::sqrt(f) : 1 - std::sqrt(1 - f))));
        return b < 0 ? 0 : (b > n ? n : b);
    };
}

bool bad_flag(const char* f, const char* allowed) {
    for (; *allowed; ++allowed)
        if (ork_serv_lsame(f, allowed, 1, 1)) return false;
    return true;
}
bool is(const char* f, const char* letter) { return ork_serv_lsame(f, letter, 1, 1); }
idx at_least_1(idx v) { return v > 1 ? v : 1; }

template <class C> bool is_zero(const C& a) {
    if constexpr (std::is_arithmetic_v<C>) return a == 0;
    else return a.re == 0 && a.im == 0;
}
template <class C> bool is_one(const C& a) {
    if constexpr (std::is_arithmetic_v<C>) return a == 1;
    else return a.re == 1 && a.im == 0;
}
template <class C> C one_of() {
    if constexpr (std::is_arithmetic_v<C>) return C(1);
    else return C{1, 0};
}

// A stored matrix of rows x n at *lda is addressable; packed (no lda): the
// n(n+1)/2 elements of a triangle.
template <class C>
bool stored_fits(bool packed, idx rows, idx n, const idx* lda) {
    return packed ? ork::core::packed_fits<C>(n) : ork::core::matrix_fits<C>(rows, n, *lda);
}

// ---- kernels by element type
template <class C> struct kern;
#define ORK_L2_KERN(C, p, symv_, gemv_)                                       \
    template <> struct kern<C> {                                              \
        static auto gemv() { return K().ork_blas_x##p##gemv; }                \
        static auto gbmv() { return K().ork_blas_##p##gbmv; }                 \
        static auto symv() { return K().ork_blas_##symv_; }                   \
        static constexpr const char* trans_flag = gemv_;                      \
    };
ORK_L2_KERN(float, s, xssymv, "Transpose")
ORK_L2_KERN(double, d, xdsymv, "Transpose")
ORK_L2_KERN(ork_complex8, c, chemv, "Conjugate transpose")
ORK_L2_KERN(ork_complex16, z, zhemv, "Conjugate transpose")
#undef ORK_L2_KERN

// ---- general products: (trans, m, n, [kl, ku,] alpha, a, lda, x, incx,
// beta, y, incy). Band when kl is given; positions shift by two then.
template <class C>
void general_mv(const char* name, bool band, const char* trans, const idx* m, const idx* n, const idx* kl,
                const idx* ku, const C* alpha, const C* a, const idx* lda, const C* x, const idx* incx, const C* beta,
                C* y, const idx* incy) {
    entry e(name);
    const int b = band ? 2 : 0;  // kl and ku come before alpha
    if (!trans || bad_flag(trans, "NTC")) return (void)e.fail(1);
    if (!m || *m < 0) return (void)e.fail(2);
    if (!n || *n < 0) return (void)e.fail(3);
    if (band && (!kl || *kl < 0)) return (void)e.fail(4);
    if (band && (!ku || *ku < 0)) return (void)e.fail(5);
    const idx M = *m, N = *n;
    const bool any = M > 0 && N > 0;
    if (!alpha) return (void)e.fail(4 + b);
    if (!a && any) return (void)e.fail(5 + b);
    if (!lda || *lda < (band ? *kl + *ku + 1 : at_least_1(M))) return (void)e.fail(6 + b);
    if (!x && any) return (void)e.fail(7 + b);
    if (!incx || *incx == 0) return (void)e.fail(8 + b);
    if (!beta) return (void)e.fail(9 + b);
    if (!y && any) return (void)e.fail(10 + b);
    if (!incy || *incy == 0) return (void)e.fail(11 + b);
    if (!any || (is_zero(*alpha) && is_one(*beta))) return;
    const bool notrans = is(trans, "N");
    const idx LDA = *lda, ix = *incx, iy = *incy, leny = notrans ? M : N, lenx = notrans ? N : M;
    if (!ork::core::matrix_fits<C>(band ? *kl + *ku + 1 : M, N, LDA)) return (void)e.fail(6 + b);
    if (!ork::core::vector_fits<C>(lenx, ix)) return (void)e.fail(8 + b);
    if (!ork::core::vector_fits<C>(leny, iy)) return (void)e.fail(11 + b);
    // at least 64 rows or columns of A a thread
    int t = threads_for(M * (band && *kl + *ku + 1 < N ? *kl + *ku + 1 : N));
    int p = t * pieces_per_thread;
    if (p > leny / 64) p = leny / 64 > 1 ? int(leny / 64) : 1;
    ranges(t, p, even(leny, p), [&](idx k0, idx k1) {
        idx len = k1 - k0;
        if (len <= 0) return;
        C* ys = sub(y, leny, iy, k0, len);
        if (!band) {  // whole rows (N) or columns (T, C) of A and their part of y
            if (notrans) kern<C>::gemv()(trans, &len, n, alpha, a + k0, lda, x, incx, beta, ys, incy);
            else kern<C>::gemv()(trans, m, &len, alpha, a + k0 * LDA, lda, x, incx, beta, ys, incy);
            return;
        }
        // the band rows (N) or columns (T, C) [k0, k1) and the stored part
        // across them, [o0, o1), as a band of their own
        const idx KL = *kl, KU = *ku, reach_lo = notrans ? KL : KU, reach_hi = notrans ? KU : KL;
        idx o0 = k0 - reach_lo > 0 ? k0 - reach_lo : 0, o1 = k1 + reach_hi < lenx ? k1 + reach_hi : lenx;
        const C zero{}, *al = alpha;
        if (o1 <= o0) o1 = o0 + 1, al = &zero;  // nothing stored: y := beta*y alone
        idx other = o1 - o0, kl2 = notrans ? KL - (k0 - o0) : KL + (k0 - o0), ku2 = KL + KU - kl2;
        const C* xs = sub(x, lenx, ix, o0, other);
        if (notrans) kern<C>::gbmv()(trans, &len, &other, &kl2, &ku2, al, a + o0 * LDA, lda, xs, incx, beta, ys, incy);
        else kern<C>::gbmv()(trans, &other, &len, &kl2, &ku2, al, a + k0 * LDA, lda, xs, incx, beta, ys, incy);
    });
}

// ---- symmetric and Hermitian products. storage: 's' full (lda at 5),
// 'b' band (k at 3, lda at 6), 'p' packed (no lda).
template <class C, class F>
void symmetric_mv(const char* name, char storage, F kernel, const char* uplo, const idx* n, const idx* k,
                  const C* alpha, const C* a, const idx* lda, const C* x, const idx* incx, const C* beta, C* y,
                  const idx* incy) {
    entry e(name);
    const int b = storage == 'b' ? 1 : 0, p = storage == 'p' ? -1 : 0;
    if (!uplo || bad_flag(uplo, "UL")) return (void)e.fail(1);
    if (!n || *n < 0) return (void)e.fail(2);
    if (b && (!k || *k < 0)) return (void)e.fail(3);
    const idx N = *n;
    if (!alpha) return (void)e.fail(3 + b);
    if (!a && N > 0) return (void)e.fail(4 + b);
    if (!p && (!lda || *lda < (b ? *k + 1 : at_least_1(N)))) return (void)e.fail(5 + b);
    if (!x && N > 0) return (void)e.fail(6 + b + p);
    if (!incx || *incx == 0) return (void)e.fail(7 + b + p);
    if (!beta) return (void)e.fail(8 + b + p);
    if (!y && N > 0) return (void)e.fail(9 + b + p);
    if (!incy || *incy == 0) return (void)e.fail(10 + b + p);
    if (N == 0 || (is_zero(*alpha) && is_one(*beta))) return;
    if (!stored_fits<C>(storage == 'p', storage == 'b' ? *k + 1 : N, N, lda)) return (void)e.fail(p ? 2 : 5 + b);
    if (!ork::core::vector_fits<C>(N, *incx)) return (void)e.fail(7 + b + p);
    if (!ork::core::vector_fits<C>(N, *incy)) return (void)e.fail(10 + b + p);
    const int t = storage == 's' ? threads_for(N * N) : 1;
    if (t <= 1) return kernel(uplo, n, alpha, a, lda, x, incx, beta, y, incy, k);
    // rows [i0, i1) of y: the diagonal block, then the blocks of A beside it
    // through gemv (transposed where the stored triangle holds them mirrored)
    const idx LDA = *lda, ix = *incx, iy = *incy;
    const bool upper = is(uplo, "U");
    const C one = one_of<C>();
    ranges(t, t, even(N, t), [&](idx i0, idx i1) {
        idx len = i1 - i0, before = i0, after = N - i1;
        if (len <= 0) return;
        C* ys = sub(y, N, iy, i0, len);
        kernel(uplo, &len, alpha, a + i0 + i0 * LDA, lda, sub(x, N, ix, i0, len), incx, beta, ys, incy, k);
        const C* xb = sub(x, N, ix, 0, before);
        const C* xa = sub(x, N, ix, i1, after);
        if (upper) {
            kern<C>::gemv()(kern<C>::trans_flag, &before, &len, alpha, a + i0 * LDA, lda, xb, incx, &one, ys, incy);
            kern<C>::gemv()("No transpose", &len, &after, alpha, a + i0 + i1 * LDA, lda, xa, incx, &one, ys, incy);
        } else {
            kern<C>::gemv()("No transpose", &len, &before, alpha, a + i0, lda, xb, incx, &one, ys, incy);
            kern<C>::gemv()(kern<C>::trans_flag, &after, &len, alpha, a + i1 + i0 * LDA, lda, xa, incx, &one, ys, incy);
        }
    });
}

// ---- general updates (m, n, alpha, x, incx, y, incy, a, lda), by columns
template <class C, class F>
void general_update(const char* name, F kernel, const idx* m, const idx* n, const C* alpha, const C* x,
                    const idx* incx, const C* y, const idx* incy, C* a, const idx* lda) {
    entry e(name);
    if (!m || *m < 0) return (void)e.fail(1);
    if (!n || *n < 0) return (void)e.fail(2);
    const idx M = *m, N = *n;
    const bool any = M > 0 && N > 0;
    if (!alpha) return (void)e.fail(3);
    if (!x && any) return (void)e.fail(4);
    if (!incx || *incx == 0) return (void)e.fail(5);
    if (!y && any) return (void)e.fail(6);
    if (!incy || *incy == 0) return (void)e.fail(7);
    if (!a && any) return (void)e.fail(8);
    if (!lda || *lda < at_least_1(M)) return (void)e.fail(9);
    if (!any || is_zero(*alpha)) return;
    if (!ork::core::vector_fits<C>(M, *incx)) return (void)e.fail(5);
    if (!ork::core::vector_fits<C>(N, *incy)) return (void)e.fail(7);
    if (!ork::core::matrix_fits<C>(M, N, *lda)) return (void)e.fail(9);
    const idx LDA = *lda, iy = *incy;
    const int t = threads_for(M * N);
    const int p = t * pieces_per_thread;
    ranges(t, p, even(N, p), [&](idx j0, idx j1) {
        idx len = j1 - j0;
        if (len > 0) kernel(m, &len, alpha, x, incx, sub(y, N, iy, j0, len), incy, a + j0 * LDA, lda);
    });
}

// ---- symmetric and Hermitian updates (uplo, n, alpha, x, incx, [y, incy,]
// a[, lda]): y given for rank 2, lda absent for packed storage. `columns`
// updates the columns [j0, j1) of the whole problem.
template <class A, class C, class Whole, class Columns>
void symmetric_update(const char* name, bool has_lda, Whole whole, Columns columns, const char* uplo, const idx* n,
                      const A* alpha, const C* x, const idx* incx, const C* y, const idx* incy, C* a,
                      const idx* lda, bool two) {
    entry e(name);
    const int r = two ? 2 : 0;  // y and incy come before a
    if (!uplo || bad_flag(uplo, "UL")) return (void)e.fail(1);
    if (!n || *n < 0) return (void)e.fail(2);
    const idx N = *n;
    if (!alpha) return (void)e.fail(3);
    if (!x && N > 0) return (void)e.fail(4);
    if (!incx || *incx == 0) return (void)e.fail(5);
    if (two && !y && N > 0) return (void)e.fail(6);
    if (two && (!incy || *incy == 0)) return (void)e.fail(7);
    if (!a && N > 0) return (void)e.fail(6 + r);
    if (has_lda && (!lda || *lda < at_least_1(N))) return (void)e.fail(7 + r);
    if (N == 0 || is_zero(*alpha)) return;
    if (!ork::core::vector_fits<C>(N, *incx)) return (void)e.fail(5);
    if (two && !ork::core::vector_fits<C>(N, *incy)) return (void)e.fail(7);
    if (!stored_fits<C>(!has_lda, N, N, lda)) return (void)e.fail(has_lda ? 7 + r : 2);
    const int t = has_lda ? threads_for(N * N / 2) : 1;
    if (t <= 1) return whole();
    const int p = t * pieces_per_thread;
    ranges(t, p, by_area(N, p, is(uplo, "U")), [&](idx j0, idx j1) {
        if (j1 > j0) columns(j0, j1);
    });
}

// her and her2 on the columns [j0, j1): gerc on the stored block beside the
// diagonal block, then the kernel on the diagonal block.
template <class C, class Gerc, class Her>
void hermitian_columns(Gerc gerc, Her her, bool upper, idx n, const C* alpha, const C* x, idx ix, const C* y,
                       idx iy, C* a, idx lda, idx j0, idx j1) {
    idx len = j1 - j0, other = upper ? j0 : n - j1, o0 = upper ? 0 : j1;
    const C al{alpha->re, alpha->im}, alc{alpha->re, -alpha->im};
    C* off = upper ? a + j0 * lda : a + j1 + j0 * lda;
    const C* xo = sub(x, n, ix, o0, other);
    const C* xc = sub(x, n, ix, j0, len);
    if (y) {
        const C* yo = sub(y, n, iy, o0, other);
        const C* yc = sub(y, n, iy, j0, len);
        if (other > 0) {
            gerc(&other, &len, &al, xo, &ix, yc, &iy, off, &lda);
            gerc(&other, &len, &alc, yo, &iy, xc, &ix, off, &lda);
        }
        her(&len, xc, &ix, yc, &iy, a + j0 + j0 * lda, &lda);
    } else {
        if (other > 0) gerc(&other, &len, &al, xo, &ix, xc, &ix, off, &lda);
        her(&len, xc, &ix, nullptr, nullptr, a + j0 + j0 * lda, &lda);
    }
}

}  // namespace

#define NAME(name) "ork_blas_" #name

// ---- products
#define ORK_L2_GENERAL_MV(p, C)                                                                                         \
    ORK_CORE_API void ork_blas_##p##gemv(const char* trans, const idx* m, const idx* n, const C* alpha, const C* a,    \
                                         const idx* lda, const C* x, const idx* incx, const C* beta, C* y,            \
                                         const idx* incy) {                                                            \
        general_mv<C>(NAME(p##gemv), false, trans, m, n, nullptr, nullptr, alpha, a, lda, x, incx, beta, y, incy);            \
    }                                                                                                                  \
    ORK_CORE_API void ork_blas_##p##gbmv(const char* trans, const idx* m, const idx* n, const idx* kl, const idx* ku,  \
                                         const C* alpha, const C* a, const idx* lda, const C* x, const idx* incx,     \
                                         const C* beta, C* y, const idx* incy) {                                       \
        general_mv<C>(NAME(p##gbmv), true, trans, m, n, kl, ku, alpha, a, lda, x, incx, beta, y, incy);        \
    }
ORK_L2_GENERAL_MV(s, float)
ORK_L2_GENERAL_MV(d, double)
ORK_L2_GENERAL_MV(c, ork_complex8)
ORK_L2_GENERAL_MV(z, ork_complex16)

// ?symv or ?hemv with their band and packed forms: precision, s or h, the
// full form's name and kernel, element type
#define ORK_L2_SYM_MV(p, sh, full, full_kernel, C)                                                                           \
    ORK_CORE_API void ork_blas_##p##full(const char* uplo, const idx* n, const C* alpha, const C* a, const idx* lda, \
                                           const C* x, const idx* incx, const C* beta, C* y, const idx* incy) {        \
        symmetric_mv<C>(NAME(p##full), 's', [](auto u, auto nn, auto al, auto aa, auto la, auto xx, auto ix, auto be, auto yy, auto iy, auto) { K().full_kernel(u, nn, al, aa, la, xx, ix, be, yy, iy); }, \
                        uplo, n, nullptr, alpha, a, lda, x, incx, beta, y, incy);                                      \
    }                                                                                                                  \
    ORK_CORE_API void ork_blas_##p##sh##bmv(const char* uplo, const idx* n, const idx* k, const C* alpha, const C* a,   \
                                            const idx* lda, const C* x, const idx* incx, const C* beta, C* y,         \
                                            const idx* incy) {                                                         \
        symmetric_mv<C>(NAME(p##sh##bmv), 'b', [](auto u, auto nn, auto al, auto aa, auto la, auto xx, auto ix, auto be, auto yy, auto iy, auto kk) { K().ork_blas_##p##sh##bmv(u, nn, kk, al, aa, la, xx, ix, be, yy, iy); }, \
                        uplo, n, k, alpha, a, lda, x, incx, beta, y, incy);                                            \
    }                                                                                                                  \
    ORK_CORE_API void ork_blas_##p##sh##pmv(const char* uplo, const idx* n, const C* alpha, const C* ap, const C* x,   \
                                            const idx* incx, const C* beta, C* y, const idx* incy) {                   \
        symmetric_mv<C>(NAME(p##sh##pmv), 'p', [](auto u, auto nn, auto al, auto aa, auto, auto xx, auto ix, auto be, auto yy, auto iy, auto) { K().ork_blas_##p##sh##pmv(u, nn, al, aa, xx, ix, be, yy, iy); }, \
                        uplo, n, nullptr, alpha, ap, nullptr, x, incx, beta, y, incy);                                 \
    }
ORK_L2_SYM_MV(s, s, symv, ork_blas_xssymv, float)
ORK_L2_SYM_MV(d, s, symv, ork_blas_xdsymv, double)
ORK_L2_SYM_MV(c, h, hemv, ork_blas_chemv, ork_complex8)
ORK_L2_SYM_MV(z, h, hemv, ork_blas_zhemv, ork_complex16)

// ---- general updates
#define ORK_L2_GER(name, C)                                                                                             \
    ORK_CORE_API void ork_blas_##name(const idx* m, const idx* n, const C* alpha, const C* x, const idx* incx,          \
                                      const C* y, const idx* incy, C* a, const idx* lda) {                             \
        general_update<C>(NAME(name), K().ork_blas_##name, m, n, alpha, x, incx, y, incy, a, lda);                     \
    }
ORK_L2_GER(sger, float)
ORK_L2_GER(dger, double)
ORK_L2_GER(cgeru, ork_complex8)
ORK_L2_GER(zgeru, ork_complex16)
ORK_L2_GER(cgerc, ork_complex8)
ORK_L2_GER(zgerc, ork_complex16)

// ---- real symmetric updates: whole, or column ranges through the pieces
#define ORK_L2_REAL_UPDATES(p, R)                                                                                       \
    ORK_CORE_API void ork_blas_##p##syr(const char* uplo, const idx* n, const R* alpha, const R* x, const idx* incx,    \
                                        R* a, const idx* lda) {                                                        \
        symmetric_update(NAME(p##syr), true, [&] { K().ork_blas_x##p##syr(uplo, n, alpha, x, incx, a, lda); },        \
                         [&](idx j0, idx j1) { idx f = j0 + 1; K().ork_blas_x##p##syr_in_thread(uplo, n, alpha, x, incx, a, lda, &f, &j1); }, \
                         uplo, n, alpha, x, incx, static_cast<const R*>(nullptr), nullptr, a, lda, false);             \
    }                                                                                                                  \
    ORK_CORE_API void ork_blas_##p##syr2(const char* uplo, const idx* n, const R* alpha, const R* x, const idx* incx,   \
                                         const R* y, const idx* incy, R* a, const idx* lda) {                          \
        symmetric_update(NAME(p##syr2), true, [&] { K().ork_blas_x##p##syr2(uplo, n, alpha, x, incx, y, incy, a, lda); }, \
                         [&](idx j0, idx j1) { idx f = j0 + 1; K().ork_blas_x##p##syr2_in_thread(uplo, n, alpha, x, incx, y, incy, a, lda, &f, &j1); }, \
                         uplo, n, alpha, x, incx, y, incy, a, lda, true);                                              \
    }                                                                                                                  \
    ORK_CORE_API void ork_blas_##p##spr(const char* uplo, const idx* n, const R* alpha, const R* x, const idx* incx,    \
                                        R* ap) {                                                                       \
        symmetric_update(NAME(p##spr), false, [&] { K().ork_blas_##p##spr(uplo, n, alpha, x, incx, ap); }, [](idx, idx) {}, \
                         uplo, n, alpha, x, incx, static_cast<const R*>(nullptr), nullptr, ap, nullptr, false);        \
    }                                                                                                                  \
    ORK_CORE_API void ork_blas_##p##spr2(const char* uplo, const idx* n, const R* alpha, const R* x, const idx* incx,   \
                                         const R* y, const idx* incy, R* ap) {                                         \
        symmetric_update(NAME(p##spr2), false, [&] { K().ork_blas_##p##spr2(uplo, n, alpha, x, incx, y, incy, ap); },   \
                         [](idx, idx) {}, uplo, n, alpha, x, incx, y, incy, ap, nullptr, true);                        \
    }
ORK_L2_REAL_UPDATES(s, float)
ORK_L2_REAL_UPDATES(d, double)

// ---- Hermitian updates; her and her2 split through gerc (see the top)
#define ORK_L2_HERM_UPDATES(p, C, R)                                                                                    \
    ORK_CORE_API void ork_blas_##p##her(const char* uplo, const idx* n, const R* alpha, const C* x, const idx* incx,    \
                                        C* a, const idx* lda) {                                                        \
        symmetric_update(NAME(p##her), true, [&] { K().ork_blas_##p##her(uplo, n, alpha, x, incx, a, lda); },          \
                         [&](idx j0, idx j1) {                                                                         \
                             const C al{*alpha, 0};                                                                    \
                             hermitian_columns(K().ork_blas_##p##gerc,                                              \
                                 [&](const idx* nn, const C* xx, const idx* ix, const C*, const idx*, C* aa, const idx* la) { K().ork_blas_##p##her(uplo, nn, alpha, xx, ix, aa, la); }, \
                                 ork_serv_lsame(uplo, "U", 1, 1), *n, &al, x, *incx, static_cast<const C*>(nullptr), 0, a, *lda, j0, j1); \
                         },                                                                                            \
                         uplo, n, alpha, x, incx, static_cast<const C*>(nullptr), nullptr, a, lda, false);             \
    }                                                                                                                  \
    ORK_CORE_API void ork_blas_##p##her2(const char* uplo, const idx* n, const C* alpha, const C* x, const idx* incx,   \
                                         const C* y, const idx* incy, C* a, const idx* lda) {                          \
        symmetric_update(NAME(p##her2), true, [&] { K().ork_blas_##p##her2(uplo, n, alpha, x, incx, y, incy, a, lda); }, \
                         [&](idx j0, idx j1) {                                                                         \
                             hermitian_columns(K().ork_blas_##p##gerc,                                              \
                                 [&](const idx* nn, const C* xx, const idx* ix, const C* yy, const idx* iy, C* aa, const idx* la) { K().ork_blas_##p##her2(uplo, nn, alpha, xx, ix, yy, iy, aa, la); }, \
                                 ork_serv_lsame(uplo, "U", 1, 1), *n, alpha, x, *incx, y, *incy, a, *lda, j0, j1);     \
                         },                                                                                            \
                         uplo, n, alpha, x, incx, y, incy, a, lda, true);                                              \
    }                                                                                                                  \
    ORK_CORE_API void ork_blas_##p##hpr(const char* uplo, const idx* n, const R* alpha, const C* x, const idx* incx,    \
                                        C* ap) {                                                                       \
        symmetric_update(NAME(p##hpr), false, [&] { K().ork_blas_##p##hpr(uplo, n, alpha, x, incx, ap); }, [](idx, idx) {}, \
                         uplo, n, alpha, x, incx, static_cast<const C*>(nullptr), nullptr, ap, nullptr, false);        \
    }                                                                                                                  \
    ORK_CORE_API void ork_blas_##p##hpr2(const char* uplo, const idx* n, const C* alpha, const C* x, const idx* incx,   \
                                         const C* y, const idx* incy, C* ap) {                                         \
        symmetric_update(NAME(p##hpr2), false, [&] { K().ork_blas_##p##hpr2(uplo, n, alpha, x, incx, y, incy, ap); },   \
                         [](idx, idx) {}, uplo, n, alpha, x, incx, y, incy, ap, nullptr, true);                        \
    }
ORK_L2_HERM_UPDATES(c, ork_complex8, float)
ORK_L2_HERM_UPDATES(z, ork_complex16, double)
