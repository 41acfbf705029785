// The 8-bit text of the 3D libraries.
#ifndef KVMIGRATION_STRING_H
#define KVMIGRATION_STRING_H

#include <cstdint>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>

namespace KVMIGRATION {

class CHUNK_PARSER;
class STRING_ARRAY;

// A standard string with what the 3D libraries ask of text. Indices are the system's 32-bit
// numbers; text behind index 2^31 - 1 is out of their reach. A null pointer counts as empty text.
class STRING : public std::string {
public:
    STRING() = default;
    STRING(const char* text) : std::string(text ? text : "") {}
    STRING(const char* text, std::size_t length) : std::string(text, length) {}
    STRING(const std::string& text) : std::string(text) {}
    STRING(std::string&& text) noexcept : std::string(std::move(text)) {}

    // The index of the first occurrence of `text`, or with `from_end` of the last; -1 if there is
    // none.
    std::int32_t find_string(const char* text, bool from_end) const;
    // The characters from `first` to `last`, both included and clamped into the text. Empty if
    // `last` is below `first`.
    STRING get_substring(std::int32_t first, std::int32_t last) const;

    // The number at the first decimal digit, 0 without one. Whatever stands before that digit is
    // skipped, a minus sign and a decimal point included: "-5" is 5. A number beyond 32 bits is the
    // end of their range.
    std::int32_t get_value() const;
    // The same for a real number: ".5" is 5.0, "-1.5" is 1.5. The decimal point is "." whatever the
    // locale says.
    float get_real_value() const;

    // Takes over the bytes of a file and puts a zero behind them, so that the length is the file's
    // size plus one. False, with the text as it was, if the path leads to no file that can be read.
    bool load(const char* path);
    // Writes the bytes to a file; true if all were written. The file changes only once everything
    // is on disk: it is written beside and moved into place.
    bool write(const STRING& path) const;

    // Looks for the next chunk from the parser's position on. Yields the parser's got_chunk().
    // A terminator that is no white space stays under the position of a block-mode parser: who
    // calls again steps over it.
    bool get_next_chunk(CHUNK_PARSER& parser) const;
    // Adds a copy of each chunk until there is none, from the parser's position on. A terminator
    // on which a chunk would end without a step forward is stepped over, so that the walk ends with
    // every parser. Yields the array's count.
    std::int32_t get_chunk_list(CHUNK_PARSER& parser, STRING_ARRAY& chunks) const;
    // The words between blanks, quoted ones kept whole; see QUOTED_WORD_PARSER.
    std::int32_t get_word_list(STRING_ARRAY& words) const;

    // For a text of the form name[index], with the first "[" ahead of the first "]": sets both, and
    // yields true. Otherwise the outputs stay as they were.
    bool parse_array(STRING& name, STRING& index) const;
};

STRING join_text(std::string_view a, std::string_view b);

// Concatenation of two texts of which at least one is a STRING. A template, so that it is the exact
// match beside the operators of the standard library, which see the STRING's base only.
template <typename A, typename B>
requires(std::is_same_v<std::remove_cvref_t<A>, STRING> ||
         std::is_same_v<std::remove_cvref_t<B>, STRING>) &&
    std::is_convertible_v<A, std::string_view>&& std::is_convertible_v<B, std::string_view> STRING
    operator+(A&& a, B&& b) {
    return join_text(a, b);
}

// A copy with each byte put through the C library's mapping.
STRING tolower(const std::string& text);
STRING toupper(const std::string& text);

// Formats as printf does; the result is cut at 1023 characters.
STRING sprintf_to_string(const char* format, ...) __attribute__((format(printf, 1, 2)));

// The first index at which a table of `count` texts holds `text`, both in upper case; -1 if none
// does.
std::int32_t get_string_index(const char* const* table, std::int32_t count, const STRING& text);

// Searches for path `b` inside path `a`. Case doesn't matter, and "\" and "/" are one character.
// Yields the index in `a`, -1 if there is none. After a mismatch the search begins anew behind the
// character that differed, so that a beginning within a failed match isn't seen. An empty `a`
// yields -1.
std::int32_t compare_paths(const STRING& a, const STRING& b);

}  // namespace KVMIGRATION

#endif  // KVMIGRATION_STRING_H
