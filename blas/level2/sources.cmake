# Level-2 products and updates (the triangular ones are listed apart) and their libork entries.
list(APPEND ORK_KERNEL_SOURCES blas/level2/exports.cpp)
# One source over each generation's own vectors.
list(APPEND ORK_SSE2_SOURCES blas/level2/native/inner.cpp)
list(APPEND ORK_AVX2_SOURCES blas/level2/native/inner.cpp)
list(APPEND ORK_AVX512_SOURCES blas/level2/native/inner.cpp)
list(APPEND ORK_CORE_SOURCES core/level2_entries.cpp)
