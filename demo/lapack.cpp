// ork-demo section: the reference LAPACK's dgesv running on ork's libblas.so.3,
// both loaded at run time through the standard Fortran interface.
#include <dlfcn.h>
#include <unistd.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <random>
#include <string>
#include <vector>

#include "demo/demo.h"

namespace ork_demo {

namespace {

// libblas.so.3 is built in <build>/stdblas, the demo in <build>/bin.
std::string stdblas_path() {
    char exe[4096];
    ssize_t n = readlink("/proc/self/exe", exe, sizeof exe - 1);
    if (n <= 0) return "libblas.so.3";
    std::string dir(exe, std::size_t(n));
    dir = dir.substr(0, dir.rfind('/'));
    return dir.substr(0, dir.rfind('/')) + "/stdblas/libblas.so.3";
}

constexpr const char* reference_lapack = "/usr/lib/x86_64-linux-gnu/lapack/liblapack.so.3";

}  // namespace

void lapack_section() {
    std::printf("\nreference LAPACK on ork's libblas.so.3\n");
    if (access(reference_lapack, R_OK) != 0) {
        std::printf("  skipped: the reference LAPACK (%s) is not installed\n", reference_lapack);
        return;
    }
    // ork's BLAS first and global, so that the LAPACK's libblas.so.3 is this one.
    const std::string blas_path = stdblas_path();
    void* blas = dlopen(blas_path.c_str(), RTLD_NOW | RTLD_GLOBAL);
    void* lapack = blas ? dlopen(reference_lapack, RTLD_NOW | RTLD_GLOBAL) : nullptr;
    using dgesv_t = void (*)(const int*, const int*, double*, const int*, int*, double*, const int*, int*);
    auto dgesv = lapack ? reinterpret_cast<dgesv_t>(dlsym(lapack, "dgesv_")) : nullptr;
    void* dgemm_seen = lapack ? dlsym(lapack, "dgemm_") : nullptr;  // the BLAS the LAPACK binds to
    if (!dgesv || dgemm_seen != dlsym(blas, "dgemm_")) {
        std::printf("  loading failed: %s\n", dlerror());
        ++failures;
        return;
    }

    const int n = 1000, nrhs = 1;
    std::mt19937_64 gen(2024);
    std::uniform_real_distribution<double> u(-1.0, 1.0);
    std::vector<double> a0(std::size_t(n) * n), b0(n);
    for (double& v : a0) v = u(gen);
    for (double& v : b0) v = u(gen);
    std::vector<double> a, x;
    std::vector<int> ipiv(n);
    int info = 0;
    double t = best_time(3, [&] {
        a = a0;
        x = b0;
        dgesv(&n, &nrhs, a.data(), &n, ipiv.data(), x.data(), &n, &info);
    });
    // ||A x - b||_inf / (||A||_inf ||x||_inf), in long double; backward
    // stable elimination keeps it a modest multiple of n * eps
    long double worst = 0, norm_a = 0, norm_x = 0;
    for (int i = 0; i < n; ++i) {
        long double r = -(long double)b0[i], row = 0;
        for (int j = 0; j < n; ++j) {
            const long double aij = a0[std::size_t(j) * n + i];
            r += aij * x[j];
            row += std::fabs(aij);
        }
        worst = std::max(worst, std::fabs(r));
        norm_a = std::max(norm_a, row);
        norm_x = std::max(norm_x, std::fabs((long double)x[i]));
    }
    const double eps = 0x1p-52, err = info == 0 ? double(worst / (norm_a * norm_x)) : 1.0;
    char text[64];
    std::snprintf(text, sizeof text, "n = %d, info %d", n, info);
    report("dgesv_ A x = b (reference LAPACK)", text, err, 10.0 * n * eps, 2.0 / 3.0 * n * n * n * 1e-9, t,
           "GFLOP/s");
}

}  // namespace ork_demo
