// A folder of its own for each test, removed with all in it.
#ifndef KVCORE_TESTS_TEMPORARY_FOLDER_H
#define KVCORE_TESTS_TEMPORARY_FOLDER_H

#include <stdlib.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

class TEMPORARY_FOLDER {
public:
    TEMPORARY_FOLDER() {
        std::string name = (std::filesystem::temp_directory_path() / "kv_test_XXXXXX").string();
        path = std::filesystem::canonical(::mkdtemp(name.data()));
    }
    ~TEMPORARY_FOLDER() {
        std::error_code ignored;
        std::filesystem::remove_all(path, ignored);
    }
    TEMPORARY_FOLDER(const TEMPORARY_FOLDER&) = delete;
    TEMPORARY_FOLDER& operator=(const TEMPORARY_FOLDER&) = delete;

    void write(const std::string& name, const std::string& text) const {
        std::filesystem::create_directories((path / name).parent_path());
        std::ofstream(path / name, std::ios::binary) << text;
    }
    std::string read(const std::string& name) const {
        std::ifstream in(path / name, std::ios::binary);
        return std::string(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
    }
    bool has(const std::string& name) const {
        return std::filesystem::exists(std::filesystem::symlink_status(path / name));
    }

    std::filesystem::path path;
};

#endif  // KVCORE_TESTS_TEMPORARY_FOLDER_H
