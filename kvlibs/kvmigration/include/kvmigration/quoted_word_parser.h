// Cuts a text into words, with quoted words kept whole.
#ifndef KVMIGRATION_QUOTED_WORD_PARSER_H
#define KVMIGRATION_QUOTED_WORD_PARSER_H

#include "kvmigration/chunk_parser.h"

namespace KVMIGRATION {

// Words are separated by white space, "(", ")" and ":". From a ' or a " to the next one of its kind
// everything belongs to the word, the quotes included. A quote that isn't closed runs to the end of
// the text.
class QUOTED_WORD_PARSER final : public CHUNK_PARSER {
public:
    void begin_chunk() override {
        CHUNK_PARSER::begin_chunk();
        open_quote = '\0';
    }
    bool is_whitespace(char c) override {
        return is_base_whitespace(c) || c == '(' || c == ')' || c == ':';
    }
    bool is_terminator(char c) override {
        if (open_quote != '\0') {
            open_quote = c == open_quote ? '\0' : open_quote;
            return false;
        }
        if (c == '\'' || c == '"') {
            open_quote = c;
            return false;
        }
        return is_whitespace(c);
    }
    bool next_chunk(const STRING& text) override { return cut_chunk(*this, text); }

private:
    char open_quote = '\0';
};

}  // namespace KVMIGRATION

#endif  // KVMIGRATION_QUOTED_WORD_PARSER_H
