# What `cmake --install` puts under the prefix: libork with every kernel
# library beside it (libork loads them from its own folder), the standard
# interface's libraries in a folder of their own (lib/ork/blas: they shadow
# the system's BLAS only for a program that asks for that folder), the
# headers, the CMake package (find_package(ork), target ork::ork) and ork.pc.
include(GNUInstallDirs)
include(CMakePackageConfigHelpers)

set(ORK_INSTALL_BLASDIR ${CMAKE_INSTALL_LIBDIR}/ork/blas)
set(ORK_INSTALL_CMAKEDIR ${CMAKE_INSTALL_LIBDIR}/cmake/ork)
set(ORK_INSTALL_PKGCONFIGDIR ${CMAKE_INSTALL_LIBDIR}/pkgconfig)

set(ork_kernel_libraries)
foreach(generation ${ORK_KERNEL_GENERATIONS})
  list(APPEND ork_kernel_libraries ork_${generation})
endforeach()
install(TARGETS ork ${ork_kernel_libraries} LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR})

# Every shared library of the standard interface (libblas.so.3, and
# libcblas.so.3 where it is built) finds libork two folders up, and its
# sibling next to itself.
get_property(ork_stdblas_targets DIRECTORY ${CMAKE_SOURCE_DIR}/core/stdblas PROPERTY BUILDSYSTEM_TARGETS)
foreach(target ${ork_stdblas_targets})
  get_target_property(type ${target} TYPE)
  if(type STREQUAL "SHARED_LIBRARY")
    set_target_properties(${target} PROPERTIES INSTALL_RPATH "$ORIGIN:$ORIGIN/../..")
    install(TARGETS ${target} LIBRARY DESTINATION ${ORK_INSTALL_BLASDIR})
  endif()
endforeach()

install(DIRECTORY ${CMAKE_SOURCE_DIR}/include/ork DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})

configure_package_config_file(${CMAKE_SOURCE_DIR}/cmake/orkConfig.cmake.in
  ${CMAKE_BINARY_DIR}/cmake/orkConfig.cmake
  INSTALL_DESTINATION ${ORK_INSTALL_CMAKEDIR}
  PATH_VARS CMAKE_INSTALL_INCLUDEDIR CMAKE_INSTALL_LIBDIR ORK_INSTALL_BLASDIR)
# 0.x: a new minor version may change the interface.
write_basic_package_version_file(${CMAKE_BINARY_DIR}/cmake/orkConfigVersion.cmake
  VERSION ${PROJECT_VERSION} COMPATIBILITY SameMinorVersion)
install(FILES ${CMAKE_BINARY_DIR}/cmake/orkConfig.cmake ${CMAKE_BINARY_DIR}/cmake/orkConfigVersion.cmake
  DESTINATION ${ORK_INSTALL_CMAKEDIR})

# ork.pc finds the prefix from its own folder, so an installed tree can move.
file(RELATIVE_PATH ORK_PC_TO_PREFIX /prefix/${ORK_INSTALL_PKGCONFIGDIR} /prefix)
string(REGEX REPLACE "/$" "" ORK_PC_TO_PREFIX "${ORK_PC_TO_PREFIX}")
configure_file(${CMAKE_SOURCE_DIR}/cmake/ork.pc.in ${CMAKE_BINARY_DIR}/cmake/ork.pc @ONLY)
install(FILES ${CMAKE_BINARY_DIR}/cmake/ork.pc DESTINATION ${ORK_INSTALL_PKGCONFIGDIR})
