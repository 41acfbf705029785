// The loose files of a skin: how WM_PAGE_TOOL_MANAGER reads a folder of them.
#include <algorithm>
#include <cstring>
#include <string>
#include <utility>
#include <vector>

#include "kvcore/text_field.h"
#include "modules/frameworks/trace_output.h"
#include "modules/winman/page_tool_manager.h"
#include "platform/config_file.h"
#include "platform/disk_manager.h"
#include "platform/dm_file_info.h"
#include "platform/font_manager.h"
#include "platform/image_cache.h"
#include "skin_values.h"
#include "sorted_table.h"

char WM_PAGE_TOOL_MANAGER::load_current_path[WM_STYLE_SET::PATH_SIZE] = "";
char WM_PAGE_TOOL_MANAGER::load_current_file[256] = "";

namespace {

constexpr const char* CONFIG_SUFFIX = ".cfg";
constexpr const char* STYLE_SET_SUFFIX = ".ss";
constexpr const char* FONT_SUFFIX = ".otf";
constexpr const char* DEFAULT_STYLE_FILE = "default.ss";

// Folders below a skin's folder are walked down to this depth.
constexpr std::size_t MAX_DEPTH = 16;

// In the order of the names, so that every run over the same files has the same result.
bool list_names(const DISK_MANAGER& disk, bool directories, const char* suffix,
                std::vector<std::string>& names) {
    DM_FILE_INFO* list = nullptr;
    std::int32_t count = 0;
    const bool listed = disk.get_dir_list(directories, false, false, list, count, suffix);
    DISK_MANAGER::sort_file_list_by_name(list, count);
    for (std::int32_t i = 0; i < count; ++i) {
        names.emplace_back(list[i].name);
    }
    DISK_MANAGER::free_list(list);
    return listed;
}

// Calls `visit(folder, name)` for every file with the suffix: those of the subfolders first. A link
// to a folder that is being walked is passed over. False if the first folder can't be listed.
template <class VISITOR>
bool walk_files(std::vector<DISK_MANAGER>& chain, const char* suffix, const VISITOR& visit) {
    const DISK_MANAGER disk = chain.back();
    std::vector<std::string> folders;
    std::vector<std::string> files;
    if (!list_names(disk, true, nullptr, folders) || !list_names(disk, false, suffix, files)) {
        TRACE_OUTPUT::output_warning("%s: the folder can't be read", disk.get_path_string());
        return false;
    }
    for (const std::string& folder : folders) {
        DISK_MANAGER below = disk;
        if (chain.size() < MAX_DEPTH && below.move_down(folder.c_str()) &&
            std::find(chain.begin(), chain.end(), below) == chain.end()) {
            chain.push_back(below);
            walk_files(chain, suffix, visit);
            chain.pop_back();
        }
    }
    for (const std::string& file : files) {
        visit(disk, file.c_str());
    }
    return true;
}

template <class VISITOR>
bool walk_files(const DISK_MANAGER& disk, const char* suffix, const VISITOR& visit) {
    std::vector<DISK_MANAGER> chain{disk};
    return walk_files(chain, suffix, visit);
}

// Where a callback's record stands, for the trace.
void trace_refused_record(const char* path, const char* file, const char* name, const char* value) {
    DISK_MANAGER disk;
    disk.set_relative_path(path);
    trace_refused_value(disk, file, name, value);
}

}  // namespace

// --- Colours, constants and images ---

void WM_PAGE_TOOL_MANAGER::read_records(const DISK_MANAGER& disk, const char* filename,
                                        void (*add)(const char*, const char*, void*)) {
    run_loading_callback();
    disk.get_relative_path(load_current_path);
    KVCORE::copy_text_field(load_current_file, filename);
    CONFIG_FILE config(filename, false, FOLDER_BASE, false);
    if (!config.read_all(disk, add, nullptr)) {
        TRACE_OUTPUT::output_warning("%s: the file can't be read", disk.get_path_string(filename));
    }
}

bool WM_PAGE_TOOL_MANAGER::load_colours(const DISK_MANAGER& disk) {
    return walk_files(disk, CONFIG_SUFFIX, [](const DISK_MANAGER& folder, const char* name) {
        read_records(folder, name, add_colour);
    });
}

bool WM_PAGE_TOOL_MANAGER::load_constants(const DISK_MANAGER& disk) {
    return walk_files(disk, CONFIG_SUFFIX, [](const DISK_MANAGER& folder, const char* name) {
        read_records(folder, name, add_constant);
    });
}

bool WM_PAGE_TOOL_MANAGER::load_images(const DISK_MANAGER& disk) {
    return walk_files(disk, CONFIG_SUFFIX, [](const DISK_MANAGER& folder, const char* name) {
        read_records(folder, name, add_image);
    });
}

void WM_PAGE_TOOL_MANAGER::add_colour(const char* name, const char* value, void*) {
    COLOUR colour = COLOUR_BLACK;
    const bool is_good = parse_skin_colour(value, colour);
    if (!is_good) {
        trace_refused_record(load_current_path, load_current_file, name, value);
    }
    if (WM_PTM_COLOUR_INFO* found = get_instance().find_colour(name)) {
        found->colour = is_good ? colour : found->colour;
        return;
    }
    auto entry = std::make_unique<WM_PTM_COLOUR_INFO>();
    entry->set_name(name);
    entry->colour = colour;
    add_table_entry(get_instance().colours, std::move(entry));
}

