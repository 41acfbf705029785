// The core library's text value.
#ifndef KVCORE_STRING_H
#define KVCORE_STRING_H

#include <cstddef>
#include <cstdint>
#include <utility>

#include "kvcore/reference_counter.h"
#include "kvcore/string_buffer.h"
#include "kvcore/text_view.h"

namespace KVCORE {

// A text of up to 2^24 - 1 characters in one pointer. It is in one of three states:
//
//     null pointer              empty
//     at a byte that isn't 1    a borrowed, zero-terminated 8-bit text of somebody else's
//     at a byte that is 1       the marker of a STRING_BUFFER: 16-bit units, shared and counted
//
// So a string made of a literal costs nothing, and copying any string costs one increment at most:
//
//     KVCORE::STRING title = "Stadium"_str;                  // borrows, allocates nothing
//     KVCORE::STRING name(field.name);                       // copies
//     KVCORE::STRING word(text, -1, KVCORE::COPY_MODE::KEEP);  // borrows: text outlives all copies
//
// Longer text than MAX_LENGTH is cut there. Indices and lengths count units. Searches yield the
// string's length when there is no match, and take start indices as in TEXT_UTILITIES_BASE.
// Operations that yield a STRING leave this one as it is and may share its text.
//
// Threads may hold and drop copies of one string at the same time; one STRING object is changed by
// one thread only, while no other uses that object.
class STRING {
public:
    class STRING_PROXY;
    static constexpr std::int32_t MAX_LENGTH = STRING_BUFFER::MAX_LENGTH;

    constexpr STRING() noexcept = default;
    STRING(const STRING& other) noexcept : pointer(other.pointer) { share(); }
    STRING(STRING&& other) noexcept : pointer(std::exchange(other.pointer, nullptr)) {}
    STRING(const char* text, COPY_MODE mode = COPY_MODE::COPY) { set(text, -1, mode); }
    STRING(const char* text, std::int32_t length, COPY_MODE mode = COPY_MODE::COPY) {
        set(text, length, mode);
    }
    STRING(const char16_t* text, std::int32_t length = -1) { set(text, length); }
    explicit STRING(TEXT_CHARACTER unit) { set(unit); }
    // Copies what the view shows.
    explicit STRING(TEXT_VIEW text) { set(text); }
    // A string on that very buffer, which nobody writes to any more; null is the empty string.
    explicit STRING(const REFERENCE_COUNTER<STRING_BUFFER>& buffer) noexcept;
    ~STRING() { release(); }

    STRING& operator=(const STRING& other) noexcept {
        STRING(other).swap(*this);
        return *this;
    }
    STRING& operator=(STRING&& other) noexcept {
        STRING(std::move(other)).swap(*this);
        return *this;
    }
    void swap(STRING& other) noexcept { std::swap(pointer, other.pointer); }

    // A string that borrows a literal; what the suffix _str makes.
    static STRING from_literal(const char* literal) { return STRING(literal, COPY_MODE::KEEP); }

    // Takes over the state of `other`: shares its buffer, or its borrowed text.
    void set(const STRING& other) noexcept { *this = other; }
    // Copies (zero-extended, into a buffer) or borrows an 8-bit text. A borrowed text counts up to
    // its terminator, whatever `length` says, and outlives every string that shares it. A text that
    // begins with the byte 1 can't be borrowed, and is copied in either mode.
    void set(const char* text, std::int32_t length = -1, COPY_MODE mode = COPY_MODE::COPY);
    // These always make a new buffer; an empty text makes the empty state.
    void set(const char16_t* text, std::int32_t length = -1);
    void set(TEXT_VIEW text);
    void set(TEXT_CHARACTER unit);

    // Sets the text as printf does, into a new buffer. "%s" takes an 8-bit text, "%S" and "%ls" a
    // 16-bit one; TEXT_UTILITIES tells the language in full. The arguments may be texts of this
    // very string.
    void format(const char* format, ...) __attribute__((format(printf, 2, 3)));
    void format(const char16_t* format, ...);
    void format(const STRING* format, ...);

    void clear() noexcept {
        release();
        pointer = nullptr;
    }

