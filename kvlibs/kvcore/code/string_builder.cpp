#include "kvcore/string_builder.h"

#include <algorithm>
#include <utility>

#include "kvcore/text_utilities.h"
#include "text_edit.h"
#include "text_formatter.h"

namespace KVCORE {

STRING_BUILDER::STRING_BUILDER(std::int32_t capacity)
    : buffer(STRING_BUFFER::create(std::max(capacity, 1))) {
}

STRING_BUILDER::STRING_BUILDER(const STRING& text, std::int32_t capacity) {
    const TEXT_VIEW view = text;
    const std::int32_t needed = view.get_length();
    buffer =
        STRING_BUFFER::create(needed > capacity ? STRING_BUFFER::clamp_length(needed + GROW_STEP)
                                                : std::max(capacity, 1));
    TEXT_UTILITIES::widen_block(buffer->get_text(), view);
    length = needed;
}

STRING_BUILDER::STRING_BUILDER(STRING_BUILDER&& other) noexcept
    : buffer(std::move(other.buffer)), length(std::exchange(other.length, 0)) {
}

std::int32_t STRING_BUILDER::get_length_with(std::int64_t count) const noexcept {
    return STRING_BUFFER::clamp_length(length + count);
}

bool STRING_BUILDER::has_own_room(std::int32_t count) const noexcept {
    return buffer && get_length_with(count) <= buffer->get_length() &&
           buffer->get_reference_count() == 1;
}

void STRING_BUILDER::check_additional_capacity(std::int64_t count) {
    if (!buffer) {
        buffer =
            STRING_BUFFER::create(STRING_BUFFER::clamp_length(std::max<std::int64_t>(count, 1)));
        length = 0;
        return;
    }
    const std::int32_t capacity = buffer->get_length();
    const std::int32_t needed = get_length_with(count);
    if (needed <= capacity) {
        make_own();
        return;
    }
    const std::int32_t step = capacity + GROW_STEP;
    set_capacity(STRING_BUFFER::clamp_length(needed > step ? needed + GROW_STEP : step));
}

void STRING_BUILDER::make_own() {
    if (buffer && buffer->get_reference_count() > 1) {
        set_capacity(buffer->get_length());
    }
}

void STRING_BUILDER::set_capacity(std::int32_t capacity) {
    if (capacity < 1) {
        return;
    }
    const REFERENCE_COUNTER<STRING_BUFFER> fresh = STRING_BUFFER::create(capacity);
    length = std::min(length, fresh->get_length());
    if (buffer) {
        TEXT_UTILITIES::move_block(fresh->get_text(), buffer->get_text(), length);
    }
    buffer = fresh;
}

STRING_BUILDER& STRING_BUILDER::append(TEXT_VIEW text) {
    REFERENCE_COUNTER<STRING_BUFFER> previous;
    if (!has_own_room(text.get_length())) {
        // Held, since the text may be part of it.
        previous = buffer;
        check_additional_capacity(text.get_length());
    }
    const TEXT_VIEW part = text.get_part(0, get_capacity() - length);
    TEXT_UTILITIES::widen_block(buffer->get_text() + length, part);
    length += part.get_length();
    return *this;
}

STRING_BUILDER& STRING_BUILDER::append(TEXT_CHARACTER unit) {
    return append(TEXT_VIEW(unit.address(), 1));
}

STRING_BUILDER& STRING_BUILDER::append_format(const char* format, ...) {
    va_list arguments;
    va_start(arguments, format);
    append_format_arguments(format, arguments);
    va_end(arguments);
    return *this;
}

STRING_BUILDER& STRING_BUILDER::append_format(const char16_t* format, ...) {
    va_list arguments;
    va_start(arguments, format);
    append_format_arguments(format, arguments);
    va_end(arguments);
    return *this;
}

STRING_BUILDER& STRING_BUILDER::append_format_arguments(TEXT_VIEW format, va_list arguments) {
    FORMAT_BUFFER out;
    format_text(out, format, arguments);
    return append(out.get_text());
}

void STRING_BUILDER::insert(std::int32_t index, TEXT_VIEW text) {
    check_additional_capacity(text.get_length());
    index = std::clamp(index, 0, length);
    const TEXT_VIEW part = text.get_part(0, get_capacity() - index);
    const std::int32_t gap = part.get_length();
    // Behind the longest text the end falls off.
    const std::int32_t tail = std::min(length - index, get_capacity() - index - gap);
    char16_t* const place = buffer->get_text() + index;
    TEXT_UTILITIES::move_block(place + gap, place, tail);
    TEXT_UTILITIES::widen_block(place, part);
    length = index + gap + tail;
}

void STRING_BUILDER::insert(std::int32_t index, TEXT_CHARACTER unit) {
    insert(index, TEXT_VIEW(unit.address(), 1));
}

void STRING_BUILDER::delete_char(std::int32_t index) {
    if (index >= 0 && index < length) {
        delete_chars(index, index);
    }
}

void STRING_BUILDER::delete_chars(std::int32_t first, std::int32_t last) {
    const TEXT_RANGE range = clamp_deletion(length, first, last);
    if (range.count == 0) {
        return;
    }
    make_own();
    char16_t* const place = buffer->get_text() + range.first;
    TEXT_UTILITIES::move_block(place, place + range.count, length - range.first - range.count);
    length -= range.count;
}

void STRING_BUILDER::replace_string(TEXT_VIEW from, TEXT_VIEW to, CASE_MODE mode) {
    const REFERENCE_COUNTER<STRING_BUFFER> replaced = replace_text(*this, from, to, mode);
    if (!replaced) {
        return;
    }
    length = 0;
    append(TEXT_VIEW(replaced->get_text(), replaced->get_length()));
}

char16_t STRING_BUILDER::get_char(std::int32_t index) const noexcept {
    return index >= 0 && index < length ? buffer->get_text()[index] : u'\0';
}

void STRING_BUILDER::set_char(std::int32_t index, TEXT_CHARACTER unit) {
    if (index >= 0 && index < length) {
        make_own();
        buffer->get_text()[index] = unit;
    }
}

void STRING_BUILDER::clear() {
    buffer = STRING_BUFFER::create(GROW_STEP);
    length = 0;
}

STRING STRING_BUILDER::create_string(COPY_MODE mode) {
    if (length == 0) {
        return STRING();
    }
    if (mode == COPY_MODE::COPY) {
        return STRING(TEXT_VIEW(*this));
    }
    if (buffer->get_length() != length) {
        make_own();
        buffer->set_length(length);
        buffer->get_text()[length] = 0;
    }
    return STRING(buffer);
}

}  // namespace KVCORE
