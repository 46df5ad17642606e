// Rotation sequences and the reflector against their definitions applied in
// long double, the rotation dispatcher's choice, and the argument checks of
// libork's entries.
#include "lapack_testing.h"

namespace ot {
namespace {

template <class T> class Transform : public ::testing::Test {};
TYPED_TEST_SUITE(Transform, ElementTypes);

template <class T> using lasr_fn = void (*)(const idx*, const idx*, const real_t<T>*, const real_t<T>*, T*, const idx*);
template <class T> using lasr_dispatch_fn = void (*)(const char*, const char*, const char*, const idx*, const idx*,
                                                     const real_t<T>*, const real_t<T>*, T*, const idx*);
template <class T> using larfx_fn = void (*)(const char*, const idx*, const idx*, const T*, const T*, T*, const idx*, T*);

const std::vector<std::pair<idx, idx>> shapes = {{0, 3}, {3, 0}, {1, 1}, {1, 4}, {4, 1}, {2, 2}, {3, 5},
                                                 {5, 3}, {4, 17}, {17, 4}, {64, 64}, {5, 64}, {64, 5}};

// The rotations P(k) = [c s; -s c] in the plane named by the pivot, applied
// in the order the direction names, to rows (side L) or columns (side R).
lmat rotated(lmat a, char side, char pivot, char direct, const std::vector<long double>& c,
             const std::vector<long double>& s) {
    const idx z = side == 'l' ? a.rows : a.cols;
    for (idx t = 0; t + 1 < z; ++t) {
        const idx k = direct == 'f' ? t : z - 2 - t;
        const idx p = pivot == 't' ? 0 : k, q = pivot == 'b' ? z - 1 : k + 1;
        const idx len = side == 'l' ? a.cols : a.rows;
        for (idx i = 0; i < len; ++i) {
            LC& u = side == 'l' ? a(p, i) : a(i, p);
            LC& v = side == 'l' ? a(q, i) : a(i, q);
            const LC nu = c[std::size_t(k)] * u + s[std::size_t(k)] * v;
            v = -s[std::size_t(k)] * u + c[std::size_t(k)] * v;
            u = nu;
        }
    }
    return a;
}

TYPED_TEST(Transform, RotationSequencesMatchTheirDefinition) {
    using T = TypeParam;
    using R = real_t<T>;
    const auto dispatch = both_paths<lasr_dispatch_fn<T>>(lname<T>("lasr"));
    for (const std::string name : {"lasr_lvf", "lasr_lvb", "lasr_ltf", "lasr_ltb", "lasr_lbf", "lasr_lbb", "lasr_rvf",
                                   "lasr_rvb", "lasr_rtf", "lasr_rtb", "lasr_rbf", "lasr_rbb"}) {
                const std::string variant = name.substr(5);
                const char side = variant[0], pivot = variant[1], direct = variant[2];
                for (auto& [path, f] : both_paths<lasr_fn<T>>(lname<T>(name)))
                    for (auto [m, n] : shapes) {
                        SCOPED_TRACE(path + " " + variant + " m=" + std::to_string(m) + " n=" + std::to_string(n));
                        std::mt19937_64 g(5000 + m * 100 + n);
                        const idx z = side == 'l' ? m : n;
                        // every third rotation the identity, which is skipped
                        std::vector<R> c(std::size_t(z > 1 ? z - 1 : 1), R(1)), s(c.size(), R(0));
                        std::vector<long double> cl(c.size()), sl(c.size());
                        std::uniform_real_distribution<double> angle(-3.2, 3.2);
                        for (std::size_t k = 0; k < c.size(); ++k) {
                            if (k % 3 != 2) c[k] = R(std::cos(angle(g))), s[k] = R(std::sin(angle(g)));
                            cl[k] = c[k], sl[k] = s[k];
                        }
                        gmat<T> a(m, n);
                        a.fill(g);
                        gmat<T> by_flags = a;
                        lmat want = rotated(lmat(a), side, pivot, direct, cl, sl);
                        f(&m, &n, c.data(), s.data(), a.p(), &a.ld);
                        EXPECT_TRUE(a.guards_intact());
                        lmat got(a);
                        EXPECT_TRUE(all_near(got, want, 4 * (z + 1) * eps<T> * std::max<long double>(want.maxabs(), 1)));
                        // the dispatcher with whole words and either case picks this variant
                        const std::string words[3] = {side == 'l' ? "Left" : "right", pivot == 'v' ? "variable" : pivot == 't' ? "Top" : "BOTTOM",
                                                      direct == 'f' ? "forward" : "Backward"};
                        dispatch[path == "libork" ? 0 : 1].second(words[0].c_str(), words[1].c_str(), words[2].c_str(), &m, &n,
                                                                  c.data(), s.data(), by_flags.p(), &by_flags.ld);
                        EXPECT_TRUE(same_all(by_flags.v, a.v));
                    }
    }
}

TYPED_TEST(Transform, ReflectorMatchesItsDefinition) {
    using T = TypeParam;
    for (auto& [path, f] : both_paths<larfx_fn<T>>(lname<T>("larfx")))
        for (char side : {'L', 'R'})
            for (auto [m, n] : shapes) {
                SCOPED_TRACE(path + " " + side + " m=" + std::to_string(m) + " n=" + std::to_string(n));
                std::mt19937_64 g(6000 + m * 100 + n);
                const idx len = side == 'L' ? m : n;
                std::vector<T> v(std::size_t(len + 1)), work(std::size_t(side == 'L' ? n : m) + 1, sentinel<T>());
                for (T& x : v) x = rnd<T>(g);
                const T tau = rnd<T>(g, 0.5, 1.5);
                gmat<T> c(m, n);
                c.fill(g);
                lmat want(c);
                // C - tau*v*(v^H*C) or C - tau*(C*v)*v^H
                if (side == 'L')
                    for (idx j = 0; j < n; ++j) {
                        LC w = 0;
                        for (idx i = 0; i < m; ++i) w += std::conj(ld(v[std::size_t(i)])) * ld(c(i, j));
                        for (idx i = 0; i < m; ++i) want(i, j) -= ld(tau) * ld(v[std::size_t(i)]) * w;
                    }
                else
                    for (idx i = 0; i < m; ++i) {
                        LC w = 0;
                        for (idx j = 0; j < n; ++j) w += ld(c(i, j)) * ld(v[std::size_t(j)]);
                        for (idx j = 0; j < n; ++j) want(i, j) -= ld(tau) * w * std::conj(ld(v[std::size_t(j)]));
                    }
                const char sd[2] = {side, 0};
                f(sd, &m, &n, v.data(), &tau, c.p(), &c.ld, work.data());
                EXPECT_TRUE(c.guards_intact());
                EXPECT_TRUE(same(work.back(), sentinel<T>()));
                lmat got(c);
                EXPECT_TRUE(all_near(got, want, 8 * (len + 2) * eps<T> * std::max<long double>(want.maxabs(), 1)));
                // tau = 0: H = I, C untouched
                gmat<T> keep = c;
                const T zero = make<T>(0);
                f(sd, &m, &n, v.data(), &zero, c.p(), &c.ld, work.data());
                EXPECT_TRUE(same_all(c.v, keep.v));
            }
}

// libork splits large calls into pieces of whole rows or columns: the same
// bits for one thread and for several.
TYPED_TEST(Transform, ThreadCountDoesNotChangeTheBits) {
    using T = TypeParam;
    using R = real_t<T>;
    auto lasr = both_paths<lasr_dispatch_fn<T>>(lname<T>("lasr"))[0].second;
    auto larfx = both_paths<larfx_fn<T>>(lname<T>("larfx"))[0].second;
    idx m = 600, n = 500;  // above the size libork splits at
    std::mt19937_64 g(7000);
    std::vector<R> c(600), s(600);
    for (std::size_t k = 0; k < c.size(); ++k) c[k] = R(std::cos(double(k))), s[k] = R(std::sin(double(k)));
    std::vector<T> v(600), work(600);
    for (T& x : v) x = rnd<T>(g);
    const T tau = rnd<T>(g);
    gmat<T> a(m, n);
    a.fill(g);
    for (const char* side : {"L", "R"}) {
        SCOPED_TRACE(side);
        gmat<T> one = a, two = a;
        {
            threads_scope t(1);
            lasr(side, "T", "B", &m, &n, c.data(), s.data(), one.p(), &one.ld);
            larfx(side, &m, &n, v.data(), &tau, one.p(), &one.ld, work.data());
        }
        {
            threads_scope t(2);
            lasr(side, "T", "B", &m, &n, c.data(), s.data(), two.p(), &two.ld);
            larfx(side, &m, &n, v.data(), &tau, two.p(), &two.ld, work.data());
        }
        EXPECT_TRUE(same_all(one.v, two.v));
    }
}

// ---- argument checks of libork's entries: one bad argument each, reported
// by its position and, where there is info, returned there negated (each
// argument alone spoilt, for every entry: tests/frame/manifest_test.cpp).
TEST(LapackEntries, ReportTheFirstBadArgument) {
    idx n3 = 3, n0 = 0, neg = -1, ld2 = 2, ld3 = 3, one = 1, info = 0, ipiv[3];
    double a[9] = {4, 0, 0, 0, 4, 0, 0, 0, 4}, b[9] = {}, d[3] = {1, 1, 1}, e[3] = {};
    ork_complex16 za[9] = {}, zb[9] = {}, zw[3] = {}, ztau = {1, 0};
    float sa[9] = {}, sc[3] = {1, 1, 1}, ss[3] = {};
    struct info_call {
        std::string name;
        int position;
        bool has_info;
        std::function<void()> call;
    };
    const std::vector<info_call> calls = {
        {"ork_blas_dpotrf_l_small", 1, true, [&] { ork_blas_dpotrf_l_small(&neg, a, &ld3, &info); }},
        {"ork_blas_dpotrf_l_small", 3, true, [&] { ork_blas_dpotrf_l_small(&n3, a, &ld2, &info); }},
        {"ork_blas_dpotrf_l_small", 0, true, [&] { ork_blas_dpotrf_l_small(&n3, a, &ld3, &info); }},
        {"ork_blas_zsytrf_l_small", 3, true, [&] { ork_blas_zsytrf_l_small(&n3, za, &ld2, ipiv, &info); }},
        {"ork_blas_zsytrf_l_small", 4, true, [&] { ork_blas_zsytrf_l_small(&n3, za, &ld3, nullptr, &info); }},
        {"ork_blas_dgtsv_small", 2, true, [&] { ork_blas_dgtsv_small(&n3, &neg, e, d, e, b, &ld3, &info); }},
        {"ork_blas_dgtsv_small", 7, true, [&] { ork_blas_dgtsv_small(&n3, &one, e, d, e, b, &ld2, &info); }},
        {"ork_blas_dgtsv_small", 0, true, [&] { ork_blas_dgtsv_small(&n0, &one, e, d, e, b, &one, &info); }},
        {"ork_blas_dptts2", 6, false, [&] { ork_blas_dptts2(&n3, &one, d, e, b, &ld2); }},
        {"ork_blas_zptts2", 7, false, [&] { ork_blas_zptts2(&one, &n3, &one, d, zb, zb, &ld2); }},
        {"ork_blas_slasr", 9, false, [&] { ork_blas_slasr("r", "b", "b", &n3, &n3, sc, ss, sa, &ld2); }},
        {"ork_blas_slasr", 0, false, [&] { ork_blas_slasr("r", "b", "b", &n3, &n3, sc, ss, sa, &ld3); }},
        {"ork_blas_slasr_ltf", 6, false, [&] { ork_blas_slasr_ltf(&n3, &n3, sc, ss, sa, &ld2); }},
        {"ork_blas_zlarfx", 7, false, [&] { ork_blas_zlarfx("L", &n3, &n3, zb, &ztau, za, &ld2, zw); }},
        {"ork_blas_zlarfx", 8, false, [&] { ork_blas_zlarfx("R", &n3, &n3, zb, &ztau, za, &ld3, nullptr); }},
        {"ork_blas_zlarfx", 0, false, [&] { ork_blas_zlarfx("R", &n3, &n3, zb, &ztau, za, &ld3, zw); }},
    };
    std::vector<bad_call> table;
    for (const info_call& c : calls)
        table.push_back({c.name, c.position, [&, c] {
                             info = 99;
                             c.call();
                             if (c.has_info) {
                                 EXPECT_EQ(info, -c.position);
                             }
                         }});
    expect_reports(table, [&] { return bytes_of(a, b, d, e, za, zb, zw, sa, sc, ss); });
}

}  // namespace
}  // namespace ot
