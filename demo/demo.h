// Helpers shared by the sections of ork-demo, and the sections themselves.
#pragma once

#include <chrono>

namespace ork_demo {

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

// Checks failed so far; main's exit status.
extern int failures;

// One checked result: `amount` of work (1e9 bytes or operations) done in
// `seconds`, printed as a rate in `unit`; counts a failure when err > bound.
void report(const char* what, const char* value, double err, double bound, double amount, double seconds,
            const char* unit = "GB/s");

// Sections in files of their own (demo/<area>.cpp), called by main in order.
void lapack_section();  // the reference LAPACK's dgesv on ork's libblas.so.3
void trans_section();   // out-of-place and in-place transposition (demo/trans.cpp)

}  // namespace ork_demo
