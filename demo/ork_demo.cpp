// ork-demo: what was loaded, then one real computation per subsystem, each
// with an independent check and its speed.
#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <random>
#include <vector>

#include "ork/ork.h"

namespace {

using clock_type = std::chrono::steady_clock;

// Best of a few runs, in seconds.
template <class F>
double best_time(int runs, F f) {
    double best = 1e300;
    for (int r = 0; r < runs; ++r) {
        auto t0 = clock_type::now();
        f();
        double s = std::chrono::duration<double>(clock_type::now() - t0).count();
        if (s < best) best = s;
    }
    return best;
}

int failures = 0;

void report(const char* what, const char* value, double err, double bound, double gbytes, double seconds) {
    const bool ok = err <= bound;
    failures += !ok;
    std::printf("  %-28s %-26s error %.2e (bound %.1e) %-4s %7.2f GB/s\n", what, value, err, bound,
                ok ? "ok" : "FAIL", gbytes / seconds);
}

void level1() {
    std::printf("\nlevel 1: vectors of 10^7 doubles, checked against long double\n");
    const ork_int n = 10'000'000, one = 1;
    std::mt19937_64 gen(2026);
    std::uniform_real_distribution<double> u(-1.0, 1.0);
    std::vector<double> x(static_cast<std::size_t>(n)), y(static_cast<std::size_t>(n));
    for (auto& v : x) v = u(gen);
    for (auto& v : y) v = u(gen);
    const double eps = 0x1p-53, gb = 1e-9 * 8.0 * double(n);

    // dot: |computed - exact| <= n*eps*sum|x_i*y_i| for any summation order
    double dot = 0;
    double t = best_time(5, [&] { dot = ork_blas_ddot(&n, x.data(), &one, y.data(), &one); });
    long double exact = 0, absdot = 0;
    for (ork_int i = 0; i < n; ++i) {
        exact += (long double)x[i] * y[i];
        absdot += std::fabs((long double)x[i] * y[i]);
    }
    char text[64];
    std::snprintf(text, sizeof text, "= %.15g", dot);
    report("ddot x.y", text, double(std::fabs((long double)dot - exact)), double(n * eps * absdot), 2 * gb, t);

    // nrm2: the scaled one-pass sum of squares against a long double sum
    double nrm = 0;
    t = best_time(3, [&] { nrm = ork_blas_dnrm2(&n, x.data(), &one); });
    long double ss = 0;
    for (ork_int i = 0; i < n; ++i) ss += (long double)x[i] * x[i];
    long double exact_nrm = std::sqrt(ss);
    std::snprintf(text, sizeof text, "= %.15g", nrm);
    report("dnrm2 ||x||", text, double(std::fabs((nrm - exact_nrm) / exact_nrm)), 4.0 * n * eps, gb, t);

    // axpy: y := 0.5 x + y, then every element against its own rounding
    std::vector<double> y0 = y;
    const double alpha = 0.5;
    t = 1e300;  // timed without the copy that restores y
    for (int r = 0; r < 5; ++r) {
        y = y0;
        auto t0 = clock_type::now();
        ork_blas_daxpy(&n, &alpha, x.data(), &one, y.data(), &one);
        t = std::min(t, std::chrono::duration<double>(clock_type::now() - t0).count());
    }
    double worst = 0;
    for (ork_int i = 0; i < n; ++i) {
        long double e = (long double)y0[i] + 0.5L * x[i];
        worst = std::max(worst, double(std::fabs((y[i] - e) / (std::fabs(e) + 1e-300L))));
    }
    report("daxpy y += x/2", "10^7 elements", worst, eps, 3 * gb, t);

    // idamax: against a plain scan
    x[std::size_t(n / 3)] = -7.5;
    ork_int imax = 0;
    t = best_time(5, [&] { imax = ork_blas_idamax(&n, x.data(), &one); });
    ork_int expect = 1;
    for (ork_int i = 1; i < n; ++i)
        if (std::fabs(x[i]) > std::fabs(x[expect - 1])) expect = i + 1;
    std::snprintf(text, sizeof text, "= %lld", (long long)imax);
    report("idamax argmax|x|", text, double(imax != expect), 0.0, gb, t);
}

}  // namespace

int main() {
    if (ork_init() != 0) {
        std::fprintf(stderr, "ork-demo: the kernel library could not be loaded\n");
        return 1;
    }
    int cpu = ork_cpu_generation(), kern = ork_kernel_generation();
    std::printf("%s\n", ork_version());
    std::printf("processor generation: %s (%d)\n", ork_cpu_generation_name(cpu), cpu);
    std::printf("kernel library:       %s (generation %d, %s)\n", ork_kernel_library_path(), kern,
                ork_cpu_generation_name(kern));
    std::printf("threads:              %d\n", ork_get_max_threads());

    level1();

    std::printf("\n%s\n", failures ? "some checks FAILED" : "all checks passed");
    return failures ? 1 : 0;
}
