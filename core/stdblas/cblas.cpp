// CBLAS over libork's entries: layout and flag checks reported at their CBLAS
// positions, row-major calls made as column-major calls on the transposed
// view, and the conjugations that view needs for the complex Hermitian and
// conjugate-transposed level-2 routines.
#include <type_traits>

#include "core/stdblas/stdblas.h"
#include "ork/service.h"

namespace {

using namespace ork::stdblas;
using idx = ork_int;

template <class T> constexpr bool is_complex = std::is_same_v<T, ork_complex8> || std::is_same_v<T, ork_complex16>;

// Element pointers from the interface's void pointers (complex) or typed ones.
template <class T> const T* as(const void* p) { return static_cast<const T*>(p); }
template <class T> T* as(void* p) { return static_cast<T*>(p); }
// A scalar: real ones come by value, complex ones by address.
template <class T> const T* scalar(const T& v) { return &v; }
template <class T> const T* scalar(const void* p) { return static_cast<const T*>(p); }

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

// ---- level 2
//
// The row-major complex Hermitian and conjugate-transposed routines are the
// column-major ones on the transposed view with conjugated vectors. libork
// first checks the caller's arguments in a call that does nothing (alpha = 0,
// beta = 1); then the work is done on conjugated copies or, when memory for
// them cannot be had, by the unbuffered paths above with the same result.

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
template <class T, class Call>
void general_mv(const char* name, int layout, int trans, int m, int n, const T* alpha, view<const T> v, const T* x,
                int incx, const T* beta, T* y, int incy, Call call) {
    cblas_args c(name, layout);
    const char t = c.trans(2, trans, c.row ? "TNN" : "NTC");
    if (!c.ok) return;
    cblas_call g(c);
    const idx M = c.row ? n : m, N = c.row ? m : n, ix = incx, iy = incy;
    if constexpr (is_complex<T>) {
        if (c.row && trans == CblasConjTrans) {
            const T zero{}, one{1, 0};
            if (!arguments_pass([&] { call(&t, &M, &N, &zero, x, &ix, &one, y, &iy); })) return;
            conj_copy<T> cx(x, M > 0 ? N : 0, ix);
            if (!cx.ok()) {
                v.rows = M;
                return conj_general_mv(v, N, *alpha, x, ix, *beta, y, iy);
            }
            const T ca = conj(*alpha), cb = conj(*beta);
            conj_vector(y, M, iy);
            call(&t, &M, &N, &ca, cx.get(), cx.inc(), &cb, y, &iy);
            conj_vector(y, M, iy);
            return;
        }
    }
    call(&t, &M, &N, alpha, x, &ix, beta, y, &iy);
}

// Triangular x := op(A)*x and solves. Row-major: the other triangle and the
// other transposition; op = conjugate transpose is conj(x) := A'*conj(x).
template <class T, class Call>
void triangular_mv(const char* name, int layout, int uplo, int trans, int diag, int n, T* x, int incx, Call call) {
    cblas_args c(name, layout);
    const char u = c.uplo(2, uplo), t = c.trans(3, trans, c.row ? "TNN" : "NTC"), d = c.diag(4, diag);
    if (!c.ok) return;
    cblas_call g(c);
    const idx N = n, ix = incx;
    const bool conjugate = c.row && trans == CblasConjTrans && is_complex<T>;
    if (conjugate) conj_vector(x, N, ix);
    call(&u, &t, &d, &N, x, &ix);
    if (conjugate) conj_vector(x, N, ix);
}

// y := alpha*A*x + beta*y, A symmetric or Hermitian. Row-major: the other
// triangle; Hermitian A' = conj(A), so conj(y) := conj(alpha)*A'*conj(x) + ...
template <class T, bool hermitian, class Call>
void symmetric_mv(const char* name, int layout, int uplo, int n, const T* alpha, view<const T> v, const T* x,
                  int incx, const T* beta, T* y, int incy, Call call) {
    cblas_args c(name, layout);
    const char u = c.uplo(2, uplo);
    if (!c.ok) return;
    cblas_call g(c);
    const idx N = n, ix = incx, iy = incy;
    if constexpr (hermitian) {
        if (c.row) {
            const T zero{}, one{1, 0};
            if (!arguments_pass([&] { call(&u, &N, &zero, x, &ix, &one, y, &iy); })) return;
            conj_copy<T> cx(x, N, ix);
            if (!cx.ok()) return conj_hermitian_mv(triangle(v, u, N), *alpha, x, ix, *beta, y, iy);
            const T ca = conj(*alpha), cb = conj(*beta);
            conj_vector(y, N, iy);
            call(&u, &N, &ca, cx.get(), cx.inc(), &cb, y, &iy);
            conj_vector(y, N, iy);
            return;
        }
    }
    call(&u, &N, alpha, x, &ix, beta, y, &iy);
}

// A := alpha*x*y' + A (ger, geru: F = Plain) or alpha*x*conj(y)' + A (gerc:
// F the conjugated update, conjugated true). Row-major: A' := alpha*y*x' + A',
// with conj(y) for gerc and the unconjugated update.
template <class T, auto F, auto Plain, bool conjugated>
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

// A := alpha*x*x' + A on one triangle (syr, spr; her, hpr with x^H and real
// alpha). Row-major: the other triangle; Hermitian A' = conj(A) takes conj(x).
template <class T, bool hermitian, class R, class Call>
void symmetric_rank1(const char* name, int layout, int uplo, int n, const R* alpha, view<T> v, const T* x, int incx,
                     Call call) {
    cblas_args c(name, layout);
    const char u = c.uplo(2, uplo);
    if (!c.ok) return;
    cblas_call g(c);
    const idx N = n, ix = incx;
    if constexpr (hermitian) {
        if (c.row) {
            const R zero{};
            if (!arguments_pass([&] { call(&u, &N, &zero, x, &ix); })) return;
            conj_copy<T> cx(x, N, ix);
            if (cx.ok()) return call(&u, &N, alpha, cx.get(), cx.inc());
            // A' += alpha*conj(x)*x'
            if (*alpha != 0)
                conj_hermitian_update(triangle(v, u, N), [&](idx i, idx j) {
                    return mul(conj(at(x, N, ix, i)), mul(T{*alpha, 0}, at(x, N, ix, j)));
                });
            return;
        }
    }
    call(&u, &N, alpha, x, &ix);
}

// A := alpha*x*y' + alpha*y*x' + A (syr2, spr2) or alpha*x*y^H + conj(alpha)*y*x^H + A
// (her2, hpr2). Row-major: the other triangle; Hermitian: conj(A) takes
// conj(y) and conj(x) in swapped places.
template <class T, bool hermitian, class Call>
void symmetric_rank2(const char* name, int layout, int uplo, int n, const T* alpha, view<T> v, const T* x, int incx,
                     const T* y, int incy, Call call) {
    cblas_args c(name, layout);
    const char u = c.uplo(2, uplo);
    if (!c.ok) return;
    cblas_call g(c);
    const idx N = n, ix = incx, iy = incy;
    if constexpr (hermitian) {
        if (c.row) {
            const T zero{};
            if (!arguments_pass([&] { call(&u, &N, &zero, y, &iy, x, &ix); })) return;
            conj_copy<T> cx(x, N, ix), cy(y, N, iy);
            if (cx.ok() && cy.ok()) return call(&u, &N, alpha, cy.get(), cy.inc(), cx.get(), cx.inc());
            // A' += conj(alpha)*conj(x)*y' + alpha*conj(y)*x'
            if (!is_zero(*alpha))
                conj_hermitian_update(triangle(v, u, N), [&](idx i, idx j) {
                    return add(mul(conj(at(x, N, ix, i)), mul(conj(*alpha), at(y, N, iy, j))),
                               mul(conj(at(y, N, iy, i)), mul(*alpha, at(x, N, ix, j))));
                });
            return;
        }
    }
    call(&u, &N, alpha, x, &ix, y, &iy);
}

// ---- level 3

// C := alpha*op(A)*op(B) + beta*C. Row-major: C' := alpha*op(B)'*op(A)' + beta*C'.
template <class T, auto F>
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
template <class T, auto F>
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
// triangle. Row-major: the other triangle and the other form; herk's
// real alpha and beta pass unchanged.
template <class T, bool hermitian, auto F, class S>
void rank_k(const char* name, int layout, int uplo, int trans, int n, int k, const S* alpha, const T* a, int lda,
            const S* beta, T* cm, int ldc) {
    cblas_args c(name, layout);
    const char u = c.uplo(2, uplo), t = c.trans(3, trans, rank_k_letters<T, hermitian>(c.row));
    if (!c.ok) return;
    cblas_call g(c);
    const idx N = n, K = k, LDA = lda, LDC = ldc;
    F(&u, &t, &N, &K, alpha, a, &LDA, beta, cm, &LDC);
}

// syr2k, her2k: row-major as rank_k; her2k's conj(C) = C' takes conj(alpha).
template <class T, bool hermitian, auto F, class S>
void rank_2k(const char* name, int layout, int uplo, int trans, int n, int k, const T* alpha, const T* a, int lda,
             const T* b, int ldb, const S* beta, T* cm, int ldc) {
    cblas_args c(name, layout);
    const char u = c.uplo(2, uplo), t = c.trans(3, trans, rank_k_letters<T, hermitian>(c.row));
    if (!c.ok) return;
    cblas_call g(c);
    const idx N = n, K = k, LDA = lda, LDB = ldb, LDC = ldc;
    const T ca = hermitian && c.row ? conj(*alpha) : *alpha;
    F(&u, &t, &N, &K, &ca, a, &LDA, b, &LDB, beta, cm, &LDC);
}

// trmm, trsm: row-major is the other side and triangle with m and n swapped.
template <class T, auto F>
void triangular_mm(const char* name, int layout, int side, int uplo, int transa, int diag, int m, int n,
                   const T* alpha, const T* a, int lda, T* b, int ldb) {
    cblas_args c(name, layout);
    const char s = c.side(2, side), u = c.uplo(3, uplo), t = c.trans(4, transa), d = c.diag(5, diag);
    if (!c.ok) return;
    cblas_call g(c);
    const idx M = c.row ? n : m, N = c.row ? m : n, LDA = lda, LDB = ldb;
    F(&s, &u, &t, &d, &M, &N, alpha, a, &LDA, b, &LDB);
}

// ---- level 1 helpers: the interface passes counts and increments by value.
struct ints {
    idx n, ix, iy;
};

}  // namespace

