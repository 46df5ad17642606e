// The level-3 kernels besides the general product, written once over the
// element type: symmetric and Hermitian products, rank-k and rank-2k updates,
// triangular multiply and solve. Rectangular work goes to this library's
// gemm engine through its templates; diagonal blocks through compact loops here.
#pragma once

#include <type_traits>

#include "blas/gemm/pieces.h"
#include "frame/export.h"

namespace ork::level3 {

using gemm::op_at;
using gemm::op_ptr;

template <class T> constexpr T minus_one() { return zero<T>() - one<T>(); }
template <class T> T* take(idx elements) { return static_cast<T*>(ork_serv_allocate(std::size_t(elements) * sizeof(T), 64)); }

// a/b; complex quotients by Smith's method, which avoids overflow in |b|^2.
template <class R> R divide(R a, R b) { return a / b; }
template <class R> cx<R> divide(cx<R> a, cx<R> b) {
    if (__builtin_fabs(b.re) >= __builtin_fabs(b.im)) {
        const R r = b.im / b.re, d = b.re + r * b.im;
        return {(a.re + a.im * r) / d, (a.im - a.re * r) / d};
    }
    const R r = b.re / b.im, d = b.im + r * b.re;
    return {(a.re * r + a.im) / d, (a.im * r - a.re) / d};
}

// C := alpha*op(A)*op(B) + beta*C by this library's gemm engine, called
// through its template (ta, tb: op letters, 'C' for complex types only),
// each element with libork's gemm bits whatever the shape of the call.
template <class T>
void product(char ta, char tb, idx m, idx n, idx k, T alpha, const T* a, idx lda, const T* b, idx ldb, T beta, T* c,
             idx ldc) {
    gemm::uniform_product(ta, tb, m, n, k, alpha, a, lda, b, ldb, beta, c, ldc);
}

// Order of the diagonal blocks of the triangular kernels: one depth block
// of the gemm engine of T, so each update is one pass of its nest; half of
// it for small triangles, where the compact kernels would otherwise do a
// large share of the work. It depends on the order of A alone, so slabs of
// B get the blocks of the whole problem.
template <class T> idx tri_block(idx na) {
    const idx full = gemm::tuning<T>::kb;
    return na <= 4 * full ? full / 2 : full;
}

// Calls f(j, G) for groups of G = 4 columns, then single ones. The kernels
// below give each column the same operations whatever group it falls in, so
// results do not depend on how the columns of B are split.
template <class F> void column_groups(idx n, F f) {
    idx j = 0;
    for (; j + 4 <= n; j += 4) f(j, std::integral_constant<int, 4>{});
    for (; j < n; ++j) f(j, std::integral_constant<int, 1>{});
}

// w (nb x nb, ld nb) := op(A) of the diagonal block at a, on op(A)'s own
// triangle only (the stored one seen through op), 1 on a unit diagonal;
// the other triangle of w is not written and never read.
template <class T>
void take_triangle(char t, bool stored_lower, bool unit, idx nb, const T* a, idx lda, T* w) {
    const bool op_lower = stored_lower == (t == 'N');
    for (idx j = 0; j < nb; ++j) {
        const idx i0 = op_lower ? j + 1 : 0, i1 = op_lower ? nb : j;
        for (idx i = i0; i < i1; ++i) w[i + j * nb] = op_at(t, a, lda, i, j);
        w[j + j * nb] = unit ? one<T>() : op_at(t, a, lda, j, j);
    }
}

// ---- compact triangular kernels on one diagonal block W (nb x nb, ld nb).
// The left kernels sweep the unknowns in pieces of four: the piece by the
// plain sweep, then the rows outside it take the four columns of W in one
// pass; the right kernels take four columns of B per pass. Every element
// receives the same operations in the same order as in the plain sweep.

// x_q[i] -= (sub) or += c[a][q]*w(i, ks[a]) for i in [r0, r1), a = 0 .. KP-1 in order.
template <int KP, int G, bool sub, class T>
void piece_to_rows(const idx* ks, const T (*c)[G], const T* w, idx nb, T* const* x, idx r0, idx r1) {
    if constexpr (KP == 4 && G == 4) {
        // the common case column by column with unaliased pointers, so that
        // it vectorises over i
        T* __restrict x0 = x[0];
        T* __restrict x1 = x[1];
        T* __restrict x2 = x[2];
        T* __restrict x3 = x[3];
        const T* __restrict w0 = w + ks[0] * nb;
        const T* __restrict w1 = w + ks[1] * nb;
        const T* __restrict w2 = w + ks[2] * nb;
        const T* __restrict w3 = w + ks[3] * nb;
        auto one_column = [&](T* __restrict xq, int q) {
            const T c0 = c[0][q], c1 = c[1][q], c2 = c[2][q], c3 = c[3][q];
            for (idx i = r0; i < r1; ++i) {
                if constexpr (sub) xq[i] = (((xq[i] - c0 * w0[i]) - c1 * w1[i]) - c2 * w2[i]) - c3 * w3[i];
                else xq[i] = (((xq[i] + c0 * w0[i]) + c1 * w1[i]) + c2 * w2[i]) + c3 * w3[i];
            }
        };
        one_column(x0, 0);
        one_column(x1, 1);
        one_column(x2, 2);
        one_column(x3, 3);
        return;
    }
    const T* wk[KP];
    for (int a = 0; a < KP; ++a) wk[a] = w + ks[a] * nb;
    for (idx i = r0; i < r1; ++i)
        for (int q = 0; q < G; ++q) {
            T v = x[q][i];
            for (int a = 0; a < KP; ++a) {
                if constexpr (sub) v -= c[a][q] * wk[a][i];
                else v += c[a][q] * wk[a][i];
            }
            x[q][i] = v;
        }
}
template <int G, bool sub, class T>
void piece_to_rows(idx kp, const idx* ks, const T (*c)[G], const T* w, idx nb, T* const* x, idx r0, idx r1) {
    if (r0 >= r1) return;
    if (kp == 4) return piece_to_rows<4, G, sub>(ks, c, w, nb, x, r0, r1);
    for (idx a = 0; a < kp; ++a) piece_to_rows<1, G, sub>(ks + a, c + a, w, nb, x, r0, r1);
}

// B := W^-1 B (B nb x n): column sweeps, forward for lower W, backward for
// upper; each x_k is divided by W(k, k).
template <class T>
void solve_left(bool lower, idx nb, const T* w, idx n, T* b, idx ldb) {
    column_groups(n, [&](idx j, auto g) {
        constexpr int G = decltype(g)::value;
        T* x[G];
        for (int q = 0; q < G; ++q) x[q] = b + (j + q) * ldb;
        for (idx p0 = 0; p0 < nb; p0 += 4) {
            const idx kp = nb - p0 < 4 ? nb - p0 : 4;
            idx ks[4];
            T xk[4][G];
            for (idx a = 0; a < kp; ++a) ks[a] = lower ? p0 + a : nb - 1 - p0 - a;
            for (idx a = 0; a < kp; ++a) {
                const T* wk = w + ks[a] * nb;
                for (int q = 0; q < G; ++q) xk[a][q] = x[q][ks[a]] = divide(x[q][ks[a]], wk[ks[a]]);
                for (idx r = a + 1; r < kp; ++r)
                    for (int q = 0; q < G; ++q) x[q][ks[r]] -= xk[a][q] * wk[ks[r]];
            }
            piece_to_rows<G, true>(kp, ks, xk, w, nb, x, lower ? p0 + kp : 0, lower ? nb : nb - p0 - kp);
        }
    });
}

// B := alpha*W*B in place (B nb x n): upper W takes the rows from the top,
// lower W from the bottom, so each row is read before it is overwritten.
template <class T>
void multiply_left(bool lower, idx nb, const T* w, T alpha, idx n, T* b, idx ldb) {
    column_groups(n, [&](idx j, auto g) {
        constexpr int G = decltype(g)::value;
        T* x[G];
        for (int q = 0; q < G; ++q) x[q] = b + (j + q) * ldb;
        for (idx p0 = 0; p0 < nb; p0 += 4) {
            const idx kp = nb - p0 < 4 ? nb - p0 : 4;
            idx ks[4];
            T t[4][G];
            for (idx a = 0; a < kp; ++a) ks[a] = lower ? nb - 1 - p0 - a : p0 + a;
            for (idx a = 0; a < kp; ++a) {
                const T* wk = w + ks[a] * nb;
                for (int q = 0; q < G; ++q) t[a][q] = alpha * x[q][ks[a]];
                for (idx r = 0; r < a; ++r)
                    for (int q = 0; q < G; ++q) x[q][ks[r]] += t[a][q] * wk[ks[r]];
                for (int q = 0; q < G; ++q) x[q][ks[a]] = t[a][q] * wk[ks[a]];
            }
            piece_to_rows<G, false>(kp, ks, t, w, nb, x, lower ? nb - p0 : 0, lower ? nb : p0);
        }
    });
}

// bc[i] -= (sub) or += coef(l)*B(i, l) for l in [l0, l1) in order, four
// columns of B per pass.
template <bool sub, class T, class F>
void columns_into(T* bc, idx h, const T* br, idx ldb, idx l0, idx l1, F coef) {
    idx l = l0;
    for (; l + 4 <= l1; l += 4) {
        const T f0 = coef(l), f1 = coef(l + 1), f2 = coef(l + 2), f3 = coef(l + 3);
        const T *b0 = br + l * ldb, *b1 = b0 + ldb, *b2 = b1 + ldb, *b3 = b2 + ldb;
        for (idx i = 0; i < h; ++i) {
            if constexpr (sub) bc[i] = (((bc[i] - f0 * b0[i]) - f1 * b1[i]) - f2 * b2[i]) - f3 * b3[i];
            else bc[i] = (((bc[i] + f0 * b0[i]) + f1 * b1[i]) + f2 * b2[i]) + f3 * b3[i];
        }
    }
    for (; l < l1; ++l) {
        const T f = coef(l);
        const T* bl = br + l * ldb;
        for (idx i = 0; i < h; ++i) {
            if constexpr (sub) bc[i] -= f * bl[i];
            else bc[i] += f * bl[i];
        }
    }
}

// B := B W^-1 (B m x nb): column c of the solution is column c of B less
// the solved columns before it (upper W) or after it (lower W), divided by
// W(c, c). Rows go in chunks that stay in cache.
template <class T>
void solve_right(bool lower, idx nb, const T* w, idx m, T* b, idx ldb) {
    constexpr idx chunk = 256;
    for (idx r0 = 0; r0 < m; r0 += chunk) {
        const idx h = m - r0 < chunk ? m - r0 : chunk;
        T* br = b + r0;
        for (idx s = 0; s < nb; ++s) {
            const idx c = lower ? nb - 1 - s : s;
            T* bc = br + c * ldb;
            columns_into<true>(bc, h, br, ldb, lower ? c + 1 : 0, lower ? nb : c, [&](idx l) { return w[l + c * nb]; });
            const T d = w[c + c * nb];
            for (idx i = 0; i < h; ++i) bc[i] = divide(bc[i], d);
        }
    }
}

// B := alpha*B*W in place (B m x nb): upper W builds the columns from the
// last, lower W from the first, each from columns not yet overwritten.
template <class T>
void multiply_right(bool lower, idx nb, const T* w, T alpha, idx m, T* b, idx ldb) {
    constexpr idx chunk = 256;
    for (idx r0 = 0; r0 < m; r0 += chunk) {
        const idx h = m - r0 < chunk ? m - r0 : chunk;
        T* br = b + r0;
        for (idx s = 0; s < nb; ++s) {
            const idx c = lower ? s : nb - 1 - s;
            T* bc = br + c * ldb;
            const T d = alpha * w[c + c * nb];
            for (idx i = 0; i < h; ++i) bc[i] = d * bc[i];
            columns_into<false>(bc, h, br, ldb, lower ? c + 1 : 0, lower ? nb : c,
                                [&](idx l) { return alpha * w[l + c * nb]; });
        }
    }
}

// ---- triangular solve and multiply, blocked: the diagonal blocks through
// the compact kernels, the coupling with the rest through gemm.
struct tri_call {
    bool left, lower;  // side L; A stored lower
    char t;            // op of A: N, T or C
    bool unit;
    bool op_lower() const { return lower == (t == 'N'); }
};

// Visits the diagonal blocks of order na in blocks of nb, from the first
// (ascending) or from the last, the partial block coming last either way.
template <class F> void diagonal_blocks(idx na, idx nb, bool ascending, F f) {
    for (idx s = 0; s < na; s += nb) {
        const idx ib = na - s < nb ? na - s : nb;
        f(ascending ? s : na - s - ib, ib);
    }
}

// op(A)*X = alpha*B (left) or X*op(A) = alpha*B (right), X over B (m x n).
// B is scaled by alpha first; each block is solved, then subtracted from the
// unknowns not yet solved (right-looking).
template <class T>
void trsm(const tri_call& s, idx m, idx n, T alpha, const T* a, idx lda, T* b, idx ldb) {
    if (m < 1 || n < 1) return;
    if (alpha == zero<T>()) return gemm::zerom(m, n, b, ldb);
    if (!(alpha == one<T>())) gemm::scalm(m, n, alpha, b, ldb);
    const idx na = s.left ? m : n, nb = tri_block<T>(na);
    const bool forward = s.left == s.op_lower();
    T* w = take<T>(nb * nb);
    diagonal_blocks(na, nb, forward, [&](idx i0, idx ib) {
        take_triangle(s.t, s.lower, s.unit, ib, a + i0 + i0 * lda, lda, w);
        const idx r0 = forward ? i0 + ib : 0, rn = forward ? na - r0 : i0;  // unknowns left
        if (s.left) {
            solve_left(s.op_lower(), ib, w, n, b + i0, ldb);
            product(s.t, 'N', rn, n, ib, minus_one<T>(), op_ptr(s.t, a, lda, r0, i0), lda, b + i0, ldb, one<T>(),
                    b + r0, ldb);
        } else {
            solve_right(s.op_lower(), ib, w, m, b + i0 * ldb, ldb);
            product('N', s.t, m, rn, ib, minus_one<T>(), b + i0 * ldb, ldb, op_ptr(s.t, a, lda, i0, r0), lda, one<T>(),
                    b + r0 * ldb, ldb);
        }
    });
    ork_serv_deallocate(w);
}

// B := alpha*op(A)*B (left) or alpha*B*op(A) (right), right-looking: each
// block of B, still unchanged, first adds its part to the blocks already
// done (one gemm of depth nb), then takes its diagonal part in place. The
// blocks go in the order in which the done ones need nothing else of it.
template <class T>
void trmm(const tri_call& s, idx m, idx n, T alpha, const T* a, idx lda, T* b, idx ldb) {
    if (m < 1 || n < 1) return;
    if (alpha == zero<T>()) return gemm::zerom(m, n, b, ldb);
    const idx na = s.left ? m : n, nb = tri_block<T>(na);
    const bool ascending = s.left != s.op_lower();
    T* w = take<T>(nb * nb);
    diagonal_blocks(na, nb, ascending, [&](idx i0, idx ib) {
        take_triangle(s.t, s.lower, s.unit, ib, a + i0 + i0 * lda, lda, w);
        const idx f0 = ascending ? 0 : i0 + ib, fn = ascending ? i0 : na - f0;  // the blocks done
        if (s.left) {
            product(s.t, 'N', fn, n, ib, alpha, op_ptr(s.t, a, lda, f0, i0), lda, b + i0, ldb, one<T>(), b + f0, ldb);
            multiply_left(s.op_lower(), ib, w, alpha, n, b + i0, ldb);
        } else {
            product('N', s.t, m, fn, ib, alpha, b + i0 * ldb, ldb, op_ptr(s.t, a, lda, i0, f0), lda, one<T>(),
                    b + f0 * ldb, ldb);
            multiply_right(s.op_lower(), ib, w, alpha, m, b + i0 * ldb, ldb);
        }
    });
    ork_serv_deallocate(w);
}

// ---- symmetric and Hermitian products

// The fixed workspace of the symmetric product drivers, and the largest
// diagonal block expanded into it.
inline constexpr std::size_t symm_workspace_bytes = 524288;
inline constexpr idx symm_leaf = 128;

// The first part of a halved order n > 64: n/2 rounded up to a multiple of
// 64, so the gemm calls get whole depth blocks and whole packed groups, and
// every split of the rank updates falls on a multiple of their block.
inline idx half(idx n) { return (n / 2 + 63) / 64 * 64; }

// w (na x na, ld na) := the full symmetric (Hermitian: real diagonal,
// conjugate mirror) matrix whose `lower` or upper triangle is stored at a.
template <class T, bool herm>
void expand(bool lower, idx na, const T* a, idx lda, T* w) {
    for (idx j = 0; j < na; ++j)
        for (idx i = 0; i < na; ++i) {
            const bool stored = lower ? i >= j : i <= j;
            T v = stored ? a[i + j * lda] : a[j + i * lda];
            if constexpr (herm) {
                if (i == j) v = T{v.re, 0};
                else if (!stored) v = conj(v);
            }
            w[i + j * na] = v;
        }
}

// C += alpha*A*B (left, C na x n) or alpha*B*A (right, C n x na), A of order
// na symmetric (Hermitian when herm). A is halved: the diagonal halves
// recursively, the stored off-diagonal block S through gemm, once plainly
// and once (conjugate-)transposed for its mirror; a diagonal block of at
// most symm_leaf is expanded into w and multiplied by gemm.
template <class T, bool herm>
void symm_recursive(bool left, bool lower, idx na, idx n, T alpha, const T* a, idx lda, const T* b, idx ldb, T* c,
                    idx ldc, T* w) {
    if (na < 1 || n < 1) return;
    if (na <= symm_leaf) {
        expand<T, herm>(lower, na, a, lda, w);
        if (left) product('N', 'N', na, n, na, alpha, w, na, b, ldb, one<T>(), c, ldc);
        else product('N', 'N', n, na, na, alpha, b, ldb, w, na, one<T>(), c, ldc);
        return;
    }
    const idx h1 = half(na), h2 = na - h1;
    const char tr = herm ? 'C' : 'T';
    const char op12 = lower ? tr : 'N', op21 = lower ? 'N' : tr;  // A12, A21 as op(S)
    const T* S = lower ? a + h1 : a + h1 * lda;
    const T* a22 = a + h1 + h1 * lda;
    symm_recursive<T, herm>(left, lower, h1, n, alpha, a, lda, b, ldb, c, ldc, w);
    if (left) {
        product(op12, 'N', h1, n, h2, alpha, S, lda, b + h1, ldb, one<T>(), c, ldc);
        product(op21, 'N', h2, n, h1, alpha, S, lda, b, ldb, one<T>(), c + h1, ldc);
        symm_recursive<T, herm>(left, lower, h2, n, alpha, a22, lda, b + h1, ldb, c + h1, ldc, w);
    } else {
        product('N', op21, n, h1, h2, alpha, b + h1 * ldb, ldb, S, lda, one<T>(), c, ldc);
        product('N', op12, n, h2, h1, alpha, b, ldb, S, lda, one<T>(), c + h1 * ldc, ldc);
        symm_recursive<T, herm>(left, lower, h2, n, alpha, a22, lda, b + h1 * ldb, ldb, c + h1 * ldc, ldc, w);
    }
}

// C := alpha*A*B + beta*C or alpha*B*A + beta*C (C m x n): beta first
// (0 stores zeros), then the recursive product in the fixed workspace.
template <class T, bool herm>
void symm(bool left, bool lower, idx m, idx n, T alpha, const T* a, idx lda, const T* b, idx ldb, T beta, T* c,
          idx ldc) {
    if (m < 1 || n < 1 || (alpha == zero<T>() && beta == one<T>())) return;
    if (beta == zero<T>()) gemm::zerom(m, n, c, ldc);
    else if (!(beta == one<T>())) gemm::scalm(m, n, beta, c, ldc);
    if (alpha == zero<T>()) return;
    T* w = static_cast<T*>(ork_serv_allocate(symm_workspace_bytes, 64));
    symm_recursive<T, herm>(left, lower, left ? m : n, left ? n : m, alpha, a, lda, b, ldb, c, ldc, w);
    ork_serv_deallocate(w);
}

// ---- rank-k and rank-2k updates of one triangle of C (n x n)

// Largest diagonal block of the recursive rank updates: it is computed whole
// in a temporary, so its unused half costs rank_block/n of the work.
inline constexpr idx rank_block = 64;

// beta as an element of T (real beta of the Hermitian updates: zero imaginary part).
template <class T, class B> T as_element(B beta) {
    if constexpr (std::is_same_v<T, B>) return beta;
    else return T{beta, 0};
}

// The triangle (lower or upper) of C, order n, := beta*C, as gemm applies
// beta (0 stores zeros).
template <class T> void scale_triangle(bool lower, idx n, T beta, T* c, idx ldc) {
    if (beta == one<T>()) return;
    for (idx j = 0; j < n; ++j) {
        const idx lo = lower ? j : 0, hi = lower ? n : j + 1;
        gemm::scalm(hi - lo, idx(1), beta, c + lo + j * ldc, ldc);
    }
}

// The Hermitian updates keep the diagonal of C (order n) real.
template <bool herm, class T> void real_diagonal(idx n, T* c, idx ldc) {
    if constexpr (herm)
        for (idx j = 0; j < n; ++j) c[j + j * ldc].im = 0;
}

// C := alpha*op(A)*op(A)' + beta*C (b null) or alpha*op(A)*op(B)' +
// alpha2*op(B)*op(A)' + beta*C on the lower or upper triangle, ' being the
// transpose, or the conjugate transpose when herm (alpha2 = conj(alpha)
// there, beta real). op is the identity for trans N: A is n x k; else A is
// k x n. The order is halved recursively (split at multiples of
// rank_block): the rectangle off the diagonal through gemm with beta, each
// diagonal block of at most rank_block through gemm in w. The baseline's
// path; the generations whose packed kernel takes every row use
// packed_triangle below.
template <class T, bool herm>
struct rank_update {
    bool lower, nt, two;
    idx k;
    T alpha, alpha2, beta_t;
    const T *a, *b;
    idx lda, ldb;
    T* w;

