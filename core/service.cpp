// Service functions for the kernel libraries: memory, flags, the lock, version.
#include <atomic>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <mutex>

#include "core/core.h"

namespace {

// Every block carries, just below the address handed out, the address malloc
// returned, so one free serves any alignment: a power of two or not (96, 200:
// the promise is a multiple of the alignment, which rounding up to a power of
// two would not keep).
struct header {
    void* raw;
};

// Allocation-failure injection for tests: the Nth allocation from the moment
// ork_fail_allocation(N) is called returns null; 0 disables it. `made` counts
// every allocation of the core layer (kernel workspace included) so that a
// test can run a call once, then fail each of its allocations in turn.
std::atomic<long> fail_countdown{0};
std::atomic<long> made{0};

bool injected_failure() {
    made.fetch_add(1, std::memory_order_relaxed);
    long c = fail_countdown.load(std::memory_order_relaxed);
    while (c > 0) {
        if (fail_countdown.compare_exchange_weak(c, c - 1, std::memory_order_relaxed)) return c == 1;
    }
    return false;
}

}  // namespace

namespace ork::core {

void* allocate(std::size_t size, long alignment) {
    if (injected_failure()) return nullptr;
    // Zero or negative alignments get malloc's own, 16 bytes on x86-64.
    const std::size_t a = alignment > 0 ? std::size_t(alignment) : 16;
    const std::size_t room = sizeof(header) + a - 1;
    if (size > SIZE_MAX - room) return nullptr;
    char* raw = static_cast<char*>(std::malloc(size + room));
    if (!raw) return nullptr;
    std::uintptr_t at = reinterpret_cast<std::uintptr_t>(raw) + sizeof(header);
    at = (at + a - 1) / a * a;
    reinterpret_cast<header*>(at)[-1].raw = raw;
    return reinterpret_cast<void*>(at);
}

void deallocate(void* p) {
    if (p) std::free(static_cast<header*>(p)[-1].raw);
}

}  // namespace ork::core

namespace {
std::mutex& process_lock() {
    static std::mutex m;
    return m;
}

}  // namespace

ORK_CORE_API void* ork_serv_allocate(size_t size, int alignment) { return ork::core::allocate(size, alignment); }
ORK_CORE_API void ork_serv_deallocate(void* p) { ork::core::deallocate(p); }
ORK_CORE_API void* ork_serv_ork_malloc(size_t size, int alignment) { return ork::core::allocate(size, alignment); }
ORK_CORE_API void ork_serv_ork_free(void* p) { ork::core::deallocate(p); }

ORK_CORE_API void ork_fail_allocation(long nth) { fail_countdown.store(nth > 0 ? nth : 0); }
ORK_CORE_API long ork_allocation_count(void) { return made.load(std::memory_order_relaxed); }

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
