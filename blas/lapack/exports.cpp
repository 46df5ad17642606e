// Export table of the small LAPACK-level kernels: one line per name, each
// unwrapping its by-address arguments and forwarding to a template.
#include "blas/lapack/factor.h"
#include "blas/lapack/larfx.h"
#include "blas/lapack/lasr.h"
#include "blas/lapack/tridiagonal.h"
#include "frame/export.h"
#include "frame/vector.h"
#include "ork/lapack_kernels.h"

using namespace ork;
using lapack::pivot;

namespace {

// The rotation-sequence kernels of one element type, by side, pivot and
// direction, for the dispatcher.
template <class T>
using lasr_fn = void (*)(idx, idx, const real_t<T>*, const real_t<T>*, T*, idx);

template <class T, bool Left>
lasr_fn<T> lasr_pick(char pv, bool forward) {
    using namespace lapack;
    switch (pv) {
    case 'V': return forward ? lasr<T, Left, pivot::variable, true> : lasr<T, Left, pivot::variable, false>;
    case 'T': return forward ? lasr<T, Left, pivot::top, true> : lasr<T, Left, pivot::top, false>;
    case 'B': return forward ? lasr<T, Left, pivot::bottom, true> : lasr<T, Left, pivot::bottom, false>;
    default: return nullptr;
    }
}

// Flags other than L/R, V/T/B and F/B select nothing.
template <class T>
void lasr_dispatch(const char* side, const char* pv, const char* direct, idx m, idx n, const real_t<T>* c,
                   const real_t<T>* s, T* a, idx lda) {
    const char sd = flag(side), dr = flag(direct);
    if ((sd != 'L' && sd != 'R') || (dr != 'F' && dr != 'B')) return;
    lasr_fn<T> f = sd == 'L' ? lasr_pick<T, true>(flag(pv), dr == 'F') : lasr_pick<T, false>(flag(pv), dr == 'F');
    if (f) f(m, n, c, s, a, lda);
}

}  // namespace

// ---- factorisations and the general tridiagonal solve
#define ORK_LAPACK_SOLVERS(p, C)                                                                                \
    ORK_API void ork_blas_##p##potrf_l_small(const ork_int* n, C* a, const ork_int* lda, ork_int* info) { *info = lapack::potrf_l(*n, as_elem(a), *lda); } \
    ORK_API void ork_blas_##p##sytrf_l_small(const ork_int* n, C* a, const ork_int* lda, ork_int* ipiv, ork_int* info) { *info = lapack::sytrf_l(*n, as_elem(a), *lda, ipiv); } \
    ORK_API void ork_blas_##p##gtsv_small(const ork_int* n, const ork_int* nrhs, C* dl, C* d, C* du, C* b, const ork_int* ldb, ork_int* info) { *info = lapack::gtsv(*n, *nrhs, as_elem(dl), as_elem(d), as_elem(du), as_elem(b), *ldb); }

// ---- reflector and rotation sequences; R is the real type of c and s
#define ORK_LAPACK_TRANSFORMS(p, C, R)                                                                          \
    ORK_API void ork_blas_##p##larfx(const char* side, const ork_int* m, const ork_int* n, const C* v, const C* tau, C* c, const ork_int* ldc, C* work) { lapack::larfx(flag(side) == 'L', *m, *n, as_elem(v), *as_elem(tau), as_elem(c), *ldc, as_elem(work)); } \
    ORK_API void ork_blas_##p##lasr(const char* side, const char* pivot, const char* direct, const ork_int* m, const ork_int* n, const R* c, const R* s, C* a, const ork_int* lda) { lasr_dispatch(side, pivot, direct, *m, *n, c, s, as_elem(a), *lda); } \
    ORK_LASR(p, C, R, l, true, v, variable, f, true) ORK_LASR(p, C, R, l, true, v, variable, b, false)        \
    ORK_LASR(p, C, R, l, true, t, top, f, true) ORK_LASR(p, C, R, l, true, t, top, b, false)                  \
    ORK_LASR(p, C, R, l, true, b, bottom, f, true) ORK_LASR(p, C, R, l, true, b, bottom, b, false)            \
    ORK_LASR(p, C, R, r, false, v, variable, f, true) ORK_LASR(p, C, R, r, false, v, variable, b, false)      \
    ORK_LASR(p, C, R, r, false, t, top, f, true) ORK_LASR(p, C, R, r, false, t, top, b, false)                \
    ORK_LASR(p, C, R, r, false, b, bottom, f, true) ORK_LASR(p, C, R, r, false, b, bottom, b, false)
#define ORK_LASR(p, C, R, sl, left, pl, pv, dl, fwd) \
    ORK_API void ork_blas_##p##lasr_##sl##pl##dl(const ork_int* m, const ork_int* n, const R* c, const R* s, C* a, const ork_int* lda) { lapack::lasr<elem_t<C>, left, pivot::pv, fwd>(*m, *n, c, s, as_elem(a), *lda); }

#define ORK_LAPACK_ALL(p, C, R) ORK_LAPACK_SOLVERS(p, C) ORK_LAPACK_TRANSFORMS(p, C, R)
ORK_LAPACK_ALL(s, float, float)
ORK_LAPACK_ALL(d, double, double)
ORK_LAPACK_ALL(c, ork_complex8, float)
ORK_LAPACK_ALL(z, ork_complex16, double)

// ---- factored positive definite tridiagonal solves: the real forms are
// L*D*L^T; the complex ones U^H*D*U for iuplo = 1, else L*D*L^H.
#define ORK_PTTS2_REAL(p, R) \
    ORK_API void ork_blas_##p##ptts2(const ork_int* n, const ork_int* nrhs, const R* d, const R* e, R* b, const ork_int* ldb) { lapack::ptts2<R, false>(*n, *nrhs, d, e, b, *ldb); }
#define ORK_PTTS2_CPLX(p, C, R) \
    ORK_API void ork_blas_##p##ptts2(const ork_int* iuplo, const ork_int* n, const ork_int* nrhs, const R* d, const C* e, C* b, const ork_int* ldb) { \
        if (*iuplo == 1) lapack::ptts2<elem_t<C>, true>(*n, *nrhs, d, as_elem(e), as_elem(b), *ldb); \
        else lapack::ptts2<elem_t<C>, false>(*n, *nrhs, d, as_elem(e), as_elem(b), *ldb); }
ORK_PTTS2_REAL(s, float)
ORK_PTTS2_REAL(d, double)
ORK_PTTS2_CPLX(c, ork_complex8, float)
ORK_PTTS2_CPLX(z, ork_complex16, double)
