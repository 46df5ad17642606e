// Rotation generators checked by what they must satisfy (unit rotations that
// zero the second component, norms kept), the documented special cases, and
// rotm predicted bit for bit from its flag.
#include "testing.h"

using namespace ot;

namespace {

template <class R> struct rotations;
template <> struct rotations<float> {
    static constexpr auto rotg = OT_R(srotg), rotm = OT_R(srotm), rotmg = OT_R(srotmg);
    static constexpr auto crotg = OT_R(crotg);
};
template <> struct rotations<double> {
    static constexpr auto rotg = OT_R(drotg), rotm = OT_R(drotm), rotmg = OT_R(drotmg);
    static constexpr auto crotg = OT_R(zrotg);
};

template <class R> class Rotation : public ::testing::Test {};
TYPED_TEST_SUITE(Rotation, RealTypes);

TYPED_TEST(Rotation, Rotg) {
    using R = TypeParam;
    std::mt19937_64 g(31);
    std::uniform_real_distribution<double> expo(-12, 12);
    std::vector<std::pair<R, R>> inputs = {{0, 2}, {0, -2}, {2, 0}, {-4, 3}, {3, 4}, {3, -3}, {-3, 3},
                                           {R(1e30), R(1e30)}, {R(-1e-30), R(2e-30)}};
    for (int k = 0; k < 200; ++k) inputs.push_back({rnd<R>(g) * R(std::pow(10, expo(g))), rnd<R>(g) * R(std::pow(10, expo(g)))});
    for (auto [path, f] : rotations<R>::rotg.paths()) {
        SCOPED_TRACE(path);
        R a = 0, b = 0, c = 7, s = 7;
        f(&a, &b, &c, &s);
        EXPECT_TRUE(a == 0 && b == 0 && c == 1 && s == 0);
        a = 0, b = 2;
        f(&a, &b, &c, &s);
        EXPECT_TRUE(a == 2 && b == 1 && c == 0 && s == 1);
        for (auto [a0, b0] : inputs) {
            SCOPED_TRACE(::testing::Message() << "a=" << a0 << " b=" << b0);
            R r = a0, z = b0;
            f(&r, &z, &c, &s);
            const long double tol = 8 * eps<R>, h = std::hypot((long double)a0, (long double)b0);
            const R sign_from = std::fabs(a0) > std::fabs(b0) ? a0 : b0;
            EXPECT_EQ(std::signbit(r), std::signbit(sign_from));
            EXPECT_NEAR(std::fabs((long double)r), h, tol * h);
            EXPECT_NEAR((long double)c * c + (long double)s * s, 1.0L, tol);
            EXPECT_NEAR((long double)c * a0 + (long double)s * b0, r, tol * h);  // [c s; -s c][a; b] = [r; 0]
            EXPECT_NEAR(-(long double)s * a0 + (long double)c * b0, 0.0L, tol * h);
            // z: s when |a| > |b|, else 1/c when c != 0, else 1; c and s come back from z.
            const R want_z = std::fabs(a0) > std::fabs(b0) ? s : c != 0 ? R(1) / c : R(1);
            EXPECT_TRUE(same(z, want_z)) << z << " vs " << want_z;
            long double zc, zs;
            if (z == 1) zc = 0, zs = 1;
            else if (std::fabs(z) < 1) zc = std::sqrt(1 - (long double)z * z), zs = z;
            else zc = 1 / (long double)z, zs = std::sqrt(1 - zc * zc);
            EXPECT_NEAR(zc, c, tol);
            EXPECT_NEAR(zs, s, tol);
        }
    }
}

// Complex generator: real c, complex s, [c s; -conj(s) c][a; b] = [r; 0]
// with r in the direction of a; a = 0 gives c = 0, s = 1, r = b.
TYPED_TEST(Rotation, ComplexRotg) {
    using R = TypeParam;
    using C = std::conditional_t<std::is_same_v<R, float>, ork_complex8, ork_complex16>;
    std::mt19937_64 g(32);
    for (auto [path, f] : rotations<R>::crotg.paths()) {
        SCOPED_TRACE(path);
        C a{0, 0}, b{R(1.5), R(-2)}, s{7, 7};
        R c = 7;
        f(&a, &b, &c, &s);
        EXPECT_TRUE(c == 0 && s.re == 1 && s.im == 0 && same(a, b));
        for (int k = 0; k < 200; ++k) {
            const C a0 = rnd<C>(g), b0 = k % 10 ? rnd<C>(g) : C{0, 0};
            a = a0;
            f(&a, &b0, &c, &s);
            const long double tol = 8 * eps<R>, h = std::sqrt(std::norm(ld(a0)) + std::norm(ld(b0)));
            EXPECT_GE(c, 0);
            EXPECT_LE(c, 1);
            EXPECT_NEAR(c * (long double)c + std::norm(ld(s)), 1.0L, tol);
            EXPECT_LE(std::abs(ld(a) - ld(a0) / std::abs(ld(a0)) * h), tol * h) << k;
            EXPECT_LE(std::abs((long double)c * ld(a0) + ld(s) * ld(b0) - ld(a)), tol * h) << k;
            EXPECT_LE(std::abs(-std::conj(ld(s)) * ld(a0) + (long double)c * ld(b0)), tol * h) << k;
        }
    }
}

// param = flag, h11, h21, h12, h22; the elements a flag implies are not read
// (NaN there must not show), and flag -2 touches nothing.
TYPED_TEST(Rotation, RotmByFlag) {
    using R = TypeParam;
    std::mt19937_64 g(33);
    const R nan = NAN;
    for (auto [path, f] : rotations<R>::rotm.paths())
        for (R flag : {-1, 0, 1, -2})
            for (idx n : {-1, 0, 1, 2, 3, 7, 16, 17, 100})
                for (auto [ix, iy] : {std::pair<idx, idx>{1, 1}, {-1, -1}, {2, -3}, {-1, 2}}) {
                    SCOPED_TRACE(::testing::Message() << path << " flag=" << flag << " n=" << n << " incx=" << ix << " incy=" << iy);
                    gvec<R> x(n, ix, 1, g), y(n, iy, 0, g);
                    R p[5] = {flag, rnd<R>(g), rnd<R>(g), rnd<R>(g), rnd<R>(g)};
                    if (flag == 0) p[1] = p[4] = nan;
                    if (flag == 1) p[2] = p[3] = nan;
                    if (flag == -2) p[1] = p[2] = p[3] = p[4] = nan;
                    auto wx = x.buf, wy = y.buf;
                    for (idx i = 0; i < n && flag != -2; ++i) {
                        const R w = x.at(i), z = y.at(i);
                        R& xo = wx[x.pos(i)];
                        R& yo = wy[y.pos(i)];
                        if (flag == -1) xo = w * p[1] + z * p[3], yo = w * p[2] + z * p[4];
                        if (flag == 0) xo = w + z * p[3], yo = w * p[2] + z;
                        if (flag == 1) xo = w * p[1] + z, yo = -w + p[4] * z;
                    }
                    f(&n, x.p(), &ix, y.p(), &iy, p);
                    EXPECT_TRUE(same_all(x.buf, wx));
                    EXPECT_TRUE(same_all(y.buf, wy));
                }
}

// The modified generator: with H from param, H*(x1, y1) = (x1', 0),
// d1'*x1'^2 = d1*x1^2 + d2*y1^2, and H' diag(d1', d2') H = diag(d1, d2) (so
// the rotation it stands for is orthogonal). Weights outside
// [2^-24, 2^24] are rescaled by powers of 4096, several times if needed.
TYPED_TEST(Rotation, RotmgGeneratesModifiedRotation) {
    using R = TypeParam;
    std::mt19937_64 g(34);
    std::uniform_real_distribution<double> expo(-11, 11);
    struct in {
        R d1, d2, x1, y1;
    };
    std::vector<in> cases = {{1, 1, 1, 1},       {2, 0.5, 3, -1},     {2, 3, 0, 5},         {1e-10f, 1e-10f, 1, 1},
                             {1e10f, 1e10f, 1, 1}, {1e-10f, 1, 1, 1e-3f}, {1, 1e10f, 1e-4f, 1}, {1e-10f, 1e-10f, 1e4f, 1},
                             {1, 1e-10f, 1, 1},    {1e10f, 1, 1, 1e3f},   {1e-12f, 1e12f, 1, 1e-5f}, {1e-20f, 1e-20f, 1, -1}};
    for (int k = 0; k < 300; ++k)
        cases.push_back({R(std::pow(10, expo(g))), R(std::pow(10, expo(g))), rnd<R>(g) * R(std::pow(10, expo(g) / 4)),
                         rnd<R>(g) * R(std::pow(10, expo(g) / 4))});
    auto failures = [] { return ::testing::UnitTest::GetInstance()->current_test_info()->result()->total_part_count(); };
    for (auto [path, f] : rotations<R>::rotmg.paths()) {
        SCOPED_TRACE(path);
        const int failures_before = failures();
        for (const in& c : cases) {
            SCOPED_TRACE(::testing::Message() << "d1=" << c.d1 << " d2=" << c.d2 << " x1=" << c.x1 << " y1=" << c.y1);
            R d1 = c.d1, d2 = c.d2, x1 = c.x1, p[5] = {9, 9, 9, 9, 9};
            f(&d1, &d2, &x1, &c.y1, p);
            long double h11 = p[1], h21 = p[2], h12 = p[3], h22 = p[4];
            if (p[0] == 0) h11 = h22 = 1;
            else if (p[0] == 1) h21 = -1, h12 = 1;
            else ASSERT_EQ(p[0], -1);
            const long double tol = 64 * eps<R>;
            const long double X = c.x1, Y = c.y1;
            EXPECT_NEAR(h21 * X + h22 * Y, 0.0L, tol * (std::fabs(h21 * X) + std::fabs(h22 * Y)));
            EXPECT_NEAR(h11 * X + h12 * Y, x1, tol * (std::fabs(h11 * X) + std::fabs(h12 * Y)));
            const long double before = c.d1 * X * X + c.d2 * Y * Y;
            EXPECT_NEAR((long double)d1 * x1 * x1, before, tol * before);
            const long double D1 = d1, D2 = d2;
            EXPECT_NEAR(D1 * h11 * h11 + D2 * h21 * h21, c.d1, tol * (D1 * h11 * h11 + D2 * h21 * h21));
            EXPECT_NEAR(D1 * h12 * h12 + D2 * h22 * h22, c.d2, tol * (D1 * h12 * h12 + D2 * h22 * h22));
            EXPECT_NEAR(D1 * h11 * h12 + D2 * h21 * h22, 0.0L, tol * (std::fabs(D1 * h11 * h12) + std::fabs(D2 * h21 * h22)));
            if (failures() > failures_before) break;  // one failing case per path tells enough
        }
        // d1 < 0, or a second weight that is negative and dominates: all zero, flag -1
        for (in c : {in{-1, 2, 3, 4}, in{1, -1, R(0.1), 1}}) {
            R p[5] = {9, 9, 9, 9, 9};
            f(&c.d1, &c.d2, &c.x1, &c.y1, p);
            EXPECT_TRUE(p[0] == -1 && p[1] == 0 && p[2] == 0 && p[3] == 0 && p[4] == 0);
            EXPECT_TRUE(c.d1 == 0 && c.d2 == 0 && c.x1 == 0);
        }
        // d2*y1 = 0: flag -2 and nothing else changes
        for (in c : {in{2, 3, 4, 0}, in{2, 0, 4, 5}}) {
            const in c0 = c;
            R p[5] = {9, 9, 9, 9, 9};
            f(&c.d1, &c.d2, &c.x1, &c.y1, p);
            EXPECT_TRUE(p[0] == -2 && p[1] == 9 && p[2] == 9 && p[3] == 9 && p[4] == 9);
            EXPECT_TRUE(c.d1 == c0.d1 && c.d2 == c0.d2 && c.x1 == c0.x1);
        }
    }
}

}  // namespace
