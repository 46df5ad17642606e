// The packed layouts of the matrix-multiply engine, per element type.
//
// Packed A: rows in groups of RA; group g occupies RA*kkr elements from
// g*RA*kkr, depth index j of it the RA elements from g*RA*kkr + j*RA, already
// multiplied by alpha; depths kk .. kkr-1 (kkr = kk rounded up to 4) are zero.
// Packed B: columns in panels, as many of widths[0] as fit, then at most one
// of each narrower width; a panel of pw columns at column c0 occupies pw*kkr
// elements from c0*kkr, depth row r of it the pw elements from c0*kkr + pw*r;
// rows kk .. kkr-1 are zero. The group height, the panel widths and the
// rest of each generation's choices are in its tuning table (tuning.h).
#pragma once

#include <type_traits>

#include "blas/gemm/tuning.h"
#include "frame/types.h"
#include "frame/vector.h"

namespace ork::gemm {

template <class T> using shape = tuning<T>;

inline idx round_up4(idx k) { return (k + 3) & ~idx(3); }

// The panel widths cover every multiple of q: whatever is left after the
// widest panels is one of each narrower width at most.
template <class T> constexpr bool panels_cover() {
    constexpr auto& pw = shape<T>::widths;
    for (idx w = 0; w < pw[0]; w += shape<T>::q) {
        idx left = w;
        for (int k = 1; k < 3; ++k)
            if (pw[k] < pw[k - 1] && left >= pw[k]) left -= pw[k];
        if (left) return false;
    }
    return true;
}

// Calls f(c0, pw) for each panel of a w-column block (w a multiple of q).
template <class T, class F>
void for_each_panel(idx w, F f) {
    static_assert(panels_cover<T>(), "the panel widths cover every multiple of q");
    constexpr auto& pw = shape<T>::widths;
    idx c0 = 0;
    for (; w - c0 >= pw[0]; c0 += pw[0]) f(c0, idx(pw[0]));
    for (int k = 1; k < 3; ++k)
        if (pw[k] < pw[k - 1] && w - c0 >= pw[k]) {
            f(c0, idx(pw[k]));
            c0 += pw[k];
        }
}

// Calls f(c0, width) for each panel, the width as a compile-time constant
// (std::integral_constant), for kernels specialised on it.
template <class T, class F>
void for_each_panel_fixed(idx w, F f) {
    constexpr auto& wd = shape<T>::widths;
    for_each_panel<T>(w, [&](idx c0, idx pw) {
        if (pw == wd[0]) f(c0, std::integral_constant<int, wd[0]>{});
        else if (pw == wd[1]) f(c0, std::integral_constant<int, wd[1]>{});
        else f(c0, std::integral_constant<int, wd[2]>{});
    });
}

// op letter of a flag (or of its first letter, either case): real types
// read anything but N as T; complex types tell C (conjugate transpose) from T.
template <class T> char trans_of(char letter) {
    const char t = flag(&letter);
    if (t == 'N') return 'N';
    return is_complex<T> && t == 'C' ? 'C' : 'T';
}
template <class T> char trans_of(const char* f) { return trans_of<T>(*f); }

// op(X)(i, j) for a column-major X with leading dimension ld: 'N' plain,
// 'T' transposed, 'C' conjugate-transposed.
template <class T>
inline T op_at(char t, const T* x, idx ld, idx i, idx j) {
    if (t == 'N') return x[i + j * ld];
    T v = x[j + i * ld];
    return t == 'C' ? conj(v) : v;
}
// Address of op(X)(i, j).
template <class T>
inline T* op_ptr(char t, T* x, idx ld, idx i, idx j) {
    return t == 'N' ? x + i + j * ld : x + j + i * ld;
}

}  // namespace ork::gemm
