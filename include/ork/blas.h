/* BLAS entries by their standard names, ork_blas_<routine>: 64-bit integers,
 * every argument by address, character flags read by their first letter.
 *
 * libork defines every name below: it checks the arguments, picks the kernel
 * library for this processor and splits large calls over threads. Applications
 * call these. The kernel libraries also define some of them as unchecked kernels
 * of their own (exports/baseline/ lists which); the loader binds a caller to
 * whichever definition it finds first, libork's when an application links it. */
#ifndef ORK_BLAS_H
#define ORK_BLAS_H

#include "ork/types.h"
#include "ork/level1.h"
#include "ork/level2.h"
#include "ork/gemm.h"
#include "ork/gemm_family.h"

ORK_BEGIN_C

/* ---- levels 1 and 2: ork/level1.h, ork/level2.h ---- */

/* ---- level 3, the general product: ork/gemm.h ---- */

/* ---- level 3, the matrix-multiply family: ork/gemm_family.h ---- */

ORK_END_C

#endif
