// Every kernel library this processor runs gives the baseline's bits for the
// level-1 kernels whose order or rounding is fixed: the elementwise kernels
// of every type, the double dot, sum and norm, the index searches with their
// tie and NaN rules, and the rotation generators. The libraries are opened
// side by side in one process and called on the same inputs. (The dot, sum
// and norm of single and complex precision have a free order and are left
// out, but for the single dot, which keeps the baseline's order anyway.)
#include <dlfcn.h>

#include <cmath>
#include <functional>
#include <string>

#include "testing.h"

namespace {

using namespace ot;

struct library {
    int generation;
    void* handle;
};

// The libraries next to the loaded one, baseline first, up to what the
// processor runs.
const std::vector<library>& libraries() {
    static const std::vector<library> all = [] {
        std::vector<library> v;
        if (ork_init() != 0) return v;
        std::string dir = ork_kernel_library_path();
        dir = dir.substr(0, dir.rfind('/') + 1);
        for (int g = ORK_CPU_BASELINE; g <= ork_cpu_generation(); ++g) {
            const std::string path = dir + "libork_" + ork_cpu_generation_name(g) + ".so";
            if (void* h = dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL)) v.push_back({g, h});
            else std::printf("note: %s not loaded: %s\n", path.c_str(), dlerror());
        }
        return v;
    }();
    return all;
}

// A routine's kernel in one library: the x main entry where there is one.
template <class F> F in(void* h, const routine<F>& r) {
    void* p = dlsym(h, (std::string("ork_blas_x") + r.name).c_str());
    if (!p) p = dlsym(h, (std::string("ork_blas_") + r.name).c_str());
    if (!p) throw std::runtime_error(std::string("no kernel for ") + r.name);
    return reinterpret_cast<F>(p);
}

// What a run records: results as bytes, every NaN made the same quiet NaN
// first (IEEE leaves the sign and payload of a NaN result to the instruction;
// where a NaN appears is what must agree).
using bytes = std::vector<unsigned char>;
template <class R> R canonical(R v) { return std::isnan(v) ? std::numeric_limits<R>::quiet_NaN() : v; }
template <class T> T canonical_element(T v) {
    if constexpr (std::is_same_v<T, ork_complex8> || std::is_same_v<T, ork_complex16>) return {canonical(v.re), canonical(v.im)};
    else if constexpr (std::is_floating_point_v<T>) return canonical(v);
    else return v;
}
template <class T> void put(bytes& out, const T* p, std::size_t n) {
    for (std::size_t k = 0; k < n; ++k) {
        const T v = canonical_element(p[k]);
        const auto* b = reinterpret_cast<const unsigned char*>(&v);
        out.insert(out.end(), b, b + sizeof(T));
    }
}
template <class T> void put(bytes& out, const std::vector<T>& v) { put(out, v.data(), v.size()); }
template <class T> void put(bytes& out, const T& v) { put(out, &v, 1); }

// Runs `run` on each library's kernels; everything it records must be the
// baseline's, byte for byte.
::testing::AssertionResult same_everywhere(const std::function<void(void*, bytes&)>& run) {
    const auto& libs = libraries();
    if (libs.empty()) return ::testing::AssertionFailure() << "no kernel library opened";
    bytes base;
    run(libs[0].handle, base);
    for (std::size_t k = 1; k < libs.size(); ++k) {
        bytes got;
        run(libs[k].handle, got);
        if (got != base) {
            std::size_t at = 0;
            while (at < got.size() && at < base.size() && got[at] == base[at]) ++at;
            return ::testing::AssertionFailure() << ork_cpu_generation_name(libs[k].generation)
                                                 << " differs from the baseline at byte " << at;
        }
    }
    return ::testing::AssertionSuccess();
}

// Vector data: random, with NaN, infinities, ties and magnitudes far apart
// mixed in for `special`.
template <class T> void fill(gvec<T>& v, std::mt19937_64& g, bool special) {
    using R = real_t<T>;
    const R odd[] = {std::numeric_limits<R>::quiet_NaN(), std::numeric_limits<R>::infinity(), R(0), R(-0.0), R(1e30),
                     R(1e-30), R(2), R(-2)};
    for (idx i = 0; i < v.n; ++i) {
        v.at(i) = rnd<T>(g, -4, 4);
        if (special && g() % 3 == 0) v.at(i) = make<T>(odd[g() % 8], is_cx<T> ? double(odd[g() % 8]) : 0);
    }
}

