// The values in the files of a skin that people write: colours and numbers.
#ifndef MODULES_WINMAN_SKIN_VALUES_H
#define MODULES_WINMAN_SKIN_VALUES_H

#include <cstdint>

#include "platform/colour.h"

class DISK_MANAGER;

// "#" and up to eight hexadecimal digits. Anything else, or a number that has no room in a colour,
// is refused, and `colour` stays as it is.
bool parse_skin_colour(const char* text, COLOUR& colour);

// A decimal number from -32768 to 65535: every number of a skin is kept in 16 bits, with or without
// a sign. What stands behind the digits is ignored.
bool parse_skin_number(const char* text, std::int32_t& number);

// Warns of a value that is refused, with the file's name.
void trace_refused_value(const DISK_MANAGER& disk, const char* filename, const char* key,
                         const char* value);

#endif  // MODULES_WINMAN_SKIN_VALUES_H
