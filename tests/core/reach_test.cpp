// Arguments whose address arithmetic would overflow are reported at their
// position before anything is touched, and the reference quick returns come
// first; every array lies between inaccessible pages.
#include <sys/mman.h>
#include <unistd.h>

#include <climits>
#include <cstdint>
#include <functional>

#include "testing.h"

namespace {

using namespace ot;
using u64 = std::uint64_t;

// Three arrays of 64 doubles (a, b, c), each on a page of its own between
// pages that cannot be read or written: a wrapped index that lands nearby
// faults, and every slot of every array is checked after the call.
class fenced {
  public:
    static constexpr std::size_t slots = 64;
    fenced() {
        page_ = std::size_t(sysconf(_SC_PAGESIZE));
        base_ = static_cast<char*>(mmap(nullptr, 7 * page_, PROT_NONE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0));
        if (base_ == MAP_FAILED) throw std::runtime_error("mmap");
        for (int k = 0; k < 3; ++k) {
            mprotect(base_ + (2 * k + 1) * page_, page_, PROT_READ | PROT_WRITE);
            for (std::size_t s = 0; s < slots; ++s) array(k)[s] = 0.25 + double(s + 100 * k);
        }
    }
    ~fenced() { munmap(base_, 7 * page_); }
    // the array starts at the end of its page, so that a write past it faults
    double* array(int k) const { return reinterpret_cast<double*>(base_ + (2 * k + 2) * page_) - slots; }
    bool untouched() const {
        for (int k = 0; k < 3; ++k)
            for (std::size_t s = 0; s < slots; ++s)
                if (array(k)[s] != 0.25 + double(s + 100 * k)) return false;
        return true;
    }

