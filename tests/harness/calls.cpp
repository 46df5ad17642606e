// The recording definitions of the call-recording harness (calls.h): one
// per watched routine, each recording its arguments and forwarding to the
// definition it stands in front of (libork's, or the kernel library's own
// for the engine's building blocks, which only the loaded library defines).
#include "calls.h"

#include <dlfcn.h>

#include <atomic>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <mutex>
#include <sstream>

#include "ork/blas.h"
#include "ork/core.h"
#include "ork/gemm_kernels.h"
#include "ork/service.h"

namespace ork_test {
namespace {

std::mutex guard;
std::vector<call> recorded;
std::atomic<bool> active{false};
// Calls made while a forwarded call runs on this thread are the real
// routine's own business, not the watched code's: not recorded.
thread_local int depth = 0;

template <class F> F real_of(const char* name) {
    void* p = dlsym(RTLD_NEXT, name);
    if (!p) p = ork_kernel_symbol(name);
    if (!p) {
        std::fprintf(stderr, "call recording: no definition of %s to forward to\n", name);
        std::abort();
    }
    return reinterpret_cast<F>(p);
}

// Records `c` on entry when watched; marks the thread as inside a
// forwarded call until the scope ends.
struct in_call {
    explicit in_call(call&& c) {
        if (depth++ == 0 && active.load()) {
            std::lock_guard<std::mutex> lock(guard);
            recorded.push_back(std::move(c));
        }
    }
    ~in_call() { --depth; }
    in_call(const in_call&) = delete;
    in_call& operator=(const in_call&) = delete;
};

void scalar(call& c, const float* v) { c.scalars.push_back(*v); }
void scalar(call& c, const double* v) { c.scalars.push_back(*v); }
void scalar(call& c, const ork_complex8* v) { c.scalars.insert(c.scalars.end(), {v->re, v->im}); }
void scalar(call& c, const ork_complex16* v) { c.scalars.insert(c.scalars.end(), {v->re, v->im}); }

// n, (alpha), x, incx (, y, incy): axpy, copy, swap, dot, scal
template <class S>
call level1(const char* name, const ork_int* n, const S* alpha, const void* x, const ork_int* incx,
            const void* y = nullptr, const ork_int* incy = nullptr) {
    call c{name, "", {*n}, {}, {*incx}, {}, {x}};
    if (incy) c.incs.push_back(*incy), c.arrays.push_back(y);
    if (alpha) scalar(c, alpha);
    return c;
}

template <class S>
call gemv(const char* name, const char* trans, const ork_int* m, const ork_int* n, const S* alpha, const void* a,
          const ork_int* lda, const void* x, const ork_int* incx, const S* beta, const void* y, const ork_int* incy) {
    call c{name, {*trans}, {*m, *n}, {*lda}, {*incx, *incy}, {}, {a, x, y}};
    scalar(c, alpha);
    scalar(c, beta);
    return c;
}

template <class S>
call syr(const char* name, const char* uplo, const ork_int* n, const S* alpha, const void* x, const ork_int* incx,
         const void* a, const ork_int* lda) {
    call c{name, {*uplo}, {*n}, {*lda}, {*incx}, {}, {x, a}};
    scalar(c, alpha);
    return c;
}

template <class S>
call pst(const char* name, const char* ta, const char* tb, const ork_int* m, const ork_int* n, const ork_int* k,
         const S* alpha, const void* a, const ork_int* lda, const void* b, const ork_int* ldb, const S* beta,
         const void* cc, const ork_int* ldc) {
    call c{name, {*ta, *tb}, {*m, *n, *k}, {*lda, *ldb, *ldc}, {}, {}, {a, b, cc}};
    scalar(c, alpha);
    scalar(c, beta);
    return c;
}

template <class S>
call scalm(const char* name, const ork_int* m, const ork_int* n, const S* beta, const void* cc, const ork_int* ldc) {
    call c{name, "", {*m, *n}, {*ldc}, {}, {}, {cc}};
    if (beta) scalar(c, beta);
    return c;
}

}  // namespace

recorder::recorder() {
    clear();
    if (active.exchange(true)) {
        std::fprintf(stderr, "call recording: one recorder at a time\n");
        std::abort();
    }
}
recorder::~recorder() { active = false; }

std::vector<call> recorder::calls() const {
    std::lock_guard<std::mutex> lock(guard);
    return recorded;
}
std::vector<call> recorder::calls(const std::string& name) const {
    std::vector<call> r;
    for (call& c : calls())
        if (c.name == name) r.push_back(std::move(c));
    return r;
}
void recorder::clear() {
    std::lock_guard<std::mutex> lock(guard);
    recorded.clear();
}

std::string describe(const call& c) {
    std::ostringstream s;
    auto list = [&](const char* what, const auto& v) {
        if (v.empty()) return;
        s << ' ' << what << '=';
        for (std::size_t i = 0; i < v.size(); ++i) s << (i ? "," : "") << v[i];
    };
    s << c.name;
    if (!c.flags.empty()) s << " flags=" << c.flags;
    list("dims", c.dims);
    list("lds", c.lds);
    list("incs", c.incs);
    list("scalars", c.scalars);
    return s.str();
}

}  // namespace ork_test

