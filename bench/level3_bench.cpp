// Speed of libork's level-3 routines besides gemm against OpenBLAS, in one
// process and on the same matrices: dtrsm and dtrmm (side L, lower, no
// transpose, non-unit), dsyrk, dsyr2k and zherk (lower, no transpose) and
// dsymm (side L, lower) at orders 256, 1000 and 2000 (m = n = k), one
// thread, and two threads at 2000.
//
// Names are <routine>/<lib>/<n>[/threads:<t>], lib being "ork" or
// "openblas", so that bench/compare.py can pair them. Each result carries
// the counter GFLOPS (n^3 for trsm, trmm and syrk, 2n^3 for syr2k and symm,
// 4n^3 for zherk, per second of wall-clock time) and "flop". The solve and the multiply overwrite B, so
// B is restored before every call, outside the timing. OpenBLAS is loaded
// with dlopen and reads OPENBLAS_CORETYPE when it is loaded.
#include <benchmark/benchmark.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <random>
#include <string>
#include <thread>
#include <vector>

#include "bench/openblas_peer.h"
#include "ork/ork.h"

namespace {

using idx = ork_int;
using ork_bench::lib;

constexpr idx orders[] = {256, 1000, 2000};
constexpr idx max_order = 2000;

// ---- OpenBLAS through its Fortran entries: 32-bit integers by address.
using ob_trxm_fn = void (*)(const char*, const char*, const char*, const char*, const int*, const int*, const double*,
                            const double*, const int*, double*, const int*);
using ob_syrk_fn = void (*)(const char*, const char*, const int*, const int*, const double*, const double*,
                            const int*, const double*, double*, const int*);
using ob_syr2k_fn = void (*)(const char*, const char*, const int*, const int*, const double*, const double*,
                             const int*, const double*, const int*, const double*, double*, const int*);
using ob_herk_fn = void (*)(const char*, const char*, const int*, const int*, const double*, const ork_complex16*,
                            const int*, const double*, ork_complex16*, const int*);
using ob_symm_fn = void (*)(const char*, const char*, const int*, const int*, const double*, const double*,
                            const int*, const double*, const int*, const double*, double*, const int*);

struct openblas_api : ork_bench::openblas_peer {
    ob_trxm_fn dtrsm = nullptr, dtrmm = nullptr;
    ob_syrk_fn dsyrk = nullptr;
    ob_syr2k_fn dsyr2k = nullptr;
    ob_herk_fn zherk = nullptr;
    ob_symm_fn dsymm = nullptr;
};
openblas_api ob;

// ---- the matrices: A lower triangular and diagonally dominant (the solve
// is well conditioned), B and C uniform in [-1, 1), from a fixed start;
// `b0` keeps B for the restores; Z and its output W complex, for zherk.
struct operands {
    std::vector<double> a, b, b0, c;
    std::vector<ork_complex16> z, w;
} data;

void make_operands() {
    std::mt19937_64 g(20240610);
    std::uniform_real_distribution<double> u(-1, 1);
    const std::size_t n = std::size_t(max_order);
    data.a.resize(n * n);
    for (auto& v : data.a) v = u(g);
    for (std::size_t j = 0; j < n; ++j) data.a[j + j * n] += double(n);
    data.b0.resize(n * n);
    for (auto& v : data.b0) v = u(g);
    data.b = data.b0;
    data.c.assign(n * n, 0.0);
    data.z.resize(n * n);
    for (auto& v : data.z) v = {u(g), u(g)};
    data.w.assign(n * n, {0.0, 0.0});
}

enum class routine { trsm, trmm, syrk, syr2k, herk, symm };
const char* name_of(routine r) {
    constexpr const char* names[] = {"dtrsm", "dtrmm", "dsyrk", "dsyr2k", "zherk", "dsymm"};
    return names[int(r)];
}
double flops(routine r, idx n) {
    const double f = r == routine::herk ? 4.0 : r == routine::symm || r == routine::syr2k ? 2.0 : 1.0;
    return f * double(n) * double(n) * double(n);
}
bool is_update(routine r) { return r == routine::syrk || r == routine::syr2k || r == routine::herk; }
bool overwrites_b(routine r) { return r == routine::trsm || r == routine::trmm; }

// One call of order n (leading dimension max_order throughout).
void call(lib l, routine r, idx n, double* b, double* c) {
    const double one = 1, zero = 0;
    const double* a = data.a.data();
    if (l == lib::ork) {
        const idx ld = max_order;
        switch (r) {
        case routine::trsm: return ork_blas_dtrsm("L", "L", "N", "N", &n, &n, &one, a, &ld, b, &ld);
        case routine::trmm: return ork_blas_dtrmm("L", "L", "N", "N", &n, &n, &one, a, &ld, b, &ld);
        case routine::syrk: return ork_blas_dsyrk("L", "N", &n, &n, &one, b, &ld, &zero, c, &ld);
        case routine::syr2k: return ork_blas_dsyr2k("L", "N", &n, &n, &one, b, &ld, a, &ld, &zero, c, &ld);
        case routine::herk: return ork_blas_zherk("L", "N", &n, &n, &one, data.z.data(), &ld, &zero, data.w.data(), &ld);
        case routine::symm: return ork_blas_dsymm("L", "L", &n, &n, &one, a, &ld, b, &ld, &zero, c, &ld);
        }
    } else {
        const int m = int(n), ld = int(max_order);
        switch (r) {
        case routine::trsm: return ob.dtrsm("L", "L", "N", "N", &m, &m, &one, a, &ld, b, &ld);
        case routine::trmm: return ob.dtrmm("L", "L", "N", "N", &m, &m, &one, a, &ld, b, &ld);
        case routine::syrk: return ob.dsyrk("L", "N", &m, &m, &one, b, &ld, &zero, c, &ld);
        case routine::syr2k: return ob.dsyr2k("L", "N", &m, &m, &one, b, &ld, a, &ld, &zero, c, &ld);
        case routine::herk: return ob.zherk("L", "N", &m, &m, &one, data.z.data(), &ld, &zero, data.w.data(), &ld);
        case routine::symm: return ob.dsymm("L", "L", &m, &m, &one, a, &ld, b, &ld, &zero, c, &ld);
        }
    }
}

void restore_b(idx n) {
    for (idx j = 0; j < n; ++j)
        std::memcpy(&data.b[std::size_t(j * max_order)], &data.b0[std::size_t(j * max_order)], sizeof(double) * std::size_t(n));
}

void run(benchmark::State& state, lib l, routine r, idx n, int threads) {
    ork_bench::use_threads(ob, l, threads);
    // untimed: thread start-up and first touch of workspace
    restore_b(n);
    call(l, r, n, data.b.data(), data.c.data());
    for (auto _ : state) {
        if (overwrites_b(r)) {
            state.PauseTiming();
            restore_b(n);
            state.ResumeTiming();
        }
        call(l, r, n, data.b.data(), data.c.data());
        benchmark::ClobberMemory();
    }
    const double f = flops(r, n);
    state.counters["GFLOPS"] = benchmark::Counter(1e-9 * f * double(state.iterations()), benchmark::Counter::kIsRate);
    state.counters["flop"] = f;
}

void register_pair(routine r, idx n, int threads) {
    for (lib l : {lib::ork, lib::openblas}) {
        if (l == lib::openblas && !ob.handle) continue;
        std::string name = std::string(name_of(r)) + (l == lib::ork ? "/ork/" : "/openblas/") + std::to_string(n);
        if (threads > 1) name += "/threads:" + std::to_string(threads);
        auto* b = benchmark::RegisterBenchmark(name.c_str(), [=](benchmark::State& st) { run(st, l, r, n, threads); });
        b->UseRealTime();
        if (n >= 2000) b->Repetitions(1);
    }
}

// ---- start-up check: both libraries give the same result (to rounding) on
// an order-300 problem of every routine timed, or the program stops.
bool agree(routine r) {
    const idx n = 300;
    std::vector<double> out[2];
    for (lib l : {lib::ork, lib::openblas}) {
        if (l == lib::openblas && !ob.handle) continue;
        restore_b(n);
        std::fill(data.c.begin(), data.c.end(), std::nan(""));
        std::fill(data.w.begin(), data.w.end(), ork_complex16{std::nan(""), std::nan("")});
        call(l, r, n, data.b.data(), data.c.data());
        const auto& src = overwrites_b(r) ? data.b : data.c;
        auto& o = out[l == lib::ork ? 0 : 1];
        for (idx j = 0; j < n; ++j)
            for (idx i = is_update(r) ? j : 0; i < n; ++i) {
                const std::size_t e = std::size_t(i + j * max_order);
                if (r == routine::herk) o.insert(o.end(), {data.w[e].re, data.w[e].im});
                else o.push_back(src[e]);
            }
    }
    restore_b(max_order);
    if (!ob.handle) return true;
    double diff = 0, size = 0;
    for (std::size_t k = 0; k < out[0].size(); ++k) {
        diff = std::max(diff, std::fabs(out[0][k] - out[1][k]));
        size = std::max(size, std::fabs(out[1][k]));
    }
    if (diff <= 1e-10 * size) return true;
    std::fprintf(stderr, "ork-bench-level3: %s: ork and OpenBLAS differ by %.3g (largest element %.3g)\n", name_of(r),
                 diff, size);
    return false;
}

}  // namespace

int main(int argc, char** argv) {
    if (!ork_bench::start(&argc, argv)) return 1;
    make_operands();
    ob.open(ob, [](openblas_api& o) {
        return o.bind("dtrsm_", o.dtrsm) && o.bind("dtrmm_", o.dtrmm) && o.bind("dsyrk_", o.dsyrk) &&
               o.bind("dsyr2k_", o.dsyr2k) && o.bind("zherk_", o.zherk) && o.bind("dsymm_", o.dsymm);
    });
    ob.describe("ork-bench-level3");
    if (ob.handle) {
        const char* ct = std::getenv("OPENBLAS_CORETYPE");
        benchmark::AddCustomContext("openblas_coretype_env", ct ? ct : "");
        ob.set_num_threads(1);
        ork_set_num_threads(1);
    }
    bool ok = true;
    for (routine r : {routine::trsm, routine::trmm, routine::syrk, routine::syr2k, routine::herk, routine::symm})
        ok = agree(r) && ok;
    if (!ok) return 1;
    for (routine r : {routine::trsm, routine::syrk, routine::syr2k, routine::herk, routine::symm, routine::trmm}) {
        for (idx n : orders) register_pair(r, n, 1);
        register_pair(r, max_order, 2);
    }
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
