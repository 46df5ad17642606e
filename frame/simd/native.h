// The vector vocabulary of the generation being built (ORK_GENERATION):
// sources that serve several generations are written over `native`.
#pragma once

#if !defined(ORK_GENERATION) || ORK_GENERATION == 0
#include "frame/simd/sse2.h"
namespace ork::simd { template <class R> using native = sse2<R>; }
#elif ORK_GENERATION == 1
#include "frame/simd/avx2.h"
namespace ork::simd { template <class R> using native = avx2<R>; }
#else
#include "frame/simd/avx512.h"
namespace ork::simd { template <class R> using native = avx512<R>; }
#endif
