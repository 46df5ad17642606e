// The level-2 products (gemv, gbmv, and the symmetric or Hermitian ones in
// full, band and packed storage) through libork and through the kernels,
// against long double sums; NaN in every slot the routine must not read,
// sentinels around y, and libork's split of symv and hemv.
#include "level2_testing.h"

using namespace ot;

namespace {

template <class T> class Products : public ::testing::Test {};
TYPED_TEST_SUITE(Products, ElementTypes);

// The cases of alpha and beta: y0 filled with NaN when beta is 0.
enum class scalars { general, beta_zero_over_nan, beta_one, alpha_zero, alpha_zero_beta_one };
constexpr scalars all_scalars[] = {scalars::general, scalars::beta_zero_over_nan, scalars::beta_one,
                                   scalars::alpha_zero, scalars::alpha_zero_beta_one};

template <class T> struct product_case {
    T alpha, beta;
    scalars sc;
    product_case(scalars s, std::mt19937_64& g) : alpha(rnd<T>(g, -2, 2)), beta(rnd<T>(g, -2, 2)), sc(s) {
        if (s == scalars::beta_zero_over_nan) beta = make<T>(0);
        if (s == scalars::beta_one || s == scalars::alpha_zero_beta_one) beta = make<T>(1);
        if (s == scalars::alpha_zero || s == scalars::alpha_zero_beta_one) alpha = make<T>(0);
    }
    void prepare(gvec<T>& y) const {
        if (sc == scalars::beta_zero_over_nan)
            for (idx i = 0; i < y.n; ++i) y.at(i) = make<T>(NAN, NAN);
    }
    // y = alpha*(row . x) + beta*y0, given the row's products as a dense
    // long double row, checked element by element; nothing else changes.
    void check(gvec<T>& y, const std::vector<T>& y0, const lmat& op_a, const std::vector<LC>& x) const {
        if (sc == scalars::alpha_zero_beta_one || y.n == 0 || x.empty()) {
            EXPECT_TRUE(same_all(y.buf, y0));
            return;
        }
        auto want = y0;
        for (idx i = 0; i < y.n; ++i) {
            const T yi = y0[y.pos(i)];
            const bool keep_y = sc != scalars::beta_zero_over_nan;
            LC s = 0;
            long double mags = 0;
            for (idx j = 0; j < op_a.cols; ++j) {
                s += op_a(i, j) * x[std::size_t(j)];
                mags += mag1(op_a(i, j)) * mag1(x[std::size_t(j)]);
            }
            const LC w = ld(alpha) * s + (keep_y ? ld(beta) * ld(yi) : LC(0));
            const long double tol =
                4 * eps<T> * ((op_a.cols + 2) * mag1(alpha) * mags + (keep_y ? 2 * mag1(beta) * mag1(yi) : 0));
            EXPECT_TRUE(near(y.at(i), w, tol)) << "element " << i;
            want[y.pos(i)] = y.at(i);
        }
        EXPECT_TRUE(same_all(y.buf, want));  // the guards and gaps of y are untouched
    }
};

constexpr std::pair<idx, idx> increments[] = {{1, 1}, {2, -1}, {-3, 2}};

// gemv (no band) and gbmv: every trans, shape and band width.
TYPED_TEST(Products, GeneralAndBand) {
    using T = TypeParam;
    std::mt19937_64 g(201);
    const std::pair<idx, idx> shapes[] = {{0, 3}, {3, 0}, {1, 1}, {2, 3}, {7, 7}, {16, 5}, {33, 40}, {130, 140}, {520, 3}};
    for (bool band : {false, true})
        for (auto [m, n] : shapes)
            for (auto [kl, ku] : band ? std::vector<std::pair<idx, idx>>{{0, 0}, {1, 2}, {3, 0}, {m + 1, n + 2}}
                                      : std::vector<std::pair<idx, idx>>{{m, n}})
                for (const char* trans : {"N", "t", "Conjugate"})
                    for (auto [ix, iy] : increments)
                        for (scalars sc : all_scalars) {
                            if (m * n > 2000 && (sc != scalars::general || ix == 2)) continue;
                            SCOPED_TRACE(::testing::Message() << (band ? "gbmv" : "gemv") << " trans=" << trans
                                                              << " m=" << m << " n=" << n << " kl=" << kl << " ku="
                                                              << ku << " incx=" << ix << " incy=" << iy
                                                              << " case=" << int(sc));
                            const char t = char(trans[0] & ~0x20);
                            const bool notrans = t == 'N';
                            const idx lenx = notrans ? n : m, leny = notrans ? m : n;
                            // general: padding rows of NaN; band: NaN outside the band
                            const idx lda = band ? kl + ku + 2 : (m > 1 ? m : 1) + 2;
                            std::vector<T> a(std::size_t(lda * (n > 0 ? n : 1)), make<T>(NAN, NAN));
                            lmat full(m, n);
                            for (idx j = 0; j < n; ++j)
                                for (idx i = 0; i < m; ++i) {
                                    if (band && (i - j > kl || j - i > ku)) continue;
                                    T& slot = a[std::size_t(band ? ku + i - j + j * lda : i + j * lda)];
                                    slot = rnd<T>(g);
                                    full(i, j) = ld(slot);
                                }
                            gvec<T> x(lenx, ix, 1, g), y(leny, iy, 0, g);
                            const product_case<T> pc(sc, g);
                            pc.prepare(y);
                            const auto a0 = a, x0 = x.buf, y0 = y.buf;
                            for (auto [path, f] : l2<T>::general(band)) {
                                SCOPED_TRACE(path);
                                y.buf = y0;
                                f(trans, &m, &n, &kl, &ku, &pc.alpha, a.data(), &lda, x.p(), &ix, &pc.beta, y.p(), &iy);
                                EXPECT_TRUE(same_all(a, a0));
                                EXPECT_TRUE(same_all(x.buf, x0));
                                pc.check(y, y0, full.op(t), values(x));
                            }
                        }
}

// The symmetric (real) or Hermitian (complex) products in each storage.
TYPED_TEST(Products, SymmetricStorages) {
    using T = TypeParam;
    std::mt19937_64 g(202);
    for (storage st : {storage::full, storage::band, storage::packed})
        for (idx n : {0, 1, 2, 3, 7, 16, 33, 100, 600})  // 600: several blocks of rows and columns
            for (idx k : st == storage::band ? std::vector<idx>{0, 1, 5, n + 1} : std::vector<idx>{n})
                for (const char* uplo : {"U", "lower"})
                    for (auto [ix, iy] : increments)
                        for (scalars sc : all_scalars) {
                            if (n > 100 && (sc != scalars::general || ix == 2 || k < 5)) continue;
                            SCOPED_TRACE(::testing::Message() << "storage=" << int(st) << " n=" << n << " k=" << k
                                                              << " uplo=" << uplo << " incx=" << ix << " incy=" << iy
                                                              << " case=" << int(sc));
                            triangle<T> tri(st, uplo[0] == 'U', n, k, g);
                            gvec<T> x(n, ix, 0, g), y(n, iy, 1, g);
                            const product_case<T> pc(sc, g);
                            pc.prepare(y);
                            const auto a0 = tri.a, x0 = x.buf, y0 = y.buf;
                            for (auto [path, f] : l2<T>::symmetric(st)) {
                                SCOPED_TRACE(path);
                                y.buf = y0;
                                f(uplo, &n, &k, &pc.alpha, tri.a.data(), &tri.lda, x.p(), &ix, &pc.beta, y.p(), &iy);
                                EXPECT_TRUE(same_all(tri.a, a0));
                                EXPECT_TRUE(same_all(x.buf, x0));
                                pc.check(y, y0, tri.full, values(x));
                            }
                        }
}

// libork's split of symv and hemv (its bits at any thread count:
// threads_test.cpp) within the bound.
TYPED_TEST(Products, SymmetricSplit) {
    using T = TypeParam;
    std::mt19937_64 g(203);
    const idx n = 700;
    for (const char* uplo : {"U", "L"}) {
        triangle<T> tri(storage::full, uplo[0] == 'U', n, n, g);
        gvec<T> x(n, -1, 0, g), y(n, 2, 0, g);
        const product_case<T> pc(scalars::general, g);
        const auto y0 = y.buf;
        l2<T>::symmetric(storage::full)[0].second(uplo, &n, &n, &pc.alpha, tri.a.data(), &tri.lda, x.p(), &x.inc,
                                                  &pc.beta, y.p(), &y.inc);
        pc.check(y, y0, tri.full, values(x));
    }
}

}  // namespace
