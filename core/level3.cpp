// libork's level-3 entries besides the general product: the reference
// argument checks in the reference order, then the kernel of the loaded
// library, split over threads into independent slabs of B or C. The
// kernels write their output before they take all their workspace, so a
// copy of it is kept for the case that they cannot (see core.h: undoable).
#include <type_traits>
#include <vector>

#include "core/core.h"

using ork::core::entry;
using ork::core::kernel_table;
using idx = ork_int;

namespace {

const kernel_table& K() { return ork::core::kernels(); }

// ---- the kernels of each element type; R: the real type of herk's scalars.
template <class C> struct l3;
#define ORK_L3(C, p, R)                                                  \
    template <> struct l3<C> {                                           \
        using real = R;                                                  \
        static auto gemm() { return K().ork_blas_x##p##gemm; }           \
        static auto symm() { return K().ork_blas_x##p##symm; }           \
        static auto syrk() { return K().ork_blas_x##p##syrk; }           \
        static auto syr2k() { return K().ork_blas_x##p##syr2k; }         \
        static auto trmm() { return K().ork_blas_x##p##trmm; }           \
        static auto trsm() { return K().ork_blas_x##p##trsm; }           \
    };
ORK_L3(float, s, float)
ORK_L3(double, d, double)
ORK_L3(ork_complex8, c, float)
ORK_L3(ork_complex16, z, double)
#undef ORK_L3

template <class C> C from_real(typename l3<C>::real v) {
    if constexpr (std::is_arithmetic_v<C>) return v;
    else return C{v, 0};
}
template <class C> C conj_of(const C& v) {
    if constexpr (std::is_arithmetic_v<C>) return v;
    else return C{v.re, -v.im};
}
template <class S> bool is_zero(const S& v) {
    if constexpr (std::is_arithmetic_v<S>) return v == 0;
    else return v.re == 0 && v.im == 0;
}
template <class S> bool is_one(const S& v) {
    if constexpr (std::is_arithmetic_v<S>) return v == 1;
    else return v.re == 1 && v.im == 0;
}

// ---- argument checks
// The flag's first letter is one of `letters`.
bool one_of(const char* f, const char* letters) {
    if (!f) return false;
    for (const char* l = letters; *l; ++l)
        if (ork_serv_lsame(f, l, 1, 1)) return true;
    return false;
}
bool lsame(const char* f, const char* letter) { return ork_serv_lsame(f, letter, 1, 1) != 0; }
idx at_least_one(idx v) { return v > 1 ? v : 1; }

// The transposition letters each update accepts: every letter for real
// types, no C for the complex symmetric ones, no T for the Hermitian ones.
template <class C> const char* symmetric_ops() { return std::is_arithmetic_v<C> ? "NTC" : "NT"; }
constexpr const char* hermitian_ops = "NC";

// ---- threads
// Below this many multiply-adds a second thread does not pay for itself.
constexpr double split_min_work = 1 << 21;
// Slabs of whole multiples of these keep every slab on the same paths of the
// gemm engine as the whole problem, so the bits do not depend on the
// thread count.
constexpr idx col_unit = 8, row_unit = 64;
// The kernels' column block of the rank updates.
constexpr idx rank_unit = 64;

// f(i0, len) on consecutive slabs of whole units (the last takes the rest),
// cut at cuts(s) for slab s of t; one slab per thread.
template <class Cut, class F>
void run_slabs(idx extent, idx unit, double work, Cut cut, F f) {
    const int threads = ork::core::max_threads();
    const idx units = extent / unit;
    if (threads < 2 || work < split_min_work || units < 2) return f(idx(0), extent);
    const int t = int(units < threads ? units : threads);
    ork::core::parallel_for(t, t, [&](int s) {
        const idx i0 = cut(units, s, t) * unit, i1 = s == t - 1 ? extent : cut(units, s + 1, t) * unit;
        if (i1 > i0) f(i0, i1 - i0);
    });
}
// Equal numbers of units.
template <class F> void slabs(idx extent, idx unit, double work, F f) {
    run_slabs(extent, unit, work, [](idx units, int s, int t) { return units * s / t; }, f);
}

// ---- triangular multiply and solve: B is split by columns (side L) or by
// rows (side R), each slab an independent problem with the whole of A.
template <class C, class Kernel>
void triangular(const char* name, Kernel kernel, const char* side, const char* uplo, const char* transa,
                const char* diag, const idx* m, const idx* n, const C* alpha, const C* a, const idx* lda, C* b,
                const idx* ldb) {
    entry e(name);
    if (!one_of(side, "LR")) return void(e.fail(1));
    if (!one_of(uplo, "UL")) return void(e.fail(2));
    if (!one_of(transa, "NTC")) return void(e.fail(3));
    if (!one_of(diag, "UN")) return void(e.fail(4));
    if (!m || *m < 0) return void(e.fail(5));
    if (!n || *n < 0) return void(e.fail(6));
    const idx M = *m, N = *n;
    const bool left = lsame(side, "L"), any = M > 0 && N > 0;
    if (!alpha) return void(e.fail(7));
    if (!a && any) return void(e.fail(8));
    if (!lda || *lda < at_least_one(left ? M : N)) return void(e.fail(9));
    if (!b && any) return void(e.fail(10));
    if (!ldb || *ldb < at_least_one(M)) return void(e.fail(11));
    if (!any) return;
    const idx na = left ? M : N, LDB = *ldb;
    if (!ork::core::matrix_fits<C>(na, na, *lda)) return void(e.fail(9));
    if (!ork::core::matrix_fits<C>(M, N, LDB)) return void(e.fail(11));
    ork::core::undoable<C> out(b, M, N, LDB);
    if (!out.ok()) return void(e.out_of_memory());
    const double work = double(M) * double(N) * double(na);
    if (left)
        slabs(N, col_unit, work, [&](idx j0, idx len) {
            out.run([&] { kernel(side, uplo, transa, diag, m, &len, alpha, a, lda, b + j0 * LDB, ldb); });
        });
    else
        slabs(M, row_unit, work, [&](idx i0, idx len) {
            out.run([&] { kernel(side, uplo, transa, diag, &len, n, alpha, a, lda, b + i0, ldb); });
        });
    out.finish(e);
}

// ---- symmetric and Hermitian products: C and B split by columns (side L)
// or rows (side R).
template <class C, class Kernel>
void symmetric(const char* name, Kernel kernel, const char* side, const char* uplo, const idx* m, const idx* n,
               const C* alpha, const C* a, const idx* lda, const C* b, const idx* ldb, const C* beta, C* c,
               const idx* ldc) {
    entry e(name);
    if (!one_of(side, "LR")) return void(e.fail(1));
    if (!one_of(uplo, "UL")) return void(e.fail(2));
    if (!m || *m < 0) return void(e.fail(3));
    if (!n || *n < 0) return void(e.fail(4));
    const idx M = *m, N = *n;
    const bool left = lsame(side, "L"), any = M > 0 && N > 0;
    if (!alpha) return void(e.fail(5));
    if (!a && any) return void(e.fail(6));
    if (!lda || *lda < at_least_one(left ? M : N)) return void(e.fail(7));
    if (!b && any) return void(e.fail(8));
    if (!ldb || *ldb < at_least_one(M)) return void(e.fail(9));
    if (!beta) return void(e.fail(10));
    if (!c && any) return void(e.fail(11));
    if (!ldc || *ldc < at_least_one(M)) return void(e.fail(12));
    if (!any || (is_zero(*alpha) && is_one(*beta))) return;
    const idx na = left ? M : N, LDB = *ldb, LDC = *ldc;
    if (!ork::core::matrix_fits<C>(na, na, *lda)) return void(e.fail(7));
    if (!ork::core::matrix_fits<C>(M, N, LDB)) return void(e.fail(9));
    if (!ork::core::matrix_fits<C>(M, N, LDC)) return void(e.fail(12));
    ork::core::undoable<C> out(c, M, N, LDC);
    if (!out.ok()) return void(e.out_of_memory());
    const double work = double(M) * double(N) * double(na);
    if (left)
        slabs(N, col_unit, work, [&](idx j0, idx len) {
            out.run([&] { kernel(side, uplo, m, &len, alpha, a, lda, b + j0 * LDB, ldb, beta, c + j0 * LDC, ldc); });
        });
    else
        slabs(M, row_unit, work, [&](idx i0, idx len) {
            out.run([&] { kernel(side, uplo, &len, n, alpha, a, lda, b + i0, ldb, beta, c + i0, ldc); });
        });
    out.finish(e);
}

// ---- rank-k and rank-2k updates. The columns of C are split at multiples
// of the kernels' column block, balanced by the area of the triangle; slab
// [j0, j1) is the kernel on its diagonal block plus gemm on the rectangle
// beside it (below for lower, above for upper), as the kernel would do it.
// S: type of alpha and beta as given (real for herk; beta real for her2k).
template <class C, bool herm, class SA, class SB, class Kernel>
void rank(const char* name, Kernel kernel, const char* uplo, const char* trans, const idx* n, const idx* k,
          const SA* alpha, const C* a, const idx* lda, const C* b, const idx* ldb, const SB* beta, C* c,
          const idx* ldc, bool two) {
    entry e(name);
    const int shift = two ? 2 : 0;  // b and ldb come before beta in the rank-2k routines
    if (!one_of(uplo, "UL")) return void(e.fail(1));
    if (!one_of(trans, herm ? hermitian_ops : symmetric_ops<C>())) return void(e.fail(2));
    if (!n || *n < 0) return void(e.fail(3));
    if (!k || *k < 0) return void(e.fail(4));
    const idx N = *n, Kd = *k;
    const bool nt = lsame(trans, "N"), lower = lsame(uplo, "L"), reads = N > 0 && Kd > 0;
    const idx rows = nt ? N : Kd;
    if (!alpha) return void(e.fail(5));
    if (!a && reads) return void(e.fail(6));
    if (!lda || *lda < at_least_one(rows)) return void(e.fail(7));
    if (two) {
        if (!b && reads) return void(e.fail(8));
        if (!ldb || *ldb < at_least_one(rows)) return void(e.fail(9));
    }
    if (!beta) return void(e.fail(8 + shift));
    if (!c && N > 0) return void(e.fail(9 + shift));
    if (!ldc || *ldc < at_least_one(N)) return void(e.fail(10 + shift));
    if (N == 0 || ((Kd == 0 || is_zero(*alpha)) && is_one(*beta))) return;
    if (!ork::core::matrix_fits<C>(nt ? N : Kd, nt ? Kd : N, *lda)) return void(e.fail(7));
    if (two && !ork::core::matrix_fits<C>(nt ? N : Kd, nt ? Kd : N, *ldb)) return void(e.fail(9));
    if (!ork::core::matrix_fits<C>(N, N, *ldc)) return void(e.fail(10 + shift));

    const idx LDA = *lda, LDB = two ? *ldb : 0, LDC = *ldc;
    ork::core::undoable<C> out(c, N, N, LDC);
    if (!out.ok()) return void(e.out_of_memory());
    auto whole = [&](const idx* nn, const C* as, const C* bs, C* cs) {
        out.run([&] { kernel(uplo, trans, nn, k, alpha, as, lda, bs, ldb, beta, cs, ldc); });
    };
    const double work = double(N) * double(N) * double(Kd) * (two ? 2 : 1);
    if (Kd == 0 || is_zero(*alpha) || ork::core::max_threads() < 2 || work < split_min_work) {
        whole(n, a, b, c);
        return void(out.finish(e));
    }

    // gemm over the rectangle beside a slab, with C's scalars as gemm takes them.
    const char* ta = nt ? "N" : herm ? "C" : "T";
    const char* tb = nt ? (herm ? "C" : "T") : "N";
    C al, al2, be;
    if constexpr (std::is_same_v<SA, C>) al = *alpha;
    else al = from_real<C>(*alpha);
    al2 = herm ? conj_of(al) : al;
    if constexpr (std::is_same_v<SB, C>) be = *beta;
    else be = from_real<C>(*beta);
    const C one_ = from_real<C>(1);
    auto row = [nt](const C* x, idx ld, idx r) { return nt ? x + r : x + r * ld; };

    // Cut s of t: the first unit where the triangle's area to the left
    // reaches s/t of the whole (unit u holds about n - 64u (lower) or
    // 64u + 64 (upper) rows).
    auto cut = [&](idx units, int s, int t) {
        auto height = [&](idx u) { return double(lower ? N - u * rank_unit : (u + 1) * rank_unit); };
        double total = 0;
        for (idx u = 0; u < units; ++u) total += height(u);
        double want = total * s / t, sum = 0;
        idx u = 0;
        for (; u < units && sum + 0.5 * height(u) < want; ++u) sum += height(u);
        return u;
    };
    run_slabs(N, rank_unit, work, cut, [&](idx j0, idx len) {
        whole(&len, row(a, LDA, j0), two ? row(b, LDB, j0) : nullptr, c + j0 + j0 * LDC);
        const idx r0 = lower ? j0 + len : 0, rn = lower ? N - r0 : j0;
        if (rn == 0) return;
        const auto gemm = l3<C>::gemm();
        const C* bb = two ? b : a;
        const idx* ldbb = two ? ldb : lda;
        out.run([&] {
            gemm(ta, tb, &rn, &len, k, &al, row(a, LDA, r0), lda, row(bb, *ldbb, j0), ldbb, &be, c + r0 + j0 * LDC, ldc);
            if (two)
                gemm(ta, tb, &rn, &len, k, &al2, row(b, LDB, r0), ldb, row(a, LDA, j0), lda, &one_, c + r0 + j0 * LDC,
                     ldc);
        });
    });
    out.finish(e);
}

}  // namespace

#define ORK_L3_ENTRIES(p, C)                                                                                        \
    ORK_CORE_API void ork_blas_##p##symm(const char* side, const char* uplo, const idx* m, const idx* n,            \
                                         const C* alpha, const C* a, const idx* lda, const C* b, const idx* ldb,    \
                                         const C* beta, C* c, const idx* ldc) {                                     \
        symmetric("ork_blas_" #p "symm", K().ork_blas_x##p##symm, side, uplo, m, n, alpha, a, lda, b, ldb, beta, c, \
                  ldc);                                                                                             \
    }                                                                                                               \
    ORK_CORE_API void ork_blas_##p##syrk(const char* uplo, const char* trans, const idx* n, const idx* k,           \
                                         const C* alpha, const C* a, const idx* lda, const C* beta, C* c,           \
                                         const idx* ldc) {                                                          \
        auto kern = [](const char* u, const char* t, const idx* nn, const idx* kk, const C* al, const C* as,         \
                       const idx* la, const C*, const idx*, const C* be, C* cs, const idx* lc) {                    \
            K().ork_blas_x##p##syrk(u, t, nn, kk, al, as, la, be, cs, lc);                                          \
        };                                                                                                          \
        rank<C, false>("ork_blas_" #p "syrk", kern, uplo, trans, n, k, alpha, a, lda, nullptr, nullptr, beta, c,    \
                       ldc, false);                                                                                 \
    }                                                                                                               \
    ORK_CORE_API void ork_blas_##p##syr2k(const char* uplo, const char* trans, const idx* n, const idx* k,          \
                                          const C* alpha, const C* a, const idx* lda, const C* b, const idx* ldb,   \
                                          const C* beta, C* c, const idx* ldc) {                                    \
        rank<C, false>("ork_blas_" #p "syr2k", K().ork_blas_x##p##syr2k, uplo, trans, n, k, alpha, a, lda, b, ldb,  \
                       beta, c, ldc, true);                                                                         \
    }                                                                                                               \
    ORK_CORE_API void ork_blas_##p##trmm(const char* side, const char* uplo, const char* transa, const char* diag,  \
                                         const idx* m, const idx* n, const C* alpha, const C* a, const idx* lda,    \
                                         C* b, const idx* ldb) {                                                    \
        triangular("ork_blas_" #p "trmm", K().ork_blas_x##p##trmm, side, uplo, transa, diag, m, n, alpha, a, lda,   \
                   b, ldb);                                                                                         \
    }                                                                                                               \
    ORK_CORE_API void ork_blas_##p##trsm(const char* side, const char* uplo, const char* transa, const char* diag,  \
                                         const idx* m, const idx* n, const C* alpha, const C* a, const idx* lda,    \
                                         C* b, const idx* ldb) {                                                    \
        triangular("ork_blas_" #p "trsm", K().ork_blas_x##p##trsm, side, uplo, transa, diag, m, n, alpha, a, lda,   \
                   b, ldb);                                                                                         \
    }
ORK_L3_ENTRIES(s, float)
ORK_L3_ENTRIES(d, double)
ORK_L3_ENTRIES(c, ork_complex8)
ORK_L3_ENTRIES(z, ork_complex16)

// The Hermitian forms; R: the real type of herk's alpha and beta and her2k's beta.
#define ORK_L3_HERMITIAN(p, C, R)                                                                                   \
    ORK_CORE_API void ork_blas_##p##hemm(const char* side, const char* uplo, const idx* m, const idx* n,            \
                                         const C* alpha, const C* a, const idx* lda, const C* b, const idx* ldb,    \
                                         const C* beta, C* c, const idx* ldc) {                                     \
        symmetric("ork_blas_" #p "hemm", K().ork_blas_x##p##hemm, side, uplo, m, n, alpha, a, lda, b, ldb, beta, c, \
                  ldc);                                                                                             \
    }                                                                                                               \
    ORK_CORE_API void ork_blas_##p##herk(const char* uplo, const char* trans, const idx* n, const idx* k,           \
                                         const R* alpha, const C* a, const idx* lda, const R* beta, C* c,           \
                                         const idx* ldc) {                                                          \
        auto kern = [](const char* u, const char* t, const idx* nn, const idx* kk, const R* al, const C* as,         \
                       const idx* la, const C*, const idx*, const R* be, C* cs, const idx* lc) {                    \
            K().ork_blas_x##p##herk(u, t, nn, kk, al, as, la, be, cs, lc);                                          \
        };                                                                                                          \
        rank<C, true>("ork_blas_" #p "herk", kern, uplo, trans, n, k, alpha, a, lda, nullptr, nullptr, beta, c,     \
                      ldc, false);                                                                                  \
    }                                                                                                               \
    ORK_CORE_API void ork_blas_##p##her2k(const char* uplo, const char* trans, const idx* n, const idx* k,          \
                                          const C* alpha, const C* a, const idx* lda, const C* b, const idx* ldb,   \
                                          const R* beta, C* c, const idx* ldc) {                                    \
        rank<C, true>("ork_blas_" #p "her2k", K().ork_blas_x##p##her2k, uplo, trans, n, k, alpha, a, lda, b, ldb,   \
                      beta, c, ldc, true);                                                                          \
    }
ORK_L3_HERMITIAN(c, ork_complex8, float)
ORK_L3_HERMITIAN(z, ork_complex16, double)
