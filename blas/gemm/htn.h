// The "htn" blocking of the matrix-multiply engine, used by libork's
// threading only: the plan of the main engine with depth blocks of 192 and
// row blocks of 384, so that one thread's packed A block (384 x 192) and its
// share of B stay in a private L2 while the other threads work on theirs.
#pragma once

#include "blas/gemm/brc.h"

namespace ork::gemm {

template <class T> using htn_engine = fixed_engine<T, 192, 384>;

}  // namespace ork::gemm
