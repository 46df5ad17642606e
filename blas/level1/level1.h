// Level-1 vector kernels, written once over the element type. The exports in
// blas/level1/exports.cpp instantiate them; contiguous cases go to the inner
// kernels of the processor generation (blas/level1/inner.h).
#pragma once

#include <cmath>
#include <type_traits>

#include "blas/level1/compensated.h"
#include "blas/level1/inner.h"
#include "blas/level1/ssq.h"
#include "frame/vector.h"

namespace ork::blas {

// Both increments 1, or both -1: walking both vectors backwards pairs the same
// elements as walking them forwards, so both take the contiguous kernel.
inline bool unit_pair(idx incx, idx incy) { return incx * incy == 1 && (incx == 1 || incx == -1); }

template <class T>
void axpy(idx n, T alpha, const T* x, idx incx, T* y, idx incy) {
    if (n <= 0 || alpha == zero<T>()) return;  // a NaN alpha is not 0 and goes on
    if (unit_pair(incx, incy)) return inner::axpy(n, alpha, x, y);
    strided xv(n, x, incx);
    strided yv(n, y, incy);
    for (idx i = 0; i < n; ++i) yv[i] += alpha * xv[i];
}

template <class T>
void copy(idx n, const T* x, idx incx, T* y, idx incy) {
    if (n <= 0) return;
    if (unit_pair(incx, incy)) return inner::copy_bytes(std::size_t(n) * sizeof(T), x, y);
    strided xv(n, x, incx);
    strided yv(n, y, incy);
    for (idx i = 0; i < n; ++i) yv[i] = xv[i];
}

template <class T>
void swap(idx n, T* x, idx incx, T* y, idx incy) {
    if (n <= 0) return;
    if (unit_pair(incx, incy)) return inner::swap_bytes(std::size_t(n) * sizeof(T), x, y);
    strided xv(n, x, incx);
    strided yv(n, y, incy);
    for (idx i = 0; i < n; ++i) {
        T t = xv[i];
        xv[i] = yv[i];
        yv[i] = t;
    }
}

// x := alpha*x, alpha of the vector's type or (csscal, zdscal) its real type.
// The set of elements does not depend on the sign of incx; incx = 0 would
// scale one element n times and is taken as a quick return.
template <class T, class S>
void scal(idx n, S alpha, T* x, idx incx) {
    if (n <= 0 || incx == 0) return;
    if (incx < 0) incx = -incx;
    if constexpr (is_complex<T> && !is_complex<S>) {
        if (incx == 1) return inner::scal(2 * n, alpha, reinterpret_cast<S*>(x));
        for (idx i = 0; i < n; ++i) x[i * incx] = T{alpha * x[i * incx].re, alpha * x[i * incx].im};
    } else {
        if (incx == 1) return inner::scal(n, alpha, x);
        for (idx i = 0; i < n; ++i) x[i * incx] = alpha * x[i * incx];
    }
}

// The reductions of single and complex vectors, whose order is free (the
// double ones keep their fixed orders), sum long runs in blocks from the
// first element added with compensation (blas/level1/compensated.h): blocks
// of 16 KB through the inner kernels (whose partial sums then add at most
// 512 terms each on the baseline; smaller blocks cost the complex dots 5-8%
// at n = 10^5), of 256 terms as plain running sums for strided vectors.
// Their error then does not grow with n.
template <class T> constexpr bool free_order = !std::is_same_v<T, double>;
template <class T> constexpr idx inner_block = idx(16384 / sizeof(T));
constexpr idx strided_block = 256;

// sum conj?(x_i)*y_i in the precision of T.
template <class T, bool Conj>
T dot(idx n, const T* x, idx incx, const T* y, idx incy) {
    if (n <= 0) return zero<T>();
    if (unit_pair(incx, incy)) {
        auto part = [&](idx i0, idx len) {
            if constexpr (is_complex<T>) return inner::dot(len, x + i0, y + i0, Conj);
            else return inner::dot(len, x + i0, y + i0);
        };
        if constexpr (free_order<T>) return blockwise_sum<T>(n, inner_block<T>, part);
        else return part(0, n);
    }
    strided xv(n, x, incx);
    strided yv(n, y, incy);
    auto term = [&](idx i) { return (Conj ? conj(xv[i]) : xv[i]) * yv[i]; };
    if constexpr (free_order<T>) return blocked_sum<T>(n, strided_block, term);
    T s = zero<T>();
    for (idx i = 0; i < n; ++i) s += term(i);
    return s;
}

// Single vectors, double accumulation from `start` (dsdot: 0; sdsdot: sb).
inline double dot_widened(idx n, const float* x, idx incx, const float* y, idx incy, double start) {
    if (n <= 0) return start;
    if (unit_pair(incx, incy)) return inner::dot_widened(n, x, y, start);
    strided xv(n, x, incx);
    strided yv(n, y, incy);
    double s = start;
    for (idx i = 0; i < n; ++i) s += double(xv[i]) * double(yv[i]);
    return s;
}

// Reductions whose value does not depend on direction walk forward from x[0]
// by |incx|.
inline idx forward_step(idx incx) { return incx < 0 ? -incx : incx; }

// sum |re| + |im| (|x| for reals).
template <class T>
real_t<T> asum(idx n, const T* x, idx incx) {
    using R = real_t<T>;
    if (n <= 0) return R(0);
    idx step = forward_step(incx);
    const R* r = reinterpret_cast<const R*>(x);
    constexpr idx per = is_complex<T> ? 2 : 1;  // reals an element
    if constexpr (free_order<T>) {
        if (step == 1)
            return blockwise_sum<R>(per * n, per * inner_block<T>, [&](idx i0, idx len) { return inner::asum(len, r + i0); });
        return blocked_sum<R>(n, strided_block, [&](idx i) { return abs1(x[i * step]); });
    }
    if (step == 1) return inner::asum(per * n, r);
    R s = 0;
    for (idx i = 0; i < n; ++i) s += abs1(x[i * step]);
    return s;
}

// One-pass scaled sum of squares over the n reals v(0), v(1), ...
template <class R, class Get>
R scaled_norm(idx n, Get v) {
    R scale = 0, ssq = 1;
    for (idx i = 0; i < n; ++i) ssq_step(v(i), scale, ssq);
    return scale * std::sqrt(ssq);
}

// The scaled sums of squares of dznrm2's blocks, merged: the pair with the
// larger scale keeps it, the other's ssq is rescaled by the square of the
// ratio, and the ssqs add with compensation (an ssq already held is
// rescaled, hi and lo alike, when a later block has a larger scale). A block
// of zeros, (0, 1), adds nothing; a NaN spreads.
template <class R>
struct scaled_total {
    R scale = 0;
    compensated<R> ssq;
    void merge(R s, R q) {
        if (s == 0) {
            if (q != q) ssq.add(q);
            return;
        }
        if (s > scale) {
            const R r = scale / s;
            ssq.hi = ssq.hi * (r * r), ssq.lo = ssq.lo * (r * r);
            ssq.add(q);
            scale = s;
        } else {
            const R r = s / scale;
            ssq.add(q * (r * r));
        }
    }
    R norm() const { return scale * std::sqrt(ssq.total()); }
};

// dnrm2: the scaled one-pass scheme. dznrm2: the same over the real and
// imaginary parts taken in turn as separate reals, in blocks of 1024 reals
// whose scaled pairs are merged (scaled_total), so that the error does not
// grow with n; a run of one block is the plain scheme. snrm2, scnrm2: the
// squares of floats summed in double, which can neither overflow nor
// underflow, and whose error stays far below a single rounding.
template <class T>
real_t<T> nrm2(idx n, const T* x, idx incx) {
    using R = real_t<T>;
    if (n <= 0) return R(0);
    if (n == 1 && !is_complex<T>) return abs1(x[0]);
    idx step = forward_step(incx);
    const R* r = reinterpret_cast<const R*>(x);
    if constexpr (std::is_same_v<R, float>) {
        double s = 0;
        if (step == 1) s = inner::sumsq_widened((is_complex<T> ? 2 : 1) * n, r);
        else
            for (idx i = 0; i < n; ++i) {
                const T& e = x[i * step];
                if constexpr (is_complex<T>) s += double(e.re) * double(e.re) + double(e.im) * double(e.im);
                else s += double(e) * double(e);
            }
        return float(std::sqrt(s));
    } else if constexpr (is_complex<T>) {
        auto real = [&](idx i) { return r[(i >> 1) * 2 * step + (i & 1)]; };
        scaled_total<R> total;
        for (idx i0 = 0; i0 < 2 * n; i0 += 1024) {
            const idx len = 2 * n - i0 < 1024 ? 2 * n - i0 : 1024;
            R scale = 0, ssq = 1;
            if (step == 1) inner::scaled_ssq(len, r + i0, scale, ssq);
            else
                for (idx i = i0; i < i0 + len; ++i) ssq_step(real(i), scale, ssq);
            total.merge(scale, ssq);
        }
        return total.norm();
    } else if (step == 1) {
        R scale = 0, ssq = 1;
        inner::scaled_ssq(n, r, scale, ssq);
        return scale * std::sqrt(ssq);
    } else {
        return scaled_norm<R>(n, [&](idx i) { return r[i * step]; });
    }
}

// 1-based index of the largest (Max) or smallest magnitude. A candidate
// replaces the present one unless the present one already compares >= (<=
// for the smallest) with it; so the first of equal values wins, a NaN is
// taken when met, and the element right after a NaN is always taken too.
template <class T, bool Max>
idx iamax(idx n, const T* x, idx incx) {
    if (n <= 0 || incx <= 0) return 0;
    if (n == 1) return 1;
    if constexpr (!is_complex<T>)
        if (incx == 1) return inner::iamax(n, x, Max);
    auto best = abs1(x[0]);
    idx result = 1;
    for (idx i = 1; i < n; ++i) {
        auto a = abs1(x[i * incx]);
        if (Max ? !(best >= a) : !(best <= a)) {
            best = a;
            result = i + 1;
        }
    }
    return result;
}

// Plane rotation with real c and s of the vectors' real type, or complex s
// (crot, zrot): x := c*x + s*y, y := c*y - conj(s)*x.
template <class T, class S>
void rot(idx n, T* x, idx incx, T* y, idx incy, real_t<T> c, S s) {
    if (n <= 0) return;
    strided xv(n, x, incx);
    strided yv(n, y, incy);
    for (idx i = 0; i < n; ++i) {
        T a = xv[i], b = yv[i];
        xv[i] = c * a + s * b;
        yv[i] = c * b - conj(s) * a;
    }
}

// Real rotation generator: r carries the sign of the larger of a, b (b on a
// tie); z reconstructs c and s from one number.
template <class R>
void rotg(R* a, R* b, R* c, R* s) {
    R aa = abs1(*a), ab = abs1(*b);
    R scale = aa + ab;
    if (scale == 0) {
        *c = 1;
        *s = 0;
        *a = 0;
        *b = 0;
        return;
    }
    R roe = aa > ab ? *a : *b;
    R ra = *a / scale, rb = *b / scale;
    R r = scale * std::sqrt(ra * ra + rb * rb);
    if (roe < 0) r = -r;
    *c = *a / r;
    *s = *b / r;
    R z = 1;
    if (aa > ab) z = *s;
    else if (*c != 0) z = 1 / *c;
    *a = r;
    *b = z;
}

template <class R> R modulus(cx<R> v) { return std::hypot(v.re, v.im); }

// Complex generator: c real, s complex, a := alpha*norm with alpha = a/|a|;
// b is not changed.
template <class R>
void rotg(cx<R>* a, const cx<R>* b, R* c, cx<R>* s) {
    R na = modulus(*a);
    if (na == 0) {
        *c = 0;
        *s = cx<R>{1, 0};
        *a = *b;
        return;
    }
    R nb = modulus(*b);
    R scale = na + nb;
    R qa = na / scale, qb = nb / scale;
    R norm = scale * std::sqrt(qa * qa + qb * qb);
    cx<R> alpha{a->re / na, a->im / na};
    *c = na / norm;
    cx<R> t = alpha * conj(*b);
    *s = cx<R>{t.re / norm, t.im / norm};
    *a = cx<R>{alpha.re * norm, alpha.im * norm};
}

// Modified rotation: param = flag, h11, h21, h12, h22; the elements a flag
// implies (1, -1, or the identity for -2) are not read.
template <class R>
void rotm(idx n, R* x, idx incx, R* y, idx incy, const R* param) {
    R flag = param[0];
    if (n <= 0 || flag == R(-2)) return;
    strided xv(n, x, incx);
    strided yv(n, y, incy);
    if (flag < 0) {
        R h11 = param[1], h21 = param[2], h12 = param[3], h22 = param[4];
        for (idx i = 0; i < n; ++i) {
            R w = xv[i], z = yv[i];
            xv[i] = w * h11 + z * h12;
            yv[i] = w * h21 + z * h22;
        }
    } else if (flag == 0) {
        R h21 = param[2], h12 = param[3];
        for (idx i = 0; i < n; ++i) {
            R w = xv[i], z = yv[i];
            xv[i] = w + z * h12;
            yv[i] = w * h21 + z;
        }
    } else {
        R h11 = param[1], h22 = param[4];
        for (idx i = 0; i < n; ++i) {
            R w = xv[i], z = yv[i];
            xv[i] = w * h11 + z;
            yv[i] = -w + h22 * z;
        }
    }
}

// Modified rotation generator with rescaling by gam = 4096: d1 and d2 are
// kept within [gam^-2, gam^2] in magnitude. All scale factors are powers of
// two, so multiplying by 1/gam or gam^-2 is exact division.
template <class R>
void rotmg(R* d1p, R* d2p, R* x1p, R y1, R* param) {
    constexpr R gam = 4096, gamsq = 16777216, rgamsq = R(0x1p-24), rgam = R(0.000244140625);
    R d1 = *d1p, d2 = *d2p, x1 = *x1p;
    R flag, h11 = 0, h12 = 0, h21 = 0, h22 = 0;
    auto zero_all = [&] {
        flag = -1;
        h11 = h12 = h21 = h22 = 0;
        d1 = d2 = x1 = 0;
    };
    if (d1 < 0) {
        zero_all();
    } else {
        R p2 = d2 * y1;
        if (p2 == 0) {
            param[0] = -2;
            return;
        }
        R p1 = d1 * x1, q2 = p2 * y1, q1 = p1 * x1;
        if (abs1(q1) > abs1(q2)) {
            h21 = -y1 / x1;
            h12 = p2 / p1;
            R u = 1 - h12 * h21;
            if (u > 0) {
                flag = 0;
                d1 /= u;
                d2 /= u;
                x1 *= u;
            } else {
                zero_all();  // only reachable through rounding
            }
        } else if (q2 < 0) {
            zero_all();
        } else {
            flag = 1;
            h11 = p1 / p2;
            h22 = x1 / y1;
            R u = 1 + h11 * h22;
            R t = d2 / u;
            d2 = d1 / u;
            d1 = t;
            x1 = y1 * u;
        }
        // Rescaling makes the implied elements explicit (flag -1) first; once
        // the matrix is full, its scaled elements must be kept.
        auto make_full = [&] {
            if (flag == 0) {
                h11 = 1;
                h22 = 1;
            } else if (flag > 0) {
                h21 = -1;
                h12 = 1;
            }
            flag = -1;
        };
        // The loops stop at an infinite or NaN weight, which no scaling changes.
        constexpr R big = __builtin_huge_val();
        if (d1 != 0) {
            while ((d1 <= rgamsq || d1 >= gamsq) && d1 < big) {
                make_full();
                if (d1 <= rgamsq) {
                    d1 *= gamsq;
                    x1 *= rgam;
                    h11 *= rgam;
                    h12 *= rgam;
                } else {
                    d1 *= rgamsq;
                    x1 *= gam;
                    h11 *= gam;
                    h12 *= gam;
                }
            }
        }
        if (d2 != 0) {
            while ((abs1(d2) <= rgamsq || abs1(d2) >= gamsq) && abs1(d2) < big) {
                make_full();
                if (abs1(d2) <= rgamsq) {
                    d2 *= gamsq;
                    h21 *= rgam;
                    h22 *= rgam;
                } else {
                    d2 *= rgamsq;
                    h21 *= gam;
                    h22 *= gam;
                }
            }
        }
    }
    if (flag < 0) {
        param[1] = h11;
        param[2] = h21;
        param[3] = h12;
        param[4] = h22;
    } else if (flag == 0) {
        param[2] = h21;
        param[3] = h12;
    } else {
        param[1] = h11;
        param[4] = h22;
    }
    param[0] = flag;
    *d1p = d1;
    *d2p = d2;
    *x1p = x1;
}

// Elementary reflector of order 2 or 3 across contiguous vectors:
// t := (x + v*y [+ w*z])*tau; x -= t; y -= t*v [; z -= t*w].
template <class T>
void rot2(idx n, T* x, T* y, T v, T tau) {
    for (idx i = 0; i < n; ++i) {
        T t = (x[i] + v * y[i]) * tau;
        x[i] -= t;
        y[i] -= t * v;
    }
}

template <class T>
void rot3(idx n, T* x, T* y, T* z, T v, T w, T tau) {
    for (idx i = 0; i < n; ++i) {
        T t = (x[i] + v * y[i] + w * z[i]) * tau;
        x[i] -= t;
        y[i] -= t * v;
        z[i] -= t * w;
    }
}

// A vector of rotations: (x_i, y_i) := (c_i*x_i + s_i*y_i, c_i*y_i - conj(s_i)*x_i),
// c and s sharing the increment incc.
template <class T>
void lartv(idx n, T* x, idx incx, T* y, idx incy, const real_t<T>* c, const T* s, idx incc) {
    if (n <= 0) return;
    strided xv(n, x, incx);
    strided yv(n, y, incy);
    strided cv(n, c, incc);
    strided sv(n, s, incc);
    for (idx i = 0; i < n; ++i) {
        T a = xv[i], b = yv[i];
        xv[i] = cv[i] * a + sv[i] * b;
        yv[i] = cv[i] * b - conj(sv[i]) * a;
    }
}

// ---- sparse level 1: (nz, x, indx), indx 1-based into y
template <class T>
void axpyi(idx nz, T alpha, const T* x, const idx* indx, T* y) {
    if (nz <= 0 || alpha == zero<T>()) return;
    for (idx i = 0; i < nz; ++i) y[indx[i] - 1] += alpha * x[i];
}

template <class T, bool Conj>
T doti(idx nz, const T* x, const idx* indx, const T* y) {
    auto term = [&](idx i) { return (Conj ? conj(x[i]) : x[i]) * y[indx[i] - 1]; };
    if constexpr (free_order<T>) return blocked_sum<T>(nz, strided_block, term);
    T s = zero<T>();
    for (idx i = 0; i < nz; ++i) s += term(i);
    return s;
}

template <class T>
void gthr(idx nz, const T* y, T* x, const idx* indx) {
    for (idx i = 0; i < nz; ++i) x[i] = y[indx[i] - 1];
}

// Each element is gathered and cleared before the next is read, so a
// repeated index gathers its value once and 0 after that.
template <class T>
void gthrz(idx nz, T* y, T* x, const idx* indx) {
    for (idx i = 0; i < nz; ++i) {
        x[i] = y[indx[i] - 1];
        y[indx[i] - 1] = zero<T>();
    }
}

template <class T>
void sctr(idx nz, const T* x, const idx* indx, T* y) {
    for (idx i = 0; i < nz; ++i) y[indx[i] - 1] = x[i];
}

template <class R>
void roti(idx nz, R* x, const idx* indx, R* y, R c, R s) {
    if (nz <= 0 || (c == 1 && s == 0)) return;
    for (idx i = 0; i < nz; ++i) {
        R t = x[i], u = y[indx[i] - 1];
        y[indx[i] - 1] = c * u - s * t;
        x[i] = c * t + s * u;
    }
}

}  // namespace ork::blas
