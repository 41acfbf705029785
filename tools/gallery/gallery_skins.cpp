#include "gallery_skins.h"

#include <stdlib.h>

#include <algorithm>

#include "modules/gui/gui_skin.h"
#include "platform/config_file.h"
#include "platform/disk_manager.h"

namespace fs = std::filesystem;

bool GALLERY_SKINS::copy_from(const std::string& data) {
    std::error_code error;
    std::string pattern = (fs::temp_directory_path(error) / "gallery_XXXXXX").string();
    if (error || ::mkdtemp(pattern.data()) == nullptr) {
        return false;
    }
    folder = pattern;
    fs::copy(fs::path(data) / "skins", folder, fs::copy_options::recursive, error);
    for (fs::directory_iterator entry(folder, error), end; !error && entry != end;
         entry.increment(error)) {
        // A compiled skin names the folder of its fonts, which would be the installation's.
        fs::remove(entry->path() / "skin.bin", error);
        if (!error && fs::exists(entry->path() / "skin.cfg", error)) {
            names.push_back(entry->path().filename());
        }
    }
    std::sort(names.begin(), names.end());
    return !error && !names.empty();
}

void GALLERY_SKINS::remove() {
    std::error_code ignored;
    if (!folder.empty()) {
        fs::remove_all(folder, ignored);
        folder.clear();
    }
}

bool GALLERY_SKINS::load(GUI_SKIN& skin, const std::string& name) {
    DISK_MANAGER disk;
    if (!disk.move_down(folder.c_str(), false, true)) {
        return false;
    }
    CONFIG_FILE versions("skin_versions.cfg", true, FOLDER_BASE, false);
    versions.get_base_path() = disk;
    skin.set_custom_skin_path(disk);
    if (!skin.load(name.c_str(), versions, 0, nullptr, nullptr, 0)) {
        return false;
    }
    current = name;
    return true;
}

std::string GALLERY_SKINS::get_next(const std::string& name) const {
    const auto next = std::upper_bound(names.begin(), names.end(), name);
    return next != names.end() ? *next : names.front();
}
