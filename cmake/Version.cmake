# Checks that include/ork/version.h states the project's version.
set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${CMAKE_SOURCE_DIR}/include/ork/version.h)
file(STRINGS ${CMAKE_SOURCE_DIR}/include/ork/version.h ork_version_lines REGEX "^#define ORK_VERSION_")
foreach(part MAJOR MINOR PATCH)
  string(REGEX REPLACE ".*#define ORK_VERSION_${part} ([0-9]+).*" "\\1" ork_version_${part} "${ork_version_lines}")
endforeach()
string(REGEX REPLACE ".*#define ORK_VERSION_STRING \"([^\"]*)\".*" "\\1" ork_version_string "${ork_version_lines}")
if(NOT "${ork_version_MAJOR}.${ork_version_MINOR}.${ork_version_PATCH}" STREQUAL PROJECT_VERSION
   OR NOT ork_version_string STREQUAL PROJECT_VERSION)
  message(FATAL_ERROR "include/ork/version.h says ${ork_version_MAJOR}.${ork_version_MINOR}.${ork_version_PATCH} "
                      "(\"${ork_version_string}\"), the project ${PROJECT_VERSION}: make them equal")
endif()
