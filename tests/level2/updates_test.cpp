// The level-2 rank-1 and rank-2 updates (ger, geru, gerc; syr, spr, syr2,
// spr2 and their Hermitian forms) against long double, with the untouched
// triangle, padding and guards compared bit for bit; the _in_thread pieces
// and libork's splits against the whole update.
#include <cmath>

#include "level2_testing.h"

using namespace ot;

namespace {

template <class T> class Updates : public ::testing::Test {};
TYPED_TEST_SUITE(Updates, ElementTypes);

constexpr std::pair<idx, idx> increments[] = {{1, 1}, {2, -1}, {-3, 2}};

// a0 + d within the bound of a sum of `terms` products of magnitude `mags`
template <class T> void expect_update(T got, T a0, LC d, long double mags) {
    EXPECT_TRUE(near(got, ld(a0) + d, 4 * eps<T> * (mag1(a0) + 3 * mags)));
}

TYPED_TEST(Updates, General) {
    using T = TypeParam;
    std::mt19937_64 g(301);
    const std::pair<idx, idx> shapes[] = {{0, 2}, {2, 0}, {1, 1}, {3, 2}, {7, 16}, {33, 5}, {100, 9}};
    for (bool conj : {false, true})
        for (auto [m, n] : shapes)
            for (auto [ix, iy] : increments)
                for (bool zero_alpha : {false, true}) {
                    SCOPED_TRACE(::testing::Message() << "conj=" << conj << " m=" << m << " n=" << n << " incx=" << ix
                                                      << " incy=" << iy << " zero_alpha=" << zero_alpha);
                    const idx lda = (m > 1 ? m : 1) + 2;
                    gvec<T> a(lda * n, 1, 1, g), x(m, ix, 0, g), y(n, iy, 1, g);
                    if (n > 1) y.at(1) = make<T>(0);  // a skipped column
                    const T alpha = zero_alpha ? make<T>(0) : rnd<T>(g, -2, 2);
                    const auto a0 = a.buf;
                    for (auto [path, f] : l2<T>::ger(conj)) {
                        SCOPED_TRACE(path);
                        a.buf = a0;
                        f(&m, &n, &alpha, x.p(), &ix, y.p(), &iy, a.p(), &lda);
                        auto want = a0;
                        for (idx j = 0; j < n && !zero_alpha; ++j)
                            for (idx i = 0; i < m; ++i) {
                                const std::size_t s = a.pos(i + j * lda);
                                const LC yj = conj ? std::conj(ld(y.at(j))) : ld(y.at(j));
                                expect_update(a.buf[s], a0[s], ld(alpha) * ld(x.at(i)) * yj,
                                              mag1(alpha) * mag1(x.at(i)) * mag1(y.at(j)));
                                want[s] = a.buf[s];
                            }
                        EXPECT_TRUE(same_all(a.buf, want));
                    }
                }
}

// The expected change of element (i, j) of A := alpha*x*op(x)' (+ A) or
// alpha*x*op(y)' + op(alpha)*y*op(x)' + A, op = conj for complex.
template <class T> LC update_of(bool two, LC alpha, const std::vector<LC>& x, const std::vector<LC>& y, idx i, idx j) {
    auto op = [](LC v) { return is_cx<T> ? std::conj(v) : v; };
    if (!two) return alpha * x[std::size_t(i)] * op(x[std::size_t(j)]);
    return alpha * x[std::size_t(i)] * op(y[std::size_t(j)]) + op(alpha) * y[std::size_t(i)] * op(x[std::size_t(j)]);
}

// Runs f on a triangle and checks it: stored elements near the long double
// update, the Hermitian diagonal real, every other slot unchanged.
template <class T, class F>
void check_symmetric_update(triangle<T>& tri, bool two, T alpha, gvec<T>& x, gvec<T>& y, F f) {
    const auto a0 = tri.a;
    f();
    const auto xv = values(x), yv = two ? values(y) : values(x);
    auto want = a0;
    LC al = ld(alpha);
    if (!two && is_cx<T>) al = LC(al.real(), 0);  // rank 1: alpha is real
    for (idx j = 0; j < tri.n && al != LC(0); ++j)
        for (idx i = 0; i < tri.n; ++i) {
            const idx s = stored_slot(tri.st, tri.upper, tri.n, tri.k, tri.lda, i, j);
            if (s < 0) continue;
            T& got = tri.a[std::size_t(s)];
            T base = a0[std::size_t(s)];
            if (i == j && is_cx<T>) {
                EXPECT_EQ(std::imag(ld(got)), 0) << "diagonal " << j;
                base = make<T>(re(base));
            }
            const long double mags = mag1(al) * (mag1(xv[std::size_t(i)]) * mag1(yv[std::size_t(j)]) +
                                                 mag1(yv[std::size_t(i)]) * mag1(xv[std::size_t(j)]));
            expect_update(got, base, update_of<T>(two, al, xv, yv, i, j), mags);
            want[std::size_t(s)] = got;
        }
    EXPECT_TRUE(same_all(tri.a, want));
}

TYPED_TEST(Updates, Symmetric) {
    using T = TypeParam;
    std::mt19937_64 g(302);
    for (bool packed : {false, true})
        for (bool two : {false, true})
            for (idx n : {0, 1, 2, 3, 7, 16, 33, 100})
                for (const char* uplo : {"u", "Lower"})
                    for (auto [ix, iy] : increments)
                        for (bool zero_alpha : {false, true}) {
                            SCOPED_TRACE(::testing::Message() << "packed=" << packed << " rank2=" << two << " n=" << n
                                                              << " uplo=" << uplo << " incx=" << ix << " incy=" << iy);
                            const storage st = packed ? storage::packed : storage::full;
                            triangle<T> tri(st, (uplo[0] | 0x20) == 'u', n, n, g);
                            // the other triangle: sentinels that must stay
                            for (auto& v : tri.a)
                                if (std::isnan(re(v))) v = sentinel<T>();
                            gvec<T> x(n, ix, 0, g), y(n, iy, 1, g);
                            if (n > 2) x.at(2) = make<T>(0), y.at(2) = make<T>(0);  // a skipped column
                            const T alpha = zero_alpha ? make<T>(0) : rnd<T>(g, -2, 2);
                            const triangle<T> start = tri;
                            for (auto [path, f] : l2<T>::update(two, packed)) {
                                SCOPED_TRACE(path);
                                tri = start;
                                check_symmetric_update(tri, two, alpha, x, y, [&] {
                                    f(uplo, &n, &alpha, x.p(), &ix, y.p(), &iy, tri.a.data(), &tri.lda);
                                });
                            }
                        }
}

// Pieces on a partition of the columns give the bits of the whole update;
// libork's split the kernel's whole bits (real), or its values (complex: the
// split's complex scalars may give a zero of the other sign).
TYPED_TEST(Updates, PiecesAndSplitsGiveTheWholeUpdate) {
    using T = TypeParam;
    std::mt19937_64 g(303);
    const idx n = 640;
    for (bool two : {false, true})
        for (const char* uplo : {"U", "L"}) {
            triangle<T> tri(storage::full, uplo[0] == 'U', n, n, g);
            gvec<T> x(n, 1, 0, g), y(n, -2, 0, g);
            const T alpha = rnd<T>(g);
            std::vector<T> out[2];
            for (int path : {0, 1}) {  // libork, then the kernel whole
                triangle<T> r = tri;
                l2<T>::update(two, false)[std::size_t(path)].second(uplo, &n, &alpha, x.p(), &x.inc, y.p(), &y.inc, r.a.data(), &r.lda);
                out[path] = r.a;
            }
            const auto& whole = out[1];
            if constexpr (is_cx<T>) {
                for (std::size_t s = 0; s < whole.size(); ++s) {
                    if (std::isnan(re(whole[s]))) continue;  // the other triangle
                    ASSERT_TRUE(out[0][s].re == whole[s].re && out[0][s].im == whole[s].im) << "slot " << s << ", rank2=" << two << " " << uplo;
                }
            } else {
                EXPECT_TRUE(same_all(out[0], whole)) << "libork, rank2=" << two << " " << uplo;
                triangle<T> r = tri;
                for (idx first = 1; first <= n;) {
                    idx last = first + 3 * first / 2 + 4;
                    if (last > n) last = n;
                    if (two) {
                        auto piece = kernel_symbol<decltype(&ork_blas_xdsyr2_in_thread)>(
                            std::is_same_v<T, double> ? "ork_blas_xdsyr2_in_thread" : "ork_blas_xssyr2_in_thread");
                        using P = void (*)(const char*, const idx*, const T*, const T*, const idx*, const T*, const idx*, T*, const idx*, const idx*, const idx*);
                        reinterpret_cast<P>(piece)(uplo, &n, &alpha, x.p(), &x.inc, y.p(), &y.inc, r.a.data(), &r.lda, &first, &last);
                    } else {
                        auto piece = kernel_symbol<decltype(&ork_blas_xdsyr_in_thread)>(
                            std::is_same_v<T, double> ? "ork_blas_xdsyr_in_thread" : "ork_blas_xssyr_in_thread");
                        using P = void (*)(const char*, const idx*, const T*, const T*, const idx*, T*, const idx*, const idx*, const idx*);
                        reinterpret_cast<P>(piece)(uplo, &n, &alpha, x.p(), &x.inc, r.a.data(), &r.lda, &first, &last);
                    }
                    first = last + 1;
                }
                EXPECT_TRUE(same_all(r.a, whole)) << "pieces, rank2=" << two << " " << uplo;
            }
        }
}

}  // namespace
