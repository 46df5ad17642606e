/* Service functions libork provides to the kernel libraries (and to anyone). */
#ifndef ORK_SERVICE_H
#define ORK_SERVICE_H

#include "ork/types.h"

ORK_BEGIN_C

/* Aligned workspace: the address is a multiple of the alignment, whatever
 * positive alignment is asked (a power of two or not); zero or a negative
 * alignment asks for none beyond malloc's own. Returns null only when memory
 * is exhausted (or the size cannot be represented). Free with the matching
 * function, which ignores null. */
void *ork_serv_allocate(size_t size, int alignment);
void ork_serv_deallocate(void *p);

/* Non-zero when the first characters of a and b are the same letter,
 * ignoring case; the lengths are those of Fortran strings and are not read. */
int ork_serv_lsame(const char *a, const char *b, int len_a, int len_b);

/* The one process-wide lock, for very short sections. */
void ork_serv_lock(void);
void ork_serv_unlock(void);

/* The processor generation libork serves (that of the loaded kernel library;
 * 0 = baseline) and whether the processor is an AMD family-10h part.
 * ORK_CPU_DETECT and ORK_CPU_IS_BARCELONA in the environment, or
 * ork_force_cpu() in core.h, override both answers. */
int ork_serv_cpu_detect(void);
int ork_serv_cpuisitbarcelona(void);

/* Numbered messages. ork_serv_ork_get_msg formats message `number` with the
 * `count` values that follow into a per-thread buffer and returns it (copy it
 * before the next call on this thread). ork_serv_ork_print prints it with a
 * newline on standard output; `channel` is 1. An unknown number, or a count
 * that does not match the message, gives the text of message 0 formatted with
 * the number asked for. */
const char *ork_serv_ork_get_msg(int number, int count, ...);
void ork_serv_ork_print(int channel, int number, int count, ...);

/* General aligned allocation for memory that may outlive a call. */
void *ork_serv_ork_malloc(size_t size, int alignment);
void ork_serv_ork_free(void *p);

/* Writes the library's version text, NUL-terminated, into buf[0 .. len-1]. */
void ork_serv_getversionstring(char *buf, int len);

ORK_END_C

#endif
