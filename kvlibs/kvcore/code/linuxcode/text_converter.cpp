#include "kvcore/text_converter.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <vector>

namespace KVCORE {
namespace {

const iconv_t NO_CONVERTER = reinterpret_cast<iconv_t>(-1);
constexpr std::size_t BLOCK = 4096;
// U+FFFD.
constexpr std::string_view REPLACEMENT_UTF16LE("\xFD\xFF", 2);
constexpr std::string_view REPLACEMENT_UTF8("\xEF\xBF\xBD");

}  // namespace

TEXT_CONVERTER::TEXT_CONVERTER(const char* from, const char* to, std::size_t unit)
    : handle_(::iconv_open(to, from)), unit_(std::max<std::size_t>(unit, 1)) {
}

TEXT_CONVERTER::~TEXT_CONVERTER() {
    if (is_open()) {
        ::iconv_close(handle_);
    }
}

bool TEXT_CONVERTER::is_open() const {
    return handle_ != NO_CONVERTER;
}

std::int32_t TEXT_CONVERTER::convert(std::string_view text, std::string& out,
                                     std::string_view replacement) const {
    if (!is_open()) {
        return 0;
    }
    std::int32_t replaced = 0;
    char* input = const_cast<char*>(text.data());  // iconv doesn't write to it
    std::size_t left = text.size();
    ::iconv(handle_, nullptr, nullptr, nullptr, nullptr);
    bool flushed = false;
    while (!flushed) {
        char block[BLOCK];
        char* output = block;
        std::size_t room = sizeof block;
        // Behind the last byte a call without input brings out what the encoding still holds.
        flushed = left == 0;
        const std::size_t result = flushed ? ::iconv(handle_, nullptr, nullptr, &output, &room)
                                           : ::iconv(handle_, &input, &left, &output, &room);
        const bool failed = result == static_cast<std::size_t>(-1) && errno != E2BIG;
        out.append(block, static_cast<std::size_t>(output - block));
        if (failed && !flushed) {
            const std::size_t skipped = std::min(unit_, left);
            input += skipped;
            left -= skipped;
            out.append(replacement);
            ++replaced;
        }
    }
    return replaced;
}

STRING decode_text(std::string_view bytes, const char* encoding) {
    const TEXT_CONVERTER converter(encoding, "UTF-16LE");
    std::string converted;
    converter.convert(bytes, converted, REPLACEMENT_UTF16LE);
    const std::int32_t length =
        STRING_BUFFER::clamp_length(static_cast<std::int64_t>(converted.size() / sizeof(char16_t)));
    if (length == 0) {
        return STRING();
    }
    const REFERENCE_COUNTER<STRING_BUFFER> buffer = STRING_BUFFER::create(length);
    std::memcpy(buffer->get_text(), converted.data(),
                static_cast<std::size_t>(length) * sizeof(char16_t));
    return STRING(buffer);
}

std::string encode_text(TEXT_VIEW text, const char* encoding) {
    const TEXT_CONVERTER converter("UTF-16LE", encoding, sizeof(char16_t));
    std::string converted;
    if (text.is_empty() || !converter.is_open()) {
        return converted;
    }
    // The encoding's own form of U+FFFD, if it has one.
    const TEXT_CONVERTER marker("UTF-8", encoding);
    std::string replacement;
    if (marker.convert(REPLACEMENT_UTF8, replacement, "") != 0) {
        replacement = "?";
    }
    std::vector<char16_t> units(static_cast<std::size_t>(text.get_length()));
    text.visit([&](const auto* from, std::int32_t length) {
        TEXT_UTILITIES_BASE::move_block(units.data(), from, length);
    });
    converter.convert(
        {reinterpret_cast<const char*>(units.data()), units.size() * sizeof(char16_t)}, converted,
        replacement);
    return converted;
}

}  // namespace KVCORE
