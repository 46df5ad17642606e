// The bodies of libork's small LAPACK-level entries: what the checked entries
// of core/lapack_entries.cpp (generated from blas/lapack/table.py) hand over
// to once the arguments have passed. Solves with many right-hand sides,
// rotation sequences and reflectors on large matrices are split over threads
// into pieces of whole columns or rows, which the kernels treat
// independently, so the result is the same bits whatever the number of
// threads; the factorisations and the general tridiagonal solve run whole.
#pragma once

#include "core/checks.h"
#include "core/core.h"

namespace ork::core::lapack {

using idx = ork_int;

// Below this many element operations a second thread costs more than it saves.
constexpr double split_min_work = 1 << 18;

// f(i0, len) over [0, extent) in one piece per thread, or whole.
template <class F>
void split(idx extent, double work, F f) {
    int t = max_threads();
    if (idx(t) > extent) t = int(extent);
    if (t < 2 || work < split_min_work) return f(idx(0), extent);
    parallel_for(t, t, [&](int k) {
        const idx i0 = extent * k / t;
        f(i0, extent * (k + 1) / t - i0);
    });
}

// ---- solves with a factored tridiagonal matrix: columns of B split over
// threads (the complex forms lead with iuplo)
template <class K, class C, class R>
void ptts2(const entry&, K kernel, const idx* n, const idx* nrhs, const R* d, const C* e, C* b, const idx* ldb) {
    const idx LDB = *ldb;
    split(*nrhs, double(*n) * double(*nrhs), [&](idx j0, idx len) { kernel(n, &len, d, e, b + j0 * LDB, ldb); });
}
template <class K, class C, class R>
void ptts2(const entry&, K kernel, const idx* iuplo, const idx* n, const idx* nrhs, const R* d, const C* e, C* b,
           const idx* ldb) {
    const idx LDB = *ldb;
    split(*nrhs, double(*n) * double(*nrhs),
          [&](idx j0, idx len) { kernel(iuplo, n, &len, d, e, b + j0 * LDB, ldb); });
}

// ---- reflector: columns (side L) or rows (side R) split over threads, each
// piece with its own part of work
template <class K, class C>
void larfx(const entry&, K kernel, const char* side, const idx* m, const idx* n, const C* v, const C* tau, C* c,
           const idx* ldc, C* work) {
    const idx LDC = *ldc;
    const double ops = double(*m) * double(*n);
    if (check::is(side, "L"))
        split(*n, ops, [&](idx j0, idx len) { kernel(side, m, &len, v, tau, c + j0 * LDC, ldc, work + j0); });
    else
        split(*m, ops, [&](idx i0, idx len) { kernel(side, &len, n, v, tau, c + i0, ldc, work + i0); });
}

// ---- rotation sequences: columns (side L) or rows (side R) split over threads
template <bool Left, class K, class C, class R>
void rotations(const entry&, K kernel, const idx* m, const idx* n, const R* c, const R* s, C* a, const idx* lda) {
    const idx M = *m, N = *n, LDA = *lda;
    const double work = double(M) * double(N) * double(Left ? M : N);
    if (Left) split(N, work, [&](idx j0, idx len) { kernel(m, &len, c, s, a + j0 * LDA, lda); });
    else split(M, work, [&](idx i0, idx len) { kernel(&len, n, c, s, a + i0, lda); });
}

// ?lasr: the variant its flags name (the kernels after the whole one:
// side l then r, pivot v, t, b, direct f then b), split as above
template <class W, class K, class C, class R>
void lasr(const entry& e, W, K lvf, K lvb, K ltf, K ltb, K lbf, K lbb, K rvf, K rvb, K rtf, K rtb, K rbf, K rbb,
          const char* side, const char* pivot, const char* direct, const idx* m, const idx* n, const R* c,
          const R* s, C* a, const idx* lda) {
    const bool fwd = check::is(direct, "F");
    const int pv = check::is(pivot, "V") ? 0 : check::is(pivot, "T") ? 1 : 2;
    if (check::is(side, "L")) {
        const K left[3][2] = {{lvf, lvb}, {ltf, ltb}, {lbf, lbb}};
        return rotations<true>(e, left[pv][fwd ? 0 : 1], m, n, c, s, a, lda);
    }
    const K right[3][2] = {{rvf, rvb}, {rtf, rtb}, {rbf, rbb}};
    rotations<false>(e, right[pv][fwd ? 0 : 1], m, n, c, s, a, lda);
}

}  // namespace ork::core::lapack
