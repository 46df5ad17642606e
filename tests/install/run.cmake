# Installs the build into a fresh prefix, checks what is there, builds
# tests/install/consumer/use_ork.c against it through the CMake package and
# through pkg-config, and runs both. cmake -P with BUILD_DIR, SOURCE_DIR,
# WORK_DIR, LIBDIR, BLASDIR, KERNEL_GENERATIONS, C_COMPILER, C_FLAGS, VERSION.
set(prefix ${WORK_DIR}/prefix)
file(REMOVE_RECURSE ${WORK_DIR})
file(MAKE_DIRECTORY ${WORK_DIR})

function(run what)
  execute_process(COMMAND ${ARGN} RESULT_VARIABLE status OUTPUT_VARIABLE out ERROR_VARIABLE err)
  if(NOT status EQUAL 0)
    message(FATAL_ERROR "${what} failed (${status}):\n${out}\n${err}")
  endif()
  set(output "${out}" PARENT_SCOPE)
endfunction()

run("cmake --install" ${CMAKE_COMMAND} --install ${BUILD_DIR} --prefix ${prefix})

set(expected ${LIBDIR}/libork.so ${BLASDIR}/libblas.so.3 include/ork/ork.h include/ork/version.h
  ${LIBDIR}/cmake/ork/orkConfig.cmake ${LIBDIR}/cmake/ork/orkConfigVersion.cmake ${LIBDIR}/pkgconfig/ork.pc)
foreach(generation ${KERNEL_GENERATIONS})
  list(APPEND expected ${LIBDIR}/libork_${generation}.so)
endforeach()
foreach(file ${expected})
  if(NOT EXISTS ${prefix}/${file})
    message(FATAL_ERROR "not installed: ${file}")
  endif()
endforeach()

# No installed library may look for anything in the build or source tree.
file(GLOB_RECURSE installed LIST_DIRECTORIES false ${prefix}/${LIBDIR}/*.so*)
foreach(file ${installed})
  if(IS_SYMLINK ${file})
    continue()
  endif()
  run("readelf ${file}" readelf -d ${file})
  string(FIND "${output}" "${BUILD_DIR}" in_build)
  string(FIND "${output}" "${SOURCE_DIR}" in_source)
  if(NOT in_build EQUAL -1 OR NOT in_source EQUAL -1)
    message(FATAL_ERROR "${file} refers to the build tree:\n${output}")
  endif()
endforeach()

# The standard interface finds libork in the prefix by itself.
file(GLOB blas_libraries ${prefix}/${BLASDIR}/lib*.so.3)
foreach(file ${blas_libraries})
  run("ldd ${file}" ldd ${file})
  string(FIND "${output}" "libork.so => ${prefix}/${BLASDIR}/../../libork.so" found)
  if(found EQUAL -1)
    message(FATAL_ERROR "${file} does not find the installed libork:\n${output}")
  endif()
endforeach()

# The program checks that the kernel library and libblas.so.3 it gets are the installed ones.
set(program_args ${prefix}/${LIBDIR}/ ${prefix}/${BLASDIR}/)

run("configuring the consumer with find_package(ork)" ${CMAKE_COMMAND} -S ${SOURCE_DIR}/consumer
  -B ${WORK_DIR}/with_cmake -DCMAKE_PREFIX_PATH=${prefix} -DORK_VERSION=${VERSION}
  -DCMAKE_C_COMPILER=${C_COMPILER} "-DCMAKE_C_FLAGS=${C_FLAGS}")
run("building the consumer with find_package(ork)" ${CMAKE_COMMAND} --build ${WORK_DIR}/with_cmake)
run("the consumer built with find_package(ork)" ${WORK_DIR}/with_cmake/use_ork ${program_args})
message(STATUS "find_package(ork): ${output}")

set(ENV{PKG_CONFIG_PATH} ${prefix}/${LIBDIR}/pkgconfig)
run("pkg-config" pkg-config --cflags --libs ork)
separate_arguments(flags UNIX_COMMAND "${output}")
run("pkg-config" pkg-config --variable=libdir ork)
string(STRIP "${output}" libdir)
run("pkg-config" pkg-config --variable=blasdir ork)
string(STRIP "${output}" blasdir)
separate_arguments(c_flags UNIX_COMMAND "${C_FLAGS}")
run("building the consumer with pkg-config" ${C_COMPILER} ${c_flags} ${SOURCE_DIR}/consumer/use_ork.c ${flags}
  -L${blasdir} -l:libblas.so.3 -Wl,-rpath,${libdir}:${blasdir} -o ${WORK_DIR}/use_ork_pkgconfig)
run("the consumer built with pkg-config" ${WORK_DIR}/use_ork_pkgconfig ${program_args})
message(STATUS "pkg-config: ${output}")
