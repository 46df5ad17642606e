// The level-2 kernels besides ?gemv and ?syr that libork binds, by exported name.
#pragma once

#include "ork/blas_level2.h"

#define ORK_CORE_KERNELS_LEVEL2(X)
