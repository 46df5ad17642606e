/* Level-2 BLAS entries by their standard names, ork_blas_<routine>: 64-bit
 * integers, every argument by address, flags read by their first letter,
 * packed and band storage as in the reference BLAS. libork defines them all
 * (argument checks, kernel choice, threads); the kernel library defines the
 * same names as its unchecked kernels. The triangular ones are declared in
 * ork/triangular.h, the products and updates in ork/level2.h. */
#ifndef ORK_BLAS_LEVEL2_H
#define ORK_BLAS_LEVEL2_H

#include "ork/types.h"
#include "ork/level2.h"
#include "ork/triangular.h"

#endif
