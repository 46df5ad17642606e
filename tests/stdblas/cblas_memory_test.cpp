// The CBLAS calls that conjugate a copy of a vector (row-major Hermitian and
// conjugate-transposed complex level 2): exact results with each of their
// allocations failed in turn, against long double oracles on the row-major
// definitions.
#include <gtest/gtest.h>
#include <sys/mman.h>

#include <climits>
#include <complex>
#include <cstring>
#include <random>
#include <string>
#include <vector>

#include "ork/cblas.h"
#include "ork/core.h"
#include "ork/fblas.h"

namespace {

using idx = long;
using LC = std::complex<long double>;

// Any report during these calls is a failure: the handlers only count.
int reports = 0;

// The routines under test, per element type.
template <class T> struct cblas;
#define ORK_TEST_CBLAS(T, p)                                                                                           \
    template <> struct cblas<T> {                                                                                      \
        static constexpr auto gemv = &cblas_##p##gemv;                                                                 \
        static constexpr auto gbmv = &cblas_##p##gbmv;                                                                 \
        static constexpr auto hemv = &cblas_##p##hemv;                                                                 \
        static constexpr auto hbmv = &cblas_##p##hbmv;                                                                 \
        static constexpr auto hpmv = &cblas_##p##hpmv;                                                                 \
        static constexpr auto gerc = &cblas_##p##gerc;                                                                 \
        static constexpr auto her = &cblas_##p##her;                                                                   \
        static constexpr auto hpr = &cblas_##p##hpr;                                                                   \
        static constexpr auto her2 = &cblas_##p##her2;                                                                 \
        static constexpr auto hpr2 = &cblas_##p##hpr2;                                                                 \
    };
ORK_TEST_CBLAS(ork_complex8, c)
ORK_TEST_CBLAS(ork_complex16, z)

enum routine { gemv, gbmv, hemv, hbmv, hpmv, gerc, her, hpr, her2, hpr2 };
const char* const names[] = {"gemv", "gbmv", "hemv", "hbmv", "hpmv", "gerc", "her", "hpr", "her2", "hpr2"};

bool hermitian(routine r) { return r != gemv && r != gbmv && r != gerc; }
bool update(routine r) { return r >= gerc; }
bool band(routine r) { return r == gbmv || r == hbmv; }
bool packed(routine r) { return r == hpmv || r == hpr || r == hpr2; }
bool has_y(routine r) { return r != her && r != hpr; }
// The conjugated copies the call makes: one vector, or two for her2 and hpr2.
int copies(routine r) { return r == her2 || r == hpr2 ? 2 : 1; }

struct spec {
    routine r;
    CBLAS_UPLO uplo;
    int incx, incy;
    bool beta_zero;  // y starts as NaN and must be overwritten
};

// A row-major problem with exactly representable data: small integers, so
// that every product and sum is exact in single precision too.
template <class T> struct problem {
    spec s;
    idx m, n, kl = 0, ku = 0, lda = 0;  // A is m x n (n x n when Hermitian)
    std::vector<LC> dense;              // A itself, row-major
    std::vector<T> a, x, y;             // the storage passed to the call
    LC alpha, beta;

    // Position of A(i, j) in the row-major storage, or -1 when not stored:
    // full (i*lda + j), band (i*lda + kl + j - i), packed by rows.
    idx pos(idx i, idx j) const {
        const bool herm = hermitian(s.r), upper = s.uplo == CblasUpper;
        if (herm && (upper ? j < i : j > i)) return -1;
        if (packed(s.r)) return upper ? i * n - i * (i - 1) / 2 + j - i : i * (i + 1) / 2 + j;
        if (band(s.r)) return j < i - kl || j > i + ku ? -1 : i * lda + kl + j - i;
        return i * lda + j;
    }
    // The vector lengths: x has m elements and y n for the conjugate-
    // transposed products; x and y m for gerc (x: rows, y: columns).
    idx xlen() const { return s.r == gemv || s.r == gbmv || s.r == gerc ? m : n; }
    idx ylen() const { return n; }
    static idx index(idx len, int inc, idx i) { return inc > 0 ? i * inc : (len - 1 - i) * -idx(inc); }
};

template <class T> T to(LC v) { return T{decltype(T::re)(v.real()), decltype(T::re)(v.imag())}; }
template <class T> LC ld(T v) { return {v.re, v.im}; }

template <class T> problem<T> make(spec s, std::mt19937& rng) {
    std::uniform_int_distribution<int> d(-3, 3);
    auto value = [&] { return LC(d(rng), d(rng)); };
    problem<T> p;
    p.s = s;
    p.m = hermitian(s.r) ? 6 : 5;
    p.n = 6;
    if (s.r == gbmv) p.kl = 1, p.ku = 2;
    if (s.r == hbmv) (s.uplo == CblasUpper ? p.ku : p.kl) = 2;
    p.lda = band(s.r) ? p.kl + p.ku + 2 : p.n + 2;
    p.dense.assign(p.m * p.n, 0);
    for (idx i = 0; i < p.m; ++i)
        for (idx j = 0; j < p.n; ++j) {
            const idx b = s.r == hbmv ? p.kl + p.ku : 0;  // a Hermitian band reaches both ways
            if (band(s.r) && (j < i - (b ? b : p.kl) || j > i + (b ? b : p.ku))) continue;
            if (!hermitian(s.r)) p.dense[i * p.n + j] = value();
            else if (i == j) p.dense[i * p.n + j] = value().real();
            else if (i < j) p.dense[i * p.n + j] = value(), p.dense[j * p.n + i] = std::conj(p.dense[i * p.n + j]);
        }
    // storage: a recognisable value where nothing is stored (never read,
    // never written), and an imaginary part on the Hermitian diagonal that
    // the products must ignore and the updates set to zero
    p.a.assign(packed(s.r) ? p.n * (p.n + 1) / 2 : p.m * p.lda, T{7, -7});
    for (idx i = 0; i < p.m; ++i)
        for (idx j = 0; j < p.n; ++j)
            if (const idx k = p.pos(i, j); k >= 0) p.a[k] = to<T>(p.dense[i * p.n + j] + (hermitian(s.r) && i == j ? LC(0, 5) : 0));
    auto vector = [&](idx len, int inc, std::vector<T>& v) {
        v.assign(1 + (len - 1) * std::abs(inc), T{9, 9});
        for (idx i = 0; i < len; ++i) v[problem<T>::index(len, inc, i)] = to<T>(value());
    };
    vector(p.xlen(), s.incx, p.x);
    if (has_y(s.r)) vector(p.ylen(), s.incy, p.y);
    if (s.beta_zero)
        for (idx i = 0; i < p.ylen(); ++i) p.y[problem<T>::index(p.ylen(), s.incy, i)] = T{NAN, NAN};
    p.alpha = s.r == her || s.r == hpr ? LC(2, 0) : LC(2, -1);
    p.beta = s.beta_zero ? LC(0, 0) : LC(1, 2);
    return p;
}

// The outputs the row-major definitions give, in long double: y for the
// products, the stored elements of A for the updates (the Hermitian
// diagonal real); everything else as it was.
template <class T> std::vector<T> oracle(const problem<T>& p) {
    auto x = [&](idx i) { return ld(p.x[p.index(p.xlen(), p.s.incx, i)]); };
    auto y = [&](idx i) { return ld(p.y[p.index(p.ylen(), p.s.incy, i)]); };
    auto A = [&](idx i, idx j) { return p.dense[i * p.n + j]; };
    const routine r = p.s.r;
    if (!update(r)) {
        std::vector<T> out = p.y;
        for (idx j = 0; j < p.ylen(); ++j) {
            LC sum = 0;  // y := alpha*A^H*x + beta*y, or alpha*A*x + beta*y
            for (idx i = 0; i < p.xlen(); ++i) sum += hermitian(r) ? A(j, i) * x(i) : std::conj(A(i, j)) * x(i);
            const LC old = p.beta == LC(0) ? LC(0) : y(j);
            out[p.index(p.ylen(), p.s.incy, j)] = to<T>(p.alpha * sum + p.beta * old);
        }
        return out;
    }
    std::vector<T> out = p.a;
    for (idx i = 0; i < p.m; ++i)
        for (idx j = 0; j < p.n; ++j) {
            const idx k = p.pos(i, j);
            if (k < 0) continue;
            LC v = A(i, j);
            if (r == gerc) v += p.alpha * x(i) * std::conj(y(j));
            else if (r == her || r == hpr) v += p.alpha * x(i) * std::conj(x(j));
            else v += p.alpha * x(i) * std::conj(y(j)) + std::conj(p.alpha) * y(i) * std::conj(x(j));
            out[k] = to<T>(i == j && hermitian(r) ? LC(v.real(), 0) : v);
        }
    return out;
}

// The call, on the problem's arrays.
template <class T> void call(problem<T>& p) {
    using F = cblas<T>;
    const auto L = CblasRowMajor;
    const int m = int(p.m), n = int(p.n), lda = int(p.lda), ix = p.s.incx, iy = p.s.incy;
    const T alpha = to<T>(p.alpha), beta = to<T>(p.beta);
    const auto ralpha = decltype(T::re)(p.alpha.real());
    T *a = p.a.data(), *y0 = p.y.data();
    const T* x0 = p.x.data();
    switch (p.s.r) {
    case gemv: return F::gemv(L, CblasConjTrans, m, n, &alpha, a, lda, x0, ix, &beta, y0, iy);
    case gbmv: return F::gbmv(L, CblasConjTrans, m, n, int(p.kl), int(p.ku), &alpha, a, lda, x0, ix, &beta, y0, iy);
    case hemv: return F::hemv(L, p.s.uplo, n, &alpha, a, lda, x0, ix, &beta, y0, iy);
    case hbmv: return F::hbmv(L, p.s.uplo, n, int(p.kl + p.ku), &alpha, a, lda, x0, ix, &beta, y0, iy);
    case hpmv: return F::hpmv(L, p.s.uplo, n, &alpha, a, x0, ix, &beta, y0, iy);
    case gerc: return F::gerc(L, m, n, &alpha, x0, ix, y0, iy, a, lda);
    case her: return F::her(L, p.s.uplo, n, ralpha, x0, ix, a, lda);
    case hpr: return F::hpr(L, p.s.uplo, n, ralpha, x0, ix, a);
    case her2: return F::her2(L, p.s.uplo, n, &alpha, x0, ix, y0, iy, a, lda);
    case hpr2: return F::hpr2(L, p.s.uplo, n, &alpha, x0, ix, y0, iy, a);
    }
}

template <class T> bool same(const std::vector<T>& a, const std::vector<T>& b) {
    for (std::size_t i = 0; i < a.size(); ++i)
        if (!(a[i].re == b[i].re && a[i].im == b[i].im)) return false;
    return a.size() == b.size();
}

// Runs the call once, then with each of its allocations failed in turn;
// every run must give the oracle's output exactly, with no report.
template <class T> void check(problem<T> p, const std::string& label) {
    const std::vector<T> want = oracle(p);
    const problem<T> fresh = p;
    long made = 0;
    for (long fail = 0; fail <= made; ++fail) {
        p = fresh;
        reports = 0;
        const long before = ork_allocation_count();
        ork_fail_allocation(fail);
        call(p);
        ork_fail_allocation(0);
        if (fail == 0) made = ork_allocation_count() - before;
        const std::string what = label + (fail ? ", allocation " + std::to_string(fail) + " failed" : "");
        EXPECT_EQ(reports, 0) << what;
        EXPECT_TRUE(same(update(p.s.r) ? p.a : p.y, want)) << what;
        EXPECT_TRUE(same(p.x, fresh.x)) << what << ": x changed";
        if (update(p.s.r)) {
            EXPECT_TRUE(same(p.y, fresh.y)) << what << ": y changed";
        }
    }
    EXPECT_GE(made, copies(p.s.r)) << label << ": the conjugated copies come from libork's allocator";
}

template <class T> class CblasMemory : public ::testing::Test {};
using ComplexTypes = ::testing::Types<ork_complex8, ork_complex16>;
TYPED_TEST_SUITE(CblasMemory, ComplexTypes);

TYPED_TEST(CblasMemory, RowMajorConjugatedCallsExactWithEveryAllocationFailed) {
    std::mt19937 rng(20261125);
    const int incs[][2] = {{1, 1}, {-2, 3}, {3, -1}};
    for (int r = gemv; r <= hpr2; ++r)
        for (CBLAS_UPLO uplo : {CblasUpper, CblasLower}) {
            if (!hermitian(routine(r)) && uplo == CblasLower) continue;
            for (const auto& inc : incs)
                for (bool beta_zero : {false, true}) {
                    if (beta_zero && update(routine(r))) continue;
                    const spec s{routine(r), uplo, inc[0], inc[1], beta_zero};
                    check(make<TypeParam>(s, rng), std::string(names[r]) + (uplo == CblasUpper ? " U" : " L") +
                                                       " incx " + std::to_string(inc[0]) + " incy " +
                                                       std::to_string(inc[1]) + (beta_zero ? " beta 0" : ""));
                }
        }
}

// incx = INT_MIN: the copy holds the vector's two elements, not its 2^31
// strides (x's two elements are 2^31 elements apart in a sparse mapping).
TEST(CblasMemory, ConjugateTransposedProductWithTheLargestStride) {
    const std::size_t span = (std::size_t(1) << 31) + 1;
    void* map = mmap(nullptr, span * sizeof(ork_complex16), PROT_READ | PROT_WRITE,
                     MAP_PRIVATE | MAP_ANONYMOUS | MAP_NORESERVE, -1, 0);
    if (map == MAP_FAILED) GTEST_SKIP() << "no 32 GiB of address space";
    auto* x = static_cast<ork_complex16*>(map);
    // row-major A 2 x 3; y := A^H x: x's first element is the far one
    const ork_complex16 a[6] = {{1, 2}, {0, -1}, {3, 0}, {-2, 1}, {1, 1}, {0, 2}};
    x[span - 1] = {1, -1};
    x[0] = {2, 3};
    const ork_complex16 alpha{1, 0}, beta{0, 0};
    for (long fail = 0; fail <= 1; ++fail) {
        ork_complex16 y[3] = {{5, 5}, {5, 5}, {5, 5}};
        reports = 0;
        ork_fail_allocation(fail);
        cblas_zgemv(CblasRowMajor, CblasConjTrans, 2, 3, &alpha, a, 3, x, INT_MIN, &beta, y, 1);
        ork_fail_allocation(0);
        for (int j = 0; j < 3; ++j) {
            const LC want = std::conj(ld(a[j])) * LC(1, -1) + std::conj(ld(a[3 + j])) * LC(2, 3);
            EXPECT_EQ(ld(y[j]), want) << "element " << j << (fail ? ", the copy failed" : "");
        }
        EXPECT_EQ(reports, 0);
    }
    munmap(map, span * sizeof(ork_complex16));
}

}  // namespace

// This program's handlers replace the library's, so that a report is counted
// instead of ending the process.
extern "C" void xerbla_(const char*, const ork_int32*, size_t) { ++reports; }
extern "C" void cblas_xerbla(int, const char*, const char*, ...) { ++reports; }
