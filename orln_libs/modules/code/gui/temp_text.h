// Texts in buffers of a TEMP_STRINGS, as STRING_UTILITIES hands them out.
#ifndef MODULES_GUI_TEMP_TEXT_H
#define MODULES_GUI_TEMP_TEXT_H

#include <cstdarg>
#include <cstdint>
#include <cstdio>

#include "platform/temp_strings.h"

// The size of a result, where nothing else is said.
inline constexpr std::int32_t TEMP_TEXT_SIZE = 256;

inline char* empty_temp_text(TEMP_STRINGS& temp) {
    return temp.get(TEMP_TEXT_SIZE);
}

inline char* format_temp_text(TEMP_STRINGS& temp, const char* format, ...)
    __attribute__((format(printf, 2, 3)));

inline char* format_temp_text(TEMP_STRINGS& temp, const char* format, ...) {
    char* text = temp.get(TEMP_TEXT_SIZE);
    std::va_list arguments;
    va_start(arguments, format);
    std::vsnprintf(text, TEMP_TEXT_SIZE, format, arguments);
    va_end(arguments);
    return text;
}

#endif  // MODULES_GUI_TEMP_TEXT_H
