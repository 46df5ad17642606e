// The argument tests of libork's checked entries, one per argument role of the
// family tables (frame/gen/orkgen.py writes the entries that use them), and
// the small value tests the entries' bodies share.
#pragma once

#include <type_traits>

#include "ork/service.h"
#include "ork/types.h"

namespace ork::core::check {

// A flag: present, and its first letter (either case) one of `letters`.
inline bool is(const char* f, const char* letter) { return ork_serv_lsame(f, letter, 1, 1) != 0; }
inline bool flag(const char* f, const char* letters) {
    if (!f) return false;
    for (const char* l = letters; *l; ++l) {
        const char one[2] = {*l, 0};
        if (is(f, one)) return true;
    }
    return false;
}
// A dimension: present and not negative.
inline bool dim(const ork_int* v) { return v && *v >= 0; }
// An increment: present and not zero.
inline bool inc(const ork_int* v) { return v && *v != 0; }
// A leading dimension: present and at least `least` (the rows it spans).
template <class I> bool ld(const I* v, std::type_identity_t<I> least) { return v && *v >= least; }
inline ork_int at_least_1(ork_int v) { return v > 1 ? v : 1; }

// A bad argument of a routine with an info argument: reported through the
// entry, and as minus its position in info when info is present.
template <class Entry> bool fail(const Entry& e, ork_int* info, int position) {
    if (info) *info = -position;
    return e.fail(position);
}

// alpha == 0 and beta == 1 in the element's own arithmetic
template <class C> bool is_zero(const C& a) {
    if constexpr (std::is_arithmetic_v<C>) return a == 0;
    else return a.re == 0 && a.im == 0;
}
template <class C> bool is_one(const C& a) {
    if constexpr (std::is_arithmetic_v<C>) return a == 1;
    else return a.re == 1 && a.im == 0;
}
template <class C> C one() {
    if constexpr (std::is_arithmetic_v<C>) return C(1);
    else return C{1, 0};
}

}  // namespace ork::core::check
