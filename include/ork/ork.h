/* Everything an application of ork includes. */
#ifndef ORK_ORK_H
#define ORK_ORK_H
#include "ork/types.h"
#include "ork/core.h"
#include "ork/service.h"
#include "ork/blas.h"
#include "ork/blas_level2.h"
#include "ork/blas_level3.h"
#include "ork/lapack.h"
#include "ork/trans.h"
#endif
