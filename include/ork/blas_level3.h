/* Level-3 BLAS entries besides the matrix-multiply family (ork/blas.h):
 * 64-bit integers, every argument by address, flags by their first letter.
 * libork defines them (argument checks, threads); the kernel library defines
 * the x-prefixed kernels behind them (ork_blas_xdtrsm ...). The declarations
 * are generated from blas/level3/table.py into ork/level3.h. */
#ifndef ORK_BLAS_LEVEL3_H
#define ORK_BLAS_LEVEL3_H

#include "ork/types.h"
#include "ork/level3.h"

#endif
