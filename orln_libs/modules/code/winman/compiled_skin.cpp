#include "compiled_skin.h"

#include <algorithm>

#include "modules/winman/page_tool_manager.h"
#include "platform/data_device.h"
#include "platform/image.h"
#include "platform/image_cache.h"
#include "sorted_table.h"

namespace {

constexpr std::int64_t STORED_CURSOR_SIZE = 1 + 2048;  // a DISK_MANAGER record
constexpr std::int64_t PIXEL_SIZE = 4;

class LAYOUT_WALKER {
public:
    explicit LAYOUT_WALKER(const DATA_DEVICE& data_device) : device(data_device) {}

    bool skip(std::int64_t size) {
        if (size > device.get_bytes_left()) {
            return false;
        }
        // Through the device's cache, because moving its position drops that.
        char block[16384];
        while (size > 0) {
            const auto piece =
                static_cast<std::int32_t>(std::min<std::int64_t>(size, sizeof block));
            if (device.read_data_block(block, piece) != piece) {
                return false;
            }
            size -= piece;
        }
        return true;
    }

    bool skip_text() {
        std::int32_t size = 0;
        return device >> size && (size < 1 || skip(size));
    }

    bool skip_image() {
        unsigned char version = 0;
        std::uint16_t width = 0;
        std::uint16_t height = 0;
        return device >> version && device >> width && device >> height &&
               width <= IMAGE::MAX_WIDTH && height <= IMAGE::MAX_HEIGHT &&
               skip(std::int64_t{width} * height * PIXEL_SIZE);
    }

    bool skip_cache() {
        unsigned char version = 0;
        std::uint32_t count = 0;
        if (!(device >> version) || version < 1 || version > 2 || !(device >> count) ||
            count > IMAGE_CACHE::MAX_STORED_ENTRIES) {
            return false;
        }
        constexpr std::int64_t SIZES = 4 * 2;
        for (std::uint32_t i = 0; i < count; ++i) {
            if (!(version == 1 ? skip(STORED_CURSOR_SIZE) : skip_text()) || !skip_text() ||
                !skip(SIZES) || !skip_image()) {
                return false;
            }
        }
        return true;
    }

    // A group of records with that many texts in front.
    bool skip_group(int texts, std::int64_t record_size) {
        std::uint32_t count = 0;
        if (!(device >> count) || count > static_cast<std::uint32_t>(MAX_TABLE_ENTRIES)) {
            return false;
        }
        for (std::uint32_t i = 0; i < count; ++i) {
            for (int text = 0; text < texts; ++text) {
                if (!skip_text()) {
                    return false;
                }
            }
            if (!skip(record_size - texts * 4)) {
                return false;
            }
        }
        return true;
    }

private:
    const DATA_DEVICE& device;
};

}  // namespace

bool check_compiled_skin(const DATA_DEVICE& device, std::int16_t file_version) {
    LAYOUT_WALKER walker(device);
    return (file_version != VERSION_WITH_SKIPPED_BYTE || walker.skip(1)) && walker.skip_cache() &&
           (file_version < SECOND_CACHE_SINCE || walker.skip_cache()) &&
           walker.skip_group(2, STYLE_SET_RECORD_SIZE) && walker.skip_group(2, FONT_RECORD_SIZE) &&
           walker.skip_group(1, COLOUR_RECORD_SIZE) && walker.skip_group(2, IMAGE_RECORD_SIZE) &&
           walker.skip_group(1, CONSTANT_RECORD_SIZE);
}
