// ORLN_STRING and the clipboard, apart from the rest so that a program that only wants strings
// doesn't need the window layer.
#include <cstring>
#include <vector>

#include "platform/orln_string.h"
#include "platform/window_platform.h"

void ORLN_STRING::copy_into_clipboard() const {
    set_clipboard_text(get_text());
}

void ORLN_STRING::copy_from_clipboard() {
    // Nothing tells the length beforehand: a text that fills the buffer may have been cut.
    constexpr std::size_t MAX_SIZE = std::size_t{1} << 24;
    std::vector<char> buffer(4096, '\0');
    for (;;) {
        get_clipboard_text(buffer.data(), static_cast<std::int32_t>(buffer.size()));
        if (std::strlen(buffer.data()) + 1 < buffer.size() || buffer.size() >= MAX_SIZE) {
            break;
        }
        buffer.assign(buffer.size() * 4, '\0');
    }
    *this = buffer.data();
}
