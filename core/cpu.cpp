// Processor identification from cpuid and xgetbv, with overrides for tests.
#include <cpuid.h>

#include <atomic>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "core/core.h"

namespace {

struct cpu_facts {
    int supported;   // the best generation the processor and the OS run
    int generation;  // the one assumed: supported, or a lower ORK_CPU_DETECT
    int barcelona;
};

constexpr bool has(unsigned reg, unsigned bit) { return (reg >> bit) & 1u; }

// XGETBV(0): the register state the OS saves on a context switch. Only asked
// once cpuid has said OSXSAVE, without which the instruction faults.
bool os_saves(unsigned mask) {
    unsigned lo, hi;
    __asm__ volatile("xgetbv" : "=a"(lo), "=d"(hi) : "c"(0));
    return (lo & mask) == mask;
}

// The libraries are built for x86-64-v3 (avx2) and x86-64-v3 with AVX-512
// F, DQ, BW and VL (avx512): a generation is granted only when every one of
// its instruction groups is present and the OS saves the registers it uses
// (XMM and YMM: XCR0 bits 1-2; opmask and the upper ZMM state: bits 5-7).
int supported_generation(unsigned max_leaf) {
    unsigned a = 0, b = 0, c = 0, d = 0;
    __get_cpuid(1, &a, &b, &c, &d);
    const unsigned c1 = c;
    const bool v2 = has(c1, 0) && has(c1, 9) && has(c1, 13) && has(c1, 19) && has(c1, 20) && has(c1, 23);
    const bool osxsave = has(c1, 27);
    if (!v2 || !osxsave || !has(c1, 28) || max_leaf < 7 || !os_saves(0x6)) return ORK_CPU_BASELINE;
    // FMA, MOVBE, F16C
    if (!has(c1, 12) || !has(c1, 22) || !has(c1, 29)) return ORK_CPU_BASELINE;
    unsigned lzcnt = 0;
    if (__get_cpuid(0x80000001u, &a, &b, &c, &d)) lzcnt = has(c, 5);
    __get_cpuid_count(7, 0, &a, &b, &c, &d);
    const unsigned b7 = b;
    // BMI1, AVX2, BMI2
    if (!lzcnt || !has(b7, 3) || !has(b7, 5) || !has(b7, 8)) return ORK_CPU_BASELINE;
    // AVX-512 F, DQ, BW, VL
    const bool avx512 = has(b7, 16) && has(b7, 17) && has(b7, 30) && has(b7, 31);
    return avx512 && os_saves(0xe6) ? ORK_CPU_AVX512 : ORK_CPU_AVX2;
}

cpu_facts probe() {
    cpu_facts f{ORK_CPU_BASELINE, ORK_CPU_BASELINE, 0};
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
    f.supported = f.generation = supported_generation(max_leaf);
    return f;
}

// A whole decimal number in [lo, hi], else false.
bool parse_in_range(const char* v, long lo, long hi, int& out) {
    if (!v || !*v) return false;
    char* end;
    errno = 0;
    const long x = std::strtol(v, &end, 10);
    if (*end || errno || x < lo || x > hi) return false;
    out = int(x);
    return true;
}

void warn(const char* text) { std::fprintf(stderr, "%s\n", text); }

// ORK_CPU_DETECT names a known generation the processor runs, or is ignored
// with a one-line warning: a generation it cannot run would end in an
// illegal instruction at the first kernel.
int assumed_generation(int supported) {
    const char* v = std::getenv("ORK_CPU_DETECT");
    if (!v || !*v) return supported;
    int g;
    if (!parse_in_range(v, ORK_CPU_BASELINE, ORK_CPU_AVX512, g)) {
        warn(ork_serv_ork_get_msg(6, 3, v, supported, ork_cpu_generation_name(supported)));
        return supported;
    }
    if (g > supported) {
        warn(ork_serv_ork_get_msg(7, 4, g, ork_cpu_generation_name(g), supported, ork_cpu_generation_name(supported)));
        return supported;
    }
    return g;
}

const cpu_facts& facts() {
    static const cpu_facts f = [] {
        cpu_facts p = probe();
        p.generation = assumed_generation(p.supported);
        int barcelona;
        if (parse_in_range(std::getenv("ORK_CPU_IS_BARCELONA"), 0, 1, barcelona)) p.barcelona = barcelona;
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
