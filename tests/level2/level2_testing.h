// Shared by the level-2 tests: dense long double matrices, a symmetric or
// Hermitian matrix in full, band or packed storage with NaN in the slots no
// routine may read, and each element type's routines behind one signature
// per family (libork's entry and the kernel library's own code).
#pragma once

#include <functional>

#include "ork/level2_kernels.h"
#include "testing.h"

namespace ot {

// The logical elements of a vector, in long double.
template <class T> std::vector<LC> values(gvec<T>& x) {
    std::vector<LC> r;
    for (idx i = 0; i < x.n; ++i) r.push_back(ld(x.at(i)));
    return r;
}

enum class storage { full, band, packed };

// Slot of element (i, j) of the stored triangle, or -1 when not stored.
inline idx stored_slot(storage st, bool upper, idx n, idx k, idx lda, idx i, idx j) {
    if (upper ? i > j : i < j) return -1;
    switch (st) {
        case storage::full: return i + j * lda;
        case storage::band:
            if ((upper ? j - i : i - j) > k) return -1;
            return upper ? k + i - j + j * lda : i - j + j * lda;
        case storage::packed: return upper ? i + j * (j + 1) / 2 : i + j * n - j * (j + 1) / 2;
    }
    return -1;
}

// A symmetric (real T) or Hermitian (complex T) n-by-n matrix with one
// triangle stored: `full` is the whole matrix; the stored array holds NaN
// wherever the storage has slots outside the triangle, and a Hermitian
// diagonal carries an imaginary part that must not be read.
template <class T> struct triangle {
    storage st;
    bool upper;
    idx n, k, lda;
    std::vector<T> a;
    lmat full;
    triangle(storage s, bool up, idx n_, idx k_, std::mt19937_64& g)
        : st(s), upper(up), n(n_), k(s == storage::band ? k_ : n_), full(n_, n_) {
        lda = st == storage::full ? (n > 1 ? n : 1) + 1 : st == storage::band ? k + 2 : 1;
        const idx size = st == storage::packed ? n * (n + 1) / 2 + 1 : lda * (n > 0 ? n : 1);
        a.assign(std::size_t(size), make<T>(NAN, NAN));
        for (idx j = 0; j < n; ++j)
            for (idx i = 0; i < n; ++i) {
                const idx s_ij = stored_slot(st, upper, n, k, lda, i, j);
                if (s_ij < 0) continue;
                T v = rnd<T>(g);
                a[std::size_t(s_ij)] = v;
                if (i == j && is_cx<T>) v = make<T>(re(v));  // the stored imaginary part is ignored
                full(i, j) = ld(v);
                full(j, i) = is_cx<T> ? std::conj(ld(v)) : ld(v);
            }
    }
};

// ---- each family's routines behind one signature
template <class T> using general_fn = std::function<void(const char*, const idx*, const idx*, const idx*, const idx*, const T*, const T*, const idx*, const T*, const idx*, const T*, T*, const idx*)>;
template <class T> using symmetric_fn = std::function<void(const char*, const idx*, const idx*, const T*, const T*, const idx*, const T*, const idx*, const T*, T*, const idx*)>;
template <class T> using ger_fn = std::function<void(const idx*, const idx*, const T*, const T*, const idx*, const T*, const idx*, T*, const idx*)>;
// (uplo, n, alpha, x, incx, y, incy, a, lda); y unused by rank 1, lda by packed
template <class T> using update_fn = std::function<void(const char*, const idx*, const T*, const T*, const idx*, const T*, const idx*, T*, const idx*)>;
template <class F> using paths_of = std::vector<std::pair<std::string, F>>;

template <class F, class R, class W> paths_of<F> wrap(const R& r, W w) {
    paths_of<F> out;
    for (auto [path, f] : r.paths()) out.emplace_back(path, w(f));
    return out;
}

#define OT_L2(p, T, R, sy, sb, sp, ger1, ger2, syr, spr, syr2, spr2)                                                  \
    template <> struct l2<T> {                                                                                       \
        static paths_of<general_fn<T>> general(bool band) {                                                          \
            if (band) return wrap<general_fn<T>>(OT_R(p##gbmv), [](auto f) { return general_fn<T>(f); });             \
            return wrap<general_fn<T>>(OT_R(p##gemv), [](auto f) {                                                   \
                return general_fn<T>([f](auto t, auto m, auto n, auto, auto, auto al, auto a, auto la, auto x, auto ix, auto be, auto y, auto iy) { f(t, m, n, al, a, la, x, ix, be, y, iy); }); \
            });                                                                                                      \
        }                                                                                                            \
        static paths_of<symmetric_fn<T>> symmetric(storage st) {                                                     \
            if (st == storage::band) return wrap<symmetric_fn<T>>(OT_R(sb), [](auto f) { return symmetric_fn<T>(f); }); \
            if (st == storage::full)                                                                                 \
                return wrap<symmetric_fn<T>>(OT_R(sy), [](auto f) {                                                  \
                    return symmetric_fn<T>([f](auto u, auto n, auto, auto al, auto a, auto la, auto x, auto ix, auto be, auto y, auto iy) { f(u, n, al, a, la, x, ix, be, y, iy); }); \
                });                                                                                                  \
            return wrap<symmetric_fn<T>>(OT_R(sp), [](auto f) {                                                      \
                return symmetric_fn<T>([f](auto u, auto n, auto, auto al, auto a, auto, auto x, auto ix, auto be, auto y, auto iy) { f(u, n, al, a, x, ix, be, y, iy); }); \
            });                                                                                                      \
        }                                                                                                            \
        /* ger, or geru then gerc */                                                                                 \
        static paths_of<ger_fn<T>> ger(bool conj) {                                                                  \
            if (conj) return wrap<ger_fn<T>>(OT_R(ger2), [](auto f) { return ger_fn<T>(f); });                        \
            return wrap<ger_fn<T>>(OT_R(ger1), [](auto f) { return ger_fn<T>(f); });                                  \
        }                                                                                                            \
        /* alpha is real for rank 1 of complex types: the test passes the real part first */                         \
        static paths_of<update_fn<T>> update(bool two, bool packed) {                                                \
            if (!two && !packed) return wrap<update_fn<T>>(OT_R(syr), [](auto f) { return update_fn<T>([f](auto u, auto n, auto al, auto x, auto ix, auto, auto, auto a, auto la) { f(u, n, reinterpret_cast<const R*>(al), x, ix, a, la); }); }); \
            if (!two) return wrap<update_fn<T>>(OT_R(spr), [](auto f) { return update_fn<T>([f](auto u, auto n, auto al, auto x, auto ix, auto, auto, auto a, auto) { f(u, n, reinterpret_cast<const R*>(al), x, ix, a); }); }); \
            if (!packed) return wrap<update_fn<T>>(OT_R(syr2), [](auto f) { return update_fn<T>(f); });              \
            return wrap<update_fn<T>>(OT_R(spr2), [](auto f) { return update_fn<T>([f](auto u, auto n, auto al, auto x, auto ix, auto y, auto iy, auto a, auto) { f(u, n, al, x, ix, y, iy, a); }); }); \
        }                                                                                                            \
    };
template <class T> struct l2;
OT_L2(s, float, float, ssymv, ssbmv, sspmv, sger, sger, ssyr, sspr, ssyr2, sspr2)
OT_L2(d, double, double, dsymv, dsbmv, dspmv, dger, dger, dsyr, dspr, dsyr2, dspr2)
OT_L2(c, ork_complex8, float, chemv, chbmv, chpmv, cgeru, cgerc, cher, chpr, cher2, chpr2)
OT_L2(z, ork_complex16, double, zhemv, zhbmv, zhpmv, zgeru, zgerc, zher, zhpr, zher2, zhpr2)
#undef OT_L2

}  // namespace ot
