// libork's threading: one team per call inside an application's OpenMP
// region, no thread or memory growth under thread churn, concurrent callers
// getting one caller's bits, and the thread count read strictly from the
// environment (ork-test-threads-env run with each setting).
#include <gtest/gtest.h>
#include <omp.h>
#include <sched.h>
#include <spawn.h>

#include <atomic>
#include <optional>

#include "threads_testing.h"

extern char** environ;

using namespace tt;

namespace {

struct Threads : ::testing::Test {
    void SetUp() override { ork_set_num_threads(2); }
    void TearDown() override { ork_set_num_threads(0); }
};

// In a fresh child (no helper threads yet, OpenMP unused): inside a region
// of two OpenMP threads each call runs alone, and no helper is started;
// outside it, the next call starts one.
TEST_F(Threads, OneTeamInsideAnApplicationsOpenMPRegion) {
    const bytes expected = dgemm_n(400);
    const outcome o = in_child([&] {
        int team = 0, same = 0;
#pragma omp parallel num_threads(2) reduction(+ : team, same)
        {
            team += 1;
            same += dgemm_n(400) == expected;
        }
        if (team != 2) return 2;  // no OpenMP team: nothing was tested
        if (same != 2) return 3;
        if (thread_count(getpid()) != 2) return 4;  // the team's two threads alone
        if (dgemm_n(400) != expected) return 5;
        if (thread_count(getpid()) != 3) return 6;  // and one helper now
        return 0;
    }, 120);
    EXPECT_FALSE(o.timed_out);
    EXPECT_EQ(o.status, 0);
}

#if defined(__SANITIZE_ADDRESS__)
extern "C" void __sanitizer_purge_allocator();  // the sanitizer's runtime; no header ships it
#endif

// Resident memory of this process. Under AddressSanitizer freed blocks wait
// in its quarantine (up to 256 MB) and stay resident: it is drained first.
long resident_kb() {
#if defined(__SANITIZE_ADDRESS__)
    __sanitizer_purge_allocator();
#endif
    long pages = 0, resident = 0;
    if (FILE* f = std::fopen("/proc/self/statm", "r")) {
        if (std::fscanf(f, "%ld %ld", &pages, &resident) != 2) resident = 0;
        std::fclose(f);
    }
    return resident * (sysconf(_SC_PAGESIZE) / 1024);
}

// 2,000 short-lived application threads, two at a time, each making one
// threaded product.
TEST_F(Threads, ChurnLeavesNoThreadsAndNoMemory) {
    const bytes expected = dgemm_n(128);
    std::atomic<int> wrong{0};
    auto wave = [&](int threads) {
        auto one = [&] { wrong += dgemm_n(128) != expected; };
        for (int i = 0; i < threads; i += 2) {
            std::thread a(one), b(one);
            a.join();
            b.join();
        }
    };
    wave(200);  // malloc's arenas and the helpers settle
    const int threads_before = thread_count(getpid());
    const long kb_before = resident_kb();
    wave(2000);
    EXPECT_EQ(thread_count(getpid()), threads_before);
    EXPECT_LT(resident_kb() - kb_before, 8192);
    EXPECT_EQ(wrong, 0);
}

// Four callers at once, each running every family: the pool serves one at a
// time and the others run alone, all with the bits of a single caller.
TEST_F(Threads, ConcurrentCallersGetOneCallersBits) {
    std::vector<bytes> expected;
    for (const family& f : families()) expected.push_back(f.run());
    std::atomic<int> wrong{0};
    std::vector<std::thread> callers;
    for (int c = 0; c < 4; ++c)
        callers.emplace_back([&, c] {
            for (int round = 0; round < 3; ++round)
                for (std::size_t i = 0; i < families().size(); ++i) {
                    const std::size_t k = (i + std::size_t(c) * 3) % families().size();  // out of step
                    if (families()[k].run() != expected[k]) ++wrong;
                }
        });
    for (auto& t : callers) t.join();
    EXPECT_EQ(wrong, 0);
}

int online() { return int(sysconf(_SC_NPROCESSORS_ONLN)); }

TEST_F(Threads, SetNumThreadsIsCappedAtFourPerProcessor) {
    ork_set_num_threads(1 << 30);
    EXPECT_EQ(ork_get_max_threads(), 4 * online());
    const bytes at_cap = dgemm_n(400);  // runs on that many threads
    ork_set_num_threads(1);
    EXPECT_EQ(ork_get_max_threads(), 1);
    EXPECT_EQ(dgemm_n(400), at_cap);
}

// ---- the environment, read by a program of its own per setting

struct run_result {
    std::string out, err;
    int status = -1;
};

std::string drain(int fd) {
    std::string s;
    char buf[4096];
    for (ssize_t k; (k = read(fd, buf, sizeof buf)) > 0;) s.append(buf, std::size_t(k));
    close(fd);
    return s;
}

// ork-test-threads-env with the three variables as given (null: unset).
run_result run_env_program(const char* ork, const char* omp, const char* wait) {
    std::vector<std::string> env;
    for (char** e = environ; *e; ++e) {
        const std::string v = *e;
        if (v.rfind("ORK_NUM_THREADS=", 0) && v.rfind("OMP_NUM_THREADS=", 0) && v.rfind("OMP_WAIT_POLICY=", 0))
            env.push_back(v);
    }
    if (ork) env.push_back(std::string("ORK_NUM_THREADS=") + ork);
    if (omp) env.push_back(std::string("OMP_NUM_THREADS=") + omp);
    if (wait) env.push_back(std::string("OMP_WAIT_POLICY=") + wait);
    std::vector<char*> envp;
    for (auto& v : env) envp.push_back(v.data());
    envp.push_back(nullptr);

    int out[2], err[2];
    if (pipe(out) || pipe(err)) return {};
    posix_spawn_file_actions_t fa;
    posix_spawn_file_actions_init(&fa);
    posix_spawn_file_actions_adddup2(&fa, out[1], 1);
    posix_spawn_file_actions_adddup2(&fa, err[1], 2);
    posix_spawn_file_actions_addclose(&fa, out[0]);
    posix_spawn_file_actions_addclose(&fa, err[0]);
    char program[] = ORK_THREADS_ENV_PROGRAM;
    char* argv[] = {program, nullptr};
    pid_t pid = -1;
    const int spawned = posix_spawn(&pid, program, &fa, nullptr, argv, envp.data());
    posix_spawn_file_actions_destroy(&fa);
    close(out[1]);
    close(err[1]);
    run_result r;
    r.out = drain(out[0]);  // a few bytes each: neither pipe can fill
    r.err = drain(err[0]);
    if (spawned != 0) return r;
    int st = 0;
    waitpid(pid, &st, 0);
    r.status = WIFEXITED(st) ? WEXITSTATUS(st) : -1;
    return r;
}

// The lines of text that start with "ork:" (GNU OpenMP's runtime, linked
// for its region test, prints its own about a bad OMP_ variable).
std::vector<std::string> ork_lines(const std::string& text) {
    std::vector<std::string> lines;
    for (std::size_t at = 0; at < text.size();) {
        std::size_t end = text.find('\n', at);
        if (end == std::string::npos) end = text.size();
        if (text.compare(at, 4, "ork:") == 0) lines.push_back(text.substr(at, end - at));
        at = end + 1;
    }
    return lines;
}

TEST(ThreadsEnvironment, AcceptsOnlyPositiveCountsAndCapsThem) {
    constexpr int usable = -1, cap = -2;  // expected counts not known until run time
    struct setting {
        const char *ork, *omp, *wait;
        int threads;
        const char* warning;  // a part of the one line expected, or null for none
    };
    const setting table[] = {
        {nullptr, nullptr, nullptr, usable, nullptr},
        {"3", nullptr, nullptr, 3, nullptr},
        {"1", "4", nullptr, 1, nullptr},
        {"5", "2x", nullptr, 5, nullptr},  // OMP_NUM_THREADS unread
        {"2x", nullptr, nullptr, usable, "ORK_NUM_THREADS=\"2x\" is not a positive integer"},
        {"", nullptr, nullptr, usable, "ORK_NUM_THREADS=\"\" is not a positive integer"},
        {"-3", nullptr, nullptr, usable, "ORK_NUM_THREADS=\"-3\""},
        {"abc", nullptr, nullptr, usable, "ORK_NUM_THREADS=\"abc\""},
        {"0", nullptr, nullptr, usable, "ORK_NUM_THREADS=\"0\""},
        {" 2", nullptr, nullptr, usable, "ORK_NUM_THREADS=\" 2\""},
        {"+2", nullptr, nullptr, usable, "ORK_NUM_THREADS=\"+2\""},
        {"2,2", nullptr, nullptr, usable, "ORK_NUM_THREADS=\"2,2\""},
        {"2x", "3", nullptr, 3, "ORK_NUM_THREADS=\"2x\" is not a positive integer; using 3 threads"},
        {"100000", nullptr, nullptr, cap, "ORK_NUM_THREADS=100000 is more than"},
        {"99999999999999999999999", nullptr, nullptr, cap, "is more than"},
        {nullptr, "3", nullptr, 3, nullptr},
        {nullptr, "3,2", nullptr, 3, nullptr},
        {nullptr, "3,", nullptr, usable, "OMP_NUM_THREADS=\"3,\""},
        {nullptr, "3,x", nullptr, usable, "OMP_NUM_THREADS=\"3,x\""},
        {nullptr, "0,2", nullptr, usable, "OMP_NUM_THREADS=\"0,2\""},
        {nullptr, "100000,2", nullptr, cap, "OMP_NUM_THREADS=100000,2 is more than"},
        {"2", nullptr, "passive", 2, nullptr},
        {"2", nullptr, "ACTIVE", 2, nullptr},
        {"2", nullptr, "sometimes", 2, "OMP_WAIT_POLICY=\"sometimes\" is neither active nor passive"},
    };
    cpu_set_t set;
    ASSERT_EQ(sched_getaffinity(0, sizeof set, &set), 0);
    const int limit = 4 * online(), mine = CPU_COUNT(&set) < limit ? CPU_COUNT(&set) : limit;
    for (const setting& s : table) {
        SCOPED_TRACE(::testing::Message() << "ORK_NUM_THREADS=" << (s.ork ? s.ork : "(unset)")
                                          << " OMP_NUM_THREADS=" << (s.omp ? s.omp : "(unset)")
                                          << " OMP_WAIT_POLICY=" << (s.wait ? s.wait : "(unset)"));
        const run_result r = run_env_program(s.ork, s.omp, s.wait);
        ASSERT_EQ(r.status, 0) << r.err;
        const int want = s.threads == usable ? mine : s.threads == cap ? limit : s.threads;
        EXPECT_EQ(r.out, std::to_string(want) + "\n");
        const auto lines = ork_lines(r.err);
        if (!s.warning) {
            EXPECT_TRUE(lines.empty()) << r.err;
            continue;
        }
        ASSERT_EQ(lines.size(), 1u) << r.err;
        EXPECT_NE(lines[0].find(s.warning), std::string::npos) << lines[0];
        if (!s.wait) {
            EXPECT_NE(lines[0].find("; using " + std::to_string(want) + " threads"), std::string::npos) << lines[0];
        }
    }
}

}  // namespace
