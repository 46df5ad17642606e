// The processor generation of this build of the kernel library.
#include "frame/export.h"

#ifndef ORK_GENERATION
#error "ORK_GENERATION names the processor generation of the build"
#endif

ORK_API int dll_cpu_version(void) { return ORK_GENERATION; }
