// Level-2 inner kernels written once over the vector vocabulary of the
// generation being built (frame/simd/native.h): SSE2 for the baseline, AVX2
// and AVX-512 with fused multiply-add.
//
// A complex vector is handled as interleaved reals: t*a is a*re(t) +
// swap(a)*(-im(t), im(t)), which rounds like the reference formula, and a
// complex sum of products keeps sum a*x and sum a*swap(x) lane by lane,
// combined at the end according to the conjugation. Tails are loaded into
// zero-padded vectors so that every element sees the operations of the main
// loop, whatever its position.
//
// The products (gemv, and the symmetric products' axpy_dot) have no fixed
// order: where the vocabulary has fused multiply-add, their products are
// added with it (t*a + y and a*x + s rounded once), in the order the
// comments below give. The updates (axpy2, update4) never fuse: a column
// updated alone goes through level 1's axpy, which rounds the product, and
// a split over columns must give every element the bits of the whole call.
#include "blas/level1/compensated.h"
#include "blas/level2/inner.h"
#include "frame/simd/native.h"

namespace ork::inner {
namespace {

// ---- element types over the generation's vectors
template <class R> using simd = ork::simd::native<R>;
template <class T> struct vec;

// The lanes of w added pairwise: (l0 + l1) for two, (l0 + l1) + (l2 + l3)
// for four, and so on; with stride 2 the real and the imaginary parts of
// the complex slots apart.
template <class R, int N, int Stride = 1>
R pairwise(const R* l) {
    if constexpr (N == 1) return l[0];
    else return pairwise<R, N / 2, Stride>(l) + pairwise<R, N / 2, Stride>(l + N / 2 * Stride);
}

template <class R> struct vec_base {
    using S = simd<R>;
    using V = typename S::V;
    static constexpr int reals = S::lanes;
};

template <class R> struct vec : vec_base<R> {
    using typename vec_base<R>::S;
    using typename vec_base<R>::V;
    static constexpr int per = S::lanes;  // elements per vector
    // multiplication by a scalar of the element type
    struct scalar {
        V v;
        scalar() = default;
        explicit scalar(R t) : v(S::set1(t)) {}
        V times(V a) const { return S::mul(a, v); }
        // acc + t*a: fused where the vocabulary has it
        V add_to(V acc, V a) const {
            if constexpr (S::fused) return S::fma(a, v, acc);
            else return S::add(acc, times(a));
        }
    };
    // sum of products a*x, lane by lane
    struct sum {
        static constexpr int parts = 1;
        V v[parts] = {S::zero()};
        void add(V a, V x) {
            if constexpr (S::fused) v[0] = S::fma(a, x, v[0]);
            else v[0] = S::add(v[0], S::mul(a, x));
        }
        static R reduce(const V* w, bool) {
            alignas(S::bytes) R l[S::lanes];
            S::store(l, w[0]);
            return pairwise<R, S::lanes>(l);
        }
    };
};

template <class R> struct vec<cx<R>> : vec_base<R> {
    using typename vec_base<R>::S;
    using typename vec_base<R>::V;
    static constexpr int per = S::lanes / 2;
    struct scalar {
        V re, im;
        scalar() = default;
        explicit scalar(cx<R> t) : re(S::set1(t.re)), im(S::pairs(-t.im, t.im)) {}
        V times(V a) const { return S::add(S::mul(a, re), S::mul(S::swap_pairs(a), im)); }
        // acc + t*a: fused, (acc + a*re(t)) + swap(a)*(-im(t), im(t)), where
        // the vocabulary has it
        V add_to(V acc, V a) const {
            if constexpr (S::fused) return S::fma(S::swap_pairs(a), im, S::fma(a, re, acc));
            else return S::add(acc, times(a));
        }
    };
    // v[0] holds (sum ar*xr, sum ai*xi), v[1] holds (sum ar*xi, sum ai*xr)
    // per element slot
    struct sum {
        static constexpr int parts = 2;
        V v[parts] = {S::zero(), S::zero()};
        void add(V a, V x) {
            if constexpr (S::fused) {
                v[0] = S::fma(a, x, v[0]);
                v[1] = S::fma(a, S::swap_pairs(x), v[1]);
            } else {
                v[0] = S::add(v[0], S::mul(a, x));
                v[1] = S::add(v[1], S::mul(a, S::swap_pairs(x)));
            }
        }
        static cx<R> reduce(const V* w, bool conj) {
            alignas(S::bytes) R lp[S::lanes], lq[S::lanes];
            S::store(lp, w[0]);
            S::store(lq, w[1]);
            constexpr int slots = S::lanes / 2;
            const R rr = pairwise<R, slots, 2>(lp), ii = pairwise<R, slots, 2>(lp + 1);
            const R ri = pairwise<R, slots, 2>(lq), ir = pairwise<R, slots, 2>(lq + 1);
            return conj ? cx<R>{rr + ii, ri - ir} : cx<R>{rr - ii, ri + ir};
        }
    };
};

// The blocks' sums of one column, added lane by lane with compensation
// (blas::two_sum_into); the result reduces the running sums and their error
// terms alike and adds the two.
template <class T>
struct column_total {
    using sum = typename vec<T>::sum;
    using V = typename vec<T>::V;
    V hi[sum::parts], lo[sum::parts];
    column_total() {
        for (int k = 0; k < sum::parts; ++k) hi[k] = lo[k] = vec<T>::S::zero();
    }
    void add(const sum& s) {
        for (int k = 0; k < sum::parts; ++k) blas::two_sum_into(hi[k], lo[k], s.v[k]);
    }
    T result(bool conj) const { return blas::settle(sum::reduce(hi, conj), sum::reduce(lo, conj)); }
};

// Loads and stores of `count` elements at p: a whole vector when count is
// the vector's width, else masked where the vocabulary has it, else through
// a zero-padded copy.
template <class S> concept masked = requires(typename S::R* p, typename S::V v) {
    S::load_first(p, 1);
    S::store_first(p, v, 1);
};
template <class T>
typename vec<T>::V load(const T* p, idx count) {
    using W = vec<T>;
    using R = real_t<T>;
    if (count == W::per) return W::S::loadu(reinterpret_cast<const R*>(p));
    if constexpr (masked<typename W::S>) return W::S::load_first(reinterpret_cast<const R*>(p), count * idx(sizeof(T) / sizeof(R)));
    alignas(W::S::bytes) T b[W::per] = {};
    for (idx k = 0; k < W::per; ++k)  // a fixed count: unrolled, never a library call
        if (k < count) b[k] = p[k];
    return W::S::load(reinterpret_cast<const R*>(b));
}
template <class T>
void store(T* p, typename vec<T>::V v, idx count) {
    using W = vec<T>;
    using R = real_t<T>;
    if (count == W::per) return W::S::storeu(reinterpret_cast<R*>(p), v);
    if constexpr (masked<typename W::S>) return W::S::store_first(reinterpret_cast<R*>(p), v, count * idx(sizeof(T) / sizeof(R)));
    alignas(W::S::bytes) T b[W::per];
    W::S::store(reinterpret_cast<R*>(b), v);
    for (idx k = 0; k < W::per; ++k)
        if (k < count) p[k] = b[k];
}

// f(i, count) over [0, m) in whole vectors, then the padded tail.
template <class T, class F>
void over_rows(idx m, F f) {
    constexpr idx P = vec<T>::per;
    idx i = 0;
    for (; i + P <= m; i += P) f(i, P);
    if (i < m) f(i, m - i);
}

// Columns per pass over y (N) or x (T): eight of reals, four of complex,
// whose scalars and sums take two registers each.
template <class T> constexpr int group = is_complex<T> ? 4 : 8;

// ---- y += A*t, C columns at a time: s = a0*t0 + a1*t1 + ... in column order
template <class T, int C>
void gemv_n_group(idx m, const T* a, idx lda, const T* t, T* y) {
    using W = vec<T>;
    using S = typename W::S;
    typename W::scalar ts[C];
    for (int k = 0; k < C; ++k) ts[k] = typename W::scalar(t[k]);
    over_rows<T>(m, [&](idx i, idx count) {
        if constexpr (S::fused) {  // y + a0*t0 + a1*t1 + ..., each step rounded once
            auto s = load(y + i, count);
            for (int k = 0; k < C; ++k) s = ts[k].add_to(s, load(a + k * lda + i, count));
            store(y + i, s, count);
        } else {
            auto s = ts[0].times(load(a + i, count));
            for (int k = 1; k < C; ++k) s = ts[k].add_to(s, load(a + k * lda + i, count));
            store(y + i, S::add(load(y + i, count), s), count);
        }
    });
}

template <class T>
void gemv_n_any(idx m, idx n, const T* a, idx lda, const T* t, T* y) {
    constexpr int C = group<T>;
    idx j = 0;
    for (; j + C <= n; j += C) gemv_n_group<T, C>(m, a + j * lda, lda, t + j, y);
    for (; j < n; ++j) gemv_n_group<T, 1>(m, a + j * lda, lda, t + j, y);
}

// ---- C columns of sums op(a_k)*x. The rows go in blocks of sum_block
// (8 KB of a column) counted from row 0; within a block a column keeps U
// vectors of partial sums, vector v of the block going to sum v mod U, which
// are added in order at the block's end. A run of one block ends there: the
// lanes are added. A longer run adds the blocks' sums lane by lane into the
// column's compensated total (column_total), whose lanes and error terms are
// added at the end. So the error does not grow with m (a lane adds at most
// 512 products plainly), and the sum of a column depends on m and U only.
// Symmetric products (Axpy) also add t[k]*a_k to y in the same pass.
// Measured at n = 1000 on the baseline machine: the long runs cost no speed
// against the plain sums (dgemv T, dsymv within 2-4%, the noise there).
template <class T> constexpr idx sum_block = idx(8192 / sizeof(T));  // 8 KB of a column

// One block of rows [0, len) of C columns (pointers and x at the block's
// first row): vector v of the block goes to sum v mod U, the U sums are
// added in order, and done(k, sum) takes column k's.
template <class T, int C, int U, bool Axpy, class Done>
[[gnu::always_inline]] inline void block_loop(idx len, const T* const* a, const typename vec<T>::scalar* t,
                                              const T* x, T* y, Done done) {
    using W = vec<T>;
    using S = typename W::S;
    constexpr idx P = W::per;
    typename W::scalar ts[C];  // copies, which the stores to y cannot alias
    const T* col[C];
    for (int k = 0; k < C; ++k) {
        col[k] = a[k];
        if constexpr (Axpy) ts[k] = t[k];
    }
    typename W::sum acc[C][U];
    auto step = [&](idx i, idx count, int u) {
        const auto xv = load(x + i, count);
        typename W::V yv;
        if constexpr (Axpy) yv = load(y + i, count);
        for (int k = 0; k < C; ++k) {
            const auto av = load(col[k] + i, count);
            if constexpr (Axpy) yv = ts[k].add_to(yv, av);
            acc[k][u].add(av, xv);
        }
        if constexpr (Axpy) store(y + i, yv, count);
    };
    idx i = 0;
    for (; i + U * P <= len; i += U * P)
        for (int u = 0; u < U; ++u) step(i + u * P, P, u);
    for (int u = 0; i < len; ++u, i += P) step(i, len - i < P ? len - i : P, u);
    for (int k = 0; k < C; ++k) {
        for (int u = 1; u < U; ++u)
            for (int q = 0; q < W::sum::parts; ++q) acc[k][0].v[q] = S::add(acc[k][0].v[q], acc[k][u].v[q]);
        done(k, acc[k][0]);
    }
}

// A run longer than one block: each block out of line (so that the loop's
// columns keep their pointers in registers), its sums into the columns'
// compensated totals.
template <class T, int C, int U, bool Axpy>
[[gnu::noinline]] void block_sums(idx len, const T* const* a, const typename vec<T>::scalar* t, const T* x, T* y,
                                  column_total<T>* total) {
    block_loop<T, C, U, Axpy>(len, a, t, x, y, [&](int k, const typename vec<T>::sum& s) { total[k].add(s); });
}

template <class T, int C, int U, bool Axpy>
[[gnu::noinline]] void long_sums(idx m, const T* const* a, const typename vec<T>::scalar* ts, const T* x, T* y,
                                 T* sums, bool conj) {
    column_total<T> total[C];
    for (idx b0 = 0; b0 < m; b0 += sum_block<T>) {
        const T* ab[C];
        for (int k = 0; k < C; ++k) ab[k] = a[k] + b0;
        block_sums<T, C, U, Axpy>(m - b0 < sum_block<T> ? m - b0 : sum_block<T>, ab, ts, x + b0, Axpy ? y + b0 : y, total);
    }
    for (int k = 0; k < C; ++k) sums[k] += total[k].result(conj);
}

template <class T, int C, int U, bool Axpy>
void sums_group(idx m, const T* const* a, const T* t, const T* x, T* y, T* sums, bool conj) {
    using W = vec<T>;
    static_assert(sum_block<T> % (U * W::per) == 0, "a block holds whole steps");
    typename W::scalar ts[C];
    if constexpr (Axpy)
        for (int k = 0; k < C; ++k) ts[k] = typename W::scalar(t[k]);
    if (m > sum_block<T>) return long_sums<T, C, U, Axpy>(m, a, ts, x, y, sums, conj);
    // one block: its sums are the totals
    block_loop<T, C, U, Axpy>(m, a, ts, x, y,
                              [&](int k, const typename W::sum& s) { sums[k] += W::sum::reduce(s.v, conj); });
}

// r += A'*x: one partial sum a column whatever the group, so that a column
// left over gets the bits it would get in a group.
template <class T>
void gemv_t_any(idx m, idx n, const T* a, idx lda, const T* x, T* r, bool conj) {
    constexpr int C = group<T>;
    const T* cols[C];
    idx j = 0;
    for (; j + C <= n; j += C) {
        for (int k = 0; k < C; ++k) cols[k] = a + (j + k) * lda;
        sums_group<T, C, 1, false>(m, cols, nullptr, x, nullptr, r + j, conj);
    }
    for (; j < n; ++j) {
        cols[0] = a + j * lda;
        sums_group<T, 1, 1, false>(m, cols, nullptr, x, nullptr, r + j, conj);
    }
}

// One column alone keeps two partial sums of reals; four columns keep one
// each on the baseline, two where vectors are wider than 16 bytes: there a
// pass over a few hundred rows is short enough for the latency of each
// column's chain of multiply-adds to bound it (dsymv at n = 256 and 1000).
template <class T> constexpr int dot4_sums = simd<real_t<T>>::bytes > 16 ? 2 : 1;

template <class T>
T axpy_dot_any(idx m, const T* a, T t, const T* x, T* y, bool conj) {
    T sum{};
    sums_group<T, 1, is_complex<T> ? 1 : 2, true>(m, &a, &t, x, y, &sum, conj);
    return sum;
}

template <class T>
void axpy_dot4_any(idx m, const T* const* a, const T* t, const T* x, T* y, T* sums, bool conj) {
    sums_group<T, 4, dot4_sums<T>, true>(m, a, t, x, y, sums, conj);
}

// ---- a := (a + x*t1) + y*t2
template <class T>
void axpy2_any(idx m, const T* x, T t1, const T* y, T t2, T* a) {
    using W = vec<T>;
    using S = typename W::S;
    const typename W::scalar s1(t1), s2(t2);
    over_rows<T>(m, [&](idx i, idx count) {
        auto v = S::add(load(a + i, count), s1.times(load(x + i, count)));
        store(a + i, S::add(v, s2.times(load(y + i, count))), count);
    });
}

// ---- C columns of an update in one pass over x (and y): a_k := a_k +
// x*t1[k], or (a_k + x*t1[k]) + y*t2[k]
template <class T, int C, bool Two>
void update_group(idx m, const T* x, const T* t1, const T* y, const T* t2, T* const* a) {
    using W = vec<T>;
    using S = typename W::S;
    typename W::scalar s1[C], s2[C];
    T* col[C];  // copies, which the stores cannot alias
    for (int k = 0; k < C; ++k) {
        col[k] = a[k];
        s1[k] = typename W::scalar(t1[k]);
        if constexpr (Two) s2[k] = typename W::scalar(t2[k]);
    }
    over_rows<T>(m, [&](idx i, idx count) {
        const auto xv = load(x + i, count);
        typename W::V yv;
        if constexpr (Two) yv = load(y + i, count);
        for (int k = 0; k < C; ++k) {
            auto v = S::add(load(col[k] + i, count), s1[k].times(xv));
            if constexpr (Two) v = S::add(v, s2[k].times(yv));
            store(col[k] + i, v, count);
        }
    });
}

}  // namespace

#define ORK_LEVEL2_INNER(T)                                                                                   \
    void gemv_n(idx m, idx n, const T* a, idx lda, const T* t, T* y) { gemv_n_any(m, n, a, lda, t, y); }     \
    void gemv_t(idx m, idx n, const T* a, idx lda, const T* x, T* r, bool conj) {                            \
        gemv_t_any(m, n, a, lda, x, r, conj);                                                                 \
    }                                                                                                         \
    T axpy_dot(idx m, const T* a, T t, const T* x, T* y, bool conj) { return axpy_dot_any(m, a, t, x, y, conj); } \
    void axpy_dot4(idx m, const T* const* a, const T* t, const T* x, T* y, T* sums, bool conj) {               \
        axpy_dot4_any(m, a, t, x, y, sums, conj);                                                             \
    }                                                                                                         \
    void axpy2(idx m, const T* x, T t1, const T* y, T t2, T* a) { axpy2_any(m, x, t1, y, t2, a); }        \
    void update4(idx m, const T* x, const T* t1, const T* y, const T* t2, T* const* a) {                   \
        if (y) update_group<T, 4, true>(m, x, t1, y, t2, a);                                                 \
        else update_group<T, 4, false>(m, x, t1, y, t2, a);                                                  \
    }
ORK_LEVEL2_INNER(float)
ORK_LEVEL2_INNER(double)
ORK_LEVEL2_INNER(cx<float>)
ORK_LEVEL2_INNER(cx<double>)

}  // namespace ork::inner
