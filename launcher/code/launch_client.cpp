// The start of the game client: choosing the version folder and handing over to it.
#include <algorithm>
#include <cinttypes>
#include <cstdio>
#include <string>

#include "autopatch/autopatch_system.h"
#include "kvcore/text_field.h"
#include "launcher/launcher.h"
#include "platform/config_file.h"
#include "platform/dm_file_info.h"
#include "platform/process_tools.h"

namespace {

constexpr const char* DEFAULT_CLIENT_NAME = "qvl.exe";

// The number behind "app_", 0 for a name of another form.
std::int32_t parse_version_folder(const char* name) {
    std::int32_t version = 0;
    return std::sscanf(name, "app_%" SCNd32, &version) == 1 ? version : 0;
}

}  // namespace

bool LAUNCHER::find_client_version(DISK_MANAGER& client_folder, char (&version)[64]) {
    KVCORE::copy_text_field(version, AUTOPATCH_SYSTEM::get_current_version());
    if (version[0] != '\0') {
        return true;
    }
    DM_FILE_INFO* list = nullptr;
    std::int32_t count = 0;
    client_folder.get_dir_list(true, true, false, list, count, nullptr, nullptr, nullptr);
    std::int32_t newest = 0;
    for (std::int32_t i = 0; i < count; ++i) {
        newest = std::max(newest, parse_version_folder(list[i].name));
    }
    DISK_MANAGER::free_list(list);
    if (newest > 0) {
        std::snprintf(version, sizeof version, "app_%" PRId32, newest);
    }
    return version[0] != '\0';
}

bool LAUNCHER::launch_client() {
    CONFIG_FILE client_config("autopatch.cfg", true, FOLDER_APPDATA, true);
    DISK_MANAGER folder;
    folder.goto_path(FOLDER_ADD_ONS);
    char version[64] = {};
    if (!folder.move_down("client", false) || !find_client_version(folder, version) ||
        !folder.move_down(version, false)) {
        output_warning("There is no client to start in %s", folder.get_path_string(nullptr));
        return false;
    }
    char name[256];
    if (!client_config.read(folder, "EXE_NAME", name) || name[0] == '\0') {
        KVCORE::copy_text_field(name, DEFAULT_CLIENT_NAME);
    }
    if (!DISK_MANAGER::file_exists(folder, name)) {
        const std::string path = folder.get_path_string(name);
        exit_app(("The file " + path + " dos not exist, the application cannot continue.").c_str());
    }
    output_trace("starting %s", folder.get_path_string(name));
    std::string reason;
    run_program(folder, name, &reason);  // comes back only on failure
    output_warning("The client %s can't be started: %s", folder.get_path_string(name),
                   reason.c_str());
    return false;
}
