// fork() after threaded calls: in the child and in the child's child every
// threaded family completes, gives the parent's bits and still runs on two
// threads; also when another thread is inside a threaded call at the fork,
// whose call then finishes with the right bits in the parent.
#include <gtest/gtest.h>

#include <atomic>

#include "threads_testing.h"

using namespace tt;

namespace {

// A hang fails the test instead of stalling the suite.
constexpr double time_limit_s = 120;
// A product long enough for the thread count to be sampled while it runs.
constexpr idx large = 700;

struct references {
    std::vector<bytes> out;
    bytes large_product;
};

// What every family gives in this process at two threads.
const references& parent_results() {
    static const references r = [] {
        references x;
        for (const family& f : families()) x.out.push_back(f.run());
        x.large_product = dgemm_n(large);
        return x;
    }();
    return r;
}

// In a forked process: every family against the parent's bits, then the
// large product, during which the other threads must have taken processor
// time; then (depth > 0) the same in a child of this one. 0 when all holds.
int check_after_fork(int depth) {
    const references& r = parent_results();
    for (std::size_t i = 0; i < families().size(); ++i) {
        if (families()[i].run() != r.out[i]) {
            std::fprintf(stderr, "after fork (depth %d): %s differs from the parent\n", depth, families()[i].name);
            return 10 + int(i);
        }
    }
    // Processor time is counted in ticks of 10 ms, and a wide kernel library
    // finishes the large product in about that: repeat it (bits checked each
    // time) until the other threads have been charged a tick, or give up.
    const long before = other_threads_ticks();
    for (int rep = 0; rep < 40 && other_threads_ticks() - before < 1; ++rep)
        if (dgemm_n(large) != r.large_product) return 2;
    if (other_threads_ticks() - before < 1) {
        std::fprintf(stderr, "after fork (depth %d): the large product ran on one thread\n", depth);
        return 3;
    }
    if (depth == 0) return 0;
    const outcome o = in_child([depth] { return check_after_fork(depth - 1); }, time_limit_s);
    if (o.timed_out) return 4;
    if (o.status != 0) return o.status;
    if (o.most_threads < 2) return 5;
    return 0;
}

struct Fork : ::testing::Test {
    void SetUp() override {
        ork_set_num_threads(2);
        parent_results();  // also starts the parent's helper threads
    }
    void TearDown() override { ork_set_num_threads(0); }
};

TEST_F(Fork, ChildAndGrandchildAfterThreadedCalls) {
    const outcome o = in_child([] { return check_after_fork(1); }, 2 * time_limit_s);
    EXPECT_FALSE(o.timed_out);
    EXPECT_EQ(o.status, 0);
    EXPECT_GE(o.most_threads, 2) << "the child never had a second thread";
    // and the parent goes on as before
    for (std::size_t i = 0; i < families().size(); ++i)
        EXPECT_EQ(families()[i].run(), parent_results().out[i]) << families()[i].name;
}

TEST_F(Fork, WhileAnotherThreadIsInsideAThreadedCall) {
#if defined(__SANITIZE_ADDRESS__)
    // The compiler's address-sanitizer runtime takes no lock of its
    // allocator around fork: a child forked while the computing thread is
    // inside malloc waits forever on that thread's size-class lock (seen in
    // the child's first allocation). glibc's malloc, in the plain build,
    // locks around fork, and this test runs there.
    GTEST_SKIP() << "the sanitizer's allocator is not fork-safe while another thread allocates";
#endif
    const idx n = 600;
    const bytes expected = dgemm_n(n);
    std::atomic<bool> stop{false}, inside{false};
    std::atomic<int> calls{0}, wrong{0};
    std::thread computing([&] {
        while (!stop) {
            inside = true;
            const bool same = dgemm_n(n) == expected;
            inside = false;
            if (!same) ++wrong;
            ++calls;
        }
    });
    int mid_call = 0;
    for (int round = 0; round < 3; ++round) {
        while (!inside) std::this_thread::yield();
        std::this_thread::sleep_for(std::chrono::milliseconds(5));
        const int before = calls;
        const bool was_inside = inside;
        const pid_t pid = fork_child([] { return check_after_fork(1); });
        ASSERT_GT(pid, 0);
        if (was_inside && inside && calls == before) ++mid_call;
        const outcome o = watch(pid, 2 * time_limit_s);
        EXPECT_FALSE(o.timed_out) << "round " << round;
        EXPECT_EQ(o.status, 0) << "round " << round;
        EXPECT_GE(o.most_threads, 2) << "round " << round;
        // the computing thread's calls go on finishing in the parent
        const int seen = calls;
        const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(int(time_limit_s));
        while (calls == seen && std::chrono::steady_clock::now() < end)
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
        EXPECT_GT(calls, seen) << "the computing thread hangs after fork, round " << round;
    }
    stop = true;
    computing.join();
    EXPECT_EQ(wrong, 0);
    EXPECT_GE(mid_call, 1) << "no fork happened during the other thread's call";
}

}  // namespace
