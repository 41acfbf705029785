#include "modules/winman/owned_text.h"

#include <cstring>

#include "platform/data_device.h"

void OWNED_TEXT::set(const char* source) {
    std::unique_ptr<char[]> copy;
    if (source) {
        const std::size_t size = std::strlen(source) + 1;
        copy = std::make_unique<char[]>(size);
        std::memcpy(copy.get(), source, size);
    }
    text = std::move(copy);
}

unsigned char OWNED_TEXT::get_from_data_device(const DATA_DEVICE& device) {
    char* read = nullptr;
    const unsigned char done = device.read_dynamic_text(read);
    text.reset(read);
    if (text && text[0] == '\0') {
        text.reset();
    }
    return done;
}

unsigned char OWNED_TEXT::put_to_data_device(DATA_DEVICE& device) const {
    return device.write_dynamic_text(text.get());
}

int OWNED_TEXT::compare(const char* left, const char* right) {
    if (!left || !right) {
        return (left ? 1 : 0) - (right ? 1 : 0);
    }
    return std::strcmp(left, right);
}
