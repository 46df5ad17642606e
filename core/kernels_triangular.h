// The triangular level-2 kernels (?trmv, ?trsv and their band and packed
// forms) that libork binds, by exported name.
#pragma once

#include "ork/blas_level2.h"

#define ORK_CORE_KERNELS_TRIANGULAR(X)
