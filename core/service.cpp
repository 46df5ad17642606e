// Service functions for the kernel libraries: memory, flags, the lock, version.
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <mutex>

#include "core/core.h"

namespace {

// posix_memalign wants a power of two no smaller than a pointer.
std::size_t usable_alignment(int alignment) {
    std::size_t a = sizeof(void*);
    while (a < std::size_t(alignment > 0 ? alignment : 1)) a <<= 1;
    return a;
}

void* aligned(std::size_t size, int alignment) {
    void* p = nullptr;
    if (posix_memalign(&p, usable_alignment(alignment), size ? size : 1) != 0) return nullptr;
    return p;
}

std::mutex& process_lock() {
    static std::mutex m;
    return m;
}

}  // namespace

ORK_CORE_API void* ork_serv_allocate(size_t size, int alignment) { return aligned(size, alignment); }
ORK_CORE_API void ork_serv_deallocate(void* p) { std::free(p); }
ORK_CORE_API void* ork_serv_ork_malloc(size_t size, int alignment) { return aligned(size, alignment); }
ORK_CORE_API void ork_serv_ork_free(void* p) { std::free(p); }

ORK_CORE_API int ork_serv_lsame(const char* a, const char* b, int, int) {
    auto up = [](char c) { return (c >= 'a' && c <= 'z') ? char(c - 'a' + 'A') : c; };
    return up(*a) == up(*b);
}

ORK_CORE_API void ork_serv_lock(void) { process_lock().lock(); }
ORK_CORE_API void ork_serv_unlock(void) { process_lock().unlock(); }

ORK_CORE_API const char* ork_version(void) { return "ork " ORK_VERSION_TEXT; }

ORK_CORE_API void ork_serv_getversionstring(char* buf, int len) {
    if (!buf || len <= 0) return;
    std::snprintf(buf, std::size_t(len), "%s for x86-64 Linux, kernels: %s", ork_version(),
                  ork_cpu_generation_name(ork_serv_cpu_detect()));
}
