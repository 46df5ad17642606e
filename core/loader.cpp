// Finds, loads and binds the kernel library for this processor.
#include <dlfcn.h>
#include <unistd.h>

#include <atomic>
#include <cstdio>
#include <cstdlib>
#include <mutex>
#include <string>
#include <vector>

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

// Prints a numbered message to standard error; the values are passed as they
// are, so that each conversion of the text gets the type it expects.
template <class... V> void report(int number, V... values) {
    std::fprintf(stderr, "%s\n", ork_serv_ork_get_msg(number, int(sizeof...(V)), values...));
}

std::string own_directory() {
    Dl_info info{};
    if (!dladdr(reinterpret_cast<void*>(&ork_init), &info) || !info.dli_fname) return ".";
    std::string self = info.dli_fname;
    auto slash = self.rfind('/');
    return slash == std::string::npos ? "." : self.substr(0, slash);
}

// Opens one library, binds every kernel and checks its generation before any
// kernel is called (dll_cpu_version only returns a constant). A library
// built for more than the processor runs is refused: its first kernel could
// end the process with an illegal instruction.
bool try_load(const std::string& path) {
    void* handle = dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL);
    if (!handle) {
        const char* why = dlerror();
        report(2, path.c_str(), why ? why : "unknown reason");
        return false;
    }
    ork::core::kernel_table table{};
    bool complete = true;
#define ORK_BIND(name)                                                                 \
    table.name = reinterpret_cast<decltype(table.name)>(dlsym(handle, #name));         \
    if (!table.name && complete) {                                                     \
        report(3, path.c_str(), #name); /* the first missing name says enough */       \
        complete = false;                                                              \
    }
    ORK_CORE_KERNELS(ORK_BIND)
#undef ORK_BIND
    const int generation = complete ? table.dll_cpu_version() : -1;
    if (complete && (generation < 0 || generation > ork::core::detected_generation()))
        report(5, path.c_str(), generation, ork_cpu_generation_name(generation));
    else if (complete) {
        state.handle = handle;
        state.path = path;
        state.generation = generation;
        state.table = table;
        return true;
    }
    dlclose(handle);
    return false;
}

// ORK_KERNEL_LIBRARY if it loads; else the best generation the processor
// runs whose library is present next to libork, falling back generation by
// generation to the baseline. Each refusal has printed its reason; when
// nothing loads, the message lists every file tried.
void load() {
    // The kernel library binds its imports (ork_serv_*, the dispatched
    // entries) to libork's definitions; make them visible to it even when
    // libork itself was loaded with RTLD_LOCAL.
    Dl_info self{};
    if (dladdr(reinterpret_cast<void*>(&ork_init), &self) && self.dli_fname)
        dlopen(self.dli_fname, RTLD_NOW | RTLD_GLOBAL | RTLD_NOLOAD);

    std::vector<std::string> tried;
    bool refused = false;  // then say which library serves instead
    const char* requested = std::getenv("ORK_KERNEL_LIBRARY");
    if (requested && *requested) {
        tried.push_back(requested);
        if (try_load(requested)) {
            ork::core::loaded_kernels.store(&state.table, std::memory_order_release);
            return;
        }
        refused = true;
    }
    const std::string dir = own_directory();
    for (int g = ork::core::detected_generation(); g >= 0; --g) {
        const std::string path = dir + "/libork_" + ork_cpu_generation_name(g) + ".so";
        if (!tried.empty() && path == tried.front()) continue;  // the requested one, refused
        tried.push_back(path);
        if (access(path.c_str(), F_OK) != 0) continue;
        if (!try_load(path)) {
            refused = true;
            continue;
        }
        if (refused) report(8, path.c_str());
        ork::core::loaded_kernels.store(&state.table, std::memory_order_release);
        return;
    }
    std::string list;
    for (const auto& p : tried) list += (list.empty() ? "" : ", ") + p;
    report(4, list.c_str());
    state.status = 4;
}

}  // namespace

ORK_CORE_API int ork_init(void) {
    std::call_once(once, load);
    return state.status;
}

namespace ork::core {
std::atomic<const kernel_table*> loaded_kernels{nullptr};

const kernel_table& load_kernels() {
    if (ork_init() != 0) std::abort();
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
