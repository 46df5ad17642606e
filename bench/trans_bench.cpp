// Transposition throughput of libork against OpenBLAS, in one process and on
// the same matrices: out-of-place row-major domatcopy 'T' at 4096x4096 and
// 5000x3000, the in-place non-square dimatcopy 'T' at 3000x2000, one thread,
// and the out-of-place cases on two threads.
//
// Names are <routine>/<lib>/<rows>x<cols>[/threads:<t>] so that
// bench/compare.py pairs them. GB/s counts each element read once and written
// once. OpenBLAS is loaded with dlopen (bench/openblas_peer.h); without it
// only the ork benchmarks run.
#include <benchmark/benchmark.h>

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

using u64 = std::uint64_t;

struct free_deleter {
    void operator()(double* p) const { std::free(p); }
};
using buffer = std::unique_ptr<double[], free_deleter>;

constexpr u64 max_elements = 5000 * 3000 > 4096 * 4096 ? 5000 * 3000 : 4096 * 4096;
buffer src, dst;

buffer make_matrix(u64 n, std::mt19937_64& gen) {
    buffer v(static_cast<double*>(std::aligned_alloc(64, sizeof(double) * n)));
    if (!v) {
        std::fprintf(stderr, "ork-bench-trans: cannot allocate %llu doubles\n", static_cast<unsigned long long>(n));
        std::exit(1);
    }
    std::uniform_real_distribution<double> dist(-1.0, 1.0);
    for (u64 i = 0; i < n; ++i) v[i] = dist(gen);
    return v;
}

// OpenBLAS's Fortran entries: 32-bit integers and characters by address.
struct openblas_api : ork_bench::openblas_peer {
    using omatcopy_fn = void (*)(const char*, const char*, const int*, const int*, const double*, const double*,
                                 const int*, double*, const int*);
    using imatcopy_fn = void (*)(const char*, const char*, const int*, const int*, const double*, double*, const int*,
                                 const int*);
    omatcopy_fn domatcopy = nullptr;
    imatcopy_fn dimatcopy = nullptr;
};
openblas_api ob;

using ork_bench::lib;

void omatcopy(lib l, u64 rows, u64 cols, const double* a, double* b) {
    const double alpha = 1.5;
    if (l == lib::ork) {
        ork_trans_domatcopy("R", "T", &rows, &cols, &alpha, a, &cols, b, &rows);
    } else {
        const int r = int(rows), c = int(cols);
        ob.domatcopy("R", "T", &r, &c, &alpha, a, &c, b, &r);
    }
}

// rows x cols with lda = cols becomes cols x rows with ldb = rows.
void imatcopy(lib l, u64 rows, u64 cols, double* ab) {
    const double alpha = 1.0;
    if (l == lib::ork) {
        ork_trans_dimatcopy("R", "T", &rows, &cols, &alpha, ab, &cols, &rows);
    } else {
        const int r = int(rows), c = int(cols);
        ob.dimatcopy("R", "T", &r, &c, &alpha, ab, &c, &r);
    }
}

void run_omatcopy(benchmark::State& state, lib l, u64 rows, u64 cols, int threads) {
    ork_bench::use_threads(ob, l, threads);
    for (auto _ : state) {
        omatcopy(l, rows, cols, src.get(), dst.get());
        benchmark::ClobberMemory();
    }
    state.SetBytesProcessed(std::int64_t(state.iterations() * rows * cols * 2 * sizeof(double)));
}

// Each call transposes back what the one before did.
void run_imatcopy(benchmark::State& state, lib l, u64 rows, u64 cols, int threads) {
    ork_bench::use_threads(ob, l, threads);
    bool flipped = false;
    for (auto _ : state) {
        if (flipped) imatcopy(l, cols, rows, dst.get());
        else imatcopy(l, rows, cols, dst.get());
        flipped = !flipped;
        benchmark::ClobberMemory();
    }
    state.SetBytesProcessed(std::int64_t(state.iterations() * rows * cols * 2 * sizeof(double)));
}

using runner = void (*)(benchmark::State&, lib, u64, u64, int);

// Each ork benchmark right before its OpenBLAS twin; wall-clock time.
void register_pair(const char* routine, runner run, u64 rows, u64 cols, int threads) {
    for (lib l : {lib::ork, lib::openblas}) {
        if (l == lib::openblas && !ob.handle) continue;
        std::string name = std::string(routine) + (l == lib::ork ? "/ork/" : "/openblas/") + std::to_string(rows) +
                           "x" + std::to_string(cols);
        if (threads > 1) name += "/threads:" + std::to_string(threads);
        benchmark::RegisterBenchmark(name.c_str(), [=](benchmark::State& s) { run(s, l, rows, cols, threads); })
            ->UseRealTime()
            ->Unit(benchmark::kMillisecond);
    }
}

// Both libraries give the same bits (each element is one product) on a
// small case of each routine before any timing: a wrong binding shows here.
bool same_results() {
    const u64 rows = 301, cols = 203, n = rows * cols;
    std::vector<double> o1(n), o2(n), i1(src.get(), src.get() + n), i2 = i1;
    omatcopy(lib::ork, rows, cols, src.get(), o1.data());
    omatcopy(lib::openblas, rows, cols, src.get(), o2.data());
    imatcopy(lib::ork, rows, cols, i1.data());
    imatcopy(lib::openblas, rows, cols, i2.data());
    bool ok = o1 == o2 && i1 == i2;
    for (u64 i = 0; ok && i < rows; ++i)
        for (u64 j = 0; j < cols; ++j) ok = ok && o1[j * rows + i] == 1.5 * src[i * cols + j] && i1[j * rows + i] == src[i * cols + j];
    if (!ok) std::fprintf(stderr, "ork-bench-trans: ork and OpenBLAS disagree on a 301x203 transposition\n");
    return ok;
}

}  // namespace

int main(int argc, char** argv) {
    if (!ork_bench::start(&argc, argv)) return 1;

    std::mt19937_64 gen(20240607);
    src = make_matrix(max_elements, gen);
    dst = make_matrix(max_elements, gen);

    ob.open(ob, [](openblas_api& o) { return o.bind("domatcopy_", o.domatcopy) && o.bind("dimatcopy_", o.dimatcopy); });
    ob.describe("ork-bench-trans");
    if (ob.handle) {
        ob.set_num_threads(1);
        if (!same_results()) return 1;
    }

    register_pair("domatcopy_t", run_omatcopy, 4096, 4096, 1);
    register_pair("domatcopy_t", run_omatcopy, 5000, 3000, 1);
    register_pair("dimatcopy_t", run_imatcopy, 3000, 2000, 1);
    register_pair("domatcopy_t", run_omatcopy, 4096, 4096, 2);
    register_pair("domatcopy_t", run_omatcopy, 5000, 3000, 2);

    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
