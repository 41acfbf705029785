// STRING_BUILDER's capacity, hand-over and limits.
#include "kvcore/string_builder.h"

#include <gtest/gtest.h>

#include <string>

namespace {

using KVCORE::COPY_MODE;
using KVCORE::STRING;
using KVCORE::STRING_BUILDER;
using namespace KVCORE::literals;

TEST(StringBuilder, CapacityGrowsByTheStep) {
    STRING_BUILDER builder;
    EXPECT_EQ(1024, builder.get_capacity());
    EXPECT_TRUE(builder.is_empty());
    const std::u16string thousand(1000, u'x');
    builder.append(thousand.c_str());
    EXPECT_EQ(1024, builder.get_capacity());
    builder.append(thousand.c_str());
    EXPECT_EQ(2048, builder.get_capacity()) << "one step is enough";
    const std::u16string large(5000, u'y');
    builder.append(large.c_str());
    EXPECT_EQ(7000 + 1024, builder.get_capacity()) << "one step isn't enough";
    EXPECT_EQ(7000, builder.get_length());
    builder.clear();
    EXPECT_EQ(1024, builder.get_capacity());
    EXPECT_EQ(0, builder.get_length());

    EXPECT_EQ(3 + 1024, STRING_BUILDER("abc"_str, 2).get_capacity());
    EXPECT_EQ(3, STRING_BUILDER("abc"_str, 3).get_capacity());
    EXPECT_EQ(1024, STRING_BUILDER("abc"_str).get_capacity());
    EXPECT_EQ(10, STRING_BUILDER(10).get_capacity());
}

TEST(StringBuilder, SetCapacityCutsTheText) {
    STRING_BUILDER builder("abcdef"_str);
    builder.set_capacity(4);
    EXPECT_EQ(4, builder.get_capacity());
    EXPECT_TRUE(builder.create_string().equals("abcd"));
    builder.set_capacity(0);
    EXPECT_EQ(4, builder.get_capacity());
}

TEST(StringBuilder, HandsItsBufferOverWithoutACopy) {
    STRING_BUILDER builder;
    builder.append("abcde");
    const STRING first = builder.create_string(COPY_MODE::KEEP);
    const STRING second = builder.create_string(COPY_MODE::KEEP);
    EXPECT_EQ(5, first.get_length());
    EXPECT_EQ(first.get_16bit(), second.get_16bit()) << "the very buffer";
    EXPECT_EQ(0, first.get_16bit()[5]);

    builder.append("fg");
    builder.set_char(0, 'X');
    EXPECT_TRUE(builder.create_string().equals("Xbcdefg"));
    EXPECT_TRUE(first.equals("abcde")) << "later changes go through a new buffer";
    const STRING third = builder.create_string(COPY_MODE::KEEP);
    builder.delete_chars(0, 2);
    builder.set_char(0, u'\u20AC');
    builder.insert(1, "-");
    EXPECT_TRUE(third.equals("Xbcdefg"));
    EXPECT_TRUE(builder.create_string().equals(u"\u20AC-efg"));
    EXPECT_TRUE(STRING_BUILDER().create_string(COPY_MODE::KEEP).is_empty());
}

TEST(StringBuilder, CopiedStringHasABufferThatFits) {
    STRING_BUILDER builder;
    builder.append("abc");
    const STRING copy = builder.create_string(COPY_MODE::COPY);
    builder.set_char(1, 'X');
    EXPECT_TRUE(copy.equals("abc"));
    EXPECT_EQ(1024, builder.get_capacity());
}

TEST(StringBuilder, EditsWithinItsText) {
    STRING_BUILDER builder;
    builder.append("abc").append('d').append(u'\u0142').append_format("%d-%s", 42, "x");
    EXPECT_TRUE(builder.create_string().equals(u"abcd\u014242-x"));
    builder.append_format(u"%S", u"\u2192");
    builder.delete_char(0);
    builder.delete_char(99);
    builder.insert(0, 'Z');
    builder.replace_string(u"\u0142", "ll");
    EXPECT_TRUE(builder.create_string().equals(u"Zbcdll42-x\u2192"));
    EXPECT_EQ(u'b', builder.get_char(1));
    EXPECT_EQ(0, builder.get_char(-1));
    EXPECT_EQ(0, builder.get_char(11));
    builder.delete_chars(3, 2);
    EXPECT_TRUE(builder.is_empty()) << "first beyond last leaves nothing";
}

TEST(StringBuilder, AppendsItsOwnText) {
    STRING_BUILDER builder(8);
    builder.append("abcdef");
    for (int i = 0; i < 10; ++i) {
        builder.append(builder);
    }
    EXPECT_EQ(6 << 10, builder.get_length());
    EXPECT_EQ(u'f', builder.get_char((6 << 10) - 1));
}

TEST(StringBuilder, MovedFromBuilderMakesABufferThatFits) {
    STRING_BUILDER builder;
    builder.append("abc");
    STRING_BUILDER moved = std::move(builder);
    EXPECT_EQ(0, builder.get_capacity());
    EXPECT_TRUE(builder.create_string(COPY_MODE::KEEP).is_empty());
    builder.append("hello");
    EXPECT_EQ(5, builder.get_capacity());
    EXPECT_TRUE(moved.create_string().equals("abc"));
}

TEST(StringBuilder, StopsAtTheLongestString) {
    STRING_BUILDER builder(STRING::MAX_LENGTH - 2);
    const std::u16string large(static_cast<std::size_t>(STRING::MAX_LENGTH) - 3, u'x');
    builder.append(KVCORE::TEXT_VIEW(large.data(), STRING::MAX_LENGTH - 3));
    builder.append("abcdef");
    EXPECT_EQ(STRING::MAX_LENGTH, builder.get_length());
    EXPECT_EQ(u'c', builder.get_char(STRING::MAX_LENGTH - 1));
    const auto get_place = [&] {
        return KVCORE::TEXT_VIEW(builder).visit(
            [](const auto* text, std::int32_t) -> const void* { return text; });
    };
    const void* const place = get_place();
    builder.append("more");
    EXPECT_EQ(place, get_place()) << "a full builder isn't copied for text that is cut anyway";
    builder.insert(0, "12");
    EXPECT_EQ(STRING::MAX_LENGTH, builder.get_length());
    EXPECT_EQ(u'2', builder.get_char(1));
    EXPECT_EQ(u'a', builder.get_char(STRING::MAX_LENGTH - 1)) << "the end falls off";
}

}  // namespace
