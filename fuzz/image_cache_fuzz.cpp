// The picture cache of a compiled skin, in both byte orders: what is read can be opened, scaled and
// closed, and comes back the same from what is written.
#include <cstdint>
#include <cstdlib>
#include <string>
#include <vector>

#include "platform/image_cache.h"
#include "platform/message.h"

namespace {

std::string store(const IMAGE_CACHE& cache) {
    MESSAGE message;
    if (!cache.put_to_data_device(message)) {
        std::abort();
    }
    return std::string(reinterpret_cast<const char*>(message.get_buffer()),
                       static_cast<std::size_t>(message.get_length()));
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size < 1 || size > 1 << 18) {
        return 0;
    }
    MESSAGE message;
    message.set_byte_order(data[0] & 1);
    message.write_data_block(data + 1, static_cast<std::int32_t>(size - 1));
    message.set_pos(0, false);
    IMAGE_CACHE cache;
    if (!cache.get_from_data_device(message)) {
        return 0;
    }

    MESSAGE again;
    if (!cache.put_to_data_device(again)) {
        std::abort();
    }
    again.set_pos(0, false);
    IMAGE_CACHE copy;
    if (!copy.get_from_data_device(again) || store(copy).size() != store(cache).size()) {
        std::abort();
    }

    std::vector<IMAGE*> opened;
    for (std::int32_t i = 0; i < copy.entries.get_count() && i < 8; ++i) {
        const CACHE_ENTRY* entry = copy.entries.get<CACHE_ENTRY>(i);
        IMAGE* image = cache.open_image(entry->path, entry->filename, IMAGE::NO_SIZE,
                                        IMAGE::NO_SIZE, IMAGE_CACHE::NEVER_FROM_DISK, 1);
        if (!image) {
            continue;
        }
        // What has been found is found again: nothing is copied at every opening.
        if (cache.open_image(entry->path, entry->filename, IMAGE::NO_SIZE, IMAGE::NO_SIZE,
                             IMAGE_CACHE::NEVER_FROM_DISK, 1) != image) {
            std::abort();
        }
        cache.close(image);
        cache.resize_image(image, 9, 7, 1);
        cache.recolour(image, COLOUR_RED);
        opened.push_back(image);
    }
    cache.soft_clear();
    for (IMAGE* image : opened) {
        cache.close(image);
    }
    if (cache.entries.get_count() != 0) {
        std::abort();
    }
    return 0;
}
