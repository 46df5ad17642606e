// Processor identification from cpuid, with overrides for tests.
#include <cpuid.h>

#include <atomic>
#include <cstdlib>
#include <cstring>

#include "core/core.h"

namespace {

struct cpu_facts {
    int generation;
    int barcelona;
};

bool os_saves(unsigned mask) {
    // XGETBV(0): the register state the OS saves on a context switch.
    unsigned lo, hi;
    __asm__ volatile("xgetbv" : "=a"(lo), "=d"(hi) : "c"(0));
    return (lo & mask) == mask;
}

cpu_facts probe() {
    cpu_facts f{ORK_CPU_BASELINE, 0};
    unsigned a, b, c, d;
    if (!__get_cpuid(0, &a, &b, &c, &d)) return f;
    const unsigned max_leaf = a;
    char vendor[13];
    std::memcpy(vendor, &b, 4);
    std::memcpy(vendor + 4, &d, 4);
    std::memcpy(vendor + 8, &c, 4);
    vendor[12] = 0;

    __get_cpuid(1, &a, &b, &c, &d);
    unsigned family = (a >> 8) & 0xf;
    if (family == 0xf) family += (a >> 20) & 0xff;
    f.barcelona = std::strcmp(vendor, "AuthenticAMD") == 0 && family == 0x10;

    const bool osxsave = c & (1u << 27), fma = c & (1u << 12), avx = c & (1u << 28);
    if (!osxsave || !avx || max_leaf < 7 || !os_saves(0x6)) return f;
    __get_cpuid_count(7, 0, &a, &b, &c, &d);
    const bool avx2 = b & (1u << 5);
    if (avx2 && fma) f.generation = ORK_CPU_AVX2;
    const bool avx512 = (b & (1u << 16)) && (b & (1u << 17)) && (b & (1u << 30)) && (b & (1u << 31));
    if (f.generation == ORK_CPU_AVX2 && avx512 && os_saves(0xe6)) f.generation = ORK_CPU_AVX512;
    return f;
}

int env_int(const char* name, int fallback) {
    const char* v = std::getenv(name);
    if (!v || !*v) return fallback;
    char* end;
    long x = std::strtol(v, &end, 10);
    return *end ? fallback : int(x);
}

const cpu_facts& facts() {
    static const cpu_facts f = [] {
        cpu_facts p = probe();
        p.generation = env_int("ORK_CPU_DETECT", p.generation);
        p.barcelona = env_int("ORK_CPU_IS_BARCELONA", p.barcelona);
        return p;
    }();
    return f;
}

std::atomic<int> forced_generation{-1}, forced_barcelona{-1};

}  // namespace

namespace ork::core {
int detected_generation() { return facts().generation; }
int detected_barcelona() { return facts().barcelona; }
}  // namespace ork::core

ORK_CORE_API void ork_force_cpu(int generation, int is_barcelona) {
    forced_generation = generation < 0 ? -1 : generation;
    forced_barcelona = is_barcelona < 0 ? -1 : (is_barcelona != 0);
}

ORK_CORE_API int ork_cpu_generation(void) { return ork::core::detected_generation(); }

ORK_CORE_API const char* ork_cpu_generation_name(int generation) {
    switch (generation) {
        case ORK_CPU_BASELINE: return "baseline";
        case ORK_CPU_AVX2: return "avx2";
        case ORK_CPU_AVX512: return "avx512";
        default: return "unknown";
    }
}

// The generation being served is that of the loaded kernel library, so that
// a kernel asking is told which build it is running in.
ORK_CORE_API int ork_serv_cpu_detect(void) {
    int f = forced_generation;
    return f >= 0 ? f : ork_kernel_generation();
}

ORK_CORE_API int ork_serv_cpuisitbarcelona(void) {
    int f = forced_barcelona;
    return f >= 0 ? f : ork::core::detected_barcelona();
}
