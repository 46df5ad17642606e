// The level-2 entries libork dispatches (gemv, syr) against long double,
// their special cases bit for bit, and gemv split over threads giving the
// single-thread bits.
#include "testing.h"

using namespace ot;

namespace {

template <class T> class Gemv : public ::testing::Test {};
TYPED_TEST_SUITE(Gemv, ElementTypes);

enum class scalars { general, beta_zero_over_nan, alpha_zero, alpha_zero_beta_one };

TYPED_TEST(Gemv, AgainstLongDouble) {
    using T = TypeParam;
    std::mt19937_64 g(61);
    for (auto [path, f] : api<T>::gemv.paths())
        for (const char* trans : {"N", "no transpose", "T", "t", "C", "conjugate"})
            for (auto [m, n] : {std::pair<idx, idx>{0, 3}, {3, 0}, {1, 1}, {4, 3}, {3, 7}, {17, 9}, {33, 16}})
                for (auto [ix, iy] : {std::pair<idx, idx>{1, 1}, {-1, 2}, {2, -3}})
                    for (scalars sc : {scalars::general, scalars::beta_zero_over_nan, scalars::alpha_zero,
                                       scalars::alpha_zero_beta_one}) {
                        SCOPED_TRACE(::testing::Message() << path << " trans=" << trans << " m=" << m << " n=" << n
                                                          << " incx=" << ix << " incy=" << iy << " case=" << int(sc));
                        const bool notrans = (trans[0] | 0x20) == 'n', conj_a = (trans[0] | 0x20) == 'c';
                        const idx lda = (m > 1 ? m : 1) + 2, lenx = notrans ? n : m, leny = notrans ? m : n;
                        gvec<T> a(lda * n, 1, 1, g), x(lenx, ix, 0, g), y(leny, iy, 1, g);
                        T alpha = rnd<T>(g), beta = rnd<T>(g);
                        if (sc == scalars::beta_zero_over_nan) {
                            beta = make<T>(0);
                            for (idx i = 0; i < leny; ++i) y.at(i) = make<T>(NAN, NAN);
                        }
                        if (sc == scalars::alpha_zero || sc == scalars::alpha_zero_beta_one) alpha = make<T>(0);
                        if (sc == scalars::alpha_zero_beta_one) beta = make<T>(1);
                        const auto a0 = a.buf, x0 = x.buf, y0 = y.buf;
                        f(trans, &m, &n, &alpha, a.p(), &lda, x.p(), &ix, &beta, y.p(), &iy);
                        EXPECT_TRUE(same_all(a.buf, a0));
                        EXPECT_TRUE(same_all(x.buf, x0));
                        if (m == 0 || n == 0 || sc == scalars::alpha_zero_beta_one) {
                            EXPECT_TRUE(same_all(y.buf, y0));
                            continue;
                        }
                        auto want = y0;
                        for (idx i = 0; i < leny; ++i) {
                            const T yi = y0[y.pos(i)];
                            if (sc == scalars::alpha_zero) {  // y := beta*y, exactly
                                want[y.pos(i)] = mul(beta, yi);
                                continue;
                            }
                            LC s = 0;
                            long double mags = 0;
                            for (idx j = 0; j < lenx; ++j) {
                                const T aij = notrans ? a.p()[i + j * lda] : a.p()[j + i * lda];
                                s += (conj_a ? std::conj(ld(aij)) : ld(aij)) * ld(x.at(j));
                                mags += mag1(aij) * mag1(x.at(j));
                            }
                            const bool keep_y = sc == scalars::general;
                            const LC w = ld(alpha) * s + (keep_y ? ld(beta) * ld(yi) : LC(0));
                            const long double tol =
                                4 * eps<T> * ((lenx + 2) * mag1(alpha) * mags + (keep_y ? 2 * mag1(beta) * mag1(yi) : 0));
                            EXPECT_TRUE(near(y.at(i), w, tol)) << "element " << i;
                            want[y.pos(i)] = y.at(i);  // checked just above
                        }
                        EXPECT_TRUE(same_all(y.buf, want));  // and nothing else was written
                    }
}

// Split over threads by rows (N) or columns (T): the same bits as one thread.
TYPED_TEST(Gemv, ThreadsGiveTheSameBits) {
    using T = TypeParam;
    std::mt19937_64 g(62);
    const idx m = 600, n = 600, lda = 601;
    gvec<T> a(lda * n, 1, 0, g), x(n, 1, 0, g);
    const T alpha = rnd<T>(g), beta = rnd<T>(g);
    for (const char* trans : {"N", "T", "C"})
        for (idx iy : {1, -2}) {
            gvec<T> y(m, iy, 1, g);
            std::vector<T> result[2];
            for (int t : {1, 3}) {
                threads_scope threads(t);
                gvec<T> yt = y;
                api<T>::gemv.lib(trans, &m, &n, &alpha, a.p(), &lda, x.p(), &x.inc, &beta, yt.p(), &iy);
                result[t == 1 ? 0 : 1] = yt.buf;
            }
            EXPECT_TRUE(same_all(result[1], result[0])) << trans << " incy=" << iy;
        }
}

template <class R> class Syr : public ::testing::Test {};
TYPED_TEST_SUITE(Syr, RealTypes);
template <class R> constexpr auto syr_of() {
    if constexpr (std::is_same_v<R, float>) return OT_R(ssyr);
    else return OT_R(dsyr);
}

// A := alpha*x*x' + A on the named triangle only.
TYPED_TEST(Syr, UpdatesOneTriangle) {
    using R = TypeParam;
    std::mt19937_64 g(63);
    for (auto [path, f] : syr_of<R>().paths())
        for (const char* uplo : {"U", "u", "L", "lower"})
            for (idx n : {0, 1, 4, 9, 20})
                for (idx incx : {1, -2})
                    for (bool zero_alpha : {false, true}) {
                        SCOPED_TRACE(::testing::Message() << path << " uplo=" << uplo << " n=" << n << " incx=" << incx);
                        const bool upper = (uplo[0] | 0x20) == 'u';
                        const idx lda = n + 2;
                        gvec<R> a(lda * (n > 0 ? n : 1), 1, 1, g), x(n, incx, 0, g);
                        const R alpha = zero_alpha ? R(0) : rnd<R>(g, -2, 2);
                        const auto a0 = a.buf;
                        f(uplo, &n, &alpha, x.p(), &incx, a.p(), &lda);
                        auto want = a0;
                        for (idx j = 0; j < n && !zero_alpha; ++j)
                            for (idx i = upper ? 0 : j; i <= (upper ? j : n - 1); ++i) {
                                const std::size_t k = a.pos(i + j * lda);
                                const long double w = (long double)a0[k] + (long double)alpha * x.at(i) * x.at(j);
                                EXPECT_NEAR(a.buf[k], w, 4 * eps<R> * (std::fabs(a0[k]) + std::fabs(w)));
                                want[k] = a.buf[k];
                            }
                        EXPECT_TRUE(same_all(a.buf, want));  // the other triangle and the padding are untouched
                    }
}

}  // namespace
