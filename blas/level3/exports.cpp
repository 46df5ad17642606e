// Export table of the level-3 kernels besides the general product: each line
// unwraps its by-address arguments and forwards to a template of
// blas/level3/level3.h; the macros only paste names.
#include "blas/level3/level3.h"
#include "ork/level3_kernels.h"

using namespace ork;
using namespace ork::level3;

namespace {
bool is(const char* f, char letter) { return flag(f) == letter; }
// op letter of a transposition flag (real types read C as T).
template <class T> char op_of(const char* f) { return gemm::trans_of<T>(f); }
tri_call tri(const char* side, const char* uplo, char t, const char* diag) {
    return {is(side, 'L'), is(uplo, 'L'), t, is(diag, 'U')};
}
}  // namespace

// p: BLAS letter; C: element type of the header; R: its real type.
#define ORK_L3_SYMM(p, C, R) \
    ORK_API void ork_blas_x##p##symm(const char* side, const char* uplo, const ork_int* m, const ork_int* n, const C* alpha, const C* a, const ork_int* lda, const C* b, const ork_int* ldb, const C* beta, C* c, const ork_int* ldc) { symm<elem_t<C>, false>(is(side, 'L'), is(uplo, 'L'), *m, *n, *as_elem(alpha), as_elem(a), *lda, as_elem(b), *ldb, *as_elem(beta), as_elem(c), *ldc); } \
    ORK_API void ork_blas_x##p##symm_recursive(const char* side, const char* uplo, const ork_int* m, const ork_int* n, const C* alpha, const C* a, const ork_int* lda, const C* b, const ork_int* ldb, C* c, const ork_int* ldc, void* work) { const bool l = is(side, 'L'); symm_recursive<elem_t<C>, false>(l, is(uplo, 'L'), l ? *m : *n, l ? *n : *m, *as_elem(alpha), as_elem(a), *lda, as_elem(b), *ldb, as_elem(c), *ldc, static_cast<elem_t<C>*>(work)); } \
    ORK_API void ork_blas_x##p##syrk(const char* uplo, const char* trans, const ork_int* n, const ork_int* k, const C* alpha, const C* a, const ork_int* lda, const C* beta, C* c, const ork_int* ldc) { rank<elem_t<C>, false>(is(uplo, 'L'), op_of<elem_t<C>>(trans), *n, *k, *as_elem(alpha), as_elem(a), *lda, static_cast<const elem_t<C>*>(nullptr), 0, *as_elem(beta), as_elem(c), *ldc); } \
    ORK_API void ork_blas_x##p##syr2k(const char* uplo, const char* trans, const ork_int* n, const ork_int* k, const C* alpha, const C* a, const ork_int* lda, const C* b, const ork_int* ldb, const C* beta, C* c, const ork_int* ldc) { rank<elem_t<C>, false>(is(uplo, 'L'), op_of<elem_t<C>>(trans), *n, *k, *as_elem(alpha), as_elem(a), *lda, as_elem(b), *ldb, *as_elem(beta), as_elem(c), *ldc); } \
    ORK_API void ork_blas_x##p##trmm(const char* side, const char* uplo, const char* transa, const char* diag, const ork_int* m, const ork_int* n, const C* alpha, const C* a, const ork_int* lda, C* b, const ork_int* ldb) { trmm(tri(side, uplo, op_of<elem_t<C>>(transa), diag), *m, *n, *as_elem(alpha), as_elem(a), *lda, as_elem(b), *ldb); } \
    ORK_API void ork_blas_x##p##trsm(const char* side, const char* uplo, const char* transa, const char* diag, const ork_int* m, const ork_int* n, const C* alpha, const C* a, const ork_int* lda, C* b, const ork_int* ldb) { trsm(tri(side, uplo, op_of<elem_t<C>>(transa), diag), *m, *n, *as_elem(alpha), as_elem(a), *lda, as_elem(b), *ldb); }
ORK_L3_SYMM(s, float, float)
ORK_L3_SYMM(d, double, double)
ORK_L3_SYMM(c, ork_complex8, float)
ORK_L3_SYMM(z, ork_complex16, double)

// The Hermitian forms: real alpha (herk) and beta (herk, her2k).
#define ORK_L3_HERM(p, C, R) \
    ORK_API void ork_blas_x##p##hemm(const char* side, const char* uplo, const ork_int* m, const ork_int* n, const C* alpha, const C* a, const ork_int* lda, const C* b, const ork_int* ldb, const C* beta, C* c, const ork_int* ldc) { symm<elem_t<C>, true>(is(side, 'L'), is(uplo, 'L'), *m, *n, *as_elem(alpha), as_elem(a), *lda, as_elem(b), *ldb, *as_elem(beta), as_elem(c), *ldc); } \
    ORK_API void ork_blas_x##p##herk(const char* uplo, const char* trans, const ork_int* n, const ork_int* k, const R* alpha, const C* a, const ork_int* lda, const R* beta, C* c, const ork_int* ldc) { rank<elem_t<C>, true>(is(uplo, 'L'), op_of<elem_t<C>>(trans), *n, *k, elem_t<C>{*alpha, 0}, as_elem(a), *lda, static_cast<const elem_t<C>*>(nullptr), 0, *beta, as_elem(c), *ldc); } \
    ORK_API void ork_blas_x##p##her2k(const char* uplo, const char* trans, const ork_int* n, const ork_int* k, const C* alpha, const C* a, const ork_int* lda, const C* b, const ork_int* ldb, const R* beta, C* c, const ork_int* ldc) { rank<elem_t<C>, true>(is(uplo, 'L'), op_of<elem_t<C>>(trans), *n, *k, *as_elem(alpha), as_elem(a), *lda, as_elem(b), *ldb, *beta, as_elem(c), *ldc); }
ORK_L3_HERM(c, ork_complex8, float)
ORK_L3_HERM(z, ork_complex16, double)
