// Transposition and scaled addition against naive loops in the element's own
// arithmetic (each result element is one product, or a sum of two, so it is
// predicted bit for bit): every type, ordering and letter through libork's
// entries, the kernel library's dispatchers and each kernel by name; guard
// zones around every output; in-place forms with changing leading
// dimensions; the order of the in-place recursion; unknown letters; argument
// errors; thread counts.
#include "trans_testing.h"

namespace {

using namespace ot;
using u64 = std::uint64_t;


// The kernel library's export `<prefix><rest>` with the type of F.
template <class T, class F> F kern(F, const std::string& rest) {
    return kernel_symbol<F>((tr<T>::prefix + rest).c_str());
}
template <class F, class T> F kern_as(const std::string& rest) { return kern<T>(F{}, rest); }

bool transposing(char o) { return o == 'T' || o == 't' || o == 'C' || o == 'c'; }
template <class T> T apply(char o, T alpha, T x) {
    const bool c = o == 'R' || o == 'r' || o == 'C' || o == 'c';
    return mul(alpha, c ? conj(x) : x);
}

// Element (i, j) of a matrix stored in `row`-major order: consecutive
// elements of a row (of a column in column-major) are `stride` apart.
struct layout {
    bool row;
    u64 ld, stride = 1;
    u64 at(u64 i, u64 j) const { return row ? i * ld + j * stride : j * ld + i * stride; }
    u64 extent(u64 m, u64 n) const { return m && n ? at(m - 1, n - 1) + 1 : 0; }
};

// A buffer of `n` slots plus a guard tail, sentinels outside the random matrix.
template <class T> std::vector<T> filled(u64 n, const layout& l, u64 m, u64 k, std::mt19937_64& g) {
    std::vector<T> v(n + 8, sentinel<T>());
    for (u64 i = 0; i < m; ++i)
        for (u64 j = 0; j < k; ++j) v[l.at(i, j)] = rnd<T>(g);
    return v;
}

// Destination slots of (m x n, l) hold want(i, j) bit for bit; every other
// slot of the buffer is unchanged from `before`, unless only_result.
template <class T, class W>
::testing::AssertionResult check(const std::vector<T>& got, const std::vector<T>& before, const layout& l, u64 m,
                                 u64 n, W want, bool only_result = false) {
    std::vector<char> dest(got.size(), 0);
    for (u64 i = 0; i < m; ++i)
        for (u64 j = 0; j < n; ++j) {
            dest[l.at(i, j)] = 1;
            T w = want(i, j);
            if (!same(got[l.at(i, j)], w))
                return ::testing::AssertionFailure() << "(" << i << "," << j << "): got " << ld(got[l.at(i, j)])
                                                     << ", want " << ld(w);
        }
    for (std::size_t s = 0; s < got.size(); ++s)
        if (!dest[s] && !same(got[s], before[s]) && !(only_result && s < got.size() - 8))
            return ::testing::AssertionFailure() << "slot " << s << " outside the result was written";
    return ::testing::AssertionSuccess();
}

template <class T> class Trans : public ::testing::Test {};
TYPED_TEST_SUITE(Trans, ElementTypes);

struct shape {
    u64 rows, cols;
};
const shape shapes[] = {{1, 1}, {2, 3}, {5, 3}, {4, 4}, {9, 17}, {40, 33}, {64, 5}};
const char orderings[] = {'R', 'C', 'r', 'c'};
const char letters[] = "NTRCntrc";

// B = alpha*op(A) by omatcopy and omatcopy2, through libork and the kernel
// library's dispatchers, with and without element strides.
TYPED_TEST(Trans, OutOfPlaceCopies) {
    using T = TypeParam;
    std::mt19937_64 g(11);
    const auto k1 = kern<T>(tr<T>::omatcopy, "omatcopy");
    const auto k2 = kern<T>(tr<T>::omatcopy2, "omatcopy2");
    for (char ord : orderings)
        for (const char* t = letters; *t; ++t)
            for (shape s : shapes)
                for (int path = 0; path < 4; ++path) {
                    const bool row = ord == 'R' || ord == 'r', tp = transposing(*t);
                    const u64 sa = path == 3 ? 2 : 1, sb = path == 3 ? 3 : 1;
                    const u64 bm = tp ? s.cols : s.rows, bn = tp ? s.rows : s.cols;
                    const layout la{row, (row ? s.cols : s.rows) * sa + 2, sa};
                    const layout lb{row, (row ? bn : bm) * sb + 1, sb};
                    const T alpha = rnd<T>(g);
                    auto a = filled<T>(la.extent(s.rows, s.cols), la, s.rows, s.cols, g);
                    std::vector<T> b(lb.extent(bm, bn) + 8, sentinel<T>());
                    const auto b0 = b;
                    const char tt[2] = {*t, 0}, oo[2] = {ord, 0};
                    if (path == 0) tr<T>::omatcopy(oo, tt, &s.rows, &s.cols, &alpha, a.data(), &la.ld, b.data(), &lb.ld);
                    if (path == 1) k1(oo, tt, &s.rows, &s.cols, &alpha, a.data(), &la.ld, b.data(), &lb.ld);
                    if (path == 2)
                        tr<T>::omatcopy2(oo, tt, &s.rows, &s.cols, &alpha, a.data(), &la.ld, &sa, b.data(), &lb.ld, &sb);
                    if (path == 3) k2(oo, tt, &s.rows, &s.cols, &alpha, a.data(), &la.ld, &sa, b.data(), &lb.ld, &sb);
                    EXPECT_TRUE(check(b, b0, lb, bm, bn, [&](u64 i, u64 j) {
                        return apply(*t, alpha, tp ? a[la.at(j, i)] : a[la.at(i, j)]);
                    })) << ord << *t << " " << s.rows << "x" << s.cols << " path " << path;
                }
}

// AB = alpha*op(AB) in place: the square path (also column-major) and cycle
// following or shifting rows when the leading dimension changes either way.
TYPED_TEST(Trans, InPlaceCopies) {
    using T = TypeParam;
    std::mt19937_64 g(12);
    const auto k = kern<T>(tr<T>::imatcopy, "imatcopy");
    struct pads {
        u64 a, b;
    };
    for (char ord : orderings)
        for (const char* t = letters; *t; ++t)
            for (shape s : shapes)
                for (pads p : {pads{0, 0}, pads{3, 0}, pads{0, 2}, pads{5, 7}})
                    for (int path = 0; path < 2; ++path) {
                        const bool row = ord == 'R' || ord == 'r', tp = transposing(*t);
                        const u64 bm = tp ? s.cols : s.rows, bn = tp ? s.rows : s.cols;
                        const layout la{row, (row ? s.cols : s.rows) + p.a}, lb{row, (row ? bn : bm) + p.b};
                        const T alpha = rnd<T>(g);
                        const u64 n = std::max(la.extent(s.rows, s.cols), lb.extent(bm, bn));
                        auto ab = filled<T>(n, la, s.rows, s.cols, g);
                        const auto a0 = ab;
                        const char tt[2] = {*t, 0}, oo[2] = {ord, 0};
                        if (path == 0) tr<T>::imatcopy(oo, tt, &s.rows, &s.cols, &alpha, ab.data(), &la.ld, &lb.ld);
                        else k(oo, tt, &s.rows, &s.cols, &alpha, ab.data(), &la.ld, &lb.ld);
                        EXPECT_TRUE(check(ab, a0, lb, bm, bn, [&](u64 i, u64 j) {
                            return apply(*t, alpha, tp ? a0[la.at(j, i)] : a0[la.at(i, j)]);
                        }, true)) << ord << *t << " " << s.rows << "x" << s.cols << " lda " << la.ld << " ldb " << lb.ld;
                    }
}

// C = alpha*op(A) + beta*op(B) for every pair of letters, out of place and
// with C in A's or B's place.
TYPED_TEST(Trans, ScaledAddition) {
    using T = TypeParam;
    std::mt19937_64 g(13);
    const auto k = kern<T>(tr<T>::omatadd, "omatadd");
    const shape sizes[] = {{1, 1}, {3, 2}, {4, 4}, {5, 4}, {9, 13}, {20, 11}};
    for (char ord : {'R', 'C'})
        for (const char* x = "NTRCt"; *x; ++x)
            for (const char* y = "NTRCc"; *y; ++y)
                for (shape s : sizes)
                    for (int mode = 0; mode < 3; ++mode)      // apart, C is A, C is B
                        for (int path = 0; path < 2; ++path) {
                            const bool row = ord == 'R', ta = transposing(*x), tb = transposing(*y);
                            if ((mode == 1 && ta) || (mode == 2 && tb)) continue;
                            const u64 m = s.rows, n = s.cols, natural = row ? n : m;
                            const layout lc{row, natural + 2};
                            const layout la = mode == 1 ? lc : layout{row, (row == ta ? m : n) + 1};
                            const layout lb = mode == 2 ? lc : layout{row, (row == tb ? m : n) + 3};
                            const T alpha = rnd<T>(g), beta = rnd<T>(g);
                            auto a = filled<T>(la.extent(ta ? n : m, ta ? m : n), la, ta ? n : m, ta ? m : n, g);
                            auto b = filled<T>(lb.extent(tb ? n : m, tb ? m : n), lb, tb ? n : m, tb ? m : n, g);
                            std::vector<T> own(lc.extent(m, n) + 8, sentinel<T>());
                            std::vector<T>& c = mode == 1 ? a : mode == 2 ? b : own;
                            const auto a0 = a, b0 = b, c0 = c;
                            const char o[2] = {ord, 0}, xa[2] = {*x, 0}, yb[2] = {*y, 0};
                            if (path == 0)
                                tr<T>::omatadd(o, xa, yb, &m, &n, &alpha, a.data(), &la.ld, &beta, b.data(), &lb.ld, c.data(), &lc.ld);
                            else k(o, xa, yb, &m, &n, &alpha, a.data(), &la.ld, &beta, b.data(), &lb.ld, c.data(), &lc.ld);
                            EXPECT_TRUE(check(c, c0, lc, m, n, [&](u64 i, u64 j) {
                                T p = apply(*x, alpha, ta ? a0[la.at(j, i)] : a0[la.at(i, j)]);
                                T q = apply(*y, beta, tb ? b0[lb.at(j, i)] : b0[lb.at(i, j)]);
                                return add(p, q);
                            })) << ord << *x << *y << " " << m << "x" << n << " mode " << mode << " path " << path;
                        }
}

// Every row-major kernel by its exported name, on the shapes its dispatcher
// hands it and more: the copies with padded rows (omatcopy2 also with element
// strides), the square in-place kernels at lda = n and on wider rows, cycle
// following with the rows kept, narrowed and widened, the sums with C apart,
// over A (A read untransposed) and on rows of odd length, and the in-place
// recursion of C = alpha*C + beta*B^T. Names whose operation letters hold
// r or c are complex only.
const char* const kernel_names[] = {
    "omatcopy_rec_n",    "omatcopy_rec_t",    "omatcopy_rec_r",    "omatcopy_rec_c",    "omatcopy2_rec_n",
    "omatcopy2_rec_t",   "omatcopy2_rec_r",   "omatcopy2_rec_c",   "imatcopy_square_n", "imatcopy_square_t",
    "imatcopy_square_r", "imatcopy_square_c", "imatcopy_mipt_n",   "imatcopy_mipt_t",   "imatcopy_mipt_r",
    "imatcopy_mipt_c",   "omatadd_nn",        "omatadd_nt",        "omatadd_tt",        "omatadd_nc",
    "omatadd_tc",        "omatadd_cc",        "omatadd_rn",        "omatadd_rt",        "omatadd_rr",
    "omatadd_rc",        "omatadd_rec_nt"};

TYPED_TEST(Trans, KernelsByName) {
    using T = TypeParam;
    std::mt19937_64 g(14);
    // alpha*op(X) at (i, j) of the result, X held at lx
    auto moved = [](char o, T alpha, const std::vector<T>& x, layout lx) {
        return [=](u64 i, u64 j) { return apply(o, alpha, transposing(o) ? x[lx.at(j, i)] : x[lx.at(i, j)]); };
    };
    for (const std::string name : kernel_names) {
        const std::string ops = name.substr(name.rfind('_') + 1);
        if (!is_cx<T> && ops.find_first_of("rc") != std::string::npos) continue;
        auto is = [&](const char* stem) { return name.rfind(stem, 0) == 0; };
        const char o = ops[0], o2 = ops.back();
        for (shape s : shapes)
            for (u64 p = 0; p < 3; ++p) {
                SCOPED_TRACE(name + " " + std::to_string(s.rows) + "x" + std::to_string(s.cols) + " variant " +
                             std::to_string(p));
                const T alpha = rnd<T>(g), beta = rnd<T>(g);
                const u64 n = s.cols, m = is("imatcopy_square") ? n : s.rows;
                const u64 bm = transposing(o) ? n : m, bn = transposing(o) ? m : n;
                if (is("omatcopy")) {
                    const bool two = is("omatcopy2");
                    const u64 sa = two ? 1 + p : 1, sb = two ? 3 - p : 1;
                    const layout la{true, n * sa + p, sa}, lb{true, bn * sb + 2 - p, sb};
                    auto a = filled<T>(la.extent(m, n), la, m, n, g);
                    std::vector<T> b(lb.extent(bm, bn) + 8, sentinel<T>());
                    const auto b0 = b;
                    if (two)
                        kern_as<typename tr<T>::rec2, T>(name)(&m, &n, &alpha, a.data(), &la.ld, &sa, b.data(), &lb.ld,
                                                               &sb);
                    else kern_as<typename tr<T>::rec, T>(name)(&m, &n, &alpha, a.data(), &la.ld, b.data(), &lb.ld);
                    EXPECT_TRUE(check(b, b0, lb, bm, bn, moved(o, alpha, a, la)));
                } else if (is("imatcopy")) {
                    const bool sq = is("imatcopy_square");
                    const u64 lda = n + (sq ? p : p == 1 ? 3 : 0), ldb = sq ? lda : bn + (p == 2 ? 2 : 0);
                    const layout la{true, lda}, lb{true, ldb};
                    auto ab = filled<T>(std::max(la.extent(m, n), lb.extent(bm, bn)), la, m, n, g);
                    const auto a0 = ab;
                    kern_as<typename tr<T>::inplace, T>(name)(&m, &n, &alpha, ab.data(), &lda, &ldb);
                    EXPECT_TRUE(check(ab, a0, lb, bm, bn, moved(o, alpha, a0, la), true));
                } else if (is("omatadd_rec")) {  // C := alpha*C + beta*B^T, B apart
                    const layout lc{true, n + 1 + p}, lb{true, m + p};
                    auto c = filled<T>(lc.extent(m, n), lc, m, n, g);
                    const auto b = filled<T>(lb.extent(n, m), lb, n, m, g), c0 = c;
                    kern_as<typename tr<T>::sum_rec, T>(name)(&m, &n, &alpha, c.data(), &lc.ld, &beta, b.data(), &lb.ld);
                    EXPECT_TRUE(check(c, c0, lc, m, n, [&](u64 i, u64 j) {
                        return add(mul(alpha, c0[lc.at(i, j)]), mul(beta, b[lb.at(j, i)]));
                    }));
                } else {
                    const bool ta = transposing(o), tb = transposing(o2), over = p == 1 && !ta;
                    const layout lc{true, n + 1 + p};
                    const layout la = over ? lc : layout{true, (ta ? m : n) + p}, lb{true, (tb ? m : n) + 2};
                    auto a = filled<T>(la.extent(ta ? n : m, ta ? m : n), la, ta ? n : m, ta ? m : n, g);
                    const auto b = filled<T>(lb.extent(tb ? n : m, tb ? m : n), lb, tb ? n : m, tb ? m : n, g);
                    std::vector<T> own(lc.extent(m, n) + 8, sentinel<T>());
                    std::vector<T>& c = over ? a : own;
                    const auto a0 = a, c0 = c;
                    kern_as<typename tr<T>::sum, T>(name)(&m, &n, &alpha, a.data(), &la.ld, &beta, b.data(), &lb.ld,
                                                          c.data(), &lc.ld);
                    const auto pa = moved(o, alpha, a0, la), pb = moved(o2, beta, b, lb);
                    EXPECT_TRUE(check(c, c0, lc, m, n, [&](u64 i, u64 j) { return add(pa(i, j), pb(i, j)); }));
                }
            }
    }
}

// Unknown ordering or operation letters: nothing is touched.
TYPED_TEST(Trans, UnknownLettersTouchNothing) {
    using T = TypeParam;
    std::mt19937_64 g(15);
    const u64 m = 3, n = 3, ld = 3, one = 1;
    const T alpha = rnd<T>(g);
    std::vector<T> a(9), b(9), c(9);
    for (auto* v : {&a, &b, &c})
        for (T& x : *v) x = rnd<T>(g);
    const auto a0 = a, b0 = b, c0 = c;
    // ordering, trans(a), transb; the copies take the first two
    const char* bad[][3] = {{"X", "N", "N"}, {"R", "X", "N"}, {"", "T", "T"}, {"R", "", "T"}, {"C", "N", "Q"}};
    for (auto& f : bad) {
        if (f[2][0] != 'Q') {
            kern<T>(tr<T>::omatcopy, "omatcopy")(f[0], f[1], &m, &n, &alpha, a.data(), &ld, b.data(), &ld);
            kern<T>(tr<T>::omatcopy2, "omatcopy2")(f[0], f[1], &m, &n, &alpha, a.data(), &ld, &one, b.data(), &ld, &one);
            kern<T>(tr<T>::imatcopy, "imatcopy")(f[0], f[1], &m, &n, &alpha, a.data(), &ld, &ld);
        }
        kern<T>(tr<T>::omatadd, "omatadd")(f[0], f[1], f[2], &m, &n, &alpha, a.data(), &ld, &alpha, b.data(), &ld,
                                          c.data(), &ld);
        EXPECT_TRUE(same_all(a, a0) && same_all(b, b0) && same_all(c, c0)) << f[0] << f[1] << f[2];
    }
}

// The in-place C = alpha*C + beta*B^T: splits of the larger dimension
// (columns on a tie) into a ceiling half first, direct updates below 5 x 5.
// With B laid over C itself the order of the updates shows in the result.
void rec_nt_model(u64 m, u64 n, double alpha, double* c, u64 ldc, double beta, const double* b, u64 ldb, bool top) {
    if (m < 5 && n < 5) {
        for (u64 i = 0; i < m; ++i)
            for (u64 j = 0; j < n; ++j) c[i * ldc + j] = alpha * c[i * ldc + j] + beta * b[j * ldb + i];
        return;
    }
    (void)top;
    if (m > n) {
        const u64 h = (m + 1) / 2;
        rec_nt_model(h, n, alpha, c, ldc, beta, b, ldb, false);
        rec_nt_model(m - h, n, alpha, c + h * ldc, ldc, beta, b + h, ldb, false);
    } else {
        const u64 h = (n + 1) / 2;
        rec_nt_model(m, h, alpha, c, ldc, beta, b, ldb, false);
        rec_nt_model(m, n - h, alpha, c + h, ldc, beta, b + h * ldb, ldb, false);
    }
}

TEST(TransOrder, InPlaceAdditionRecursion) {
    std::mt19937_64 g(16);
    const auto nt = kernel_symbol<decltype(&ork_trans_ork_domatadd_nt)>("ork_trans_ork_domatadd_nt");
    const auto rec = kernel_symbol<decltype(&ork_trans_ork_domatadd_rec_nt)>("ork_trans_ork_domatadd_rec_nt");
    const double alpha = 0.75, beta = -1.25;
    for (shape s : {shape{4, 4}, shape{5, 4}, shape{4, 5}, shape{9, 9}, shape{13, 6}, shape{17, 30}}) {
        const u64 ld = std::max(s.rows, s.cols) + 1;  // C is rows x cols, B = C read as cols x rows
        std::vector<double> c(ld * ld);
        for (double& x : c) x = rnd<double>(g);
        auto want = c, got = c, got_rec = c, plain = c;
        rec_nt_model(s.rows, s.cols, alpha, want.data(), ld, beta, want.data(), ld, true);
        nt(&s.rows, &s.cols, &alpha, got.data(), &ld, &beta, got.data(), &ld, got.data(), &ld);
        EXPECT_TRUE(same_all(got, want)) << s.rows << "x" << s.cols;
        // the recursion entry alone splits the same way
        rec(&s.rows, &s.cols, &alpha, got_rec.data(), &ld, &beta, got_rec.data(), &ld);
        EXPECT_TRUE(same_all(got_rec, want)) << s.rows << "x" << s.cols;
        // and the order matters: one row-by-row pass gives another result
        for (u64 i = 0; i < s.rows; ++i)
            for (u64 j = 0; j < s.cols; ++j) plain[i * ld + j] = alpha * plain[i * ld + j] + beta * plain[j * ld + i];
        if (s.cols > 4) {  // a split of the columns comes before later rows
            EXPECT_FALSE(same_all(plain, want)) << s.rows << "x" << s.cols;
        }
    }
}

// The spelled-out small cases: 3 x 2 'N' with lda < ldb in place equals the
// copy out of place; 2 x 3 'T' row-major from lda 3 to ldb 2.
TEST(TransOrder, SmallInPlaceCases) {
    const u64 r3 = 3, c2 = 2, r2 = 2, c3 = 3, l2 = 2, l3 = 3, l4 = 4;
    const double alpha = 2;
    const auto omatcopy = kernel_symbol<decltype(&ork_trans_ork_domatcopy)>("ork_trans_ork_domatcopy");
    const auto imatcopy = kernel_symbol<decltype(&ork_trans_ork_dimatcopy)>("ork_trans_ork_dimatcopy");
    double ab[12] = {1, 2, 3, 4, 5, 6, 0, 0, 0, 0, 0, 0}, b[12] = {};
    omatcopy("R", "N", &r3, &c2, &alpha, ab, &l2, b, &l4);
    imatcopy("R", "N", &r3, &c2, &alpha, ab, &l2, &l4);
    for (int i = 0; i < 3; ++i)
        for (int j = 0; j < 2; ++j) EXPECT_EQ(ab[i * 4 + j], b[i * 4 + j]);
    double t[6] = {1, 2, 3, 4, 5, 6};
    imatcopy("R", "T", &r2, &c3, &alpha, t, &l3, &l2);
    const double want[6] = {2, 8, 4, 10, 6, 12};
    for (int k = 0; k < 6; ++k) EXPECT_EQ(t[k], want[k]) << k;
}

TEST(TransHelpers, ConjugationAndCycleBits) {
    ork_complex16 z[3] = {{1, 2}, {-3, -0.0}, {5, -6}};
    ork_complex8 c[2] = {{1, 2}, {3, -4}};
    const u64 n3 = 3, n1 = 1;
    kernel_symbol<decltype(&ork_zconj)>("ork_zconj")(&n3, z);
    kernel_symbol<decltype(&ork_cconj)>("ork_cconj")(&n1, c);
    EXPECT_TRUE(z[0].im == -2 && z[1].im == 0 && !std::signbit(z[1].im) && z[2].im == 6 && z[2].re == 5);
    EXPECT_TRUE(c[0].im == -2 && c[1].im == -4);
    const auto know = kernel_symbol<decltype(&ork_trans_know_false_cycle)>("ork_trans_know_false_cycle");
    const auto known = kernel_symbol<decltype(&ork_trans_is_known_false_cycle)>("ork_trans_is_known_false_cycle");
    std::uint64_t set[3] = {0, 0, 0};
    for (u64 k : {u64(0), u64(63), u64(64), u64(130)}) know(set, &k);
    EXPECT_EQ(set[0], 0x8000000000000001ull);
    EXPECT_EQ(set[1], 1u);
    EXPECT_EQ(set[2], 4u);
    for (u64 k = 0; k < 192; ++k) EXPECT_EQ(known(set, &k) != 0, k == 0 || k == 63 || k == 64 || k == 130) << k;
}

// libork reports a leading dimension short of its matrix and a missing
// array of a non-empty matrix, and writes nothing (a bad letter, dimension or
// stride, and a missing scalar, of every entry: tests/frame/manifest_test.cpp).
TEST(TransErrors, FirstBadArgument) {
    const double a[12] = {1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12}, alpha = 2;
    double out[12];
    std::fill(out, out + 12, -7.0);
    const u64 m = 3, n = 2, l1 = 1, l2 = 2, l3 = 3, one = 1;
    const ork_complex8 ca{1, 0};
    std::vector<bad_call> calls = {
        {"ork_trans_domatcopy", 7, [&] { ork_trans_domatcopy("R", "N", &m, &n, &alpha, a, &l1, out, &l2); }},
        {"ork_trans_domatcopy", 7, [&] { ork_trans_domatcopy("C", "N", &m, &n, &alpha, a, &l2, out, &l3); }},
        {"ork_trans_domatcopy", 9, [&] { ork_trans_domatcopy("R", "T", &m, &n, &alpha, a, &l2, out, &l2); }},
        {"ork_trans_domatcopy", 8, [&] { ork_trans_domatcopy("R", "N", &m, &n, &alpha, a, &l2, nullptr, &l2); }},
        {"ork_trans_dimatcopy", 8, [&] { ork_trans_dimatcopy("R", "T", &m, &n, &alpha, out, &l2, &l2); }},
        {"ork_trans_domatadd", 8, [&] { ork_trans_domatadd("R", "T", "N", &m, &n, &alpha, a, &l2, &alpha, a, &l2, out, &l2); }},
        {"ork_trans_domatadd", 11, [&] { ork_trans_domatadd("C", "N", "T", &m, &n, &alpha, a, &l3, &alpha, a, &l1, out, &l3); }},
        {"ork_trans_domatadd", 13, [&] { ork_trans_domatadd("R", "N", "N", &m, &n, &alpha, a, &l2, &alpha, a, &l2, out, &l1); }},
        {"ork_trans_domatadd", 12, [&] { ork_trans_domatadd("R", "N", "N", &m, &n, &alpha, a, &l2, &alpha, a, &l2, nullptr, &l2); }},
        {"ork_trans_cimatcopy", 6, [&] { ork_trans_cimatcopy("C", "R", &n, &n, &ca, nullptr, &n, &one); }},
    };
    expect_reports(calls, [&] { return bytes_of(out); });
}

// Big enough to be split over threads; the result is the same for 1 and 2.
TEST(TransThreads, SplitCallsMatchOneThread) {
    std::mt19937_64 g(17);
    const u64 m = 700, n = 450;
    std::vector<double> a(m * n), b(m * n);
    for (double& x : a) x = rnd<double>(g);
    for (double& x : b) x = rnd<double>(g);
    const double alpha = 1.5, beta = -0.5;
    for (const char* ord : {"R", "C"}) {
        std::vector<double> t1(m * n), t2(m * n), s1(m * n), s2(m * n);
        const u64 lda = ord[0] == 'R' ? n : m, ldt = ord[0] == 'R' ? m : n;
        {
            threads_scope one(1);
            ork_trans_domatcopy(ord, "T", &m, &n, &alpha, a.data(), &lda, t1.data(), &ldt);
            ork_trans_domatadd(ord, "N", "T", &m, &n, &alpha, a.data(), &lda, &beta, t1.data(), &ldt, s1.data(), &lda);
        }
        {
            threads_scope two(2);
            ork_trans_domatcopy(ord, "T", &m, &n, &alpha, a.data(), &lda, t2.data(), &ldt);
            ork_trans_domatadd(ord, "N", "T", &m, &n, &alpha, a.data(), &lda, &beta, t2.data(), &ldt, s2.data(), &lda);
        }
        EXPECT_TRUE(same_all(t1, t2));
        EXPECT_TRUE(same_all(s1, s2));
        const layout l{ord[0] == 'R', lda}, lt{ord[0] == 'R', ldt};
        for (u64 i = 0; i < m; i += 37)
            for (u64 j = 0; j < n; ++j) {
                ASSERT_EQ(t2[lt.at(j, i)], alpha * a[l.at(i, j)]);
                ASSERT_EQ(s2[l.at(i, j)], alpha * a[l.at(i, j)] + beta * t2[lt.at(j, i)]);
            }
    }
}

}  // namespace

