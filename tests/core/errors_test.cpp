// Argument errors of libork's checked entries: the 1-based position of the
// first bad argument reaches the handler and ork_last_error(), and nothing is
// computed or written.
#include <thread>

#include "testing.h"

namespace {

using ot::error_reports;

class ArgumentErrors : public ::testing::Test {
protected:
    error_reports reports;

    // Runs call(); it must report exactly `position` for `routine`.
    template <class F> void expect_error(const char* routine, int position, F call) {
        reports.seen.clear();
        call();
        EXPECT_TRUE(reports.one(routine, position)) << routine << " position " << position;
        EXPECT_EQ(ork_last_error(), position);
        EXPECT_STREQ(ork_last_error_routine(), routine);
    }
};

// A valid 3x2 dgemv call; each case spoils one argument.
TEST_F(ArgumentErrors, Dgemv) {
    const double a[9] = {1, 2, 3, 4, 5, 6, 7, 8, 9}, x[3] = {1, 2, 3}, alpha = 2, beta = 0.5;
    struct call {
        const char* trans;
        ork_int m, n, lda, incx, incy;
        int position;
    };
    for (call c : {call{"X", 3, 2, 3, 1, 1, 1}, call{"", 3, 2, 3, 1, 1, 1}, call{"N", -1, 2, 3, 1, 1, 2},
                   call{"T", 3, -1, 3, 1, 1, 3}, call{"N", 3, 2, 2, 1, 1, 6}, call{"T", 3, 2, 2, 1, 1, 6},
                   call{"N", 0, 2, 0, 1, 1, 6}, call{"N", 3, 2, 3, 0, 1, 8}, call{"N", 3, 2, 3, 1, 0, 11},
                   call{"X", -1, -1, 0, 0, 0, 1}, call{"N", 3, 2, 1, 0, 0, 6}}) {
        double y[4] = {NAN, 7, 8, 9};
        expect_error("ork_blas_dgemv", c.position, [&] {
            ork_blas_dgemv(c.trans, &c.m, &c.n, &alpha, a, &c.lda, x, &c.incx, &beta, y, &c.incy);
        });
        EXPECT_TRUE(std::isnan(y[0]) && y[1] == 7 && y[2] == 8 && y[3] == 9) << c.position;
    }
    // a good call clears the record
    reports.seen.clear();
    double y[3] = {0, 0, 0};
    const ork_int m = 3, n = 2, lda = 3, one = 1;
    ork_blas_dgemv("N", &m, &n, &alpha, a, &lda, x, &one, &beta, y, &one);
    EXPECT_EQ(ork_last_error(), 0);
    EXPECT_TRUE(reports.seen.empty());
}

TEST_F(ArgumentErrors, DsyrAndLevel1) {
    const double x[3] = {1, 2, 3}, alpha = 1;
    double a[9] = {1, 2, 3, 4, 5, 6, 7, 8, 9};
    const double a0[9] = {1, 2, 3, 4, 5, 6, 7, 8, 9};
    struct call {
        const char* uplo;
        ork_int n, incx, lda;
        int position;
    };
    for (call c : {call{"Q", 3, 1, 3, 1}, call{"U", -1, 1, 3, 2}, call{"L", 3, 0, 3, 5}, call{"u", 3, 1, 2, 7},
                   call{"l", 0, 1, 0, 7}}) {
        expect_error("ork_blas_dsyr", c.position, [&] { ork_blas_dsyr(c.uplo, &c.n, &alpha, x, &c.incx, a, &c.lda); });
        EXPECT_TRUE(std::equal(a, a + 9, a0)) << c.position;
    }
    double y[3] = {4, 5, 6};
    const ork_int n = 3, zero = 0, one = 1;
    expect_error("ork_blas_daxpy", 3, [&] { ork_blas_daxpy(&n, &alpha, nullptr, &one, y, &one); });
    expect_error("ork_blas_daxpy", 5, [&] { ork_blas_daxpy(&n, &alpha, x, &one, nullptr, &one); });
    expect_error("ork_blas_daxpy", 1, [&] { ork_blas_daxpy(nullptr, &alpha, x, &one, y, &one); });
    expect_error("ork_blas_ddot", 4, [&] { EXPECT_EQ(ork_blas_ddot(&n, x, &one, nullptr, &one), 0.0); });
    EXPECT_TRUE(y[0] == 4 && y[1] == 5 && y[2] == 6);
    // vectors are not needed when n <= 0
    reports.seen.clear();
    ork_blas_daxpy(&zero, &alpha, nullptr, &one, nullptr, &one);
    EXPECT_TRUE(reports.seen.empty());
    EXPECT_EQ(ork_last_error(), 0);
}

// The record is per thread; the default handler prints message 1 on
// standard error; a null handler is silent but the record is kept.
TEST_F(ArgumentErrors, RecordPerThreadAndHandlers) {
    const ork_int n = 2, one = 1;
    const double alpha = 1;
    double y[2] = {0, 0};
    expect_error("ork_blas_daxpy", 3, [&] { ork_blas_daxpy(&n, &alpha, nullptr, &one, y, &one); });
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
