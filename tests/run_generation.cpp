// Runs a command on the kernel library of one generation: sets ORK_CPU_DETECT
// for it, or exits with ctest's skip code when this processor cannot run it.
//   ork-run-generation <generation> <program> [arguments...]
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <string>

#include "ork/core.h"

int main(int argc, char** argv) {
    if (argc < 3) {
        std::fprintf(stderr, "usage: %s <generation> <program> [arguments...]\n", argv[0]);
        return 2;
    }
    unsetenv("ORK_CPU_DETECT");  // what the processor itself runs
    const int want = std::atoi(argv[1]), have = ork_cpu_generation();
    if (want > have) {
        std::printf("SKIPPED: this processor runs generation %d (%s), not %d (%s)\n", have,
                    ork_cpu_generation_name(have), want, ork_cpu_generation_name(want));
        return 77;
    }
    setenv("ORK_CPU_DETECT", std::to_string(want).c_str(), 1);
    execvp(argv[2], argv + 2);
    std::perror(argv[2]);
    return 127;
}
