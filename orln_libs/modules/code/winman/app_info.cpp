#include "modules/winman/app_info.h"

#include <utility>

#include "compiled_skin.h"
#include "kvcore/text_field.h"
#include "modules/winman/page_tool_manager.h"
#include "path_field.h"
#include "platform/data_device.h"
#include "platform/disk_manager.h"
#include "platform/font_manager.h"
#include "platform/image_cache.h"
#include "sorted_table.h"

namespace {

constexpr const char* DEFAULT_FONT_PATH = "$APPDATA/fonts";
constexpr const char* DEFAULT_IMAGE_PATH = "$APPDATA/images";

template <class ENTRY>
PTRARRAY make_table() {
    return PTRARRAY(0, 0, delete_entry<ENTRY>, compare_entries<ENTRY>);
}

// Reads one group of records, of at least `record_size` bytes each.
template <class ENTRY>
bool read_group(const DATA_DEVICE& device, PTRARRAY& table, std::int64_t record_size) {
    std::uint32_t count = 0;
    if (!(device >> count) || count > static_cast<std::uint32_t>(MAX_TABLE_ENTRIES) ||
        count > device.get_bytes_left() / record_size) {
        return false;
    }
    std::vector<std::unique_ptr<ENTRY>> entries;
    entries.reserve(count);
    for (std::uint32_t i = 0; i < count; ++i) {
        WM_PAGE_TOOL_MANAGER::run_loading_callback();
        entries.push_back(std::make_unique<ENTRY>());
        if (!entries.back()->get_from_data_device(device)) {
            return false;
        }
    }
    return merge_table_entries(table, std::move(entries));
}

template <class ENTRY>
bool write_group(DATA_DEVICE& device, const PTRARRAY& table) {
    if (!(device << static_cast<std::uint32_t>(table.get_count()))) {
        return false;
    }
    for (std::int32_t i = 0; i < table.get_count(); ++i) {
        if (!table.get<ENTRY>(i)->put_to_data_device(device)) {
            return false;
        }
    }
    return true;
}

template <class ENTRY>
ENTRY* find_entry(const PTRARRAY& table, const char* name, std::int32_t* index) {
    const std::int32_t found = find_entry_index<ENTRY>(table, name);
    if (index) {
        *index = found;
    }
    return table.get<ENTRY>(found);
}

}  // namespace

// --- Fonts ---

void WM_PTM_FONT_INFO::clear() {
    name.clear();
    filename.clear();
    KVCORE::copy_text_field(path, DEFAULT_FONT_PATH);
    font_index = -1;
}

bool WM_PTM_FONT_INFO::load_font() {
    DISK_MANAGER disk;
    font_index = disk.set_relative_path(path)
                     ? FONT_MANAGER::get_instance().load_font(filename, font_index, &disk)
                     : static_cast<signed char>(-1);
    return font_index != -1;
}

unsigned char WM_PTM_FONT_INFO::get_from_data_device(const DATA_DEVICE& device) {
    if (!name.get_from_data_device(device) || !filename.get_from_data_device(device) ||
        !get_path_field(device, path) || !(device >> font_index)) {
        return 0;
    }
    // Style sets refer to the font by this index, so it gets the same one again.
    if (font_index < 0) {
        font_index = -1;
    } else {
        FONT_MANAGER::get_instance().free_font(font_index);
    }
    load_font();
    return 1;
}

unsigned char WM_PTM_FONT_INFO::put_to_data_device(DATA_DEVICE& device) const {
    return name.put_to_data_device(device) && filename.put_to_data_device(device) &&
           put_path_field(device, path) && device << font_index;
}

// --- Colours ---

void WM_PTM_COLOUR_INFO::clear() {
    name.clear();
    colour = COLOUR_BLACK;
}

unsigned char WM_PTM_COLOUR_INFO::get_from_data_device(const DATA_DEVICE& device) {
    return name.get_from_data_device(device) && device >> colour.value;
}

unsigned char WM_PTM_COLOUR_INFO::put_to_data_device(DATA_DEVICE& device) const {
    return name.put_to_data_device(device) && device << colour.value;
}

// --- Images ---

void WM_PTM_IMAGE_INFO::clear() {
    close_image();
    name.clear();
    filename.clear();
    KVCORE::copy_text_field(path, DEFAULT_IMAGE_PATH);
}

