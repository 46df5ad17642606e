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

// The reference positions (gemm_testing.h: argument_errors).
TYPED_TEST(GemmEntry, ArgumentErrors) { argument_errors<TypeParam, TypeParam>(gk<TypeParam>::entry_name, gk<TypeParam>::entry); }

}  // namespace
