// Internals of libblas.so.3: the route of argument errors to xerbla_ and
// cblas_xerbla, and complex values in the Fortran return convention.
#pragma once

#include <cstddef>

#include "ork/blas.h"
#include "ork/blas_level2.h"
#include "ork/blas_level3.h"
#include "ork/cblas.h"
#include "ork/core.h"
#include "ork/fblas.h"

#define ORK_STDBLAS_API extern "C" __attribute__((visibility("default")))

namespace ork::stdblas {

// For the duration of one call on this thread: an argument error that libork
// reports is passed to xerbla_ (xerbla_64_ for ilp64) under the Fortran name
// of `routine` (lower case, "dgemm"), with libork's position. For a CBLAS
// call RowMajorStrg and CBLAS_CallFromC are set around that report, as the
// CBLAS error convention expects.
class call_scope {
public:
    call_scope(const char* routine, bool cblas, bool row_major, bool ilp64);
    ~call_scope();
    call_scope(const call_scope&) = delete;
    call_scope& operator=(const call_scope&) = delete;

private:
    struct state {
        const char* routine;
        bool cblas, row_major, ilp64;
        ork_error_handler previous;
    } saved_;
};

struct fortran_call : call_scope {
    explicit fortran_call(const char* routine, bool ilp64 = false) : call_scope(routine, false, false, ilp64) {}
};

// Reports a CBLAS-level argument error (layout, flags) to cblas_xerbla,
// with RowMajorStrg and CBLAS_CallFromC set as for a report from libork.
void cblas_report(int position, const char* cblas_name, bool row_major, const char* what, int value);

inline ork_fcomplex8 to_fortran(ork_complex8 v) {
    ork_fcomplex8 r;
    __real__ r = v.re;
    __imag__ r = v.im;
    return r;
}
inline ork_fcomplex16 to_fortran(ork_complex16 v) {
    ork_fcomplex16 r;
    __real__ r = v.re;
    __imag__ r = v.im;
    return r;
}

}  // namespace ork::stdblas
