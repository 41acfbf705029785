#include "platform/image.h"

#include <algorithm>
#include <bit>
#include <new>

#include "kvcore/byte_order.h"
#include "platform/data_device.h"
#include "platform/process_tools.h"

namespace {

constexpr unsigned char STORED_FORM_VERSION = 1;

bool is_swapped(const DATA_DEVICE& device) {
    return (device.get_byte_order() != 0) == (std::endian::native == std::endian::little);
}

void swap_row(COLOUR* row, std::size_t count) {
    for (std::size_t i = 0; i < count; ++i) {
        row[i].value = KVCORE::swap_bytes(row[i].value);
    }
}

}  // namespace

IMAGE::IMAGE(std::int16_t new_width, std::int16_t new_height) {
    setup(new_width, new_height);
}

IMAGE::~IMAGE() = default;

void IMAGE::setup(std::int16_t new_width, std::int16_t new_height) {
    IMAGE::reset(new_width, new_height);
}

void IMAGE::reset(std::int16_t new_width, std::int16_t new_height) {
    if (locked) {
        return;
    }
    max_width = max_height = 0;
    if (pixels && new_width == width && new_height == height) {
        set_whole_active_and_dirty();
        return;
    }
    pixels.reset();
    width = height = stride = 0;
    usable = false;
    active_left = active_right = active_top = active_bottom = -1;
    dirty_left = dirty_right = dirty_top = dirty_bottom = -1;
    if (new_width < 1 || new_height < 1 || new_width > MAX_WIDTH) {
        return;
    }
    const auto new_stride = static_cast<std::int16_t>(new_width + (new_width & 1));
    const std::size_t count =
        static_cast<std::size_t>(new_stride) * static_cast<std::size_t>(new_height);
    pixels.reset(new (std::nothrow) COLOUR[count]());
    if (!pixels) {
        display_message("Error", "IMAGE::reset() - unable to allocate image buffer", 0);
        exit_app("Application was unable to continue");
    }
    width = new_width;
    height = new_height;
    stride = new_stride;
    usable = true;
    set_whole_active_and_dirty();
}

void IMAGE::set_whole_active_and_dirty() {
    active_left = active_top = dirty_left = dirty_top = 0;
    active_right = dirty_right = static_cast<std::int16_t>(width - 1);
    active_bottom = dirty_bottom = static_cast<std::int16_t>(height - 1);
}

unsigned char IMAGE::get_from_data_device(const DATA_DEVICE& device) {
    unsigned char version = 0;
    std::uint16_t new_width = 0;
    std::uint16_t new_height = 0;
    if (!(device >> version) || !(device >> new_width) || !(device >> new_height)) {
        return 0;
    }
    const std::int64_t bytes = std::int64_t{4} * new_width * new_height;
    if (locked || new_width > MAX_WIDTH || new_height > MAX_HEIGHT ||
        bytes > device.get_bytes_left()) {
        return 0;
    }
    reset(static_cast<std::int16_t>(new_width), static_cast<std::int16_t>(new_height));
    const auto row_pixels = static_cast<std::size_t>(width);
    const std::int32_t row_bytes = std::int32_t{4} * width;
    for (std::int32_t y = 0; y < height; ++y) {
        if (device.read_data_block(row(y), row_bytes) != row_bytes) {
            return 0;
        }
        if (is_swapped(device)) {
            swap_row(row(y), row_pixels);
        }
    }
    return 1;
}

unsigned char IMAGE::put_to_data_device(DATA_DEVICE& device) const {
    if (!(device << STORED_FORM_VERSION) || !(device << static_cast<std::uint16_t>(width)) ||
        !(device << static_cast<std::uint16_t>(height))) {
        return 0;
    }
    const auto row_pixels = static_cast<std::size_t>(width);
    const std::int32_t row_bytes = std::int32_t{4} * width;
    const std::unique_ptr<COLOUR[]> swapped(is_swapped(device) ? new COLOUR[row_pixels] : nullptr);
    for (std::int32_t y = 0; y < height; ++y) {
        const COLOUR* source = row(y);
        if (swapped) {
            std::copy_n(source, row_pixels, swapped.get());
            swap_row(swapped.get(), row_pixels);
            source = swapped.get();
        }
        if (device.write_data_block(source, row_bytes) != row_bytes) {
            return 0;
        }
    }
    return 1;
}

void IMAGE::copy_pixels_from(const IMAGE& source) {
    if (locked || &source == this) {
        return;
    }
    reset(source.width, source.height);
    if (pixels && source.pixels) {
        std::copy_n(source.pixels.get(), row_offset(height), pixels.get());
    }
}

bool IMAGE::operator==(const IMAGE& other) const {
    if (width != other.width || height != other.height) {
        return false;
    }
    for (std::int32_t y = 0; y < height; ++y) {
        if (!std::equal(row(y), row(y) + width, other.row(y))) {
            return false;
        }
    }
    return true;
}
