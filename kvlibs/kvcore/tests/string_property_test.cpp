// Random texts: KVCORE::STRING against the standard library's string, in all widths.
#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <string>

#include "kvcore/string.h"
#include "kvcore/string_builder.h"

namespace {

using KVCORE::COPY_MODE;
using KVCORE::STRING;

// A text of few different characters, so that searches find something.
std::string random_text(std::mt19937& random, std::size_t longest) {
    static constexpr char alphabet[] = "abAB \xE9";
    std::string text(random() % (longest + 1), '\0');
    for (char& c : text) {
        c = alphabet[random() % (sizeof alphabet - 1)];
    }
    return text;
}

std::u16string widened(const std::string& text) {
    std::u16string wide;
    for (const char c : text) {
        wide.push_back(static_cast<unsigned char>(c));
    }
    return wide;
}

std::u16string text_of(KVCORE::TEXT_VIEW view) {
    std::u16string text;
    for (std::int32_t i = 0; i < view.get_length(); ++i) {
        text.push_back(view[i]);
    }
    return text;
}

std::u16string replaced(std::u16string text, const std::u16string& from, const std::u16string& to) {
    for (std::size_t at = 0; !from.empty() && (at = text.find(from, at)) != text.npos;
         at += to.size()) {
        text.replace(at, from.size(), to);
    }
    return text;
}

// npos becomes the length.
std::int32_t index_of(std::size_t found, const std::u16string& text) {
    return static_cast<std::int32_t>(std::min(found, text.size()));
}

class STRING_PROPERTIES : public testing::Test {
protected:
    void draw() {
        // A borrowed text outlives its strings.
        string.clear();
        other_string.clear();
        narrow = random_text(random, 24);
        other_narrow = random_text(random, 4);
        wide = widened(narrow);
        other = widened(other_narrow);
        string.set(narrow.c_str(), -1, random() % 2 ? COPY_MODE::COPY : COPY_MODE::KEEP);
        other_string.set(other_narrow.c_str(), -1,
                         random() % 2 ? COPY_MODE::COPY : COPY_MODE::KEEP);
        start = static_cast<std::int32_t>(random() % (narrow.size() + 2));
    }

    std::mt19937 random{20240611};
    std::string narrow;
    std::string other_narrow;
    std::u16string wide;
    std::u16string other;
    STRING string;
    STRING other_string;
    std::int32_t start = 0;
};

TEST_F(STRING_PROPERTIES, SearchesAgree) {
    for (int round = 0; round < 20000; ++round) {
        draw();
        SCOPED_TRACE(narrow + "|" + other_narrow + "|" + std::to_string(start));
        const std::size_t from = static_cast<std::size_t>(start);
        const std::size_t found = other.empty() ? wide.npos : wide.find(other, from);
        ASSERT_EQ(index_of(found, wide), string.find_string(other_string, start));
        ASSERT_EQ(found != wide.npos || (!other.empty() && wide.find(other) != wide.npos),
                  string.contains(other_string));
        ASSERT_EQ(index_of(wide.find(u'b', from), wide), string.find_char('b', start));
        ASSERT_EQ(index_of(wide.find_first_of(other, from), wide),
                  string.find_chars(other_string, start));
        ASSERT_EQ(index_of(wide.find_first_not_of(other, from), wide),
                  string.skip_chars(other_string, start));
        if (from < wide.size()) {
            ASSERT_EQ(index_of(wide.rfind(u'b', from), wide), string.find_char_reverse('b', start));
            ASSERT_EQ(index_of(wide.find_last_of(other, from), wide),
                      string.find_chars_reverse(other_string, start));
            ASSERT_EQ(index_of(wide.find_last_not_of(other, from), wide),
                      string.skip_chars_reverse(other_string, start));
        }
        ASSERT_EQ(wide == other, string.equals(other_string));
        const int order = string.compare(other_string);
        ASSERT_EQ(wide < other, order < 0);
        ASSERT_EQ(wide > other, order > 0);
    }
}

TEST_F(STRING_PROPERTIES, EditsAgreeForStringAndBuilder) {
    for (int round = 0; round < 20000; ++round) {
        draw();
        const std::u16string to = widened(random_text(random, 4));
        const STRING to_string(to.data(), static_cast<std::int32_t>(to.size()));
        const std::int32_t last = start + static_cast<std::int32_t>(random() % 6);
        SCOPED_TRACE(narrow + "|" + other_narrow + "|" + std::to_string(start));
        const std::u16string expected = replaced(wide, other, to);
        ASSERT_EQ(expected, text_of(string.replace_string(other_string, to_string)));

        KVCORE::STRING_BUILDER builder(string, 4);
        builder.replace_string(other_string, to_string);
        ASSERT_EQ(expected, text_of(builder));
        const std::size_t at = std::min(static_cast<std::size_t>(start), wide.size());
        std::u16string inserted = wide;
        inserted.insert(at, other);
        ASSERT_EQ(inserted, text_of(string.insert(start, other_string)));
        KVCORE::STRING_BUILDER insert_builder(string, 4);
        insert_builder.insert(start, other_string);
        ASSERT_EQ(inserted, text_of(insert_builder));
        if (at < wide.size()) {
            const std::size_t count = static_cast<std::size_t>(last - start + 1);
            ASSERT_EQ(wide.substr(at, count), text_of(string.get_substring(start, last)));
            std::u16string erased = wide;
            erased.erase(at, count);
            ASSERT_EQ(erased, text_of(string.delete_chars(start, last)));
            KVCORE::STRING_BUILDER delete_builder(string, 4);
            delete_builder.delete_chars(start, last);
            ASSERT_EQ(erased, text_of(delete_builder.create_string(COPY_MODE::KEEP)));
        }
        STRING grown = string;
        grown.append(other_string);
        ASSERT_EQ(wide + other, text_of(grown));
    }
}

}  // namespace
