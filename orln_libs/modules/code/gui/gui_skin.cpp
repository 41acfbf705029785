#include "modules/gui/gui_skin.h"

#include <algorithm>
#include <cstring>

#include "../winman/skin_values.h"
#include "../winman/sorted_table.h"
#include "kvcore/text_field.h"
#include "modules/frameworks/trace_output.h"
#include "modules/gui/skin_info.h"
#include "modules/winman/page_tool_manager.h"
#include "modules/winman/screen_object_looks.h"
#include "platform/config_file.h"
#include "platform/data_file.h"
#include "platform/dm_file_info.h"
#include "platform/font_manager.h"
#include "platform/image_cache.h"

std::unique_ptr<DISK_MANAGER> GUI_SKIN::skin_path;

namespace {

constexpr const char* SKINS_FOLDER = "skins";
constexpr const char* COMPILED_FILE = "skin.bin";
constexpr unsigned char FLAGS_WHILE_BUILDING = IMAGE_CACHE::FORGET_FAILURE;

WM_PAGE_TOOL_MANAGER& tools() {
    return WM_PAGE_TOOL_MANAGER::get_instance();
}

void set_discard_unused(bool on) {
    WM_PAGE_TOOL_MANAGER::styleset_image_cache.discard_unused = on;
    WM_PAGE_TOOL_MANAGER::non_styleset_image_cache.discard_unused = on;
}

// What a load starts from.
void empty_tools() {
    tools().clear();
    tools().default_style_set.reset();
    WM_STYLE_SET::cache_flags = FLAGS_WHILE_BUILDING;
    WM_PAGE_TOOL_MANAGER::styleset_image_cache.soft_clear();
    WM_PAGE_TOOL_MANAGER::non_styleset_image_cache.soft_clear();
}

// The callback while a skin is being loaded.
class LOADING_CALLBACK {
public:
    LOADING_CALLBACK(void (*callback)(void*), void* data) {
        WM_PAGE_TOOL_MANAGER::loading_update_callback = callback;
        WM_PAGE_TOOL_MANAGER::loading_update_data = data;
    }
    ~LOADING_CALLBACK() {
        WM_PAGE_TOOL_MANAGER::loading_update_callback = nullptr;
        WM_PAGE_TOOL_MANAGER::loading_update_data = nullptr;
    }
    LOADING_CALLBACK(const LOADING_CALLBACK&) = delete;
    LOADING_CALLBACK& operator=(const LOADING_CALLBACK&) = delete;
};

// True if some skin below has been compiled.
bool holds_compiled_skin(const DISK_MANAGER& skins) {
    DM_FILE_INFO* folders = nullptr;
    std::int32_t count = 0;
    skins.get_dir_list(true, false, false, folders, count);
    bool found = false;
    for (std::int32_t i = 0; i < count && !found; ++i) {
        DISK_MANAGER folder = skins;
        DM_FILE_INFO* files = nullptr;
        std::int32_t file_count = 0;
        if (folder.move_down(folders[i].name)) {
            folder.get_dir_list(false, false, false, files, file_count, ".bin");
            found = file_count > 0;
            DISK_MANAGER::free_list(files);
        }
    }
    DISK_MANAGER::free_list(folders);
    return found;
}

// A file with that name stands beside the skins while they are being copied. Left behind by a
// copy that was cut short, it has them copied again.
constexpr const char* COPYING_MARK = "copying";

// Copies the skins that the application brings along, if there are any, to the folder `skins`.
void copy_seed(const DISK_MANAGER& skins) {
    DISK_MANAGER seed;
    if (!seed.goto_path(FOLDER_APPDATA) || !seed.move_down(SKINS_FOLDER)) {
        return;
    }
    DATA_FILE* mark = skins.open_data_file(COPYING_MARK, FILE_WRITE, BYTEORDER_LITTLE);
    DISK_MANAGER::close(mark);
    if (DISK_MANAGER::copy_tree(seed, skins) && skins.flush_file_system()) {
        skins.remove(COPYING_MARK, true);
    } else {
        TRACE_OUTPUT::output_warning("%s: not all skins could be copied here",
                                     skins.get_path_string());
    }
}

void copy_arrow(const char* name, IMAGE& target) {
    target.copy_pixels_from(*GUI_SKIN::get_image(name));
}

}  // namespace

