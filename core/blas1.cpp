// libork's level-1 BLAS entries: argument checks, then the kernel of the
// loaded library, split over threads when the vectors are long.
#include <initializer_list>
#include <type_traits>

#include "core/core.h"

using ork::core::entry;
using ork::core::kernel_table;
using idx = ork_int;

namespace {

const kernel_table& K() { return ork::core::kernels(); }

// ---- argument checks: the arguments in call order, each either present or
// not needed (a vector when n <= 0); the first missing one is reported.
struct arg {
    const void* p;
    bool needed = true;
};
bool present(const entry& e, std::initializer_list<arg> args) {
    int position = 1;
    for (const arg& a : args) {
        if (a.needed && !a.p) return e.fail(position);
        ++position;
    }
    return true;
}

// The vectors (element size, increment, the increment's position) of n
// elements are addressable; the first that is not is reported.
struct strided {
    std::size_t bytes;
    const idx* inc;
    int position;
};
bool reachable(const entry& e, idx n, std::initializer_list<strided> vectors) {
    for (const strided& v : vectors)
        if (!ork::core::vector_fits_bytes(v.bytes, n, *v.inc)) return e.fail(v.position);
    return true;
}
template <class T> strided vec(const idx* inc, int position) { return {sizeof(T), inc, position}; }

// ---- splitting. Logical elements [i0, i0 + len) of (n, x, inc) form the
// vector (len, sub(...), inc) under the same increment convention.
template <class T>
T* sub(T* x, idx n, idx inc, idx i0, idx len) {
    return inc >= 0 ? x + i0 * inc : x + (n - i0 - len) * -inc;
}

// Below this many elements per thread a parallel region costs more than it
// saves (level 1 runs at memory speed: 64K doubles stream in ~10 us).
constexpr idx per_thread_min = 1 << 16;

int threads_for(idx work, idx per_thread = per_thread_min) {
    idx k = work / per_thread;
    int t = ork::core::max_threads();
    return k < 1 ? 1 : (k < t ? int(k) : t);
}

// f(i0, len) on consecutive pieces [i0, i0 + len), one per thread.
template <class F>
void pieces(idx n, int t, F f) {
    if (t <= 1) return f(idx(0), n);
    ork::core::parallel_for(t, t, [&](int k) {
        idx i0 = n * k / t;
        f(i0, n * (k + 1) / t - i0);
    });
}

// Reductions over long vectors are summed in fixed blocks whose partial
// results are added in block order, so the value depends on n alone, never
// on the number of threads.
constexpr idx reduce_block = 1 << 16;

template <class R> R add(R a, R b) {
    if constexpr (std::is_arithmetic_v<R>) return a + b;
    else return R{a.re + b.re, a.im + b.im};
}

template <class R, class F>
R blockwise(idx n, F partial) {
    if (n < 2 * reduce_block) return partial(idx(0), n);
    const idx blocks = (n + reduce_block - 1) / reduce_block;
    auto block = [&](idx b) {
        const idx i0 = b * reduce_block;
        return partial(i0, n - i0 < reduce_block ? n - i0 : reduce_block);
    };
    // Without room for the partial results, one thread adds each to the sum
    // as it is made: the same additions in the same order.
    R* parts = static_cast<R*>(ork::core::allocate(std::size_t(blocks) * sizeof(R), 64));
    if (!parts) {
        R s = block(0);
        for (idx b = 1; b < blocks; ++b) s = add(s, block(b));
        return s;
    }
    const int t = threads_for(n);
    ork::core::parallel_for(t, t, [&](int k) {  // a run of whole blocks each
        for (idx b = blocks * k / t; b < blocks * (k + 1) / t; ++b) parts[b] = block(b);
    });
    R s = parts[0];
    for (idx b = 1; b < blocks; ++b) s = add(s, parts[b]);
    ork::core::deallocate(parts);
    return s;
}

// ---- entry shapes; Kf is the kernel_table member to call

// (n, alpha, x, incx, y, incy): y := alpha*x + y
template <auto Kf, class C>
void axpy(const char* name, const idx* n, const C* alpha, const C* x, const idx* incx, C* y, const idx* incy) {
    entry e(name);
    if (!n) return (void)e.fail(1);
    const bool v = *n > 0;
    if (!present(e, {{n}, {alpha}, {x, v}, {incx}, {y, v}, {incy}}) || !v) return;
    if (!reachable(e, *n, {vec<C>(incx, 4), vec<C>(incy, 6)})) return;
    const idx N = *n, ix = *incx, iy = *incy;
    pieces(N, iy != 0 ? threads_for(N) : 1, [&](idx i0, idx len) {
        (K().*Kf)(&len, alpha, sub(x, N, ix, i0, len), &ix, sub(y, N, iy, i0, len), &iy);
    });
}

// (n, x, incx, y, incy, extra...): copy, swap, rot, rotm; elementwise.
template <auto Kf, class X, class Y, class... S>
void pair(const char* name, bool x_written, const idx* n, X* x, const idx* incx, Y* y, const idx* incy,
          const S*... extra) {
    entry e(name);
    if (!n) return (void)e.fail(1);
    const bool v = *n > 0;
    if (!present(e, {{n}, {x, v}, {incx}, {y, v}, {incy}, {extra}...}) || !v) return;
    if (!reachable(e, *n, {vec<X>(incx, 3), vec<Y>(incy, 5)})) return;
    const idx N = *n, ix = *incx, iy = *incy;
    const bool split = iy != 0 && (!x_written || ix != 0);
    pieces(N, split ? threads_for(N) : 1, [&](idx i0, idx len) {
        (K().*Kf)(&len, sub(x, N, ix, i0, len), &ix, sub(y, N, iy, i0, len), &iy, extra...);
    });
}

// (n, alpha, x, incx): x := alpha*x
template <auto Kf, class A, class C>
void scal(const char* name, const idx* n, const A* alpha, C* x, const idx* incx) {
    entry e(name);
    if (!n) return (void)e.fail(1);
    const bool v = *n > 0;
    if (!present(e, {{n}, {alpha}, {x, v}, {incx}}) || !v) return;
    if (!reachable(e, *n, {vec<C>(incx, 4)})) return;
    const idx N = *n, ix = *incx;
    pieces(N, ix != 0 ? threads_for(N) : 1, [&](idx i0, idx len) {
        (K().*Kf)(&len, alpha, sub(x, N, ix, i0, len), &ix);
    });
}

// (n, x, incx, y, incy) -> R: the dot products
template <auto Kf, class R, class C>
R dot(const char* name, const idx* n, const C* x, const idx* incx, const C* y, const idx* incy) {
    entry e(name);
    if (!n) return (e.fail(1), R{});
    const bool v = *n > 0;
    if (!present(e, {{n}, {x, v}, {incx}, {y, v}, {incy}}) || !v) return R{};
    if (!reachable(e, *n, {vec<C>(incx, 3), vec<C>(incy, 5)})) return R{};
    const idx N = *n, ix = *incx, iy = *incy;
    return blockwise<R>(N, [&](idx i0, idx len) {
        return (K().*Kf)(&len, sub(x, N, ix, i0, len), &ix, sub(y, N, iy, i0, len), &iy);
    });
}

// (n, x, incx) -> R computed whole by the kernel: nrm2 (whose order of
// operations is fixed), i?amax, i?amin.
template <auto Kf, class R, class C>
R whole(const char* name, const idx* n, const C* x, const idx* incx) {
    entry e(name);
    if (!n) return (e.fail(1), R{});
    if (!present(e, {{n}, {x, *n > 0}, {incx}}) || *n <= 0) return R{};
    if (!reachable(e, *n, {vec<C>(incx, 3)})) return R{};
    return (K().*Kf)(n, x, incx);
}

// (n, x, incx) -> R summed forward from x[0] by |incx| in blocks: asum
template <auto Kf, class R, class C>
R asum(const char* name, const idx* n, const C* x, const idx* incx) {
    entry e(name);
    if (!n) return (e.fail(1), R{});
    if (!present(e, {{n}, {x, *n > 0}, {incx}}) || *n <= 0) return R{};
    if (!reachable(e, *n, {vec<C>(incx, 3)})) return R{};
    const idx step = *incx < 0 ? -*incx : *incx;
    return blockwise<R>(*n, [&](idx i0, idx len) { return (K().*Kf)(&len, x + i0 * step, &step); });
}

// Everything else runs whole: checks that each pointer is there (vectors
// only when the count before them is positive), then the kernel.
template <auto Kf, class... A>
auto direct(const char* name, std::initializer_list<arg> args, A... a) {
    entry e(name);
    using R = decltype((K().*Kf)(a...));
    if (!present(e, args)) return R();
    return (K().*Kf)(a...);
}

}  // namespace

