// Strided vectors with the signed-increment convention, and flag letters.
#pragma once

#include "frame/types.h"

namespace ork {

// Logical element i (0-based) of (n, x, inc): x[i*inc] for inc >= 0 and
// x[(n-1-i)*|inc|] for inc < 0, that is, a negative increment starts from the
// far end. strided folds that into one base pointer so that v[i] serves both.
template <class T>
struct strided {
    T* base;
    idx inc;
    strided(idx n, T* x, idx incx) : base(incx < 0 && n > 0 ? x - (n - 1) * incx : x), inc(incx) {}
    T& operator[](idx i) const { return base[i * inc]; }
};

// First letter of a flag, upper-cased; only that letter is ever read.
inline char flag(const char* f) {
    char c = *f;
    return (c >= 'a' && c <= 'z') ? char(c - 'a' + 'A') : c;
}

}  // namespace ork
