// The facade of the character-level algorithms, over 8-bit and 16-bit text alike.
#ifndef KVCORE_TEXT_UTILITIES_H
#define KVCORE_TEXT_UTILITIES_H

#include <cstdarg>
#include <cstdint>

#include "kvcore/text_utilities_linux.h"
#include "kvcore/text_view.h"

namespace KVCORE {

// Four layers, each knowing those below: TEXT_UTILITIES_BASE (portable algorithms),
// TEXT_UTILITIES_LIBC (8-bit text by the C library), TEXT_UTILITIES_LINUX (16-bit text by Unicode)
// and this one, which puts the widths together. A TEXT_VIEW argument is a pointer, a STRING, or
// `{text, length}`.
//
// The language of formats is printf's: flags "-+ #0'", width and precision as numbers or "*", the
// sizes hh h l ll q j z t L, and the conversions d i o u x X c s C S p f F e E g G a A and %.
// "%s" and "%c" take 8-bit text, "%S", "%ls", "%C" and "%lc" 16-bit text; a null text shows as
// "(null)". "%n" takes its argument and writes nothing. What isn't a conversion stays as it stands.
// Widths, and precisions of numbers, go up to 65536, results up to STRING_BUFFER::MAX_LENGTH units.
// A size names the argument's type in C, so 32-bit numbers are printed through PRId32 and PRIu32.
class TEXT_UTILITIES : public TEXT_UTILITIES_LINUX {
public:
    // Formats into `out`, which has room for `size` units, cut so that the terminator fits. Yields
    // the length in `out`. An 8-bit `out` gets the low bytes.
    static std::int32_t format(char* out, std::int32_t size, const char* format, ...)
        __attribute__((format(printf, 3, 4)));
    static std::int32_t format(char16_t* out, std::int32_t size, const char* format, ...)
        __attribute__((format(printf, 3, 4)));
    static std::int32_t format(char* out, std::int32_t size, const char16_t* format, ...);
    static std::int32_t format(char16_t* out, std::int32_t size, const char16_t* format, ...);
    static std::int32_t format_arguments(char* out, std::int32_t size, TEXT_VIEW format,
                                         va_list arguments);
    static std::int32_t format_arguments(char16_t* out, std::int32_t size, TEXT_VIEW format,
                                         va_list arguments);

    // Formats into new text of the right size, which the caller frees with array delete. `length`
    // takes the unit count.
    static char* format_new_c8(std::int32_t& length, const char* format, ...)
        __attribute__((format(printf, 2, 3)));
    static char16_t* format_new(std::int32_t& length, const char* format, ...)
        __attribute__((format(printf, 2, 3)));
    static char16_t* format_new(std::int32_t& length, const char16_t* format, ...);
    static char16_t* format_new_arguments(std::int32_t& length, TEXT_VIEW format,
                                          va_list arguments);

    // Numbers at the front of a text, as TEXT_UTILITIES_LIBC tells.
    static std::int32_t convert_to_s32(TEXT_VIEW text) noexcept;
    static std::int64_t convert_to_s64(TEXT_VIEW text) noexcept;
    static double convert_to_f64(TEXT_VIEW text);
    // True if the number isn't 0, or if the text, in any case, is "yes", "true", "ok" or "on".
    static bool convert_to_bool8(TEXT_VIEW text) noexcept;

    // Digits, with one "-" only in first place and not alone.
    static bool is_decimal_value(TEXT_VIEW text) noexcept;
    // "0x" and then hexadecimal digits, at least one.
    static bool is_hexadecimal_value(TEXT_VIEW text) noexcept;
    // As decimal, with at most one ".", which may come first. At least one digit.
    static bool is_real_value(TEXT_VIEW text) noexcept;
    // A decimal value, or, in any case, "yes", "no", "true", "false", "ok", "on" or "off".
    static bool is_boolean_value(TEXT_VIEW text) noexcept;

    // Negative, 0 or positive. Two 8-bit texts compare by the C library's rules, others by
    // Unicode's.
    static int compare(TEXT_VIEW a, TEXT_VIEW b, CASE_MODE mode = CASE_MODE::SENSITIVE) noexcept;
    static bool equals(TEXT_VIEW a, TEXT_VIEW b) noexcept;
    // The first place of `pattern` at or behind `start`; the length of `text` if there is none.
    static std::int32_t find_string(TEXT_VIEW text, TEXT_VIEW pattern, std::int32_t start = 0,
                                    CASE_MODE mode = CASE_MODE::SENSITIVE) noexcept;

    // Copies units of either width to 16-bit units, without a terminator.
    static void widen_block(char16_t* to, TEXT_VIEW from) noexcept;
};

}  // namespace KVCORE

#endif  // KVCORE_TEXT_UTILITIES_H