bool WM_PTM_IMAGE_INFO::load_image() {
    close_image();
    if (filename) {
        image =
            WM_PAGE_TOOL_MANAGER::non_styleset_image_cache.open_image(path, filename, -1, -1, 0, 1);
    }
    return image != nullptr;
}

void WM_PTM_IMAGE_INFO::close_image() {
    if (image) {
        WM_PAGE_TOOL_MANAGER::non_styleset_image_cache.close(image);
        image = nullptr;
    }
}

unsigned char WM_PTM_IMAGE_INFO::get_from_data_device(const DATA_DEVICE& device) {
    close_image();
    if (!name.get_from_data_device(device) || !filename.get_from_data_device(device) ||
        !get_path_field(device, path)) {
        return 0;
    }
    load_image();
    return 1;
}

unsigned char WM_PTM_IMAGE_INFO::put_to_data_device(DATA_DEVICE& device) const {
    return name.put_to_data_device(device) && filename.put_to_data_device(device) &&
           put_path_field(device, path);
}

// --- Constants ---

void WM_PTM_CONSTANT_INFO::clear() {
    name.clear();
    value = 0;
}

unsigned char WM_PTM_CONSTANT_INFO::get_from_data_device(const DATA_DEVICE& device) {
    return name.get_from_data_device(device) && device >> value;
}

unsigned char WM_PTM_CONSTANT_INFO::put_to_data_device(DATA_DEVICE& device) const {
    return name.put_to_data_device(device) && device << value;
}

// --- The tables ---

WM_PTM_APP_INFO::WM_PTM_APP_INFO()
    : style_sets(make_table<WM_STYLE_SET>()),
      fonts(make_table<WM_PTM_FONT_INFO>()),
      colours(make_table<WM_PTM_COLOUR_INFO>()),
      images(make_table<WM_PTM_IMAGE_INFO>()),
      constants(make_table<WM_PTM_CONSTANT_INFO>()) {
}

void WM_PTM_APP_INFO::clear() {
    style_sets.clear();
    fonts.clear();
    colours.clear();
    images.clear();
    constants.clear();
}

unsigned char WM_PTM_APP_INFO::get_from_data_device(const DATA_DEVICE& device) {
    return read_group<WM_STYLE_SET>(device, style_sets, STYLE_SET_RECORD_SIZE) &&
           read_group<WM_PTM_FONT_INFO>(device, fonts, FONT_RECORD_SIZE) &&
           read_group<WM_PTM_COLOUR_INFO>(device, colours, COLOUR_RECORD_SIZE) &&
           read_group<WM_PTM_IMAGE_INFO>(device, images, IMAGE_RECORD_SIZE) &&
           read_group<WM_PTM_CONSTANT_INFO>(device, constants, CONSTANT_RECORD_SIZE);
}

unsigned char WM_PTM_APP_INFO::put_to_data_device(DATA_DEVICE& device) const {
    return write_group<WM_STYLE_SET>(device, style_sets) &&
           write_group<WM_PTM_FONT_INFO>(device, fonts) &&
           write_group<WM_PTM_COLOUR_INFO>(device, colours) &&
           write_group<WM_PTM_IMAGE_INFO>(device, images) &&
           write_group<WM_PTM_CONSTANT_INFO>(device, constants);
}

WM_STYLE_SET* WM_PTM_APP_INFO::find_style_set(const char* name, std::int32_t* index) const {
    return find_entry<WM_STYLE_SET>(style_sets, name, index);
}

WM_PTM_FONT_INFO* WM_PTM_APP_INFO::find_font(const char* name, std::int32_t* index) const {
    return find_entry<WM_PTM_FONT_INFO>(fonts, name, index);
}

WM_PTM_COLOUR_INFO* WM_PTM_APP_INFO::find_colour(const char* name, std::int32_t* index) const {
    return find_entry<WM_PTM_COLOUR_INFO>(colours, name, index);
}

WM_PTM_IMAGE_INFO* WM_PTM_APP_INFO::find_image(const char* name, std::int32_t* index) const {
    return find_entry<WM_PTM_IMAGE_INFO>(images, name, index);
}

WM_PTM_CONSTANT_INFO* WM_PTM_APP_INFO::find_constant(const char* name, std::int16_t* index) const {
    std::int32_t found = -1;
    WM_PTM_CONSTANT_INFO* entry = find_entry<WM_PTM_CONSTANT_INFO>(constants, name, &found);
    if (index) {
        *index = static_cast<std::int16_t>(found);
    }
    return entry;
}
