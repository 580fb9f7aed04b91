/* A C program that finds the library through its installed package. */
#include <stdio.h>
#include <string.h>

#include <vlcore.h>

int main(void) {
    char text[VL_FORMAT_ROOM];
    char number[] = "1.5e3";
    const double value = KELUTIL_str2real(number);
    KELUTIL_real2str(value / 7.0, text, "*3");
    printf("%s\n", text);
    return strcmp(text, "214") == 0 && value == 1500.0 ? 0 : 1;
}
