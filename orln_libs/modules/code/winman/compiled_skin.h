// The layout of "skin.bin", and a check of it that changes nothing.
#ifndef MODULES_WINMAN_COMPILED_SKIN_H
#define MODULES_WINMAN_COMPILED_SKIN_H

#include <cstdint>

#include "modules/winman/style_set.h"

class DATA_DEVICE;

// From this version on the file holds its internal version.
inline constexpr std::int16_t INTERNAL_VERSION_SINCE = 22;
// From this version on the file holds the second cache.
inline constexpr std::int16_t SECOND_CACHE_SINCE = 21;
// This version holds a byte in front of the caches that is skipped.
inline constexpr std::int16_t VERSION_WITH_SKIPPED_BYTE = 20;

// Bytes of the records without the characters of their texts; each text has a count of 4 bytes.
inline constexpr std::int64_t STYLE_SET_NUMBERS_SIZE = 91;
inline constexpr std::int64_t STYLE_SET_RECORD_SIZE =
    4 + 4 + WM_STYLE_SET::PATH_SIZE + STYLE_SET_NUMBERS_SIZE;
inline constexpr std::int64_t FONT_RECORD_SIZE = 4 + 4 + WM_STYLE_SET::PATH_SIZE + 1;
inline constexpr std::int64_t COLOUR_RECORD_SIZE = 4 + 4;
inline constexpr std::int64_t IMAGE_RECORD_SIZE = 4 + 4 + WM_STYLE_SET::PATH_SIZE;
inline constexpr std::int64_t CONSTANT_RECORD_SIZE = 4 + 2;

// Walks from behind the version fields to the end of the tables. False if a count, a length or a
// size isn't borne out by the bytes that are there, or is beyond what the reader takes.
bool check_compiled_skin(const DATA_DEVICE& device, std::int16_t file_version);

#endif  // MODULES_WINMAN_COMPILED_SKIN_H