    // The state. An empty text yields an empty text from both get_8bit and get_16bit, and so does
    // each of them for the other width.
    bool is_8bit() const noexcept { return pointer && *pointer != STRING_BUFFER::MARKER; }
    bool is_16bit() const noexcept { return pointer && *pointer == STRING_BUFFER::MARKER; }
    const char* get_8bit() const noexcept { return is_8bit() ? pointer : ""; }
    const char16_t* get_16bit() const noexcept { return is_16bit() ? buffer()->get_text() : u""; }
    // Whether no text is borrowed: true for a buffer and for the empty state.
    bool has_string_buffer() const noexcept { return !is_8bit(); }
    // A view for callers that need one width.
    STRING_PROXY get_buffer() const;
    operator TEXT_VIEW() const noexcept {
        return is_16bit() ? TEXT_VIEW(buffer()->get_text(), buffer()->get_length())
                          : TEXT_VIEW(pointer, get_length());
    }

    // Makes the buffer this string's own, and gives it for writing: a borrowed or empty text gets a
    // new one, a shared one is copied, a buffer without other holders is used as it is. It stays
    // owned by the string.
    STRING_BUFFER* copy_for_write();
    // A buffer of its own with the same text.
    REFERENCE_COUNTER<STRING_BUFFER> make_writeable_copy() const;
    // Writes one unit through copy_for_write. An index out of range does nothing.
    void set_char(std::int32_t index, TEXT_CHARACTER unit);

    // The length: stored for a buffer, counted anew for a borrowed text. Loops keep it.
    std::int32_t get_length() const noexcept;
    bool is_empty() const noexcept {
        return !pointer ||
               (*pointer == STRING_BUFFER::MARKER ? buffer()->get_length() == 0 : *pointer == '\0');
    }
    // The unit at `index`, 0 out of range. Only here the bytes of a borrowed text are
    // sign-extended; everything else zero-extends them.
    char16_t get_char(std::int32_t index) const noexcept;
    char16_t get_first_char() const noexcept { return get_char(0); }
    char16_t get_last_char() const noexcept { return get_char(get_length() - 1); }
    std::int32_t get_char_count(TEXT_CHARACTER unit) const noexcept;
    std::int32_t leading_whitespace_count() const noexcept;
    std::int32_t trailing_whitespace_count() const noexcept;

    // Searches, as in TEXT_UTILITIES_BASE. `nth` counts from 1.
    std::int32_t find_char(TEXT_CHARACTER unit, std::int32_t start = 0) const noexcept;
    std::int32_t find_char_reverse(TEXT_CHARACTER unit, std::int32_t start = -1) const noexcept;
    std::int32_t find_chars(TEXT_VIEW chars, std::int32_t start = 0) const noexcept;
    std::int32_t find_chars_reverse(TEXT_VIEW chars, std::int32_t start = -1) const noexcept;
    std::int32_t find_nth_char(TEXT_CHARACTER unit, std::int32_t nth,
                               std::int32_t start = 0) const noexcept;
    std::int32_t find_nth_char_reverse(TEXT_CHARACTER unit, std::int32_t nth,
                                       std::int32_t start = -1) const noexcept;
    std::int32_t skip_chars(TEXT_VIEW chars, std::int32_t start = 0) const noexcept;
    std::int32_t skip_chars_reverse(TEXT_VIEW chars, std::int32_t start = -1) const noexcept;
    std::int32_t find_string(TEXT_VIEW text, std::int32_t start = 0,
                             CASE_MODE mode = CASE_MODE::SENSITIVE) const noexcept;
    bool contains(TEXT_VIEW text, CASE_MODE mode = CASE_MODE::SENSITIVE) const noexcept;

    // Exact equality over all combinations of widths.
    bool equals(const STRING& other) const noexcept;
    bool equals(const char* text, std::int32_t length = -1) const noexcept;
    bool equals(const char16_t* text, std::int32_t length = -1) const noexcept;
    // Negative, 0 or positive, as this comes before, with or behind `text`.
    int compare(TEXT_VIEW text, CASE_MODE mode = CASE_MODE::SENSITIVE) const noexcept;

    // Numbers in the text; TEXT_UTILITIES tells the rules.
    std::int32_t get_value() const;
    std::int64_t get_big_value() const;
    double get_real_value() const;
    bool get_boolean_value() const;
    bool is_decimal_value() const noexcept;
    bool is_hexadecimal_value() const noexcept;
    bool is_real_value() const noexcept;
    bool is_boolean_value() const noexcept;
    // 32-bit FNV-1; the two widths of one accented text hash differently.
    std::uint32_t get_hash() const noexcept;

