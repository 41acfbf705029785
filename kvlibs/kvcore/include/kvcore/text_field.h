// Fixed-size text fields: the one helper that cuts text at a field's size.
#ifndef KVCORE_TEXT_FIELD_H
#define KVCORE_TEXT_FIELD_H

#include <cstddef>
#include <cstring>

namespace KVCORE {

// Copies `text` into a field of `size` bytes, cut so that the terminator always fits. A null text
// empties the field. Does nothing for a field of size 0. The ranges may not overlap.
inline void copy_text_field(char* field, std::size_t size, const char* text) {
    if (size == 0) {
        return;
    }
    const std::size_t length = text ? ::strnlen(text, size - 1) : 0;
    if (length != 0) {
        std::memcpy(field, text, length);
    }
    field[length] = '\0';
}

// The same for an array whose size the compiler knows.
template <std::size_t N>
void copy_text_field(char (&field)[N], const char* text) {
    copy_text_field(field, N, text);
}

}  // namespace KVCORE

#endif  // KVCORE_TEXT_FIELD_H