  private:
    std::size_t page_;
    char* base_;
};

struct overflow_case {
    const char* routine;
    int position;  // 0: a quick return, nothing reported
    std::function<void(double* a, double* b, double* c)> call;
};

constexpr idx big = idx(1) << 62;           // 2^62 elements: 2^65 bytes
constexpr idx most = INT64_MAX;             // 2^63 - 1
constexpr u64 all_ones = ~u64(0);           // 2^64 - 1 as an unsigned size

const overflow_case cases[] = {
    // the matrix products: C, A, B beyond a byte offset; quick returns first
    {"ork_blas_dgemm", 13, [](double* a, double* b, double* c) {
         const idx m = 1, n = 2, k = 1, ld = 1, ldc = most;
         const double one = 1, beta = 2;
         ork_blas_dgemm("N", "N", &m, &n, &k, &one, a, &ld, b, &ld, &beta, c, &ldc);
     }},
    {"ork_blas_dgemm", 8, [](double* a, double* b, double* c) {
         const idx m = 1, n = 1, k = 2, lda = (idx(1) << 61) + 1, ld = 2, ldc = 1;
         const double one = 1;
         ork_blas_dgemm("N", "N", &m, &n, &k, &one, a, &lda, b, &ld, &one, c, &ldc);
     }},
    {"ork_blas_dgemm", 0, [](double* a, double* b, double* c) {  // k = 0, beta = 1: at once
         const idx m = big, n = 1, k = 0, lda = big, ldb = 1, ldc = big;
         const double one = 1;
         ork_blas_dgemm("N", "N", &m, &n, &k, &one, a, &lda, b, &ldb, &one, c, &ldc);
     }},
    {"ork_blas_dgemm", 0, [](double* a, double* b, double* c) {  // alpha = 0, beta = 1: at once
         const idx m = big, n = 3, k = 5, lda = big, ldb = 5, ldc = big;
         const double zero = 0, one = 1;
         ork_blas_dgemm("N", "N", &m, &n, &k, &zero, a, &lda, b, &ldb, &one, c, &ldc);
     }},
    {"ork_blas_zgemm3m", 10, [](double* a, double* b, double* c) {
         const idx m = 1, n = 2, k = 1, ld = 1, ldb = big;
         const ork_complex16 one{1, 0};
         ork_blas_zgemm3m("N", "N", &m, &n, &k, &one, reinterpret_cast<ork_complex16*>(a), &ld,
                          reinterpret_cast<ork_complex16*>(b), &ldb, &one, reinterpret_cast<ork_complex16*>(c), &ld);
     }},
    {"ork_blas_dzgemm", 8, [](double* a, double* b, double* c) {
         const idx m = 1, n = 1, k = 2, lda = (idx(1) << 61) + 1, ldb = 2, ldc = 1;
         const ork_complex16 one{1, 0};
         ork_blas_dzgemm("N", "N", &m, &n, &k, &one, a, &lda, reinterpret_cast<ork_complex16*>(b), &ldb, &one,
                         reinterpret_cast<ork_complex16*>(c), &ldc);
     }},
    // level 1: increments
    {"ork_blas_ddot", 3, [](double* a, double* b, double* c) {
         const idx n = 2, incx = INT64_MIN, incy = 1;
         if (ork_blas_ddot(&n, a, &incx, b, &incy) != 0) c[0] = 0;
     }},
    {"ork_blas_daxpy", 6, [](double* a, double* b, double*) {
         const idx n = 3, incx = 1, incy = big;
         const double two = 2;
         ork_blas_daxpy(&n, &two, a, &incx, b, &incy);
     }},
    {"ork_blas_dasum", 3, [](double* a, double*, double* c) {
         const idx n = 5, incx = -(idx(1) << 61);
         if (ork_blas_dasum(&n, a, &incx) != 0) c[0] = 0;
     }},
    // level 2 and triangular
    {"ork_blas_dgemv", 6, [](double* a, double* b, double* c) {
         const idx m = 1, n = 3, lda = big, inc = 1;
         const double one = 1;
         ork_blas_dgemv("N", &m, &n, &one, a, &lda, b, &inc, &one, c, &inc);
     }},
    {"ork_blas_dger", 9, [](double* a, double* b, double* c) {
         const idx m = 1, n = 3, lda = big, inc = 1;
         const double one = 1;
         ork_blas_dger(&m, &n, &one, a, &inc, b, &inc, c, &lda);
     }},
    {"ork_blas_dsymv", 10, [](double* a, double* b, double* c) {
         const idx n = 2, lda = 2, inc = 1, incy = most;
         const double one = 1;
         ork_blas_dsymv("U", &n, &one, a, &lda, b, &inc, &one, c, &incy);
     }},
    {"ork_blas_dtrmv", 6, [](double* a, double* b, double*) {
         const idx n = 2, lda = big, inc = 1;
         ork_blas_dtrmv("U", "N", "N", &n, a, &lda, b, &inc);
     }},
    {"ork_blas_dtpmv", 4, [](double* a, double* b, double*) {  // n(n+1)/2 elements past a byte offset
         const idx n = idx(1) << 31, inc = 1;
         ork_blas_dtpmv("U", "N", "N", &n, a, b, &inc);
     }},
    // level 3
    {"ork_blas_dtrsm", 11, [](double* a, double* b, double*) {
         const idx m = 1, n = 3, lda = 1, ldb = big;
         const double one = 1;
         ork_blas_dtrsm("L", "U", "N", "N", &m, &n, &one, a, &lda, b, &ldb);
     }},
    {"ork_blas_dsyrk", 10, [](double* a, double*, double* c) {
         const idx n = 2, k = 1, lda = 2, ldc = big;
         const double one = 1, two = 2;
         ork_blas_dsyrk("U", "N", &n, &k, &one, a, &lda, &two, c, &ldc);
     }},
    {"ork_blas_dsymm", 7, [](double* a, double* b, double* c) {
         const idx m = 2, n = 1, lda = big, ld = 2;
         const double one = 1;
         ork_blas_dsymm("L", "U", &m, &n, &one, a, &lda, b, &ld, &one, c, &ld);
     }},
    // the small LAPACK routines
    {"ork_blas_dpotrf_l_small", 3, [](double* a, double*, double* c) {
         const idx n = 2, lda = big;
         idx info = 7;
         ork_blas_dpotrf_l_small(&n, a, &lda, &info);
         if (info != -3) c[0] = 0;  // also answered through info
     }},
    {"ork_blas_dlasr", 9, [](double* a, double* b, double* c) {
         const idx m = 2, n = 2, lda = big;
         ork_blas_dlasr("L", "V", "F", &m, &n, a, b, c, &lda);
     }},
    // transposition: unsigned sizes
    {"ork_trans_domatcopy", 9, [](double* a, double* b, double*) {
         const u64 rows = 2, cols = 2, lda = 2, ldb = all_ones;
         const double one = 1;
         ork_trans_domatcopy("R", "T", &rows, &cols, &one, a, &lda, b, &ldb);
     }},
    {"ork_trans_dimatcopy", 7, [](double* a, double*, double*) {
         const u64 rows = 2, cols = 3, lda = u64(1) << 61, ldb = 2;
         const double one = 1;
         ork_trans_dimatcopy("R", "T", &rows, &cols, &one, a, &lda, &ldb);
     }},
    {"ork_trans_domatcopy2", 8, [](double* a, double* b, double*) {
         const u64 rows = 2, cols = 2, lda = 2, stridea = u64(1) << 62, ldb = 2, strideb = 1;
         const double one = 1;
         ork_trans_domatcopy2("C", "N", &rows, &cols, &one, a, &lda, &stridea, b, &ldb, &strideb);
     }},
    {"ork_trans_domatadd", 13, [](double* a, double* b, double* c) {
         const u64 rows = 2, cols = 2, ld = 2, ldc = u64(1) << 63;
         const double one = 1;
         ork_trans_domatadd("R", "N", "N", &rows, &cols, &one, a, &ld, &one, b, &ld, c, &ldc);
     }},
};

TEST(AddressArithmetic, OverflowIsReportedBeforeAnythingIsTouched) {
    for (const overflow_case& t : cases) {
        SCOPED_TRACE(std::string(t.routine) + " position " + std::to_string(t.position));
        fenced f;
        error_reports reports;
        t.call(f.array(0), f.array(1), f.array(2));
        EXPECT_TRUE(reports.one(t.routine, t.position));
        EXPECT_TRUE(f.untouched());
    }
}

// The 32-bit entries widen INT_MIN as a signed value: a legal increment,
// and with one element nothing beyond it is read.
TEST(AddressArithmetic, SmallestIncrementThroughThe32BitEntries) {
    fenced f;
    const std::int32_t n = 1, incx = INT_MIN, incy = INT_MIN;
    // the kernel library's wrappers, which call libork's entries back
    const auto dot = kernel_symbol<decltype(&ork_blas_lp64_ddot)>("ork_blas_lp64_ddot");
    const auto axpy = kernel_symbol<decltype(&ork_blas_lp64_daxpy)>("ork_blas_lp64_daxpy");
    error_reports reports;
    const double want = f.array(0)[0] * f.array(1)[0];
    EXPECT_EQ(dot(&n, f.array(0), &incx, f.array(1), &incy), want);
    const double two = 2;
    axpy(&n, &two, f.array(0), &incx, f.array(2), &incy);
    EXPECT_EQ(f.array(2)[0], 200.25 + 2 * 0.25);
    EXPECT_TRUE(reports.one("", 0));
}

}  // namespace
