// What must be right for Unicode: classes, case mapping, comparison and conversion of 16-bit text.
// The platform's layer of TEXT_UTILITIES.
#ifndef KVCORE_TEXT_UTILITIES_LINUX_H
#define KVCORE_TEXT_UTILITIES_LINUX_H

#include <cstdint>
#include <string>

#include "kvcore/text_utilities_libc.h"

namespace KVCORE {

// Goes by tables of our own, made from the Unicode character database, and by no locale. Mappings
// are the simple ones, a unit for a unit; surrogates have no class and no case.
class TEXT_UTILITIES_LINUX : public TEXT_UTILITIES_LIBC {
public:
    using TEXT_UTILITIES_LIBC::convert_to_f64;
    using TEXT_UTILITIES_LIBC::convert_to_s32;
    using TEXT_UTILITIES_LIBC::convert_to_s64;
    using TEXT_UTILITIES_LIBC::is_alphabetic;
    using TEXT_UTILITIES_LIBC::is_alphanumeric;
    using TEXT_UTILITIES_LIBC::is_control;
    using TEXT_UTILITIES_LIBC::is_digit;
    using TEXT_UTILITIES_LIBC::is_lower;
    using TEXT_UTILITIES_LIBC::is_punctuation;
    using TEXT_UTILITIES_LIBC::is_upper;
    using TEXT_UTILITIES_LIBC::is_whitespace;
    using TEXT_UTILITIES_LIBC::to_lower;
    using TEXT_UTILITIES_LIBC::to_upper;

    // General categories L, Nd, Lu, Ll, P and Cc; white space is the property White_Space.
    static bool is_alphabetic(char16_t unit) noexcept;
    static bool is_digit(char16_t unit) noexcept;
    static bool is_upper(char16_t unit) noexcept;
    static bool is_lower(char16_t unit) noexcept;
    static bool is_alphanumeric(char16_t unit) noexcept;
    static bool is_whitespace(char16_t unit) noexcept;
    static bool is_punctuation(char16_t unit) noexcept;
    static bool is_control(char16_t unit) noexcept;

    static char16_t to_lower(char16_t unit) noexcept;
    static char16_t to_upper(char16_t unit) noexcept;
    // The form in which units that differ in case only are the same (simple case folding).
    static char16_t fold_case(char16_t unit) noexcept;

    // Option of compare_string: case doesn't matter.
    static constexpr std::uint32_t CASE_INSENSITIVE = 1;
    // The result when there is no text to compare.
    static constexpr std::int32_t COMPARE_FAILED = 0x7FFFFFFF;

    // -1, 0 or 1 by the first unit that differs, a text that ends first coming first. `limit` cuts
    // both texts before; -1 is no limit. COMPARE_FAILED for a null text.
    static std::int32_t compare_string(const char16_t* a, const char16_t* b, std::int32_t limit,
                                       std::int32_t length_a = -1, std::int32_t length_b = -1,
                                       std::uint32_t options = 0) noexcept;

    // As the 8-bit forms: numbers are written in ASCII.
    static std::int32_t convert_to_s32(const char16_t* text, std::int32_t length = -1) noexcept;
    static std::int64_t convert_to_s64(const char16_t* text, std::int32_t length = -1) noexcept;
    static double convert_to_f64(const char16_t* text, std::int32_t length = -1);

    // Converts an 8-bit text in Mac Roman to units, at most `capacity` of them, without a
    // terminator. Yields the unit count. The ranges may not overlap.
    static std::int32_t to_unicode(const char* text, std::int32_t length, char16_t* units,
                                   std::int32_t capacity) noexcept;

    // The text in UTF-8, the encoding of the platform's file names. Pairs of surrogates become one
    // code point; a surrogate alone becomes U+FFFD.
    static std::string to_utf8(const char16_t* text, std::int32_t length = -1);
    // The reverse, at most `capacity` units, without a terminator; yields the unit count.
    // `capacity` of the text's length in bytes is always enough. Each byte that is no UTF-8 becomes
    // U+FFFD.
    static std::int32_t from_utf8(const char* text, std::int32_t length, char16_t* units,
                                  std::int32_t capacity) noexcept;
};

}  // namespace KVCORE

#endif  // KVCORE_TEXT_UTILITIES_LINUX_H
