// Assembles long text where repeated concatenation would be wasteful.
#ifndef KVCORE_STRING_BUILDER_H
#define KVCORE_STRING_BUILDER_H

#include <cstdarg>
#include <cstdint>

#include "kvcore/string.h"

namespace KVCORE {

// Owns a buffer whose own length field is the capacity while the builder has it. The text grows in
// it by steps of at least 1024 units, up to STRING_BUFFER::MAX_LENGTH, where it is cut. A capacity
// is above 0. Operations clamp indices as those of STRING do. For one thread.
class STRING_BUILDER {
public:
    static constexpr std::int32_t GROW_STEP = 1024;

    // An empty text with room for 1024 units, or for `capacity`.
    STRING_BUILDER() : STRING_BUILDER(GROW_STEP) {}
    explicit STRING_BUILDER(std::int32_t capacity);
    // A copy of the text. The capacity is the given one, or the text's length plus 1024 if the text
    // is longer.
    explicit STRING_BUILDER(const STRING& text) : STRING_BUILDER(text, GROW_STEP) {}
    STRING_BUILDER(const STRING& text, std::int32_t capacity);
    // Leaves the other one without text and buffer; its next text gets a buffer that just fits.
    STRING_BUILDER(STRING_BUILDER&& other) noexcept;
    STRING_BUILDER(const STRING_BUILDER&) = delete;
    STRING_BUILDER& operator=(const STRING_BUILDER&) = delete;

    // The text given may be part of the builder's own, except to insert and replace_string's `from`
    // and `to`, which take foreign text or a copy.
    STRING_BUILDER& append(TEXT_VIEW text);
    STRING_BUILDER& append(TEXT_CHARACTER unit);
    // Appends what STRING::format would set.
    STRING_BUILDER& append_format(const char* format, ...) __attribute__((format(printf, 2, 3)));
    STRING_BUILDER& append_format(const char16_t* format, ...);
    STRING_BUILDER& append_format_arguments(TEXT_VIEW format, va_list arguments);
    void insert(std::int32_t index, TEXT_VIEW text);
    void insert(std::int32_t index, TEXT_CHARACTER unit);
    // An index out of range takes nothing.
    void delete_char(std::int32_t index);
    // As STRING::delete_chars.
    void delete_chars(std::int32_t first, std::int32_t last);
    void replace_string(TEXT_VIEW from, TEXT_VIEW to, CASE_MODE mode = CASE_MODE::SENSITIVE);
    // 0 out of range.
    char16_t get_char(std::int32_t index) const noexcept;
    // An index out of range does nothing.
    void set_char(std::int32_t index, TEXT_CHARACTER unit);

    std::int32_t get_length() const noexcept { return length; }
    std::int32_t get_capacity() const noexcept { return buffer ? buffer->get_length() : 0; }
    // Moves the text to a new buffer of `capacity` units, cut to it. A capacity below 1 does
    // nothing.
    void set_capacity(std::int32_t capacity);
    bool is_empty() const noexcept { return length == 0; }
    // No text, and the capacity of a new builder.
    void clear();

    // The text as a string. COPY makes a buffer that fits. KEEP hands over the builder's own buffer
    // without copying; the builder still shows the text, and its next change goes through a new
    // buffer.
    STRING create_string(COPY_MODE mode = COPY_MODE::COPY);

    operator TEXT_VIEW() const noexcept {
        return buffer ? TEXT_VIEW(buffer->get_text(), length) : TEXT_VIEW();
    }

private:
    // The length with `count` more units, as far as a string can hold them.
    std::int32_t get_length_with(std::int64_t count) const noexcept;
    void check_additional_capacity(std::int64_t count);
    bool has_own_room(std::int32_t count) const noexcept;
    void make_own();

    REFERENCE_COUNTER<STRING_BUFFER> buffer;
    std::int32_t length = 0;
};

}  // namespace KVCORE

#endif  // KVCORE_STRING_BUILDER_H
