# Optimisation flags of every kernel library. GCC 12 SLP vectorisation can
# store the unrounded double where a value is rounded to single and widened
# again (tests/frame/float_roundtrip.c); kernels round through single often.
set(ORK_KERNEL_OPT_FLAGS -O3 -fno-math-errno -fno-tree-slp-vectorize)

# ork_kernel_library(<generation name> GENERATION <n> FLAGS <arch flags...> SOURCES <files...>)
#
# Builds libork_<name>.so: the kernels for one processor generation. It links
# with the C driver so that nothing of the C++ runtime is pulled in: the code
# uses no exceptions, RTTI, thread-safe statics or iostreams, and its only
# run-time dependencies are libc, libm and the dynamic loader. The symbols it
# imports (ork_serv_*, the dispatched ork_blas_* entries) are left undefined
# and bound to libork's when libork loads it.
function(ork_kernel_library name)
  cmake_parse_arguments(K "" "GENERATION" "FLAGS;SOURCES" ${ARGN})
  set(target ork_${name})
  add_library(${target} SHARED ${K_SOURCES})
  target_include_directories(${target} PRIVATE ${CMAKE_SOURCE_DIR}/include ${CMAKE_SOURCE_DIR})
  target_compile_definitions(${target} PRIVATE ORK_GENERATION=${K_GENERATION})
  target_compile_options(${target} PRIVATE
    ${K_FLAGS}
    ${ORK_KERNEL_OPT_FLAGS}
    -fno-exceptions -fno-rtti -fno-threadsafe-statics -fno-asynchronous-unwind-tables
    -fvisibility=hidden -fvisibility-inlines-hidden
  )
  set_target_properties(${target} PROPERTIES LINKER_LANGUAGE C)
  target_link_libraries(${target} PRIVATE m)
  target_link_options(${target} PRIVATE -Wl,--as-needed)
endfunction()
