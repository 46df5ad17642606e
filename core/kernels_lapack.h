// The small LAPACK-level kernels that libork binds, by exported name.
#pragma once


#define ORK_CORE_KERNELS_LAPACK(X)
