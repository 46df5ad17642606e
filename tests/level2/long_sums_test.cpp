// Long reductions whose order of summation is ork's to choose (level-2
// products and solves down one column or along one row, and the single and
// complex level-1 sums): through libork's entries, their error against a
// compensated long double sum stays within a fixed multiple of the working
// precision as the run grows, up to 10^7 equal values down one column.
#include "level2_testing.h"

using namespace ot;

namespace {

// Every error here is within this many units of eps<T> of the sum of the
// terms' magnitudes. The plain running sums these reductions used to be
// reached some 4*10^5 of them on 10^7 equal values.
constexpr long double bound_eps = 64;

// Sum in long double with each addition's error kept (two-sum): its own
// error is of the order of 2^-64 of the sum, far below what is measured.
struct exact_sum {
    long double hi = 0, lo = 0;
    void add(long double v) {
        const long double s = hi + v, bb = s - hi;
        lo += (hi - (s - bb)) + (v - bb);
        hi = s;
    }
    long double total() const { return hi + lo; }
};

// |got - sum of the terms| in units of eps<T> times the sum of their
// magnitudes; term(i) gives a term and its magnitude, the first of them
// being `first`, outside the run.
template <class T, class Term>
long double error_in_eps(T got, idx n, Term term, std::pair<LC, long double> first = {0, 0}) {
    exact_sum re, im, mag;
    re.add(first.first.real()), im.add(first.first.imag()), mag.add(first.second);
    for (idx i = 0; i < n; ++i) {
        const auto [v, m] = term(i);
        re.add(v.real()), im.add(v.imag()), mag.add(m);
    }
    const LC g = ld(got);
    const long double e = std::max(std::fabs(g.real() - re.total()), std::fabs(g.imag() - im.total()));
    return e / (eps<T> * mag.total());
}

// The runs' elements: all equal (each addition of a plain sum then rounds
// the same way), or positive and varied.
enum class data { equal, varied };
template <class T> T value(data d, int which, idx i) {
    if (d == data::equal) return which ? make<T>(0.1, 0.3) : make<T>(1 / 3.0, 0.7);
    std::uint64_t h = std::uint64_t(i) * 2 + std::uint64_t(which) + 0x9e3779b97f4a7c15ULL;
    h = (h ^ (h >> 30)) * 0xbf58476d1ce4e5b9ULL;
    h = (h ^ (h >> 27)) * 0x94d049bb133111ebULL;
    h ^= h >> 31;
    return make<T>(0.5 + double(h >> 40) * 0x1p-25, 0.5 + double(h & 0xffffff) * 0x1p-25);
}
template <class T> LC op_ld(T a, bool conj) { return conj ? std::conj(ld(a)) : ld(a); }

// ---- the entries of each element type
template <class T> struct entries;
#define OT_LONG(p, T, sy, sb, sp)                                                                                       \
    template <> struct entries<T> {                                                                                     \
        static constexpr auto gemv = &ork_blas_##p##gemv, gbmv = &ork_blas_##p##gbmv;                                   \
        static constexpr auto symv = &ork_blas_##sy, sbmv = &ork_blas_##sb, spmv = &ork_blas_##sp;                      \
        static constexpr auto trmv = &ork_blas_##p##trmv, tbmv = &ork_blas_##p##tbmv, tpmv = &ork_blas_##p##tpmv;       \
        static constexpr auto trsv = &ork_blas_##p##trsv, tbsv = &ork_blas_##p##tbsv, tpsv = &ork_blas_##p##tpsv;       \
    };
OT_LONG(s, float, ssymv, ssbmv, sspmv)
OT_LONG(d, double, dsymv, dsbmv, dspmv)
OT_LONG(c, ork_complex8, chemv, chbmv, chpmv)
OT_LONG(z, ork_complex16, zhemv, zhbmv, zhpmv)
#undef OT_LONG

template <class T> class LongSums : public ::testing::Test {};
TYPED_TEST_SUITE(LongSums, ElementTypes);

// y := A'*x (and A^H*x) with A one column of 10^7 equal values, x the same
// column: the product of scipy's orth(ones((10**7, 2))).
TYPED_TEST(LongSums, TenMillionEqualValuesDownOneColumn) {
    using T = TypeParam;
    const idx m = 10000000, one = 1;
    std::vector<T> a(std::size_t(m), value<T>(data::equal, 1, 0));
    const T alpha = make<T>(1), beta = make<T>(0);
    for (const char* trans : is_cx<T> ? std::vector<const char*>{"T", "C"} : std::vector<const char*>{"T"}) {
        T y = make<T>(NAN, NAN);
        entries<T>::gemv(trans, &m, &one, &alpha, a.data(), &m, a.data(), &one, &beta, &y, &one);
        const bool conj = trans[0] == 'C';
        const long double e = error_in_eps(y, m, [&](idx i) {
            const T v = a[std::size_t(i)];
            return std::pair{op_ld(v, conj) * ld(v), mag1(v) * mag1(v)};
        });
        EXPECT_LE(e, bound_eps) << "gemv " << trans;
    }
}

// One long run of each reduction, x with increment inc: through the general
// products down one column (gemv T, C; gbmv with every row below the
// diagonal) and along one row (gemv N), and through the level-1 sums.
template <class T> struct run_case {
    const char* name;
    bool strided_too;  // also run with x at increment 2
    // (n, data, inc) -> the error in eps
    std::function<long double(idx, data, idx)> error;
};

template <class T> std::vector<run_case<T>> vector_runs() {
    using E = entries<T>;
    const T alpha = make<T>(1), beta = make<T>(0);
    auto fill = [](idx n, data d, int which, idx inc) {
        std::vector<T> v(std::size_t(n * inc), make<T>(NAN, NAN));
        for (idx i = 0; i < n; ++i) v[std::size_t(i * inc)] = value<T>(d, which, i);
        return v;
    };
    auto dot_error = [](T got, idx n, data d, bool conj) {
        return error_in_eps(got, n, [&](idx i) {
            const T a = value<T>(d, 0, i), x = value<T>(d, 1, i);
            return std::pair{op_ld(a, conj) * ld(x), mag1(a) * mag1(x)};
        });
    };
    std::vector<run_case<T>> r;
    for (const char* trans : {"T", "C"}) {
        if (!is_cx<T> && trans[0] == 'C') continue;
        r.push_back({trans[0] == 'T' ? "gemv T, one column" : "gemv C, one column", true, [=](idx n, data d, idx inc) {
                         const idx one = 1;
                         auto a = fill(n, d, 0, 1), x = fill(n, d, 1, inc);
                         T y = make<T>(NAN, NAN);
                         E::gemv(trans, &n, &one, &alpha, a.data(), &n, x.data(), &inc, &beta, &y, &one);
                         return dot_error(y, n, d, trans[0] == 'C');
                     }});
        r.push_back({trans[0] == 'T' ? "gbmv T, full lower band" : "gbmv C, full lower band", true,
                     [=](idx n, data d, idx inc) {
                         const idx one = 1, kl = n - 1, ku = 0;
                         auto a = fill(n, d, 0, 1), x = fill(n, d, 1, inc);
                         T y = make<T>(NAN, NAN);
                         E::gbmv(trans, &n, &one, &kl, &ku, &alpha, a.data(), &n, x.data(), &inc, &beta, &y, &one);
                         return dot_error(y, n, d, trans[0] == 'C');
                     }});
    }
    r.push_back({"gemv N, one row", true, [=](idx n, data d, idx inc) {
                     const idx one = 1;
                     auto a = fill(n, d, 0, 1), x = fill(n, d, 1, inc);
                     T y = make<T>(NAN, NAN);
                     E::gemv("N", &one, &n, &alpha, a.data(), &one, x.data(), &inc, &beta, &y, &one);
                     return dot_error(y, n, d, false);
                 }});
    // the level-1 sums of single and complex vectors (the double ones keep
    // their fixed orders and are not ork's to choose)
    if constexpr (!std::is_same_v<T, double>) {
        for (bool conj : {false, true}) {
            if (conj && !is_cx<T>) continue;
            r.push_back({conj ? "dotc" : "dot", true, [=](idx n, data d, idx inc) {
                             auto a = fill(n, d, 0, inc), x = fill(n, d, 1, inc);
                             const auto f = conj ? api<T>::dotc.lib : api<T>::dotu.lib;
                             return dot_error(f(&n, a.data(), &inc, x.data(), &inc), n, d, conj);
                         }});
            r.push_back({conj ? "dotci" : "doti", false, [=](idx n, data d, idx) {
                             auto a = fill(n, d, 0, 1), x = fill(n, d, 1, 1);
                             std::vector<idx> indx(static_cast<std::size_t>(n));
                             for (idx i = 0; i < n; ++i) indx[std::size_t(i)] = i + 1;
                             const auto f = conj ? api<T>::dotci.lib : api<T>::dotui.lib;
                             return dot_error(f(&n, a.data(), indx.data(), x.data()), n, d, conj);
                         }});
        }
        r.push_back({"nrm2", true, [=](idx n, data d, idx inc) {
                         auto x = fill(n, d, 1, inc);
                         const real_t<T> got = api<T>::nrm2.lib(&n, x.data(), &inc);
                         exact_sum ssq;
                         for (idx i = 0; i < n; ++i) ssq.add(std::norm(ld(value<T>(d, 1, i))));
                         const long double want = std::sqrt(ssq.total());
                         return std::fabs(got - want) / (eps<T> * want);
                     }});
        r.push_back({"asum", true, [=](idx n, data d, idx inc) {
                         auto x = fill(n, d, 1, inc);
                         const real_t<T> got = api<T>::asum.lib(&n, x.data(), &inc);
                         return error_in_eps(make<T>(got), n, [&](idx i) {
                             const long double m = mag1(value<T>(d, 1, i));
                             return std::pair{LC(m), m};
                         });
                     }});
    }
    return r;
}

TYPED_TEST(LongSums, VectorRunsKeepTheirErrorAsTheyGrow) {
    using T = TypeParam;
    for (const auto& c : vector_runs<T>())
        for (idx n : {1000, 100000, 1000000})
            for (data d : {data::equal, data::varied})
                for (idx inc : {1, 2}) {
                    if (inc == 2 && (!c.strided_too || n > 100000)) continue;
                    const long double e = c.error(n, d, inc);
                    EXPECT_LE(e, bound_eps) << c.name << " n=" << n << " data=" << int(d) << " inc=" << inc;
                }
}

// The symmetric (Hermitian) products and the triangular products and
// solves, with a lower triangle whose only nonzero column is the first:
// y_0 (symmetric), x_0 (transposed products), or x_0 of the transposed unit
// solves (the other unknowns being their right-hand sides) is then one long
// sum down that column. Its first n slots are the column in all three
// storages (full with lda = n, band with k = n - 1, packed). And the
// symmetric products with only the last row nonzero: y_(n-1) is then the
// sum of the updates of all columns.
TYPED_TEST(LongSums, ColumnRunsOfSymmetricAndTriangularRoutines) {
    using T = TypeParam;
    using E = entries<T>;
    const T alpha = make<T>(1), beta = make<T>(0);
    const char* opt = is_cx<T> ? "C" : "T";
    const bool conj = is_cx<T>;
    for (idx n : {700, 2000})
        for (data d : {data::equal, data::varied})
            for (idx inc : {1, 2})
                for (int storage = 0; storage < 3; ++storage)
                    for (int routine = 0; routine < 4; ++routine) {  // symmetric, product, solve, last row
                        SCOPED_TRACE(::testing::Message() << "n=" << n << " data=" << int(d) << " inc=" << inc
                                                          << " storage=" << storage << " routine=" << routine);
                        std::vector<T> a(std::size_t(storage == 2 ? n * (n + 1) / 2 : n * n), make<T>(0));
                        // slot of element (i, j) of the lower triangle
                        auto slot = [&](idx i, idx j) {
                            return std::size_t(storage == 2 ? j * n - j * (j - 1) / 2 + (i - j) : storage == 1 ? (i - j) + j * n : i + j * n);
                        };
                        const bool last_row = routine == 3;
                        for (idx i = 0; i < n; ++i) a[last_row ? slot(n - 1, i) : slot(i, 0)] = value<T>(d, 0, i);
                        T& corner = a[last_row ? slot(n - 1, n - 1) : 0];
                        if (routine == 0 || last_row) corner = make<T>(re(corner));  // a Hermitian diagonal is real
                        std::vector<T> x(std::size_t(n * inc), make<T>(NAN, NAN));
                        for (idx i = 0; i < n; ++i) x[std::size_t(i * inc)] = value<T>(d, 1, i);
                        const idx k = n - 1;
                        T got;
                        if (last_row) {
                            std::vector<T> y(std::size_t(n), make<T>(NAN, NAN));
                            const idx one = 1;
                            if (storage == 0) E::symv("L", &n, &alpha, a.data(), &n, x.data(), &inc, &beta, y.data(), &one);
                            if (storage == 1) E::sbmv("L", &n, &k, &alpha, a.data(), &n, x.data(), &inc, &beta, y.data(), &one);
                            if (storage == 2) E::spmv("L", &n, &alpha, a.data(), x.data(), &inc, &beta, y.data(), &one);
                            const long double e = error_in_eps(y[std::size_t(n - 1)], n, [&](idx j) {
                                const T aj = a[slot(n - 1, j)], xj = value<T>(d, 1, j);
                                return std::pair{ld(aj) * ld(xj), mag1(aj) * mag1(xj)};
                            });
                            EXPECT_LE(e, bound_eps);
                            continue;
                        }
                        if (routine == 0) {
                            std::vector<T> y(std::size_t(n), make<T>(NAN, NAN));
                            const idx one = 1;
                            if (storage == 0) E::symv("L", &n, &alpha, a.data(), &n, x.data(), &inc, &beta, y.data(), &one);
                            if (storage == 1) E::sbmv("L", &n, &k, &alpha, a.data(), &n, x.data(), &inc, &beta, y.data(), &one);
                            if (storage == 2) E::spmv("L", &n, &alpha, a.data(), x.data(), &inc, &beta, y.data(), &one);
                            got = y[0];
                        } else {
                            const char* diag = routine == 1 ? "N" : "U";
                            if (routine == 1) {
                                if (storage == 0) E::trmv("L", opt, diag, &n, a.data(), &n, x.data(), &inc);
                                if (storage == 1) E::tbmv("L", opt, diag, &n, &k, a.data(), &n, x.data(), &inc);
                                if (storage == 2) E::tpmv("L", opt, diag, &n, a.data(), x.data(), &inc);
                            } else {
                                if (storage == 0) E::trsv("L", opt, diag, &n, a.data(), &n, x.data(), &inc);
                                if (storage == 1) E::tbsv("L", opt, diag, &n, &k, a.data(), &n, x.data(), &inc);
                                if (storage == 2) E::tpsv("L", opt, diag, &n, a.data(), x.data(), &inc);
                            }
                            got = x[0];
                        }
                        // the first term, then s*sum over i >= 1 of op(a_i)*x_i
                        // (the mirror of a Hermitian column, and trans C, conjugate a)
                        const T a0 = a[0], x0 = value<T>(d, 1, 0);
                        const long double s = routine == 2 ? -1 : 1;
                        const LC first = routine == 2 ? ld(x0) : op_ld(a0, conj) * ld(x0);
                        const long double e = error_in_eps(
                            got, n - 1,
                            [&](idx i) {
                                const T ai = a[std::size_t(i + 1)], xi = value<T>(d, 1, i + 1);
                                return std::pair{s * op_ld(ai, conj) * ld(xi), mag1(ai) * mag1(xi)};
                            },
                            {first, mag1(first)});
                        EXPECT_LE(e, bound_eps);
                    }
}

}  // namespace

