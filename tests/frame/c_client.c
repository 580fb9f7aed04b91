/* A plain C client of the library: the public header must compile as C on
 * every target, and the entries must link and answer from C. */
#include <stddef.h>
#include <stdio.h>
#include <string.h>

#include "vlcore.h"

static int failures = 0;

static void check(int ok, const char *what) {
    if (!ok) {
        fprintf(stderr, "c_client: %s\n", what);
        ++failures;
    }
}

int main(void) {
    char token[16];
    char number[] = "-1.5e3";
    int32_t n = 0;
    const char *rest = KELUTIL_next_token(token, "abc def");
    check(strcmp(token, "abc") == 0 && strcmp(rest, "def") == 0, "next_token from C");
    check(KELUTIL_str2real(number) == -1500.0, "str2real from C");
    check(KELUTIL_cvtstr2int("42", &n) == 1 && n == 42, "cvtstr2int from C");
    check(KELUTIL_Main(NULL, 0, 0, 3) == 3783, "KELUTIL_Main query from C");
    check(sizeof(VL_PRINTER_BLOCK) == 884 && offsetof(VL_PRINTER_BLOCK, mode) == 372, "printer block layout in C");
    printf("%d passed, %d failed\n", 5 - failures, failures);
    return failures ? 1 : 0;
}
