// An installation of its own in a temporary folder, removed at the end.
#ifndef AUTOPATCH_TESTS_TEMPORARY_INSTALLATION_H
#define AUTOPATCH_TESTS_TEMPORARY_INSTALLATION_H

#include <gtest/gtest.h>
#include <stdlib.h>

#include <cstdint>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include "platform/disk_manager.h"

// "$BASE" is base/, "$APPDATA" is base/data/ and "$ADD_ONS" is add_ons/.
class TEMPORARY_INSTALLATION {
public:
    TEMPORARY_INSTALLATION() {
        std::string pattern = (std::filesystem::temp_directory_path() / "add_onsXXXXXX").string();
        EXPECT_NE(nullptr, mkdtemp(pattern.data()));
        root = std::filesystem::canonical(pattern);
        std::filesystem::create_directories(root / "base" / "data");
        std::filesystem::create_directories(root / "add_ons");
        EXPECT_TRUE(DISK_MANAGER::set_base_folder((root / "base").c_str()));
        DISK_MANAGER::use_local_add_ons_path = true;
    }
    ~TEMPORARY_INSTALLATION() {
        DISK_MANAGER::use_local_add_ons_path = false;
        DISK_MANAGER::set_base_folder(nullptr);
        std::error_code error;
        std::filesystem::remove_all(root, error);
    }

    std::filesystem::path add_ons(const std::string& below = "") const {
        return below.empty() ? root / "add_ons" : root / "add_ons" / below;
    }

    static void write(const std::filesystem::path& path, const std::string& content) {
        std::filesystem::create_directories(path.parent_path());
        std::ofstream(path, std::ios::binary) << content;
    }
    static void write(const std::filesystem::path& path, const std::vector<std::uint8_t>& bytes) {
        write(path, std::string(bytes.begin(), bytes.end()));
    }
    static std::vector<std::uint8_t> read(const std::filesystem::path& path) {
        std::ifstream in(path, std::ios::binary);
        return {std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
    }
    static DISK_MANAGER cursor(const std::filesystem::path& folder) {
        DISK_MANAGER disk;
        EXPECT_TRUE(disk.move_down(folder.c_str(), false, true));
        return disk;
    }

    std::filesystem::path root;
};

#endif  // AUTOPATCH_TESTS_TEMPORARY_INSTALLATION_H
