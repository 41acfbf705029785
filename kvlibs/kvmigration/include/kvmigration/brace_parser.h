// Cuts a text into balanced groups in braces.
#ifndef KVMIGRATION_BRACE_PARSER_H
#define KVMIGRATION_BRACE_PARSER_H

#include "kvmigration/chunk_parser.h"

namespace KVMIGRATION {

// A chunk goes up to the "}" that closes the first "{", with whatever stands before that brace, and
// ends in a line feed of its own. Braces between a "/" and the next line feed don't count, though
// the comment stays in the chunk. A "}" with nothing open is text like any other. A group that is
// never closed runs to the end of the text. Nesting costs a counter only.
class BRACE_PARSER final : public CHUNK_PARSER {
public:
    // With `strip_outer` the outermost braces aren't copied.
    explicit BRACE_PARSER(bool strip_outer = false) : strips_outer(strip_outer) {}

    void begin_chunk() override;
    void process_chunk(const STRING& text, std::int32_t first, std::int32_t last) override;
    bool is_terminator(char c) override;
    bool next_chunk(const STRING& text) override { return cut_chunk(*this, text); }

private:
    // Counts one character. Yields whether it is one of the outermost pair of braces.
    bool count(char c);

    std::int32_t depth = 0;
    bool in_comment = false;
    bool done = false;
    const bool strips_outer;
};

}  // namespace KVMIGRATION

#endif  // KVMIGRATION_BRACE_PARSER_H
