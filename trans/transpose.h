// Transposition, copy and scaled addition of dense row-major matrices: the
// kernels, written once over the element type and conjugation, and the
// dispatchers that read the ordering and operation letters. Column-major
// calls are the row-major kernels on the exchanged dimensions.
#pragma once

#include <cstdint>

#include "trans/inner.h"
#include "trans/recursion.h"

namespace ork::trans {

using uidx = std::uint64_t;

// The operation letters: N none, T transpose, R conjugate, C conjugate
// transpose; for real types R reads as N and C as T.
enum class op { n, t, r, c, bad };

template <class T>
constexpr op read_op(char letter) {
    switch (letter) {
    case 'N': case 'n': return op::n;
    case 'T': case 't': return op::t;
    case 'R': case 'r': return is_complex<T> ? op::r : op::n;
    case 'C': case 'c': return is_complex<T> ? op::c : op::t;
    default: return op::bad;
    }
}
constexpr bool transposes(op o) { return o == op::t || o == op::c; }
constexpr bool conjugates(op o) { return o == op::r || o == op::c; }

// 1 for row-major, 0 for column-major, -1 for anything else.
constexpr int read_ordering(char letter) {
    return (letter == 'R' || letter == 'r') ? 1 : (letter == 'C' || letter == 'c') ? 0 : -1;
}

template <class T, bool Conj>
inline T moved(T alpha, T a) {
    if constexpr (Conj) return alpha * conj(a);
    else return alpha * a;
}

template <class T> inline void exchange(T& a, T& b) {
    T t = a;
    a = b;
    b = t;
}

// ---- omatcopy2: B = alpha*op(A) with element strides; omatcopy is the
// same with both strides 1.

template <class T, bool Conj>
void rec_n(uidx rows, uidx cols, T alpha, const T* a, uidx lda, uidx sa, T* b, uidx ldb, uidx sb) {
    for (uidx i = 0; i < rows; ++i) {
        const T* ar = a + i * lda;
        T* br = b + i * ldb;
        if (sa == 1 && sb == 1) {
            inner::scale<T, Conj>(cols, alpha, ar, br);
            continue;
        }
        uidx j = 0;
        for (; j + 1 < cols; j += 2) {
            T x0 = ar[j * sa], x1 = ar[(j + 1) * sa];
            br[j * sb] = moved<T, Conj>(alpha, x0);
            br[(j + 1) * sb] = moved<T, Conj>(alpha, x1);
        }
        if (j < cols) br[j * sb] = moved<T, Conj>(alpha, ar[j * sa]);
    }
}

// Cache-oblivious transposition (trans/recursion.h): tiles of at most 4 x 4
// copied directly; the unit-stride case is the inner kernel's.
template <class T, bool Conj>
void rec_t(uidx rows, uidx cols, T alpha, const T* a, uidx lda, uidx sa, T* b, uidx ldb, uidx sb) {
    if (rows == 0 || cols == 0) return;
    if (sa == 1 && sb == 1) return inner::rec_t<T, Conj>(rows, cols, alpha, a, lda, b, ldb);
    split_t(rows, cols, a, lda, sa, b, ldb, sb, [&](uidx r, uidx c, const T* at, T* bt) {
        for (uidx i = 0; i < r; ++i)
            for (uidx j = 0; j < c; ++j) bt[j * ldb + i * sb] = moved<T, Conj>(alpha, at[i * lda + j * sa]);
    });
}

// ---- imatcopy

// n x n in place: (i, j) and (j, i) exchanged for j < i, both scaled; the
// diagonal scaled.
template <class T, bool Conj>
void square_t(uidx n, T alpha, T* ab, uidx lda) {
    for (uidx i = 0; i < n; ++i) {
        T* ri = ab + i * lda;
        for (uidx j = 0; j < i; ++j) {
            T x = ri[j], y = ab[j * lda + i];
            ri[j] = moved<T, Conj>(alpha, y);
            ab[j * lda + i] = moved<T, Conj>(alpha, x);
        }
        ri[i] = moved<T, Conj>(alpha, ri[i]);
    }
}

template <class T, bool Conj>
void square_n(uidx n, T alpha, T* ab, uidx lda) {
    for (uidx i = 0; i < n; ++i) inner::scale<T, Conj>(n, alpha, ab + i * lda, ab + i * lda);
}

// Scaled copy in place from leading dimension lda to ldb: backwards when the
// rows spread out (lda < ldb), so nothing is overwritten before it is read.
template <class T, bool Conj>
void mipt_n(uidx rows, uidx cols, T alpha, T* ab, uidx lda, uidx ldb) {
    if (rows == 0 || cols == 0) return;
    if (lda < ldb) {
        for (uidx i = rows; i-- > 0;) {
            const T* src = ab + i * lda;
            T* dst = ab + i * ldb;
            uidx j = cols;
            for (; j >= 2; j -= 2) {
                T x1 = src[j - 1], x0 = src[j - 2];
                dst[j - 1] = moved<T, Conj>(alpha, x1);
                dst[j - 2] = moved<T, Conj>(alpha, x0);
            }
            if (j) dst[0] = moved<T, Conj>(alpha, src[0]);
        }
    } else {
        for (uidx i = 0; i < rows; ++i) inner::scale<T, Conj>(cols, alpha, ab + i * lda, ab + i * ldb);
    }
}

// q / d and q mod d by a multiply-high with one correction, since the cycle
// walk divides at every step: m = floor((2^64 - 1)/d) underestimates the
// quotient by at most one.
struct divider {
    uidx d, m;
    explicit divider(uidx d_) : d(d_), m(~uidx(0) / d_) {}
    void divmod(uidx q, uidx& quot, uidx& rem) const {
        quot = uidx((unsigned __int128)q * m >> 64);
        rem = q - quot * d;
        if (rem >= d) {
            ++quot;
            rem -= d;
        }
    }
};

// In-place transposition of a rows x cols matrix from leading dimension lda
// to ldb (ldb >= rows) by following the cycles of next(q) = (q div lda) +
// (q mod lda)*ldb, with no work memory. Position q holds source element
// (q div lda, q mod lda), valid when inside rows x cols. A valid position p
// leads its cycle when the walk from next(p) meets no valid position below p
// before p itself; the leader then carries each valid value one step along
// the cycle, scaled.
//
// The walks are pure arithmetic, one dependent chain each, so eight of them
// (for consecutive positions) are interleaved; a position found to lead has
// its cycle moved at once. Cycles are disjoint, so the order in which they
// move does not change the result.
template <class T, bool Conj>
void mipt_t(uidx rows, uidx cols, T alpha, T* ab, uidx lda, uidx ldb) {
    if (rows == 0 || cols == 0) return;
    const divider by_lda(lda);
    auto move_cycle = [&](uidx p) {
        uidx r, c;  // the coordinates of q
        by_lda.divmod(p, r, c);
        T carry = ab[p];
        bool carrying = true;
        uidx q;
        do {
            q = r + c * ldb;
            by_lda.divmod(q, r, c);
            const bool valid = c < cols && r < rows;
            T read{};
            if (valid && q != p) read = ab[q];
            if (carrying) ab[q] = moved<T, Conj>(alpha, carry);
            carry = read;
            carrying = valid;
        } while (q != p);
    };
    struct walk {
        uidx p, q;
    };
    constexpr int lanes = 8;
    walk w[lanes];
    uidx pr = 0, pc = 0;  // the next valid position to test, row by row
    auto take = [&](walk& k) {
        if (pr == rows) return false;
        k.p = pr * lda + pc;
        k.q = pr + pc * ldb;
        if (++pc == cols) pc = 0, ++pr;
        return true;
    };
    int n = 0;
    while (n < lanes && take(w[n])) ++n;
    while (n > 0) {
        for (int k = 0; k < n;) {
            uidx r, c;
            by_lda.divmod(w[k].q, r, c);
            if (w[k].q <= w[k].p && c < cols) {
                if (w[k].q == w[k].p) move_cycle(w[k].p);
                if (!take(w[k])) {
                    w[k] = w[--n];
                    continue;
                }
            } else {
                w[k].q = r + c * ldb;
            }
            ++k;
        }
    }
}

// ---- omatadd: C = alpha*opA(A) + beta*opB(B); rows x cols are C's.

// C(i, j) = alpha*opA(C(i, j)) + beta*opB(B(j, i)) in place, element by element.
template <class T, bool CA, bool CB>
void add_nt_direct(uidx rows, uidx cols, T alpha, T* c, uidx ldc, T beta, const T* b, uidx ldb) {
    for (uidx i = 0; i < rows; ++i)
        for (uidx j = 0; j < cols; ++j)
            c[i * ldc + j] = moved<T, CA>(alpha, c[i * ldc + j]) + moved<T, CB>(beta, b[j * ldb + i]);
}

// The in-place recursion: the ceiling half of the larger dimension (the
// columns on a tie) by recursion, the floor half by the loop.
template <class T, bool CA, bool CB>
void add_rec_nt(uidx rows, uidx cols, T alpha, T* c, uidx ldc, T beta, const T* b, uidx ldb) {
    while (rows > 4 || cols > 4) {
        if (rows > cols) {
            uidx h = rows - rows / 2;
            add_rec_nt<T, CA, CB>(h, cols, alpha, c, ldc, beta, b, ldb);
            rows -= h;
            c += h * ldc;
            b += h;
        } else {
            uidx h = cols - cols / 2;
            add_rec_nt<T, CA, CB>(rows, h, alpha, c, ldc, beta, b, ldb);
            cols -= h;
            c += h;
            b += h * ldb;
        }
    }
    add_nt_direct<T, CA, CB>(rows, cols, alpha, c, ldc, beta, b, ldb);
}

template <class T, bool CA, bool CB>
void add_nt(uidx rows, uidx cols, T alpha, const T* a, uidx lda, T beta, const T* b, uidx ldb, T* c, uidx ldc) {
    if (rows == 0 || cols == 0) return;
    if (c == a && ldc == lda) {
        if (rows < 5 && cols < 5) return add_nt_direct<T, CA, CB>(rows, cols, alpha, c, ldc, beta, b, ldb);
        if (rows > cols) {
            uidx h = rows - rows / 2;
            add_rec_nt<T, CA, CB>(h, cols, alpha, c, ldc, beta, b, ldb);
            add_rec_nt<T, CA, CB>(rows - h, cols, alpha, c + h * ldc, ldc, beta, b + h, ldb);
        } else {
            uidx h = cols - cols / 2;
            add_rec_nt<T, CA, CB>(rows, h, alpha, c, ldc, beta, b, ldb);
            add_rec_nt<T, CA, CB>(rows, cols - h, alpha, c + h, ldc, beta, b + h * ldb, ldb);
        }
        return;
    }
    for (uidx i = 0; i < rows; ++i) {
        const T* ar = a + i * lda;
        const T* bc = b + i;
        T* cr = c + i * ldc;
        uidx j = 0;
        if (cols >= 9 && (reinterpret_cast<std::uintptr_t>(cr) & 15) != 0) {
            cr[0] = moved<T, CA>(alpha, ar[0]) + moved<T, CB>(beta, bc[0]);
            j = 1;
        }
        for (; j + 1 < cols; j += 2) {
            T a0 = ar[j], a1 = ar[j + 1], b0 = bc[j * ldb], b1 = bc[(j + 1) * ldb];
            cr[j] = moved<T, CA>(alpha, a0) + moved<T, CB>(beta, b0);
            cr[j + 1] = moved<T, CA>(alpha, a1) + moved<T, CB>(beta, b1);
        }
        if (j < cols) cr[j] = moved<T, CA>(alpha, ar[j]) + moved<T, CB>(beta, bc[j * ldb]);
    }
}

template <class T, bool CA, bool CB>
void add_nn(uidx rows, uidx cols, T alpha, const T* a, uidx lda, T beta, const T* b, uidx ldb, T* c, uidx ldc) {
    if (cols == 0) return;
    for (uidx i = 0; i < rows; ++i) inner::axpby<T, CA, CB>(cols, alpha, a + i * lda, beta, b + i * ldb, c + i * ldc);
}

// C = alpha*opA(A)^T + beta*opB(B)^T, walking both sources down a column.
template <class T, bool CA, bool CB>
void add_tt(uidx rows, uidx cols, T alpha, const T* a, uidx lda, T beta, const T* b, uidx ldb, T* c, uidx ldc) {
    for (uidx i = 0; i < rows; ++i)
        for (uidx j = 0; j < cols; ++j)
            c[i * ldc + j] = moved<T, CA>(alpha, a[j * lda + i]) + moved<T, CB>(beta, b[j * ldb + i]);
}

template <class T, op A, op B>
void add(uidx rows, uidx cols, T alpha, const T* a, uidx lda, T beta, const T* b, uidx ldb, T* c, uidx ldc) {
    constexpr bool ca = conjugates(A), cb = conjugates(B);
    if constexpr (!transposes(A) && !transposes(B)) add_nn<T, ca, cb>(rows, cols, alpha, a, lda, beta, b, ldb, c, ldc);
    else if constexpr (!transposes(A)) add_nt<T, ca, cb>(rows, cols, alpha, a, lda, beta, b, ldb, c, ldc);
    else if constexpr (transposes(B)) add_tt<T, ca, cb>(rows, cols, alpha, a, lda, beta, b, ldb, c, ldc);
    else static_assert(transposes(B), "a transposed A with B untransposed is served with A and B exchanged");
}

// ---- dispatchers

template <class T>
void omatcopy2(char ordering, char trans, uidx rows, uidx cols, T alpha, const T* a, uidx lda, uidx sa, T* b,
               uidx ldb, uidx sb) {
    const int row_major = read_ordering(ordering);
    const op o = read_op<T>(trans);
    if (row_major < 0 || o == op::bad) return;
    if (!row_major) exchange(rows, cols);
    switch (o) {
    case op::n: return rec_n<T, false>(rows, cols, alpha, a, lda, sa, b, ldb, sb);
    case op::t: return rec_t<T, false>(rows, cols, alpha, a, lda, sa, b, ldb, sb);
    case op::r: return rec_n<T, true>(rows, cols, alpha, a, lda, sa, b, ldb, sb);
    case op::c: return rec_t<T, true>(rows, cols, alpha, a, lda, sa, b, ldb, sb);
    default: return;
    }
}

template <class T>
void imatcopy(char ordering, char trans, uidx rows, uidx cols, T alpha, T* ab, uidx lda, uidx ldb) {
    const int row_major = read_ordering(ordering);
    const op o = read_op<T>(trans);
    if (row_major < 0 || o == op::bad) return;
    const bool square = rows == cols && cols == lda && lda == ldb;
    if (!row_major) exchange(rows, cols);
    switch (o) {
    case op::n: return square ? square_n<T, false>(rows, alpha, ab, lda) : mipt_n<T, false>(rows, cols, alpha, ab, lda, ldb);
    case op::t: return square ? square_t<T, false>(rows, alpha, ab, lda) : mipt_t<T, false>(rows, cols, alpha, ab, lda, ldb);
    case op::r: return square ? square_n<T, true>(rows, alpha, ab, lda) : mipt_n<T, true>(rows, cols, alpha, ab, lda, ldb);
    case op::c: return square ? square_t<T, true>(rows, alpha, ab, lda) : mipt_t<T, true>(rows, cols, alpha, ab, lda, ldb);
    default: return;
    }
}

template <class T>
using add_kernel = void (*)(uidx, uidx, T, const T*, uidx, T, const T*, uidx, T*, uidx);

// The kernel for (opA, opB) with A untransposed or both transposed.
template <class T, op A>
add_kernel<T> add_for_b(op b) {
    if constexpr (transposes(A)) return b == op::t ? &add<T, A, op::t> : &add<T, A, op::c>;
    else switch (b) {
        case op::n: return &add<T, A, op::n>;
        case op::t: return &add<T, A, op::t>;
        case op::r: return &add<T, A, op::r>;
        default: return &add<T, A, op::c>;
        }
}

// A transposed and B not is the same sum with the operands exchanged; the
// order of the two products in the sum is the same either way.
template <class T>
void omatadd(char ordering, char transa, char transb, uidx rows, uidx cols, T alpha, const T* a, uidx lda, T beta,
             const T* b, uidx ldb, T* c, uidx ldc) {
    const int row_major = read_ordering(ordering);
    op oa = read_op<T>(transa), ob = read_op<T>(transb);
    if (row_major < 0 || oa == op::bad || ob == op::bad) return;
    if (!row_major) exchange(rows, cols);
    if (transposes(oa) && !transposes(ob)) {
        exchange(oa, ob);
        exchange(alpha, beta);
        exchange(a, b);
        exchange(lda, ldb);
    }
    add_kernel<T> k = nullptr;
    switch (oa) {
    case op::n: k = add_for_b<T, op::n>(ob); break;
    case op::t: k = add_for_b<T, op::t>(ob); break;
    case op::r: k = add_for_b<T, op::r>(ob); break;
    default: k = add_for_b<T, op::c>(ob); break;
    }
    k(rows, cols, alpha, a, lda, beta, b, ldb, c, ldc);
}

}  // namespace ork::trans

namespace ork::trans {

// x := conj(x) over n contiguous elements.
template <class R>
void conj_vector(uidx n, cx<R>* x) {
    for (uidx j = 0; j < n; ++j) x[j].im = -x[j].im;
}

// A bit set over 64-bit words marking positions known not to lead a cycle.
inline void know_false_cycle(std::uint64_t* set, uidx k) { set[k / 64] |= std::uint64_t(1) << (k % 64); }
inline bool is_known_false_cycle(const std::uint64_t* set, uidx k) { return (set[k / 64] >> (k % 64)) & 1; }

}  // namespace ork::trans
