// Text encodings through iconv.
#include "kvcore/text_converter.h"

#include <gtest/gtest.h>

#include <string>

#include "kvcore/text_utilities.h"

namespace {

using KVCORE::STRING;

TEST(TextConverter, DecodesAndEncodes) {
    const STRING decoded = KVCORE::decode_text("na\xC3\xAFve \xF0\x9F\x98\x80", "UTF-8");
    EXPECT_TRUE(decoded == u"na\u00EFve \U0001F600");
    EXPECT_EQ("na\xC3\xAFve \xF0\x9F\x98\x80", KVCORE::encode_text(decoded, "UTF-8"));
    EXPECT_EQ("caf\xE9", KVCORE::encode_text(u"caf\u00E9", "ISO-8859-1"));
    // A borrowed 8-bit text is Latin 1 by the library's rule.
    EXPECT_EQ("caf\xC3\xA9", KVCORE::encode_text("caf\xE9", "UTF-8"));
    EXPECT_TRUE(KVCORE::decode_text("\x8A\xDB", "MACINTOSH") == u"\u00E4\u20AC" ||
                KVCORE::decode_text("\x8A\xDB", "MACINTOSH") == u"\u00E4\u00A4");
}

TEST(TextConverter, ReplacesWhatIsNoCharacter) {
    EXPECT_TRUE(KVCORE::decode_text("a\xFFz", "UTF-8") == u"a\uFFFDz");
    EXPECT_TRUE(KVCORE::decode_text("a\xE2\x82", "UTF-8") == u"a\uFFFD\uFFFD") << "cut off";
    const char16_t lone[] = {u'a', 0xD800, u'b', 0xDC00, 0};
    EXPECT_EQ(
        "a\xEF\xBF\xBD"
        "b\xEF\xBF\xBD",
        KVCORE::encode_text(lone, "UTF-8"));
    EXPECT_EQ("a?b", KVCORE::encode_text(u"a\u4E2Db", "ISO-8859-1"));
}

TEST(TextConverter, UnknownEncodingsAndEmptyTexts) {
    EXPECT_FALSE(KVCORE::TEXT_CONVERTER("no such encoding", "UTF-8").is_open());
    EXPECT_TRUE(KVCORE::decode_text("abc", "no such encoding").is_empty());
    EXPECT_EQ("", KVCORE::encode_text(u"abc", "no such encoding"));
    EXPECT_TRUE(KVCORE::decode_text("", "UTF-8").is_empty());
    // Longer than the converter's block.
    const std::string many(10000, 'x');
    EXPECT_EQ(10000, KVCORE::decode_text(many, "UTF-8").get_length());
}

}  // namespace
