// libork's entries of the small LAPACK-level routines: the LAPACK argument
// checks (a bad argument is reported by its position and, where the routine
// has an info argument, also returned there negated), then the kernel of the
// loaded library. Solves with many right-hand sides, rotation sequences and
// reflectors on large matrices are split over threads into pieces of
// whole columns or rows, which the kernels treat independently, so the
// result is the same bits whatever the number of threads.
#include <type_traits>

#include "core/core.h"

using ork::core::entry;
using ork::core::kernel_table;
using idx = ork_int;

namespace {

const kernel_table& K() { return ork::core::kernels(); }

// Reports position `pos` through the entry and, when there is one, info.
struct checker {
    entry e;
    idx* info;
    bool fail(int pos) const {
        if (info) *info = -pos;
        return e.fail(pos);
    }
};

idx at_least_1(idx v) { return v > 1 ? v : 1; }

bool letter_in(const char* f, const char* allowed) {
    for (; *allowed; ++allowed)
        if (ork_serv_lsame(f, allowed, 1, 1)) return true;
    return false;
}

// Below this many element operations a second thread costs more than it saves.
constexpr double split_min_work = 1 << 18;

// f(i0, len) over [0, extent) in one piece per thread, or whole.
template <class F>
void split(idx extent, double work, F f) {
    int t = ork::core::max_threads();
    if (idx(t) > extent) t = int(extent);
    if (t < 2 || work < split_min_work) return f(idx(0), extent);
    ork::core::parallel_for(t, t, [&](int k) {
        const idx i0 = extent * k / t;
        f(i0, extent * (k + 1) / t - i0);
    });
}

// ---- factorisations and the general tridiagonal solve: whole, in the caller's thread

template <auto Kf, class C>
void potrf(const char* name, const idx* n, C* a, const idx* lda, idx* info) {
    const checker ck{entry(name), info};
    if (!n || *n < 0) return (void)ck.fail(1);
    if (!a && *n > 0) return (void)ck.fail(2);
    if (!lda || *lda < at_least_1(*n)) return (void)ck.fail(3);
    if (!info) return (void)ck.fail(4);
    if (!ork::core::matrix_fits<C>(*n, *n, *lda)) return (void)ck.fail(3);
    *info = 0;
    if (*n > 0) (K().*Kf)(n, a, lda, info);
}

template <auto Kf, class C>
void sytrf(const char* name, const idx* n, C* a, const idx* lda, idx* ipiv, idx* info) {
    const checker ck{entry(name), info};
    if (!n || *n < 0) return (void)ck.fail(1);
    if (!a && *n > 0) return (void)ck.fail(2);
    if (!lda || *lda < at_least_1(*n)) return (void)ck.fail(3);
    if (!ipiv && *n > 0) return (void)ck.fail(4);
    if (!info) return (void)ck.fail(5);
    if (!ork::core::matrix_fits<C>(*n, *n, *lda)) return (void)ck.fail(3);
    *info = 0;
    if (*n > 0) (K().*Kf)(n, a, lda, ipiv, info);
}

template <auto Kf, class C>
void gtsv(const char* name, const idx* n, const idx* nrhs, C* dl, C* d, C* du, C* b, const idx* ldb, idx* info) {
    const checker ck{entry(name), info};
    if (!n || *n < 0) return (void)ck.fail(1);
    if (!nrhs || *nrhs < 0) return (void)ck.fail(2);
    const idx N = *n;
    if (!dl && N > 1) return (void)ck.fail(3);
    if (!d && N > 0) return (void)ck.fail(4);
    if (!du && N > 1) return (void)ck.fail(5);
    if (!b && N > 0 && *nrhs > 0) return (void)ck.fail(6);
    if (!ldb || *ldb < at_least_1(N)) return (void)ck.fail(7);
    if (!info) return (void)ck.fail(8);
    if (!ork::core::vector_fits<C>(N, 1)) return (void)ck.fail(1);
    if (!ork::core::matrix_fits<C>(N, *nrhs, *ldb)) return (void)ck.fail(7);
    *info = 0;
    if (N > 0) (K().*Kf)(n, nrhs, dl, d, du, b, ldb, info);
}

// ---- solves with a factored tridiagonal matrix: columns of B split over
// threads. `first` is the position of n (2 after the complex forms' iuplo);
// run(len, b) solves len columns at b.
template <class C, class R, class Run>
void ptts2(const entry& e, int first, const idx* n, const idx* nrhs, const R* d, const C* e_, C* b, const idx* ldb,
           Run run) {
    if (!n || *n < 0) return (void)e.fail(first);
    if (!nrhs || *nrhs < 0) return (void)e.fail(first + 1);
    const idx N = *n, NR = *nrhs;
    if (!d && N > 0) return (void)e.fail(first + 2);
    if (!e_ && N > 1) return (void)e.fail(first + 3);
    if (!b && N > 0 && NR > 0) return (void)e.fail(first + 4);
    if (!ldb || *ldb < at_least_1(N)) return (void)e.fail(first + 5);
    if (N == 0 || NR == 0) return;
    if (!ork::core::matrix_fits<C>(N, NR, *ldb)) return (void)e.fail(first + 5);
    const idx LDB = *ldb;
    split(NR, double(N) * double(NR), [&](idx j0, idx len) { run(&len, b + j0 * LDB); });
}

// ---- rotation sequences: columns (side L) or rows (side R) split over threads
template <class C, class R>
using lasr_kernel = void (*)(const idx*, const idx*, const R*, const R*, C*, const idx*);

template <class C, class R>
void lasr_run(lasr_kernel<C, R> f, bool left, const idx* m, const idx* n, const R* c, const R* s, C* a,
              const idx* lda) {
    const idx M = *m, N = *n, LDA = *lda;
    if (M == 0 || N == 0) return;
    const double work = double(M) * double(N) * double(left ? M : N);
    if (left) split(N, work, [&](idx j0, idx len) { f(m, &len, c, s, a + j0 * LDA, lda); });
    else split(M, work, [&](idx i0, idx len) { f(&len, n, c, s, a + i0, lda); });
}

// Checks from position `first` on: m, n, c, s, a, lda.
template <class C, class R>
bool lasr_args(const entry& e, int first, bool left, const idx* m, const idx* n, const R* c, const R* s, const C* a,
               const idx* lda) {
    if (!m || *m < 0) return e.fail(first);
    if (!n || *n < 0) return e.fail(first + 1);
    const idx M = *m, N = *n, rotations = (left ? M : N) - 1;
    const bool any = M > 0 && N > 0;
    if (!c && any && rotations > 0) return e.fail(first + 2);
    if (!s && any && rotations > 0) return e.fail(first + 3);
    if (!a && any) return e.fail(first + 4);
    if (!lda || *lda < at_least_1(M)) return e.fail(first + 5);
    if (!ork::core::matrix_fits<C>(M, N, *lda)) return e.fail(first + 5);
    return true;
}

// ---- reflector: columns (side L) or rows (side R) split over threads, each
// piece with its own part of work
template <auto Kf, class C>
void larfx(const char* name, const char* side, const idx* m, const idx* n, const C* v, const C* tau, C* c,
           const idx* ldc, C* work) {
    entry e(name);
    if (!side || !letter_in(side, "LR")) return (void)e.fail(1);
    if (!m || *m < 0) return (void)e.fail(2);
    if (!n || *n < 0) return (void)e.fail(3);
    const idx M = *m, N = *n;
    const bool any = M > 0 && N > 0;
    if (!v && any) return (void)e.fail(4);
    if (!tau) return (void)e.fail(5);
    if (!c && any) return (void)e.fail(6);
    if (!ldc || *ldc < at_least_1(M)) return (void)e.fail(7);
    if (!work && any) return (void)e.fail(8);
    if (!any) return;
    if (!ork::core::matrix_fits<C>(M, N, *ldc)) return (void)e.fail(7);
    const idx LDC = *ldc;
    const double ops = double(M) * double(N);
    if (ork_serv_lsame(side, "L", 1, 1))
        split(N, ops, [&](idx j0, idx len) { (K().*Kf)(side, m, &len, v, tau, c + j0 * LDC, ldc, work + j0); });
    else
        split(M, ops, [&](idx i0, idx len) { (K().*Kf)(side, &len, n, v, tau, c + i0, ldc, work + i0); });
}

}  // namespace

