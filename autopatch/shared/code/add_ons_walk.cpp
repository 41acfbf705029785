// The walk of ADD_ONS_MANAGER over a folder tree of published add-ons. Each add-on's folder holds
// its settings file, its archive "%s.tar.gz" (the application one for each platform), and
// optionally a picture and a text file with its description.
#include <algorithm>
#include <cstring>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "autopatch/add_ons_manager.h"
#include "catalogue_names.h"
#include "kvcore/text_field.h"
#include "modules/frameworks/trace_output.h"
#include "modules/gui/skin_info.h"
#include "platform/config_file.h"
#include "platform/data_file.h"
#include "platform/disk_manager.h"
#include "platform/dm_file_info.h"
#include "platform/image_load.h"
#include "platform/text_encoding.h"
#include "platform/text_file.h"

namespace {

constexpr const char* APPLICATION_FOLDER = "app";
constexpr const char* MANDATORY_FILE = "mandatory_add_ons.txt";
constexpr const char* PICTURE_FILE = "add_on.png";
// What the greatest description can have been in UTF-8.
constexpr std::size_t MAX_DESCRIPTION_FILE_SIZE =
    std::size_t{4} * ADD_ON::MAX_DESCRIPTION_LINES * ADD_ON::DESCRIPTION_LINE_SIZE;
constexpr std::size_t MAX_MANDATORY_FILE_SIZE = 1 << 20;
constexpr std::size_t FOLDER_NAME_SIZE = 33;  // 32 characters of the folder's name are the path

std::string read_and_close(TEXT_FILE* file, std::size_t max_size) {
    std::string text;
    for (char c = 0; text.size() < max_size && *file >> c;) {
        text += c;
    }
    DISK_MANAGER::close(file);
    return text;
}

// Reads lines like TEXT_FILE itself, but with a limit of the caller's: a line of `size` - 1
// characters stops there and its rest is the next line.
class LINE_READER {
public:
    LINE_READER(std::string_view whole_text, std::size_t line_size)
        : text(whole_text), size(line_size) {}

    bool read(std::string_view& line) {
        // A line end right behind a full line is that line's own.
        if (at_limit && !text.empty() && text.front() == '\n') {
            text.remove_prefix(1);
        }
        at_limit = false;
        if (text.empty()) {
            return false;
        }
        const std::size_t line_end = text.substr(0, size - 1).find('\n');
        at_limit = line_end == std::string_view::npos;
        line = text.substr(0, at_limit ? size - 1 : line_end);
        text.remove_prefix(std::min(text.size(), line.size() + (at_limit ? 0 : 1)));
        return true;
    }

private:
    std::string_view text;
    std::size_t size;
    bool at_limit = false;
};

// True if a number was there.
bool read_number(CONFIG_FILE& config, DISK_MANAGER& disk, const char* key, std::uint16_t& number) {
    constexpr std::uint32_t NONE = 0x10000;
    std::uint32_t value = NONE;
    if (!config.read(disk, key, value) || value == NONE) {
        return false;
    }
    number = static_cast<std::uint16_t>(value);
    return true;
}

void add_lines_of_file(ADD_ON& add_on, DISK_MANAGER& disk, const char* name) {
    TEXT_FILE* file = disk.open_text_file(name, FILE_READ);
    if (!file) {
        TRACE_OUTPUT::output_warning("Description file %s of add-on %s can't be opened.", name,
                                     add_on.path);
        return;
    }
    const std::string text = file_text_to_system(read_and_close(file, MAX_DESCRIPTION_FILE_SIZE));
    LINE_READER reader(text, ADD_ON::DESCRIPTION_LINE_SIZE);
    std::string_view line;
    while (add_on.description_count < ADD_ON::MAX_DESCRIPTION_LINES && reader.read(line)) {
        add_on.add_description_line(std::string(line).c_str());
    }
}

// Version, title and description of a skin, from its "skin.cfg".
bool read_skin(CONFIG_FILE& config, DISK_MANAGER& disk, ADD_ON& add_on) {
    char name[SKIN_INFO_TEXT_SIZE];
    char description[SKIN_INFO_TEXT_SIZE];
    std::int16_t height = 0;
    std::int16_t width = 0;
    if (!get_skin_info(config, disk, nullptr, name, nullptr, description, nullptr, nullptr, height,
                       width, add_on.version)) {
        return false;
    }
    add_on.set_title(file_text_to_system(name).c_str());
    add_on.add_description_line(file_text_to_system(description).c_str());
    return true;
}

// The same for the other types, from "defaults.cfg".
bool read_defaults(CONFIG_FILE& config, DISK_MANAGER& disk, const char* folder_name,
                   ADD_ON& add_on) {
    if (!config.exists(disk) || !read_number(config, disk, "version", add_on.version)) {
        return false;
    }
    char value[CONFIG_FILE::value_size];
    add_on.set_title(
        file_text_to_system(config.read(disk, "title", value) ? value : folder_name).c_str());
    if (config.read(disk, "description_file", value) && *value != '\0') {
        add_lines_of_file(add_on, disk, value);
    } else if (config.read(disk, "description", value)) {
        add_on.add_description_line(file_text_to_system(value).c_str());
    }
    return true;
}

void load_picture(DISK_MANAGER& disk, ADD_ON& add_on) {
    if (!DISK_MANAGER::file_exists(disk, PICTURE_FILE)) {
        return;
    }
    DATA_FILE* file = disk.open_data_file(PICTURE_FILE, FILE_READ, BYTEORDER_LITTLE);
    if (!file || !load_png(*file, *add_on.image)) {
        TRACE_OUTPUT::output_warning("The picture of add-on %s can't be loaded.", add_on.path);
    }
    DISK_MANAGER::close(file);
}

int get_depth(const ADD_ON* add_on) {
    int depth = 0;
    for (; add_on; add_on = add_on->parent) {
        ++depth;
    }
    return depth;
}

// The folders below `disk` by name, so that every walk yields the same catalogue.
std::vector<std::string> list_folders(const DISK_MANAGER& disk) {
    DM_FILE_INFO* list = nullptr;
    std::int32_t count = 0;
    disk.get_dir_list(true, true, false, list, count);
    DISK_MANAGER::sort_file_list_by_name(list, count);
    std::vector<std::string> names;
    for (std::int32_t i = 0; i < count; ++i) {
        names.emplace_back(list[i].name);
    }
    DISK_MANAGER::free_list(list);
    return names;
}

}  // namespace

