#include "kvcore/string.h"

#include <algorithm>
#include <cstdarg>

#include "kvcore/text_utilities.h"
#include "text_edit.h"
#include "text_formatter.h"

namespace KVCORE {

STRING::STRING(const REFERENCE_COUNTER<STRING_BUFFER>& shared) noexcept
    : pointer(shared ? shared->get_marker() : nullptr) {
    share();
}

void STRING::set(const char* text, std::int32_t length, COPY_MODE mode) {
    if (mode == COPY_MODE::COPY || !text || *text == STRING_BUFFER::MARKER) {
        set(TEXT_VIEW(text, length));
        return;
    }
    STRING borrowed;
    borrowed.pointer = text;
    borrowed.swap(*this);
}

void STRING::set(const char16_t* text, std::int32_t length) {
    set(TEXT_VIEW(text, length));
}

void STRING::set(TEXT_VIEW text) {
    if (text.is_empty()) {
        clear();
        return;
    }
    take(join_texts(text, TEXT_VIEW()));
}

void STRING::set(TEXT_CHARACTER unit) {
    // A new buffer in any case, also for the unit 0.
    take(join_texts(TEXT_VIEW(unit.address(), 1), TEXT_VIEW()));
}

void STRING::format(const char* format_text_8bit, ...) {
    va_list arguments;
    va_start(arguments, format_text_8bit);
    FORMAT_BUFFER out;
    format_text(out, format_text_8bit, arguments);
    va_end(arguments);
    set(out.get_text());
}

void STRING::format(const char16_t* format_text_16bit, ...) {
    va_list arguments;
    va_start(arguments, format_text_16bit);
    FORMAT_BUFFER out;
    format_text(out, format_text_16bit, arguments);
    va_end(arguments);
    set(out.get_text());
}

void STRING::format(const STRING* format_string, ...) {
    va_list arguments;
    va_start(arguments, format_string);
    FORMAT_BUFFER out;
    format_text(out, format_string ? TEXT_VIEW(*format_string) : TEXT_VIEW(), arguments);
    va_end(arguments);
    set(out.get_text());
}

STRING_BUFFER* STRING::copy_for_write() {
    if (!is_16bit() || buffer()->get_reference_count() > 1) {
        take(make_writeable_copy());
    }
    return buffer();
}

REFERENCE_COUNTER<STRING_BUFFER> STRING::make_writeable_copy() const {
    return join_texts(*this, TEXT_VIEW());
}

void STRING::set_char(std::int32_t index, TEXT_CHARACTER unit) {
    if (index >= 0 && index < get_length()) {
        copy_for_write()->get_text()[index] = unit;
    }
}

std::int32_t STRING::get_length() const noexcept {
    if (is_16bit()) {
        return buffer()->get_length();
    }
    return pointer ? static_cast<std::int32_t>(::strnlen(pointer, MAX_LENGTH)) : 0;
}

char16_t STRING::get_char(std::int32_t index) const noexcept {
    if (index < 0) {
        return 0;
    }
    if (is_16bit()) {
        return index < buffer()->get_length() ? buffer()->get_text()[index] : u'\0';
    }
    if (!pointer || ::strnlen(pointer, static_cast<std::size_t>(index) + 1) <=
                        static_cast<std::size_t>(index)) {
        return 0;
    }
    return static_cast<char16_t>(static_cast<signed char>(pointer[index]));
}

std::int32_t STRING::get_char_count(TEXT_CHARACTER unit) const noexcept {
    return TEXT_VIEW(*this).visit([&](const auto* text, std::int32_t length) {
        return static_cast<std::int32_t>(std::count_if(
            text, text + length, [&](auto u) { return TEXT_UTILITIES::widen(u) == unit; }));
    });
}

std::int32_t STRING::leading_whitespace_count() const noexcept {
    return TEXT_VIEW(*this).visit([](const auto* text, std::int32_t length) {
        std::int32_t count = 0;
        while (count < length && TEXT_UTILITIES::is_whitespace(text[count])) {
            ++count;
        }
        return count;
    });
}

std::int32_t STRING::trailing_whitespace_count() const noexcept {
    return TEXT_VIEW(*this).visit([](const auto* text, std::int32_t length) {
        std::int32_t count = 0;
        while (count < length && TEXT_UTILITIES::is_whitespace(text[length - 1 - count])) {
            ++count;
        }
        return count;
    });
}

std::int32_t STRING::find_char(TEXT_CHARACTER unit, std::int32_t start) const noexcept {
    return TEXT_VIEW(*this).visit([&](const auto* text, std::int32_t length) {
        return TEXT_UTILITIES::find_char(text, length, unit, start);
    });
}

std::int32_t STRING::find_char_reverse(TEXT_CHARACTER unit, std::int32_t start) const noexcept {
    return TEXT_VIEW(*this).visit([&](const auto* text, std::int32_t length) {
        return TEXT_UTILITIES::find_char_reverse(text, length, unit, start);
    });
}

std::int32_t STRING::find_chars(TEXT_VIEW chars, std::int32_t start) const noexcept {
    return TEXT_VIEW(*this).visit([&](const auto* text, std::int32_t length) {
        return chars.visit([&](const auto* set_text, std::int32_t set_length) {
            return TEXT_UTILITIES::find_chars(text, length, set_text, set_length, start);
        });
    });
}

std::int32_t STRING::find_chars_reverse(TEXT_VIEW chars, std::int32_t start) const noexcept {
    return TEXT_VIEW(*this).visit([&](const auto* text, std::int32_t length) {
        return chars.visit([&](const auto* set_text, std::int32_t set_length) {
            return TEXT_UTILITIES::find_chars_reverse(text, length, set_text, set_length, start);
        });
    });
}

std::int32_t STRING::find_nth_char(TEXT_CHARACTER unit, std::int32_t nth,
                                   std::int32_t start) const noexcept {
    return TEXT_VIEW(*this).visit([&](const auto* text, std::int32_t length) {
        return TEXT_UTILITIES::find_nth_char(text, length, unit, nth, start);
    });
}

std::int32_t STRING::find_nth_char_reverse(TEXT_CHARACTER unit, std::int32_t nth,
                                           std::int32_t start) const noexcept {
    return TEXT_VIEW(*this).visit([&](const auto* text, std::int32_t length) {
        return TEXT_UTILITIES::find_nth_char_reverse(text, length, unit, nth, start);
    });
}

std::int32_t STRING::skip_chars(TEXT_VIEW chars, std::int32_t start) const noexcept {
    return TEXT_VIEW(*this).visit([&](const auto* text, std::int32_t length) {
        return chars.visit([&](const auto* set_text, std::int32_t set_length) {
            return TEXT_UTILITIES::skip_chars(text, length, set_text, set_length, start);
        });
    });
}

std::int32_t STRING::skip_chars_reverse(TEXT_VIEW chars, std::int32_t start) const noexcept {
    return TEXT_VIEW(*this).visit([&](const auto* text, std::int32_t length) {
        return chars.visit([&](const auto* set_text, std::int32_t set_length) {
            return TEXT_UTILITIES::skip_chars_reverse(text, length, set_text, set_length, start);
        });
    });
}

std::int32_t STRING::find_string(TEXT_VIEW text, std::int32_t start,
                                 CASE_MODE mode) const noexcept {
    return TEXT_UTILITIES::find_string(*this, text, start, mode);
}

bool STRING::contains(TEXT_VIEW text, CASE_MODE mode) const noexcept {
    const TEXT_VIEW own = *this;
    return TEXT_UTILITIES::find_string(own, text, 0, mode) < own.get_length();
}

bool STRING::equals(const STRING& other) const noexcept {
    if (pointer == other.pointer) {
        return true;
    }
    if (is_16bit() && other.is_16bit()) {
        const std::int32_t length = buffer()->get_length();
        return length == other.buffer()->get_length() &&
               TEXT_UTILITIES::is_equal_sensitive(buffer()->get_text(), other.buffer()->get_text(),
                                                  length);
    }
    if (is_8bit() && other.is_8bit()) {
        return TEXT_UTILITIES::is_equal_zero_terminated_sensitive(pointer, other.pointer);
    }
    return TEXT_UTILITIES::equals(*this, other);
}

bool STRING::equals(const char* text, std::int32_t length) const noexcept {
    return TEXT_UTILITIES::equals(*this, TEXT_VIEW(text, length));
}

bool STRING::equals(const char16_t* text, std::int32_t length) const noexcept {
    return TEXT_UTILITIES::equals(*this, TEXT_VIEW(text, length));
}

int STRING::compare(TEXT_VIEW text, CASE_MODE mode) const noexcept {
    return TEXT_UTILITIES::compare(*this, text, mode);
}

std::int32_t STRING::get_value() const {
    return TEXT_UTILITIES::convert_to_s32(*this);
}
std::int64_t STRING::get_big_value() const {
    return TEXT_UTILITIES::convert_to_s64(*this);
}
double STRING::get_real_value() const {
    return TEXT_UTILITIES::convert_to_f64(*this);
}
bool STRING::get_boolean_value() const {
    return TEXT_UTILITIES::convert_to_bool8(*this);
}
bool STRING::is_decimal_value() const noexcept {
    return TEXT_UTILITIES::is_decimal_value(*this);
}
bool STRING::is_hexadecimal_value() const noexcept {
    return TEXT_UTILITIES::is_hexadecimal_value(*this);
}
bool STRING::is_real_value() const noexcept {
    return TEXT_UTILITIES::is_real_value(*this);
}
bool STRING::is_boolean_value() const noexcept {
    return TEXT_UTILITIES::is_boolean_value(*this);
}

std::uint32_t STRING::get_hash() const noexcept {
    return TEXT_VIEW(*this).visit([](const auto* text, std::int32_t length) {
        return TEXT_UTILITIES::get_hash(text, length);
    });
}

STRING::STRING_PROXY::STRING_PROXY(const STRING& string) noexcept
    : buffer(string.is_16bit() ? string.buffer() : nullptr),
      text_8bit(string.is_8bit() ? string.pointer : nullptr) {
}

STRING::STRING_PROXY::STRING_PROXY(STRING_PROXY&& other) noexcept
    : buffer(std::move(other.buffer)),
      text_8bit(std::exchange(other.text_8bit, nullptr)),
      owns_8bit(std::exchange(other.owns_8bit, false)) {
}

STRING::STRING_PROXY::~STRING_PROXY() {
    if (owns_8bit) {
        delete[] text_8bit;
    }
}

const char* STRING::STRING_PROXY::as_c8() {
    if (!text_8bit && buffer) {
        const std::int32_t length = buffer->get_length();
        char* const narrowed = new char[static_cast<std::size_t>(length) + 1];
        TEXT_UTILITIES::copy(narrowed, buffer->get_text(), length);
        text_8bit = narrowed;
        owns_8bit = true;
    }
    return text_8bit ? text_8bit : "";
}

const char16_t* STRING::STRING_PROXY::as_c16() {
    if (!buffer && text_8bit) {
        buffer = join_texts(TEXT_VIEW(text_8bit), TEXT_VIEW());
    }
    return buffer ? buffer->get_text() : u"";
}

}  // namespace KVCORE
