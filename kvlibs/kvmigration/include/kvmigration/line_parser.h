// Cuts a text into lines.
#ifndef KVMIGRATION_LINE_PARSER_H
#define KVMIGRATION_LINE_PARSER_H

#include "kvmigration/chunk_parser.h"

namespace KVMIGRATION {

// A line ends at a line feed. White space in front of it is skipped, so blank lines vanish; a
// carriage return stays at the end of the chunk.
class LINE_PARSER final : public CHUNK_PARSER {
public:
    bool is_terminator(char c) override { return c == '\n'; }
    bool next_chunk(const STRING& text) override { return cut_chunk(*this, text); }
};

}  // namespace KVMIGRATION

#endif  // KVMIGRATION_LINE_PARSER_H
