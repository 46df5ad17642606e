/* Rounds doubles to single and widens them again through two-element arrays,
 * the shape GCC 12's SLP vectoriser miscompiles at -O2/-O3 (it stores the
 * unrounded double). Built with the kernel library's optimisation flags, every
 * widened copy must equal its single source. Exit status 1 on a mismatch. */
#include <stdint.h>
#include <stdio.h>
#include <stdlib.h>

typedef float pair_f[2];
typedef double pair_d[2];

static uint64_t state = 0x9E3779B97F4A7C15ull;
static double next_value(void) {
    state ^= state << 13;
    state ^= state >> 7;
    state ^= state << 17;
    return (double)(state >> 11) * (1.0 / 9007199254740992.0) - 0.5;
}

__attribute__((noinline)) static void round_and_widen(long n, const double *src, pair_f *xf, pair_d *xd) {
    for (long i = 0; i < n; i++) {
        xf[i][0] = (float)src[2 * i];
        xf[i][1] = (float)src[2 * i + 1];
        xd[i][0] = xf[i][0];
        xd[i][1] = xf[i][1];
    }
}

int main(void) {
    enum { n = 257 };
    double *src = malloc(sizeof(double) * 2 * n);
    pair_f *xf = malloc(sizeof(pair_f) * n);
    pair_d *xd = malloc(sizeof(pair_d) * n);
    for (long i = 0; i < 2 * n; i++) src[i] = next_value();
    round_and_widen(n, src, xf, xd);
    int bad = 0;
    for (long i = 0; i < n; i++) bad += (xd[i][0] != (double)xf[i][0]) + (xd[i][1] != (double)xf[i][1]);
    printf("%d of %d widened values differ from their single source\n", bad, 2 * n);
    free(src);
    free(xf);
    free(xd);
    return bad != 0;
}