// The tiles of the recursive transposition, in order, against the rule
// written out plainly: while a dimension exceeds 4 the larger one (columns
// on a tie) is halved, the floor half first. 5 x 3 gives 2 x 3 then 3 x 3.
#include "trans/recursion.h"

namespace {

void tiles_by_rule(u64 r, u64 c, u64 i0, u64 j0, std::vector<u64>& out) {
    if (r <= 4 && c <= 4) return out.insert(out.end(), {i0, j0, r, c}), void();
    if (r > c) {
        tiles_by_rule(r / 2, c, i0, j0, out);
        tiles_by_rule(r - r / 2, c, i0 + r / 2, j0, out);
    } else {
        tiles_by_rule(r, c / 2, i0, j0, out);
        tiles_by_rule(r, c - c / 2, i0, j0 + c / 2, out);
    }
}

TEST(TransOrder, RecursiveTransposeTiles) {
    const u64 lda = 1000;
    static const double base[1] = {0};
    for (u64 r = 1; r <= 70; ++r)
        for (u64 c = 1; c <= 70; ++c) {
            std::vector<u64> want, got;
            tiles_by_rule(r, c, 0, 0, want);
            ork::trans::split_t(r, c, base, lda, u64(1), static_cast<double*>(nullptr), u64(1), u64(1),
                                [&](u64 rr, u64 cc, const double* a, double*) {
                                    const u64 off = u64(a - base);
                                    got.insert(got.end(), {off / lda, off % lda, rr, cc});
                                });
            ASSERT_EQ(got, want) << r << "x" << c;
        }
    std::vector<u64> five_by_three;
    tiles_by_rule(5, 3, 0, 0, five_by_three);
    EXPECT_EQ(five_by_three, (std::vector<u64>{0, 0, 2, 3, 2, 0, 3, 3}));
}

}  // namespace
