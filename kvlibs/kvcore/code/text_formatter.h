// The engine behind every printf-like operation of the library.
#ifndef KVCORE_TEXT_FORMATTER_H
#define KVCORE_TEXT_FORMATTER_H

#include <cstdarg>
#include <cstdint>

#include "kvcore/memory.h"
#include "kvcore/string_buffer.h"
#include "kvcore/text_view.h"

namespace KVCORE {

// Collects 16-bit units, the first few without any allocation. Stops at the longest text that a
// string can hold.
class FORMAT_BUFFER {
public:
    FORMAT_BUFFER() = default;
    ~FORMAT_BUFFER() {
        if (units != inline_units) {
            MEMORY_LIBC::free(units);
        }
    }
    FORMAT_BUFFER(const FORMAT_BUFFER&) = delete;
    FORMAT_BUFFER& operator=(const FORMAT_BUFFER&) = delete;

    void append(TEXT_VIEW text);
    // Appends one unit `count` times.
    void append(char16_t unit, std::int32_t count);
    bool is_full() const noexcept { return length == STRING_BUFFER::MAX_LENGTH; }

    TEXT_VIEW get_text() const noexcept { return TEXT_VIEW(units, length); }

private:
    // Makes room for `count` more units, and yields how many of them fit.
    std::int32_t reserve(std::int32_t count);

    char16_t inline_units[256];
    char16_t* units = inline_units;
    std::int32_t capacity = 256;
    std::int32_t length = 0;
};

// Appends the arguments in the form that `format` asks for, in the language that TEXT_UTILITIES
// describes.
void format_text(FORMAT_BUFFER& out, TEXT_VIEW format, va_list arguments);

}  // namespace KVCORE

#endif  // KVCORE_TEXT_FORMATTER_H
