// Shared by the tests of the small LAPACK-level routines: names by element
// type, both paths to a routine, guarded column-major matrices and their
// long double views.
#pragma once

#include <dlfcn.h>

#include "ork/lapack.h"
#include "testing.h"

namespace ot {

template <class T> std::string lname(const std::string& routine) { return std::string("ork_blas_") + letter<T> + routine; }

// libork's checked entry and the kernel library's own code of one name.
template <class F> std::vector<std::pair<std::string, F>> both_paths(const std::string& name) {
    void* lib = dlsym(RTLD_DEFAULT, name.c_str());
    if (!lib) throw std::runtime_error("libork lacks " + name);
    return {{"libork", reinterpret_cast<F>(lib)}, {"kernel", kernel_symbol<F>(name.c_str())}};
}

inline const std::vector<idx> sizes = {0, 1, 2, 3, 4, 5, 17, 64};

// An m x n column-major matrix with two guard rows below it.
template <class T> struct gmat {
    idx m, n, ld;
    std::vector<T> v;
    gmat(idx m_, idx n_) : m(m_), n(n_), ld(m_ + 2), v(std::size_t(ld * (n_ > 0 ? n_ : 1)), sentinel<T>()) {}
    T& operator()(idx i, idx j) { return v[std::size_t(i + j * ld)]; }
    T* p() { return v.data(); }
    void fill(std::mt19937_64& g) {
        for (idx j = 0; j < n; ++j)
            for (idx i = 0; i < m; ++i) (*this)(i, j) = rnd<T>(g);
    }
    bool guards_intact() const {
        for (idx j = 0; j < n; ++j)
            for (idx i = m; i < ld; ++i)
                if (!same(v[std::size_t(i + j * ld)], sentinel<T>())) return false;
        return true;
    }
};

// Long double matrices, column-major, leading dimension = rows.
struct lmat {
    idx m, n;
    std::vector<LC> v;
    lmat(idx m_, idx n_) : m(m_), n(n_), v(std::size_t(m_ * n_)) {}
    template <class T> explicit lmat(gmat<T>& a) : lmat(a.m, a.n) {
        for (idx j = 0; j < n; ++j)
            for (idx i = 0; i < m; ++i) (*this)(i, j) = ld(a(i, j));
    }
    LC& operator()(idx i, idx j) { return v[std::size_t(i + j * m)]; }
    long double maxabs() const {
        long double r = 0;
        for (const LC& x : v) r = std::max(r, std::abs(x));
        return r;
    }
};

template <class T> T from_ld(LC x) { return make<T>(double(x.real()), double(x.imag())); }

// |got - want| <= tol for every element, by name of the first that is not.
inline ::testing::AssertionResult all_near(lmat& got, lmat& want, long double tol) {
    for (idx j = 0; j < got.n; ++j)
        for (idx i = 0; i < got.m; ++i)
            if (!(std::abs(got(i, j) - want(i, j)) <= tol))
                return ::testing::AssertionFailure() << "(" << i << ", " << j << "): got " << got(i, j) << ", want "
                                                     << want(i, j) << " within " << tol;
    return ::testing::AssertionSuccess();
}

}  // namespace ot
