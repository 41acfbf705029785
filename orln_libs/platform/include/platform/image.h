// IMAGE: the software bitmap of the whole GUI.
//
// The GUI draws into 32-bit memory and never touches the screen; what changes is remembered as one
// dirty rectangle per image. An image belongs to one thread at a time.
#ifndef PLATFORM_IMAGE_H
#define PLATFORM_IMAGE_H

#include <cstddef>
#include <cstdint>
#include <memory>

#include "platform/colour.h"
#include "platform/data_device_client.h"

class IMAGE : public DATA_DEVICE_CLIENT {
public:
    // The largest sides; a stride beyond them wouldn't fit its field.
    static constexpr std::int32_t MAX_WIDTH = 32766;
    static constexpr std::int32_t MAX_HEIGHT = 32767;

    // An empty image.
    IMAGE() = default;
    // An image of that size, transparent black; see reset.
    IMAGE(std::int16_t width, std::int16_t height);
    IMAGE(const IMAGE&) = delete;
    IMAGE& operator=(const IMAGE&) = delete;
    ~IMAGE() override;
    // The constructors' work: reset, whatever a derived class makes of that.
    void setup(std::int16_t width, std::int16_t height);

    // The stored form: a byte 1, width and height as 16-bit numbers, then the pixels row by row as
    // 32-bit numbers, without the padding of the stride. Numbers follow the device's byte order.
    // 1 for success.
    //
    // Reading ignores the first byte. It fails, with the image as it was, if the image is locked, a
    // side is larger than the limits above, or the device can't hold the pixels any more: nothing
    // is allocated that the bytes left don't justify.
    unsigned char get_from_data_device(const DATA_DEVICE& device) override;
    unsigned char put_to_data_device(DATA_DEVICE& device) const override;

    // Gives the image a new size with transparent black pixels. With the size it has, the pixels
    // stay. A side below 1, or a width above MAX_WIDTH, leaves an empty image. The clip rectangle
    // and the dirty rectangle become the whole image. Nothing if the image is locked. Running out
    // of memory is fatal.
    virtual void reset(std::int16_t width, std::int16_t height);

    // Makes this image a copy of the other's size and pixels; nothing else is taken over.
    void copy_pixels_from(const IMAGE& source);
    // The same size and the same pixels.
    bool operator==(const IMAGE& other) const;

    // The first pixel of row `y`, which must be a row of the image.
    COLOUR* row(std::int32_t y) { return pixels.get() + row_offset(y); }
    const COLOUR* row(std::int32_t y) const { return pixels.get() + row_offset(y); }

    std::int16_t height = 0, width = 0;  // 0 for an empty image
    std::int16_t stride = 0;             // pixels per row: the width made even
    std::unique_ptr<COLOUR[]> pixels;    // stride * height values; null for an empty image
    bool locked = false;                 // the size and the pixels are not this object's to change
    // The clip rectangle, inclusive; all -1: nothing may be drawn.
    std::int16_t active_left = -1, active_right = -1, active_top = -1, active_bottom = -1;
    bool usable = false;       // set by reset; nothing can be drawn without it
    bool keep_aspect = false;  // resizing keeps the proportions
    // The dirty rectangle, inclusive; all -1: clean.
    std::int16_t dirty_left = -1, dirty_right = -1, dirty_top = -1, dirty_bottom = -1;
    std::int16_t max_width = 0, max_height = 0;  // limits of resizing when positive
    void* cache_entry = nullptr;                 // the cache entry that holds this image, if any
    bool fast_scale = true;                      // resizing may use the supersampling path

private:
    std::size_t row_offset(std::int32_t y) const {
        return static_cast<std::size_t>(y) * static_cast<std::size_t>(stride);
    }
    void set_whole_active_and_dirty();
};

#endif  // PLATFORM_IMAGE_H
