// The last step of the real dot products' fixed order, shared by every
// generation: the 16-byte vector their tree ends in, down to one value.
#pragma once

#include <emmintrin.h>

namespace ork::inner {

// The two lanes of the double tree, the four of the single one as
// (l0 + l2) + (l1 + l3). Internal to each kernel source, which is built
// with its own generation's flags.
static inline double lanes(__m128d t) { return _mm_cvtsd_f64(t) + _mm_cvtsd_f64(_mm_unpackhi_pd(t, t)); }
static inline float lanes(__m128 t) {
    t = _mm_add_ps(t, _mm_movehl_ps(t, t));
    return _mm_cvtss_f32(t) + _mm_cvtss_f32(_mm_shuffle_ps(t, t, 1));
}

}  // namespace ork::inner
