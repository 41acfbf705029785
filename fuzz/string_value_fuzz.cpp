// Arbitrary bytes as text in both widths: number recognition, hashes, find and replace, conversion.
// Where both widths hold the same text the results have to agree.
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

#include "kvcore/string.h"
#include "kvcore/string_builder.h"
#include "kvcore/text_utilities.h"

namespace {

using KVCORE::CASE_MODE;
using KVCORE::COPY_MODE;
using KVCORE::STRING;
using KVCORE::TEXT_UTILITIES;
using KVCORE::TEXT_VIEW;

void require(bool condition) {
    if (!condition) {
        std::abort();
    }
}

void check_values(TEXT_VIEW narrow, TEXT_VIEW wide) {
    require(TEXT_UTILITIES::convert_to_s32(narrow) == TEXT_UTILITIES::convert_to_s32(wide));
    require(TEXT_UTILITIES::convert_to_s64(narrow) == TEXT_UTILITIES::convert_to_s64(wide));
    require(TEXT_UTILITIES::convert_to_bool8(narrow) == TEXT_UTILITIES::convert_to_bool8(wide));
    const double a = TEXT_UTILITIES::convert_to_f64(narrow);
    const double b = TEXT_UTILITIES::convert_to_f64(wide);
    require(a == b || (a != a && b != b));
    const bool decimal = TEXT_UTILITIES::is_decimal_value(narrow);
    require(decimal == TEXT_UTILITIES::is_decimal_value(wide));
    require(!decimal ||
            (TEXT_UTILITIES::is_real_value(wide) && TEXT_UTILITIES::is_boolean_value(narrow)));
    require(TEXT_UTILITIES::is_hexadecimal_value(narrow) ==
            TEXT_UTILITIES::is_hexadecimal_value(wide));
    require(TEXT_UTILITIES::is_boolean_value(narrow) == TEXT_UTILITIES::is_boolean_value(wide));
}

void check_edits(const STRING& text, const STRING& from, const STRING& to, CASE_MODE mode) {
    const std::int32_t length = text.get_length();
    const std::int32_t at = text.find_string(from, 0, mode);
    require(at <= length && text.contains(from, mode) == (at < length));
    if (at < length) {
        const std::int32_t last = at + from.get_length() - 1;
        require(text.get_substring(at, last).compare(from, mode) == 0);
    }
    const STRING replaced = text.replace_string(from, to, mode);
    require(at < length || replaced.equals(text));
    // The case of accented bytes is known to buffers only.
    if (mode == CASE_MODE::SENSITIVE || text.has_string_buffer()) {
        KVCORE::STRING_BUILDER builder(text, 1);
        builder.replace_string(from, to, mode);
        require(builder.create_string(COPY_MODE::KEEP).equals(replaced));
        require(from.get_length() != 1 || !to.is_empty() || !replaced.contains(from, mode));
    }
    const STRING cut = text.delete_chars(at, at + 1);
    require(cut.get_length() <= length);
    require(text.to_upper().get_length() == length);
    require(!text.has_string_buffer() || text.to_lower().to_lower().equals(text.to_lower()));
}

}  // namespace

// The first two bytes cut the rest into a text, a pattern and a replacement.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size < 2 || size > 4096) {
        return 0;
    }
    std::string bytes(reinterpret_cast<const char*>(data + 2), size - 2);
    const std::size_t from_size = std::min<std::size_t>(data[0] % 16, bytes.size());
    const std::string from = bytes.substr(0, from_size);
    const std::size_t to_size = std::min<std::size_t>(data[1] % 16, bytes.size() - from_size);
    const std::string to = bytes.substr(from_size, to_size);
    const std::string text = bytes.substr(from_size + to_size);
    const auto length = static_cast<std::int32_t>(text.size());

    // Blocks of exactly the size, so that a read behind the end is seen.
    std::vector<char> narrow(text.begin(), text.end());
    std::vector<char16_t> wide(text.size());
    TEXT_UTILITIES::move_block(wide.data(), narrow.data(), length);
    const TEXT_VIEW narrow_view = narrow.empty() ? TEXT_VIEW() : TEXT_VIEW(narrow.data(), length);
    const TEXT_VIEW wide_view = wide.empty() ? TEXT_VIEW() : TEXT_VIEW(wide.data(), length);
    check_values(narrow_view, wide_view);
    require(TEXT_UTILITIES::equals(narrow_view, wide_view));

    // As a borrowed text, which ends at its first zero, and as two buffers.
    const STRING borrowed(text.c_str(), COPY_MODE::KEEP);
    const STRING counted(wide.data(), length);
    std::vector<char16_t> units(text.size() / 2);
    if (!units.empty()) {
        std::memcpy(units.data(), text.data(), units.size() * 2);
    }
    const STRING raw(units.data(), static_cast<std::int32_t>(units.size()));
    const STRING from_string(from.c_str(), data[0] & 16 ? COPY_MODE::COPY : COPY_MODE::KEEP);
    const STRING to_string(to.c_str(), data[1] & 16 ? COPY_MODE::COPY : COPY_MODE::KEEP);
    for (const STRING* string : {&borrowed, &counted, &raw}) {
        const CASE_MODE mode = data[0] & 32 ? CASE_MODE::INSENSITIVE : CASE_MODE::SENSITIVE;
        check_edits(*string, from_string, to_string, mode);
        require(string->get_hash() == STRING(*string).get_hash());
        require(string->is_empty() ||
                string->get_char(string->get_length() - 1) == string->get_last_char());
        (void)string->delete_whitespace();
        (void)string->get_real_value();
    }
    STRING::STRING_PROXY proxy = counted.get_buffer();
    require(std::memcmp(proxy.as_c8(), text.data(), text.size()) == 0);

    const std::string utf8 = TEXT_UTILITIES::to_utf8(raw.get_16bit(), raw.get_length());
    std::vector<char16_t> back(utf8.size());
    const std::int32_t count =
        TEXT_UTILITIES::from_utf8(utf8.data(), static_cast<std::int32_t>(utf8.size()), back.data(),
                                  static_cast<std::int32_t>(back.size()));
    require(TEXT_UTILITIES::to_utf8(back.data(), count) == utf8);
    require(TEXT_UTILITIES::from_utf8(text.data(), length, wide.data(), length) <= length);
    return 0;
}
