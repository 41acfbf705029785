#include "skin_values.h"

#include <cctype>
#include <cerrno>
#include <cstdlib>

#include "modules/frameworks/trace_output.h"
#include "platform/disk_manager.h"

bool parse_skin_colour(const char* text, COLOUR& colour) {
    if (*text != '#' || !std::isxdigit(static_cast<unsigned char>(text[1]))) {
        return false;
    }
    errno = 0;
    const unsigned long value = std::strtoul(text + 1, nullptr, 16);
    if (errno == ERANGE || value > UINT32_MAX) {
        return false;
    }
    colour = COLOUR(static_cast<std::uint32_t>(value));
    return true;
}

bool parse_skin_number(const char* text, std::int32_t& number) {
    char* end = nullptr;
    const long value = std::strtol(text, &end, 10);
    if (end == text || value < INT16_MIN || value > UINT16_MAX) {
        return false;
    }
    number = static_cast<std::int32_t>(value);
    return true;
}

void trace_refused_value(const DISK_MANAGER& disk, const char* filename, const char* key,
                         const char* value) {
    TRACE_OUTPUT::output_warning("%s: the value \"%s\" of \"%s\" is refused",
                                 disk.get_path_string(filename), value, key);
}
