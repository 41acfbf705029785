// Which client versions pruning deletes, and which it never does.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdlib>

#include "autopatch/version_list.h"
#include "patch_test_peer.h"

namespace fs = std::filesystem;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::UnorderedElementsAre;

namespace {

const auto all_complete = [](const std::string&) { return true; };
const auto none_complete = [](const std::string&) { return false; };

std::vector<std::string> folders_in(const fs::path& path) {
    std::vector<std::string> names;
    for (const auto& entry : fs::directory_iterator(path)) {
        names.push_back(entry.path().filename());
    }
    return names;
}

}  // namespace

TEST(SELECT_VERSIONS, NumbersSortAsNumbersAndTwoStay) {
    EXPECT_THAT(select_versions_to_delete({"app_100", "app_9", "app_10"}, "", all_complete),
                ElementsAre("app_9"));
    EXPECT_THAT(select_versions_to_delete({"app_9", "notes", "app_10"}, "", all_complete),
                IsEmpty());
    EXPECT_THAT(select_versions_to_delete({}, nullptr, all_complete), IsEmpty());
}

// The narrowed comparison calls 40000 older than 1.
TEST(SELECT_VERSIONS, OrdersVersionsThatLieFarApart) {
    EXPECT_THAT(select_versions_to_delete({"app_1", "app_40000", "app_2", "app_65535"}, "app_65535",
                                          all_complete),
                ElementsAre("app_1", "app_2"));
}

TEST(SELECT_VERSIONS, KeepsTheCatalogueVersionAndTheNewestCompleteOne) {
    EXPECT_THAT(
        select_versions_to_delete({"app_1", "app_2", "app_3", "app_4"}, "app_1", all_complete),
        ElementsAre("app_2"));
    const auto only_2 = [](const std::string& name) { return name == "app_2"; };
    EXPECT_THAT(select_versions_to_delete({"app_1", "app_2", "app_3", "app_4"}, "", only_2),
                ElementsAre("app_1"));
    EXPECT_THAT(select_versions_to_delete({"app_1", "app_2", "app_3"}, "", none_complete),
                ElementsAre("app_1"));
}

TEST(VERSION_NAMES, ComparisonForQsort) {
    const char* names[] = {"app_100", "app_9", "app_10"};
    std::qsort(names, 3, sizeof names[0], path_sort_func);
    EXPECT_THAT(names, ElementsAre(::testing::StrEq("app_9"), ::testing::StrEq("app_10"),
                                   ::testing::StrEq("app_100")));
    const char* const plain = "app";
    const char* const null_text = nullptr;
    const char* const far = "app_40000";
    const char* const one = "app_1";
    EXPECT_EQ(path_sort_func(nullptr, &one), 1);
    EXPECT_EQ(path_sort_func(&one, nullptr), -1);
    EXPECT_EQ(path_sort_func(&plain, &one), 0);
    EXPECT_EQ(path_sort_func(&one, &null_text), 0);
    EXPECT_LT(path_sort_func(&far, &one), 0) << "39999 narrowed to 16 bits is negative";
}

TEST(VERSION_NAMES, Split) {
    char prefix[32] = "x";
    std::uint32_t number = 1;
    EXPECT_TRUE(split_filename("app_12_3", prefix, number));
    EXPECT_STREQ(prefix, "app");
    EXPECT_EQ(number, 12u);
    EXPECT_FALSE(split_filename("app12", prefix, number));
    EXPECT_STREQ(prefix, "");
    EXPECT_EQ(number, 0u);
    EXPECT_FALSE(split_filename(nullptr, prefix, number));
    EXPECT_FALSE(split_filename("app_1", nullptr, number));
}

TEST(CLEAN_VERSION_LIST, OnDisk) {
    TEST_FOLDERS folders;
    for (const char* name : {"app_9", "app_10", "app_100", "notes", "app_8"}) {
        fs::create_directories(folders.client() / name);
    }
    write_file(folders.client() / "app_8" / "autopatch.cfg", "EXE_NAME = client\n");
    write_file(folders.client() / "incoming" / "half.bin", "x");
    write_file(folders.add_ons() / "incoming" / "half.bin", "x");
    clean_version_list("");
    delete_staging_folders();
    EXPECT_THAT(folders_in(folders.client()),
                UnorderedElementsAre("app_8", "app_10", "app_100", "notes"))
        << "8 is the only one that can be started";
    EXPECT_FALSE(fs::exists(folders.add_ons() / "incoming"));
}

TEST(DELETE_VERSION, StaysInsideTheClientFolder) {
    TEST_FOLDERS folders;
    EXPECT_FALSE(delete_version("app_1")) << "there is no client folder";
    write_file(folders.client() / "app_1" / "deep" / "file", "x");
    write_file(folders.add_ons() / "skins" / "file", "x");
    EXPECT_FALSE(delete_version("../skins"));
    EXPECT_FALSE(delete_version(".."));
    EXPECT_FALSE(delete_version(""));
    EXPECT_FALSE(delete_version(nullptr));
    EXPECT_TRUE(delete_version("app_1"));
    EXPECT_FALSE(fs::exists(folders.client() / "app_1"));
    EXPECT_TRUE(fs::exists(folders.add_ons() / "skins" / "file"));
}
