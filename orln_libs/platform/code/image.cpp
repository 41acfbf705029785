#include "platform/image.h"

#include <algorithm>
#include <bit>
#include <cstdio>
#include <new>

#include "image_fatal.h"
#include "kvcore/byte_order.h"
#include "platform/data_device.h"

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

std::int16_t IMAGE::shadow_x_offset = 2;
std::int16_t IMAGE::shadow_y_offset = 2;
unsigned char IMAGE::shadow_alpha = 50;
std::int16_t IMAGE::inset_x_offset = 1;
std::int16_t IMAGE::inset_y_offset = 1;
unsigned char IMAGE::inset_alpha = 100;
std::int16_t IMAGE::chiseled_x_offset = 1;
std::int16_t IMAGE::chiseled_y_offset = 1;
double IMAGE::chiseled_light_blend_value = 0.2;
double IMAGE::chiseled_dark_blend_value = -0.2;

IMAGE::IMAGE(std::int32_t new_width, std::int32_t new_height) {
    setup(new_width, new_height);
}

IMAGE::~IMAGE() = default;

void IMAGE::setup(std::int32_t new_width, std::int32_t new_height) {
    IMAGE::reset(new_width, new_height);
}

void IMAGE::reset(std::int32_t new_width, std::int32_t new_height) {
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
    if (new_width < 1 || new_height < 1 || new_width > MAX_WIDTH || new_height > MAX_HEIGHT) {
        return;
    }
    const std::int32_t new_stride = new_width + (new_width & 1);
    const std::size_t count =
        static_cast<std::size_t>(new_stride) * static_cast<std::size_t>(new_height);
    pixels.reset(new (std::nothrow) COLOUR[count]());
    if (!pixels) {
        stop_with_error("IMAGE::reset() - unable to allocate image buffer");
    }
    width = static_cast<std::int16_t>(new_width);
    height = static_cast<std::int16_t>(new_height);
    stride = static_cast<std::int16_t>(new_stride);
    usable = true;
    set_whole_active_and_dirty();
}

void IMAGE::set_whole_active_and_dirty() {
    active_left = active_top = 0;
    active_right = static_cast<std::int16_t>(width - 1);
    active_bottom = static_cast<std::int16_t>(height - 1);
    widen_dirty_to_all();
}

void IMAGE::widen_dirty_to_all() {
    dirty_left = dirty_top = 0;
    dirty_right = static_cast<std::int16_t>(width - 1);
    dirty_bottom = static_cast<std::int16_t>(height - 1);
}

bool IMAGE::get_active(AREA& area) const {
    if (!usable || active_left < 0 || active_top < 0 || active_right < 0 || active_bottom < 0) {
        return false;
    }
    // The fields are anyone's to set, so they are not trusted to lie within the image.
    area = {active_left, active_top, std::min<std::int32_t>(active_right, width - 1),
            std::min<std::int32_t>(active_bottom, height - 1)};
    return area.left <= area.right && area.top <= area.bottom;
}

bool IMAGE::clip(std::int32_t x1, std::int32_t y1, std::int32_t x2, std::int32_t y2,
                 AREA& area) const {
    AREA active;
    if (!get_active(active)) {
        return false;
    }
    area = {std::max(std::min(x1, x2), active.left), std::max(std::min(y1, y2), active.top),
            std::min(std::max(x1, x2), active.right), std::min(std::max(y1, y2), active.bottom)};
    return area.left <= area.right && area.top <= area.bottom;
}

bool IMAGE::can_draw(const char* operation) const {
    AREA active;
    if (!usable) {
        return false;
    }
    if (!pixels) {
        char text[128];
        std::snprintf(text, sizeof text, "IMAGE::%s() - setup not called", operation);
        stop_with_error(text);
    }
    return get_active(active);
}

void IMAGE::set_active_area(std::int32_t x1, std::int32_t y1, std::int32_t x2, std::int32_t y2) {
    if (width < 1 || height < 1) {
        active_left = active_right = active_top = active_bottom = -1;
        return;
    }
    const auto clamp = [](std::int32_t value, std::int32_t size) {
        return static_cast<std::int16_t>(std::clamp(value, 0, size - 1));
    };
    active_left = clamp(std::min(x1, x2), width);
    active_right = clamp(std::max(x1, x2), width);
    active_top = clamp(std::min(y1, y2), height);
    active_bottom = clamp(std::max(y1, y2), height);
}

void IMAGE::add_rect_to_active_area(std::int32_t x1, std::int32_t y1, std::int32_t x2,
                                    std::int32_t y2) {
    AREA area;
    if (x2 < x1 || y2 < y1 || !clip(x1, y1, x2, y2, area)) {
        active_left = active_right = active_top = active_bottom = -1;
        return;
    }
    active_left = static_cast<std::int16_t>(area.left);
    active_right = static_cast<std::int16_t>(area.right);
    active_top = static_cast<std::int16_t>(area.top);
    active_bottom = static_cast<std::int16_t>(area.bottom);
}

void IMAGE::mark_dirty_area(std::int32_t x1, std::int32_t y1, std::int32_t x2, std::int32_t y2) {
    AREA area;
    if (clip(x1, y1, x2, y2, area)) {
        widen_dirty(area);
    }
}

void IMAGE::widen_dirty(const AREA& area) {
    const auto left = static_cast<std::int16_t>(area.left);
    const auto right = static_cast<std::int16_t>(area.right);
    const auto top = static_cast<std::int16_t>(area.top);
    const auto bottom = static_cast<std::int16_t>(area.bottom);
    if (!is_dirty()) {
        dirty_left = left;
        dirty_right = right;
        dirty_top = top;
        dirty_bottom = bottom;
        return;
    }
    dirty_left = std::min(dirty_left, left);
    dirty_right = std::max(dirty_right, right);
    dirty_top = std::min(dirty_top, top);
    dirty_bottom = std::max(dirty_bottom, bottom);
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
    reset(new_width, new_height);
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
