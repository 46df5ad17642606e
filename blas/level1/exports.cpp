// Export table of the level-1 kernels. Each line is one C-linkage function
// that unwraps its by-address arguments and forwards to a template; the macros
// only paste names.
#include "blas/level1/level1.h"
#include "frame/export.h"

using namespace ork;

// The element types by their BLAS letter.
#define ORK_FOR_SDCZ(X) X(s, float) X(d, double) X(c, ork_complex8) X(z, ork_complex16)
#define ORK_FOR_SD(X) X(s, float) X(d, double)
#define ORK_FOR_CZ(X) X(c, ork_complex8, float) X(z, ork_complex16, double)

// ---- x family: axpy, copy, swap, sdot/ddot/cdotc, rot
#define ORK_AXPY(p, C) \
    ORK_API void ork_blas_x##p##axpy(const ork_int* n, const C* alpha, const C* x, const ork_int* incx, C* y, const ork_int* incy) { blas::axpy(*n, *as_elem(alpha), as_elem(x), *incx, as_elem(y), *incy); }
#define ORK_COPY(p, C) \
    ORK_API void ork_blas_x##p##copy(const ork_int* n, const C* x, const ork_int* incx, C* y, const ork_int* incy) { blas::copy(*n, as_elem(x), *incx, as_elem(y), *incy); }
#define ORK_SWAP(p, C) \
    ORK_API void ork_blas_x##p##swap(const ork_int* n, C* x, const ork_int* incx, C* y, const ork_int* incy) { blas::swap(*n, as_elem(x), *incx, as_elem(y), *incy); }
ORK_FOR_SDCZ(ORK_AXPY)
ORK_FOR_SDCZ(ORK_COPY)
ORK_FOR_SDCZ(ORK_SWAP)

// name, element C type, conjugate x
#define ORK_DOT(name, C, conj) \
    ORK_API C ork_blas_##name(const ork_int* n, const C* x, const ork_int* incx, const C* y, const ork_int* incy) { return to_c(blas::dot<elem_t<C>, conj>(*n, as_elem(x), *incx, as_elem(y), *incy)); }
ORK_DOT(xsdot, float, false)
ORK_DOT(xddot, double, false)
ORK_DOT(xcdotc, ork_complex8, true)
ORK_DOT(cdotu, ork_complex8, false)
ORK_DOT(zdotc, ork_complex16, true)
ORK_DOT(zdotu, ork_complex16, false)

ORK_API double ork_blas_dsdot(const ork_int* n, const float* x, const ork_int* incx, const float* y, const ork_int* incy) { return blas::dot_widened(*n, x, *incx, y, *incy, 0.0); }
ORK_API float ork_blas_sdsdot(const ork_int* n, const float* sb, const float* x, const ork_int* incx, const float* y, const ork_int* incy) { return float(blas::dot_widened(*n, x, *incx, y, *incy, double(*sb))); }

// name, vector C type, c type, s C type
#define ORK_ROT(name, C, R, S) \
    ORK_API void ork_blas_##name(const ork_int* n, C* x, const ork_int* incx, C* y, const ork_int* incy, const R* c, const S* s) { blas::rot(*n, as_elem(x), *incx, as_elem(y), *incy, *c, *as_elem(s)); }
ORK_ROT(xsrot, float, float, float)
ORK_ROT(xdrot, double, double, double)
ORK_ROT(xcsrot, ork_complex8, float, float)
ORK_ROT(xzdrot, ork_complex16, double, double)
ORK_ROT(xcrot, ork_complex8, float, ork_complex8)
ORK_ROT(xzrot, ork_complex16, double, ork_complex16)

// ---- scal: name, vector C type, alpha C type
#define ORK_SCAL(name, C, A) \
    ORK_API void ork_blas_##name(const ork_int* n, const A* alpha, C* x, const ork_int* incx) { blas::scal(*n, *as_elem(alpha), as_elem(x), *incx); }
ORK_SCAL(sscal, float, float)
ORK_SCAL(dscal, double, double)
ORK_SCAL(cscal, ork_complex8, ork_complex8)
ORK_SCAL(zscal, ork_complex16, ork_complex16)
ORK_SCAL(csscal, ork_complex8, float)
ORK_SCAL(zdscal, ork_complex16, double)

// ---- reductions: name, result C type, vector C type, template
#define ORK_REDUCE(name, R, C, fn) \
    ORK_API R ork_blas_##name(const ork_int* n, const C* x, const ork_int* incx) { return fn(*n, as_elem(x), *incx); }
