// Building blocks and loop-nest pieces of the matrix-multiply engine: C
// scaling and clearing and the plain product; the packed layouts of copya?
// and copyb?, element by element; the inner kernels on packed operands; _0
// and _1 against each other and the driver; the packed pieces on their share
// of C, the rest untouched.
#include "gemm_testing.h"

using namespace ot;

namespace {

template <class T> class GemmBlocks : public ::testing::Test {};
TYPED_TEST_SUITE(GemmBlocks, ElementTypes);

// scalm: C := beta*C, each element beta times itself in the element's
// precision, beta = 0 storing +0 over NaN and infinity; zerom: +0. Widths
// around the four columns scalm takes at a time; guards kept.
TYPED_TEST(GemmBlocks, ScalmAndZerom) {
    using T = TypeParam;
    const auto scalm = gk<T>::scalm();
    const auto zerom = gk<T>::zerom();
    std::mt19937_64 g(11);
    std::vector<T> betas = {make<T>(0), make<T>(-1), make<T>(2.5)};
    if constexpr (is_cx<T>) betas.push_back(make<T>(0.5, -1.5));
    for (idx m : {0, 1, 3, 8})
        for (idx n : {0, 1, 3, 4, 5, 9})
            for (std::size_t b = 0; b <= betas.size(); ++b) {
                const bool clear = b == betas.size();  // zerom
                const T beta = clear ? make<T>(0) : betas[b];
                SCOPED_TRACE(::testing::Message() << m << "x" << n << (clear ? " zerom" : " beta ") << ld(beta));
                gmat<T> C(m, n, m + 2, sizeof(real_t<T>), sentinel<T>());
                const bool zero = same(beta, make<T>(0));
                C.fill([&](idx i, idx j) { return zero && (i + j) % 2 ? nan_of<T>() : rnd<T>(g); });
                auto want = C.buf.snapshot();
                for (idx j = 0; j < n; ++j)
                    for (idx i = 0; i < m; ++i) {
                        T& w = want[std::size_t(4 + i + j * C.ld)];
                        w = zero ? make<T>(0) : mul(beta, w);
                    }
                if (clear) zerom(&m, &n, C.p(), &C.ld);
                else scalm(&m, &n, &beta, C.p(), &C.ld);
                EXPECT_TRUE(same_all(C.buf.snapshot(), want));
            }
}

// The plain product applies its own beta (the drivers pass it 1): every op
// pair, every pair of scalars, odd shapes and an empty depth.
TYPED_TEST(GemmBlocks, PlainProduct) {
    using T = TypeParam;
    const auto pst = gk<T>::pst();
    const char* letters[] = {"N", "T", "C"};
    const std::size_t ns = scalars<T>().size();
    std::mt19937_64 g(12);
    for (std::array<idx, 3> s : {std::array<idx, 3>{3, 5, 7}, {1, 1, 1}, {4, 6, 0}, {0, 3, 2}, {13, 8, 9}})
        for (std::size_t a = 0; a < ops<T>().size(); ++a)
            for (std::size_t b = 0; b < ops<T>().size(); ++b)
                for (std::size_t al = 0; al < ns; ++al)
                    for (std::size_t be = 0; be < ns; ++be)
                        run<T>(pst, gcase{s[0], s[1], s[2], letters[a], letters[b], al, be, 1, 2, 3, (al + be) % 2 == 1},
                               g);
}

// copya? packs alpha*op(A) of h x kk in whole groups of ra rows and returns
// the rows packed (h = 7: 6 in double); depth j of group g at g*ra*kkr +
// j*ra, zero from kk to kkr = kk rounded up to 4; nothing written after.
// Up to ten groups, so that several go through the plain packer's
// cache-line-wide pass and some through its one-group tail.
TYPED_TEST(GemmBlocks, PackedA) {
    using T = TypeParam;
    const idx ra = gk<T>::ra;
    const T alpha = make<T>(2, -1);
    std::mt19937_64 g(13);
    for (char t : ops<T>())
        for (idx h : {idx(0), idx(1), ra - 1, ra, ra + 1, 2 * ra + 1, idx(7), 3 * ra, 9 * ra + 1})
            for (idx kk : {1, 3, 4, 5, 8, 13}) {
                if (h < 0) continue;
                SCOPED_TRACE(::testing::Message() << t << " h=" << h << " kk=" << kk);
                const idx kkr = round4(kk), rows = t == 'N' ? h : kk, cols = t == 'N' ? kk : h;
                gmat<T> A(rows, cols, std::max<idx>(rows, 1) + 1, 0, nan_of<T>());
                A.fill([&](idx, idx) { return draw<T>(g, kind::ints); });
                buffer<T> dest(std::size_t(h * kkr + 8), 0, sentinel<T>());
                const idx got = gk<T>::copya(t)(&h, &kk, A.p(), &A.ld, dest.data(), &alpha);
                const idx hp = h - h % ra;
                EXPECT_EQ(got, hp);
                for (idx i = 0; i < hp; ++i)
                    for (idx j = 0; j < kkr; ++j) {
                        const T want = j < kk ? mul(alpha, op_at(t, A.p(), A.ld, i, j)) : make<T>(0);
                        const std::size_t slot = std::size_t((i / ra) * ra * kkr + j * ra + i % ra);
                        ASSERT_TRUE(near(dest[slot], ld(want), 0)) << "row " << i << " depth " << j;
                    }
                for (std::size_t s = std::size_t(hp * kkr); s < dest.size(); ++s)
                    ASSERT_TRUE(same(dest[s], sentinel<T>())) << "slot " << s;
            }
}

// Panels of packed B: the widest as often as they fit, then at most one of
// each narrower width, for every multiple of q up to a few widest panels.
template <class T> std::vector<std::pair<idx, std::vector<idx>>> panel_table() {
    std::vector<std::pair<idx, std::vector<idx>>> t;
    const idx q = gk<T>::q, top = 3 * gk<T>::layout()[2] + q;
    for (idx w = q; w <= top; w += q) t.emplace_back(w, panel_widths<T>(w));
    return t;
}

// The baseline generation keeps its fixed layouts and depth blocks: double
// 2 x 12 with twice-stored B (192 bytes a depth row), depth 128 halved for
// 129 <= k <= 256; single 8 x 4, depth 112 with the short block first;
// complex 1 x 6 (double) and 2 x 6 (single), depth 64; no fused sums.
TYPED_TEST(GemmBlocks, BaselineLayout) {
    using T = TypeParam;
    if (ork_kernel_generation() != 0) GTEST_SKIP() << "not the baseline generation";
    const bool dbl = std::is_same_v<T, double>, sgl = std::is_same_v<T, float>;
    const layout_info want = is_cx<T> ? layout_info{std::is_same_v<T, ork_complex16> ? 1 : 2, 2, 6, 4, 2, 192, 0, 64, 0}
                             : dbl    ? layout_info{2, 4, 12, 8, 4, 192, 0, 128, 0}
                                      : layout_info{8, 4, 4, 4, 4, 64, 0, 112, 1};
    EXPECT_EQ(gk<T>::layout(1000), want);
    EXPECT_EQ(gk<T>::layout(200)[7], dbl ? 100 : sgl ? 112 : 64);
    EXPECT_EQ(gk<T>::layout(200)[8], sgl ? 1 : 0);
    EXPECT_EQ(gk<T>::layout(258)[7], dbl ? 128 : sgl ? 112 : 64);
}

// copyb? packs op(B) of kk x w unscaled: the panel of width pw at column c0
// from c0*kkr, its depth row r at c0*kkr + pw*r, rows kk..kkr-1 zero (kk = 5:
// depths 5, 6, 7); nothing written after w*kkr.
TYPED_TEST(GemmBlocks, PackedB) {
    using T = TypeParam;
    std::mt19937_64 g(14);
    for (char t : ops<T>())
        for (idx kk : {1, 4, 5, 13})
            for (const auto& [w, panels] : panel_table<T>()) {
                SCOPED_TRACE(::testing::Message() << t << " kk=" << kk << " w=" << w);
                const idx kkr = round4(kk), rows = t == 'N' ? kk : w, cols = t == 'N' ? w : kk;
                gmat<T> B(rows, cols, rows + 2, 0, nan_of<T>());
                B.fill([&](idx, idx) { return rnd<T>(g); });
                buffer<T> dest(std::size_t(w * kkr + 8), 0, sentinel<T>());
                gk<T>::copyb(t)(&kk, &w, B.p(), &B.ld, dest.data());
                idx c0 = 0;
                for (idx pw : panels) {
                    for (idx r = 0; r < kkr; ++r)
                        for (idx c = 0; c < pw; ++c) {
                            const T want = r < kk ? op_at(t, B.p(), B.ld, r, c0 + c) : make<T>(0);
                            ASSERT_TRUE(same(dest[std::size_t(c0 * kkr + pw * r + c)], want))
                                << "panel at " << c0 << " row " << r << " column " << c;
                        }
                    c0 += pw;
                }
                ASSERT_EQ(c0, w);
                for (std::size_t s = std::size_t(w * kkr); s < dest.size(); ++s)
                    ASSERT_TRUE(same(dest[s], sentinel<T>())) << "slot " << s;
            }
}

// C += packed A * packed B for h x w over depth kkr. Real types, random
// data: the bits of the documented order (one sum per element from zero in
// increasing depth, fused where the generation's kernels fuse, then added to
// C). Complex: small integers, exact.
template <class T>
void expect_packed_product(const gmat<T>& C, const std::vector<T>& before, idx h, idx w, idx kkr,
                           const std::vector<T>& a, const std::vector<T>& b) {
    const bool fused = gk<T>::layout()[6] != 0;
    for (idx j = 0; j < w; ++j)
        for (idx i = 0; i < h; ++i) {
            const T c = before[std::size_t(4 + i + j * C.ld)];
            LC want;
            if constexpr (is_cx<T>) {
                want = ld(c);
                for (idx l = 0; l < kkr; ++l) want += ld(a[std::size_t(i + l * h)]) * ld(b[std::size_t(l + j * kkr)]);
            } else {
                T s = 0;
                for (idx l = 0; l < kkr; ++l) {
                    const T x = a[std::size_t(i + l * h)], y = b[std::size_t(l + j * kkr)];
                    s = fused ? std::fma(x, y, s) : s + x * y;
                }
                want = c + s;
            }
            ASSERT_TRUE(near(C.at(i, j), want, 0)) << "(" << i << ", " << j << ")";
        }
}

// inner and inner_general (whose depth of 128 takes a fixed-count loop) on h
// whole groups and w columns, C aligned or one real component off, ldc even
// or odd; the row below and the column after the block are kept.
TYPED_TEST(GemmBlocks, InnerKernels) {
    using T = TypeParam;
    const idx ra = gk<T>::ra;
    const kind data = is_cx<T> ? kind::ints : kind::random;
    std::vector<idx> widths;
    for (const auto& [w, panels] : panel_table<T>()) widths.push_back(w);
    std::mt19937_64 g(15);
    ork_int cell[4] = {};
    const T betas[4] = {};
    for (auto f : {gk<T>::inner(), gk<T>::inner_general()})
        for (idx kkr : {4, 8, 124, 128, 132})
            for (idx groups : {1, 2, 5})
                for (std::size_t wi = 0; wi < widths.size(); wi += 2)
                    for (int layout = 0; layout < 4; ++layout) {
                        const idx h = groups * ra, w = widths[(wi + std::size_t(layout)) % widths.size()];
                        SCOPED_TRACE(::testing::Message() << "kkr=" << kkr << " h=" << h << " w=" << w
                                                          << " layout " << layout);
                        std::vector<T> a(std::size_t(h * kkr)), b(std::size_t(kkr * w));
                        for (T& x : a) x = draw<T>(g, data);
                        for (T& x : b) x = draw<T>(g, data);
                        const auto pa = packed_a<T>(h, kkr, make<T>(1), [&](idx i, idx l) { return a[std::size_t(i + l * h)]; });
                        const auto pb = packed_b<T>(kkr, w, [&](idx l, idx j) { return b[std::size_t(l + j * kkr)]; });
                        gmat<T> C(h + 1, w + 1, h + 1 + layout % 2, layout / 2 ? sizeof(real_t<T>) : 0, sentinel<T>());
                        C.fill([&](idx, idx) { return draw<T>(g, data); });
                        const auto before = C.buf.snapshot();
                        buffer<unsigned char> scratch(std::size_t(kkr * gk<T>::layout()[5] + 64), 0, 0);
                        f(&h, &w, &kkr, pa.data(), pb.data(), cell, C.p(), &C.ld, scratch.data(), betas);
                        expect_packed_product(C, before, h, w, kkr, a, b);
                        EXPECT_TRUE(guards_kept(C, before, h, w));
                        if (this->HasFailure()) return;
                    }
}

// _0 (column blocks outermost) and _1 (row blocks outermost) add
// alpha*op(A)*op(B) to C with the same bits as each other, and each element's
// bits do not depend on the shape of the call: the four quadrants of C (cut
// at an odd row and column) computed by separate calls give the same bits.
// Shapes with an odd row, n mod 4 columns, several depth blocks, several row
// blocks of every type and more columns than a block.
TYPED_TEST(GemmBlocks, ColumnAndRowOrdersAgreeWithTheDriver) {
    using T = TypeParam;
    const auto by_columns = gk<T>::by_columns();
    const auto by_rows = gk<T>::by_rows();
    const char* letters[] = {"N", "T", "C"};
    const std::size_t no = ops<T>().size();
    std::mt19937_64 g(16);
    int i = 0;
    for (std::array<idx, 3> s : {std::array<idx, 3>{2, 2, 2}, {9, 9, 9}, {7, 30, 258}, {64, 37, 129},
                                 {513, 13, 200}, {700, 11, 113}, {331, 5, 130}, {9, 5003, 20}}) {
        const char *ta = letters[std::size_t(i) % no], *tb = letters[std::size_t(i) / no % no];
        ++i;
        const idx m = s[0], n = s[1], k = s[2];
        SCOPED_TRACE(::testing::Message() << m << "x" << n << "x" << k << " " << ta << tb);
        const idx lda = (*ta == 'N' ? m : k) + 1, ldb = (*tb == 'N' ? k : n) + 2;
        std::vector<T> a(std::size_t(lda * (*ta == 'N' ? k : m))), b(std::size_t(ldb * (*tb == 'N' ? n : k)));
        for (T& x : a) x = rnd<T>(g);
        for (T& x : b) x = rnd<T>(g);
        const T alpha = rnd<T>(g), one = make<T>(1);
        gmat<T> C0(m, n, m + 1, 0, sentinel<T>()), C1(m, n, m + 1, 0, sentinel<T>()),
            Cd(m, n, m + 1, 0, sentinel<T>());
        C0.fill([&](idx, idx) { return rnd<T>(g); });
        for (gmat<T>* c : {&C1, &Cd}) c->fill([&](idx r, idx col) { return C0.at(r, col); });
        const auto before = C0.buf.snapshot();
        const product want = reference<long double>(op_of<T>(ta), op_of<T>(tb), m, n, k, alpha, a.data(), lda,
                                                    b.data(), ldb, one, C0.p(), C0.ld);
        by_columns(ta, tb, &m, &n, &k, &alpha, a.data(), &lda, b.data(), &ldb, C0.p(), &C0.ld);
        by_rows(ta, tb, &m, &n, &k, &alpha, a.data(), &lda, b.data(), &ldb, C1.p(), &C1.ld);
        const idx mh = m / 2 | 1, nh = n / 2 | 1;
        for (idx r0 : {idx(0), mh})
            for (idx c0 : {idx(0), nh}) {
                const idx qm = r0 ? m - r0 : mh, qn = c0 ? n - c0 : nh;
                const T* aq = *ta == 'N' ? a.data() + r0 : a.data() + r0 * lda;
                const T* bq = *tb == 'N' ? b.data() + c0 * ldb : b.data() + c0;
                by_columns(ta, tb, &qm, &qn, &k, &alpha, aq, &lda, bq, &ldb, Cd.p() + r0 + c0 * Cd.ld, &Cd.ld);
            }
        EXPECT_TRUE(matches(C0, want, k, false));
        EXPECT_TRUE(guards_kept(C0, before));
        EXPECT_TRUE(same_all(C1.buf.snapshot(), C0.buf.snapshot()));
        EXPECT_TRUE(same_all(Cd.buf.snapshot(), C0.buf.snapshot()));
    }
}

// The packed pieces on small integers (exact). _bcopied: the whole groups of
// m rows (m - m mod ra) of alpha*op(A) times a packed panel, the other rows
// untouched.
template <class T> void b_packed_case(char t, idx m, idx kk, idx w, std::mt19937_64& g) {
    SCOPED_TRACE(::testing::Message() << "b-packed " << t << " m=" << m << " kk=" << kk << " w=" << w);
    const char ts[2] = {t, 0};
    const T alpha = scalars<T>().back();
    auto ints = [&](idx, idx) { return draw<T>(g, kind::ints); };
    gmat<T> A(t == 'N' ? m : kk, t == 'N' ? kk : m, (t == 'N' ? m : kk) + 1, 0, nan_of<T>()),
        B(kk, w, kk, 0, nan_of<T>()), C(m, w, m + 1, sizeof(real_t<T>), sentinel<T>());
    A.fill(ints);
    B.fill(ints);
    C.fill(ints);
    const auto pb = packed_b<T>(kk, w, [&](idx l, idx j) { return B.at(l, j); });
    const idx mp = m - m % gk<T>::ra;
    const product want =
        reference<double>(t, 'N', mp, w, kk, alpha, A.p(), A.ld, B.p(), B.ld, make<T>(1), C.p(), C.ld);
    const auto before = C.buf.snapshot();
    gk<T>::b_packed()(ts, &m, &kk, &w, &alpha, A.p(), &A.ld, pb.data(), C.p(), &C.ld);
    EXPECT_TRUE(matches(C, want, kk, true, mp));
    EXPECT_TRUE(guards_kept(C, before, mp));
}

// _acopied_in_thread: packed A (h rows, depth kk) times the first n - n mod q
// columns of op(B), which it packs, the last columns untouched; with
// both_packed, _abcopied on those columns packed here (op(B) = B).
template <class T> void a_packed_case(char t, idx n, idx kk, bool both_packed, std::mt19937_64& g) {
    SCOPED_TRACE(::testing::Message() << (both_packed ? "ab-packed " : "a-packed ") << t << " n=" << n
                                      << " kk=" << kk);
    const char ts[2] = {t, 0};
    const T alpha = scalars<T>().back();
    auto ints = [&](idx, idx) { return draw<T>(g, kind::ints); };
    const idx h = 2 * gk<T>::ra, kkr = round4(kk), np = n - n % gk<T>::q;
    gmat<T> A(h, kk, h, 0, nan_of<T>()),
        B(t == 'N' ? kk : n, t == 'N' ? n : kk, (t == 'N' ? kk : n) + 3, 0, nan_of<T>()),
        C(h, n, h + 1, 0, sentinel<T>());
    A.fill(ints);
    B.fill(ints);
    C.fill([](idx, idx) { return make<T>(0); });
    const auto pa = packed_a<T>(h, kk, alpha, [&](idx i, idx l) { return A.at(i, l); });
    // C starts at zero: the reference needs no C
    const product want = reference<double>('N', t, h, n, kk, alpha, A.p(), A.ld, B.p(), B.ld, make<T>(0),
                                           static_cast<const T*>(nullptr), 0);
    const auto before = C.buf.snapshot();
    if (both_packed) {
        const auto pb = packed_b<T>(kk, np, [&](idx l, idx j) { return op_at(t, B.p(), B.ld, l, j); });
        gk<T>::ab_packed()(&h, &np, &kkr, pa.data(), pb.data(), C.p(), &C.ld);
    } else {
        gk<T>::a_packed()(ts, &kk, &n, &h, pa.data(), B.p(), &B.ld, C.p(), &C.ld);
    }
    EXPECT_TRUE(matches(C, want, kk, true, -1, np));
    EXPECT_TRUE(guards_kept(C, before, -1, np));
}

// Depths up to one block of the driver (kk = kb: the fixed-depth kernel in
// double), rows with and without leftovers, n = 1 or q - 1 mod q.
TYPED_TEST(GemmBlocks, PackedPiecesTakeTheirShare) {
    using T = TypeParam;
    const idx ra = gk<T>::ra, q = gk<T>::q, w = panel_table<T>().back().first;
    std::mt19937_64 g(17);
    for (idx kk : {idx(5), gk<T>::kb})
        for (char t : ops<T>()) {
            for (idx m : {ra > 1 ? ra - 1 : idx(5), 3 * ra + ra / 2}) b_packed_case<T>(t, m, kk, w, g);
            for (idx n : {3 * q + 1, 3 * q - 1}) {
                a_packed_case<T>(t, n, kk, false, g);
                a_packed_case<T>(t, n, kk, true, g);
            }
        }
}

// The same pieces with a panel deeper than one depth block of the driver:
// nothing in their description limits kk (copyb? packs any depth, the inner
// kernel takes any kkr), so they must still add the product and write
// nothing outside C.
TYPED_TEST(GemmBlocks, PackedPiecesAtDepthsBeyondOneBlock) {
    using T = TypeParam;
    const idx kk = 3 * gk<T>::kb - 25;
    std::mt19937_64 g(18);
    b_packed_case<T>('N', 5 * gk<T>::ra, kk, 4 * gk<T>::q, g);
    a_packed_case<T>('N', 6 * gk<T>::q, kk, false, g);
}

}  // namespace
