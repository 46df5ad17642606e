// ork-demo: what was loaded and why, then one real computation per subsystem
// (or the sections named on the command line), each with an independent
// check and its speed.
#include <dlfcn.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <random>
#include <string>
#include <type_traits>
#include <vector>

#include "demo/demo.h"
#include "ork/ork.h"

using namespace ork_demo;

namespace {

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

// ---- gemm: C := A*B, checked through the identity (A*B)*x = A*(B*x) for a
// random x, both sides formed from the computed C, A and B with long double
// matrix-vector loops. If C = A*B + E, the two sides differ by E*x; every
// element of E is within (k+2)u (|A||B|)_ij of zero for any summation order
// (u the unit roundoff, sqrt 2 more for complex), so
// |(C x - A(B x))_i| <= (k+2)u (|A|(|B||x|))_i, and the error printed is the
// largest difference over the largest element of |A|(|B||x|). A wrong
// element of C anywhere shows, since x has no zero element.
struct cld {
    long double re = 0, im = 0;
};
cld widen(double v) { return {v, 0}; }
cld widen(ork_complex16 v) { return {v.re, v.im}; }
long double mag(cld v) { return std::hypot(v.re, v.im); }
cld mul(cld a, cld b) { return {a.re * b.re - a.im * b.im, a.re * b.im + a.im * b.re}; }

// y := M*v for an m x n column-major M, with magnitudes: |y| := |M| |v|
// when `abs` is set.
template <class T>
std::vector<cld> matvec(ork_int m, ork_int n, const T* a, ork_int lda, const std::vector<cld>& v, bool abs = false) {
    std::vector<cld> y(static_cast<std::size_t>(m));
    for (ork_int j = 0; j < n; ++j) {
        const cld vj = v[std::size_t(j)];
        for (ork_int i = 0; i < m; ++i) {
            const cld aij = widen(a[i + j * lda]);
            if (abs) {
                y[std::size_t(i)].re += mag(aij) * vj.re;
            } else {
                const cld p = mul(aij, vj);
                y[std::size_t(i)].re += p.re;
                y[std::size_t(i)].im += p.im;
            }
        }
    }
    return y;
}

// One product, its check and its speed; T double or ork_complex16.
template <class T, class F>
void gemm_case(const char* what, ork_int m, ork_int n, ork_int k, F product, std::mt19937_64& gen) {
    constexpr bool complex = !std::is_same_v<T, double>;
    std::uniform_real_distribution<double> u(-1.0, 1.0);
    auto draw = [&]() -> T {
        if constexpr (complex) {
            const double re = u(gen);
            return T{re, u(gen)};
        } else {
            return u(gen);
        }
    };
    std::vector<T> a(std::size_t(m * k)), b(std::size_t(k * n)), c(std::size_t(m * n));
    for (auto& v : a) v = draw();
    for (auto& v : b) v = draw();
    // NaN in C: beta = 0 must not let it through
    for (auto& v : c) std::memset(&v, 0xff, sizeof v);

    double t = best_time(3, [&] { product(m, n, k, a.data(), b.data(), c.data()); });

    std::vector<cld> x(static_cast<std::size_t>(n));
    for (auto& v : x) v = widen(draw());
    std::vector<cld> cx = matvec(m, n, c.data(), m, x);
    std::vector<cld> bx = matvec(k, n, b.data(), k, x);
    std::vector<cld> abx = matvec(m, k, a.data(), m, bx);
    std::vector<cld> xabs(x.size()), bxabs, scale;
    for (std::size_t j = 0; j < x.size(); ++j) xabs[j] = {mag(x[j]), 0};
    bxabs = matvec(k, n, b.data(), k, xabs, true);
    scale = matvec(m, k, a.data(), m, bxabs, true);
    long double worst = 0, top = 0;
    for (std::size_t i = 0; i < cx.size(); ++i) {
        const long double d = std::hypot(cx[i].re - abx[i].re, cx[i].im - abx[i].im);
        if (std::isnan(d) || std::isnan(worst)) worst = std::numeric_limits<long double>::quiet_NaN();  // kept
        else worst = std::max(worst, d);
        top = std::max(top, scale[i].re);
    }
    const double unit_roundoff = 0x1p-53;
    const double bound = double(k + 2) * unit_roundoff * (complex ? std::sqrt(2.0) : 1.0);
    char text[64];
    std::snprintf(text, sizeof text, "%lld x %lld x %lld", (long long)m, (long long)n, (long long)k);
    const double ops = (complex ? 8.0 : 2.0) * double(m) * double(n) * double(k);
    report(what, text, double(worst / top), bound, 1e-9 * ops, t, "GFLOP/s");
}

void gemm() {
    std::printf("\ngemm: C := A*B (beta = 0 over NaN), checked by (A*B)*x = A*(B*x) in long double\n");
    std::mt19937_64 gen(2027);
    const char* no = "N";
    gemm_case<double>("dgemm C = A*B", 1000, 1000, 1000,
                      [&](ork_int m, ork_int n, ork_int k, const double* a, const double* b, double* c) {
                          const double alpha = 1, beta = 0;
                          ork_blas_dgemm(no, no, &m, &n, &k, &alpha, a, &m, b, &k, &beta, c, &m);
                      },
                      gen);
    gemm_case<ork_complex16>(
        "zgemm C = A*B", 500, 500, 500,
        [&](ork_int m, ork_int n, ork_int k, const ork_complex16* a, const ork_complex16* b, ork_complex16* c) {
            const ork_complex16 alpha{1, 0}, beta{0, 0};
            ork_blas_zgemm(no, no, &m, &n, &k, &alpha, a, &m, b, &k, &beta, c, &m);
        },
        gen);
}

}  // namespace

