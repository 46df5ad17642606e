// Debian's OpenBLAS, loaded at run time as the peer the benchmarks measure
// ork against, through its Fortran entries (32-bit integers by address), and
// the context both programs print.
#pragma once

#include <benchmark/benchmark.h>
#include <dlfcn.h>

#include <cstdio>
#include <cstdlib>
#include <chrono>
#include <string>
#include <thread>

#include "ork/ork.h"

namespace ork_bench {

struct openblas_peer {
    using threads_fn = void (*)(int);
    using text_fn = char* (*)();

    void* handle = nullptr;
    threads_fn set_num_threads = nullptr;
    text_fn get_config = nullptr;    // optional
    text_fn get_corename = nullptr;  // optional
    std::string path;
    std::string why_not;  // empty when loaded

    template <class F>
    bool bind(const char* name, F& f) {
        f = reinterpret_cast<F>(dlsym(handle, name));
        return f != nullptr;
    }

    // Opens the file ORK_BENCH_OPENBLAS names if it is set, else the Debian
    // pthread build, else libopenblas.so.0 on the loader's path; then
    // bind_routines(*this) binds what the benchmark needs and answers
    // whether it found all of it. Without the library, handle stays null and
    // why_not says why.
    template <class Self, class B>
    void open(Self& self, B bind_routines) {
        std::string candidates[2];
        int count = 0;
        if (const char* env = std::getenv("ORK_BENCH_OPENBLAS"); env && *env) {
            candidates[count++] = env;  // that file and no other
        } else {
            candidates[count++] = "/usr/lib/x86_64-linux-gnu/openblas-pthread/libopenblas.so.0";
            candidates[count++] = "libopenblas.so.0";
        }
        for (int i = 0; i < count && !handle; ++i) {
            // RTLD_LOCAL: its Fortran names stay out of the global scope.
            if ((handle = dlopen(candidates[i].c_str(), RTLD_NOW | RTLD_LOCAL))) path = candidates[i];
            else why_not = dlerror();
        }
        if (!handle) return;
        if (!bind_routines(self) || !bind("openblas_set_num_threads", set_num_threads)) {
            why_not = path + " lacks a needed symbol";
            dlclose(handle);
            handle = nullptr;
            return;
        }
        bind("openblas_get_config", get_config);
        bind("openblas_get_corename", get_corename);
        why_not.clear();
    }

    // What was loaded, in the benchmark's context; `program` names the
    // benchmark in the message that says the peer is missing.
    void describe(const char* program) const {
        if (handle) {
            benchmark::AddCustomContext("openblas", path);
            if (get_config) benchmark::AddCustomContext("openblas_config", get_config());
            if (get_corename) benchmark::AddCustomContext("openblas_core", get_corename());
        } else {
            std::fprintf(stderr, "%s: OpenBLAS not loaded (%s); its benchmarks are skipped\n", program,
                         why_not.c_str());
            benchmark::AddCustomContext("openblas", "not loaded: " + why_not);
        }
    }
};

enum class lib { ork, openblas };

// Thread pools: a pool that spins after its last parallel call takes a core
// from whatever runs next, and there are only two here. After a
// multithreaded benchmark, the next one with another library or thread count
// waits for it to go idle (call this outside the timed loop).
inline void use_threads(const openblas_peer& peer, lib l, int threads) {
    static bool first = true;
    static lib last_lib = lib::ork;
    static int last_threads = 1;
    if (!first && last_threads > 1 && (last_lib != l || last_threads != threads))
        std::this_thread::sleep_for(std::chrono::milliseconds(300));
    first = false;
    last_lib = l;
    last_threads = threads;
    if (l == lib::ork) ork_set_num_threads(threads);
    else peer.set_num_threads(threads);
}

// ork's side of the context: version, kernel library and generations.
inline void describe_ork() {
    benchmark::AddCustomContext("ork", ork_version());
    benchmark::AddCustomContext("ork_kernel_library", ork_kernel_library_path());
    benchmark::AddCustomContext("ork_kernel_generation", ork_cpu_generation_name(ork_kernel_generation()));
    benchmark::AddCustomContext("cpu_generation", ork_cpu_generation_name(ork_cpu_generation()));
}

// The start of every benchmark program: Google Benchmark's flags, ork
// loaded and described. False when the program should stop (exit 1).
inline bool start(int* argc, char** argv) {
    benchmark::Initialize(argc, argv);
    if (benchmark::ReportUnrecognizedArguments(*argc, argv) || ork_init() != 0) return false;
    describe_ork();
    return true;
}

}  // namespace ork_bench
