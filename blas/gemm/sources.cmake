# The matrix-multiply engine and its libork entries.
list(APPEND ORK_KERNEL_SOURCES blas/gemm/exports.cpp blas/gemm/exports_family.cpp)
list(APPEND ORK_SSE2_SOURCES blas/gemm/sse2/inner.cpp)
list(APPEND ORK_CORE_SOURCES core/gemm_entries.cpp core/gemm_family_entries.cpp)
# AVX2 and AVX-512: one source over each generation's own vectors.
list(APPEND ORK_AVX2_SOURCES blas/gemm/avx2/inner.cpp)
list(APPEND ORK_AVX512_SOURCES blas/gemm/avx2/inner.cpp)
