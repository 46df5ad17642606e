// Export table of the level-2 products and updates (the triangular ones have
// their own). Each line is one C-linkage function that unwraps its by-address
// arguments and forwards to a template; the macros only paste names.
#include "blas/level2/products.h"
#include "blas/level2/updates.h"
#include "frame/export.h"
#include "ork/blas_level2.h"
#include "ork/level2_kernels.h"

using namespace ork;
using blas::band;
using blas::dense;
using blas::packed;

namespace {
bool is_upper(const char* uplo) { return flag(uplo) == 'U'; }
}  // namespace

// Element types by their BLAS letter; the real type beside the complex ones.
#define ORK_L2_SDCZ(X) X(s, float) X(d, double) X(c, ork_complex8) X(z, ork_complex16)
#define ORK_L2_SD(X) X(s, float) X(d, double)
#define ORK_L2_CZ(X) X(c, ork_complex8, float) X(z, ork_complex16, double)

// The shared tail of the products' arguments, declared and unwrapped.
#define ORK_L2_MV_TAIL(C) const C* x, const ork_int* incx, const C* beta, C* y, const ork_int* incy
#define ORK_L2_MV_ARGS(C) as_elem(x), *incx, *as_elem(beta), as_elem(y), *incy

// ---- general products
#define ORK_GEMV(p, C) \
    ORK_API void ork_blas_x##p##gemv(const char* trans, const ork_int* m, const ork_int* n, const C* alpha, const C* a, const ork_int* lda, ORK_L2_MV_TAIL(C)) { blas::gemv(flag(trans), *m, *n, *as_elem(alpha), as_elem(a), *lda, ORK_L2_MV_ARGS(C)); } \
    ORK_API void ork_blas_##p##gbmv(const char* trans, const ork_int* m, const ork_int* n, const ork_int* kl, const ork_int* ku, const C* alpha, const C* a, const ork_int* lda, ORK_L2_MV_TAIL(C)) { blas::gbmv(flag(trans), *m, *n, *kl, *ku, *as_elem(alpha), as_elem(a), *lda, ORK_L2_MV_ARGS(C)); }
ORK_L2_SDCZ(ORK_GEMV)

// ---- symmetric and Hermitian products: name, element C type, Hermitian
#define ORK_SYMV(name, C, herm) \
    ORK_API void ork_blas_##name(const char* uplo, const ork_int* n, const C* alpha, const C* a, const ork_int* lda, ORK_L2_MV_TAIL(C)) { blas::symmetric_mv<elem_t<C>, herm>(is_upper(uplo), *n, *as_elem(alpha), dense<const elem_t<C>>{as_elem(a), *lda, *n}, ORK_L2_MV_ARGS(C)); }
#define ORK_SBMV(name, C, herm) \
    ORK_API void ork_blas_##name(const char* uplo, const ork_int* n, const ork_int* k, const C* alpha, const C* a, const ork_int* lda, ORK_L2_MV_TAIL(C)) { blas::symmetric_mv<elem_t<C>, herm>(is_upper(uplo), *n, *as_elem(alpha), band<const elem_t<C>>{as_elem(a), *lda, *k}, ORK_L2_MV_ARGS(C)); }
#define ORK_SPMV(name, C, herm) \
    ORK_API void ork_blas_##name(const char* uplo, const ork_int* n, const C* alpha, const C* ap, ORK_L2_MV_TAIL(C)) { blas::symmetric_mv<elem_t<C>, herm>(is_upper(uplo), *n, *as_elem(alpha), packed<const elem_t<C>>{as_elem(ap), *n, *n}, ORK_L2_MV_ARGS(C)); }
ORK_SYMV(xssymv, float, false)
ORK_SYMV(xdsymv, double, false)
ORK_SBMV(ssbmv, float, false)
ORK_SBMV(dsbmv, double, false)
ORK_SPMV(sspmv, float, false)
ORK_SPMV(dspmv, double, false)
#define ORK_HERM_PRODUCTS(p, C, R) ORK_SYMV(p##hemv, C, true) ORK_SBMV(p##hbmv, C, true) ORK_SPMV(p##hpmv, C, true)
ORK_L2_CZ(ORK_HERM_PRODUCTS)