namespace {

// Rows longer than 512 columns take workspace; without it the product runs
// the plain way and is still right (within the plain sum's bound).
TYPED_TEST(LongSums, LongRowsWithoutWorkspace) {
    using T = TypeParam;
    const idx m = 3, n = 1500, incx = 1, incy = 2;
    std::vector<T> a(static_cast<std::size_t>(m * n)), x(static_cast<std::size_t>(n));
    std::vector<T> y(static_cast<std::size_t>(2 * m), make<T>(NAN, NAN));
    for (idx i = 0; i < m * n; ++i) a[std::size_t(i)] = value<T>(data::varied, 0, i);
    for (idx j = 0; j < n; ++j) x[std::size_t(j)] = value<T>(data::varied, 1, j);
    const T alpha = make<T>(1), beta = make<T>(0);
    for (bool fail : {false, true}) {
        const long before = ork_allocation_count();
        if (fail) ork_fail_allocation(1);
        entries<T>::gemv("N", &m, &n, &alpha, a.data(), &m, x.data(), &incx, &beta, y.data(), &incy);
        ork_fail_allocation(0);
        EXPECT_EQ(ork_allocation_count() - before, 1);  // the workspace, asked for either way
        for (idx i = 0; i < m; ++i) {
            const long double e = error_in_eps(y[std::size_t(2 * i)], n, [&](idx j) {
                const T aij = a[std::size_t(i + j * m)], xj = x[std::size_t(j)];
                return std::pair{ld(aij) * ld(xj), mag1(aij) * mag1(xj)};
            });
            EXPECT_LE(e, fail ? n : bound_eps) << "row " << i << (fail ? " without workspace" : "");
        }
    }
}

}  // namespace
