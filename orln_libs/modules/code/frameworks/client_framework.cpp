#include "modules/frameworks/client_framework.h"

#include <cinttypes>

#include "kvcore/text_field.h"
#include "modules/winman/image_box.h"
#include "modules/winman/wm_dialog.h"
#include "platform/colour.h"
#include "platform/image.h"

CLIENT_FRAMEWORK::CLIENT_FRAMEWORK(const char* config_name, FOLDER_ID folder)
    : WINDOWED_APPLICATION_FRAMEWORK(32, make_graphics_sizes(1024, 758)),
      host_name{},
      port_number(0) {
    config.set_filename(config_name, true);
    config.get_base_path().goto_path(folder);
    config.get_base_path().move_down("config", true);
    output_trace("setting user interface constants");
    COLOUR::alpha_solid_threshold = 250;
    IMAGE::chiseled_light_blend_value = 0.15;
    IMAGE::chiseled_dark_blend_value = -0.1;
    IMAGE_BOX::store_local_result = true;
    WM_DIALOG::grey_background = false;
    WM_DIALOG::darken_background = false;
}

void CLIENT_FRAMEWORK::read_from_config_file(DISK_MANAGER* disk) {
    WINDOWED_APPLICATION_FRAMEWORK::read_from_config_file(disk);
    DISK_MANAGER& folder = disk ? *disk : config.get_base_path();
    char value[CONFIG_FILE::value_size];
    if (config.read(folder, "HOST_NAME", value)) {
        set_host_name(value);
    }
    std::uint32_t port = port_number;
    config.read(folder, "PORT_NUMBER", port);
    port_number = port <= 0xFFFF ? static_cast<std::uint16_t>(port) : std::uint16_t{0};
    output_trace("host_name = %s", host_name);
    output_trace("port_number = %" PRIu32, static_cast<std::uint32_t>(port_number));
}

void CLIENT_FRAMEWORK::write_to_config_file(DISK_MANAGER* disk) {
    WINDOWED_APPLICATION_FRAMEWORK::write_to_config_file(disk);
    DISK_MANAGER& folder = disk ? *disk : config.get_base_path();
    config.write(folder, "HOST_NAME", host_name);
    config.write(folder, "PORT_NUMBER", static_cast<std::uint32_t>(port_number));
}

void CLIENT_FRAMEWORK::set_host_name(const char* name) {
    KVCORE::copy_text_field(host_name, name);
}
