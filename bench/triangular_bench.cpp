// Triangular level-2 throughput of libork against OpenBLAS, in one process and
// on the same data: dtrsv and dtrmv, lower no-transpose and upper transposed,
// at n = 256 (cache-resident), 1000 and 4000 (memory), one thread each, and
// both libraries on two threads at 4000.
//
// Names are <routine>/<lib>/<uplo><trans>/<n>[/threads:<t>] for
// bench/compare.py. The right-hand side is copied into x before each call
// (n elements against the n^2/2 of the matrix), so every call sees the same
// data. OpenBLAS is found as bench/openblas_peer.h says.
#include <benchmark/benchmark.h>

#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <random>
#include <string>
#include <vector>

#include "bench/openblas_peer.h"
#include "ork/blas_level2.h"
#include "ork/ork.h"

namespace {

constexpr std::int64_t sizes[] = {256, 1000, 4000};
constexpr std::int64_t max_n = 4000;

// A well-conditioned triangle (diagonal in [2, 3), the rest in
// [-1, 1)/n) in both triangles, so that either uplo reads real data.
std::vector<double> matrix, rhs;

struct openblas_api : ork_bench::openblas_peer {
    using tr_fn = void (*)(const char*, const char*, const char*, const int*, const double*, const int*, double*,
                           const int*, std::size_t, std::size_t, std::size_t);
    tr_fn dtrsv = nullptr, dtrmv = nullptr;
};
openblas_api ob;

using ork_bench::lib;
enum class routine { trsv, trmv };

void run(benchmark::State& state, routine r, lib l, const char* ut, std::int64_t n, int threads) {
    ork_bench::use_threads(ob, l, threads);
    std::vector<double> x(static_cast<std::size_t>(n));
    const char uplo[2] = {ut[0], 0}, trans[2] = {ut[1], 0};
    const double* a = matrix.data();
    for (auto _ : state) {
        std::memcpy(x.data(), rhs.data(), sizeof(double) * std::size_t(n));
        if (l == lib::ork) {
            const ork_int nn = n, lda = max_n, inc = 1;
            (r == routine::trsv ? ork_blas_dtrsv : ork_blas_dtrmv)(uplo, trans, "N", &nn, a, &lda, x.data(), &inc);
        } else {
            const int nn = int(n), lda = int(max_n), inc = 1;
            (r == routine::trsv ? ob.dtrsv : ob.dtrmv)(uplo, trans, "N", &nn, a, &lda, x.data(), &inc, 1, 1, 1);
        }
        benchmark::ClobberMemory();
    }
    state.SetBytesProcessed(state.iterations() * n * (n + 1) / 2 * std::int64_t(sizeof(double)));
}

void register_pair(routine r, const char* ut, std::int64_t n, int threads) {
    for (lib l : {lib::ork, lib::openblas}) {
        if (l == lib::openblas && !ob.handle) continue;
        std::string name = std::string(r == routine::trsv ? "dtrsv" : "dtrmv") + (l == lib::ork ? "/ork/" : "/openblas/") +
                           ut + "/" + std::to_string(n);
        if (threads > 1) name += "/threads:" + std::to_string(threads);
        benchmark::RegisterBenchmark(name.c_str(), [=](benchmark::State& s) { run(s, r, l, ut, n, threads); })
            ->UseRealTime();
    }
}

// Both libraries must agree before their times mean anything.
bool same_results() {
    bool ok = true;
    for (routine r : {routine::trsv, routine::trmv})
        for (const char* ut : {"LN", "UT"}) {
            const std::int64_t n = sizes[1];
            std::vector<double> x(rhs.begin(), rhs.begin() + n), y = x;
            const char uplo[2] = {ut[0], 0}, trans[2] = {ut[1], 0};
            const ork_int nn = n, lda = max_n, inc = 1;
            const int bn = int(n), blda = int(max_n), binc = 1;
            (r == routine::trsv ? ork_blas_dtrsv : ork_blas_dtrmv)(uplo, trans, "N", &nn, matrix.data(), &lda, x.data(), &inc);
            (r == routine::trsv ? ob.dtrsv : ob.dtrmv)(uplo, trans, "N", &bn, matrix.data(), &blda, y.data(), &binc, 1, 1, 1);
            double worst = 0;
            for (std::int64_t i = 0; i < n; ++i) worst = std::fmax(worst, std::fabs(x[i] - y[i]) / (1 + std::fabs(y[i])));
            if (!(worst <= 1e-12)) {
                std::fprintf(stderr, "ork-bench-triangular: %s %s: ork and OpenBLAS differ by %g\n",
                             r == routine::trsv ? "dtrsv" : "dtrmv", ut, worst);
                ok = false;
            }
        }
    return ok;
}

}  // namespace

int main(int argc, char** argv) {
    if (!ork_bench::start(&argc, argv)) return 1;

    std::mt19937_64 gen(20240611);
    std::uniform_real_distribution<double> u(-1.0, 1.0);
    matrix.resize(std::size_t(max_n * max_n));
    for (std::int64_t j = 0; j < max_n; ++j)
        for (std::int64_t i = 0; i < max_n; ++i)
            matrix[std::size_t(i + j * max_n)] = i == j ? 2.5 + 0.5 * u(gen) : u(gen) / double(max_n);
    rhs.resize(std::size_t(max_n));
    for (auto& v : rhs) v = u(gen);

    ob.open(ob, [](openblas_api& o) { return o.bind("dtrsv_", o.dtrsv) && o.bind("dtrmv_", o.dtrmv); });
    ob.describe("ork-bench-triangular");
    if (ob.handle) {
        ob.set_num_threads(1);
        ork_set_num_threads(1);
        if (!same_results()) return 1;
    }

    for (routine r : {routine::trsv, routine::trmv})
        for (const char* ut : {"LN", "UT"}) {
            for (std::int64_t n : sizes) register_pair(r, ut, n, 1);
            register_pair(r, ut, max_n, 2);
        }
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
