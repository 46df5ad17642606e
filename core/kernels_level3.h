// The level-3 kernels besides the matrix-multiply family that libork binds, by exported name.
#pragma once

#include "ork/blas_level3.h"

#define ORK_CORE_KERNELS_LEVEL3(X)
