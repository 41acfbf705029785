// Conversion between text encodings, by the C library's iconv.
#ifndef KVCORE_TEXT_CONVERTER_H
#define KVCORE_TEXT_CONVERTER_H

#include <iconv.h>

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "kvcore/string.h"

namespace KVCORE {

// One direction between two encodings, which have the names that iconv knows. One thread at a time.
class TEXT_CONVERTER {
public:
    // `unit` is the width in bytes of the smallest piece of a text in the encoding `from`.
    TEXT_CONVERTER(const char* from, const char* to, std::size_t unit = 1);
    ~TEXT_CONVERTER();
    TEXT_CONVERTER(const TEXT_CONVERTER&) = delete;
    TEXT_CONVERTER& operator=(const TEXT_CONVERTER&) = delete;

    // False if the system doesn't know one of the encodings.
    bool is_open() const;
    // Converts a whole text and appends it to `out`. A unit that belongs to no character becomes
    // `replacement`, which is in the target encoding. Yields how many were replaced. Nothing is
    // done by a converter that isn't open.
    std::int32_t convert(std::string_view text, std::string& out,
                         std::string_view replacement) const;

private:
    iconv_t handle_;
    const std::size_t unit_;
};

// A text of bytes as a string, and back; U+FFFD, or "?" where the encoding has no such character,
// stands for what can't be converted. An unknown encoding yields an empty text. What is beyond
// STRING::MAX_LENGTH is cut.
STRING decode_text(std::string_view bytes, const char* encoding);
std::string encode_text(TEXT_VIEW text, const char* encoding);

}  // namespace KVCORE

#endif  // KVCORE_TEXT_CONVERTER_H