struct shape {
    idx n, incx, incy;
    int shift_x, shift_y;  // elements off 16-byte alignment
};
std::vector<shape> shapes() {
    std::vector<shape> s;
    for (idx n : {0, 1, 2, 3, 4, 5, 7, 8, 9, 15, 16, 17, 31, 64, 100, 257})
        for (auto [ix, iy] : std::vector<std::pair<idx, idx>>{{1, 1}, {-1, -1}, {2, 1}, {1, -2}, {-3, 2}})
            for (int sh = 0; sh < (ix == 1 && iy == 1 ? 4 : 1); ++sh) s.push_back({n, ix, iy, sh & 1, sh >> 1});
    return s;
}

template <class T> class Generations : public ::testing::Test {};
TYPED_TEST_SUITE(Generations, ElementTypes);

// axpy, copy, swap, scal, the rotations, lartv, rot2 and rot3 over strides,
// alignments and special values.
TYPED_TEST(Generations, ElementwiseKernels) {
    using T = TypeParam;
    using R = real_t<T>;
    using A = api<T>;
    int cases = 0;
    for (const shape& s : shapes())
        for (bool special : {false, true}) {
            const auto seed = std::uint64_t(s.n * 131 + s.incx * 7 + s.incy * 3 + s.shift_x * 2 + s.shift_y + special);
            std::mt19937_64 g0(seed);
            const T alpha = rnd<T>(g0, -2, 2), zs = rnd<T>(g0, -1, 1);
            const R c = R(0.6), sn = R(0.8), ra = R(-1.5);
            const T nan_alpha = make<T>(std::nan(""), 1);
            // Fresh x and y of the case for each library.
            auto vectors = [&] {
                std::mt19937_64 g(seed);
                gvec<T> x(s.n, s.incx, s.shift_x, g), y(s.n, s.incy, s.shift_y, g);
                fill(x, g, special);
                fill(y, g, special);
                return std::pair{x, y};
            };
            auto two = [&](auto call) {
                return same_everywhere([&](void* h, bytes& out) {
                    auto [x, y] = vectors();
                    call(h, x, y);
                    put(out, x.buf);
                    put(out, y.buf);
                });
            };
            const std::string at = " n " + std::to_string(s.n) + " inc " + std::to_string(s.incx) + "," +
                                   std::to_string(s.incy) + " shift " + std::to_string(s.shift_x) +
                                   std::to_string(s.shift_y) + (special ? " special" : "");
            for (const T& a : {alpha, nan_alpha})
                EXPECT_TRUE(two([&](void* h, gvec<T>& x, gvec<T>& y) { in(h, A::axpy)(&s.n, &a, x.p(), &x.inc, y.p(), &y.inc); })) << "axpy" << at;
            EXPECT_TRUE(two([&](void* h, gvec<T>& x, gvec<T>& y) { in(h, A::copy)(&s.n, x.p(), &x.inc, y.p(), &y.inc); })) << "copy" << at;
            EXPECT_TRUE(two([&](void* h, gvec<T>& x, gvec<T>& y) { in(h, A::swap)(&s.n, x.p(), &x.inc, y.p(), &y.inc); })) << "swap" << at;
            EXPECT_TRUE(two([&](void* h, gvec<T>& x, gvec<T>&) { in(h, A::scal)(&s.n, &alpha, x.p(), &x.inc); })) << "scal" << at;
            EXPECT_TRUE(two([&](void* h, gvec<T>& x, gvec<T>&) { in(h, A::rscal)(&s.n, &ra, x.p(), &x.inc); })) << "real scal" << at;
            EXPECT_TRUE(two([&](void* h, gvec<T>& x, gvec<T>& y) { in(h, A::rot)(&s.n, x.p(), &x.inc, y.p(), &y.inc, &c, &sn); })) << "rot" << at;
            if constexpr (is_cx<T>) {
                EXPECT_TRUE(two([&](void* h, gvec<T>& x, gvec<T>& y) { in(h, A::crot)(&s.n, x.p(), &x.inc, y.p(), &y.inc, &c, &zs); })) << "crot" << at;
            }
            if constexpr (!is_cx<T>)
                for (R flag : {R(-2), R(-1), R(0), R(1)}) {
                    const R param[5] = {flag, R(0.5), R(-0.25), R(1.5), R(2)};
                    const auto rotm = routine<void (*)(const idx*, R*, const idx*, R*, const idx*, const R*)>{
                        nullptr, sizeof(R) == 4 ? "srotm" : "drotm"};
                    EXPECT_TRUE(two([&](void* h, gvec<T>& x, gvec<T>& y) { in(h, rotm)(&s.n, x.p(), &x.inc, y.p(), &y.inc, param); }))
                        << "rotm " << flag << at;
                }
            // lartv: c and s vectors with the x increment's magnitude as their own
            EXPECT_TRUE(two([&](void* h, gvec<T>& x, gvec<T>& y) {
                std::mt19937_64 g(seed + 1);
                const idx incc = s.incx < 0 ? -s.incx : s.incx;
                std::vector<R> cc(std::size_t(s.n * incc + 1));
                std::vector<T> ss(cc.size());
                for (std::size_t k = 0; k < cc.size(); ++k) {
                    cc[k] = R(std::uniform_real_distribution<double>(-1, 1)(g));
                    ss[k] = rnd<T>(g);
                }
                in(h, A::lartv)(&s.n, x.p(), &x.inc, y.p(), &y.inc, cc.data(), ss.data(), &incc);
            })) << "lartv" << at;
            if (s.incx == 1 && s.incy == 1) {
                const T v = rnd<T>(g0), w = rnd<T>(g0), tau = rnd<T>(g0);
                EXPECT_TRUE(two([&](void* h, gvec<T>& x, gvec<T>& y) { in(h, A::rot2)(&s.n, x.p(), y.p(), &v, &tau); })) << "rot2" << at;
                EXPECT_TRUE(same_everywhere([&](void* h, bytes& out) {
                    auto [x, y] = vectors();
                    std::mt19937_64 g(seed + 2);
                    gvec<T> z(s.n, 1, s.shift_x ^ s.shift_y, g);
                    in(h, A::rot3)(&s.n, x.p(), y.p(), z.p(), &v, &w, &tau);
                    put(out, x.buf);
                    put(out, y.buf);
                    put(out, z.buf);
                })) << "rot3" << at;
            }
            ++cases;
        }
    EXPECT_GT(cases, 100);
    EXPECT_GE(libraries().size(), std::size_t(ork_cpu_generation() + 1)) << "a library this processor runs is missing";
}

