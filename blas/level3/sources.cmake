# The level-3 kernels besides the general product, and their libork entries.
list(APPEND ORK_KERNEL_SOURCES blas/level3/exports.cpp)
list(APPEND ORK_CORE_SOURCES core/level3_entries.cpp)
