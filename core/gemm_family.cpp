// libork's entries of the matrix-multiply family: complex products from three
// real products (cgemm3m, zgemm3m) and real-times-complex products (scgemm,
// dzgemm). The reference argument checks, then the kernel library's driver,
// on column slabs of C split over threads when the product is long.
#include <type_traits>

#include "core/gemm_args.h"

using ork::core::entry;
using ork::core::kernel_table;
using idx = ork_int;

namespace {

const kernel_table& K() { return ork::core::kernels(); }

template <class C> bool is_zero(const C& v) { return v.re == 0 && v.im == 0; }
template <class C> bool is_one(const C& v) { return v.re == 1 && v.im == 0; }

// Below this many multiply-adds a second thread does not pay for itself.
constexpr double split_min_work = 1 << 21;
// Slabs are whole multiples of 8 columns, the last one taking the rest. The
// three-product drivers treat the last n mod 4 columns, the mixed drivers the
// last n mod 8, differently from the others, and every other column alike
// (no blocking depends on n); so each column of C takes the same path and
// the same operations in any split, and the bits do not depend on the
// number of threads.
constexpr idx col_unit = 8;

// A: element type of A (real for the mixed products); C: of alpha, beta, B, C;
// kernel: the driver's slot in the kernel table.
template <class A, class C, class D>
void product(const char* name, D kernel_table::*kernel, const char* ta, const char* tb, const idx* m, const idx* n, const idx* k,
             const C* alpha, const A* a, const idx* lda, const C* b, const idx* ldb, const C* beta, C* c,
             const idx* ldc) {
    entry e(name);
    if (!ork::core::gemm_args_ok(e, ta, tb, m, n, k, alpha, a, lda, b, ldb, beta, c, ldc)) return;
    const idx M = *m, N = *n, Kd = *k;
    if (M == 0 || N == 0 || ((Kd == 0 || is_zero(*alpha)) && is_one(*beta))) return;
    if (!ork::core::gemm_reach_ok<A, C>(e, ta, tb, M, N, Kd, *lda, *ldb, *ldc)) return;
    const bool nb = ork_serv_lsame(tb, "N", 1, 1);

    // The three-product drivers test their workspace and multiply unpacked
    // without it; the mixed ones write C before the real driver inside them
    // takes its own, so their C is kept for undoing (core.h: undoable).
    constexpr bool mixed = !std::is_same_v<A, C>;
    ork::core::undoable<C> out(c, mixed ? M : 0, N, *ldc);
    if (!out.ok()) return (void)e.out_of_memory();
    const D driver = K().*kernel;
    auto call = [&](const idx* len, const C* bs, C* cs) {
        if (mixed) out.run([&] { driver(ta, tb, m, len, k, alpha, a, lda, bs, ldb, beta, cs, ldc); });
        else driver(ta, tb, m, len, k, alpha, a, lda, bs, ldb, beta, cs, ldc);
    };
    const int threads = ork::core::max_threads();
    const double work = double(M) * double(N) * double(Kd);
    const idx units = N / col_unit;
    if (threads < 2 || work < split_min_work || units < 2 || is_zero(*alpha)) {
        call(n, b, c);
        return (void)out.finish(e);
    }

    // Each slab runs the whole driver, beta pass included, on its columns.
    const int t = int(units < threads ? units : threads);
    const idx LDC = *ldc, LDB = *ldb;
    ork::core::parallel_for(t, t, [&](int s) {
        const idx j0 = units * s / t * col_unit;
        const idx len = (s == t - 1 ? N : units * (s + 1) / t * col_unit) - j0;
        call(&len, nb ? b + j0 * LDB : b + j0, c + j0 * LDC);
    });
    out.finish(e);
}

}  // namespace

#define ORK_FAMILY_ENTRY(name, A, C, kernel)                                                                      \
    ORK_CORE_API void ork_blas_##name(const char* ta, const char* tb, const idx* m, const idx* n, const idx* k,   \
                                      const C* alpha, const A* a, const idx* lda, const C* b, const idx* ldb,     \
                                      const C* beta, C* c, const idx* ldc) {                                      \
        product<A, C>("ork_blas_" #name, &kernel_table::kernel, ta, tb, m, n, k, alpha, a, lda, b, ldb, beta, c, ldc);      \
    }
ORK_FAMILY_ENTRY(cgemm3m, ork_complex8, ork_complex8, ork_blas_xcgemm3m)
ORK_FAMILY_ENTRY(zgemm3m, ork_complex16, ork_complex16, ork_blas_xzgemm3m)
ORK_FAMILY_ENTRY(scgemm, float, ork_complex8, ork_blas_xscgemm)
ORK_FAMILY_ENTRY(dzgemm, double, ork_complex16, ork_blas_xdzgemm)