    const T* row(const T* x, idx ld, idx r) const { return nt ? x + r : x + r * ld; }
    // P(rows r0.., cols c0..) := alpha*op(A)op(B)' [+ alpha2*op(B)op(A)'] + bet*P
    void products(idx r0, idx rn, idx c0, idx cn, T bet, T* p, idx ldp) const {
        const char tr = herm ? 'C' : 'T', ta = nt ? 'N' : tr, tb = nt ? tr : 'N';
        if (!two) return product(ta, tb, rn, cn, k, alpha, row(a, lda, r0), lda, row(a, lda, c0), lda, bet, p, ldp);
        product(ta, tb, rn, cn, k, alpha, row(a, lda, r0), lda, row(b, ldb, c0), ldb, bet, p, ldp);
        product(ta, tb, rn, cn, k, alpha2, row(b, ldb, r0), ldb, row(a, lda, c0), lda, one<T>(), p, ldp);
    }
    // The triangle of order n at (j0, j0) of C. A diagonal block goes
    // through w: its stored triangle copied there with beta applied, the
    // products added, copied back; so every element gets beta and the sums
    // as libork's gemm gives them.
    void run(idx j0, idx n, T* c, idx ldc) const {
        if (n <= rank_block) {
            auto stored = [&](idx i, idx j) { return lower ? i >= j : i <= j; };
            for (idx j = 0; j < n; ++j)
                for (idx i = 0; i < n; ++i) w[i + j * n] = stored(i, j) ? c[i + j * ldc] : zero<T>();
            scale_triangle(lower, n, beta_t, w, n);
            products(j0, n, j0, n, one<T>(), w, n);
            for (idx j = 0; j < n; ++j)
                for (idx i = lower ? j : 0; i < (lower ? n : j + 1); ++i) c[i + j * ldc] = w[i + j * n];
            real_diagonal<herm>(n, c, ldc);
            return;
        }
        const idx h1 = half(n), h2 = n - h1;
        run(j0, h1, c, ldc);
        if (lower) products(j0 + h1, h2, j0, h1, beta_t, c + h1, ldc);
        else products(j0, h1, j0 + h1, h2, beta_t, c + h1 * ldc, ldc);
        run(j0 + h1, h2, c + h1 + h1 * ldc, ldc);
    }
};

// Columns j0 .. n-1 of the triangle (lower or upper) of C, order n, +=
// alpha*op(X)*op(Y)' one column at a time in the packed kernel's order, as
// libork's gemm takes its leftover columns and products too small to pack.
template <class T>
void columns_in_kernel_order(bool lower, idx j0, idx n, idx k, char tx, char ty, T alpha, const T* x, idx ldx,
                             const T* y, idx ldy, T* c, idx ldc, T* sa) {
    for (idx j = j0; j < n; ++j) {
        const idx lo = lower ? j : 0, hi = lower ? n : j + 1;
        gemm::in_kernel_order<T, gemm::engine<T>>(tx, ty, hi - lo, idx(1), k, alpha, op_ptr(tx, x, ldx, lo, idx(0)),
                                                  ldx, op_ptr(ty, y, ldy, idx(0), j), ldy, c + lo + j * ldc, ldc, sa);
    }
}

// The triangle (lower or upper) of C, order n, += alpha*op(X)*op(Y)' on the
// gemm engine's packed kernel, for the generations whose packed kernel also
// takes the rows below the last whole group (gemm::group_leftovers). Per
// column block and depth block of the engine, op(Y)' is packed once for the
// whole block and alpha*op(X) once per row block; each row block meets only
// the panels that touch the triangle: panels wholly inside it straight into
// C (one call for the panels every group of the block shares, then group by
// group up to the diagonal), panels crossing the diagonal into a buffer
// added to the stored elements only. The rows short of a whole group (the
// first for the lower triangle, the last for the upper, where they meet the
// fewest columns) are packed with zero rows below them and go through the
// buffer too. The last n mod q columns go in the packed kernel's order, as
// libork's gemm takes them. Every element so gets the engine's operations
// for the same product (per depth block a sum from zero in the kernel's
// arithmetic, added to C), whatever part of the triangle, or of a split over
// threads, it lies in.
template <class T, class E = gemm::engine<T>>
struct packed_triangle {
    static constexpr idx ra = gemm::shape<T>::ra, pw = gemm::shape<T>::widths[0], cols = gemm::leftover_cols<T>;
    bool lower;
    idx n, k;
    T* c;
    idx ldc;
    idx np = n - n % gemm::shape<T>::q, nb = E::nb(np), mb = E::mb(n, np, k) - E::mb(n, np, k) % ra;
    gemm::workspace<T> ws = E::take(n, np, k);
    T* room = take<T>(ra * cols);  // one group's rows of C over the crossing panels
    // the scaled rows of op(X) for the last n mod q columns
    T* sa = np < n ? take<T>(idx(gemm::kernel_order_elements<T, E>(n, k))) : nullptr;

