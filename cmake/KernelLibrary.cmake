# The kernel libraries: one per processor generation, built from the same
# generic sources, each with the inner kernels of its generation.
#
# Optimisation flags of every kernel library. GCC 12 SLP vectorisation can
# store the unrounded double where a value is rounded to single and widened
# again (tests/frame/float_roundtrip.c); kernels round through single often.
# -ffp-contract=off (global) keeps every generation's generic code free of
# fused multiply-adds, so the fixed orders give the same bits everywhere.
set(ORK_KERNEL_OPT_FLAGS -O3 -fno-math-errno -fno-tree-slp-vectorize)

# Each area lists its files in <area>/sources*.cmake: ORK_KERNEL_SOURCES
# (generic, every generation), ORK_CORE_SOURCES (its entries in libork), and
# its inner kernels per generation in ORK_<INNER>_SOURCES, where <INNER> is a
# generation's INNER word below (SSE2 for the baseline, AVX2, AVX512). A
# generation that lists no inner kernels of its own for an area takes those of
# its parent. Each list file is one area, so that a folder holding two areas
# (blas/level2: products and the triangular ones) can give one of them new
# inner kernels and leave the other to the parent.
set(ORK_KERNEL_INNER_WORDS SSE2 AVX2 AVX512)
set(ORK_KERNEL_GENERATIONS)
set(ORK_KERNEL_GENERATION_NUMBERS)
set_property(GLOBAL PROPERTY ORK_KERNEL_AREAS)

# ork_kernel_area(<list file>): reads one area's list and records its inner
# kernels per generation. A macro, so that ORK_KERNEL_SOURCES and
# ORK_CORE_SOURCES accumulate in the caller's scope.
macro(ork_kernel_area list_file)
  foreach(word ${ORK_KERNEL_INNER_WORDS})
    set(ORK_${word}_SOURCES)
  endforeach()
  include(${list_file})
  file(RELATIVE_PATH ork_area_id ${CMAKE_SOURCE_DIR} ${list_file})
  string(MAKE_C_IDENTIFIER "${ork_area_id}" ork_area_id)
  set_property(GLOBAL APPEND PROPERTY ORK_KERNEL_AREAS ${ork_area_id})
  foreach(word ${ORK_KERNEL_INNER_WORDS})
    set_property(GLOBAL PROPERTY ORK_AREA_${ork_area_id}_${word} "${ORK_${word}_SOURCES}")
    set(ORK_${word}_SOURCES)
  endforeach()
endmacro()

# The options every object of a kernel library is compiled with.
function(ork_kernel_objects target generation)
  target_include_directories(${target} PRIVATE ${CMAKE_SOURCE_DIR}/include ${CMAKE_SOURCE_DIR})
  target_compile_definitions(${target} PRIVATE ORK_GENERATION=${generation})
  target_compile_options(${target} PRIVATE
    ${ARGN}
    ${ORK_KERNEL_OPT_FLAGS}
    -fno-exceptions -fno-rtti -fno-threadsafe-statics -fno-asynchronous-unwind-tables
    -fvisibility=hidden -fvisibility-inlines-hidden
  )
endfunction()

# ork_kernel_library(<generation name> GENERATION <n> INNER <word> [PARENT <name>]
#                    FLAGS <arch flags...> [GENERIC_FLAGS <arch flags...>]
#                    SOURCES <generic files...>)
#
# Builds libork_<name>.so: the generic sources and, area by area, the inner
# kernels listed under ORK_<word>_SOURCES, else those the parent library took.
# Inner kernels are compiled with the FLAGS of the generation that lists them
# (an inherited kernel is the parent's code); the generic sources with
# GENERIC_FLAGS (default FLAGS), which must leave out FMA: GCC 12's vectoriser
# turns complex products into fused multiply-adds (vfmaddsub) even under
# -ffp-contract=off, and AVX-512F brings FMA forms of its own, so the generic
# code of every generation is compiled without either.
#
# The library links with the C driver so that nothing of the C++ runtime is
# pulled in: the code uses no exceptions, RTTI, thread-safe statics or
# iostreams, and its only run-time dependencies are libc, libm and the dynamic
# loader. The symbols it imports (ork_serv_*, the dispatched ork_blas_*
# entries) are left undefined and bound to libork's when libork loads it. The
# generation's name and number join ORK_KERNEL_GENERATIONS and
# ORK_KERNEL_GENERATION_NUMBERS, from which the tests register one run of the
# suite per generation.
function(ork_kernel_library name)
  cmake_parse_arguments(K "" "GENERATION;INNER;PARENT" "FLAGS;GENERIC_FLAGS;SOURCES" ${ARGN})
  if(NOT K_GENERIC_FLAGS)
    set(K_GENERIC_FLAGS ${K_FLAGS})
  endif()
  set_property(GLOBAL PROPERTY ORK_FLAGS_${name} "${K_FLAGS}")
  set(target ork_${name})
  add_library(${target} SHARED ${K_SOURCES})
  ork_kernel_objects(${target} ${K_GENERATION} ${K_GENERIC_FLAGS})

  # Area by area: this generation's own inner kernels, else the parent's
  # choice; grouped by the generation that owns them, for their flags.
  get_property(areas GLOBAL PROPERTY ORK_KERNEL_AREAS)
  set(owners)
  foreach(area ${areas})
    get_property(files GLOBAL PROPERTY ORK_AREA_${area}_${K_INNER})
    set(owner ${name})
    if(NOT files AND K_PARENT)
      get_property(files GLOBAL PROPERTY ORK_LIBRARY_${K_PARENT}_${area})
      get_property(owner GLOBAL PROPERTY ORK_LIBRARY_${K_PARENT}_${area}_OWNER)
    endif()
    set_property(GLOBAL PROPERTY ORK_LIBRARY_${name}_${area} "${files}")
    set_property(GLOBAL PROPERTY ORK_LIBRARY_${name}_${area}_OWNER "${owner}")
    if(files)
      list(APPEND owners ${owner})
      list(APPEND inner_${owner} ${files})
    endif()
  endforeach()
  list(REMOVE_DUPLICATES owners)
  foreach(owner ${owners})
    get_property(owner_flags GLOBAL PROPERTY ORK_FLAGS_${owner})
    add_library(${target}_inner_${owner} OBJECT ${inner_${owner}})
    ork_kernel_objects(${target}_inner_${owner} ${K_GENERATION} ${owner_flags})
    target_sources(${target} PRIVATE $<TARGET_OBJECTS:${target}_inner_${owner}>)
  endforeach()

  set_target_properties(${target} PROPERTIES LINKER_LANGUAGE C)
  target_link_libraries(${target} PRIVATE m)
  target_link_options(${target} PRIVATE -Wl,--as-needed)

  set(ORK_KERNEL_GENERATIONS ${ORK_KERNEL_GENERATIONS} ${name} PARENT_SCOPE)
  set(ORK_KERNEL_GENERATION_NUMBERS ${ORK_KERNEL_GENERATION_NUMBERS} ${K_GENERATION} PARENT_SCOPE)
endfunction()
