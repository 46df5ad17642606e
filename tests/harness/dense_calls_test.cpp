// What the dense kernels ask of the core layer, watched call by call: the
// real gemm drivers' leftover columns (flag as the caller wrote it, shape,
// operands) and their workspace, the blocked triangular solve's
// matrix-vector blocks, and the lp64_ wrappers' calls to the dispatched
// entries with their integers sign-extended.
#include <array>
#include <cctype>
#include <functional>

#include "calls.h"
#include "ork/gemm_kernels.h"
#include "testing.h"

namespace {

using namespace ot;
using ork_test::call;
using ork_test::describe;
using ork_test::recorder;

using addrs = std::vector<const void*>;
using longs = std::vector<long long>;

// The kernel library must load (ctest runs the program once per generation).
class KernelCalls : public ::testing::Test {
protected:
    void SetUp() override { ASSERT_EQ(ork_init(), 0); }
};
template <class T> class TypedKernelCalls : public KernelCalls {};
TYPED_TEST_SUITE(TypedKernelCalls, ElementTypes);
template <class T> class RealKernelCalls : public KernelCalls {};
TYPED_TEST_SUITE(RealKernelCalls, RealTypes);

bool plain(const char* flag) { return std::toupper(static_cast<unsigned char>(*flag)) == 'N'; }

template <class T> std::vector<double> parts(T v) {
    if constexpr (is_cx<T>) return {double(v.re), double(v.im)};
    else return {double(v)};
}
template <class T> std::vector<double> parts(T a, T b) {
    std::vector<double> r = parts(a), s = parts(b);
    r.insert(r.end(), s.begin(), s.end());
    return r;
}

// ---- the real gemm drivers

template <class T>
using gemm_fn = void (*)(const char*, const char*, const idx*, const idx*, const idx*, const T*, const T*, const idx*,
                         const T*, const idx*, const T*, T*, const idx*);

// The drivers of one real type that follow the plan of the double driver,
// whether each is reached with the processor forced to AMD family 10h, and
// the size from which m, n and k take the packed path.
template <class T> struct real_drivers;
template <> struct real_drivers<double> {
    static constexpr const char* gemv = "ork_blas_dgemv";
    static constexpr idx packed_from = 2;
    static std::vector<std::pair<const char*, bool>> list() {
        return {{"ork_blas_xdgemm", false}, {"ork_blas_xdgemm", true}, {"ork_blas_xdgemm0_brc", false},
                {"ork_blas_xdgemm1_brc", false}};
    }
};
template <> struct real_drivers<float> {
    static constexpr const char* gemv = "ork_blas_sgemv";
    static constexpr idx packed_from = 8;
    static std::vector<std::pair<const char*, bool>> list() {
        return {{"ork_blas_xsgemm", false}, {"ork_blas_xsgemm", true}, {"ork_blas_xsgemm0_brc", false}};
    }
};

// The packed path takes the columns in groups of 4 (n' = n rounded down to
// a multiple of 4), in every generation; the rest go one by one to gemv.
constexpr idx column_group = 4;

struct forced_cpu {
    explicit forced_cpu(bool barcelona) : on(barcelona) {
        if (on) ork_force_cpu(ORK_CPU_BASELINE, 1);
    }
    ~forced_cpu() {
        if (on) ork_force_cpu(-1, -1);
    }
    bool on;
};

// Every leftover column j goes to gemv with the caller's flag for A as
// written (a letter other than N, T or C, read as a transpose, as 'T'),
// dimensions (m, k) or (k, m), x = column j of op(B) with its
// increment, y = column j of C, alpha as given and beta = 1; the number of
// calls is n mod 4 when the packed path runs, none otherwise. Small integer
// data makes the product exact, so C is compared bit for bit too.
TYPED_TEST(RealKernelCalls, GemmLeftoverColumnsGoToGemvWithTheFlagAsWritten) {
    // the baseline's blocking: other generations take their own (?gemm_layout)
    if (ork_kernel_generation() != 0) GTEST_SKIP() << "blocking of the baseline generation";
    using T = TypeParam;
    using D = real_drivers<T>;
    const char* letters[] = {"N", "n", "T", "t", "C", "c", "x"};
    std::mt19937_64 g(1901);
    auto small_int = [&] { return T(int(g() % 7) - 3); };
    for (auto [name, barcelona] : D::list()) {
        const auto f = kernel_symbol<gemm_fn<T>>(name);
        const forced_cpu cpu(barcelona);
        for (const char* ta : letters)
            for (const char* tb : letters)
                for (std::array<idx, 3> s : {std::array<idx, 3>{13, 8, 9}, {13, 9, 9}, {12, 10, 9}, {13, 11, 8},
                                             {13, 3, 9}, {9, 23, 130}, {1, 7, 5}}) {
                    const idx m = s[0], n = s[1], k = s[2];
                    SCOPED_TRACE(::testing::Message() << name << (barcelona ? " (family 10h)" : "") << " " << ta
                                                      << tb << " " << m << "x" << n << "x" << k);
                    const bool pa = plain(ta), pb = plain(tb);
                    const idx lda = (pa ? m : k) + 1, ldb = (pb ? k : n) + 2, ldc = m + 3;
                    std::vector<T> a(std::size_t(lda * (pa ? k : m))), b(std::size_t(ldb * (pb ? n : k))),
                        c(std::size_t(ldc * n));
                    for (T& v : a) v = small_int();
                    for (T& v : b) v = small_int();
                    for (T& v : c) v = small_int();
                    const T alpha = 2, beta = -1;
                    std::vector<T> want = c;
                    for (idx j = 0; j < n; ++j)
                        for (idx i = 0; i < m; ++i) {
                            long double sum = 0;
                            for (idx l = 0; l < k; ++l)
                                sum += (long double)(pa ? a[i + l * lda] : a[l + i * lda]) *
                                       (pb ? b[l + j * ldb] : b[j + l * ldb]);
                            T& w = want[std::size_t(i + j * ldc)];
                            w = T(alpha * sum + beta * (long double)w);
                        }

                    recorder rec;
                    f(ta, tb, &m, &n, &k, &alpha, a.data(), &lda, b.data(), &ldb, &beta, c.data(), &ldc);
                    const std::vector<call> gemvs = rec.calls(D::gemv);
                    EXPECT_EQ(c, want);

                    const bool packed = m >= D::packed_from && n >= D::packed_from && k >= D::packed_from;
                    ASSERT_EQ(idx(gemvs.size()), packed ? n % column_group : 0);
                    for (std::size_t i = 0; i < gemvs.size(); ++i) {
                        const call& r = gemvs[i];
                        const idx j = n - idx(gemvs.size()) + idx(i);
                        SCOPED_TRACE(describe(r));
                        EXPECT_EQ(r.flags, std::string(1, *ta == 'x' ? 'T' : *ta));
                        EXPECT_EQ(r.dims, (pa ? longs{m, k} : longs{k, m}));
                        EXPECT_EQ(r.lds, longs{lda});
                        EXPECT_EQ(r.incs, (longs{pb ? 1 : ldb, 1}));
                        EXPECT_EQ(r.scalars, parts(alpha, T(1)));
                        EXPECT_EQ(r.arrays, (addrs{a.data(), pb ? &b[std::size_t(j * ldb)] : &b[std::size_t(j)],
                                                   &c[std::size_t(j * ldc)]}));
                    }
                    if (this->HasFailure()) return;
                }
    }
}

// The double driver's one workspace block, kb*192 + kb*mb*8 + kb*nb*8 + 18176
// bytes at alignment 128 (kb, mb and nb from the depth, the rows plus
// columns and the width), and the single driver's nb*448 + 311552, each
// released once; none when the product is too small to pack, or alpha is 0.
TEST_F(KernelCalls, GemmDriversTakeOneWorkspaceBlock) {
    // the baseline's blocking: other generations take their own (?gemm_layout)
    if (ork_kernel_generation() != 0) GTEST_SKIP() << "blocking of the baseline generation";
    struct shape_case {
        bool dbl;
        idx m, n, k;
        double alpha;
        long long bytes;  // 0: no workspace
    };
    auto dbytes = [](long long kb, long long mb, long long nb) { return kb * 192 + kb * mb * 8 + kb * nb * 8 + 18176; };
    const shape_case cases[] = {
        {true, 13, 11, 9, 1, dbytes(128, 512, 11)},
        {true, 600, 9, 200, 1, dbytes(100, 512, 9)},   // 129 <= k <= 256: kb = k/2 rounded down to 4
        {true, 40, 6, 258, 1, dbytes(128, 512, 6)},
        {true, 9990, 10, 16, 1, dbytes(128, 1536, 10)},  // m + n = 10000 and a shallow block: wider rows
        {true, 9989, 10, 16, 1, dbytes(128, 512, 10)},
        {true, 9990, 10, 40, 1, dbytes(128, 768, 10)},
        {true, 40, 5000, 130, 1, dbytes(64, 512, 4992)},
        {true, 5, 6, 1, 1, 0},  // k < 2: one plain product
        {true, 1, 6, 5, 1, 0},
        {true, 13, 11, 9, 0, 0},
        {false, 13, 11, 9, 1, 11 * 448 + 311552},
        {false, 20, 2100, 8, 1, 2000 * 448 + 311552},
        {false, 7, 20, 20, 1, 0},  // m < 8
        {false, 13, 11, 9, 0, 0},
    };
    for (const shape_case& t : cases) {
        SCOPED_TRACE(::testing::Message() << (t.dbl ? "xdgemm " : "xsgemm ") << t.m << "x" << t.n << "x" << t.k
                                          << " alpha " << t.alpha);
        const idx lda = t.m, ldb = t.k, ldc = t.m;
        std::vector<call> got;
        auto run = [&](auto zero) {
            using T = decltype(zero);
            std::vector<T> a(std::size_t(t.m * t.k), T(1)), b(std::size_t(t.k * t.n), T(1)), c(std::size_t(t.m * t.n));
            const T alpha = T(t.alpha), beta = 0;
            const auto f = kernel_symbol<gemm_fn<T>>(t.dbl ? "ork_blas_xdgemm" : "ork_blas_xsgemm");
            recorder rec;
            f("N", "N", &t.m, &t.n, &t.k, &alpha, a.data(), &lda, b.data(), &ldb, &beta, c.data(), &ldc);
            got = rec.calls();
        };
        if (t.dbl) run(0.0);
        else run(0.0f);
        std::vector<call> takes, frees;
        for (const call& r : got) {
            if (r.name == "ork_serv_allocate") takes.push_back(r);
            if (r.name == "ork_serv_deallocate") frees.push_back(r);
        }
        if (t.bytes == 0) {
            EXPECT_TRUE(takes.empty() && frees.empty()) << takes.size() << " blocks taken";
            continue;
        }
        ASSERT_EQ(takes.size(), 1u);
        EXPECT_EQ(takes[0].dims, (longs{t.bytes, 128}));
        ASSERT_EQ(frees.size(), 1u);
        EXPECT_EQ(frees[0].arrays, takes[0].arrays);
    }
}

// ---- the blocked triangular solve

template <class T>
using trsv_fn = void (*)(const char*, const char*, const char*, const idx*, const T*, const idx*, T*, const idx*);

// One coupling product: y(y0 .. y0+nc-1) -= op(A(ai.., aj..)) * x(x0 ..),
// A_sub being m x nc, in unknowns.
struct coupling {
    idx m, nc, ai, aj, x0, xlen, y0, ylen;
};

// The coupling products in the order the solve makes them: blocks of 32
// unknowns, swept forward for a lower no-transpose or upper transposed
// system and backward otherwise; the no-transpose sweeps take whole blocks
// first and the remainder last, the transposed ones put the partial block
// at the end of the sweep's far side.
std::vector<coupling> couplings(idx n, bool upper, bool trans) {
    constexpr idx B = 32;
    std::vector<coupling> r;
    if (!trans && !upper)
        for (idx s = 0; s + B <= n; s += B) {
            if (n - s - B > 0) r.push_back({n - s - B, B, s + B, s, s, B, s + B, n - s - B});
        }
    else if (!trans)
        for (idx s = n - B; s >= 0; s -= B) {
            if (s > 0) r.push_back({s, B, 0, s, s, B, 0, s});
        }
    else if (!upper)
        for (idx e = n; e >= 1; e -= B) {
            const idx s = e > B ? e - B : 0;
            if (n > e) r.push_back({n - e, e - s, e, s, e, n - e, s, e - s});
        }
    else
        for (idx s = 0; s < n; s += B) {
            const idx e = s + B < n ? s + B : n;
            if (s > 0) r.push_back({s, e - s, 0, s, 0, s, s, e - s});
        }
    return r;
}

// Every coupling goes to the dispatched gemv with alpha = -1, beta = 1, the
// caller's lda and incx for both vectors and the caller's flag (real
// types, as written) or the operation's name (complex types).
TYPED_TEST(TypedKernelCalls, TriangularSolveCouplesBlocksThroughGemv) {
    using T = TypeParam;
    const auto f = kernel_symbol<trsv_fn<T>>((std::string("ork_blas_") + letter<T> + "trsv").c_str());
    std::mt19937_64 g(1902);
    for (const char* uplo : {"U", "l"})
        for (const char* trans : {"N", "n", "t", "C"})
            for (const char* diag : {"N", "u"})
                for (idx n : {1, 31, 32, 33, 40, 65, 100})
                    for (idx incx : {1, -2}) {
                        SCOPED_TRACE(::testing::Message() << uplo << trans << diag << " n=" << n << " incx=" << incx);
                        const bool upper = std::toupper(*uplo) == 'U', tr = !plain(trans);
                        const idx lda = n + 3, step = incx < 0 ? -incx : incx;
                        std::vector<T> a(std::size_t(lda * n)), x(std::size_t((n - 1) * step + 1));
                        for (idx j = 0; j < n; ++j)
                            for (idx i = 0; i < n; ++i)
                                a[std::size_t(i + j * lda)] = i == j ? make<T>(4) : rnd<T>(g, -0.1, 0.1);
                        for (T& v : x) v = rnd<T>(g);
                        // the first of len unknowns from i0 on, in memory
                        auto span = [&](idx i0, idx len) {
                            return &x[std::size_t(incx > 0 ? i0 * incx : (n - i0 - len) * step)];
                        };
                        recorder rec;
                        f(uplo, trans, diag, &n, a.data(), &lda, x.data(), &incx);
                        const std::vector<call> got = rec.calls(std::string("ork_blas_") + letter<T> + "gemv");
                        const std::vector<coupling> want = couplings(n, upper, tr);
                        ASSERT_EQ(got.size(), want.size());
                        const char flag = !is_cx<T> ? trans[0] : !tr ? 'N' : std::toupper(*trans) == 'C' ? 'C' : 'T';
                        for (std::size_t i = 0; i < got.size(); ++i) {
                            const call& r = got[i];
                            const coupling& w = want[i];
                            SCOPED_TRACE(describe(r));
                            EXPECT_EQ(r.flags, std::string(1, flag));
                            EXPECT_EQ(r.dims, (longs{w.m, w.nc}));
                            EXPECT_EQ(r.lds, longs{lda});
                            EXPECT_EQ(r.incs, (longs{incx, incx}));
                            EXPECT_EQ(r.scalars, parts(make<T>(-1), make<T>(1)));
                            EXPECT_EQ(r.arrays, (addrs{&a[std::size_t(w.ai + w.aj * lda)], span(w.x0, w.xlen),
                                                       span(w.y0, w.ylen)}));
                        }
                        if (this->HasFailure()) return;
                    }
}

// ---- the lp64_ wrappers: axpy, copy, scal and the dot product (dotu for
// complex types) reach libork's dispatched entry of the same name (not a
// kernel of their own) with n and the increments sign-extended from 32 bits
// and the same arrays and scalars; with n <= 0 nothing is written and the dot
// product is zero.
TYPED_TEST(TypedKernelCalls, Lp64WrappersCallTheDispatchedEntry) {
    using T = TypeParam;
    using i32 = ork_int32;
    const std::string p = std::string("ork_blas_") + letter<T>;
    auto lp64 = [&](const char* name, auto* type) {
        return kernel_symbol<decltype(type)>(("ork_blas_lp64_" + p.substr(9) + name).c_str());
    };
    const auto axpy = lp64("axpy", (void (*)(const i32*, const T*, const T*, const i32*, T*, const i32*))nullptr);
    const auto copy = lp64("copy", (void (*)(const i32*, const T*, const i32*, T*, const i32*))nullptr);
    const auto scal = lp64("scal", (void (*)(const i32*, const T*, T*, const i32*))nullptr);
    const auto dot = lp64(is_cx<T> ? "dotu" : "dot", (T(*)(const i32*, const T*, const i32*, const T*, const i32*))nullptr);
    std::mt19937_64 g(1903);
    std::vector<T> x(64), y(64);
    for (T& v : x) v = rnd<T>(g);
    for (T& v : y) v = rnd<T>(g);
    const T alpha = make<T>(0.5, -0.25);
    for (i32 n : {-1, 0, 5})
        for (auto [ix, iy] : {std::pair<i32, i32>{1, 1}, {-2, 3}, {3, -1}}) {
            SCOPED_TRACE(::testing::Message() << "n=" << n << " incx=" << ix << " incy=" << iy);
            T d = make<T>(7);
            struct expected {
                std::string name;
                std::function<void()> run;
                longs incs;
                addrs arrays;
                std::vector<double> scalars;
            };
            const expected calls[] = {
                {p + "axpy", [&] { axpy(&n, &alpha, x.data(), &ix, y.data(), &iy); }, {ix, iy}, {x.data(), y.data()}, parts(alpha)},
                {p + "copy", [&] { copy(&n, x.data(), &ix, y.data(), &iy); }, {ix, iy}, {x.data(), y.data()}, {}},
                {p + "scal", [&] { scal(&n, &alpha, y.data(), &iy); }, {iy}, {y.data()}, parts(alpha)},
                {p + (is_cx<T> ? "dotu" : "dot"), [&] { d = dot(&n, x.data(), &ix, y.data(), &iy); }, {ix, iy},
                 {x.data(), y.data()}, {}},
            };
            for (const expected& e : calls) {
                const auto x0 = x, y0 = y;
                recorder rec;
                e.run();
                const std::vector<call> got = rec.calls();
                ASSERT_EQ(got.size(), 1u) << e.name;
                EXPECT_EQ(got[0].name, e.name);
                EXPECT_EQ(got[0].dims, longs{n});
                EXPECT_EQ(got[0].incs, e.incs) << e.name;
                EXPECT_EQ(got[0].arrays, e.arrays) << e.name;
                EXPECT_EQ(got[0].scalars, e.scalars) << e.name;
                if (n <= 0) {
                    EXPECT_TRUE(same_all(x, x0) && same_all(y, y0)) << e.name;
                }
            }
            if (n <= 0) {
                EXPECT_TRUE(same(d, make<T>(0)));
            }
        }
}

}  // namespace
