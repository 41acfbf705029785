#include "kvcore/text_utilities.h"

#include <algorithm>

#include "text_formatter.h"

namespace KVCORE {
namespace {

// Copies what was formatted into a field of `size` units, cut and terminated.
template <TEXT_UNIT C>
std::int32_t format_into(C* out, std::int32_t size, TEXT_VIEW format, va_list arguments) {
    if (size <= 0) {
        return 0;
    }
    FORMAT_BUFFER text;
    format_text(text, format, arguments);
    return text.get_text().get_part(0, size - 1).visit([&](const auto* from, std::int32_t length) {
        return TEXT_UTILITIES_BASE::copy(out, from, length);
    });
}

template <TEXT_UNIT C>
C* format_into_new(std::int32_t& length, TEXT_VIEW format, va_list arguments) {
    FORMAT_BUFFER text;
    format_text(text, format, arguments);
    length = text.get_text().get_length();
    C* const out = new C[static_cast<std::size_t>(length) + 1];
    text.get_text().visit(
        [&](const auto* from, std::int32_t count) { TEXT_UTILITIES_BASE::copy(out, from, count); });
    return out;
}

// Whether the text is the word in any case; the word is in lower case.
bool is_word(TEXT_VIEW text, const char* word) noexcept {
    return TEXT_UTILITIES::compare(text, word, CASE_MODE::INSENSITIVE) == 0;
}

template <typename... WORDS>
bool is_any_word(TEXT_VIEW text, WORDS... words) noexcept {
    return (is_word(text, words) || ...);
}

// An optional "-" and digits, of which there is at least one, with up to `points` decimal points.
bool is_number(TEXT_VIEW text, int points) noexcept {
    return text.visit([&](const auto* units, std::int32_t length) {
        int digits = 0;
        for (std::int32_t i = 0; i < length; ++i) {
            const char16_t unit = TEXT_UTILITIES::widen(units[i]);
            if (unit >= u'0' && unit <= u'9') {
                digits = 1;
            } else if (unit == u'.' && points > 0) {
                --points;
            } else if (unit != u'-' || i != 0) {
                return false;
            }
        }
        return digits != 0;
    });
}

// Calls `function(fold, a, b)` with both texts and the mapping that makes cases equal for them.
template <typename FUNCTION>
auto visit_folded(TEXT_VIEW a, TEXT_VIEW b, FUNCTION&& function) {
    return a.visit([&](const auto* text_a, std::int32_t) {
        return b.visit([&](const auto* text_b, std::int32_t) {
            if constexpr (sizeof(*text_a) == 1 && sizeof(*text_b) == 1) {
                return function(
                    [](char unit) { return TEXT_UTILITIES::widen(TEXT_UTILITIES::to_lower(unit)); },
                    text_a, text_b);
            } else {
                return function(
                    [](auto unit) {
                        return TEXT_UTILITIES::fold_case(TEXT_UTILITIES::widen(unit));
                    },
                    text_a, text_b);
            }
        });
    });
}

}  // namespace

// The rest of an operation with arguments behind `last`: calls, ends the argument list, returns.
#define KVCORE_FORWARD_ARGUMENTS(last, call) \
    va_list arguments;                       \
    va_start(arguments, last);               \
    const auto result = call;                \
    va_end(arguments);                       \
    return result

std::int32_t TEXT_UTILITIES::format(char* out, std::int32_t size, const char* format, ...) {
    KVCORE_FORWARD_ARGUMENTS(format, format_into(out, size, format, arguments));
}
std::int32_t TEXT_UTILITIES::format(char16_t* out, std::int32_t size, const char* format, ...) {
    KVCORE_FORWARD_ARGUMENTS(format, format_into(out, size, format, arguments));
}
std::int32_t TEXT_UTILITIES::format(char* out, std::int32_t size, const char16_t* format, ...) {
    KVCORE_FORWARD_ARGUMENTS(format, format_into(out, size, format, arguments));
}
std::int32_t TEXT_UTILITIES::format(char16_t* out, std::int32_t size, const char16_t* format, ...) {
    KVCORE_FORWARD_ARGUMENTS(format, format_into(out, size, format, arguments));
}
std::int32_t TEXT_UTILITIES::format_arguments(char* out, std::int32_t size, TEXT_VIEW format,
                                              va_list arguments) {
    return format_into(out, size, format, arguments);
}
std::int32_t TEXT_UTILITIES::format_arguments(char16_t* out, std::int32_t size, TEXT_VIEW format,
                                              va_list arguments) {
    return format_into(out, size, format, arguments);
}

char* TEXT_UTILITIES::format_new_c8(std::int32_t& length, const char* format, ...) {
    KVCORE_FORWARD_ARGUMENTS(format, format_into_new<char>(length, format, arguments));
}
char16_t* TEXT_UTILITIES::format_new(std::int32_t& length, const char* format, ...) {
    KVCORE_FORWARD_ARGUMENTS(format, format_into_new<char16_t>(length, format, arguments));
}
char16_t* TEXT_UTILITIES::format_new(std::int32_t& length, const char16_t* format, ...) {
    KVCORE_FORWARD_ARGUMENTS(format, format_into_new<char16_t>(length, format, arguments));
}
char16_t* TEXT_UTILITIES::format_new_arguments(std::int32_t& length, TEXT_VIEW format,
                                               va_list arguments) {
    return format_into_new<char16_t>(length, format, arguments);
}

#undef KVCORE_FORWARD_ARGUMENTS

std::int32_t TEXT_UTILITIES::convert_to_s32(TEXT_VIEW text) noexcept {
    return text.visit([](const auto* units, std::int32_t length) {
        return TEXT_UTILITIES_LINUX::convert_to_s32(units, length);
    });
}

std::int64_t TEXT_UTILITIES::convert_to_s64(TEXT_VIEW text) noexcept {
    return text.visit([](const auto* units, std::int32_t length) {
        return TEXT_UTILITIES_LINUX::convert_to_s64(units, length);
    });
}

double TEXT_UTILITIES::convert_to_f64(TEXT_VIEW text) {
    return text.visit([](const auto* units, std::int32_t length) {
        return TEXT_UTILITIES_LINUX::convert_to_f64(units, length);
    });
}

bool TEXT_UTILITIES::convert_to_bool8(TEXT_VIEW text) noexcept {
    return convert_to_s32(text) != 0 || is_any_word(text, "yes", "true", "ok", "on");
}

bool TEXT_UTILITIES::is_decimal_value(TEXT_VIEW text) noexcept {
    return is_number(text, 0);
}

bool TEXT_UTILITIES::is_hexadecimal_value(TEXT_VIEW text) noexcept {
    return text.visit([](const auto* units, std::int32_t length) {
        return length >= 3 && has_hexadecimal_prefix(units, length) &&
               find_if(units, length, 2,
                       [](char16_t unit) { return get_hexadecimal_digit(unit) < 0; }) == length;
    });
}

bool TEXT_UTILITIES::is_real_value(TEXT_VIEW text) noexcept {
    return is_number(text, 1);
}

bool TEXT_UTILITIES::is_boolean_value(TEXT_VIEW text) noexcept {
    return is_decimal_value(text) ||
           is_any_word(text, "yes", "no", "true", "false", "ok", "on", "off");
}

int TEXT_UTILITIES::compare(TEXT_VIEW a, TEXT_VIEW b, CASE_MODE mode) noexcept {
    const std::int32_t length_a = a.get_length();
    const std::int32_t length_b = b.get_length();
    return a.visit([&](const auto* text_a, std::int32_t) {
        return b.visit([&](const auto* text_b, std::int32_t) -> int {
            constexpr bool narrow_a = sizeof(*text_a) == 1;
            constexpr bool narrow_b = sizeof(*text_b) == 1;
            if constexpr (narrow_a && narrow_b) {
                return compare_text(text_a, text_b, length_a, length_b, mode);
            } else if constexpr (!narrow_a && !narrow_b) {
                return compare_string(text_a, text_b, -1, length_a, length_b,
                                      mode == CASE_MODE::SENSITIVE ? 0 : CASE_INSENSITIVE);
            } else {
                for (std::int32_t i = 0; i < std::min(length_a, length_b); ++i) {
                    const char16_t unit_a = widen(text_a[i]);
                    const char16_t unit_b = widen(text_b[i]);
                    const int order = mode == CASE_MODE::SENSITIVE
                                          ? unit_a - unit_b
                                          : fold_case(unit_a) - fold_case(unit_b);
                    if (order != 0) {
                        return order;
                    }
                }
                return length_a - length_b;
            }
        });
    });
}

bool TEXT_UTILITIES::equals(TEXT_VIEW a, TEXT_VIEW b) noexcept {
    if (a.get_length() != b.get_length()) {
        return false;
    }
    return a.is_same(b) || a.visit([&](const auto* text_a, std::int32_t length) {
        return b.visit([&](const auto* text_b, std::int32_t) {
            return is_equal_sensitive(text_a, text_b, length);
        });
    });
}

std::int32_t TEXT_UTILITIES::find_string(TEXT_VIEW text, TEXT_VIEW pattern, std::int32_t start,
                                         CASE_MODE mode) noexcept {
    const std::int32_t length = text.get_length();
    const std::int32_t pattern_length = pattern.get_length();
    if (pattern_length == 0 || pattern_length > length) {
        return length;
    }
    if (mode == CASE_MODE::SENSITIVE) {
        return text.visit([&](const auto* units, std::int32_t) {
            return pattern.visit([&](const auto* pattern_units, std::int32_t) {
                return find_text(units, length, pattern_units, pattern_length, start);
            });
        });
    }
    return visit_folded(text, pattern, [&](auto fold, const auto* units, const auto* wanted) {
        const auto same = [&](auto a, auto b) { return fold(a) == fold(b); };
        for (std::int32_t i = std::max(start, 0); i <= length - pattern_length; ++i) {
            if (std::equal(wanted, wanted + pattern_length, units + i, same)) {
                return i;
            }
        }
        return length;
    });
}

void TEXT_UTILITIES::widen_block(char16_t* to, TEXT_VIEW from) noexcept {
    from.visit([&](const auto* units, std::int32_t length) { move_block(to, units, length); });
}

}  // namespace KVCORE
