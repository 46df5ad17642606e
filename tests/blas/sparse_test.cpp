// Sparse level 1: a compressed x of nz values with 1-based indices indx into
// a dense y. Updates are predicted bit for bit (repeated indices in order),
// dot products against long double.
#include "testing.h"

using namespace ot;

namespace {

template <class T> class Sparse : public ::testing::Test {};
TYPED_TEST_SUITE(Sparse, ElementTypes);

constexpr idx dense = 40;

// nz indices into 1..dense: distinct, or drawn with repeats.
std::vector<idx> indices(idx nz, bool distinct, std::mt19937_64& g) {
    std::vector<idx> all(dense);
    for (idx i = 0; i < dense; ++i) all[std::size_t(i)] = i + 1;
    std::shuffle(all.begin(), all.end(), g);
    std::vector<idx> r(all.begin(), all.begin() + nz);
    if (!distinct)
        for (idx i = 1; i < nz; i += 3) r[std::size_t(i)] = r[std::size_t(i - 1)];
    return r;
}

TYPED_TEST(Sparse, UpdatesAndGathers) {
    using T = TypeParam;
    std::mt19937_64 g(41);
    for (idx nz : {-1, 0, 1, 2, 5, 17, 40})
        for (bool distinct : {true, false}) {
            SCOPED_TRACE(::testing::Message() << "nz=" << nz << " distinct=" << distinct);
            const std::vector<idx> ix = indices(nz > 0 ? nz : 0, distinct, g);
            const idx* ip = ix.data();
            gvec<T> x(nz > 0 ? nz : 0, 1, 1, g), y(dense, 1, 0, g);
            auto slot = [&](idx i) { return y.pos(ix[std::size_t(i)] - 1); };
            for (auto [path, f] : api<T>::axpyi.paths()) {  // repeated indices accumulate
                const T alpha = rnd<T>(g);
                auto want = y.buf;
                for (idx i = 0; i < nz; ++i) want[slot(i)] = add(want[slot(i)], mul(alpha, x.at(i)));
                f(&nz, &alpha, x.p(), ip, y.p());
                EXPECT_TRUE(same_all(y.buf, want)) << path;
            }
            for (auto [path, f] : api<T>::gthr.paths()) {
                auto want = x.buf;
                for (idx i = 0; i < nz; ++i) want[x.pos(i)] = y.buf[slot(i)];
                f(&nz, y.p(), x.p(), ip);
                EXPECT_TRUE(same_all(x.buf, want)) << path;
            }
            if (distinct)
                for (auto [path, f] : api<T>::sctr.paths()) {
                    x = gvec<T>(x.n, 1, 1, g);
                    auto want = y.buf;
                    for (idx i = 0; i < nz; ++i) want[slot(i)] = x.at(i);
                    f(&nz, x.p(), ip, y.p());
                    EXPECT_TRUE(same_all(y.buf, want)) << path;
                }
            // gathered and zeroed element by element: a repeated index gives 0 the second time
            for (auto [path, f] : api<T>::gthrz.paths()) {
                y = gvec<T>(dense, 1, 0, g);
                auto wx = x.buf, wy = y.buf;
                for (idx i = 0; i < nz; ++i) {
                    wx[x.pos(i)] = wy[slot(i)];
                    wy[slot(i)] = make<T>(0);
                }
                f(&nz, y.p(), x.p(), ip);
                EXPECT_TRUE(same_all(x.buf, wx)) << path;
                EXPECT_TRUE(same_all(y.buf, wy)) << path;
            }
            // dot products, conjugating x for dotci
            const auto du = api<T>::dotui.paths(), dc = api<T>::dotci.paths();
            for (std::size_t k = 0; k < du.size(); ++k) {
                LC u = 0, c = 0;
                long double mags = 0;
                for (idx i = 0; i < nz; ++i) {
                    u += ld(x.at(i)) * ld(y.buf[slot(i)]);
                    c += std::conj(ld(x.at(i))) * ld(y.buf[slot(i)]);
                    mags += mag1(x.at(i)) * mag1(y.buf[slot(i)]);
                }
                const long double tol = (nz + 2) * eps<T> * mags;
                EXPECT_TRUE(near(du[k].second(&nz, x.p(), ip, y.p()), u, tol)) << du[k].first;
                EXPECT_TRUE(near(dc[k].second(&nz, x.p(), ip, y.p()), c, tol)) << dc[k].first;
            }
        }
}

TYPED_TEST(Sparse, GthrzRepeatedIndex) {
    using T = TypeParam;
    for (auto [path, f] : api<T>::gthrz.paths()) {
        T y[3] = {make<T>(1, 2), make<T>(3, 4), make<T>(5, 6)}, x[2] = {make<T>(9), make<T>(9)};
        const idx ix[] = {2, 2}, nz = 2;
        f(&nz, y, x, ix);
        EXPECT_TRUE(same(x[0], make<T>(3, 4)) && same(x[1], make<T>(0)) && same(y[1], make<T>(0))) << path;
        EXPECT_TRUE(same(y[0], make<T>(1, 2)) && same(y[2], make<T>(5, 6))) << path;
    }
}

TYPED_TEST(Sparse, AxpyiZeroAlphaTouchesNothing) {
    using T = TypeParam;
    std::mt19937_64 g(42);
    for (auto [path, f] : api<T>::axpyi.paths()) {
        gvec<T> x(4, 1, 0, g), y(dense, 1, 0, g);
        x.at(2) = make<T>(NAN, NAN);
        const auto ix = indices(4, true, g);
        const auto y0 = y.buf;
        const T zero = make<T>(0);
        const idx nz = 4;
        f(&nz, &zero, x.p(), ix.data(), y.p());
        EXPECT_TRUE(same_all(y.buf, y0)) << path;
    }
}

// roti: t = x_i, u = y(indx_i); y(indx_i) := c*u - s*t, x_i := c*t + s*u.
// c = 1, s = 0 returns at once, NaN in y included.
template <class R> class SparseRot : public ::testing::Test {};
template <class R> constexpr auto roti_of() {
    if constexpr (std::is_same_v<R, float>) return OT_R(sroti);
    else return OT_R(droti);
}
TYPED_TEST_SUITE(SparseRot, RealTypes);

TYPED_TEST(SparseRot, Roti) {
    using R = TypeParam;
    constexpr auto roti = roti_of<R>();
    std::mt19937_64 g(43);
    for (auto [path, f] : roti.paths())
        for (idx nz : {-1, 0, 1, 3, 17, 40}) {
            SCOPED_TRACE(::testing::Message() << path << " nz=" << nz);
            const auto ix = indices(nz > 0 ? nz : 0, true, g);
            gvec<R> x(nz > 0 ? nz : 0, 1, 1, g), y(dense, 1, 0, g);
            const R c = rnd<R>(g), s = rnd<R>(g);
            auto wx = x.buf, wy = y.buf;
            for (idx i = 0; i < nz; ++i) {
                const std::size_t k = y.pos(ix[std::size_t(i)] - 1);
                const R t = x.at(i), u = y.buf[k];
                wy[k] = c * u - s * t;
                wx[x.pos(i)] = c * t + s * u;
            }
            f(&nz, x.p(), ix.data(), y.p(), &c, &s);
            EXPECT_TRUE(same_all(x.buf, wx));
            EXPECT_TRUE(same_all(y.buf, wy));
            if (nz > 0) {
                y.buf[y.pos(ix[0] - 1)] = NAN;
                const auto x0 = x.buf, y0 = y.buf;
                const R one = 1, zero = 0;
                f(&nz, x.p(), ix.data(), y.p(), &one, &zero);
                EXPECT_TRUE(same_all(x.buf, x0));
                EXPECT_TRUE(same_all(y.buf, y0));
            }
        }
}

}  // namespace