// ---- general updates: name, element C type, conjugate y
#define ORK_GER(name, C, cj) \
    ORK_API void ork_blas_##name(const ork_int* m, const ork_int* n, const C* alpha, const C* x, const ork_int* incx, const C* y, const ork_int* incy, C* a, const ork_int* lda) { blas::ger<elem_t<C>, cj>(*m, *n, *as_elem(alpha), as_elem(x), *incx, as_elem(y), *incy, as_elem(a), *lda); }
ORK_GER(sger, float, false)
ORK_GER(dger, double, false)
ORK_GER(cgeru, ork_complex8, false)
ORK_GER(zgeru, ork_complex16, false)
ORK_GER(cgerc, ork_complex8, true)
ORK_GER(zgerc, ork_complex16, true)

// ---- symmetric and Hermitian updates over the columns [j0, j1):
// name, element C type, [alpha C type,] Hermitian
#define ORK_L2_UPDATE1(E, herm, st, j0, j1) blas::symmetric_update<E, herm, false>(is_upper(uplo), *n, *as_elem(alpha), as_elem(x), *incx, static_cast<const E*>(nullptr), 0, st, j0, j1)
#define ORK_L2_UPDATE2(E, herm, st, j0, j1) blas::symmetric_update<E, herm, true>(is_upper(uplo), *n, *as_elem(alpha), as_elem(x), *incx, as_elem(y), *incy, st, j0, j1)
#define ORK_SYR(name, C, A, herm) \
    ORK_API void ork_blas_##name(const char* uplo, const ork_int* n, const A* alpha, const C* x, const ork_int* incx, C* a, const ork_int* lda) { ORK_L2_UPDATE1(elem_t<C>, herm, (dense<elem_t<C>>{as_elem(a), *lda, *n}), 0, *n); }
#define ORK_SPR(name, C, A, herm) \
    ORK_API void ork_blas_##name(const char* uplo, const ork_int* n, const A* alpha, const C* x, const ork_int* incx, C* ap) { ORK_L2_UPDATE1(elem_t<C>, herm, (packed<elem_t<C>>{as_elem(ap), *n, *n}), 0, *n); }
#define ORK_SYR2(name, C, herm) \
    ORK_API void ork_blas_##name(const char* uplo, const ork_int* n, const C* alpha, const C* x, const ork_int* incx, const C* y, const ork_int* incy, C* a, const ork_int* lda) { ORK_L2_UPDATE2(elem_t<C>, herm, (dense<elem_t<C>>{as_elem(a), *lda, *n}), 0, *n); }
#define ORK_SPR2(name, C, herm) \
    ORK_API void ork_blas_##name(const char* uplo, const ork_int* n, const C* alpha, const C* x, const ork_int* incx, const C* y, const ork_int* incy, C* ap) { ORK_L2_UPDATE2(elem_t<C>, herm, (packed<elem_t<C>>{as_elem(ap), *n, *n}), 0, *n); }
// the pieces: columns first..last, 1-based and inclusive
#define ORK_SYR_PIECE(name, R) \
    ORK_API void ork_blas_##name(const char* uplo, const ork_int* n, const R* alpha, const R* x, const ork_int* incx, R* a, const ork_int* lda, const ork_int* first, const ork_int* last) { ORK_L2_UPDATE1(R, false, (dense<R>{a, *lda, *n}), *first - 1, *last); }
#define ORK_SYR2_PIECE(name, R) \
    ORK_API void ork_blas_##name(const char* uplo, const ork_int* n, const R* alpha, const R* x, const ork_int* incx, const R* y, const ork_int* incy, R* a, const ork_int* lda, const ork_int* first, const ork_int* last) { ORK_L2_UPDATE2(R, false, (dense<R>{a, *lda, *n}), *first - 1, *last); }

#define ORK_REAL_UPDATES(p, R) \
    ORK_SYR(x##p##syr, R, R, false) ORK_SPR(p##spr, R, R, false) ORK_SYR2(x##p##syr2, R, false) ORK_SPR2(p##spr2, R, false) \
    ORK_SYR_PIECE(x##p##syr_in_thread, R) ORK_SYR2_PIECE(x##p##syr2_in_thread, R)
ORK_L2_SD(ORK_REAL_UPDATES)
#define ORK_HERM_UPDATES(p, C, R) \
    ORK_SYR(p##her, C, R, true) ORK_SPR(p##hpr, C, R, true) ORK_SYR2(p##her2, C, true) ORK_SPR2(p##hpr2, C, true)
ORK_L2_CZ(ORK_HERM_UPDATES)
