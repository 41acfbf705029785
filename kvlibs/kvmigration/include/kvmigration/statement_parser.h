// Cuts a text into statements.
#ifndef KVMIGRATION_STATEMENT_PARSER_H
#define KVMIGRATION_STATEMENT_PARSER_H

#include "kvmigration/chunk_parser.h"

namespace KVMIGRATION {

// A statement ends at ";", which stays under the position: step over it before the next call. A
// comment runs from any "/" to the line feed; it is dropped, and a ";" in it ends nothing. Each
// chunk ends in a line feed of its own, so that a statement without text is a single line feed.
class STATEMENT_PARSER final : public CHUNK_PARSER {
public:
    void begin_chunk() override {
        CHUNK_PARSER::begin_chunk();
        in_comment = false;
    }
    void process_chunk(const STRING& text, std::int32_t first, std::int32_t last) override;
    bool is_terminator(char c) override {
        track_comment(c);
        return c == ';' && !in_comment;
    }
    bool next_chunk(const STRING& text) override { return cut_chunk(*this, text); }

private:
    void track_comment(char c) { in_comment = in_comment ? c != '\n' : c == '/'; }

    bool in_comment = false;
};

}  // namespace KVMIGRATION

#endif  // KVMIGRATION_STATEMENT_PARSER_H
