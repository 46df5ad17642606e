// Lower Cholesky and Bunch-Kaufman factorisations: the factors multiplied back
// in long double give A, the strict upper triangle is untouched, and info
// names the failing minor or zero pivot.
#include "lapack_testing.h"

namespace ot {
namespace {

template <class T> class Factor : public ::testing::Test {};
TYPED_TEST_SUITE(Factor, ElementTypes);

template <class T> using potrf_fn = void (*)(const idx*, T*, const idx*, idx*);
template <class T> using sytrf_fn = void (*)(const idx*, T*, const idx*, idx*, idx*);

// A Hermitian positive definite matrix M*M^H + n*I, full storage.
template <class T> gmat<T> hpd(idx n, std::mt19937_64& g) {
    gmat<T> m(n, n), a(n, n);
    m.fill(g);
    for (idx j = 0; j < n; ++j)
        for (idx i = 0; i < n; ++i) {
            LC s = i == j ? LC(n) : LC(0);
            for (idx k = 0; k < n; ++k) s += ld(m(i, k)) * std::conj(ld(m(j, k)));
            a(i, j) = from_ld<T>(i == j ? LC(s.real()) : s);
        }
    return a;
}

// True when the strict upper triangles of a and b hold the same bits.
template <class T> bool upper_same(gmat<T>& a, gmat<T>& b) {
    for (idx j = 0; j < a.n; ++j)
        for (idx i = 0; i < j; ++i)
            if (!same(a(i, j), b(i, j))) return false;
    return true;
}

TYPED_TEST(Factor, CholeskyReproducesTheMatrix) {
    using T = TypeParam;
    for (auto& [path, f] : both_paths<potrf_fn<T>>(lname<T>("potrf_l_small")))
        for (idx n : sizes) {
            SCOPED_TRACE(path + " n=" + std::to_string(n));
            std::mt19937_64 g(1000 + n);
            gmat<T> a = hpd<T>(n, g), a0 = a;
            idx info = -99;
            f(&n, a.p(), &a.ld, &info);
            ASSERT_EQ(info, 0);
            EXPECT_TRUE(a.guards_intact());
            EXPECT_TRUE(upper_same(a, a0));
            lmat l(n, n), llh(n, n), want(a0);
            for (idx j = 0; j < n; ++j) {
                EXPECT_EQ(ld(a(j, j)).imag(), 0);
                for (idx i = j; i < n; ++i) l(i, j) = ld(a(i, j));
            }
            for (idx j = 0; j < n; ++j)
                for (idx i = j; i < n; ++i) {
                    for (idx k = 0; k <= j; ++k) llh(i, j) += l(i, k) * std::conj(l(j, k));
                    llh(j, i) = want(j, i);  // only the lower triangle is compared
                }
            EXPECT_TRUE(all_near(llh, want, 8 * (n + 1) * eps<T> * want.maxabs()));
        }
}

TYPED_TEST(Factor, CholeskyStopsAtTheFirstIndefiniteMinor) {
    using T = TypeParam;
    for (auto& [path, f] : both_paths<potrf_fn<T>>(lname<T>("potrf_l_small")))
        for (idx n : {1, 3, 5, 17}) {
            SCOPED_TRACE(path + " n=" + std::to_string(n));
            // the identity with a 2 x 2 block [1 2; 2 1] ending at row bad
            const idx bad = n == 1 ? 0 : std::min<idx>(n - 1, 2);
            gmat<T> a(n, n);
            for (idx j = 0; j < n; ++j)
                for (idx i = 0; i < n; ++i) a(i, j) = make<T>(i == j ? 1 : 0);
            if (bad > 0) a(bad, bad - 1) = a(bad - 1, bad) = make<T>(2);
            else a(0, 0) = make<T>(-1);
            idx info = 0;
            f(&n, a.p(), &a.ld, &info);
            EXPECT_EQ(info, bad + 1);
            EXPECT_EQ(ld(a(bad, bad)), LC(bad > 0 ? -3 : -1));  // 1 - 2*2, the value that was not positive
        }
}

// P*L*D*L^T*P^T from the factored lower triangle and ipiv (plain transposes:
// complex symmetric). With magnitudes set, the same product of |L| and |D|.
template <class T> lmat rebuild(gmat<T>& a, const std::vector<idx>& ipiv, bool magnitudes) {
    const idx n = a.n;
    auto el = [&](idx i, idx j) { return magnitudes ? LC(std::abs(ld(a(i, j)))) : ld(a(i, j)); };
    // block starts, left to right
    std::vector<idx> starts;
    for (idx k = 0; k < n; k += ipiv[std::size_t(k)] > 0 ? 1 : 2) starts.push_back(k);
    lmat x(n, n);
    for (idx k : starts) {
        x(k, k) = el(k, k);
        if (ipiv[std::size_t(k)] < 0) x(k + 1, k) = x(k, k + 1) = el(k + 1, k), x(k + 1, k + 1) = el(k + 1, k + 1);
    }
    for (auto it = starts.rbegin(); it != starts.rend(); ++it) {
        const idx k = *it, s = ipiv[std::size_t(k)] > 0 ? 1 : 2;
        // X := Lk*X*Lk^T, Lk the identity with the multipliers of columns k .. k+s-1
        lmat y = x;
        for (idx c = 0; c < s; ++c)
            for (idx i = k + s; i < n; ++i)
                for (idx j = 0; j < n; ++j) y(i, j) += el(i, k + c) * x(k + c, j);
        x = y;
        for (idx c = 0; c < s; ++c)
            for (idx j = k + s; j < n; ++j)
                for (idx i = 0; i < n; ++i) x(i, j) += y(i, k + c) * el(j, k + c);
        // X := Pk*X*Pk^T, rows and columns k+s-1 and |ipiv| swapped
        const idx p = (ipiv[std::size_t(k)] > 0 ? ipiv[std::size_t(k)] : -ipiv[std::size_t(k)]) - 1, kk = k + s - 1;
        for (idx j = 0; j < n; ++j) std::swap(x(kk, j), x(p, j));
        for (idx i = 0; i < n; ++i) std::swap(x(i, kk), x(i, p));
    }
    return x;
}

TYPED_TEST(Factor, BunchKaufmanReproducesTheMatrix) {
    using T = TypeParam;
    for (auto& [path, f] : both_paths<sytrf_fn<T>>(lname<T>("sytrf_l_small")))
        for (bool zero_diagonal : {false, true})
            for (idx n : sizes) {
                if (zero_diagonal && n == 1) continue;  // singular
                SCOPED_TRACE(path + " n=" + std::to_string(n) + (zero_diagonal ? " zero diagonal" : ""));
                std::mt19937_64 g(2000 + n);
                // symmetric; a zero diagonal leaves only 2 x 2 pivots to take at first
                gmat<T> a(n, n);
                for (idx j = 0; j < n; ++j)
                    for (idx i = j; i < n; ++i) a(i, j) = a(j, i) = i == j && zero_diagonal ? make<T>(0) : rnd<T>(g);
                gmat<T> a0 = a;
                std::vector<idx> ipiv(std::size_t(n) + 1, 12345);
                idx info = -99;
                f(&n, a.p(), &a.ld, ipiv.data(), &info);
                ASSERT_EQ(info, 0);
                EXPECT_EQ(ipiv[std::size_t(n)], 12345);
                EXPECT_TRUE(a.guards_intact());
                EXPECT_TRUE(upper_same(a, a0));
                for (idx k = 0; k < n; ++k) {
                    const idx p = ipiv[std::size_t(k)];
                    ASSERT_TRUE(p != 0 && std::abs(p) <= n) << "ipiv[" << k << "] = " << p;
                    if (p < 0) {
                        ASSERT_TRUE(k + 1 < n && ipiv[std::size_t(k) + 1] == p) << "2 x 2 block at " << k;
                        ++k;
                    }
                }
                if (zero_diagonal && n >= 2) {
                    EXPECT_LT(ipiv[0], 0) << "no 2 x 2 pivot first";
                }
                lmat got = rebuild(a, ipiv, false), scale = rebuild(a, ipiv, true), want(a0);
                EXPECT_TRUE(all_near(got, want, 16 * (n + 1) * eps<T> * std::max(scale.maxabs(), want.maxabs())));
            }
}

TYPED_TEST(Factor, BunchKaufmanReportsAnExactlyZeroPivot) {
    using T = TypeParam;
    for (auto& [path, f] : both_paths<sytrf_fn<T>>(lname<T>("sytrf_l_small")))
        for (idx n : {1, 2, 5, 17}) {
            SCOPED_TRACE(path + " n=" + std::to_string(n));
            // diagonal with a zero at row z; the rows after it are fine
            const idx z = n / 2;
            gmat<T> a(n, n);
            for (idx j = 0; j < n; ++j)
                for (idx i = 0; i < n; ++i) a(i, j) = make<T>(i == j && i != z ? 2 : 0);
            std::vector<idx> ipiv(static_cast<std::size_t>(n));
            idx info = 0;
            f(&n, a.p(), &a.ld, ipiv.data(), &info);
            EXPECT_EQ(info, z + 1);
            for (idx k = 0; k < n; ++k) EXPECT_EQ(ipiv[std::size_t(k)], k + 1);
        }
}

}  // namespace
}  // namespace ot
