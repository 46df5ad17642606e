// main() of every GoogleTest program: runs the tests on the kernel library of
// the generation ctest asks for (ORK_CPU_DETECT), or skips them all when this
// processor cannot run that generation.
#include <gtest/gtest.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "ork/core.h"

namespace {
constexpr int skipped = 77;  // ctest's SKIP_RETURN_CODE for these tests
}

int main(int argc, char** argv) {
    testing::InitGoogleTest(&argc, argv);
    const char* asked = std::getenv("ORK_CPU_DETECT");
    if (asked && *asked && !testing::GTEST_FLAG(list_tests)) {
        // ork_cpu_generation() is the assumed generation: the asked one, or
        // what the processor runs when it runs less (libork has said so).
        const int want = std::atoi(asked), have = ork_cpu_generation();
        if (want > have) {
            std::printf("SKIPPED: this processor runs generation %d (%s), not %d (%s)\n", have,
                        ork_cpu_generation_name(have), want, ork_cpu_generation_name(want));
            return skipped;
        }
        if (ork_init() != 0 || ork_kernel_generation() != want) {
            std::printf("the %s kernel library was asked for, but %s was loaded\n", ork_cpu_generation_name(want),
                        ork_kernel_library_path());
            return 1;
        }
    }
    return RUN_ALL_TESTS();
}