// --- Where skins are ---

DISK_MANAGER GUI_SKIN::get_skin_path(unsigned char generating) {
    if (skin_path) {
        return *skin_path;
    }
    // The folder is made if it isn't there: a skin that is generated belongs into it.
    DISK_MANAGER disk;
    if (!disk.goto_path(generating ? FOLDER_APPDATA : FOLDER_ADD_ONS) ||
        !disk.move_down(SKINS_FOLDER, true)) {
        return disk;
    }
    if (!generating &&
        (!holds_compiled_skin(disk) || DISK_MANAGER::file_exists(disk, COPYING_MARK))) {
        copy_seed(disk);
    }
    set_skin_path(disk);
    return disk;
}

void GUI_SKIN::set_skin_path(const DISK_MANAGER& disk) {
    skin_path = std::make_unique<DISK_MANAGER>(disk);
}

void GUI_SKIN::forget_skin_path() {
    skin_path.reset();
}

void GUI_SKIN::set_custom_skin_path(const DISK_MANAGER& disk) {
    custom_skin_path = std::make_unique<DISK_MANAGER>(disk);
}

DISK_MANAGER GUI_SKIN::find_skins(unsigned char generating_path) const {
    return custom_skin_path ? *custom_skin_path : get_skin_path(generating_path);
}

// --- Loading ---

bool GUI_SKIN::load(const char* skin, CONFIG_FILE& versions, unsigned char generate,
                    void (*callback)(void* data), void* data, unsigned char generating_path) {
    if (!skin || !*skin) {
        return false;
    }
    const DISK_MANAGER skins = find_skins(generating_path);
    DISK_MANAGER disk = skins;
    if (!disk.move_down(skin, generate != 0)) {
        TRACE_OUTPUT::output_warning("There is no skin \"%s\" in %s", skin,
                                     skins.get_path_string());
        return false;
    }
    const LOADING_CALLBACK while_loading(callback, data);
    skin_loading = skin;
    is_loading = true;
    generating = generate != 0;
    std::fill(std::begin(regenerate), std::end(regenerate), false);
    regenerate[0] = generating;

    empty_tools();
    bool done = !generating && is_current(skins, skin) && tools().load(disk, COMPILED_FILE);
    if (!done) {
        empty_tools();
        done = load_skin(skin, versions, generating_path, 0);
        set_discard_unused(false);
    }
    is_loading = false;
    loaded = done && !tools().style_sets.is_empty() && !tools().colours.is_empty() &&
             !tools().images.is_empty() && !tools().constants.is_empty();
    if (loaded) {
        apply_loaded_skin(disk);
    } else {
        TRACE_OUTPUT::output_warning("The skin \"%s\" can't be loaded", skin);
    }
    return loaded;
}

// Whether the compiled forms of the skin and of all its base skins have the versions that their
// descriptions name. Nothing is loaded or changed.
bool GUI_SKIN::is_current(DISK_MANAGER skins, const char* skin) const {
    std::string name_at_level = skin;
    for (int level = 0; level < MAX_LEVELS; ++level) {
        DISK_MANAGER disk = skins;
        CONFIG_FILE config(SKIN_INFO_FILE, true, FOLDER_BASE, false);
        if (!disk.move_down(name_at_level.c_str()) ||
            !DISK_MANAGER::file_exists(disk, SKIN_INFO_FILE)) {
            return true;  // nothing to compare with
        }
        std::uint16_t version = 0;
        read_skin_version(config, disk, version);
        tools().load_header(disk, COMPILED_FILE);
        if (tools().internal_version != version) {
            return false;
        }
        char base[CONFIG_FILE::value_size];
        if (!config.read(disk, "base_skin_folder", base) || !*base) {
            return true;
        }
        name_at_level = base;
    }
    return false;
}

