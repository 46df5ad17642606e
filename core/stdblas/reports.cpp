// The route of libork's argument-error reports to xerbla_ and cblas_xerbla
// during a Fortran or CBLAS call, and the CBLAS error handler.
#include <cctype>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "core/stdblas/stdblas.h"

namespace ork::stdblas {
namespace {

struct context {
    const char* routine = nullptr;
    bool cblas = false, row_major = false, ilp64 = false;
};
thread_local context current;

// "dgemm" -> "DGEMM " (Fortran names are at least six characters, blank padded).
std::size_t fortran_name(const char* routine, char (&out)[32]) {
    std::size_t n = 0;
    for (; routine[n] && n < sizeof out - 1; ++n) out[n] = char(std::toupper((unsigned char)routine[n]));
    for (; n < 6; ++n) out[n] = ' ';
    out[n] = '\0';
    return n;
}

// libork's report on a thread inside a call_scope. xerbla_ and xerbla_64_
// are called through their dynamic symbols, so a program's own replacement
// receives the report.
void forward(const char* ork_routine, int position) {
    const context c = current;
    char name[32];
    std::size_t len = fortran_name(c.routine ? c.routine : ork_routine + std::strlen("ork_blas_"), name);
    if (c.cblas) {
        RowMajorStrg = c.row_major;
        CBLAS_CallFromC = 1;
    }
    if (c.ilp64) {
        const ork_int info = position;
        xerbla_64_(name, &info, len);
    } else {
        const ork_int32 info = position;
        xerbla_(name, &info, len);
    }
    if (c.cblas) {
        CBLAS_CallFromC = 0;
        RowMajorStrg = 0;
    }
}

// In a row-major call the general, band, symmetric and triangular matrix
// routines pass their dimensions (and for ger and her2 their vectors)
// swapped to the column-major code: its position is mapped back here.
int row_major_position(int info, const char* rout) {
    struct swap {
        const char* family;
        int a, b, c, d;
    };
    static const swap swaps[] = {{"gemm", 4, 5, 9, 11}, {"symm", 4, 5, 0, 0}, {"hemm", 4, 5, 0, 0},
                                 {"trmm", 6, 7, 0, 0},  {"trsm", 6, 7, 0, 0}, {"gemv", 3, 4, 0, 0},
                                 {"gbmv", 3, 4, 5, 6},  {"ger", 2, 3, 6, 8}};
    auto flip = [&](int x, int y) { return info == x ? y : info == y ? x : info; };
    for (const swap& s : swaps)
        if (std::strstr(rout, s.family)) return s.c ? (info == s.a || info == s.b ? flip(s.a, s.b) : flip(s.c, s.d))
                                                    : flip(s.a, s.b);
    if ((std::strstr(rout, "her2") || std::strstr(rout, "hpr2")) && !std::strstr(rout, "her2k")) return flip(6, 8);
    return info;
}

}  // namespace

call_scope::call_scope(const char* routine, bool cblas, bool row_major, bool ilp64) {
    const context& c = current;
    saved_ = {c.routine, c.cblas, c.row_major, c.ilp64, ork_set_thread_error_handler(forward)};
    current = context{routine, cblas, row_major, ilp64};
}

call_scope::~call_scope() {
    current = context{saved_.routine, saved_.cblas, saved_.row_major, saved_.ilp64};
    ork_set_thread_error_handler(saved_.previous);
}

void cblas_report(int position, const char* cblas_name, bool row_major, const char* what, int value) {
    RowMajorStrg = row_major;
    CBLAS_CallFromC = 1;
    cblas_xerbla(position, cblas_name, "Illegal %s setting, %d\n", what, value);
    CBLAS_CallFromC = 0;
    RowMajorStrg = 0;
}

}  // namespace ork::stdblas

using namespace ork::stdblas;

// Unless replaced: the message, with the position mapped back to the row-major
// call's own where the column-major code saw the arguments swapped, and the end.
ORK_STDBLAS_API void cblas_xerbla(int info, const char* rout, const char* form, ...) {
    if (RowMajorStrg) info = row_major_position(info, rout);
    if (info) std::fprintf(stderr, "Parameter %d to routine %s was incorrect\n", info, rout);
    std::va_list args;
    va_start(args, form);
    std::vfprintf(stderr, form, args);
    va_end(args);
    std::exit(-1);
}
