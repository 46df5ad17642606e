// Complex matrix products from three real products: packers of the real
// part, the imaginary part or their sum into the packed layouts of the real
// type, and the driver that runs the real inner kernel on them.
//
// With A' = alpha*op(A) = Ar + i*Ai and op(B) = Br + i*Bi, each depth block
// forms P1 = Ar*Br, P2 = Ai*Bi and P3 = (Ar + Ai)*(Br + Bi) and adds
// Re C += P1 - P2, Im C += (P3 - P1) - P2: three real multiply-adds per
// term instead of four. The imaginary part is exact to a few ulps of
// sum (|Ar| + |Ai|)*(|Br| + |Bi|), not of the terms it sums.
//
// Parts: 0 = real part, 1 = imaginary part, 2 = real plus imaginary part
// (of alpha*op(A), computed in complex arithmetic and then split; of op(B)).
// The packed layouts are those of shape<float> for single complex and of
// shape<double> for double complex (shape.h).
#pragma once

#include "blas/gemm/driver.h"

namespace ork::gemm {

template <class R> inline R part_of(cx<R> v, int p) { return p == 0 ? v.re : p == 1 ? v.im : v.re + v.im; }

// alpha*op(A)(0 .. h'-1, 0 .. kk-1), h' = h rounded down to whole groups of
// shape<R>::ra rows; dest[p] receives part p (null: not wanted). Returns h'.
template <class R>
idx pack_a3m(char t, idx h, idx kk, const cx<R>* a, idx lda, R* const dest[3], cx<R> alpha) {
    constexpr idx ra = shape<R>::ra;
    const idx hp = h - h % ra, kkr = round_up4(kk);
    for (idx g = 0; g < hp / ra; ++g) {
        const idx o = g * ra * kkr;
        for (idx j = 0; j < kk; ++j)
            for (idx r = 0; r < ra; ++r) {
                const cx<R> v = alpha * op_at(t, a, lda, g * ra + r, j);
                for (int p = 0; p < 3; ++p)
                    if (dest[p]) dest[p][o + j * ra + r] = part_of(v, p);
            }
        for (int p = 0; p < 3; ++p)
            if (dest[p])
                for (idx j = kk * ra; j < kkr * ra; ++j) dest[p][o + j] = R(0);
    }
    return hp;
}

// op(B)(0 .. kk-1, 0 .. w-1), w a multiple of shape<R>::q, in the panels of
// the real layout; dest[p] receives part p (null: not wanted).
template <class R>
void pack_b3m(char t, idx kk, idx w, const cx<R>* b, idx ldb, R* const dest[3]) {
    const idx kkr = round_up4(kk);
    for_each_panel<R>(w, [&](idx c0, idx pw) {
        const idx o = c0 * kkr;
        for (idx r = 0; r < kk; ++r)
            for (idx c = 0; c < pw; ++c) {
                const cx<R> v = op_at(t, b, ldb, r, c0 + c);
                for (int p = 0; p < 3; ++p)
                    if (dest[p]) dest[p][o + pw * r + c] = part_of(v, p);
            }
        for (int p = 0; p < 3; ++p)
            if (dest[p])
                for (idx r = kk * pw; r < kkr * pw; ++r) dest[p][o + r] = R(0);
    });
}

// The packers with one part named by number (anything but 0 or 1 is the sum).
template <class R>
idx pack_a3m_part(char t, idx h, idx kk, const cx<R>* a, idx lda, R* dest, cx<R> alpha, idx part) {
    R* d[3] = {};
    d[part == 0 || part == 1 ? part : 2] = dest;
    return pack_a3m(t, h, kk, a, lda, d, alpha);
}
template <class R>
void pack_b3m_part(char t, idx kk, idx w, const cx<R>* b, idx ldb, R* dest, idx part) {
    R* d[3] = {};
    d[part == 0 || part == 1 ? part : 2] = dest;
    pack_b3m(t, kk, w, b, ldb, d);
}

// The plain form for leftover rows and columns, with the same operations per
// element as the packed path: the three sums over one depth block formed in
// increasing depth order from zero, then combined into C as above. a and b
// point at op(A)(0, 0) and op(B)(0, 0) of the block.
template <class R>
void plain3m(char ta, char tb, idx m, idx n, idx kk, cx<R> alpha, const cx<R>* a, idx lda, const cx<R>* b, idx ldb,
             cx<R>* c, idx ldc) {
    for (idx j = 0; j < n; ++j)
        for (idx i = 0; i < m; ++i) {
            R s1 = 0, s2 = 0, s3 = 0;
            for (idx l = 0; l < kk; ++l) {
                const cx<R> x = alpha * op_at(ta, a, lda, i, l), y = op_at(tb, b, ldb, l, j);
                s1 += x.re * y.re;
                s2 += x.im * y.im;
                s3 += (x.re + x.im) * (y.re + y.im);
            }
            cx<R>& z = c[i + j * ldc];
            z.re += s1 - s2;
            z.im += (s3 - s1) - s2;
        }
}

// Blocking: depth 128 (the kernel's fixed-depth form), rows 192, columns
// 256. None depends on the shape of the product, so an element's result
// does not either.
template <class R> struct blocks3m {
    static constexpr idx kb = 128, mb = 192, nb = 256;
    static_assert(mb % shape<R>::ra == 0 && nb % shape<R>::q == 0, "blocks of whole groups and panels");
};

// One call's workspace: three packed A parts (mb x kb), three packed B parts
// (kb x nb), three products (mb x nb) and the kernel's scratch; every region
// size is a multiple of 128 bytes, so all stay 128-byte aligned.
template <class R> struct work3m {
    void* block = nullptr;
    R* a[3] = {};
    R* b[3] = {};
    R* t[3] = {};
    void* scratch = nullptr;
};
template <class R> work3m<R> take3m() {
    using B = blocks3m<R>;
    constexpr std::size_t asz = B::mb * B::kb * sizeof(R), bsz = B::kb * B::nb * sizeof(R),
                          tsz = B::mb * B::nb * sizeof(R), ssz = B::kb * tuning<R>::scratch;
    static_assert(asz % 128 == 0 && bsz % 128 == 0 && tsz % 128 == 0 && ssz % 128 == 0);
    work3m<R> w;
    char* p = static_cast<char*>(ork_serv_allocate(3 * (asz + bsz + tsz) + ssz, 128));
    if (!p) return w;
    w.block = p;
    for (int i = 0; i < 3; ++i) {
        w.a[i] = reinterpret_cast<R*>(p + i * asz);
        w.b[i] = reinterpret_cast<R*>(p + 3 * asz + i * bsz);
        w.t[i] = reinterpret_cast<R*>(p + 3 * (asz + bsz) + i * tsz);
    }
    w.scratch = p + 3 * (asz + bsz + tsz);
    return w;
}

// C += alpha*op(A)*op(B) (C has its beta already): column blocks, depth
// blocks, row blocks; whole groups of rows and columns in multiples of 4 go
// through the real kernel, the rest through plain3m, block by block.
template <class R>
void accumulate3m(char ta, char tb, idx m, idx n, idx k, cx<R> alpha, const cx<R>* a, idx lda, const cx<R>* b,
                  idx ldb, cx<R>* c, idx ldc) {
    using B = blocks3m<R>;
    if (m < 1 || n < 1 || k < 1 || alpha == zero<cx<R>>()) return;
    idx np = n - n % shape<R>::q, mp = m - m % shape<R>::ra;
    work3m<R> ws;
    if (np > 0 && mp > 0) ws = take3m<R>();
    if (!ws.block) np = mp = 0;  // no memory: all of it by the plain form
    auto depth_blocks = [&](auto f) {
        for (idx k0 = 0; k0 < k; k0 += B::kb) f(k0, k - k0 < B::kb ? k - k0 : B::kb);
    };
    for (idx j0 = 0; j0 < np; j0 += B::nb) {
        const idx w = np - j0 < B::nb ? np - j0 : B::nb;
        depth_blocks([&](idx k0, idx kk) {
            const idx kkr = round_up4(kk);
            pack_b3m(tb, kk, w, op_ptr(tb, b, ldb, k0, j0), ldb, ws.b);
            for (idx i0 = 0; i0 < mp; i0 += B::mb) {
                const idx h = pack_a3m(ta, mp - i0 < B::mb ? mp - i0 : B::mb, kk, op_ptr(ta, a, lda, i0, k0), lda,
                                       ws.a, alpha);
                for (int p = 0; p < 3; ++p) {
                    zerom(h, w, ws.t[p], h);
                    inner::multiply_block(h, w, kkr, ws.a[p], ws.b[p], ws.t[p], h, ws.scratch);
                }
                for (idx j = 0; j < w; ++j) {
                    cx<R>* cj = c + i0 + (j0 + j) * ldc;
                    const R *t1 = ws.t[0] + j * h, *t2 = ws.t[1] + j * h, *t3 = ws.t[2] + j * h;
                    for (idx i = 0; i < h; ++i) {
                        cj[i].re += t1[i] - t2[i];
                        cj[i].im += (t3[i] - t1[i]) - t2[i];
                    }
                }
            }
            if (mp < m)
                plain3m(ta, tb, m - mp, w, kk, alpha, op_ptr(ta, a, lda, mp, k0), lda, op_ptr(tb, b, ldb, k0, j0), ldb,
                        c + mp + j0 * ldc, ldc);
        });
    }
    if (np < n)
        depth_blocks([&](idx k0, idx kk) {
            plain3m(ta, tb, m, n - np, kk, alpha, op_ptr(ta, a, lda, idx(0), k0), lda, op_ptr(tb, b, ldb, k0, np), ldb,
                    c + np * ldc, ldc);
        });
    if (ws.block) ork_serv_deallocate(ws.block);
}

// The whole call: quick return, the beta pass of the complex drivers (beta = 0
// clears C, other values but 1 scale it), then the products.
template <class R>
void gemm3m(char ta, char tb, idx m, idx n, idx k, cx<R> alpha, const cx<R>* a, idx lda, const cx<R>* b, idx ldb,
            cx<R> beta, cx<R>* c, idx ldc) {
    if (m < 1 || n < 1) return;
    if (beta == zero<cx<R>>()) zerom(m, n, c, ldc);
    else if (!(beta == one<cx<R>>())) scalm(m, n, beta, c, ldc);
    accumulate3m(ta, tb, m, n, k, alpha, a, lda, b, ldb, c, ldc);
}

}  // namespace ork::gemm
