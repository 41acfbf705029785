// The parsers that cut a text into chunks.
#include <gtest/gtest.h>

#include <string>

#include "kvmigration/brace_parser.h"
#include "kvmigration/code_line_parser.h"
#include "kvmigration/line_parser.h"
#include "kvmigration/quoted_word_parser.h"
#include "kvmigration/statement_parser.h"
#include "kvmigration/string_array.h"

namespace {

using namespace KVMIGRATION;

// All chunks, each followed by "|".
std::string cut(const std::string& text, CHUNK_PARSER&& parser) {
    STRING_ARRAY chunks;
    const std::int32_t count = STRING(text).get_chunk_list(parser, chunks);
    EXPECT_EQ(count, chunks.get_count());
    std::string joined;
    for (std::int32_t i = 0; i < count; ++i) {
        joined.append(*chunks[i]).append("|");
    }
    return joined;
}

TEST(Parsers, CutByTheirRules) {
    EXPECT_EQ("v|1.5|2|x|y|", cut("  v\t1.5 2\r\nx\\y ", CHUNK_PARSER()));
    EXPECT_EQ("one|two\r|three|", cut("one\n\n  two\r\n\t\nthree", LINE_PARSER()));
    EXPECT_EQ("a|=|b|;|", cut("a=b;", CODE_LINE_PARSER()));
    EXPECT_EQ("x|[|3|]|.|y|", cut(" x[3] . y\n", CODE_LINE_PARSER()));
    EXPECT_EQ("a| |b|", cut("a b", CODE_LINE_PARSER(true)));
    EXPECT_EQ("say|\"a b\"|'(c'|d|x\"y z\"|",
              cut("say \"a b\" ('(c': d) x\"y z\"", QUOTED_WORD_PARSER()));
    EXPECT_EQ("a|\"never closed (|", cut("a \"never closed (", QUOTED_WORD_PARSER()));
    EXPECT_EQ("a\n|b c\n|", cut("a;b c;", STATEMENT_PARSER()));
    EXPECT_EQ("a \nb\n|", cut("a // x; y\nb;", STATEMENT_PARSER()));
    EXPECT_EQ("f {a {b}}\n|g {c}\n|", cut("f {a {b}} g {c}", BRACE_PARSER()));
    EXPECT_EQ("f a {b}\n|", cut("f {a {b}}", BRACE_PARSER(true)));
    EXPECT_EQ("{ / }\n}\n|{}\n|", cut("{ / }\n}{}", BRACE_PARSER()));
    EXPECT_EQ("} {x}\n|{ open\n|", cut("} {x} { open", BRACE_PARSER()));
}

TEST(Parsers, KeptBlanksGiveTheTextAgain) {
    const std::string text = " \tfloat4 a = tex(b.xy, c[2]);\r\n#x\\ y  \n";
    STRING_ARRAY tokens;
    CODE_LINE_PARSER parser(true);
    STRING(text).get_chunk_list(parser, tokens);
    std::string joined;
    for (std::int32_t i = 0; i < tokens.get_count(); ++i) {
        joined += *tokens[i];
    }
    EXPECT_EQ(text, joined);
}

TEST(Parsers, StepOnlyAsFarAsTheyMust) {
    STATEMENT_PARSER parser;
    const STRING text("a;;b");
    EXPECT_TRUE(text.get_next_chunk(parser));
    EXPECT_EQ("a\n", parser.chunk);
    EXPECT_EQ(1, parser.position) << "the terminator stays";
    EXPECT_TRUE(text.get_next_chunk(parser));
    EXPECT_EQ("\n", parser.chunk) << "nothing but the line feed";
    EXPECT_EQ(1, parser.position);
    parser.position += 2;
    EXPECT_TRUE(text.get_next_chunk(parser));
    EXPECT_EQ("b\n", parser.chunk);
    EXPECT_EQ(4, parser.position);
    EXPECT_FALSE(text.get_next_chunk(parser));
    EXPECT_EQ("", parser.chunk);
    parser.reset();
    EXPECT_EQ(0, parser.position);

    LINE_PARSER lines;
    lines.position = -1;
    EXPECT_FALSE(STRING("x").get_next_chunk(lines));
    EXPECT_EQ(-1, lines.position);
    lines.position = 0;
    EXPECT_FALSE(STRING("  \n ").get_next_chunk(lines));
    EXPECT_EQ(4, lines.position) << "white space to the end";
    lines.position = 0;
    EXPECT_TRUE(STRING("ab\0cd", 5).get_next_chunk(lines));
    EXPECT_EQ("ab", lines.chunk) << "a zero ends a block";
}

TEST(Parsers, FindNothingInNothing) {
    EXPECT_EQ("", cut("", CHUNK_PARSER()));
    EXPECT_EQ("", cut("", LINE_PARSER()));
    EXPECT_EQ("", cut("", STATEMENT_PARSER()));
    EXPECT_EQ("", cut("", BRACE_PARSER()));
    EXPECT_EQ("", cut("", CODE_LINE_PARSER()));
    EXPECT_EQ("", cut("", CODE_LINE_PARSER(true)));
    EXPECT_EQ("", cut("", QUOTED_WORD_PARSER()));
}

// Terminators that stay under the position, zeros and nesting end in every list.
TEST(Parsers, EndOnAnyText) {
    const std::string deep(1000000, '{');
    EXPECT_EQ(deep.size() + 2, cut(deep, BRACE_PARSER()).size());
    EXPECT_EQ(deep.size() * 2 + 2,
              cut(deep + std::string(deep.size(), '}'), BRACE_PARSER()).size());
    EXPECT_EQ("", cut(std::string(1000, ';'), STATEMENT_PARSER()));
    EXPECT_EQ("", cut(std::string(1000, '\0'), STATEMENT_PARSER()));
    EXPECT_EQ("a\n|b\n|", cut(std::string("a\0b", 3), STATEMENT_PARSER()));
    EXPECT_EQ("a|", cut(std::string("a\0b", 3), CHUNK_PARSER()));
}

// A parser of a caller's own goes through the virtual operations.
class COMMA_PARSER : public CHUNK_PARSER {
public:
    bool is_whitespace(char) override { return false; }
    bool is_terminator(char c) override {
        ++asked;
        return c == ',';
    }
    void end_chunk() override { ++ended; }
    int asked = 0;
    int ended = 0;
};

TEST(Parsers, AskOnceForEachCharacter) {
    COMMA_PARSER parser;
    EXPECT_TRUE(STRING("abc,d").get_next_chunk(parser));
    EXPECT_EQ("abc", parser.chunk);
    EXPECT_EQ(4, parser.asked);
    EXPECT_EQ(1, parser.ended);
}

TEST(Parsers, WordLists) {
    STRING_ARRAY words;
    EXPECT_EQ(3, STRING("map_Kd: 'a b.png' 3").get_word_list(words));
    EXPECT_EQ("'a b.png'", *words[1]);
}

}  // namespace
