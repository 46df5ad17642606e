// The number of threads one call may use, and how long idle threads spin.
#include <sched.h>
#include <strings.h>
#include <unistd.h>

#include <atomic>
#include <cstdio>
#include <cstdlib>

#include "core/core.h"

namespace {

// No setting gives more threads than this many per online processor: beyond
// it threads only take turns on the cores and cost their stacks.
constexpr int per_processor_limit = 4;

int online_processors() {
    const long n = sysconf(_SC_NPROCESSORS_ONLN);
    return n > 0 ? int(n) : 1;
}

// The default: the processors this process may run on (its affinity mask).
int usable_processors() {
    cpu_set_t set;
    if (sched_getaffinity(0, sizeof set, &set) == 0 && CPU_COUNT(&set) > 0) return CPU_COUNT(&set);
    return online_processors();
}

// A count as the variables take it: decimal digits and nothing else, above
// zero. OMP_NUM_THREADS may list one count per nesting level ("4,2"), each
// of that form; its first is the one that counts. Large values saturate
// (they are capped anyway); -1 when the text is not of that form.
long long parse_count(const char* s, bool list) {
    long long first = -1;
    for (;;) {
        long long n = 0;
        const char* p = s;
        for (; *p >= '0' && *p <= '9'; ++p) n = n < (1LL << 40) ? n * 10 + (*p - '0') : n;
        if (p == s || n == 0) return -1;
        if (first < 0) first = n;
        if (*p == 0) return first;
        if (*p != ',' || !list) return -1;
        s = p + 1;
    }
}

// The count the environment asks for, with the lines to print about it.
struct reading {
    int threads = 0;
    char warning[2][160] = {};
};

reading read_environment() {
    reading r;
    const int limit = ork::core::thread_limit();
    int lines = 0;
    for (const char* name : {"ORK_NUM_THREADS", "OMP_NUM_THREADS"}) {
        const char* v = std::getenv(name);
        if (!v) continue;
        const long long n = parse_count(v, name[1] == 'M');
        if (n < 0) {
            std::snprintf(r.warning[lines++], sizeof r.warning[0], "%s=\"%.40s\" is not a positive integer", name, v);
            continue;
        }
        r.threads = n > limit ? limit : int(n);
        if (n > limit)
            std::snprintf(r.warning[lines++], sizeof r.warning[0], "%s=%.40s is more than %d (%d per online processor)",
                          name, v, limit, per_processor_limit);
        break;
    }
    if (r.threads == 0) r.threads = usable_processors() < limit ? usable_processors() : limit;
    return r;
}

// Read at the first call that asks (a program may set the variables before
// it calls), then kept. No lock: two first callers both read, the first to
// store wins and only it warns, so a fork() at any moment leaves nothing held.
std::atomic<int> from_environment{0};

int environment_threads() {
    int n = from_environment.load(std::memory_order_acquire);
    if (n > 0) return n;
    const reading r = read_environment();
    int unset = 0;
    if (!from_environment.compare_exchange_strong(unset, r.threads)) return unset;
    for (const auto& w : r.warning)
        if (w[0]) std::fprintf(stderr, "ork: %s; using %d threads\n", w, r.threads);
    return r.threads;
}

std::atomic<int> override_threads{0};

// Idle helper threads (and a caller waiting for them) spin this long before
// they sleep: long enough to catch back-to-back calls, short enough not to
// hold a core another process needs. OMP_WAIT_POLICY=passive sleeps at once;
// active spins for 20 ms.
constexpr long long spin_default_ns = 100'000, spin_active_ns = 20'000'000;
std::atomic<long long> spin_ns{-1};

long long read_wait_policy() {
    const char* v = std::getenv("OMP_WAIT_POLICY");
    if (!v) return spin_default_ns;
    if (strcasecmp(v, "passive") == 0) return 0;
    if (strcasecmp(v, "active") == 0) return spin_active_ns;
    return -2;  // warned about by the first to store it
}

}  // namespace

namespace ork::core {

int thread_limit() { return per_processor_limit * online_processors(); }

int max_threads() {
    const int n = override_threads.load(std::memory_order_relaxed);
    return n > 0 ? n : environment_threads();
}

long long idle_spin_ns() {
    long long s = spin_ns.load(std::memory_order_relaxed);
    if (s >= 0) return s;
    const long long read = read_wait_policy();
    const long long use = read == -2 ? spin_default_ns : read;
    long long unread = -1;
    if (spin_ns.compare_exchange_strong(unread, use) && read == -2)
        std::fprintf(stderr, "ork: OMP_WAIT_POLICY=\"%.40s\" is neither active nor passive; ignored\n",
                     std::getenv("OMP_WAIT_POLICY"));
    return spin_ns.load(std::memory_order_relaxed);
}

}  // namespace ork::core

ORK_CORE_API int ork_get_max_threads(void) { return ork::core::max_threads(); }
ORK_CORE_API void ork_set_num_threads(int n) {
    const int limit = ork::core::thread_limit();
    override_threads = n > 0 ? (n < limit ? n : limit) : 0;
}
