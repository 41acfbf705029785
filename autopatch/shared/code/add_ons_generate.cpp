// The generate mode of ADD_ONS_MANAGER: the catalogue that a fresh installation ships with, made
// from a build tree. The tree's root folder is searched for upward from the base folder:
//
//     oqvl/shared/code/europe/main/version.h                  the application's build number
//     oqvl/client/add_ons/skins/saffrane/skin.cfg             the default skin's version
//     oqvl/client/add_ons/match3d/defaults.cfg                the 3D add-on's version
//     oqvl/client/add_ons/match3d/COMPONENT/defaults.cfg      and those of its components
//
// Whatever is missing ends the program, because a catalogue without it would be published.
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <initializer_list>
#include <memory>
#include <string>

#include "autopatch/add_ons_manager.h"
#include "platform/config_file.h"
#include "platform/disk_manager.h"
#include "platform/process_tools.h"
#include "platform/text_file.h"

namespace {

constexpr const char* TREE_ROOT = "oqvl";
constexpr const char* VERSION_FILE = "version.h";
constexpr char BUILD_NUMBER_LINE[] = "#define BUILD_NUMBER ";
constexpr const char* DEFAULT_SKIN = "saffrane";
constexpr const char* MATCH_3D = "match3d";
constexpr const char* COMPONENTS[] = {"anims",        "meshes_misc",    "meshes_people",
                                      "meshes_pitch", "meshes_stadium", "textures"};

using FOLDERS = std::initializer_list<const char*>;

void write_line(const std::string& text) {
    write_to_console(text.c_str());
}

// To the tree's root, which is looked for here and then ever further up; at the top of the volume
// the search ends there.
void move_up_to_root(DISK_MANAGER& disk) {
    while (!disk.move_down(TREE_ROOT) && disk.move_up()) {
    }
}

bool move_to_tree_folder(DISK_MANAGER& disk, FOLDERS folders) {
    move_up_to_root(disk);
    for (const char* folder : folders) {
        if (!disk.move_down(folder)) {
            return false;
        }
    }
    return true;
}

// True if a number was there.
bool read_version(const DISK_MANAGER& disk, const char* file, const char* key,
                  std::uint16_t& version) {
    constexpr std::uint32_t NONE = 0x80000000u;  // no version
    std::uint32_t value = NONE;
    CONFIG_FILE config(file, true, FOLDER_BASE, false);
    if (!config.read(disk, key, value) || value == NONE) {
        return false;
    }
    version = static_cast<std::uint16_t>(value);
    return true;
}

// The number of the first line that defines one other than 0; 0 without any.
std::uint16_t read_build_number(TEXT_FILE& file) {
    constexpr std::size_t PREFIX_SIZE = sizeof BUILD_NUMBER_LINE - 1;
    char line[TEXT_FILE::default_line_limit];
    std::uint16_t number = 0;
    while (number == 0 && file >> line) {
        if (std::strncmp(line, BUILD_NUMBER_LINE, PREFIX_SIZE) == 0) {
            number = static_cast<std::uint16_t>(std::strtol(line + PREFIX_SIZE, nullptr, 10));
        }
    }
    return number;
}

// A valid record. Its description line isn't counted, so it doesn't reach the stored catalogue.
std::unique_ptr<ADD_ON> make_record(ADD_ON::ADD_ON_TYPE type, std::uint16_t version,
                                    const char* path, const char* title, const char* description) {
    auto record = std::make_unique<ADD_ON>();
    record->type = type;
    record->version = version;
    record->set_path(path);
    record->set_title(title);
    record->set_description_line(0, description);
    record->set_enabled(true);
    record->set_downloaded();
    return record;
}

std::unique_ptr<ADD_ON> make_application(DISK_MANAGER& disk) {
    if (!move_to_tree_folder(disk, {"shared", "code", "europe", "main"})) {
        exit_app("Failed to get to shared/main folder");
    }
    TEXT_FILE* file = disk.open_text_file(VERSION_FILE, FILE_READ);
    if (!file) {
        exit_app("Failed to get to open version file");
    }
    const std::uint16_t number = read_build_number(*file);
    DISK_MANAGER::close(file);
    write_line(
        std::string("  Got application build number ").append(std::to_string(number)).append("\n"));
    return make_record(ADD_ON::ADD_ON_APPLICATION, number, "app", "Application", "Application");
}

std::unique_ptr<ADD_ON> make_default_skin(DISK_MANAGER& disk) {
    if (!move_to_tree_folder(disk, {"client", "add_ons", "skins", DEFAULT_SKIN})) {
        exit_app("Failed to get to default skin folder");
    }
    std::uint16_t version = 0;
    if (!read_version(disk, "skin.cfg", "internal_version", version)) {
        exit_app("Failed to get default skin version number");
    }
    write_line(std::string("  Got default skin (")
                   .append(DEFAULT_SKIN)
                   .append(") build number ")
                   .append(std::to_string(version))
                   .append("\n"));
    return make_record(ADD_ON::ADD_ON_SKIN, version, DEFAULT_SKIN, DEFAULT_SKIN, "Default skin");
}

// Null if the tree doesn't hold this component.
std::unique_ptr<ADD_ON> make_component(DISK_MANAGER& disk, const char* name) {
    if (!move_to_tree_folder(disk, {"client", "add_ons", MATCH_3D, name})) {
        return nullptr;
    }
    std::uint16_t version = 0;
    if (!read_version(disk, "defaults.cfg", "version", version)) {
        exit_app(std::string("Failed to get 3D component (")
                     .append(name)
                     .append(") version number")
                     .c_str());
    }
    write_line(std::string("  Got 3D add on (")
                   .append(name)
                   .append(") build number ")
                   .append(std::to_string(version))
                   .append("\n"));
    return make_record(ADD_ON::ADD_ON_MISC, version, name, name, name);
}

std::unique_ptr<ADD_ON> make_match_3d(DISK_MANAGER& disk) {
    if (!move_to_tree_folder(disk, {"client", "add_ons", MATCH_3D})) {
        exit_app("Failed to get to match 3D folder");
    }
    std::uint16_t version = 0;
    if (!read_version(disk, "defaults.cfg", "version", version)) {
        exit_app("Failed to get match 3D version number");
    }
    write_line(std::string("  Got 3D main add on build number ")
                   .append(std::to_string(version))
                   .append("\n"));
    auto record = make_record(ADD_ON::ADD_ON_MISC, version, MATCH_3D, "3D Match View",
                              "View the match in full 3D.");
    for (const char* name : COMPONENTS) {
        if (auto component = make_component(disk, name)) {
            record->add_child(component.release());
        }
    }
    record->set_downloaded();
    return record;
}

}  // namespace

void ADD_ONS_MANAGER::generate_data(bool generate_3d) {
    // What is listed here isn't installed on this machine.
    verify_on_save = false;
    DISK_MANAGER disk(FOLDER_BASE);
    const auto application = make_application(disk);
    clear_available();
    clear_mandatory();
    clear_installed();
    clear_viewed();
    set_add_on(application.get(), 1);
    set_add_on(make_default_skin(disk).get(), 1);
    if (!save()) {
        exit_app("Failed to save the add-ons catalogue");
    }
    if (generate_3d) {
        set_add_on(make_match_3d(disk).get(), 1);
        if (!save()) {
            exit_app("Failed to save the add-ons catalogue");
        }
    }
}
