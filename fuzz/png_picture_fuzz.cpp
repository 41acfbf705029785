// PNG files as an add-on's folder may hold them.
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <vector>

#include "platform/data_file.h"
#include "platform/image.h"
#include "platform/image_load.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size == 0 || size > 1 << 20) {
        return 0;
    }
    std::vector<std::uint8_t> bytes(data, data + size);
    DATA_FILE file(::fmemopen(bytes.data(), bytes.size(), "rb"), FILE_READ, BYTEORDER_LITTLE,
                   false);
    IMAGE image;
    const bool loaded = load_png(file, image);
    if (loaded != (image.width > 0)) {
        std::abort();
    }
    return 0;
}
