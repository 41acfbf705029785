// JPEG files as a skin's folder may hold them, at their own size and stretched.
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <vector>

#include "platform/data_file.h"
#include "platform/image.h"
#include "platform/image_load.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size < 2 || size > 1 << 20) {
        return 0;
    }
    // The last byte tells the size that is asked for.
    const std::int32_t side = data[size - 1] % 4 * 33;
    std::vector<std::uint8_t> bytes(data, data + size - 1);
    DATA_FILE file(::fmemopen(bytes.data(), bytes.size(), "rb"), FILE_READ, BYTEORDER_LITTLE,
                   false);
    IMAGE image;
    const bool loaded = load_jpg(file, image, side, side / 2);
    if (loaded != (image.width > 0) || (loaded && side != 0 && image.width != side)) {
        std::abort();
    }
    return 0;
}
