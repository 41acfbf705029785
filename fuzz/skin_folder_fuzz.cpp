// The text files of a skin's folder, one content in the place of each: the description, the
// colours, the constants and the images. The skin loads or is refused; what was read lies within
// its limits and comes back from the compiled file, and nothing is written but in the skin's own
// folder.
#include <unistd.h>

#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

#include "modules/gui/gui_skin.h"
#include "modules/winman/page_tool_manager.h"
#include "platform/config_file.h"
#include "platform/data_file.h"
#include "platform/disk_manager.h"
#include "platform/font_manager.h"
#include "platform/image.h"
#include "platform/message.h"

namespace {

namespace fs = std::filesystem;

void require(bool condition) {
    if (!condition) {
        std::abort();
    }
}

WM_PAGE_TOOL_MANAGER& tools() {
    return WM_PAGE_TOOL_MANAGER::get_instance();
}

// One folder for the whole run, removed at its end.
class FUZZ_FOLDER {
public:
    FUZZ_FOLDER() {
        fs::create_directories(skin);
        require(DISK_MANAGER::set_base_folder((root / "base").c_str()));
        for (const char* part : {"fonts", "style_sets", "colours", "constants", "images"}) {
            fs::create_directories(skin / part);
        }
        put("style_sets/default.ss", "name\n\tDEFAULT\nimage_filename\n\t\nimage_path\n\t$HERE\n");
        IMAGE picture(3, 2);
        DISK_MANAGER images;
        require(images.move_down((skin / "images").c_str(), false, true));
        DATA_FILE* file = images.open_data_file("logo.png", FILE_WRITE, BYTEORDER_LITTLE);
        require(picture.save_png(file) && DISK_MANAGER::close(file));
    }
    ~FUZZ_FOLDER() {
        std::error_code ignored;
        fs::remove_all(root, ignored);
    }

    void put(const char* name, const std::string& content) const {
        std::ofstream(skin / name, std::ios::binary) << content;
    }
    void put_all(const std::string& content) const {
        for (const char* name : {"skin.cfg", "colours/c.cfg", "constants/c.cfg", "images/i.cfg"}) {
            put(name, content);
        }
        std::error_code ignored;
        fs::remove(skin / "skin.bin", ignored);
    }
    // The folders and files that are there in any case, and those of the application's.
    void check_extent() const {
        const auto count = [](const fs::path& path) {
            return std::distance(fs::directory_iterator(path), fs::directory_iterator());
        };
        require(count(root) == 1 && count(skin.parent_path()) == 1);
        require(count(skin) <= 7 && count(skin / "images") == 2 && count(skin / "colours") == 1);
    }

private:
    fs::path root = fs::temp_directory_path() / ("kv_skin_folder_" + std::to_string(::getpid()));
    fs::path skin = root / "base" / "data" / "skins" / "s";
};

template <std::size_t N>
bool is_text(const char (&text)[N]) {
    return ::strnlen(text, N) < N;
}

bool run(GUI_SKIN& skin, bool generate) {
    FONT_MANAGER::get_instance().free_font(-1);
    CONFIG_FILE versions("versions.cfg", true, FOLDER_APPDATA, false);
    versions.bulk_write = true;  // never written
    const bool loaded = skin.load("s", versions, generate, nullptr, nullptr, 1);
    require(is_text(skin.name) && is_text(skin.author) && is_text(skin.description) &&
            is_text(skin.url) && is_text(skin.display_version));
    require(skin.default_width >= 0 && skin.default_height >= 0);
    const FONT_MANAGER& fonts = FONT_MANAGER::get_instance();
    require(fonts.x_size > 0 && fonts.x_size <= FONT_MANAGER::MAX_TEXT_SIZE);
    require(fonts.y_size > 0 && fonts.y_size <= FONT_MANAGER::MAX_TEXT_SIZE);
    return loaded;
}

MESSAGE store_tables() {
    MESSAGE tables;
    require(tools().put_to_data_device(tables));
    return tables;
}

void check_look_ups() {
    std::int16_t index = -1;
    for (std::int32_t i = 0; i < tools().constants.get_count(); ++i) {
        const auto* constant = tools().constants.get<WM_PTM_CONSTANT_INFO>(i);
        require(GUI_SKIN::get_constant(constant->name, nullptr, &index) == constant->value);
        require(index == i);
    }
    for (std::int32_t i = 0; i < tools().images.get_count(); ++i) {
        require(GUI_SKIN::get_image(tools().images.get<WM_PTM_IMAGE_INFO>(i)->name) != nullptr);
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static FUZZ_FOLDER folder;
    if (size > 1 << 16) {
        return 0;
    }
    folder.put_all(std::string(reinterpret_cast<const char*>(data), size));
    GUI_SKIN skin;
    if (run(skin, true)) {
        check_look_ups();
        const MESSAGE tables = store_tables();
        require(run(skin, false));
        require(tables == store_tables());
    }
    folder.check_extent();
    return 0;
}
