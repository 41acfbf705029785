// The content of "add_ons.bin" behind its byte order: whatever is read is stored as a good
// catalogue, of which every record can be read. (Records that share a path replace one another, so
// the second reading may hold fewer.)
#include <cstdint>
#include <cstdlib>

#include "autopatch/add_ons_manager.h"
#include "platform/message.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size < 1 || size > 1 << 20) {
        return 0;
    }
    MESSAGE file;
    file.set_byte_order(data[0]);
    file.write_data_block(data + 1, static_cast<std::int32_t>(size - 1));
    file.set_pos(0, false);

    ADD_ONS_MANAGER catalogue;
    catalogue.get_from_data_device(file);
    MESSAGE stored;
    if (!catalogue.put_to_data_device(stored)) {
        std::abort();
    }
    stored.set_pos(0, false);
    ADD_ONS_MANAGER again;
    again.get_from_data_device(stored);
    if (stored.get_bytes_left() != 0 || again.viewed.get_count() != catalogue.viewed.get_count() ||
        again.installed.get_count() > catalogue.installed.get_count()) {
        std::abort();
    }
    return 0;
}
