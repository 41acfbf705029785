// Arbitrary text through the parsers of the 3D libraries, and through what they ask of text:
// numbers, array forms, paths, lists. Every walk ends, and the direct walk of each parser agrees
// with the one through its virtual operations.
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>

#include "kvmigration/brace_parser.h"
#include "kvmigration/code_line_parser.h"
#include "kvmigration/files.h"
#include "kvmigration/hash.h"
#include "kvmigration/line_parser.h"
#include "kvmigration/quoted_word_parser.h"
#include "kvmigration/statement_parser.h"
#include "kvmigration/string_array.h"

namespace {

using namespace KVMIGRATION;

void require(bool condition) {
    if (!condition) {
        std::abort();
    }
}

// Yields all chunks joined.
template <typename PARSER>
STRING check_parser(const STRING& text, PARSER direct, PARSER by_operations) {
    STRING joined;
    std::size_t calls = 0;
    while (text.get_next_chunk(direct)) {
        require(by_operations.CHUNK_PARSER::next_chunk(text));
        require(direct.chunk == by_operations.chunk && direct.position == by_operations.position);
        require(direct.position >= 0 && static_cast<std::size_t>(direct.position) <= text.size());
        joined += direct.chunk;
        // As a caller does whose terminators stay under the position.
        if (direct.position < static_cast<std::int32_t>(text.size()) &&
            !direct.process_each_char()) {
            ++direct.position;
            ++by_operations.position;
        }
        require(++calls <= text.size());
    }
    require(!by_operations.CHUNK_PARSER::next_chunk(text));

    direct.reset();
    STRING_ARRAY chunks;
    const std::int32_t count = text.get_chunk_list(direct, chunks);
    require(count == chunks.get_count() && static_cast<std::size_t>(count) <= text.size());
    return joined;
}

void check_forms(const STRING& text) {
    require(text.get_value() >= 0);
    require(!std::isnan(text.get_real_value()) && text.get_real_value() >= 0.0f);
    STRING name;
    STRING index;
    if (text.parse_array(name, index)) {
        require(text.find(name + "[" + index + "]") == 0);
    }
    // A zero ends what goes through the C library.
    const STRING path(text.c_str());
    char drive[4], dir[16], base[16], ext[16];
    _splitpath_s(path.c_str(), drive, sizeof drive, dir, sizeof dir, base, sizeof base, ext,
                 sizeof ext);
    const STRING folder = extract(path, PATH_FOLDER);
    require(path.find(folder) == 0 && folder.find(STRING(drive)) == 0);
    require(extract(path, PATH_NAME).find(base) == 0);
    if (path.find(':', 2) == STRING::npos && path.find(':') != 0) {
        require(extract(path, PATH_FOLDER | PATH_NAME | PATH_EXTENSION) == path);
    }
    const std::int32_t found = compare_paths(text, index);
    require(found >= -1 && found <= static_cast<std::int32_t>(text.size()));
    (void)get_hash(text.data(), static_cast<std::int32_t>(text.size()));
}

void check_lists(const STRING& text) {
    STRING_ARRAY words;
    text.get_word_list(words);
    STRING_ARRAY pattern;
    for (std::int32_t i = 0; i < words.get_count() && i < 2; ++i) {
        pattern.add(*words[i]);
    }
    const std::int32_t before = words.get_count();
    require(words.find_and_replace(pattern, "x") == (pattern.get_count() != 0));
    require(words.get_count() <= before);
}

// The base by way of its virtual operations.
class DERIVED_PARSER : public CHUNK_PARSER {};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size > 65536) {
        return 0;
    }
    const STRING text(reinterpret_cast<const char*>(data), size);
    require(check_parser(text, CHUNK_PARSER(), CHUNK_PARSER()) ==
            check_parser(text, DERIVED_PARSER(), DERIVED_PARSER()));
    check_parser(text, LINE_PARSER(), LINE_PARSER());
    check_parser(text, STATEMENT_PARSER(), STATEMENT_PARSER());
    check_parser(text, BRACE_PARSER(false), BRACE_PARSER(false));
    check_parser(text, BRACE_PARSER(true), BRACE_PARSER(true));
    check_parser(text, CODE_LINE_PARSER(false), CODE_LINE_PARSER(false));
    check_parser(text, QUOTED_WORD_PARSER(), QUOTED_WORD_PARSER());
    require(check_parser(text, CODE_LINE_PARSER(true), CODE_LINE_PARSER(true)) == text);
    check_forms(text);
    check_lists(text);
    return 0;
}
