/* Kernel-library-only BLAS names: the generation the library was built for,
 * and (ork/level1_kernels.h) the level-1 kernels libork dispatches to and the
 * lp64_ wrappers with 32-bit integers. Defined by libork_<generation>.so;
 * these do no argument checking. */
#ifndef ORK_BLAS_KERNELS_H
#define ORK_BLAS_KERNELS_H

#include "ork/blas.h"
#include "ork/level1_kernels.h"

ORK_BEGIN_C

/* The processor generation the kernel library was built for; 0 = baseline. */
int dll_cpu_version(void);

ORK_END_C

#endif
