// Shared by the tests of the small LAPACK-level routines: names by element
// type, guarded column-major matrices.
#pragma once

#include "ork/lapack.h"
#include "testing.h"

namespace ot {

template <class T> std::string lname(const std::string& routine) { return std::string("ork_blas_") + letter<T> + routine; }

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

template <class T> T from_ld(LC x) { return make<T>(double(x.real()), double(x.imag())); }

// |got - want| <= tol for every element, by name of the first that is not.
inline ::testing::AssertionResult all_near(lmat& got, lmat& want, long double tol) {
    for (idx j = 0; j < got.cols; ++j)
        for (idx i = 0; i < got.rows; ++i)
            if (!(std::abs(got(i, j) - want(i, j)) <= tol))
                return ::testing::AssertionFailure() << "(" << i << ", " << j << "): got " << got(i, j) << ", want "
                                                     << want(i, j) << " within " << tol;
    return ::testing::AssertionSuccess();
}

}  // namespace ot
