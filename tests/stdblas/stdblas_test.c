/* libblas.so.3 beyond what the reference testers see: where error reports
 * go (Fortran, 64-bit and CBLAS calls, and libork's own callers afterwards),
 * complex function results, the 0-based CBLAS index and the small helpers. */
#include <complex.h>
#include <stdio.h>
#include <string.h>

#include "ork/blas.h"
#include "ork/cblas.h"
#include "ork/core.h"
#include "ork/fblas.h"

#include "check.h"

/* The last report, by whichever handler received it. */
static struct {
    char via[16], name[40];
    long info;
    int row_major, from_c;
} got;
static void reset(void) { memset(&got, 0, sizeof got); }
static void record(const char *via, const char *name, size_t len, long info) {
    snprintf(got.via, sizeof got.via, "%s", via);
    snprintf(got.name, sizeof got.name, "%.*s", (int)len, name);
    got.info = info;
    got.row_major = RowMajorStrg;
    got.from_c = CBLAS_CallFromC;
}
/* This program's own handlers replace the library's, as test programs do. */
void xerbla_(const char *name, const ork_int32 *info, size_t len) { record("xerbla", name, len, *info); }
void xerbla_64_(const char *name, const ork_int *info, size_t len) { record("xerbla_64", name, len, (long)*info); }
void cblas_xerbla(int info, const char *rout, const char *form, ...) {
    (void)form;
    record("cblas_xerbla", rout, strlen(rout), info);
}
static void ork_handler(const char *routine, int position) { record("ork", routine, strlen(routine), position); }

static void expect(const char *via, const char *name, long info, int row_major, int from_c) {
    CHECK(!strcmp(got.via, via) && !strcmp(got.name, name) && got.info == info && got.row_major == row_major &&
              got.from_c == from_c,
          "expected %s(%s, %ld) row %d C %d, got %s(%s, %ld) row %d C %d", via, name, info, row_major, from_c,
          got.via, got.name, got.info, got.row_major, got.from_c);
    CHECK(RowMajorStrg == 0 && CBLAS_CallFromC == 0, "flags left set");
    reset();
}

static void error_routes(void) {
    double a[16] = {0}, b[16] = {0}, c[16] = {0}, one = 1;
    ork_int32 m = 2, n = 2, k = 2, bad = 1, two = 2, zero = 0;
    dgemm_("N", "N", &m, &n, &k, &one, a, &bad, b, &two, &one, c, &two, 1, 1);
    expect("xerbla", "DGEMM ", 8, 0, 0);
    ork_int m64 = 2, bad64 = 1, two64 = 2;
    dgemm_64_("N", "N", &m64, &m64, &m64, &one, a, &two64, b, &two64, &one, c, &bad64, 1, 1);
    expect("xerbla_64", "DGEMM ", 13, 0, 0);
    ork_complex16 z[4] = {{0, 0}}, zone = {1, 0};
    zhemv_("X", &n, &zone, z, &two, z, &bad, &zone, z, &bad, 1);
    expect("xerbla", "ZHEMV ", 1, 0, 0);

    /* CBLAS: layout and flags at their own positions; the rest reported by
     * the column-major code at its position, with the flags set meanwhile
     * (row-major: the transposed call, B and A swapped). */
    cblas_dgemm(99, CblasNoTrans, CblasNoTrans, 2, 2, 2, 1, a, 2, b, 2, 0, c, 2);
    expect("cblas_xerbla", "cblas_dgemm", 1, 0, 1);
    cblas_dtrsm(CblasRowMajor, CblasLeft, CblasUpper, 7, CblasUnit, 2, 2, 1, a, 2, b, 2);
    expect("cblas_xerbla", "cblas_dtrsm", 4, 1, 1);
    cblas_dgemm(CblasRowMajor, CblasNoTrans, CblasNoTrans, 2, 3, 4, 1, a, 3, b, 3, 0, c, 3);
    expect("xerbla", "DGEMM ", 10, 1, 1);
    cblas_zgerc(CblasRowMajor, 2, 2, &zone, z, 1, z, 0, z, 2);
    expect("xerbla", "ZGERC ", 5, 1, 1);
    cblas_zhemv(CblasColMajor, CblasUpper, 2, &zone, z, 1, z, 1, &zone, z, 1);
    expect("xerbla", "ZHEMV ", 5, 0, 1);

    /* the name as an array, blank padded to 32 */
    ork_int32 five = 5, info = 3;
    xerbla_array_("DGEMMXYZ", &five, &info, 8);
    expect("xerbla", "DGEMM                           ", 3, 0, 0);

    /* libork's own callers keep their handler afterwards */
    ork_error_handler old = ork_set_error_handler(ork_handler);
    ork_int bad_ld = 1, n64 = 2;
    ork_blas_dgemm("N", "N", &n64, &n64, &n64, &one, a, &bad_ld, b, &n64, &one, c, &n64);
    expect("ork", "ork_blas_dgemm", 8, 0, 0);
    ork_set_error_handler(old);
    (void)zero;
}

static void values(void) {
    ork_complex16 x[3] = {{1, 2}, {3, -1}, {0.5, 4}}, y[3] = {{2, -1}, {1, 1}, {-3, 2}};
    double complex zc = 0, zu = 0;
    for (int i = 0; i < 3; ++i) {
        double complex xi = x[i].re + x[i].im * I, yi = y[i].re + y[i].im * I;
        zc += conj(xi) * yi;
        zu += xi * yi;
    }
    ork_int32 n = 3, one = 1, minus = -1;
    ork_int n64 = 3, one64 = 1;
    double complex c = zdotc_(&n, x, &one, y, &one), u = zdotu_(&n, x, &one, y, &one);
    double complex c64 = zdotc_64_(&n64, x, &one64, y, &one64);
    CHECK(c == zc && u == zu && c64 == zc, "zdotc/zdotu results");
    ork_complex8 xs[2] = {{1, 2}, {3, 4}}, ys[2] = {{1, -1}, {2, 0.5f}};
    float complex cu = cdotu_(&(ork_int32){2}, xs, &one, ys, &one), sub;
    cdotusub_(&(ork_int32){2}, xs, &one, ys, &one, &sub);
    CHECK(cu == (1 + 2 * I) * (1 - I) + (3 + 4 * I) * (2 + 0.5f * I) && sub == cu, "cdotu, cdotusub");

    double v[4] = {1, -7, 7, 2};
    ork_int32 four = 4, imax;
    CHECK(idamax_(&four, v, &one) == 2, "idamax_ is 1-based, first of equals");
    idamaxsub_(&four, v, &one, &imax);
    CHECK(imax == 2 && cblas_idamax(4, v, 1) == 1 && cblas_idamax(0, v, 1) == 0, "idamaxsub_, cblas_idamax");
    double s;
    dasumsub_(&four, v, &minus, &s);
    CHECK(s == 17, "dasumsub_ with a negative increment");
    ork_complex8 w = {-1.5f, 2};
    CHECK(scabs1_(&w) == 3.5f && cblas_scabs1(&w) == 3.5f, "scabs1");
    CHECK(lsame_("u", "U", 1, 1) && lsame_("Upper", "u", 5, 1) && !lsame_("L", "U", 1, 1), "lsame_");
}

int main(void) {
    error_routes();
    values();
    return verdict();
}