void WM_PAGE_TOOL_MANAGER::add_constant(const char* name, const char* value, void*) {
    std::int32_t number = 0;
    const bool is_good = parse_skin_number(value, number) && number <= INT16_MAX;
    if (!is_good) {
        trace_refused_record(load_current_path, load_current_file, name, value);
        number = 0;
    }
    if (WM_PTM_CONSTANT_INFO* found = get_instance().find_constant(name)) {
        found->value = is_good ? static_cast<std::int16_t>(number) : found->value;
        return;
    }
    auto entry = std::make_unique<WM_PTM_CONSTANT_INFO>();
    entry->set_name(name);
    entry->value = static_cast<std::int16_t>(number);
    add_table_entry(get_instance().constants, std::move(entry));
}

void WM_PAGE_TOOL_MANAGER::add_image(const char* name, const char* value, void*) {
    WM_PAGE_TOOL_MANAGER& manager = get_instance();
    std::int32_t index = -1;
    if (WM_PTM_IMAGE_INFO* found = manager.find_image(name, &index)) {
        found->close_image();
        if (found->filename) {
            non_styleset_image_cache.unload(found->path, found->filename);
        }
        manager.images.remove(index);
    }
    auto entry = std::make_unique<WM_PTM_IMAGE_INFO>();
    entry->set_name(name);
    entry->set_filename(value);
    KVCORE::copy_text_field(entry->path, load_current_path);
    if (!entry->load_image()) {
        trace_refused_record(load_current_path, load_current_file, name, value);
    }
    add_table_entry(manager.images, std::move(entry));
}

// --- Fonts ---

void WM_PAGE_TOOL_MANAGER::add_font(const DISK_MANAGER& disk, const char* filename) {
    run_loading_callback();
    auto entry = std::make_unique<WM_PTM_FONT_INFO>();
    std::string name = filename;
    name.resize(name.size() - std::strlen(FONT_SUFFIX));
    entry->set_name(name.c_str());
    entry->set_filename(filename);
    disk.get_relative_path(entry->path);
    // The font that is replaced leaves its index to the new one: style sets refer to it.
    if (const WM_PTM_FONT_INFO* found = find_font(name.c_str()); found && found->font_index != -1) {
        FONT_MANAGER::get_instance().free_font(found->font_index);
        entry->font_index = found->font_index;
    }
    add_table_entry(fonts, std::move(entry));
}

bool WM_PAGE_TOOL_MANAGER::load_fonts(const DISK_MANAGER& disk, unsigned char clear_first) {
    if (clear_first) {
        fonts.clear();
        FONT_MANAGER::get_instance().free_font(-1);
    }
    const bool walked = walk_files(
        disk, FONT_SUFFIX,
        [this](const DISK_MANAGER& folder, const char* name) { add_font(folder, name); });
    std::vector<WM_PTM_FONT_INFO*> missing;  // those of a base skin are there
    for (std::int32_t i = 0; i < fonts.get_count(); ++i) {
        auto* font = fonts.get<WM_PTM_FONT_INFO>(i);
        if (!FONT_MANAGER::get_instance().is_font_valid(font->font_index)) {
            missing.push_back(font);
        }
    }
    // First those that have an index: any other takes whichever is free.
    std::stable_partition(missing.begin(), missing.end(),
                          [](const WM_PTM_FONT_INFO* font) { return font->font_index != -1; });
    for (WM_PTM_FONT_INFO* font : missing) {
        run_loading_callback();
        if (!font->load_font()) {
            TRACE_OUTPUT::output_warning("%s/%s: the font can't be loaded", font->path,
                                         static_cast<const char*>(font->filename));
        }
    }
    return walked;
}

// --- Style sets ---

bool WM_PAGE_TOOL_MANAGER::load_style_set_file(const DISK_MANAGER& disk, const char* filename,
                                               bool rewrite, bool as_default) {
    run_loading_callback();
    auto set = std::make_unique<WM_STYLE_SET>();
    CONFIG_FILE file(filename, true, FOLDER_BASE, false);
    const bool is_good = set->read_from_config_file(file, style_set_read_find_font, nullptr, disk,
                                                    default_style_set.get());
    if (!is_good) {
        TRACE_OUTPUT::output_warning("%s: the style set is refused",
                                     disk.get_path_string(filename));
    } else if (rewrite) {
        const bool is_default = std::strstr(filename, DEFAULT_STYLE_FILE) != nullptr;
        if (!set->write_to_config_file(file, style_set_write_find_font, nullptr, disk,
                                       is_default ? nullptr : default_style_set.get())) {
            TRACE_OUTPUT::output_warning("%s: the style set can't be written",
                                         disk.get_path_string(filename));
        }
    }
    if (is_good && as_default && !default_style_set) {
        default_style_set = std::make_unique<WM_STYLE_SET>(*set);
    }
    return add_table_entry(style_sets, std::move(set)) && is_good;
}

bool WM_PAGE_TOOL_MANAGER::load_style_sets(const DISK_MANAGER& disk, unsigned char rewrite,
                                           unsigned char default_only) {
    if (!default_only) {
        return walk_files(disk, STYLE_SET_SUFFIX,
                          [this, rewrite](const DISK_MANAGER& folder, const char* name) {
                              load_style_set_file(folder, name, rewrite != 0, false);
                          });
    }
    if (!DISK_MANAGER::file_exists(disk, DEFAULT_STYLE_FILE)) {
        return false;
    }
    return load_style_set_file(disk, DEFAULT_STYLE_FILE, rewrite != 0, true);
}
