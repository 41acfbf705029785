// The stored form of ADD_ON.
#include "autopatch/add_on.h"
#include "platform/data_device.h"

namespace {

// From these formats on a record holds the field.
constexpr std::uint16_t FORMAT_DESCRIPTION_LINES = 1200;
constexpr std::uint16_t FORMAT_FILE_SIZE = 1300;
constexpr std::uint16_t FORMAT_CHILDREN = 1600;
constexpr std::uint16_t FORMAT_INVALID = 1620;

// A record with children is at least as long as its numbers, empty texts and an empty image.
constexpr std::int64_t MIN_CHILD_BYTES = 2 + 2 + 2 + 1 + 4 + 4 + 2 + 5 + 4 + 4;
constexpr std::int64_t MIN_TEXT_BYTES = 4;

}  // namespace

unsigned char ADD_ON::put_to_data_device(std::uint16_t format, DATA_DEVICE& device) const {
    return write(format, device) ? 1 : 0;
}

bool ADD_ON::write(std::uint16_t format, DATA_DEVICE& device) const {
    return (device << static_cast<std::uint16_t>(type)) && (device << version) &&
           (device << minimum_version) && (device << enabled) && device.write_dynamic_text(path) &&
           device.write_dynamic_text(title) && write_description(format, device) &&
           image->put_to_data_device(device) &&
           (format < FORMAT_FILE_SIZE || (device << file_size)) &&
           (format < FORMAT_CHILDREN || write_children(format, device)) &&
           (format < FORMAT_INVALID || (device << invalid));
}

bool ADD_ON::write_description(std::uint16_t format, DATA_DEVICE& device) const {
    if (format < FORMAT_DESCRIPTION_LINES) {
        return device.write_dynamic_text(stored_line(0));
    }
    if (!(device << description_count)) {
        return false;
    }
    for (std::uint16_t i = 0; i < description_count; ++i) {
        if (!device.write_dynamic_text(stored_line(i))) {
            return false;
        }
    }
    return true;
}

bool ADD_ON::write_children(std::uint16_t format, DATA_DEVICE& device) const {
    if (!(device << static_cast<std::uint32_t>(get_child_count()))) {
        return false;
    }
    for (std::int32_t i = 0; i < get_child_count(); ++i) {
        if (!get_child(i)->write(format, device)) {
            return false;
        }
    }
    return true;
}

unsigned char ADD_ON::get_from_data_device(std::uint16_t format, const DATA_DEVICE& device) {
    return read(format, device, 0) ? 1 : 0;
}

bool ADD_ON::read(std::uint16_t format, const DATA_DEVICE& device, int depth) {
    children.clear();
    file_size = 0;
    if (!read_identity(device) || !read_description(format, device) ||
        !image->get_from_data_device(device)) {
        return false;
    }
    if (format >= FORMAT_FILE_SIZE && !(device >> file_size)) {
        return false;
    }
    if (format >= FORMAT_CHILDREN && !read_children(format, device, depth)) {
        return false;
    }
    if (format >= FORMAT_INVALID) {
        return device >> invalid;
    }
    invalid = version == 0 || version < minimum_version;
    return true;
}

bool ADD_ON::read_identity(const DATA_DEVICE& device) {
    std::uint16_t stored_type = 0;
    if (!(device >> stored_type) || stored_type > ADD_ON_SKIN) {
        return false;
    }
    type = static_cast<ADD_ON_TYPE>(stored_type);
    return (device >> version) && (device >> minimum_version) && (device >> enabled) &&
           device.read_dynamic_text(path, PATH_SIZE) && is_plain_folder_name(path) &&
           device.read_dynamic_text(title, TITLE_SIZE);
}

bool ADD_ON::read_description(std::uint16_t format, const DATA_DEVICE& device) {
    std::uint16_t count = 1;
    if (format >= FORMAT_DESCRIPTION_LINES && !(device >> count)) {
        return false;
    }
    if (count > MAX_DESCRIPTION_LINES || count * MIN_TEXT_BYTES > device.get_bytes_left()) {
        return false;
    }
    description.clear();
    description_count = 0;
    for (std::uint16_t i = 0; i < count; ++i) {
        char line[DESCRIPTION_LINE_SIZE];
        if (!device.read_dynamic_text(line, DESCRIPTION_LINE_SIZE)) {
            return false;
        }
        add_description_line(line);
    }
    return true;
}

bool ADD_ON::read_children(std::uint16_t format, const DATA_DEVICE& device, int depth) {
    std::uint32_t count = 0;
    if (!(device >> count) || count > MAX_CHILDREN ||
        count * MIN_CHILD_BYTES > device.get_bytes_left() || (count != 0 && depth >= MAX_DEPTH)) {
        return false;
    }
    for (std::uint32_t i = 0; i < count; ++i) {
        auto child = std::make_unique<ADD_ON>();
        if (!child->read(format, device, depth + 1)) {
            return false;
        }
        child->parent = this;
        add_child(child.release());
    }
    return true;
}
