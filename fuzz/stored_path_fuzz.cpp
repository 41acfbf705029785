// Stored paths, raw cursors and names from outside: a cursor stays on an existing folder, a stored
// path leads back to where it came from, and nothing is made outside the installation.
#include <unistd.h>

#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <string>

#include "platform/disk_manager.h"

namespace {

namespace fs = std::filesystem;

void check(bool holds) {
    if (!holds) {
        std::abort();
    }
}

// An installation in a folder of its own, removed at the end.
struct INSTALLATION {
    INSTALLATION() {
        std::string pattern = fs::temp_directory_path() / "stored_path_fuzz_XXXXXX";
        check(mkdtemp(pattern.data()) != nullptr);
        root = fs::canonical(pattern);
        fs::create_directories(root / "home/Documents");
        fs::create_directories(root / "opt/data/skins/a");
        fs::create_directories(root / "opt/app/a/b");
        setenv("HOME", (root / "home").c_str(), 1);
        unsetenv("XDG_DATA_HOME");
        unsetenv("XDG_CONFIG_HOME");
        check(DISK_MANAGER::set_base_folder((root / "opt/app").c_str()));
    }
    ~INSTALLATION() {
        std::error_code ignored;
        fs::remove_all(root, ignored);
    }
    fs::path root;
};

void check_cursor(const DISK_MANAGER& disk) {
    check(DISK_MANAGER::validate_path(disk.get_path()));
    char stored[DISK_MANAGER::PATH_SIZE];
    DISK_MANAGER back;
    if (disk.get_relative_path(stored)) {
        check(back.set_relative_path(stored) && back == disk);
    }
}

bool is_inside(const std::string& path, const std::string& folder) {
    return path == folder || path.compare(0, folder.size() + 1, folder + "/") == 0;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const INSTALLATION installation;
    const std::string text(reinterpret_cast<const char*>(data), size);

    DISK_MANAGER disk;
    disk.set_relative_path(text.c_str());
    check_cursor(disk);
    if (text.compare(0, 5, "$ROOT") != 0) {
        check(is_inside(disk.get_path(), installation.root.string()));
    }
    if (text.compare(0, 5, "$TEMP") == 0) {
        disk.set_relative_path(text.c_str(), true);
        check(is_inside(disk.get_path(), installation.root.string()));
        disk.goto_path(FOLDER_TEMP);
        disk.move_up();
        check(DISK_MANAGER::delete_tree(disk, "temp") == 0);
        check(!DISK_MANAGER::file_exists(disk, "temp"));
    }

    disk.get_base_dir();
    disk.navigate_to_relative_path(text.c_str());
    check_cursor(disk);

    char raw[DISK_MANAGER::PATH_SIZE] = {};
    std::memcpy(raw, data, size < sizeof raw ? size : sizeof raw);
    disk.set_path(raw);
    check_cursor(disk);

    std::string name = text;
    DISK_MANAGER base;
    if (std::FILE* file = base.open_file(name.data(), "w")) {
        std::fclose(file);
        check(base.remove(name.c_str()));
    }
    return 0;
}
