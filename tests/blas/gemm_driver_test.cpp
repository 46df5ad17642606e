// The x?gemm drivers of the kernel library: a table of shapes across every
// blocking boundary with all op letters and their spellings, the scalars 0,
// 1, -1, 2.5 (and a complex one), NaN and infinity in C for beta = 0, padded
// and odd leading dimensions and a C off 16-byte alignment, against the
// reference product with guard zones; the quick returns; the real drivers'
// depth blocks bit for bit; shallow products near 10000 rows plus columns;
// the engine of AMD family-10h parts.
#include "gemm_testing.h"

using namespace ot;

namespace {

// The shapes: every m, n, k in {0, 1, 2, 3, 5, 7, 8, 13}; each of 31, 64,
// 129, 200, 258, 513 as m, as n and as k against small and middling
// partners; the depth boundaries of every type (64 complex; 112 single with
// the short block first; 128 double, halved for 129..256) at an odd m with
// n = 3 mod 4; more rows or columns than one block of any type holds; and a
// few large products.
std::vector<std::array<idx, 3>> shape_table() {
    std::vector<std::array<idx, 3>> s;
    const idx small[] = {0, 1, 2, 3, 5, 7, 8, 13};
    for (idx m : small)
        for (idx n : small)
            for (idx k : small) s.push_back({m, n, k});
    const std::pair<idx, idx> partners[] = {{1, 7}, {2, 13}, {7, 5}, {13, 31}, {31, 8}, {3, 64}};
    for (idx big : {31, 64, 129, 200, 258, 513})
        for (auto [x, y] : partners) {
            s.push_back({big, x, y});
            s.push_back({x, big, y});
            s.push_back({x, y, big});
        }
    for (idx k : {4, 63, 64, 65, 111, 112, 113, 127, 128, 129, 130, 131, 132, 200, 224, 225, 255, 256, 257, 258,
                  259, 385})
        s.push_back({31, 27, k});
    s.push_back({1301, 13, 24});  // row blocks: 320 complex, 648 single, 512 double
    s.push_back({9, 5003, 20});   // column blocks: 2000 single, 2048 complex, 4992 double
    for (std::array<idx, 3> big : {std::array<idx, 3>{129, 129, 129}, {200, 258, 64}, {258, 200, 129},
                                   {513, 64, 258}, {64, 513, 200}, {31, 258, 513}, {513, 513, 13},
                                   {513, 13, 513}, {13, 513, 513}, {200, 200, 200}, {257, 255, 258}})
        s.push_back(big);
    return s;
}

template <class T> class GemmDriver : public ::testing::Test {};
TYPED_TEST_SUITE(GemmDriver, ElementTypes);

// Each shape with replayable random choices of spellings, scalars, leading
// dimensions and alignment; large products with small integers (exact).
TYPED_TEST(GemmDriver, ShapeTable) {
    using T = TypeParam;
    const auto f = gk<T>::driver();
    const auto sp = spellings<T>();
    const std::size_t ns = scalars<T>().size();
    std::mt19937_64 g(101), pick(202);
    for (auto [m, n, k] : shape_table()) {
        gcase c{m, n, k, sp[pick() % sp.size()], sp[pick() % sp.size()], pick() % ns, pick() % ns};
        c.lda_pad = idx(pick() % 3);
        c.ldb_pad = idx(pick() % 3);
        c.ldc_pad = idx(pick() % 4);
        c.shifted = pick() % 2;
        c.data = m * n * k > 300000 || pick() % 4 == 0 ? kind::ints : kind::random;
        run<T>(f, c, g);
        if (this->HasFailure()) return;
    }
}

// Every pair of op letters with every pair of scalars, on the packed path
// with leftover rows and columns (random data) and across depth blocks
// (integers).
TYPED_TEST(GemmDriver, EveryOpAndScalar) {
    using T = TypeParam;
    const auto f = gk<T>::driver();
    const std::size_t ns = scalars<T>().size();
    const char* letters[] = {"N", "T", "C"};
    std::mt19937_64 g(303);
    for (std::array<idx, 3> s : {std::array<idx, 3>{13, 11, 9}, {37, 27, 130}})
        for (std::size_t a = 0; a < ops<T>().size(); ++a)
            for (std::size_t b = 0; b < ops<T>().size(); ++b)
                for (std::size_t al = 0; al < ns; ++al)
                    for (std::size_t be = 0; be < ns; ++be) {
                        gcase c{s[0], s[1], s[2], letters[a], letters[b], al, be, 1, 0, 1, true,
                                s[2] > 100 ? kind::ints : kind::random};
                        run<T>(f, c, g);
                        if (this->HasFailure()) return;
                    }
}

// m or n below 1: C untouched whatever beta. alpha = 0: C := beta*C and
// nothing else, so NaN in A and B never shows; beta = 1 leaves C's bits
// (NaN too), beta = 0 stores +0 over NaN and infinity.
TYPED_TEST(GemmDriver, QuickReturns) {
    using T = TypeParam;
    const auto f = gk<T>::driver();
    std::mt19937_64 g(404);
    const T zero = make<T>(0), one = make<T>(1);
    for (std::array<idx, 3> s : {std::array<idx, 3>{0, 5, 4}, {6, 0, 4}, {0, 0, 0}, {5, 6, 7}, {13, 9, 300},
                                 {4, 4, 0}})
        for (T alpha : {zero, one})
            for (T beta : scalars<T>()) {
                const idx m = s[0], n = s[1], k = s[2];
                if (m > 0 && n > 0 && same(alpha, one)) continue;  // not a quick return
                SCOPED_TRACE(::testing::Message() << m << "x" << n << "x" << k << " alpha " << ld(alpha)
                                                  << " beta " << ld(beta));
                const idx ldab = std::max<idx>({m, n, k, 1});
                gmat<T> A(ldab, ldab, ldab, 0, nan_of<T>()), B(ldab, ldab, ldab, 0, nan_of<T>());
                gmat<T> C(m, n, std::max<idx>(m, 1) + 1, 0, sentinel<T>());
                const bool special = same(beta, zero) || same(beta, one);
                C.fill([&](idx i, idx j) {
                    if (special && (i + 2 * j) % 3 == 0) return (i + j) % 2 ? nan_of<T>() : make<T>(-INFINITY, 0);
                    return rnd<T>(g);
                });
                auto want = C.buf.snapshot();
                for (idx j = 0; j < n; ++j)
                    for (idx i = 0; i < m; ++i) {
                        T& w = want[std::size_t(4 + i + j * C.ld)];
                        w = same(beta, zero) ? zero : same(beta, one) ? w : mul(beta, w);
                    }
                f("N", "T", &m, &n, &k, &alpha, A.p(), &ldab, B.p(), &ldab, &beta, C.p(), &C.ld);
                EXPECT_TRUE(same_all(C.buf.snapshot(), want));
            }
}

template <class T> class GemmRealDriver : public ::testing::Test {};
TYPED_TEST_SUITE(GemmRealDriver, RealTypes);

// The depth blocks of the real drivers, as the loaded generation reports
// them: blocks of the full depth, the short one first or last (the baseline:
// double 128, but floor(k/2) rounded down to a multiple of 4 for 129 <= k <=
// 256, the short block last; single 112, the short block first).
template <class T> std::vector<idx> depth_blocks(idx k) {
    const layout_info info = gk<T>::layout(k);
    const idx kb = info[7], rest = k % kb;
    std::vector<idx> b(std::size_t(k / kb), kb);
    if (rest) b.insert(info[8] ? b.begin() : b.end(), rest);
    return b;
}

// In the packed rows and columns each element is beta*C plus, block after
// block, the block's sum of (alpha*a)*b in increasing depth from zero (fused
// where the generation's kernels fuse); so
// random data shows the blocking bit for bit (k = 200: 100 + 100 in double,
// 88 + 112 in single; k = 258: 128 + 128 + 2).
TYPED_TEST(GemmRealDriver, PackedElementsFollowTheDepthBlocks) {
    using T = TypeParam;
    constexpr bool dbl = std::is_same_v<T, double>;
    const auto f = gk<T>::driver();
    const idx m = dbl ? 9 : 25, n = 14, mp = m - m % gk<T>::ra, np = 12;
    const bool fused = gk<T>::layout()[6] != 0;
    const std::vector<idx> ks = dbl ? std::vector<idx>{2, 4, 127, 128, 129, 130, 200, 255, 256, 257, 258, 300}
                                    : std::vector<idx>{8, 111, 112, 113, 200, 224, 225, 300};
    std::mt19937_64 g(505);
    for (idx k : ks)
        for (char ta : {'N', 'T'})
            for (char tb : {'N', 'T'}) {
                SCOPED_TRACE(::testing::Message() << "k=" << k << " " << ta << tb);
                const T alpha = rnd<T>(g), beta = T(-0.75);
                const idx lda = ta == 'N' ? m : k, ldb = tb == 'N' ? k : n, ldc = m;
                std::vector<T> a(std::size_t(m * k)), b(std::size_t(k * n)), c(std::size_t(m * n));
                for (auto* v : {&a, &b, &c})
                    for (T& x : *v) x = rnd<T>(g);
                std::vector<T> want(c.size());
                for (idx j = 0; j < np; ++j)
                    for (idx i = 0; i < mp; ++i) {
                        T e = beta * c[std::size_t(i + j * ldc)];
                        idx l = 0;
                        for (idx len : depth_blocks<T>(k)) {
                            T s = 0;
                            for (const idx end = l + len; l < end; ++l) {
                                const T x = alpha * op_at(ta, a.data(), lda, i, l), y = op_at(tb, b.data(), ldb, l, j);
                                s = fused ? std::fma(x, y, s) : s + x * y;
                            }
                            e = e + s;
                        }
                        want[std::size_t(i + j * ldc)] = e;
                    }
                const char sa[2] = {ta, 0}, sb[2] = {tb, 0};
                f(sa, sb, &m, &n, &k, &alpha, a.data(), &lda, b.data(), &ldb, &beta, c.data(), &ldc);
                idx wrong = 0;
                for (idx j = 0; j < np; ++j)
                    for (idx i = 0; i < mp; ++i)
                        if (!(c[std::size_t(i + j * ldc)] == want[std::size_t(i + j * ldc)]) && wrong++ == 0)
                            ADD_FAILURE() << "(" << i << ", " << j << "): got " << c[std::size_t(i + j * ldc)]
                                          << ", want " << want[std::size_t(i + j * ldc)];
                EXPECT_EQ(wrong, 0);
            }
}

// m + n = 10000 with a shallow depth widens the row blocks (depth up to 16:
// 1536 rows; 17..32: 1024; 33..64: 768; else 512); 9999 does not. Only the
// product is observable: small integers, exact. One case has more columns
// than a column block (4992).
TEST(GemmDriverDouble, ShallowProductsNearTenThousandRowsPlusColumns) {
    const auto f = gk<double>::driver();
    std::mt19937_64 g(606);
    const std::array<idx, 3> shapes[] = {{9990, 10, 16}, {9989, 10, 16}, {9990, 10, 17}, {9990, 10, 32},
                                         {9990, 10, 33}, {9990, 10, 64}, {9990, 10, 65}, {9990, 10, 200},
                                         {9995, 5, 9},   {7, 9993, 16}};
    const char* letters[] = {"N", "T"};
    int i = 0;
    for (auto [m, n, k] : shapes) {
        gcase c{m, n, k, letters[i % 2], letters[i / 2 % 2], 3, std::size_t(i % 4), 0, 1, 1, i % 3 == 0, kind::ints};
        ++i;
        run<double>(f, c, g);
    }
}

// With a family-10h part reported, the double driver hands the whole call to
// xdgemm1_brc: the same bits as calling it, a correct product, and for a
// depth over 256 bits the main engine (blocks of 128, not 256) does not give.
TEST(GemmDriverDouble, FamilyTenHPartsTakeTheAlternativeEngine) {
    const auto driver = gk<double>::driver();
    const auto brc = OT_KS(xdgemm1_brc);
    std::mt19937_64 g(707);
    int i = 0;
    for (std::array<idx, 3> s : {std::array<idx, 3>{37, 22, 300}, {300, 13, 513}, {5, 3, 2}})
        for (const char* ta : {"N", "T"}) {
            gcase c{s[0], s[1], s[2], ta, i % 2 ? "N" : "T", 3, 2, 0, 0, 1, false, kind::random};
            ++i;
            std::mt19937_64 replay = g;
            gmat<double> forced = [&] {
                forced_cpu scope(0, 1);
                return run<double>(driver, c, g);
            }();
            std::mt19937_64 g2 = replay;
            const gmat<double> direct = run<double>(brc, c, g2);
            g2 = replay;
            const gmat<double> plain = run<double>(driver, c, g2);
            EXPECT_TRUE(same_all(forced.buf.snapshot(), direct.buf.snapshot())) << c;
            // deeper than one block of 256, the blocks differ from the main
            // engine's unless the generation's happen to be the same
            std::vector<idx> brc_blocks(std::size_t(s[2] / 256), 256);
            if (s[2] % 256) brc_blocks.push_back(s[2] % 256);
            if (s[2] > 256 && depth_blocks<double>(s[2]) != brc_blocks) {
                EXPECT_FALSE(same_all(plain.buf.snapshot(), direct.buf.snapshot())) << c;
            }
        }
}

// The single driver on a family-10h part still multiplies correctly.
TEST(GemmDriverSingle, FamilyTenHPartsStillMultiply) {
    forced_cpu scope(0, 1);
    std::mt19937_64 g(808);
    for (std::array<idx, 3> s : {std::array<idx, 3>{37, 22, 300}, {300, 13, 513}, {9, 9, 9}})
        run<float>(gk<float>::driver(), gcase{s[0], s[1], s[2], "T", "N", 3, 2, 1, 2, 1, true, kind::random}, g);
}

}  // namespace
