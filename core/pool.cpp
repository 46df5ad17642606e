// libork's thread pool: helper threads that take the pieces of one call
// beside the calling thread, and the fork handlers that let a child start
// its own helpers afresh.
//
// One job at a time. Its owner (the caller) publishes it by opening seats,
// one per helper it wants; a helper that takes a seat claims pieces from a
// shared counter until none is left, as the owner does. The owner then
// closes the seats and waits only for the helpers that took one. A helper
// that is late, or never comes, costs nothing but the owner doing more
// pieces itself; a second caller while the job is taken runs its pieces
// alone. So the pieces, and the bits, never depend on who ran them.
//
// Idle helpers spin for idle_spin_ns() (OMP_WAIT_POLICY), then sleep on a
// futex that each new job rings. fork() copies only the forking thread: the
// child's pool is reset to empty and starts new helpers at its first
// threaded call, while the parent's helpers and any job in flight there go
// on untouched.
#include <linux/futex.h>
#include <omp.h>
#include <pthread.h>
#include <signal.h>
#include <sys/syscall.h>
#include <time.h>
#include <unistd.h>

#include <atomic>
#include <cstdint>

#include "core/core.h"

namespace {

using word = std::atomic<std::uint32_t>;
static_assert(sizeof(word) == sizeof(std::uint32_t), "futex words are plain 32-bit integers");

void sleep_on(word& w, std::uint32_t seen) {
    syscall(SYS_futex, reinterpret_cast<std::uint32_t*>(&w), FUTEX_WAIT_PRIVATE, seen, nullptr, nullptr, 0);
}
void wake(word& w, int count) {
    syscall(SYS_futex, reinterpret_cast<std::uint32_t*>(&w), FUTEX_WAKE_PRIVATE, count, nullptr, nullptr, 0);
}

long long now_ns() {
    timespec t;
    clock_gettime(CLOCK_MONOTONIC, &t);
    return t.tv_sec * 1'000'000'000LL + t.tv_nsec;
}

// Spins until ready() or for ns nanoseconds; whether ready() came true.
template <class Ready>
bool spin_until(Ready ready, long long ns) {
    if (ready()) return true;
    if (ns <= 0) return false;
    const long long end = now_ns() + ns;
    for (;;) {
        for (int i = 0; i < 16; ++i) {
            __builtin_ia32_pause();
            if (ready()) return true;
        }
        if (now_ns() >= end) return false;
    }
}

struct pool_state {
    // The job; its owner writes these before it opens the seats.
    void (*fn)(void*, int) = nullptr;
    void* ctx = nullptr;
    int pieces = 0;
    std::atomic<int> next{0};   // the next piece to claim
    std::atomic<int> seats{0};  // helpers that may still join
    word finished{0};           // helpers that joined and are done
    word owner_asleep{0};
    std::atomic<bool> taken{false};  // a caller owns the job

