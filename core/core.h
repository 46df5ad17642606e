// Internals of libork shared by its source files.
#pragma once

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <type_traits>

#include "ork/blas_kernels.h"
#include "ork/gemm_kernels.h"
#include "ork/core.h"
#include "ork/service.h"
// Each further area lists its kernels in its own file.
#include "core/kernels_level1.h"
#include "core/kernels_level2.h"
#include "core/kernels_triangular.h"
#include "core/kernels_level3.h"
#include "core/kernels_gemm.h"
#include "core/kernels_gemm_family.h"
#include "core/kernels_lapack.h"
#include "core/kernels_trans.h"

#define ORK_CORE_API extern "C" __attribute__((visibility("default")))

namespace ork::core {

// Every kernel libork calls, by its exported name; the pointers come from the
// loaded kernel library with dlsym, so the kernel library's own definition is
// reached even where libork exports the same name.
#define ORK_CORE_KERNELS(X)                                                                   \
    ORK_CORE_KERNELS_BASE(X) ORK_CORE_KERNELS_LEVEL1(X) ORK_CORE_KERNELS_LEVEL2(X)           \
    ORK_CORE_KERNELS_TRIANGULAR(X) ORK_CORE_KERNELS_LEVEL3(X) ORK_CORE_KERNELS_GEMM(X)       \
    ORK_CORE_KERNELS_GEMM_FAMILY(X) ORK_CORE_KERNELS_LAPACK(X) ORK_CORE_KERNELS_TRANS(X)
#define ORK_CORE_KERNELS_BASE(X) X(dll_cpu_version)

struct kernel_table {
#define ORK_KERNEL_POINTER(name) decltype(&::name) name;
    ORK_CORE_KERNELS(ORK_KERNEL_POINTER)
#undef ORK_KERNEL_POINTER
};

// The kernels of the loaded library; loads it at the first call and ends the
// process if it cannot (the reason has been printed by then). Once loaded,
// the table is reached inline: a level-1 call in cache takes under 100 ns.
extern std::atomic<const kernel_table*> loaded_kernels;
const kernel_table& load_kernels();
inline const kernel_table& kernels() {
    if (const kernel_table* t = loaded_kernels.load(std::memory_order_acquire)) return *t;
    return load_kernels();
}

// Processor detection (core/cpu.cpp).
int detected_generation();       // from cpuid, or ORK_CPU_DETECT
int detected_barcelona();

// Threads (core/threads.cpp): the count one call may use, the most any
// setting gives, and how long an idle thread spins before it sleeps.
int max_threads();
int thread_limit();
long long idle_spin_ns();

// The pool (core/pool.cpp): runs f(ctx, p) for every p in [0, pieces), the
// calling thread taking pieces beside at most threads - 1 helper threads.
// Which thread runs a piece is left to chance; the pieces, and so the
// results, are the caller's. The calling thread runs them all, in order,
// when threads < 2, inside an application's OpenMP parallel region, inside
// a piece of another call, or while the pool serves another caller.
void run_pieces(int threads, int pieces, void (*f)(void*, int), void* ctx);

template <class F>
void parallel_for(int threads, int pieces, F&& f) {
    if (threads < 2 || pieces < 2) {
        for (int p = 0; p < pieces; ++p) f(p);
        return;
    }
    using G = std::remove_reference_t<F>;
    run_pieces(threads, pieces, [](void* g, int p) { (*static_cast<G*>(g))(p); },
               const_cast<void*>(static_cast<const void*>(&f)));
}

// Logical elements [i0, i0 + len) of the vector (n, x, inc) form the vector
// (len, sub(...), inc) under the same increment convention: the piece of a
// strided vector that a thread split hands to one kernel call.
template <class T>
T* sub(T* x, ork_int n, ork_int inc, ork_int i0, ork_int len) {
    return inc >= 0 ? x + i0 * inc : x + (n - i0 - len) * -inc;
}

// Argument errors (core/errors.cpp): an entry names itself, then reports the
// 1-based position of the first bad argument.
struct entry {
    const char* name;
    explicit entry(const char* routine);
    bool fail(int position) const;  // records, calls the handler, returns false
    bool out_of_memory() const;     // the same with ORK_OUT_OF_MEMORY
};

// The body of an entry that splits nothing: its kernel on the whole problem,
// in the caller's thread.
template <class K, class... A> void whole(const entry&, K kernel, A... args) { kernel(args...); }

// Address arithmetic (core/errors.cpp). An array reaches, from its first
// element, sum of (count - 1) * step elements over its dimensions, each step
// taken by magnitude; it is addressable when that many elements, plus one,
// fit in a byte offset (PTRDIFF_MAX), so that no index or pointer computed
// inside it wraps. A dimension of count 0 makes the array empty (true).
using u128 = unsigned __int128;
struct reach {
    u128 count, step;
};
bool addressable(std::size_t element_bytes, std::initializer_list<reach> dims);
inline u128 magnitude(ork_int v) { return v < 0 ? u128(-(v + 1)) + 1 : u128(v); }
// Sizes, steps and leading dimensions of magnitude below 2^28 reach fewer
// than 2^57 elements of at most 32 bytes, far inside a byte offset: the
// common shapes below answer at once for them, since the exact test's 128-bit
// divisions cost as much as a short level-1 call.
inline bool small_shape(ork_int a, ork_int b) {
    constexpr ork_int limit = ork_int(1) << 28;
    return a > -limit && a < limit && b > -limit && b < limit;
}
// The common shapes: an m x n matrix at leading dimension ld, a vector of n
// elements at increment inc (either sign).
template <class T> bool matrix_fits(ork_int m, ork_int n, ork_int ld) {
    if (sizeof(T) <= 32 && small_shape(m, n) && small_shape(ld, 0)) return true;
    return addressable(sizeof(T), {{magnitude(m), 1}, {magnitude(n), magnitude(ld)}});
}
inline bool vector_fits_bytes(std::size_t element_bytes, ork_int n, ork_int inc) {
    if (element_bytes <= 32 && small_shape(n, inc)) return true;
    return addressable(element_bytes, {{magnitude(n), magnitude(inc)}});
}
template <class T> bool vector_fits(ork_int n, ork_int inc) { return vector_fits_bytes(sizeof(T), n, inc); }
// a packed triangle of order n: n(n+1)/2 elements
template <class T> bool packed_fits(ork_int n) {
    if (sizeof(T) <= 32 && small_shape(n, 0)) return true;
    const u128 m = magnitude(n);
    return addressable(sizeof(T), {{m * (m + 1) / 2, 1}});
}

// Memory (core/service.cpp): every allocation of the core layer, kernel
// workspace included, goes through these, so that a test can fail any one.
// Any positive alignment is honoured; zero or negative means none.
void* allocate(std::size_t size, long alignment);
void deallocate(void* p);  // null is ignored
// The same for a large block that the caller fills whole at once (a copy,
// a buffer): on large pages where the system grants them.
void* allocate_filled(std::size_t size);

// The kernels' workspace requests (ork_serv_allocate) made while f runs on
// the calling thread are guarded: when one cannot be had, f is left at once
// (the kernels test none of them) and everything the kernels took in it is
// freed. Answers whether f ran to its end. What f wrote before that stays
// written: a caller arranges that nothing was, or keeps a copy (kept below).
// f must own nothing that needs destroying.
bool run_guarded(void (*f)(void*), void* context);
template <class F> bool guarded(F&& f) {
    return run_guarded([](void* c) { (*static_cast<std::remove_reference_t<F>*>(c))(); }, &f);
}

// The kernel calls of one entry whose kernels write its output (the m x n
// matrix at c, leading dimension ld) before or between their workspace
// requests: a copy of the output is taken first, each kernel call runs
// guarded (from any thread), and when one could not get its workspace the
// output is put back and the entry reports running out of memory. ok() is
// false when the copy itself could not be had (nothing written yet).
template <class T> class undoable {
  public:
    // `triangle` 'L' or 'U': only that triangle of a square output is
    // written, and only it is kept (packed, half the memory to take and copy).
    undoable(const T* c, ork_int m, ork_int n, ork_int ld, char triangle = 0)
        : c_(const_cast<T*>(c)), m_(m), n_(n), ld_(ld), triangle_(triangle) {
        const std::size_t e = triangle ? std::size_t(n) * std::size_t(n + 1) / 2 : std::size_t(m) * std::size_t(n);
        if (m > 0 && n > 0) copy_ = static_cast<T*>(allocate_filled(e * sizeof(T)));
        move(true);
    }
    undoable(const undoable&) = delete;
    undoable& operator=(const undoable&) = delete;
    ~undoable() { deallocate(copy_); }
    bool ok() const { return copy_ || m_ <= 0 || n_ <= 0; }
    template <class F> void run(F&& f) {
        if (short_.load(std::memory_order_relaxed)) return;  // to be undone anyway
        if (!guarded(f)) short_.store(true, std::memory_order_relaxed);
    }
    // After the last call: true when all ran; else the output is restored
    // and the report made.
    bool finish(const entry& e) {
        if (!short_.load()) return true;
        move(false);
        return e.out_of_memory();
    }

  private:
    void move(bool out) const {
        T* y = copy_;
        for (ork_int j = 0; j < n_ && copy_; ++j) {
            const ork_int i0 = triangle_ == 'L' ? j : 0, i1 = triangle_ == 'U' ? j + 1 : m_;
            T* x = c_ + j * ld_;
            for (ork_int i = i0; i < i1; ++i, ++y) {
                if (out) *y = x[i];
                else x[i] = *y;
            }
        }
    }
    T* c_;
    T* copy_ = nullptr;
    ork_int m_, n_, ld_;
    char triangle_;
    std::atomic<bool> short_{false};
};

// Threads (core/threads.cpp).
int max_threads();

}  // namespace ork::core
