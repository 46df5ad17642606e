// Matrix-multiply speed of libork against OpenBLAS, in one process and on
// the same matrices: s, d, c and z gemm (no transposition, alpha = 1,
// beta = 0) on square products of 64 .. 2048, an odd shape
// 1001 x 1003 x 999 and a shallow one 2000 x 2000 x 32, at one thread and
// (from 512 on, and for the odd and shallow shapes) two threads; and dgemm
// at 2048 with leading dimensions 2056 beside the power-of-two 2048.
//
// Names are <p>gemm/<lib>/<m>x<n>x<k>[/ld:<ld>][/threads:<t>], lib being
// "ork" or "openblas", so that bench/compare.py can pair them. Each result
// carries the counter GFLOPS (1e9 floating-point operations per second of
// wall-clock time: 2mnk per real product, 8mnk per complex one) and "flop",
// the operations of one call. OpenBLAS is loaded with dlopen, as in
// ork-bench-level1; it reads OPENBLAS_CORETYPE when it is loaded, which is
// how compare.py times its baseline kernels beside its native ones.
#include <benchmark/benchmark.h>
#include <dlfcn.h>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <memory>
#include <string>
#include <thread>
#include <type_traits>
#include <utility>
#include <vector>

#include "bench/openblas_peer.h"
#include "ork/ork.h"

namespace {

using idx = ork_int;

// ---- the products timed. ld = 0: tight leading dimensions (lda = ldc = m,
// ldb = k); otherwise lda = ldb = ldc = ld.
struct shape {
    idx m, n, k, ld;
    idx lda() const { return ld ? ld : m; }
    idx ldb() const { return ld ? ld : k; }
    idx ldc() const { return ld ? ld : m; }
    std::string text() const {
        std::string s = std::to_string(m) + "x" + std::to_string(n) + "x" + std::to_string(k);
        if (ld) s += "/ld:" + std::to_string(ld);
        return s;
    }
};

constexpr idx squares[] = {64, 128, 256, 512, 1024, 2048};
constexpr shape odd{1001, 1003, 999, 0};
constexpr shape shallow{2000, 2000, 32, 0};
// dgemm at 2048 is also timed with this padding beside the square one,
// whose leading dimensions are the power of two 2048.
constexpr shape padded_ld{2048, 2048, 2048, 2056};
// Every matrix of every shape above fits in this many elements.
constexpr std::size_t max_elements = std::size_t(2048) * 2056;

// ---- element types
template <class T> constexpr bool is_complex = !std::is_arithmetic_v<T>;
template <class T> struct real_of { using type = T; };
template <> struct real_of<ork_complex8> { using type = float; };
template <> struct real_of<ork_complex16> { using type = double; };
template <class T> using real_t = typename real_of<T>::type;

template <class T> constexpr char prefix = 's';
template <> constexpr char prefix<double> = 'd';
template <> constexpr char prefix<ork_complex8> = 'c';
template <> constexpr char prefix<ork_complex16> = 'z';

template <class T> T one() {
    if constexpr (is_complex<T>) return T{1, 0};
    else return T(1);
}
template <class T> T zero() {
    if constexpr (is_complex<T>) return T{0, 0};
    else return T(0);
}

double flops(const shape& s, bool complex) {
    return (complex ? 8.0 : 2.0) * double(s.m) * double(s.n) * double(s.k);
}

// ---- the matrices, one set per element type and shared by both libraries:
// 64-byte aligned, touched before any timing, A and B uniform in [-1, 1)
// (both parts for complex) from a fixed starting state. Splitmix64 rather than the
// standard engines: 50 million values are drawn at every start.
struct free_deleter {
    void operator()(void* p) const { std::free(p); }
};

template <class T>
struct operands {
    std::unique_ptr<T[], free_deleter> a, b, c;
};

struct splitmix64 {
    std::uint64_t s;
    std::uint64_t next() {
        std::uint64_t z = (s += 0x9e3779b97f4a7c15ULL);
        z = (z ^ (z >> 30)) * 0xbf58476d1ce4e5b9ULL;
        z = (z ^ (z >> 27)) * 0x94d049bb133111ebULL;
        return z ^ (z >> 31);
    }
    // uniform in [-1, 1) on the grid of the type's precision
    double uniform(double) { return double(next() >> 11) * 0x1p-52 - 1.0; }
    float uniform(float) { return float(next() >> 40) * 0x1p-23f - 1.0f; }
};

template <class T>
std::unique_ptr<T[], free_deleter> make_matrix(std::size_t n, splitmix64* gen) {
    std::unique_ptr<T[], free_deleter> p(static_cast<T*>(std::aligned_alloc(64, sizeof(T) * n)));
    if (!p) {
        std::fprintf(stderr, "ork-bench-gemm: cannot allocate %zu elements\n", n);
        std::exit(1);
    }
    using R = real_t<T>;
    R* r = reinterpret_cast<R*>(p.get());
    const std::size_t count = n * (is_complex<T> ? 2 : 1);
    if (gen) {
        for (std::size_t i = 0; i < count; ++i) r[i] = gen->uniform(R());
    } else {
        std::memset(r, 0, sizeof(R) * count);
    }
    return p;
}

template <class T> operands<T> data;

template <class T>
void make_operands(std::uint64_t start) {
    splitmix64 gen{start};
    data<T>.a = make_matrix<T>(max_elements, &gen);
    data<T>.b = make_matrix<T>(max_elements, &gen);
    data<T>.c = make_matrix<T>(max_elements, nullptr);
}

// ---- OpenBLAS through its Fortran entries: 32-bit integers by address.
template <class T>
using ob_gemm_fn = void (*)(const char*, const char*, const int*, const int*, const int*, const T*, const T*,
                            const int*, const T*, const int*, const T*, T*, const int*);

struct openblas_api : ork_bench::openblas_peer {
    ob_gemm_fn<float> sgemm = nullptr;
    ob_gemm_fn<double> dgemm = nullptr;
    ob_gemm_fn<ork_complex8> cgemm = nullptr;
    ob_gemm_fn<ork_complex16> zgemm = nullptr;