namespace ork_demo {
int failures = 0;

void report(const char* what, const char* value, double err, double bound, double amount, double seconds,
            const char* unit) {
    const bool ok = err <= bound;  // false for a NaN error too
    failures += !ok;
    std::printf("  %-28s %-26s error %.2e (bound %.1e) %-4s %7.2f %s\n", what, value, err, bound,
                ok ? "ok" : "FAIL", amount / seconds, unit);
}
}  // namespace ork_demo

namespace {

// The sections, in the order a run without arguments takes them.
struct section {
    const char* name;
    const char* what;
    void (*run)();
};
const section sections[] = {
    {"level1", "ddot, dnrm2, daxpy and idamax on 10^7 doubles", level1},
    {"gemm", "dgemm and zgemm, checked through (A*B)*x = A*(B*x)", gemm},
    {"trans", "out-of-place and in-place transposition", trans_section},
    {"lapack", "the reference LAPACK's dgesv on ork's libblas.so.3", lapack_section},
};

void usage(std::FILE* to) {
    std::fprintf(to,
                 "usage: ork-demo [--help] [--list] [section ...]\n"
                 "Says which kernel library ork loaded and why, then runs the named sections\n"
                 "(all of them when none is named): each computes with ork, checks the result\n"
                 "against an independent computation and prints its speed. The exit status is\n"
                 "0 when every check passed.\n"
                 "  --list   the sections\n"
                 "  --help   this text\n");
}

// "a", "a and b", "a, b and c"
std::string joined(const std::vector<std::string>& names) {
    std::string r;
    for (std::size_t i = 0; i < names.size(); ++i)
        r += (i == 0 ? "" : i + 1 == names.size() ? " and " : ", ") + names[i];
    return r;
}

// The folder of libork, where it looks for the kernel libraries.
std::string libork_folder() {
    Dl_info self{};
    if (!dladdr(reinterpret_cast<void*>(&ork_init), &self) || !self.dli_fname) return ".";
    const std::string path = self.dli_fname;
    const auto slash = path.rfind('/');
    return slash == std::string::npos ? "." : path.substr(0, slash);
}

// libork_<generation>.so for the generations from..to, those that exist
// next to libork or those that do not.
std::vector<std::string> kernel_files(int from, int to, bool present) {
    std::vector<std::string> r;
    for (int g = from; g >= to; --g) {
        const std::string file = std::string("libork_") + ork_cpu_generation_name(g) + ".so";
        if ((access((libork_folder() + "/" + file).c_str(), R_OK) == 0) == present) r.push_back(file);
    }
    return r;
}

// Why the loaded library is the one it is, from what libork reports, the
// overrides in the environment and the files next to libork.
std::string why_loaded(int cpu, int kern) {
    std::string why;
    if (const char* lib = std::getenv("ORK_KERNEL_LIBRARY"); lib && *lib) {
        char* wanted = realpath(lib, nullptr);
        char* loaded = realpath(ork_kernel_library_path(), nullptr);
        const bool same = wanted && loaded && std::strcmp(wanted, loaded) == 0;
        std::free(wanted);
        std::free(loaded);
        if (same) return "ORK_KERNEL_LIBRARY names it";
        why = std::string("ORK_KERNEL_LIBRARY=") + lib + " could not be used (see the message above); ";
    }
    const char* forced = std::getenv("ORK_CPU_DETECT");
    if (forced && *forced) why += std::string("ORK_CPU_DETECT=") + forced + " sets the processor generation; ";
    if (kern == cpu) return why + (forced && *forced ? "this is its library" : "the best generation this processor runs");
    const std::vector<std::string> missing = kernel_files(cpu, kern + 1, false);
    if (!missing.empty()) return why + joined(missing) + " not found next to libork (" + libork_folder() + ")";
    return why + "the libraries of later generations next to libork (" + libork_folder() + ") could not be used";
}

}  // namespace