// The index searches (first index on ties, the NaN rule), and for double the
// dot product, the sum of magnitudes and the scaled norm.
TYPED_TEST(Generations, FixedOrderReductions) {
    using T = TypeParam;
    using A = api<T>;
    for (const shape& s : shapes())
        for (int kind = 0; kind < 3; ++kind) {  // random, special values, many ties
            const auto seed = std::uint64_t(s.n * 17 + s.incx * 5 + s.incy + s.shift_x * 3 + kind * 1000);
            auto vectors = [&] {
                std::mt19937_64 g(seed);
                gvec<T> x(s.n, s.incx, s.shift_x, g), y(s.n, s.incy, s.shift_y, g);
                fill(x, g, kind == 1);
                fill(y, g, kind == 1);
                if (kind == 2)
                    for (idx i = 0; i < s.n; ++i) x.at(i) = make<T>(double(g() % 3) - 1, is_cx<T> ? double(g() % 3) - 1 : 0);
                return std::pair{x, y};
            };
            const std::string at = " n " + std::to_string(s.n) + " inc " + std::to_string(s.incx) + " kind " + std::to_string(kind);
            EXPECT_TRUE(same_everywhere([&](void* h, bytes& out) {
                auto [x, y] = vectors();
                put(out, in(h, A::iamax)(&s.n, x.p(), &x.inc));
                put(out, in(h, A::iamin)(&s.n, x.p(), &x.inc));
            })) << "i?amax, i?amin" << at;
            if constexpr (std::is_same_v<T, double>) {
                EXPECT_TRUE(same_everywhere([&](void* h, bytes& out) {
                    auto [x, y] = vectors();
                    put(out, in(h, A::dotu)(&s.n, x.p(), &x.inc, y.p(), &y.inc));
                    put(out, in(h, A::asum)(&s.n, x.p(), &x.inc));
                    put(out, in(h, A::nrm2)(&s.n, x.p(), &x.inc));
                })) << "ddot, dasum, dnrm2" << at;
            }
            if constexpr (std::is_same_v<T, float>) {  // its order is the baseline's in every generation too
                EXPECT_TRUE(same_everywhere([&](void* h, bytes& out) {
                    auto [x, y] = vectors();
                    put(out, in(h, A::dotu)(&s.n, x.p(), &x.inc, y.p(), &y.inc));
                })) << "sdot" << at;
            }
        }
}