    ~packed_triangle() {
        gemm::release(ws);
        ork_serv_deallocate(room);
        if (sa) ork_serv_deallocate(sa);
    }
    // Rows r .. r+hr-1 (hr <= ra) of C over the panels from column x0 to x1
    // (both on panel boundaries of the block at j0) through the buffer, which
    // starts at zero and is added to the stored elements: the same bits as
    // the kernel adding its sums to C itself, since a sum that starts at +0
    // is never -0 (so 0 + sum is the sum) and C + sum keeps its order.
    void through_room(const T* pg, idx r, idx hr, idx x0, idx x1, idx kkr, const T* pb, idx j0) const {
        for (idx c0 = x0; c0 < x1; c0 += cols) {
            const idx wc = x1 - c0 < cols ? x1 - c0 : cols;
            for (idx e = 0; e < ra * wc; ++e) room[e] = zero<T>();
            gemm::inner::multiply_block(ra, wc, kkr, pg, pb + (c0 - j0) * kkr, room, ra, ws.scratch);
            for (idx j = 0; j < wc; ++j) {
                T* cj = c + r + (c0 + j) * ldc;
                const idx i0 = lower ? (c0 + j > r ? c0 + j - r : 0) : 0;
                const idx i1 = lower ? hr : (c0 + j + 1 - r < hr ? c0 + j + 1 - r : hr);
                for (idx i = i0; i < i1; ++i) cj[i] = cj[i] + room[i + j * ra];
            }
        }
    }
    // Rows i0 .. i0+h-1 (packed at ws.a, the first hp in whole groups, the
    // rest one short group) against the packed columns j0 .. j1-1. The
    // panels beside every whole group in one call; those along the
    // diagonal one at a time, each with the whole groups beside it in one
    // call (the panel stays in the L1 as in the engine's nest) and each group
    // that crosses it through the buffer.
    void row_block(idx i0, idx h, idx hp, idx kkr, idx j0, idx j1) const {
        auto clip = [&](idx x) { return x < j0 ? j0 : x > j1 ? j1 : x; };
        auto floor_p = [&](idx x) { return j0 + (clip(x) - j0) / pw * pw; };  // start of the panel holding x
        auto ceil_p = [&](idx x) { return clip(j0 + (clip(x) - j0 + pw - 1) / pw * pw); };  // first boundary from x on
        auto direct = [&](idx g0, idx g1, idx x0, idx x1) {  // groups g0 .. g1-1
            if (x1 > x0 && g1 > g0)
                gemm::inner::multiply_block((g1 - g0) * ra, x1 - x0, kkr, ws.a + g0 * ra * kkr, ws.b + (x0 - j0) * kkr,
                                            c + i0 + g0 * ra + x0 * ldc, ldc, ws.scratch);
        };
        auto crossing = [&](idx g, idx hr, idx x0, idx x1) {
            through_room(ws.a + g * ra * kkr, i0 + g * ra, hr, x0, x1, kkr, ws.b, j0);
        };
        const idx groups = hp / ra;
        if (hp < h) crossing(groups, h - hp, lower ? j0 : floor_p(i0 + hp), lower ? ceil_p(i0 + h) : j1);
        if (groups == 0) return;
        // the diagonal's panels: from s0 to s1
        const idx s0 = floor_p(lower ? i0 + 1 : i0), s1 = ceil_p(lower ? i0 + hp : i0 + hp - 1);
        if (lower) direct(0, groups, j0, s0);
        else direct(0, groups, s1, j1);
        for (idx p0 = s0, p1; p0 < s1; p0 = p1) {
            p1 = ceil_p(p0 + 1);
            if (lower) {  // beside: first row p1 - 1 or later; crossing: last row p0 or later
                const idx beside = p1 - 1 <= i0 ? 0 : (p1 - 1 - i0 + ra - 1) / ra, from = beside < groups ? beside : groups;
                direct(from, groups, p0, p1);
                for (idx g = 0; g < from; ++g)
                    if (i0 + g * ra + ra - 1 >= p0) crossing(g, ra, p0, p1);
            } else {  // beside: last row p0 or earlier; crossing: first row p1 - 1 or earlier
                const idx beside = p0 - i0 - ra + 1 < 0 ? 0 : (p0 - i0 - ra + 1) / ra + 1, to = beside < groups ? beside : groups;
                direct(0, to, p0, p1);
                for (idx g = to; g < groups; ++g)
                    if (i0 + g * ra <= p1 - 1) crossing(g, ra, p0, p1);
            }
        }
    }
    // C += alpha*op(X)*op(Y)' on the triangle.
    void add(char tx, char ty, T alpha, const T* x, idx ldx, const T* y, idx ldy) const {
        for (idx j0 = 0; j0 < np; j0 += nb) {
            const idx j1 = np - j0 < nb ? np : j0 + nb;
            const idx r_begin = lower ? j0 : 0, r_end = lower ? n : j1;  // the rows meeting these columns
            E::depth_blocks(k, [&](idx k0, idx kk) {
                const idx kkr = gemm::round_up4(kk);
                gemm::pack_b(ty, kk, j1 - j0, op_ptr(ty, y, ldy, k0, j0), ldy, ws.b);
                // a short group goes where it meets the fewest columns: first
                // for the lower triangle, last for the upper
                const idx first = lower && (r_end - r_begin) % ra ? (r_end - r_begin) % ra : mb;
                for (idx i0 = r_begin; i0 < r_end; i0 += i0 == r_begin ? first : mb) {
                    const idx want = i0 == r_begin ? first : mb, h = r_end - i0 < want ? r_end - i0 : want;
                    const idx hp = gemm::pack_a(tx, h, kk, op_ptr(tx, x, ldx, i0, k0), ldx, ws.a, alpha);
                    if (hp < h) {  // the short group, zero rows below
                        T* d = ws.a + hp * kkr;
                        for (idx l = 0; l < kkr; ++l)
                            for (idx i = 0; i < ra; ++i)
                                d[i + l * ra] = hp + i < h && l < kk ? alpha * op_at(tx, x, ldx, i0 + hp + i, k0 + l) : zero<T>();
                    }
                    row_block(i0, h, hp, kkr, j0, j1);
                }
            });
        }
        columns_in_kernel_order(lower, np, n, k, tx, ty, alpha, x, ldx, y, ldy, c, ldc, sa);
    }
};

// The update by packed_triangle: beta first, as the engine applies it
// (0 stores zeros), then each product over the whole depth. An order or
// depth below the engine's small_below goes wholly in the packed kernel's
// order, as libork's gemm takes such products.
template <class T, bool herm>
void rank_packed(bool lower, bool nt, bool two, idx n, idx k, T alpha, T alpha2, const T* a, idx lda, const T* b,
                 idx ldb, T beta, T* c, idx ldc) {
    const char tr = herm ? 'C' : 'T', tx = nt ? 'N' : tr, ty = nt ? tr : 'N';
    // the workspace is had before C is written
    auto update = [&](auto add) {
        scale_triangle(lower, n, beta, c, ldc);
        add(alpha, a, lda, two ? b : a, two ? ldb : lda);
        if (two) add(alpha2, b, ldb, a, lda);
        real_diagonal<herm>(n, c, ldc);
    };
    if (k >= gemm::engine<T>::small_below && n >= gemm::engine<T>::small_below) {
        const packed_triangle<T> p{lower, n, k, c, ldc};
        return update([&](T al, const T* x, idx ldx, const T* y, idx ldy) { p.add(tx, ty, al, x, ldx, y, ldy); });
    }
    T* sa = take<T>(idx(gemm::kernel_order_elements<T, gemm::engine<T>>(n, k)));
    update([&](T al, const T* x, idx ldx, const T* y, idx ldy) {
        columns_in_kernel_order(lower, 0, n, k, tx, ty, al, x, ldx, y, ldy, c, ldc, sa);
    });
    ork_serv_deallocate(sa);
}

template <class T, bool herm, class B>
void rank(bool lower, char trans, idx n, idx k, T alpha, const T* a, idx lda, const T* b, idx ldb, B beta, T* c,
          idx ldc) {
    if (n < 1) return;
    if (alpha == zero<T>() || k < 1) {
        if (beta == one<B>()) return;
        scale_triangle(lower, n, as_element<T>(beta), c, ldc);
        real_diagonal<herm>(n, c, ldc);
        return;
    }
    if constexpr (gemm::group_leftovers<T>()) {
        return rank_packed<T, herm>(lower, trans == 'N', b != nullptr, n, k, alpha, herm ? conj(alpha) : alpha, a,
                                    lda, b, ldb, as_element<T>(beta), c, ldc);
    }
    const rank_update<T, herm> u{lower, trans == 'N', b != nullptr, k, alpha, herm ? conj(alpha) : alpha,
                                 as_element<T>(beta), a, b, lda, ldb, take<T>(rank_block * rank_block)};
    u.run(0, n, c, ldc);
    ork_serv_deallocate(u.w);
}

}  // namespace ork::level3
