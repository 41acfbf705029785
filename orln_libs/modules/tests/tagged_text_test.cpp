// Texts with tags without a layout.
#include "modules/gui/tagged_text.h"

#include <gtest/gtest.h>

#include <cstring>
#include <string>
#include <vector>

#include "modules/gui/text_box_tag.h"

namespace {

using WORDS = std::vector<std::string>;

// The words; one that belongs to a tag with the tag's type behind it.
WORDS split(const std::string& source) {
    const TAGGED_TEXT text(source.c_str());
    EXPECT_EQ(source, text.text);
    WORDS result;
    for (std::int32_t i = 0; i < text.words.get_count(); ++i) {
        const auto* word = text.words.get<TAGGED_TEXT_WORD>(i);
        result.push_back(word->text);
        if (word->tag != nullptr) {
            result.back() += std::string("/") + word->tag->type;
        }
    }
    return result;
}

TEST(TaggedText, SplitsWordsAtSpacesAndLineFeeds) {
    EXPECT_EQ((WORDS{"ab", " ", " ", "c", "\n", "d"}), split("ab  c\nd"));
    EXPECT_EQ((WORDS{"ab", "c"}), split("ab\tc\r"));
    EXPECT_EQ((WORDS{}), split(""));
    const std::string longest(255, 'x');
    EXPECT_EQ((WORDS{longest, "xyz"}), split(longest + "xyz"));
}

TEST(TaggedText, ANameIsOneWordWithItsTag) {
    EXPECT_EQ((WORDS{"see", " ", "two words/url", " ", "now"}), split("see <two words:url#http://x>"
                                                                      " now"));
    const TAGGED_TEXT text("<a:b#c:d#e><:colour#5>");
    ASSERT_EQ(2, text.tags.get_count());
    const auto* tag = text.tags.get<TEXT_BOX_TAG>(0);
    EXPECT_STREQ("a", tag->name);
    EXPECT_STREQ("b", tag->type);  // the first ":" ends the name
    EXPECT_STREQ("c:d#e", tag->value);
    EXPECT_STREQ("", text.tags.get<TEXT_BOX_TAG>(1)->name);
}

TEST(TaggedText, PunctuationStaysWithTheNameBeforeIt) {
    EXPECT_EQ((WORDS{"a b's/u", " ", "c"}), split("<a b:u#>'s c"));
    EXPECT_EQ((WORDS{"a b,/u", " ", "c"}), split("<a b:u#>, c"));
    EXPECT_EQ((WORDS{"a!/u"}), split("<a:u#>!"));  // no space between
    EXPECT_EQ((WORDS{"(a)"}), split("(<a:u#>)"));  // begins before the tag
}

TEST(TaggedText, AMalformedTagEndsTheScan) {
    EXPECT_EQ((WORDS{"a", " ", "b"}), split("a b<c d"));
    EXPECT_EQ((WORDS{"x/u"}), split("<x:u#><y:u"));
    EXPECT_EQ((WORDS{}), split("<"));
    EXPECT_EQ((WORDS{"a/2", "\n"}), split("<a:2#>\n<<:"));
}

TEST(TaggedText, ANameMayHoldATag) {
    // The inner tag takes the rest for its own pieces.
    EXPECT_EQ((WORDS{"ab"}).front(), split("<a<b:one#1>:two#2>").front().substr(0, 2));
    const TAGGED_TEXT text("<a<b:one#1>:two#2>");
    ASSERT_EQ(2, text.tags.get_count());
    EXPECT_STREQ("a<b", text.tags.get<TEXT_BOX_TAG>(0)->name);
    EXPECT_STREQ("b", text.tags.get<TEXT_BOX_TAG>(1)->name);
    EXPECT_STREQ("two", text.tags.get<TEXT_BOX_TAG>(1)->type);
}

std::string repeat(const char* piece, int times) {
    std::string result;
    while (times-- > 0) {
        result += piece;
    }
    return result;
}

TEST(TaggedText, SeveralTagsMayLieInOneName) {
    EXPECT_EQ((WORDS{"a bcd/1", " ", "e"}), split("<a <<b:1#>c:2#>d:3#> e"));
    const TAGGED_TEXT text("<a <<b:1#>c:2#>d:3#> e");
    ASSERT_EQ(3, text.tags.get_count());
    EXPECT_STREQ("a <<b", text.tags.get<TEXT_BOX_TAG>(0)->name);
    EXPECT_STREQ("<bc", text.tags.get<TEXT_BOX_TAG>(1)->name);
    EXPECT_STREQ("bcd", text.tags.get<TEXT_BOX_TAG>(2)->name);
    std::string hint = "<a <<b:1#>c:2#>d:3#> e";
    EXPECT_STREQ("a bcd e", TAGGED_TEXT::remove_tags_from_text(hint.data()));
}

TEST(TaggedText, WorkOnHostileTextGrowsWithItsLength) {
    constexpr int COUNT = 200'000;
    for (std::string text : {repeat("<", COUNT) + repeat(":#>", COUNT), repeat("<:#>.", COUNT),
                             repeat("<", COUNT) + repeat("a", COUNT) + repeat(":#>", COUNT),
                             repeat("<<:#>", COUNT) + repeat("a", COUNT) + repeat(":#>", COUNT)}) {
        const TAGGED_TEXT tagged(text.c_str());
        EXPECT_GE(tagged.tags.get_count(), COUNT);
        TAGGED_TEXT::remove_tags_from_text(text.data());
        EXPECT_EQ(nullptr, std::strpbrk(text.c_str(), "<:#>"));
    }
}

TEST(TaggedText, SetTextStartsAnew) {
    TAGGED_TEXT text("<a:b#c> d");
    text.set_text(text.text.c_str() + 8);
    EXPECT_EQ("d", text.text);
    EXPECT_EQ(0, text.tags.get_count());
    ASSERT_EQ(1, text.words.get_count());
    EXPECT_STREQ("d", text.words.get<TAGGED_TEXT_WORD>(0)->text);
    text.set_text(nullptr);
    EXPECT_EQ(0, text.words.get_count());
}

std::string plain(std::string text) {
    const char* result = TAGGED_TEXT::remove_tags_from_text(text.data());
    EXPECT_EQ(text.data(), result);
    return result;
}

TEST(TaggedText, RemovesTagsAndKeepsNames) {
    EXPECT_EQ("see two words now.", plain("see <two words:url#there> <:colour#5>now<:default#>."));
    EXPECT_EQ("", plain("<:#>"));
    EXPECT_EQ("ab", plain("<a<b:one#1>:two#2>"));
    for (const char* text : {"", "<", "<:#", "abc", "a > b", "<a:b>", "a<b"}) {
        EXPECT_EQ(text, plain(text));
    }
    EXPECT_EQ(nullptr, TAGGED_TEXT::remove_tags_from_text(nullptr));
    // From the end back, up to what is no tag.
    EXPECT_EQ("<a:b#c> <d b", plain("<a:b#c> <d <b:c#d>"));
}

TEST(TaggedText, TagsAreFoundWhateverTheOrderOfTheQuestions) {
    const std::string text = "<a:b#c> <d:e#f> <g:h> <i:j:k#l>";
    TEXT_BOX_TAG_FINDER finder(text);
    TEXT_BOX_TAG_PLACE place;
    TEXT_BOX_TAG tag;
    for (int round = 0; round < 2; ++round) {
        EXPECT_TRUE(finder.find(22, place));
        finder.read(place, tag);
        EXPECT_STREQ("i:j", tag.name);
        EXPECT_STREQ("k", tag.type);
        EXPECT_FALSE(finder.find(16, place));
        ASSERT_TRUE(finder.find(0, place));
        EXPECT_EQ(6, place.value_end);
        EXPECT_EQ("b", finder.get_type(place));
        ASSERT_TRUE(finder.find(8, place));
        EXPECT_EQ("f", finder.get_value(place));
    }
}

TEST(TaggedText, LongPiecesAreCut) {
    const std::string text = "<" + std::string(300, 'n') + ":" + std::string(300, 't') + "#" +
                             std::string(300, 'v') + ">";
    TEXT_BOX_TAG_FINDER finder(text);
    TEXT_BOX_TAG_PLACE place;
    TEXT_BOX_TAG tag;
    ASSERT_TRUE(finder.find(0, place));
    finder.read(place, tag);
    EXPECT_EQ(std::string(255, 'n'), tag.name);
    EXPECT_EQ(std::string(255, 't'), tag.type);
    EXPECT_EQ(std::string(255, 'v'), tag.value);
}

}  // namespace
