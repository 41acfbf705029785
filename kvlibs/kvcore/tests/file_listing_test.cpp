// Listings: filters, aliases, descending.
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>

#include <algorithm>
#include <string>
#include <vector>

#include "kvcore/fsref_item.h"
#include "kvcore/text_utilities.h"
#include "temporary_folder.h"

namespace {

namespace fs = std::filesystem;
using KVCORE::FILE_ITEM;
using KVCORE::FILE_ITEMS;
using KVCORE::FILE_NAME;
using KVCORE::FILE_TYPE;
using KVCORE::FSREF_ITEM;
using KVCORE::REFERENCE_COUNTER;
using KVCORE::STRING;

std::string text(const STRING& string) {
    return KVCORE::TEXT_UTILITIES::to_utf8(STRING(string).get_buffer().as_c16());
}

FILE_ITEM::HANDLE open(const TEMPORARY_FOLDER& folder) {
    return FSREF_ITEM::create(folder.path.string());
}

std::vector<std::string> list(const FILE_ITEM::HANDLE& item, const FILE_NAME& name,
                              const FILE_TYPE& type, KVCORE::FILE_ITEMS_FLAGS flags = 0) {
    REFERENCE_COUNTER<FILE_ITEMS> items;
    EXPECT_EQ(0, item->get_items(name, type, items, flags));
    std::vector<std::string> names;
    for (std::int32_t i = 0; items && i < items->get_count(); ++i) {
        names.push_back(text(items->get_item(i)->get_path().get_name_and_type()));
    }
    return names;
}

using NAMES = std::vector<std::string>;

TEST(FileListing, FiltersByNameAndType) {
    const TEMPORARY_FOLDER folder;
    for (const char* name :
         {"b.txt", "B.log", "a.TXT", "plain", ".hidden", "d.txt/x", "sub/b.txt"}) {
        folder.write(name, "");
    }
    const auto item = open(folder);
    const FILE_NAME any = KVCORE::FILE_NAME_ANY;
    EXPECT_EQ((NAMES{".hidden", "B.log", "a.TXT", "b.txt", "d.txt", "plain", "sub"}),
              list(item, any, KVCORE::FILE_TYPE_ANY));
    EXPECT_EQ((NAMES{".hidden", "B.log", "a.TXT", "b.txt", "plain"}),
              list(item, any, KVCORE::FILE_TYPE_ANY_FILE));
    EXPECT_EQ((NAMES{"d.txt", "sub"}), list(item, any, KVCORE::FILE_TYPE_CONTAINER));
    EXPECT_EQ((NAMES{"b.txt"}), list(item, any, KVCORE::FILE_TYPE_TEXT)) << "types keep case";
    EXPECT_EQ((NAMES{"plain"}), list(item, any, KVCORE::FILE_TYPE_NONE));
    EXPECT_EQ((NAMES{"B.log", "b.txt"}),
              list(item, FILE_NAME(STRING("b")), KVCORE::FILE_TYPE_ANY_FILE));
    EXPECT_EQ((NAMES{"sub"}), list(item, FILE_NAME(STRING("SUB")), KVCORE::FILE_TYPE_ANY));
}

TEST(FileListing, MakesTheListOnlyWhenThereIsSomething) {
    const TEMPORARY_FOLDER folder;
    const auto item = open(folder);
    REFERENCE_COUNTER<FILE_ITEMS> items;
    EXPECT_EQ(0, item->get_items(KVCORE::FILE_NAME_ANY, KVCORE::FILE_TYPE_ANY, items, 1));
    EXPECT_TRUE(items.is_null());

    folder.write("a.txt", "");
    fs::create_directory(folder.path / "d");
    EXPECT_EQ(0, item->get_items(KVCORE::FILE_NAME_ANY, KVCORE::FILE_TYPE_ANY, items, 0));
    ASSERT_TRUE(items);
    EXPECT_EQ(2, items->get_count());
    EXPECT_TRUE(items->get_file(0)->is_file());
    EXPECT_TRUE(items->get_container(0)->is_container());
    const auto file = items->get_file(0);
    EXPECT_EQ(ENOTDIR, file->get_items(KVCORE::FILE_NAME_ANY, KVCORE::FILE_TYPE_ANY, items, 0));
}

TEST(FileListing, DescendsInTheOrderOfCallsWithinCalls) {
    const TEMPORARY_FOLDER folder;
    for (const char* name : {"a/b/1.txt", "a/2.txt", "c/3.txt", "4.txt"}) {
        folder.write(name, "");
    }
    const auto item = open(folder);
    EXPECT_EQ((NAMES{"4.txt", "a", "c", "2.txt", "b", "1.txt", "3.txt"}),
              list(item, KVCORE::FILE_NAME_ANY, KVCORE::FILE_TYPE_ANY, KVCORE::FILE_ITEMS_DESCEND));
    EXPECT_EQ((NAMES{"4.txt"}), list(item, KVCORE::FILE_NAME_ANY, KVCORE::FILE_TYPE_ANY_FILE,
                                     KVCORE::FILE_ITEMS_DESCEND))
        << "only listed containers are entered";
}

TEST(FileListing, AliasesCountAsWhatTheyLeadTo) {
    const TEMPORARY_FOLDER folder;
    folder.write("real/x.txt", "content");
    fs::create_symlink("real/x.txt", folder.path / "link.txt");
    fs::create_symlink("real", folder.path / "way");
    fs::create_symlink("nowhere", folder.path / "dangling.txt");
    const auto item = open(folder);
    EXPECT_EQ((NAMES{"dangling.txt", "x.txt", "real", "real"}),
              list(item, KVCORE::FILE_NAME_ANY, KVCORE::FILE_TYPE_ANY));
    EXPECT_EQ((NAMES{"dangling.txt", "link.txt", "real", "way"}),
              list(item, KVCORE::FILE_NAME_ANY, KVCORE::FILE_TYPE_ANY, KVCORE::FILE_ITEMS_ALIASES));
    const auto link = item->get_item(FILE_NAME(STRING("link")), KVCORE::FILE_TYPE_TEXT);
    ASSERT_TRUE(link);
    EXPECT_EQ(7, link->get_size());
    EXPECT_TRUE(link->open_to_read());
    EXPECT_EQ(0, link->remove(0));
    EXPECT_FALSE(folder.has("link.txt"));
    EXPECT_TRUE(folder.has("real/x.txt"));
    // An alias is no volume, even if it leads to the top of one.
    fs::create_symlink("/proc", folder.path / "far");
    const auto far = item->get_container(FILE_NAME(STRING("far")));
    ASSERT_TRUE(far && far->is_container());
    EXPECT_FALSE(far->is_volume());
    EXPECT_EQ("far", text(far->get_name().get_string()));
    EXPECT_EQ(0, far->rename_as(KVCORE::FILE_NAME_UNCHANGED, KVCORE::FILE_TYPE_TEXT));
    EXPECT_TRUE(folder.has("far.txt"));
}

TEST(FileListing, AliasesThatLeadUpEndTheWalk) {
    const TEMPORARY_FOLDER folder;
    fs::path level = folder.path;
    // Each folder leads to the next one twice, and back to the top.
    for (int i = 0; i < 20; ++i) {
        fs::create_directory(level / "next");
        fs::create_symlink("next", level / "twin");
        fs::create_directory_symlink(folder.path, level / "top");
        level /= "next";
    }
    const auto names = list(open(folder), KVCORE::FILE_NAME_ANY, KVCORE::FILE_TYPE_CONTAINER,
                            KVCORE::FILE_ITEMS_DESCEND);
    EXPECT_EQ(60u, names.size());
}

// More items than the process may have descriptors, and deeper than a stack is for.
TEST(FileListing, ManyItemsAndDeepFolders) {
    const TEMPORARY_FOLDER folder;
    rlimit old;
    ASSERT_EQ(0, ::getrlimit(RLIMIT_NOFILE, &old));
    const rlimit small{std::min<rlim_t>(200, old.rlim_max), old.rlim_max};
    ASSERT_EQ(0, ::setrlimit(RLIMIT_NOFILE, &small));
    for (int i = 0; i < 500; ++i) {
        folder.write(std::to_string(i) + ".txt", "x");
    }
    REFERENCE_COUNTER<FILE_ITEMS> items;
    EXPECT_EQ(0, open(folder)->get_items(KVCORE::FILE_NAME_ANY, KVCORE::FILE_TYPE_ANY, items, 0));
    ASSERT_EQ(500, items->get_count());
    for (std::int32_t i = 0; i < 500; ++i) {
        EXPECT_EQ(1, items->get_item(i)->get_size());
        EXPECT_TRUE(items->get_item(i)->open_to_read());
    }
    // One without a descriptor follows what is done through it, and notices the rest.
    const auto last = items->get_item(499);
    EXPECT_EQ(0, last->rename_as(FILE_NAME(STRING("renamed")), KVCORE::FILE_TYPE_UNCHANGED));
    EXPECT_EQ("renamed.txt", text(last->get_path().get_name_and_type()));
    fs::rename(folder.path / "renamed.txt", folder.path / "elsewhere.txt");
    folder.write("renamed.txt", "another file");
    EXPECT_EQ(0, last->get_size());
    items.reset();
    for (const auto& entry : fs::directory_iterator(folder.path)) {
        fs::remove(entry.path());
    }

    std::string level = folder.path.string();
    for (int i = 0; i < 500; ++i) {
        level.append("/d");
        ASSERT_EQ(0, ::mkdir(level.c_str(), 0700));
    }
    EXPECT_EQ(500u, list(open(folder), KVCORE::FILE_NAME_ANY, KVCORE::FILE_TYPE_ANY, 1).size());
    const auto top = open(folder)->get_item(FILE_NAME(STRING("d")), KVCORE::FILE_TYPE_CONTAINER);
    const auto copy =
        top->copy_to(FILE_NAME(STRING("e")), KVCORE::FILE_TYPE_UNCHANGED, open(folder));
    EXPECT_TRUE(copy);
    EXPECT_EQ(0, open(folder)->remove_content(KVCORE::FILE_ITEMS_DESCEND));
    EXPECT_TRUE(fs::is_empty(folder.path));
    ::setrlimit(RLIMIT_NOFILE, &old);
}

}  // namespace
