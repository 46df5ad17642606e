// Prints the thread count libork takes from the environment, after one
// threaded call (which also reads OMP_WAIT_POLICY); for threads_test.cpp.
#include <cstdio>
#include <vector>

#include "ork/ork.h"

int main() {
    const ork_int n = 1 << 18, one = 1;
    std::vector<double> x(static_cast<std::size_t>(n), 1.0);
    const double s = ork_blas_ddot(&n, x.data(), &one, x.data(), &one);
    std::printf("%d\n", ork_get_max_threads());
    return s == double(n) ? 0 : 1;
}
