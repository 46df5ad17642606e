// Argument errors of libork's checked entries: the 1-based position of the
// first bad argument reaches the handler and ork_last_error(), and nothing is
// computed or written; the record per thread, and the handlers.
#include <numeric>
#include <thread>

#include "testing.h"

namespace {

using namespace ot;

// The level-1 and level-2 entries: a leading dimension short of its matrix,
// a missing vector of a non-empty call, letters the manifest test does not
// try, the first bad argument when several are, and valid calls reporting
// nothing (each argument alone spoilt, for every entry:
// tests/frame/manifest_test.cpp). Valid calls are 3 x 3 (lda 3).
TEST(ArgumentErrors, Level1And2Positions) {
    double a[64], x[8], y[8];
    ork_complex16 za[64], zx[8], zy[8];
    std::iota(a, a + 64, 1.0);
    std::iota(x, x + 8, -3.0);
    std::iota(y, y + 8, 0.5);
    for (int k = 0; k < 64; ++k) za[k] = {a[k], -a[k]}, zx[k % 8] = {x[k % 8], 1}, zy[k % 8] = {y[k % 8], -1};
    const double one = 1;
    const ork_complex16 zone{1, 0};
    const idx n = 3, k = 1, neg = -1, zero = 0, four = 4, two = 2, inc = 1;
    const idx* N = &n;
    expect_reports({
        {"ork_blas_dgemv", 0, [&] { ork_blas_dgemv("N", N, N, &one, a, &n, x, &inc, &one, y, &inc); }},
        {"ork_blas_dgemv", 6, [&] { ork_blas_dgemv("T", N, N, &one, a, &two, x, &inc, &one, y, &inc); }},
        {"ork_blas_dgemv", 11, [&] { ork_blas_dgemv("C", N, N, &one, a, &n, x, &inc, &one, y, &zero); }},
        {"ork_blas_dgemv", 1, [&] { ork_blas_dgemv("", N, N, &one, a, &n, x, &inc, &one, y, &inc); }},
        {"ork_blas_dgemv", 1, [&] { ork_blas_dgemv("X", &neg, &neg, &one, a, &zero, x, &zero, &one, y, &zero); }},
        {"ork_blas_dgemv", 6, [&] { ork_blas_dgemv("N", N, N, &one, a, &two, x, &inc, &one, y, &inc); }},
        {"ork_blas_dgemv", 6, [&] { ork_blas_dgemv("N", N, N, &one, a, &inc, x, &zero, &one, y, &zero); }},
        {"ork_blas_dgbmv", 0, [&] { ork_blas_dgbmv("N", N, N, &k, &k, &one, a, &n, x, &inc, &one, y, &inc); }},
        {"ork_blas_dgbmv", 8, [&] { ork_blas_dgbmv("N", N, N, &k, &k, &one, a, &two, x, &inc, &one, y, &inc); }},
        {"ork_blas_dsymv", 5, [&] { ork_blas_dsymv("U", N, &one, a, &two, x, &inc, &one, y, &inc); }},
        {"ork_blas_dsbmv", 6, [&] { ork_blas_dsbmv("U", N, &k, &one, a, &k, x, &inc, &one, y, &inc); }},
        {"ork_blas_dger", 9, [&] { ork_blas_dger(&four, N, &one, x, &inc, y, &inc, a, &n); }},
        {"ork_blas_zgeru", 9, [&] { ork_blas_zgeru(&four, N, &zone, zx, &inc, zy, &inc, za, &n); }},
        {"ork_blas_zgerc", 0, [&] { ork_blas_zgerc(N, N, &zone, zx, &inc, zy, &inc, za, &n); }},
        {"ork_blas_dsyr", 7, [&] { ork_blas_dsyr("U", N, &one, x, &inc, a, &two); }},
        {"ork_blas_daxpy", 3, [&] { ork_blas_daxpy(N, &one, nullptr, &inc, y, &inc); }},
        {"ork_blas_daxpy", 5, [&] { ork_blas_daxpy(N, &one, x, &inc, nullptr, &inc); }},
        {"ork_blas_daxpy", 0, [&] { ork_blas_daxpy(&zero, &one, nullptr, &inc, nullptr, &inc); }},  // n = 0: no vectors needed
        {"ork_blas_ddot", 4, [&] { EXPECT_EQ(ork_blas_ddot(N, x, &inc, nullptr, &inc), 0.0); }},
        {"ork_blas_dsyr2", 9, [&] { ork_blas_dsyr2("U", N, &one, x, &inc, y, &inc, a, &two); }},
        {"ork_blas_zher", 7, [&] { ork_blas_zher("L", N, &one, zx, &inc, za, &two); }},
        {"ork_blas_zher2", 9, [&] { ork_blas_zher2("U", N, &zone, zx, &inc, zy, &inc, za, &two); }},
        {"ork_blas_zhpr2", 0, [&] { ork_blas_zhpr2("U", N, &zone, zx, &inc, zy, &inc, za); }},
    }, [&] { return bytes_of(a, x, y, za, zx, zy); });
}

// The record is per thread; the default handler prints message 1 on
// standard error; a null handler is silent but the record is kept.
TEST(ArgumentErrors, RecordPerThreadAndHandlers) {
    error_reports reports;
    const idx n = 2, one = 1;
    const double alpha = 1;
    double y[2] = {0, 0};
    ork_blas_daxpy(&n, &alpha, nullptr, &one, y, &one);
    EXPECT_TRUE(reports.one("ork_blas_daxpy", 3));
    int other = -1;
    std::thread([&] { other = ork_last_error(); }).join();
    EXPECT_EQ(other, 0);
    EXPECT_EQ(ork_last_error(), 3);

    ork_set_error_handler(reports.previous);  // the default, as the fixture found it
    ::testing::internal::CaptureStderr();
    ork_blas_daxpy(&n, &alpha, nullptr, &one, y, &one);
    EXPECT_EQ(::testing::internal::GetCapturedStderr(),
              std::string(ork_serv_ork_get_msg(1, 2, 3, "ork_blas_daxpy")) + "\n");
    ork_set_error_handler(nullptr);
    ::testing::internal::CaptureStderr();
    ork_blas_daxpy(&n, &alpha, nullptr, &one, y, &one);
    EXPECT_EQ(::testing::internal::GetCapturedStderr(), "");
    EXPECT_EQ(ork_last_error(), 3);
    ork_set_error_handler(&error_reports::capture);
}

}  // namespace
