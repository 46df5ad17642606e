/* Loads libork from the path given, lets it load a kernel library, and prints
 * what it found: "status <s> processor <g> loaded <g> <path>". Run by
 * loader_test.cpp with chosen environments and folders. */
#include <dlfcn.h>
#include <stdio.h>

int main(int argc, char **argv) {
    if (argc != 2) {
        fprintf(stderr, "usage: %s <path of libork.so>\n", argv[0]);
        return 2;
    }
    void *core = dlopen(argv[1], RTLD_NOW | RTLD_LOCAL);
    if (!core) {
        fprintf(stderr, "%s\n", dlerror());
        return 2;
    }
    int (*init)(void) = (int (*)(void))dlsym(core, "ork_init");
    int (*cpu)(void) = (int (*)(void))dlsym(core, "ork_cpu_generation");
    int (*kernel)(void) = (int (*)(void))dlsym(core, "ork_kernel_generation");
    const char *(*path)(void) = (const char *(*)(void))dlsym(core, "ork_kernel_library_path");
    double (*ddot)(const long *, const double *, const long *, const double *, const long *) =
        (double (*)(const long *, const double *, const long *, const double *, const long *))dlsym(core, "ork_blas_ddot");
    if (!init || !cpu || !kernel || !path || !ddot) return 2;
    const int status = init();
    printf("status %d processor %d loaded %d %s\n", status, cpu(), kernel(), path());
    if (status == 0) { /* a kernel runs: 1*4 + 2*5 + 3*6 */
        const double x[] = {1, 2, 3}, y[] = {4, 5, 6};
        const long n = 3, one = 1;
        if (ddot(&n, x, &one, y, &one) != 32.0) return 3;
    }
    return 0;
}
