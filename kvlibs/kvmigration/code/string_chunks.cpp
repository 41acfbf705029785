#include "kvmigration/chunk_parser.h"
#include "kvmigration/quoted_word_parser.h"
#include "kvmigration/string.h"
#include "kvmigration/string_array.h"

namespace KVMIGRATION {

bool STRING::get_next_chunk(CHUNK_PARSER& parser) const {
    return parser.next_chunk(*this);
}

std::int32_t STRING::get_chunk_list(CHUNK_PARSER& parser, STRING_ARRAY& chunks) const {
    for (;;) {
        const std::int32_t before = parser.position;
        if (!get_next_chunk(parser)) {
            return chunks.get_count();
        }
        if (parser.position == before) {
            ++parser.position;
        } else {
            chunks.add(parser.chunk);
        }
    }
}

std::int32_t STRING::get_word_list(STRING_ARRAY& words) const {
    QUOTED_WORD_PARSER parser;
    return get_chunk_list(parser, words);
}

}  // namespace KVMIGRATION
