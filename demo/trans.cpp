// ork-demo's transposition section: a 4096 x 4096 out-of-place transposition,
// a 5000 x 3000 one, and the in-place transposition of a 3000 x 2000 matrix
// with no work memory, each checked element by element against a naive
// transposition.
#include <cstdint>
#include <cstdio>
#include <random>
#include <vector>

#include "demo/demo.h"
#include "ork/ork.h"

namespace ork_demo {

namespace {

using u64 = std::uint64_t;

// Largest |b(j, i) - alpha*a(i, j)| over the row-major rows x cols source,
// the naive transposition computed here.
double deviation(const std::vector<double>& a, const std::vector<double>& b, u64 rows, u64 cols, double alpha) {
    double worst = 0;
    for (u64 i = 0; i < rows; ++i)
        for (u64 j = 0; j < cols; ++j) {
            double d = b[j * rows + i] - alpha * a[i * cols + j];
            d = d < 0 ? -d : d;
            if (!(d <= worst)) worst = d;  // a NaN sticks
        }
    return worst;
}

void out_of_place(u64 rows, u64 cols, std::mt19937_64& gen) {
    std::uniform_real_distribution<double> u(-1.0, 1.0);
    std::vector<double> a(rows * cols), b(rows * cols);
    for (double& x : a) x = u(gen);
    const double alpha = 2.5;
    const double t = best_time(3, [&] { ork_trans_domatcopy("R", "T", &rows, &cols, &alpha, a.data(), &cols, b.data(), &rows); });
    char text[64];
    std::snprintf(text, sizeof text, "%llu x %llu", (unsigned long long)rows, (unsigned long long)cols);
    // one product per element: exact agreement
    report("domatcopy B = 2.5*A^T", text, deviation(a, b, rows, cols, alpha), 0.0, 16e-9 * double(rows * cols), t);
}

}  // namespace

void trans_section() {
    std::printf("\ntransposition: row-major, checked element by element against a naive transposition\n");
    std::mt19937_64 gen(2028);
    out_of_place(4096, 4096, gen);
    out_of_place(5000, 3000, gen);

    // In place, 3000 x 2000 (lda 2000) to 2000 x 3000 (ldb 3000), by cycle
    // following; timed once, since a second call would transpose back.
    u64 rows = 3000, cols = 2000;
    std::uniform_real_distribution<double> u(-1.0, 1.0);
    std::vector<double> a(rows * cols);
    for (double& x : a) x = u(gen);
    std::vector<double> ab = a;
    const double one = 1;
    const double t = best_time(1, [&] { ork_trans_dimatcopy("R", "T", &rows, &cols, &one, ab.data(), &cols, &rows); });
    report("dimatcopy AB = AB^T in place", "3000 x 2000", deviation(a, ab, rows, cols, 1.0), 0.0,
           16e-9 * double(rows * cols), t);
}

}  // namespace ork_demo
