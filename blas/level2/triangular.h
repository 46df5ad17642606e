// Triangular level-2 operations over the element type: the blocked solve
// ?trsv and its diagonal-block kernels, the product ?trmv over any range of
// its result, and the band and packed products and solves.
#pragma once

#include "blas/level1/compensated.h"
#include "blas/level2/triangular_inner.h"
#include "frame/vector.h"

namespace ork::blas {

// a / b; complex by Smith's method (the smaller part of b divided by the
// larger), which neither overflows nor underflows where the quotient does not.
template <class R>
R divide(R a, R b) {
    return a / b;
}
template <class R>
cx<R> divide(cx<R> a, cx<R> b) {
    if (abs1(b.im) <= abs1(b.re)) {
        const R r = b.im / b.re, d = b.re + b.im * r;
        return {(a.re + a.im * r) / d, (a.im - a.re * r) / d};
    }
    const R r = b.re / b.im, d = b.im + b.re * r;
    return {(a.re * r + a.im) / d, (a.im * r - a.re) / d};
}

template <class T> T op(T a, bool c) { return c ? conj(a) : a; }

// ---- diagonal blocks of the solve. Unknown k at x[k*incx]; A(i, j) at
// a[i + j*lda]. No transpose: the column sweep, x_j := x_j / A(j, j), then
// x_i := x_i - x_j*A(i, j) below (lower, forward) or above (upper, backward)
// the diagonal. Transposed: the dot form, two unknowns at a time; for the pair
// the sums over the unknowns already solved come first (tri_inner::dots, or
// in order of i for other increments), then the partner's term is added to
// the second sum: x_j := (x_j - s_j) / op(A(j, j)).
template <class T, bool Lower, bool Trans, bool Conj, bool Unit>
void trsv_block(idx nb, const T* a, idx lda, T* x, idx incx) {
    auto A = [&](idx i, idx j) { return op(a[i + j * lda], Conj); };
    auto X = [&](idx k) -> T& { return x[k * incx]; };
    auto solve = [&](idx j, T s) { X(j) = Unit ? X(j) - s : divide(X(j) - s, A(j, j)); };
    // s[0..nc) := sums over rows lo .. lo+m-1 of columns c0 .. c0+nc-1
    auto sums = [&](idx lo, idx m, idx c0, idx nc, T* s) {
        if (incx == 1) return tri_inner::dots(m, nc, a + lo + c0 * lda, lda, x + lo, s, Conj);
        for (idx k = 0; k < nc; ++k) {
            T t = zero<T>();
            for (idx i = lo; i < lo + m; ++i) t += A(i, c0 + k) * X(i);
            s[k] = t;
        }
    };
    if constexpr (!Trans) {
        auto column = [&](idx j, idx lo, idx m) {
            if (!Unit) X(j) = divide(X(j), a[j + j * lda]);
            const T xj = X(j);
            if (incx == 1) tri_inner::sweep(m, xj, a + lo + j * lda, x + lo);
            else
                for (idx i = lo; i < lo + m; ++i) X(i) = X(i) - xj * a[i + j * lda];
        };
        if constexpr (Lower)
            for (idx j = 0; j < nb; ++j) column(j, j + 1, nb - 1 - j);
        else
            for (idx j = nb - 1; j >= 0; --j) column(j, 0, j);
    } else if constexpr (Lower) {
        idx j = nb - 1;
        for (; j >= 1; j -= 2) {  // the pair j, j-1 over rows j+1 .. nb-1
            T s[2];
            sums(j + 1, nb - 1 - j, j - 1, 2, s);
            solve(j, s[1]);
            solve(j - 1, s[0] + A(j, j - 1) * X(j));
        }
        if (j == 0) {
            T s;
            sums(1, nb - 1, 0, 1, &s);
            solve(0, s);
        }
    } else {
        idx j = 0;
        for (; j + 1 < nb; j += 2) {  // the pair j, j+1 over rows 0 .. j-1
            T s[2];
            sums(0, j, j, 2, s);
            solve(j, s[0]);
            solve(j + 1, s[1] + A(j, j + 1) * X(j));
        }
        if (j < nb) {
            T s;
            sums(0, j, j, 1, &s);
            solve(j, s);
        }
    }
}

template <class T>
using block_kernel = void (*)(idx, const T*, idx, T*, idx);

template <class T, bool Lower, bool Trans, bool Conj>
block_kernel<T> pick_unit(bool unit) {
    return unit ? &trsv_block<T, Lower, Trans, Conj, true> : &trsv_block<T, Lower, Trans, Conj, false>;
}
template <class T>
block_kernel<T> pick_block(bool upper, bool trans, bool conj, bool unit) {
    if (!trans) return upper ? pick_unit<T, false, false, false>(unit) : pick_unit<T, true, false, false>(unit);
    if (conj) return upper ? pick_unit<T, false, true, true>(unit) : pick_unit<T, true, true, true>(unit);
    return upper ? pick_unit<T, false, true, false>(unit) : pick_unit<T, true, true, false>(unit);
}

// ---- the blocked solve: diagonal blocks of 32 unknowns, coupled through
// gemv(m, nc, a_sub, x_sub, y_sub), which must do y_sub := y_sub -
// op(a_sub)*x_sub with the caller's op, lda and incx (the sub-vectors given
// by their lowest address, as the increment convention wants).
constexpr idx trsv_block_size = 32;

template <class T, class Gemv>
void trsv(bool upper, bool trans, bool conj, bool unit, idx n, const T* a, idx lda, T* x, idx incx, Gemv gemv) {
    if (n <= 0) return;
    constexpr idx B = trsv_block_size;
    const block_kernel<T> kernel = pick_block<T>(upper, trans, conj, unit);
    auto A = [&](idx i, idx j) { return a + i + j * lda; };
    auto at = [&](idx i) { return incx > 0 ? x + i * incx : x + (n - 1 - i) * -incx; };  // unknown i
    auto span = [&](idx i0, idx len) { return incx > 0 ? at(i0) : at(i0 + len - 1); };  // unknowns i0 ..
    auto solve = [&](idx s, idx nb) { kernel(nb, A(s, s), lda, at(s), incx); };
    const idx full = n / B, rest = n - full * B;
    if (!trans && !upper) {  // forward: blocks from the top, the rest below them
        for (idx b = 0; b < full; ++b) {
            const idx s = b * B, below = n - s - B;
            solve(s, B);
            if (below > 0) gemv(below, B, A(s + B, s), span(s, B), span(s + B, below));
        }
        if (rest > 0) solve(full * B, rest);
    } else if (!trans) {  // backward: blocks from the bottom, the rest on top
        for (idx b = 0; b < full; ++b) {
            const idx s = n - (b + 1) * B;
            solve(s, B);
            if (s > 0) gemv(s, B, A(0, s), span(s, B), span(0, s));
        }
        if (rest > 0) solve(0, rest);
    } else if (!upper) {  // backward, blocks ending at n, n-32, ...; the partial one on top
        for (idx e = n; e >= 1; e -= B) {
            const idx s = e > B ? e - B : 0, below = n - e;
            if (below > 0) gemv(below, e - s, A(e, s), span(e, below), span(s, e - s));
            solve(s, e - s);
        }
    } else {  // forward, blocks starting at 0, 32, ...; the partial one at the bottom
        for (idx s = 0; s < n; s += B) {
            const idx e = s + B < n ? s + B : n;
            if (s > 0) gemv(s, e - s, A(0, s), span(0, s), span(s, e - s));
            solve(s, e - s);
        }
    }
}

// sum of op(run[i])*xv[lo + i] over i < m for a strided x: plain sums over
// blocks of 256 from i = 0, the blocks added with compensation.
template <class T, class X>
T strided_dot(idx m, const T* run, const X& xv, idx lo, bool conj) {
    return blocked_sum<T>(m, 256, [&](idx i) { return op(run[i], conj) * xv[lo + i]; });
}

// ---- x := op(A)*x, elements r0 .. r0+len-1 of it into y. Each element's
// order: no transpose, the diagonal term A(i, i)*x_i, then x_j*A(i, j) added
// one at a time in order of j away from the diagonal (as the reference
// column-oriented loops do). Transposed, for column j in the group of four
// [g, g+4), g = 4*floor(j/4): t := tri_inner::dots over the rows outside
// the group's triangle (above g when upper, from g+4 down when lower), then
// the rows between the group's edge and the diagonal added in order of i,
// then y_j := op(A(j, j))*x_j + t. None of this depends on r0 or len.
template <class T>
void trmv_range(bool upper, bool trans, bool conj, bool unit, idx n, const T* a, idx lda, const T* x, idx incx,
                T* y, idx r0, idx len) {
    if (len <= 0) return;
    const strided<const T> xv(n, x, incx);
    auto A = [&](idx i, idx j) { return a + i + j * lda; };
    auto diag = [&](idx i) { return unit ? xv[i] : op(*A(i, i), conj) * xv[i]; };
    const idx r1 = r0 + len;
    if (!trans) {
        for (idx i = r0; i < r1; ++i) y[i - r0] = diag(i);
        if (upper) {
            idx j = r0 + 1;
            for (; j < r1; j += 4) {  // columns j .. j+kk-1: full above row j, a triangle from it
                const idx kk = n - j < 4 ? n - j : 4;
                tri_inner::gemv_cols(j - r0, kk, A(r0, j), lda, &xv[j], incx, y);
                for (idx i = j; i < j + kk - 1 && i < r1; ++i)
                    for (idx c = i + 1; c < j + kk; ++c) y[i - r0] = y[i - r0] + xv[c] * *A(i, c);
            }
            if (j < n) tri_inner::gemv_cols(len, n - j, A(r0, j), lda, &xv[j], incx, y);
        } else {
            idx j = r1 - 2;  // next column, downwards
            while (j >= r0) {  // columns j down to lo: full below row j, a triangle above
                const idx lo = j >= 3 ? j - 3 : 0;
                if (r1 - 1 - j > 0) tri_inner::gemv_cols(r1 - 1 - j, j - lo + 1, A(j + 1, j), -lda, &xv[j], -incx, y + (j + 1 - r0));
                for (idx i = j; i > lo && i >= r0; --i)
                    for (idx c = i - 1; c >= lo; --c) y[i - r0] = y[i - r0] + xv[c] * *A(i, c);
                j = lo - 1;
            }
            if (j >= 0) tri_inner::gemv_cols(len, j + 1, A(r0, j), -lda, &xv[j], -incx, y);
        }
        return;
    }
    for (idx g = r0 - r0 % 4; g < r1; g += 4) {
        const idx j0 = g > r0 ? g : r0, j1 = g + 4 < r1 ? g + 4 : r1, e = g + 4 < n ? g + 4 : n;
        T t[4];
        // rows outside the group's triangle: 0 .. g-1 (upper), e .. n-1 (lower)
        const idx lo = upper ? 0 : e, m = upper ? g : n - e;
        if (incx == 1) tri_inner::dots(m, j1 - j0, A(lo, j0), lda, x + lo, t, conj);
        else
            for (idx j = j0; j < j1; ++j)
                t[j - j0] = strided_dot(m, A(lo, j), xv, lo, conj);
        for (idx j = j0; j < j1; ++j) {
            T s = t[j - j0];
            if (upper)
                for (idx i = g; i < j; ++i) s += op(*A(i, j), conj) * xv[i];
            else
                for (idx i = j + 1; i < e; ++i) s += op(*A(i, j), conj) * xv[i];
            y[j - r0] = diag(j) + s;
        }
    }
}

// ---- triangular storages by columns: column j's stored rows lo .. hi lie
// contiguously from p (element (lo, j)); the diagonal is the last of them
// (upper) or the first (lower).
template <class T>
struct column_run {
    const T* p;
    idx lo, hi;
};
template <class T>
struct full_storage {
    const T* a;
    idx lda, n;
    bool upper;
    column_run<T> col(idx j) const { return upper ? column_run<T>{a + j * lda, 0, j} : column_run<T>{a + j + j * lda, j, n - 1}; }
};
template <class T>
struct band_storage {
    const T* a;
    idx lda, n, k;
    bool upper;
    column_run<T> col(idx j) const {
        if (upper) {
            const idx lo = j > k ? j - k : 0;
            return {a + (k - j + lo) + j * lda, lo, j};
        }
        return {a + j * lda, j, n - 1 - j > k ? j + k : n - 1};
    }
};
template <class T>
struct packed_storage {
    const T* ap;
    idx n;
    bool upper;
    column_run<T> col(idx j) const {
        return upper ? column_run<T>{ap + j * (j + 1) / 2, 0, j} : column_run<T>{ap + j * (2 * n - j + 1) / 2, j, n - 1};
    }
};

// Column j's diagonal element, and its off-diagonal run of m elements from row lo.
template <class T>
struct split_run {
    const T *diag, *run;
    idx lo, m;
};
template <class T>
split_run<T> split_column(column_run<T> c, idx j, bool upper) {
    if (upper) return {c.p + (j - c.lo), c.p, c.lo, j - c.lo};
    return {c.p, c.p + 1, j + 1, c.hi - j};
}

// Products with the off-diagonal run of one column: x[lo .. lo+m-1] += c*run
// (x_i := x_i + c*A(i, j)), -= (x_i := x_i - c*A(i, j)), and the sum of
// op(A(i, j))*x_i; the strided forms take the same formulas in order of i.
template <class T>
void add_run(idx m, T c, const T* run, T* x, idx incx, idx lo, const strided<T>& xv) {
    if (incx == 1) return tri_inner::gemv_cols(m, 1, run, 0, &c, 0, x + lo);
    for (idx i = 0; i < m; ++i) xv[lo + i] = xv[lo + i] + c * run[i];
}
template <class T>
void sub_run(idx m, T c, const T* run, T* x, idx incx, idx lo, const strided<T>& xv) {
    if (incx == 1) return tri_inner::sweep(m, c, run, x + lo);
    for (idx i = 0; i < m; ++i) xv[lo + i] = xv[lo + i] - c * run[i];
}
template <class T>
T dot_run(idx m, const T* run, const T* x, idx incx, idx lo, const strided<T>& xv, bool conj) {
    T s = zero<T>();
    if (incx == 1) tri_inner::dots(m, 1, run, 0, x + lo, &s, conj);
    else s = strided_dot(m, run, xv, lo, conj);
    return s;
}

// x := op(A)*x in place, column by column in the reference order; columns
// whose x_j is 0 are skipped when not transposed. Transposed, x_j :=
// op(A(j, j))*x_j + (the sum over the column's off-diagonal run).
template <class T, class Storage>
void tri_mv(const Storage& st, bool upper, bool trans, bool conj, bool unit, idx n, T* x, idx incx) {
    if (n <= 0) return;
    const strided<T> xv(n, x, incx);
    auto step = [&](idx j) {
        const auto [d, run, lo, m] = split_column(st.col(j), j, upper);
        if (!trans) {
            const T xj = xv[j];
            if (xj == zero<T>()) return;
            add_run(m, xj, run, x, incx, lo, xv);
            if (!unit) xv[j] = xj * *d;
        } else {
            const T s = dot_run(m, run, x, incx, lo, xv, conj);
            xv[j] = (unit ? xv[j] : op(*d, conj) * xv[j]) + s;
        }
    };
    if (upper != trans)
        for (idx j = 0; j < n; ++j) step(j);
    else
        for (idx j = n - 1; j >= 0; --j) step(j);
}

// x := inv(op(A))*x in place: no transpose, the column sweep (columns whose
// x_j is 0 skipped); transposed, x_j := (x_j - sum over the run) / op(A(j, j)).
template <class T, class Storage>
void tri_sv(const Storage& st, bool upper, bool trans, bool conj, bool unit, idx n, T* x, idx incx) {
    if (n <= 0) return;
    const strided<T> xv(n, x, incx);
    auto step = [&](idx j) {
        const auto [d, run, lo, m] = split_column(st.col(j), j, upper);
        if (!trans) {
            if (xv[j] == zero<T>()) return;
            if (!unit) xv[j] = divide(xv[j], *d);
            sub_run(m, T(xv[j]), run, x, incx, lo, xv);
        } else {
            const T r = xv[j] - dot_run(m, run, x, incx, lo, xv, conj);
            xv[j] = unit ? r : divide(r, op(*d, conj));
        }
    };
    if (upper == trans)
        for (idx j = 0; j < n; ++j) step(j);
    else
        for (idx j = n - 1; j >= 0; --j) step(j);
}

}  // namespace ork::blas
