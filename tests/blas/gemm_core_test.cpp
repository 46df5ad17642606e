// libork's ?gemm entries: the reference argument checks with the position
// of the first bad argument (nothing written), and the split over threads,
// which must give the bits of one thread whether it cuts C into column or
// row slabs.
#include <string>

#include "gemm_testing.h"

using namespace ot;

namespace {

template <class T> class GemmEntry : public ::testing::Test {};
TYPED_TEST_SUITE(GemmEntry, ElementTypes);

// Products just worth splitting (m*n*k >= 2^21): n >= 16 cuts column slabs of
// multiples of 8, a narrow n row slabs; odd m and n mod 4 leftover columns
// fall in the last slab. Random data, so that any other order of sums
// would show in the bits; each result is also checked for correctness.
TYPED_TEST(GemmEntry, TwoThreadsGiveTheBitsOfOne) {
    using T = TypeParam;
    const std::size_t alpha = scalars<T>().size() - 1;
    const gcase cases[] = {
        {128, 160, 104, "N", "N", alpha, 1},
        {129, 161, 104, "T", "C", 3, 0, 1, 0, 2, true},
        {1040, 8, 256, "N", "T", alpha, 3},
        {1041, 9, 232, "C", "N", 2, 2, 0, 3, 1, true},
    };
    std::mt19937_64 g(21);
    for (const gcase& c : cases) {
        const std::mt19937_64 replay = g;
        const gmat<T> one = [&] {
            threads_scope scope(1);
            return run<T>(gk<T>::entry, c, g);
        }();
        g = replay;
        const gmat<T> two = [&] {
            threads_scope scope(2);
            return run<T>(gk<T>::entry, c, g, false);
        }();
        EXPECT_TRUE(same_all(two.buf.snapshot(), one.buf.snapshot())) << c;
    }
}

// Reference positions: transa 1, transb 2, m 3, n 4, k 5, lda 8 (below
// max(1, rows of A as stored)), ldb 10, ldc 13 (below max(1, m)); the first
// bad argument is the one reported, and C is not written. The boundary
// values themselves are accepted and clear the record.
TYPED_TEST(GemmEntry, ArgumentErrors) {
    using T = TypeParam;
    struct call {
        const char *ta, *tb;
        idx m, n, k, lda, ldb, ldc;
        int position;
    };
    const call calls[] = {
        {"X", "N", 3, 2, 4, 3, 4, 3, 1},   {"", "N", 3, 2, 4, 3, 4, 3, 1},    {"N", "/", 3, 2, 4, 3, 4, 3, 2},
        {"N", "N", -1, 2, 4, 3, 4, 3, 3},  {"T", "N", 3, -1, 4, 4, 4, 3, 4},  {"N", "T", 3, 2, -1, 3, 2, 3, 5},
        {"N", "N", 3, 2, 4, 2, 4, 3, 8},   {"T", "N", 3, 2, 4, 3, 4, 3, 8},   {"C", "N", 0, 2, 4, 3, 4, 1, 8},
        {"N", "N", 0, 2, 4, 0, 4, 1, 8},   {"N", "N", 3, 2, 4, 3, 3, 3, 10},  {"N", "T", 3, 2, 4, 3, 1, 3, 10},
        {"N", "C", 3, 2, 0, 3, 1, 3, 10},  {"N", "N", 3, 2, 0, 3, 0, 3, 10},  {"N", "N", 3, 2, 4, 3, 4, 2, 13},
        {"N", "N", 0, 2, 4, 1, 4, 0, 13},  {"X", "?", -1, -1, -1, 0, 0, 0, 1}, {"N", "N", 3, -2, -4, 0, 0, 0, 4},
        {"t", "c", 3, 2, 4, 4, 2, 3, 0},   {"n", "n", 3, 2, 4, 3, 4, 3, 0},   {"N", "N", 0, 0, 0, 1, 1, 1, 0},
    };
    error_reports reports;
    std::mt19937_64 g(22);
    std::vector<T> a(16), b(16);
    for (T& x : a) x = rnd<T>(g);
    for (T& x : b) x = rnd<T>(g);
    const T alpha = make<T>(2), beta = make<T>(0);
    for (const call& c : calls) {
        SCOPED_TRACE(::testing::Message() << c.ta << " " << c.tb << " m=" << c.m << " n=" << c.n << " k=" << c.k
                                          << " lda=" << c.lda << " ldb=" << c.ldb << " ldc=" << c.ldc);
        buffer<T> C(16, 0, nan_of<T>());
        reports.seen.clear();
        gk<T>::entry(c.ta, c.tb, &c.m, &c.n, &c.k, &alpha, a.data(), &c.lda, b.data(), &c.ldb, &beta, C.data(),
                     &c.ldc);
        EXPECT_EQ(ork_last_error(), c.position);
        EXPECT_TRUE(reports.one(gk<T>::entry_name, c.position));
        if (c.position == 0) continue;
        EXPECT_STREQ(ork_last_error_routine(), gk<T>::entry_name);
        EXPECT_TRUE(same_all(C.snapshot(), std::vector<T>(16, nan_of<T>())));
    }
}

}  // namespace
