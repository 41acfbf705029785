// The base of the small parsers that cut a text into chunks.
#ifndef KVMIGRATION_CHUNK_PARSER_H
#define KVMIGRATION_CHUNK_PARSER_H

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <limits>

#include "kvmigration/string.h"

namespace KVMIGRATION {

// Says what a chunk is; STRING::get_next_chunk does the walking. By itself it cuts a text into
// words between white space:
//
//     KVMIGRATION::CHUNK_PARSER words;
//     while (line.get_next_chunk(words)) {
//         use(words.chunk);
//     }
//
// A derived parser replaces the operations below. In block mode a chunk runs from the first
// character that is no white space to the next terminator or zero, and process_chunk gets it in one
// piece. In character mode process_char gets each character, and a chunk may be one terminator.
// is_terminator is asked exactly once for each character that is walked over, in order, so that a
// parser may keep state in it. A parser belongs to one thread.
class CHUNK_PARSER {
public:
    virtual ~CHUNK_PARSER() = default;

    // Back to the start of a text.
    virtual void reset() {
        position = 0;
        chunk.clear();
    }
    // Called ahead of each chunk.
    virtual void begin_chunk() { chunk.clear(); }
    // Block mode: takes the characters from `first` to `last`, both included. An empty range has
    // `last` before `first`.
    virtual void process_chunk(const STRING& text, std::int32_t first, std::int32_t last) {
        chunk.assign(text, static_cast<std::size_t>(first), get_length(first, last));
    }
    // Character mode: takes one character.
    virtual void process_char(char) {}
    // Called behind each chunk.
    virtual void end_chunk() {}
    virtual bool is_whitespace(char c) { return is_base_whitespace(c); }
    virtual bool is_terminator(char c) { return is_whitespace(c); }
    // Whether character mode is on.
    virtual bool process_each_char() { return false; }
    virtual bool got_chunk() { return !chunk.empty(); }
    // The walk itself. A final parser passes itself to cut_chunk, so that the operations above are
    // called directly and not through the table of virtual ones; results are the same.
    virtual bool next_chunk(const STRING& text);

    // Where the next chunk is looked for. Callers may step it. A position that is negative or at or
    // beyond the end of the text finds nothing.
    std::int32_t position = 0;
    // The last chunk.
    STRING chunk;

protected:
    static constexpr bool is_base_whitespace(char c) {
        return c == '\\' || c == ' ' || c == '\t' || c == '\n' || c == '\r';
    }
    static constexpr std::size_t get_length(std::int32_t first, std::int32_t last) {
        return last < first ? 0 : static_cast<std::size_t>(last - first) + 1;
    }

    template <typename PARSER>
    static bool cut_chunk(PARSER& parser, const STRING& text);

private:
    struct OWN_OPERATIONS;

    template <typename PARSER>
    static std::int32_t cut_by_chars(PARSER& parser, const char* text, std::int32_t length,
                                     std::int32_t at);
};

template <typename PARSER>
std::int32_t CHUNK_PARSER::cut_by_chars(PARSER& parser, const char* text, std::int32_t length,
                                        std::int32_t at) {
    const bool alone = parser.is_terminator(text[at]);
    parser.process_char(text[at]);
    ++at;
    while (!alone && at < length && !parser.is_terminator(text[at])) {
        parser.process_char(text[at]);
        ++at;
    }
    return at;
}

template <typename PARSER>
bool CHUNK_PARSER::cut_chunk(PARSER& parser, const STRING& text) {
    parser.begin_chunk();
    constexpr std::size_t limit = std::numeric_limits<std::int32_t>::max();
    const auto length = static_cast<std::int32_t>(std::min(text.size(), limit));
    std::int32_t at = parser.position;
    if (at < 0 || at >= length) {
        return false;
    }
    const char* const characters = text.data();
    while (at < length && parser.is_whitespace(characters[at])) {
        ++at;
    }
    if (at < length) {
        if (parser.process_each_char()) {
            at = cut_by_chars(parser, characters, length, at);
        } else {
            const std::int32_t first = at;
            while (at < length && characters[at] != '\0' && !parser.is_terminator(characters[at])) {
                ++at;
            }
            parser.process_chunk(text, first, at - 1);
        }
    }
    parser.position = at;
    parser.end_chunk();
    return parser.got_chunk();
}

}  // namespace KVMIGRATION

#endif  // KVMIGRATION_CHUNK_PARSER_H
