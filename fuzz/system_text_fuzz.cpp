// Texts of the desktop, as from the clipboard, and the resources of an X server.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>

#include "../orln_libs/platform/code/linuxcode/x11_resolution.h"
#include "platform/text_encoding.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string bytes(reinterpret_cast<const char*>(data), size);
    const std::string text = utf8_to_system(bytes);
    // No character takes more room than its bytes did, and what has come in comes back.
    if (text.size() > size || (text.empty() && size != 0) ||
        utf8_to_system(system_to_utf8(text)) != text ||
        utf8_to_system(system_to_utf8(bytes)) != bytes) {
        std::abort();
    }
    const float resolution = read_resource_resolution(bytes.c_str());
    if (!(resolution >= 0 && resolution <= 2000)) {
        std::abort();
    }
    return 0;
}
