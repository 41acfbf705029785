#include "kvmigration/string.h"

#include <algorithm>
#include <cctype>
#include <charconv>
#include <cstdarg>
#include <cstdio>
#include <limits>

#include "kvcore/string_buffer.h"
#include "kvcore/text_utilities.h"
#include "whole_file.h"

namespace KVMIGRATION {
namespace {

bool is_digit(char c) {
    return c >= '0' && c <= '9';
}

const char* skip_to_digit(const std::string& text) {
    return std::find_if(text.data(), text.data() + text.size(), is_digit);
}

// An index as callers know it; what is out of their reach counts as not found.
std::int32_t to_index(std::size_t position) {
    constexpr std::size_t limit = std::numeric_limits<std::int32_t>::max();
    return position <= limit ? static_cast<std::int32_t>(position) : -1;
}

bool is_hexadecimal_digit(char c) {
    return std::isxdigit(static_cast<unsigned char>(c)) != 0;
}

// What stands behind "0x" in C's notation for reals. Other things that from_chars takes, a sign or
// a word such as "nan", are no part of it.
double read_hexadecimal(const char* text, const char* end) {
    const char* const digit = text != end && *text == '.' ? text + 1 : text;
    double value = 0.0;
    if (digit == end || !is_hexadecimal_digit(*digit)) {
        return value;
    }
    const auto result = std::from_chars(text, end, value, std::chars_format::hex);
    const bool is_beyond = result.ec == std::errc::result_out_of_range;
    const bool is_small = std::string_view(text, result.ptr).find('-') != std::string_view::npos;
    return is_beyond && !is_small ? std::numeric_limits<double>::infinity() : value;
}

// The number at a decimal digit, as the C library reads it in its own locale.
double read_real(const char* text, const char* end) {
    if (end - text > 2 && text[0] == '0' && (text[1] == 'x' || text[1] == 'X')) {
        return read_hexadecimal(text + 2, end);
    }
    double value = 0.0;
    const auto result = std::from_chars(text, end, value);
    if (result.ec == std::errc::result_out_of_range) {
        // Too large or too small: the slower way tells which.
        value = KVCORE::TEXT_UTILITIES::convert_to_f64(
            {text, KVCORE::STRING_BUFFER::clamp_length(result.ptr - text)});
    }
    return value;
}

char to_upper_char(char c) {
    return static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
}

char to_lower_char(char c) {
    return static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
}

}  // namespace

std::int32_t STRING::find_string(const char* text, bool from_end) const {
    if (!text) {
        text = "";
    }
    return to_index(from_end ? rfind(text) : find(text));
}

STRING STRING::get_substring(std::int32_t first, std::int32_t last) const {
    const auto from = static_cast<std::size_t>(std::max(first, 0));
    if (last < 0 || last < first || from >= size()) {
        return STRING();
    }
    return STRING(data() + from, std::min(size(), static_cast<std::size_t>(last) + 1) - from);
}

std::int32_t STRING::get_value() const {
    const char* const text = skip_to_digit(*this);
    std::int32_t value = 0;
    if (std::from_chars(text, data() + size(), value).ec == std::errc::result_out_of_range) {
        value = std::numeric_limits<std::int32_t>::max();
    }
    return value;
}

float STRING::get_real_value() const {
    // The nearest float, which far beyond their range is infinity.
    static_assert(std::numeric_limits<float>::is_iec559);
    return static_cast<float>(read_real(skip_to_digit(*this), data() + size()));
}

bool STRING::load(const char* path) {
    // The zero behind the bytes makes the text one longer, and all indices have to stay in reach.
    STRING bytes;
    if (!read_whole_file(path, bytes)) {
        return false;
    }
    bytes.push_back('\0');
    swap(bytes);
    return true;
}

bool STRING::write(const STRING& path) const {
    return write_whole_file(path.c_str(), data(), size());
}

bool STRING::parse_array(STRING& name, STRING& index) const {
    const std::size_t open = find('[');
    const std::size_t close = find(']');
    if (open == npos || close == npos || close < open) {
        return false;
    }
    // The outputs may be this very text.
    STRING found_name(data(), open);
    STRING found_index(data() + open + 1, close - open - 1);
    name.swap(found_name);
    index.swap(found_index);
    return true;
}

STRING join_text(std::string_view a, std::string_view b) {
    STRING text;
    text.reserve(a.size() + b.size());
    text.append(a).append(b);
    return text;
}

STRING tolower(const std::string& text) {
    STRING result(text);
    std::transform(result.begin(), result.end(), result.begin(), to_lower_char);
    return result;
}

STRING toupper(const std::string& text) {
    STRING result(text);
    std::transform(result.begin(), result.end(), result.begin(), to_upper_char);
    return result;
}

STRING sprintf_to_string(const char* format, ...) {
    char buffer[1024];
    va_list arguments;
    va_start(arguments, format);
    const int length = std::vsnprintf(buffer, sizeof buffer, format, arguments);
    va_end(arguments);
    return length < 0 ? STRING() : STRING(buffer);
}

std::int32_t get_string_index(const char* const* table, std::int32_t count, const STRING& text) {
    const STRING wanted = toupper(text);
    for (std::int32_t i = 0; i < count; ++i) {
        if (table[i] && wanted == toupper(table[i])) {
            return i;
        }
    }
    return -1;
}

std::int32_t compare_paths(const STRING& a, const STRING& b) {
    const auto plain = [](char c) { return c == '\\' ? '/' : to_lower_char(c); };
    std::size_t start = 0;
    std::size_t matched = 0;
    for (std::size_t i = 0; i < a.size(); ++i) {
        if (matched < b.size()) {
            if (plain(a[i]) == plain(b[matched])) {
                ++matched;
            } else {
                start = i + 1;
                matched = 0;
            }
        }
        if (matched == b.size()) {
            return to_index(start);
        }
    }
    return -1;
}

}  // namespace KVMIGRATION
