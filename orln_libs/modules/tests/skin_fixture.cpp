#include "skin_fixture.h"

#include <stdlib.h>

#include <cstdio>
#include <fstream>
#include <iterator>

#include "modules/winman/screen_object_looks.h"
#include "platform/data_file.h"
#include "platform/font_manager.h"
#include "platform/image.h"
#include "platform/image_cache.h"

namespace {

// The temporary folder must be the base folder before any member looks for a root.
std::filesystem::path make_root() {
    std::string pattern = (std::filesystem::temp_directory_path() / "skin_test_XXXXXX").string();
    EXPECT_NE(nullptr, ::mkdtemp(pattern.data()));
    const std::filesystem::path root = std::filesystem::canonical(pattern);
    std::filesystem::create_directories(root / "base" / "data" / "skins");
    std::filesystem::create_directories(root / "add_ons");
    EXPECT_TRUE(DISK_MANAGER::set_base_folder((root / "base").c_str()));
    DISK_MANAGER::use_local_add_ons_path = true;
    return root;
}

}  // namespace

SkinTest::SkinTest() : root(make_root()), versions("versions.cfg", true, FOLDER_APPDATA, false) {
    GUI_SKIN::forget_skin_path();
    restart();
    TRACE_OUTPUT::set_sink(this);
}

SkinTest::~SkinTest() {
    TRACE_OUTPUT::set_sink(nullptr);
    restart();
    GUI_SKIN::forget_skin_path();
    DISK_MANAGER::use_local_add_ons_path = false;
    DISK_MANAGER::set_base_folder(nullptr);
    std::error_code ignored;
    std::filesystem::remove_all(root, ignored);
}

void SkinTest::output(TRACE_LEVEL, const char* format, std::va_list arguments) {
    char line[4096];
    std::vsnprintf(line, sizeof line, format, arguments);
    trace.append(line).append("\n");
}

std::filesystem::path SkinTest::path_of(const std::string& path) const {
    const bool is_skin = path.rfind("skins", 0) == 0;
    return is_skin ? root / "base" / "data" / path : root / path;
}

void SkinTest::put(const std::string& path, const std::string& content) const {
    std::filesystem::create_directories(path_of(path).parent_path());
    std::ofstream(path_of(path), std::ios::binary) << content;
}

std::string SkinTest::get(const std::string& path) const {
    std::ifstream in(path_of(path), std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(in), {});
}

DISK_MANAGER SkinTest::cursor(const std::string& path) const {
    DISK_MANAGER disk;
    EXPECT_TRUE(disk.move_down(path_of(path).c_str(), false, true)) << path;
    return disk;
}

void SkinTest::put_png(const std::string& path, std::int32_t width, std::int32_t height,
                       COLOUR colour) const {
    const std::filesystem::path file_path = path_of(path);
    std::filesystem::create_directories(file_path.parent_path());
    IMAGE image(width, height);
    image.clear(colour);
    DISK_MANAGER disk;
    ASSERT_TRUE(disk.move_down(file_path.parent_path().c_str(), false, true));
    DATA_FILE* file =
        disk.open_data_file(file_path.filename().c_str(), FILE_WRITE, BYTEORDER_LITTLE);
    ASSERT_NE(nullptr, file);
    EXPECT_TRUE(image.save_png(file));
    EXPECT_TRUE(DISK_MANAGER::close(file));
}

bool SkinTest::put_font(const std::string& path) const {
    for (const char* source : {"/usr/share/fonts/truetype/dejavu/DejaVuSans.ttf",
                               "/usr/share/fonts/opentype/inter/Inter-Thin.otf"}) {
        std::error_code error;
        std::filesystem::create_directories(path_of(path).parent_path());
        if (std::filesystem::copy_file(source, path_of(path), error)) {
            return true;
        }
    }
    return false;
}

void SkinTest::put_style_set(const std::string& path, const std::string& name,
                             const std::string& image_filename, const std::string& more) const {
    std::string text = "name\n\t";
    text.append(name).append("\nimage_filename\n\t").append(image_filename);
    text.append("\nimage_path\n\t$HERE\n").append(more);
    put(path, text);
}

void SkinTest::put_skin(const std::string& name, int internal_version) const {
    const std::string folder = std::string("skins/").append(name).append("/");
    std::string config = "name\n\tA skin\nauthor\n\tSomebody\ninternal_version\n\t";
    put(folder + "skin.cfg", config.append(std::to_string(internal_version)).append("\n"));
    std::filesystem::create_directories(path_of(folder + "fonts"));
    put_style_set(folder + "style_sets/default.ss", "DEFAULT", "", "font_x_sz\n\t9\n");
    put_style_set(folder + "style_sets/button.ss", "BUTTON", "button", "fg_colour\n\t#FF102030\n");
    put_style_set(folder + "style_sets/hint.ss", "HINT", "", "bg_colour\n\t#FFEEDDCC\n");
    put_png(folder + "style_sets/button.png", 3, 2, COLOUR_RED);
    put_png(folder + "style_sets/button_up.png", 3, 2, COLOUR_GREEN);
    put(folder + "constants/sizes.cfg", "WIDTH\n\t120\n");
    put(folder + "colours/colours.cfg", "INK\n\t#FF0000AA\n");
    put(folder + "images/images.cfg", "ARROW_UP\n\tarrow\nLOGO\n\tlogo.png\n");
    put_png(folder + "images/arrow.png", 4, 5, COLOUR_BLUE);
    put_png(folder + "images/logo.png", 7, 3, COLOUR_WHITE);
}

void SkinTest::restart() {
    WM_SCREEN_OBJECT_LOOKS::hint_style_set.clear();
    tools.clear();
    tools.default_style_set.reset();
    WM_PAGE_TOOL_MANAGER::styleset_image_cache.soft_clear();
    WM_PAGE_TOOL_MANAGER::non_styleset_image_cache.soft_clear();
    FONT_MANAGER::get_instance().free_font(-1);
    IMAGE_BOX::store_local_result = false;
    WM_STYLE_SET::cache_flags = 1;
    trace.clear();
}

bool SkinTest::load(const std::string& name, bool generate) {
    callbacks = 0;
    const auto count = [](void* data) { ++*static_cast<int*>(data); };
    return skin.load(name.c_str(), versions, generate, count, &callbacks, 1);
}
