// The lp64_ wrappers: 32-bit integers are sign-extended into 64-bit
// temporaries and the routine of the same name without lp64_ is called
// through its dynamic symbol, so that libork's dispatched entry is reached
// where it has one (axpy, copy, dot) and this library's kernel otherwise.
#include "frame/export.h"

#define ORK_LP64_AXPY(p, C) \
    ORK_API void ork_blas_lp64_##p##axpy(const ork_int32* n, const C* alpha, const C* x, const ork_int32* incx, C* y, const ork_int32* incy) { ork_int n64 = *n, ix = *incx, iy = *incy; ork_blas_##p##axpy(&n64, alpha, x, &ix, y, &iy); }
#define ORK_LP64_COPY(p, C) \
    ORK_API void ork_blas_lp64_##p##copy(const ork_int32* n, const C* x, const ork_int32* incx, C* y, const ork_int32* incy) { ork_int n64 = *n, ix = *incx, iy = *incy; ork_blas_##p##copy(&n64, x, &ix, y, &iy); }
#define ORK_LP64_SCAL(p, C) \
    ORK_API void ork_blas_lp64_##p##scal(const ork_int32* n, const C* alpha, C* x, const ork_int32* incx) { ork_int n64 = *n, ix = *incx; ork_blas_##p##scal(&n64, alpha, x, &ix); }
#define ORK_LP64_DOT(name, C) \
    ORK_API C ork_blas_lp64_##name(const ork_int32* n, const C* x, const ork_int32* incx, const C* y, const ork_int32* incy) { ork_int n64 = *n, ix = *incx, iy = *incy; return ork_blas_##name(&n64, x, &ix, y, &iy); }

#define ORK_LP64_TYPES(X) X(s, float) X(d, double) X(c, ork_complex8) X(z, ork_complex16)
ORK_LP64_TYPES(ORK_LP64_AXPY)
ORK_LP64_TYPES(ORK_LP64_COPY)
ORK_LP64_TYPES(ORK_LP64_SCAL)
ORK_LP64_DOT(sdot, float)
ORK_LP64_DOT(ddot, double)
ORK_LP64_DOT(cdotu, ork_complex8)
ORK_LP64_DOT(zdotu, ork_complex16)
