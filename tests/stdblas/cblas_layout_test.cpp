// Every cblas_ routine, once per flag combination: column-major against the
// Fortran routine on the same data, and row-major on the same matrices
// stored by rows against the column-major result. Small integer data keep
// every product, sum and triangular solve exact, so both must agree exactly.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <fstream>
#include <random>
#include <set>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>
#include <vector>

#include "ork/cblas.h"
#include "ork/fblas.h"

namespace {

int reports = 0;  // argument-error reports: any is a failure

// The problem's sizes: m x n matrices, inner dimension k, band widths kl and
// ku (kb for the symmetric and triangular bands), nv-element vectors, and a
// leading dimension ld that suits both layouts of every matrix.
constexpr ork_int32 M = 5, N = 4, K = 3, KL = 2, KU = 1, KB = 2, NV = 6, LD = 8;
constexpr int MAT = LD * LD, VEC = 24;

template <class T> struct real_of { using type = T; };
template <> struct real_of<ork_complex8> { using type = float; };
template <> struct real_of<ork_complex16> { using type = double; };
template <class T> using real_t = typename real_of<T>::type;
template <class T> constexpr bool is_complex = !std::is_same_v<T, real_t<T>>;

// Everything one call may read or write.
template <class T> struct state {
    using R = real_t<T>;
    T a[MAT], b[MAT], c[MAT], x[VEC], y[VEC], t[4], param[5];
    T alpha, beta;
    R ra, rb, r[2];
    long double value;  // a function's result
    CBLAS_TRANSPOSE tr, trb;
    CBLAS_UPLO up;
    CBLAS_DIAG dg;
    CBLAS_SIDE sd;
    char ftr, ftrb, fup, fdg, fsd;
    ork_int32 incx, incy;
    // Complex syrk and syr2k take no 'C', herk and her2k no 'T'.
    void avoid(char bad, char good) {
        if (ftr == bad) ftr = good, tr = good == 'T' ? CblasTrans : CblasConjTrans;
    }
};

template <class T> auto sc(const T& v) {  // a scalar as the CBLAS takes it
    if constexpr (is_complex<T>)
        return static_cast<const void*>(&v);
    else
        return v;
}
template <class T> T of(real_t<T> v) {  // a real value as a T
    if constexpr (is_complex<T>)
        return T{v, 0};
    else
        return v;
}
template <class T, class F> void fvalue(T& to, F v) { to = {__real__ v, __imag__ v}; }

// One routine per signature: layout 0 is the Fortran call.
using L_ = CBLAS_LAYOUT;
#define OP(op) template <class T, auto C, auto F> void op(state<T>& s, L_ o)
OP(swap) { o ? C(NV, s.x, s.incx, s.y, s.incy) : F(&NV, s.x, &s.incx, s.y, &s.incy); }
OP(axpy) { o ? C(NV, sc(s.alpha), s.x, s.incx, s.y, s.incy) : F(&NV, &s.alpha, s.x, &s.incx, s.y, &s.incy); }
OP(scal) { o ? C(NV, sc(s.alpha), s.x, s.incx) : F(&NV, &s.alpha, s.x, &s.incx); }
OP(rscal) { o ? C(NV, s.ra, s.x, s.incx) : F(&NV, &s.ra, s.x, &s.incx); }
OP(value) { s.value = o ? C(NV, s.x, s.incx) : F(&NV, s.x, &s.incx); }
OP(amax) {  // 1-based, 0 when empty; 0-based, 0 when empty
    s.value = o ? C(NV, s.x, s.incx) : std::max(F(&NV, s.x, &s.incx) - 1, 0);
}
OP(dot) { s.value = o ? C(NV, s.x, s.incx, s.y, s.incy) : F(&NV, s.x, &s.incx, s.y, &s.incy); }
OP(sdsdot) { s.value = o ? C(NV, s.ra, s.x, s.incx, s.y, s.incy) : F(&NV, &s.ra, s.x, &s.incx, s.y, &s.incy); }
OP(dotsub) { o ? C(NV, s.x, s.incx, s.y, s.incy, s.t) : fvalue(s.t[0], F(&NV, s.x, &s.incx, s.y, &s.incy)); }
OP(cabs1) { s.value = o ? C(s.t) : F(s.t); }
OP(rotg) { o ? C(s.t, s.t + 1, s.r, s.t + 2) : F(s.t, s.t + 1, s.r, s.t + 2); }
OP(rotmg) { o ? C(s.t, s.t + 1, s.t + 2, s.ra, s.param) : F(s.t, s.t + 1, s.t + 2, &s.ra, s.param); }
OP(rot) { o ? C(NV, s.x, s.incx, s.y, s.incy, s.ra, s.rb) : F(&NV, s.x, &s.incx, s.y, &s.incy, &s.ra, &s.rb); }
OP(rotm) { o ? C(NV, s.x, s.incx, s.y, s.incy, s.param) : F(&NV, s.x, &s.incx, s.y, &s.incy, s.param); }
OP(gemv) {
    o ? C(o, s.tr, M, N, sc(s.alpha), s.a, LD, s.x, s.incx, sc(s.beta), s.y, s.incy)
      : F(&s.ftr, &M, &N, &s.alpha, s.a, &LD, s.x, &s.incx, &s.beta, s.y, &s.incy, 1);
}
OP(gbmv) {
    o ? C(o, s.tr, M, N, KL, KU, sc(s.alpha), s.a, LD, s.x, s.incx, sc(s.beta), s.y, s.incy)
      : F(&s.ftr, &M, &N, &KL, &KU, &s.alpha, s.a, &LD, s.x, &s.incx, &s.beta, s.y, &s.incy, 1);
}
OP(trmv) {
    o ? C(o, s.up, s.tr, s.dg, N, s.a, LD, s.x, s.incx)
      : F(&s.fup, &s.ftr, &s.fdg, &N, s.a, &LD, s.x, &s.incx, 1, 1, 1);
}
OP(tbmv) {
    o ? C(o, s.up, s.tr, s.dg, N, KB, s.a, LD, s.x, s.incx)
      : F(&s.fup, &s.ftr, &s.fdg, &N, &KB, s.a, &LD, s.x, &s.incx, 1, 1, 1);
}
OP(tpmv) {
    o ? C(o, s.up, s.tr, s.dg, N, s.a, s.x, s.incx) : F(&s.fup, &s.ftr, &s.fdg, &N, s.a, s.x, &s.incx, 1, 1, 1);
}
OP(symv) {
    o ? C(o, s.up, N, sc(s.alpha), s.a, LD, s.x, s.incx, sc(s.beta), s.y, s.incy)
      : F(&s.fup, &N, &s.alpha, s.a, &LD, s.x, &s.incx, &s.beta, s.y, &s.incy, 1);
}
OP(sbmv) {
    o ? C(o, s.up, N, KB, sc(s.alpha), s.a, LD, s.x, s.incx, sc(s.beta), s.y, s.incy)
      : F(&s.fup, &N, &KB, &s.alpha, s.a, &LD, s.x, &s.incx, &s.beta, s.y, &s.incy, 1);
}
OP(spmv) {
    o ? C(o, s.up, N, sc(s.alpha), s.a, s.x, s.incx, sc(s.beta), s.y, s.incy)
      : F(&s.fup, &N, &s.alpha, s.a, s.x, &s.incx, &s.beta, s.y, &s.incy, 1);
}
OP(ger) {
    o ? C(o, M, N, sc(s.alpha), s.x, s.incx, s.y, s.incy, s.a, LD)
      : F(&M, &N, &s.alpha, s.x, &s.incx, s.y, &s.incy, s.a, &LD);
}
OP(syr) { o ? C(o, s.up, N, s.ra, s.x, s.incx, s.a, LD) : F(&s.fup, &N, &s.ra, s.x, &s.incx, s.a, &LD, 1); }
OP(spr) { o ? C(o, s.up, N, s.ra, s.x, s.incx, s.a) : F(&s.fup, &N, &s.ra, s.x, &s.incx, s.a, 1); }
OP(syr2) {
    o ? C(o, s.up, N, sc(s.alpha), s.x, s.incx, s.y, s.incy, s.a, LD)
      : F(&s.fup, &N, &s.alpha, s.x, &s.incx, s.y, &s.incy, s.a, &LD, 1);
}
OP(spr2) {
    o ? C(o, s.up, N, sc(s.alpha), s.x, s.incx, s.y, s.incy, s.a)
      : F(&s.fup, &N, &s.alpha, s.x, &s.incx, s.y, &s.incy, s.a, 1);
}
OP(gemm) {
    o ? C(o, s.tr, s.trb, M, N, K, sc(s.alpha), s.a, LD, s.b, LD, sc(s.beta), s.c, LD)
      : F(&s.ftr, &s.ftrb, &M, &N, &K, &s.alpha, s.a, &LD, s.b, &LD, &s.beta, s.c, &LD, 1, 1);
}
OP(symm) {
    o ? C(o, s.sd, s.up, M, N, sc(s.alpha), s.a, LD, s.b, LD, sc(s.beta), s.c, LD)
      : F(&s.fsd, &s.fup, &M, &N, &s.alpha, s.a, &LD, s.b, &LD, &s.beta, s.c, &LD, 1, 1);
}
OP(syrk) {
    if (is_complex<T>) s.avoid('C', 'T');
    o ? C(o, s.up, s.tr, N, K, sc(s.alpha), s.a, LD, sc(s.beta), s.c, LD)
      : F(&s.fup, &s.ftr, &N, &K, &s.alpha, s.a, &LD, &s.beta, s.c, &LD, 1, 1);
}
OP(herk) {
    s.avoid('T', 'C');
    o ? C(o, s.up, s.tr, N, K, s.ra, s.a, LD, s.rb, s.c, LD)
      : F(&s.fup, &s.ftr, &N, &K, &s.ra, s.a, &LD, &s.rb, s.c, &LD, 1, 1);
}
OP(syr2k) {
    if (is_complex<T>) s.avoid('C', 'T');
    o ? C(o, s.up, s.tr, N, K, sc(s.alpha), s.a, LD, s.b, LD, sc(s.beta), s.c, LD)
      : F(&s.fup, &s.ftr, &N, &K, &s.alpha, s.a, &LD, s.b, &LD, &s.beta, s.c, &LD, 1, 1);
}
OP(her2k) {
    s.avoid('T', 'C');
    o ? C(o, s.up, s.tr, N, K, sc(s.alpha), s.a, LD, s.b, LD, s.rb, s.c, LD)
      : F(&s.fup, &s.ftr, &N, &K, &s.alpha, s.a, &LD, s.b, &LD, &s.rb, s.c, &LD, 1, 1);
}
OP(trmm) {
    o ? C(o, s.sd, s.up, s.tr, s.dg, M, N, sc(s.alpha), s.a, LD, s.b, LD)
      : F(&s.fsd, &s.fup, &s.ftr, &s.fdg, &M, &N, &s.alpha, s.a, &LD, s.b, &LD, 1, 1, 1, 1);
}
#undef OP

template <class T> struct row {
    const char* name;
    void (*call)(state<T>&, L_);
};
#define R(op, cb, f) \
    row<T> { #cb, op < T, cb, f> }

template <class T> std::vector<row<T>> rows();
template <> std::vector<row<float>> rows() {
    using T = float;
    return {R(swap, cblas_sswap, sswap_),     R(swap, cblas_scopy, scopy_),   R(axpy, cblas_saxpy, saxpy_),
            R(scal, cblas_sscal, sscal_),     R(dot, cblas_sdot, sdot_),      R(value, cblas_snrm2, snrm2_),
            R(value, cblas_sasum, sasum_),    R(amax, cblas_isamax, isamax_), R(rotg, cblas_srotg, srotg_),
            R(rotmg, cblas_srotmg, srotmg_),  R(rot, cblas_srot, srot_),      R(rotm, cblas_srotm, srotm_),
            R(sdsdot, cblas_sdsdot, sdsdot_), R(dot, cblas_dsdot, dsdot_),    R(gemv, cblas_sgemv, sgemv_),
            R(gbmv, cblas_sgbmv, sgbmv_),     R(trmv, cblas_strmv, strmv_),   R(tbmv, cblas_stbmv, stbmv_),
            R(tpmv, cblas_stpmv, stpmv_),     R(trmv, cblas_strsv, strsv_),   R(tbmv, cblas_stbsv, stbsv_),
            R(tpmv, cblas_stpsv, stpsv_),     R(symv, cblas_ssymv, ssymv_),   R(sbmv, cblas_ssbmv, ssbmv_),
            R(spmv, cblas_sspmv, sspmv_),     R(ger, cblas_sger, sger_),      R(syr, cblas_ssyr, ssyr_),
            R(spr, cblas_sspr, sspr_),        R(syr2, cblas_ssyr2, ssyr2_),   R(spr2, cblas_sspr2, sspr2_),
            R(gemm, cblas_sgemm, sgemm_),     R(symm, cblas_ssymm, ssymm_),   R(syrk, cblas_ssyrk, ssyrk_),
            R(syr2k, cblas_ssyr2k, ssyr2k_),  R(trmm, cblas_strmm, strmm_),   R(trmm, cblas_strsm, strsm_)};
}
template <> std::vector<row<double>> rows() {
    using T = double;
    return {R(swap, cblas_dswap, dswap_),    R(swap, cblas_dcopy, dcopy_),    R(axpy, cblas_daxpy, daxpy_),
            R(scal, cblas_dscal, dscal_),    R(dot, cblas_ddot, ddot_),       R(value, cblas_dnrm2, dnrm2_),
            R(value, cblas_dasum, dasum_),   R(amax, cblas_idamax, idamax_),  R(rotg, cblas_drotg, drotg_),
            R(rotmg, cblas_drotmg, drotmg_), R(rot, cblas_drot, drot_),       R(rotm, cblas_drotm, drotm_),
            R(gemv, cblas_dgemv, dgemv_),    R(gbmv, cblas_dgbmv, dgbmv_),    R(trmv, cblas_dtrmv, dtrmv_),
            R(tbmv, cblas_dtbmv, dtbmv_),    R(tpmv, cblas_dtpmv, dtpmv_),    R(trmv, cblas_dtrsv, dtrsv_),
            R(tbmv, cblas_dtbsv, dtbsv_),    R(tpmv, cblas_dtpsv, dtpsv_),    R(symv, cblas_dsymv, dsymv_),
            R(sbmv, cblas_dsbmv, dsbmv_),    R(spmv, cblas_dspmv, dspmv_),    R(ger, cblas_dger, dger_),
            R(syr, cblas_dsyr, dsyr_),       R(spr, cblas_dspr, dspr_),       R(syr2, cblas_dsyr2, dsyr2_),
            R(spr2, cblas_dspr2, dspr2_),    R(gemm, cblas_dgemm, dgemm_),    R(symm, cblas_dsymm, dsymm_),
            R(syrk, cblas_dsyrk, dsyrk_),    R(syr2k, cblas_dsyr2k, dsyr2k_), R(trmm, cblas_dtrmm, dtrmm_),
            R(trmm, cblas_dtrsm, dtrsm_)};
}
template <> std::vector<row<ork_complex8>> rows() {
    using T = ork_complex8;
    return {R(swap, cblas_cswap, cswap_), R(swap, cblas_ccopy, ccopy_), R(axpy, cblas_caxpy, caxpy_),
            R(scal, cblas_cscal, cscal_), R(rscal, cblas_csscal, csscal_), R(value, cblas_scnrm2, scnrm2_),
            R(value, cblas_scasum, scasum_), R(amax, cblas_icamax, icamax_), R(rotg, cblas_crotg, crotg_),
            R(rot, cblas_csrot, csrot_), R(cabs1, cblas_scabs1, scabs1_), R(gemv, cblas_cgemv, cgemv_),
            R(gbmv, cblas_cgbmv, cgbmv_), R(trmv, cblas_ctrmv, ctrmv_), R(tbmv, cblas_ctbmv, ctbmv_),
            R(tpmv, cblas_ctpmv, ctpmv_), R(trmv, cblas_ctrsv, ctrsv_), R(tbmv, cblas_ctbsv, ctbsv_),
            R(tpmv, cblas_ctpsv, ctpsv_), R(symv, cblas_chemv, chemv_), R(sbmv, cblas_chbmv, chbmv_),
            R(spmv, cblas_chpmv, chpmv_), R(ger, cblas_cgeru, cgeru_), R(ger, cblas_cgerc, cgerc_),
            R(syr, cblas_cher, cher_), R(spr, cblas_chpr, chpr_), R(syr2, cblas_cher2, cher2_),
            R(spr2, cblas_chpr2, chpr2_), R(gemm, cblas_cgemm, cgemm_), R(symm, cblas_csymm, csymm_),
            R(symm, cblas_chemm, chemm_), R(syrk, cblas_csyrk, csyrk_), R(herk, cblas_cherk, cherk_),
            R(syr2k, cblas_csyr2k, csyr2k_), R(her2k, cblas_cher2k, cher2k_), R(trmm, cblas_ctrmm, ctrmm_),
            R(trmm, cblas_ctrsm, ctrsm_),
            // the complex functions' CBLAS forms store their value
            R(dotsub, cblas_cdotu_sub, cdotu_), R(dotsub, cblas_cdotc_sub, cdotc_)};
}
template <> std::vector<row<ork_complex16>> rows() {
    using T = ork_complex16;
    return {R(swap, cblas_zswap, zswap_),    R(swap, cblas_zcopy, zcopy_),       R(axpy, cblas_zaxpy, zaxpy_),
            R(scal, cblas_zscal, zscal_),    R(rscal, cblas_zdscal, zdscal_),    R(value, cblas_dznrm2, dznrm2_),
            R(value, cblas_dzasum, dzasum_), R(amax, cblas_izamax, izamax_),     R(rotg, cblas_zrotg, zrotg_),
            R(rot, cblas_zdrot, zdrot_),     R(cabs1, cblas_dcabs1, dcabs1_),    R(gemv, cblas_zgemv, zgemv_),
            R(gbmv, cblas_zgbmv, zgbmv_),    R(trmv, cblas_ztrmv, ztrmv_),       R(tbmv, cblas_ztbmv, ztbmv_),
            R(tpmv, cblas_ztpmv, ztpmv_),    R(trmv, cblas_ztrsv, ztrsv_),       R(tbmv, cblas_ztbsv, ztbsv_),
            R(tpmv, cblas_ztpsv, ztpsv_),    R(symv, cblas_zhemv, zhemv_),       R(sbmv, cblas_zhbmv, zhbmv_),
            R(spmv, cblas_zhpmv, zhpmv_),    R(ger, cblas_zgeru, zgeru_),        R(ger, cblas_zgerc, zgerc_),
            R(syr, cblas_zher, zher_),       R(spr, cblas_zhpr, zhpr_),          R(syr2, cblas_zher2, zher2_),
            R(spr2, cblas_zhpr2, zhpr2_),    R(gemm, cblas_zgemm, zgemm_),       R(symm, cblas_zsymm, zsymm_),
            R(symm, cblas_zhemm, zhemm_),    R(syrk, cblas_zsyrk, zsyrk_),       R(herk, cblas_zherk, zherk_),
            R(syr2k, cblas_zsyr2k, zsyr2k_), R(her2k, cblas_zher2k, zher2k_),    R(trmm, cblas_ztrmm, ztrmm_),
            R(trmm, cblas_ztrsm, ztrsm_),    R(dotsub, cblas_zdotu_sub, zdotu_), R(dotsub, cblas_zdotc_sub, zdotc_)};
}
#undef R

// How A is stored, read from the routine's name: a general band (gb), a
// symmetric, Hermitian or triangular band (sb, hb, tb), packed (sp, hp, tp),
// else a full ld x ld array (the level-1 routines touch no matrix).
enum storage { full, gband, band, packed };
storage storage_of(std::string_view name) {
    const std::string_view kind = name.substr(std::string_view("cblas_s").size(), 2);
    if (kind == "gb") return gband;
    if (kind == "sb" || kind == "hb" || kind == "tb") return band;
    if (kind == "sp" || kind == "hp" || kind == "tp") return packed;
    return full;
}

// Where A(i, j) is stored by columns, or by rows (A stored by rows is its
// transpose stored by columns: the other triangle, the band widths swapped).
std::pair<int, int> widths(storage st, bool upper) {  // kl, ku of a band
    return st == gband ? std::pair(KL, KU) : upper ? std::pair(0, KB) : std::pair(KB, 0);
}
int pos(storage st, bool upper, bool by_rows, int i, int j) {
    auto [kl, ku] = widths(st, upper);
    if (by_rows) std::swap(i, j), std::swap(kl, ku), upper = !upper;
    if (st == full) return i + j * LD;
    if (st == packed) return upper ? i + j * (j + 1) / 2 : i + (2 * N - j - 1) * j / 2;
    return ku + i - j + j * LD;
}

// Calls f(column-major position, row-major position) for every stored element
// A(i, j) (for a full array, every element of the ld x ld square).
template <class F> void each_stored(storage st, bool upper, F f) {
    const int rows = st == full ? LD : st == gband ? M : N, cols = st == full ? LD : N;
    const auto [kl, ku] = widths(st, upper);
    for (int i = 0; i < rows; ++i)
        for (int j = 0; j < cols; ++j)
            if (st == full || (st == packed ? (upper ? i <= j : i >= j) : j - i <= ku && i - j <= kl))
                f(pos(st, upper, false, i, j), pos(st, upper, true, i, j));
}

// `from` with A, B and C stored by rows: each element `from` stores by
// columns copied to its row-major place in `under`'s arrays.
template <class T> state<T> by_rows(const state<T>& from, const state<T>& under, storage st) {
    state<T> to = from;
    std::copy(under.a, under.a + MAT, to.a), std::copy(under.b, under.b + MAT, to.b);
    std::copy(under.c, under.c + MAT, to.c);
    each_stored(st, from.fup == 'U', [&](int col, int row) { to.a[row] = from.a[col]; });
    each_stored(full, false, [&](int col, int row) { to.b[row] = from.b[col], to.c[row] = from.c[col]; });
    return to;
}

template <class T> bool same(const T& u, const T& v) {  // -0 == 0
    if constexpr (is_complex<T>)
        return u.re == v.re && u.im == v.im;
    else
        return u == v;
}
template <class T> std::string text(const T& v) {
    char s[64];
    if constexpr (is_complex<T>)
        std::snprintf(s, sizeof s, "(%g, %g)", double(v.re), double(v.im));
    else
        std::snprintf(s, sizeof s, "%g", double(v));
    return s;
}
// The arrays where p and q differ, each with its first differing element.
template <class T> std::string differs(const state<T>& p, const state<T>& q) {
    std::string out;
    auto cmp = [&](const char* what, const auto* u, const auto* v, int n) {
        for (int i = 0; i < n; ++i)
            if (!same(u[i], v[i]))
                return void(out += std::string(" ") + what + "[" + std::to_string(i) + "] " + text(u[i]) + " vs " +
                                   text(v[i]));
    };
    cmp("a", p.a, q.a, MAT), cmp("b", p.b, q.b, MAT), cmp("c", p.c, q.c, MAT), cmp("x", p.x, q.x, VEC);
    cmp("y", p.y, q.y, VEC), cmp("t", p.t, q.t, 4), cmp("param", p.param, q.param, 5), cmp("r", p.r, q.r, 2);
    cmp("value", &p.value, &q.value, 1);
    return out;
}

// A problem of small integers; A's diagonal is real and one of +-1, +-2, so
// that the triangular solves divide exactly.
template <class T> state<T> make(std::mt19937& rng, storage st, const char flags[6]) {
    using R = real_t<T>;
    std::uniform_int_distribution<int> d(-2, 2);
    auto value = [&] {
        if constexpr (is_complex<T>)
            return T{R(d(rng)), R(d(rng))};
        else
            return T(d(rng));
    };
    state<T> s{};
    for (T* v : {s.a, s.b, s.c, s.x, s.y}) std::generate(v, v + (v == s.x || v == s.y ? VEC : MAT), value);
    std::generate(s.t, s.t + 4, value);
    const bool upper = flags[2] == 'U';
    for (int i = 0; i < (st == full ? LD : N); ++i)
        s.a[pos(st, upper, false, i, i)] = of<T>(R((i % 2 ? -1 : 1) * int(1 + rng() % 2)));
    s.alpha = value(), s.beta = value();
    s.ra = R(d(rng)), s.rb = R(d(rng));
    s.param[0] = of<T>(R(int(rng() % 4) - 2));  // rotm's flag: -2 .. 1
    for (int i = 1; i < 5; ++i) s.param[i] = of<T>(R(d(rng)));
    s.ftr = flags[0], s.ftrb = flags[1], s.fup = flags[2], s.fdg = flags[3], s.fsd = flags[4];
    auto trans = [](char c) { return c == 'N' ? CblasNoTrans : c == 'T' ? CblasTrans : CblasConjTrans; };
    s.tr = trans(s.ftr), s.trb = trans(s.ftrb);
    s.up = upper ? CblasUpper : CblasLower;
    s.dg = s.fdg == 'U' ? CblasUnit : CblasNonUnit;
    s.sd = s.fsd == 'L' ? CblasLeft : CblasRight;
    const int incs[] = {1, -1, 2, -3};
    s.incx = incs[rng() % 4], s.incy = incs[rng() % 4];
    return s;
}

template <class T> class CblasLayout : public ::testing::Test {};
using Types = ::testing::Types<float, double, ork_complex8, ork_complex16>;
TYPED_TEST_SUITE(CblasLayout, Types);

TYPED_TEST(CblasLayout, ColumnMajorIsTheFortranCallAndRowMajorTheSameOnTransposedStorage) {
    using T = TypeParam;
    std::mt19937 rng(20261126);
    for (const row<T>& r : rows<T>()) {
        const storage st = storage_of(r.name);
        const char* const trans[] = {"NN", "NT", "NC", "TN", "TT", "TC", "CN", "CT", "CC"};
        const char* const rest[] = {"UNL", "UNR", "UUL", "UUR", "LNL", "LNR", "LUL", "LUR"};  // uplo, diag, side
        for (int f = 0, failed = 0; f < 72 && failed < 2; ++f) {
            const char* tr = trans[f / 8];
            const char flags[6] = {tr[0], tr[1], rest[f % 8][0], rest[f % 8][1], rest[f % 8][2], 0};
            const state<T> fresh = make<T>(rng, st, flags);
            reports = 0;
            const state<T> rows_fresh = by_rows(fresh, fresh, st);
            state<T> fortran = fresh, col = fresh, rowwise = rows_fresh;
            r.call(fortran, L_{});
            r.call(col, CblasColMajor);
            r.call(rowwise, CblasRowMajor);
            const state<T> want = by_rows(col, rows_fresh, st);
            const std::string d1 = differs(col, fortran), d2 = differs(rowwise, want);
            if (!d1.empty() || !d2.empty() || reports) {
                ADD_FAILURE() << r.name << " flags " << flags << ": column-major differs from Fortran in" << d1
                              << "; row-major differs in" << d2 << "; " << reports << " reports";
                ++failed;
            }
        }
    }
}

// Every cblas_ name of the manifest has its row above.
TEST(CblasLayout, EveryManifestNameHasARow) {
    std::set<std::string> names;
    auto add = [&](const auto& rs) {
        for (const auto& r : rs) names.insert(r.name);
    };
    add(rows<float>()), add(rows<double>()), add(rows<ork_complex8>()), add(rows<ork_complex16>());
    std::ifstream in(ORK_SOURCE_DIR "/tests/manifest/cblas.txt");
    int listed = 0;
    for (std::string line; std::getline(in, line);)
        if (!line.empty() && line[0] != '#') {
            ++listed;
            const std::string name = line.substr(0, line.find(' '));
            EXPECT_TRUE(names.count(name)) << name << " has no row";
        }
    EXPECT_EQ(listed, int(names.size()));
}

}  // namespace

extern "C" void xerbla_(const char*, const ork_int32*, size_t) { ++reports; }
extern "C" void cblas_xerbla(int, const char*, const char*, ...) { ++reports; }
