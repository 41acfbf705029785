// The operations of STRING that change the text or yield a changed one.
#include <algorithm>
#include <functional>

#include "kvcore/string.h"
#include "kvcore/text_utilities.h"
#include "text_edit.h"

namespace KVCORE {
namespace {

// Whether the text lies within the units of the buffer.
bool lies_within(TEXT_VIEW text, const STRING_BUFFER& buffer) noexcept {
    return text.visit([&](const auto* units, std::int32_t) {
        const std::less<const void*> before;
        const char16_t* const first = buffer.get_text();
        return !before(units, first) && !before(first + buffer.get_length(), units);
    });
}

}  // namespace

void STRING::append(TEXT_VIEW text) {
    const bool own_buffer = is_16bit() && buffer()->get_reference_count() == 1;
    if (text.is_empty()) {
        return;
    }
    if (!own_buffer || lies_within(text, *buffer())) {
        take(join_texts(*this, text));
        return;
    }
    const std::int32_t length = buffer()->get_length();
    const std::int32_t grown =
        STRING_BUFFER::clamp_length(std::int64_t{length} + text.get_length());
    STRING_BUFFER* const resized = STRING_BUFFER::resize(buffer(), grown);
    TEXT_UTILITIES::widen_block(resized->get_text() + length, text.get_part(0, grown - length));
    pointer = resized->get_marker();
}

void STRING::append(TEXT_CHARACTER unit) {
    append(TEXT_VIEW(unit.address(), 1));
}

STRING STRING::add(TEXT_VIEW text) const {
    return text.is_empty() ? *this : STRING(join_texts(*this, text));
}

STRING STRING::add(TEXT_CHARACTER unit) const {
    return add(TEXT_VIEW(unit.address(), 1));
}

STRING STRING::insert(std::int32_t index, TEXT_VIEW text) const {
    if (text.is_empty()) {
        return *this;
    }
    const TEXT_VIEW own = *this;
    const std::int32_t length = own.get_length();
    index = std::clamp(index, 0, length);
    return STRING(join_texts(own.get_part(0, index), text, own.get_part(index, length - index)));
}

STRING STRING::insert(std::int32_t index, TEXT_CHARACTER unit) const {
    return insert(index, TEXT_VIEW(unit.address(), 1));
}

STRING STRING::delete_chars(std::int32_t first, std::int32_t last) const {
    const TEXT_VIEW own = *this;
    const TEXT_RANGE range = clamp_deletion(own.get_length(), first, last);
    if (range.count == own.get_length()) {
        return STRING();
    }
    const std::int32_t behind = range.first + range.count;
    return STRING(
        join_texts(own.get_part(0, range.first), own.get_part(behind, own.get_length() - behind)));
}

STRING STRING::delete_char(std::int32_t index) const {
    return index < 0 || index >= get_length() ? *this : delete_chars(index, index);
}

STRING STRING::delete_leading_whitespace() const {
    const std::int32_t count = leading_whitespace_count();
    return count == 0 ? *this : get_substring(count, MAX_LENGTH);
}

STRING STRING::delete_trailing_whitespace() const {
    const std::int32_t count = trailing_whitespace_count();
    return count == 0 ? *this : get_left(get_length() - count);
}

STRING STRING::delete_whitespace() const {
    return TEXT_VIEW(*this).visit([&](const auto* text, std::int32_t length) {
        const auto is_kept = [](auto unit) { return !TEXT_UTILITIES::is_whitespace(unit); };
        const auto kept = static_cast<std::int32_t>(std::count_if(text, text + length, is_kept));
        if (kept == length) {
            return *this;
        }
        if (kept == 0) {
            return STRING();
        }
        const REFERENCE_COUNTER<STRING_BUFFER> fresh = STRING_BUFFER::create(kept);
        char16_t* to = fresh->get_text();
        for (std::int32_t i = 0; i < length; ++i) {
            if (is_kept(text[i])) {
                *to++ = TEXT_UTILITIES::widen(text[i]);
            }
        }
        return STRING(fresh);
    });
}

STRING STRING::replace_string(TEXT_VIEW from, TEXT_VIEW to, CASE_MODE mode) const {
    const REFERENCE_COUNTER<STRING_BUFFER> replaced = replace_text(*this, from, to, mode);
    return !replaced ? *this : replaced->get_length() == 0 ? STRING() : STRING(replaced);
}

// Each unit through `map`; a string that stays as it is is shared.
template <typename MAP>
STRING STRING::map_units(MAP&& map) const {
    return TEXT_VIEW(*this).visit([&](const auto* text, std::int32_t length) {
        const auto changes = [&](auto unit) {
            return char16_t{map(unit)} != TEXT_UTILITIES::widen(unit);
        };
        if (std::none_of(text, text + length, changes)) {
            return *this;
        }
        const REFERENCE_COUNTER<STRING_BUFFER> fresh = STRING_BUFFER::create(length);
        std::transform(text, text + length, fresh->get_text(), map);
        return STRING(fresh);
    });
}

STRING STRING::replace_chars(TEXT_CHARACTER from, TEXT_CHARACTER to) const {
    return map_units([&](auto unit) -> char16_t {
        const char16_t wide = TEXT_UTILITIES::widen(unit);
        return wide == from ? char16_t{to} : wide;
    });
}

STRING STRING::to_lower() const {
    return map_units([](auto unit) -> char16_t {
        return TEXT_UTILITIES::widen(TEXT_UTILITIES::to_lower(unit));
    });
}

STRING STRING::to_upper() const {
    return map_units([](auto unit) -> char16_t {
        return TEXT_UTILITIES::widen(TEXT_UTILITIES::to_upper(unit));
    });
}

STRING STRING::get_substring(std::int32_t first, std::int32_t last) const {
    const TEXT_VIEW own = *this;
    const std::int32_t length = own.get_length();
    if (first < 0 || first > last || first >= length) {
        return STRING();
    }
    last = std::min(last, length - 1);
    return first == 0 && last == length - 1 ? *this : STRING(own.get_part(first, last - first + 1));
}

STRING STRING::get_left(std::int32_t count) const {
    return count <= 0 ? STRING() : get_substring(0, count - 1);
}

STRING STRING::get_right(std::int32_t count) const {
    const std::int32_t length = get_length();
    return count <= 0 ? STRING() : get_substring(std::max(length - count, 0), length - 1);
}

}  // namespace KVCORE
