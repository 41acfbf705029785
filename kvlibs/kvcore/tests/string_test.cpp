// KVCORE::STRING in its three states.
#include "kvcore/string.h"

#include <gtest/gtest.h>

#include <cstring>
#include <memory>
#include <string>
#include <thread>
#include <vector>

namespace {

using KVCORE::CASE_MODE;
using KVCORE::COPY_MODE;
using KVCORE::REFERENCE_COUNTER;
using KVCORE::STRING;
using KVCORE::STRING_BUFFER;
using namespace KVCORE::literals;

std::u16string text_of(const STRING& string) {
    STRING::STRING_PROXY proxy = string.get_buffer();
    return std::u16string(proxy.as_c16(), static_cast<std::size_t>(string.get_length()));
}

// The same text borrowed, and in a buffer: every operation has to treat both alike.
class BOTH_WIDTHS : public testing::TestWithParam<bool> {
protected:
    static STRING make(const char* text) {
        return STRING(text, GetParam() ? COPY_MODE::COPY : COPY_MODE::KEEP);
    }
};
INSTANTIATE_TEST_SUITE_P(String, BOTH_WIDTHS, testing::Bool(), [](const auto& width) {
    return std::string(width.param ? "Buffer" : "Borrowed");
});

TEST(String, HasThreeStatesInOnePointer) {
    const STRING empty;
    EXPECT_TRUE(empty.is_empty() && empty.has_string_buffer());
    EXPECT_FALSE(empty.is_8bit() || empty.is_16bit());
    EXPECT_STREQ("", empty.get_8bit());
    EXPECT_EQ(0, empty.get_16bit()[0]);

    static const char text[] = "Stadium";
    const STRING borrowed(text, COPY_MODE::KEEP);
    const STRING shared = borrowed;
    EXPECT_TRUE(borrowed.is_8bit() && !borrowed.has_string_buffer());
    EXPECT_EQ(text, shared.get_8bit()) << "copies share the pointer";
    EXPECT_EQ(0, borrowed.get_16bit()[0]);

    const STRING counted(text);
    STRING copy = counted;
    EXPECT_TRUE(counted.is_16bit() && counted.has_string_buffer());
    EXPECT_EQ(counted.get_16bit(), copy.get_16bit()) << "copies share the buffer";
    EXPECT_STREQ("", counted.get_8bit());
    copy = std::move(copy);
    copy = *&copy;
    EXPECT_EQ(u"Stadium", text_of(copy));
    EXPECT_TRUE(STRING("").is_empty() && ""_str.is_empty() && STRING(u"").is_empty());
    EXPECT_TRUE(KVCORE::EMPTY_STRING.is_empty());
}

TEST(String, TextThatBeginsWithTheMarkerIsCopiedInEitherMode) {
    const STRING string("\x01tail", COPY_MODE::KEEP);
    EXPECT_TRUE(string.is_16bit());
    EXPECT_EQ(u"\x01tail", text_of(string));
}

TEST(String, BufferHasItsDocumentedLayout) {
    const STRING string(u"ab");
    const auto* marker = reinterpret_cast<const unsigned char*>(string.get_16bit()) - 4;
    const unsigned char expected[] = {1,   0, 0,   0,         // count
                                      1,   2, 0,   0,         // marker and length
                                      'a', 0, 'b', 0, 0, 0};  // text and terminator
    EXPECT_EQ(0, std::memcmp(expected, marker - 4, sizeof expected));
}

TEST(String, LengthIsCutAtTheLargestOfABuffer) {
    const std::string large(static_cast<std::size_t>(STRING::MAX_LENGTH) + 10, 'x');
    const STRING copied(large.c_str());
    EXPECT_EQ(STRING::MAX_LENGTH, copied.get_length());
    EXPECT_EQ(0, copied.get_16bit()[STRING::MAX_LENGTH]);
    STRING grown = copied;
    grown.append("more");
    EXPECT_EQ(STRING::MAX_LENGTH, grown.get_length());
    EXPECT_EQ(STRING::MAX_LENGTH, copied.replace_string("x", "xy").get_length());
    EXPECT_EQ(STRING::MAX_LENGTH, copied.insert(3, "ab").get_length());
    EXPECT_EQ(u'a', copied.insert(3, "ab").get_char(3));
}

TEST(String, SetTakesLengthsAndEveryWidth) {
    STRING string;
    string.set("abcdef", 3);
    EXPECT_EQ(u"abc", text_of(string));
    string.set("caf\xE9");
    EXPECT_EQ(u"caf\u00E9", text_of(string)) << "copying zero-extends";
    EXPECT_EQ(0x00E9, string.get_last_char());
    string.set("caf\xE9", -1, COPY_MODE::KEEP);
    EXPECT_EQ(0xFFE9, string.get_last_char()) << "looking at a borrowed byte sign-extends";
    string.set(u"\u20AC\0x", 3);
    EXPECT_EQ(3, string.get_length()) << "a counted text may hold zeros";
    string.set('\xE9');
    EXPECT_EQ(u"\u00E9", text_of(string));
    string.set(u'\u20AC');
    EXPECT_EQ(u"\u20AC", text_of(string));
    string.set(static_cast<const char*>(nullptr));
    EXPECT_TRUE(string.is_empty());
}

TEST(String, CopyForWriteMakesTheBufferItsOwn) {
    STRING alone(u"abc");
    const char16_t* const before = alone.get_16bit();
    EXPECT_EQ(before, alone.copy_for_write()->get_text()) << "a count of 1 is used as it is";
    const STRING other = alone;
    alone.set_char(1, 'X');
    EXPECT_EQ(u"aXc", text_of(alone));
    EXPECT_EQ(u"abc", text_of(other));
    EXPECT_EQ(before, other.get_16bit());
    alone.set_char(3, 'Y');
    alone.set_char(-1, 'Y');
    EXPECT_EQ(u"aXc", text_of(alone)) << "out of range";

    STRING borrowed = "lit"_str;
    borrowed.set_char(0, u'\u0141');
    EXPECT_EQ(u"\u0141it", text_of(borrowed));
    STRING empty;
    EXPECT_EQ(0, empty.copy_for_write()->get_length());

    const REFERENCE_COUNTER<STRING_BUFFER> writeable = other.make_writeable_copy();
    writeable->get_text()[0] = u'Z';
    EXPECT_EQ(u"abc", text_of(other));
    EXPECT_EQ(u"Zbc", text_of(STRING(writeable)));
}

TEST(String, ProxyGivesTheWidthThatIsNeeded) {
    const STRING borrowed = "abc"_str;
    STRING::STRING_PROXY narrow = borrowed.get_buffer();
    EXPECT_EQ(borrowed.get_8bit(), narrow.as_c8()) << "no copy";
    EXPECT_EQ(std::u16string(u"abc"), narrow.as_c16());
    const STRING wide(u"a\u0142\u20AC");
    STRING::STRING_PROXY proxy = wide.get_buffer();
    EXPECT_EQ(wide.get_16bit(), proxy.as_c16());
    const char* const narrowed = proxy.as_c8();
    EXPECT_STREQ("a\x42\xAC", narrowed) << "low bytes";
    STRING::STRING_PROXY moved = std::move(proxy);
    EXPECT_EQ(narrowed, moved.as_c8());
    STRING::STRING_PROXY empty = STRING().get_buffer();
    EXPECT_STREQ("", empty.as_c8());
    EXPECT_EQ(0, empty.as_c16()[0]);
}

TEST_P(BOTH_WIDTHS, QueriesUnits) {
    const STRING string = make(" \tsome text \n");
    EXPECT_EQ(13, string.get_length());
    EXPECT_EQ(u's', string.get_char(2));
    EXPECT_EQ(0, string.get_char(13));
    EXPECT_EQ(0, string.get_char(-1));
    EXPECT_EQ(u' ', string.get_first_char());
    EXPECT_EQ(u'\n', string.get_last_char());
    EXPECT_EQ(3, string.get_char_count(' '));
    EXPECT_EQ(2, string.leading_whitespace_count());
    EXPECT_EQ(2, string.trailing_whitespace_count());
    EXPECT_EQ(3, make(" \t\n").leading_whitespace_count());
    EXPECT_EQ(3, make(" \t\n").trailing_whitespace_count());
    EXPECT_EQ(0, STRING().get_last_char());
}

TEST_P(BOTH_WIDTHS, SearchesYieldTheLengthForNoMatch) {
    const STRING string = make("abcabcabc");
    EXPECT_EQ(1, string.find_char('b'));
    EXPECT_EQ(4, string.find_char('b', 2));
    EXPECT_EQ(9, string.find_char('x'));
    EXPECT_EQ(9, string.find_char(u'\u2062')) << "not the b with the same low byte";
    EXPECT_EQ(9, string.find_char('a', 9));
    EXPECT_EQ(0, string.find_char('a', -5));
    EXPECT_EQ(8, string.find_char_reverse('c'));
    EXPECT_EQ(5, string.find_char_reverse('c', 7));
    EXPECT_EQ(9, string.find_char_reverse('c', 1));
    EXPECT_EQ(9, string.find_char_reverse('c', 9)) << "a start beyond the end";
    EXPECT_EQ(1, string.find_chars("xcb"));
    EXPECT_EQ(2, string.find_chars(u"xc"));
    EXPECT_EQ(9, string.find_chars(""));
    EXPECT_EQ(7, string.find_chars_reverse("ab"));
    EXPECT_EQ(3, string.find_nth_char('a', 2));
    EXPECT_EQ(6, string.find_nth_char('a', 2, 1));
    EXPECT_EQ(9, string.find_nth_char('a', 4));
    EXPECT_EQ(9, string.find_nth_char('a', 0));
    EXPECT_EQ(9, string.find_nth_char('a', INT32_MIN));
    EXPECT_EQ(0, string.find_nth_char_reverse('a', 3));
    EXPECT_EQ(2, string.skip_chars("ab"));
    EXPECT_EQ(0, string.skip_chars("")) << "nothing to skip";
    EXPECT_EQ(9, string.skip_chars("abc"));
    EXPECT_EQ(6, string.skip_chars_reverse(u"bc"));
    EXPECT_EQ(9, STRING().find_char('a') + 9);
}

TEST_P(BOTH_WIDTHS, FindsText) {
    const STRING string = make("The theatre, THE end");
    EXPECT_EQ(4, string.find_string("the"));
    EXPECT_EQ(20, string.find_string("the", 5));
    EXPECT_EQ(13, string.find_string("the", 5, CASE_MODE::INSENSITIVE));
    EXPECT_EQ(0, string.find_string(make("THE"), 0, CASE_MODE::INSENSITIVE));
    EXPECT_EQ(20, string.find_string(""));
    EXPECT_EQ(20, string.find_string("the", 20));
    EXPECT_EQ(17, string.find_string("end"));
    EXPECT_EQ(20, string.find_string("ending"));
    EXPECT_TRUE(string.contains(u"atre"));
    EXPECT_FALSE(string.contains("ATRE"));
    EXPECT_TRUE(string.contains("ATRE", CASE_MODE::INSENSITIVE));
    EXPECT_FALSE(STRING().contains("")) << "an empty pattern is found nowhere";
    EXPECT_EQ(2, make("aaab").find_string("ab"));
}

TEST_P(BOTH_WIDTHS, ComparesOverAllWidths) {
    const STRING abc = make("abc");
    EXPECT_TRUE(abc.equals("abc") && abc.equals(u"abc") && abc.equals(STRING(u"abc")));
    EXPECT_TRUE(abc.equals("abc"_str) && abc.equals(abc) && abc == "abc");
    EXPECT_FALSE(abc.equals("ab") || abc.equals(u"abcd") || abc.equals(STRING()));
    EXPECT_TRUE(make("\xE9").equals(u"\u00E9")) << "widening zero-extends";
    EXPECT_LT(abc.compare("abd"), 0);
    EXPECT_GT(abc.compare(u"abb"), 0);
    EXPECT_LT(abc.compare("abcd"), 0);
    EXPECT_LT(abc.compare(u"\u0430"), 0);
    EXPECT_GT(abc.compare("ABC"), 0);
    EXPECT_EQ(0, abc.compare("ABC", CASE_MODE::INSENSITIVE));
    EXPECT_EQ(0, abc.compare(u"aBc", CASE_MODE::INSENSITIVE));
    EXPECT_LT(abc.compare("ABD", CASE_MODE::INSENSITIVE), 0);
    EXPECT_GT(make("\xFF").compare("a"), 0) << "bytes are unsigned";
    EXPECT_TRUE(STRING().equals("") && STRING().compare("a") < 0 && make("a") < make("b"));
}

TEST_P(BOTH_WIDTHS, EditsYieldNewStrings) {
    const STRING string = make("abcde");
    EXPECT_EQ(u"abcdeXY", text_of(string.add("XY")));
    EXPECT_EQ(u"abcde!", text_of(string.add(u'!')));
    EXPECT_EQ(u"abXcde", text_of(string.insert(2, "X")));
    EXPECT_EQ(u"Xabcde", text_of(string.insert(-3, 'X')));
    EXPECT_EQ(u"abcdeX", text_of(string.insert(99, u"X")));
    EXPECT_EQ(u"ae", text_of(string.delete_chars(1, 3)));
    EXPECT_EQ(u"de", text_of(string.delete_chars(-4, 2)));
    EXPECT_EQ(u"abc", text_of(string.delete_chars(3, 100)));
    EXPECT_EQ(u"", text_of(string.delete_chars(3, 2))) << "first beyond last";
    EXPECT_EQ(u"", text_of(string.delete_chars(0, 4)));
    EXPECT_EQ(u"abde", text_of(string.delete_char(2)));
    EXPECT_EQ(u"abcde", text_of(string.delete_char(5)));
    EXPECT_EQ(u"bcde", text_of(string.delete_first_char()));
    EXPECT_EQ(u"abcd", text_of(string.delete_last_char()));
    EXPECT_EQ(u"", text_of(STRING().delete_last_char()));
    EXPECT_EQ(u"aXcde", text_of(string.replace_chars('b', 'X')));
    EXPECT_EQ(u"ABCDE", text_of(string.to_upper()));
    EXPECT_EQ(u"abcde", text_of(string.to_upper().to_lower()));
    EXPECT_EQ(u"abcde", text_of(string)) << "the string itself stays";
}

TEST_P(BOTH_WIDTHS, CutsSubstrings) {
    const STRING string = make("abcde");
    EXPECT_EQ(u"cde", text_of(string.get_substring(2, 100)));
    EXPECT_EQ(u"", text_of(string.get_substring(5, 6)));
    EXPECT_EQ(u"", text_of(string.get_substring(-1, 3)));
    EXPECT_EQ(u"", text_of(string.get_substring(3, 2)));
    EXPECT_EQ(u"c", text_of(string.get_substring(2, 2)));
    EXPECT_EQ(u"ab", text_of(string.get_left(2)));
    EXPECT_EQ(u"de", text_of(string.get_right(2)));
    EXPECT_EQ(u"abcde", text_of(string.get_left(9)));
    EXPECT_EQ(u"abcde", text_of(string.get_right(9)));
    EXPECT_EQ(u"", text_of(string.get_right(0)));
    EXPECT_EQ(u"", text_of(string.get_left(-1)));
}

TEST_P(BOTH_WIDTHS, ReplacesWithoutRescanning) {
    EXPECT_EQ(u"aaaa", text_of(make("aa").replace_string("a", "aa")));
    EXPECT_EQ(u"bxb", text_of(make("aaxaa").replace_string(u"aa", "b")));
    EXPECT_EQ(u"ba", text_of(make("aaa").replace_string("aa", "b"))) << "left to right";
    EXPECT_EQ(u"", text_of(make("aaa").replace_string("a", "")));
    EXPECT_EQ(u"aaa", text_of(make("aaa").replace_string("", "x")));
    EXPECT_EQ(u"aaa", text_of(make("aaa").replace_string("A", "x")));
    EXPECT_EQ(u"x-x", text_of(make("Aa-aA").replace_string("aa", "x", CASE_MODE::INSENSITIVE)));
    const STRING same = make("aba");
    EXPECT_EQ(u"babab", text_of(same.replace_string("a", make("bab")).replace_string("bbb", "b")));
}

TEST_P(BOTH_WIDTHS, TrimsWhitespace) {
    const STRING string = make(" \ta b\n c \r\n");
    EXPECT_EQ(u"a b\n c \r\n", text_of(string.delete_leading_whitespace()));
    EXPECT_EQ(u" \ta b\n c", text_of(string.delete_trailing_whitespace()));
    EXPECT_EQ(u"abc", text_of(string.delete_whitespace()));
    EXPECT_TRUE(make(" \n").delete_leading_whitespace().is_empty());
    EXPECT_TRUE(make(" \n").delete_trailing_whitespace().is_empty());
    EXPECT_TRUE(make(" \n").delete_whitespace().is_empty());
}

TEST(String, UnicodeCaseAndWhitespaceOfBuffers) {
    EXPECT_EQ(u"\u00C9\u0141\u0424\u03A3", text_of(STRING(u"\u00E9\u0142\u0444\u03C2").to_upper()));
    EXPECT_EQ(u"\u00E9\u0142\u0444\u03C3", text_of(STRING(u"\u00C9\u0141\u0424\u03A3").to_lower()));
    EXPECT_EQ(0, STRING(u"\u0424\u03C2").compare(u"\u0444\u03C3", CASE_MODE::INSENSITIVE));
    EXPECT_EQ(u"\xC9", text_of("\xC9"_str.to_lower())) << "bytes go by the C library";
    EXPECT_EQ(2, STRING(u"\u00A0\u3000x").leading_whitespace_count());
    EXPECT_EQ(1, STRING(u"x\u0416y").find_string(u"\u0436Y", 0, CASE_MODE::INSENSITIVE));
}

TEST(String, AppendGrowsInPlaceAndTakesItsOwnText) {
    STRING string;
    string.append("ab");
    string.append(u"\u20AC");
    string.append('c');
    EXPECT_EQ(u"ab\u20ACc", text_of(string));
    const STRING before = string;
    string.append(string);
    EXPECT_EQ(u"ab\u20ACcab\u20ACc", text_of(string));
    string.append(KVCORE::TEXT_VIEW(string.get_16bit() + 6, 2));
    EXPECT_EQ(u"ab\u20ACcab\u20ACc\u20ACc", text_of(string));
    EXPECT_EQ(u"ab\u20ACc", text_of(before)) << "holders of the old text keep it";
    string.append("");
    STRING literal = "lit"_str;
    literal.append("eral");
    EXPECT_EQ(u"literal", text_of(literal));
}

TEST(String, FormatsIntoANewBuffer) {
    STRING string;
    string.format("%s has %d of %u (%5.1f%%)", "caf\xE9", -3, 7u, 42.25);
    EXPECT_EQ(u"caf\u00E9 has -3 of 7 ( 42.2%)", text_of(string));
    string.format(u"%S/%ls|%-4d|%04x", u"\u0142", u"wide", 12, 255);
    EXPECT_EQ(u"\u0142/wide|12  |00ff", text_of(string));
    const STRING format(u"<%s> \u2192 %d");
    string.format(&format, "x", 1);
    EXPECT_EQ(u"<x> \u2192 1", text_of(string));
    STRING self = "abc"_str;
    self.format("%s%s", self.get_8bit(), self.get_8bit());
    EXPECT_EQ(u"abcabc", text_of(self));
    string.format("%s", "");
    EXPECT_TRUE(string.is_empty());
}

TEST(String, ReadsNumbers) {
    EXPECT_EQ(16, "0x10"_str.get_value());
    EXPECT_EQ(10, "010"_str.get_value());
    EXPECT_EQ(-12, STRING(u" -12abc").get_value());
    EXPECT_EQ(-5000000000, "-5000000000"_str.get_big_value());
    EXPECT_DOUBLE_EQ(-2.5, STRING(u"-2.5x").get_real_value());
    EXPECT_TRUE(STRING(u"OK").get_boolean_value());
    EXPECT_TRUE("0x8"_str.is_hexadecimal_value() && "-8"_str.is_decimal_value());
    EXPECT_TRUE(".5"_str.is_real_value() && "off"_str.is_boolean_value());
}

TEST(String, HashIsThatOfTheUnits) {
    EXPECT_EQ(0x811C9DC5u, STRING().get_hash());
    EXPECT_EQ(0x050C5D7Eu, "a"_str.get_hash());
    EXPECT_EQ("a"_str.get_hash(), STRING(u"a").get_hash());
    EXPECT_NE("\xE9"_str.get_hash(), STRING("\xE9").get_hash());
}

TEST(String, ThreadsHoldAndDropCopiesOfOneString) {
    STRING shared(u"shared by all");
    std::vector<std::thread> threads;
    for (int t = 0; t < 4; ++t) {
        threads.emplace_back([own = shared, t] {
            for (int i = 0; i < 20000; ++i) {
                STRING copy = own;
                const STRING second = copy;
                if (i % 64 == t) {
                    copy.set_char(0, 'X');  // copies before it writes
                    EXPECT_EQ(u'X', copy.get_first_char());
                }
                ASSERT_EQ(u's', second.get_first_char());
            }
        });
    }
    shared.clear();
    for (std::thread& thread : threads) {
        thread.join();
    }
}

}  // namespace
