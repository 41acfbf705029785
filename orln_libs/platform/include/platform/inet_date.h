// Dates in the form of Internet messages.
#ifndef PLATFORM_INET_DATE_H
#define PLATFORM_INET_DATE_H

#include <ctime>

// The time as "Sun, 06 Nov 1994 08:49:37 GMT", with English names. The text lies in a buffer of the
// calling thread, which the next call overwrites. Empty for a time that has no calendar date.
const char* get_inet_date_string(std::time_t time);

#endif  // PLATFORM_INET_DATE_H