#define KF(name) &kernel_table::ork_blas_##name
#define NAME(name) "ork_blas_" #name

// ---- the entries, one line each: which shape, which kernel
#define ORK_VEC_ENTRIES(p, C)                                                                                   \
    ORK_CORE_API void ork_blas_##p##axpy(const idx* n, const C* alpha, const C* x, const idx* incx, C* y, const idx* incy) { axpy<KF(x##p##axpy)>(NAME(p##axpy), n, alpha, x, incx, y, incy); } \
    ORK_CORE_API void ork_blas_##p##copy(const idx* n, const C* x, const idx* incx, C* y, const idx* incy) { pair<KF(x##p##copy)>(NAME(p##copy), false, n, x, incx, y, incy); } \
    ORK_CORE_API void ork_blas_##p##swap(const idx* n, C* x, const idx* incx, C* y, const idx* incy) { pair<KF(x##p##swap)>(NAME(p##swap), true, n, x, incx, y, incy); } \
    ORK_CORE_API void ork_blas_##p##scal(const idx* n, const C* alpha, C* x, const idx* incx) { scal<KF(p##scal)>(NAME(p##scal), n, alpha, x, incx); } \
    ORK_CORE_API idx ork_blas_i##p##amax(const idx* n, const C* x, const idx* incx) { return whole<KF(i##p##amax), idx>(NAME(i##p##amax), n, x, incx); } \
    ORK_CORE_API idx ork_blas_i##p##amin(const idx* n, const C* x, const idx* incx) { return whole<KF(i##p##amin), idx>(NAME(i##p##amin), n, x, incx); } \
    ORK_CORE_API void ork_blas_##p##rot2(const idx* n, C* x, C* y, const C* v, const C* tau) { direct<KF(p##rot2)>(NAME(p##rot2), {{n}, {x, n && *n > 0}, {y, n && *n > 0}, {v}, {tau}}, n, x, y, v, tau); } \
    ORK_CORE_API void ork_blas_##p##rot3(const idx* n, C* x, C* y, C* z, const C* v, const C* w, const C* tau) { direct<KF(p##rot3)>(NAME(p##rot3), {{n}, {x, n && *n > 0}, {y, n && *n > 0}, {z, n && *n > 0}, {v}, {w}, {tau}}, n, x, y, z, v, w, tau); } \
    ORK_CORE_API void ork_blas_##p##axpyi(const idx* nz, const C* alpha, const C* x, const idx* indx, C* y) { direct<KF(p##axpyi)>(NAME(p##axpyi), {{nz}, {alpha}, {x, nz && *nz > 0}, {indx, nz && *nz > 0}, {y, nz && *nz > 0}}, nz, alpha, x, indx, y); } \
    ORK_CORE_API void ork_blas_##p##gthr(const idx* nz, const C* y, C* x, const idx* indx) { direct<KF(p##gthr)>(NAME(p##gthr), {{nz}, {y, nz && *nz > 0}, {x, nz && *nz > 0}, {indx, nz && *nz > 0}}, nz, y, x, indx); } \
    ORK_CORE_API void ork_blas_##p##gthrz(const idx* nz, C* y, C* x, const idx* indx) { direct<KF(p##gthrz)>(NAME(p##gthrz), {{nz}, {y, nz && *nz > 0}, {x, nz && *nz > 0}, {indx, nz && *nz > 0}}, nz, y, x, indx); } \
    ORK_CORE_API void ork_blas_##p##sctr(const idx* nz, const C* x, const idx* indx, C* y) { direct<KF(p##sctr)>(NAME(p##sctr), {{nz}, {x, nz && *nz > 0}, {indx, nz && *nz > 0}, {y, nz && *nz > 0}}, nz, x, indx, y); }
