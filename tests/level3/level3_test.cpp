// Level-3 routines besides the general product, through libork's entries and
// the kernels: symmetric and Hermitian products, rank-k and rank-2k updates,
// triangular multiply and solve against long double, every flag, guard zones
// and the unused triangles kept; thread-count bits; argument error positions.
#include <functional>

#include "gemm_testing.h"
#include "ork/level3_kernels.h"

using namespace ot;

namespace {

template <class T> struct l3;
#define OT_L3(p, T)                                                                                      \
    template <> struct l3<T> {                                                                           \
        static constexpr auto symm = OT_R(p##symm), syrk = OT_R(p##syrk), syr2k = OT_R(p##syr2k);         \
        static constexpr auto trmm = OT_R(p##trmm), trsm = OT_R(p##trsm), gemm = OT_R(p##gemm);          \
    };
OT_L3(s, float)
OT_L3(d, double)
OT_L3(c, ork_complex8)
OT_L3(z, ork_complex16)
template <class T> struct l3h;
#define OT_L3H(p, T) \
    template <> struct l3h<T> { static constexpr auto hemm = OT_R(p##hemm), herk = OT_R(p##herk), her2k = OT_R(p##her2k); };
OT_L3H(c, ork_complex8)
OT_L3H(z, ork_complex16)

template <class T> struct Level3 : ::testing::Test {};
TYPED_TEST_SUITE(Level3, ElementTypes);
template <class T> struct Hermitian : ::testing::Test {};
using ComplexTypes = ::testing::Types<ork_complex8, ork_complex16>;
TYPED_TEST_SUITE(Hermitian, ComplexTypes);

// (rows, columns) of the operated-on matrix; depth 0 among them for the updates.
const std::vector<std::pair<idx, idx>> shapes = {{0, 3}, {3, 0}, {1, 1}, {2, 7}, {7, 2}, {33, 65},
                                                 {64, 64}, {65, 130}, {130, 33}, {64, 0}};
constexpr idx pad = 3;
// alpha cycles through 1, 0, other; beta through 0 (over NaN), other, 1.
template <class T> T alpha_of(int c) { return c % 3 == 0 ? make<T>(1) : c % 3 == 1 ? make<T>(0) : make<T>(-0.75, is_cx<T> ? 0.5 : 0); }
template <class T> T beta_of(int c) { return (c / 3) % 3 == 0 ? make<T>(0) : (c / 3) % 3 == 1 ? make<T>(1.5, is_cx<T> ? -0.25 : 0) : make<T>(1); }

template <class T> gmat<T> random_mat(idx r, idx c, std::mt19937_64& g, T guard = sentinel<T>()) {
    gmat<T> x(r, c, std::max<idx>(r, 1) + pad, 0, guard);
    x.fill([&](idx, idx) { return rnd<T>(g); });
    return x;
}
// C filled for a beta: NaN where beta = 0 (it must not survive).
template <class T> gmat<T> output(idx r, idx c, T beta, std::mt19937_64& g) {
    gmat<T> x = random_mat<T>(r, c, g);
    if (same(beta, make<T>(0))) x.fill([](idx, idx) { return nan_of<T>(); });
    return x;
}

// A square matrix of order n keeping only the `lower` or upper triangle,
// NaN in the other one: never to be read.
template <class T> gmat<T> triangle_only(idx n, bool lower, std::mt19937_64& g, double diag_shift) {
    gmat<T> a(n, n, std::max<idx>(n, 1) + pad, 0, nan_of<T>());
    a.fill([&](idx i, idx j) {
        if (lower ? i < j : i > j) return nan_of<T>();
        T v = rnd<T>(g);
        if (i == j) return add(v, make<T>(diag_shift));
        return diag_shift > 0 ? rmul(real_t<T>(1.0 / diag_shift), v) : v;
    });
    return a;
}
template <class T> gmat<T> copy_of(const gmat<T>& x) {
    gmat<T> y(x.rows, x.cols, x.ld, 0, make<T>(0));
    std::copy(x.buf.data(), x.buf.data() + x.buf.size(), y.buf.data());
    return y;
}
// Dense copy (ld n) of a matrix given by f(i, j).
template <class T, class F> gmat<T> dense(idx n, F f) {
    gmat<T> d(n, n, std::max<idx>(n, 1), 0, make<T>(0));
    d.fill(f);
    return d;
}

// The block of C, or (tri >= 0) its lower (tri 1) or upper (0) triangle,
// against the reference; the other triangle and the guards unchanged.
template <class T>
::testing::AssertionResult agrees(const gmat<T>& c, const std::vector<T>& c0, const product& want, idx k, int tri = -1) {
    for (idx j = 0; j < want.n; ++j)
        for (idx i = 0; i < want.m; ++i)
            if (tri >= 0 && (tri == 1 ? i < j : i > j) && !same(c.at(i, j), c0[std::size_t(4 + i + j * c.ld)]))
                return ::testing::AssertionFailure() << "other triangle (" << i << ", " << j << ") changed";
    if (auto r = matches(c, want, k, false, -1, -1, 0, tri); !r) return r;
    return guards_kept(c, c0);
}

// ---- symmetric and Hermitian products
template <class T, bool herm, class R> void products(const R& routine) {
    std::mt19937_64 g(11);
    int cs = 0;
    for (auto [m, n] : shapes)
        for (const char* side : {"L", "r"})
            for (const char* uplo : {"U", "l"})
                for (auto& [label, f] : routine.paths()) {
                    const T alpha = alpha_of<T>(cs), beta = beta_of<T>(cs);
                    ++cs;
                    const bool left = *side == 'L', lower = *uplo == 'l';
                    const idx na = left ? m : n;
                    SCOPED_TRACE(::testing::Message() << label << " " << side << uplo << " m=" << m << " n=" << n << " case " << cs);
                    gmat<T> A = triangle_only<T>(na, lower, g, 0);
                    if constexpr (herm)
                        for (idx j = 0; j < na; ++j) A.at(j, j).im = NAN;  // only the real part is read
                    gmat<T> B = random_mat<T>(m, n, g, nan_of<T>()), C = output<T>(m, n, beta, g);
                    const gmat<T> full = dense<T>(na, [&](idx i, idx j) {
                        const bool stored = lower ? i >= j : i <= j;
                        T v = stored ? A.at(i, j) : A.at(j, i);
                        if (herm && i == j) return make<T>(re(v));
                        return herm && !stored ? conj(v) : v;
                    });
                    const product want = left ? reference<long double>('N', 'N', m, n, m, alpha, full.p(), full.ld, B.p(), B.ld, beta, C.p(), C.ld)
                                              : reference<long double>('N', 'N', m, n, n, alpha, B.p(), B.ld, full.p(), full.ld, beta, C.p(), C.ld);
                    const auto c0 = C.buf.snapshot();
                    f(side, uplo, &m, &n, &alpha, A.p(), &A.ld, B.p(), &B.ld, &beta, C.p(), &C.ld);
                    if (m == 0 || n == 0 || (same(alpha, make<T>(0)) && same(beta, make<T>(1)))) EXPECT_TRUE(same_all(C.buf.snapshot(), c0));
                    else EXPECT_TRUE(agrees(C, c0, want, na));
                }
}
TYPED_TEST(Level3, SymmetricProduct) { products<TypeParam, false>(l3<TypeParam>::symm); }
TYPED_TEST(Hermitian, HermitianProduct) { products<TypeParam, true>(l3h<TypeParam>::hemm); }

// The recursive piece alone: C += alpha*A*B or alpha*B*A in the caller's
// 524288-byte workspace, C not scaled.
TYPED_TEST(Level3, SymmetricRecursivePiece) {
    using T = TypeParam;
    using piece = void (*)(const char*, const char*, const idx*, const idx*, const T*, const T*, const idx*, const T*,
                           const idx*, T*, const idx*, void*);
    const std::string name = std::string("ork_blas_x") + (std::is_same_v<T, float> ? "s" : std::is_same_v<T, double> ? "d" : is_cx<T> && sizeof(T) == 8 ? "c" : "z") + "symm_recursive";
    const piece f = kernel_symbol<piece>(name.c_str());
    buffer<unsigned char> work(524288, 0, 0);
    std::mt19937_64 g(15);
    const idx m = 150, n = 139;
    const T alpha = make<T>(0.5, is_cx<T> ? -1 : 0);
    for (const char* side : {"L", "R"})
        for (const char* uplo : {"U", "L"}) {
            const bool left = *side == 'L', lower = *uplo == 'L';
            const idx na = left ? m : n;
            gmat<T> A = triangle_only<T>(na, lower, g, 0), B = random_mat<T>(m, n, g), C = random_mat<T>(m, n, g);
            const gmat<T> full = dense<T>(na, [&](idx i, idx j) { return (lower ? i >= j : i <= j) ? A.at(i, j) : A.at(j, i); });
            const product want = left ? reference<long double>('N', 'N', m, n, m, alpha, full.p(), full.ld, B.p(), B.ld, make<T>(1), C.p(), C.ld)
                                      : reference<long double>('N', 'N', m, n, n, alpha, B.p(), B.ld, full.p(), full.ld, make<T>(1), C.p(), C.ld);
            const auto c0 = C.buf.snapshot();
            f(side, uplo, &m, &n, &alpha, A.p(), &A.ld, B.p(), &B.ld, C.p(), &C.ld, work.data());
            EXPECT_TRUE(agrees(C, c0, want, na)) << side << uplo;
        }
}

// ---- rank-k and rank-2k updates. S: type of alpha (real for herk); B:
// type of beta (real for herk, her2k).
template <class T, bool herm, bool two, class S, class Bt, class R> void updates(const R& routine) {
    std::mt19937_64 g(12);
    const std::vector<const char*> ops = herm ? std::vector<const char*>{"N", "c"}
                                       : is_cx<T> ? std::vector<const char*>{"n", "T"} : std::vector<const char*>{"N", "t", "C"};
    int cs = 0;
    for (auto [n, k] : shapes)
        for (const char* uplo : {"u", "L"})
            for (const char* trans : ops)
                for (auto& [label, f] : routine.paths()) {
                    const T at = alpha_of<T>(cs), bt = beta_of<T>(cs);
                    ++cs;
                    S alpha;
                    Bt beta;
                    if constexpr (std::is_same_v<S, T>) alpha = at; else alpha = re(at);
                    if constexpr (std::is_same_v<Bt, T>) beta = bt; else beta = re(bt);
                    const T alpha_t = make<T>(ld(alpha).real(), ld(alpha).imag()), beta_t = make<T>(ld(beta).real(), ld(beta).imag());
                    const char op = op_of<T>(trans), other = herm ? 'C' : 'T';
                    const char ta = op == 'N' ? 'N' : op, tb = op == 'N' ? other : 'N';
                    const idx rows = op == 'N' ? n : k, cols = op == 'N' ? k : n;
                    const int tri = *uplo == 'L' ? 1 : 0;
                    SCOPED_TRACE(::testing::Message() << label << " " << uplo << trans << " n=" << n << " k=" << k << " case " << cs);
                    gmat<T> A = random_mat<T>(rows, cols, g, nan_of<T>()), B = random_mat<T>(rows, cols, g, nan_of<T>());
                    gmat<T> C = output<T>(n, n, beta_t, g);
                    product want = reference<long double>(ta, tb, n, n, k, alpha_t, A.p(), A.ld, (two ? B : A).p(), A.ld, beta_t, C.p(), C.ld);
                    if (two) {
                        const T alpha2 = herm ? conj(alpha_t) : alpha_t;
                        const product second = reference<long double>(ta, tb, n, n, k, alpha2, B.p(), B.ld, A.p(), A.ld, make<T>(0), C.p(), C.ld);
                        for (std::size_t e = 0; e < want.val.size(); ++e) {
                            want.val[e] += second.val[e];
                            want.mag[e] += second.mag[e];
                        }
                    }
                    const bool untouched = n == 0 || ((k == 0 || same(alpha_t, make<T>(0))) && same(beta_t, make<T>(1)));
                    if (herm && !untouched)
                        for (idx j = 0; j < n; ++j) want.val[std::size_t(j + j * n)].imag(0);
                    const auto c0 = C.buf.snapshot();
                    if constexpr (two) f(uplo, trans, &n, &k, &alpha, A.p(), &A.ld, B.p(), &B.ld, &beta, C.p(), &C.ld);
                    else f(uplo, trans, &n, &k, &alpha, A.p(), &A.ld, &beta, C.p(), &C.ld);
                    if (untouched) {
                        EXPECT_TRUE(same_all(C.buf.snapshot(), c0));
                        continue;
                    }
                    EXPECT_TRUE(agrees(C, c0, want, 2 * k, tri));
                    if constexpr (herm) {
                        for (idx j = 0; j < n; ++j) EXPECT_EQ(C.at(j, j).im, 0) << "diagonal " << j;
                    }
                }
}
TYPED_TEST(Level3, RankK) { updates<TypeParam, false, false, TypeParam, TypeParam>(l3<TypeParam>::syrk); }
TYPED_TEST(Level3, Rank2K) { updates<TypeParam, false, true, TypeParam, TypeParam>(l3<TypeParam>::syr2k); }
TYPED_TEST(Hermitian, HermitianRankK) {
    updates<TypeParam, true, false, real_t<TypeParam>, real_t<TypeParam>>(l3h<TypeParam>::herk);
}
TYPED_TEST(Hermitian, HermitianRank2K) {
    updates<TypeParam, true, true, TypeParam, real_t<TypeParam>>(l3h<TypeParam>::her2k);
}

// ---- triangular multiply and solve over all side/uplo/trans/diag. A is
// diagonally dominant (well conditioned), its other triangle NaN and, for a
// unit diagonal, its diagonal NaN: none of it may be read. The solve is
// checked by its residual op(A)*X - alpha*B (or X*op(A) - alpha*B) against
// |op(A)||X| + |alpha B|, the multiply against the long double product.
template <class T, bool solve> void triangular() {
    const auto& routine = solve ? l3<T>::trsm : l3<T>::trmm;
    std::mt19937_64 g(13);
    int cs = 0;
    for (auto [m, n] : shapes)
        for (const char* side : {"L", "r"})
            for (const char* uplo : {"u", "L"})
                for (char op : ops<T>())
                    for (const char* diag : {"N", "u"})
                        for (auto& [label, f] : routine.paths()) {
                            const T alpha = alpha_of<T>(cs++);
                            const bool left = *side == 'L', lower = *uplo == 'L', unit = *diag == 'u';
                            const idx na = left ? m : n;
                            const char trans[2] = {op, 0};
                            SCOPED_TRACE(::testing::Message() << label << " " << side << uplo << op << diag << " m=" << m << " n=" << n << " case " << cs);
                            gmat<T> A = triangle_only<T>(na, lower, g, double(na) + 1);
                            if (unit)
                                for (idx j = 0; j < na; ++j) A.at(j, j) = nan_of<T>();
                            gmat<T> B = random_mat<T>(m, n, g);
                            const bool op_lower = lower == (op == 'N');
                            const gmat<T> full = dense<T>(na, [&](idx i, idx j) {
                                if (op_lower ? i < j : i > j) return make<T>(0);
                                return i == j && unit ? make<T>(1) : op_at(op, A.p(), A.ld, i, j);
                            });
                            const auto b0 = B.buf.snapshot();
                            const gmat<T> B0 = copy_of(B);
                            f(side, uplo, trans, diag, &m, &n, &alpha, A.p(), &A.ld, B.p(), &B.ld);
                            if (m == 0 || n == 0) {
                                EXPECT_TRUE(same_all(B.buf.snapshot(), b0));
                                continue;
                            }
                            const product want =
                                solve ? (left ? reference<long double>('N', 'N', m, n, m, make<T>(1), full.p(), full.ld, B.p(), B.ld, mul(make<T>(-1), alpha), B0.p(), B0.ld)
                                              : reference<long double>('N', 'N', m, n, n, make<T>(1), B.p(), B.ld, full.p(), full.ld, mul(make<T>(-1), alpha), B0.p(), B0.ld))
                                      : (left ? reference<long double>('N', 'N', m, n, m, alpha, full.p(), full.ld, B0.p(), B0.ld, make<T>(0), B0.p(), B0.ld)
                                              : reference<long double>('N', 'N', m, n, n, alpha, B0.p(), B0.ld, full.p(), full.ld, make<T>(0), B0.p(), B0.ld));
                            if (solve) {
                                const long double tol = 16 * (long double)(na + 8) * eps<T>;
                                for (idx j = 0; j < n; ++j)
                                    for (idx i = 0; i < m; ++i)
                                        ASSERT_TRUE(near(make<T>(0), want.at(i, j), tol * want.mag[std::size_t(i + j * m)])) << "residual at (" << i << ", " << j << ")";
                                EXPECT_TRUE(guards_kept(B, b0));
                            } else {
                                EXPECT_TRUE(agrees(B, b0, want, na));
                            }
                        }
}
TYPED_TEST(Level3, TriangularMultiply) { triangular<TypeParam, false>(); }
TYPED_TEST(Level3, TriangularSolve) { triangular<TypeParam, true>(); }

// ---- each stored element of an update has the bits of libork's
// general product of the same operands: one gemm (rank k), or two,
// the second with beta 1 (rank 2k); Hermitian diagonals real; the other
// triangle untouched.
// Orders with several row blocks, rows short of a whole group and leftover
// columns; depths of one and several blocks; 1 and 2 threads.
TYPED_TEST(Level3, UpdatesHaveTheProductsBits) {
    using T = TypeParam;
    struct update { const char* uplo; char op; idx n, k; bool two, herm; };
    const update cases[] = {{"L", 'N', 203, 300, false, false}, {"U", 'T', 341, 70, true, false},
                            {"U", 'N', 9, 9, false, false},     {"L", 'T', 130, 40, true, false},
                            {"L", 'C', 203, 70, true, true},    {"U", 'N', 341, 300, false, true}};
    std::mt19937_64 g(15);
    for (const update& u : cases) {
        if (u.herm && !is_cx<T>) continue;
        const char tr[2] = {u.op, 0}, other = u.herm ? 'C' : 'T';
        const char ta[2] = {u.op == 'N' ? 'N' : u.op, 0}, tb[2] = {u.op == 'N' ? other : 'N', 0};
        const idx n = u.n, k = u.k, rows = u.op == 'N' ? n : k, cols = u.op == 'N' ? k : n;
        const gmat<T> A = random_mat<T>(rows, cols, g), B = random_mat<T>(rows, cols, g);
        const gmat<T> C0 = random_mat<T>(n, n, g);
        const T alpha = make<T>(u.herm && !u.two ? 0.75 : -0.75, u.herm && !u.two ? 0 : 0.5);
        const T beta = make<T>(1.5, u.herm ? 0 : -0.25), one_t = make<T>(1);
        gmat<T> G = copy_of(C0);
        const auto driver = l3<T>::gemm.lib;
        driver(ta, tb, &n, &n, &k, &alpha, A.p(), &A.ld, (u.two ? B : A).p(), &A.ld, &beta, G.p(), &G.ld);
        if (u.two) {
            const T alpha2 = u.herm ? conj(alpha) : alpha;
            driver(ta, tb, &n, &n, &k, &alpha2, B.p(), &B.ld, A.p(), &A.ld, &one_t, G.p(), &G.ld);
        }
        for (int threads : {1, 2}) {
            SCOPED_TRACE(::testing::Message() << u.uplo << tr << " n=" << n << " k=" << k << (u.two ? " rank 2k" : "")
                                              << (u.herm ? " Hermitian" : "") << " at " << threads << " threads");
            threads_scope scope(threads);
            gmat<T> C = copy_of(C0);
            if constexpr (is_cx<T>) {
                if (u.herm) {
                    const real_t<T> rb = re(beta), ra = re(alpha);
                    if (u.two) l3h<T>::her2k.lib(u.uplo, tr, &n, &k, &alpha, A.p(), &A.ld, B.p(), &B.ld, &rb, C.p(), &C.ld);
                    else l3h<T>::herk.lib(u.uplo, tr, &n, &k, &ra, A.p(), &A.ld, &rb, C.p(), &C.ld);
                }
            }
            if (!u.herm) {
                if (u.two) l3<T>::syr2k.lib(u.uplo, tr, &n, &k, &alpha, A.p(), &A.ld, B.p(), &B.ld, &beta, C.p(), &C.ld);
                else l3<T>::syrk.lib(u.uplo, tr, &n, &k, &alpha, A.p(), &A.ld, &beta, C.p(), &C.ld);
            }
            idx wrong = 0, first_i = -1, first_j = -1;
            for (idx j = 0; j < n; ++j)
                for (idx i = 0; i < n; ++i) {
                    const bool stored = *u.uplo == 'L' ? i >= j : i <= j;
                    bool ok = same(C.at(i, j), stored ? G.at(i, j) : C0.at(i, j));
                    if constexpr (is_cx<T>)
                        if (u.herm && i == j) ok = same(C.at(i, j), make<T>(ld(G.at(i, j)).real(), 0));
                    if (!ok && wrong++ == 0) first_i = i, first_j = j;
                }
            EXPECT_EQ(wrong, 0) << "first at (" << first_i << ", " << first_j << ")";
        }
    }
}

// ---- each element of C gets the same bits whatever the shape of the call it
// is part of: every routine called on the same leading data at a large size
// and at smaller ones (the dimension that is not a depth varies; the depth and
// the order of a triangular A stay), the common part compared bit for bit.
// The triangular routines keep their substitution order as long as A's order
// stays, so they are held to it too; a change of A's order would change the
// blocking of the substitution, which is inherent and not asserted.
TYPED_TEST(Level3, SameBitsWhateverTheShape) {
    using T = TypeParam;
    enum kind { gemm, symm, hemm, syrk, herk, syr2k, her2k, trmm, trsm };
    const char* const names[] = {"gemm", "symm", "hemm", "syrk", "herk", "syr2k", "her2k", "trmm", "trsm"};
    // flags: side/uplo/trans/diag as each routine takes them; depth: k, or
    // the order of A for the products with a square A.
    struct shape_case { kind r; const char* f; idx depth; };
    const shape_case cases[] = {
        {gemm, "NT", 300},  {gemm, "TN", 5},    {symm, "LU", 70},   {symm, "RL", 33},   {hemm, "LL", 70},
        {hemm, "RU", 33},   {syrk, "LN", 300},  {syrk, "UT", 300},  {syrk, "LT", 5},    {herk, "UN", 300},
        {herk, "LC", 300},  {herk, "UN", 3},    {syr2k, "UN", 300}, {syr2k, "LT", 300}, {her2k, "LN", 300},
        {her2k, "UC", 300}, {trmm, "LUNN", 70}, {trmm, "RLTU", 45}, {trsm, "LLNN", 70}, {trsm, "RUTN", 45}};
    const idx sizes[] = {200, 1, 5, 8, 15, 38, 130};  // the first is the whole call
    std::mt19937_64 g(16);
    for (const shape_case& s : cases) {
        const bool herm = s.r == hemm || s.r == herk || s.r == her2k;
        if (herm && !is_cx<T>) continue;
        const idx v = sizes[0], d = s.depth;
        const bool tri_a = s.r == trmm || s.r == trsm, square_a = tri_a || s.r == symm || s.r == hemm;
        const bool left = s.f[0] == 'L', update = !square_a && s.r != gemm;
        const char op = update ? s.f[1] : s.r == gemm ? s.f[0] : tri_a ? s.f[2] : 'N';
        // A: d x d for the square ones, else op(A) v x d; B: d x v (side L)
        // or v x d (side R) for the square ones, else as A (rank 2k) or op(B)
        // d x v (gemm). v: the largest varying size.
        const gmat<T> A = square_a ? triangle_only<T>(d, s.f[1] == 'L', g, tri_a ? double(d) + 1 : 0)
                                   : random_mat<T>(op == 'N' ? v : d, op == 'N' ? d : v, g);
        const char opb = s.r == gemm ? s.f[1] : op;
        const gmat<T> B = square_a ? random_mat<T>(left ? d : v, left ? v : d, g)
                                   : random_mat<T>(opb == 'N' ? (s.r == gemm ? d : v) : (s.r == gemm ? v : d),
                                                   opb == 'N' ? (s.r == gemm ? v : d) : (s.r == gemm ? d : v), g);
        const gmat<T> C0 = random_mat<T>(std::max(v, d), std::max(v, d), g);
        const T alpha = make<T>(0.7, is_cx<T> && !(s.r == herk) ? -0.3 : 0), beta = make<T>(1.3, is_cx<T> && !herm ? 0.2 : 0);
        const real_t<T> ra = re(alpha), rb = re(beta);
        const char f0[2] = {s.f[0], 0}, f1[2] = {s.f[1], 0};
        const char f2[2] = {tri_a ? s.f[2] : '\0', 0}, f3[2] = {tri_a ? s.f[3] : '\0', 0};
        auto call = [&](idx n) {  // the varying size n: C (or B) and the rows and columns it covers
            gmat<T> X = copy_of(tri_a ? B : C0);
            const idx rows = square_a ? (left ? d : n) : n, cols = square_a ? (left ? n : d) : n;
            switch (s.r) {
            case gemm: l3<T>::gemm.lib(f0, f1, &n, &n, &d, &alpha, A.p(), &A.ld, B.p(), &B.ld, &beta, X.p(), &X.ld); break;
            case symm: l3<T>::symm.lib(f0, f1, &rows, &cols, &alpha, A.p(), &A.ld, B.p(), &B.ld, &beta, X.p(), &X.ld); break;
            case syrk: l3<T>::syrk.lib(f0, f1, &n, &d, &alpha, A.p(), &A.ld, &beta, X.p(), &X.ld); break;
            case syr2k: l3<T>::syr2k.lib(f0, f1, &n, &d, &alpha, A.p(), &A.ld, B.p(), &B.ld, &beta, X.p(), &X.ld); break;
            case trmm: l3<T>::trmm.lib(f0, f1, f2, f3, &rows, &cols, &alpha, A.p(), &A.ld, X.p(), &X.ld); break;
            case trsm: l3<T>::trsm.lib(f0, f1, f2, f3, &rows, &cols, &alpha, A.p(), &A.ld, X.p(), &X.ld); break;
            default:
                if constexpr (is_cx<T>) {
                    if (s.r == hemm) l3h<T>::hemm.lib(f0, f1, &rows, &cols, &alpha, A.p(), &A.ld, B.p(), &B.ld, &beta, X.p(), &X.ld);
                    if (s.r == herk) l3h<T>::herk.lib(f0, f1, &n, &d, &ra, A.p(), &A.ld, &rb, X.p(), &X.ld);
                    if (s.r == her2k) l3h<T>::her2k.lib(f0, f1, &n, &d, &alpha, A.p(), &A.ld, B.p(), &B.ld, &rb, X.p(), &X.ld);
                }
            }
            return X;
        };
        for (int threads : {1, 2}) {
            threads_scope scope(threads);
            const gmat<T> whole = call(v);
            for (idx n : sizes) {
                if (n == v) continue;
                SCOPED_TRACE(::testing::Message() << names[s.r] << " " << s.f << " depth " << d << " at " << n
                                                  << " against " << v << ", " << threads << " threads");
                const gmat<T> part = call(n);
                const idx rows = square_a && left ? d : n, cols = square_a && !left ? d : n;
                idx wrong = 0, fi = -1, fj = -1;
                for (idx j = 0; j < cols; ++j)
                    for (idx i = 0; i < rows; ++i) {
                        const bool common = !update || (s.f[0] == 'L' ? i >= j : i <= j);
                        if (common && !same(part.at(i, j), whole.at(i, j)) && wrong++ == 0) fi = i, fj = j;
                    }
                EXPECT_EQ(wrong, 0) << "first at (" << fi << ", " << fj << ")";
            }
        }
    }
}

// ---- the same bits at 1, 2 and 3 threads, on problems large enough to split.
TEST(Level3Threads, ResultsIndependentOfThreadCount) {
    std::mt19937_64 g(14);
    const idx m = 200, n = 264, k = 150;
    gmat<double> A = triangle_only<double>(264, false, g, 265), S = random_mat<double>(264, 264, g);
    gmat<double> B = random_mat<double>(m, n, g), K = random_mat<double>(n, k, g);
    gmat<ork_complex16> Z = random_mat<ork_complex16>(n, k, g), Z2 = random_mat<ork_complex16>(n, k, g);
    const double alpha = 0.75, beta = -0.5;
    const ork_complex16 za{0.5, -0.25};
    const std::vector<std::function<std::vector<double>()>> calls = {
        [&] { gmat<double> X = copy_of(B); ork_blas_dtrsm("L", "U", "T", "N", &m, &n, &alpha, A.p(), &A.ld, X.p(), &X.ld); return X.buf.snapshot(); },
        [&] { gmat<double> X = copy_of(B); ork_blas_dtrsm("R", "U", "N", "U", &m, &n, &alpha, A.p(), &A.ld, X.p(), &X.ld); return X.buf.snapshot(); },
        [&] { gmat<double> X = copy_of(B); ork_blas_dtrmm("R", "U", "T", "N", &m, &n, &alpha, A.p(), &A.ld, X.p(), &X.ld); return X.buf.snapshot(); },
        [&] { gmat<double> X = copy_of(B); ork_blas_dsymm("L", "L", &m, &n, &alpha, S.p(), &S.ld, B.p(), &B.ld, &beta, X.p(), &X.ld); return X.buf.snapshot(); },
        [&] { gmat<double> X = copy_of(B); ork_blas_dsymm("R", "U", &m, &n, &alpha, S.p(), &S.ld, B.p(), &B.ld, &beta, X.p(), &X.ld); return X.buf.snapshot(); },
        [&] { gmat<double> X = copy_of(S); ork_blas_dsyrk("L", "N", &n, &k, &alpha, K.p(), &K.ld, &beta, X.p(), &X.ld); return X.buf.snapshot(); },
        [&] { gmat<double> X = copy_of(S); ork_blas_dsyr2k("U", "N", &n, &k, &alpha, K.p(), &K.ld, K.p(), &K.ld, &beta, X.p(), &X.ld); return X.buf.snapshot(); },
        [&] {
            std::mt19937_64 gx(1);
            gmat<ork_complex16> X = random_mat<ork_complex16>(n, n, gx);
            ork_blas_zher2k("L", "N", &n, &k, &za, Z.p(), &Z.ld, Z2.p(), &Z2.ld, &beta, X.p(), &X.ld);
            std::vector<double> out;
            for (auto v : X.buf.snapshot()) out.insert(out.end(), {v.re, v.im});
            return out;
        },
    };
    for (std::size_t c = 0; c < calls.size(); ++c) EXPECT_TRUE(same_at_1_2_3_threads(calls[c])) << "call " << c;
}

// ---- argument errors: the reference positions of short leading dimensions
// and of letters an entry refuses, the first bad argument winning (each
// argument alone spoilt, for every entry: tests/frame/manifest_test.cpp).
TEST(Level3Errors, ReferencePositions) {
    double d[16];
    ork_complex16 z[16];
    for (int i = 0; i < 16; ++i) d[i] = i + 1, z[i] = {0.5 * i, 1};
    const double one = 1;
    const ork_complex16 zone{1, 0};
    auto trsm = [&](const char* s, const char* u, const char* t, const char* dg, idx m, idx n, idx lda, idx ldb) { ork_blas_dtrsm(s, u, t, dg, &m, &n, &one, d, &lda, d, &ldb); };
    auto ztrmm = [&](const char* s, const char* u, const char* t, const char* dg, idx m, idx n, idx lda, idx ldb) { ork_blas_ztrmm(s, u, t, dg, &m, &n, &zone, z, &lda, z, &ldb); };
    auto symm = [&](const char* s, const char* u, idx m, idx n, idx lda, idx ldb, idx ldc) { ork_blas_dsymm(s, u, &m, &n, &one, d, &lda, d, &ldb, &one, d, &ldc); };
    auto syrk = [&](const char* u, const char* t, idx n, idx k, idx lda, idx ldc) { ork_blas_dsyrk(u, t, &n, &k, &one, d, &lda, &one, d, &ldc); };
    auto csyrk = [&](const char* u, const char* t, idx n, idx k, idx lda, idx ldc) { ork_blas_zsyrk(u, t, &n, &k, &zone, z, &lda, &zone, z, &ldc); };
    auto herk = [&](const char* u, const char* t, idx n, idx k, idx lda, idx ldc) { ork_blas_zherk(u, t, &n, &k, &one, z, &lda, &one, z, &ldc); };
    auto syr2k = [&](const char* u, const char* t, idx n, idx k, idx lda, idx ldb, idx ldc) { ork_blas_dsyr2k(u, t, &n, &k, &one, d, &lda, d, &ldb, &one, d, &ldc); };
    auto her2k = [&](const char* u, const char* t, idx n, idx k, idx lda, idx ldb, idx ldc) { ork_blas_zher2k(u, t, &n, &k, &zone, z, &lda, z, &ldb, &one, z, &ldc); };
    expect_reports({
        {"ork_blas_dtrsm", 0, [&] { trsm("l", "u", "c", "n", 2, 3, 2, 2); }},
        {"ork_blas_dtrsm", 1, [&] { trsm("X", "Y", "Z", "W", -1, -1, 0, 0); }},
        {"ork_blas_dtrsm", 2, [&] { trsm("L", "Y", "Z", "W", -1, -1, 0, 0); }},
        {"ork_blas_dtrsm", 3, [&] { trsm("L", "U", "Z", "W", -1, -1, 0, 0); }},
        {"ork_blas_dtrsm", 4, [&] { trsm("L", "U", "N", "W", -1, -1, 0, 0); }},
        {"ork_blas_dtrsm", 5, [&] { trsm("R", "U", "N", "U", -1, -1, 0, 0); }},
        {"ork_blas_dtrsm", 6, [&] { trsm("R", "U", "N", "U", 2, -1, 0, 0); }},
        {"ork_blas_dtrsm", 9, [&] { trsm("R", "U", "N", "U", 4, 3, 2, 1); }},
        {"ork_blas_dtrsm", 11, [&] { trsm("R", "U", "N", "U", 4, 3, 3, 3); }},
        {"ork_blas_ztrmm", 9, [&] { ztrmm("L", "L", "C", "N", 4, 3, 3, 4); }},
        {"ork_blas_ztrmm", 0, [&] { ztrmm("L", "L", "C", "N", 0, 3, 1, 1); }},
        {"ork_blas_dsymm", 7, [&] { symm("R", "U", 2, 3, 2, 0, 0); }},
        {"ork_blas_dsymm", 9, [&] { symm("R", "U", 2, 3, 3, 1, 0); }},
        {"ork_blas_dsymm", 12, [&] { symm("R", "U", 2, 3, 3, 2, 1); }},
        {"ork_blas_dsyrk", 0, [&] { syrk("U", "C", 2, 3, 3, 2); }},
        {"ork_blas_dsyrk", 7, [&] { syrk("U", "T", 2, 3, 2, 0); }},
        {"ork_blas_dsyrk", 10, [&] { syrk("U", "N", 3, 2, 3, 2); }},
        {"ork_blas_zsyrk", 2, [&] { csyrk("U", "C", 1, 1, 1, 1); }},
        {"ork_blas_zherk", 2, [&] { herk("U", "T", 1, 1, 1, 1); }},
        {"ork_blas_zherk", 10, [&] { herk("L", "C", 3, 2, 2, 2); }},
        {"ork_blas_dsyr2k", 7, [&] { syr2k("U", "N", 3, 2, 2, 3, 3); }},
        {"ork_blas_dsyr2k", 9, [&] { syr2k("U", "T", 3, 2, 2, 1, 3); }},
        {"ork_blas_dsyr2k", 12, [&] { syr2k("U", "T", 3, 2, 2, 2, 2); }},
        {"ork_blas_zher2k", 2, [&] { her2k("U", "T", 1, 1, 1, 1, 1); }},
        {"ork_blas_zher2k", 12, [&] { her2k("U", "N", 3, 2, 3, 3, 1); }},
    }, [&] { return bytes_of(d, z); });
}

}  // namespace
