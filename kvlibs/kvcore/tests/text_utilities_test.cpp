// The character-level algorithms: numbers, hashes, copying, case, conversion, formats.
#include "kvcore/text_utilities.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cinttypes>
#include <cmath>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <string>

namespace {

using KVCORE::CASE_MODE;
using KVCORE::TEXT_UTILITIES;
using KVCORE::TEXT_VIEW;

std::u16string widened(const std::string& text) {
    std::u16string wide(text.size(), u'\0');
    TEXT_UTILITIES::move_block(wide.data(), text.data(), static_cast<std::int32_t>(text.size()));
    return wide;
}

struct NUMBER_CASE {
    const char* text;
    bool decimal;
    bool hexadecimal;
    bool real;
    bool boolean;
    bool truth;
    std::int64_t value;
};

TEST(TextUtilities, RecognisesNumbersInBothWidths) {
    const NUMBER_CASE cases[] = {
        {"", false, false, false, false, false, 0},
        {"0", true, false, true, true, false, 0},
        {"2", true, false, true, true, true, 2},
        {"-17", true, false, true, true, true, -17},
        {"-", false, false, false, false, false, 0},
        {"1-2", false, false, false, false, true, 1},
        {"--1", false, false, false, false, false, 0},
        {"+5", false, false, false, false, true, 5},
        {" 5", false, false, false, false, true, 5},
        {"010", true, false, true, true, true, 10},
        {"0x10", false, true, false, false, true, 16},
        {"0xfFg", false, false, false, false, true, 255},
        {"0x", false, false, false, false, false, 0},
        {"0X10", false, false, false, false, false, 0},
        {".5", false, false, true, false, false, 0},
        {"5.", false, false, true, false, true, 5},
        {"-.5", false, false, true, false, false, 0},
        {".", false, false, false, false, false, 0},
        {"1.2.3", false, false, false, false, true, 1},
        {"yes", false, false, false, true, true, 0},
        {"OK", false, false, false, true, true, 0},
        {"tRuE", false, false, false, true, true, 0},
        {"on", false, false, false, true, true, 0},
        {"off", false, false, false, true, false, 0},
        {"No", false, false, false, true, false, 0},
        {"false", false, false, false, true, false, 0},
        {"yess", false, false, false, false, false, 0},
        {"ye", false, false, false, false, false, 0},
    };
    for (const NUMBER_CASE& c : cases) {
        SCOPED_TRACE(c.text);
        const std::u16string wide = widened(c.text);
        for (const TEXT_VIEW text : {TEXT_VIEW(c.text), TEXT_VIEW(wide.c_str())}) {
            EXPECT_EQ(c.decimal, TEXT_UTILITIES::is_decimal_value(text));
            EXPECT_EQ(c.hexadecimal, TEXT_UTILITIES::is_hexadecimal_value(text));
            EXPECT_EQ(c.real, TEXT_UTILITIES::is_real_value(text));
            EXPECT_EQ(c.boolean, TEXT_UTILITIES::is_boolean_value(text));
            EXPECT_EQ(c.truth, TEXT_UTILITIES::convert_to_bool8(text));
            EXPECT_EQ(c.value, TEXT_UTILITIES::convert_to_s32(text));
            EXPECT_EQ(c.value, TEXT_UTILITIES::convert_to_s64(text));
        }
    }
}

TEST(TextUtilities, IntegersAgreeWithTheCLibraryAtTheirLimits) {
    for (const char* text :
         {"9223372036854775807", "9223372036854775808", "-9223372036854775808",
          "-9223372036854775809", "99999999999999999999999999999999999999999", "2147483647",
          "-2147483649", "\t\n\v\f\r 12", "000000000000000000000000000000000000000000007",
          "-000000000000000000000000000000000000000000007", "- 5", "+-5", "1234567890123x"}) {
        SCOPED_TRACE(text);
        const std::u16string wide = widened(text);
        const std::int64_t expected = std::strtoll(text, nullptr, 10);
        EXPECT_EQ(expected, TEXT_UTILITIES::convert_to_s64(text));
        EXPECT_EQ(expected, TEXT_UTILITIES::convert_to_s64(wide.c_str()));
        const std::int32_t clamped =
            static_cast<std::int32_t>(std::clamp<std::int64_t>(expected, INT32_MIN, INT32_MAX));
        EXPECT_EQ(clamped, TEXT_UTILITIES::convert_to_s32(text));
        EXPECT_EQ(clamped, TEXT_UTILITIES::convert_to_s32(wide.c_str()));
    }
    EXPECT_EQ(-1, TEXT_UTILITIES::convert_to_s32("0xFFFFFFFF"));
    EXPECT_EQ(0xFFFFFFFF, TEXT_UTILITIES::convert_to_s64("0xFFFFFFFF"));
    EXPECT_EQ(0x23456789ABCDEF01, TEXT_UTILITIES::convert_to_s64(u"0x123456789abcdef01"));
    EXPECT_EQ(12, TEXT_UTILITIES::convert_to_s32({"12345", 2})) << "no unit behind the length";
    EXPECT_EQ(0x12u, TEXT_UTILITIES::convert_hexadecimal_to_number("0x12345", 4));
    EXPECT_EQ(0u, TEXT_UTILITIES::convert_hexadecimal_to_number(u"0x"));
}

TEST(TextUtilities, RealsGoByTheCLocale) {
    EXPECT_DOUBLE_EQ(-1.5e3, TEXT_UTILITIES::convert_to_f64(" -1.5e3x"));
    EXPECT_DOUBLE_EQ(0.25, TEXT_UTILITIES::convert_to_f64(u"0.25\u00B5"));
    EXPECT_DOUBLE_EQ(31, TEXT_UTILITIES::convert_to_f64("0x1F"));
    EXPECT_DOUBLE_EQ(1.2, TEXT_UTILITIES::convert_to_f64({"1.25", 3}));
    EXPECT_DOUBLE_EQ(0, TEXT_UTILITIES::convert_to_f64(""));
}

TEST(TextUtilities, HashIsFnv1) {
    // The published vectors of the 32-bit FNV-1.
    EXPECT_EQ(0x811C9DC5u, TEXT_UTILITIES::get_hash(""));
    EXPECT_EQ(0x050C5D7Eu, TEXT_UTILITIES::get_hash("a"));
    EXPECT_EQ(0x31F0B262u, TEXT_UTILITIES::get_hash("foobar"));
    EXPECT_EQ(0x31F0B262u, TEXT_UTILITIES::get_hash(u"foobar"));
    EXPECT_EQ(0x31F0B262u, TEXT_UTILITIES::get_hash("foobarbaz", 6));
    const std::uint32_t signed_byte = (0x811C9DC5u * 16777619u) ^ 0xFFFFFFE9u;
    EXPECT_EQ(signed_byte, TEXT_UTILITIES::get_hash("\xE9"));
    EXPECT_EQ(signed_byte ^ 0xFFFFFF00u, TEXT_UTILITIES::get_hash(u"\u00E9"));
}

TEST(TextUtilities, CopiesOverlappingRanges) {
    char narrow[16] = "abcdef";
    EXPECT_EQ(6, TEXT_UTILITIES::copy(narrow + 2, narrow));
    EXPECT_STREQ("ababcdef", narrow);
    TEXT_UTILITIES::copy(narrow, narrow + 2, 4);
    EXPECT_STREQ("abcd", narrow);
    TEXT_UTILITIES::move_block(narrow, u"\u0158", 1);
    EXPECT_STREQ("Xbcd", narrow) << "low byte, no terminator";

    // In place: widening goes backwards, narrowing forwards.
    alignas(char16_t) char room[64] = "caf\xE9 in place";
    auto* wide = reinterpret_cast<char16_t*>(room);
    EXPECT_EQ(13, TEXT_UTILITIES::copy(wide, room));
    EXPECT_EQ(std::u16string(u"caf\u00E9 in place"), wide);
    EXPECT_EQ(13, TEXT_UTILITIES::copy(room, wide));
    EXPECT_STREQ("caf\xE9 in place", room);
    EXPECT_EQ(2, TEXT_UTILITIES::swap_char(room, -1, u' ', u'_'));
    EXPECT_STREQ("caf\xE9_in_place", room);
    EXPECT_TRUE(TEXT_UTILITIES::is_equal_zero_terminated_sensitive(room, u"caf\u00E9_in_place"));
    EXPECT_FALSE(TEXT_UTILITIES::is_equal_zero_terminated_sensitive("ab", u"abc"));
    TEXT_UTILITIES::clear_text(room);
    EXPECT_EQ(0, TEXT_UTILITIES::get_text_length(room));
    EXPECT_EQ(0, TEXT_UTILITIES::get_text_length(static_cast<const char16_t*>(nullptr)));
}

TEST(TextUtilities, ClassesAndCaseOfUnits) {
    EXPECT_TRUE(TEXT_UTILITIES::is_alphabetic(u'\u0416') && TEXT_UTILITIES::is_upper(u'\u0416'));
    EXPECT_TRUE(TEXT_UTILITIES::is_alphabetic(u'\u5B57') && !TEXT_UTILITIES::is_upper(u'\u5B57'));
    EXPECT_TRUE(TEXT_UTILITIES::is_digit(u'\u0663') && TEXT_UTILITIES::is_alphanumeric(u'\u0663'));
    EXPECT_TRUE(TEXT_UTILITIES::is_whitespace(u'\u2003') &&
                !TEXT_UTILITIES::is_whitespace(u'\u200B'));
    EXPECT_TRUE(TEXT_UTILITIES::is_punctuation(u'\u00BF') && TEXT_UTILITIES::is_control(u'\u0085'));
    EXPECT_TRUE(TEXT_UTILITIES::is_lower(u'\u00DF') && !TEXT_UTILITIES::is_alphabetic(u'\u00D7'));
    EXPECT_FALSE(TEXT_UTILITIES::is_alphabetic(u'\xD800') || TEXT_UTILITIES::is_digit(u'\xDFFF'));
    EXPECT_FALSE(TEXT_UTILITIES::is_alphabetic('\xE9') || TEXT_UTILITIES::is_upper('\xC9'));
    EXPECT_EQ(u'\u00DF', TEXT_UTILITIES::to_upper(u'\u00DF')) << "no unit for it";
    EXPECT_EQ(u'\u0178', TEXT_UTILITIES::to_upper(u'\u00FF'));
    EXPECT_EQ(u'i', TEXT_UTILITIES::to_lower(u'\u0130'));
    EXPECT_EQ(u'\u1F88', TEXT_UTILITIES::to_upper(u'\u1F80'));
    EXPECT_EQ(u'\u0101', TEXT_UTILITIES::to_lower(u'\u0100'));
    EXPECT_EQ(u'\u0101', TEXT_UTILITIES::to_lower(u'\u0101')) << "every second unit of a run";
    EXPECT_EQ(TEXT_UTILITIES::fold_case(u'\u03C2'), TEXT_UTILITIES::fold_case(u'\u03A3'));
    EXPECT_EQ(u'k', TEXT_UTILITIES::fold_case(u'\u212A'));
    for (unsigned u = 0; u < 0x80; ++u) {
        const auto unit = static_cast<char16_t>(u);
        const auto byte = static_cast<char>(u);
        EXPECT_EQ(TEXT_UTILITIES::is_alphabetic(byte), TEXT_UTILITIES::is_alphabetic(unit));
        EXPECT_EQ(TEXT_UTILITIES::is_digit(byte), TEXT_UTILITIES::is_digit(unit));
        EXPECT_EQ(TEXT_UTILITIES::is_upper(byte), TEXT_UTILITIES::is_upper(unit));
        EXPECT_EQ(TEXT_UTILITIES::is_lower(byte), TEXT_UTILITIES::is_lower(unit));
        EXPECT_EQ(TEXT_UTILITIES::is_whitespace(byte), TEXT_UTILITIES::is_whitespace(unit));
        EXPECT_EQ(TEXT_UTILITIES::is_control(byte), TEXT_UTILITIES::is_control(unit));
    }
}

// Whoever has an upper form folds with it, over the whole plane.
TEST(TextUtilities, CaseTablesAgreeWithEachOther) {
    int pairs = 0;
    for (unsigned u = 0; u < 0x10000; ++u) {
        const auto unit = static_cast<char16_t>(u);
        const char16_t lower = TEXT_UTILITIES::to_lower(unit);
        if (lower != unit && u != 0x130) {
            ++pairs;
            ASSERT_EQ(TEXT_UTILITIES::fold_case(lower), TEXT_UTILITIES::fold_case(unit)) << u;
            ASSERT_FALSE(TEXT_UTILITIES::is_lower(unit)) << u;
        }
        const char16_t folded = TEXT_UTILITIES::fold_case(unit);
        ASSERT_EQ(folded, TEXT_UTILITIES::fold_case(folded)) << u;
    }
    EXPECT_GT(pairs, 1000);
}

TEST(TextUtilities, ComparesWithLimitAndOptions) {
    EXPECT_EQ(0, TEXT_UTILITIES::compare_string(u"abcX", u"abcY", 3));
    EXPECT_EQ(-1, TEXT_UTILITIES::compare_string(u"abcX", u"abcY", -1));
    EXPECT_EQ(1, TEXT_UTILITIES::compare_string(u"abcd", u"abc", -1));
    EXPECT_EQ(0, TEXT_UTILITIES::compare_string(u"abcd", u"abce", -1, 3, 3));
    EXPECT_EQ(0, TEXT_UTILITIES::compare_string(u"\u00C9B", u"\u00E9b", -1, -1, -1,
                                                TEXT_UTILITIES::CASE_INSENSITIVE));
    EXPECT_EQ(0x7FFFFFFF, TEXT_UTILITIES::compare_string(nullptr, u"a", -1));
    EXPECT_EQ(0, TEXT_UTILITIES::compare("\xC9", u"\u00E9", CASE_MODE::INSENSITIVE));
    EXPECT_NE(0, TEXT_UTILITIES::compare("\xC9", "\xE9", CASE_MODE::INSENSITIVE));
}

TEST(TextUtilities, ConvertsMacRomanAndUtf8) {
    char16_t units[16] = {};
    EXPECT_EQ(5, TEXT_UTILITIES::to_unicode("A\x80\xDB\xF0\xFF", -1, units, 16));
    EXPECT_EQ(std::u16string(u"A\u00C4\u20AC\uF8FF\u02C7"), units);
    EXPECT_EQ(2, TEXT_UTILITIES::to_unicode("abc", -1, units, 2));

    const std::string utf8 = "a\u00E9\u20AC\U0001F3C6";
    const std::int32_t count = TEXT_UTILITIES::from_utf8(utf8.c_str(), -1, units, 16);
    EXPECT_EQ(std::u16string(u"a\u00E9\u20AC\U0001F3C6"),
              std::u16string(units, static_cast<std::size_t>(count)));
    EXPECT_EQ(utf8, TEXT_UTILITIES::to_utf8(units, count));
    EXPECT_EQ(3, TEXT_UTILITIES::from_utf8(utf8.c_str(), -1, units, 4))
        << "a pair isn't cut in two";
    EXPECT_EQ("\xEF\xBF\xBDx", TEXT_UTILITIES::to_utf8(u"\xDC00x"));
    for (const char* bad : {"\xC0\x80", "\xED\xA0\x80", "\xE2\x82", "\xF5\x80", "\x80"}) {
        const std::int32_t length = TEXT_UTILITIES::from_utf8(bad, -1, units, 16);
        EXPECT_EQ(TEXT_UTILITIES::get_text_length(bad), length);
        EXPECT_EQ(0xFFFD, units[0]);
    }
}

std::string formatted(const char* format, ...) __attribute__((format(printf, 1, 2)));
std::string formatted(const char* format, ...) {
    char out[256];
    va_list arguments;
    va_start(arguments, format);
    const std::int32_t length =
        TEXT_UTILITIES::format_arguments(out, sizeof out, format, arguments);
    va_end(arguments);
    EXPECT_EQ(static_cast<std::size_t>(length), std::strlen(out));
    return out;
}

template <typename... ARGUMENTS>
void expect_as_printf(const char* format, ARGUMENTS... arguments) {
    char expected[1024];
    char found[1024];
    std::snprintf(expected, sizeof expected, format, arguments...);
    const std::u16string wide = widened(format);
    TEXT_UTILITIES::format(found, sizeof found, wide.c_str(), arguments...);
    EXPECT_STREQ(expected, found) << format;
}

TEST(TextFormat, PrintsAsTheCLibraryDoes) {
    expect_as_printf("%d|%5d|%-5d|%05d|%+d|% d|%.3d|%5.0d|", 1, 2, 3, 4, 5, 6, 7, 0);
    expect_as_printf("%hhd %hd %ld %lld %jd %td", 300, 70000, -5L, -6LL, std::intmax_t{7},
                     std::ptrdiff_t{-8});
    expect_as_printf("%hhu %hu %lu %llu %ju %zu", 300u, 70000u, 5ul, 6ull, std::uintmax_t{7},
                     std::size_t{8});
    expect_as_printf("%x %X %#x %o %#o %08x %-8x|", 255u, 255u, 255u, 8u, 8u, 255u, 255u);
    expect_as_printf("%f %.2f %8.3f %e %g %G %a %+.0f %02.2lf", 1.5, 2.345, 3.14159, 1e10, 1e-10,
                     1e20, 1.0, 2.5, 5.5);
    expect_as_printf("%Lf %f %f", 1.25L, HUGE_VAL, -0.0);
    expect_as_printf("%s|%8s|%-8s|%.2s|%8.3s|%c|%3c|%-3c|%%", "abc", "de", "fg", "hijk", "lmnop",
                     'q', 'r', 's');
    expect_as_printf("%*d|%-*d|%*d|%.*f|%.*s|", 5, 1, 5, 2, -5, 3, 1, 2.55, 2, "xyz");
    expect_as_printf("%p", reinterpret_cast<void*>(0x1234));
    expect_as_printf("%.600f", 1.0 / 3);
    EXPECT_EQ("-1 4294967295", formatted("%" PRId32 " %" PRIu32, -1, 0xFFFFFFFFu));
    EXPECT_EQ("2:05.50 ", formatted("%d:%05.2lf ", 2, 5.5));
}

TEST(TextFormat, TakesWideTextAndOddFormats) {
    char16_t out[64];
    TEXT_UTILITIES::format(out, 64, u"%S|%4ls|%-3C|%lc|%.1S|%s", u"\u0142", u"\u20AC",
                           static_cast<int>(u'\u0416'), static_cast<int>(u'\u0436'), u"\u2192x",
                           "caf\xE9");
    EXPECT_EQ(std::u16string(u"\u0142|   \u20AC|\u0416  |\u0436|\u2192|caf\u00E9"), out);
    int untouched = 5;
    TEXT_UTILITIES::format(out, 64, u"a%nb%s%S", &untouched, nullptr, nullptr);
    EXPECT_EQ(std::u16string(u"ab(null)(null)"), out);
    EXPECT_EQ(5, untouched) << "a format writes nothing but the result";
    TEXT_UTILITIES::format(out, 64, u"100%! %y %", 0);
    EXPECT_EQ(std::u16string(u"100%! %y %"), out);
    const char unterminated[3] = {'a', 'b', 'c'};
    TEXT_UTILITIES::format(out, 64, u"%.3s", unterminated);
    EXPECT_EQ(std::u16string(u"abc"), out);
}

TEST(TextFormat, CutsAtTheRoomAndAtTheLimits) {
    char small[4];
    EXPECT_EQ(3, TEXT_UTILITIES::format(small, 4, "%s", "abcdef"));
    EXPECT_STREQ("abc", small);
    EXPECT_EQ(0, TEXT_UTILITIES::format(small, 1, "%s", "abcdef"));
    EXPECT_EQ(0, TEXT_UTILITIES::format(small, 0, "x"));
    std::int32_t length = 0;
    std::unique_ptr<char16_t[]> text(TEXT_UTILITIES::format_new(length, u"%2000000000d", 7));
    EXPECT_EQ(65536, length);
    text.reset(TEXT_UTILITIES::format_new(length, "%d\xE9", 7));
    EXPECT_EQ(std::u16string(u"7\u00E9"), text.get());
    EXPECT_EQ(2, length);
    const std::unique_ptr<char[]> narrow(TEXT_UTILITIES::format_new_c8(length, "%s-%d", "x", 1));
    EXPECT_STREQ("x-1", narrow.get());
}

}  // namespace