int main(int argc, char** argv) {
    std::vector<const section*> chosen;
    for (int i = 1; i < argc; ++i) {
        const std::string arg = argv[i];
        if (arg == "--help" || arg == "-h") {
            usage(stdout);
            return 0;
        }
        if (arg == "--list") {
            for (const section& s : sections) std::printf("%-8s %s\n", s.name, s.what);
            return 0;
        }
        const section* found = nullptr;
        for (const section& s : sections)
            if (arg == s.name) found = &s;
        if (!found) {
            std::fprintf(stderr, "ork-demo: %s \"%s\" (ork-demo --help, ork-demo --list)\n",
                         arg[0] == '-' ? "unknown option" : "no section", arg.c_str());
            return 2;
        }
        chosen.push_back(found);
    }
    if (chosen.empty())
        for (const section& s : sections) chosen.push_back(&s);

    std::printf("%s\n", ork_version());
    const int cpu = ork_cpu_generation();
    std::printf("processor generation: %s (%d)\n", ork_cpu_generation_name(cpu), cpu);
    if (ork_init() != 0) {
        const char* lib = std::getenv("ORK_KERNEL_LIBRARY");
        const std::vector<std::string> present = kernel_files(cpu, 0, true);
        const std::string asked = lib && *lib ? std::string("ORK_KERNEL_LIBRARY=") + lib
                                              : "next to libork in " + libork_folder() + ": " +
                                                    (present.empty() ? std::string("none") : joined(present));
        std::fflush(stdout);
        std::fprintf(stderr, "ork-demo: no kernel library could be loaded (%s)\n", asked.c_str());
        return 1;
    }
    const int kern = ork_kernel_generation();
    std::printf("kernel library:       %s (generation %d, %s)\n", ork_kernel_library_path(), kern,
                ork_cpu_generation_name(kern));
    std::printf("why this one:         %s\n", why_loaded(cpu, kern).c_str());
    std::printf("threads:              %d\n", ork_get_max_threads());

    for (const section* s : chosen) s->run();

    std::printf("\n%s\n", failures ? "some checks FAILED" : "all checks passed");
    return failures ? 1 : 0;
}
