#include "platform/text_walker.h"

namespace {

constexpr int CODE_DIGITS = 4;

// The value of a hexadecimal digit, -1 for any other character.
int digit_value(char c) {
    if (c >= '0' && c <= '9') {
        return c - '0';
    }
    if (c >= 'a' && c <= 'f') {
        return c - 'a' + 10;
    }
    if (c >= 'A' && c <= 'F') {
        return c - 'A' + 10;
    }
    return -1;
}

}  // namespace

bool TEXT_WALKER::next_in_code() {
    while (*position != '\0') {
        if (*position == CODE_MARK) {
            in_code = !in_code;
            ++position;
            continue;
        }
        if (!in_code) {
            return next();
        }
        const char* start = position;
        unsigned value = 0;
        int digits = 0;
        for (; digits < CODE_DIGITS && digit_value(*position) >= 0; ++digits, ++position) {
            value = value * 16 + static_cast<unsigned>(digit_value(*position));
        }
        if (digits == CODE_DIGITS) {
            if (*position == ',') {
                ++position;
            }
            at = start;
            at_in_code = true;
            code = static_cast<std::uint16_t>(value);
            return true;
        }
        // Too few digits, or something that is no code at all.
        if (digits == 0) {
            ++position;
        }
    }
    return false;
}
