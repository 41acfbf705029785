// A style set file that a person, or a damaged disk, has made. What was read is written and must
// read back the same, with defaults and without.
#include <unistd.h>

#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>

#include "modules/winman/style_set.h"
#include "platform/config_file.h"
#include "platform/disk_manager.h"

namespace {

constexpr const char* NAME = "fuzz.ss";

void require(bool condition) {
    if (!condition) {
        std::abort();
    }
}

// One folder for the whole run, removed at its end.
struct FUZZ_FOLDER {
    std::filesystem::path path =
        std::filesystem::temp_directory_path() / ("kv_style_fuzz_" + std::to_string(::getpid()));
    DISK_MANAGER disk;

    FUZZ_FOLDER() {
        std::filesystem::create_directories(path);
        require(disk.move_down(path.c_str(), false, true));
        // The images would be looked for wherever the file says.
        WM_STYLE_SET::cache_ibox_data = false;
    }
    ~FUZZ_FOLDER() {
        std::error_code ignored;
        std::filesystem::remove_all(path, ignored);
    }
};

bool read(WM_STYLE_SET& set, const DISK_MANAGER& disk, const WM_STYLE_SET* defaults) {
    CONFIG_FILE file(NAME, true, FOLDER_BASE, false);
    return set.read_from_config_file(file, nullptr, nullptr, disk, defaults);
}

// Characters of a UTF-16 file, which a file of narrow text can't hold.
bool has_wide_text(const WM_STYLE_SET& set) {
    const std::string texts = std::string(set.name)
                                  .append(set.image_filename ? set.image_filename : "")
                                  .append(set.image_path);
    return texts.find('\1') != std::string::npos;
}

void check_round_trip(WM_STYLE_SET& set, const DISK_MANAGER& disk, const WM_STYLE_SET* defaults) {
    if (has_wide_text(set)) {
        return;
    }
    set.recolourable = true;  // the one field that isn't written
    CONFIG_FILE file(NAME, true, FOLDER_BASE, false);
    require(set.write_to_config_file(file, nullptr, nullptr, disk, defaults));
    WM_STYLE_SET again;
    require(read(again, disk, defaults));
    require(again == set);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static FUZZ_FOLDER folder;
    std::ofstream(folder.path / NAME, std::ios::binary)
        .write(reinterpret_cast<const char*>(data), static_cast<std::streamsize>(size));
    WM_STYLE_SET defaults;
    defaults.flags = 0x02AAAAAA;
    defaults.active_colour = COLOUR_RED;
    defaults.cell_left_gap = 12;
    WM_STYLE_SET alone;
    WM_STYLE_SET derived;
    const bool read_alone = read(alone, folder.disk, nullptr);
    const bool read_derived = read(derived, folder.disk, &defaults);
    require(read_derived || !read_alone);
    if (read_derived) {
        check_round_trip(derived, folder.disk, &defaults);
    }
    if (read_alone) {
        check_round_trip(alone, folder.disk, nullptr);
    }
    return 0;
}
