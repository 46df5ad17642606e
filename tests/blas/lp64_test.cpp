// The lp64_ wrappers of the kernel library take 32-bit n and increments:
// sign-extended, then the 64-bit entry of the same routine is called. Each of
// the sixteen must act exactly as that entry: n <= 0 touches nothing and a
// negative increment walks from the far end.
#include "testing.h"

using namespace ot;

namespace {

using i32 = ork_int32;

template <class T> struct lp64;
#define OT_LP64(p, T, dot_)                                                                                          \
    template <> struct lp64<T> {                                                                                     \
        static auto axpy() { return kernel_symbol<decltype(&ork_blas_lp64_##p##axpy)>("ork_blas_lp64_" #p "axpy"); } \
        static auto copy() { return kernel_symbol<decltype(&ork_blas_lp64_##p##copy)>("ork_blas_lp64_" #p "copy"); } \
        static auto scal() { return kernel_symbol<decltype(&ork_blas_lp64_##p##scal)>("ork_blas_lp64_" #p "scal"); } \
        static auto dot() { return kernel_symbol<decltype(&ork_blas_lp64_##dot_)>("ork_blas_lp64_" #dot_); }         \
        static constexpr auto wide_dot = &ork_blas_##dot_;                                                           \
    };
OT_LP64(s, float, sdot)
OT_LP64(d, double, ddot)
OT_LP64(c, ork_complex8, cdotu)
OT_LP64(z, ork_complex16, zdotu)
#undef OT_LP64

template <class T> class Lp64 : public ::testing::Test {};
TYPED_TEST_SUITE(Lp64, ElementTypes);

TYPED_TEST(Lp64, ActsAsThe64BitEntry) {
    using T = TypeParam;
    using L = lp64<T>;
    std::mt19937_64 g(51);
    for (i32 n : {-1, 0, 1, 5, 17, 100})
        for (auto [ix, iy] : {std::pair<i32, i32>{1, 1}, {-1, -1}, {-1, 2}, {3, -2}, {-2, -3}}) {
            SCOPED_TRACE(::testing::Message() << "n=" << n << " incx=" << ix << " incy=" << iy);
            const idx n64 = n, ix64 = ix, iy64 = iy;
            gvec<T> x(n, ix, 1, g), y(n, iy, 0, g);
            const auto x0 = x.buf, y0 = y.buf;
            const T alpha = rnd<T>(g);

            L::axpy()(&n, &alpha, x.p(), &ix, y.p(), &iy);
            auto lp = y.buf;
            y.buf = y0;
            api<T>::axpy.lib(&n64, &alpha, x.p(), &ix64, y.p(), &iy64);
            EXPECT_TRUE(same_all(lp, y.buf)) << "axpy";

            y.buf = y0;
            L::copy()(&n, x.p(), &ix, y.p(), &iy);
            lp = y.buf;
            y.buf = y0;
            api<T>::copy.lib(&n64, x.p(), &ix64, y.p(), &iy64);
            EXPECT_TRUE(same_all(lp, y.buf)) << "copy";

            L::scal()(&n, &alpha, x.p(), &ix);
            lp = x.buf;
            x.buf = x0;
            api<T>::scal.lib(&n64, &alpha, x.p(), &ix64);
            EXPECT_TRUE(same_all(lp, x.buf)) << "scal";

            EXPECT_TRUE(same(L::dot()(&n, x.p(), &ix, y.p(), &iy), L::wide_dot(&n64, x.p(), &ix64, y.p(), &iy64)))
                << "dot";
            if (n <= 0) {  // nothing was touched, and the dot product is 0
                EXPECT_TRUE(same_all(x.buf, x0));
                EXPECT_TRUE(same_all(y.buf, y0));
                EXPECT_TRUE(same(L::dot()(&n, x.p(), &ix, y.p(), &iy), make<T>(0)));
            }
        }
}

}  // namespace
