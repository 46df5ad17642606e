// The baseline generation's vectors under their older name, and the 16-byte
// alignment tests of its level-1 and level-2 kernels.
#pragma once

#include <cstdint>

#include "frame/simd/complex.h"
#include "frame/simd/sse2.h"

namespace ork::sse2 {

template <class R> using simd = ork::simd::sse2<R>;

inline bool aligned16(const void* p) { return (reinterpret_cast<std::uintptr_t>(p) & 15) == 0; }

// x and y can be brought to 16-byte alignment together by peeling whole
// elements of `elem` bytes.
inline bool co_aligned(const void* x, const void* y, std::uintptr_t elem) {
    auto a = reinterpret_cast<std::uintptr_t>(x), b = reinterpret_cast<std::uintptr_t>(y);
    return ((a ^ b) & 15) == 0 && (a & (elem - 1)) == 0;
}

}  // namespace ork::sse2
