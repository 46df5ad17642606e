# The matrix-multiply engine and its libork entries.
list(APPEND ORK_KERNEL_SOURCES blas/gemm/exports.cpp blas/gemm/exports_family.cpp)
list(APPEND ORK_SSE2_SOURCES blas/gemm/sse2/inner.cpp)
list(APPEND ORK_CORE_SOURCES core/gemm.cpp core/gemm_family.cpp)
