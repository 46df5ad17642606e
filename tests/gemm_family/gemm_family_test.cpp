// The matrix-multiply family against long double: the three-product complex
// drivers and packers, the real-times-complex drivers and their blocks, the
// family-10h and htn packers and pieces; libork's entries for thread-count
// independence and argument errors.
#include <cstdint>
#include <tuple>

#include "gemm_testing.h"

using namespace ot;

namespace {

template <class F> F ks(const std::string& name) { return kernel_symbol<F>(name.c_str()); }
using ci = const ork_int*;

// Column-major, three padding rows, every slot (guards too) random: a write
// outside the operand changes a known value.
template <class T> gmat<T> mat(idx r, idx c, std::mt19937_64& g) {
    gmat<T> x(r, c, r + 3, 0, make<T>(0));
    for (std::size_t s = 0; s < x.buf.size(); ++s) x.buf[s] = rnd<T>(g);
    return x;
}
template <class T> bool is(T v, double x) { return ld(v) == LC(x); }

// C (c0: its slots before) against alpha*op(A)*op(B) + beta*C0 over m x n:
// bit for bit beta*C0 where no product is formed (alpha = 0 or k = 0), else
// within 16 eps of the magnitudes (C0 not read for beta = 0); every other
// slot of C unchanged.
template <class TA, class T>
::testing::AssertionResult check_product(char ta, char tb, idx m, idx n, idx k, T alpha, const gmat<TA>& A,
                                         const gmat<T>& B, T beta, const std::vector<T>& c0, const gmat<T>& C) {
    if (auto r = guards_kept(C, c0, m, n); !r) return r;
    const T* C0 = c0.data() + 4;
    if (!is(alpha, 0) && k != 0)
        return matches(C, reference<long double>(ta, tb, m, n, k, alpha, A.p(), A.ld, B.p(), B.ld, beta, C0, C.ld),
                       k, false, -1, -1, 16 * eps<T>);
    for (idx j = 0; j < n; ++j)
        for (idx i = 0; i < m; ++i) {
            const T x = C0[i + j * C.ld];
            const T want = is(beta, 0) ? make<T>(0) : is(beta, 1) ? x : mul(beta, x);
            if (!same(C.at(i, j), want))
                return ::testing::AssertionFailure() << "(" << i << ", " << j << ") not beta*C";
        }
    return ::testing::AssertionSuccess();
}

struct dims {
    idx m, n, k;
    bool big = false;  // one scalar case only
};
std::vector<dims> small_and(std::vector<dims> extra) {
    std::vector<dims> d = {{0, 3, 2}, {3, 0, 2}, {1, 1, 1}, {4, 5, 0}, {2, 2, 2}, {7, 5, 3}, {13, 9, 17}, {17, 12, 9}};
    d.insert(d.end(), extra.begin(), extra.end());
    return d;
}
// general; beta = 0 over NaN; alpha = 0; alpha = 0 and beta = 1; real alpha
// with beta = 1; general alpha with beta = 1 (the cases of beta-less pieces).
struct scal_case {
    double ar, ai, br, bi;
    bool nan_c;
} const cases[] = {{0.75, -0.5, -1.25, 0.5, false}, {1.5, 0.25, 0, 0, true}, {0, 0, 0.5, -2, false},
                   {0, 0, 1, 0, false},             {-1, 0, 1, 0, false},   {0.75, -0.5, 1, 0, false}};

// f has the 13 arguments of x?gemm; without beta it is a C += piece.
template <class TA, class T, class F>
void products(const char* what, F f, bool has_beta, const char* letters, const std::vector<dims>& shapes) {
    std::mt19937_64 g(71);
    for (const dims& d : shapes)
        for (const char* ta = letters; *ta; ++ta)
            for (const char* tb = letters; *tb; ++tb)
                for (const scal_case& s : cases) {
                    if ((!has_beta && s.br != 1) || (d.big && &s != &cases[has_beta ? 0 : 5])) continue;
                    SCOPED_TRACE(::testing::Message() << what << " " << *ta << *tb << " m=" << d.m << " n=" << d.n
                                                      << " k=" << d.k << " case " << (&s - cases));
                    const idx m = d.m, n = d.n, k = d.k;
                    const T alpha = make<T>(s.ar, s.ai), beta = make<T>(s.br, s.bi);
                    auto A = mat<TA>(*ta == 'N' ? m : k, *ta == 'N' ? k : m, g);
                    auto B = mat<T>(*tb == 'N' ? k : n, *tb == 'N' ? n : k, g), C = mat<T>(m, n, g);
                    for (idx j = 0; j < n && s.nan_c; ++j)
                        for (idx i = 0; i < m; ++i) C.at(i, j) = make<T>(NAN, NAN);
                    const auto A0 = A.buf.snapshot(), B0 = B.buf.snapshot(), C0 = C.buf.snapshot();
                    const char fa[2] = {char(*ta | 0x20), 0}, fb[2] = {*tb, 0};  // flags in either case
                    f(fa, fb, &m, &n, &k, &alpha, A.p(), &A.ld, B.p(), &B.ld, &beta, C.p(), &C.ld);
                    EXPECT_TRUE(same_all(A.buf.snapshot(), A0) && same_all(B.buf.snapshot(), B0));
                    EXPECT_TRUE(check_product(*ta, *tb, m, n, k, alpha, A, B, beta, C0, C));
                }
}
template <class F> auto no_beta(F f) {
    return [f](auto ta, auto tb, auto m, auto n, auto k, auto al, auto a, auto lda, auto b, auto ldb, auto, auto c,
               auto ldc) { f(ta, tb, m, n, k, al, a, lda, b, ldb, c, ldc); };
}

TEST(GemmFamily, ThreeProductDrivers) {
    const auto shapes = small_and({{197, 262, 3, true}, {9, 8, 130}, {5, 7, 130}});
    products<ork_complex8, ork_complex8>("xcgemm3m", OT_KS(xcgemm3m), true, "NTC", shapes);
    products<ork_complex16, ork_complex16>("xzgemm3m", OT_KS(xzgemm3m), true, "NTC", shapes);
    products<ork_complex8, ork_complex8>("cgemm3m", &ork_blas_cgemm3m, true, "NTC", small_and({}));
    products<ork_complex16, ork_complex16>("zgemm3m", &ork_blas_zgemm3m, true, "NTC", small_and({}));
}

TEST(GemmFamily, MixedDrivers) {
    const auto dz = small_and({{4085, 9, 9, true}, {9, 530, 9, true}, {9, 9, 2050, true}, {16, 19, 8}});
    const auto sc = small_and({{6915, 9, 9, true}, {9, 530, 9, true}, {9, 9, 4100, true}, {16, 19, 8}});
    products<double, ork_complex16>("xdzgemm", OT_KS(xdzgemm), true, "NTC", dz);
    products<float, ork_complex8>("xscgemm", OT_KS(xscgemm), true, "NTC", sc);
    products<double, ork_complex16>("dzgemm_pst", OT_KS(dzgemm_pst), true, "NTC", small_and({}));
    products<float, ork_complex8>("scgemm_pst", OT_KS(scgemm_pst), true, "NTC", small_and({}));
    products<double, ork_complex16>("dzgemm", &ork_blas_dzgemm, true, "NTC", small_and({}));
    products<float, ork_complex8>("scgemm", &ork_blas_scgemm, true, "NTC", small_and({}));
}

TEST(GemmFamily, FamilyTenAndHtnProducts) {
    const auto brc = small_and({{258, 6, 257, true}, {30, 13, 20}});
    for (const char* f : {"ork_blas_xdgemm1_brc_0", "ork_blas_xdgemm1_brc_1", "ork_blas_xdgemm0_brc_0",
                          "ork_blas_xdgemm0_brc_1"})
        products<double, double>(f, no_beta(ks<decltype(&ork_blas_xdgemm_0)>(f)), false, "NT", brc);
    for (const char* f : {"ork_blas_xsgemm0_brc_0", "ork_blas_xsgemm0_brc_1"})
        products<float, float>(f, no_beta(ks<decltype(&ork_blas_xsgemm_0)>(f)), false, "NT", brc);
    products<double, double>("dgemm_pst_brc", OT_KS(dgemm_pst_brc), true, "NT", small_and({}));
    products<float, float>("sgemm_pst_brc", OT_KS(sgemm_pst_brc), true, "NT", small_and({}));
    const auto htn = small_and({{390, 6, 194, true}});
    products<float, float>("s_thr", no_beta(OT_KS(xsgemm_1_thr_htn)), false, "NT", htn);
    products<double, double>("d_thr", no_beta(OT_KS(xdgemm_1_thr_htn)), false, "NT", htn);
    products<ork_complex8, ork_complex8>("c_thr", no_beta(OT_KS(xcgemm_1_thr_htn)), false, "NTC", htn);
    products<ork_complex16, ork_complex16>("z_thr", no_beta(OT_KS(xzgemm_1_thr_htn)), false, "NTC", htn);
}

// ---- packed operands (guard slots after the layout) against the layouts of
// packed_a and packed_b, at depth 7 (zeros at depth 7 of kkr = 8), width 20.
template <class X> ::testing::AssertionResult layout(const std::vector<X>& got, const buffer<X>& want) {
    std::vector<X> w(got.size(), sentinel<X>());
    std::copy(want.data(), want.data() + want.size(), w.begin());
    return same_all(got, w);
}
constexpr idx kk = 7, kkr = 8, w = 20;  // depth and width of the packed operands below

// 3m packers: each part of alpha*op(A) and op(B), exactly, in the real layouts.
template <class T> void three_product_packers(const std::string& p) {
    using R = real_t<T>;
    std::mt19937_64 g(72);
    const idx ra = gk<R>::ra, h = 3 * ra + 1, hp = h - 1;
    const T alpha = make<T>(0.75, -0.5);
    const std::tuple<char, const char*, const char*> packers[] = {
        {'n', "gemm3m_copyan", "gemm3m_copybn"}, {'t', "gemm3m_copyat", "gemm3m_copybt"},
        {'c', "gemm3m_copyac", "gemm3m_copybc"}};
    for (auto [t, copya, copyb] : packers)
        for (idx part : {0, 1, 2}) {
            SCOPED_TRACE(::testing::Message() << p << " " << t << " part " << part);
            const char u = char(t & ~0x20);
            auto A = mat<T>(u == 'N' ? h : kk, u == 'N' ? kk : h, g);
            auto B = mat<T>(u == 'N' ? kk : w, u == 'N' ? w : kk, g);
            auto pick = [part](T v) { return part == 0 ? v.re : part == 1 ? v.im : v.re + v.im; };
            std::vector<R> pa(std::size_t(hp * kkr + 8), sentinel<R>()), pb(std::size_t(w * kkr + 8), sentinel<R>());
            using FA = ork_int (*)(ci, ci, const T*, ci, R*, const T*, ci);
            EXPECT_EQ(ks<FA>("ork_blas_" + p + copya)(&h, &kk, A.p(), &A.ld, pa.data(), &alpha, &part), hp);
            ks<void (*)(ci, ci, const T*, ci, R*, ci)>("ork_blas_" + p + copyb)(&kk, &w, B.p(), &B.ld, pb.data(), &part);
            EXPECT_TRUE(layout(pa, packed_a<R>(hp, kk, R(1), [&](idx i, idx j) {
                return pick(mul(alpha, op_at(u, A.p(), A.ld, i, j)));
            })));
            EXPECT_TRUE(
                layout(pb, packed_b<R>(kk, w, [&](idx r, idx c) { return pick(op_at(u, B.p(), B.ld, r, c)); })));
        }
}
TEST(GemmFamily, ThreeProductPackers) {
    three_product_packers<ork_complex8>("c");
    three_product_packers<ork_complex16>("z");
}

// ---- one engine's packers and its pieces on packed operands: the layouts,
// then each piece's share of C (and nothing else).
template <class T> struct sig {
    using copya = ork_int (*)(ci, ci, const T*, ci, T*, const T*);
    using copyb = void (*)(ci, ci, const T*, ci, T*);
    using bcop = void (*)(const char*, ci, ci, ci, const T*, const T*, ci, const T*, T*, ci);
    using abcop = void (*)(ci, ci, ci, const T*, const T*, T*, ci);
    using acop = void (*)(const char*, ci, ci, ci, const T*, const T*, ci, T*, ci);
    using kernel = void (*)(ci, ci, ci, const T*, const T*, T*, ci, void*);
};
// The names after ork_blas_<p> of the packers by op letter (N, T, C) and
// after ork_blas_x<p> of the pieces on packed B, on both, on packed A.
using names = std::vector<std::string>;
template <class T> void packed_pieces(const std::string& p, const names& copya, const names& copyb, names piece) {
    const auto op = [](char t) { return t == 'N' ? 0 : t == 'T' ? 1 : 2; };
    for (auto& f : piece) f = "ork_blas_x" + p + f;
    using S = sig<T>;
    std::mt19937_64 g(73);
    const idx ra = gk<T>::ra, q = gk<T>::q, m = 3 * ra + 1, hp = m - m % ra;
    const T alpha = make<T>(0.75, -0.5);
    for (char ta : std::string(is_cx<T> ? "NTC" : "NT"))
        for (char tb : std::string(is_cx<T> ? "NTC" : "NT")) {
            SCOPED_TRACE(::testing::Message() << piece[0] << " " << ta << tb);
            const char fa[2] = {ta, 0}, fb[2] = {tb, 0};
            auto A = mat<T>(ta == 'N' ? m : kk, ta == 'N' ? kk : m, g);
            auto B = mat<T>(tb == 'N' ? kk : 5003, tb == 'N' ? 5003 : kk, g);
            std::vector<T> pa(std::size_t(hp * kkr + 8), sentinel<T>()), pb(std::size_t(w * kkr + 8), sentinel<T>());
            const std::string na = "ork_blas_" + p + copya[op(ta)], nb = "ork_blas_" + p + copyb[op(tb)];
            EXPECT_EQ(ks<typename S::copya>(na)(&m, &kk, A.p(), &A.ld, pa.data(), &alpha), hp);
            ks<typename S::copyb>(nb)(&kk, &w, B.p(), &B.ld, pb.data());
            EXPECT_TRUE(
                layout(pa, packed_a<T>(hp, kk, alpha, [&](idx i, idx j) { return op_at(ta, A.p(), A.ld, i, j); })));
            EXPECT_TRUE(layout(pb, packed_b<T>(kk, w, [&](idx r, idx c) { return op_at(tb, B.p(), B.ld, r, c); })));
            // C(0 .. rows-1, 0 .. cols-1) += alpha*op(A)*op(B), from the packed operands or the originals
            auto share = [&](idx rows, idx cols, auto call) {
                auto C = mat<T>(m, cols + q, g);
                const auto C0 = C.buf.snapshot();
                call(C);
                EXPECT_TRUE(check_product(ta, tb, rows, cols, kk, alpha, A, B, make<T>(1), C0, C));
            };
            share(hp, w, [&](gmat<T>& C) {
                ks<typename S::bcop>(piece[0])(fa, &m, &kk, &w, &alpha, A.p(), &A.ld, pb.data(), C.p(), &C.ld);
            });
            share(hp, w, [&](gmat<T>& C) {
                ks<typename S::abcop>(piece[1])(&hp, &w, &kkr, pa.data(), pb.data(), C.p(), &C.ld);
            });
            for (idx n : {w + q - 1, idx(5003)})  // the second crosses every engine's column block
                share(hp, n - n % q, [&](gmat<T>& C) {
                    ks<typename S::acop>(piece[2])(fb, &kk, &n, &hp, pa.data(), B.p(), &B.ld, C.p(), &C.ld);
                });
        }
    // deeper than any engine's depth block and wider than a few panels: the
    // pieces size their workspace for what they are given
    const idx kd = 261, n = 203, wd = n - n % q, kdr = 264;
    auto A = mat<T>(m, kd, g), B = mat<T>(kd, n, g);
    std::vector<T> pa(std::size_t(hp * kdr)), pb(std::size_t(wd * kdr));
    ks<typename S::copya>("ork_blas_" + p + copya[0])(&m, &kd, A.p(), &A.ld, pa.data(), &alpha);
    ks<typename S::copyb>("ork_blas_" + p + copyb[0])(&kd, &wd, B.p(), &B.ld, pb.data());
    for (int piece_no : {0, 1, 2}) {
        auto C = mat<T>(m, n, g);
        const auto C0 = C.buf.snapshot();
        const std::string& f = piece[piece_no];
        if (piece_no == 0) ks<typename S::bcop>(f)("N", &m, &kd, &wd, &alpha, A.p(), &A.ld, pb.data(), C.p(), &C.ld);
        if (piece_no == 1) ks<typename S::abcop>(f)(&hp, &wd, &kdr, pa.data(), pb.data(), C.p(), &C.ld);
        if (piece_no == 2) ks<typename S::acop>(f)("N", &kd, &n, &hp, pa.data(), B.p(), &B.ld, C.p(), &C.ld);
        EXPECT_TRUE(check_product('N', 'N', hp, wd, kd, alpha, A, B, make<T>(1), C0, C)) << piece[piece_no];
    }
}
TEST(GemmFamily, FamilyTenPackersAndPieces) {
    const names copya = {"gemm_copyan_0_brc", "gemm_copyat_0_brc"}, copyb = {"gemm_copybn_brc", "gemm_copybt_brc"};
    packed_pieces<double>("d", copya, copyb, {"gemm1_brc_bcopied", "gemm1_brc_abcopied", "gemm1_brc_acopied"});
    packed_pieces<double>("d", copya, copyb, {"gemm0_brc_bcopied", "gemm0_brc_abcopied", "gemm0_brc_acopied"});
    packed_pieces<float>("s", copya, copyb, {"gemm0_brc_bcopied", "gemm0_brc_abcopied", "gemm0_brc_acopied"});
}
template <class T> void htn_pieces(const std::string& p) {
    packed_pieces<T>(p, {"gemm_copyan_htn", "gemm_copyat_htn", "gemm_copyac_htn"},
                     {"gemm_copybn_htn", "gemm_copybt_htn", "gemm_copybc_htn"},
                     {"gemm_0_bcopied_htn", "gemm_0_abcopied_htn", "gemm_1_acopied_htn"});
}
TEST(GemmFamily, HtnPackersAndPieces) {
    htn_pieces<float>("s");
    htn_pieces<double>("d");
    htn_pieces<ork_complex8>("c");
    htn_pieces<ork_complex16>("z");
}

// A beta pass C := beta*C (beta = 0 clears C, even a NaN; 1 leaves it).
template <class T> void beta_pass(const std::string& f, std::mt19937_64& g) {
    const idx m = 5, n = 4;
    for (T beta : {make<T>(0), make<T>(1), make<T>(0.5, -2)}) {
        auto C = mat<T>(m, n, g);
        C.at(1, 1) = make<T>(NAN, NAN);
        const auto C0 = C.buf.snapshot();
        ks<void (*)(ci, ci, const T*, T*, ci)>(f)(&m, &n, &beta, C.p(), &C.ld);
        EXPECT_TRUE((check_product<T, T>('N', 'N', m, n, 0, make<T>(0), mat<T>(0, 0, g), C, beta, C0, C))) << f;
    }
}

// The blocking reports, and the family-10h workspace used for one full block.
template <class T> void brc_workspace(const std::string& p) {
    std::mt19937_64 g(74);
    ork_int info[3] = {}, info1[3] = {};
    const idx m = 600, n = 40, k = 600;
    ks<void (*)(ci, ci, ci, ork_int*)>("ork_blas_" + p + "gemm_blk_info_0_brc")(&m, &n, &k, info);
    EXPECT_TRUE(info[0] == 256 && info[1] == 256 - 256 % gk<T>::ra && info[2] == n);
    if (p == "d") OT_KS(dgemm_blk_info_1_brc)(&m, &n, &k, info1);
    EXPECT_TRUE(p != "d" || std::equal(info, info + 3, info1));
    T *pa = nullptr, *pb = nullptr;
    void* scratch = nullptr;
    void* block = ks<void* (*)(ci, ci, ci, T**, T**, void**)>("ork_blas_" + p + "gemm_getbufs_brc")(&m, &n, &k, &pa,
                                                                                                    &pb, &scratch);
    ASSERT_TRUE(block && pa && pb && scratch);
    EXPECT_EQ((std::uintptr_t(pa) | std::uintptr_t(pb) | std::uintptr_t(scratch)) % 16, 0u);
    const idx kb = info[0], mb = info[1];
    auto A = mat<T>(m, k, g), B = mat<T>(k, n, g), C = mat<T>(m, n, g);
    const auto C0 = C.buf.snapshot();
    const T alpha = make<T>(-0.5);
    const std::string x = "ork_blas_" + p;
    EXPECT_EQ(ks<typename sig<T>::copya>(x + "gemm_copyan_0_brc")(&mb, &kb, A.p(), &A.ld, pa, &alpha), mb);
    ks<typename sig<T>::copyb>(x + "gemm_copybn_brc")(&kb, &n, B.p(), &B.ld, pb);
    ks<typename sig<T>::kernel>(x + "gemm_kernel0_0_brc")(&mb, &n, &kb, pa, pb, C.p(), &C.ld, scratch);
    ks<void (*)(void*)>(x + "gemm_freebufs_brc")(block);
    EXPECT_TRUE(check_product('N', 'N', mb, n, kb, alpha, A, B, make<T>(1), C0, C));
    beta_pass<T>(x + "gemm_mscale_brc", g);
}
TEST(GemmFamily, BlockingAndWorkspaces) {
    brc_workspace<double>("d");
    brc_workspace<float>("s");
    const idx m = 50, k = 50;
    for (auto [p, q] : {std::pair<const char*, idx>{"s", gk<float>::q}, {"d", gk<double>::q},
                        {"c", gk<ork_complex8>::q}, {"z", gk<ork_complex16>::q}})
        for (idx n : {idx(100), idx(1000000)}) {  // nb: all of a short n, a multiple of q of a long one
            ork_int info[3] = {};
            ks<void (*)(ci, ci, ci, ork_int*)>("ork_blas_" + std::string(p) + "gemm_blk_info_htn")(&m, &n, &k, info);
            EXPECT_TRUE(info[0] == 192 && info[1] == 384) << p;
            EXPECT_TRUE(n == 100 ? info[2] == n : info[2] > 0 && info[2] < n && info[2] % q == 0) << p << " " << n;
        }
}

// The blocks of the mixed drivers: beta pass, separations, workspace
// (regions of kb x nb, kb x nb, mb x nb, mb x nb).
// f: the blocks' names, mscale, copyb, copyc_fwd, copyc_bwd, getbufs, freebufs.
template <class R, class T> void mixed_blocks(const names& f, std::size_t bytes, idx kb, idx mb, idx nb) {
    std::mt19937_64 g(75);
    const idx m = 5, n = 4, ldw = 7;
    beta_pass<T>(f[0], g);
    const T alpha = make<T>(0.75, -0.5);
    for (const char* tb : {"N", "t", "C"}) {  // alpha*op(B), separated
        const char t = char(*tb & ~0x20);
        auto B = mat<T>(t == 'N' ? m : n, t == 'N' ? n : m, g);
        std::vector<R> br(std::size_t(ldw * n), sentinel<R>()), bi = br, wr = br, wi = br;
        ks<void (*)(const char*, ci, ci, const T*, ci, const T*, R*, R*, ci)>(f[1])(
            tb, &m, &n, B.p(), &B.ld, &alpha, br.data(), bi.data(), &ldw);
        for (idx j = 0; j < n; ++j)
            for (idx i = 0; i < m; ++i) {
                wr[std::size_t(i + j * ldw)] = mul(alpha, op_at(t, B.p(), B.ld, i, j)).re;
                wi[std::size_t(i + j * ldw)] = mul(alpha, op_at(t, B.p(), B.ld, i, j)).im;
            }
        EXPECT_TRUE(same_all(br, wr) && same_all(bi, wi)) << tb;
    }
    auto C = mat<T>(m, n, g), D = mat<T>(m, n, g);  // C separated, then interleaved into D
    auto E = D.buf.snapshot();                      // what D should become
    std::vector<R> cr(std::size_t(ldw * n), sentinel<R>()), cim = cr, wr = cr, wi = cr;
    for (idx j = 0; j < n; ++j)
        for (idx i = 0; i < m; ++i) {
            E[std::size_t(4 + i + j * D.ld)] = C.at(i, j);
            wr[std::size_t(i + j * ldw)] = C.at(i, j).re, wi[std::size_t(i + j * ldw)] = C.at(i, j).im;
        }
    using F = void (*)(ci, ci, const T*, ci, R*, R*, ci);
    ks<F>(f[2])(&m, &n, C.p(), &C.ld, cr.data(), cim.data(), &ldw);
    using B = void (*)(ci, ci, const R*, const R*, ci, T*, ci);
    ks<B>(f[3])(&m, &n, cr.data(), cim.data(), &ldw, D.p(), &D.ld);
    EXPECT_TRUE(same_all(cr, wr) && same_all(cim, wi) && same_all(D.buf.snapshot(), E));
    R* r[4] = {};
    void* block = ks<void* (*)(R**, R**, R**, R**)>(f[4])(&r[0], &r[1], &r[2], &r[3]);
    ASSERT_NE(block, nullptr);
    std::uintptr_t end = std::uintptr_t(block);
    for (int i = 0; i < 4; ++i) {  // in order inside the block, apart, 128-byte aligned, writable
        const std::size_t len = std::size_t(i < 2 ? kb * nb : mb * nb);
        EXPECT_TRUE(std::uintptr_t(r[i]) >= end && std::uintptr_t(r[i]) % 128 == 0) << i;
        end = std::uintptr_t(r[i] + len);
        std::fill(r[i], r[i] + len, R(1));
    }
    EXPECT_LE(end, std::uintptr_t(block) + bytes);
    ks<void (*)(void*)>(f[5])(block);
}
TEST(GemmFamily, MixedBlocks) {
    mixed_blocks<double, ork_complex16>({"ork_blas_dzgemm_mscale", "ork_blas_dzgemm_copyb", "ork_blas_dzgemm_copyc_fwd",
                                         "ork_blas_dzgemm_copyc_bwd", "ork_blas_dzgemm_getbufs",
                                         "ork_blas_dzgemm_freebufs"},
                                        50256384, 2048, 4080, 512);
    mixed_blocks<float, ork_complex8>({"ork_blas_scgemm_mscale", "ork_blas_scgemm_copyb", "ork_blas_scgemm_copyc_fwd",
                                       "ork_blas_scgemm_copyc_bwd", "ork_blas_scgemm_getbufs", "ork_blas_scgemm_freebufs"},
                                      45136384, 4096, 6912, 512);
}

// ---- libork's entries: the same bits with one, two and three threads (and as the
// kernel driver alone), and the position of the first bad argument.
template <class TA, class T, class F> void thread_bits(const char* what, F entry, F kernel) {
    std::mt19937_64 g(76);
    const idx m = 37, n = 203, k = 300;  // 25 slabs of 8 columns, and 3 more
    auto A = mat<TA>(m, k, g);
    auto B = mat<T>(n, k, g), C = mat<T>(m, n, g);
    const auto C0 = C.buf.snapshot();
    const T alpha = make<T>(0.75, -0.5), beta = make<T>(-1.25, 0.5);
    auto run = [&](F f) {
        std::copy(C0.begin(), C0.end(), C.buf.data());
        f("N", "C", &m, &n, &k, &alpha, A.p(), &A.ld, B.p(), &B.ld, &beta, C.p(), &C.ld);
        return C.buf.snapshot();
    };
    decltype(run(kernel)) one;
    EXPECT_TRUE(same_at_1_2_3_threads([&] { return run(entry); }, &one)) << what;
    EXPECT_TRUE(same_all(one, run(kernel))) << what << ", the kernel";
}
TEST(GemmFamily, LiborkThreadsGiveTheSameBits) {
    thread_bits<ork_complex8, ork_complex8>("cgemm3m", &ork_blas_cgemm3m, OT_KS(xcgemm3m));
    thread_bits<ork_complex16, ork_complex16>("zgemm3m", &ork_blas_zgemm3m, OT_KS(xzgemm3m));
    thread_bits<float, ork_complex8>("scgemm", &ork_blas_scgemm, OT_KS(xscgemm));
    thread_bits<double, ork_complex16>("dzgemm", &ork_blas_dzgemm, OT_KS(xdzgemm));
}

TEST(GemmFamily, ArgumentErrors) {
    argument_errors<ork_complex8, ork_complex8>("ork_blas_cgemm3m", &ork_blas_cgemm3m);
    argument_errors<ork_complex16, ork_complex16>("ork_blas_zgemm3m", &ork_blas_zgemm3m);
    argument_errors<float, ork_complex8>("ork_blas_scgemm", &ork_blas_scgemm);
    argument_errors<double, ork_complex16>("ork_blas_dzgemm", &ork_blas_dzgemm);
}

}  // namespace
