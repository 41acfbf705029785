// Loading pictures from files.
#ifndef PLATFORM_IMAGE_LOAD_H
#define PLATFORM_IMAGE_LOAD_H

#include <cstddef>

class DATA_FILE;
class IMAGE;

// Limits that hold before anything of a picture is decoded.
inline constexpr unsigned MAX_PICTURE_SIDE = 4096;
inline constexpr std::size_t MAX_PICTURE_CHUNK_BYTES = std::size_t{8} << 20;  // of one side chunk

// Reads the PNG picture that starts at the file's position. False if it isn't one, is damaged, or
// is beyond the limits; the image is empty then.
bool load_png(const DATA_FILE& file, IMAGE& image);

#endif  // PLATFORM_IMAGE_LOAD_H