    // Grows this string. Repeated appending of much text is STRING_BUILDER's work.
    void append(TEXT_VIEW text);
    void append(TEXT_CHARACTER unit);
    // This plus something.
    STRING add(TEXT_VIEW text) const;
    STRING add(TEXT_CHARACTER unit) const;
    // With something put before the unit at `index`, which is clamped into the string.
    STRING insert(std::int32_t index, TEXT_VIEW text) const;
    STRING insert(std::int32_t index, TEXT_CHARACTER unit) const;
    // Without the units from `first` to `last`, inclusive, each clamped into the string. A `first`
    // beyond `last` yields an empty string.
    STRING delete_chars(std::int32_t first, std::int32_t last) const;
    // Without one unit; an index out of range takes nothing.
    STRING delete_char(std::int32_t index) const;
    STRING delete_first_char() const { return delete_char(0); }
    STRING delete_last_char() const { return delete_char(get_length() - 1); }
    STRING delete_leading_whitespace() const;
    STRING delete_trailing_whitespace() const;
    // Without any whitespace, wherever it stands.
    STRING delete_whitespace() const;
    // Every `from` becomes `to`, from left to right; what was put in isn't looked at again.
    STRING replace_string(TEXT_VIEW from, TEXT_VIEW to,
                          CASE_MODE mode = CASE_MODE::SENSITIVE) const;
    STRING replace_chars(TEXT_CHARACTER from, TEXT_CHARACTER to) const;
    // The units from `first` to `last`, inclusive; `last` is clamped. A `first` below 0, beyond
    // `last`, or at or beyond the end yields an empty string.
    STRING get_substring(std::int32_t first, std::int32_t last) const;
    // The first or last `count` units, or all if there are fewer.
    STRING get_left(std::int32_t count) const;
    STRING get_right(std::int32_t count) const;
    // The C library's mapping for a borrowed text, Unicode's simple mapping for a buffer.
    STRING to_lower() const;
    STRING to_upper() const;

    friend bool operator==(const STRING& a, const STRING& b) noexcept { return a.equals(b); }
    friend bool operator==(const STRING& a, const char* b) noexcept { return a.equals(b); }
    friend bool operator==(const STRING& a, const char16_t* b) noexcept { return a.equals(b); }
    friend bool operator<(const STRING& a, const STRING& b) noexcept { return a.compare(b) < 0; }

private:
    STRING_BUFFER* buffer() const noexcept { return STRING_BUFFER::from_marker(pointer); }
    void share() const noexcept {
        if (is_16bit()) {
            buffer()->add_reference();
        }
    }
    void release() noexcept {
        if (is_16bit()) {
            buffer()->release_reference();
        }
    }
    void take(const REFERENCE_COUNTER<STRING_BUFFER>& fresh) noexcept { STRING(fresh).swap(*this); }
    template <typename MAP>
    STRING map_units(MAP&& map) const;

    const char* pointer = nullptr;
};

static_assert(sizeof(STRING) == sizeof(void*), "a string is one pointer wide");

// A temporary view of a string in the width that a caller needs. The texts live as long as the
// proxy and the string that it was made of.
class STRING::STRING_PROXY {
public:
    explicit STRING_PROXY(const STRING& string) noexcept;
    STRING_PROXY(STRING_PROXY&& other) noexcept;
    STRING_PROXY& operator=(STRING_PROXY&&) = delete;
    ~STRING_PROXY();

    // The borrowed text, or a copy narrowed to the low bytes.
    const char* as_c8();
    // The buffer's text, or a widened copy.
    const char16_t* as_c16();

private:
    REFERENCE_COUNTER<STRING_BUFFER> buffer;
    const char* text_8bit = nullptr;
    bool owns_8bit = false;
};

inline STRING::STRING_PROXY STRING::get_buffer() const {
    return STRING_PROXY(*this);
}

// A global empty string, for references to nothing.
inline constinit const STRING EMPTY_STRING{};

inline namespace literals {
// "text"_str: a string that borrows the literal.
inline STRING operator""_str(const char* literal, std::size_t) {
    return STRING::from_literal(literal);
}
}  // namespace literals

}  // namespace KVCORE

#endif  // KVCORE_STRING_H