bool GUI_SKIN::load_skin(const char* skin, CONFIG_FILE& versions, unsigned char generating_path,
                         int level) {
    if (level >= MAX_LEVELS) {
        TRACE_OUTPUT::output_warning("The base skins of \"%s\" have no end", skin_loading.c_str());
        return false;
    }
    DISK_MANAGER disk = find_skins(generating_path);
    if (!disk.move_down(skin, regenerate[level])) {
        TRACE_OUTPUT::output_warning("There is no skin \"%s\" in %s", skin, disk.get_path_string());
        return level != 0 && !regenerate[level];
    }
    tools().load_header(disk, COMPILED_FILE);
    const std::uint16_t compiled_version = tools().internal_version;

    CONFIG_FILE config(SKIN_INFO_FILE, true, FOLDER_BASE, false);
    char base[CONFIG_FILE::value_size];
    const bool has_base = config.read(disk, "base_skin_folder", base) && *base;
    if (has_base) {
        if (!load_skin(base, versions, generating_path, level + 1)) {
            return false;
        }
        set_discard_unused(true);
    }
    KVCORE::copy_text_field(level_name, skin);

    std::int16_t height = 0;
    std::int16_t width = 0;
    std::uint16_t version = 0;
    const bool is_described = get_skin_info(config, disk, nullptr, nullptr, nullptr, nullptr,
                                            nullptr, nullptr, height, width, version);
    if (!is_described && level != 0) {
        return true;
    }
    if (is_described && compiled_version != version) {
        regenerate[level] = true;
    }
    // A change in a base skin rebuilds all that is built on it.
    for (int deepest = MAX_LEVELS - 1; deepest > level; --deepest) {
        if (regenerate[deepest]) {
            std::fill(regenerate + level, regenerate + deepest, true);
            break;
        }
    }
    if (!regenerate[level] && tools().load(disk, COMPILED_FILE)) {
        return true;
    }
    if (!is_described) {
        return false;
    }
    const REGENERATED result = regenerate_level(disk, has_base, config, version, versions);
    set_discard_unused(false);
    // One that was to be generated is asked for as a file; an older file isn't it.
    if (result == REGENERATED_AND_STORED || (generating && level == 0)) {
        return result == REGENERATED_AND_STORED;
    }
    // In a folder that can't be written: a good compiled skin, or if there is none what has been
    // read, which is then read at every start.
    if (!tools().load(disk, COMPILED_FILE)) {
        return result == REGENERATED_ONLY && tools().file_version == 0;
    }
    versions.write(versions.get_base_path(), level_name, std::uint32_t{version});
    return true;
}

