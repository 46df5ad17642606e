# Transposition and scaled addition: kernels and their libork entries.
list(APPEND ORK_KERNEL_SOURCES trans/exports.cpp)
list(APPEND ORK_SSE2_SOURCES trans/sse2/inner.cpp)
list(APPEND ORK_CORE_SOURCES core/trans_entries.cpp)
