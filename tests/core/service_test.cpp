// The core layer's own services: loading the kernel library, flags, memory,
// the lock, processor overrides, the message catalogue and the version text.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <set>
#include <string>
#include <thread>
#include <vector>

#include "ork/blas_kernels.h"
#include "ork/ork.h"

namespace {

// The library of the generation assumed for this processor (the best it
// runs, or a lower ORK_CPU_DETECT), found next to libork.
TEST(Loader, LoadsTheKernelLibraryOfTheAssumedGeneration) {
    EXPECT_EQ(ork_init(), 0);
    EXPECT_EQ(ork_init(), 0);  // once loaded, stays loaded
    const int g = ork_cpu_generation();
    EXPECT_EQ(ork_kernel_generation(), g);
    auto version = reinterpret_cast<decltype(&dll_cpu_version)>(ork_kernel_symbol("dll_cpu_version"));
    ASSERT_NE(version, nullptr);
    EXPECT_EQ(version(), g);
    const std::string file = std::string("/libork_") + ork_cpu_generation_name(g) + ".so";
    EXPECT_NE(std::string(ork_kernel_library_path()).find(file), std::string::npos) << ork_kernel_library_path();
    EXPECT_EQ(ork_kernel_symbol("ork_blas_no_such_routine"), nullptr);
    EXPECT_STREQ(ork_cpu_generation_name(ORK_CPU_BASELINE), "baseline");
    EXPECT_STREQ(ork_cpu_generation_name(ORK_CPU_AVX2), "avx2");
    EXPECT_STREQ(ork_cpu_generation_name(ORK_CPU_AVX512), "avx512");
    EXPECT_STREQ(ork_cpu_generation_name(42), "unknown");
    EXPECT_STREQ(ork_cpu_generation_name(-1), "unknown");
}

TEST(Service, LsameReadsTheFirstLetterIgnoringCase) {
    struct c {
        const char *a, *b;
        bool same;
    };
    for (c t : {c{"a", "A", true}, c{"A", "a", true}, c{"a", "b", false}, c{"No tranpose", "N", true},
                c{"no", "N", true}, c{"Transpose", "t", true}, c{"C", "N", false}, c{"u", "L", false}})
        EXPECT_EQ(ork_serv_lsame(t.a, t.b, int(std::strlen(t.a)), 1) != 0, t.same) << t.a << " / " << t.b;
}

// Every positive alignment is honoured, a power of two or not: every one
// from 1 to 4096, at sizes from 1 byte up; every block is written over its
// whole size and freed by its own function (the sanitizer build checks both),
// and blocks alive together do not overlap. Zero and negative alignments get
// malloc's 16 bytes.
TEST(Service, AlignedAllocation) {
    using alloc_fn = void* (*)(size_t, int);
    using free_fn = void (*)(void*);
    const std::pair<alloc_fn, free_fn> pairs[] = {{ork_serv_allocate, ork_serv_deallocate},
                                                  {ork_serv_ork_malloc, ork_serv_ork_free}};
    const std::size_t sizes[] = {1, 2, 7, 100, 4097};
    for (auto [take, give] : pairs)
        for (long align = -2; align <= 4096; ++align) {
            const std::uintptr_t want = align > 0 ? std::uintptr_t(align) : 16;
            void* blocks[std::size(sizes)];
            for (std::size_t s = 0; s < std::size(sizes); ++s) {
                blocks[s] = take(sizes[s], int(align));
                ASSERT_NE(blocks[s], nullptr) << align << " " << sizes[s];
                EXPECT_EQ(reinterpret_cast<std::uintptr_t>(blocks[s]) % want, 0u) << align << " " << sizes[s];
                std::memset(blocks[s], int(s + 1), sizes[s]);
            }
            for (std::size_t s = 0; s < std::size(sizes); ++s) {  // each still holds its own bytes
                const auto* p = static_cast<const unsigned char*>(blocks[s]);
                EXPECT_TRUE(std::all_of(p, p + sizes[s], [&](unsigned char b) { return b == s + 1; }))
                    << align << " " << sizes[s];
                give(blocks[s]);
            }
        }
    for (long align : {3L, 96L, 200L, 4096L}) {  // a large block too
        const std::size_t size = std::size_t(1) << 20;
        void* p = ork_serv_allocate(size, int(align));
        ASSERT_NE(p, nullptr);
        EXPECT_EQ(reinterpret_cast<std::uintptr_t>(p) % std::uintptr_t(align), 0u) << align;
        std::memset(p, 3, size);
        ork_serv_deallocate(p);
    }
    ork_serv_deallocate(nullptr);
    EXPECT_EQ(ork_serv_allocate(SIZE_MAX - 8, 64), nullptr);  // size plus room does not wrap
}

// The nth allocation from the call on fails, once; the count sees every one.
TEST(Service, AllocationFailureInjection) {
    const long before = ork_allocation_count();
    ork_fail_allocation(3);
    void* p[4];
    for (void*& q : p) q = ork_serv_allocate(64, 64);
    EXPECT_NE(p[0], nullptr);
    EXPECT_NE(p[1], nullptr);
    EXPECT_EQ(p[2], nullptr);
    EXPECT_NE(p[3], nullptr);
    EXPECT_EQ(ork_allocation_count() - before, 4);
    for (void* q : p) ork_serv_deallocate(q);
    ork_fail_allocation(0);
    void* r = ork_serv_ork_malloc(8, 8);
    EXPECT_NE(r, nullptr);
    ork_serv_ork_free(r);
}

TEST(Service, LockSerialisesThreads) {
    long counter = 0;
    std::vector<std::thread> threads;
    for (int t = 0; t < 4; ++t)
        threads.emplace_back([&] {
            for (int i = 0; i < 20000; ++i) {
                ork_serv_lock();
                counter = counter + 1;
                ork_serv_unlock();
            }
        });
    for (auto& t : threads) t.join();
    EXPECT_EQ(counter, 80000);
}

TEST(Service, ForcedProcessorAnswers) {
    const int loaded = ork_kernel_generation();
    EXPECT_EQ(ork_serv_cpu_detect(), loaded);  // the generation of the loaded library
    const int barcelona = ork_serv_cpuisitbarcelona();
    ork_force_cpu(2, 1);
    EXPECT_EQ(ork_serv_cpu_detect(), 2);
    EXPECT_EQ(ork_serv_cpuisitbarcelona(), 1);
    ork_force_cpu(1, 0);
    EXPECT_EQ(ork_serv_cpu_detect(), 1);
    EXPECT_EQ(ork_serv_cpuisitbarcelona(), 0);
    ork_force_cpu(-1, -1);
    EXPECT_EQ(ork_serv_cpu_detect(), loaded);
    EXPECT_EQ(ork_serv_cpuisitbarcelona(), barcelona);
}

TEST(Messages, Catalogue) {
    std::set<std::string> texts;
    for (int k = 761; k <= 771; ++k) {
        std::string t = ork_serv_ork_get_msg(k, 0);
        EXPECT_FALSE(t.empty()) << k;
        texts.insert(t);
    }
    EXPECT_EQ(texts.size(), 11u);
    EXPECT_EQ(texts.count(ork_serv_ork_get_msg(0, 1, 761)), 0u);  // none is the unknown-number text

    const std::string m1 = ork_serv_ork_get_msg(1, 2, 3, "ork_blas_dgemv");
    EXPECT_NE(m1.find('3'), std::string::npos) << m1;
    EXPECT_NE(m1.find("ork_blas_dgemv"), std::string::npos) << m1;

    // an unknown number, or a count the message does not take: message 0 with the number
    const std::string unknown = ork_serv_ork_get_msg(0, 1, 9999);
    EXPECT_NE(unknown.find("9999"), std::string::npos) << unknown;
    EXPECT_EQ(ork_serv_ork_get_msg(9999, 0), unknown);
    EXPECT_EQ(ork_serv_ork_get_msg(9999, 2, 1, 2), unknown);
    EXPECT_EQ(std::string(ork_serv_ork_get_msg(1, 0)), std::string(ork_serv_ork_get_msg(0, 1, 1)));
    EXPECT_EQ(std::string(ork_serv_ork_get_msg(761, 1, 5)), std::string(ork_serv_ork_get_msg(0, 1, 761)));

    ::testing::internal::CaptureStdout();
    ork_serv_ork_print(1, 1, 2, 8, "ork_blas_dsyr");
    EXPECT_EQ(::testing::internal::GetCapturedStdout(), std::string(ork_serv_ork_get_msg(1, 2, 8, "ork_blas_dsyr")) + "\n");
}

// The text fits the given length with its NUL, whatever the length; nothing
// past it is written.
TEST(Service, VersionStringWithinLength) {
    char full[512];
    ork_serv_getversionstring(full, sizeof full);
    const std::size_t len = std::strlen(full);
    ASSERT_LT(len, sizeof full);
    EXPECT_EQ(std::string(full).rfind(ork_version(), 0), 0u) << full;
    for (int n : {0, 1, 2, 5, 16, int(len), int(len) + 1}) {
        std::vector<char> buf(std::size_t(n) + 8, 'x');
        ork_serv_getversionstring(buf.data(), n);
        for (std::size_t k = std::size_t(n); k < buf.size(); ++k) EXPECT_EQ(buf[k], 'x') << "n=" << n;
        if (n == 0) continue;
        const std::size_t got = strnlen(buf.data(), std::size_t(n));
        ASSERT_LT(got, std::size_t(n)) << "no NUL within " << n;
        EXPECT_EQ(std::string(buf.data()), std::string(full, got)) << "n=" << n;
    }
}

}  // namespace
