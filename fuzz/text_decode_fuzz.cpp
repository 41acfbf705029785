// The library's own UTF-8, which file names go through, against that of the C library.
#include <iconv.h>

#include <cerrno>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <optional>
#include <string>

#include "kvcore/text_utilities.h"

namespace {

using KVCORE::TEXT_UTILITIES;

void require(bool condition) {
    if (!condition) {
        std::abort();
    }
}

// The units of a UTF-8 text by the C library; nothing if it isn't one.
std::optional<std::u16string> decode_by_iconv(const std::string& bytes) {
    static const iconv_t converter = ::iconv_open("UTF-16LE", "UTF-8");
    require(converter != reinterpret_cast<iconv_t>(-1));
    ::iconv(converter, nullptr, nullptr, nullptr, nullptr);
    std::u16string units(bytes.size(), u'\0');
    char* input = const_cast<char*>(bytes.data());  // iconv doesn't write to it
    std::size_t left = bytes.size();
    char* output = reinterpret_cast<char*>(units.data());
    std::size_t room = units.size() * sizeof(char16_t);
    if (::iconv(converter, &input, &left, &output, &room) == static_cast<std::size_t>(-1)) {
        require(errno != E2BIG);
        return std::nullopt;
    }
    units.resize(units.size() - room / sizeof(char16_t));
    return units;
}

std::u16string decode(const std::string& bytes) {
    std::u16string units(bytes.size(), u'\0');
    const std::int32_t count =
        TEXT_UTILITIES::from_utf8(bytes.data(), static_cast<std::int32_t>(bytes.size()),
                                  units.data(), static_cast<std::int32_t>(units.size()));
    units.resize(static_cast<std::size_t>(count));
    return units;
}

std::string encode(const std::u16string& units) {
    return TEXT_UTILITIES::to_utf8(units.data(), static_cast<std::int32_t>(units.size()));
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size > 16384) {
        return 0;
    }
    // Bytes as they come: the same text, or a mark for what is none.
    const std::string bytes(reinterpret_cast<const char*>(data), size);
    const std::u16string decoded = decode(bytes);
    if (const auto expected = decode_by_iconv(bytes)) {
        require(decoded == *expected && encode(decoded) == bytes);
    } else {
        require(decoded.find(u'\uFFFD') != decoded.npos);
    }
    // Units as they come, halves of pairs among them: what is written is UTF-8.
    std::u16string units(size / sizeof(char16_t), u'\0');
    std::memcpy(units.data(), data, units.size() * sizeof(char16_t));
    const std::string encoded = encode(units);
    const auto read_back = decode_by_iconv(encoded);
    require(read_back && *read_back == decode(encoded) && read_back->size() == units.size());
    return 0;
}