using namespace ork_test;

// The real routine of this definition's own name, and the record of the call.
#define OT_ENTER(name, record)                                                      \
    static const auto real = real_of<decltype(&ork_blas_##name)>("ork_blas_" #name); \
    const in_call scope_(record)

// ---- the dispatched entries the kernel library calls back
#define OT_LEVEL1(p, C)                                                                                           \
    extern "C" void ork_blas_##p##axpy(const ork_int* n, const C* alpha, const C* x, const ork_int* incx, C* y,   \
                                       const ork_int* incy) {                                                     \
        OT_ENTER(p##axpy, level1("ork_blas_" #p "axpy", n, alpha, x, incx, y, incy));                              \
        real(n, alpha, x, incx, y, incy);                                                                         \
    }                                                                                                             \
    extern "C" void ork_blas_##p##copy(const ork_int* n, const C* x, const ork_int* incx, C* y, const ork_int* incy) { \
        OT_ENTER(p##copy, level1<C>("ork_blas_" #p "copy", n, nullptr, x, incx, y, incy));                        \
        real(n, x, incx, y, incy);                                                                                \
    }                                                                                                             \
    extern "C" void ork_blas_##p##scal(const ork_int* n, const C* alpha, C* x, const ork_int* incx) {             \
        OT_ENTER(p##scal, level1("ork_blas_" #p "scal", n, alpha, x, incx));                                      \
        real(n, alpha, x, incx);                                                                                  \
    }                                                                                                             \
    extern "C" void ork_blas_##p##gemv(const char* trans, const ork_int* m, const ork_int* n, const C* alpha,     \
                                       const C* a, const ork_int* lda, const C* x, const ork_int* incx,          \
                                       const C* beta, C* y, const ork_int* incy) {                               \
        OT_ENTER(p##gemv, gemv("ork_blas_" #p "gemv", trans, m, n, alpha, a, lda, x, incx, beta, y, incy));       \
        real(trans, m, n, alpha, a, lda, x, incx, beta, y, incy);                                                 \
    }
OT_LEVEL1(s, float)
OT_LEVEL1(d, double)
OT_LEVEL1(c, ork_complex8)
OT_LEVEL1(z, ork_complex16)

#define OT_REAL(p, R)                                                                                             \
    extern "C" R ork_blas_##p##dot(const ork_int* n, const R* x, const ork_int* incx, const R* y,                 \
                                   const ork_int* incy) {                                                         \
        OT_ENTER(p##dot, level1<R>("ork_blas_" #p "dot", n, nullptr, x, incx, y, incy));                          \
        return real(n, x, incx, y, incy);                                                                         \
    }                                                                                                             \
    extern "C" void ork_blas_##p##swap(const ork_int* n, R* x, const ork_int* incx, R* y, const ork_int* incy) {  \
        OT_ENTER(p##swap, level1<R>("ork_blas_" #p "swap", n, nullptr, x, incx, y, incy));                        \
        real(n, x, incx, y, incy);                                                                                \
    }                                                                                                             \
    extern "C" void ork_blas_##p##syr(const char* uplo, const ork_int* n, const R* alpha, const R* x,             \
                                      const ork_int* incx, R* a, const ork_int* lda) {                            \
        OT_ENTER(p##syr, syr("ork_blas_" #p "syr", uplo, n, alpha, x, incx, a, lda));                             \
        real(uplo, n, alpha, x, incx, a, lda);                                                                    \
    }
OT_REAL(s, float)
OT_REAL(d, double)

#define OT_COMPLEX(p, C)                                                                                          \
    extern "C" C ork_blas_##p##dotu(const ork_int* n, const C* x, const ork_int* incx, const C* y,                \
                                    const ork_int* incy) {                                                        \
        OT_ENTER(p##dotu, level1<C>("ork_blas_" #p "dotu", n, nullptr, x, incx, y, incy));                        \
        return real(n, x, incx, y, incy);                                                                         \
    }
OT_COMPLEX(c, ork_complex8)
OT_COMPLEX(z, ork_complex16)

// ---- the engine's building blocks, seen when called by their exported names
#define OT_GEMM_BLOCKS(p, C)                                                                                      \
    extern "C" void ork_blas_##p##gemm_pst(const char* ta, const char* tb, const ork_int* m, const ork_int* n,    \
                                           const ork_int* k, const C* alpha, const C* a, const ork_int* lda,      \
                                           const C* b, const ork_int* ldb, const C* beta, C* c,                   \
                                           const ork_int* ldc) {                                                  \
        OT_ENTER(p##gemm_pst, pst("ork_blas_" #p "gemm_pst", ta, tb, m, n, k, alpha, a, lda, b, ldb, beta, c, ldc)); \
        real(ta, tb, m, n, k, alpha, a, lda, b, ldb, beta, c, ldc);                                               \
    }                                                                                                             \
    extern "C" void ork_blas_##p##gemm_scalm(const ork_int* m, const ork_int* n, const C* beta, C* c,             \
                                             const ork_int* ldc) {                                                \
        OT_ENTER(p##gemm_scalm, scalm("ork_blas_" #p "gemm_scalm", m, n, beta, c, ldc));                          \
        real(m, n, beta, c, ldc);                                                                                 \
    }                                                                                                             \
    extern "C" void ork_blas_##p##gemm_zerom(const ork_int* m, const ork_int* n, C* c, const ork_int* ldc) {      \
        OT_ENTER(p##gemm_zerom, scalm<C>("ork_blas_" #p "gemm_zerom", m, n, nullptr, c, ldc));                    \
        real(m, n, c, ldc);                                                                                       \
    }
OT_GEMM_BLOCKS(s, float)
OT_GEMM_BLOCKS(d, double)
OT_GEMM_BLOCKS(c, ork_complex8)
OT_GEMM_BLOCKS(z, ork_complex16)

// ---- the service allocator: dims = {size, alignment}, arrays = {block}
extern "C" void* ork_serv_allocate(size_t size, int alignment) {
    static const auto real = real_of<decltype(&ork_serv_allocate)>("ork_serv_allocate");
    const bool watched = depth == 0 && active.load();
    ++depth;
    void* p = real(size, alignment);
    --depth;
    if (watched) {
        std::lock_guard<std::mutex> lock(guard);
        recorded.push_back(call{"ork_serv_allocate", "", {(long long)size, alignment}, {}, {}, {}, {p}});
    }
    return p;
}
extern "C" void ork_serv_deallocate(void* p) {
    static const auto real = real_of<decltype(&ork_serv_deallocate)>("ork_serv_deallocate");
    const in_call scope_(call{"ork_serv_deallocate", "", {}, {}, {}, {}, {p}});
    real(p);
}
