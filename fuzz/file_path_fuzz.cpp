// Arbitrary text as paths, names and types, and the user's "user-dirs.dirs". The first byte says
// what the text names, the second where it is cut in two.
#include <sys/types.h>
#include <unistd.h>

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>

#include "kvcore/file_path.h"
#include "kvcore/user_folders.h"

namespace {

using KVCORE::FILE_PATH;
using KVCORE::STRING;

void require(bool condition) {
    if (!condition) {
        std::abort();
    }
}

void check_path(const FILE_PATH& path, FILE_PATH::CONTAINER_TYPE type) {
    require(path.get_string().find_char('\\') == path.get_string().get_length());
    require(!path.is_valid() || path.is_container() != path.is_file());
    require(type != FILE_PATH::NAMES_CONTAINER || !path.is_valid() || path.is_container());
    require(type != FILE_PATH::NAMES_FILE || !path.is_container());
    // Cleaning once is enough.
    require(FILE_PATH(path, type) == path);
    const STRING component = path.get_name_and_type();
    require(component.find_char('/') == component.get_length());
    if (path.is_file()) {
        STRING joined = path.get_name().get_string();
        if (joined.get_length() < component.get_length()) {
            joined = joined.add(path.get_type_text());
        }
        require(joined.equals(component));
    }
    require(path.get_parent().is_container());
    // Going up ends at the root.
    FILE_PATH up = path;
    for (std::int32_t i = 0; !up.is_root(); ++i) {
        require(i <= path.get_string().get_length() + 1);
        up = up.get_parent();
    }
}

// One folder for the whole run, removed at its end.
struct CONFIG_FOLDER {
    std::filesystem::path path =
        std::filesystem::temp_directory_path() / ("kv_dirs_fuzz_" + std::to_string(::getpid()));

    CONFIG_FOLDER() {
        std::filesystem::create_directories(path);
        ::setenv("XDG_CONFIG_HOME", path.c_str(), 1);
        ::setenv("HOME", "/home/fuzz", 1);
    }
    ~CONFIG_FOLDER() {
        std::error_code ignored;
        std::filesystem::remove_all(path, ignored);
    }
};

void check_user_dirs(const std::string& text) {
    static const CONFIG_FOLDER folder;
    std::ofstream(folder.path / "user-dirs.dirs", std::ios::binary) << text;
    const std::string documents = KVCORE::find_user_folder(KVCORE::USER_FOLDER::DOCUMENTS);
    require(!documents.empty() && documents[0] == '/');
    if (text.find("XDG_DOCUMENTS_DIR") == std::string::npos) {
        require(documents == "/home/fuzz/Documents");
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size < 2 || size > 1024) {
        return 0;
    }
    const auto type = static_cast<FILE_PATH::CONTAINER_TYPE>(data[0] % 3);
    const std::string bytes(reinterpret_cast<const char*>(data + 2), size - 2);
    const std::size_t cut = data[1] % (bytes.size() + 1);
    const auto to_string = [](const std::string& text) {
        return STRING(text.data(), static_cast<std::int32_t>(text.size()));
    };
    const FILE_PATH first(to_string(bytes.substr(0, cut)), type);
    const FILE_PATH second(to_string(bytes.substr(cut)), FILE_PATH::FROM_TEXT);
    check_path(first, type);
    check_path(second, FILE_PATH::FROM_TEXT);
    check_path(first.append_path(second), FILE_PATH::FROM_TEXT);
    const FILE_PATH appended = first.append_name_and_type(
        second.get_name(),
        type == FILE_PATH::NAMES_CONTAINER ? KVCORE::FILE_TYPE_CONTAINER : KVCORE::FILE_TYPE_TEXT);
    check_path(appended, FILE_PATH::FROM_TEXT);
    check_user_dirs(bytes);
    return 0;
}