ORK_VEC_ENTRIES(s, float)
ORK_VEC_ENTRIES(d, double)
ORK_VEC_ENTRIES(c, ork_complex8)
ORK_VEC_ENTRIES(z, ork_complex16)

#define ORK_LARTV_ENTRY(p, C, R) \
    ORK_CORE_API void ork_blas_##p##lartv(const idx* n, C* x, const idx* incx, C* y, const idx* incy, const R* c, const C* s, const idx* incc) { const bool v = n && *n > 0; direct<KF(p##lartv)>(NAME(p##lartv), {{n}, {x, v}, {incx}, {y, v}, {incy}, {c, v}, {s, v}, {incc}}, n, x, incx, y, incy, c, s, incc); }
ORK_LARTV_ENTRY(s, float, float)
ORK_LARTV_ENTRY(d, double, double)
ORK_LARTV_ENTRY(c, ork_complex8, float)
ORK_LARTV_ENTRY(z, ork_complex16, double)

// complex-by-real scaling
ORK_CORE_API void ork_blas_csscal(const idx* n, const float* alpha, ork_complex8* x, const idx* incx) { scal<KF(csscal)>(NAME(csscal), n, alpha, x, incx); }
ORK_CORE_API void ork_blas_zdscal(const idx* n, const double* alpha, ork_complex16* x, const idx* incx) { scal<KF(zdscal)>(NAME(zdscal), n, alpha, x, incx); }

