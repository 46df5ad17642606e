/* Everything an application of ork includes. */
#ifndef ORK_ORK_H
#define ORK_ORK_H
#include "ork/types.h"
#include "ork/core.h"
#include "ork/service.h"
#include "ork/blas.h"
#endif
