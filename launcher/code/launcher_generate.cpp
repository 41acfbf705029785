// The generate mode: compiles the default skin and writes the catalogue that a fresh installation
// ships with. Whatever is missing ends the program, for what is made here would be published.
#include <cinttypes>
#include <ctime>
#include <string>

#include "autopatch/add_ons_manager.h"
#include "launcher/launcher.h"
#include "modules/gui/gui_skin.h"
#include "platform/process_tools.h"

void LAUNCHER::generate_skin() {
    output_trace("Generating skin (%s)", skin_name);
    write_to_console((std::string("Generating skin (") + skin_name + ")\n").c_str());
    const std::time_t start = std::time(nullptr);
    if (!global_gui_skin->load(skin_name, config, 1, nullptr, nullptr, 1)) {
        const DISK_MANAGER skins = GUI_SKIN::get_skin_path(1);
        exit_app((std::string("Failed to generate the skin (") + skin_name + ") in " +
                  skins.get_path_string())
                     .c_str());
    }
    const auto seconds = static_cast<std::int32_t>(std::time(nullptr) - start);
    output_trace("Skin generate took %" PRId32 "s", seconds);
    write_to_console(("Skin generate took " + std::to_string(seconds) + "s\n").c_str());
}

void LAUNCHER::generate_catalogue() {
    write_to_console("Generating catalogue\n");
    ADD_ONS_MANAGER::startup(1);
    ADD_ONS_MANAGER::get_instance()->generate_data(generate_3d);
    const DISK_MANAGER add_ons(FOLDER_ADD_ONS);
    write_to_console(
        (std::string("Catalogue written to ") + add_ons.get_path_string("add_ons.bin") + "\n")
            .c_str());
}