// ---- exports. Per type letter: the element type and how scalars and
// arrays appear in the interface.
#define ORK_T_s float
#define ORK_T_d double
#define ORK_T_c ork_complex8
#define ORK_T_z ork_complex16
#define ORK_R_s float
#define ORK_R_d double
#define ORK_R_c float
#define ORK_R_z double
#define ORK_P_s float
#define ORK_P_d double
#define ORK_P_c void
#define ORK_P_z void
#define ORK_A_s const float
#define ORK_A_d const double
#define ORK_A_c const void*
#define ORK_A_z const void*
#define T(p) ORK_T_##p
#define R(p) ORK_R_##p
#define P(p) ORK_P_##p
#define A(p) ORK_A_##p
#define NAME(p, r) "cblas_" #p #r

// level 1 for every type
#define ORK_CBLAS_L1(p)                                                                                                \
    ORK_STDBLAS_API void cblas_##p##swap(const int n, P(p)* x, const int incx, P(p)* y, const int incy) { const ints i{n, incx, incy}; ork_blas_##p##swap(&i.n, as<T(p)>(x), &i.ix, as<T(p)>(y), &i.iy); } \
    ORK_STDBLAS_API void cblas_##p##copy(const int n, const P(p)* x, const int incx, P(p)* y, const int incy) { const ints i{n, incx, incy}; ork_blas_##p##copy(&i.n, as<T(p)>(x), &i.ix, as<T(p)>(y), &i.iy); } \
    ORK_STDBLAS_API void cblas_##p##axpy(const int n, A(p) alpha, const P(p)* x, const int incx, P(p)* y, const int incy) { const ints i{n, incx, incy}; ork_blas_##p##axpy(&i.n, scalar<T(p)>(alpha), as<T(p)>(x), &i.ix, as<T(p)>(y), &i.iy); } \
    ORK_STDBLAS_API void cblas_##p##scal(const int n, A(p) alpha, P(p)* x, const int incx) { const ints i{n, incx, 0}; ork_blas_##p##scal(&i.n, scalar<T(p)>(alpha), as<T(p)>(x), &i.ix); } \
    ORK_STDBLAS_API CBLAS_INDEX cblas_i##p##amax(const int n, const P(p)* x, const int incx) { const ints i{n, incx, 0}; const idx k = ork_blas_i##p##amax(&i.n, as<T(p)>(x), &i.ix); return k > 0 ? CBLAS_INDEX(k - 1) : 0; }