// dot products
ORK_CORE_API float ork_blas_sdot(const idx* n, const float* x, const idx* incx, const float* y, const idx* incy) { return dot<KF(xsdot), float>(NAME(sdot), n, x, incx, y, incy); }
ORK_CORE_API double ork_blas_ddot(const idx* n, const double* x, const idx* incx, const double* y, const idx* incy) { return dot<KF(xddot), double>(NAME(ddot), n, x, incx, y, incy); }
ORK_CORE_API ork_complex8 ork_blas_cdotc(const idx* n, const ork_complex8* x, const idx* incx, const ork_complex8* y, const idx* incy) { return dot<KF(xcdotc), ork_complex8>(NAME(cdotc), n, x, incx, y, incy); }
ORK_CORE_API ork_complex8 ork_blas_cdotu(const idx* n, const ork_complex8* x, const idx* incx, const ork_complex8* y, const idx* incy) { return dot<KF(cdotu), ork_complex8>(NAME(cdotu), n, x, incx, y, incy); }
ORK_CORE_API ork_complex16 ork_blas_zdotc(const idx* n, const ork_complex16* x, const idx* incx, const ork_complex16* y, const idx* incy) { return dot<KF(zdotc), ork_complex16>(NAME(zdotc), n, x, incx, y, incy); }
ORK_CORE_API ork_complex16 ork_blas_zdotu(const idx* n, const ork_complex16* x, const idx* incx, const ork_complex16* y, const idx* incy) { return dot<KF(zdotu), ork_complex16>(NAME(zdotu), n, x, incx, y, incy); }
ORK_CORE_API double ork_blas_dsdot(const idx* n, const float* x, const idx* incx, const float* y, const idx* incy) { return dot<KF(dsdot), double>(NAME(dsdot), n, x, incx, y, incy); }
// sdsdot: the double partial sums of dsdot added to sb in order, rounded once
ORK_CORE_API float ork_blas_sdsdot(const idx* n, const float* sb, const float* x, const idx* incx, const float* y, const idx* incy) {
    entry e(NAME(sdsdot));
    if (!n) return (e.fail(1), 0.0f);
    const bool v = *n > 0;
    if (!present(e, {{n}, {sb}, {x, v}, {incx}, {y, v}, {incy}})) return 0.0f;
    if (v && !reachable(e, *n, {vec<float>(incx, 4), vec<float>(incy, 6)})) return 0.0f;
    if (*n < 2 * reduce_block) return K().ork_blas_sdsdot(n, sb, x, incx, y, incy);
    const idx N = *n, ix = *incx, iy = *incy;
    double s = blockwise<double>(N, [&](idx i0, idx len) {
        return K().ork_blas_dsdot(&len, sub(x, N, ix, i0, len), &ix, sub(y, N, iy, i0, len), &iy);
    });
    return float(double(*sb) + s);
}

