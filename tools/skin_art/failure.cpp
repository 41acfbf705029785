#include "failure.h"

#include <cstdarg>
#include <cstdio>
#include <cstdlib>

void fail(const char* format, ...) {
    std::va_list arguments;
    va_start(arguments, format);
    std::fputs("skin_art: ", stderr);
    std::vfprintf(stderr, format, arguments);
    std::fputc('\n', stderr);
    va_end(arguments);
    std::exit(1);
}