GUI_SKIN::REGENERATED GUI_SKIN::regenerate_level(DISK_MANAGER& disk, bool has_base,
                                                 CONFIG_FILE& config,
                                                 std::uint16_t internal_version,
                                                 CONFIG_FILE& versions) {
    WM_STYLE_SET::cache_flags = FLAGS_WHILE_BUILDING;
    set_discard_unused(true);

    // Runs `read` in a subfolder. Without a base skin, all of them are needed.
    const auto read_folder = [&](const char* folder, const auto& read) {
        DISK_MANAGER below = disk;
        if (below.move_down(folder)) {
            read(below);
            return true;
        }
        if (!has_base) {
            TRACE_OUTPUT::output_warning("The skin \"%s\" has no folder \"%s\"", level_name,
                                         folder);
        }
        return has_base;
    };
    const auto read_fonts = [&](const DISK_MANAGER& folder) {
        tools().load_fonts(folder, !has_base);
    };
    DISK_MANAGER fonts = disk;
    DISK_MANAGER common;
    if (!fonts.move_down("fonts") && common.goto_path(FOLDER_APPDATA) &&
        common.move_down("fonts")) {
        read_fonts(common);
    } else if (!read_folder("fonts", read_fonts)) {
        return NOT_REGENERATED;
    }
    if (!read_folder("style_sets", [](const DISK_MANAGER& folder) {
            tools().load_style_sets(folder, 0, 1);
            tools().load_style_sets(folder, 0, 0);
        })) {
        return NOT_REGENERATED;
    }
    char value[CONFIG_FILE::value_size];
    COLOUR tint;
    if (config.read(disk, "recolour_skin_to", value)) {
        if (parse_skin_colour(value, tint)) {
            WM_PAGE_TOOL_MANAGER::styleset_image_cache.recolour_in_place = true;
            tools().recolour(tint);
            WM_PAGE_TOOL_MANAGER::styleset_image_cache.recolour_in_place = false;
        } else {
            trace_refused_value(disk, SKIN_INFO_FILE, "recolour_skin_to", value);
        }
    }
    if (!read_folder("constants", [](const auto& folder) { tools().load_constants(folder); }) ||
        !read_folder("images", [](const auto& folder) { tools().load_images(folder); }) ||
        !read_folder("colours", [](const auto& folder) { tools().load_colours(folder); })) {
        return NOT_REGENERATED;
    }
    // The base skin's version, which was read last, is not this one's.
    tools().internal_version = internal_version;
    if (!tools().save(disk, COMPILED_FILE, internal_version)) {
        return REGENERATED_ONLY;
    }
    versions.write(versions.get_base_path(), level_name, std::uint32_t{internal_version});
    return REGENERATED_AND_STORED;
}

void GUI_SKIN::apply_loaded_skin(DISK_MANAGER& disk) {
    setup_font_manager(disk);
    set_skin_info(disk);
    using LOOKS = WM_SCREEN_OBJECT_LOOKS;
    LOOKS::hint_style_set = get_style_set("HINT");
    copy_arrow("ARROW_UP", LOOKS::up_arrow_image);
    copy_arrow("ARROW_DOWN", LOOKS::down_arrow_image);
    copy_arrow("ARROW_LEFT", LOOKS::left_arrow_image);
    copy_arrow("ARROW_RIGHT", LOOKS::right_arrow_image);
    copy_arrow("ARROW_UP_DISABLED", LOOKS::disabled_up_arrow_image);
    copy_arrow("ARROW_DOWN_DISABLED", LOOKS::disabled_down_arrow_image);
    copy_arrow("ARROW_LEFT_DISABLED", LOOKS::disabled_left_arrow_image);
    copy_arrow("ARROW_RIGHT_DISABLED", LOOKS::disabled_right_arrow_image);
}

// --- The skin's description ---

bool GUI_SKIN::get_skin_info(CONFIG_FILE& config, DISK_MANAGER& disk, char* folder, char* name,
                             char* author, char* description, char* url, char* display_version,
                             std::int16_t& default_height, std::int16_t& default_width,
                             std::uint16_t& internal_version) {
    return ::get_skin_info(config, disk, folder, name, author, description, url, display_version,
                           default_height, default_width, internal_version);
}

bool GUI_SKIN::set_skin_info(DISK_MANAGER& disk) {
    static_assert(TEXT_SIZE == SKIN_INFO_TEXT_SIZE);
    CONFIG_FILE config(SKIN_INFO_FILE, true, FOLDER_BASE, false);
    std::uint16_t internal_version = 0;
    // The sizes are asked for by being other than 0.
    default_height = default_width = -1;
    const bool found =
        get_skin_info(config, disk, nullptr, name, author, description, url, display_version,
                      default_height, default_width, internal_version);
    default_height = std::max<std::int16_t>(default_height, 0);
    default_width = std::max<std::int16_t>(default_width, 0);
    return found;
}

