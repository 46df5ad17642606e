// The number of threads one call may use.
#include <omp.h>

#include <atomic>
#include <cstdlib>

#include "core/core.h"

namespace {
std::atomic<int> override_threads{0};

int from_environment() {
    static const int n = [] {
        const char* v = std::getenv("ORK_NUM_THREADS");
        int k = v ? std::atoi(v) : 0;
        return k > 0 ? k : omp_get_max_threads();  // follows OMP_NUM_THREADS
    }();
    return n;
}
}  // namespace

namespace ork::core {
int max_threads() {
    int n = override_threads.load(std::memory_order_relaxed);
    return n > 0 ? n : from_environment();
}
}  // namespace ork::core

ORK_CORE_API int ork_get_max_threads(void) { return ork::core::max_threads(); }
ORK_CORE_API void ork_set_num_threads(int n) { override_threads = n > 0 ? n : 0; }
