#include "text_edit.h"

#include <algorithm>

#include "kvcore/text_utilities.h"

namespace KVCORE {
namespace {

// Copies as much of a text as there is room for, and moves on behind it.
void put(char16_t*& to, std::int32_t& room, TEXT_VIEW text) {
    const TEXT_VIEW part = text.get_part(0, room);
    TEXT_UTILITIES::widen_block(to, part);
    to += part.get_length();
    room -= part.get_length();
}

}  // namespace

REFERENCE_COUNTER<STRING_BUFFER> join_texts(TEXT_VIEW a, TEXT_VIEW b, TEXT_VIEW c) {
    const std::int64_t length = std::int64_t{a.get_length()} + b.get_length() + c.get_length();
    std::int32_t room = STRING_BUFFER::clamp_length(length);
    const REFERENCE_COUNTER<STRING_BUFFER> joined = STRING_BUFFER::create(room);
    char16_t* to = joined->get_text();
    put(to, room, a);
    put(to, room, b);
    put(to, room, c);
    return joined;
}

REFERENCE_COUNTER<STRING_BUFFER> replace_text(TEXT_VIEW text, TEXT_VIEW from, TEXT_VIEW to,
                                              CASE_MODE mode) {
    const std::int32_t length = text.get_length();
    const std::int32_t from_length = from.get_length();
    std::int64_t count = 0;
    for (std::int32_t at = 0;; at += from_length, ++count) {
        at = TEXT_UTILITIES::find_string(text, from, at, mode);
        if (at == length) {
            break;
        }
    }
    if (count == 0) {
        return nullptr;
    }
    std::int32_t room =
        STRING_BUFFER::clamp_length(length + count * (to.get_length() - from_length));
    const REFERENCE_COUNTER<STRING_BUFFER> replaced = STRING_BUFFER::create(room);
    char16_t* out = replaced->get_text();
    std::int32_t done = 0;
    for (; count > 0 && room > 0; --count) {
        const std::int32_t at = TEXT_UTILITIES::find_string(text, from, done, mode);
        put(out, room, text.get_part(done, at - done));
        put(out, room, to);
        done = at + from_length;
    }
    put(out, room, text.get_part(done, length - done));
    return replaced;
}

TEXT_RANGE clamp_deletion(std::int32_t length, std::int32_t first, std::int32_t last) {
    if (length == 0 || first > last) {
        return {0, length};
    }
    first = std::clamp(first, 0, length - 1);
    last = std::clamp(last, 0, length - 1);
    return {first, last - first + 1};
}

}  // namespace KVCORE
