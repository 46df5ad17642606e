# Level-1 kernels and their libork entries.
list(APPEND ORK_KERNEL_SOURCES blas/level1/exports.cpp)
list(APPEND ORK_SSE2_SOURCES blas/level1/sse2/inner.cpp)
list(APPEND ORK_CORE_SOURCES core/blas1.cpp)
