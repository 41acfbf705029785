#include "kvmigration/chunk_parser.h"

#include <typeinfo>

namespace KVMIGRATION {

// The operations of the base class itself, called directly.
struct CHUNK_PARSER::OWN_OPERATIONS {
    explicit OWN_OPERATIONS(CHUNK_PARSER& base) : parser(base), position(base.position) {}

    void begin_chunk() { parser.CHUNK_PARSER::begin_chunk(); }
    void process_chunk(const STRING& text, std::int32_t first, std::int32_t last) {
        parser.CHUNK_PARSER::process_chunk(text, first, last);
    }
    void process_char(char) {}
    void end_chunk() {}
    static bool is_whitespace(char c) { return is_base_whitespace(c); }
    static bool is_terminator(char c) { return is_base_whitespace(c); }
    static bool process_each_char() { return false; }
    bool got_chunk() const { return !parser.chunk.empty(); }

    CHUNK_PARSER& parser;
    std::int32_t& position;
};

bool CHUNK_PARSER::next_chunk(const STRING& text) {
    if (typeid(*this) == typeid(CHUNK_PARSER)) {
        OWN_OPERATIONS own(*this);
        return cut_chunk(own, text);
    }
    return cut_chunk(*this, text);
}

}  // namespace KVMIGRATION