void GUI_SKIN::setup_font_manager(DISK_MANAGER& disk) {
    CONFIG_FILE config(SKIN_INFO_FILE, true, FOLDER_BASE, false);
    FONT_MANAGER& manager = FONT_MANAGER::get_instance();
    char value[CONFIG_FILE::value_size];
    if (config.read(disk, "font_name", value)) {
        const signed char font = get_font(value);
        if (font != -1) {
            manager.font = font;
        } else {
            trace_refused_value(disk, SKIN_INFO_FILE, "font_name", value);
        }
    }
    const auto read_size = [&](const char* key, std::int16_t& size) {
        if (!config.read(disk, key, value)) {
            return;
        }
        std::int32_t number = 0;
        if (!parse_skin_number(value, number) || number > FONT_MANAGER::MAX_TEXT_SIZE) {
            trace_refused_value(disk, SKIN_INFO_FILE, key, value);
        } else if (number > 0) {
            size = static_cast<std::int16_t>(number);
        }
    };
    read_size("font_x_sz", manager.x_size);
    read_size("font_y_sz", manager.y_size);
}

// --- Look-ups ---

namespace {

// An item's name: "NAME", or "PREFIX_NAME".
class ITEM_NAME {
public:
    ITEM_NAME(const char* item, const char* item_prefix)
        : name(item), prefix(item_prefix ? item_prefix : ""), prefix_size(std::strlen(prefix)) {}

    // Without putting the name together: this is what a repeated look-up pays.
    bool is(const char* full_name) const {
        if (!full_name || !name) {
            return false;
        }
        if (prefix_size != 0) {
            if (std::strncmp(full_name, prefix, prefix_size) != 0 ||
                full_name[prefix_size] != '_') {
                return false;
            }
            full_name += prefix_size + 1;
        }
        return std::strcmp(full_name, name) == 0;
    }

    template <class ENTRY>
    std::int32_t find_in(const PTRARRAY& table) const {
        if (!name) {
            return -1;
        }
        if (prefix_size == 0) {
            return find_entry_index<ENTRY>(table, name);
        }
        const std::string full_name = std::string(prefix).append("_").append(name);
        return find_entry_index<ENTRY>(table, full_name.c_str());
    }

private:
    const char* name;
    const char* prefix;
    std::size_t prefix_size;
};

// The entry at the cached place if it has the name, or else the one that is found.
template <class ENTRY, class INDEX>
ENTRY* find_item(const PTRARRAY& table, const ITEM_NAME& name, INDEX* cached_index) {
    if (cached_index) {
        ENTRY* entry = table.get<ENTRY>(*cached_index);
        if (entry && name.is(entry->name)) {
            return entry;
        }
    }
    const std::int32_t found = name.find_in<ENTRY>(table);
    if (cached_index) {
        *cached_index = static_cast<INDEX>(found);
    }
    return table.get<ENTRY>(found);
}

}  // namespace

WM_STYLE_SET& GUI_SKIN::get_style_set(const char* item, const char* prefix,
                                      std::int32_t* cached_index) {
    static WM_STYLE_SET empty;
    WM_STYLE_SET* found = find_item<WM_STYLE_SET>(tools().style_sets, {item, prefix}, cached_index);
    return found ? *found : empty;
}

IMAGE* GUI_SKIN::get_image(const char* item, const char* prefix, std::int32_t* cached_index) {
    static IMAGE empty;
    const auto* found = find_item<WM_PTM_IMAGE_INFO>(tools().images, {item, prefix}, cached_index);
    return found && found->image ? found->image : &empty;
}

COLOUR& GUI_SKIN::get_colour(const char* item, const char* prefix, std::int32_t* cached_index) {
    static COLOUR empty;
    auto* found = find_item<WM_PTM_COLOUR_INFO>(tools().colours, {item, prefix}, cached_index);
    return found ? found->colour : empty;
}

signed char GUI_SKIN::get_font(const char* item, const char* prefix, std::int32_t* cached_index) {
    const auto* found = find_item<WM_PTM_FONT_INFO>(tools().fonts, {item, prefix}, cached_index);
    return found ? found->font_index : static_cast<signed char>(-1);
}

std::int16_t GUI_SKIN::get_constant(const char* item, const char* prefix,
                                    std::int16_t* cached_index) {
    const auto* found =
        find_item<WM_PTM_CONSTANT_INFO>(tools().constants, {item, prefix}, cached_index);
    return found ? found->value : std::int16_t{0};
}
