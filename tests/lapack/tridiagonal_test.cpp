// Tridiagonal solves: residuals of the general solve in long double, its
// zero-pivot reports, and the factored solve's residual with the buffered
// and unbuffered paths giving the same bits. This program's own
// ork_serv_allocate, which the kernel library binds, counts the workspace
// asked for and can refuse it.
#include <atomic>

#include "lapack_testing.h"

namespace {
std::atomic<int> allocations{0}, releases{0};
std::atomic<bool> refuse{false};
}  // namespace

extern "C" void* ork_serv_allocate(size_t size, int alignment) {
    using F = void* (*)(size_t, int);
    static const F next = reinterpret_cast<F>(dlsym(RTLD_NEXT, "ork_serv_allocate"));
    ++allocations;
    return refuse ? nullptr : next(size, alignment);
}
extern "C" void ork_serv_deallocate(void* p) {
    using F = void (*)(void*);
    static const F next = reinterpret_cast<F>(dlsym(RTLD_NEXT, "ork_serv_deallocate"));
    ++releases;
    next(p);
}

namespace ot {
namespace {

template <class T> class Tridiagonal : public ::testing::Test {};
TYPED_TEST_SUITE(Tridiagonal, ElementTypes);

template <class T> using gtsv_fn = void (*)(const idx*, const idx*, T*, T*, T*, T*, const idx*, idx*);

template <class T> std::vector<T> random_vec(idx n, std::mt19937_64& g, double lo = -1, double hi = 1) {
    std::vector<T> v(std::size_t(n > 0 ? n : 0));
    for (T& x : v) x = rnd<T>(g, lo, hi);
    return v;
}

TYPED_TEST(Tridiagonal, GeneralSolveHasASmallResidual) {
    using T = TypeParam;
    for (auto& [path, f] : both_paths<gtsv_fn<T>>(lname<T>("gtsv_small")))
        for (bool small_diagonal : {false, true})  // a small diagonal makes every row pivot
            for (idx nrhs : {1, 3})
                for (idx n : sizes) {
                    SCOPED_TRACE(path + " n=" + std::to_string(n) + " nrhs=" + std::to_string(nrhs) +
                                 (small_diagonal ? " pivoting" : ""));
                    std::mt19937_64 g(3000 + n + 100 * nrhs);
                    const double s = small_diagonal ? 1e-3 : 1;
                    std::vector<T> dl = random_vec<T>(n - 1, g), d = random_vec<T>(n, g, -s, s),
                                   du = random_vec<T>(n - 1, g);
                    const std::vector<T> dl0 = dl, d0 = d, du0 = du;
                    gmat<T> b(n, nrhs);
                    b.fill(g);
                    gmat<T> b0 = b;
                    idx info = -99;
                    f(&n, &nrhs, dl.data(), d.data(), du.data(), b.p(), &b.ld, &info);
                    ASSERT_EQ(info, 0);
                    EXPECT_TRUE(b.guards_intact());
                    // A*X - B against |A|*|X| + |B|, row by row
                    for (idx j = 0; j < nrhs; ++j)
                        for (idx i = 0; i < n; ++i) {
                            LC r = -ld(b0(i, j));
                            long double mag = std::abs(r);
                            auto term = [&](T aij, idx k) {
                                r += ld(aij) * ld(b(k, j));
                                mag += std::abs(ld(aij)) * std::abs(ld(b(k, j)));
                            };
                            if (i > 0) term(dl0[std::size_t(i - 1)], i - 1);
                            term(d0[std::size_t(i)], i);
                            if (i + 1 < n) term(du0[std::size_t(i)], i + 1);
                            EXPECT_LE(std::abs(r), 16 * (n + 2) * eps<T> * mag) << "row " << i << " column " << j;
                        }
                }
}

TYPED_TEST(Tridiagonal, GeneralSolveReportsAnExactlyZeroPivot) {
    using T = TypeParam;
    for (auto& [path, f] : both_paths<gtsv_fn<T>>(lname<T>("gtsv_small")))
        for (idx n : {1, 2, 5, 17})
            for (idx z : {idx(0), n / 2, n - 1}) {
                SCOPED_TRACE(path + " n=" + std::to_string(n) + " zero at " + std::to_string(z));
                // upper bidiagonal with a zero on the diagonal at row z: nothing to pivot on
                std::vector<T> dl(std::size_t(n), make<T>(0)), d(std::size_t(n), make<T>(2)), du(std::size_t(n), make<T>(1));
                d[std::size_t(z)] = make<T>(0);
                gmat<T> b(n, 2);
                idx nrhs = 2, info = 0;
                f(&n, &nrhs, dl.data(), d.data(), du.data(), b.p(), &b.ld, &info);
                EXPECT_EQ(info, z + 1);
            }
}

// ---- factored positive definite solves
template <class T> struct ptts2_call {
    std::string label;
    void* fn;
    // iuplo is passed to the complex forms only
    void operator()(idx iuplo, idx n, idx nrhs, const real_t<T>* d, const T* e, T* b, idx ldb) const {
        if constexpr (is_cx<T>)
            reinterpret_cast<void (*)(const idx*, const idx*, const idx*, const real_t<T>*, const T*, T*, const idx*)>(fn)(
                &iuplo, &n, &nrhs, d, e, b, &ldb);
        else
            reinterpret_cast<void (*)(const idx*, const idx*, const real_t<T>*, const T*, T*, const idx*)>(fn)(
                &n, &nrhs, d, e, b, &ldb);
    }
};

template <class T> std::vector<ptts2_call<T>> ptts2_paths() {
    std::vector<ptts2_call<T>> r;
    for (auto& [label, f] : both_paths<void (*)()>(lname<T>("ptts2"))) r.push_back({label, reinterpret_cast<void*>(f)});
    return r;
}

// B - A*X with A = U^H*D*U (upper) or L*D*L^H, for each element against the
// size of the terms.
template <class T> void expect_residual(bool upper, idx n, const std::vector<real_t<T>>& d, const std::vector<T>& e,
                                        gmat<T>& x, gmat<T>& b) {
    for (idx j = 0; j < x.n; ++j) {
        // y = F*x, F the unit bidiagonal factor on the right (U, or L^H)
        std::vector<LC> y(static_cast<std::size_t>(n));
        long double big = 0;
        for (idx i = 0; i < n; ++i) {
            LC ei = i + 1 < n ? ld(e[std::size_t(i)]) : LC(0);
            y[std::size_t(i)] = ld(x(i, j)) + (upper ? ei : std::conj(ei)) * (i + 1 < n ? ld(x(i + 1, j)) : LC(0));
            y[std::size_t(i)] *= (long double)d[std::size_t(i)];
            big = std::max(big, std::abs(ld(x(i, j))) * d[std::size_t(i)]);
        }
        for (idx i = 0; i < n; ++i) {
            LC prev = i > 0 ? ld(e[std::size_t(i - 1)]) : LC(0);
            LC ax = y[std::size_t(i)] + (upper ? std::conj(prev) : prev) * (i > 0 ? y[std::size_t(i - 1)] : LC(0));
            EXPECT_LE(std::abs(ax - ld(b(i, j))), 32 * eps<T> * (big + std::abs(ld(b(i, j))))) << "row " << i << " column " << j;
        }
    }
}

TYPED_TEST(Tridiagonal, FactoredSolveBufferedOrNotGivesTheSameBits) {
    using T = TypeParam;
    using R = real_t<T>;
    for (const auto& call : ptts2_paths<T>())
        for (idx iuplo : is_cx<T> ? std::vector<idx>{1, 0} : std::vector<idx>{0})
            for (idx nrhs : {1, 2, 37})
                for (idx n : sizes) {
                    SCOPED_TRACE(call.label + " n=" + std::to_string(n) + " nrhs=" + std::to_string(nrhs) +
                                 " iuplo=" + std::to_string(iuplo));
                    std::mt19937_64 g(4000 + n + 100 * nrhs);
                    std::vector<R> d = random_vec<R>(n, g, 1, 2);
                    std::vector<T> e = random_vec<T>(n - 1, g, -0.5, 0.5);
                    gmat<T> b(n, nrhs);
                    b.fill(g);
                    gmat<T> x = b, unbuffered = b;
                    allocations = releases = 0;
                    call(iuplo, n, nrhs, d.data(), e.data(), x.p(), x.ld);
                    const bool buffered = n >= 4 && nrhs >= 2;
                    EXPECT_EQ(allocations > 0, buffered);
                    EXPECT_EQ(releases.load(), allocations.load());
                    EXPECT_TRUE(x.guards_intact());
                    expect_residual<T>(iuplo == 1, n, d, e, x, b);

                    refuse = true;
                    allocations = releases = 0;
                    call(iuplo, n, nrhs, d.data(), e.data(), unbuffered.p(), unbuffered.ld);
                    refuse = false;
                    EXPECT_EQ(allocations > 0, buffered);
                    EXPECT_EQ(releases, 0);
                    EXPECT_TRUE(same_all(unbuffered.v, x.v));
                }
}

// libork splits many columns over threads, each piece with its own workspace.
TYPED_TEST(Tridiagonal, FactoredSolveThreadCountDoesNotChangeTheBits) {
    using T = TypeParam;
    const idx n = 1024, nrhs = 300;
    std::mt19937_64 g(4500);
    std::vector<real_t<T>> d = random_vec<real_t<T>>(n, g, 1, 2);
    std::vector<T> e = random_vec<T>(n - 1, g, -0.5, 0.5);
    gmat<T> one(n, nrhs);
    one.fill(g);
    gmat<T> two = one;
    const auto call = ptts2_paths<T>()[0];
    {
        threads_scope t(1);
        call(0, n, nrhs, d.data(), e.data(), one.p(), one.ld);
    }
    {
        threads_scope t(2);
        call(0, n, nrhs, d.data(), e.data(), two.p(), two.ld);
    }
    EXPECT_TRUE(same_all(one.v, two.v));
}

}  // namespace
}  // namespace ot