// norms, sums
ORK_CORE_API float ork_blas_snrm2(const idx* n, const float* x, const idx* incx) { return whole<KF(snrm2), float>(NAME(snrm2), n, x, incx); }
ORK_CORE_API double ork_blas_dnrm2(const idx* n, const double* x, const idx* incx) { return whole<KF(dnrm2), double>(NAME(dnrm2), n, x, incx); }
ORK_CORE_API float ork_blas_scnrm2(const idx* n, const ork_complex8* x, const idx* incx) { return whole<KF(scnrm2), float>(NAME(scnrm2), n, x, incx); }
ORK_CORE_API double ork_blas_dznrm2(const idx* n, const ork_complex16* x, const idx* incx) { return whole<KF(dznrm2), double>(NAME(dznrm2), n, x, incx); }
ORK_CORE_API float ork_blas_sasum(const idx* n, const float* x, const idx* incx) { return asum<KF(sasum), float>(NAME(sasum), n, x, incx); }
ORK_CORE_API double ork_blas_dasum(const idx* n, const double* x, const idx* incx) { return asum<KF(dasum), double>(NAME(dasum), n, x, incx); }
ORK_CORE_API float ork_blas_scasum(const idx* n, const ork_complex8* x, const idx* incx) { return asum<KF(scasum), float>(NAME(scasum), n, x, incx); }
ORK_CORE_API double ork_blas_dzasum(const idx* n, const ork_complex16* x, const idx* incx) { return asum<KF(dzasum), double>(NAME(dzasum), n, x, incx); }
ORK_CORE_API double ork_blas_dcabs1(const ork_complex16* z) { return direct<KF(dcabs1)>(NAME(dcabs1), {{z}}, z); }

