/* Matrix transposition, copy and scaled addition: B = alpha*op(A) out of
 * place (omatcopy, omatcopy2 with element strides), AB = alpha*op(AB) in
 * place (imatcopy), C = alpha*op(A) + beta*op(B) (omatadd). Every argument by
 * address; dimensions, leading dimensions and strides unsigned 64-bit.
 * ordering: 'R' row-major or 'C' column-major; rows and cols are those of the
 * source as stored (of C for omatadd). trans: 'N' none, 'T' transpose, 'R'
 * conjugate, 'C' conjugate transpose ('R' reads as 'N' and 'C' as 'T' for the
 * real types). imatcopy's result has leading dimension ldb.
 *
 * libork defines the checked entries ork_trans_<x><routine>: they report the
 * 1-based position of the first bad argument (unknown letter, leading
 * dimension too small, zero stride, null pointer) and split large
 * out-of-place calls over threads. The kernel library defines the unchecked
 * dispatchers ork_trans_ork_<x><routine>, which do nothing for an unknown
 * letter, and the row-major kernels they choose from. Nothing allocates.
 * The prototypes come from trans/table.py: ork/trans_entries.h (libork) and
 * ork/trans_kernels.h (the kernel library). */
#ifndef ORK_TRANS_H
#define ORK_TRANS_H

#include "ork/types.h"
#include "ork/trans_entries.h"
#include "ork/trans_kernels.h"


#endif
