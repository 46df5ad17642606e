// Internals of libork shared by its source files.
#pragma once

#include <cstddef>
#include <cstdint>
#include <type_traits>

#include "ork/blas_kernels.h"
#include "ork/gemm_kernels.h"
#include "ork/core.h"
#include "ork/service.h"
// Each further area lists its kernels in its own file.
#include "core/kernels_level2.h"
#include "core/kernels_triangular.h"
#include "core/kernels_level3.h"
#include "core/kernels_lapack.h"
#include "core/kernels_trans.h"

#define ORK_CORE_API extern "C" __attribute__((visibility("default")))

namespace ork::core {

// Every kernel libork calls, by its exported name; the pointers come from the
// loaded kernel library with dlsym, so the kernel library's own definition is
// reached even where libork exports the same name.
#define ORK_CORE_KERNELS(X)                                                                   \
    ORK_CORE_KERNELS_BASE(X) ORK_CORE_KERNELS_LEVEL2(X) ORK_CORE_KERNELS_TRIANGULAR(X)       \
    ORK_CORE_KERNELS_LEVEL3(X) ORK_CORE_KERNELS_LAPACK(X) ORK_CORE_KERNELS_TRANS(X)
#define ORK_CORE_KERNELS_BASE(X)                                                              \
    X(dll_cpu_version)                                                                        \
    X(ork_blas_xsaxpy) X(ork_blas_xdaxpy) X(ork_blas_xcaxpy) X(ork_blas_xzaxpy)               \
    X(ork_blas_xscopy) X(ork_blas_xdcopy) X(ork_blas_xccopy) X(ork_blas_xzcopy)               \
    X(ork_blas_xsswap) X(ork_blas_xdswap) X(ork_blas_xcswap) X(ork_blas_xzswap)               \
    X(ork_blas_sscal) X(ork_blas_dscal) X(ork_blas_cscal) X(ork_blas_zscal)                   \
    X(ork_blas_csscal) X(ork_blas_zdscal)                                                     \
    X(ork_blas_xsdot) X(ork_blas_xddot) X(ork_blas_xcdotc) X(ork_blas_cdotu)                  \
    X(ork_blas_zdotc) X(ork_blas_zdotu) X(ork_blas_dsdot) X(ork_blas_sdsdot)                  \
    X(ork_blas_snrm2) X(ork_blas_dnrm2) X(ork_blas_scnrm2) X(ork_blas_dznrm2)                 \
    X(ork_blas_sasum) X(ork_blas_dasum) X(ork_blas_scasum) X(ork_blas_dzasum)                 \
    X(ork_blas_dcabs1)                                                                        \
    X(ork_blas_isamax) X(ork_blas_idamax) X(ork_blas_icamax) X(ork_blas_izamax)               \
    X(ork_blas_isamin) X(ork_blas_idamin) X(ork_blas_icamin) X(ork_blas_izamin)               \
    X(ork_blas_xsrot) X(ork_blas_xdrot) X(ork_blas_xcsrot) X(ork_blas_xzdrot)                 \
    X(ork_blas_xcrot) X(ork_blas_xzrot)                                                       \
    X(ork_blas_srotg) X(ork_blas_drotg) X(ork_blas_crotg) X(ork_blas_zrotg)                   \
    X(ork_blas_srotm) X(ork_blas_drotm) X(ork_blas_srotmg) X(ork_blas_drotmg)                 \
    X(ork_blas_srot2) X(ork_blas_drot2) X(ork_blas_crot2) X(ork_blas_zrot2)                   \
    X(ork_blas_srot3) X(ork_blas_drot3) X(ork_blas_crot3) X(ork_blas_zrot3)                   \
    X(ork_blas_slartv) X(ork_blas_dlartv) X(ork_blas_clartv) X(ork_blas_zlartv)               \
    X(ork_blas_saxpyi) X(ork_blas_daxpyi) X(ork_blas_caxpyi) X(ork_blas_zaxpyi)               \
    X(ork_blas_sdoti) X(ork_blas_ddoti) X(ork_blas_cdotci) X(ork_blas_cdotui)                 \
    X(ork_blas_zdotci) X(ork_blas_zdotui)                                                     \
    X(ork_blas_sgthr) X(ork_blas_dgthr) X(ork_blas_cgthr) X(ork_blas_zgthr)                   \
    X(ork_blas_sgthrz) X(ork_blas_dgthrz) X(ork_blas_cgthrz) X(ork_blas_zgthrz)               \
    X(ork_blas_ssctr) X(ork_blas_dsctr) X(ork_blas_csctr) X(ork_blas_zsctr)                   \
    X(ork_blas_sroti) X(ork_blas_droti)                                                       \
    X(ork_blas_xsgemv) X(ork_blas_xdgemv) X(ork_blas_xcgemv) X(ork_blas_xzgemv)               \
    X(ork_blas_xssyr) X(ork_blas_xdsyr)                                                       \
    X(ork_blas_xsgemm) X(ork_blas_xdgemm) X(ork_blas_xcgemm) X(ork_blas_xzgemm)               \
    X(ork_blas_sgemm_scalm) X(ork_blas_dgemm_scalm) X(ork_blas_cgemm_scalm) X(ork_blas_zgemm_scalm) \
    X(ork_blas_cgemm_zerom) X(ork_blas_zgemm_zerom)                                           \
    X(ork_blas_xsgemm_0) X(ork_blas_xdgemm_0) X(ork_blas_xcgemm_0) X(ork_blas_xzgemm_0)       \
    X(ork_blas_xsgemm_1) X(ork_blas_xdgemm_1) X(ork_blas_xcgemm_1) X(ork_blas_xzgemm_1)       \
    X(ork_blas_xcgemm3m) X(ork_blas_xzgemm3m) X(ork_blas_xdzgemm) X(ork_blas_xscgemm)

struct kernel_table {
#define ORK_KERNEL_POINTER(name) decltype(&::name) name;
    ORK_CORE_KERNELS(ORK_KERNEL_POINTER)
#undef ORK_KERNEL_POINTER
};

// The kernels of the loaded library; loads it at the first call and ends the
// process if it cannot (the reason has been printed by then).
const kernel_table& kernels();

// Processor detection (core/cpu.cpp).
int detected_generation();       // from cpuid, or ORK_CPU_DETECT
int detected_barcelona();

// Memory (core/service.cpp): every allocation of the core layer, kernel
// workspace included, goes through these, so that a test can fail any one.
// Any positive alignment is honoured; zero or negative means none.
void* allocate(std::size_t size, long alignment);
void deallocate(void* p);  // null is ignored

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

// Argument errors (core/errors.cpp): an entry names itself, then reports the
// 1-based position of the first bad argument.
struct entry {
    const char* name;
    explicit entry(const char* routine);
    bool fail(int position) const;  // records, calls the handler, returns false
};

}  // namespace ork::core
