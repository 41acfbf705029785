// A folder of a test, removed with all that is in it at the test's end.
#ifndef PLATFORM_TESTS_TEMP_FOLDER_H
#define PLATFORM_TESTS_TEMP_FOLDER_H

#include <stdlib.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

#include "platform/disk_manager.h"

class TEMP_FOLDER {
public:
    TEMP_FOLDER() {
        std::string pattern = (std::filesystem::temp_directory_path() / "kv_test_XXXXXX").string();
        root = ::mkdtemp(pattern.data()) ? pattern : std::string();
    }
    ~TEMP_FOLDER() {
        std::error_code ignored;
        std::filesystem::remove_all(root, ignored);
    }
    TEMP_FOLDER(const TEMP_FOLDER&) = delete;
    TEMP_FOLDER& operator=(const TEMP_FOLDER&) = delete;

    const std::filesystem::path& path() const { return root; }

    // A cursor on the folder, or on a folder below that exists.
    DISK_MANAGER cursor(const std::string& below = "") const {
        DISK_MANAGER disk;
        disk.move_down((root / below).c_str(), false, true);
        return disk;
    }

    void put(const std::string& name, const std::string& bytes) const {
        std::filesystem::create_directories((root / name).parent_path());
        std::ofstream(root / name, std::ios::binary) << bytes;
    }
    std::string get(const std::string& name) const {
        std::ifstream in(root / name, std::ios::binary);
        return std::string(std::istreambuf_iterator<char>(in), {});
    }
    bool has(const std::string& name) const {
        return std::filesystem::exists(std::filesystem::symlink_status(root / name));
    }

private:
    std::filesystem::path root;
};

#endif  // PLATFORM_TESTS_TEMP_FOLDER_H
