// Finds, loads and binds the kernel library for this processor.
#include <dlfcn.h>
#include <unistd.h>

#include <atomic>
#include <cstdio>
#include <cstdlib>
#include <mutex>
#include <string>

#include "core/core.h"

namespace {

struct loaded {
    void* handle = nullptr;
    std::string path;
    int generation = -1;
    int status = 0;  // 0, or the number of the message that says why not
    ork::core::kernel_table table{};
};

loaded state;
std::once_flag once;
std::atomic<bool> ready{false};

void report(int number, const std::string& a, const std::string& b = {}) {
    std::fprintf(stderr, "%s\n", b.empty() ? ork_serv_ork_get_msg(number, 1, a.c_str())
                                           : ork_serv_ork_get_msg(number, 2, a.c_str(), b.c_str()));
}

std::string own_directory() {
    Dl_info info{};
    if (!dladdr(reinterpret_cast<void*>(&ork_init), &info) || !info.dli_fname) return ".";
    std::string self = info.dli_fname;
    auto slash = self.rfind('/');
    return slash == std::string::npos ? "." : self.substr(0, slash);
}

// The best generation this processor runs whose library is present,
// falling back generation by generation to the baseline.
std::string choose_library() {
    if (const char* env = std::getenv("ORK_KERNEL_LIBRARY"); env && *env) return env;
    const std::string dir = own_directory();
    for (int g = ork::core::detected_generation(); g >= 0; --g) {
        std::string p = dir + "/libork_" + ork_cpu_generation_name(g) + ".so";
        if (access(p.c_str(), R_OK) == 0) return p;
    }
    report(4, dir);
    return {};
}

void load() {
    // The kernel library binds its imports (ork_serv_*, the dispatched
    // entries) to libork's definitions; make them visible to it even when
    // libork itself was loaded with RTLD_LOCAL.
    Dl_info self{};
    if (dladdr(reinterpret_cast<void*>(&ork_init), &self) && self.dli_fname)
        dlopen(self.dli_fname, RTLD_NOW | RTLD_GLOBAL | RTLD_NOLOAD);

    state.path = choose_library();
    if (state.path.empty()) {
        state.status = 4;
        return;
    }
    state.handle = dlopen(state.path.c_str(), RTLD_NOW | RTLD_LOCAL);
    if (!state.handle) {
        const char* why = dlerror();
        report(2, state.path, why ? why : "unknown reason");
        state.status = 2;
        return;
    }
    bool complete = true;
#define ORK_BIND(name)                                                                      \
    state.table.name = reinterpret_cast<decltype(state.table.name)>(dlsym(state.handle, #name)); \
    if (!state.table.name) {                                                                \
        report(3, state.path, #name);                                                       \
        complete = false;                                                                   \
    }
    ORK_CORE_KERNELS(ORK_BIND)
#undef ORK_BIND
    if (!complete) {
        state.status = 3;
        return;
    }
    state.generation = state.table.dll_cpu_version();
    if (state.generation > ork::core::detected_generation()) {
        report(5, state.path, std::to_string(state.generation));
        state.status = 5;
        return;
    }
    ready.store(true, std::memory_order_release);
}

}  // namespace

ORK_CORE_API int ork_init(void) {
    std::call_once(once, load);
    return state.status;
}

namespace ork::core {
const kernel_table& kernels() {
    if (!ready.load(std::memory_order_acquire) && ork_init() != 0) std::abort();
    return state.table;
}
}  // namespace ork::core

ORK_CORE_API int ork_kernel_generation(void) {
    return ork_init() == 0 ? state.generation : -1;
}

ORK_CORE_API const char* ork_kernel_library_path(void) {
    ork_init();
    return state.path.c_str();
}

ORK_CORE_API void* ork_kernel_symbol(const char* name) {
    return ork_init() == 0 ? dlsym(state.handle, name) : nullptr;
}