    template <class T> ob_gemm_fn<T> gemm() const {
        if constexpr (std::is_same_v<T, float>) return sgemm;
        else if constexpr (std::is_same_v<T, double>) return dgemm;
        else if constexpr (std::is_same_v<T, ork_complex8>) return cgemm;
        else return zgemm;
    }
};
openblas_api ob;

void load_openblas() {
    ob.open(ob, [](openblas_api& o) {
        return o.bind("sgemm_", o.sgemm) && o.bind("dgemm_", o.dgemm) && o.bind("cgemm_", o.cgemm) &&
               o.bind("zgemm_", o.zgemm);
    });
}

// ---- one call of either library: C := A*B, alpha = 1, beta = 0.
using ork_bench::lib;

template <class T>
void ork_gemm(const char* ta, const char* tb, const idx* m, const idx* n, const idx* k, const T* alpha,
              const T* a, const idx* lda, const T* b, const idx* ldb, const T* beta, T* c, const idx* ldc) {
    if constexpr (std::is_same_v<T, float>) ork_blas_sgemm(ta, tb, m, n, k, alpha, a, lda, b, ldb, beta, c, ldc);
    else if constexpr (std::is_same_v<T, double>) ork_blas_dgemm(ta, tb, m, n, k, alpha, a, lda, b, ldb, beta, c, ldc);
    else if constexpr (std::is_same_v<T, ork_complex8>)
        ork_blas_cgemm(ta, tb, m, n, k, alpha, a, lda, b, ldb, beta, c, ldc);
    else ork_blas_zgemm(ta, tb, m, n, k, alpha, a, lda, b, ldb, beta, c, ldc);
}

template <class T>
void call(lib l, const shape& s, const T* a, const T* b, T* c) {
    const T alpha = one<T>(), beta = zero<T>();
    if (l == lib::ork) {
        const idx m = s.m, n = s.n, k = s.k, lda = s.lda(), ldb = s.ldb(), ldc = s.ldc();
        ork_gemm<T>("N", "N", &m, &n, &k, &alpha, a, &lda, b, &ldb, &beta, c, &ldc);
    } else {
        const int m = int(s.m), n = int(s.n), k = int(s.k), lda = int(s.lda()), ldb = int(s.ldb()),
                  ldc = int(s.ldc());
        ob.gemm<T>()("N", "N", &m, &n, &k, &alpha, a, &lda, b, &ldb, &beta, c, &ldc);
    }
}


using clock_type = std::chrono::steady_clock;

// Untimed calls before a benchmark's first timed loop, so that thread
// start-up, first-touch of workspaces and the clock ramp fall outside it:
// the product itself for about 0.1 s when one call is short, else a 512^3
// product of the same library, type and thread count for as long.
std::string last_warmed;  // the benchmark warmed up last

template <class T>
void warm_up(lib l, const shape& s, int threads) {
    const std::string key = std::to_string(int(l)) + "/" + prefix<T> + "/" + s.text() + "/" + std::to_string(threads);
    if (key == last_warmed) return;  // a repetition of the same benchmark: still warm
    last_warmed = key;
    const shape w = flops(s, is_complex<T>) <= 4e9 ? s : shape{512, 512, 512, 0};
    const auto t0 = clock_type::now();
    do call<T>(l, w, data<T>.a.get(), data<T>.b.get(), data<T>.c.get());
    while (std::chrono::duration<double>(clock_type::now() - t0).count() < 0.1);
}

// Wall-clock time: with several threads, the calling thread's CPU time says
// nothing about the call's duration.
template <class T>
void run_gemm(benchmark::State& state, lib l, shape s, int threads) {
    ork_bench::use_threads(ob, l, threads);
    warm_up<T>(l, s, threads);
    const T *a = data<T>.a.get(), *b = data<T>.b.get();
    T* c = data<T>.c.get();
    for (auto _ : state) {
        call<T>(l, s, a, b, c);
        benchmark::ClobberMemory();
    }
    const double f = flops(s, is_complex<T>);
    state.counters["GFLOPS"] = benchmark::Counter(1e-9 * f * double(state.iterations()), benchmark::Counter::kIsRate);
    state.counters["flop"] = f;
}

// Each ork benchmark right before its OpenBLAS twin, so both see the machine
// in about the same state. A single call of the largest products lasts
// seconds: one repetition of those, whatever --benchmark_repetitions says.
template <class T>
void register_pair(const shape& s, int threads) {
    for (lib l : {lib::ork, lib::openblas}) {
        if (l == lib::openblas && !ob.handle) continue;
        std::string name = std::string(1, prefix<T>) + "gemm" + (l == lib::ork ? "/ork/" : "/openblas/") + s.text();
        if (threads > 1) name += "/threads:" + std::to_string(threads);
        auto* b = benchmark::RegisterBenchmark(name.c_str(),
                                               [=](benchmark::State& st) { run_gemm<T>(st, l, s, threads); });
        b->UseRealTime();
        if (flops(s, false) > 1e10) b->Repetitions(1);
    }
}

template <class T>
void register_type() {
    for (idx n : squares) {
        const shape s{n, n, n, 0};
        register_pair<T>(s, 1);
        if (n >= 512) register_pair<T>(s, 2);
        if (std::is_same_v<T, double> && n == 2048) register_pair<T>(padded_ld, 1);
    }
    for (const shape& s : {odd, shallow}) {
        register_pair<T>(s, 1);
        register_pair<T>(s, 2);
    }
}

// ---- start-up check: both libraries must compute the product on the
// benchmark data before their times mean anything. A wrong binding (integer
// width, argument order, leading dimension) or a wrong result shows here.
long double mag(float v) { return std::fabs((long double)v); }
long double mag(double v) { return std::fabs((long double)v); }
long double mag(ork_complex8 v) { return std::hypot((long double)v.re, (long double)v.im); }
long double mag(ork_complex16 v) { return std::hypot((long double)v.re, (long double)v.im); }

struct ld_cx {
    long double re = 0, im = 0;
};
ld_cx widen(float v) { return {v, 0}; }
ld_cx widen(double v) { return {v, 0}; }
ld_cx widen(ork_complex8 v) { return {v.re, v.im}; }
ld_cx widen(ork_complex16 v) { return {v.re, v.im}; }
long double distance(ld_cx x, ld_cx y) { return std::hypot(x.re - y.re, x.im - y.im); }

template <class T>
bool check_shape(const shape& s, int threads) {
    using R = real_t<T>;
    const long double u = std::numeric_limits<R>::epsilon() / 2;
    // An inner product of k terms computed in any order is within
    // (k+2)u * sum |a||b| of the exact one (sqrt 2 more for complex terms);
    // both within that, they are within twice that of each other.
    const long double gamma = (s.k + 2) * u * (is_complex<T> ? std::sqrt(2.0L) : 1.0L) * 1.01L;
    const T *a = data<T>.a.get(), *b = data<T>.b.get();
    const idx lda = s.lda(), ldb = s.ldb(), ldc = s.ldc();
    const std::size_t csize = std::size_t(ldc) * std::size_t(s.n);
    std::vector<T> c_ork(csize), c_ob(ob.handle ? csize : 0);
    std::vector<lib> libs = {lib::ork};
    if (ob.handle) libs.push_back(lib::openblas);
    for (lib l : libs) {
        // not timed: no wait for the other pool to go idle
        if (l == lib::ork) ork_set_num_threads(threads);
        else ob.set_num_threads(threads);
        std::vector<T>& c = l == lib::ork ? c_ork : c_ob;
        // NaN in C must not survive beta = 0
        for (auto& v : c) std::memset(&v, 0xff, sizeof v);
        call<T>(l, s, a, b, c.data());
    }
    const std::string what = std::string(1, prefix<T>) + "gemm " + s.text() + " threads:" + std::to_string(threads);

    // Every element of the two results against each other, with
    // sum |a_il||b_lj| bounded by |row i of A| |column j of B| (Cauchy-Schwarz):
    // squares compared, in double, which is ample for a bound.
    std::vector<double> row_sq(std::size_t(s.m), 0.0), col_sq(std::size_t(s.n), 0.0);
    for (idx l = 0; l < s.k; ++l)
        for (idx i = 0; i < s.m; ++i) row_sq[i] += double(mag(a[i + l * lda]) * mag(a[i + l * lda]));
    for (idx j = 0; j < s.n; ++j)
        for (idx l = 0; l < s.k; ++l) col_sq[j] += double(mag(b[l + j * ldb]) * mag(b[l + j * ldb]));
    const double g2 = double(4 * gamma * gamma);
    idx bad = 0;
    for (idx j = 0; j < s.n && ob.handle; ++j)
        for (idx i = 0; i < s.m; ++i) {
            const ld_cx x = widen(c_ork[i + j * ldc]), y = widen(c_ob[i + j * ldc]);
            const double dr = double(x.re - y.re), di = double(x.im - y.im);
            if (!(dr * dr + di * di <= g2 * row_sq[i] * col_sq[j])) {
                const long double d = distance(x, y), bound = 2 * gamma * std::sqrt((long double)row_sq[i] * col_sq[j]);
                if (bad++ < 3)
                    std::fprintf(stderr,
                                 "ork-bench-gemm: %s: ork and OpenBLAS disagree at (%lld, %lld): %.3Lg > %.3Lg\n",
                                 what.c_str(), (long long)i, (long long)j, d, bound);
            }
        }

    // Rows m .. ldc-1 of C are no part of it: still the NaN pattern.
    for (lib l : libs) {
        const std::vector<T>& c = l == lib::ork ? c_ork : c_ob;
        unsigned char pattern[sizeof(T)];
        std::memset(pattern, 0xff, sizeof pattern);
        for (idx j = 0; j < s.n; ++j)
            for (idx i = s.m; i < ldc; ++i)
                if (std::memcmp(&c[i + j * ldc], pattern, sizeof pattern) != 0 && bad++ < 6)
                    std::fprintf(stderr, "ork-bench-gemm: %s: %s wrote outside C at (%lld, %lld)\n", what.c_str(),
                                 l == lib::ork ? "ork" : "OpenBLAS", (long long)i, (long long)j);
    }

    // Both against long double sums at the corners, along the last row and
    // column (the leftover paths) and at 256 elements drawn at random.
    std::vector<std::pair<idx, idx>> at = {{0, 0}, {s.m - 1, 0}, {0, s.n - 1}, {s.m - 1, s.n - 1}};
    for (idx t = 0; t < 16; ++t) {
        at.push_back({s.m - 1, t * (s.n - 1) / 15});
        at.push_back({t * (s.m - 1) / 15, s.n - 1});
    }
    splitmix64 pick{7};
    for (int t = 0; t < 256; ++t) {
        const idx i = idx(pick.next() % std::uint64_t(s.m));
        at.push_back({i, idx(pick.next() % std::uint64_t(s.n))});
    }
    for (auto [i, j] : at) {
        ld_cx exact;
        long double absum = 0;
        for (idx l = 0; l < s.k; ++l) {
            const ld_cx x = widen(a[i + l * lda]), y = widen(b[l + j * ldb]);
            exact.re += x.re * y.re - x.im * y.im;
            exact.im += x.re * y.im + x.im * y.re;
            absum += mag(a[i + l * lda]) * mag(b[l + j * ldb]);
        }
        for (lib l : libs) {
            const T v = (l == lib::ork ? c_ork : c_ob)[i + j * ldc];
            const long double d = distance(widen(v), exact);
            if (!(d <= gamma * absum)) {
                if (bad++ < 6)
                    std::fprintf(stderr, "ork-bench-gemm: %s: %s is wrong at (%lld, %lld): off by %.3Lg > %.3Lg\n",
                                 what.c_str(), l == lib::ork ? "ork" : "OpenBLAS", (long long)i, (long long)j, d,
                                 gamma * absum);
            }
        }
    }
    return bad == 0;
}

// Smaller versions of the benchmarks' kinds of product, on the same
// matrices and through the same paths: the smallest square, leading
// dimensions beyond m and k, an odd shape over several depth blocks split
// over two threads, a shallow one.
template <class T>
bool check_type() {
    bool ok = check_shape<T>({64, 64, 64, 0}, 1);
    ok = check_shape<T>({200, 203, 197, 2056}, 1) && ok;
    ok = check_shape<T>({301, 303, 299, 0}, 2) && ok;
    ok = check_shape<T>({500, 502, 32, 0}, 1) && ok;
    return ok;
}

}  // namespace

int main(int argc, char** argv) {
    if (!ork_bench::start(&argc, argv)) return 1;

    make_operands<float>(20240601);
    make_operands<double>(20240602);
    make_operands<ork_complex8>(20240603);
    make_operands<ork_complex16>(20240604);

    load_openblas();
    ob.describe("ork-bench-gemm");
    if (ob.handle) {
        const char* ct = std::getenv("OPENBLAS_CORETYPE");
        benchmark::AddCustomContext("openblas_coretype_env", ct ? ct : "");
    }
    const auto t0 = clock_type::now();
    const bool ok = check_type<float>() & check_type<double>() & check_type<ork_complex8>() &
                    check_type<ork_complex16>();
    if (!ok) return 1;
    if (ob.handle) std::this_thread::sleep_for(std::chrono::milliseconds(300));  // its pool idle before timing
    std::fprintf(stderr, "ork-bench-gemm: %s on the benchmark data (checked in %.1f s)\n",
                 ob.handle ? "ork and OpenBLAS agree with each other and with long double sums"
                           : "ork agrees with long double sums",
                 std::chrono::duration<double>(clock_type::now() - t0).count());

    register_type<float>();
    register_type<double>();
    register_type<ork_complex8>();
    register_type<ork_complex16>();

    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
