// The hand-written Fortran routines: lsame, xerbla (what it does unless a
// program replaces it), xerbla_array and scabs1.
#include <cctype>
#include <cstdio>
#include <cstring>

#include "core/stdblas/stdblas.h"

namespace {

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

}  // namespace

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

