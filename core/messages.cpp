// The numbered message catalogue and the functions that format and print it.
#include <cstdarg>
#include <cstdio>
#include <cstring>

#include "core/core.h"

namespace {

struct message {
    int number;
    const char* text;  // a printf format; its conversions take the values in order
};

// Numbers are stable: callers use them, and texts may be translated later.
// 1..99: libork itself; 761..771: Fourier transform status codes 0..9 and
// unknown.
constexpr message catalogue[] = {
    {0, "ork: no message numbered %d"},
    {1, "ork: parameter %d was incorrect on entry to %s"},
    {2, "ork: cannot load the kernel library %s: %s"},
    {3, "ork: the kernel library %s does not export %s"},
    {4, "ork: no usable kernel library was found; tried %s"},
    {5, "ork: the kernel library %s serves processor generation %d (%s), which this processor lacks"},
    {6, "ork: ORK_CPU_DETECT=%s is not a known processor generation (0 baseline, 1 avx2, 2 avx512); "
        "using the detected one, %d (%s)"},
    {7, "ork: ORK_CPU_DETECT=%d (%s) asks for more than this processor and operating system run; "
        "using %d (%s)"},
    {8, "ork: using the kernel library %s instead"},
    {9, "ork: not enough memory for %s; its outputs are unchanged"},
    {761, "No error"},
    {762, "Memory could not be obtained"},
    {763, "Invalid configuration: a precision, domain, rank or length is not valid, or the descriptor is not committed"},
    {764, "Inconsistent configuration: unknown or read-only parameter, value outside its set, or wrong arguments"},
    {765, "Threading layer error"},
    {766, "Bad descriptor: null or not a descriptor"},
    {767, "Not implemented for this configuration"},
    {768, "Internal error: the descriptor has no compute routine"},
    {769, "Threading layer error: the threads could not be started"},
    {770, "Reserved status"},
    {771, "Unknown error"},
};

const message* find(int number) {
    for (const auto& m : catalogue)
        if (m.number == number) return &m;
    return nullptr;
}

// Number of values a format consumes ("%%" takes none; "*" widths are not
// used in the catalogue).
int conversions(const char* f) {
    int k = 0;
    for (; *f; ++f)
        if (*f == '%') {
            if (f[1] == '%') ++f;
            else ++k;
        }
    return k;
}

thread_local char buffer[1024];

const char* format(int number, int count, va_list ap) {
    const message* m = find(number);
    if (!m || conversions(m->text) != count) {
        std::snprintf(buffer, sizeof buffer, catalogue[0].text, number);
        return buffer;
    }
    std::vsnprintf(buffer, sizeof buffer, m->text, ap);
    return buffer;
}

}  // namespace

ORK_CORE_API const char* ork_serv_ork_get_msg(int number, int count, ...) {
    va_list ap;
    va_start(ap, count);
    const char* text = format(number, count, ap);
    va_end(ap);
    return text;
}

ORK_CORE_API void ork_serv_ork_print(int, int number, int count, ...) {
    va_list ap;
    va_start(ap, count);
    const char* text = format(number, count, ap);
    va_end(ap);
    std::printf("%s\n", text);
    std::fflush(stdout);
}
