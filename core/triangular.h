// The bodies of libork's triangular level-2 entries: what the checked entries
// of core/triangular_entries.cpp (generated from blas/level2/triangular_table.py)
// hand over to once the arguments have passed. Large products x := op(A)*x
// are split over threads into ranges of the result of equal work; the
// solve's threads come from the dispatched gemv it calls; the band and
// packed forms run whole.
#pragma once

#include <cmath>

#include "core/checks.h"
#include "core/core.h"

namespace ork::core::triangular {

using idx = ork_int;

// Below this many elements of the triangle per thread a split does not pay.
constexpr double trmv_per_thread = 1 << 17;

// x := op(A)*x. Large products: ranges of the result of about equal area of
// the triangle, one per thread, into a contiguous result from a contiguous
// copy of x; each element has the same bits as the kernel computes whole.
template <class Whole, class Piece, class C>
void trmv(const entry&, Whole whole, Piece piece, const char* uplo, const char* trans, const char* diag,
          const idx* n, const C* a, const idx* lda, C* x, const idx* incx) {
    const idx N = *n, inc = *incx;
    const double area = 0.5 * double(N) * double(N + 1);
    const int most = max_threads();
    const int t = area / trmv_per_thread < most ? int(area / trmv_per_thread) : most;
    // a contiguous result, and a contiguous copy of x for other increments;
    // without room for them, the kernel on the whole (the same bits)
    C* y = t < 2 ? nullptr : static_cast<C*>(allocate(std::size_t(N) * sizeof(C) * (inc == 1 ? 1 : 2), 64));
    if (!y) return whole(uplo, trans, diag, n, a, lda, x, incx);
    const C* xs = x;
    auto logical = [&](idx i) -> C& { return inc > 0 ? x[i * inc] : x[(N - 1 - i) * -inc]; };
    if (inc != 1) {
        C* xc = y + N;
        for (idx i = 0; i < N; ++i) xc[i] = logical(i);
        xs = xc;
    }
    // result i costs about i+1 (rows of upper transposed, lower not
    // transposed) or N-i: boundary k of t at sqrt(k/t) of the way
    const bool rising = check::is(uplo, "U") != check::is(trans, "N");
    auto edge = [&](int k) -> idx {
        if (k <= 0) return 0;
        if (k >= t) return N;
        const double f = std::sqrt(rising ? double(k) / t : 1.0 - double(k) / t);
        const idx b = idx(double(N) * f);
        return rising ? b : N - b;
    };
    const idx one = 1;
    parallel_for(t, t, [&](int k) {
        const idx first = edge(k), len = edge(k + 1) - first;
        if (len > 0) piece(uplo, trans, diag, n, a, lda, xs, &one, y + first, &first, &len);
    });
    for (idx i = 0; i < N; ++i) logical(i) = y[i];
    deallocate(y);
}

}  // namespace ork::core::triangular