// rotations
ORK_CORE_API void ork_blas_srot(const idx* n, float* x, const idx* incx, float* y, const idx* incy, const float* c, const float* s) { pair<KF(xsrot)>(NAME(srot), true, n, x, incx, y, incy, c, s); }
ORK_CORE_API void ork_blas_drot(const idx* n, double* x, const idx* incx, double* y, const idx* incy, const double* c, const double* s) { pair<KF(xdrot)>(NAME(drot), true, n, x, incx, y, incy, c, s); }
ORK_CORE_API void ork_blas_csrot(const idx* n, ork_complex8* x, const idx* incx, ork_complex8* y, const idx* incy, const float* c, const float* s) { pair<KF(xcsrot)>(NAME(csrot), true, n, x, incx, y, incy, c, s); }
ORK_CORE_API void ork_blas_zdrot(const idx* n, ork_complex16* x, const idx* incx, ork_complex16* y, const idx* incy, const double* c, const double* s) { pair<KF(xzdrot)>(NAME(zdrot), true, n, x, incx, y, incy, c, s); }
ORK_CORE_API void ork_blas_crot(const idx* n, ork_complex8* x, const idx* incx, ork_complex8* y, const idx* incy, const float* c, const ork_complex8* s) { pair<KF(xcrot)>(NAME(crot), true, n, x, incx, y, incy, c, s); }
ORK_CORE_API void ork_blas_zrot(const idx* n, ork_complex16* x, const idx* incx, ork_complex16* y, const idx* incy, const double* c, const ork_complex16* s) { pair<KF(xzrot)>(NAME(zrot), true, n, x, incx, y, incy, c, s); }
ORK_CORE_API void ork_blas_srotm(const idx* n, float* x, const idx* incx, float* y, const idx* incy, const float* param) { pair<KF(srotm)>(NAME(srotm), true, n, x, incx, y, incy, param); }
ORK_CORE_API void ork_blas_drotm(const idx* n, double* x, const idx* incx, double* y, const idx* incy, const double* param) { pair<KF(drotm)>(NAME(drotm), true, n, x, incx, y, incy, param); }
ORK_CORE_API void ork_blas_srotg(float* a, float* b, float* c, float* s) { direct<KF(srotg)>(NAME(srotg), {{a}, {b}, {c}, {s}}, a, b, c, s); }
ORK_CORE_API void ork_blas_drotg(double* a, double* b, double* c, double* s) { direct<KF(drotg)>(NAME(drotg), {{a}, {b}, {c}, {s}}, a, b, c, s); }
ORK_CORE_API void ork_blas_crotg(ork_complex8* a, const ork_complex8* b, float* c, ork_complex8* s) { direct<KF(crotg)>(NAME(crotg), {{a}, {b}, {c}, {s}}, a, b, c, s); }
ORK_CORE_API void ork_blas_zrotg(ork_complex16* a, const ork_complex16* b, double* c, ork_complex16* s) { direct<KF(zrotg)>(NAME(zrotg), {{a}, {b}, {c}, {s}}, a, b, c, s); }
ORK_CORE_API void ork_blas_srotmg(float* d1, float* d2, float* x1, const float* y1, float* param) { direct<KF(srotmg)>(NAME(srotmg), {{d1}, {d2}, {x1}, {y1}, {param}}, d1, d2, x1, y1, param); }
ORK_CORE_API void ork_blas_drotmg(double* d1, double* d2, double* x1, const double* y1, double* param) { direct<KF(drotmg)>(NAME(drotmg), {{d1}, {d2}, {x1}, {y1}, {param}}, d1, d2, x1, y1, param); }
ORK_CORE_API void ork_blas_sroti(const idx* nz, float* x, const idx* indx, float* y, const float* c, const float* s) { const bool v = nz && *nz > 0; direct<KF(sroti)>(NAME(sroti), {{nz}, {x, v}, {indx, v}, {y, v}, {c}, {s}}, nz, x, indx, y, c, s); }
ORK_CORE_API void ork_blas_droti(const idx* nz, double* x, const idx* indx, double* y, const double* c, const double* s) { const bool v = nz && *nz > 0; direct<KF(droti)>(NAME(droti), {{nz}, {x, v}, {indx, v}, {y, v}, {c}, {s}}, nz, x, indx, y, c, s); }

// sparse dot products
#define ORK_DOTI_ENTRY(name, C) \
    ORK_CORE_API C ork_blas_##name(const idx* nz, const C* x, const idx* indx, const C* y) { const bool v = nz && *nz > 0; return direct<KF(name)>(NAME(name), {{nz}, {x, v}, {indx, v}, {y, v}}, nz, x, indx, y); }
ORK_DOTI_ENTRY(sdoti, float)
ORK_DOTI_ENTRY(ddoti, double)
ORK_DOTI_ENTRY(cdotci, ork_complex8)
ORK_DOTI_ENTRY(cdotui, ork_complex8)
ORK_DOTI_ENTRY(zdotci, ork_complex16)
ORK_DOTI_ENTRY(zdotui, ork_complex16)

