// Level-2 BLAS throughput of libork against OpenBLAS, in one process and on
// the same matrices: dgemv (N and T), dsymv (upper), dger and dsyr2 (upper),
// zgemv (N) and zhemv (upper) at n = 256 (L2-resident), 1000 (last-level
// cache) and 4000 (memory), one thread each, and dgemv N and dsymv on two
// threads at 4000.
//
// Names are <routine>/<lib>/<args>[/threads:<t>], lib being "ork" or
// "openblas", so that bench/compare.py pairs them; args are the trans or
// uplo letter and n. Throughput is in GB/s of the matrix (the bytes of A
// each call must read, and write for the updates).
#include <benchmark/benchmark.h>

#include <cmath>
#include <complex>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <random>
#include <string>
#include <vector>

#include "bench/openblas_peer.h"
#include "ork/ork.h"

namespace {

constexpr std::int64_t sizes[] = {256, 1000, 4000};
constexpr std::int64_t max_n = 4000;

using z16 = ork_complex16;

// ---- data shared by every benchmark: 64-byte aligned, touched before any
// timing, uniform in [-1, 1) from a fixed starting state.
struct free_deleter {
    void operator()(void* p) const { std::free(p); }
};
template <class T> using buffer = std::unique_ptr<T[], free_deleter>;

template <class T> buffer<T> make_array(std::int64_t count, std::mt19937_64& gen) {
    buffer<T> v(static_cast<T*>(std::aligned_alloc(64, sizeof(T) * std::size_t(count))));
    if (!v) {
        std::fprintf(stderr, "ork-bench-level2: cannot allocate %lld elements\n", static_cast<long long>(count));
        std::exit(1);
    }
    std::uniform_real_distribution<double> dist(-1.0, 1.0);
    auto* d = reinterpret_cast<double*>(v.get());
    for (std::int64_t i = 0; i < count * std::int64_t(sizeof(T) / sizeof(double)); ++i) d[i] = dist(gen);
    return v;
}

buffer<double> da, dx, dy;
buffer<z16> za, zx, zy;

// ---- OpenBLAS through its Fortran entries: 32-bit integers by address.
struct openblas_api : ork_bench::openblas_peer {
    using gemv_fn = void (*)(const char*, const int*, const int*, const double*, const double*, const int*,
                             const double*, const int*, const double*, double*, const int*);
    using symv_fn = void (*)(const char*, const int*, const double*, const double*, const int*, const double*,
                             const int*, const double*, double*, const int*);
    using ger_fn = void (*)(const int*, const int*, const double*, const double*, const int*, const double*,
                            const int*, double*, const int*);
    using syr2_fn = void (*)(const char*, const int*, const double*, const double*, const int*, const double*,
                             const int*, double*, const int*);
    using zgemv_fn = void (*)(const char*, const int*, const int*, const z16*, const z16*, const int*, const z16*,
                              const int*, const z16*, z16*, const int*);
    using zhemv_fn = void (*)(const char*, const int*, const z16*, const z16*, const int*, const z16*, const int*,
                              const z16*, z16*, const int*);
    gemv_fn dgemv = nullptr;
    symv_fn dsymv = nullptr;
    ger_fn dger = nullptr;
    syr2_fn dsyr2 = nullptr;
    zgemv_fn zgemv = nullptr;
    zhemv_fn zhemv = nullptr;
};
openblas_api ob;

using ork_bench::lib;

// One call of a routine by either library on the leading n-by-n block of
// the shared matrix (leading dimension max_n is avoided: n is the leading
// dimension, as a caller with its own n-by-n matrix would have it).
struct call {
    const char* routine;
    char flag;
    double bytes_per_element;  // of A: 8 read, 16 read and written, and so on
    void (*run)(lib, char, std::int64_t);
};

// alphas alternate in sign, so the updates go back and forth instead of growing.
const double alphas[2] = {0.5, -0.5};
unsigned flip = 0;

void run_dgemv(lib l, char t, std::int64_t n) {
    const double beta = 0.5;
    if (l == lib::ork) {
        const ork_int nn = n, inc = 1;
        ork_blas_dgemv(&t, &nn, &nn, &alphas[0], da.get(), &nn, dx.get(), &inc, &beta, dy.get(), &inc);
    } else {
        const int nn = int(n), inc = 1;
        ob.dgemv(&t, &nn, &nn, &alphas[0], da.get(), &nn, dx.get(), &inc, &beta, dy.get(), &inc);
    }
}
void run_dsymv(lib l, char u, std::int64_t n) {
    const double beta = 0.5;
    if (l == lib::ork) {
        const ork_int nn = n, inc = 1;
        ork_blas_dsymv(&u, &nn, &alphas[0], da.get(), &nn, dx.get(), &inc, &beta, dy.get(), &inc);
    } else {
        const int nn = int(n), inc = 1;
        ob.dsymv(&u, &nn, &alphas[0], da.get(), &nn, dx.get(), &inc, &beta, dy.get(), &inc);
    }
}
void run_dger(lib l, char, std::int64_t n) {
    const double* alpha = &alphas[flip++ & 1];
    if (l == lib::ork) {
        const ork_int nn = n, inc = 1;
        ork_blas_dger(&nn, &nn, alpha, dx.get(), &inc, dy.get(), &inc, da.get(), &nn);
    } else {
        const int nn = int(n), inc = 1;
        ob.dger(&nn, &nn, alpha, dx.get(), &inc, dy.get(), &inc, da.get(), &nn);
    }
}
void run_dsyr2(lib l, char u, std::int64_t n) {
    const double* alpha = &alphas[flip++ & 1];
    if (l == lib::ork) {
        const ork_int nn = n, inc = 1;
        ork_blas_dsyr2(&u, &nn, alpha, dx.get(), &inc, dy.get(), &inc, da.get(), &nn);
    } else {
        const int nn = int(n), inc = 1;
        ob.dsyr2(&u, &nn, alpha, dx.get(), &inc, dy.get(), &inc, da.get(), &nn);
    }
}
void run_zgemv(lib l, char t, std::int64_t n) {
    const z16 alpha{0.5, 0.25}, beta{0.5, 0};
    if (l == lib::ork) {
        const ork_int nn = n, inc = 1;
        ork_blas_zgemv(&t, &nn, &nn, &alpha, za.get(), &nn, zx.get(), &inc, &beta, zy.get(), &inc);
    } else {
        const int nn = int(n), inc = 1;
        ob.zgemv(&t, &nn, &nn, &alpha, za.get(), &nn, zx.get(), &inc, &beta, zy.get(), &inc);
    }
}
void run_zhemv(lib l, char u, std::int64_t n) {
    const z16 alpha{0.5, 0.25}, beta{0.5, 0};
    if (l == lib::ork) {
        const ork_int nn = n, inc = 1;
        ork_blas_zhemv(&u, &nn, &alpha, za.get(), &nn, zx.get(), &inc, &beta, zy.get(), &inc);
    } else {
        const int nn = int(n), inc = 1;
        ob.zhemv(&u, &nn, &alpha, za.get(), &nn, zx.get(), &inc, &beta, zy.get(), &inc);
    }
}

// Each ork benchmark right before its OpenBLAS twin. Wall-clock time: with
// several threads the calling thread's CPU time says nothing.
void register_pair(const call& c, std::int64_t n, int threads) {
    for (lib l : {lib::ork, lib::openblas}) {
        if (l == lib::openblas && !ob.handle) continue;
        std::string name = std::string(c.routine) + (l == lib::ork ? "/ork/" : "/openblas/") + c.flag + "/" +
                           std::to_string(n);
        if (threads > 1) name += "/threads:" + std::to_string(threads);
        benchmark::RegisterBenchmark(name.c_str(), [=](benchmark::State& s) {
            ork_bench::use_threads(ob, l, threads);
            for (auto _ : s) {
                c.run(l, c.flag, n);
                benchmark::ClobberMemory();
            }
            // a triangle is half the matrix
            const bool triangle = c.routine[1] == 's' || c.routine[1] == 'h';
            s.SetBytesProcessed(std::int64_t(double(s.iterations()) * double(n) * double(n) *
                                             c.bytes_per_element * (triangle ? 0.5 : 1.0)));
        })->UseRealTime();
    }
}

// Both libraries must agree on the products before their times mean
// anything; a wrong binding (integer width, say) shows here. The sums are in
// different orders: each differs from the other by rounding, far below n*eps.
bool same_results() {
    bool ok = true;
    const std::int64_t n = 1000;
    std::vector<double> y0(dy.get(), dy.get() + n);
    std::vector<z16> z0(zy.get(), zy.get() + n);
    for (const call& c : {call{"dgemv", 'N', 0, run_dgemv}, call{"dgemv", 'T', 0, run_dgemv},
                          call{"dsymv", 'U', 0, run_dsymv}, call{"zgemv", 'N', 0, run_zgemv},
                          call{"zhemv", 'U', 0, run_zhemv}}) {
        std::vector<double> out[2];
        for (lib l : {lib::ork, lib::openblas}) {
            std::copy(y0.begin(), y0.end(), dy.get());
            std::copy(z0.begin(), z0.end(), zy.get());
            c.run(l, c.flag, n);
            const bool cplx = c.routine[0] == 'z';
            const double* r = cplx ? reinterpret_cast<const double*>(zy.get()) : dy.get();
            out[l == lib::ork ? 0 : 1].assign(r, r + (cplx ? 2 : 1) * n);
        }
        double worst = 0;
        for (std::size_t i = 0; i < out[0].size(); ++i) worst = std::fmax(worst, std::fabs(out[0][i] - out[1][i]));
        if (!(worst <= 1e-11)) {
            std::fprintf(stderr, "ork-bench-level2: %s %c n=%lld: ork and OpenBLAS differ by %g\n", c.routine, c.flag,
                         static_cast<long long>(n), worst);
            ok = false;
        }
    }
    std::copy(y0.begin(), y0.end(), dy.get());
    std::copy(z0.begin(), z0.end(), zy.get());
    return ok;
}

}  // namespace

