#include "platform/text_encoding.h"

#include <gtest/gtest.h>

namespace {

TEST(TEXT_ENCODING, DecodesWhatFitsAndMarksTheRest) {
    const struct {
        std::string_view utf8, text;
    } cases[] = {
        {"", ""},
        {"plain\n\t~", "plain\n\t~"},
        {"caf\xC3\xA9 \xC2\xA3\xC3\xBF", "caf\xE9 \xA3\xFF"},
        {"\xC2\x80\xC2\x9F", "\x80\x9F"},
        {"\xC4\x80|", "?|"},                   // U+0100, the first that doesn't fit
        {"\xE2\x82\xAC|\xE2\x80\x9C", "?|?"},  // one stand-in a character
        {"\xF0\x9F\x98\x80|", "?|"},           // U+1F600
        {"\xF4\x8F\xBF\xBF|", "?|"},           // U+10FFFF
        {"\xF4\x90\x80\x80|", "????|"},        // beyond
        {"\xC0\xAF|\xC1\xBF|", "??|??|"},      // overlong
        {"\xE0\x83\xA9|\xF0\x80\x83\xA9|", "???|????|"},
        {"\xED\xA0\x80|", "???|"},  // a surrogate
        {"\xC3", "?"},              // cut off
        {"\xE2\x82", "?"},
        {"\xF0\x9F\x98z", "?z"},  // the z is not swallowed
        {"\xC3\xC3\xA9", "?\xE9"},
        {"\x80\xBF\xFE\xFF", "????"},
        {std::string_view("a\0b", 3), std::string_view("a\0b", 3)},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(c.text, utf8_to_system(c.utf8)) << c.utf8;
    }
}

TEST(TEXT_ENCODING, EveryByteComesBack) {
    std::string all;
    for (int i = 0; i < 256; ++i) {
        all += static_cast<char>(i);
    }
    EXPECT_EQ(all, utf8_to_system(system_to_utf8(all)));
    EXPECT_EQ("\xC2\x80\xC3\xBF\x7F", system_to_utf8("\x80\xFF\x7F"));
}

}  // namespace
