// Level-1 BLAS throughput of libork against OpenBLAS, in one process and on
// the same vectors: ddot, daxpy, dnrm2 and idamax at n = 1e3 (L1-resident),
// 1e5 (L2) and 1e7 (memory), one thread each, and both libraries on two
// threads at 1e7.
//
// Names are <routine>/<lib>/<n>[/threads:<t>], lib being "ork" or "openblas",
// so that bench/compare.py can pair them. OpenBLAS is loaded with dlopen:
// the file ORK_BENCH_OPENBLAS names if it is set, else the Debian pthread
// build, else libopenblas.so.0 on the loader's path. Without it only the ork
// benchmarks run.
#include <benchmark/benchmark.h>
#include <dlfcn.h>

#include <chrono>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <random>
#include <string>
#include <thread>
#include <vector>

#include "bench/openblas_peer.h"
#include "ork/ork.h"

namespace {

constexpr std::int64_t sizes[] = {1000, 100000, 10000000};
constexpr std::int64_t max_n = 10000000;

// ---- the vectors, shared by every benchmark: 64-byte aligned, touched
// before any timing, uniform in [-1, 1) from a fixed starting state.
struct free_deleter {
    void operator()(double* p) const { std::free(p); }
};
using buffer = std::unique_ptr<double[], free_deleter>;

buffer make_vector(std::int64_t n, std::mt19937_64& gen) {
    buffer v(static_cast<double*>(std::aligned_alloc(64, sizeof(double) * std::size_t(n))));
    if (!v) {
        std::fprintf(stderr, "ork-bench-level1: cannot allocate %lld doubles\n", static_cast<long long>(n));
        std::exit(1);
    }
    std::uniform_real_distribution<double> dist(-1.0, 1.0);
    for (std::int64_t i = 0; i < n; ++i) v[i] = dist(gen);
    return v;
}

buffer vx, vy;

// ---- OpenBLAS through its Fortran entries: 32-bit integers by address.
struct openblas_api : ork_bench::openblas_peer {
    using dot_fn = double (*)(const int*, const double*, const int*, const double*, const int*);
    using axpy_fn = void (*)(const int*, const double*, const double*, const int*, double*, const int*);
    using nrm2_fn = double (*)(const int*, const double*, const int*);
    using iamax_fn = int (*)(const int*, const double*, const int*);

