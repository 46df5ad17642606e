// Loads the kernel library and fails unless it is the given generation's.
//   ork-loaded-generation <generation>
#include <cstdio>
#include <cstdlib>

#include "ork/core.h"

int main(int argc, char** argv) {
    const int want = argc > 1 ? std::atoi(argv[1]) : -1;
    const int status = ork_init();
    std::printf("processor: %s; loaded: %s (generation %d)\n", ork_cpu_generation_name(ork_cpu_generation()),
                status == 0 ? ork_kernel_library_path() : "nothing", ork_kernel_generation());
    return status == 0 && ork_kernel_generation() == want ? 0 : 1;
}
