// The templates behind the CBLAS wrappers (core/stdblas/cblas.cpp): layout and
// flag checks reported at their CBLAS positions, row-major calls made as
// column-major calls on the transposed view, and the conjugations that view
// needs for the complex Hermitian and conjugate-transposed level-2 routines.
// Each takes libork's entry F as its first template argument.
#pragma once

#include <tuple>
#include <type_traits>

#include "core/stdblas/stdblas.h"
#include "ork/service.h"

namespace ork::stdblas::cblas {

using idx = ork_int;

template <class T> constexpr bool is_complex = std::is_same_v<T, ork_complex8> || std::is_same_v<T, ork_complex16>;

// Element pointers from the interface's void pointers (complex arrays and scalars).
template <class T> const T* as(const void* p) { return static_cast<const T*>(p); }
template <class T> T* as(void* p) { return static_cast<T*>(p); }

// i?amax: libork's 1-based index (0 for nothing) as the interface's 0-based one.
inline CBLAS_INDEX zero_based(idx k) { return k > 0 ? CBLAS_INDEX(k - 1) : 0; }

template <class T> T conj(T v) {
    if constexpr (is_complex<T>) v.im = -v.im;
    return v;
}

// Complex arithmetic of the unbuffered paths, in the element's own precision.
template <class T> T add(T a, T b) { return {a.re + b.re, a.im + b.im}; }
template <class T> T mul(T a, T b) { return {a.re * b.re - a.im * b.im, a.re * b.im + a.im * b.re}; }
template <class T> bool is_zero(const T& v) {
    if constexpr (is_complex<T>) return v.re == 0 && v.im == 0;
    else return v == 0;
}
template <class T> bool is_one(const T& v) {
    if constexpr (is_complex<T>) return v.re == 1 && v.im == 0;
    else return v == 1;
}

// Element i (0-based) of the n-element vector (x, inc): a negative increment
// walks it from its far end.
template <class T> T& at(T* x, idx n, idx inc, idx i) { return x[inc > 0 ? i * inc : (n - 1 - i) * -inc]; }

// Conjugates the n elements of (x, inc) in place; n <= 0 leaves it alone.
template <class T> void conj_vector(T* x, idx n, idx inc) {
    if constexpr (is_complex<T>) {
        const idx step = inc < 0 ? -inc : inc;
        for (idx i = 0; i < n; ++i) x[i * step] = conj(x[i * step]);
    }
}

// A conjugated copy of the n elements of (x, inc), contiguous, walked with
// increment inc() (the sign of inc) in its place. The copy comes from libork's
// allocator; when it cannot be had, ok() is false and the caller takes its
// unbuffered path. n <= 0 or inc = 0 needs no copy: x itself.
template <class T> class conj_copy {
public:
    conj_copy(const T* x, idx n, idx inc) : use_(x), inc_(inc) {
        if (n <= 0 || inc == 0) return;
        own_ = static_cast<T*>(ork_serv_ork_malloc(sizeof(T) * std::size_t(n), 64));
        use_ = own_;
        inc_ = inc > 0 ? 1 : -1;
        if (!own_) return;
        const idx step = inc < 0 ? -inc : inc;
        for (idx i = 0; i < n; ++i) own_[i] = conj(x[i * step]);
    }
    ~conj_copy() { ork_serv_ork_free(own_); }
    conj_copy(const conj_copy&) = delete;
    conj_copy& operator=(const conj_copy&) = delete;
    bool ok() const { return use_ != nullptr; }
    const T* get() const { return use_; }
    const idx* inc() const { return &inc_; }

private:
    T* own_ = nullptr;
    const T* use_;
    idx inc_;
};

// A column-major matrix as the unbuffered paths walk it, column by column:
// general, band (kl diagonals below, ku above), or packed by columns; with
// uplo 'U' or 'L' only that triangle is stored (or read).
enum class storage { full, band, packed };
template <class T> struct view {
    storage kind;
    T* a;
    idx lda = 0, kl = 0, ku = 0;
    idx rows = 0;
    char uplo = 0;
    // The stored rows [lo, hi) of column j, contiguous from p (row lo).
    struct column {
        idx lo, hi;
        T* p;
    };
    column col(idx j) const {
        idx lo = 0, hi = rows;
        if (kind == storage::band) {
            lo = j - ku > 0 ? j - ku : 0;
            hi = j + kl + 1 < rows ? j + kl + 1 : rows;
        }
        if (uplo == 'U' && hi > j + 1) hi = j + 1;
        if (uplo == 'L' && lo < j) lo = j;
        switch (kind) {
        case storage::full: return {lo, hi, a + lo + j * lda};
        case storage::band: return {lo, hi, a + (ku + lo - j) + j * lda};
        default: {  // packed: column j starts at its row 0 (U) or j (L)
            const idx first = uplo == 'U' ? 0 : j, start = uplo == 'U' ? j * (j + 1) / 2 : j * rows - j * (j - 1) / 2;
            return {lo, hi, a + start + lo - first};
        }
        }
    }
};

// y := beta*y, the reference's way: beta = 0 sets y to zero whatever it held.
template <class T> void scale(T* y, idx n, idx inc, const T& beta) {
    if (is_one(beta)) return;
    for (idx i = 0; i < n; ++i) at(y, n, inc, i) = is_zero(beta) ? T{} : mul(beta, at(y, n, inc, i));
}

// ---- unbuffered paths of the row-major conjugated cases: the products of
// the column-major call on conjugated copies, conjugating on the fly. They
// run only when memory is short, so they are plain loops: one pass down each
// stored column of the view in turn, y (or A) accumulating in that order (an
// order of their own; level 2 fixes none, so the last bits may differ from
// the buffered call's). v is the view that call is given; x, y are the
// caller's vectors.

// y := alpha*conj(V)*x + beta*y (gemv, gbmv with op = conjugate transpose).
template <class T> void conj_general_mv(view<const T> v, idx cols, T alpha, const T* x, idx ix, T beta, T* y, idx iy) {
    if (v.rows == 0 || cols == 0 || (is_zero(alpha) && is_one(beta))) return;
    scale(y, v.rows, iy, beta);
    if (is_zero(alpha)) return;
    for (idx j = 0; j < cols; ++j) {
        const T s = mul(alpha, at(x, cols, ix, j));
        const auto c = v.col(j);
        for (idx i = c.lo; i < c.hi; ++i) at(y, v.rows, iy, i) = add(at(y, v.rows, iy, i), mul(s, conj(c.p[i - c.lo])));
    }
}

// y := alpha*conj(H)*x + beta*y, H Hermitian from the triangle v holds (its
// diagonal's imaginary part not read): hemv, hbmv, hpmv.
template <class T> void conj_hermitian_mv(view<const T> v, T alpha, const T* x, idx ix, T beta, T* y, idx iy) {
    const idx n = v.rows;
    if (n == 0 || (is_zero(alpha) && is_one(beta))) return;
    scale(y, n, iy, beta);
    if (is_zero(alpha)) return;
    for (idx j = 0; j < n; ++j) {
        const T s = mul(alpha, at(x, n, ix, j));
        const auto c = v.col(j);
        T t{};
        for (idx i = c.lo; i < c.hi; ++i) {
            const T h = c.p[i - c.lo];
            if (i == j) {
                at(y, n, iy, j) = add(at(y, n, iy, j), mul(s, T{h.re, 0}));
            } else {
                at(y, n, iy, i) = add(at(y, n, iy, i), mul(s, conj(h)));
                t = add(t, mul(h, at(x, n, ix, i)));
            }
        }
        at(y, n, iy, j) = add(at(y, n, iy, j), mul(alpha, t));
    }
}

// V := V + alpha*conj(y)*x' (the row-major gerc): V has y's n rows, x's m columns.
template <class T> void conj_rank1_general(view<T> v, idx m, T alpha, const T* x, idx ix, const T* y, idx iy) {
    const idx n = v.rows;
    if (m == 0 || n == 0 || is_zero(alpha)) return;
    for (idx j = 0; j < m; ++j) {
        const T s = mul(alpha, at(x, m, ix, j));
        T* c = v.col(j).p;
        for (idx i = 0; i < n; ++i) c[i] = add(c[i], mul(s, conj(at(y, n, iy, i))));
    }
}

// On the triangle v holds, H(i, j) += update(i, j) (the row-major her, hpr,
// her2, hpr2), the diagonal kept real as the reference keeps it.
template <class T, class Update> void conj_hermitian_update(view<T> v, Update update) {
    const idx n = v.rows;
    for (idx j = 0; j < n; ++j) {
        const auto c = v.col(j);
        for (idx i = c.lo; i < c.hi; ++i) {
            T& h = c.p[i - c.lo];
            const T d = update(i, j);
            h = i == j ? T{h.re + d.re, 0} : add(h, d);
        }
    }
}

// v as the triangle uplo of an n x n matrix; a band triangle keeps only its
// own side of the diagonal.
template <class T> view<T> triangle(view<T> v, char uplo, idx n) {
    v.rows = n;
    v.uplo = uplo;
    if (v.kind == storage::band) (uplo == 'U' ? v.kl : v.ku) = 0;
    return v;
}

// The layout and flag arguments of one CBLAS call: the first bad one is
// reported at its CBLAS position, and the call does nothing more.
struct cblas_args {
    const char* name;
    bool row, ok = true;
    cblas_args(const char* routine, int layout) : name(routine), row(layout == CblasRowMajor) {
        if (layout != CblasRowMajor && layout != CblasColMajor) {
            ok = row = false;
            cblas_report(1, name, false, "layout", layout);
        }
    }
    // The letter for a valid value, else 0 after the report.
    char flag(int position, const char* what, int value, char letter) {
        if (ok && !letter) {
            ok = false;
            cblas_report(position, name, row, what, value);
        }
        return letter;
    }
    // Upper/lower and left/right swap in the transposed view.
    char uplo(int position, int v) {
        return flag(position, "Uplo", v, v == CblasUpper ? "UL"[row] : v == CblasLower ? "LU"[row] : 0);
    }
    char side(int position, int v) {
        return flag(position, "Side", v, v == CblasLeft ? "LR"[row] : v == CblasRight ? "RL"[row] : 0);
    }
    char diag(int position, int v) {
        return flag(position, "Diag", v, v == CblasNonUnit ? 'N' : v == CblasUnit ? 'U' : 0);
    }
    char trans(int position, int v, const char* letters = "NTC") {
        return flag(position, "Trans", v, v >= CblasNoTrans && v <= CblasConjTrans ? letters[v - CblasNoTrans] : 0);
    }
};

struct cblas_call : call_scope {
    explicit cblas_call(const cblas_args& c) : call_scope(c.name + 6, true, c.row, false) {}
};

// The matrix arguments of a level-2 routine as the caller gave them: the
// band widths (kl and ku of a general band matrix, k of a triangular or
// symmetric one; W of them) and the array with its leading dimension (none
// for packed storage). Every level-2 entry takes the widths right after its
// dimensions and the array after alpha.
template <class T, storage K, int W = 0> struct stored {
    T* a;
    idx lda = 0, kl = 0, ku = 0;
    view<T> walk() const { return {K, a, lda, kl, ku}; }
    auto widths() const {
        if constexpr (W == 2) return std::tuple(&kl, &ku);
        else if constexpr (W == 1) return std::tuple(&ku);
        else return std::tuple();
    }
    auto matrix() const {
        if constexpr (K == storage::packed) return std::tuple(a);
        else return std::tuple(a, &lda);
    }
};
template <class T> using full = stored<T, storage::full>;
template <class T> using band = stored<T, storage::band, 2>;         // kl, ku
template <class T> using square_band = stored<T, storage::band, 1>;  // k (kl = ku = k)
template <class T> using packed = stored<T, storage::packed>;

// F(head..., widths..., mid..., matrix..., tail...).
template <auto F, class S, class... H, class... M, class... L>
void call(const S& s, std::tuple<H...> head, std::tuple<M...> mid, std::tuple<L...> tail) {
    std::apply(F, std::tuple_cat(head, s.widths(), mid, s.matrix(), tail));
}

// ---- level 2
//
// The row-major complex Hermitian and conjugate-transposed routines are the
// column-major ones on the transposed view with conjugated vectors. libork
// first checks the caller's arguments in a call that does nothing (alpha = 0,
// beta = 1); then the work is done on conjugated copies or, when memory for
// them cannot be had, by the unbuffered paths above with the same result.
// The complex symmetric-storage routines of the interface are all Hermitian.

// The work call with alpha = 0 (and beta = 1) and the caller's vectors in the
// places the work call gives the copies: libork reports a bad argument at
// the position the work call would; true when there was none.
template <class Probe> bool arguments_pass(Probe probe) {
    probe();
    return ork_last_error() == 0;
}

// y := alpha*op(A)*x + beta*y with A general (gemv) or band (gbmv). Row-major:
// the transposed view with the other transposition; op = conjugate transpose
// becomes conj(y) := conj(alpha)*A'*conj(x) + conj(beta)*conj(y), A' the view.
template <auto F, class T, class S>
void general_mv(const char* name, int layout, int trans, int m, int n, const T* alpha, S s, const T* x, int incx,
                const T* beta, T* y, int incy) {
    cblas_args c(name, layout);
    const char t = c.trans(2, trans, c.row ? "TNN" : "NTC");
    if (!c.ok) return;
    cblas_call g(c);
    const idx M = c.row ? n : m, N = c.row ? m : n, ix = incx, iy = incy;
    if constexpr (is_complex<T>) {
        if (c.row && trans == CblasConjTrans) {
            const T zero{}, one{1, 0};
            if (!arguments_pass([&] {
                    call<F>(s, std::tuple(&t, &M, &N), std::tuple(&zero), std::tuple(x, &ix, &one, y, &iy));
                }))
                return;
            conj_copy<T> cx(x, M > 0 ? N : 0, ix);
            if (!cx.ok()) {
                view<const T> v = s.walk();
                v.rows = M;
                return conj_general_mv(v, N, *alpha, x, ix, *beta, y, iy);
            }
            const T ca = conj(*alpha), cb = conj(*beta);
            conj_vector(y, M, iy);
            call<F>(s, std::tuple(&t, &M, &N), std::tuple(&ca), std::tuple(cx.get(), cx.inc(), &cb, y, &iy));
            conj_vector(y, M, iy);
            return;
        }
    }
    call<F>(s, std::tuple(&t, &M, &N), std::tuple(alpha), std::tuple(x, &ix, beta, y, &iy));
}
template <auto F, class T>
void gemv(const char* name, int layout, int trans, int m, int n, const T* alpha, const T* a, int lda, const T* x,
          int incx, const T* beta, T* y, int incy) {
    general_mv<F>(name, layout, trans, m, n, alpha, full<const T>{a, lda}, x, incx, beta, y, incy);
}
// Row-major: the band's sub- and super-diagonals trade places.
template <auto F, class T>
void gbmv(const char* name, int layout, int trans, int m, int n, int kl, int ku, const T* alpha, const T* a, int lda,
          const T* x, int incx, const T* beta, T* y, int incy) {
    const bool row = layout == CblasRowMajor;
    general_mv<F>(name, layout, trans, m, n, alpha, band<const T>{a, lda, row ? ku : kl, row ? kl : ku},
                  x, incx, beta, y, incy);
}

// Triangular x := op(A)*x and solves. Row-major: the other triangle and the
// other transposition; op = conjugate transpose is conj(x) := A'*conj(x).
template <auto F, class T, class S>
void triangular_mv(const char* name, int layout, int uplo, int trans, int diag, int n, S s, T* x, int incx) {
    cblas_args c(name, layout);
    const char u = c.uplo(2, uplo), t = c.trans(3, trans, c.row ? "TNN" : "NTC"), d = c.diag(4, diag);
    if (!c.ok) return;
    cblas_call g(c);
    const idx N = n, ix = incx;
    const bool conjugate = c.row && trans == CblasConjTrans && is_complex<T>;
    if (conjugate) conj_vector(x, N, ix);
    call<F>(s, std::tuple(&u, &t, &d, &N), std::tuple(), std::tuple(x, &ix));
    if (conjugate) conj_vector(x, N, ix);
}
template <auto F, class T>
void trmv(const char* name, int layout, int uplo, int trans, int diag, int n, const T* a, int lda, T* x, int incx) {
    triangular_mv<F>(name, layout, uplo, trans, diag, n, full<const T>{a, lda}, x, incx);
}
template <auto F, class T>
void tbmv(const char* name, int layout, int uplo, int trans, int diag, int n, int k, const T* a, int lda, T* x,
          int incx) {
    triangular_mv<F>(name, layout, uplo, trans, diag, n, square_band<const T>{a, lda, k, k}, x, incx);
}
template <auto F, class T>
void tpmv(const char* name, int layout, int uplo, int trans, int diag, int n, const T* ap, T* x, int incx) {
    triangular_mv<F>(name, layout, uplo, trans, diag, n, packed<const T>{ap}, x, incx);
}

// y := alpha*A*x + beta*y, A symmetric or Hermitian. Row-major: the other
// triangle; Hermitian A' = conj(A), so conj(y) := conj(alpha)*A'*conj(x) + ...
template <auto F, class T, class S>
void symmetric_mv(const char* name, int layout, int uplo, int n, const T* alpha, S s, const T* x, int incx,
                  const T* beta, T* y, int incy) {
    cblas_args c(name, layout);
    const char u = c.uplo(2, uplo);
    if (!c.ok) return;
    cblas_call g(c);
    const idx N = n, ix = incx, iy = incy;
    if constexpr (is_complex<T>) {
        if (c.row) {
            const T zero{}, one{1, 0};
            if (!arguments_pass([&] {
                    call<F>(s, std::tuple(&u, &N), std::tuple(&zero), std::tuple(x, &ix, &one, y, &iy));
                }))
                return;
            conj_copy<T> cx(x, N, ix);
            if (!cx.ok()) return conj_hermitian_mv(triangle(s.walk(), u, N), *alpha, x, ix, *beta, y, iy);
            const T ca = conj(*alpha), cb = conj(*beta);
            conj_vector(y, N, iy);
            call<F>(s, std::tuple(&u, &N), std::tuple(&ca), std::tuple(cx.get(), cx.inc(), &cb, y, &iy));
            conj_vector(y, N, iy);
            return;
        }
    }
    call<F>(s, std::tuple(&u, &N), std::tuple(alpha), std::tuple(x, &ix, beta, y, &iy));
}
template <auto F, class T>
void symv(const char* name, int layout, int uplo, int n, const T* alpha, const T* a, int lda, const T* x, int incx,
          const T* beta, T* y, int incy) {
    symmetric_mv<F>(name, layout, uplo, n, alpha, full<const T>{a, lda}, x, incx, beta, y, incy);
}
template <auto F, class T>
void sbmv(const char* name, int layout, int uplo, int n, int k, const T* alpha, const T* a, int lda, const T* x,
          int incx, const T* beta, T* y, int incy) {
    symmetric_mv<F>(name, layout, uplo, n, alpha, square_band<const T>{a, lda, k, k}, x, incx, beta, y,
                    incy);
}
template <auto F, class T>
void spmv(const char* name, int layout, int uplo, int n, const T* alpha, const T* ap, const T* x, int incx,
          const T* beta, T* y, int incy) {
    symmetric_mv<F>(name, layout, uplo, n, alpha, packed<const T>{ap}, x, incx, beta, y, incy);
}

// A := alpha*x*y' + A (ger, geru: Plain = F) or alpha*x*conj(y)' + A (gerc:
// Plain the unconjugated update). Row-major: A' := alpha*y*x' + A', with
// conj(y) for gerc and the unconjugated update.
template <auto F, auto Plain, bool conjugated, class T>
void rank1_general(const char* name, int layout, int m, int n, const T* alpha, const T* x, int incx, const T* y,
                   int incy, T* a, int lda) {
    cblas_args c(name, layout);
    if (!c.ok) return;
    cblas_call g(c);
    const idx M = m, N = n, ix = incx, iy = incy, LDA = lda;
    if (!c.row) return F(&M, &N, alpha, x, &ix, y, &iy, a, &LDA);
    if constexpr (!conjugated) {
        Plain(&N, &M, alpha, y, &iy, x, &ix, a, &LDA);
    } else {
        const T zero{};
        if (!arguments_pass([&] { Plain(&N, &M, &zero, y, &iy, x, &ix, a, &LDA); })) return;
        conj_copy<T> cy(y, M > 0 ? N : 0, iy);
        if (!cy.ok()) return conj_rank1_general(view<T>{storage::full, a, LDA, 0, 0, N}, M, *alpha, x, ix, y, iy);
        Plain(&N, &M, alpha, cy.get(), cy.inc(), x, &ix, a, &LDA);
    }
}
template <auto F, class T>
void ger(const char* name, int layout, int m, int n, const T* alpha, const T* x, int incx, const T* y, int incy, T* a,
         int lda) {
    rank1_general<F, F, false>(name, layout, m, n, alpha, x, incx, y, incy, a, lda);
}
template <auto F, auto Plain, class T>
void gerc(const char* name, int layout, int m, int n, const T* alpha, const T* x, int incx, const T* y, int incy,
          T* a, int lda) {
    rank1_general<F, Plain, true>(name, layout, m, n, alpha, x, incx, y, incy, a, lda);
}

// A := alpha*x*x' + A on one triangle (syr, spr; her, hpr with x^H and real
// alpha). Row-major: the other triangle; Hermitian A' = conj(A) takes conj(x).
template <auto F, class T, class R, class S>
void symmetric_rank1(const char* name, int layout, int uplo, int n, const R* alpha, const T* x, int incx, S s) {
    cblas_args c(name, layout);
    const char u = c.uplo(2, uplo);
    if (!c.ok) return;
    cblas_call g(c);
    const idx N = n, ix = incx;
    if constexpr (is_complex<T>) {
        if (c.row) {
            const R zero{};
            if (!arguments_pass([&] { call<F>(s, std::tuple(&u, &N, &zero, x, &ix), std::tuple(), std::tuple()); }))
                return;
            conj_copy<T> cx(x, N, ix);
            if (cx.ok()) return call<F>(s, std::tuple(&u, &N, alpha, cx.get(), cx.inc()), std::tuple(), std::tuple());
            // A' += alpha*conj(x)*x'
            if (*alpha != 0)
                conj_hermitian_update(triangle(s.walk(), u, N), [&](idx i, idx j) {
                    return mul(conj(at(x, N, ix, i)), mul(T{*alpha, 0}, at(x, N, ix, j)));
                });
            return;
        }
    }
    call<F>(s, std::tuple(&u, &N, alpha, x, &ix), std::tuple(), std::tuple());
}
template <auto F, class T, class R>
void syr(const char* name, int layout, int uplo, int n, const R* alpha, const T* x, int incx, T* a, int lda) {
    symmetric_rank1<F>(name, layout, uplo, n, alpha, x, incx, full<T>{a, lda});
}
template <auto F, class T, class R>
void spr(const char* name, int layout, int uplo, int n, const R* alpha, const T* x, int incx, T* ap) {
    symmetric_rank1<F>(name, layout, uplo, n, alpha, x, incx, packed<T>{ap});
}

// A := alpha*x*y' + alpha*y*x' + A (syr2, spr2) or alpha*x*y^H + conj(alpha)*y*x^H + A
// (her2, hpr2). Row-major: the other triangle; Hermitian: conj(A) takes
// conj(y) and conj(x) in swapped places.
template <auto F, class T, class S>
void symmetric_rank2(const char* name, int layout, int uplo, int n, const T* alpha, const T* x, int incx, const T* y,
                     int incy, S s) {
    cblas_args c(name, layout);
    const char u = c.uplo(2, uplo);
    if (!c.ok) return;
    cblas_call g(c);
    const idx N = n, ix = incx, iy = incy;
    if constexpr (is_complex<T>) {
        if (c.row) {
            const T zero{};
            if (!arguments_pass([&] {
                    call<F>(s, std::tuple(&u, &N, &zero, y, &iy, x, &ix), std::tuple(), std::tuple());
                }))
                return;
            conj_copy<T> cx(x, N, ix), cy(y, N, iy);
            if (cx.ok() && cy.ok())
                return call<F>(s, std::tuple(&u, &N, alpha, cy.get(), cy.inc(), cx.get(), cx.inc()), std::tuple(),
                               std::tuple());
            // A' += conj(alpha)*conj(x)*y' + alpha*conj(y)*x'
            if (!is_zero(*alpha))
                conj_hermitian_update(triangle(s.walk(), u, N), [&](idx i, idx j) {
                    return add(mul(conj(at(x, N, ix, i)), mul(conj(*alpha), at(y, N, iy, j))),
                               mul(conj(at(y, N, iy, i)), mul(*alpha, at(x, N, ix, j))));
                });
            return;
        }
    }
    call<F>(s, std::tuple(&u, &N, alpha, x, &ix, y, &iy), std::tuple(), std::tuple());
}
template <auto F, class T>
void syr2(const char* name, int layout, int uplo, int n, const T* alpha, const T* x, int incx, const T* y, int incy,
          T* a, int lda) {
    symmetric_rank2<F>(name, layout, uplo, n, alpha, x, incx, y, incy, full<T>{a, lda});
}
template <auto F, class T>
void spr2(const char* name, int layout, int uplo, int n, const T* alpha, const T* x, int incx, const T* y, int incy,
          T* ap) {
    symmetric_rank2<F>(name, layout, uplo, n, alpha, x, incx, y, incy, packed<T>{ap});
}

// ---- level 3

// C := alpha*op(A)*op(B) + beta*C. Row-major: C' := alpha*op(B)'*op(A)' + beta*C'.
template <auto F, class T>
void gemm(const char* name, int layout, int transa, int transb, int m, int n, int k, const T* alpha, const T* a,
          int lda, const T* b, int ldb, const T* beta, T* cm, int ldc) {
    cblas_args c(name, layout);
    const char ta = c.trans(2, transa), tb = c.trans(3, transb);
    if (!c.ok) return;
    cblas_call g(c);
    const idx M = m, N = n, K = k, LDA = lda, LDB = ldb, LDC = ldc;
    if (c.row) F(&tb, &ta, &N, &M, &K, alpha, b, &LDB, a, &LDA, beta, cm, &LDC);
    else F(&ta, &tb, &M, &N, &K, alpha, a, &LDA, b, &LDB, beta, cm, &LDC);
}

// symm, hemm: row-major is the other side and triangle with m and n swapped
// (a Hermitian A' is again Hermitian, nothing to conjugate).
template <auto F, class T>
void symmetric_mm(const char* name, int layout, int side, int uplo, int m, int n, const T* alpha, const T* a, int lda,
                  const T* b, int ldb, const T* beta, T* cm, int ldc) {
    cblas_args c(name, layout);
    const char s = c.side(2, side), u = c.uplo(3, uplo);
    if (!c.ok) return;
    cblas_call g(c);
    const idx M = c.row ? n : m, N = c.row ? m : n, LDA = lda, LDB = ldb, LDC = ldc;
    F(&s, &u, &M, &N, alpha, a, &LDA, b, &LDB, beta, cm, &LDC);
}

// The trans letters of syrk/syr2k/herk/her2k by layout: real ones take
// conjugate transpose as transpose; the complex symmetric ones have no
// conjugate form and the Hermitian ones no plain transpose.
template <class T, bool hermitian> const char* rank_k_letters(bool row) {
    if constexpr (hermitian) return row ? "C\0N" : "N\0C";
    else if constexpr (is_complex<T>) return row ? "TN" : "NT";
    else return row ? "TNN" : "NTT";
}

// syrk, herk: C := alpha*A*A' + beta*C or the transposed form, on one
// triangle (Hermitian when beta is real and C complex). Row-major: the other
// triangle and the other form; herk's real alpha and beta pass unchanged.
template <auto F, class T, class S>
void rank_k(const char* name, int layout, int uplo, int trans, int n, int k, const S* alpha, const T* a, int lda,
            const S* beta, T* cm, int ldc) {
    constexpr bool hermitian = !std::is_same_v<S, T>;
    cblas_args c(name, layout);
    const char u = c.uplo(2, uplo), t = c.trans(3, trans, rank_k_letters<T, hermitian>(c.row));
    if (!c.ok) return;
    cblas_call g(c);
    const idx N = n, K = k, LDA = lda, LDC = ldc;
    F(&u, &t, &N, &K, alpha, a, &LDA, beta, cm, &LDC);
}

// syr2k, her2k: row-major as rank_k; her2k's conj(C) = C' takes conj(alpha).
template <auto F, class T, class S>
void rank_2k(const char* name, int layout, int uplo, int trans, int n, int k, const T* alpha, const T* a, int lda,
             const T* b, int ldb, const S* beta, T* cm, int ldc) {
    constexpr bool hermitian = !std::is_same_v<S, T>;
    cblas_args c(name, layout);
    const char u = c.uplo(2, uplo), t = c.trans(3, trans, rank_k_letters<T, hermitian>(c.row));
    if (!c.ok) return;
    cblas_call g(c);
    const idx N = n, K = k, LDA = lda, LDB = ldb, LDC = ldc;
    const T ca = hermitian && c.row ? conj(*alpha) : *alpha;
    F(&u, &t, &N, &K, &ca, a, &LDA, b, &LDB, beta, cm, &LDC);
}

// trmm, trsm: row-major is the other side and triangle with m and n swapped.
template <auto F, class T>
void triangular_mm(const char* name, int layout, int side, int uplo, int transa, int diag, int m, int n,
                   const T* alpha, const T* a, int lda, T* b, int ldb) {
    cblas_args c(name, layout);
    const char s = c.side(2, side), u = c.uplo(3, uplo), t = c.trans(4, transa), d = c.diag(5, diag);
    if (!c.ok) return;
    cblas_call g(c);
    const idx M = c.row ? n : m, N = c.row ? m : n, LDA = lda, LDB = ldb;
    F(&s, &u, &t, &d, &M, &N, alpha, a, &LDA, b, &LDB);
}

}  // namespace ork::stdblas::cblas
