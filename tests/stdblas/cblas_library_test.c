/* A program linked against libcblas.so.3 alone, with the libraries' own error
 * handlers: its CBLAS calls reach ork, a bad Fortran call prints its line and
 * returns, and a bad CBLAS call ends the process as the reference CBLAS does. */
#define _GNU_SOURCE
#include <dlfcn.h>
#include <link.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <sys/wait.h>
#include <unistd.h>

#include "ork/cblas.h"

#include "check.h"

/* The file of the object that defines the address p. */
static const char *object_of(const void *p) {
    Dl_info info;
    return dladdr(p, &info) && info.dli_fname ? info.dli_fname : "";
}
static int ends_with(const char *s, const char *tail) {
    size_t n = strlen(s), t = strlen(tail);
    return n >= t && !strcmp(s + n - t, tail);
}
static int libork_loaded(struct dl_phdr_info *info, size_t size, void *found) {
    (void)size;
    if (ends_with(info->dlpi_name, "/libork.so")) *(int *)found = 1;
    return 0;
}

/* The exports the program itself is not linked against, from the libraries
 * libcblas.so.3 brought in. */
static void *symbol(const char *name) {
    void *p = dlsym(RTLD_DEFAULT, name);
    CHECK(p != NULL, "%s is not loaded", name);
    return p;
}

/* A product large enough for libork to take workspace from its allocator:
 * the count of its allocations shows that ork did the work. The data are
 * small integers, so the result is exact. */
static void reaches_ork(void) {
    CHECK(ends_with(object_of((void *)cblas_dgemm), "/stdblas/libcblas.so.3"), "cblas_dgemm is defined by %s",
          object_of((void *)cblas_dgemm));
    int found = 0;
    dl_iterate_phdr(libork_loaded, &found);
    CHECK(found, "libork.so is not mapped");
    long (*allocations)(void) = (long (*)(void))symbol("ork_allocation_count");
    if (!allocations) return;

    enum { n = 96 };
    static double a[n * n], b[n * n], c[n * n];
    for (int i = 0; i < n * n; ++i) a[i] = i % 7 - 3, b[i] = i % 5 - 2, c[i] = 1;
    const long before = allocations();
    cblas_dgemm(CblasRowMajor, CblasNoTrans, CblasTrans, n, n, n, 2, a, n, b, n, -1, c, n);
    CHECK(allocations() > before, "cblas_dgemm took no workspace from libork");
    int wrong = 0;
    for (int i = 0; i < n; ++i)
        for (int j = 0; j < n; ++j) {
            double s = 0;
            for (int k = 0; k < n; ++k) s += a[i * n + k] * b[j * n + k];
            wrong += c[i * n + j] != 2 * s - 1;
        }
    CHECK(wrong == 0, "cblas_dgemm: %d wrong elements", wrong);

    const double complex_a[4] = {1, 2, 3, -1}, complex_x[2] = {2, 1}, one[2] = {1, 0}, zero[2] = {0, 0};
    double y[4] = {7, 7, 7, 7};
    cblas_zgemv(CblasRowMajor, CblasConjTrans, 1, 2, one, complex_a, 2, complex_x, 1, zero, y, 1);
    CHECK(y[0] == 4 && y[1] == -3 && y[2] == 5 && y[3] == 5, "cblas_zgemv: (%g, %g) (%g, %g), not (4, -3) (5, 5)",
          y[0], y[1], y[2], y[3]);
}

/* What fn prints on standard error, and its exit status (-1 if it returned). */
static int run_captured(void (*fn)(void), int in_child, char *text, size_t size) {
    FILE *f = tmpfile();
    fflush(stdout);  /* a child ending by exit() must not print the parent's buffer again */
    fflush(stderr);
    int status = -1;
    if (in_child) {
        pid_t pid = fork();
        if (pid == 0) {
            dup2(fileno(f), 2);
            fn();
            _exit(0);
        }
        int w;
        waitpid(pid, &w, 0);
        status = WIFEXITED(w) ? WEXITSTATUS(w) : 1000;
    } else {
        int saved = dup(2);
        dup2(fileno(f), 2);
        fn();
        fflush(stderr);
        dup2(saved, 2);
        close(saved);
    }
    rewind(f);
    size_t got = fread(text, 1, size - 1, f);
    text[got] = '\0';
    fclose(f);
    return status;
}

static double c22[4];
static void bad_fortran_call(void) {
    typedef void dgemm_f(const char *, const char *, const int *, const int *, const int *, const double *,
                         const double *, const int *, const double *, const int *, const double *, double *,
                         const int *, size_t, size_t);
    dgemm_f *dgemm = (dgemm_f *)dlsym(RTLD_DEFAULT, "dgemm_");
    const double a[4] = {1, 2, 3, 4}, one = 1;
    const int two = 2, bad = 1;
    dgemm("N", "N", &two, &two, &two, &one, a, &bad, a, &two, &one, c22, &two, 1, 1);
}
static void bad_cblas_call(void) {
    const double a[4] = {1, 2, 3, 4};
    cblas_dgemm(CblasColMajor, CblasNoTrans, CblasNoTrans, 2, 2, 2, 1, a, 1, a, 2, 0, c22, 2);
}

static void default_handlers(void) {
    char text[512];
    for (int i = 0; i < 4; ++i) c22[i] = 9;
    int status = run_captured(bad_fortran_call, 0, text, sizeof text);
    CHECK(status == -1 && c22[0] == 9 && c22[3] == 9, "the bad dgemm_ call did not return untouched");
    CHECK(!strcmp(text, " ** On entry to DGEMM parameter number  8 had an illegal value\n"), "dgemm_ printed '%s'",
          text);
    status = run_captured(bad_cblas_call, 1, text, sizeof text);
    CHECK(status == 255, "the bad cblas_dgemm call ended with status %d, not 255", status);
    CHECK(strstr(text, "Parameter 9 to routine cblas_dgemm was incorrect") != NULL, "cblas_dgemm printed '%s'", text);
}

int main(void) {
    reaches_ork();
    default_handlers();
    return verdict();
}
