#include "kvmigration/brace_parser.h"

namespace KVMIGRATION {

void BRACE_PARSER::begin_chunk() {
    CHUNK_PARSER::begin_chunk();
    depth = 0;
    in_comment = false;
    done = false;
}

bool BRACE_PARSER::count(char c) {
    if (in_comment) {
        in_comment = c != '\n';
        return false;
    }
    if (c == '{') {
        return depth++ == 0;
    }
    if (c == '}' && depth > 0) {
        done = --depth == 0;
        return done;
    }
    in_comment = c == '/';
    return false;
}

bool BRACE_PARSER::is_terminator(char c) {
    if (done) {
        return true;
    }
    count(c);
    return false;
}

void BRACE_PARSER::process_chunk(const STRING& text, std::int32_t first, std::int32_t last) {
    depth = 0;
    in_comment = false;
    chunk.reserve(get_length(first, last) + 1);
    for (std::int32_t i = first; i <= last; ++i) {
        const char c = text[static_cast<std::size_t>(i)];
        const bool outermost = count(c);
        if (!outermost || !strips_outer) {
            chunk.push_back(c);
        }
    }
    chunk.push_back('\n');
}

}  // namespace KVMIGRATION
