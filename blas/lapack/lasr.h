// A sequence of plane rotations applied to a matrix from the left (A := P*A,
// P of order m) or the right (A := A*P^T, P of order n).
//
// P is the product of z-1 rotations, z = m (left) or n (right). Rotation k
// (0-based) acts in the plane (p, q): (k, k+1) for a variable pivot, (0, k+1)
// for the top, (k, z-1) for the bottom one; on a pair (u, v) of rows (left)
// or columns (right) it gives u := s*v + c*u, v := c*v - s*u, that is the
// rotation [c s; -s c]. Forward: P = P(z-2)*...*P(0), rotation 0 applied
// first; backward: P = P(0)*...*P(z-2), rotation z-2 first. A rotation with
// c = 1 and s = 0 is skipped. c and s are real for every element type.
#pragma once

#include "blas/lapack/scalar.h"

namespace ork::lapack {

enum class pivot { variable, top, bottom };

template <pivot Pv> inline void plane(idx k, idx z, idx& p, idx& q) {
    if constexpr (Pv == pivot::variable) p = k, q = k + 1;
    else if constexpr (Pv == pivot::top) p = 0, q = k + 1;
    else p = k, q = z - 1;
}

template <class T>
inline void rotate(T& u, T& v, real_t<T> c, real_t<T> s) {
    const T t = v;
    v = rmul(c, t) - rmul(s, u);
    u = rmul(s, t) + rmul(c, u);
}

// Left: every column is rotated on its own. Columns go in groups of four,
// rotation by rotation within a group, so that four independent chains of
// dependent rotations run side by side.
template <class T, pivot Pv, bool Forward>
void lasr_left(idx m, idx n, const real_t<T>* c, const real_t<T>* s, T* a, idx lda) {
    constexpr idx G = 4;
    for (idx j0 = 0; j0 < n; j0 += G) {
        const idx g = n - j0 < G ? n - j0 : G;
        T* col = a + j0 * lda;
        for (idx t = 0; t + 1 < m; ++t) {
            const idx k = Forward ? t : m - 2 - t;
            const real_t<T> ck = c[k], sk = s[k];
            if (ck == 1 && sk == 0) continue;
            idx p, q;
            plane<Pv>(k, m, p, q);
            for (idx j = 0; j < g; ++j) rotate(col[p + j * lda], col[q + j * lda], ck, sk);
        }
    }
}

// Right: every row is rotated on its own; the rows go in blocks whose
// columns stay in cache across the whole sequence, and each rotation is an
// elementwise loop over two contiguous column pieces (complex elements as
// pairs of reals, since c and s are real).
template <class T, pivot Pv, bool Forward>
void lasr_right(idx m, idx n, const real_t<T>* c, const real_t<T>* s, T* a, idx lda) {
    using R = real_t<T>;
    constexpr idx per = is_complex<T> ? 2 : 1;
    constexpr idx block = 2048 / idx(sizeof(R));  // reals per column piece
    R* ar = reinterpret_cast<R*>(a);
    const idx rows = m * per, ldr = lda * per;
    for (idx i0 = 0; i0 < rows; i0 += block) {
        const idx len = rows - i0 < block ? rows - i0 : block;
        for (idx t = 0; t + 1 < n; ++t) {
            const idx k = Forward ? t : n - 2 - t;
            const R ck = c[k], sk = s[k];
            if (ck == 1 && sk == 0) continue;
            idx p, q;
            plane<Pv>(k, n, p, q);
            R* __restrict u = ar + i0 + p * ldr;
            R* __restrict v = ar + i0 + q * ldr;
            for (idx i = 0; i < len; ++i) {
                const R tv = v[i], tu = u[i];
                v[i] = ck * tv - sk * tu;
                u[i] = sk * tv + ck * tu;
            }
        }
    }
}

template <class T, bool Left, pivot Pv, bool Forward>
void lasr(idx m, idx n, const real_t<T>* c, const real_t<T>* s, T* a, idx lda) {
    if (m <= 0 || n <= 0) return;
    if constexpr (Left) lasr_left<T, Pv, Forward>(m, n, c, s, a, lda);
    else lasr_right<T, Pv, Forward>(m, n, c, s, a, lda);
}

}  // namespace ork::lapack
