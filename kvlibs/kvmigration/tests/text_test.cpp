// Text, lists of texts, numbers in text, the hash.
#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <string>

#include "kvmigration/array.h"
#include "kvmigration/hash.h"
#include "kvmigration/string.h"
#include "kvmigration/string_array.h"

namespace {

using KVMIGRATION::STRING;
using KVMIGRATION::STRING_ARRAY;

STRING_ARRAY make_array(std::initializer_list<const char*> texts) {
    STRING_ARRAY array;
    for (const char* text : texts) {
        array.add(text);
    }
    return array;
}

std::string join(const STRING_ARRAY& array) {
    std::string text;
    for (std::int32_t i = 0; i < array.get_count(); ++i) {
        text.append(*array[i]).append("|");
    }
    return text;
}

TEST(Text, FindsAndCuts) {
    const STRING text("abcabc");
    EXPECT_EQ(1, text.find_string("bc", false));
    EXPECT_EQ(4, text.find_string("bc", true));
    EXPECT_EQ(-1, text.find_string("x", false));
    EXPECT_EQ("bca", text.get_substring(1, 3));
    EXPECT_EQ("abcabc", text.get_substring(-5, 1000));
    EXPECT_EQ("", text.get_substring(3, 2));
    EXPECT_EQ("", text.get_substring(6, 9));
    EXPECT_EQ("", text.get_substring(-5, -1));
    EXPECT_EQ("", STRING(static_cast<const char*>(nullptr)));
    const STRING joined = "a" + STRING("b") + "c" + std::string("d") + (std::string("e") + text);
    EXPECT_EQ("abcdeabcabc", joined);
}

TEST(Text, ReadsNumbersFromTheFirstDigit) {
    struct {
        const char* text;
        std::int32_t value;
        float real;
    } const cases[] = {
        {"-5", 5, 5.0f},
        {".5", 5, 5.0f},
        {"-1.5", 1, 1.5f},
        {"x = 12.25e1;", 12, 122.5f},
        {"none", 0, 0.0f},
        {"", 0, 0.0f},
        {"0x10", 0, 16.0f},
        {"0x", 0, 0.0f},
        {"0x.8p1", 0, 1.0f},
        {"0xnan", 0, 0.0f},
        {"0x-5", 0, 0.0f},
        {"0x1p9999", 0, std::numeric_limits<float>::infinity()},
        {"0x1p-9999", 0, 0.0f},
        {"1e", 1, 1.0f},
        {"99999999999", std::numeric_limits<std::int32_t>::max(), 99999999999.0f},
        {"1e39", 1, std::numeric_limits<float>::infinity()},
        {"3.4028235e38", 3, std::numeric_limits<float>::max()},  // a little more, and the nearest
        {"1e999", 1, std::numeric_limits<float>::infinity()},
        {"1e-999", 1, 0.0f},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(c.value, STRING(c.text).get_value()) << c.text;
        EXPECT_EQ(c.real, STRING(c.text).get_real_value()) << c.text;
    }
    EXPECT_EQ(7, STRING("a\0b7", 4).get_value()) << "a zero is skipped like any other character";
}

TEST(Text, SplitsArrayForms) {
    STRING name;
    STRING index;
    EXPECT_TRUE(STRING("bones[12]").parse_array(name, index));
    EXPECT_EQ("bones", name);
    EXPECT_EQ("12", index);
    EXPECT_TRUE(STRING("[]").parse_array(name, index));
    EXPECT_EQ("", name + index);
    name = "kept";
    for (const char* other : {"bones", "bones[", "]bones[1]", ""}) {
        EXPECT_FALSE(STRING(other).parse_array(name, index)) << other;
    }
    EXPECT_EQ("kept", name);
    STRING self("x[y]");
    EXPECT_TRUE(self.parse_array(self, index));
    EXPECT_EQ("x", self);
    EXPECT_EQ("y", index);
}

TEST(Text, ChangesCaseFormatsAndLooksUp) {
    EXPECT_EQ("ab1\xE4", KVMIGRATION::tolower("Ab1\xE4"));
    EXPECT_EQ("AB1\xE4", KVMIGRATION::toupper("Ab1\xE4"));
    const std::string many(2000, 'x');
    EXPECT_EQ(1023u, KVMIGRATION::sprintf_to_string("%s", many.c_str()).size());
    EXPECT_EQ("a 5", KVMIGRATION::sprintf_to_string("%s %d", "a", 5));
    const char* const table[] = {"rain", "Snow", "sun"};
    EXPECT_EQ(1, KVMIGRATION::get_string_index(table, 3, "SNOW"));
    EXPECT_EQ(-1, KVMIGRATION::get_string_index(table, 2, "sun"));
}

TEST(Text, ComparesPaths) {
    EXPECT_EQ(3, KVMIGRATION::compare_paths("c:/Data/Mesh/a.kva", "data\\mesh"));
    EXPECT_EQ(0, KVMIGRATION::compare_paths("a", ""));
    EXPECT_EQ(-1, KVMIGRATION::compare_paths("", ""));
    EXPECT_EQ(-1, KVMIGRATION::compare_paths("abc", "abcd"));
    // The search goes on behind the mismatch, so that this occurrence is missed.
    EXPECT_EQ(-1, KVMIGRATION::compare_paths("aab", "ab"));
    EXPECT_EQ(3, KVMIGRATION::compare_paths("aaxab", "ab"));
}

TEST(Array, GrowsWithDefaults) {
    KVMIGRATION::ARRAY<int, long> numbers;
    numbers.set(7, 3);
    EXPECT_EQ(4, numbers.get_count());
    EXPECT_EQ(0, numbers[2]);
    EXPECT_EQ(7, numbers[3]);
    numbers.set(8, -1);
    EXPECT_EQ(4, numbers.get_count());
    EXPECT_EQ(4, numbers.add(9));

    STRING_ARRAY texts;
    texts.set("c", 2);
    texts.set("x", -3);
    EXPECT_EQ("||c|", join(texts));
}

TEST(Array, FindsAndReplacesRuns) {
    const STRING_ARRAY array = make_array({"a", "b", "a", "b", "c"});
    const STRING_ARRAY ab = make_array({"a", "b"});
    EXPECT_EQ(0, array.find(ab, 0, -1));
    EXPECT_EQ(2, array.find(ab, 1, -1));
    EXPECT_EQ(-1, array.find(ab, 1, 2)) << "the first entry lies below last";
    EXPECT_EQ(2, array.find(ab, 1, 3)) << "only the first entry has to";
    EXPECT_EQ(-1, array.find(make_array({"c", "d"}), 0, 1000));
    EXPECT_EQ(0, array.find(ab, -7, 1000));
    EXPECT_EQ(-1, array.find(STRING_ARRAY(), 0, -1));

    // Behind a match the search goes on by the pattern's length in the array that has shrunk.
    STRING_ARRAY runs = make_array({"a", "b", "a", "b", "a", "b"});
    EXPECT_TRUE(runs.find_and_replace(ab, "x"));
    EXPECT_EQ("x|a|b|x|", join(runs));
    EXPECT_FALSE(runs.find_and_replace(make_array({"z"}), "y"));
    EXPECT_FALSE(runs.find_and_replace(STRING_ARRAY(), "y")) << "and it ends";
}

TEST(Hash, IsTheOneOfTheStoredFiles) {
    EXPECT_EQ(0x1AA23u, KVMIGRATION::get_hash("abc", 3));
    EXPECT_EQ(0xE4u, KVMIGRATION::get_hash("\xE4", 1));
    EXPECT_EQ(0u, KVMIGRATION::get_hash("abc", 0));
    EXPECT_EQ(0u, KVMIGRATION::get_hash(nullptr, -1));
    // Long enough for bits to be lost and to come round; worked out by hand from the rule.
    std::uint32_t expected = 0;
    for (unsigned i = 0; i < 20; ++i) {
        expected =
            i == 0 ? 'z' : (expected * 32u | (expected / 67108864u) % 32u) ^ ('z' | i * 256u);
    }
    EXPECT_EQ(expected, KVMIGRATION::get_hash("zzzzzzzzzzzzzzzzzzzz", 20));
}

}  // namespace
