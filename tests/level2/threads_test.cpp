// libork's threaded level-2 routines (gemv, gbmv, symv and hemv, ger, the
// symmetric and Hermitian rank updates, trmv, trsv) give every element the
// same bits at 1, 2 and 3 threads, on matrices large enough to split.
#include "level2_testing.h"

using namespace ot;

namespace {

template <class T> class Level2Threads : public ::testing::Test {};
TYPED_TEST_SUITE(Level2Threads, ElementTypes);

// One call of the table: the array it writes (A, x or y) and the call on
// (a, x, y), the written one a fresh copy each time; `spare`: its bits stay
// when each allocation it makes fails in turn.
template <class T> struct threaded_call {
    std::string what;
    char writes;
    std::function<void(T*, T*, T*)> call;
    bool spare = false;
};

TYPED_TEST(Level2Threads, SameBitsAtOneTwoAndThreeThreads) {
    using T = TypeParam;
    using tr_fn = void (*)(const char*, const char*, const char*, const idx*, const T*, const idx*, T*, const idx*);
    auto tr = [](const char* op) {
        const std::string name = std::string("ork_blas_") + letter<T> + op;
        return reinterpret_cast<tr_fn>(dlsym(RTLD_DEFAULT, name.c_str()));
    };
    const tr_fn trmv = tr("trmv"), trsv = tr("trsv");
    ASSERT_TRUE(trmv && trsv);
    std::mt19937_64 g(1700);
    for (idx n : {idx(700), idx(1500)}) {
        // exact zeros in A, x and y, of both signs (columns an update skips,
        // zero terms and results), real elements in x; a heavy diagonal
        // keeps the solves finite
        const idx m = n - 5, lda = n + 3, kl = 40, ku = 300;
        std::vector<T> a(std::size_t(lda * n));
        for (std::size_t s = 0; s < a.size(); ++s) a[s] = s % 13 == 0 ? make<T>(-0.0, -0.0) : rnd<T>(g);
        for (idx j = 0; j < n; ++j) a[std::size_t(j + j * lda)] = make<T>(double(n));
        for (auto [ix, iy] : {std::pair<idx, idx>{1, 1}, {-2, 3}}) {
            gvec<T> x(n, ix, 0, g), y(n, iy, 1, g);
            for (idx i = 0; i < n; ++i) {
                if (i % 7 == 0) x.at(i) = make<T>(-0.0, -0.0);
                if (i % 5 == 0) x.at(i) = make<T>(re(x.at(i)));
                if (i % 11 == 0) y.at(i) = make<T>(0);
            }
            const T alpha = rnd<T>(g), beta = rnd<T>(g);
            std::vector<threaded_call<T>> calls;
            for (const char* t : {"N", "T", "C"}) {
                calls.push_back({std::string("gemv ") + t, 'y', [&, t](T* pa, T* px, T* py) {
                    l2<T>::general(false)[0].second(t, &m, &n, nullptr, nullptr, &alpha, pa, &lda, px, &ix, &beta, py, &iy);
                }});
                calls.push_back({std::string("gbmv ") + t, 'y', [&, t](T* pa, T* px, T* py) {
                    l2<T>::general(true)[0].second(t, &m, &n, &kl, &ku, &alpha, pa, &lda, px, &ix, &beta, py, &iy);
                }});
            }
            for (bool conj : {false, true})
                calls.push_back({conj ? "ger (conjugated)" : "ger", 'a', [&, conj](T* pa, T* px, T* py) {
                    l2<T>::ger(conj)[0].second(&m, &n, &alpha, px, &ix, py, &iy, pa, &lda);
                }});
            for (const char* u : {"U", "L"}) {
                calls.push_back({std::string("symv/hemv ") + u, 'y', [&, u](T* pa, T* px, T* py) {
                    l2<T>::symmetric(storage::full)[0].second(u, &n, nullptr, &alpha, pa, &lda, px, &ix, &beta, py, &iy);
                }, true});
                for (bool two : {false, true})
                    calls.push_back({std::string(two ? "syr2/her2 " : "syr/her ") + u, 'a', [&, u, two](T* pa, T* px, T* py) {
                        const T al = two ? alpha : make<T>(re(alpha));  // rank 1 reads a real alpha
                        l2<T>::update(two, false)[0].second(u, &n, &al, px, &ix, py, &iy, pa, &lda);
                    }});
                for (const char* t : {"N", "T", "C"})
                    for (bool solve : {false, true})
                        calls.push_back({std::string(solve ? "trsv " : "trmv ") + u + t, 'x', [&, u, t, solve](T* pa, T* px, T*) {
                            (solve ? trsv : trmv)(u, t, "N", &n, pa, &lda, px, &ix);
                        }});
            }
            for (const threaded_call<T>& c : calls) {
                auto run = [&] {
                    std::vector<T> out = c.writes == 'a' ? a : c.writes == 'x' ? x.buf : y.buf;
                    T* w = out.data() + (c.writes == 'a' ? 0 : c.writes == 'x' ? x.lead : y.lead);
                    c.call(c.writes == 'a' ? w : a.data(), c.writes == 'x' ? w : x.p(), c.writes == 'y' ? w : y.p());
                    return out;
                };
                SCOPED_TRACE(::testing::Message() << c.what << ", n=" << n << ", incx=" << ix << ", incy=" << iy);
                std::vector<T> one;
                EXPECT_TRUE(same_at_1_2_3_threads(run, &one));
                if (!c.spare) continue;
                threads_scope two(2);
                const long before = ork_allocation_count();
                run();
                for (long k = 1, made = ork_allocation_count() - before; k <= made; ++k) {
                    ork_fail_allocation(k);
                    const auto got = run();
                    ork_fail_allocation(0);
                    EXPECT_TRUE(same_all(got, one)) << "allocation " << k << " of " << made << " failing";
                }
            }
        }
    }
}

}  // namespace
