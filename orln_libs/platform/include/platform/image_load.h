// Loading pictures from files.
#ifndef PLATFORM_IMAGE_LOAD_H
#define PLATFORM_IMAGE_LOAD_H

#include <cstddef>
#include <cstdint>

class DATA_FILE;
class IMAGE;

// Limits that hold before anything of a picture is decoded. Beside them no picture is believed that
// has more pixels than its file could hold at the formats' best compression.
inline constexpr unsigned MAX_PICTURE_SIDE = 4096;
inline constexpr std::size_t MAX_PICTURE_CHUNK_BYTES = std::size_t{8} << 20;  // of one side chunk
inline constexpr std::size_t MAX_JPEG_WORK_BYTES = std::size_t{256} << 20;    // of the decoder
inline constexpr int MAX_JPEG_SCANS = 100;                                    // of one picture

// Reads the PNG picture that starts at the file's position. False if it isn't one, is damaged, or
// is beyond the limits; the image is empty then, and platform_debug_stream is told with the name,
// if one is given. False and nothing else for a locked image.
bool load_png(const DATA_FILE& file, IMAGE& image, const char* name = nullptr);

// The same for a JPEG picture, which is stretched to the size while it is read, by taking the
// nearest pixel; a side below 1 or IMAGE::NO_SIZE means the picture's own. Data that the decoder
// complains of counts as damaged.
bool load_jpg(const DATA_FILE& file, IMAGE& image, std::int32_t width, std::int32_t height,
              const char* name = nullptr);

#endif  // PLATFORM_IMAGE_LOAD_H
