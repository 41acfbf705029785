// What the C library supplies for 8-bit text: classes, case, numbers, comparison. The second layer
// of TEXT_UTILITIES.
#ifndef KVCORE_TEXT_UTILITIES_LIBC_H
#define KVCORE_TEXT_UTILITIES_LIBC_H

#include <cstdint>

#include "kvcore/text_utilities_base.h"

namespace KVCORE {

// All of it goes by the "C" locale, whatever the process has set: letters are those of ASCII, and
// the decimal point is ".".
class TEXT_UTILITIES_LIBC : public TEXT_UTILITIES_BASE {
public:
    static constexpr bool is_digit(char c) noexcept { return c >= '0' && c <= '9'; }
    static constexpr bool is_upper(char c) noexcept { return c >= 'A' && c <= 'Z'; }
    static constexpr bool is_lower(char c) noexcept { return c >= 'a' && c <= 'z'; }
    static constexpr bool is_alphabetic(char c) noexcept { return is_upper(c) || is_lower(c); }
    static constexpr bool is_alphanumeric(char c) noexcept {
        return is_alphabetic(c) || is_digit(c);
    }
    static constexpr bool is_whitespace(char c) noexcept {
        return c == ' ' || (c >= '\t' && c <= '\r');
    }
    static constexpr bool is_punctuation(char c) noexcept {
        return c > ' ' && c < 0x7F && !is_alphanumeric(c);
    }
    static constexpr bool is_control(char c) noexcept { return (c >= 0 && c < ' ') || c == 0x7F; }
    static constexpr char to_lower(char c) noexcept {
        return is_upper(c) ? static_cast<char>(c + ('a' - 'A')) : c;
    }
    static constexpr char to_upper(char c) noexcept {
        return is_lower(c) ? static_cast<char>(c - ('a' - 'A')) : c;
    }

    // The number at the front of the text as strtol and strtod read it: white space, a sign,
    // digits; what follows is ignored, nothing readable is 0, and an integer out of range is the
    // limit of its type. Base 10 only. A text that starts with "0x" goes through
    // convert_hexadecimal_to_number.
    static std::int32_t convert_to_s32(const char* text, std::int32_t length = -1) noexcept;
    static std::int64_t convert_to_s64(const char* text, std::int32_t length = -1) noexcept;
    static double convert_to_f64(const char* text, std::int32_t length = -1);

    // Negative, 0 or positive; bytes compare as unsigned.
    static int compare_text(const char* a, const char* b, std::int32_t length_a = -1,
                            std::int32_t length_b = -1,
                            CASE_MODE mode = CASE_MODE::SENSITIVE) noexcept;
};

}  // namespace KVCORE

#endif  // KVCORE_TEXT_UTILITIES_LIBC_H
