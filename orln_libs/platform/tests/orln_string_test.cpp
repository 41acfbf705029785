// ORLN_STRING and the comparison without accents.
#include "platform/orln_string.h"

#include <gtest/gtest.h>

#include <cstring>
#include <string>

#include "platform/message.h"

namespace {

TEST(OrlnString, TakesTextAndNumbers) {
    ORLN_STRING text;
    EXPECT_TRUE(text.is_empty());
    EXPECT_STREQ(text.get_text(), "");
    EXPECT_EQ(text.get_capacity(), 0);
    text += "a";
    text += 'b';
    text += std::int32_t{-5};
    text += std::uint32_t{4294967295u};
    text += ORLN_STRING("!");
    text += static_cast<const char*>(nullptr);
    EXPECT_STREQ(text.get_text(), "ab-54294967295!");
    text = std::int64_t{-9000000000};
    text += std::uint64_t{18446744073709551615u};
    EXPECT_STREQ(text.get_text(), "-900000000018446744073709551615");
    text = 2.5;
    EXPECT_STREQ(text.get_text(), "2.500000");
    text = -1e308;
    EXPECT_EQ(text.get_length(), 317);
    text = 'x';
    EXPECT_TRUE(text == "x");
    text = static_cast<const char*>(nullptr);
    EXPECT_TRUE(text.is_empty());
    EXPECT_TRUE(text == ORLN_STRING());
}

TEST(OrlnString, AllocatesFiftyBytesAndGrowsOnlyWhenTheyArePassed) {
    ORLN_STRING text("a");
    EXPECT_EQ(text.get_capacity(), 50);
    const char* block = text.get_text();
    text = std::string(49, 'b').c_str();
    EXPECT_EQ(text.get_text(), block);
    text += 'c';
    EXPECT_EQ(text.get_capacity(), 51);
    EXPECT_EQ(text.get_length(), 50);
    text = "";
    EXPECT_EQ(text.get_capacity(), 51) << "the allocation stays";
    text.clear();
    EXPECT_EQ(text.get_capacity(), 0);
}

TEST(OrlnString, MayBeGivenPartsOfItself) {
    ORLN_STRING text("0123456789");
    text = text.get_text() + 4;
    EXPECT_STREQ(text.get_text(), "456789");
    for (int i = 0; i < 4; ++i) {
        text += text;
    }
    EXPECT_EQ(text.get_length(), 96);
    text.insert(text.get_text() + 95, 0);
    EXPECT_STREQ(text.get(0, 3).get_text(), "9456");
    const ORLN_STRING& alias = text;
    text = alias;
    EXPECT_EQ(text.get_length(), 97);
    text.replace("94", text.get_text(), 0);
    EXPECT_EQ(text.get_length(), 97 - 2 + 97);
}

TEST(OrlnString, InsertsRemovesAndCuts) {
    ORLN_STRING text("bcd");
    text.insert("a", 0);
    text.insert("-", 2);
    text.insert("e", 99);
    text.insert("<", -7);
    EXPECT_STREQ(text.get_text(), "<ab-cde");
    text.remove(3, 3);
    text.remove(-4, 0);
    EXPECT_STREQ(text.get_text(), "abcde");
    EXPECT_STREQ(text.get(1, 3).get_text(), "bcd");
    EXPECT_STREQ(text.get(3, -1).get_text(), "de");
    EXPECT_STREQ(text.get(3, 99).get_text(), "de");
    EXPECT_TRUE(text.get(3, 2).is_empty());
    EXPECT_TRUE(text.get(5, 9).is_empty());
    text.remove(3, 2);
    text.remove(5, -1);
    EXPECT_EQ(text.get_length(), 5);
    text.remove(1, -1);
    EXPECT_STREQ(text.get_text(), "a");
    ORLN_STRING empty;
    empty.remove(0, -1);
    EXPECT_TRUE(empty.is_empty());
    empty.insert("z", 3);
    EXPECT_STREQ(empty.get_text(), "z");
}

TEST(OrlnString, FindsAndReplaces) {
    ORLN_STRING text("one two One");
    EXPECT_EQ(text.find("One", 0, true), 8);
    EXPECT_EQ(text.find("one", 1, true), -1);
    EXPECT_EQ(text.find("ONE", 1, false), 7) << "counted from the start given";
    EXPECT_EQ(text.find("", 0, true), -1);
    EXPECT_EQ(text.find("e", 11, true), -1);
    EXPECT_EQ(text.find("o", -1, true), -1);
    EXPECT_EQ(ORLN_STRING().find("a", 0, false), -1);
    EXPECT_EQ(text.replace("o", "00", 1), 1);
    EXPECT_STREQ(text.get_text(), "one tw00 One");
    EXPECT_EQ(text.replace("one", nullptr, 0), 1);
    EXPECT_EQ(text.replace("one", "x", 0), 0);
    EXPECT_STREQ(text.get_text(), " tw00 One");
    text = " \t\r\n a b \n";
    text.trim_start_whitespace();
    EXPECT_STREQ(text.get_text(), "a b \n");
    text.trim_end_whitespace();
    text.trim_start_whitespace();
    EXPECT_STREQ(text.get_text(), "a b");
    text = "  ";
    text.trim_end_whitespace();
    text.trim_start_whitespace();
    EXPECT_TRUE(text.is_empty());
}

TEST(OrlnString, IsStoredAsDynamicText) {
    MESSAGE device;
    ASSERT_EQ(ORLN_STRING("hey").put_to_data_device(device), 1);
    ASSERT_EQ(ORLN_STRING().put_to_data_device(device), 1);
    const unsigned char expected[] = {3, 0, 0, 0, 'h', 'e', 'y', 0, 0, 0, 0};
    ASSERT_EQ(device.get_length(), 11);
    EXPECT_EQ(std::memcmp(device.get_buffer(), expected, sizeof expected), 0);
    device.set_pos(0, false);
    ORLN_STRING text("old");
    EXPECT_EQ(text.get_from_data_device(device), 1);
    EXPECT_STREQ(text.get_text(), "hey");
    EXPECT_EQ(text.get_from_data_device(device), 1);
    EXPECT_TRUE(text.is_empty());
    text = "old";
    EXPECT_EQ(text.get_from_data_device(device), 0);
    EXPECT_TRUE(text.is_empty());
}

TEST(SevenBit, MapsAccentedLettersToPlainOnes) {
    char out[32];
    convert_string_to_7bit(
        "Fa\xE7"
        "ade \xC6 \xFC\xD1 na\xEFve \xA3",
        out, sizeof out);
    EXPECT_STREQ(out, "Facade AE uN naive ?");
    convert_string_to_7bit("a\xC6", out, 3);
    EXPECT_STREQ(out, "aA") << "cut at the size";
    convert_string_to_7bit(nullptr, out, sizeof out);
    EXPECT_STREQ(out, "");
    out[0] = 'k';
    convert_string_to_7bit("abc", out, 0);
    EXPECT_EQ(out[0], 'k');
    // Every byte gives 7-bit text.
    for (int byte = 1; byte < 256; ++byte) {
        const char text[2] = {static_cast<char>(byte), '\0'};
        convert_string_to_7bit(text, out, sizeof out);
        ASSERT_GE(std::strlen(out), 1u) << byte;
        for (const char* c = out; *c; ++c) {
            EXPECT_GT(*c, 0) << byte;
        }
    }
}

TEST(SevenBit, ComparesThroughTheMapping) {
    EXPECT_EQ(compare_7bit("\xC9"
                           "t\xE9",
                           "Ete", true),
              0);
    EXPECT_EQ(compare_7bit("\xC6on", "AEon", true), 0);
    EXPECT_LT(compare_7bit("\xC4pfel", "Birne", true), 0);
    EXPECT_GT(compare_7bit("b", "\xC1", true), 0);
    EXPECT_NE(compare_7bit("ete", "\xC9TE", true), 0);
    EXPECT_EQ(compare_7bit("ete", "\xC9TE", false), 0);
    EXPECT_LT(compare_7bit(nullptr, "a", true), 0);
    EXPECT_LT(compare_7bit("ab", "abc", false), 0);
    EXPECT_EQ(ORLN_STRING("\xFC"
                          "ber")
                  .compare_7bit("Uber", false),
              0);
}

}  // namespace
