// Elementwise level-1 routines (axpy, copy, swap, scal, rot, lartv, rot2,
// rot3): every element is predicted bit for bit with the same formula in the
// same precision, over strided and misaligned vectors whose unused slots must
// keep their sentinels. Both libork's entry and the kernel's code are run.
#include "testing.h"

using namespace ot;

namespace {

template <class T> class Elementwise : public ::testing::Test {};
TYPED_TEST_SUITE(Elementwise, ElementTypes);

constexpr idx lengths[] = {0, 1, 2, 3, 7, 8, 9, 15, 16, 17, 33, 100, 1000};
struct incs {
    idx x, y;
};
// incx = 0 only where x is read, never written.
constexpr incs written_pairs[] = {{1, 1}, {-1, -1}, {2, -3}, {-3, 2}, {1, -1}, {-2, 1}};
constexpr incs read_x_pairs[] = {{1, 1}, {-1, -1}, {2, -3}, {-3, 2}, {1, -1}, {0, 1}, {0, -2}};
// First elements of x and y, in elements from 16-byte alignment: together,
// apart, odd offsets (the leading-element and unaligned kernel paths).
constexpr std::pair<int, int> shifts[] = {{0, 0}, {1, 1}, {1, 0}, {0, 3}, {2, 1}};

template <class F> void for_shapes(bool x_read_only, F check) {
    const auto pairs = x_read_only ? std::vector<incs>(std::begin(read_x_pairs), std::end(read_x_pairs))
                                   : std::vector<incs>(std::begin(written_pairs), std::end(written_pairs));
    for (idx n : lengths)
        for (incs in : pairs)
            for (auto [sx, sy] : shifts) {
                SCOPED_TRACE(::testing::Message() << "n=" << n << " incx=" << in.x << " incy=" << in.y
                                                  << " shifts=" << sx << "," << sy);
                check(n, in, sx, sy);
                if (::testing::Test::HasFailure()) return;
            }
}

TYPED_TEST(Elementwise, AxpyCopySwap) {
    using T = TypeParam;
    std::mt19937_64 g(11);
    for (auto [path, f] : api<T>::axpy.paths()) {
        SCOPED_TRACE(path);
        for_shapes(true, [&](idx n, incs in, int sx, int sy) {
            gvec<T> x(n, in.x, sx, g), y(n, in.y, sy, g);
            const T alpha = rnd<T>(g);
            auto want = y.buf;
            for (idx i = 0; i < n; ++i) want[y.pos(i)] = add(want[y.pos(i)], mul(alpha, x.at(i)));
            const auto x0 = x.buf;
            f(&n, &alpha, x.p(), &in.x, y.p(), &in.y);
            EXPECT_TRUE(same_all(y.buf, want));
            EXPECT_TRUE(same_all(x.buf, x0));
        });
    }
    for (auto [path, f] : api<T>::copy.paths()) {
        SCOPED_TRACE(path);
        for_shapes(true, [&](idx n, incs in, int sx, int sy) {
            gvec<T> x(n, in.x, sx, g), y(n, in.y, sy, g);
            auto want = y.buf;
            for (idx i = 0; i < n; ++i) want[y.pos(i)] = x.at(i);
            const auto x0 = x.buf;
            f(&n, x.p(), &in.x, y.p(), &in.y);
            EXPECT_TRUE(same_all(y.buf, want));
            EXPECT_TRUE(same_all(x.buf, x0));
        });
    }
    for (auto [path, f] : api<T>::swap.paths()) {
        SCOPED_TRACE(path);
        for_shapes(false, [&](idx n, incs in, int sx, int sy) {
            gvec<T> x(n, in.x, sx, g), y(n, in.y, sy, g);
            auto want_x = x.buf, want_y = y.buf;
            for (idx i = 0; i < n; ++i) std::swap(want_x[x.pos(i)], want_y[y.pos(i)]);
            f(&n, x.p(), &in.x, y.p(), &in.y);
            EXPECT_TRUE(same_all(x.buf, want_x));
            EXPECT_TRUE(same_all(y.buf, want_y));
        });
    }
}

// n <= 0 and alpha = 0 return at once (even with NaN in x); a NaN alpha is
// not zero and goes on.
TYPED_TEST(Elementwise, AxpyQuickReturnsAndNaNAlpha) {
    using T = TypeParam;
    std::mt19937_64 g(12);
    const T nan = make<T>(NAN, NAN);
    for (auto [path, f] : api<T>::axpy.paths()) {
        SCOPED_TRACE(path);
        gvec<T> x(9, 1, 1, g), y(9, -2, 0, g);
        x.at(3) = nan;
        const auto y0 = y.buf;
        const T alpha = rnd<T>(g), zero = make<T>(0);
        for (idx n : {0, -1}) f(&n, &alpha, x.p(), &x.inc, y.p(), &y.inc);
        idx n = 9;
        f(&n, &zero, x.p(), &x.inc, y.p(), &y.inc);
        EXPECT_TRUE(same_all(y.buf, y0));
        f(&n, &nan, x.p(), &x.inc, y.p(), &y.inc);
        for (idx i = 0; i < n; ++i) EXPECT_TRUE(std::isnan(re(y.at(i)))) << i;
    }
}

// s*b with s of the element type or its real type.
template <class T, class S> T smul(S s, T b) {
    if constexpr (std::is_same_v<S, T>) return mul(s, b);
    else return rmul(s, b);
}

// x := alpha*x, alpha of the element type, or real for csscal and zdscal.
TYPED_TEST(Elementwise, Scal) {
    using T = TypeParam;
    std::mt19937_64 g(13);
    auto check = [&](const auto& r, auto alpha_type) {
        using S = decltype(alpha_type);
        for (auto [path, f] : r.paths()) {
            SCOPED_TRACE(path);
            for_shapes(false, [&](idx n, incs in, int sx, int) {
                gvec<T> x(n, in.x, sx, g);
                const S alpha = rnd<S>(g, -2, 2);
                auto want = x.buf;
                for (idx i = 0; i < n; ++i) want[x.pos(i)] = smul(alpha, x.at(i));
                f(&n, &alpha, x.p(), &in.x);
                EXPECT_TRUE(same_all(x.buf, want));
            });
            // n <= 0 and incx = 0 touch nothing
            gvec<T> x(5, 1, 0, g);
            const auto x0 = x.buf;
            const S alpha = make<S>(3, 1);
            for (auto [n, inc] : {std::pair<idx, idx>{0, 1}, {-1, 1}, {5, 0}}) f(&n, &alpha, x.p(), &inc);
            EXPECT_TRUE(same_all(x.buf, x0));
        }
    };
    check(api<T>::scal, T{});
    if constexpr (is_cx<T>) check(api<T>::rscal, real_t<T>{});
}

// x := c*x + s*y, y := c*y - conj(s)*x with real c, and s real (srot, drot,
// csrot, zdrot) or complex (crot, zrot).
TYPED_TEST(Elementwise, Rot) {
    using T = TypeParam;
    using R = real_t<T>;
    std::mt19937_64 g(14);
    auto check = [&](const auto& r, auto s_type) {
        using S = decltype(s_type);
        for (auto [path, f] : r.paths()) {
            SCOPED_TRACE(path);
            for_shapes(false, [&](idx n, incs in, int sx, int sy) {
                gvec<T> x(n, in.x, sx, g), y(n, in.y, sy, g);
                const R c = rnd<R>(g);
                const S s = rnd<S>(g);
                auto wx = x.buf, wy = y.buf;
                for (idx i = 0; i < n; ++i) {
                    T a = x.at(i), b = y.at(i);
                    wx[x.pos(i)] = add(rmul(c, a), smul(s, b));
                    wy[y.pos(i)] = sub(rmul(c, b), smul(conj(s), a));
                }
                f(&n, x.p(), &in.x, y.p(), &in.y, &c, &s);
                EXPECT_TRUE(same_all(x.buf, wx));
                EXPECT_TRUE(same_all(y.buf, wy));
            });
        }
    };
    check(api<T>::rot, R{});
    if constexpr (is_cx<T>) check(api<T>::crot, T{});
}

// A vector of rotations, c and s sharing incc.
TYPED_TEST(Elementwise, Lartv) {
    using T = TypeParam;
    using R = real_t<T>;
    std::mt19937_64 g(15);
    for (auto [path, f] : api<T>::lartv.paths()) {
        SCOPED_TRACE(path);
        for (idx incc : {1, -2, 3})
            for_shapes(false, [&](idx n, incs in, int sx, int sy) {
                gvec<T> x(n, in.x, sx, g), y(n, in.y, sy, g), s(n, incc, 1, g);
                gvec<R> c(n, incc, 0, g);
                auto wx = x.buf, wy = y.buf;
                const auto c0 = c.buf;
                const auto s0 = s.buf;
                for (idx i = 0; i < n; ++i) {
                    T a = x.at(i), b = y.at(i);
                    wx[x.pos(i)] = add(rmul(c.at(i), a), mul(s.at(i), b));
                    wy[y.pos(i)] = sub(rmul(c.at(i), b), mul(conj(s.at(i)), a));
                }
                f(&n, x.p(), &in.x, y.p(), &in.y, c.p(), s.p(), &incc);
                EXPECT_TRUE(same_all(x.buf, wx));
                EXPECT_TRUE(same_all(y.buf, wy));
                EXPECT_TRUE(same_all(c.buf, c0));
                EXPECT_TRUE(same_all(s.buf, s0));
            });
    }
}

// Reflectors of order 2 and 3 over contiguous vectors:
// t := (x + v*y [+ w*z])*tau; x -= t; y -= t*v [; z -= t*w].
TYPED_TEST(Elementwise, Rot2Rot3) {
    using T = TypeParam;
    std::mt19937_64 g(16);
    const auto r2 = api<T>::rot2.paths();
    const auto r3 = api<T>::rot3.paths();
    for (std::size_t k = 0; k < r2.size(); ++k) {
        SCOPED_TRACE(r2[k].first);
        for (idx n : {-1, 0, 1, 2, 3, 7, 8, 9, 16, 17, 100}) {
            SCOPED_TRACE(n);
            gvec<T> x(n, 1, int(n & 1), g), y(n, 1, int(n & 2), g), z(n, 1, 1, g);
            const T v = rnd<T>(g), w = rnd<T>(g), tau = rnd<T>(g);
            auto wx = x.buf, wy = y.buf, wz = z.buf;
            for (idx i = 0; i < n; ++i) {
                T t = mul(add(x.at(i), mul(v, y.at(i))), tau);
                wx[x.pos(i)] = sub(x.at(i), t);
                wy[y.pos(i)] = sub(y.at(i), mul(t, v));
            }
            r2[k].second(&n, x.p(), y.p(), &v, &tau);
            EXPECT_TRUE(same_all(x.buf, wx));
            EXPECT_TRUE(same_all(y.buf, wy));
            for (idx i = 0; i < n; ++i) {
                T t = mul(add(add(x.at(i), mul(v, y.at(i))), mul(w, z.at(i))), tau);
                wx[x.pos(i)] = sub(x.at(i), t);
                wy[y.pos(i)] = sub(y.at(i), mul(t, v));
                wz[z.pos(i)] = sub(z.at(i), mul(t, w));
            }
            r3[k].second(&n, x.p(), y.p(), z.p(), &v, &w, &tau);
            EXPECT_TRUE(same_all(x.buf, wx));
            EXPECT_TRUE(same_all(y.buf, wy));
            EXPECT_TRUE(same_all(z.buf, wz));
        }
    }
}

// Vectors long enough for libork to split them over threads, with increments
// of both signs: the pieces must cover each element exactly once.
TYPED_TEST(Elementwise, LongVectorsSplitOverThreads) {
    using T = TypeParam;
    std::mt19937_64 g(17);
    const idx n = 300007;
    for (int t : {2, 3}) {
        threads_scope threads(t);
        for (incs in : {incs{1, 1}, incs{-1, -1}, incs{2, -1}, incs{-2, 3}}) {
            SCOPED_TRACE(::testing::Message() << "threads=" << t << " incx=" << in.x << " incy=" << in.y);
            gvec<T> x(n, in.x, 1, g), y(n, in.y, 0, g);
            const T alpha = rnd<T>(g);
            auto wx = x.buf, wy = y.buf;
            for (idx i = 0; i < n; ++i) wy[y.pos(i)] = add(y.at(i), mul(alpha, x.at(i)));
            api<T>::axpy.lib(&n, &alpha, x.p(), &in.x, y.p(), &in.y);
            ASSERT_TRUE(same_all(y.buf, wy)) << "axpy";
            for (idx i = 0; i < n; ++i) wx[x.pos(i)] = mul(alpha, x.at(i));
            api<T>::scal.lib(&n, &alpha, x.p(), &in.x);
            ASSERT_TRUE(same_all(x.buf, wx)) << "scal";
            for (idx i = 0; i < n; ++i) std::swap(wx[x.pos(i)], wy[y.pos(i)]);
            api<T>::swap.lib(&n, x.p(), &in.x, y.p(), &in.y);
            ASSERT_TRUE(same_all(x.buf, wx)) << "swap";
            ASSERT_TRUE(same_all(y.buf, wy)) << "swap";
            for (idx i = 0; i < n; ++i) wy[y.pos(i)] = x.at(i);
            api<T>::copy.lib(&n, x.p(), &in.x, y.p(), &in.y);
            ASSERT_TRUE(same_all(y.buf, wy)) << "copy";
        }
    }
}

}  // namespace
