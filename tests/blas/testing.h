// Shared by the BLAS and core tests: the four element types, their arithmetic
// written out in the element's own precision (to predict elementwise results
// bit for bit), long double oracles, guarded strided vectors, both paths to
// a routine (libork's checked entry and the kernel library's own code), and
// the error handler's reports.
#pragma once

#include <dlfcn.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <complex>
#include <cstring>
#include <functional>
#include <limits>
#include <random>
#include <stdexcept>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

#include "ork/blas_kernels.h"
#include "ork/ork.h"

namespace ot {

using idx = ork_int;
using ElementTypes = ::testing::Types<float, double, ork_complex8, ork_complex16>;
using RealTypes = ::testing::Types<float, double>;

template <class T> struct real_of { using type = T; };
template <> struct real_of<ork_complex8> { using type = float; };
template <> struct real_of<ork_complex16> { using type = double; };
template <class T> using real_t = typename real_of<T>::type;
template <class T> constexpr bool is_cx = !std::is_same_v<T, real_t<T>>;
template <class T> constexpr real_t<T> eps = std::numeric_limits<real_t<T>>::epsilon();
// The letter of a type in the routines' names.
template <class T> constexpr char letter = std::is_same_v<T, float> ? 's' : std::is_same_v<T, double> ? 'd'
                                          : std::is_same_v<T, ork_complex8> ? 'c' : 'z';

template <class T> T make(double re, double im = 0) {
    if constexpr (is_cx<T>) return T{real_t<T>(re), real_t<T>(im)};
    else return T(re);
}

// The reference formulas: (a.re*b.re - a.im*b.im, a.re*b.im + a.im*b.re), no scaling.
template <class T> T add(T a, T b) {
    if constexpr (is_cx<T>) return {a.re + b.re, a.im + b.im};
    else return a + b;
}
template <class T> T sub(T a, T b) {
    if constexpr (is_cx<T>) return {a.re - b.re, a.im - b.im};
    else return a - b;
}
template <class T> T mul(T a, T b) {
    if constexpr (is_cx<T>) return {a.re * b.re - a.im * b.im, a.re * b.im + a.im * b.re};
    else return a * b;
}
template <class T> T rmul(real_t<T> c, T a) {
    if constexpr (is_cx<T>) return {c * a.re, c * a.im};
    else return c * a;
}
template <class T> T conj(T a) {
    if constexpr (is_cx<T>) return {a.re, -a.im};
    else return a;
}
template <class T> real_t<T> re(T a) {
    if constexpr (is_cx<T>) return a.re;
    else return a;
}

// Long double views for oracles.
using LC = std::complex<long double>;
template <class T> LC ld(T a) {
    if constexpr (is_cx<T>) return {a.re, a.im};
    else return {a, 0};
}
inline long double mag1(LC a) { return std::fabs(a.real()) + std::fabs(a.imag()); }
template <class T> long double mag1(T a) { return mag1(ld(a)); }
// The same magnitude in the element's own precision, as the index searches compare it.
template <class T> real_t<T> abs1(T a) {
    if constexpr (is_cx<T>) return std::fabs(a.re) + std::fabs(a.im);
    else return std::fabs(a);
}

// Column-major rows x cols long double matrix (leading dimension rows); from
// any matrix with m, n and (i, j).
struct lmat {
    idx rows, cols;
    std::vector<LC> v;
    lmat(idx r, idx c) : rows(r), cols(c), v(std::size_t(r * c)) {}
    template <class M> explicit lmat(M& a) : lmat(a.m, a.n) {
        for (idx j = 0; j < cols; ++j)
            for (idx i = 0; i < rows; ++i) (*this)(i, j) = ld(a(i, j));
    }
    LC& operator()(idx i, idx j) { return v[std::size_t(i + j * rows)]; }
    LC operator()(idx i, idx j) const { return v[std::size_t(i + j * rows)]; }
    lmat op(char t) const {  // op(A) for trans N, T or C
        if (t == 'N') return *this;
        lmat r(cols, rows);
        for (idx j = 0; j < cols; ++j)
            for (idx i = 0; i < rows; ++i) r(j, i) = t == 'C' ? std::conj((*this)(i, j)) : (*this)(i, j);
        return r;
    }
    long double maxabs() const {
        long double r = 0;
        for (const LC& x : v) r = std::max(r, std::abs(x));
        return r;
    }
};

// Bitwise equality: the test of every elementwise result (and of NaN kept).
template <class T> bool same(const T& a, const T& b) { return std::memcmp(&a, &b, sizeof(T)) == 0; }

template <class T> ::testing::AssertionResult same_all(const std::vector<T>& got, const std::vector<T>& want) {
    if (got.size() != want.size()) return ::testing::AssertionFailure() << "sizes differ";
    for (std::size_t k = 0; k < got.size(); ++k)
        if (!same(got[k], want[k]))
            return ::testing::AssertionFailure() << "slot " << k << ": got " << ld(got[k]) << ", want " << ld(want[k]);
    return ::testing::AssertionSuccess();
}

// |got - want| <= tol in each component.
template <class T> ::testing::AssertionResult near(T got, LC want, long double tol) {
    LC g = ld(got);
    if (std::fabs(g.real() - want.real()) <= tol && std::fabs(g.imag() - want.imag()) <= tol)
        return ::testing::AssertionSuccess();
    return ::testing::AssertionFailure() << "got " << g << ", want " << want << " within " << tol;
}

template <class T> T rnd(std::mt19937_64& g, double lo = -1, double hi = 1) {
    std::uniform_real_distribution<double> u(lo, hi);
    double a = u(g);
    return make<T>(a, is_cx<T> ? u(g) : 0);
}

// The value of the unused slots; no routine should ever write it.
template <class T> T sentinel() { return make<T>(-777.25, 555.5); }

// (n, p(), inc) with sentinels before, after and between the elements. shift
// moves the first element by that many element sizes from 16-byte alignment.
template <class T> struct gvec {
    idx n, inc;
    std::size_t lead;
    std::vector<T> buf;
    gvec(idx n_, idx inc_, int shift, std::mt19937_64& g) : n(n_), inc(inc_), lead(4 + std::size_t(shift)) {
        idx span = n > 0 ? (n - 1) * (inc < 0 ? -inc : inc) + 1 : 0;
        buf.assign(lead + std::size_t(span) + 4, sentinel<T>());
        for (idx i = 0; i < n; ++i) at(i) = rnd<T>(g);
    }
    T* p() { return buf.data() + lead; }
    // Slot of logical element i (0-based): a negative increment starts from the far end.
    std::size_t pos(idx i) const { return lead + std::size_t(inc >= 0 ? i * inc : (n - 1 - i) * -inc); }
    T& at(idx i) { return buf[pos(i)]; }
};

template <class F> F kernel_symbol(const char* name) {
    if (void* p = ork_kernel_symbol(name)) return reinterpret_cast<F>(p);
    throw std::runtime_error(std::string("the kernel library lacks ") + name);
}

// libork's checked entry `name` and the kernel library's code of `kernel`
// (by default the same name), labelled for the traces.
template <class F>
std::vector<std::pair<std::string, F>> both_paths(const std::string& name, std::string kernel = {}) {
    if (kernel.empty()) kernel = name;
    void* lib = dlsym(RTLD_DEFAULT, name.c_str());
    if (!lib) throw std::runtime_error("libork lacks " + name);
    return {{"libork " + name, reinterpret_cast<F>(lib)}, {"kernel " + kernel, kernel_symbol<F>(kernel.c_str())}};
}

// A routine of libork with its name; its paths: libork's entry and the kernel
// library's own code, the x main entry where there is one, else the same name.
template <class F> struct routine {
    F lib;
    const char* name;
    std::vector<std::pair<std::string, F>> paths() const {
        const std::string own = std::string("ork_blas_") + name, x = std::string("ork_blas_x") + name;
        return both_paths<F>(own, ork_kernel_symbol(x.c_str()) ? x : own);
    }
};
#define OT_R(f) routine<decltype(&ork_blas_##f)>{&ork_blas_##f, #f}

// The routines of each element type. For reals, dotc is dot, crot is rot,
// dotci is doti and rscal is scal.
template <class T> struct api;
#define OT_API(p, T, dotu_, dotc_, asum_, nrm2_, rot_, crot_, dotui_, dotci_, rscal_)                             \
    template <> struct api<T> {                                                                                   \
        static constexpr auto axpy = OT_R(p##axpy), copy = OT_R(p##copy), swap = OT_R(p##swap);                    \
        static constexpr auto scal = OT_R(p##scal), rscal = OT_R(rscal_);                                          \
        static constexpr auto dotu = OT_R(dotu_), dotc = OT_R(dotc_);                                              \
        static constexpr auto asum = OT_R(asum_), nrm2 = OT_R(nrm2_);                                              \
        static constexpr auto iamax = OT_R(i##p##amax), iamin = OT_R(i##p##amin);                                  \
        static constexpr auto rot = OT_R(rot_), crot = OT_R(crot_);                                                \
        static constexpr auto rot2 = OT_R(p##rot2), rot3 = OT_R(p##rot3), lartv = OT_R(p##lartv);                  \
        static constexpr auto axpyi = OT_R(p##axpyi), gthr = OT_R(p##gthr), gthrz = OT_R(p##gthrz);                \
        static constexpr auto sctr = OT_R(p##sctr), dotui = OT_R(dotui_), dotci = OT_R(dotci_);                    \
        static constexpr auto gemv = OT_R(p##gemv);                                                                \
    };
OT_API(s, float, sdot, sdot, sasum, snrm2, srot, srot, sdoti, sdoti, sscal)
OT_API(d, double, ddot, ddot, dasum, dnrm2, drot, drot, ddoti, ddoti, dscal)
OT_API(c, ork_complex8, cdotu, cdotc, scasum, scnrm2, csrot, crot, cdotui, cdotci, csscal)
OT_API(z, ork_complex16, zdotu, zdotc, dzasum, dznrm2, zdrot, zrot, zdotui, zdotci, zdscal)
#undef OT_API

// Collects the error handler's reports while in scope; on leaving, puts the
// previous handler back, which must find its own still installed.
struct error_reports {
    static inline std::vector<std::pair<std::string, int>> seen;
    static void capture(const char* routine, int position) { seen.emplace_back(routine, position); }
    const ork_error_handler previous = ork_set_error_handler(&capture);
    error_reports() { seen.clear(); }
    ~error_reports() { EXPECT_EQ(ork_set_error_handler(previous), &capture); }
    // Exactly one report, of routine at position; none for position 0.
    static ::testing::AssertionResult one(const std::string& routine, int position) {
        if (position == 0 && seen.empty()) return ::testing::AssertionSuccess();
        if (position != 0 && seen.size() == 1 && seen[0] == std::make_pair(routine, position))
            return ::testing::AssertionSuccess();
        auto r = ::testing::AssertionFailure() << seen.size() << " reports, want " << (position ? 1 : 0);
        if (!seen.empty()) r << "; first " << seen[0].first << " at " << seen[0].second;
        return r;
    }
};

// One call of a table of argument checks: it must report `position` for
// `routine`, or nothing for position 0.
struct bad_call {
    std::string routine;
    int position;
    std::function<void()> call;
};
// The bytes of whole objects (arrays included), for "nothing was written".
template <class... A> std::string bytes_of(const A&... a) {
    return (std::string(reinterpret_cast<const char*>(&a), sizeof a) + ...);
}
// Runs each call: exactly its report, ork_last_error() equal to its position
// (a good call clears the record), the routine's name kept with it, and,
// when state is given, every byte it returns unchanged by a call that reports.
inline void expect_reports(const std::vector<bad_call>& calls, const std::function<std::string()>& state = {}) {
    error_reports reports;
    for (const bad_call& c : calls) {
        SCOPED_TRACE(c.routine + " position " + std::to_string(c.position));
        reports.seen.clear();
        const std::string before = state ? state() : std::string();
        c.call();
        EXPECT_TRUE(reports.one(c.routine, c.position));
        EXPECT_EQ(ork_last_error(), c.position);
        if (c.position == 0) continue;
        EXPECT_STREQ(ork_last_error_routine(), c.routine.c_str());
        if (state) {
            EXPECT_TRUE(state() == before) << "an output was written";
        }
    }
}

// Sets the number of threads for one scope; back to the default after.
struct threads_scope {
    explicit threads_scope(int n) { ork_set_num_threads(n); }
    ~threads_scope() { ork_set_num_threads(0); }
};

// call() (returning a vector of elements) at 1, 2 and 3 threads: the same
// bits each time; the one-thread result in *first when asked.
template <class F> ::testing::AssertionResult same_at_1_2_3_threads(F call, decltype(call())* first = nullptr) {
    decltype(call()) one;
    {
        threads_scope t(1);
        one = call();
    }
    for (int t : {2, 3}) {
        threads_scope s(t);
        if (auto r = same_all(call(), one); !r) return r << " at " << t << " threads";
    }
    if (first) *first = std::move(one);
    return ::testing::AssertionSuccess();
}

}  // namespace ot
