/* libork's own interface: what was loaded, threads, and argument errors. */
#ifndef ORK_CORE_H
#define ORK_CORE_H

#include "ork/types.h"

ORK_BEGIN_C

/* Processor generations; each has a kernel library libork_<name>.so. */
enum {
    ORK_CPU_BASELINE = 0, /* x86-64 with SSE2 */
    ORK_CPU_AVX2 = 1,     /* AVX2 and FMA */
    ORK_CPU_AVX512 = 2    /* AVX-512 F, DQ, BW, VL */
};

/* "ork 0.1.0" and so on. */
const char *ork_version(void);

/* Loads the kernel library if it is not loaded yet. Returns 0 on success,
 * or a message number saying why it could not (the message was printed to
 * standard error). Every entry loads it on first use; a failure there ends
 * the process, since no kernel can run without it. The library is the best
 * generation the processor runs whose file is next to libork;
 * ORK_KERNEL_LIBRARY in the environment names a file to try first. A library
 * built for a generation above ork_cpu_generation() is never used. */
int ork_init(void);

/* The generation assumed for this processor: the best one cpuid and xgetbv
 * report (instruction sets and the register state the OS saves), or a lower
 * one named by ORK_CPU_DETECT. */
int ork_cpu_generation(void);
/* "baseline", "avx2", "avx512"; "unknown" for other codes. */
const char *ork_cpu_generation_name(int generation);
/* The generation of the loaded kernel library (its dll_cpu_version). */
int ork_kernel_generation(void);
/* The file name of the loaded kernel library. */
const char *ork_kernel_library_path(void);
/* The address of an export of the loaded kernel library, or null. */
void *ork_kernel_symbol(const char *name);

/* Overrides the answers of ork_serv_cpu_detect and ork_serv_cpuisitbarcelona;
 * a negative value restores detection. */
void ork_force_cpu(int generation, int is_barcelona);

/* Threads for one call: ORK_NUM_THREADS, else OMP_NUM_THREADS, else the
 * number of processors; ork_set_num_threads overrides (n < 1 restores).
 * Each is capped at 4 per online processor. */
int ork_get_max_threads(void);
void ork_set_num_threads(int n);

/* Argument errors. A checked entry that finds a bad argument does nothing
 * else, records the argument's 1-based position for ork_last_error() on the
 * calling thread and calls the error handler, which by default prints
 * message 1 to standard error. Every checked entry resets the record. */
typedef void (*ork_error_handler)(const char *routine, int position);
ork_error_handler ork_set_error_handler(ork_error_handler handler); /* null: silent */
/* A handler for the calling thread that, while set (non-null), takes the
 * reports instead of the process-wide one; returns the previous one. */
ork_error_handler ork_set_thread_error_handler(ork_error_handler handler);
int ork_last_error(void);
const char *ork_last_error_routine(void);

/* Running out of memory. An entry whose kernels cannot get their workspace
 * takes a path that needs none where it has one (the same result); where it
 * has none it reports ORK_OUT_OF_MEMORY in place of a position, through the
 * same record and handler (message 6 by default), with every output as it
 * was before the call. */
enum { ORK_OUT_OF_MEMORY = -1 };

/* Allocation-failure injection, for tests: the nth allocation libork makes
 * from now on (kernel workspace included, counted over all threads) returns
 * null; 0 disables. ork_allocation_count() is the number of allocations made
 * since the process started, so a test can run a call once, then fail each
 * of its allocations in turn. */
void ork_fail_allocation(long nth);
long ork_allocation_count(void);

ORK_END_C

#endif
