// Bytes in several encodings as strings and back. The first byte chooses the encoding.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <vector>

#include "kvcore/text_converter.h"
#include "kvcore/text_utilities.h"

namespace {

using KVCORE::STRING;
using KVCORE::TEXT_UTILITIES;

void require(bool condition) {
    if (!condition) {
        std::abort();
    }
}

constexpr const char* ENCODINGS[] = {"UTF-8",     "UTF-16LE",  "UTF-16", "ISO-8859-1",
                                     "MACINTOSH", "SHIFT_JIS", "UTF-7",  "ISO-2022-JP",
                                     "UTF-32",    "none such"};
constexpr std::size_t ENCODING_COUNT = sizeof ENCODINGS / sizeof ENCODINGS[0];

// iconv and our own decoder agree on text without errors; each leaves no byte out otherwise.
void check_utf8(const std::string& bytes, const STRING& decoded) {
    std::vector<char16_t> units(bytes.size());
    const std::int32_t count =
        TEXT_UTILITIES::from_utf8(bytes.data(), static_cast<std::int32_t>(bytes.size()),
                                  units.data(), static_cast<std::int32_t>(units.size()));
    const STRING own(units.data(), count);
    if (!own.contains(u"\uFFFD")) {
        require(own.equals(decoded));
        require(KVCORE::encode_text(decoded, "UTF-8") == bytes);
    } else {
        require(decoded.contains(u"\uFFFD"));
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size == 0 || size > 16384) {
        return 0;
    }
    const char* const encoding = ENCODINGS[data[0] % ENCODING_COUNT];
    const std::string bytes(reinterpret_cast<const char*>(data + 1), size - 1);
    const STRING decoded = KVCORE::decode_text(bytes, encoding);
    require(static_cast<std::size_t>(decoded.get_length()) <= 4 * bytes.size() + 4);
    if (data[0] % ENCODING_COUNT == 0) {
        check_utf8(bytes, decoded);
    }
    // What came out is text, unless it holds half a pair of surrogates: it goes through UTF-8.
    const std::string utf8 = KVCORE::encode_text(decoded, "UTF-8");
    require(KVCORE::encode_text(KVCORE::decode_text(utf8, "UTF-8"), "UTF-8") == utf8);
    (void)KVCORE::encode_text(decoded, encoding);
    return 0;
}