void ADD_ONS_MANAGER::add_crc_info(DISK_MANAGER& disk, ADD_ON& add_on, signed char platform,
                                   const char* name) {
    auto info = std::make_unique<CRC_INFO>();
    info->add_on = &add_on;
    info->platform = platform;
    CRC_INFO::set_crc(disk, name, *info);
    if (crc_infos.add(info.get())) {
        info.release();
    }
}

void ADD_ONS_MANAGER::add_crc_infos(DISK_MANAGER& disk, ADD_ON& add_on) {
    if (add_on.type != ADD_ON::ADD_ON_APPLICATION) {
        const std::string archive = std::string(add_on.path) + ".tar.gz";
        add_crc_info(disk, add_on, CRC_INFO::PLATFORM_ANY, archive.c_str());
        return;
    }
    add_crc_info(disk, add_on, CRC_INFO::PLATFORM_WINDOWS, "app_win32.tar.gz");
    add_crc_info(disk, add_on, CRC_INFO::PLATFORM_MAC, "app_mac.tar.gz");
    add_crc_info(disk, add_on, CRC_INFO::PLATFORM_X11_I86, "app_x11i86.tar.gz");
}

ADD_ON* ADD_ONS_MANAGER::populate_server_add_on(DISK_MANAGER& disk, ADD_ON::ADD_ON_TYPE type,
                                                ADD_ON* parent) {
    char folder_name[FOLDER_NAME_SIZE];
    KVCORE::copy_text_field(folder_name, disk.get_directory_name());
    if (!is_plain_folder_name(folder_name)) {
        return nullptr;
    }
    const bool is_skin = type == ADD_ON::ADD_ON_SKIN;
    const char* settings = is_skin ? "skin.cfg" : "defaults.cfg";
    if (!DISK_MANAGER::file_exists(disk, settings)) {
        return nullptr;
    }
    CONFIG_FILE config(settings, true, FOLDER_BASE, false);
    auto record = std::make_unique<ADD_ON>();
    ADD_ON& add_on = *record;
    add_on.type = type;
    add_on.set_path(folder_name);
    if (!(is_skin ? read_skin(config, disk, add_on)
                  : read_defaults(config, disk, folder_name, add_on))) {
        return nullptr;
    }
    add_on.minimum_version = add_on.version;
    read_number(config, disk, "minimum_version", add_on.minimum_version);
    add_on.set_enabled(true);
    if (add_on.description_count == 0) {
        add_on.add_description_line(("Build " + std::to_string(add_on.version)).c_str());
    }
    load_picture(disk, add_on);
    add_crc_infos(disk, add_on);
    add_on.file_size = get_archive_size(disk);
    if (!installed.add(record.get())) {
        forget(add_on);
        return nullptr;
    }
    record.release();
    if (parent) {
        add_on.set_parent(*parent);
    } else {
        ++top_level_count;
    }
    TRACE_OUTPUT::output_trace("%s version %u added to download list", add_on.path,
                               unsigned{add_on.version});
    return &add_on;
}

