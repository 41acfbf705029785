// A configuration file that a person, or a damaged disk, has made: TEXT_FILE and CONFIG_FILE read
// it, and what an uncached write keeps of it must read as before.
#include <unistd.h>

#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <utility>
#include <vector>

#include "platform/config_file.h"
#include "platform/disk_manager.h"
#include "platform/text_file.h"

namespace {

constexpr const char* NAME = "fuzz.cfg";
constexpr const char* KEY = "fuzz key";

using RECORDS = std::vector<std::pair<std::string, std::string>>;

void require(bool condition) {
    if (!condition) {
        std::abort();
    }
}

// One folder for the whole run, removed at its end.
struct FUZZ_FOLDER {
    std::filesystem::path path =
        std::filesystem::temp_directory_path() / ("kv_config_fuzz_" + std::to_string(::getpid()));
    DISK_MANAGER disk;

    FUZZ_FOLDER() {
        std::filesystem::create_directories(path);
        require(disk.move_down(path.c_str(), false, true));
    }
    ~FUZZ_FOLDER() {
        std::error_code ignored;
        std::filesystem::remove_all(path, ignored);
    }
};

void collect(const char* key, const char* value, void* user) {
    require(std::string(key).size() < CONFIG_FILE::key_size);
    require(std::string(value).size() < CONFIG_FILE::value_size);
    static_cast<RECORDS*>(user)->emplace_back(key, value);
}

RECORDS read(const DISK_MANAGER& disk, bool cached) {
    CONFIG_FILE config(NAME, cached, FOLDER_BASE, false);
    RECORDS records;
    require(config.read_all(disk, collect, &records));
    return records;
}

void read_characters(const DISK_MANAGER& disk, std::size_t size) {
    TEXT_FILE* file = disk.open_text_file(NAME, FILE_READ);
    require(file != nullptr);
    char line[TEXT_FILE::default_line_limit];
    char c = 0;
    std::size_t calls = 0;
    // Lines and characters by turns; every call moves on in the file or ends it.
    while (calls % 3 == 0 ? *file >> line : *file >> c) {
        require(++calls <= 8 * size + 8);
    }
    DISK_MANAGER::close(file);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static FUZZ_FOLDER folder;
    std::ofstream(folder.path / NAME, std::ios::binary)
        .write(reinterpret_cast<const char*>(data), static_cast<std::streamsize>(size));
    read_characters(folder.disk, size);

    const RECORDS before = read(folder.disk, false);
    require(read(folder.disk, true).size() == before.size());

    CONFIG_FILE config(NAME, false, FOLDER_BASE, false);
    require(config.write(folder.disk, KEY, "fuzz value"));
    require(!std::filesystem::exists(folder.path / (std::string(NAME) + ".tmp")));
    char value[CONFIG_FILE::value_size];
    require(config.read(folder.disk, KEY, value) && std::string(value) == "fuzz value");
    // The other records come through the rewriting unchanged, but for wide runs that were cut.
    const RECORDS after = read(folder.disk, false);
    require(after.size() == before.size() || after.size() == before.size() + 1);
    for (std::size_t i = 0; i < before.size(); i++) {
        const auto& [key, text] = before[i];
        if (key != KEY && (key + text).find('\1') == std::string::npos) {
            require(after[i] == before[i]);
        }
    }
    return 0;
}
