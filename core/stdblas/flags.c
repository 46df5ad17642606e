/* The two flags CBLAS test programs declare and set (see ork/cblas.h): plain
 * ints, in a file of their own so that a sanitizer build adds no symbols of
 * its own next to them. */
__attribute__((visibility("default"))) int RowMajorStrg = 0;
__attribute__((visibility("default"))) int CBLAS_CallFromC = 0;
