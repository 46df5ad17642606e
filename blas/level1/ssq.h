// One step of the scaled one-pass sum of squares behind dnrm2 and dznrm2.
#pragma once

#include "frame/types.h"

namespace ork::blas {

// Zeros are skipped (NaN is not zero and is processed); ssq is kept relative
// to the largest magnitude seen so far, so the norm is scale*sqrt(ssq).
template <class R>
inline void ssq_step(R e, R& scale, R& ssq) {
    if (e == 0) return;
    R a = abs1(e);
    if (a > scale) {
        R r = scale / a;
        ssq = 1 + ssq * (r * r);
        scale = a;
    } else {
        R r = a / scale;
        ssq = ssq + r * r;
    }
}

}  // namespace ork::blas
