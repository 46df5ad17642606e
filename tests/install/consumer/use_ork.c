/* A program built against an installed ork: libork's entries, the version
 * macros, and the Fortran BLAS of ork's libblas.so.3. Arguments: the folder
 * the kernel library must come from and the folder of libblas.so.3. */
#define _GNU_SOURCE
#include <dlfcn.h>
#include <link.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

#include <ork/ork.h>

double ddot_(const int *n, const double *x, const int *incx, const double *y, const int *incy);

static int failures = 0;

static void check(int ok, const char *what) {
    if (!ok) {
        fprintf(stderr, "use_ork: %s\n", what);
        ++failures;
    }
}

/* Whether file lies in folder, both taken without symbolic links or "..". */
static int lies_in(const char *file, const char *folder) {
    char *f = realpath(file, NULL), *d = realpath(folder, NULL);
    const size_t n = d ? strlen(d) : 0;
    const int in = f && d && strncmp(f, d, n) == 0 && f[n] == '/';
    free(f);
    free(d);
    return in;
}

int main(int argc, char **argv) {
    if (argc != 3) {
        fprintf(stderr, "usage: use_ork <kernel library folder> <libblas.so.3 folder>\n");
        return 2;
    }
    char version[64];
    snprintf(version, sizeof version, "%d.%d.%d", ORK_VERSION_MAJOR, ORK_VERSION_MINOR, ORK_VERSION_PATCH);
    check(strcmp(version, ORK_VERSION_STRING) == 0, "the version macros disagree");
    check(strcmp(ork_version() + 4, ORK_VERSION_STRING) == 0, "the headers' version is not the library's");

    check(ork_init() == 0, "no kernel library loaded");
    check(lies_in(ork_kernel_library_path(), argv[1]), "the kernel library is not the installed one");
    printf("kernel library %s\n", ork_kernel_library_path());

    /* [1 2; 3 4] * [5 6; 7 8] = [19 22; 43 50], exact */
    const double a[] = {1, 3, 2, 4}, b[] = {5, 7, 6, 8}, one = 1, zero = 0;
    double c[4] = {-1, -1, -1, -1};
    const ork_int two = 2;
    ork_blas_dgemm("N", "N", &two, &two, &two, &one, a, &two, b, &two, &zero, c, &two);
    check(c[0] == 19 && c[1] == 43 && c[2] == 22 && c[3] == 50, "dgemm through libork");

    const int n = 4, inc = 1;
    check(ddot_(&n, a, &inc, b, &inc) == 5 + 21 + 12 + 32, "ddot_ through libblas.so.3");
    void *blas = dlopen("libblas.so.3", RTLD_NOW | RTLD_NOLOAD);
    struct link_map *map = NULL;
    check(blas && dlinfo(blas, RTLD_DI_LINKMAP, &map) == 0 && lies_in(map->l_name, argv[2]),
          "the libblas.so.3 loaded is not the installed one");
    if (blas) dlclose(blas);

    printf("%s\n", failures ? "FAILED" : "ok");
    return failures != 0;
}
