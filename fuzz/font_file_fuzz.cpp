// Font files as a skin's folder may hold them: refused, or good for drawing text.
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <string>

#include "platform/disk_manager.h"
#include "platform/font_manager.h"
#include "platform/image.h"

namespace {

// A folder for the one font file, removed at the end.
class FONT_FOLDER {
public:
    FONT_FOLDER() {
        std::string pattern = (std::filesystem::temp_directory_path() / "kv_font_XXXXXX").string();
        if (!::mkdtemp(pattern.data())) {
            std::abort();
        }
        path = pattern;
        disk.move_down(path.c_str(), false, true);
    }
    ~FONT_FOLDER() {
        std::error_code ignored;
        std::filesystem::remove_all(path, ignored);
    }

    void put(const std::uint8_t* data, std::size_t size) const {
        std::FILE* file = std::fopen((path + "/font.otf").c_str(), "wb");
        if (!file || std::fwrite(data, 1, size, file) != size) {
            std::abort();
        }
        std::fclose(file);
    }

    std::string path;
    DISK_MANAGER disk;
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static FONT_FOLDER folder;
    if (size < 1 || size > 1 << 18) {
        return 0;
    }
    folder.put(data, size);
    FONT_MANAGER::use_memory_font = (data[size - 1] & 1) != 0;
    FONT_MANAGER& fonts = FONT_MANAGER::get_instance();
    if (fonts.load_font("font.otf", 0, &folder.disk) == 0) {
        IMAGE image(64, 32);
        image.draw_multi_line_string(2, 2, 60, 30, COLOUR_BLACK, COLOUR_WHITE, COLOUR_RED, 0, 18,
                                     18, "Ag b-c wxyz, \xC4", IMAGE_TEXT_SHADOW);
        fonts.free_font(0);
    }
    return 0;
}
