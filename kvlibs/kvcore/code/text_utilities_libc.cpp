#include "kvcore/text_utilities_libc.h"

#include <algorithm>
#include <cstdlib>
#include <limits>
#include <string>

#include "c_locale.h"

namespace KVCORE {
namespace {

// strtol for a text with a length: base 10, and the limits of T for what is out of range.
template <typename T>
T convert_decimal(const char* text, std::int32_t length) noexcept {
    std::int32_t i = 0;
    while (i < length && TEXT_UTILITIES_LIBC::is_whitespace(text[i])) {
        ++i;
    }
    bool negative = false;
    if (i < length && (text[i] == '-' || text[i] == '+')) {
        negative = text[i] == '-';
        ++i;
    }
    // Counted downwards, since the lower limit lies farther from 0.
    constexpr T lowest = std::numeric_limits<T>::min();
    T value = 0;
    for (; i < length && TEXT_UTILITIES_LIBC::is_digit(text[i]); ++i) {
        const T digit = static_cast<T>(text[i] - '0');
        if (value < (lowest + digit) / 10) {
            return negative ? lowest : std::numeric_limits<T>::max();
        }
        value = static_cast<T>(value * 10 - digit);
    }
    if (negative) {
        return value;
    }
    return value == lowest ? std::numeric_limits<T>::max() : static_cast<T>(-value);
}

}  // namespace

std::int32_t TEXT_UTILITIES_LIBC::convert_to_s32(const char* text, std::int32_t length) noexcept {
    length = resolve_length(text, length);
    if (has_hexadecimal_prefix(text, length)) {
        return static_cast<std::int32_t>(
            static_cast<std::uint32_t>(convert_hexadecimal_to_number(text, length)));
    }
    return convert_decimal<std::int32_t>(text, length);
}

std::int64_t TEXT_UTILITIES_LIBC::convert_to_s64(const char* text, std::int32_t length) noexcept {
    length = resolve_length(text, length);
    if (has_hexadecimal_prefix(text, length)) {
        return static_cast<std::int64_t>(convert_hexadecimal_to_number(text, length));
    }
    return convert_decimal<std::int64_t>(text, length);
}

double TEXT_UTILITIES_LIBC::convert_to_f64(const char* text, std::int32_t length) {
    length = resolve_length(text, length);
    if (length == 0) {
        return 0;
    }
    if (has_hexadecimal_prefix(text, length)) {
        return static_cast<double>(convert_hexadecimal_to_number(text, length));
    }
    const std::string terminated(text, static_cast<std::size_t>(length));
    return ::strtod_l(terminated.c_str(), nullptr, get_c_locale());
}

int TEXT_UTILITIES_LIBC::compare_text(const char* a, const char* b, std::int32_t length_a,
                                      std::int32_t length_b, CASE_MODE mode) noexcept {
    length_a = resolve_length(a, length_a);
    length_b = resolve_length(b, length_b);
    const std::int32_t shared = std::min(length_a, length_b);
    if (mode == CASE_MODE::SENSITIVE) {
        const int order = shared == 0 ? 0 : std::memcmp(a, b, static_cast<std::size_t>(shared));
        return order != 0 ? order : length_a - length_b;
    }
    for (std::int32_t i = 0; i < shared; ++i) {
        const int order = widen(to_lower(a[i])) - widen(to_lower(b[i]));
        if (order != 0) {
            return order;
        }
    }
    return length_a - length_b;
}

}  // namespace KVCORE
