// Export conventions of the kernel library: C linkage, default visibility.
#pragma once

#include "ork/blas_kernels.h"
#include "ork/service.h"
#include "frame/types.h"

// Everything else in the library is hidden (-fvisibility=hidden); an export is
// a one-line function marked ORK_API that forwards to a template.
#define ORK_API extern "C" __attribute__((visibility("default")))
