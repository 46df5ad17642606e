// The bodies of libork's level-3 routines besides the general product: what
// the checked entries of core/level3_entries.cpp (generated from
// blas/level3/table.py) hand over to once the arguments have passed. Each
// runs the kernel of the loaded library, split over threads into
// independent slabs of B or C. The kernels write their output before they
// take all their workspace, so a copy of it is kept for the case that they
// cannot (see core.h: undoable); the entry `e` reports running out of memory.
#pragma once

#include <type_traits>

#include "core/checks.h"
#include "core/core.h"
#include "core/gemm.h"

namespace ork::core::level3 {

using idx = ork_int;
using check::is;

// a real scalar as an element of C
template <class C, class S> C element(S v) {
    if constexpr (std::is_same_v<S, C>) return v;
    else return C{v, 0};
}
template <class C> C conj_of(const C& v) {
    if constexpr (std::is_arithmetic_v<C>) return v;
    else return C{v.re, -v.im};
}

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
template <class K, class C>
void triangular(const entry& e, K kernel, const char* side, const char* uplo, const char* transa, const char* diag,
                const idx* m, const idx* n, const C* alpha, const C* a, const idx* lda, C* b, const idx* ldb) {
    const idx M = *m, N = *n, LDB = *ldb;
    const bool left = is(side, "L");
    undoable<C> out(b, M, N, LDB);
    if (!out.ok()) return void(e.out_of_memory());
    const double work = double(M) * double(N) * double(left ? M : N);
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
template <class K, class C>
void symm(const entry& e, K kernel, const char* side, const char* uplo, const idx* m, const idx* n, const C* alpha,
          const C* a, const idx* lda, const C* b, const idx* ldb, const C* beta, C* c, const idx* ldc) {
    const idx M = *m, N = *n, LDB = *ldb, LDC = *ldc;
    const bool left = is(side, "L");
    undoable<C> out(c, M, N, LDC);
    if (!out.ok()) return void(e.out_of_memory());
    const double work = double(M) * double(N) * double(left ? M : N);
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
// beside it (below for lower, above for upper) by the loop-nest pieces of
// libork's gemm (beta first), so each element has libork's gemm bits
// whatever the split, as the kernel gives them.
// `kernel` takes the rank-2k arguments (b, ldb unused for rank k); SA, SB:
// the types of alpha and beta as given (real for herk; beta real for her2k).
template <bool herm, class K, class C, class SA, class SB>
void rank(const entry& e, K kernel, bool two, const char* uplo, const char* trans, const idx* n, const idx* k,
          const SA* alpha, const C* a, const idx* lda, const C* b, const idx* ldb, const SB* beta, C* c,
          const idx* ldc) {
    const idx N = *n, Kd = *k;
    const bool nt = is(trans, "N"), lower = is(uplo, "L");
    const idx LDA = *lda, LDB = two ? *ldb : 0, LDC = *ldc;
    undoable<C> out(c, N, N, LDC, lower ? 'L' : 'U');
    if (!out.ok()) return void(e.out_of_memory());
    auto whole = [&](const idx* nn, const C* as, const C* bs, C* cs) {
        out.run([&] { kernel(uplo, trans, nn, k, alpha, as, lda, bs, ldb, beta, cs, ldc); });
    };
    const double work = double(N) * double(N) * double(Kd) * (two ? 2 : 1);
    if (Kd == 0 || check::is_zero(*alpha) || max_threads() < 2 || work < split_min_work) {
        whole(n, a, b, c);
        return void(out.finish(e));
    }

    // the rectangle beside a slab, with C's scalars as gemm takes them
    const char* ta = nt ? "N" : herm ? "C" : "T";
    const char* tb = nt ? (herm ? "C" : "T") : "N";
    const C al = element<C>(*alpha), al2 = herm ? conj_of(al) : al, be = element<C>(*beta);
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
        using G = gemm::gemm_kernels<C>;
        const C* bb = two ? b : a;
        const idx* ldbb = two ? ldb : lda;
        C* cr = c + r0 + j0 * LDC;
        out.run([&] {
            if (!check::is_one(be)) G::scalm()(&rn, &len, &be, cr, ldc);
            G::by_columns()(ta, tb, &rn, &len, k, &al, row(a, LDA, r0), lda, row(bb, *ldbb, j0), ldbb, cr, ldc);
            if (two) G::by_columns()(ta, tb, &rn, &len, k, &al2, row(b, LDB, r0), ldb, row(a, LDA, j0), lda, cr, ldc);
        });
    });
    out.finish(e);
}
template <bool herm, class K, class C, class SA, class SB>
void rank_k(const entry& e, K kernel, const char* uplo, const char* trans, const idx* n, const idx* k,
            const SA* alpha, const C* a, const idx* lda, const SB* beta, C* c, const idx* ldc) {
    auto k2 = [kernel](const char* u, const char* t, const idx* nn, const idx* kk, const SA* al, const C* as,
                       const idx* la, const C*, const idx*, const SB* be, C* cs, const idx* lc) {
        kernel(u, t, nn, kk, al, as, la, be, cs, lc);
    };
    rank<herm>(e, k2, false, uplo, trans, n, k, alpha, a, lda, static_cast<const C*>(nullptr), nullptr, beta, c, ldc);
}
template <bool herm, class K, class C, class SA, class SB>
void rank_2k(const entry& e, K kernel, const char* uplo, const char* trans, const idx* n, const idx* k,
             const SA* alpha, const C* a, const idx* lda, const C* b, const idx* ldb, const SB* beta, C* c,
             const idx* ldc) {
    rank<herm>(e, kernel, true, uplo, trans, n, k, alpha, a, lda, b, ldb, beta, c, ldc);
}

}  // namespace ork::core::level3
