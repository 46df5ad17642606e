// Mixed products: a real A times a complex B into a complex C, as two real
// products on separated real and imaginary parts.
//
// alpha is folded into the separated B: with B' = alpha*op(B) (complex
// arithmetic), Re C += op(A)*Re B' and Im C += op(A)*Im B', each by the real
// engine as x?gemm runs it (alpha = beta = 1, B plain), which is exact
// algebra since A is real. C is separated before and interleaved after,
// block by block, in one fixed workspace.
#pragma once

#include <type_traits>

#include "blas/gemm/pieces.h"

namespace ork::gemm {

// Blocks of the separated operands and the size of the one workspace that
// holds them: separated B is kb x nb (leading dimension kb), separated C is
// mb x nb (leading dimension mb), two of each.
template <class R> struct mixed_blocks;
template <> struct mixed_blocks<double> {
    static constexpr idx nb = 512, kb = 2048, mb = 4080;
    static constexpr std::size_t bytes = 50256384;
};
template <> struct mixed_blocks<float> {
    static constexpr idx nb = 512, kb = 4096, mb = 6912;
    static constexpr std::size_t bytes = 45136384;
};
// m or k below this, or the last n mod 8 columns: the plain mixed product.
// Column blocks given to the real driver are then whole multiples of 8, at
// least its own small-product bound, so their columns always take its packed
// path whatever the block widths.
inline constexpr idx mixed_small = 8;

// Regions: separated B real and imaginary, separated C real and imaginary,
// each starting on a page, offset by 256 bytes more than the one before so
// the four streams do not share cache sets.
template <class R>
void* mixed_getbufs(R** br, R** bi, R** cr, R** ci) {
    using B = mixed_blocks<R>;
    constexpr std::size_t bsz = std::size_t(B::kb * B::nb) * sizeof(R), csz = std::size_t(B::mb * B::nb) * sizeof(R);
    static_assert(4096 + 2 * (bsz + csz) + 3 * 256 <= B::bytes, "the regions fit the workspace");
    char* p = static_cast<char*>(ork_serv_allocate(B::bytes, 128));
    *br = *bi = *cr = *ci = nullptr;
    if (!p) return nullptr;
    char* q = page_after(p);
    *br = reinterpret_cast<R*>(q);
    *bi = reinterpret_cast<R*>(q + bsz + 256);
    *cr = reinterpret_cast<R*>(q + 2 * bsz + 512);
    *ci = reinterpret_cast<R*>(q + 2 * bsz + csz + 768);
    return p;
}
inline void mixed_freebufs(void* block) { ork_serv_deallocate(block); }

// The beta pass of the complex drivers: beta = 0 clears C, 1 leaves it,
// anything else scales it.
template <class R>
void mscale(idx m, idx n, cx<R> beta, cx<R>* c, idx ldc) {
    if (m < 1 || n < 1 || beta == one<cx<R>>()) return;
    if (beta == zero<cx<R>>()) zerom(m, n, c, ldc);
    else scalm(m, n, beta, c, ldc);
}

// br, bi (leading dimension ld) := Re, Im of alpha*op(B)(0 .. kk-1, 0 .. w-1).
template <class R>
void split_b(char tb, idx kk, idx w, const cx<R>* b, idx ldb, cx<R> alpha, R* br, R* bi, idx ld) {
    for (idx j = 0; j < w; ++j)
        for (idx l = 0; l < kk; ++l) {
            const cx<R> v = alpha * op_at(tb, b, ldb, l, j);
            br[l + j * ld] = v.re;
            bi[l + j * ld] = v.im;
        }
}
// cr, ci (leading dimension ld) := Re, Im of C(0 .. m-1, 0 .. n-1), and back.
template <class R>
void split_c(idx m, idx n, const cx<R>* c, idx ldc, R* cr, R* ci, idx ld) {
    for (idx j = 0; j < n; ++j)
        for (idx i = 0; i < m; ++i) {
            cr[i + j * ld] = c[i + j * ldc].re;
            ci[i + j * ld] = c[i + j * ldc].im;
        }
}
template <class R>
void join_c(idx m, idx n, const R* cr, const R* ci, idx ld, cx<R>* c, idx ldc) {
    for (idx j = 0; j < n; ++j)
        for (idx i = 0; i < m; ++i) c[i + j * ldc] = {cr[i + j * ld], ci[i + j * ld]};
}

// C := alpha*op(A)*op(B) + beta*C by plain loops, A real: with A plain each
// column of C gathers columns of A times alpha*op(B)(l, j), l in order; with A
// transposed each element is alpha times a dot product over l in order.
template <class R>
void pst_mixed(char ta, char tb, idx m, idx n, idx k, cx<R> alpha, const R* a, idx lda, const cx<R>* b, idx ldb,
               cx<R> beta, cx<R>* c, idx ldc) {
    if (m < 1 || n < 1) return;
    mscale(m, n, beta, c, ldc);
    if (alpha == zero<cx<R>>()) return;
    for (idx j = 0; j < n; ++j) {
        cx<R>* cj = c + j * ldc;
        if (ta == 'N') {
            for (idx l = 0; l < k; ++l) {
                const cx<R> t = alpha * op_at(tb, b, ldb, l, j);
                const R* al = a + l * lda;
                for (idx i = 0; i < m; ++i) cj[i] += al[i] * t;
            }
        } else {
            for (idx i = 0; i < m; ++i) {
                cx<R> s{};
                const R* ai = a + i * lda;
                for (idx l = 0; l < k; ++l) s += ai[l] * op_at(tb, b, ldb, l, j);
                cj[i] += alpha * s;
            }
        }
    }
}

// C += op(A)*B for a separated B and C: the real engine, as its driver runs it.
template <class R>
void real_product(char ta, idx m, idx n, idx k, const R* a, idx lda, const R* b, idx ldb, R* c, idx ldc) {
    product<R>(ta, 'N', m, n, k, R(1), a, lda, b, ldb, R(1), c, ldc);
}

// The whole call: beta pass; then column blocks of nb, row blocks of mb
// (C separated once per block), depth blocks of kb (B separated with alpha
// and both real products); the last n mod 8 columns, or everything when m
// or k is small or the workspace cannot be had, by the plain product.
template <class R>
void gemm_mixed(char ta, char tb, idx m, idx n, idx k, cx<R> alpha, const R* a, idx lda, const cx<R>* b, idx ldb,
                cx<R> beta, cx<R>* c, idx ldc) {
    using B = mixed_blocks<R>;
    if (m < 1 || n < 1) return;
    mscale(m, n, beta, c, ldc);
    if (alpha == zero<cx<R>>() || k < 1) return;
    idx np = m < mixed_small || k < mixed_small ? 0 : n - n % mixed_small;
    R *br = nullptr, *bi = nullptr, *cr = nullptr, *ci = nullptr;
    void* block = np > 0 ? mixed_getbufs(&br, &bi, &cr, &ci) : nullptr;
    if (!block) np = 0;
    for (idx j0 = 0; j0 < np; j0 += B::nb) {
        const idx w = np - j0 < B::nb ? np - j0 : B::nb;
        for (idx i0 = 0; i0 < m; i0 += B::mb) {
            const idx h = m - i0 < B::mb ? m - i0 : B::mb;
            cx<R>* cb = c + i0 + j0 * ldc;
            split_c(h, w, cb, ldc, cr, ci, B::mb);
            for (idx k0 = 0; k0 < k; k0 += B::kb) {
                const idx kk = k - k0 < B::kb ? k - k0 : B::kb;
                split_b(tb, kk, w, op_ptr(tb, b, ldb, k0, j0), ldb, alpha, br, bi, B::kb);
                const R* ab = op_ptr(ta, a, lda, i0, k0);
                real_product(ta, h, w, kk, ab, lda, br, B::kb, cr, B::mb);
                real_product(ta, h, w, kk, ab, lda, bi, B::kb, ci, B::mb);
            }
            join_c(h, w, cr, ci, B::mb, cb, ldc);
        }
    }
    if (block) mixed_freebufs(block);
    if (np < n)
        pst_mixed(ta, tb, m, n - np, k, alpha, a, lda, op_ptr(tb, b, ldb, idx(0), np), ldb, one<cx<R>>(), c + np * ldc,
                  ldc);
}

}  // namespace ork::gemm
