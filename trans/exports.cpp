// Export table of transposition and scaled addition: the four dispatchers per
// element type and the kernels they choose from. Each line unwraps the
// by-address arguments and forwards to a template of trans/transpose.h.
#include "frame/export.h"
#include "ork/trans.h"
#include "trans/transpose.h"

using namespace ork;
using namespace ork::trans;
using u64 = std::uint64_t;

#define ORK_FOR_SDCZ(X) X(s, float) X(d, double) X(c, ork_complex8) X(z, ork_complex16)
#define ORK_FOR_CZ(X) X(c, ork_complex8) X(z, ork_complex16)

// ---- dispatchers
#define ORK_TRANS_DISPATCH(p, C)                                                                                        \
    ORK_API void ork_trans_ork_##p##omatcopy(const char* ordering, const char* trans, const u64* rows, const u64* cols,  \
                                             const C* alpha, const C* a, const u64* lda, C* b, const u64* ldb) {         \
        omatcopy2(*ordering, *trans, *rows, *cols, *as_elem(alpha), as_elem(a), *lda, 1, as_elem(b), *ldb, 1);         \
    }                                                                                                                   \
    ORK_API void ork_trans_ork_##p##omatcopy2(const char* ordering, const char* trans, const u64* rows, const u64* cols, \
                                              const C* alpha, const C* a, const u64* lda, const u64* stridea, C* b,     \
                                              const u64* ldb, const u64* strideb) {                                     \
        omatcopy2(*ordering, *trans, *rows, *cols, *as_elem(alpha), as_elem(a), *lda, *stridea, as_elem(b), *ldb,       \
                  *strideb);                                                                                            \
    }                                                                                                                   \
    ORK_API void ork_trans_ork_##p##imatcopy(const char* ordering, const char* trans, const u64* rows, const u64* cols,  \
                                             const C* alpha, C* ab, const u64* lda, const u64* ldb) {                   \
        imatcopy(*ordering, *trans, *rows, *cols, *as_elem(alpha), as_elem(ab), *lda, *ldb);                           \
    }                                                                                                                   \
    ORK_API void ork_trans_ork_##p##omatadd(const char* ordering, const char* transa, const char* transb,              \
                                            const u64* rows, const u64* cols, const C* alpha, const C* a,              \
                                            const u64* lda, const C* beta, const C* b, const u64* ldb, C* c,           \
                                            const u64* ldc) {                                                          \
        omatadd(*ordering, *transa, *transb, *rows, *cols, *as_elem(alpha), as_elem(a), *lda, *as_elem(beta),          \
                as_elem(b), *ldb, as_elem(c), *ldc);                                                                   \
    }
ORK_FOR_SDCZ(ORK_TRANS_DISPATCH)

// ---- omatcopy and omatcopy2 kernels: type letter, C type, suffix, template
#define ORK_OMATCOPY(p, C, sfx, fn)                                                                                     \
    ORK_API void ork_trans_ork_##p##omatcopy_##sfx(const u64* rows, const u64* cols, const C* alpha, const C* a,       \
                                                   const u64* lda, C* b, const u64* ldb) {                             \
        fn(*rows, *cols, *as_elem(alpha), as_elem(a), *lda, 1, as_elem(b), *ldb, 1);                                   \
    }                                                                                                                   \
    ORK_API void ork_trans_ork_##p##omatcopy2_##sfx(const u64* rows, const u64* cols, const C* alpha, const C* a,      \
                                                    const u64* lda, const u64* stridea, C* b, const u64* ldb,          \
                                                    const u64* strideb) {                                              \
        fn(*rows, *cols, *as_elem(alpha), as_elem(a), *lda, *stridea, as_elem(b), *ldb, *strideb);                    \
    }
// ---- imatcopy kernels; the square ones read rows and lda only
#define ORK_IMATCOPY(p, C, sfx, fn, ...)                                                                                \
    ORK_API void ork_trans_ork_##p##imatcopy_##sfx(const u64* rows, const u64* cols, const C* alpha, C* ab,            \
                                                   const u64* lda, const u64* ldb) {                                   \
        (void)cols;                                                                                                     \
        (void)ldb;                                                                                                      \
        fn(__VA_ARGS__);                                                                                                \
    }
