# The small LAPACK-level kernels (built on the level-1 inner kernels) and
# their libork entries.
list(APPEND ORK_KERNEL_SOURCES blas/lapack/exports.cpp)
list(APPEND ORK_CORE_SOURCES core/lapack_entries.cpp)
