// lsame, xerbla, xerbla_array, scabs1, the CBLAS error handler and flags, and
// the route from libork's error reports to them.
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

// The trimmed length of a blank-padded Fortran name.
std::size_t trimmed(const char* s, std::size_t len) {
    while (len > 0 && s[len - 1] == ' ') --len;
    return len;
}

// What xerbla_ does unless replaced: during a CBLAS call the report goes on to
// cblas_xerbla with the position counted in the CBLAS call (the layout
// argument comes first); otherwise the reference message on standard error,
// and back to the routine, which returns having done nothing (as Debian's
// reference BLAS does: a program survives a bad call).
void xerbla_default(const char* srname, std::size_t len, long info) {
    len = trimmed(srname, len);
    if (CBLAS_CallFromC) {
        char rout[40] = "cblas_";
        std::size_t n = len < 32 ? len : 32;
        for (std::size_t i = 0; i < n; ++i) rout[6 + i] = char(std::tolower((unsigned char)srname[i]));
        rout[6 + n] = '\0';
        cblas_xerbla(int(info + 1), rout, "");
        return;
    }
    std::fprintf(stderr, " ** On entry to %.*s parameter number %2ld had an illegal value\n", int(len), srname, info);
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

ORK_STDBLAS_API ork_int32 lsame_(const char* a, const char* b, size_t, size_t) {
    return std::toupper((unsigned char)*a) == std::toupper((unsigned char)*b);
}
ORK_STDBLAS_API ork_int32 lsame_64_(const char* a, const char* b, size_t la, size_t lb) { return lsame_(a, b, la, lb); }

ORK_STDBLAS_API void xerbla_(const char* srname, const ork_int32* info, size_t len) { xerbla_default(srname, len, *info); }
ORK_STDBLAS_API void xerbla_64_(const char* srname, const ork_int* info, size_t len) { xerbla_default(srname, len, long(*info)); }

// The name as an array of characters, passed on to xerbla_ padded to 32.
template <class I, class X>
void xerbla_array(const char* srname, I srname_len, I info, X xerbla) {
    char name[32];
    std::memset(name, ' ', sizeof name);
    for (I i = 0; i < srname_len && i < I(sizeof name); ++i) name[i] = srname[i];
    xerbla(name, &info, sizeof name);
}
ORK_STDBLAS_API void xerbla_array_(const char* srname, const ork_int32* srname_len, const ork_int32* info, size_t) {
    xerbla_array(srname, *srname_len, *info, xerbla_);
}
ORK_STDBLAS_API void xerbla_array_64_(const char* srname, const ork_int* srname_len, const ork_int* info, size_t) {
    xerbla_array(srname, *srname_len, *info, xerbla_64_);
}

ORK_STDBLAS_API float scabs1_(const ork_complex8* z) { return __builtin_fabsf(z->re) + __builtin_fabsf(z->im); }
ORK_STDBLAS_API float scabs1_64_(const ork_complex8* z) { return scabs1_(z); }
ORK_STDBLAS_API void scabs1sub_(const ork_complex8* z, float* result) { *result = scabs1_(z); }
ORK_STDBLAS_API void scabs1sub_64_(const ork_complex8* z, float* result) { *result = scabs1_(z); }

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
