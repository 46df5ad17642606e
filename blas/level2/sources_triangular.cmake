# Triangular level-2 kernels and their libork entries.
list(APPEND ORK_KERNEL_SOURCES blas/level2/triangular_exports.cpp)
list(APPEND ORK_SSE2_SOURCES blas/level2/sse2/triangular_inner.cpp)
list(APPEND ORK_CORE_SOURCES core/triangular_entries.cpp)
