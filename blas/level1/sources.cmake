# Level-1 kernels and their libork entries.
list(APPEND ORK_KERNEL_SOURCES blas/level1/exports.cpp)
list(APPEND ORK_SSE2_SOURCES blas/level1/native/elementwise.cpp blas/level1/sse2/reductions.cpp blas/level1/sse2/dot.cpp)
# The element-wise kernels over each generation's own vectors; the fixed-order
# reductions are the baseline's code, built again under each generation's flags,
# except the real dot products, which keep its order in 32-byte vectors.
list(APPEND ORK_AVX2_SOURCES blas/level1/native/elementwise.cpp blas/level1/sse2/reductions.cpp blas/level1/avx2/dot.cpp)
list(APPEND ORK_AVX512_SOURCES blas/level1/native/elementwise.cpp blas/level1/sse2/reductions.cpp blas/level1/avx2/dot.cpp)
list(APPEND ORK_CORE_SOURCES core/level1_entries.cpp)
