// The cost of libork's threading on small calls: dgemm at n = 64 (one
// thread), 128 and 200 (the first split sizes), ddot and dgemv just below and
// at the size where the split starts, at two threads, against OpenBLAS.
//
// Names are <routine>/<lib>/<n>[/gap]/threads:<t>. Each call is timed alone
// on the wall clock: back to back (idle helper threads are still awake), and
// with "gap" after 2 ms of the caller sleeping (they have gone to sleep, so
// the call pays for waking them). Results are microseconds per call.
#include <benchmark/benchmark.h>

#include <chrono>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <random>
#include <string>
#include <thread>
#include <vector>

#include "bench/openblas_peer.h"
#include "ork/ork.h"

namespace {

struct openblas_api : ork_bench::openblas_peer {
    using gemm_fn = void (*)(const char*, const char*, const int*, const int*, const int*, const double*,
                             const double*, const int*, const double*, const int*, const double*, double*,
                             const int*);
    using dot_fn = double (*)(const int*, const double*, const int*, const double*, const int*);
    using gemv_fn = void (*)(const char*, const int*, const int*, const double*, const double*, const int*,
                             const double*, const int*, const double*, double*, const int*);
    gemm_fn dgemm = nullptr;
    dot_fn ddot = nullptr;
    gemv_fn dgemv = nullptr;
};
openblas_api ob;
using ork_bench::lib;

std::vector<double> a, b, c, x, y;
double sink = 0;

// ddot splits from 2^17 elements, dgemv from 2^17 elements of A (n = 363),
// dgemm from 2^21 multiply-adds (n = 128).
void run(const std::string& routine, lib l, std::int64_t n) {
    const double one = 1, zero = 0;
    const int ni = int(n), inc = 1;
    const ork_int nn = n, oinc = 1;
    if (routine == "dgemm") {
        if (l == lib::ork) ork_blas_dgemm("N", "N", &nn, &nn, &nn, &one, a.data(), &nn, b.data(), &nn, &zero, c.data(), &nn);
        else ob.dgemm("N", "N", &ni, &ni, &ni, &one, a.data(), &ni, b.data(), &ni, &zero, c.data(), &ni);
    } else if (routine == "ddot") {
        sink += l == lib::ork ? ork_blas_ddot(&nn, x.data(), &oinc, y.data(), &oinc)
                              : ob.ddot(&ni, x.data(), &inc, y.data(), &inc);
    } else {
        const char t = routine == "dgemvN" ? 'N' : 'T';
        if (l == lib::ork) ork_blas_dgemv(&t, &nn, &nn, &one, a.data(), &nn, x.data(), &oinc, &zero, y.data(), &oinc);
        else ob.dgemv(&t, &ni, &ni, &one, a.data(), &ni, x.data(), &inc, &zero, y.data(), &inc);
    }
}

void register_pair(const std::string& routine, std::int64_t n, bool gap, int threads) {
    for (lib l : {lib::ork, lib::openblas}) {
        if (l == lib::openblas && !ob.handle) continue;
        const std::string name = routine + (l == lib::ork ? "/ork/" : "/openblas/") + std::to_string(n) +
                                 (gap ? "/gap" : "") + "/threads:" + std::to_string(threads);
        benchmark::RegisterBenchmark(name.c_str(), [=](benchmark::State& s) {
            ork_bench::use_threads(ob, l, threads);
            for (int i = 0; i < 3; ++i) run(routine, l, n);  // helpers started and warm
            for (auto _ : s) {
                if (gap) std::this_thread::sleep_for(std::chrono::milliseconds(2));
                const auto t0 = std::chrono::steady_clock::now();
                run(routine, l, n);
                benchmark::ClobberMemory();
                s.SetIterationTime(std::chrono::duration<double>(std::chrono::steady_clock::now() - t0).count());
            }
        })->UseManualTime()->Unit(benchmark::kMicrosecond);
    }
}

}  // namespace

int main(int argc, char** argv) {
    if (!ork_bench::start(&argc, argv)) return 1;
    std::mt19937_64 gen(20261125);
    std::uniform_real_distribution<double> dist(-1.0, 1.0);
    auto fill = [&](std::vector<double>& v, std::size_t count) {
        v.resize(count);
        for (double& e : v) e = dist(gen);
    };
    fill(a, 512 * 512);
    fill(b, 200 * 200);
    fill(c, 200 * 200);
    fill(x, 1 << 18);
    fill(y, 1 << 18);

    ob.open(ob, [](openblas_api& o) {
        return o.bind("dgemm_", o.dgemm) && o.bind("ddot_", o.ddot) && o.bind("dgemv_", o.dgemv);
    });
    ob.describe("ork-bench-threads");
    benchmark::AddCustomContext("ork_threads_default", std::to_string(ork_get_max_threads()));

    for (bool gap : {false, true}) {
        for (std::int64_t n : {64, 128, 200}) register_pair("dgemm", n, gap, 2);
        for (std::int64_t n : {131071, 131072, 262144}) register_pair("ddot", n, gap, 2);
        for (std::int64_t n : {362, 363, 512}) {
            register_pair("dgemvN", n, gap, 2);
            register_pair("dgemvT", n, gap, 2);
        }
    }
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return sink == 12345.678 ? 2 : 0;  // keeps the dot products
}