#define ORK_SQUARE(p, C, sfx, fn) ORK_IMATCOPY(p, C, sfx, fn, *rows, *as_elem(alpha), as_elem(ab), *lda)
#define ORK_MIPT(p, C, sfx, fn) ORK_IMATCOPY(p, C, sfx, fn, *rows, *cols, *as_elem(alpha), as_elem(ab), *lda, *ldb)
// ---- omatadd kernels: the letters of the operations on A and on B
#define ORK_OMATADD(p, C, x, y)                                                                                        \
    ORK_API void ork_trans_ork_##p##omatadd_##x##y(const u64* rows, const u64* cols, const C* alpha, const C* a,      \
                                                   const u64* lda, const C* beta, const C* b, const u64* ldb, C* c,   \
                                                   const u64* ldc) {                                                   \
        add<elem_t<C>, op::x, op::y>(*rows, *cols, *as_elem(alpha), as_elem(a), *lda, *as_elem(beta), as_elem(b),     \
                                     *ldb, as_elem(c), *ldc);                                                          \
    }

#define ORK_TRANS_KERNELS(p, C)                                                                                        \
    ORK_OMATCOPY(p, C, rec_n, (rec_n<elem_t<C>, false>))                                                               \
    ORK_OMATCOPY(p, C, rec_t, (rec_t<elem_t<C>, false>))                                                               \
    ORK_SQUARE(p, C, square_n, (square_n<elem_t<C>, false>))                                                           \
    ORK_SQUARE(p, C, square_t, (square_t<elem_t<C>, false>))                                                           \
    ORK_MIPT(p, C, mipt_n, (mipt_n<elem_t<C>, false>))                                                                 \
    ORK_MIPT(p, C, mipt_t, (mipt_t<elem_t<C>, false>))                                                                 \
    ORK_OMATADD(p, C, n, n) ORK_OMATADD(p, C, n, t) ORK_OMATADD(p, C, t, t)                                           \
    ORK_API void ork_trans_ork_##p##omatadd_rec_nt(const u64* rows, const u64* cols, const C* alpha, C* c,            \
                                                   const u64* ldc, const C* beta, const C* b, const u64* ldb) {       \
        add_rec_nt<elem_t<C>, false, false>(*rows, *cols, *as_elem(alpha), as_elem(c), *ldc, *as_elem(beta),          \
                                            as_elem(b), *ldb);                                                         \
    }
ORK_FOR_SDCZ(ORK_TRANS_KERNELS)

// The conjugating kernels of the complex types.
#define ORK_TRANS_CONJ_KERNELS(p, C)                                                                                   \
    ORK_OMATCOPY(p, C, rec_r, (rec_n<elem_t<C>, true>))                                                                \
    ORK_OMATCOPY(p, C, rec_c, (rec_t<elem_t<C>, true>))                                                                \
    ORK_SQUARE(p, C, square_r, (square_n<elem_t<C>, true>))                                                            \
    ORK_SQUARE(p, C, square_c, (square_t<elem_t<C>, true>))                                                            \
    ORK_MIPT(p, C, mipt_r, (mipt_n<elem_t<C>, true>))                                                                  \
    ORK_MIPT(p, C, mipt_c, (mipt_t<elem_t<C>, true>))                                                                  \
    ORK_OMATADD(p, C, n, c) ORK_OMATADD(p, C, t, c) ORK_OMATADD(p, C, c, c)                                           \
    ORK_OMATADD(p, C, r, n) ORK_OMATADD(p, C, r, t) ORK_OMATADD(p, C, r, r) ORK_OMATADD(p, C, r, c)                   \
    ORK_API void ork_##p##conj(const u64* n, C* x) { conj_vector(*n, as_elem(x)); }
ORK_FOR_CZ(ORK_TRANS_CONJ_KERNELS)

ORK_API void ork_trans_know_false_cycle(u64* set, const u64* k) { know_false_cycle(set, *k); }
ORK_API int ork_trans_is_known_false_cycle(const u64* set, const u64* k) { return is_known_false_cycle(set, *k); }
