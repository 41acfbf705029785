#include "platform/text_encoding.h"

#include <cstddef>
#include <cstdint>

namespace {

constexpr char STAND_IN = '?';

struct DECODED {
    std::uint32_t code;
    std::size_t length;  // bytes taken, at least 1
};

constexpr std::uint32_t NOT_A_CODE = 0xFFFFFFFF;

// The lead byte says how many bytes follow and which range the second one must lie in; the ranges
// keep out overlong forms, surrogates and codes above 0x10FFFF (RFC 3629, section 4).
DECODED decode_character(std::string_view text) {
    const auto byte = [&](std::size_t i) {
        return static_cast<std::uint32_t>(static_cast<unsigned char>(text[i]));
    };
    const std::uint32_t lead = byte(0);
    if (lead < 0x80) {
        return {lead, 1};
    }
    if (lead < 0xC2 || lead > 0xF4) {
        return {NOT_A_CODE, 1};
    }
    const std::size_t length = lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : 4;
    std::uint32_t code = lead & (0x7Fu >> length);
    std::uint32_t low = lead == 0xE0 ? 0xA0 : lead == 0xF0 ? 0x90 : 0x80;
    std::uint32_t high = lead == 0xED ? 0x9F : lead == 0xF4 ? 0x8F : 0xBF;
    for (std::size_t i = 1; i < length; ++i) {
        if (i >= text.size() || byte(i) < low || byte(i) > high) {
            return {NOT_A_CODE, i};
        }
        code = code << 6 | (byte(i) & 0x3Fu);
        low = 0x80;
        high = 0xBF;
    }
    return {code, length};
}

}  // namespace

std::string utf8_to_system(std::string_view text) {
    std::string result;
    result.reserve(text.size());
    while (!text.empty()) {
        const DECODED character = decode_character(text);
        result += character.code > 0xFF ? STAND_IN : static_cast<char>(character.code);
        text.remove_prefix(character.length);
    }
    return result;
}

std::string file_text_to_system(std::string_view text) {
    for (std::string_view rest = text; !rest.empty();) {
        const DECODED character = decode_character(rest);
        if (character.code == NOT_A_CODE) {
            return std::string(text);
        }
        rest.remove_prefix(character.length);
    }
    return utf8_to_system(text);
}

std::string system_to_utf8(std::string_view text) {
    std::string result;
    result.reserve(text.size());
    for (const char c : text) {
        const auto code = static_cast<unsigned char>(c);
        if (code < 0x80) {
            result += c;
        } else {
            result += static_cast<char>(0xC0 | code >> 6);
            result += static_cast<char>(0x80 | (code & 0x3F));
        }
    }
    return result;
}
