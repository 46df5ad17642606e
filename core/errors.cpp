// Argument errors: the per-thread record and the replaceable handler.
#include <atomic>
#include <cstdint>
#include <cstdio>

#include "core/core.h"

namespace {

void print_error(const char* routine, int position) {
    if (position == ORK_OUT_OF_MEMORY) std::fprintf(stderr, "%s\n", ork_serv_ork_get_msg(9, 1, routine));
    else std::fprintf(stderr, "%s\n", ork_serv_ork_get_msg(1, 2, position, routine));
}

std::atomic<ork_error_handler> handler{print_error};

// Written by every checked entry, so kept in static TLS: the default model
// of a shared library costs a __tls_get_addr call per access.
struct record {
    int position = 0;
    const char* routine = "";
};
__attribute__((tls_model("initial-exec"))) thread_local record last;

// A handler for the calling thread only, tried before the process-wide one:
// an interface layer routes the reports of the calls it makes to its own
// error convention without changing what other callers see.
__attribute__((tls_model("initial-exec"))) thread_local ork_error_handler thread_handler = nullptr;

}  // namespace

namespace ork::core {
entry::entry(const char* routine) : name(routine) { last = record{}; }

bool entry::fail(int position) const {
    last = record{position, name};
    if (auto t = thread_handler) t(name, position);
    else if (auto h = handler.load()) h(name, position);
    return false;
}

bool entry::out_of_memory() const { return fail(ORK_OUT_OF_MEMORY); }

bool addressable(std::size_t element_bytes, std::initializer_list<reach> dims) {
    const u128 limit = u128(PTRDIFF_MAX) / element_bytes;  // elements a byte offset can reach
    u128 last = 0;
    for (const reach& d : dims) {
        if (d.count == 0) return true;
        // each term and the running sum stay below 2^64 * 2^64 only while
        // checked against the limit one at a time
        if (d.step != 0 && d.count - 1 > limit / d.step) return false;
        last += (d.count - 1) * d.step;
        if (last >= limit) return false;
    }
    return true;
}
}  // namespace ork::core

ORK_CORE_API ork_error_handler ork_set_error_handler(ork_error_handler h) { return handler.exchange(h); }
ORK_CORE_API ork_error_handler ork_set_thread_error_handler(ork_error_handler h) {
    ork_error_handler old = thread_handler;
    thread_handler = h;
    return old;
}
ORK_CORE_API int ork_last_error(void) { return last.position; }
ORK_CORE_API const char* ork_last_error_routine(void) { return last.routine; }
