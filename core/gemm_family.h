// The body of libork's entries of the matrix-multiply family, complex
// products from three real products (cgemm3m, zgemm3m) and real-times-complex
// products (scgemm, dzgemm): what the checked entries of
// core/gemm_family_entries.cpp (generated from blas/gemm/table.py) hand over
// to. The kernel library's driver runs on column slabs of C, split over
// threads when the product is long.
#pragma once

#include <type_traits>

#include "core/checks.h"
#include "core/gemm.h"

namespace ork::core::gemm {
// Slabs are whole multiples of 8 columns, the last one taking the rest. The
// three-product drivers treat the last n mod 4 columns, the mixed drivers the
// last n mod 8, differently from the others, and every other column alike
// (no blocking depends on n); so each column of C takes the same path and
// the same operations in any split, and the bits do not depend on the
// number of threads.
constexpr idx col_unit = 8;

// A: element type of A (real for the mixed products); C: of alpha, beta, B, C;
// driver: the kernel library's x?gemm3m or x??gemm.
template <class D, class A, class C>
void product(const entry& e, D driver, const char* ta, const char* tb, const idx* m, const idx* n, const idx* k,
             const C* alpha, const A* a, const idx* lda, const C* b, const idx* ldb, const C* beta, C* c,
             const idx* ldc) {
    const idx N = *n, Kd = *k;
    const bool nb = check::is(tb, "N");

    // The three-product drivers test their workspace and multiply unpacked
    // without it; the mixed ones write C before the real driver inside them
    // takes its own, so their C is kept for undoing (core.h: undoable).
    constexpr bool mixed = !std::is_same_v<A, C>;
    undoable<C> out(c, mixed ? *m : 0, N, *ldc);
    if (!out.ok()) return (void)e.out_of_memory();
    auto call = [&](const idx* len, const C* bs, C* cs) {
        if (mixed) out.run([&] { driver(ta, tb, m, len, k, alpha, a, lda, bs, ldb, beta, cs, ldc); });
        else driver(ta, tb, m, len, k, alpha, a, lda, bs, ldb, beta, cs, ldc);
    };
    const int threads = max_threads();
    const double work = double(*m) * double(N) * double(Kd);
    const idx units = N / col_unit;
    if (threads < 2 || work < split_min_work || units < 2 || is_zero(*alpha)) {
        call(n, b, c);
        return (void)out.finish(e);
    }

    // Each slab runs the whole driver, beta pass included, on its columns.
    const int t = int(units < threads ? units : threads);
    const idx LDC = *ldc, LDB = *ldb;
    parallel_for(t, t, [&](int s) {
        const idx j0 = units * s / t * col_unit;
        const idx len = (s == t - 1 ? N : units * (s + 1) / t * col_unit) - j0;
        call(&len, nb ? b + j0 * LDB : b + j0, c + j0 * LDC);
    });
    out.finish(e);
}

}  // namespace ork::core::gemm
