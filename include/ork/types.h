/* Scalar types shared by every ork header: 64-bit integers, complex pairs. */
#ifndef ORK_TYPES_H
#define ORK_TYPES_H

#include <stddef.h>
#include <stdint.h>

#include "ork/version.h"

/* Dimensions, leading dimensions, increments, counts and index results. */
typedef int64_t ork_int;
/* Integers of the lp64_ wrappers, widened to ork_int before any use. */
typedef int32_t ork_int32;

/* Complex elements: real part first, the layout of C99 float/double _Complex,
 * and returned by value in the same registers. */
typedef struct ork_complex8 {
    float re, im;
} ork_complex8;
typedef struct ork_complex16 {
    double re, im;
} ork_complex16;

#ifdef __cplusplus
#define ORK_BEGIN_C extern "C" {
#define ORK_END_C }
#else
#define ORK_BEGIN_C
#define ORK_END_C
#endif

#endif
