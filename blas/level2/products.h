// Matrix-vector products of level 2, over the element type: general (gemv),
// general band (gbmv), and symmetric or Hermitian in full, band or packed
// storage (one template; the Hermitian form conjugates the transposed half
// and reads only the real part of the diagonal).
#pragma once

#include "blas/level2/inner.h"
#include "blas/level2/storage.h"
#include "blas/level2/tuning.h"
#include "ork/service.h"

namespace ork::blas {

// Blocks of gemv: columns whose scaled x (N) or sums (T, C) sit on the
// stack, and rows of a strided vector that pass through the stack.
constexpr idx gemv_col_block = 128, gemv_row_block = 512, gemv_sum_cols = 512;

// N with more than gemv_sum_cols columns: the columns go gemv_sum_cols at a
// time into a buffer of m sums (the inner kernel summing each group of
// columns in order), and each buffer is added to y_i with compensation, so
// a long row's error does not grow with n. The buffers (and a copy of a
// strided y) take workspace; without it the call runs the plain way (false).
template <class T>
[[gnu::noinline]] bool gemv_n_long(idx m, idx n, T alpha, const T* a, idx lda, strided<const T> xv, T* y, idx incy) {
    const std::size_t len = std::size_t(m);
    T* w = static_cast<T*>(ork_serv_allocate(len * (incy == 1 ? 2 : 3) * sizeof(T), 64));
    if (!w) return false;
    const strided<T> yv(m, y, incy);
    T *lo = w, *part = w + len, *hi = incy == 1 ? y : w + 2 * len;
    T buf[gemv_col_block];
    for (idx i = 0; i < m; ++i) lo[i] = zero<T>();
    if (incy != 1)
        for (idx i = 0; i < m; ++i) hi[i] = yv[i];
    for (idx s0 = 0; s0 < n; s0 += gemv_sum_cols) {
        const idx s1 = n - s0 < gemv_sum_cols ? n : s0 + gemv_sum_cols;
        for (idx i = 0; i < m; ++i) part[i] = zero<T>();
        for (idx j0 = s0; j0 < s1; j0 += gemv_col_block) {
            const idx nb = s1 - j0 < gemv_col_block ? s1 - j0 : gemv_col_block;
            for (idx k = 0; k < nb; ++k) buf[k] = alpha * xv[j0 + k];
            inner::gemv_n(m, nb, a + j0 * lda, lda, buf, part);
        }
        for (idx i = 0; i < m; ++i) two_sum_into(hi[i], lo[i], part[i]);
    }
    for (idx i = 0; i < m; ++i) yv[i] = settle(hi[i], lo[i]);
    ork_serv_deallocate(w);
    return true;
}

// T or C with a strided x: x passes through the stack a block of rows at a
// time, and the blocks' sums of each column are added with compensation.
template <class T>
[[gnu::noinline]] void gemv_t_strided(idx m, idx nb, const T* a, idx lda, strided<const T> xv, T* sums, bool conj_a) {
    constexpr idx rb = gemv_row_block;
    T rowbuf[rb], part[gemv_col_block];
    compensated<T> total[gemv_col_block];
    for (idx i0 = 0; i0 < m; i0 += rb) {
        const idx len = m - i0 < rb ? m - i0 : rb;
        for (idx i = 0; i < len; ++i) rowbuf[i] = xv[i0 + i];
        for (idx k = 0; k < nb; ++k) part[k] = zero<T>();
        inner::gemv_t(len, nb, a + i0, lda, rowbuf, part, conj_a);
        for (idx k = 0; k < nb; ++k) total[k].add(part[k]);
    }
    for (idx k = 0; k < nb; ++k) sums[k] = total[k].total();
}

// y := alpha*op(A)*x + beta*y; op from the first letter of trans (N, T, C;
// C conjugates A).
template <class T>
void gemv(char trans, idx m, idx n, T alpha, const T* a, idx lda, const T* x, idx incx, T beta, T* y,
          idx incy) {
    if (m <= 0 || n <= 0 || (alpha == zero<T>() && beta == one<T>())) return;
    const bool notrans = trans == 'N';
    const idx leny = notrans ? m : n, lenx = notrans ? n : m;
    scale_vector(leny, beta, y, incy);
    if (alpha == zero<T>()) return;
    constexpr idx col_block = gemv_col_block, row_block = gemv_row_block;
    T buf[col_block];
    strided xv(lenx, x, incx);
    strided yv(leny, y, incy);
    if (notrans) {
        // y_i += sum_j A(i, j)*(alpha*x_j), the inner kernel summing each
        // group of columns in order and adding the sums to y_i one by one
        // (more than gemv_sum_cols columns: gemv_n_long). Per element the same
        // operations wherever its row lies, so a split over rows keeps the bits
        // (unless workspace runs out in one piece and not in another).
        if (n > gemv_sum_cols && gemv_n_long(m, n, alpha, a, lda, strided<const T>(lenx, x, incx), y, incy)) return;
        T rowbuf[row_block];
        const idx step = incy == 1 ? m : row_block;
        for (idx i0 = 0; i0 < m; i0 += step) {
            const idx len = m - i0 < step ? m - i0 : step;
            T* yc = incy == 1 ? y : rowbuf;
            if (incy != 1)
                for (idx i = 0; i < len; ++i) yc[i] = yv[i0 + i];
            for (idx j0 = 0; j0 < n; j0 += col_block) {
                const idx nb = n - j0 < col_block ? n - j0 : col_block;
                for (idx k = 0; k < nb; ++k) buf[k] = alpha * xv[j0 + k];
                inner::gemv_n(len, nb, a + i0 + j0 * lda, lda, buf, yc);
            }
            if (incy != 1)
                for (idx i = 0; i < len; ++i) yv[i0 + i] = yc[i];
        }
        return;
    }
    // y_j += alpha*sum_i op(A(i, j))*x_i. A contiguous x goes to the inner
    // kernel whole (which sums each column in blocks, with compensation); a
    // strided one to gemv_t_strided. A column's sum depends on m and on
    // whether x is contiguous, never on the other columns.
    const bool conj_a = trans == 'C';
    for (idx j0 = 0; j0 < n; j0 += col_block) {
        const idx nb = n - j0 < col_block ? n - j0 : col_block;
        if (incx == 1) {
            for (idx k = 0; k < nb; ++k) buf[k] = zero<T>();
            inner::gemv_t(m, nb, a + j0 * lda, lda, x, buf, conj_a);
        } else {
            gemv_t_strided(m, nb, a + j0 * lda, lda, strided<const T>(lenx, x, incx), buf, conj_a);
        }
        for (idx k = 0; k < nb; ++k) yv[j0 + k] += alpha * buf[k];
    }
}

// The same with A an m-by-n band of kl sub- and ku super-diagonals, stored as
// rows of an lda-by-n array (A(i, j) at a[ku + i - j + j*lda]). One column
// at a time: an axpy (N) or a dot product (T, C) over its stored rows,
// summed in blocks from its first stored row (run_dot, run_sum).
template <class T>
void gbmv(char trans, idx m, idx n, idx kl, idx ku, T alpha, const T* a, idx lda, const T* x, idx incx, T beta,
          T* y, idx incy) {
    if (m <= 0 || n <= 0 || (alpha == zero<T>() && beta == one<T>())) return;
    const bool notrans = trans == 'N', conj_a = trans == 'C';
    const idx leny = notrans ? m : n, lenx = notrans ? n : m;
    scale_vector(leny, beta, y, incy);
    if (alpha == zero<T>()) return;
    strided xv(lenx, x, incx);
    strided yv(leny, y, incy);
    const idx jend = n < m + ku ? n : m + ku;  // columns past it hold no stored row
    for (idx j = 0; j < jend; ++j) {
        const T* p = a + j * lda + ku - j;
        const idx lo = j - ku > 0 ? j - ku : 0, hi = j + kl + 1 < m ? j + kl + 1 : m;
        if (notrans) {
            const T t = alpha * xv[j];
            if (incy == 1) inner::axpy(hi - lo, t, p + lo, y + lo);
            else
                for (idx i = lo; i < hi; ++i) yv[i] += t * p[i];
        } else {
            const T s = incx == 1 ? run_dot(hi - lo, p + lo, x + lo, conj_a)
                                  : run_sum<T>(hi - lo, [&](idx i) { return (conj_a ? conj(p[lo + i]) : p[lo + i]) * xv[lo + i]; });
            yv[j] += alpha * s;
        }
    }
}

// y := alpha*A*x + beta*y with A symmetric (Herm = false) or Hermitian, one
// triangle stored in storage S. Each stored element is read once for both of
// its uses: column j adds (alpha*x_j)*a_ij to y_i over its off-diagonal rows
// and sums op(a_ij)*x_i for y_j, which then takes the diagonal term too.
// With a contiguous x four columns share one pass over the rows they have
// in common (the rows of fewer go column by column), a block of rows at a
// time so that its x and y stay in L1 across a block of columns (the
// blocks per generation: tuning.h). A column's sum is gathered a block of
// rows at a time (the inner kernels' sums, or plain ones of at most 512
// terms for a strided x) and the blocks' sums are added with compensation,
// so its error does not grow with n; the updates of y_i gather over a block
// of columns before they are added to y_i, so its error grows as n/256 only.
template <class T, bool Herm, class S>
void symmetric_mv(bool upper, idx n, T alpha, S st, const T* x, idx incx, T beta, T* y, idx incy) {
    if (n <= 0 || (alpha == zero<T>() && beta == one<T>())) return;
    scale_vector(n, beta, y, incy);
    if (alpha == zero<T>()) return;
    strided xv(n, x, incx);
    strided yv(n, y, incy);
    const bool unit = incx == 1;
    auto off_diagonal = [&](idx j) {
        rows r = triangle_rows(j, n, st.reach, upper);
        if (upper) --r.hi;  // the diagonal is taken on its own
        else ++r.lo;
        return r;
    };
    // Blocks of columns, and within them blocks of rows small enough for
    // their x and y to stay in L1 while every column of the block passes.
    // The columns' updates of a block of rows gather in yb (rows from i0),
    // which is added to y once the block of columns has passed.
    constexpr idx G = 4, col_block = symv_blocks::col_block, row_block = symv_blocks::rows<T>;
    T t[col_block], sums[col_block], yb[row_block];
    compensated<T> total[col_block];
    // column j over its rows [lo, hi) within the block of rows from i0: the
    // y updates, the sum returned
    auto part = [&](const T* p, T t1, idx lo, idx hi, idx i0) {
        if (hi <= lo) return zero<T>();
        if (unit && hi - lo >= symv_blocks::short_run) return inner::axpy_dot(hi - lo, p + lo, t1, x + lo, yb + (lo - i0), Herm);
        auto plain = [&](idx b, idx e) {
            T t2 = zero<T>();
            for (idx i = b; i < e; ++i) {
                yb[i - i0] += t1 * p[i];
                t2 += (Herm ? conj(p[i]) : p[i]) * xv[i];
            }
            return t2;
        };
        // plain sums of at most 512 terms, added with compensation
        constexpr idx plain_run = 512;
        if (hi - lo <= plain_run) return plain(lo, hi);
        return blockwise_sum<T>(hi - lo, plain_run, [&](idx b0, idx len) { return plain(lo + b0, lo + b0 + len); });
    };
    auto diagonal = [&](idx j, const T* p, T t1, T t2) {
        if constexpr (Herm) yv[j] += times(t1, p[j].re) + alpha * t2;
        else yv[j] += t1 * p[j] + alpha * t2;
    };
    for (idx j0 = 0; j0 < n; j0 += col_block) {
        const idx j1 = n - j0 < col_block ? n : j0 + col_block;
        for (idx j = j0; j < j1; ++j) t[j - j0] = alpha * xv[j], total[j - j0] = {};
        // the stored rows of these columns lie in [rlo, rhi)
        const idx rlo = off_diagonal(j0).lo, rhi = off_diagonal(j1 - 1).hi;
        for (idx i0 = rlo; i0 < rhi; i0 += row_block) {
            const idx i1 = rhi - i0 < row_block ? rhi : i0 + row_block;
            auto within = [&](idx j) {
                rows r = off_diagonal(j);
                return rows{r.lo > i0 ? r.lo : i0, r.hi < i1 ? r.hi : i1};
            };
            for (idx j = j0; j < j1; ++j) sums[j - j0] = zero<T>();
            for (idx i = i0; i < i1; ++i) yb[i - i0] = zero<T>();
            for (idx j = j0; j < j1;) {
                T* s = sums + (j - j0);
                const T* tj = t + (j - j0);
                if (j + G > j1 || !unit) {
                    const rows r = within(j);
                    *s += part(st.col(j, upper), *tj, r.lo, r.hi, i0);
                    ++j;
                    continue;
                }
                const T* p[G];
                rows r[G];
                idx lo = i0, hi = i1;
                for (idx k = 0; k < G; ++k) {
                    p[k] = st.col(j + k, upper);
                    r[k] = within(j + k);
                    if (r[k].lo > lo) lo = r[k].lo;
                    if (r[k].hi < hi) hi = r[k].hi;
                }
                if (hi > lo) {
                    const T* shared[G];
                    for (idx k = 0; k < G; ++k) shared[k] = p[k] + lo;
                    inner::axpy_dot4(hi - lo, shared, tj, x + lo, yb + (lo - i0), s, Herm);
                } else {
                    lo = hi = n;  // no shared rows: each column goes alone
                }
                for (idx k = 0; k < G; ++k) {
                    const idx a = lo < r[k].hi ? lo : r[k].hi, b = hi > r[k].lo ? hi : r[k].lo;
                    s[k] += part(p[k], tj[k], r[k].lo, a, i0);
                    s[k] += part(p[k], tj[k], b, r[k].hi, i0);
                }
                j += G;
            }
            for (idx j = j0; j < j1; ++j) total[j - j0].add(sums[j - j0]);
            for (idx i = i0; i < i1; ++i) yv[i] += yb[i - i0];
        }
        for (idx j = j0; j < j1; ++j) diagonal(j, st.col(j, upper), t[j - j0], total[j - j0].total());
    }
}

}  // namespace ork::blas
