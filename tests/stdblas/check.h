/* The C test programs' checks: CHECK counts and prints a failure and goes on;
 * verdict() prints the outcome and gives the exit status. */
#ifndef ORK_TESTS_STDBLAS_CHECK_H
#define ORK_TESTS_STDBLAS_CHECK_H
#include <stdio.h>

static int failures;
#define CHECK(cond, ...)                          \
    do {                                          \
        if (!(cond)) {                            \
            ++failures;                           \
            printf("FAILED line %d: ", __LINE__); \
            printf(__VA_ARGS__);                  \
            printf("\n");                         \
        }                                         \
    } while (0)

static int verdict(void) {
    printf("%s (%d failures)\n", failures ? "FAILED" : "passed", failures);
    return failures != 0;
}
#endif