int main(int argc, char** argv) {
    if (!ork_bench::start(&argc, argv)) return 1;

    std::mt19937_64 gen(20240602);
    da = make_array<double>(max_n * max_n, gen);
    dx = make_array<double>(max_n, gen);
    dy = make_array<double>(max_n, gen);
    za = make_array<z16>(max_n * max_n, gen);
    zx = make_array<z16>(max_n, gen);
    zy = make_array<z16>(max_n, gen);

    ob.open(ob, [](openblas_api& o) {
        return o.bind("dgemv_", o.dgemv) && o.bind("dsymv_", o.dsymv) && o.bind("dger_", o.dger) &&
               o.bind("dsyr2_", o.dsyr2) && o.bind("zgemv_", o.zgemv) && o.bind("zhemv_", o.zhemv);
    });
    ob.describe("ork-bench-level2");
    if (ob.handle) {
        ob.set_num_threads(1);
        ork_set_num_threads(1);
        if (!same_results()) return 1;
    }

    const call calls[] = {
        {"dgemv", 'N', 8, run_dgemv}, {"dgemv", 'T', 8, run_dgemv}, {"dsymv", 'U', 8, run_dsymv},
        {"dger", 'N', 16, run_dger},  {"dsyr2", 'U', 16, run_dsyr2}, {"zgemv", 'N', 16, run_zgemv},
        {"zhemv", 'U', 16, run_zhemv},
    };
    for (std::int64_t n : sizes)
        for (const call& c : calls) register_pair(c, n, 1);
    register_pair(calls[0], max_n, 2);
    register_pair(calls[2], max_n, 2);

    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
