// The stored and the text form of MESSAGE, and the counted texts of DATA_DEVICE. Input: one byte
// that picks the form and the byte order, then the form's bytes.
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <string>

#include "kvcore/string.h"
#include "platform/message.h"
#include "platform/orln_string.h"

namespace {

void require(bool condition) {
    if (!condition) {
        std::abort();
    }
}

// What has been read is stored and read again without a difference.
void check_stored_form(MESSAGE& message) {
    MESSAGE device;
    require(message.put_to_data_device(device) == 1);
    device.set_pos(0, false);
    MESSAGE again(message.get_header_size());
    require(again.get_from_data_device(device) == 1);
    require(again == message);
    require(again.get_uncompressed_size() == message.get_uncompressed_size());

    const std::int32_t claimed = message.get_uncompressed_size();
    if (message.uncompress() == 1) {
        require(message.get_length() <= claimed || message.get_length() == 0);
    }
}

void read_stored_form(const MESSAGE& device) {
    MESSAGE message(17);
    while (message.get_from_data_device(device) == 1) {
        require(message.get_length() <= device.get_length());
        check_stored_form(message);
    }
}

void read_text_form(const std::string& text) {
    for (const bool replace : {true, false}) {
        MESSAGE message(3);
        message.write_data_block("abcdef", 6);
        message.set_pos(2, false);
        if (message.get_from_string(text.c_str(), replace) != 1) {
            continue;
        }
        const std::int32_t size = message.get_length() * 2 + 18;
        const auto out = std::make_unique<char[]>(static_cast<std::size_t>(size));
        require(message.put_to_string(out.get(), size, false) == 1);
        require(message.put_to_string(out.get(), size, true) == 1);
        MESSAGE again(3);
        require(again.get_from_string(out.get(), true) == 1);
        require(again == message);
        check_stored_form(message);
    }
}

void read_texts(const MESSAGE& device) {
    for (;;) {
        char* text = nullptr;
        const bool done = device.read_dynamic_text(text) == 1;
        const std::unique_ptr<char[]> owned(text);
        require(done || !text);
        if (!done) {
            break;
        }
        KVCORE::STRING string;
        if (!(device >> string)) {
            require(string.is_empty());
        }
        char field[8];
        device.read_dynamic_text(field, sizeof field);
        require(std::memchr(field, 0, sizeof field) != nullptr);
        ORLN_STRING stored;
        if (stored.get_from_data_device(device) == 1) {
            require(stored.get_length() <= device.get_length());
        }
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size < 1 || size > 100000) {
        return 0;
    }
    const int form = data[0] & 3;
    MESSAGE device;
    device.set_byte_order((data[0] & 4) != 0 ? BYTEORDER_BIG : BYTEORDER_LITTLE);
    device.write_data_block(data + 1, static_cast<std::int32_t>(size - 1));
    device.set_pos(0, false);
    switch (form) {
        case 0:
            read_stored_form(device);
            break;
        case 1:
            read_text_form(std::string(reinterpret_cast<const char*>(data) + 1, size - 1));
            break;
        default:
            read_texts(device);
            break;
    }
    return 0;
}
