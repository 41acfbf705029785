#include "platform/image_load.h"

#include <png.h>

#include <cstdint>
#include <vector>

#include "platform/data_file.h"
#include "platform/image.h"

namespace {

constexpr int SIGNATURE_BYTES = 4;
constexpr double SCREEN_GAMMA = 1.7;
constexpr double DEFAULT_FILE_GAMMA = 0.45455;
constexpr png_uint_32 MAX_CACHED_CHUNKS = 64;

void read_from_file(png_structp png, png_bytep bytes, png_size_t count) {
    const auto* file = static_cast<const DATA_FILE*>(png_get_io_ptr(png));
    while (count != 0) {
        const auto piece = static_cast<std::int32_t>(count < 65536 ? count : 65536);
        if (file->read_data_block(bytes, piece) != piece) {
            png_error(png, "unexpected end of file");
        }
        bytes += piece;
        count -= static_cast<png_size_t>(piece);
    }
}

[[noreturn]] void fail(png_structp png, png_const_charp) {
    png_longjmp(png, 1);
}

void ignore_warning(png_structp, png_const_charp) {
}

// Asks for 32-bit pixels with the bytes B, G, R, A whatever the file holds.
void set_transformations(png_structp png, png_infop info) {
    const png_byte colour_type = png_get_color_type(png, info);
    png_set_strip_16(png);
    png_set_packing(png);
    if (colour_type == PNG_COLOR_TYPE_PALETTE) {
        png_set_palette_to_rgb(png);
    }
    if (colour_type == PNG_COLOR_TYPE_GRAY && png_get_bit_depth(png, info) < 8) {
        png_set_expand_gray_1_2_4_to_8(png);
    }
    if (png_get_valid(png, info, PNG_INFO_tRNS) != 0) {
        png_set_tRNS_to_alpha(png);
    }
    if (colour_type == PNG_COLOR_TYPE_GRAY || colour_type == PNG_COLOR_TYPE_GRAY_ALPHA) {
        png_set_gray_to_rgb(png);
    }
    double file_gamma = 0;
    int intent = 0;
    if (png_get_sRGB(png, info, &intent) != 0 || png_get_gAMA(png, info, &file_gamma) == 0) {
        file_gamma = DEFAULT_FILE_GAMMA;
    }
    png_set_gamma(png, SCREEN_GAMMA, file_gamma);
    png_set_bgr(png);
    png_set_filler(png, 0xFF, PNG_FILLER_AFTER);
    png_set_interlace_handling(png);
    png_read_update_info(png, info);
}

// A failure inside the library jumps back to here, so nothing in this function may own anything.
bool decode(png_structp png, png_infop info, IMAGE& image, std::vector<png_bytep>& rows) {
    if (setjmp(png_jmpbuf(png)) != 0) {
        return false;
    }
    png_set_user_limits(png, MAX_PICTURE_SIDE, MAX_PICTURE_SIDE);
    png_set_chunk_malloc_max(png, MAX_PICTURE_CHUNK_BYTES);
    png_set_chunk_cache_max(png, MAX_CACHED_CHUNKS);
    png_set_sig_bytes(png, SIGNATURE_BYTES);
    png_read_info(png, info);
    const png_uint_32 width = png_get_image_width(png, info);
    const png_uint_32 height = png_get_image_height(png, info);
    set_transformations(png, info);
    if (png_get_rowbytes(png, info) != png_size_t{width} * sizeof(COLOUR)) {
        return false;
    }
    image.reset(static_cast<std::int16_t>(width), static_cast<std::int16_t>(height));
    if (image.width != static_cast<std::int32_t>(width) ||
        image.height != static_cast<std::int32_t>(height)) {
        return false;
    }
    rows.resize(height);
    for (png_uint_32 y = 0; y < height; ++y) {
        rows[y] = reinterpret_cast<png_bytep>(image.row(static_cast<std::int32_t>(y)));
    }
    png_read_image(png, rows.data());
    return true;
}

}  // namespace

bool load_png(const DATA_FILE& file, IMAGE& image) {
    if (image.locked) {
        return false;
    }
    image.reset(0, 0);
    unsigned char signature[SIGNATURE_BYTES];
    if (file.read_data_block(signature, SIGNATURE_BYTES) != SIGNATURE_BYTES ||
        png_sig_cmp(signature, 0, SIGNATURE_BYTES) != 0) {
        return false;
    }
    png_structp png = png_create_read_struct(PNG_LIBPNG_VER_STRING, nullptr, fail, ignore_warning);
    png_infop info = png ? png_create_info_struct(png) : nullptr;
    std::vector<png_bytep> rows;
    bool done = false;
    if (info) {
        // The library takes a plain pointer and only hands it back to read_from_file.
        png_set_read_fn(png, const_cast<DATA_FILE*>(&file), read_from_file);
        done = decode(png, info, image, rows);
    }
    png_destroy_read_struct(&png, &info, nullptr);
    if (!done) {
        image.reset(0, 0);
    }
    return done;
}
