// Small text helpers: unique numbers, comparing without regard to case, length-prefixed strings.
#ifndef PLATFORM_TEXT_TOOLS_H
#define PLATFORM_TEXT_TOOLS_H

#include <cstdint>

// 1, then 2 and so on, for the life of the process. No lock: for one thread.
std::int32_t get_unique_id();

// Compares two 8-bit texts without regard to the case of the 26 letters: -1, 0 or 1. A null text
// comes before every other.
int strcmpi(const char* a, const char* b);

// Length-prefixed strings: a byte with the length, then that many characters, no terminator.
// C_TO_P_STR copies into a static buffer which the next call overwrites. A text above 255
// characters is cut, and `platform_debug_stream` is told.
unsigned char* C_TO_P_STR(const char* text);
// The same into the caller's buffer of `size` bytes, cut to what fits it.
unsigned char* C_TO_P_STR_BUF(const char* text, unsigned char* buffer, std::int32_t size);
// The reverse, into a static buffer or the caller's. A null text is empty.
char* P_TO_C_STR(const unsigned char* text);
char* P_TO_C_STR(const unsigned char* text, char* buffer, std::int32_t size);

#endif  // PLATFORM_TEXT_TOOLS_H
