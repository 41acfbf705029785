#include "server_log.h"

#include <cstdarg>
#include <cstdio>
#include <ctime>
#include <string>

void server_log(const char* format, ...) {
    char text[2048];
    std::va_list arguments;
    va_start(arguments, format);
    std::vsnprintf(text, sizeof text, format, arguments);
    va_end(arguments);
    // Titles and paths come from clients: none of them may write lines of its own.
    for (char* c = text; *c != '\0'; ++c) {
        if (static_cast<unsigned char>(*c) < 0x20 || *c == 0x7F) {
            *c = '?';
        }
    }
    const std::time_t now = std::time(nullptr);
    std::tm local{};
    ::localtime_r(&now, &local);
    char stamp[32];
    std::strftime(stamp, sizeof stamp, "%Y-%m-%d %H:%M:%S ", &local);
    std::fputs((std::string(stamp) + text + "\n").c_str(), stdout);
    std::fflush(stdout);
}