ORK_REDUCE(snrm2, float, float, blas::nrm2)
ORK_REDUCE(dnrm2, double, double, blas::nrm2)
ORK_REDUCE(scnrm2, float, ork_complex8, blas::nrm2)
ORK_REDUCE(dznrm2, double, ork_complex16, blas::nrm2)
ORK_REDUCE(sasum, float, float, blas::asum)
ORK_REDUCE(dasum, double, double, blas::asum)
ORK_REDUCE(scasum, float, ork_complex8, blas::asum)
ORK_REDUCE(dzasum, double, ork_complex16, blas::asum)
#define ORK_IAMAX(p, C) \
    ORK_REDUCE(i##p##amax, ork_int, C, (blas::iamax<elem_t<C>, true>)) \
    ORK_REDUCE(i##p##amin, ork_int, C, (blas::iamax<elem_t<C>, false>))
ORK_FOR_SDCZ(ORK_IAMAX)

ORK_API double ork_blas_dcabs1(const ork_complex16* z) { return abs1(*as_elem(z)); }

// ---- rotation generators and modified rotations
#define ORK_ROTG_REAL(p, R) \
    ORK_API void ork_blas_##p##rotg(R* a, R* b, R* c, R* s) { blas::rotg(a, b, c, s); } \
    ORK_API void ork_blas_##p##rotm(const ork_int* n, R* x, const ork_int* incx, R* y, const ork_int* incy, const R* param) { blas::rotm(*n, x, *incx, y, *incy, param); } \
    ORK_API void ork_blas_##p##rotmg(R* d1, R* d2, R* x1, const R* y1, R* param) { blas::rotmg(d1, d2, x1, *y1, param); } \
    ORK_API void ork_blas_##p##roti(const ork_int* nz, R* x, const ork_int* indx, R* y, const R* c, const R* s) { blas::roti(*nz, x, indx, y, *c, *s); }
ORK_FOR_SD(ORK_ROTG_REAL)
#define ORK_ROTG_CPLX(p, C, R) \
    ORK_API void ork_blas_##p##rotg(C* a, const C* b, R* c, C* s) { blas::rotg(as_elem(a), as_elem(b), c, as_elem(s)); }
ORK_FOR_CZ(ORK_ROTG_CPLX)

// ---- reflectors across vectors, vectors of rotations
#define ORK_ROT23(p, C) \
    ORK_API void ork_blas_##p##rot2(const ork_int* n, C* x, C* y, const C* v, const C* tau) { blas::rot2(*n, as_elem(x), as_elem(y), *as_elem(v), *as_elem(tau)); } \
    ORK_API void ork_blas_##p##rot3(const ork_int* n, C* x, C* y, C* z, const C* v, const C* w, const C* tau) { blas::rot3(*n, as_elem(x), as_elem(y), as_elem(z), *as_elem(v), *as_elem(w), *as_elem(tau)); } \
    ORK_API void ork_blas_##p##lartv(const ork_int* n, C* x, const ork_int* incx, C* y, const ork_int* incy, const real_t<elem_t<C>>* c, const C* s, const ork_int* incc) { blas::lartv(*n, as_elem(x), *incx, as_elem(y), *incy, c, as_elem(s), *incc); }
ORK_FOR_SDCZ(ORK_ROT23)

// ---- sparse level 1
#define ORK_SPARSE1(p, C) \
    ORK_API void ork_blas_##p##axpyi(const ork_int* nz, const C* alpha, const C* x, const ork_int* indx, C* y) { blas::axpyi(*nz, *as_elem(alpha), as_elem(x), indx, as_elem(y)); } \
    ORK_API void ork_blas_##p##gthr(const ork_int* nz, const C* y, C* x, const ork_int* indx) { blas::gthr(*nz, as_elem(y), as_elem(x), indx); } \
    ORK_API void ork_blas_##p##gthrz(const ork_int* nz, C* y, C* x, const ork_int* indx) { blas::gthrz(*nz, as_elem(y), as_elem(x), indx); } \
    ORK_API void ork_blas_##p##sctr(const ork_int* nz, const C* x, const ork_int* indx, C* y) { blas::sctr(*nz, as_elem(x), indx, as_elem(y)); }
ORK_FOR_SDCZ(ORK_SPARSE1)
#define ORK_DOTI(name, C, conj) \
    ORK_API C ork_blas_##name(const ork_int* nz, const C* x, const ork_int* indx, const C* y) { return to_c(blas::doti<elem_t<C>, conj>(*nz, as_elem(x), indx, as_elem(y))); }
ORK_DOTI(sdoti, float, false)
ORK_DOTI(ddoti, double, false)
ORK_DOTI(cdotci, ork_complex8, true)
ORK_DOTI(cdotui, ork_complex8, false)
ORK_DOTI(zdotci, ork_complex16, true)
ORK_DOTI(zdotui, ork_complex16, false)

