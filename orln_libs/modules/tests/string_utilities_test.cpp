// The words and numbers that a user sees, and the values that controls hold.
#include "modules/gui/string_utilities.h"

#include <gtest/gtest.h>

#include <climits>
#include <cmath>
#include <cstdlib>
#include <string>

#include "modules/gui/parameter.h"
#include "platform/colour.h"
#include "platform/temp_strings.h"

namespace {

using TEXTS = STRING_UTILITIES;

class StringUtilities : public testing::Test {
protected:
    TEMP_STRINGS temp;
};

TEST_F(StringUtilities, RoundsToTheStepOfTheSize) {
    struct {
        std::int32_t value, rounded, step;
    } const CASES[] = {
        {0, 0, 1},
        {7, 7, 1},
        {-9, -9, 1},
        {15, 20, 10},
        {-15, -20, 10},
        {149, 100, 100},
        {2499, 2500, 250},
        {2500, 2500, 500},
        {2750, 3000, 500},
        {10000, 10000, 2000},
        {12999, 12000, 2000},
        {-13000, -14000, 2000},
        {99999, 100000, 5000},
        {1000000, 1000000, 100000},
        {100000000, 100000000, 10000000},
        {INT32_MAX, INT32_MAX, 10000000},
        {INT32_MIN, INT32_MIN, 10000000},
    };
    for (const auto& [value, rounded, step] : CASES) {
        std::int32_t used = 0;
        EXPECT_EQ(rounded, TEXTS::get_rounded_number(value, used)) << value;
        EXPECT_EQ(step, used) << value;
        EXPECT_EQ(rounded, TEXTS::get_rounded_cash(value));
    }
}

TEST_F(StringUtilities, NumbersInShortFormWithCommasAndAsMoney) {
    struct {
        std::int32_t value;
        const char* short_form;
        const char* commas;
    } const CASES[] = {
        {0, "0k", "0"},
        {500, "0.5k", "500"},
        {1500, "1.5k", "1,500"},
        {-1500, "-1.5k", "-1,500"},
        {20000, "20k", "20,000"},
        {100000, "100k", "100,000"},
        {250499, "250k", "250,499"},
        {999999, "1000k", "999,999"},
        {1500000, "1.5M", "1,500,000"},
        {1234567890, "1234.57M", "1,234,567,890"},
        {INT32_MIN, "-2147.48M", "-2,147,483,648"},
    };
    for (const auto& [value, short_form, commas] : CASES) {
        EXPECT_STREQ(short_form, TEXTS::get_formatted_numeric_text(value, 1, temp));
        EXPECT_STREQ(commas, TEXTS::get_formatted_numeric_text(value, 2, temp));
    }
    EXPECT_STREQ("\xA3-1,500", TEXTS::get_cash_text(-1500, 0, temp));
    EXPECT_STREQ("<:qvl_token#> 250k", TEXTS::get_tokens_text(250000, 1, temp));
}

TEST_F(StringUtilities, OrderTexts) {
    struct {
        std::int32_t value;
        const char* text;
    } const CASES[] = {{0, ""},      {1, "1st"},     {2, "2nd"},        {3, "3rd"},
                       {4, "4th"},   {11, "11th"},   {12, "12th"},      {13, "13th"},
                       {21, "21st"}, {111, "111th"}, {1002, "1,002nd"}, {1013, "1,013th"}};
    for (const auto& [value, text] : CASES) {
        EXPECT_STREQ(text, TEXTS::get_order_text(value, temp));
    }
}

TEST_F(StringUtilities, NumbersInWords) {
    struct {
        unsigned value;
        const char* text;
    } const CASES[] = {
        {0, "zero"},
        {19, "nineteen"},
        {20, "twenty"},
        {99, "ninety-nine"},
        {100, "one hundred"},
        {101, "one hundred and one"},
        {1000, "one thousand"},
        {1001, "one thousand and one"},
        {1100, "one thousand one hundred"},
        {40542, "forty thousand five hundred and forty-two"},
        {99999, "ninety-nine thousand nine hundred and ninety-nine"},
    };
    for (const auto& [value, text] : CASES) {
        EXPECT_STREQ(text,
                     TEXTS::get_number_text(static_cast<unsigned long long>(value), temp, 0, 1));
    }
    EXPECT_STREQ("Twelve", TEXTS::get_number_text(12LL, temp, 1, 1));
    EXPECT_STREQ("100000", TEXTS::get_number_text(100000LL, temp, 1, 1));
    EXPECT_STREQ("-5", TEXTS::get_number_text(-5LL, temp, 0, 1));
    EXPECT_STREQ("18446744073709551615", TEXTS::get_number_text(ULLONG_MAX, temp, 1, 0));
}

TEST_F(StringUtilities, DurationsInTheirLargestUnit) {
    struct {
        double days;
        signed char unit;
        const char* text;
        signed char reported;
    } const CASES[] = {
        {-1, 0, "", 0},          {0, 0, "a day", 1},       {1.9, 0, "a day", 1},
        {6.9, 0, "6 days", 1},   {7, 0, "a week", 2},      {10.5, 0, "2 weeks", 2},
        {29, 0, "4 weeks", 2},   {30, 0, "a month", 3},    {44.9, 0, "a month", 3},
        {45, 0, "2 months", 3},  {719, 0, "24 months", 3}, {720, 0, "2 years", 4},
        {400, 1, "400 days", 1}, {10, 4, "a year", 4},     {std::nan(""), 0, "", 0},
        {3, 9, "", 9},
    };
    for (const auto& [days, unit, text, reported] : CASES) {
        signed char used = unit;
        EXPECT_STREQ(text, TEXTS::get_days_as_rounded_text(days, used, 0, temp, 1, 0)) << days;
        EXPECT_EQ(reported, used) << days;
    }
    signed char unit = 0;
    EXPECT_STREQ("5 hours", TEXTS::get_days_as_rounded_text(5.0 / 24, unit, 0, temp, 1, 1));
    EXPECT_STREQ("an hour", TEXTS::get_days_as_rounded_text(0.01, unit = 0, 0, temp, 1, 1));
    EXPECT_STREQ("1 week", TEXTS::get_days_as_rounded_text(7, unit = 0, 1, temp, 1, 0));
    EXPECT_STREQ("24", TEXTS::get_days_as_rounded_text(719, unit = 0, 0, temp, 0, 0));
    EXPECT_STRNE("", TEXTS::get_days_as_rounded_text(1e300, unit = 0, 0, temp, 1, 0));

    EXPECT_TRUE(TEXTS::get_times_are_too_similar(28, 30));
    EXPECT_TRUE(TEXTS::get_times_are_too_similar(6, 7));
    EXPECT_TRUE(TEXTS::get_times_are_too_similar(5, 5));
    EXPECT_FALSE(TEXTS::get_times_are_too_similar(3, 5));
    EXPECT_FALSE(TEXTS::get_times_are_too_similar(360, 730));
    EXPECT_FALSE(TEXTS::get_times_are_too_similar(-1, 5));
    EXPECT_FALSE(TEXTS::get_times_are_too_similar(20, 30));
}

TEST_F(StringUtilities, SecondsAsATime) {
    constexpr std::int32_t HOUR = 3600;
    constexpr std::int32_t DAY = 24 * HOUR;
    struct {
        std::int32_t seconds;
        const char* text;
    } const CASES[] = {
        {-5, "less than one minute"},
        {59, "less than one minute"},
        {60, "one minute"},
        {150, "2 minutes"},
        {HOUR, "one hour"},
        {HOUR + 60, "one hour and one minute"},
        {2 * HOUR + 180, "2 hours and 3 minutes"},
        {50 * HOUR, "50 hours"},
        {3 * DAY - 1, "71 hours and 59 minutes"},
        {3 * DAY, "3 days"},
        {3 * DAY + 60, "3 days and one minute"},
        {3 * DAY + HOUR, "3 days and one hour"},
        {4 * DAY + HOUR + 120, "4 days, one hour and 2 minutes"},
        {4 * DAY + 5 * HOUR + 60, "4 days, 5 hours and one minute"},
    };
    for (const auto& [seconds, text] : CASES) {
        EXPECT_STREQ(text, TEXTS::get_seconds_time_text(seconds, temp, 0));
    }
    EXPECT_STREQ("Less than one minute", TEXTS::get_seconds_time_text(0, temp, 1));
}

TEST_F(StringUtilities, SecondsAgo) {
    constexpr std::int32_t DAY = 86400;
    struct {
        std::int32_t seconds;
        const char* text;
    } const CASES[] = {
        {59, "a few moments ago"},
        {60, "a minute ago"},
        {599, "9 minutes ago"},
        {600, "about 10 minutes ago"},
        {3599, "about 55 minutes ago"},
        {3700, "just over an hour ago"},
        {4500, "nearly 2 hours ago"},
        {7200, "just over 2 hours ago"},
        {DAY, "just over a day ago"},
        {DAY + 21600, "nearly 2 days ago"},
        {7 * DAY, "just over a week ago"},
        {20 * DAY, "nearly 3 weeks ago"},
        {30 * DAY, "just over a month ago"},
        {92 * DAY, "just over 3 months ago"},
        {100 * DAY, "nearly 4 months ago"},
        {180 * DAY, "just over 6 months ago"},
        {360 * 30 * DAY, "never"},
        {INT32_MAX, "never"},
    };
    for (const auto& [seconds, text] : CASES) {
        EXPECT_STREQ(text, TEXTS::get_seconds_ago_text(seconds, temp, 0));
    }
    EXPECT_STREQ("About 20 minutes ago", TEXTS::get_seconds_ago_text(1201, temp, 1));
}

TEST_F(StringUtilities, PlainTextOperations) {
    EXPECT_EQ(2, TEXTS::find_char("abcabc", 'c', -7));
    EXPECT_EQ(5, TEXTS::find_char("abcabc", 'c', 3));
    EXPECT_EQ(6, TEXTS::find_char("abcabc", 'x', 0));
    EXPECT_EQ(6, TEXTS::find_char("abcabc", 'a', 99));
    EXPECT_EQ(2, TEXTS::get_char_count("abcabc", 'b'));
    EXPECT_STREQ("bc", TEXTS::get_substring("abcd", 1, 2, temp));
    EXPECT_STREQ("cd", TEXTS::get_substring("abcd", 2, INT32_MAX, temp));
    EXPECT_STREQ("", TEXTS::get_substring("abcd", -1, 2, temp));
    EXPECT_STREQ("", TEXTS::get_substring("abcd", 3, 2, temp));
    EXPECT_STREQ("", TEXTS::get_substring("", 0, 0, temp));
    const std::string large(10000, 'x');
    EXPECT_EQ(large, TEXTS::get_substring(large.c_str(), 0, 9999, temp));

    char text[64] = "a-b--c";
    EXPECT_EQ(3, TEXTS::remove_char_occurence(text, '-'));
    EXPECT_STREQ("abc", text);
    TEXTS::sprintf_cat(text, " %d%s", 7, "!");
    EXPECT_STREQ("abc 7!", text);
    TEXTS::replace_string(text, "b", "bbb");
    EXPECT_STREQ("abbbc 7!", text);
    TEXTS::replace_string(text, "bb", "");
    EXPECT_STREQ("abc 7!", text);
    TEXTS::replace_string(text, "", "x");
    EXPECT_STREQ("abc 7!", text);
    EXPECT_EQ(4095u, std::string(TEXTS::get_formatted_text("%5000d", 1)).size());
    EXPECT_STREQ("Invisible", TEXTS::get_colour_text(COLOUR(0x00FFFFFF), temp));
    EXPECT_STREQ("1,2,255", TEXTS::get_colour_text(COLOUR(0x800102FF), temp));
}

TEST_F(StringUtilities, ScrambledTextComesBack) {
    std::string text;
    for (int c = 255; c > 255 - 85; --c) {
        text += static_cast<char>(c);
    }
    const std::string scrambled = TEXTS::get_encrypted_text(text.c_str(), "key", temp);
    EXPECT_EQ(85u * 3, scrambled.size());
    EXPECT_EQ(text, TEXTS::get_decrypted_text(scrambled.c_str(), "key", temp));
    EXPECT_EQ(scrambled, TEXTS::get_encrypted_text((text + "more").c_str(), "key", temp));
    // The key's bytes sum up to 0x49.
    EXPECT_STREQ("08 2B ", TEXTS::get_encrypted_text("Ab", "key", temp));
    EXPECT_STREQ("", TEXTS::get_encrypted_text(nullptr, "key", temp));
    EXPECT_STREQ("", TEXTS::get_decrypted_text("08", nullptr, temp));
    EXPECT_STREQ("", TEXTS::get_decrypted_text("no digits", "key", temp));
}

TEST_F(StringUtilities, ListsAreSortedWithoutRepetitions) {
    EXPECT_STREQ("A,b,C", TEXTS::get_sorted_item_list("b; A,a,,C", temp));
    EXPECT_STREQ("x y", TEXTS::get_sorted_item_list(" \t x y \n;; , ", temp));
    EXPECT_STREQ("", TEXTS::get_sorted_item_list("", temp));
    // What the buffer can't take is left out.
    std::string list;
    for (int i = 100; i < 300; ++i) {
        list.append(std::to_string(i)).append(";");
    }
    const std::string sorted = TEXTS::get_sorted_item_list(list.c_str(), temp);
    EXPECT_EQ(51u * 4 - 1, sorted.size());
    EXPECT_EQ(255u,
              std::string(TEXTS::get_sorted_item_list(std::string(999, 'a').c_str(), temp)).size());
}

TEST(Parameter, KeepsNumbersWithinTheirLimits) {
    PARAMETER value(PARAMETER::TYPE_LONG);
    value.set(value.max, 10);
    value.set(value.value, 20);
    EXPECT_EQ(10, value.get_long(value.value));
    value.set(value.value, -3.9);
    EXPECT_EQ(0, value.get_long(value.value));
    value.set(value.value, "7 apples");
    EXPECT_EQ(7, value.get_long(value.value));
    value.set(value.max, 5);
    EXPECT_EQ(5, value.get_long(value.value));

    PARAMETER fraction(PARAMETER::TYPE_FLOAT);
    fraction.set(fraction.max, 100.0);
    fraction.set(fraction.value, 2.75);
    EXPECT_EQ(2, fraction.get_long(fraction.value));
    char text[8];
    fraction.get_str(fraction.value, text, sizeof text);
    EXPECT_STREQ("2.75", text);
    fraction.get_str(fraction.value, text, 3);
    EXPECT_STREQ("2.", text);

    PARAMETER small(PARAMETER::TYPE_CHAR);
    small.set(small.max, 127);
    small.set(small.value, 100000);
    EXPECT_EQ(127, small.get_long(small.value));
    small.set(small.value, "A");
    small.get_str(small.value, text, sizeof text);
    EXPECT_STREQ("A", text);
}

TEST(Parameter, StringsTakeEveryKindOfValue) {
    PARAMETER text("12.5x");
    EXPECT_EQ(12, text.get_long(text.value));
    EXPECT_EQ(12.5, text.get_double(text.value));
    EXPECT_EQ(5, text.get_str_length());
    text.set(text.value, INT32_MIN);
    EXPECT_STREQ("-2147483648", text.value.string_value);
    text.set(text.value, 1.005e10);
    EXPECT_STREQ("10050000000.00", text.value.string_value);
    text.set(text.value, 1e300);
    EXPECT_EQ(49, text.get_str_length());
    EXPECT_EQ(INT32_MAX, text.get_long(text.value));

    int object = 0;
    text.set(text.value, static_cast<void*>(&object));
    EXPECT_EQ(&object, text.get_ptr(text.value));
    text.set(text.value, "word");
    EXPECT_EQ(0, text.get_long(text.value));
    text.set(text.value, static_cast<const char*>(text.value.string_value) + 1);
    EXPECT_STREQ("ord", text.value.string_value);

    PARAMETER copy(text);
    text.set(text.value, static_cast<const char*>(nullptr));
    EXPECT_STREQ("", text.value.string_value);
    EXPECT_STREQ("ord", copy.value.string_value);
    PARAMETER number;
    number = copy;
    copy = PARAMETER(PARAMETER::TYPE_POINTER);
    EXPECT_STREQ("ord", number.value.string_value);
    EXPECT_EQ(nullptr, copy.get_ptr(copy.value));
    EXPECT_EQ(0, copy.get_str_length());
}

}  // namespace
