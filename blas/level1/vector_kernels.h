// The element-wise level-1 inner kernels (axpy, scal, copy, swap) written
// once over a generation's vector vocabulary S (frame/simd/<gen>.h).
//
// Each output element gets the operations of the scalar formula in the same
// order (complex products through simd::cscale, which rounds like the scalar
// one), with no fused multiply-add, so every path and every generation gives
// the same bits.
#pragma once

#include <cstdint>
#include <cstring>

#include "frame/simd/complex.h"
#include "frame/types.h"

namespace ork::inner::vec {

template <class S> inline bool aligned(const void* p) {
    return (reinterpret_cast<std::uintptr_t>(p) & (S::bytes - 1)) == 0;
}
// x and y can be brought to vector alignment together by peeling whole
// elements of `elem` bytes.
template <class S> inline bool co_aligned(const void* x, const void* y, std::uintptr_t elem) {
    auto a = reinterpret_cast<std::uintptr_t>(x), b = reinterpret_cast<std::uintptr_t>(y);
    return ((a ^ b) & (S::bytes - 1)) == 0 && (a & (elem - 1)) == 0;
}

// ---- axpy: same address modulo the vector size takes the leading elements
// up to alignment, then aligned vectors; otherwise unaligned accesses. Four
// vectors per main step.
template <class S, bool Aligned, class R>
idx axpy_vectors(idx i, idx n, R alpha, const R* x, R* y) {
    using V = typename S::V;
    constexpr idx L = S::lanes;
    const V a = S::set1(alpha);
    auto ld = [](const R* p) { return Aligned ? S::load(p) : S::loadu(p); };
    auto st = [](R* p, V v) { Aligned ? S::store(p, v) : S::storeu(p, v); };
    for (; i + 4 * L <= n; i += 4 * L) {
        V v[4];
        for (int k = 0; k < 4; ++k) v[k] = S::add(ld(y + i + k * L), S::mul(a, ld(x + i + k * L)));
        for (int k = 0; k < 4; ++k) st(y + i + k * L, v[k]);
    }
    for (; i + L <= n; i += L) st(y + i, S::add(ld(y + i), S::mul(a, ld(x + i))));
    return i;
}

template <class S, class R>
void axpy(idx n, R alpha, const R* x, R* y) {
    idx i = 0;
    if (co_aligned<S>(x, y, sizeof(R))) {
        for (; i < n && !aligned<S>(x + i); ++i) y[i] += alpha * x[i];
        i = axpy_vectors<S, true>(i, n, alpha, x, y);
    } else {
        i = axpy_vectors<S, false>(i, n, alpha, x, y);
    }
    for (; i < n; ++i) y[i] += alpha * x[i];
}

// Complex: two vectors of interleaved values per step, then one, then the
// elements left one by one.
template <class S, class R>
ORK_NO_LOOP_VECTORS void axpy(idx n, cx<R> alpha, const cx<R>* x, cx<R>* y) {
    constexpr idx per = S::lanes / 2;
    const simd::cscale<S> mul(alpha);
    auto* xr = reinterpret_cast<const R*>(x);
    auto* yr = reinterpret_cast<R*>(y);
    idx i = 0;
    for (; i + 2 * per <= n; i += 2 * per) {
        auto y0 = S::add(S::loadu(yr + 2 * i), mul(S::loadu(xr + 2 * i)));
        auto y1 = S::add(S::loadu(yr + 2 * i + S::lanes), mul(S::loadu(xr + 2 * i + S::lanes)));
        S::storeu(yr + 2 * i, y0);
        S::storeu(yr + 2 * i + S::lanes, y1);
    }
    for (; i + per <= n; i += per) S::storeu(yr + 2 * i, S::add(S::loadu(yr + 2 * i), mul(S::loadu(xr + 2 * i))));
    for (; i < n; ++i) y[i] += alpha * x[i];
}

// ---- scal: leading elements up to alignment, then aligned vectors.
template <class S, class R>
void scal(idx n, R alpha, R* x) {
    using V = typename S::V;
    constexpr idx L = S::lanes;
    const V a = S::set1(alpha);
    idx i = 0;
    if ((reinterpret_cast<std::uintptr_t>(x) & (sizeof(R) - 1)) == 0)
        for (; i < n && !aligned<S>(x + i); ++i) x[i] *= alpha;
    if (aligned<S>(x + i))
        for (; i + 4 * L <= n; i += 4 * L)
            for (int k = 0; k < 4; ++k) S::store(x + i + k * L, S::mul(a, S::load(x + i + k * L)));
    for (; i + L <= n; i += L) S::storeu(x + i, S::mul(a, S::loadu(x + i)));
    for (; i < n; ++i) x[i] *= alpha;
}

template <class S, class R>
ORK_NO_LOOP_VECTORS void scal(idx n, cx<R> alpha, cx<R>* x) {
    constexpr idx per = S::lanes / 2;
    const simd::cscale<S> mul(alpha);
    auto* xr = reinterpret_cast<R*>(x);
    idx i = 0;
    for (; i + per <= n; i += per) S::storeu(xr + 2 * i, mul(S::loadu(xr + 2 * i)));
    for (; i < n; ++i) x[i] = alpha * x[i];
}

// ---- copy and swap of whole 4-byte words (every element type is made of
// them), four vectors a step; values are moved, never computed, so NaN
// payloads survive. D is the vocabulary of doubles.
template <class D>
void copy_bytes(std::size_t bytes, const void* xv, void* yv) {
    constexpr std::size_t B = D::bytes;
    auto* x = static_cast<const char*>(xv);
    auto* y = static_cast<char*>(yv);
    auto at = [](const char* p) { return reinterpret_cast<const double*>(p); };
    auto to = [](char* p) { return reinterpret_cast<double*>(p); };
    std::size_t i = 0;
    for (; i + 4 * B <= bytes; i += 4 * B) {
        typename D::V v[4];
        for (std::size_t k = 0; k < 4; ++k) v[k] = D::loadu(at(x + i + k * B));
        for (std::size_t k = 0; k < 4; ++k) D::storeu(to(y + i + k * B), v[k]);
    }
    for (; i + B <= bytes; i += B) D::storeu(to(y + i), D::loadu(at(x + i)));
    for (; i + 4 <= bytes; i += 4) std::memcpy(y + i, x + i, 4);
}

template <class D>
void swap_bytes(std::size_t bytes, void* xv, void* yv) {
    constexpr std::size_t B = D::bytes;
    auto* x = static_cast<char*>(xv);
    auto* y = static_cast<char*>(yv);
    auto to = [](char* p) { return reinterpret_cast<double*>(p); };
    std::size_t i = 0;
    for (; i + 2 * B <= bytes; i += 2 * B) {
        const auto a = D::loadu(to(x + i)), b = D::loadu(to(x + i + B));
        const auto c = D::loadu(to(y + i)), d = D::loadu(to(y + i + B));
        D::storeu(to(y + i), a);
        D::storeu(to(y + i + B), b);
        D::storeu(to(x + i), c);
        D::storeu(to(x + i + B), d);
    }
    for (; i + 4 <= bytes; i += 4) {
        std::uint32_t a, b;
        std::memcpy(&a, x + i, 4);
        std::memcpy(&b, y + i, 4);
        std::memcpy(x + i, &b, 4);
        std::memcpy(y + i, &a, 4);
    }
}

}  // namespace ork::inner::vec
