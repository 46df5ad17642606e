// Shared by the matrix-multiply tests: each element type's kernels, guarded
// column-major matrices at chosen byte offsets, the two kinds of data
// (uniform random, and small integers whose products and sums are exact in
// every precision), the packed layouts built independently of the packers,
// and the reference product with its error bound.
#pragma once

#include <array>
#include <cctype>
#include <memory>
#include <new>
#include <ostream>

#include "ork/gemm_kernels.h"
#include "testing.h"

namespace ot {

// ---- the kernels of one element type
#define OT_KS(name) kernel_symbol<decltype(&ork_blas_##name)>("ork_blas_" #name)
template <class T> struct gk;
// What the loaded generation's engine does (?gemm_layout) for a product of
// depth k: info[0] rows of a packed A group, [1] q, [2..4] panel widths,
// [5] scratch bytes per depth row, [6] fused sums, [7] the full depth block,
// [8] the short depth block first.
using layout_info = std::array<idx, 9>;
constexpr idx deep = idx(1) << 20;  // a depth of many whole blocks
template <class F> layout_info layout_from(F f, idx k) {
    layout_info info{};
    f(&k, info.data());
    return info;
}
// ra: rows of a packed A group; q: column multiple of packed B; kb: the
// depth block of the drivers (the packed pieces take at most one); BP, ABP,
// AP: the pieces on packed operands; AC, BC: the conjugating packers (the
// transposing ones for real types), each by its name without ork_blas_.
#define OT_GK(p, T, BP, ABP, AP, AC, BC)                                                     \
    template <> struct gk<T> {                                                              \
        static layout_info layout(idx k = deep) { return layout_from(OT_KS(p##gemm_layout), k); } \
        static inline const idx ra = layout_from(OT_KS(p##gemm_layout), deep)[0],            \
                                q = layout_from(OT_KS(p##gemm_layout), deep)[1],             \
                                kb = layout_from(OT_KS(p##gemm_layout), deep)[7];            \
        static constexpr auto entry = &ork_blas_##p##gemm;                                   \
        static constexpr const char* entry_name = "ork_blas_" #p "gemm";                      \
        static auto driver() { return OT_KS(x##p##gemm); }                                   \
        static auto by_columns() { return OT_KS(x##p##gemm_0); }                             \
        static auto by_rows() { return OT_KS(x##p##gemm_1); }                                \
        static auto b_packed() { return OT_KS(BP); }                                         \
        static auto ab_packed() { return OT_KS(ABP); }                                       \
        static auto a_packed() { return OT_KS(AP); }                                         \
        static auto scalm() { return OT_KS(p##gemm_scalm); }                                 \
        static auto zerom() { return OT_KS(p##gemm_zerom); }                                 \
        static auto pst() { return OT_KS(p##gemm_pst); }                                     \
        static auto copya(char t) {                                                          \
            return t == 'N' ? OT_KS(p##gemm_copyan) : t == 'T' ? OT_KS(p##gemm_copyat) : OT_KS(AC); \
        }                                                                                    \
        static auto copyb(char t) {                                                          \
            return t == 'N' ? OT_KS(p##gemm_copybn) : t == 'T' ? OT_KS(p##gemm_copybt) : OT_KS(BC); \
        }                                                                                    \
        static auto inner() { return OT_KS(p##gemm_inner); }                                 \
        static auto inner_general() { return OT_KS(p##gemm_inner_general); }                 \
    };
OT_GK(s, float, xsgemm_0_bcopied, xsgemm_0_abcopied, xsgemm_1_acopied_in_thread, sgemm_copyat, sgemm_copybt)
OT_GK(d, double, xdgemm_0_bcopied, xdgemm_0_abcopied, xdgemm_1_acopied_in_thread, dgemm_copyat, dgemm_copybt)
OT_GK(c, ork_complex8, xcgemm_bcopied, xcgemm_abcopied, xcgemm_acopied_in_thread, cgemm_copyac, cgemm_copybc)
OT_GK(z, ork_complex16, xzgemm_bcopied, xzgemm_abcopied, xzgemm_acopied_in_thread, zgemm_copyac, zgemm_copybc)
#undef OT_GK

// The op letters a type tells apart.
template <class T> std::vector<char> ops() {
    if constexpr (is_cx<T>) return {'N', 'T', 'C'};
    else return {'N', 'T'};
}
inline idx round4(idx k) { return (k + 3) / 4 * 4; }

// Restores processor detection when it goes out of scope.
struct forced_cpu {
    forced_cpu(int generation, int barcelona) { ork_force_cpu(generation, barcelona); }
    ~forced_cpu() { ork_force_cpu(-1, -1); }
};

// ---- storage: n elements from `shift` bytes past a 64-byte boundary (shift a
// multiple of alignof(T): one real component moves a complex element off 16).
template <class T> class buffer {
public:
    buffer(std::size_t n, std::size_t shift, T fill)
        : raw_(static_cast<unsigned char*>(::operator new(n * sizeof(T) + 64, std::align_val_t{64}))),
          p_(reinterpret_cast<T*>(raw_.get() + shift)), n_(n) {
        std::fill(p_, p_ + n_, fill);
    }
    T* data() const { return p_; }
    std::size_t size() const { return n_; }
    T& operator[](std::size_t i) const { return p_[i]; }
    std::vector<T> snapshot() const { return {p_, p_ + n_}; }

private:
    struct release {
        void operator()(unsigned char* p) const { ::operator delete(p, std::align_val_t{64}); }
    };
    std::unique_ptr<unsigned char, release> raw_;
    T* p_;
    std::size_t n_;
};

// rows x cols with leading dimension ld, `guard` in four slots before, in the
// ld - rows slots below each column and in four slots after.
template <class T> struct gmat {
    idx rows, cols, ld;
    buffer<T> buf;
    gmat(idx r, idx c, idx ld_, std::size_t shift, T guard)
        : rows(r), cols(c), ld(ld_), buf(std::size_t(8 + ld_ * c), shift, guard) {}
    T* p() const { return buf.data() + 4; }
    T& at(idx i, idx j) const { return p()[i + j * ld]; }
    bool inside(std::size_t slot) const {
        if (slot < 4) return false;
        const idx s = idx(slot - 4);
        return s / ld < cols && s % ld < rows;
    }
    template <class F> void fill(F f) {
        for (idx j = 0; j < cols; ++j)
            for (idx i = 0; i < rows; ++i) at(i, j) = f(i, j);
    }
};

// Slots outside the matrix (and, with keep_rows, rows keep_rows.. inside it)
// must hold what they held before, bit for bit.
template <class T>
::testing::AssertionResult guards_kept(const gmat<T>& x, const std::vector<T>& before, idx keep_rows = -1,
                                       idx keep_cols = -1) {
    for (std::size_t s = 0; s < before.size(); ++s) {
        bool checked = !x.inside(s);
        if (!checked) {
            const idx i = idx(s - 4) % x.ld, j = idx(s - 4) / x.ld;
            checked = (keep_rows >= 0 && i >= keep_rows) || (keep_cols >= 0 && j >= keep_cols);
        }
        if (checked && !same(x.buf[s], before[s]))
            return ::testing::AssertionFailure() << "slot " << s << " (ld " << x.ld << ") changed to " << ld(x.buf[s]);
    }
    return ::testing::AssertionSuccess();
}

// ---- data
enum class kind { random, ints };
// Integers in [-3, 3]: with scalars in {0, +-1, 2.5, 0.5-1.5i} every product
// and partial sum of these tests is a multiple of 1/4 far below 2^24, so
// exact in single precision and in any order of summation.
template <class T> T draw(std::mt19937_64& g, kind d) {
    if (d == kind::random) return rnd<T>(g);
    std::uniform_int_distribution<int> u(-3, 3);
    const int re = u(g);
    return make<T>(re, is_cx<T> ? u(g) : 0);
}
template <class T> T nan_of() { return make<T>(NAN, NAN); }

// op(X)(i, j) of a column-major X.
template <class T> T op_at(char t, const T* x, idx ld, idx i, idx j) {
    if (t == 'N') return x[i + j * ld];
    return t == 'C' ? conj(x[j + i * ld]) : x[j + i * ld];
}

// ---- packed layouts, written from their description: A in groups of ra
// rows, depth j of group g at g*ra*kkr + j*ra, scaled by alpha, zero depths up
// to kkr; B in panels (as many of the widest as fit, then at most one of each
// narrower width), row r of the panel at c0 at c0*kkr + pw*r.
template <class T> std::vector<idx> panel_widths(idx w) {
    const layout_info info = gk<T>::layout();
    std::vector<idx> widths = {info[2]};
    for (int i = 3; i < 5; ++i)
        if (info[i] < widths.back()) widths.push_back(info[i]);
    std::vector<idx> out;
    idx left = w;
    for (; left >= widths[0]; left -= widths[0]) out.push_back(widths[0]);
    for (std::size_t k = 1; k < widths.size(); ++k)
        if (left >= widths[k]) {
            out.push_back(widths[k]);
            left -= widths[k];
        }
    return out;
}
// h whole groups of alpha*op(A) at depth kk (op(A) given by opa(i, l)).
template <class T, class F> buffer<T> packed_a(idx h, idx kk, T alpha, F opa) {
    const idx ra = gk<T>::ra, kkr = round4(kk);
    buffer<T> p(std::size_t(std::max<idx>(h * kkr, 1)), 0, make<T>(0));
    for (idx i = 0; i < h; ++i)
        for (idx l = 0; l < kk; ++l) p[std::size_t((i / ra) * ra * kkr + l * ra + i % ra)] = mul(alpha, opa(i, l));
    return p;
}
template <class T, class F> buffer<T> packed_b(idx kk, idx w, F opb) {
    const idx kkr = round4(kk);
    buffer<T> p(std::size_t(std::max<idx>(w * kkr, 1)), 0, make<T>(0));
    idx c0 = 0;
    for (idx pw : panel_widths<T>(w)) {
        for (idx r = 0; r < kk; ++r)
            for (idx c = 0; c < pw; ++c) p[std::size_t(c0 * kkr + pw * r + c)] = opb(r, c0 + c);
        c0 += pw;
    }
    return p;
}

// ---- the reference product
struct product {
    idx m = 0, n = 0;
    std::vector<LC> val;            // alpha*op(A)*op(B) + beta*C
    std::vector<long double> mag;   // |alpha| sum |a||b| + |beta c|, for the bound
    LC at(idx i, idx j) const { return val[std::size_t(i + j * m)]; }
};

// Sums in R: long double for random data (with the magnitudes), double for
// small integers, where it is exact and vectorises. C is not read for beta = 0.
// A may be real under a complex T (the mixed products).
template <class R, class TA, class T>
product reference(char ta, char tb, idx m, idx n, idx k, T alpha, const TA* a, idx lda, const T* b, idx ldb, T beta,
                  const T* c, idx ldc) {
    constexpr bool cxt = is_cx<T>, with_mag = std::is_same_v<R, long double>;
    const std::size_t M = std::size_t(m), N = std::size_t(n), K = std::size_t(k);
    std::vector<R> ar(M * K), ai(cxt ? M * K : 0), br(K * N), bi(cxt ? K * N : 0);
    for (idx l = 0; l < k; ++l)
        for (idx i = 0; i < m; ++i) {
            const LC v = ld(op_at(ta, a, lda, i, l));
            ar[i + l * M] = R(v.real());
            if (cxt) ai[i + l * M] = R(v.imag());
        }
    for (idx j = 0; j < n; ++j)
        for (idx l = 0; l < k; ++l) {
            const LC v = ld(op_at(tb, b, ldb, l, j));
            br[l + j * K] = R(v.real());
            if (cxt) bi[l + j * K] = R(v.imag());
        }
    std::vector<R> sr(M * N), si(cxt ? M * N : 0), sm(with_mag ? M * N : 0);
    for (std::size_t j = 0; j < N; ++j)
        for (std::size_t l = 0; l < K; ++l) {
            const R xr = br[l + j * K], xi = cxt ? bi[l + j * K] : R(0);
            R* s = sr.data() + j * M;
            const R* p = ar.data() + l * M;
            if constexpr (cxt) {
                R* t = si.data() + j * M;
                const R* q = ai.data() + l * M;
                for (std::size_t i = 0; i < M; ++i) {
                    s[i] += p[i] * xr - q[i] * xi;
                    t[i] += p[i] * xi + q[i] * xr;
                }
            } else {
                for (std::size_t i = 0; i < M; ++i) s[i] += p[i] * xr;
            }
            if constexpr (with_mag) {
                R* u = sm.data() + j * M;
                const R xm = std::fabs(xr) + std::fabs(xi);
                for (std::size_t i = 0; i < M; ++i) u[i] += (std::fabs(p[i]) + (cxt ? std::fabs(ai[l * M + i]) : 0)) * xm;
            }
        }
    product out;
    out.m = m;
    out.n = n;
    out.val.resize(M * N);
    out.mag.resize(M * N);
    const bool beta0 = ld(beta) == LC(0);
    for (std::size_t j = 0; j < N; ++j)
        for (std::size_t i = 0; i < M; ++i) {
            const std::size_t e = i + j * M;
            LC v = ld(alpha) * LC(sr[e], cxt ? si[e] : 0);
            long double g = with_mag ? mag1(alpha) * sm[e] : 0;
            if (!beta0) {
                const T x = c[i + j * ldc];
                v += ld(beta) * ld(x);
                g += mag1(beta) * mag1(x);
            }
            out.val[e] = v;
            out.mag[e] = g;
        }
    return out;
}

// The m x n block of C against the reference: exactly for integer data, else
// within 2(k+8)eps (4(k+8)eps complex) of the magnitudes; rows, cols >= 0
// restrict the check to the leading rows x cols; a factor > 0 replaces
// 2(k+8)eps; tri >= 0 to the lower (1) or upper (0) triangle.
template <class T>
::testing::AssertionResult matches(const gmat<T>& c, const product& want, idx k, bool exact, idx rows = -1,
                                   idx cols = -1, long double factor = 0, int tri = -1) {
    const long double f = factor > 0 ? factor : (is_cx<T> ? 4.0L : 2.0L) * (long double)(k + 8) * eps<T>;
    const idx m = rows < 0 ? want.m : rows, n = cols < 0 ? want.n : cols;
    for (idx j = 0; j < n; ++j)
        for (idx i = tri == 1 ? j : 0; i < (tri == 0 ? std::min(j + 1, m) : m); ++i) {
            const long double tol = exact ? 0 : f * want.mag[std::size_t(i + j * want.m)];
            auto r = near(c.at(i, j), want.at(i, j), tol);
            if (!r) return r << " at (" << i << ", " << j << ")";
        }
    return ::testing::AssertionSuccess();
}

// ---- one call of a whole product
template <class T> std::vector<T> scalars() {
    std::vector<T> s = {make<T>(0), make<T>(1), make<T>(-1), make<T>(2.5)};
    if constexpr (is_cx<T>) s.push_back(make<T>(0.5, -1.5));
    return s;
}
// Only the first letter counts, in either case; real types read every
// letter but N as a transpose.
template <class T> std::vector<const char*> spellings() {
    if constexpr (is_cx<T>) return {"N", "T", "C", "n", "t", "c", "No transpose", "transpose", "Conjugate transpose"};
    else return {"N", "T", "n", "t", "No transpose", "Transpose", "C", "x"};
}
template <class T> char op_of(const char* f) {
    const char c = char(std::toupper(static_cast<unsigned char>(*f)));
    if (c == 'N') return 'N';
    return is_cx<T> && c == 'C' ? 'C' : 'T';
}

struct gcase {
    idx m, n, k;
    const char *ta, *tb;
    std::size_t alpha, beta;  // indices into scalars<T>()
    idx lda_pad = 0, ldb_pad = 0, ldc_pad = 0;
    bool shifted = false;     // C one real component past 16-byte alignment
    kind data = kind::random;
};
inline std::ostream& operator<<(std::ostream& o, const gcase& c) {
    return o << "m=" << c.m << " n=" << c.n << " k=" << c.k << " ta=\"" << c.ta << "\" tb=\"" << c.tb
             << "\" alpha#" << c.alpha << " beta#" << c.beta << " pads=" << c.lda_pad << "," << c.ldb_pad << ","
             << c.ldc_pad << (c.shifted ? " shifted" : "") << (c.data == kind::ints ? " ints" : " random");
}

// One call of f: A and B padded with NaN, which must never be read; C (NaN
// and infinities where beta = 0) against the reference (unless a caller that
// compares further asks not to), its guards kept; A and B unchanged. Returns C.
template <class T, class F> gmat<T> run(F f, const gcase& c, std::mt19937_64& g, bool check = true) {
    SCOPED_TRACE(::testing::Message() << c);
    const char ta = op_of<T>(c.ta), tb = op_of<T>(c.tb);
    const T alpha = scalars<T>()[c.alpha], beta = scalars<T>()[c.beta];
    const idx ra = ta == 'N' ? c.m : c.k, ca = ta == 'N' ? c.k : c.m;
    const idx rb = tb == 'N' ? c.k : c.n, cb = tb == 'N' ? c.n : c.k;
    gmat<T> A(ra, ca, std::max<idx>(ra, 1) + c.lda_pad, 0, nan_of<T>());
    gmat<T> B(rb, cb, std::max<idx>(rb, 1) + c.ldb_pad, 0, nan_of<T>());
    gmat<T> C(c.m, c.n, std::max<idx>(c.m, 1) + c.ldc_pad, c.shifted ? sizeof(real_t<T>) : 0, sentinel<T>());
    A.fill([&](idx, idx) { return draw<T>(g, c.data); });
    B.fill([&](idx, idx) { return draw<T>(g, c.data); });
    const bool beta0 = same(beta, make<T>(0));
    C.fill([&](idx i, idx j) {
        if (!beta0) return draw<T>(g, c.data);
        return (i + j) % 3 ? nan_of<T>() : make<T>(INFINITY, -INFINITY);
    });
    const bool exact = c.data == kind::ints;
    const product want =
        !check ? product{}
        : exact ? reference<double>(ta, tb, c.m, c.n, c.k, alpha, A.p(), A.ld, B.p(), B.ld, beta, C.p(), C.ld)
                : reference<long double>(ta, tb, c.m, c.n, c.k, alpha, A.p(), A.ld, B.p(), B.ld, beta, C.p(), C.ld);
    const auto a0 = A.buf.snapshot(), b0 = B.buf.snapshot(), c0 = C.buf.snapshot();
    f(c.ta, c.tb, &c.m, &c.n, &c.k, &alpha, A.p(), &A.ld, B.p(), &B.ld, &beta, C.p(), &C.ld);
    if (check) {
        EXPECT_TRUE(matches(C, want, c.k, exact));
    }
    EXPECT_TRUE(guards_kept(C, c0));
    EXPECT_TRUE(same_all(A.buf.snapshot(), a0));
    EXPECT_TRUE(same_all(B.buf.snapshot(), b0));
    return C;
}

// ---- argument checks of a ?gemm-like entry (A of type TA): a valid call
// (m = 3, n = 2, k = 4, op(B) = B^T) with each leading dimension short and
// each array missing in turn (`missing` passes that one as null; a bad
// letter, dimension or scalar alone: tests/frame/manifest_test.cpp), the
// boundaries of the leading dimensions, and several bad arguments at once,
// the first one reported; C is not written, and the boundary values
// themselves are accepted.
template <class TA, class T, class F> void argument_errors(const std::string& name, F f) {
    std::mt19937_64 g(77);
    std::vector<TA> a(32);
    std::vector<T> b(32), c(32);
    for (TA& x : a) x = rnd<TA>(g);
    for (T& x : b) x = rnd<T>(g);
    for (T& x : c) x = rnd<T>(g);
    const T alpha = make<T>(2), beta = make<T>(0.5);
    struct call {
        const char *ta = "N", *tb = "T";
        idx m = 3, n = 2, k = 4, lda = 3, ldb = 2, ldc = 3;
        int missing = 0, position = 0;
    };
    std::vector<call> calls;
    for (int p : {7, 8, 9, 10, 12, 13}) {
        call& x = calls.emplace_back();
        x.position = p;
        if (p == 8 || p == 10 || p == 13) (p == 8 ? x.lda : p == 10 ? x.ldb : x.ldc) = 2 - (p == 10);
        else x.missing = p;
    }
    const call more[] = {
        {"c", "T", 2, 2, 4, 3, 2, 3, 0, 8},   {"N", "n", 3, 2, 4, 6, 3, 3, 0, 10},  {"N", "T", 3, 2, 0, 6, 2, 3, 7, 0},
        {"", "N", 3, 2, 4, 3, 4, 3, 0, 1},    {"N", "/", 3, 2, 4, 3, 4, 3, 0, 2},   {"T", "N", 3, -1, 4, 4, 4, 3, 0, 4},
        {"N", "T", 3, 2, -1, 3, 2, 3, 0, 5},  {"T", "N", 3, 2, 4, 3, 4, 3, 0, 8},   {"C", "N", 0, 2, 4, 3, 4, 1, 0, 8},
        {"N", "N", 0, 2, 4, 0, 4, 1, 0, 8},   {"N", "N", 3, 2, 4, 3, 3, 3, 0, 10},  {"N", "T", 3, 2, 4, 3, 1, 3, 0, 10},
        {"N", "C", 3, 2, 0, 3, 1, 3, 0, 10},  {"N", "N", 3, 2, 0, 3, 0, 3, 0, 10},  {"N", "N", 0, 2, 4, 1, 4, 0, 0, 13},
        {"X", "?", -1, -1, -1, 0, 0, 0, 0, 1}, {"N", "N", 3, -2, -4, 0, 0, 0, 0, 4}, {"t", "c", 3, 2, 4, 4, 2, 3, 0, 0},
        {"n", "n", 3, 2, 4, 3, 4, 3, 0, 0},   {"N", "N", 0, 0, 0, 1, 1, 1, 0, 0}};
    calls.insert(calls.end(), std::begin(more), std::end(more));
    std::vector<bad_call> table;
    for (const call& x : calls)
        table.push_back({name, x.position, [&, x] {
                             auto arg = [&](int p, auto* v) { return x.missing == p ? nullptr : v; };
                             f(x.ta, x.tb, &x.m, &x.n, &x.k, &alpha, arg(7, a.data()), &x.lda, arg(9, b.data()), &x.ldb,
                               &beta, arg(12, c.data()), &x.ldc);
                         }});
    expect_reports(table, [&] { return std::string(reinterpret_cast<const char*>(c.data()), c.size() * sizeof(T)); });
}

}  // namespace ot
