// Shared by the threading tests: one large call of every threaded family on
// fixed data, returning its output's bytes; counting a process's threads and
// the processor time its helper threads took; and running a forked child
// under a time limit while sampling its thread count.
#pragma once

#include <dirent.h>
#include <signal.h>
#include <sys/types.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <random>
#include <string>
#include <thread>
#include <vector>

#include "ork/ork.h"

namespace tt {

using idx = ork_int;
using bytes = std::vector<unsigned char>;

template <class T> bytes bytes_of(const std::vector<T>& v) {
    const auto* p = reinterpret_cast<const unsigned char*>(v.data());
    return bytes(p, p + v.size() * sizeof(T));
}
template <class T> bytes bytes_of_value(T v) { return bytes_of(std::vector<T>{v}); }

// Uniform in [-1, 1) from a fixed seed: the same data in every process.
inline std::vector<double> data(std::size_t count, unsigned seed) {
    std::mt19937_64 g(seed);
    std::uniform_real_distribution<double> u(-1, 1);
    std::vector<double> v(count);
    for (double& e : v) e = u(g);
    return v;
}

// Each family at a size that splits over two threads.
struct family {
    const char* name;
    bytes (*run)();
};

inline const std::vector<double>& A() { static const auto v = data(1000 * 1000, 1); return v; }
inline const std::vector<double>& B() { static const auto v = data(1000 * 1000, 2); return v; }
inline const std::vector<double>& X() { static const auto v = data(1 << 20, 3); return v; }
inline const std::vector<double>& Y() { static const auto v = data(1 << 20, 4); return v; }

// A lower triangle with a heavy diagonal: the solves stay well scaled.
inline const std::vector<double>& T400() {
    static const auto v = [] {
        auto t = data(400 * 400, 5);
        for (int i = 0; i < 400; ++i) t[std::size_t(i) * 401] += 400;
        return t;
    }();
    return v;
}

inline bytes dgemm_n(idx n) {
    std::vector<double> c(std::size_t(n * n));
    const double one = 1, zero = 0;
    ork_blas_dgemm("N", "T", &n, &n, &n, &one, A().data(), &n, B().data(), &n, &zero, c.data(), &n);
    return bytes_of(c);
}

inline const std::vector<family>& families() {
    static const std::vector<family> all = {
        {"dgemm", [] { return dgemm_n(400); }},
        {"zgemm", [] {
             const idx n = 160;
             std::vector<ork_complex16> c(std::size_t(n * n), ork_complex16{0.5, -0.5});
             const ork_complex16 alpha{0.75, 0.25}, beta{0.5, 0};
             auto a = reinterpret_cast<const ork_complex16*>(A().data());
             auto b = reinterpret_cast<const ork_complex16*>(B().data());
             ork_blas_zgemm("C", "N", &n, &n, &n, &alpha, a, &n, b, &n, &beta, c.data(), &n);
             return bytes_of(c);
         }},
        {"dzgemm", [] {
             const idx n = 300;
             std::vector<ork_complex16> c(std::size_t(n * n));
             const ork_complex16 alpha{1, 0.5}, beta{0, 0};
             ork_blas_dzgemm("N", "N", &n, &n, &n, &alpha, A().data(), &n,
                             reinterpret_cast<const ork_complex16*>(B().data()), &n, &beta, c.data(), &n);
             return bytes_of(c);
         }},
        {"dsyrk", [] {
             const idx n = 400, k = 300;
             std::vector<double> c(B().begin(), B().begin() + n * n);
             const double alpha = 1.5, beta = 0.5;
             ork_blas_dsyrk("U", "N", &n, &k, &alpha, A().data(), &n, &beta, c.data(), &n);
             return bytes_of(c);
         }},
        {"dtrsm", [] {
             const idx m = 400, n = 400;
             std::vector<double> b(B().begin(), B().begin() + m * n);
             const double alpha = 2;
             ork_blas_dtrsm("L", "L", "N", "N", &m, &n, &alpha, T400().data(), &m, b.data(), &m);
             return bytes_of(b);
         }},
        {"dgemv", [] {
             const idx n = 1000, one = 1;
             std::vector<double> y(Y().begin(), Y().begin() + 2 * n);
             const double alpha = 1, beta = 0.5;
             ork_blas_dgemv("N", &n, &n, &alpha, A().data(), &n, X().data(), &one, &beta, y.data(), &one);
             ork_blas_dgemv("T", &n, &n, &alpha, A().data(), &n, X().data(), &one, &beta, y.data() + n, &one);
             return bytes_of(y);
         }},
        {"dsymv", [] {
             const idx n = 1000, one = 1;
             std::vector<double> y(Y().begin(), Y().begin() + n);
             const double alpha = 1, beta = -1;
             ork_blas_dsymv("U", &n, &alpha, A().data(), &n, X().data(), &one, &beta, y.data(), &one);
             return bytes_of(y);
         }},
        {"dger", [] {
             const idx n = 1000, one = 1;
             std::vector<double> a(A());
             const double alpha = 0.25;
             ork_blas_dger(&n, &n, &alpha, X().data(), &one, Y().data(), &one, a.data(), &n);
             return bytes_of(a);
         }},
        {"dtrmv", [] {
             const idx n = 1000, one = 1;
             std::vector<double> x(X().begin(), X().begin() + n);
             ork_blas_dtrmv("U", "N", "N", &n, A().data(), &n, x.data(), &one);
             return bytes_of(x);
         }},
        {"ddot dasum", [] {
             const idx n = idx(X().size()), one = 1;
             return bytes_of(std::vector<double>{ork_blas_ddot(&n, X().data(), &one, Y().data(), &one),
                                                 ork_blas_dasum(&n, X().data(), &one)});
         }},
        {"daxpy", [] {
             const idx n = idx(X().size()), one = 1;
             std::vector<double> y(Y());
             const double alpha = -0.375;
             ork_blas_daxpy(&n, &alpha, X().data(), &one, y.data(), &one);
             return bytes_of(y);
         }},
        {"domatcopy", [] {
             const std::uint64_t r = 1000, c = 1000;
             std::vector<double> b(r * c);
             const double alpha = 3;
             ork_trans_domatcopy("C", "T", &r, &c, &alpha, A().data(), &r, b.data(), &c);
             return bytes_of(b);
         }},
        {"dlasr", [] {
             const idx m = 300, n = 300;
             std::vector<double> a(A().begin(), A().begin() + m * n), c(static_cast<std::size_t>(m)), s(c);
             for (idx i = 0; i < m; ++i) c[std::size_t(i)] = std::cos(0.01 * double(i)), s[std::size_t(i)] = std::sin(0.01 * double(i));
             ork_blas_dlasr("L", "V", "F", &m, &n, c.data(), s.data(), a.data(), &m);
             return bytes_of(a);
         }},
    };
    return all;
}

// Threads of a process, from /proc/<pid>/task (0: gone).
inline int thread_count(pid_t pid) {
    const std::string dir = "/proc/" + std::to_string(pid) + "/task";
    DIR* d = opendir(dir.c_str());
    if (!d) return 0;
    int n = 0;
    while (dirent* e = readdir(d))
        if (e->d_name[0] != '.') ++n;
    closedir(d);
    return n;
}

// Clock ticks of user and system time taken by the threads of this process
// other than the calling one.
inline long other_threads_ticks() {
    DIR* d = opendir("/proc/self/task");
    if (!d) return 0;
    const long self = long(gettid());
    long ticks = 0;
    while (dirent* e = readdir(d)) {
        if (e->d_name[0] == '.' || std::atol(e->d_name) == self) continue;
        const std::string path = std::string("/proc/self/task/") + e->d_name + "/stat";
        if (FILE* f = std::fopen(path.c_str(), "r")) {
            char line[1024] = {};
            const bool got = std::fgets(line, sizeof line, f) != nullptr;
            std::fclose(f);
            // fields 14 and 15 (utime, stime) follow the command in parentheses
            const char* p = got ? std::strrchr(line, ')') : nullptr;
            long utime = 0, stime = 0;
            if (p && std::sscanf(p + 2, "%*c %*d %*d %*d %*d %*d %*u %*u %*u %*u %*u %ld %ld", &utime, &stime) == 2)
                ticks += utime + stime;
        }
    }
    closedir(d);
    return ticks;
}

// How a watched child ended.
struct outcome {
    bool timed_out = false;
    int status = -1;     // exit status, or -1 when it did not exit normally
    int most_threads = 0;  // the largest thread count sampled while it ran
};

// Waits for child pid for at most `seconds`, sampling its thread count
// every millisecond; a child still running then is killed.
inline outcome watch(pid_t pid, double seconds) {
    outcome o;
    const auto end = std::chrono::steady_clock::now() + std::chrono::duration<double>(seconds);
    for (;;) {
        int st = 0;
        const pid_t r = waitpid(pid, &st, WNOHANG);
        if (r == pid) {
            o.status = WIFEXITED(st) ? WEXITSTATUS(st) : -1;
            return o;
        }
        const int n = thread_count(pid);
        if (n > o.most_threads) o.most_threads = n;
        if (std::chrono::steady_clock::now() > end) {
            kill(pid, SIGKILL);
            waitpid(pid, &st, 0);
            o.timed_out = true;
            return o;
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
}

// A forked child that runs body() and exits with its result.
template <class F>
pid_t fork_child(F body) {
    std::fflush(nullptr);
    const pid_t pid = fork();
    if (pid == 0) _exit(body());
    return pid;
}

// The same, watched as above.
template <class F>
outcome in_child(F body, double seconds) {
    const pid_t pid = fork_child(body);
    return pid < 0 ? outcome{} : watch(pid, seconds);
}

}  // namespace tt