void ADD_ONS_MANAGER::populate_folders(DISK_MANAGER& disk, ADD_ON::ADD_ON_TYPE type,
                                       ADD_ON* parent) {
    for (const std::string& name : list_folders(disk)) {
        if (name == APPLICATION_FOLDER || (type == ADD_ON::ADD_ON_MISC && name == SKINS_FOLDER)) {
            continue;
        }
        DISK_MANAGER folder = disk;
        if (!folder.move_down(name.c_str())) {
            continue;
        }
        ADD_ON* add_on = populate_server_add_on(folder, type, parent);
        if (add_on && type == ADD_ON::ADD_ON_MISC) {
            populate_server_add_ons(folder, type, add_on);
        }
    }
}

void ADD_ONS_MANAGER::populate_server_add_ons(DISK_MANAGER& disk, ADD_ON::ADD_ON_TYPE type,
                                              ADD_ON* parent) {
    DISK_MANAGER folder = disk;
    switch (type) {
        case ADD_ON::ADD_ON_APPLICATION: {
            ADD_ON* application = folder.move_down(APPLICATION_FOLDER)
                                      ? populate_server_add_on(folder, type, parent)
                                      : nullptr;
            if (application) {
                mandatory.add(application);
            } else {
                TRACE_OUTPUT::output_fatal("Did not find application add-on!!!");
            }
            break;
        }
        case ADD_ON::ADD_ON_SKIN:
            if (folder.move_down(SKINS_FOLDER)) {
                populate_folders(folder, type, parent);
            }
            break;
        case ADD_ON::ADD_ON_MISC:
            // A deeper tree couldn't be read back; a link to an outer folder would have no end.
            if (get_depth(parent) <= ADD_ON::MAX_DEPTH) {
                populate_folders(folder, type, parent);
            }
            break;
    }
}

void ADD_ONS_MANAGER::add_mandatory(ADD_ON& add_on) {
    if (mandatory.find(&add_on) >= 0) {
        TRACE_OUTPUT::output_trace("WARNING: Add on %s appears twice in the mandatory file.",
                                   add_on.title);
        return;
    }
    TRACE_OUTPUT::output_trace("Add on %s added to mandatory list", add_on.title);
    mandatory.add(&add_on);
}

void ADD_ONS_MANAGER::get_list(DISK_MANAGER& disk) {
    clear_installed();
    top_level_count = 0;
    populate_server_add_ons(disk, ADD_ON::ADD_ON_APPLICATION, nullptr);
    populate_server_add_ons(disk, ADD_ON::ADD_ON_SKIN, nullptr);
    populate_server_add_ons(disk, ADD_ON::ADD_ON_MISC, nullptr);

    DISK_MANAGER data_folder;
    TEXT_FILE* file = data_folder.goto_path(FOLDER_APPDATA)
                          ? data_folder.open_text_file(MANDATORY_FILE, FILE_READ)
                          : nullptr;
    if (!file) {
        return;
    }
    const std::string text = read_and_close(file, MAX_MANDATORY_FILE_SIZE);
    LINE_READER reader(text, ADD_ON::PATH_SIZE);
    std::string_view path;
    while (reader.read(path)) {
        ADD_ON* add_on = path.empty() ? nullptr : get_add_on(std::string(path).c_str(), 0);
        if (!add_on) {
            continue;
        }
        add_mandatory(*add_on);
        for (std::int32_t i = 0; i < add_on->get_child_count(); ++i) {
            add_mandatory(*add_on->get_child(i));
        }
    }
}

void ADD_ONS_MANAGER::get_list() {
    DISK_MANAGER disk;
    if (disk.goto_path(FOLDER_ADD_ONS)) {
        get_list(disk);
    }
}
