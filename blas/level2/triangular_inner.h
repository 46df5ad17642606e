// The unit-stride inner kernels of the triangular level-2 kernels: the narrow
// interface each processor generation implements
// (blas/level2/<generation>/triangular_inner.cpp). Each fixes its order of
// operations so that callers can rely on the bits.
#pragma once

#include "frame/types.h"

namespace ork::tri_inner {

// x[i] := x[i] - xj*a[i], i < m: each element by exactly that formula (the
// reference complex product), so the bits do not depend on the path taken.
void sweep(idx m, float xj, const float* a, float* x);
void sweep(idx m, double xj, const double* a, double* x);
void sweep(idx m, cx<float> xj, const cx<float>* a, cx<float>* x);
void sweep(idx m, cx<double> xj, const cx<double>* a, cx<double>* x);

// y[i] += c[k*incc]*a[i + k*lda] for k = 0, 1, ..., nc-1 in that order for
// every i < m (each product by the reference formula, one rounding per add):
// the no-transpose product over nc columns. lda and incc may be negative.
void gemv_cols(idx m, idx nc, const float* a, idx lda, const float* c, idx incc, float* y);
void gemv_cols(idx m, idx nc, const double* a, idx lda, const double* c, idx incc, double* y);
void gemv_cols(idx m, idx nc, const cx<float>* a, idx lda, const cx<float>* c, idx incc, cx<float>* y);
void gemv_cols(idx m, idx nc, const cx<double>* a, idx lda, const cx<double>* c, idx incc, cx<double>* y);

// out[k] := sum over i < m of op(a[i + k*lda])*x[i], k < nc, op conjugating
// when conj is set. The order of one column's sum depends on m alone (see the
// implementation), never on nc, so columns taken together or one at a time
// give the same bits; blocks of rows summed apart and added with
// compensation keep its error from growing with m.
void dots(idx m, idx nc, const float* a, idx lda, const float* x, float* out, bool conj);
void dots(idx m, idx nc, const double* a, idx lda, const double* x, double* out, bool conj);
void dots(idx m, idx nc, const cx<float>* a, idx lda, const cx<float>* x, cx<float>* out, bool conj);
void dots(idx m, idx nc, const cx<double>* a, idx lda, const cx<double>* x, cx<double>* out, bool conj);

}  // namespace ork::tri_inner
