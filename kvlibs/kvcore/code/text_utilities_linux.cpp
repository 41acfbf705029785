#include "kvcore/text_utilities_linux.h"

#include <algorithm>
#include <span>

#include "unicode_tables.h"

namespace KVCORE {
namespace {

// The run that a unit belongs to, null if there is none.
template <typename RANGE>
const RANGE* find_range(std::span<const RANGE> ranges, char16_t unit) noexcept {
    const auto range = std::lower_bound(ranges.begin(), ranges.end(), unit,
                                        [](const RANGE& r, char16_t u) { return r.last < u; });
    const bool inside =
        range != ranges.end() && unit >= range->first && (unit - range->first) % range->stride == 0;
    return inside ? &*range : nullptr;
}

char16_t map_unit(std::span<const UNICODE::CASE_RANGE> ranges, char16_t unit) noexcept {
    const UNICODE::CASE_RANGE* const range = find_range(ranges, unit);
    return range ? static_cast<char16_t>(unit + range->difference) : unit;
}

bool is_ascii(char16_t unit) noexcept {
    return unit < 0x80;
}

// The upper half of Mac Roman, in its current form with the euro sign.
constexpr char16_t MAC_ROMAN[] =
    u"\u00C4\u00C5\u00C7\u00C9\u00D1\u00D6\u00DC\u00E1\u00E0\u00E2\u00E4\u00E3\u00E5\u00E7\u00E9"
    u"\u00E8"
    u"\u00EA\u00EB\u00ED\u00EC\u00EE\u00EF\u00F1\u00F3\u00F2\u00F4\u00F6\u00F5\u00FA\u00F9\u00FB"
    u"\u00FC"
    u"\u2020\u00B0\u00A2\u00A3\u00A7\u2022\u00B6\u00DF\u00AE\u00A9\u2122\u00B4\u00A8\u2260\u00C6"
    u"\u00D8"
    u"\u221E\u00B1\u2264\u2265\u00A5\u00B5\u2202\u2211\u220F\u03C0\u222B\u00AA\u00BA\u03A9\u00E6"
    u"\u00F8"
    u"\u00BF\u00A1\u00AC\u221A\u0192\u2248\u2206\u00AB\u00BB\u2026\u00A0\u00C0\u00C3\u00D5\u0152"
    u"\u0153"
    u"\u2013\u2014\u201C\u201D\u2018\u2019\u00F7\u25CA\u00FF\u0178\u2044\u20AC\u2039\u203A\uFB01"
    u"\uFB02"
    u"\u2021\u00B7\u201A\u201E\u2030\u00C2\u00CA\u00C1\u00CB\u00C8\u00CD\u00CE\u00CF\u00CC\u00D3"
    u"\u00D4"
    u"\uF8FF\u00D2\u00DA\u00DB\u00D9\u0131\u02C6\u02DC\u00AF\u02D8\u02D9\u02DA\u00B8\u02DD\u02DB"
    u"\u02C7";
static_assert(sizeof MAC_ROMAN == 129 * sizeof(char16_t));

constexpr char16_t REPLACEMENT = 0xFFFD;

void append_code_point(std::string& out, std::uint32_t code) {
    const auto put = [&](std::uint32_t byte) { out.push_back(static_cast<char>(byte)); };
    if (code < 0x80) {
        put(code);
    } else if (code < 0x800) {
        put(0xC0 | (code >> 6));
        put(0x80 | (code & 0x3F));
    } else if (code < 0x10000) {
        put(0xE0 | (code >> 12));
        put(0x80 | ((code >> 6) & 0x3F));
        put(0x80 | (code & 0x3F));
    } else {
        put(0xF0 | (code >> 18));
        put(0x80 | ((code >> 12) & 0x3F));
        put(0x80 | ((code >> 6) & 0x3F));
        put(0x80 | (code & 0x3F));
    }
}

// The code point at the front of `bytes`, and its width in `width`; width 0 if there is no valid
// one. Refuses overlong forms and surrogates.
std::uint32_t read_code_point(const char* bytes, std::int32_t left, std::int32_t& width) noexcept {
    const auto byte = [&](std::int32_t i) -> std::uint32_t {
        return static_cast<unsigned char>(bytes[i]);
    };
    const std::uint32_t lead = byte(0);
    width = lead < 0x80   ? 1
            : lead < 0xC2 ? 0
            : lead < 0xE0 ? 2
            : lead < 0xF0 ? 3
            : lead < 0xF5 ? 4
                          : 0;
    if (width <= 1) {
        return lead;
    }
    if (width > left) {
        width = 0;
        return 0;
    }
    std::uint32_t code = lead & (0xFFu >> (width + 1));
    for (std::int32_t i = 1; i < width; ++i) {
        if ((byte(i) & 0xC0) != 0x80) {
            width = 0;
            return 0;
        }
        code = (code << 6) | (byte(i) & 0x3F);
    }
    const std::uint32_t smallest = width == 2 ? 0x80 : width == 3 ? 0x800 : 0x10000;
    if (code < smallest || code > 0x10FFFF || (code >= 0xD800 && code <= 0xDFFF)) {
        width = 0;
    }
    return code;
}

// ASCII text narrowed for the C library; a unit beyond it ends the number as it would there.
std::string narrow_number(const char16_t* text, std::int32_t length) {
    std::string narrow;
    for (std::int32_t i = 0; i < length && is_ascii(text[i]); ++i) {
        narrow.push_back(static_cast<char>(text[i]));
    }
    return narrow;
}

// The front of a number in units, for the conversions to integers: white space and leading zeros
// are not kept, so a fixed room holds every number that differs from the limits.
class NARROW_INTEGER {
public:
    NARROW_INTEGER(const char16_t* text, std::int32_t length) noexcept {
        std::int32_t i = 0;
        while (i < length && is_ascii(text[i]) &&
               TEXT_UTILITIES_LIBC::is_whitespace(static_cast<char>(text[i]))) {
            ++i;
        }
        if (i < length && (text[i] == u'-' || text[i] == u'+')) {
            digits[count++] = static_cast<char>(text[i++]);
        }
        while (i < length && text[i] == u'0') {
            ++i;
        }
        while (i < length && count < static_cast<std::int32_t>(sizeof digits) && text[i] >= u'0' &&
               text[i] <= u'9') {
            digits[count++] = static_cast<char>(text[i++]);
        }
    }
    const char* get_text() const noexcept { return digits; }
    std::int32_t get_length() const noexcept { return count; }

private:
    char digits[32];
    std::int32_t count = 0;
};

}  // namespace

bool TEXT_UTILITIES_LINUX::is_alphabetic(char16_t unit) noexcept {
    return find_range(UNICODE::ALPHABETIC, unit) != nullptr;
}
bool TEXT_UTILITIES_LINUX::is_digit(char16_t unit) noexcept {
    return find_range(UNICODE::DECIMAL_DIGIT, unit) != nullptr;
}
bool TEXT_UTILITIES_LINUX::is_upper(char16_t unit) noexcept {
    return find_range(UNICODE::UPPER_CASE, unit) != nullptr;
}
bool TEXT_UTILITIES_LINUX::is_lower(char16_t unit) noexcept {
    return find_range(UNICODE::LOWER_CASE, unit) != nullptr;
}
bool TEXT_UTILITIES_LINUX::is_alphanumeric(char16_t unit) noexcept {
    return is_alphabetic(unit) || is_digit(unit);
}
bool TEXT_UTILITIES_LINUX::is_whitespace(char16_t unit) noexcept {
    return is_ascii(unit) ? is_whitespace(static_cast<char>(unit))
                          : find_range(UNICODE::WHITE_SPACE, unit) != nullptr;
}
bool TEXT_UTILITIES_LINUX::is_punctuation(char16_t unit) noexcept {
    return find_range(UNICODE::PUNCTUATION, unit) != nullptr;
}
bool TEXT_UTILITIES_LINUX::is_control(char16_t unit) noexcept {
    return unit < 0x20 || (unit >= 0x7F && unit <= 0x9F);
}

char16_t TEXT_UTILITIES_LINUX::to_lower(char16_t unit) noexcept {
    return is_ascii(unit) ? widen(to_lower(static_cast<char>(unit)))
                          : map_unit(UNICODE::TO_LOWER, unit);
}
char16_t TEXT_UTILITIES_LINUX::to_upper(char16_t unit) noexcept {
    return is_ascii(unit) ? widen(to_upper(static_cast<char>(unit)))
                          : map_unit(UNICODE::TO_UPPER, unit);
}
char16_t TEXT_UTILITIES_LINUX::fold_case(char16_t unit) noexcept {
    return is_ascii(unit) ? widen(to_lower(static_cast<char>(unit)))
                          : map_unit(UNICODE::FOLD_CASE, unit);
}

std::int32_t TEXT_UTILITIES_LINUX::compare_string(const char16_t* a, const char16_t* b,
                                                  std::int32_t limit, std::int32_t length_a,
                                                  std::int32_t length_b,
                                                  std::uint32_t options) noexcept {
    if (!a || !b) {
        return COMPARE_FAILED;
    }
    length_a = resolve_length(a, length_a);
    length_b = resolve_length(b, length_b);
    if (limit >= 0) {
        length_a = std::min(length_a, limit);
        length_b = std::min(length_b, limit);
    }
    const bool fold = (options & CASE_INSENSITIVE) != 0;
    const std::int32_t shared = std::min(length_a, length_b);
    for (std::int32_t i = 0; i < shared; ++i) {
        if (a[i] == b[i]) {
            continue;
        }
        const char16_t unit_a = fold ? fold_case(a[i]) : a[i];
        const char16_t unit_b = fold ? fold_case(b[i]) : b[i];
        if (unit_a != unit_b) {
            return unit_a < unit_b ? -1 : 1;
        }
    }
    return length_a == length_b ? 0 : length_a < length_b ? -1 : 1;
}

std::int32_t TEXT_UTILITIES_LINUX::convert_to_s32(const char16_t* text,
                                                  std::int32_t length) noexcept {
    length = resolve_length(text, length);
    if (has_hexadecimal_prefix(text, length)) {
        return static_cast<std::int32_t>(
            static_cast<std::uint32_t>(convert_hexadecimal_to_number(text, length)));
    }
    const NARROW_INTEGER narrow(text, length);
    return convert_to_s32(narrow.get_text(), narrow.get_length());
}

std::int64_t TEXT_UTILITIES_LINUX::convert_to_s64(const char16_t* text,
                                                  std::int32_t length) noexcept {
    length = resolve_length(text, length);
    if (has_hexadecimal_prefix(text, length)) {
        return static_cast<std::int64_t>(convert_hexadecimal_to_number(text, length));
    }
    const NARROW_INTEGER narrow(text, length);
    return convert_to_s64(narrow.get_text(), narrow.get_length());
}

double TEXT_UTILITIES_LINUX::convert_to_f64(const char16_t* text, std::int32_t length) {
    const std::string narrow = narrow_number(text, resolve_length(text, length));
    return convert_to_f64(narrow.data(), static_cast<std::int32_t>(narrow.size()));
}

std::int32_t TEXT_UTILITIES_LINUX::to_unicode(const char* text, std::int32_t length,
                                              char16_t* units, std::int32_t capacity) noexcept {
    const std::int32_t count = std::clamp(resolve_length(text, length), 0, std::max(capacity, 0));
    for (std::int32_t i = 0; i < count; ++i) {
        const char16_t byte = widen(text[i]);
        units[i] = is_ascii(byte) ? byte : MAC_ROMAN[byte - 0x80];
    }
    return count;
}

std::string TEXT_UTILITIES_LINUX::to_utf8(const char16_t* text, std::int32_t length) {
    length = resolve_length(text, length);
    std::string out;
    out.reserve(static_cast<std::size_t>(length));
    for (std::int32_t i = 0; i < length; ++i) {
        std::uint32_t code = text[i];
        if ((code & 0xFC00) == 0xD800 && i + 1 < length && (text[i + 1] & 0xFC00) == 0xDC00) {
            ++i;
            code = 0x10000 + ((code & 0x3FF) << 10) + (text[i] & 0x3FFu);
        } else if ((code & 0xF800) == 0xD800) {
            code = REPLACEMENT;
        }
        append_code_point(out, code);
    }
    return out;
}

std::int32_t TEXT_UTILITIES_LINUX::from_utf8(const char* text, std::int32_t length, char16_t* units,
                                             std::int32_t capacity) noexcept {
    length = resolve_length(text, length);
    std::int32_t count = 0;
    for (std::int32_t i = 0; i < length && count < capacity;) {
        std::int32_t width = 0;
        const std::uint32_t code = read_code_point(text + i, length - i, width);
        if (width == 4) {
            if (count + 1 == capacity) {
                break;
            }
            units[count++] = static_cast<char16_t>(0xD800 + ((code - 0x10000) >> 10));
            units[count++] = static_cast<char16_t>(0xDC00 + (code & 0x3FF));
        } else {
            units[count++] = width == 0 ? REPLACEMENT : static_cast<char16_t>(code);
        }
        i += std::max(width, 1);
    }
    return count;
}

}  // namespace KVCORE
