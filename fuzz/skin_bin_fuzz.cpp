// A compiled skin from a damaged disk: it is refused with nothing changed, or what it holds can be
// used, and its tables are stored again the same.
#include <unistd.h>

#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>

#include "modules/gui/gui_skin.h"
#include "modules/winman/page_tool_manager.h"
#include "platform/disk_manager.h"
#include "platform/font_manager.h"
#include "platform/image.h"
#include "platform/image_cache.h"
#include "platform/message.h"

namespace {

constexpr const char* NAME = "skin.bin";

void require(bool condition) {
    if (!condition) {
        std::abort();
    }
}

WM_PAGE_TOOL_MANAGER& tools() {
    return WM_PAGE_TOOL_MANAGER::get_instance();
}

void empty_tools() {
    tools().clear();
    tools().default_style_set.reset();
    WM_PAGE_TOOL_MANAGER::styleset_image_cache.soft_clear();
    WM_PAGE_TOOL_MANAGER::non_styleset_image_cache.soft_clear();
    FONT_MANAGER::get_instance().free_font(-1);
}

// One folder for the whole run, removed at its end. Fonts and images that the file names are looked
// for under roots that lie in it.
struct FUZZ_FOLDER {
    std::filesystem::path path =
        std::filesystem::temp_directory_path() / ("kv_skin_fuzz_" + std::to_string(::getpid()));
    DISK_MANAGER disk;

    FUZZ_FOLDER() {
        std::filesystem::create_directories(path / "base" / "data");
        require(DISK_MANAGER::set_base_folder((path / "base").c_str()));
        require(disk.move_down(path.c_str(), false, true));
    }
    ~FUZZ_FOLDER() {
        std::error_code ignored;
        std::filesystem::remove_all(path, ignored);
    }
};

void use_tables() {
    IMAGE target(40, 30);
    for (std::int32_t i = 0; i < tools().style_sets.get_count(); ++i) {
        const auto* set = tools().style_sets.get<WM_STYLE_SET>(i);
        require(tools().find_style_set(set->name) == set);
        for (int box = 0; box < STYLE_BOX_COUNT; ++box) {
            if (IMAGE_BOX* found = set->get_box(static_cast<STYLE_BOX>(box))) {
                for (std::int16_t size = 1; size < 40; size = static_cast<std::int16_t>(size * 3)) {
                    found->is_in_it(0, static_cast<std::int16_t>(size - 1), size, size);
                    found->draw(3, 3, static_cast<std::int16_t>(2 + size), 20, &target, 0,
                                IMAGE_COPY_BLEND);
                }
            }
        }
    }
    for (std::int32_t i = 0; i < tools().images.get_count(); ++i) {
        GUI_SKIN::get_image(tools().images.get<WM_PTM_IMAGE_INFO>(i)->name)->put(0, 0, &target);
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static FUZZ_FOLDER folder;
    empty_tools();
    std::ofstream(folder.path / NAME, std::ios::binary)
        .write(reinterpret_cast<const char*>(data), static_cast<std::streamsize>(size));
    if (!tools().load(folder.disk, NAME)) {
        require(tools().style_sets.is_empty() && tools().constants.is_empty());
        require(WM_PAGE_TOOL_MANAGER::styleset_image_cache.entries.is_empty());
        return 0;
    }
    MESSAGE tables;
    require(tools().put_to_data_device(tables));
    require(tools().save(folder.disk, NAME, 0));
    empty_tools();
    require(tools().load(folder.disk, NAME));
    MESSAGE tables_again;
    require(tools().put_to_data_device(tables_again));
    require(tables == tables_again);
    use_tables();
    return 0;
}
