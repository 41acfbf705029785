#include "modules/gui/skin_info.h"

#include <initializer_list>

#include "../winman/skin_values.h"
#include "kvcore/text_field.h"
#include "modules/frameworks/trace_output.h"
#include "platform/config_file.h"
#include "platform/disk_manager.h"

namespace {

static_assert(SKIN_INFO_TEXT_SIZE == CONFIG_FILE::value_size);

void read_text(CONFIG_FILE& config, DISK_MANAGER& disk, const char* key, char* text,
               const char* missing = "") {
    if (text && !config.read(disk, key, text)) {
        KVCORE::copy_text_field(text, SKIN_INFO_TEXT_SIZE, missing);
    }
}

// True if the key is there. A value that isn't a number from 0 to `maximum` is traced, and `number`
// stays as it is.
bool read_number(CONFIG_FILE& config, const DISK_MANAGER& disk, const char* key,
                 std::int32_t maximum, std::int32_t& number) {
    char text[CONFIG_FILE::value_size];
    if (!config.read(disk, key, text)) {
        return false;
    }
    std::int32_t value = 0;
    if (parse_skin_number(text, value) && value >= 0 && value <= maximum) {
        number = value;
    } else {
        trace_refused_value(disk, SKIN_INFO_FILE, key, text);
    }
    return true;
}

void read_size(CONFIG_FILE& config, DISK_MANAGER& disk, const char* key, std::int16_t& size) {
    std::int32_t value = 0;
    if (size != 0 && read_number(config, disk, key, INT16_MAX, value) && value != 0) {
        size = static_cast<std::int16_t>(value);
    }
}

}  // namespace

bool read_skin_version(CONFIG_FILE& config, const DISK_MANAGER& disk, std::uint16_t& version) {
    std::int32_t value = 0;
    const bool found = read_number(config, disk, "internal_version", UINT16_MAX, value);
    version = static_cast<std::uint16_t>(value);
    return found;
}

bool get_skin_info(CONFIG_FILE& config, DISK_MANAGER& disk, char* folder, char* name, char* author,
                   char* description, char* url, char* display_version,
                   std::int16_t& default_height, std::int16_t& default_width,
                   std::uint16_t& internal_version) {
    internal_version = 0;
    config.set_filename(SKIN_INFO_FILE, true);
    const bool is_there = DISK_MANAGER::file_exists(disk, SKIN_INFO_FILE);
    if (!is_there || !config.exists(disk)) {
        if (is_there) {
            TRACE_OUTPUT::output_warning("%s: the skin's description can't be read",
                                         disk.get_path_string(SKIN_INFO_FILE));
        }
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

    if (!read_skin_version(config, disk, internal_version)) {
        // Uncached, so that the author's comments in the file survive.
        config.set_filename(SKIN_INFO_FILE, false);
        config.write(disk, "internal_version", std::uint32_t{0});
        config.set_filename(SKIN_INFO_FILE, true);
    }
    return true;
}
