#include "modules/gui/skin_info.h"

#include <initializer_list>

#include "kvcore/text_field.h"
#include "platform/config_file.h"
#include "platform/disk_manager.h"

namespace {

constexpr const char* SKIN_FILE = "skin.cfg";

static_assert(SKIN_INFO_TEXT_SIZE == CONFIG_FILE::value_size);

void read_text(CONFIG_FILE& config, DISK_MANAGER& disk, const char* key, char* text,
               const char* missing = "") {
    if (text && !config.read(disk, key, text)) {
        KVCORE::copy_text_field(text, SKIN_INFO_TEXT_SIZE, missing);
    }
}

void read_size(CONFIG_FILE& config, DISK_MANAGER& disk, const char* key, std::int16_t& size) {
    std::uint32_t value = 0;
    if (size != 0 && config.read(disk, key, value) && value != 0) {
        size = static_cast<std::int16_t>(value);
    }
}

}  // namespace

bool get_skin_info(CONFIG_FILE& config, DISK_MANAGER& disk, char* folder, char* name, char* author,
                   char* description, char* url, char* display_version,
                   std::int16_t& default_height, std::int16_t& default_width,
                   std::uint16_t& internal_version) {
    internal_version = 0;
    config.set_filename(SKIN_FILE, true);
    if (!DISK_MANAGER::file_exists(disk, SKIN_FILE) || !config.exists(disk)) {
        for (char* text : {folder, name, author, description, url, display_version}) {
            if (text) {
                *text = '\0';
            }
        }
        default_height = default_width = 0;
        return false;
    }
    if (folder) {
        KVCORE::copy_text_field(folder, SKIN_INFO_TEXT_SIZE, disk.get_directory_name());
    }
    read_text(config, disk, "name", name);
    read_text(config, disk, "author", author);
    read_text(config, disk, "description", description);
    read_text(config, disk, "url", url);
    read_text(config, disk, "display_version", display_version, "1.0");
    read_size(config, disk, "default_height", default_height);
    read_size(config, disk, "default_width", default_width);

    std::uint32_t version = 0;
    if (config.read(disk, "internal_version", version)) {
        internal_version = static_cast<std::uint16_t>(version);
    } else {
        // Uncached, so that the author's comments in the file survive.
        config.set_filename(SKIN_FILE, false);
        config.write(disk, "internal_version", std::uint32_t{0});
        config.set_filename(SKIN_FILE, true);
    }
    return true;
}
