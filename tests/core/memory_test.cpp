// Running out of memory: every entry family of libork, run once, then with
// each of its allocations failed in turn, on one thread and two, must give
// the exact result or report ORK_OUT_OF_MEMORY with its outputs untouched.
#include <functional>

#include "testing.h"

namespace {

using namespace ot;
using u64 = std::uint64_t;
using Z = ork_complex16;

// Small integers (and halves): every product and sum below is exact.
template <class T> std::vector<T> ints(std::size_t n, unsigned seed) {
    std::mt19937_64 g(seed);
    std::uniform_int_distribution<int> u(-3, 3);
    std::vector<T> v(n);
    for (auto& x : v) x = make<T>(u(g), is_cx<T> ? u(g) : 0);
    return v;
}

template <class T> bool equals(T got, LC want) { return ld(got) == want; }

// The long double product sum over l < k of fa(i, l) * fb(l, j), as alpha
// times it plus beta times c0(i, j).
template <class FA, class FB, class F0>
LC product(idx k, LC alpha, FA fa, FB fb, LC beta, F0 c0, idx i, idx j) {
    LC s = 0;
    for (idx l = 0; l < k; ++l) s += fa(i, l) * fb(l, j);
    return alpha * s + beta * c0(i, j);
}

// op(X)(i, j) for a column-major X
template <class T> LC op(char t, const std::vector<T>& x, idx ldx, idx i, idx j) {
    const LC v = t == 'N' ? ld(x[i + j * ldx]) : ld(x[j + i * ldx]);
    return t == 'C' ? std::conj(v) : v;
}

// One call under test. set() puts inputs and outputs in their first state,
// call() makes the call (a returned value goes among the outputs), out() is
// every output byte and exact() whether the outputs hold the exact result.
struct probe {
    std::string name;
    std::function<void()> set, call;
    std::function<std::vector<unsigned char>()> out;
    std::function<bool()> exact;
};

template <class... V> std::vector<unsigned char> bytes(const V&... v) {
    std::vector<unsigned char> r;
    (r.insert(r.end(), reinterpret_cast<const unsigned char*>(v.data()),
              reinterpret_cast<const unsigned char*>(v.data() + v.size())),
     ...);
    return r;
}

void run_failing_each(const probe& p, int threads) {
    threads_scope ts(threads);
    SCOPED_TRACE(p.name + ", threads " + std::to_string(threads));
    p.set();
    const auto initial = p.out();
    const long before = ork_allocation_count();
    p.call();
    const long used = ork_allocation_count() - before;
    ASSERT_TRUE(p.exact()) << "with all the memory it asks for";
    const auto good = p.out();
    for (long nth = 1; nth <= used; ++nth) {
        SCOPED_TRACE("allocation " + std::to_string(nth) + " of " + std::to_string(used) + " fails");
        p.set();
        error_reports reports;
        ork_fail_allocation(nth);
        p.call();
        ork_fail_allocation(0);
        if (reports.seen.empty()) {
            EXPECT_TRUE(p.out() == good && p.exact());
        } else {
            EXPECT_EQ(reports.seen.size(), 1u);
            EXPECT_EQ(reports.seen[0].second, ORK_OUT_OF_MEMORY);
            EXPECT_EQ(ork_last_error(), ORK_OUT_OF_MEMORY);
            EXPECT_TRUE(p.out() == initial) << "outputs touched";
        }
    }
}

// ---- the probes, one or a few per family

// C := alpha*op(A)*op(B) + beta*C through `f` (gemm, gemm3m or a mixed
// product, A of element type TA); n = 160 splits over two threads.
template <class TA, class T, class F>
probe gemm_probe(std::string name, F f, char ta, char tb, idx m, idx n, idx k, T alpha, T beta) {
    struct data {
        std::vector<TA> a;
        std::vector<T> b, c, c0;
    };
    auto d = std::make_shared<data>();
    const idx lda = (ta == 'N' ? m : k) + 1, ldb = (tb == 'N' ? k : n) + 2, ldc = m + 3;
    probe p;
    p.name = name + " " + ta + tb;
    p.set = [=] {
        d->a = ints<TA>(std::size_t(lda * (ta == 'N' ? k : m)), 1);
        d->b = ints<T>(std::size_t(ldb * (tb == 'N' ? n : k)), 2);
        d->c = d->c0 = ints<T>(std::size_t(ldc * n), 3);
    };
    p.call = [=] {
        const char fa[2] = {ta, 0}, fb[2] = {tb, 0};
        f(fa, fb, &m, &n, &k, &alpha, d->a.data(), &lda, d->b.data(), &ldb, &beta, d->c.data(), &ldc);
    };
    p.out = [=] { return bytes(d->c); };
    p.exact = [=] {
        for (idx j = 0; j < n; ++j)
            for (idx i = 0; i < m; ++i) {
                const LC want = product(
                    k, ld(alpha), [&](idx r, idx l) { return op(ta, d->a, lda, r, l); },
                    [&](idx l, idx s) { return op(tb, d->b, ldb, l, s); }, ld(beta),
                    [&](idx r, idx s) { return ld(d->c0[r + s * ldc]); }, i, j);
                if (!equals(d->c[i + j * ldc], want)) return false;
            }
        return true;
    };
    return p;
}

// op(A)(i, j) of a triangle stored in A: zero outside it (where A holds
// random values that must not be read), 1 on a unit diagonal
template <class T> LC op_tri(char t, const std::vector<T>& a, idx lda, bool lower, idx i, idx j) {
    const idx r = t == 'N' ? i : j, c = t == 'N' ? j : i;
    if (r == c) return 1;
    if ((r > c) != lower) return 0;
    return op(t, a, lda, i, j);
}

// A unit triangle (the other triangle random, never to be read) with
// entries of magnitude 1 on two off-diagonals only: its solves are integer
// vectors of modest size, so exact.
template <class T> std::vector<T> unit_triangle(idx n, idx lda, bool lower, unsigned seed) {
    auto a = ints<T>(std::size_t(lda * n), seed);
    for (idx j = 0; j < n; ++j)
        for (idx i = 0; i < n; ++i) {
            if ((i > j) != lower && i != j) continue;
            const idx d = i > j ? i - j : j - i;
            a[i + j * lda] = d == 0                 ? make<T>(1)
                             : d == 1 || d == 37 ? make<T>((i + j) % 2 ? 1 : -1, j % 2)
                                                 : make<T>(0);
        }
    return a;
}

// B := alpha*op(A)*B or its solve; exact through the product: for trsm, the
// result X satisfies op(A)*X = alpha*B0 (side L) or X*op(A) = alpha*B0.
template <class T>
probe triangular_probe(bool solve, char side, char uplo, char trans, idx m, idx n) {
    struct data {
        std::vector<T> a, b, b0;
    };
    auto d = std::make_shared<data>();
    const bool left = side == 'L';
    const idx na = left ? m : n, lda = na + 1, ldb = m + 2;
    const T alpha = make<T>(1);  // integers stay integers in the solve
    probe p;
    p.name = std::string(solve ? "trsm " : "trmm ") + side + uplo + trans;
    p.set = [=] {
        d->a = unit_triangle<T>(na, lda, uplo == 'L', 4);
        d->b = d->b0 = ints<T>(std::size_t(ldb * n), 5);
    };
    p.call = [=] {
        const char s[2] = {side, 0}, u[2] = {uplo, 0}, t[2] = {trans, 0};
        if constexpr (std::is_same_v<T, double>) {
            (solve ? ork_blas_dtrsm : ork_blas_dtrmm)(s, u, t, "U", &m, &n, &alpha, d->a.data(), &lda, d->b.data(), &ldb);
        } else {
            (solve ? ork_blas_ztrsm : ork_blas_ztrmm)(s, u, t, "U", &m, &n, &alpha, d->a.data(), &lda, d->b.data(), &ldb);
        }
    };
    p.out = [=] { return bytes(d->b); };
    p.exact = [=] {
        // the product side: P = op(A)*X or X*op(A), to equal B0 (solve) or
        // the result to equal op(A)*B0 (multiply)
        const std::vector<T>& x = solve ? d->b : d->b0;
        auto fa = [&](idx i, idx l) { return op_tri(trans, d->a, lda, uplo == 'L', i, l); };
        auto fx = [&](idx i, idx l) { return ld(x[i + l * ldb]); };
        auto none = [](idx, idx) { return LC(0); };
        for (idx j = 0; j < n; ++j)
            for (idx i = 0; i < m; ++i) {
                const LC prod = left ? product(m, 1, fa, fx, 0, none, i, j) : product(n, 1, fx, fa, 0, none, i, j);
                if (solve ? prod != ld(d->b0[i + j * ldb]) : !equals(d->b[i + j * ldb], prod)) return false;
            }
        return true;
    };
    return p;
}

// symm, hemm, syr2k, her2k: C := ... with A (and B) expanded from the stored triangle.
template <class T>
probe symmetric_probe(const char* kind, char side_or_trans, char uplo, idx m, idx n, idx k) {
    struct data {
        std::vector<T> a, b, c, c0;
    };
    auto d = std::make_shared<data>();
    const std::string what = kind;
    const bool symm = what == "symm" || what == "hemm", herm = what[0] == 'h';
    const bool left = side_or_trans == 'L', nt = side_or_trans == 'N';
    const idx na = symm ? (left ? m : n) : 0;
    const idx ar = symm ? na : (nt ? n : k), ac = symm ? na : (nt ? k : n), lda = ar + 1, ldb = (symm ? m : ar) + 2,
              ldc = (symm ? m : n) + 1, cn = symm ? n : n;
    const T alpha = make<T>(2, herm ? 1 : 0), beta = make<T>(-1);
    probe p;
    p.name = what + " " + side_or_trans + uplo;
    p.set = [=] {
        d->a = ints<T>(std::size_t(lda * ac), 6);
        d->b = ints<T>(std::size_t(ldb * (symm ? n : ac)), 7);
        d->c = d->c0 = ints<T>(std::size_t(ldc * cn), 8);
        if (herm)  // the diagonal the Hermitian routines read and write as real
            for (idx j = 0; j < (symm ? na : n); ++j) {
                auto& x = symm ? d->a[j + j * lda] : d->c[j + j * ldc];
                x = make<T>(re(x));
                if (!symm) d->c0[j + j * ldc] = x;
            }
    };
    p.call = [=] {
        const char f[2] = {side_or_trans, 0}, u[2] = {uplo, 0};
        const double rbeta = -1;
        if constexpr (std::is_same_v<T, double>) {
            if (symm) ork_blas_dsymm(f, u, &m, &n, &alpha, d->a.data(), &lda, d->b.data(), &ldb, &beta, d->c.data(), &ldc);
            else ork_blas_dsyr2k(u, f, &n, &k, &alpha, d->a.data(), &lda, d->b.data(), &ldb, &beta, d->c.data(), &ldc);
        } else {
            if (symm) ork_blas_zhemm(f, u, &m, &n, &alpha, d->a.data(), &lda, d->b.data(), &ldb, &beta, d->c.data(), &ldc);
            else ork_blas_zher2k(u, f, &n, &k, &alpha, d->a.data(), &lda, d->b.data(), &ldb, &rbeta, d->c.data(), &ldc);
        }
    };
    p.out = [=] { return bytes(d->c); };
    p.exact = [=] {
        const bool lower = uplo == 'L';
        auto sym = [&](idx i, idx j) {  // the full matrix of the stored triangle
            const bool stored = lower ? i >= j : i <= j;
            const LC v = stored ? ld(d->a[i + j * lda]) : ld(d->a[j + i * lda]);
            return stored || !herm ? v : std::conj(v);
        };
        auto bm = [&](idx i, idx j) { return ld(d->b[i + j * ldb]); };
        auto c0 = [&](idx i, idx j) { return ld(d->c0[i + j * ldc]); };
        auto none = [](idx, idx) { return LC(0); };
        for (idx j = 0; j < cn; ++j)
            for (idx i = 0; i < (symm ? m : n); ++i) {
                LC want;
                if (symm) {
                    want = left ? product(m, ld(alpha), sym, bm, ld(beta), c0, i, j)
                                : product(n, ld(alpha), bm, sym, ld(beta), c0, i, j);
                } else {
                    if (lower ? i < j : i > j) continue;  // the other triangle is not referenced
                    auto a_ = [&](idx r, idx l) { return nt ? ld(d->a[r + l * lda]) : std::conj(ld(d->a[l + r * lda])); };
                    auto b_ = [&](idx r, idx l) { return nt ? ld(d->b[r + l * ldb]) : std::conj(ld(d->b[l + r * ldb])); };
                    // alpha*A*B^H + conj(alpha)*B*A^H + beta*C
                    want = product(k, ld(alpha), a_, [&](idx l, idx s) { return std::conj(b_(s, l)); }, -1, c0, i, j) +
                           product(k, std::conj(ld(alpha)), b_, [&](idx l, idx s) { return std::conj(a_(s, l)); }, 0,
                                   none, i, j);
                }
                if (!equals(d->c[i + j * ldc], want)) return false;
            }
        return true;
    };
    return p;
}

// a reduction over a long vector (blocks of partial sums); exact with integers
probe reduction_probe() {
    auto x = std::make_shared<std::vector<double>>(), y = std::make_shared<std::vector<double>>();
    auto r = std::make_shared<std::vector<double>>(3);
    const idx n = (idx(1) << 18) + 5, inc = 1, neg = -1;
    probe p;
    p.name = "ddot, dasum, zdotc";
    p.set = [=] {
        *x = ints<double>(std::size_t(n), 9);
        *y = ints<double>(std::size_t(n), 10);
        r->assign(3, -0.5);
    };
    p.call = [=] {
        (*r)[0] = ork_blas_ddot(&n, x->data(), &inc, y->data(), &neg);
        (*r)[1] = ork_blas_dasum(&n, x->data(), &inc);
        const idx half = n / 2;
        const Z z = ork_blas_zdotc(&half, reinterpret_cast<const Z*>(x->data()), &inc,
                                   reinterpret_cast<const Z*>(y->data()), &inc);
        (*r)[2] = z.re + 3 * z.im;
    };
    p.out = [=] { return bytes(*r); };
    p.exact = [=] {
        long double dot = 0, asum = 0, zre = 0, zim = 0;
        for (idx i = 0; i < n; ++i) dot += (*x)[std::size_t(i)] * (*y)[std::size_t(n - 1 - i)];
        for (double v : *x) asum += std::fabs(v);
        for (idx i = 0; i + 1 < 2 * (n / 2); i += 2) {
            const LC a((*x)[std::size_t(i)], (*x)[std::size_t(i + 1)]), b((*y)[std::size_t(i)], (*y)[std::size_t(i + 1)]);
            const LC s = std::conj(a) * b;
            zre += s.real();
            zim += s.imag();
        }
        return (*r)[0] == dot && (*r)[1] == asum && (*r)[2] == zre + 3 * zim;
    };
    return p;
}

// y := alpha*op(A)*x + beta*y, large enough to split (level 2 takes no memory)
probe gemv_probe(char trans) {
    auto a = std::make_shared<std::vector<double>>(), x = std::make_shared<std::vector<double>>(),
         y = std::make_shared<std::vector<double>>(), y0 = std::make_shared<std::vector<double>>();
    const idx m = 700, n = 500, lda = m + 1, incx = -2, incy = 1;
    const idx lx = trans == 'N' ? n : m, ly = trans == 'N' ? m : n;
    const double alpha = 2, beta = -1;
    probe p;
    p.name = std::string("dgemv ") + trans;
    p.set = [=] {
        *a = ints<double>(std::size_t(lda * n), 15);
        *x = ints<double>(std::size_t(2 * lx), 16);
        *y = *y0 = ints<double>(std::size_t(ly), 17);
    };
    p.call = [=] {
        const char t[2] = {trans, 0};
        ork_blas_dgemv(t, &m, &n, &alpha, a->data(), &lda, x->data(), &incx, &beta, y->data(), &incy);
    };
    p.out = [=] { return bytes(*y); };
    p.exact = [=] {
        for (idx i = 0; i < ly; ++i) {
            const LC want = product(
                lx, alpha, [&](idx r, idx l) { return op(trans, *a, lda, r, l); },
                [&](idx l, idx) { return LC((*x)[std::size_t(2 * (lx - 1 - l))]); }, beta,
                [&](idx r, idx) { return LC((*y0)[std::size_t(r)]); }, i, 0);
            if (!equals((*y)[std::size_t(i)], want)) return false;
        }
        return true;
    };
    return p;
}

// x := op(A)*x on a triangle large enough to split, and the solve
probe trmv_probe(char uplo, char trans, idx incx) {
    auto a = std::make_shared<std::vector<double>>(), x = std::make_shared<std::vector<double>>(),
         x0 = std::make_shared<std::vector<double>>();
    const idx n = 800, lda = n + 1, step = incx < 0 ? -incx : incx;
    probe p;
    p.name = std::string("dtrmv ") + uplo + trans + " incx " + std::to_string(incx);
    p.set = [=] {
        *a = unit_triangle<double>(n, lda, uplo == 'L', 11);
        *x = *x0 = ints<double>(std::size_t(n * step), 12);
    };
    p.call = [=] {
        const char u[2] = {uplo, 0}, t[2] = {trans, 0};
        ork_blas_dtrmv(u, t, "N", &n, a->data(), &lda, x->data(), &incx);
    };
    p.out = [=] { return bytes(*x); };
    p.exact = [=] {
        auto at = [&](const std::vector<double>& v, idx i) { return v[std::size_t(incx > 0 ? i * step : (n - 1 - i) * step)]; };
        for (idx i = 0; i < n; ++i) {
            long double s = 0;
            for (idx l = 0; l < n; ++l) s += op_tri(trans, *a, lda, uplo == 'L', i, l).real() * at(*x0, l);
            if (at(*x, i) != s) return false;
        }
        return true;
    };
    return p;
}

// AB := alpha*op(AB) in place, non-square, and the out-of-place copy
template <class T>
probe transposition_probe(char ordering, char trans) {
    auto ab = std::make_shared<std::vector<T>>(), a0 = std::make_shared<std::vector<T>>();
    const u64 rows = 300, cols = 170;  // as stored in `ordering`
    const bool row = ordering == 'R', tp = trans == 'T' || trans == 'C';
    const u64 lda = row ? cols : rows, ldb = (row ? (tp ? rows : cols) : (tp ? cols : rows)) + 3;
    const T alpha = make<T>(2, is_cx<T> ? 1 : 0);
    probe p;
    p.name = std::string("imatcopy ") + ordering + trans;
    const u64 size = std::max(lda * (row ? rows : cols), ldb * (row == tp ? cols : rows));
    p.set = [=] {
        *ab = *a0 = ints<T>(std::size_t(size), 13);
    };
    p.call = [=] {
        const char o[2] = {ordering, 0}, t[2] = {trans, 0};
        if constexpr (std::is_same_v<T, double>) ork_trans_dimatcopy(o, t, &rows, &cols, &alpha, ab->data(), &lda, &ldb);
        else ork_trans_zimatcopy(o, t, &rows, &cols, &alpha, ab->data(), &lda, &ldb);
    };
    p.out = [=] { return bytes(*ab); };
    p.exact = [=] {
        // element (i, j) of the result, as stored in `ordering`, from (j, i)
        // (transposing) or (i, j) of the source
        const u64 rr = tp ? cols : rows, rc = tp ? rows : cols;
        for (u64 i = 0; i < rr; ++i)
            for (u64 j = 0; j < rc; ++j) {
                const u64 si = tp ? j : i, sj = tp ? i : j;
                LC src = ld((*a0)[row ? si * lda + sj : sj * lda + si]);
                if (trans == 'C' || trans == 'R') src = std::conj(src);
                const T got = (*ab)[row ? i * ldb + j : j * ldb + i];
                if (!equals(got, ld(alpha) * src)) return false;
            }
        return true;
    };
    return p;
}

// the tridiagonal solve, which asks for workspace itself and has a path
// without it; d = 1 and e = 0 (the identity), so x = b exactly
probe ptts2_probe() {
    auto b = std::make_shared<std::vector<double>>(), b0 = std::make_shared<std::vector<double>>();
    const idx n = 40, nrhs = 9, ldb = n;
    probe p;
    p.name = "dptts2";
    p.set = [=] { *b = *b0 = ints<double>(std::size_t(n * nrhs), 14); };
    p.call = [=] {
        const std::vector<double> d(std::size_t(n), 1.0), e(std::size_t(n), 0.0);
        ork_blas_dptts2(&n, &nrhs, d.data(), e.data(), b->data(), &ldb);
    };
    p.out = [=] { return bytes(*b); };
    p.exact = [=] { return *b == *b0; };
    return p;
}

std::vector<probe> every_family() {
    const idx n = 160;  // split over two threads at this size
    std::vector<probe> v;
    v.push_back(reduction_probe());
    for (char t : {'N', 'T'}) v.push_back(gemv_probe(t));
    for (char t : {'N', 'T'}) v.push_back(trmv_probe('U', t, 1));
    v.push_back(trmv_probe('L', 'N', -3));
    for (const char* t : {"NN", "TN", "NT"})
        v.push_back(gemm_probe<double>("dgemm", ork_blas_dgemm, t[0], t[1], n, n, n, 2.0, -1.0));
    v.push_back(gemm_probe<double>("dgemm by rows", ork_blas_dgemm, 'N', 'N', 1000, 9, 300, 1.0, 1.0));
    v.push_back(gemm_probe<float>("sgemm", ork_blas_sgemm, 'T', 'N', n, n - 3, n, 1.0f, 0.0f));
    v.push_back(gemm_probe<Z>("zgemm", ork_blas_zgemm, 'N', 'C', n - 1, n - 1, 70, Z{1, 1}, Z{0, 1}));
    v.push_back(gemm_probe<Z>("zgemm3m", ork_blas_zgemm3m, 'C', 'N', n, n, 70, Z{1, -1}, Z{2, 0}));
    v.push_back(gemm_probe<double, Z>("dzgemm", ork_blas_dzgemm, 'N', 'T', n, n, 70, Z{1, 2}, Z{0, 0}));
    for (bool solve : {false, true})
        for (const char* f : {"LLN", "LUT", "RUN", "RLC"})
            v.push_back(f[2] == 'C' ? triangular_probe<Z>(solve, f[0], f[1], f[2], n, n - 8)
                                    : triangular_probe<double>(solve, f[0], f[1], f[2], n, n + 8));
    v.push_back(symmetric_probe<double>("symm", 'L', 'U', n, n, 0));
    v.push_back(symmetric_probe<double>("symm", 'R', 'L', n, n, 0));
    v.push_back(symmetric_probe<double>("syr2k", 'N', 'L', 0, 300, 70));
    v.push_back(symmetric_probe<double>("syr2k", 'T', 'U', 0, 300, 70));
    v.push_back(symmetric_probe<Z>("hemm", 'L', 'L', n, n - 16, 0));
    v.push_back(symmetric_probe<Z>("her2k", 'N', 'U', 0, 200, 40));
    v.push_back(symmetric_probe<Z>("her2k", 'C', 'L', 0, 200, 40));
    v.push_back(ptts2_probe());
    for (char o : {'R', 'C'})
        for (char t : {'T', 'N'}) v.push_back(transposition_probe<double>(o, t));
    v.push_back(transposition_probe<Z>('C', 'C'));
    return v;
}

class OutOfMemory : public ::testing::TestWithParam<int> {};

TEST_P(OutOfMemory, EveryFamilyExactOrReportedUntouched) {
    for (const probe& p : every_family()) run_failing_each(p, GetParam());
}
INSTANTIATE_TEST_SUITE_P(Threads, OutOfMemory, ::testing::Values(1, 2));

// The report itself: its message and that the record reads it back.
TEST(OutOfMemory, ReportNamesTheRoutine) {
    EXPECT_STREQ(ork_serv_ork_get_msg(9, 1, "ork_blas_dtrsm"),
                 "ork: not enough memory for ork_blas_dtrsm; its outputs are unchanged");
    const idx m = 64, n = 64;
    std::vector<double> a(std::size_t(m * m), 0.0), b(std::size_t(m * n), 1.0);
    for (idx i = 0; i < m; ++i) a[std::size_t(i + i * m)] = 2;
    error_reports reports;
    ork_fail_allocation(1);
    const double two = 2;
    ork_blas_dtrsm("L", "U", "N", "N", &m, &n, &two, a.data(), &m, b.data(), &m);
    ork_fail_allocation(0);
    EXPECT_TRUE(reports.one("ork_blas_dtrsm", ORK_OUT_OF_MEMORY));
    EXPECT_STREQ(ork_last_error_routine(), "ork_blas_dtrsm");
    EXPECT_TRUE(std::all_of(b.begin(), b.end(), [](double v) { return v == 1; }));
}

}  // namespace