ORK_CBLAS_L1(s)
ORK_CBLAS_L1(d)
ORK_CBLAS_L1(c)
ORK_CBLAS_L1(z)

// real level 1
#define ORK_CBLAS_L1_REAL(p)                                                                                           \
    ORK_STDBLAS_API R(p) cblas_##p##dot(const int n, const R(p)* x, const int incx, const R(p)* y, const int incy) { const ints i{n, incx, incy}; return ork_blas_##p##dot(&i.n, x, &i.ix, y, &i.iy); } \
    ORK_STDBLAS_API R(p) cblas_##p##nrm2(const int n, const R(p)* x, const int incx) { const ints i{n, incx, 0}; return ork_blas_##p##nrm2(&i.n, x, &i.ix); } \
    ORK_STDBLAS_API R(p) cblas_##p##asum(const int n, const R(p)* x, const int incx) { const ints i{n, incx, 0}; return ork_blas_##p##asum(&i.n, x, &i.ix); } \
    ORK_STDBLAS_API void cblas_##p##rotg(R(p)* a, R(p)* b, R(p)* c, R(p)* s) { ork_blas_##p##rotg(a, b, c, s); } \
    ORK_STDBLAS_API void cblas_##p##rotmg(R(p)* d1, R(p)* d2, R(p)* b1, const R(p) b2, R(p)* param) { ork_blas_##p##rotmg(d1, d2, b1, &b2, param); } \
    ORK_STDBLAS_API void cblas_##p##rot(const int n, R(p)* x, const int incx, R(p)* y, const int incy, const R(p) c, const R(p) s) { const ints i{n, incx, incy}; ork_blas_##p##rot(&i.n, x, &i.ix, y, &i.iy, &c, &s); } \
    ORK_STDBLAS_API void cblas_##p##rotm(const int n, R(p)* x, const int incx, R(p)* y, const int incy, const R(p)* param) { const ints i{n, incx, incy}; ork_blas_##p##rotm(&i.n, x, &i.ix, y, &i.iy, param); }
