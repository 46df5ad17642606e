// The body of libork's matrix-multiply entries: what the checked entries of
// core/gemm_entries.cpp (generated from blas/gemm/table.py) hand over to once
// the arguments have passed. The product is split over threads into slabs
// of C, each computed by the kernel library's loop-nest pieces (unpacked,
// column by column, when their workspace cannot be had).
#pragma once

#include <atomic>
#include <type_traits>

#include "core/checks.h"
#include "core/core.h"

namespace ork::core::gemm {

using idx = ork_int;
using check::is_one;
using check::is_zero;

inline const kernel_table& K() { return kernels(); }

// The kernels of one element type. `q`: columns of the packed path's panels
// (a slab of C is a multiple of it, so the leftover columns are the same
// ones as for the whole product); `ra`: rows of one packed group.
template <class C> struct gemm_kernels;
#define ORK_GEMM_KERNELS(C, p, Q, RA, ZEROM)                                                          \
    template <> struct gemm_kernels<C> {                                                              \
        static constexpr idx q = Q, ra = RA;                                                          \
        static auto by_columns() { return K().ork_blas_x##p##gemm_0; }                                \
        static auto by_rows() { return K().ork_blas_x##p##gemm_1; }                                   \
        static auto scalm() { return K().ork_blas_##p##gemm_scalm; }                                  \
        static auto zerom() { return ZEROM; }                                                         \
    };
ORK_GEMM_KERNELS(float, s, 4, 8, nullptr)
ORK_GEMM_KERNELS(double, d, 4, 2, nullptr)
ORK_GEMM_KERNELS(ork_complex8, c, 2, 2, K().ork_blas_cgemm_zerom)
ORK_GEMM_KERNELS(ork_complex16, z, 2, 1, K().ork_blas_zgemm_zerom)
#undef ORK_GEMM_KERNELS

// Below this many multiply-adds a second thread does not pay for itself.
constexpr double split_min_work = 1 << 21;

// `driver`: the kernel library's x?gemm.
template <class D, class C>
void gemm(const entry& e, D driver, const char* ta, const char* tb, const idx* m, const idx* n, const idx* k,
          const C* alpha, const C* a, const idx* lda, const C* b, const idx* ldb, const C* beta, C* c,
          const idx* ldc) {
    using G = gemm_kernels<C>;
    const idx M = *m, N = *n, Kd = *k;
    const bool na = ork_serv_lsame(ta, "N", 1, 1), nb = ork_serv_lsame(tb, "N", 1, 1);

    // The alpha = 0 finish is the driver's own (it takes no workspace).
    if (is_zero(*alpha)) return driver(ta, tb, m, n, k, alpha, a, lda, b, ldb, beta, c, ldc);
    // The alternative engine of AMD family-10h parts: the driver after C has
    // its beta here, so that it writes nothing before its workspace is had.
    const bool barcelona = ork_serv_cpu_detect() == 0 && ork_serv_cpuisitbarcelona();

    // Everything else runs through the loop-nest pieces, which give each
    // element of C the same bits whatever the shape of the call (LAPACK's
    // testers compare results of differently shaped updates bit for bit) and
    // so whatever the number of threads. Slabs are whole columns (or rows).
    const int threads = barcelona ? 1 : ork::core::max_threads();
    const double work = double(M) * double(N) * double(Kd);
    const idx col_unit = 8, row_unit = G::ra * ((64 + G::ra - 1) / G::ra);
    const bool by_cols = N >= 2 * col_unit || M < 2 * row_unit;
    const bool split = threads >= 2 && work >= split_min_work && (N >= 2 * col_unit || M >= 2 * row_unit);
    const idx unit = by_cols ? col_unit : row_unit, extent = by_cols ? N : M;
    const idx units = extent / unit > 0 ? extent / unit : 1;
    const int t = split ? int(units < threads ? units : threads) : 1;
    const idx LDC = *ldc, LDA = *lda, LDB = *ldb;
    const C one = check::one<C>();
    std::atomic<bool> short_of_memory{false};  // only if even one column cannot be had
    auto slab = [&](int s) {
        const idx u0 = units * s / t, u1 = units * (s + 1) / t;
        const idx i0 = u0 * unit, len = (s == t - 1 ? extent : u1 * unit) - i0;
        const idx sm = by_cols ? M : len, sn = by_cols ? len : N;
        C* cs = by_cols ? c + i0 * LDC : c + i0;
        const C* as = by_cols ? a : na ? a + i0 : a + i0 * LDA;
        const C* bs = !by_cols ? b : nb ? b + i0 * LDB : b + i0;
        if (!is_one(*beta)) {
            if constexpr (!std::is_arithmetic_v<C>) {
                if (is_zero(*beta)) {
                    G::zerom()(&sm, &sn, cs, ldc);
                } else {
                    G::scalm()(&sm, &sn, beta, cs, ldc);
                }
            } else {
                G::scalm()(&sm, &sn, beta, cs, ldc);
            }
        }
        // The pieces take their workspace before they write; without it, the
        // slab one column at a time, which they multiply unpacked, in the
        // packed kernel's order: the same bits.
        const bool done = ork::core::guarded([&] {
            if (barcelona) driver(ta, tb, &sm, &sn, k, alpha, as, lda, bs, ldb, &one, cs, ldc);
            else if (by_cols) G::by_columns()(ta, tb, &sm, &sn, k, alpha, as, lda, bs, ldb, cs, ldc);
            else G::by_rows()(ta, tb, &sm, &sn, k, alpha, as, lda, bs, ldb, cs, ldc);
        });
        if (done) return;
        const idx single = 1;
        for (idx j = 0; j < sn && !short_of_memory.load(); ++j)
            if (!ork::core::guarded([&] {  // a generation that packed one column would say so
                G::by_columns()(ta, tb, &sm, &single, k, alpha, as, lda, nb ? bs + j * LDB : bs + j, ldb, cs + j * LDC,
                                ldc);
            }))
                short_of_memory = true;
    };
    ork::core::parallel_for(t, t, slab);
    if (short_of_memory) e.out_of_memory();
}

}  // namespace ork::core::gemm