    dot_fn ddot = nullptr;
    axpy_fn daxpy = nullptr;
    nrm2_fn dnrm2 = nullptr;
    iamax_fn idamax = nullptr;
};
openblas_api ob;

void load_openblas() {
    ob.open(ob, [](openblas_api& o) {
        return o.bind("ddot_", o.ddot) && o.bind("daxpy_", o.daxpy) && o.bind("dnrm2_", o.dnrm2) &&
               o.bind("idamax_", o.idamax);
    });
}

using ork_bench::lib;

// ---- the timed loops; bytes are those each call must move: ddot reads
// x and y, daxpy reads both and writes y, dnrm2 and idamax read x.
void run_ddot(benchmark::State& state, lib l, std::int64_t n, int threads) {
    ork_bench::use_threads(ob, l, threads);
    const double *x = vx.get(), *y = vy.get();
    if (l == lib::ork) {
        const ork_int nn = n, inc = 1;
        for (auto _ : state) benchmark::DoNotOptimize(ork_blas_ddot(&nn, x, &inc, y, &inc));
    } else {
        const int nn = int(n), inc = 1;
        for (auto _ : state) benchmark::DoNotOptimize(ob.ddot(&nn, x, &inc, y, &inc));
    }
    state.SetBytesProcessed(state.iterations() * n * std::int64_t(2 * sizeof(double)));
}

// alpha alternates in sign, so y goes back and forth instead of growing.
void run_daxpy(benchmark::State& state, lib l, std::int64_t n, int threads) {
    ork_bench::use_threads(ob, l, threads);
    const double* x = vx.get();
    double* y = vy.get();
    const double alphas[2] = {0.5, -0.5};
    unsigned k = 0;
    if (l == lib::ork) {
        const ork_int nn = n, inc = 1;
        for (auto _ : state) {
            ork_blas_daxpy(&nn, &alphas[k++ & 1], x, &inc, y, &inc);
            benchmark::ClobberMemory();
        }
    } else {
        const int nn = int(n), inc = 1;
        for (auto _ : state) {
            ob.daxpy(&nn, &alphas[k++ & 1], x, &inc, y, &inc);
            benchmark::ClobberMemory();
        }
    }
    state.SetBytesProcessed(state.iterations() * n * std::int64_t(3 * sizeof(double)));
}

void run_dnrm2(benchmark::State& state, lib l, std::int64_t n, int threads) {
    ork_bench::use_threads(ob, l, threads);
    const double* x = vx.get();
    if (l == lib::ork) {
        const ork_int nn = n, inc = 1;
        for (auto _ : state) benchmark::DoNotOptimize(ork_blas_dnrm2(&nn, x, &inc));
    } else {
        const int nn = int(n), inc = 1;
        for (auto _ : state) benchmark::DoNotOptimize(ob.dnrm2(&nn, x, &inc));
    }
    state.SetBytesProcessed(state.iterations() * n * std::int64_t(sizeof(double)));
}

void run_idamax(benchmark::State& state, lib l, std::int64_t n, int threads) {
    ork_bench::use_threads(ob, l, threads);
    const double* x = vx.get();
    if (l == lib::ork) {
        const ork_int nn = n, inc = 1;
        for (auto _ : state) benchmark::DoNotOptimize(ork_blas_idamax(&nn, x, &inc));
    } else {
        const int nn = int(n), inc = 1;
        for (auto _ : state) benchmark::DoNotOptimize(ob.idamax(&nn, x, &inc));
    }
    state.SetBytesProcessed(state.iterations() * n * std::int64_t(sizeof(double)));
}

using runner = void (*)(benchmark::State&, lib, std::int64_t, int);

// Each ork benchmark right before its OpenBLAS twin, so both see the machine
// in about the same state. Wall-clock time: with several threads, the
// calling thread's CPU time says nothing about the call's duration.
void register_pair(const char* routine, runner run, std::int64_t n, int threads) {
    for (lib l : {lib::ork, lib::openblas}) {
        if (l == lib::openblas && !ob.handle) continue;
        std::string name = std::string(routine) + (l == lib::ork ? "/ork/" : "/openblas/") + std::to_string(n);
        if (threads > 1) name += "/threads:" + std::to_string(threads);
        benchmark::RegisterBenchmark(name.c_str(),
                                     [=](benchmark::State& s) { run(s, l, n, threads); })
            ->UseRealTime();
    }
}

// Both libraries must agree on the data used before their times mean
// anything; a wrong binding (integer width, say) shows here.
bool same_results() {
    bool ok = true;
    for (std::int64_t n : sizes) {
        const ork_int on = n, inc = 1;
        const int bn = int(n), binc = 1;
        double od = ork_blas_ddot(&on, vx.get(), &inc, vy.get(), &inc);
        double bd = ob.ddot(&bn, vx.get(), &binc, vy.get(), &binc);
        double on2 = ork_blas_dnrm2(&on, vx.get(), &inc);
        double bn2 = ob.dnrm2(&bn, vx.get(), &binc);
        ork_int oi = ork_blas_idamax(&on, vx.get(), &inc);
        int bi = ob.idamax(&bn, vx.get(), &binc);
        // Sums in different orders: every |x_i*y_i| <= 1, so a difference
        // far below n is rounding; a wrong binding gives nothing like it.
        auto close = [](double a, double b, double tol) { return std::fabs(a - b) <= tol; };
        if (!close(od, bd, 1e-9 * double(n)) || !close(on2, bn2, 1e-12 * bn2) || oi != bi) {
            std::fprintf(stderr,
                         "ork-bench-level1: n=%lld: ork and OpenBLAS disagree: ddot %.17g vs %.17g, "
                         "dnrm2 %.17g vs %.17g, idamax %lld vs %d\n",
                         static_cast<long long>(n), od, bd, on2, bn2, static_cast<long long>(oi), bi);
            ok = false;
        }
    }
    // daxpy on copies: OpenBLAS may fuse the multiply-add, ork does not, so
    // the elements can differ by the product's rounding, no more.
    const std::int64_t n = sizes[0];
    std::vector<double> a(vy.get(), vy.get() + n), b = a;
    const ork_int on = n, inc = 1;
    const int bn = int(n), binc = 1;
    const double alpha = 0.75;
    ork_blas_daxpy(&on, &alpha, vx.get(), &inc, a.data(), &inc);
    ob.daxpy(&bn, &alpha, vx.get(), &binc, b.data(), &binc);
    bool same = true;
    for (std::int64_t i = 0; i < n; ++i) same = same && std::fabs(a[i] - b[i]) <= 1e-15;
    if (!same) {
        std::fprintf(stderr, "ork-bench-level1: n=%lld: ork and OpenBLAS disagree on daxpy\n", static_cast<long long>(n));
        ok = false;
    }
    return ok;
}

}  // namespace

int main(int argc, char** argv) {
    if (!ork_bench::start(&argc, argv)) return 1;

    std::mt19937_64 gen(20240601);
    vx = make_vector(max_n, gen);
    vy = make_vector(max_n, gen);

    load_openblas();
    ob.describe("ork-bench-level1");
    if (ob.handle) {
        ob.set_num_threads(1);
        if (!same_results()) return 1;
    }

    for (std::int64_t n : sizes) {
        register_pair("ddot", run_ddot, n, 1);
        register_pair("daxpy", run_daxpy, n, 1);
        register_pair("dnrm2", run_dnrm2, n, 1);
        register_pair("idamax", run_idamax, n, 1);
    }
    register_pair("ddot", run_ddot, max_n, 2);
    register_pair("daxpy", run_daxpy, max_n, 2);
    register_pair("dnrm2", run_dnrm2, max_n, 2);
    register_pair("idamax", run_idamax, max_n, 2);

    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
