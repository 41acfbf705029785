// Add-on records in every format and byte order: what is read can be stored again, and reads back
// the same.
#include <cstdint>
#include <cstdlib>

#include "autopatch/add_on.h"
#include "autopatch/autopatch_types.h"
#include "platform/message.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    // Two bytes of format, one of byte order, the record.
    if (size < 3 || size > 1 << 20) {
        return 0;
    }
    const auto format = static_cast<std::uint16_t>(data[0] | (data[1] << 8));
    MESSAGE message;
    message.set_byte_order(data[2] & 1);
    message.write_data_block(data + 3, static_cast<std::int32_t>(size - 3));
    message.set_pos(0, false);

    ADD_ON record;
    if (!record.get_from_data_device(format, message)) {
        return 0;
    }
    MESSAGE stored;
    MESSAGE stored_again;
    ADD_ON again;
    if (!is_plain_folder_name(record.path) ||
        !record.put_to_data_device(PROTOCOL_VERSION, stored)) {
        std::abort();
    }
    stored.set_pos(0, false);
    if (!again.get_from_data_device(PROTOCOL_VERSION, stored) ||
        !again.put_to_data_device(PROTOCOL_VERSION, stored_again) || !(stored == stored_again) ||
        !(again == record)) {
        std::abort();
    }
    return 0;
}