#define KF(name) &kernel_table::ork_blas_##name
#define NAME(name) "ork_blas_" #name

#define ORK_LAPACK_ENTRIES(p, C, R)                                                                            \
    ORK_CORE_API void ork_blas_##p##potrf_l_small(const idx* n, C* a, const idx* lda, idx* info) { potrf<KF(p##potrf_l_small)>(NAME(p##potrf_l_small), n, a, lda, info); } \
    ORK_CORE_API void ork_blas_##p##sytrf_l_small(const idx* n, C* a, const idx* lda, idx* ipiv, idx* info) { sytrf<KF(p##sytrf_l_small)>(NAME(p##sytrf_l_small), n, a, lda, ipiv, info); } \
    ORK_CORE_API void ork_blas_##p##gtsv_small(const idx* n, const idx* nrhs, C* dl, C* d, C* du, C* b, const idx* ldb, idx* info) { gtsv<KF(p##gtsv_small)>(NAME(p##gtsv_small), n, nrhs, dl, d, du, b, ldb, info); } \
    ORK_CORE_API void ork_blas_##p##larfx(const char* side, const idx* m, const idx* n, const C* v, const C* tau, C* c, const idx* ldc, C* work) { larfx<KF(p##larfx)>(NAME(p##larfx), side, m, n, v, tau, c, ldc, work); } \
    ORK_CORE_API void ork_blas_##p##lasr(const char* side, const char* pivot, const char* direct, const idx* m, const idx* n, const R* c, const R* s, C* a, const idx* lda) { \
        entry e(NAME(p##lasr));                                                                                \
        if (!side || !letter_in(side, "LR")) return (void)e.fail(1);                                          \
        if (!pivot || !letter_in(pivot, "VTB")) return (void)e.fail(2);                                       \
        if (!direct || !letter_in(direct, "FB")) return (void)e.fail(3);                                      \
        const bool left = ork_serv_lsame(side, "L", 1, 1);                                                     \
        if (!lasr_args(e, 4, left, m, n, c, s, a, lda)) return;                                               \
        const bool fwd = ork_serv_lsame(direct, "F", 1, 1);                                                    \
        const int pv = ork_serv_lsame(pivot, "V", 1, 1) ? 0 : ork_serv_lsame(pivot, "T", 1, 1) ? 1 : 2;        \
        const lasr_kernel<C, R> table[2][3][2] = {                                                             \
            {{K().ork_blas_##p##lasr_rvb, K().ork_blas_##p##lasr_rvf}, {K().ork_blas_##p##lasr_rtb, K().ork_blas_##p##lasr_rtf}, {K().ork_blas_##p##lasr_rbb, K().ork_blas_##p##lasr_rbf}}, \
            {{K().ork_blas_##p##lasr_lvb, K().ork_blas_##p##lasr_lvf}, {K().ork_blas_##p##lasr_ltb, K().ork_blas_##p##lasr_ltf}, {K().ork_blas_##p##lasr_lbb, K().ork_blas_##p##lasr_lbf}}}; \
        lasr_run(table[left][pv][fwd], left, m, n, c, s, a, lda);                                              \
    }                                                                                                          \
    ORK_LASR_ENTRY(p, C, R, lvf, true) ORK_LASR_ENTRY(p, C, R, lvb, true) ORK_LASR_ENTRY(p, C, R, ltf, true)  \
    ORK_LASR_ENTRY(p, C, R, ltb, true) ORK_LASR_ENTRY(p, C, R, lbf, true) ORK_LASR_ENTRY(p, C, R, lbb, true)  \
    ORK_LASR_ENTRY(p, C, R, rvf, false) ORK_LASR_ENTRY(p, C, R, rvb, false) ORK_LASR_ENTRY(p, C, R, rtf, false) \
    ORK_LASR_ENTRY(p, C, R, rtb, false) ORK_LASR_ENTRY(p, C, R, rbf, false) ORK_LASR_ENTRY(p, C, R, rbb, false)
#define ORK_LASR_ENTRY(p, C, R, v, left) \
    ORK_CORE_API void ork_blas_##p##lasr_##v(const idx* m, const idx* n, const R* c, const R* s, C* a, const idx* lda) { entry e(NAME(p##lasr_##v)); if (lasr_args(e, 1, left, m, n, c, s, a, lda)) lasr_run<C, R>(K().ork_blas_##p##lasr_##v, left, m, n, c, s, a, lda); }

ORK_LAPACK_ENTRIES(s, float, float)
ORK_LAPACK_ENTRIES(d, double, double)
ORK_LAPACK_ENTRIES(c, ork_complex8, float)
ORK_LAPACK_ENTRIES(z, ork_complex16, double)

// the real forms: (n, nrhs, d, e, b, ldb); the complex ones lead with iuplo
#define ORK_PTTS2_REAL_ENTRY(p, R) \
    ORK_CORE_API void ork_blas_##p##ptts2(const idx* n, const idx* nrhs, const R* d, const R* e, R* b, const idx* ldb) { entry en(NAME(p##ptts2)); ptts2(en, 1, n, nrhs, d, e, b, ldb, [&](const idx* len, R* bs) { K().ork_blas_##p##ptts2(n, len, d, e, bs, ldb); }); }
#define ORK_PTTS2_CPLX_ENTRY(p, C, R) \
    ORK_CORE_API void ork_blas_##p##ptts2(const idx* iuplo, const idx* n, const idx* nrhs, const R* d, const C* e, C* b, const idx* ldb) { entry en(NAME(p##ptts2)); if (!iuplo) return (void)en.fail(1); ptts2(en, 2, n, nrhs, d, e, b, ldb, [&](const idx* len, C* bs) { K().ork_blas_##p##ptts2(iuplo, n, len, d, e, bs, ldb); }); }
ORK_PTTS2_REAL_ENTRY(s, float)
ORK_PTTS2_REAL_ENTRY(d, double)
ORK_PTTS2_CPLX_ENTRY(c, ork_complex8, float)
ORK_PTTS2_CPLX_ENTRY(z, ork_complex16, double)
