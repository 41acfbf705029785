// The stored form of a picture in both byte orders.
#include <cstdint>
#include <cstdlib>

#include "platform/image.h"
#include "platform/message.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size < 1 || size > 1 << 20) {
        return 0;
    }
    MESSAGE message;
    message.set_byte_order(data[0] & 1);
    message.write_data_block(data + 1, static_cast<std::int32_t>(size - 1));
    message.set_pos(0, false);

    IMAGE image;
    if (!image.get_from_data_device(message)) {
        return 0;
    }
    MESSAGE stored;
    IMAGE again;
    if (!image.put_to_data_device(stored)) {
        std::abort();
    }
    stored.set_pos(0, false);
    if (!again.get_from_data_device(stored) || !(again == image)) {
        std::abort();
    }
    return 0;
}
