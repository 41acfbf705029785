// Paths, names and types as text.
#include "kvcore/file_path.h"

#include <gtest/gtest.h>

#include <string>

#include "kvcore/text_utilities.h"

namespace {

using KVCORE::FILE_NAME;
using KVCORE::FILE_PATH;
using KVCORE::FILE_TYPE;
using KVCORE::STRING;

std::string text(const STRING& string) {
    return KVCORE::TEXT_UTILITIES::to_utf8(STRING(string).get_buffer().as_c16());
}

std::string clean(const char* path, FILE_PATH::CONTAINER_TYPE type) {
    return text(FILE_PATH(STRING(path), type).get_string());
}

TEST(FilePath, CleansByWhatTheTextNames) {
    struct {
        const char* path;
        const char* from_text;
        const char* file;
        const char* container;
    } const cases[] = {
        {"a/b", "a/b/", "a/b.", "a/b/"},
        {"a/b.txt", "a/b.txt", "a/b.txt", "a/b.txt/"},
        {"a/b/", "a/b/", "a/b.", "a/b/"},
        {".hidden", ".hidden/", ".hidden", ".hidden/"},
        {"a/.hidden", "a/.hidden", "a/.hidden", "a/.hidden/"},
        {"a.b/c", "a.b/c/", "a.b/c.", "a.b/c/"},
        {"c:\\x\\y.txt", "c:/x/y.txt", "c:/x/y.txt", "c:/x/y.txt/"},
        {"/", "/", ".", "/"},
        {"", "", "", ""},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(c.from_text, clean(c.path, FILE_PATH::FROM_TEXT)) << c.path;
        EXPECT_EQ(c.file, clean(c.path, FILE_PATH::NAMES_FILE)) << c.path;
        EXPECT_EQ(c.container, clean(c.path, FILE_PATH::NAMES_CONTAINER)) << c.path;
    }
}

TEST(FilePath, TellsWhatItIs) {
    EXPECT_FALSE(FILE_PATH().is_valid());
    EXPECT_FALSE(FILE_PATH().is_file());
    EXPECT_TRUE(FILE_PATH::ROOT_PATH.is_root());
    EXPECT_TRUE(FILE_PATH::ROOT_PATH.is_container());
    const auto is_relative = [](const char* path) {
        return FILE_PATH(STRING(path), FILE_PATH::NAMES_FILE).is_relative();
    };
    for (const char* relative : {"a", "c:", "x/c:", "../a", "c:x"}) {
        EXPECT_TRUE(is_relative(relative)) << relative;
    }
    for (const char* absolute : {"/a", "c:/x", "c:\\x\\y.txt", "drive:/x"}) {
        EXPECT_FALSE(is_relative(absolute)) << absolute;
    }
}

TEST(FilePath, SplitsTheLastComponent) {
    struct {
        const char* path;
        const char* component;
        const char* name;
        const char* type;
        const char* parent;
    } const cases[] = {
        {"/a/b.tar.gz", "b.tar.gz", "b.tar", ".gz", "/a/"},
        {"/a/b/", "b", "b", "container", "/a/"},
        {"/a/b.d/", "b.d", "b.d", "container", "/a/"},
        {"/a/.hidden", ".hidden", ".hidden", ".hidden", "/a/"},
        {"/a", "a", "a", "container", "/"},
        {"a.txt", "a.txt", "a", ".txt", "/"},
        {"a", "a", "a", "container", "/"},
        {"/", "", "", "container", "/"},
    };
    for (const auto& c : cases) {
        const FILE_PATH path{STRING(c.path)};
        EXPECT_EQ(c.component, text(path.get_name_and_type())) << c.path;
        EXPECT_EQ(c.name, text(path.get_name().get_string())) << c.path;
        EXPECT_EQ(c.type, text(path.get_type().get_string())) << c.path;
        EXPECT_EQ(c.parent, text(path.get_parent().get_string())) << c.path;
    }
    const FILE_PATH untyped(STRING("a/b/"), FILE_PATH::NAMES_FILE);
    EXPECT_TRUE(untyped.get_type() == KVCORE::FILE_TYPE_NONE);
    EXPECT_EQ("b", text(untyped.get_name().get_string()));
}

TEST(FilePath, AppendsAndClimbs) {
    const auto append = [](const char* base, const char* other) {
        return text(FILE_PATH(STRING(base)).append_path(FILE_PATH(STRING(other))).get_string());
    };
    EXPECT_EQ("/a/x/", append("/a/b/c/", "../../x"));
    EXPECT_EQ("/x.txt", append("/a/", "../../../../x.txt"));
    EXPECT_EQ("/a/b.txt", append("/a", "b.txt"));
    EXPECT_EQ("/z/", append("/a", "/z"));
    EXPECT_EQ("/", append("/a/b", "../../"));

    const FILE_PATH base(STRING("/a/"));
    const FILE_NAME name(STRING("x"));
    EXPECT_EQ("/a/x/",
              text(base.append_name_and_type(name, KVCORE::FILE_TYPE_CONTAINER).get_string()));
    EXPECT_EQ("/a/x.log",
              text(base.append_name_and_type(name, KVCORE::FILE_TYPE_LOG).get_string()));
    STRING out;
    FILE_PATH::combine_name_and_type(name, KVCORE::FILE_TYPE_ANY_FILE, out);
    EXPECT_EQ("x.*", text(out));
    FILE_PATH::combine_name_and_type(name, KVCORE::FILE_TYPE_CONTAINER, out);
    EXPECT_EQ("x", text(out));
}

TEST(FilePath, NamesIgnoreCaseAndTypesDont) {
    EXPECT_TRUE(FILE_NAME(STRING("Readme")) == FILE_NAME(STRING(u"README")));
    EXPECT_TRUE(FILE_NAME(STRING(u"\u00C4h")) == FILE_NAME(STRING(u"\u00E4H")));
    EXPECT_FALSE(FILE_NAME(STRING("a")) == FILE_NAME(STRING("ab")));
    EXPECT_TRUE(FILE_TYPE(STRING(u".txt")) == KVCORE::FILE_TYPE_TEXT);
    EXPECT_FALSE(FILE_TYPE(STRING(u".TXT")) == KVCORE::FILE_TYPE_TEXT);

    KVCORE::LOGGABLE root;
    root << FILE_PATH(STRING("/a/b.txt")) << FILE_NAME(STRING("n"));
    ASSERT_NE(nullptr, root.get_next());
    EXPECT_STREQ("/a/b.txt", root.get_next()->get_as_c8());
    EXPECT_STREQ("n", root.get_next()->get_next()->get_as_c8());
}

}  // namespace