ORK_CBLAS_L1_REAL(s)
ORK_CBLAS_L1_REAL(d)

// complex level 1; q is the real letter, rq the letters of the real-valued results
#define ORK_CBLAS_L1_COMPLEX(p, q, rq)                                                                                 \
    ORK_STDBLAS_API void cblas_##p##q##scal(const int n, const R(p) alpha, void* x, const int incx) { const ints i{n, incx, 0}; ork_blas_##p##q##scal(&i.n, &alpha, as<T(p)>(x), &i.ix); } \
    ORK_STDBLAS_API void cblas_##p##dotu_sub(const int n, const void* x, const int incx, const void* y, const int incy, void* dotu) { const ints i{n, incx, incy}; *as<T(p)>(dotu) = ork_blas_##p##dotu(&i.n, as<T(p)>(x), &i.ix, as<T(p)>(y), &i.iy); } \
    ORK_STDBLAS_API void cblas_##p##dotc_sub(const int n, const void* x, const int incx, const void* y, const int incy, void* dotc) { const ints i{n, incx, incy}; *as<T(p)>(dotc) = ork_blas_##p##dotc(&i.n, as<T(p)>(x), &i.ix, as<T(p)>(y), &i.iy); } \
    ORK_STDBLAS_API R(p) cblas_##rq##nrm2(const int n, const void* x, const int incx) { const ints i{n, incx, 0}; return ork_blas_##rq##nrm2(&i.n, as<T(p)>(x), &i.ix); } \
    ORK_STDBLAS_API R(p) cblas_##rq##asum(const int n, const void* x, const int incx) { const ints i{n, incx, 0}; return ork_blas_##rq##asum(&i.n, as<T(p)>(x), &i.ix); } \
    ORK_STDBLAS_API void cblas_##p##rotg(void* a, void* b, R(p)* c, void* s) { ork_blas_##p##rotg(as<T(p)>(a), as<T(p)>(b), c, as<T(p)>(s)); } \
    ORK_STDBLAS_API void cblas_##p##q##rot(const int n, void* x, const int incx, void* y, const int incy, const R(p) c, const R(p) s) { const ints i{n, incx, incy}; ork_blas_##p##q##rot(&i.n, as<T(p)>(x), &i.ix, as<T(p)>(y), &i.iy, &c, &s); }
