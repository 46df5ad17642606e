// Triangular products and solves (tr, tb, tp) against long double over sizes,
// flags, increments and band widths with guard zones and NaN in every slot
// that must not be read; the blocked solve against a replay of its block
// order bit for bit; the product's range pieces and threads against the whole
// product bit for bit; the argument-error positions.
#include "ork/blas_level2.h"
#include "ork/triangular_kernels.h"
#include "testing.h"

using namespace ot;

namespace {

template <class T> struct tri;
#define OT_TRI(p, T)                                                                                           \
    template <> struct tri<T> {                                                                                \
        static constexpr auto trmv = &ork_blas_##p##trmv, trsv = &ork_blas_##p##trsv;                          \
        static constexpr auto tpmv = &ork_blas_##p##tpmv, tpsv = &ork_blas_##p##tpsv;                          \
        static constexpr auto tbmv = &ork_blas_##p##tbmv, tbsv = &ork_blas_##p##tbsv;                          \
        static constexpr auto gemv = &ork_blas_##p##gemv;                                                      \
        using xtrmv_t = decltype(&ork_blas_x##p##trmv);                                                    \
        using piece_t = decltype(&ork_blas_x##p##trmv_in_thread);                                          \
        static constexpr const char* letter = #p;                                                              \
    };
OT_TRI(s, float)
OT_TRI(d, double)
OT_TRI(c, ork_complex8)
OT_TRI(z, ork_complex16)
#undef OT_TRI

template <class T> T nan_t() { return make<T>(NAN, NAN); }

// A triangular matrix with band width k (k >= n: the whole triangle), held as
// long double and in full, band and packed storage. Off-diagonal elements
// are small against the diagonal, so that the solves are well conditioned;
// unused slots and, for a unit diagonal, the diagonal hold NaN.
template <class T> struct tri_matrix {
    idx n, k, lda, ldab;
    bool upper, unit;
    std::vector<LC> m;
    std::vector<T> full, band, packed;
    tri_matrix(idx n_, idx k_, bool up, bool un, std::mt19937_64& g)
        : n(n_), k(k_), lda(n_ + 2), ldab(k_ + 2), upper(up), unit(un), m(std::size_t(n_ * n_)),
          full(std::size_t(lda * (n_ > 0 ? n_ : 1)), nan_t<T>()), band(std::size_t(ldab * (n_ > 0 ? n_ : 1)), nan_t<T>()) {
        for (idx j = 0; j < n; ++j)
            for (idx i = 0; i < n; ++i) {
                if (upper ? i > j : i < j) continue;
                const bool in_band = (upper ? j - i : i - j) <= k;
                T v = i == j ? add(make<T>(2), rmul(real_t<T>(0.5), rnd<T>(g))) : in_band ? rmul(real_t<T>(1.0 / (n + 1)), rnd<T>(g)) : make<T>(0);
                m[std::size_t(i + j * n)] = i == j && unit ? LC(1) : ld(v);
                if (i == j && unit) v = nan_t<T>();
                full[std::size_t(i + j * lda)] = v;
                if (in_band) band[std::size_t((upper ? k + i - j : i - j) + j * ldab)] = v;
                packed.push_back(v);
            }
    }
    LC op(idx i, idx j, char t) const {  // element (i, j) of op(A)
        if (t == 'N') return m[std::size_t(i + j * n)];
        const LC v = m[std::size_t(j + i * n)];
        return t == 'C' ? std::conj(v) : v;
    }
};

// op(A) x = b by substitution in long double; scale grows to the largest |x_i|.
template <class T> std::vector<LC> substituted(const tri_matrix<T>& a, char u, char t, const std::vector<LC>& b, long double& scale) {
    const idx n = a.n;
    const bool lower_op = (u == 'L') == (t == 'N');  // op(A) lower triangular: (L, N) or (U, T/C)
    std::vector<LC> x(b.size());
    for (idx q = 0; q < n; ++q) {
        const idx i = lower_op ? q : n - 1 - q;
        LC r = b[std::size_t(i)];
        for (idx j = 0; j < n; ++j)
            if (j != i && (lower_op ? j < i : j > i)) r -= a.op(i, j, t) * x[std::size_t(j)];
        x[std::size_t(i)] = r / a.op(i, i, t);
        scale = std::max(scale, std::abs(x[std::size_t(i)]));
    }
    return x;
}

enum class storage { full, band, packed };
const char* storage_name[] = {"tr", "tb", "tp"};

template <class T> class Triangular : public ::testing::Test {};
TYPED_TEST_SUITE(Triangular, ElementTypes);

const idx sizes[] = {0, 1, 2, 31, 32, 33, 40, 64, 65, 100, 200};
const idx incs[] = {1, 2, -1, -2};

// Every routine, storage, flag and increment: the product against the long
// double sum, the solve against long double substitution.
TYPED_TEST(Triangular, AgainstLongDouble) {
    using T = TypeParam;
    using A = tri<T>;
    std::mt19937_64 g(7);
    int combo = 0;
    for (idx n : sizes)
        for (char u : {'U', 'L'})
            for (char t : {'N', 'T', 'C'})
                for (char d : {'N', 'U'})
                    for (storage s : {storage::full, storage::band, storage::packed})
                        for (idx k : {idx(0), idx(1), idx(5), n + 1}) {
                            if (s != storage::band && k != n + 1) continue;
                            const idx inc = incs[combo++ % 4];
                            tri_matrix<T> a(n, k, u == 'U', d == 'U', g);
                            for (bool solve : {false, true}) {
                                SCOPED_TRACE(::testing::Message() << storage_name[int(s)] << (solve ? "sv" : "mv") << " n=" << n << " k=" << k
                                                                  << " uplo=" << u << " trans=" << t << " diag=" << d << " incx=" << inc);
                                gvec<T> x(n, inc, combo % 2, g);
                                const auto x0 = x.buf;
                                const char uf[] = {u, 0}, tf[] = {t, 0}, df[] = {d, 0};
                                if (s == storage::full) (solve ? A::trsv : A::trmv)(uf, tf, df, &n, a.full.data(), &a.lda, x.p(), &inc);
                                if (s == storage::band) (solve ? A::tbsv : A::tbmv)(uf, tf, df, &n, &k, a.band.data(), &a.ldab, x.p(), &inc);
                                if (s == storage::packed) (solve ? A::tpsv : A::tpmv)(uf, tf, df, &n, a.packed.data(), x.p(), &inc);
                                std::vector<LC> want(static_cast<std::size_t>(n)), b(static_cast<std::size_t>(n));
                                for (idx i = 0; i < n; ++i) b[std::size_t(i)] = ld(x0[x.pos(i)]);
                                long double scale = 1;
                                if (!solve)
                                    for (idx i = 0; i < n; ++i) {
                                        long double mags = 0;
                                        for (idx j = 0; j < n; ++j) {
                                            want[std::size_t(i)] += a.op(i, j, t) * b[std::size_t(j)];
                                            mags += std::abs(a.op(i, j, t)) * std::abs(b[std::size_t(j)]);
                                        }
                                        scale = std::max(scale, mags);
                                    }
                                else want = substituted(a, u, t, b, scale);
                                const long double tol = 8 * (n + 2) * eps<T> * scale;
                                auto expect = x0;
                                for (idx i = 0; i < n; ++i) {
                                    EXPECT_TRUE(near(x.at(i), want[std::size_t(i)], tol)) << "element " << i;
                                    expect[x.pos(i)] = x.at(i);
                                }
                                EXPECT_TRUE(same_all(x.buf, expect));  // guard zone and gaps untouched
                            }
                        }
}

// Smith's complex quotient, as the kernels divide; plain division for reals.
template <class T> T quotient(T a, T b) {
    if constexpr (is_cx<T>) {
        using R = real_t<T>;
        if (std::fabs(b.im) <= std::fabs(b.re)) {
            const R r = b.im / b.re, d = b.re + b.im * r;
            return {(a.re + a.im * r) / d, (a.im - a.re * r) / d};
        }
        const R r = b.re / b.im, d = b.im + b.re * r;
        return {(a.re * r + a.im) / d, (a.im * r - a.re) / d};
    } else {
        return a / b;
    }
}

using block_fn = void (*)(const idx*, const void*, const idx*, void*, const idx*);
// The diagonal-block kernels by name (after the type letter): uplo, trans, diag.
const char* const pieces[] = {"trsv_unn", "trsv_unu", "trsv_utn", "trsv_utu", "trsv_ucn", "trsv_ucu",
                              "trsv_lnn", "trsv_lnu", "trsv_ltn", "trsv_ltu", "trsv_lcn", "trsv_lcu"};

// The blocked solve equals a replay of its block order with the kernel
// library's diagonal-block kernels, each called by name, and libork's gemv,
// bit for bit; a block kernel alone (n <= 32) agrees with long double and,
// without transposing, equals the column sweep in the element's precision;
// incx = -1 equals incx = 1 on the reversed vector (bit for bit without
// transposing).
TYPED_TEST(Triangular, BlockedSolveOrder) {
    using T = TypeParam;
    using A = tri<T>;
    std::mt19937_64 g(11);
    const T minus = make<T>(-1), plus = make<T>(1);
    for (idx n : {idx(1), idx(2), idx(7), idx(31), idx(32), idx(33), idx(40), idx(65), idx(100)})
        for (char u : {'U', 'L'})
            for (char t : {'N', 'T', 'C'})
                for (char d : {'N', 'U'})
                    for (idx inc : {idx(1), idx(-1), idx(3)}) {
                        if (t == 'C' && !is_cx<T>) continue;
                        SCOPED_TRACE(::testing::Message() << "n=" << n << " uplo=" << u << " trans=" << t << " diag=" << d << " incx=" << inc);
                        tri_matrix<T> a(n, n, u == 'U', d == 'U', g);
                        gvec<T> x(n, inc, 1, g);
                        const auto x0 = x.buf;
                        auto rx = x.buf;
                        const char uf[] = {u, 0}, tf[] = {t, 0}, df[] = {d, 0};
                        A::trsv(uf, tf, df, &n, a.full.data(), &a.lda, x.p(), &inc);

                        const char* piece = pieces[(u == 'L') * 6 + (t == 'T') * 2 + (t == 'C') * 4 + (d == 'U')];
                        const auto kernel = kernel_symbol<block_fn>((std::string("ork_blas_") + A::letter + piece).c_str());
                        T* xr = rx.data() + x.lead;
                        const idx lda = a.lda;
                        auto at = [&](idx i) { return inc > 0 ? xr + i * inc : xr + (n - 1 - i) * -inc; };
                        auto span = [&](idx i0, idx len) { return inc > 0 ? at(i0) : at(i0 + len - 1); };
                        auto el = [&](idx i, idx j) { return a.full.data() + i + j * lda; };
                        auto block = [&](idx s, idx nb) { kernel(&nb, el(s, s), &lda, at(s), &inc); };
                        auto gemv = [&](idx m, idx c, const T* as, const T* xs, T* ys) {
                            A::gemv(tf, &m, &c, &minus, as, &lda, xs, &inc, &plus, ys, &inc);
                        };
                        if (t == 'N' && u == 'L') {
                            idx s = 0;
                            for (; s + 32 <= n; s += 32) {
                                block(s, 32);
                                if (n - s - 32 > 0) gemv(n - s - 32, 32, el(s + 32, s), span(s, 32), span(s + 32, n - s - 32));
                            }
                            if (s < n) block(s, n - s);
                        } else if (t == 'N') {
                            idx e = n;
                            for (; e >= 32; e -= 32) {
                                block(e - 32, 32);
                                if (e - 32 > 0) gemv(e - 32, 32, el(0, e - 32), span(e - 32, 32), span(0, e - 32));
                            }
                            if (e > 0) block(0, e);
                        } else if (u == 'L') {
                            for (idx e = n; e >= 1; e -= 32) {
                                const idx s = std::max<idx>(e - 32, 0);
                                if (n > e) gemv(n - e, e - s, el(e, s), span(e, n - e), span(s, e - s));
                                block(s, e - s);
                            }
                        } else {
                            for (idx s = 0; s < n; s += 32) {
                                const idx e = std::min<idx>(s + 32, n);
                                if (s > 0) gemv(s, e - s, el(0, s), span(0, s), span(s, e - s));
                                block(s, e - s);
                            }
                        }
                        EXPECT_TRUE(same_all(x.buf, rx));

                        if (n <= 32) {  // one block, the piece alone: against long double
                            std::vector<LC> b(static_cast<std::size_t>(n));
                            for (idx i = 0; i < n; ++i) b[std::size_t(i)] = ld(x0[x.pos(i)]);
                            long double scale = 1;
                            const auto want = substituted(a, u, t, b, scale);
                            for (idx i = 0; i < n; ++i)
                                EXPECT_TRUE(near(rx[x.pos(i)], want[std::size_t(i)], 8 * (n + 2) * eps<T> * scale)) << piece << " element " << i;
                        }
                        if (t == 'N' && n <= 32) {  // one block: the column sweep itself
                            std::vector<T> w(static_cast<std::size_t>(n));
                            for (idx i = 0; i < n; ++i) w[std::size_t(i)] = x0[x.pos(i)];
                            for (idx q = 0; q < n; ++q) {
                                const idx j = u == 'L' ? q : n - 1 - q;
                                if (d == 'N') w[std::size_t(j)] = quotient(w[std::size_t(j)], *el(j, j));
                                for (idx i = u == 'L' ? j + 1 : 0; i < (u == 'L' ? n : j); ++i)
                                    w[std::size_t(i)] = sub(w[std::size_t(i)], mul(w[std::size_t(j)], *el(i, j)));
                            }
                            for (idx i = 0; i < n; ++i) EXPECT_TRUE(same(rx[x.pos(i)], w[std::size_t(i)])) << "element " << i;
                        }
                        if (inc == -1) {  // the same logical vector held forwards
                            gvec<T> y(n, 1, 0, g);
                            const idx one = 1;
                            for (idx i = 0; i < n; ++i) y.at(i) = x0[x.pos(i)];
                            A::trsv(uf, tf, df, &n, a.full.data(), &a.lda, y.p(), &one);
                            // the column sweep is elementwise, so bit for bit; the dot
                            // forms sum strided vectors in another order
                            for (idx i = 0; i < n; ++i)
                                if (t == 'N') EXPECT_TRUE(same(x.at(i), y.at(i))) << "element " << i;
                                else EXPECT_TRUE(near(x.at(i), ld(y.at(i)), 64 * n * eps<T> * (1 + mag1(y.at(i))))) << "element " << i;
                        }
                    }
}

// The product's range pieces over any split, and libork's product on two
// threads, give the bits of the kernel's whole product.
TYPED_TEST(Triangular, ProductRangesAndThreads) {
    using T = TypeParam;
    using A = tri<T>;
    std::mt19937_64 g(13);
    for (idx n : {idx(37), idx(1000)})
        for (char u : {'U', 'L'})
            for (char t : {'N', 'T', 'C'})
                for (idx inc : {idx(1), idx(-2)}) {
                    SCOPED_TRACE(::testing::Message() << "n=" << n << " uplo=" << u << " trans=" << t << " incx=" << inc);
                    tri_matrix<T> a(n, n, u == 'U', false, g);
                    gvec<T> x(n, inc, 0, g);
                    const auto x0 = x.buf;
                    const char uf[] = {u, 0}, tf[] = {t, 0}, df[] = {'N', 0};
                    const auto whole = kernel_symbol<typename A::xtrmv_t>((std::string("ork_blas_x") + A::letter + "trmv").c_str());
                    const auto piece = kernel_symbol<typename A::piece_t>((std::string("ork_blas_x") + A::letter + "trmv_in_thread").c_str());
                    whole(uf, tf, df, &n, a.full.data(), &a.lda, x.p(), &inc);
                    std::vector<T> y(static_cast<std::size_t>(n));
                    // the pieces take x contiguous, as libork hands it to them
                    std::vector<T> xc(static_cast<std::size_t>(n));
                    for (idx i = 0; i < n; ++i) xc[std::size_t(i)] = x0[x.pos(i)];
                    const idx cuts[] = {0, 1, n / 3, n / 3 + 5, n - 2, n}, unit = 1;
                    for (int c = 0; c + 1 < 6; ++c) {
                        const idx first = cuts[c], len = cuts[c + 1] - cuts[c];
                        piece(uf, tf, df, &n, a.full.data(), &a.lda, xc.data(), &unit, y.data() + first, &first, &len);
                    }
                    for (idx i = 0; i < n; ++i) EXPECT_TRUE(same(y[std::size_t(i)], x.at(i))) << "piece, element " << i;
                    gvec<T> z(n, inc, 0, g);
                    z.buf = x0;
                    threads_scope two(2);
                    A::trmv(uf, tf, df, &n, a.full.data(), &a.lda, z.p(), &inc);
                    EXPECT_TRUE(same_all(z.buf, x.buf));
                }
}

// The position of a short leading dimension or band, a missing array, as the
// reference BLAS numbers them (each argument alone spoilt, for every entry:
// tests/frame/manifest_test.cpp).
TEST(TriangularErrors, Positions) {
    const idx n = 3, k = 1, one = 1, zero = 0, neg = -1, two = 2;
    double a[64], x[16];  // room for the accepted calls of every type
    for (int i = 0; i < 64; ++i) a[i] = 4 + (i % 5 == 0), x[i % 16] = i % 7 - 3;
    struct row {
        const char *uplo, *trans, *diag;
        const idx *n, *k, *lda, *incx;
        int tr, tb, tp;  // expected positions; 0: accepted
    } rows[] = {
        {"U", "N", "N", &n, &neg, &n, &one, 0, 5, 0},
        {"U", "N", "N", &n, &k, &two, &one, 6, 0, 0},
        {"U", "N", "N", &n, &two, &two, &one, 6, 7, 0},
        {"u", "c", "n", &zero, &zero, &one, &one, 0, 0, 0},
    };
    std::vector<bad_call> calls = {  // a missing matrix, then a missing vector
        {"ork_blas_dtbmv", 6, [&] { ork_blas_dtbmv("U", "N", "N", &n, &k, nullptr, &two, x, &one); }},
        {"ork_blas_dtpsv", 6, [&] { ork_blas_dtpsv("U", "N", "N", &n, a, nullptr, &one); }}};
    for (const row& r : rows) {
        double *const d = a, *const dx = x;  // captured by value: the arrays, not copies
        const auto z = reinterpret_cast<ork_complex16*>(a), zx = reinterpret_cast<ork_complex16*>(x);
        const auto s = reinterpret_cast<float*>(a), sx = reinterpret_cast<float*>(x);
        const auto c = reinterpret_cast<ork_complex8*>(a), cx = reinterpret_cast<ork_complex8*>(x);
        calls.push_back({"ork_blas_dtrmv", r.tr, [=] { ork_blas_dtrmv(r.uplo, r.trans, r.diag, r.n, d, r.lda, dx, r.incx); }});
        calls.push_back({"ork_blas_ztrsv", r.tr, [=] { ork_blas_ztrsv(r.uplo, r.trans, r.diag, r.n, z, r.lda, zx, r.incx); }});
        calls.push_back({"ork_blas_stbsv", r.tb, [=] { ork_blas_stbsv(r.uplo, r.trans, r.diag, r.n, r.k, s, r.lda, sx, r.incx); }});
        calls.push_back({"ork_blas_ctpmv", r.tp, [=] { ork_blas_ctpmv(r.uplo, r.trans, r.diag, r.n, c, cx, r.incx); }});
    }
    expect_reports(calls, [&] { return bytes_of(a, x); });
}

}  // namespace
