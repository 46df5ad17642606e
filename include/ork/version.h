/* The version of these headers; libork's is ork_version(). */
#ifndef ORK_VERSION_H
#define ORK_VERSION_H

/* Equal to project(ork VERSION ...) in the top CMakeLists.txt: configuring
 * stops when they differ. */
#define ORK_VERSION_MAJOR 0
#define ORK_VERSION_MINOR 1
#define ORK_VERSION_PATCH 0
#define ORK_VERSION_STRING "0.1.0"

#endif