ORK_CBLAS_L1_COMPLEX(c, s, sc)
ORK_CBLAS_L1_COMPLEX(z, d, dz)

ORK_STDBLAS_API float cblas_sdsdot(const int n, const float alpha, const float* x, const int incx, const float* y, const int incy) { const ints i{n, incx, incy}; return ork_blas_sdsdot(&i.n, &alpha, x, &i.ix, y, &i.iy); }
ORK_STDBLAS_API double cblas_dsdot(const int n, const float* x, const int incx, const float* y, const int incy) { const ints i{n, incx, incy}; return ork_blas_dsdot(&i.n, x, &i.ix, y, &i.iy); }
ORK_STDBLAS_API float cblas_scabs1(const void* z) { return scabs1_(as<ork_complex8>(z)); }
ORK_STDBLAS_API double cblas_dcabs1(const void* z) { return ork_blas_dcabs1(as<ork_complex16>(z)); }

// level 2 and 3 for every type
#define ORK_CBLAS_L23(p)                                                                                               \
    ORK_STDBLAS_API void cblas_##p##gemv(CBLAS_LAYOUT layout, CBLAS_TRANSPOSE trans, const int m, const int n, A(p) alpha, const P(p)* a, const int lda, const P(p)* x, const int incx, A(p) beta, P(p)* y, const int incy) { \
        const idx LDA = lda; general_mv(NAME(p, gemv), layout, trans, m, n, scalar<T(p)>(alpha), view<const T(p)>{storage::full, as<T(p)>(a), LDA}, as<T(p)>(x), incx, scalar<T(p)>(beta), as<T(p)>(y), incy, [&](auto t, auto M, auto N, auto al, auto xx, auto ix, auto be, auto yy, auto iy) { ork_blas_##p##gemv(t, M, N, al, as<T(p)>(a), &LDA, xx, ix, be, yy, iy); }); } \
    ORK_STDBLAS_API void cblas_##p##gbmv(CBLAS_LAYOUT layout, CBLAS_TRANSPOSE trans, const int m, const int n, const int kl, const int ku, A(p) alpha, const P(p)* a, const int lda, const P(p)* x, const int incx, A(p) beta, P(p)* y, const int incy) { \
        const idx LDA = lda, KL = layout == CblasRowMajor ? ku : kl, KU = layout == CblasRowMajor ? kl : ku; general_mv(NAME(p, gbmv), layout, trans, m, n, scalar<T(p)>(alpha), view<const T(p)>{storage::band, as<T(p)>(a), LDA, KL, KU}, as<T(p)>(x), incx, scalar<T(p)>(beta), as<T(p)>(y), incy, [&](auto t, auto M, auto N, auto al, auto xx, auto ix, auto be, auto yy, auto iy) { ork_blas_##p##gbmv(t, M, N, &KL, &KU, al, as<T(p)>(a), &LDA, xx, ix, be, yy, iy); }); } \
    ORK_CBLAS_TRIANGULAR(p, trmv, trsv) ORK_CBLAS_TRIANGULAR(p, tbmv, tbsv) ORK_CBLAS_TRIANGULAR(p, tpmv, tpsv)      \
    ORK_STDBLAS_API void cblas_##p##gemm(CBLAS_LAYOUT layout, CBLAS_TRANSPOSE transa, CBLAS_TRANSPOSE transb, const int m, const int n, const int k, A(p) alpha, const P(p)* a, const int lda, const P(p)* b, const int ldb, A(p) beta, P(p)* c, const int ldc) { \
        gemm<T(p), ork_blas_##p##gemm>(NAME(p, gemm), layout, transa, transb, m, n, k, scalar<T(p)>(alpha), as<T(p)>(a), lda, as<T(p)>(b), ldb, scalar<T(p)>(beta), as<T(p)>(c), ldc); } \
    ORK_STDBLAS_API void cblas_##p##symm(CBLAS_LAYOUT layout, CBLAS_SIDE side, CBLAS_UPLO uplo, const int m, const int n, A(p) alpha, const P(p)* a, const int lda, const P(p)* b, const int ldb, A(p) beta, P(p)* c, const int ldc) { \
        symmetric_mm<T(p), ork_blas_##p##symm>(NAME(p, symm), layout, side, uplo, m, n, scalar<T(p)>(alpha), as<T(p)>(a), lda, as<T(p)>(b), ldb, scalar<T(p)>(beta), as<T(p)>(c), ldc); } \
    ORK_STDBLAS_API void cblas_##p##syrk(CBLAS_LAYOUT layout, CBLAS_UPLO uplo, CBLAS_TRANSPOSE trans, const int n, const int k, A(p) alpha, const P(p)* a, const int lda, A(p) beta, P(p)* c, const int ldc) { \
        rank_k<T(p), false, ork_blas_##p##syrk>(NAME(p, syrk), layout, uplo, trans, n, k, scalar<T(p)>(alpha), as<T(p)>(a), lda, scalar<T(p)>(beta), as<T(p)>(c), ldc); } \
    ORK_STDBLAS_API void cblas_##p##syr2k(CBLAS_LAYOUT layout, CBLAS_UPLO uplo, CBLAS_TRANSPOSE trans, const int n, const int k, A(p) alpha, const P(p)* a, const int lda, const P(p)* b, const int ldb, A(p) beta, P(p)* c, const int ldc) { \
        rank_2k<T(p), false, ork_blas_##p##syr2k>(NAME(p, syr2k), layout, uplo, trans, n, k, scalar<T(p)>(alpha), as<T(p)>(a), lda, as<T(p)>(b), ldb, scalar<T(p)>(beta), as<T(p)>(c), ldc); } \
    ORK_CBLAS_TRIANGULAR_MM(p, trmm) ORK_CBLAS_TRIANGULAR_MM(p, trsm)

// The six triangular level-2 routines in pairs of one storage: full (a, lda),
// band (k, a, lda) or packed (ap).
#define ORK_TRI_ARGS_trmv(p) const P(p)* a, const int lda
#define ORK_TRI_ARGS_tbmv(p) const int k, const P(p)* a, const int lda
#define ORK_TRI_ARGS_tpmv(p) const P(p)* ap
#define ORK_TRI_LOCAL_trmv const idx LDA = lda;
#define ORK_TRI_LOCAL_tbmv const idx K = k, LDA = lda;
#define ORK_TRI_LOCAL_tpmv
#define ORK_TRI_PASS_trmv(p) as<T(p)>(a), &LDA
#define ORK_TRI_PASS_tbmv(p) &K, as<T(p)>(a), &LDA
#define ORK_TRI_PASS_tpmv(p) as<T(p)>(ap)
#define ORK_CBLAS_TRI_ONE(p, r, storage)                                                                                 \
    ORK_STDBLAS_API void cblas_##p##r(CBLAS_LAYOUT layout, CBLAS_UPLO uplo, CBLAS_TRANSPOSE trans, CBLAS_DIAG diag, const int n, ORK_TRI_ARGS_##storage(p), P(p)* x, const int incx) { \
        ORK_TRI_LOCAL_##storage triangular_mv(NAME(p, r), layout, uplo, trans, diag, n, as<T(p)>(x), incx, [&](auto u, auto t, auto d, auto N, auto xx, auto ix) { ork_blas_##p##r(u, t, d, N, ORK_TRI_PASS_##storage(p), xx, ix); }); }
#define ORK_CBLAS_TRIANGULAR(p, mv, sv) ORK_CBLAS_TRI_ONE(p, mv, mv) ORK_CBLAS_TRI_ONE(p, sv, mv)

#define ORK_CBLAS_TRIANGULAR_MM(p, r)                                                                                    \
    ORK_STDBLAS_API void cblas_##p##r(CBLAS_LAYOUT layout, CBLAS_SIDE side, CBLAS_UPLO uplo, CBLAS_TRANSPOSE transa, CBLAS_DIAG diag, const int m, const int n, A(p) alpha, const P(p)* a, const int lda, P(p)* b, const int ldb) { \
        triangular_mm<T(p), ork_blas_##p##r>(NAME(p, r), layout, side, uplo, transa, diag, m, n, scalar<T(p)>(alpha), as<T(p)>(a), lda, as<T(p)>(b), ldb); }

ORK_CBLAS_L23(s)
ORK_CBLAS_L23(d)
ORK_CBLAS_L23(c)
ORK_CBLAS_L23(z)

// Symmetric (real) or Hermitian (complex) matrix-vector products and updates:
// sy/he full storage (a, lda), sb/hb band (k, a, lda), sp/hp packed (ap).
#define ORK_CBLAS_SYMMETRIC(p, h, herm, R1)                                                                            \
    ORK_STDBLAS_API void cblas_##p##h##mv(CBLAS_LAYOUT layout, CBLAS_UPLO uplo, const int n, A(p) alpha, const P(p)* a, const int lda, const P(p)* x, const int incx, A(p) beta, P(p)* y, const int incy) { \
        const idx LDA = lda; symmetric_mv<T(p), herm>(NAME(p, h##mv), layout, uplo, n, scalar<T(p)>(alpha), view<const T(p)>{storage::full, as<T(p)>(a), LDA}, as<T(p)>(x), incx, scalar<T(p)>(beta), as<T(p)>(y), incy, [&](auto u, auto N, auto al, auto xx, auto ix, auto be, auto yy, auto iy) { ork_blas_##p##h##mv(u, N, al, as<T(p)>(a), &LDA, xx, ix, be, yy, iy); }); } \
    ORK_STDBLAS_API void cblas_##p##R1##bmv(CBLAS_LAYOUT layout, CBLAS_UPLO uplo, const int n, const int k, A(p) alpha, const P(p)* a, const int lda, const P(p)* x, const int incx, A(p) beta, P(p)* y, const int incy) { \
        const idx K = k, LDA = lda; symmetric_mv<T(p), herm>(NAME(p, R1##bmv), layout, uplo, n, scalar<T(p)>(alpha), view<const T(p)>{storage::band, as<T(p)>(a), LDA, K, K}, as<T(p)>(x), incx, scalar<T(p)>(beta), as<T(p)>(y), incy, [&](auto u, auto N, auto al, auto xx, auto ix, auto be, auto yy, auto iy) { ork_blas_##p##R1##bmv(u, N, &K, al, as<T(p)>(a), &LDA, xx, ix, be, yy, iy); }); } \
    ORK_STDBLAS_API void cblas_##p##R1##pmv(CBLAS_LAYOUT layout, CBLAS_UPLO uplo, const int n, A(p) alpha, const P(p)* ap, const P(p)* x, const int incx, A(p) beta, P(p)* y, const int incy) { \
        symmetric_mv<T(p), herm>(NAME(p, R1##pmv), layout, uplo, n, scalar<T(p)>(alpha), view<const T(p)>{storage::packed, as<T(p)>(ap)}, as<T(p)>(x), incx, scalar<T(p)>(beta), as<T(p)>(y), incy, [&](auto u, auto N, auto al, auto xx, auto ix, auto be, auto yy, auto iy) { ork_blas_##p##R1##pmv(u, N, al, as<T(p)>(ap), xx, ix, be, yy, iy); }); } \
    ORK_STDBLAS_API void cblas_##p##h##r2(CBLAS_LAYOUT layout, CBLAS_UPLO uplo, const int n, A(p) alpha, const P(p)* x, const int incx, const P(p)* y, const int incy, P(p)* a, const int lda) { \
        const idx LDA = lda; symmetric_rank2<T(p), herm>(NAME(p, h##r2), layout, uplo, n, scalar<T(p)>(alpha), view<T(p)>{storage::full, as<T(p)>(a), LDA}, as<T(p)>(x), incx, as<T(p)>(y), incy, [&](auto u, auto N, auto al, auto xx, auto ix, auto yy, auto iy) { ork_blas_##p##h##r2(u, N, al, xx, ix, yy, iy, as<T(p)>(a), &LDA); }); } \
    ORK_STDBLAS_API void cblas_##p##R1##pr2(CBLAS_LAYOUT layout, CBLAS_UPLO uplo, const int n, A(p) alpha, const P(p)* x, const int incx, const P(p)* y, const int incy, P(p)* ap) { \
        symmetric_rank2<T(p), herm>(NAME(p, R1##pr2), layout, uplo, n, scalar<T(p)>(alpha), view<T(p)>{storage::packed, as<T(p)>(ap)}, as<T(p)>(x), incx, as<T(p)>(y), incy, [&](auto u, auto N, auto al, auto xx, auto ix, auto yy, auto iy) { ork_blas_##p##R1##pr2(u, N, al, xx, ix, yy, iy, as<T(p)>(ap)); }); } \
    ORK_STDBLAS_API void cblas_##p##h##r(CBLAS_LAYOUT layout, CBLAS_UPLO uplo, const int n, const R(p) alpha, const P(p)* x, const int incx, P(p)* a, const int lda) { \
        const idx LDA = lda; symmetric_rank1<T(p), herm>(NAME(p, h##r), layout, uplo, n, &alpha, view<T(p)>{storage::full, as<T(p)>(a), LDA}, as<T(p)>(x), incx, [&](auto u, auto N, auto al, auto xx, auto ix) { ork_blas_##p##h##r(u, N, al, xx, ix, as<T(p)>(a), &LDA); }); } \
    ORK_STDBLAS_API void cblas_##p##R1##pr(CBLAS_LAYOUT layout, CBLAS_UPLO uplo, const int n, const R(p) alpha, const P(p)* x, const int incx, P(p)* ap) { \
        symmetric_rank1<T(p), herm>(NAME(p, R1##pr), layout, uplo, n, &alpha, view<T(p)>{storage::packed, as<T(p)>(ap)}, as<T(p)>(x), incx, [&](auto u, auto N, auto al, auto xx, auto ix) { ork_blas_##p##R1##pr(u, N, al, xx, ix, as<T(p)>(ap)); }); }
ORK_CBLAS_SYMMETRIC(s, sy, false, s)
ORK_CBLAS_SYMMETRIC(d, sy, false, s)
ORK_CBLAS_SYMMETRIC(c, he, true, h)
ORK_CBLAS_SYMMETRIC(z, he, true, h)

// general rank-1 updates
#define ORK_CBLAS_GER(p, r, plain, conjugated)                                                                        \
    ORK_STDBLAS_API void cblas_##p##r(CBLAS_LAYOUT layout, const int m, const int n, A(p) alpha, const P(p)* x, const int incx, const P(p)* y, const int incy, P(p)* a, const int lda) { \
        rank1_general<T(p), ork_blas_##p##r, ork_blas_##p##plain, conjugated>(NAME(p, r), layout, m, n, scalar<T(p)>(alpha), as<T(p)>(x), incx, as<T(p)>(y), incy, as<T(p)>(a), lda); }
ORK_CBLAS_GER(s, ger, ger, false)
ORK_CBLAS_GER(d, ger, ger, false)
ORK_CBLAS_GER(c, geru, geru, false)
ORK_CBLAS_GER(z, geru, geru, false)
ORK_CBLAS_GER(c, gerc, geru, true)
ORK_CBLAS_GER(z, gerc, geru, true)

// complex level 3: Hermitian forms
#define ORK_CBLAS_HERMITIAN_MM(p)                                                                                      \
    ORK_STDBLAS_API void cblas_##p##hemm(CBLAS_LAYOUT layout, CBLAS_SIDE side, CBLAS_UPLO uplo, const int m, const int n, const void* alpha, const void* a, const int lda, const void* b, const int ldb, const void* beta, void* c, const int ldc) { \
        symmetric_mm<T(p), ork_blas_##p##hemm>(NAME(p, hemm), layout, side, uplo, m, n, as<T(p)>(alpha), as<T(p)>(a), lda, as<T(p)>(b), ldb, as<T(p)>(beta), as<T(p)>(c), ldc); } \
    ORK_STDBLAS_API void cblas_##p##herk(CBLAS_LAYOUT layout, CBLAS_UPLO uplo, CBLAS_TRANSPOSE trans, const int n, const int k, const R(p) alpha, const void* a, const int lda, const R(p) beta, void* c, const int ldc) { \
        rank_k<T(p), true, ork_blas_##p##herk>(NAME(p, herk), layout, uplo, trans, n, k, &alpha, as<T(p)>(a), lda, &beta, as<T(p)>(c), ldc); } \
    ORK_STDBLAS_API void cblas_##p##her2k(CBLAS_LAYOUT layout, CBLAS_UPLO uplo, CBLAS_TRANSPOSE trans, const int n, const int k, const void* alpha, const void* a, const int lda, const void* b, const int ldb, const R(p) beta, void* c, const int ldc) { \
        rank_2k<T(p), true, ork_blas_##p##her2k>(NAME(p, her2k), layout, uplo, trans, n, k, as<T(p)>(alpha), as<T(p)>(a), lda, as<T(p)>(b), ldb, &beta, as<T(p)>(c), ldc); }
ORK_CBLAS_HERMITIAN_MM(c)
ORK_CBLAS_HERMITIAN_MM(z)
