// A user's home folder and an installation in a temporary folder, for tests that touch the disk.
#ifndef PLATFORM_TESTS_DISK_FIXTURE_H
#define PLATFORM_TESTS_DISK_FIXTURE_H

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>

#include "platform/disk_manager.h"

// home/, home/Documents, opt/game/app (the base folder) and opt/game/data exist; the rest is the
// test's own business. The folder is free of links.
class DISK_FIXTURE : public testing::Test {
protected:
    void SetUp() override {
        std::string pattern = std::filesystem::temp_directory_path() / "disk_test_XXXXXX";
        ASSERT_NE(nullptr, mkdtemp(pattern.data()));
        root = std::filesystem::canonical(pattern);
        home = root / "home";
        base = root / "opt/game/app";
        std::filesystem::create_directories(home / "Documents");
        std::filesystem::create_directories(base);
        std::filesystem::create_directories(root / "opt/game/data");
        setenv("HOME", home.c_str(), 1);
        unsetenv("XDG_DATA_HOME");
        unsetenv("XDG_CONFIG_HOME");
        ASSERT_TRUE(DISK_MANAGER::set_base_folder(base.c_str()));
    }

    void TearDown() override {
        DISK_MANAGER::use_local_add_ons_path = false;
        DISK_MANAGER::set_base_folder(nullptr);
        std::error_code ignored;
        std::filesystem::remove_all(root, ignored);
    }

    // A cursor on a folder by its absolute path.
    static DISK_MANAGER at(const std::filesystem::path& folder) {
        DISK_MANAGER disk;
        EXPECT_TRUE(disk.move_down(folder.c_str(), false, true)) << folder;
        return disk;
    }
    static void write(const std::filesystem::path& file, const std::string& text) {
        std::filesystem::create_directories(file.parent_path());
        std::ofstream(file, std::ios::binary) << text;
    }
    static std::string read(const std::filesystem::path& file) {
        std::ostringstream text;
        text << std::ifstream(file, std::ios::binary).rdbuf();
        return text.str();
    }

    std::filesystem::path root;
    std::filesystem::path home;
    std::filesystem::path base;
};

#endif  // PLATFORM_TESTS_DISK_FIXTURE_H
