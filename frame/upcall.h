// The kernel library's calls up to libork's dispatched entries, all in one place.
//
// Kernels call down: level 3 and the mixed products reach the gemm engine
// through its templates, never through an exported name. A few calls go up on
// purpose, through the entry's dynamic symbol, so that libork's checks and
// threading apply to them (and the call-recording harness sees them); each
// is declared here and nowhere else:
// - upcall::gemv: the gemm drivers' last n mod q columns (blas/gemm/driver.h);
// - upcall::gemv_with_length: the blocked ?trsv's coupling of its diagonal
//   blocks, with the flag's length after the arguments as a Fortran-style
//   caller passes it (blas/level2/triangular_exports.cpp);
// - the lp64_ wrappers (generated into blas/level1/exports.cpp from its
//   table), whose whole job is to forward to the entry of the same name by
//   its dynamic symbol.
#pragma once

#include <cstddef>

#include "frame/export.h"

// ?gemv declared with its flag's length after the arguments.
#define ORK_UPCALL_GEMV_WITH_LENGTH(p, C)                                                                         \
    extern "C" void ork_upcall_##p##gemv(const char*, const ork_int*, const ork_int*, const C*, const C*,        \
                                         const ork_int*, const C*, const ork_int*, const C*, C*, const ork_int*, \
                                         std::size_t) __asm__("ork_blas_" #p "gemv");
ORK_UPCALL_GEMV_WITH_LENGTH(s, float)
ORK_UPCALL_GEMV_WITH_LENGTH(d, double)
ORK_UPCALL_GEMV_WITH_LENGTH(c, ork_complex8)
ORK_UPCALL_GEMV_WITH_LENGTH(z, ork_complex16)
#undef ORK_UPCALL_GEMV_WITH_LENGTH

namespace ork::upcall {

// libork's ?gemv for the C type C, called with the flag's length last.
template <class C> inline auto gemv_with_length() {
    if constexpr (std::is_same_v<C, float>) return &ork_upcall_sgemv;
    else if constexpr (std::is_same_v<C, double>) return &ork_upcall_dgemv;
    else if constexpr (std::is_same_v<C, ork_complex8>) return &ork_upcall_cgemv;
    else return &ork_upcall_zgemv;
}

// libork's ?gemv for element type T, as declared in its public header.
template <class T> inline auto gemv_entry() {
    if constexpr (std::is_same_v<T, float>) return &ork_blas_sgemv;
    else if constexpr (std::is_same_v<T, double>) return &ork_blas_dgemv;
    else if constexpr (std::is_same_v<T, cx<float>>) return &ork_blas_cgemv;
    else return &ork_blas_zgemv;
}

// y := alpha*op(A)*x + 1*y through libork's ?gemv; `ta` is passed on as the
// flag's one letter.
template <class T>
void gemv(char ta, idx m, idx n, T alpha, const T* a, idx lda, const T* x, idx incx, T* y) {
    using C = typename c_type_of<T>::type;
    const char t[2] = {ta, 0};
    const C al = to_c(alpha), beta = to_c(one<T>());
    const idx one_ = 1;
    gemv_entry<T>()(t, &m, &n, &al, reinterpret_cast<const C*>(a), &lda, reinterpret_cast<const C*>(x), &incx,
                    &beta, reinterpret_cast<C*>(y), &one_);
}

}  // namespace ork::upcall
