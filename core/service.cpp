// Service functions for the kernel libraries: memory, flags, the lock, version.
#include <sys/mman.h>

#include <atomic>
#include <csetjmp>
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
// Blocks a kernel takes inside a guarded scope are also linked into that
// scope's list, so that leaving the scope early can free them.
struct guard;
struct header {
    void* raw;
    void* block;   // the address handed out
    guard* owner;  // null outside a guarded scope
    header* prev;
    header* next;
};

struct guard {
    std::jmp_buf at;
    header* taken;
    guard* outer;
};
// The innermost guarded scope of this thread (static TLS: see errors.cpp).
__attribute__((tls_model("initial-exec"))) thread_local guard* current = nullptr;

// The header lies in the 8-aligned slot that ends at most 7 bytes below the
// block (alignments such as 3 leave the block itself unaligned for it).
constexpr std::size_t header_slack = alignof(header) - 1;
header* header_of(void* p) {
    const std::uintptr_t at = reinterpret_cast<std::uintptr_t>(p) - sizeof(header);
    return reinterpret_cast<header*>(at & ~std::uintptr_t(header_slack));
}

void unlink(header* h) {
    if (h->prev) h->prev->next = h->next;
    else h->owner->taken = h->next;
    if (h->next) h->next->prev = h->prev;
    h->owner = nullptr;
}

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
    const std::size_t room = sizeof(header) + header_slack + a - 1;
    if (size > SIZE_MAX - room) return nullptr;
    char* raw = static_cast<char*>(std::malloc(size + room));
    if (!raw) return nullptr;
    std::uintptr_t at = reinterpret_cast<std::uintptr_t>(raw) + sizeof(header) + header_slack;
    at = (at + a - 1) / a * a;
    *header_of(reinterpret_cast<void*>(at)) = header{raw, reinterpret_cast<void*>(at), nullptr, nullptr, nullptr};
    return reinterpret_cast<void*>(at);
}

void deallocate(void* p) {
    if (!p) return;
    header* h = header_of(p);
    if (h->owner) unlink(h);
    std::free(h->raw);
}

void* allocate_filled(std::size_t size) {
    // A fresh block of tens of megabytes costs more in page faults than
    // filling it (48 MB: 80 ms of faults against 25 ms of copying on the
    // two-core VM of bench/results/trans.md, 4 KiB pages); on 2 MiB pages,
    // where the system grants them on request, the faults all but vanish.
    constexpr std::size_t huge = std::size_t(2) << 20;
    const bool large = size >= 4 * huge;
    void* p = allocate(size, large ? long(huge) : 64);
    if (p && large) madvise(p, size & ~(huge - 1), MADV_HUGEPAGE);
    return p;
}

bool run_guarded(void (*f)(void*), void* context) {
    guard g;
    g.taken = nullptr;
    g.outer = current;
    if (setjmp(g.at)) {
        // `current` is still &g (thread storage, so well defined after the
        // jump, unlike g's own fields as seen through this frame)
        guard* left = current;
        current = left->outer;
        while (left->taken) deallocate(left->taken->block);
        return false;
    }
    current = &g;
    f(context);
    current = g.outer;
    return true;
}

}  // namespace ork::core

namespace {
std::mutex& process_lock() {
    static std::mutex m;
    return m;
}

}  // namespace

// The kernels' workspace. The matrix-multiply and symmetric drivers do not
// test it, so inside a guarded scope a request that cannot be met leaves the
// scope instead of returning null; outside one (kernels that test, such as
// the tridiagonal solves) null is returned.
ORK_CORE_API void* ork_serv_allocate(size_t size, int alignment) {
    void* p = ork::core::allocate(size, alignment);
    guard* g = current;
    if (!g) return p;
    if (!p) std::longjmp(g->at, 1);
    header* h = header_of(p);
    h->owner = g;
    h->next = g->taken;
    if (g->taken) g->taken->prev = h;
    g->taken = h;
    return p;
}
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
