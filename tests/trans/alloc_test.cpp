// No transposition routine takes memory: every kernel-library dispatcher,
// including the in-place transposition of non-square matrices, runs while
// this program counts the calls to the C allocator (which ork_serv_allocate
// and ork_serv_ork_malloc use as well). It replaces malloc and friends, so it
// does not run under AddressSanitizer, which owns them there.
#include <malloc.h>

#include <atomic>

#include "trans_testing.h"

#if defined(__SANITIZE_ADDRESS__)
#define OT_COUNTS_ALLOCATIONS 0
#else
#define OT_COUNTS_ALLOCATIONS 1
#endif

namespace {
std::atomic<bool> counting{false};
std::atomic<long> allocations{0};
[[maybe_unused]] void note() {
    if (counting.load(std::memory_order_relaxed)) allocations.fetch_add(1, std::memory_order_relaxed);
}
}  // namespace

#if OT_COUNTS_ALLOCATIONS
extern "C" {
void* __libc_malloc(size_t);
void* __libc_calloc(size_t, size_t);
void* __libc_realloc(void*, size_t);
void* __libc_memalign(size_t, size_t);
void* malloc(size_t n) {
    note();
    return __libc_malloc(n);
}
void* calloc(size_t k, size_t n) {
    note();
    return __libc_calloc(k, n);
}
void* realloc(void* p, size_t n) {
    note();
    return __libc_realloc(p, n);
}
void* memalign(size_t a, size_t n) {
    note();
    return __libc_memalign(a, n);
}
void* aligned_alloc(size_t a, size_t n) {
    note();
    return __libc_memalign(a, n);
}
int posix_memalign(void** p, size_t a, size_t n) {
    note();
    *p = __libc_memalign(a, n);
    return *p ? 0 : 12;
}
}
#endif

namespace {

using namespace ot;
using u64 = std::uint64_t;


template <class T> class TransAllocation : public ::testing::Test {};
TYPED_TEST_SUITE(TransAllocation, ElementTypes);

TYPED_TEST(TransAllocation, NoneAnywhere) {
    if (!OT_COUNTS_ALLOCATIONS) GTEST_SKIP() << "the sanitizer owns malloc";
    using T = TypeParam;
    const std::string prefix = tr<T>::prefix;
    const auto copy2 = kernel_symbol<decltype(tr<T>::omatcopy2)>((prefix + "omatcopy2").c_str());
    const auto inplace = kernel_symbol<decltype(tr<T>::imatcopy)>((prefix + "imatcopy").c_str());
    const auto sum = kernel_symbol<decltype(tr<T>::omatadd)>((prefix + "omatadd").c_str());
    const u64 m = 37, n = 23, one = 1, big = 64;
    std::vector<T> a(big * big, make<T>(1, 2)), b(big * big), c(big * big);
    const T alpha = make<T>(2, 1);
    // the check must be able to see an allocation
    counting = true;
    void* probe = std::malloc(16);
    counting = false;
    std::free(probe);
    ASSERT_EQ(allocations.exchange(0), 1);
    counting = true;
    for (const char* t : {"N", "T", "R", "C"})
        for (const char* o : {"R", "C"}) {
            copy2(o, t, &m, &n, &alpha, a.data(), &big, &one, b.data(), &big, &one);
            // row length before and after, as stored in this ordering
            const bool row = o[0] == 'R', tp = t[0] == 'T' || t[0] == 'C';
            const u64 la = row ? n : m, natural = row == tp ? m : n;
            for (u64 lb : {natural, natural + 4}) inplace(o, t, &m, &n, &alpha, a.data(), &la, &lb);
            inplace(o, t, &m, &m, &alpha, a.data(), &m, &m);
            sum(o, "N", t, &m, &n, &alpha, a.data(), &big, &alpha, b.data(), &big, c.data(), &big);
            sum(o, "N", t, &m, &n, &alpha, c.data(), &big, &alpha, b.data(), &big, c.data(), &big);
        }
    counting = false;
    EXPECT_EQ(allocations.load(), 0);
}

}  // namespace
