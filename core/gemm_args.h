// The reference argument checks of every matrix-multiply entry of libork.
#pragma once

#include "core/core.h"

namespace ork::core {

// transa 1, transb 2 (N, T or C), m 3, n 4, k 5 (not negative), alpha 6,
// a 7, lda 8 (at least the rows of A as stored), b 9, ldb 10, beta 11, c 12,
// ldc 13 (at least m); pointers only where they will be read. Reports the
// first bad argument and answers false.
template <class A, class C>
bool gemm_args_ok(const entry& e, const char* ta, const char* tb, const ork_int* m, const ork_int* n,
                  const ork_int* k, const C* alpha, const A* a, const ork_int* lda, const C* b, const ork_int* ldb,
                  const C* beta, const C* c, const ork_int* ldc) {
    auto op_ok = [](const char* f) {
        return f && (ork_serv_lsame(f, "N", 1, 1) || ork_serv_lsame(f, "T", 1, 1) || ork_serv_lsame(f, "C", 1, 1));
    };
    if (!op_ok(ta)) return e.fail(1);
    if (!op_ok(tb)) return e.fail(2);
    if (!m || *m < 0) return e.fail(3);
    if (!n || *n < 0) return e.fail(4);
    if (!k || *k < 0) return e.fail(5);
    const ork_int M = *m, N = *n, K = *k;
    const ork_int rows_a = ork_serv_lsame(ta, "N", 1, 1) ? M : K, rows_b = ork_serv_lsame(tb, "N", 1, 1) ? K : N;
    const bool any = M > 0 && N > 0;
    if (!alpha) return e.fail(6);
    if (!a && any && K > 0) return e.fail(7);
    if (!lda || *lda < (rows_a > 1 ? rows_a : 1)) return e.fail(8);
    if (!b && any && K > 0) return e.fail(9);
    if (!ldb || *ldb < (rows_b > 1 ? rows_b : 1)) return e.fail(10);
    if (!beta) return e.fail(11);
    if (!c && any) return e.fail(12);
    if (!ldc || *ldc < (M > 1 ? M : 1)) return e.fail(13);
    return true;
}

// After the quick returns: A, B and C must be addressable (positions of
// lda, ldb, ldc).
template <class A, class C>
bool gemm_reach_ok(const entry& e, const char* ta, const char* tb, ork_int m, ork_int n, ork_int k, ork_int lda,
                   ork_int ldb, ork_int ldc) {
    const bool na = ork_serv_lsame(ta, "N", 1, 1), nb = ork_serv_lsame(tb, "N", 1, 1);
    if (!matrix_fits<A>(na ? m : k, na ? k : m, lda)) return e.fail(8);
    if (!matrix_fits<C>(nb ? k : n, nb ? n : k, ldb)) return e.fail(10);
    if (!matrix_fits<C>(m, n, ldc)) return e.fail(13);
    return true;
}

}  // namespace ork::core
