#include "kvmigration/statement_parser.h"

namespace KVMIGRATION {

void STATEMENT_PARSER::process_chunk(const STRING& text, std::int32_t first, std::int32_t last) {
    in_comment = false;
    chunk.reserve(get_length(first, last) + 1);
    for (std::int32_t i = first; i <= last; ++i) {
        const char c = text[static_cast<std::size_t>(i)];
        track_comment(c);
        if (!in_comment) {
            chunk.push_back(c);
        }
    }
    chunk.push_back('\n');
}

}  // namespace KVMIGRATION