// The sparse kernels over index lists with repeats.
TYPED_TEST(Generations, SparseKernels) {
    using T = TypeParam;
    using R = real_t<T>;
    using A = api<T>;
    for (idx nz : {0, 1, 2, 3, 5, 8, 17, 64})
        for (bool repeats : {false, true}) {
            const auto seed = std::uint64_t(nz * 2 + repeats);
            const idx ny = 80;
            auto data = [&] {
                std::mt19937_64 g(seed);
                std::vector<T> x(static_cast<std::size_t>(nz) + 2), y(static_cast<std::size_t>(ny));
                std::vector<idx> indx(static_cast<std::size_t>(nz));
                for (auto& v : x) v = rnd<T>(g);
                for (auto& v : y) v = rnd<T>(g);
                for (idx i = 0; i < nz; ++i) indx[std::size_t(i)] = repeats ? 1 + idx(g() % 4) : 1 + (i * 37) % ny;
                return std::tuple{x, y, indx};
            };
            const T alpha = make<T>(0.75, -1.25);
            auto check = [&](const char* what, auto call) {
                EXPECT_TRUE(same_everywhere([&](void* h, bytes& out) {
                    auto [x, y, indx] = data();
                    call(h, x, y, indx);
                    put(out, x);
                    put(out, y);
                })) << what << " nz " << nz << (repeats ? " with repeats" : "");
            };
            check("axpyi", [&](void* h, auto& x, auto& y, auto& ix) { in(h, A::axpyi)(&nz, &alpha, x.data(), ix.data(), y.data()); });
            check("gthr", [&](void* h, auto& x, auto& y, auto& ix) { in(h, A::gthr)(&nz, y.data(), x.data(), ix.data()); });
            check("gthrz", [&](void* h, auto& x, auto& y, auto& ix) { in(h, A::gthrz)(&nz, y.data(), x.data(), ix.data()); });
            check("sctr", [&](void* h, auto& x, auto& y, auto& ix) { in(h, A::sctr)(&nz, x.data(), ix.data(), y.data()); });
            if constexpr (!is_cx<T>) {
                const R c = R(0.6), sn = R(-0.8);
                const auto roti = routine<void (*)(const idx*, R*, const idx*, R*, const R*, const R*)>{
                    nullptr, sizeof(R) == 4 ? "sroti" : "droti"};
                check("roti", [&](void* h, auto& x, auto& y, auto& ix) { in(h, roti)(&nz, x.data(), ix.data(), y.data(), &c, &sn); });
            }
        }
}

// The rotation generators over zeros, equal magnitudes, signs, and values
// that make rotmg rescale.
TEST(GenerationsScalar, RotationGenerators) {
    const double vals[] = {0, -0.0, 1, -1, 2, 3, -4, 1e-300, 1e300, 4096, 1.0 / 4096, 1e-9, 7e8, std::nan("")};
    for (double a : vals)
        for (double b : vals) {
            EXPECT_TRUE(same_everywhere([&](void* h, bytes& out) {
                double da = a, db = b, c = 0, s = 0;
                reinterpret_cast<decltype(&ork_blas_drotg)>(dlsym(h, "ork_blas_drotg"))(&da, &db, &c, &s);
                float fa = float(a), fb = float(b), fc = 0, fs = 0;
                reinterpret_cast<decltype(&ork_blas_srotg)>(dlsym(h, "ork_blas_srotg"))(&fa, &fb, &fc, &fs);
                ork_complex16 za{a, b}, zb{b, -a}, zs{};
                double zc = 0;
                reinterpret_cast<decltype(&ork_blas_zrotg)>(dlsym(h, "ork_blas_zrotg"))(&za, &zb, &zc, &zs);
                ork_complex8 ca{float(a), float(b)}, cb{float(b), float(-a)}, cs{};
                float cc = 0;
                reinterpret_cast<decltype(&ork_blas_crotg)>(dlsym(h, "ork_blas_crotg"))(&ca, &cb, &cc, &cs);
                put(out, std::vector<double>{da, db, c, s, za.re, za.im, zc, zs.re, zs.im});
                put(out, std::vector<float>{fa, fb, fc, fs, ca.re, ca.im, cc, cs.re, cs.im});
                for (double d1 : {1.0, -1.0, 1e-8, 3e7}) {
                    double p[5] = {}, dd1 = d1, dd2 = std::fabs(b) + 0.5, x1 = a;
                    reinterpret_cast<decltype(&ork_blas_drotmg)>(dlsym(h, "ork_blas_drotmg"))(&dd1, &dd2, &x1, &b, p);
                    float q[5] = {}, f1 = float(d1), f2 = float(std::fabs(b) + 0.5), y1 = float(b), fx = float(a);
                    reinterpret_cast<decltype(&ork_blas_srotmg)>(dlsym(h, "ork_blas_srotmg"))(&f1, &f2, &fx, &y1, q);
                    put(out, std::vector<double>{dd1, dd2, x1, p[0], p[1], p[2], p[3], p[4]});
                    put(out, std::vector<float>{f1, f2, fx, q[0], q[1], q[2], q[3], q[4]});
                }
            })) << a << ", " << b;
        }
}

}  // namespace
