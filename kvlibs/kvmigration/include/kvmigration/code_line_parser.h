// Cuts a source line into tokens.
#ifndef KVMIGRATION_CODE_LINE_PARSER_H
#define KVMIGRATION_CODE_LINE_PARSER_H

#include "kvmigration/chunk_parser.h"

namespace KVMIGRATION {

// A token is a separator, or a run of anything else: "a=b;" is a, =, b, ;. White space separates
// and vanishes, unless blanks are kept: then each is a token, and all tokens joined give the text
// again.
class CODE_LINE_PARSER final : public CHUNK_PARSER {
public:
    explicit CODE_LINE_PARSER(bool keep_blanks = false) : keeps_blanks(keep_blanks) {}

    void process_char(char c) override { chunk.push_back(c); }
    bool is_whitespace(char c) override { return !keeps_blanks && is_base_whitespace(c); }
    bool is_terminator(char c) override { return is_seperator(c); }
    bool process_each_char() override { return true; }
    bool next_chunk(const STRING& text) override { return cut_chunk(*this, text); }

    static constexpr bool is_seperator(char c) {
        switch (c) {
            case '.':
            case ' ':
            case '\t':
            case ',':
            case ';':
            case '#':
            case '=':
            case '(':
            case ')':
            case '[':
            case ']':
            case '\r':
            case '\n':
                return true;
            default:
                return false;
        }
    }

private:
    const bool keeps_blanks;
};

}  // namespace KVMIGRATION

#endif  // KVMIGRATION_CODE_LINE_PARSER_H
