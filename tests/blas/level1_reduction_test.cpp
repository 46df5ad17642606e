// Level-1 reductions: dot products and sums against long double, the norms
// against their fixed recurrence (double) or long double (single), and the
// index searches against their documented rule, NaN included.
#include <cfloat>

#include "testing.h"

using namespace ot;

namespace {

template <class T> class Reduction : public ::testing::Test {};
TYPED_TEST_SUITE(Reduction, ElementTypes);

constexpr idx lengths[] = {0, 1, 2, 3, 7, 8, 9, 15, 16, 17, 33, 100, 1000};
constexpr std::pair<idx, idx> pairs[] = {{1, 1}, {-1, -1}, {2, -3}, {-3, 2}, {1, -1}, {0, 1}};

// sum conj?(x_i)*y_i; the error of any summation order is within
// (n + 2)*eps*sum |x_i||y_i|.
template <class T> void check_dot(const routine<T (*)(const idx*, const T*, const idx*, const T*, const idx*)>& r,
                                  bool conj_x, std::mt19937_64& g) {
    for (auto [path, f] : r.paths())
        for (idx n : lengths)
            for (auto [ix, iy] : pairs)
                for (int shift : {0, 1}) {
                    gvec<T> x(n, ix, shift, g), y(n, iy, 0, g);
                    LC want = 0;
                    long double mags = 0;
                    for (idx i = 0; i < n; ++i) {
                        LC a = ld(x.at(i));
                        want += (conj_x ? std::conj(a) : a) * ld(y.at(i));
                        mags += mag1(x.at(i)) * mag1(y.at(i));
                    }
                    EXPECT_TRUE(near(f(&n, x.p(), &ix, y.p(), &iy), want, (n + 2) * eps<T> * mags))
                        << path << " n=" << n << " incx=" << ix << " incy=" << iy << " shift=" << shift;
                }
}

TYPED_TEST(Reduction, Dot) {
    using T = TypeParam;
    std::mt19937_64 g(21);
    check_dot(api<T>::dotu, false, g);
    if constexpr (is_cx<T>) check_dot(api<T>::dotc, true, g);
}

// Single inputs accumulated in double: dsdot, and sdsdot which adds sb and
// rounds the total to single once.
TEST(ReductionOne, DsdotSdsdotAccumulateInDouble) {
    std::mt19937_64 g(22);
    const auto sd = OT_R(dsdot);
    const auto sds = OT_R(sdsdot);
    for (std::size_t k = 0; k < 2; ++k) {
        auto [path, dsdot] = sd.paths()[k];
        auto sdsdot = sds.paths()[k].second;
        SCOPED_TRACE(path);
        for (idx n : lengths)
            for (auto [ix, iy] : pairs) {
                gvec<float> x(n, ix, 1, g), y(n, iy, 0, g);
                const float sb = rnd<float>(g, -4, 4);
                long double want = 0, mags = 0;
                for (idx i = 0; i < n; ++i) {
                    want += (long double)x.at(i) * y.at(i);
                    mags += std::fabs((long double)x.at(i) * y.at(i));
                }
                const long double tol = (n + 2) * eps<double> * (mags + std::fabs(sb));
                EXPECT_NEAR(dsdot(&n, x.p(), &ix, y.p(), &iy), want, tol) << n << " " << ix << " " << iy;
                EXPECT_NEAR(sdsdot(&n, &sb, x.p(), &ix, y.p(), &iy), want + sb,
                            eps<float> * std::fabs(want + sb) + tol) << n << " " << ix << " " << iy;
            }
        // 1 + 2^-30 and -1 + 2^-30 exist in double only: in any order the
        // double sums are exact, single ones would lose 2^-30.
        const float x[] = {0x1p-30f, 1.0f}, y[] = {1.0f, 1.0f}, sb = -1.0f;
        idx n = 2, one = 1;
        EXPECT_EQ(dsdot(&n, x, &one, y, &one), 1.0 + 0x1p-30);
        EXPECT_EQ(sdsdot(&n, &sb, x, &one, y, &one), 0x1p-30f);
        for (idx m : {0, -3}) {
            EXPECT_EQ(sdsdot(&m, &sb, x, &one, y, &one), sb);
            EXPECT_EQ(dsdot(&m, x, &one, y, &one), 0.0);
        }
    }
}

// sum |re| + |im|, walked forward by |incx|.
TYPED_TEST(Reduction, Asum) {
    using T = TypeParam;
    std::mt19937_64 g(23);
    for (auto [path, f] : api<T>::asum.paths())
        for (idx n : lengths)
            for (idx inc : {1, 2, -1, -3})
                for (int shift : {0, 1, 3}) {
                    gvec<T> x(n, inc, shift, g);
                    long double want = 0;
                    for (idx i = 0; i < n; ++i) want += mag1(x.at(i));
                    EXPECT_NEAR(f(&n, x.p(), &inc), want, (n + 1) * eps<T> * want)
                        << path << " n=" << n << " inc=" << inc << " shift=" << shift;
                }
}

TEST(ReductionOne, Dcabs1) {
    for (auto [path, f] : OT_R(dcabs1).paths()) {
        const ork_complex16 z{-3.25, 0.5}, nz{-0.0, 0.0};
        EXPECT_EQ(f(&z), 3.75) << path;
        EXPECT_EQ(f(&nz), 0.0) << path;
    }
}

// The scaled recurrence of dnrm2, over the reals in the order read.
double scaled_norm(const std::vector<double>& v) {
    double scale = 0, ssq = 1;
    for (double e : v) {
        if (e == 0) continue;
        double a = std::fabs(e);
        if (a > scale) {
            ssq = 1 + ssq * ((scale / a) * (scale / a));
            scale = a;
        } else {
            ssq = ssq + (a / scale) * (a / scale);
        }
    }
    return scale * std::sqrt(ssq);
}

// dnrm2 and dznrm2 follow the recurrence bit for bit, walking forward from
// x[0] by |incx| (re then im for complex; dznrm2 over at most 1024 reals,
// beyond which it merges blocks: then within 64 ulps of the exact norm);
// snrm2 and scnrm2 sum the squares in double: within two single ulps of the
// exact norm.
TYPED_TEST(Reduction, Nrm2) {
    using T = TypeParam;
    using R = real_t<T>;
    std::mt19937_64 g(24);
    std::uniform_int_distribution<int> pick(0, 5);
    const double mags[] = {1e200, 1e-200, 1e-300, 1, 0, 3e10};
    for (auto [path, f] : api<T>::nrm2.paths())
        for (idx n : lengths)
            for (idx inc : {1, 2, -1, -3})
                for (int mixed : {0, 1}) {
                    gvec<T> x(n, inc, 1, g);
                    std::vector<double> reals;
                    long double ssq = 0;
                    const idx step = inc < 0 ? -inc : inc;
                    for (idx k = 0; k < n; ++k) {
                        T& e = x.p()[k * step];
                        if constexpr (std::is_same_v<R, double>) {  // scaled data only where it fits
                            double m = mags[mixed ? pick(g) : 0];
                            if constexpr (is_cx<T>) e = {e.re * m, e.im * mags[mixed ? pick(g) : 0]};
                            else e *= m;
                        }
                        if constexpr (is_cx<T>) reals.insert(reals.end(), {e.re, e.im});
                        else reals.push_back(e);
                        ssq += std::norm(ld(e));
                    }
                    const R got = f(&n, x.p(), &inc);
                    SCOPED_TRACE(::testing::Message() << path << " n=" << n << " inc=" << inc << " mixed=" << mixed);
                    if constexpr (std::is_same_v<R, double>) {
                        const double want = scaled_norm(reals);
                        if (reals.size() <= 1024) EXPECT_TRUE(same(got, want)) << got << " vs " << want;
                        else EXPECT_NEAR(got, std::sqrt(ssq), 64 * eps<double> * std::sqrt(ssq));
                    } else {
                        EXPECT_NEAR(got, std::sqrt(ssq), 2 * eps<float> * std::sqrt(ssq));
                    }
                }
}

// Runs of values no larger than the running scale are summed by vectorised
// paths, which must leave the recurrence's bits (NaN for NaN) whatever the
// run holds: zeros, -0, NaN, infinities, huge and subnormal values; maxima
// that rise now and then along a long vector; squares that fall exactly
// halfway between two multiples of ssq's ulp (powers of two do in every
// other binade of ssq, uniform values often while ssq is small); vectors long
// enough for ssq to cross many binades, at scales near both ends of the range.
TEST(Nrm2Runs, KeepTheRecurrence) {
    static std::uniform_real_distribution<double> u(-1, 1);
    using draw = double (*)(std::mt19937_64&, idx i);
    struct family {
        const char* name;
        idx trials, n_min, n_span;
        bool scaled;  // times 1, 1e-300, 1e300, 1e-310 in turn
        draw value;
    };
    const family families[] = {
        {"special", 300, 8, 57, false,
         [](std::mt19937_64& r, idx) {
             static const double sp[] = {0.0, -0.0, NAN, INFINITY, -INFINITY, 1e300, 1e-310};
             return r() % 10 < 8 ? u(r) : sp[r() % 7];
         }},
        {"rising", 40, 100, 5000, true, [](std::mt19937_64& r, idx i) { return u(r) * double(1 + i / 700); }},
        {"powers of two", 40, 64, 3000, true,
         [](std::mt19937_64& r, idx i) { return i == 0 ? 1.0 : std::ldexp(r() % 2 ? 1.0 : -1.0, -int(r() % 30)); }},
        {"uniform, zeros, subnormals", 20, 20000, 60000, true,
         [](std::mt19937_64& r, idx) { return r() % 64 == 0 ? (r() % 2 ? 0.0 : 4e-320) : u(r); }},
    };
    const double mags[] = {1, 1e-300, 1e300, 1e-310};
    std::mt19937_64 g(77);
    for (auto [path, f] : OT_R(dnrm2).paths())
        for (const family& fam : families)
            for (idx trial = 0; trial < fam.trials; ++trial) {
                const idx n = fam.n_min + idx(g() % std::uint64_t(fam.n_span)), one = 1;
                const double m = fam.scaled ? mags[trial % 4] : 1;
                std::vector<double> v(static_cast<std::size_t>(n));
                for (idx i = 0; i < n; ++i) v[std::size_t(i)] = fam.value(g, i) * m;
                const double got = f(&n, v.data(), &one), want = scaled_norm(v);
                EXPECT_TRUE(std::isnan(want) ? std::isnan(got) : same(got, want))
                    << path << " " << fam.name << " trial " << trial << " n=" << n << ": " << got << " vs " << want;
            }
}

TYPED_TEST(Reduction, Nrm2EdgeCases) {
    using T = TypeParam;
    using R = real_t<T>;
    for (auto [path, f] : api<T>::nrm2.paths()) {
        SCOPED_TRACE(path);
        const T x[] = {make<T>(-3, 4), make<T>(0, 0), make<T>(0, 0)};
        idx one = 1, zero = 0, n3 = 3, minus = -1;
        EXPECT_EQ(f(&zero, x, &one), R(0));
        EXPECT_EQ(f(&minus, x, &one), R(0));
        EXPECT_EQ(f(&one, x, &zero), is_cx<T> ? R(5) : R(3));  // n = 1: incx is not read
        const T zeros[] = {make<T>(0), make<T>(0), make<T>(0)};
        EXPECT_EQ(f(&n3, zeros, &one), R(0));
        const T nan[] = {make<T>(1), make<T>(NAN), make<T>(2)};
        EXPECT_TRUE(std::isnan(f(&n3, nan, &one)));
        if constexpr (std::is_same_v<R, double>) {
            const T big[] = {make<T>(1e200), make<T>(1e200)};
            idx two = 2;
            EXPECT_EQ(f(&two, big, &one), 1e200 * std::sqrt(2.0));
        } else {
            // squares far beyond the single range; the norm itself fits
            const T big[] = {make<T>(FLT_MAX / 4, -FLT_MAX / 4), make<T>(-FLT_MAX / 4)};
            const T tiny[] = {make<T>(3e-40f), make<T>(4e-40f, 0)};
            idx two = 2;
            long double want = (long double)(FLT_MAX / 4) * std::sqrt((long double)(is_cx<T> ? 3 : 2));
            EXPECT_NEAR(f(&two, big, &one), want, 2 * eps<float> * want);
            EXPECT_NEAR(f(&two, tiny, &one), 5e-40L, 1e-45L);
        }
    }
}

// The documented rule: scanning i = 2..n, the present best is replaced unless
// it compares >= (<=) with |x(i)|.
template <class T> idx rule_index(const std::vector<T>& v, bool want_max) {
    real_t<T> best = abs1(v[0]);
    idx result = 1;
    for (std::size_t i = 1; i < v.size(); ++i) {
        real_t<T> a = abs1(v[i]);
        if (want_max ? !(best >= a) : !(best <= a)) best = a, result = idx(i) + 1;
    }
    return result;
}

TYPED_TEST(Reduction, IamaxIamin) {
    using T = TypeParam;
    std::mt19937_64 g(25);
    std::uniform_int_distribution<int> small(-3, 3);
    const auto amax = api<T>::iamax.paths(), amin = api<T>::iamin.paths();
    for (std::size_t k = 0; k < amax.size(); ++k) {
        SCOPED_TRACE(amax[k].first);
        auto fmax = amax[k].second, fmin = amin[k].second;
        // Without NaN: the first index of the largest (smallest) magnitude.
        // Small integers give many ties.
        for (idx n : {1, 2, 3, 7, 8, 9, 17, 64, 65, 127, 128, 129, 300, 1000})
            for (idx inc : {1, 2, 3})
                for (bool ties : {true, false}) {
                    gvec<T> x(n, inc, int(n & 1), g);
                    std::vector<real_t<T>> m;
                    for (idx i = 0; i < n; ++i) {
                        if (ties) x.at(i) = make<T>(small(g), is_cx<T> ? small(g) : 0);
                        m.push_back(abs1(x.at(i)));
                    }
                    auto first_of = [&](real_t<T> v) { return idx(std::find(m.begin(), m.end(), v) - m.begin()) + 1; };
                    EXPECT_EQ(fmax(&n, x.p(), &inc), first_of(*std::max_element(m.begin(), m.end())))
                        << "n=" << n << " inc=" << inc;
                    EXPECT_EQ(fmin(&n, x.p(), &inc), first_of(*std::min_element(m.begin(), m.end())))
                        << "n=" << n << " inc=" << inc;
                }
        // NaN at block edges and inside, with extremes before and after it.
        for (idx n : {2, 3, 65, 130, 200})
            for (idx nan_at : {0, 1, 62, 63, 64, 65, 100, 128, 199})
                for (idx peak_at : {0, 5, 64, 66, 129, 150}) {
                    if (nan_at >= n || peak_at >= n || peak_at == nan_at) continue;
                    std::vector<T> v(static_cast<std::size_t>(n));
                    for (auto& e : v) e = rnd<T>(g);
                    v[std::size_t(nan_at)] = make<T>(NAN, 1);
                    v[std::size_t(peak_at)] = make<T>(9, 0);
                    idx one = 1;
                    EXPECT_EQ(fmax(&n, v.data(), &one), rule_index(v, true)) << n << " " << nan_at << " " << peak_at;
                    v[std::size_t(peak_at)] = make<T>(0);
                    EXPECT_EQ(fmin(&n, v.data(), &one), rule_index(v, false)) << n << " " << nan_at << " " << peak_at;
                }
        // The documented examples, and the cases answered without a scan.
        struct example {
            std::vector<double> v;
            idx inc, amax, amin;
        };
        const example examples[] = {{{3, -3, 2}, 1, 1, 3},     {{1, NAN, 0.5}, 1, 3, 3}, {{NAN, 5}, 1, 2, 2},
                                    {{1, 2, NAN}, 1, 3, 3},    {{2, NAN, 5}, 1, 3, 3},   {{3, -3, 2}, -1, 0, 0},
                                    {{3, -3, 2}, 0, 0, 0},     {{NAN}, 1, 1, 1},         {{}, 1, 0, 0}};
        for (const example& e : examples) {
            std::vector<T> v;
            for (double a : e.v) v.push_back(make<T>(a));
            idx n = idx(e.v.size());
            EXPECT_EQ(fmax(&n, v.data(), &e.inc), e.amax) << "example of " << n;
            EXPECT_EQ(fmin(&n, v.data(), &e.inc), e.amin) << "example of " << n;
        }
        const T one_elem[] = {make<T>(5)};
        idx n1 = 1, neg = -1;
        EXPECT_EQ(fmax(&n1, one_elem, &n1), 1);
        EXPECT_EQ(fmax(&neg, one_elem, &n1), 0);
    }
}

// Long reductions through libork: fixed 65536-element blocks make the value
// independent of the number of threads.
TYPED_TEST(Reduction, LongReductionsIndependentOfThreads) {
    using T = TypeParam;
    std::mt19937_64 g(26);
    for (idx n : {idx(2 * 65536 + 1), idx(300000)})
        for (auto [ix, iy] : {std::pair<idx, idx>{1, 1}, {-1, 2}, {3, -1}}) {
            SCOPED_TRACE(::testing::Message() << "n=" << n << " incx=" << ix << " incy=" << iy);
            gvec<T> x(n, ix, 1, g), y(n, iy, 0, g);
            LC dotu = 0, dotc = 0;
            long double sum = 0, mags = 0;
            for (idx i = 0; i < n; ++i) {
                dotu += ld(x.at(i)) * ld(y.at(i));
                dotc += std::conj(ld(x.at(i))) * ld(y.at(i));
                sum += mag1(x.at(i));
                mags += mag1(x.at(i)) * mag1(y.at(i));
            }
            T u[2], c[2];
            real_t<T> s[2];
            for (int t : {1, 2}) {
                threads_scope threads(t);
                u[t - 1] = api<T>::dotu.lib(&n, x.p(), &ix, y.p(), &iy);
                c[t - 1] = api<T>::dotc.lib(&n, x.p(), &ix, y.p(), &iy);
                s[t - 1] = api<T>::asum.lib(&n, x.p(), &ix);
            }
            EXPECT_TRUE(same(u[0], u[1]));
            EXPECT_TRUE(same(c[0], c[1]));
            EXPECT_TRUE(same(s[0], s[1]));
            // far inside the worst-case bound, which grows with n
            EXPECT_TRUE(near(u[0], dotu, 256 * eps<T> * mags));
            if constexpr (is_cx<T>) {
                EXPECT_TRUE(near(c[0], dotc, 256 * eps<T> * mags));
            }
            EXPECT_NEAR(s[0], sum, 256 * eps<T> * sum);
            if constexpr (std::is_same_v<T, float>) {
                const float sb = 0.75f;
                double d[2];
                float sd[2];
                for (int t : {1, 2}) {
                    threads_scope threads(t);
                    d[t - 1] = ork_blas_dsdot(&n, x.p(), &ix, y.p(), &iy);
                    sd[t - 1] = ork_blas_sdsdot(&n, &sb, x.p(), &ix, y.p(), &iy);
                }
                EXPECT_TRUE(same(d[0], d[1]));
                EXPECT_TRUE(same(sd[0], sd[1]));
                EXPECT_NEAR(d[0], dotu.real(), 256 * eps<double> * mags);
                EXPECT_NEAR(sd[0], dotu.real() + sb, eps<float> * std::fabs(dotu.real() + sb) + 1e-9);
            }
        }
}

}  // namespace
