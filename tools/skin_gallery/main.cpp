// skin_gallery: pictures of every style set of a skin and of pages with controls, made with the
// toolkit itself.
#include <stdlib.h>

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <string>
#include <vector>

#include "gallery_pages.h"
#include "gallery_sheet.h"
#include "modules/gui/gui_skin.h"
#include "platform/config_file.h"
#include "platform/data_file.h"
#include "platform/disk_manager.h"
#include "platform/image.h"

namespace fs = std::filesystem;

namespace {

constexpr const char* USAGE =
    "usage: skin_gallery SKINS NAME TARGET [PICTURE...]\n"
    "  SKINS    the folder \"skins\" of an application; it is only read\n"
    "  NAME     the skin's folder\n"
    "  TARGET   the folder for the pictures\n"
    "  PICTURE  names of pictures without \".png\", if not all are wanted\n";

bool fail(const char* text, const char* name) {
    std::fprintf(stderr, "skin_gallery: %s: %s\n", name, text);
    return false;
}

// A copy of the skins, in which they are compiled; it goes with the object.
class WORK_FOLDER {
public:
    explicit WORK_FOLDER(const fs::path& skins) {
        std::string pattern = (fs::temp_directory_path() / "skin_gallery_XXXXXX").string();
        std::error_code error;
        if (::mkdtemp(pattern.data())) {
            path = pattern;
            fs::copy(skins, path, fs::copy_options::recursive, error);
            is_ready = !error && disk.move_down(path.c_str(), false, true);
        }
    }
    ~WORK_FOLDER() {
        std::error_code ignored;
        fs::remove_all(path, ignored);
    }
    WORK_FOLDER(const WORK_FOLDER&) = delete;
    WORK_FOLDER& operator=(const WORK_FOLDER&) = delete;

    DISK_MANAGER disk;
    bool is_ready = false;

private:
    fs::path path;
};

bool load_skin(const char* skins, const char* name) {
    const WORK_FOLDER work(skins);
    if (!work.is_ready) {
        return fail("the folder can't be copied", skins);
    }
    CONFIG_FILE versions("skin_versions.cfg", true, FOLDER_BASE, false);
    versions.get_base_path() = work.disk;
    GUI_SKIN skin;
    skin.set_custom_skin_path(work.disk);
    return skin.load(name, versions, 1, nullptr, nullptr, 0) ||
           fail("the skin can't be loaded", name);
}

bool save(const IMAGE& image, const fs::path& folder, const char* name) {
    std::error_code error;
    fs::create_directories(folder, error);
    DISK_MANAGER disk;
    if (!disk.move_down(fs::absolute(folder).c_str(), false, true)) {
        return fail("the folder can't be used", folder.c_str());
    }
    const std::string file_name = std::string(name) + ".png";
    DATA_FILE* file = disk.open_data_file(file_name.c_str(), FILE_WRITE, BYTEORDER_LITTLE);
    const bool saved = file && image.save_png(file);
    return (DISK_MANAGER::close(file) && saved) || fail("the picture can't be written", name);
}

}  // namespace

int main(int argc, char** argv) {
    if (argc == 2 && std::strcmp(argv[1], "--help") == 0) {
        std::fputs(USAGE, stdout);
        return 0;
    }
    if (argc < 4) {
        std::fputs(USAGE, stderr);
        return 2;
    }
    ::setenv("SDL_VIDEODRIVER", "dummy", 1);  // nothing is shown
    const std::vector<std::string> wanted(argv + 4, argv + argc);
    const auto is_wanted = [&wanted](const char* name) {
        return wanted.empty() || std::find(wanted.begin(), wanted.end(), name) != wanted.end();
    };
    if (!load_skin(argv[1], argv[2])) {
        return 1;
    }
    for (const GALLERY_FAMILY& family : get_gallery_families()) {
        IMAGE sheet;
        if (is_wanted(family.file)) {
            draw_gallery_sheet(family, sheet);
            if (!save(sheet, argv[3], family.file)) {
                return 1;
            }
        }
    }
    if (is_wanted("images")) {
        IMAGE sheet;
        draw_image_sheet(sheet);
        if (!save(sheet, argv[3], "images")) {
            return 1;
        }
    }
    for (const GALLERY_PAGE& page : get_gallery_pages()) {
        IMAGE picture;
        if (is_wanted(page.file)) {
            draw_gallery_page(page, picture);
            if (!save(picture, argv[3], page.file)) {
                return 1;
            }
        }
    }
    return 0;
}
