#include "platform/inet_date.h"

#include <cstdio>

const char* get_inet_date_string(std::time_t time) {
    static constexpr const char* DAYS[] = {"Sun", "Mon", "Tue", "Wed", "Thu", "Fri", "Sat"};
    static constexpr const char* MONTHS[] = {"Jan", "Feb", "Mar", "Apr", "May", "Jun",
                                             "Jul", "Aug", "Sep", "Oct", "Nov", "Dec"};
    static thread_local char text[64];
    text[0] = '\0';
    std::tm date{};
    if (gmtime_r(&time, &date)) {
        std::snprintf(text, sizeof text, "%s, %02d %s %04d %02d:%02d:%02d GMT", DAYS[date.tm_wday],
                      date.tm_mday, MONTHS[date.tm_mon], date.tm_year + 1900, date.tm_hour,
                      date.tm_min, date.tm_sec);
    }
    return text;
}