    word bell{0};  // rung at each job; idle helpers sleep on it
    std::atomic<int> sleepers{0};
    std::atomic<int> helpers{0};  // started
    // Held while helpers are started and across fork(), so a child never
    // inherits it held or a half-counted start.
    pthread_mutex_t start_lock = PTHREAD_MUTEX_INITIALIZER;
    bool fork_handlers = false;
};
constinit pool_state P;

// Set in helpers for good and in an owner while it runs pieces: a threaded
// call from inside a piece runs alone instead of waiting for the pool.
__attribute__((tls_model("initial-exec"))) constinit thread_local bool inside_piece = false;

void claim_pieces() {
    for (int p; (p = P.next.fetch_add(1, std::memory_order_relaxed)) < P.pieces;) P.fn(P.ctx, p);
}

bool take_seat() {
    int s = P.seats.load(std::memory_order_acquire);
    while (s > 0)
        if (P.seats.compare_exchange_weak(s, s - 1, std::memory_order_acquire)) return true;
    return false;
}

void* helper_main(void*) {
    inside_piece = true;
    for (;;) {
        const bool open = spin_until([] { return P.seats.load(std::memory_order_relaxed) > 0; }, ork::core::idle_spin_ns());
        if (!open) {
            // sleepers before the bell, the owner the other way round: one
            // of the two sees the other's write (no job is missed).
            P.sleepers.fetch_add(1);
            const std::uint32_t rung = P.bell.load();
            if (P.seats.load() <= 0) sleep_on(P.bell, rung);
            P.sleepers.fetch_sub(1);
            continue;
        }
        if (!take_seat()) continue;
        claim_pieces();
        // The last access to the job; the owner may return at once after it.
        P.finished.fetch_add(1);
        if (P.owner_asleep.load()) wake(P.finished, 1);
    }
    return nullptr;
}

void before_fork() { pthread_mutex_lock(&P.start_lock); }
void after_fork_in_parent() { pthread_mutex_unlock(&P.start_lock); }
void after_fork_in_child() {
    pthread_mutex_init(&P.start_lock, nullptr);
    P.helpers.store(0);
    P.sleepers.store(0);
    P.seats.store(0);
    P.taken.store(false);
}

// Starts helpers until there are `want` (or as many as can be started);
// the number there is.
int helpers_for(int want) {
    int have = P.helpers.load(std::memory_order_acquire);
    if (have >= want) return want;
    pthread_mutex_lock(&P.start_lock);
    if (!P.fork_handlers) P.fork_handlers = pthread_atfork(before_fork, after_fork_in_parent, after_fork_in_child) == 0;
    have = P.helpers.load(std::memory_order_relaxed);
    if (have < want && P.fork_handlers) {
        // Helpers block every signal: the application's handlers run on its
        // own threads, as they did before the pool existed.
        sigset_t all, old;
        sigfillset(&all);
        pthread_sigmask(SIG_SETMASK, &all, &old);
        pthread_attr_t attr;
        pthread_attr_init(&attr);
        pthread_attr_setdetachstate(&attr, PTHREAD_CREATE_DETACHED);
        for (pthread_t id; have < want && pthread_create(&id, &attr, helper_main, nullptr) == 0;) ++have;
        pthread_attr_destroy(&attr);
        pthread_sigmask(SIG_SETMASK, &old, nullptr);
        P.helpers.store(have, std::memory_order_release);
    }
    pthread_mutex_unlock(&P.start_lock);
    return have < want ? have : want;
}

void alone(int pieces, void (*f)(void*, int), void* ctx) {
    for (int p = 0; p < pieces; ++p) f(ctx, p);
}

}  // namespace

namespace ork::core {

void run_pieces(int threads, int pieces, void (*f)(void*, int), void* ctx) {
    if (threads > pieces) threads = pieces;
    if (threads < 2 || inside_piece || omp_in_parallel()) return alone(pieces, f, ctx);
    bool free_ = false;
    if (!P.taken.compare_exchange_strong(free_, true, std::memory_order_acquire)) return alone(pieces, f, ctx);
    const int offered = helpers_for(threads - 1);
    if (offered < 1) {
        P.taken.store(false, std::memory_order_release);
        return alone(pieces, f, ctx);
    }
    P.fn = f;
    P.ctx = ctx;
    P.pieces = pieces;
    P.next.store(0, std::memory_order_relaxed);
    P.finished.store(0, std::memory_order_relaxed);
    P.owner_asleep.store(0, std::memory_order_relaxed);
    P.seats.store(offered);
    P.bell.fetch_add(1);
    if (P.sleepers.load() > 0) wake(P.bell, offered);

    inside_piece = true;
    claim_pieces();
    inside_piece = false;

    // Every piece is claimed; wait for the helpers that joined.
    const std::uint32_t joined = std::uint32_t(offered - P.seats.exchange(0));
    if (!spin_until([joined] { return P.finished.load(std::memory_order_acquire) == joined; }, idle_spin_ns())) {
        for (;;) {
            P.owner_asleep.store(1);
            const std::uint32_t done = P.finished.load();
            if (done == joined) break;
            sleep_on(P.finished, done);
        }
    }
    P.taken.store(false, std::memory_order_release);
}

}  // namespace ork::core
