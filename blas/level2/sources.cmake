# Level-2 products and updates (the triangular ones are listed apart) and their libork entries.
list(APPEND ORK_KERNEL_SOURCES blas/level2/exports.cpp)
list(APPEND ORK_SSE2_SOURCES blas/level2/sse2/inner.cpp)
list(APPEND ORK_CORE_SOURCES core/level2_entries.cpp)
