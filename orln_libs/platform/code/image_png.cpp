// PNG pictures, through libpng.
#include <png.h>

#include <cstdint>
#include <vector>

#include "picture_decode.h"
#include "platform/data_file.h"
#include "platform/image.h"
#include "platform/image_load.h"

namespace {

constexpr int SIGNATURE_BYTES = 4;
constexpr double SCREEN_GAMMA = 1.7;
constexpr double DEFAULT_FILE_GAMMA = 0.45455;
constexpr png_uint_32 MAX_CACHED_CHUNKS = 64;
// What a byte of deflated data can become at most.
constexpr std::int64_t MAX_DEFLATE_RATIO = 1032;
constexpr char WEBSITE[] = "http://www.tessarine.example/";

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

void write_to_file(png_structp png, png_bytep bytes, png_size_t count) {
    auto* file = static_cast<DATA_FILE*>(png_get_io_ptr(png));
    while (count != 0) {
        const auto piece = static_cast<std::int32_t>(count < 65536 ? count : 65536);
        if (file->write_data_block(bytes, piece) != piece) {
            png_error(png, "the file can't be written");
        }
        bytes += piece;
        count -= static_cast<png_size_t>(piece);
    }
}

void flush_nothing(png_structp) {
}

[[noreturn]] void fail(png_structp png, png_const_charp reason) {
    if (auto* fault = static_cast<PICTURE_FAULT*>(png_get_error_ptr(png))) {
        fault->set(reason);
    }
    png_longjmp(png, 1);
}

void ignore_warning(png_structp, png_const_charp) {
}

// Side chunks that say nothing about the pixels are not even unpacked.
void skip_side_chunks(png_structp png) {
    static constexpr png_byte NAMES[] =
        "iCCP\0iTXt\0tEXt\0zTXt\0sPLT\0hIST\0pCAL\0sCAL\0eXIf\0tIME";
    png_set_keep_unknown_chunks(png, PNG_HANDLE_CHUNK_NEVER, NAMES, sizeof NAMES / 5);
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
bool decode(png_structp png, png_infop info, const DATA_FILE& file, IMAGE& image,
            std::vector<png_bytep>& rows) {
    if (setjmp(png_jmpbuf(png)) != 0) {
        return false;
    }
    png_set_user_limits(png, MAX_PICTURE_SIDE, MAX_PICTURE_SIDE);
    png_set_chunk_malloc_max(png, MAX_PICTURE_CHUNK_BYTES);
    png_set_chunk_cache_max(png, MAX_CACHED_CHUNKS);
    skip_side_chunks(png);
    png_set_sig_bytes(png, SIGNATURE_BYTES);
    png_read_info(png, info);
    const png_uint_32 width = png_get_image_width(png, info);
    const png_uint_32 height = png_get_image_height(png, info);
    const auto stored_bytes = static_cast<std::int64_t>(png_get_rowbytes(png, info) + 1) * height;
    if (stored_bytes / MAX_DEFLATE_RATIO > file.get_bytes_left()) {
        png_error(png, "the file is too short for a picture of its size");
    }
    set_transformations(png, info);
    if (png_get_rowbytes(png, info) != png_size_t{width} * sizeof(COLOUR)) {
        png_error(png, "an unknown form of pixels");
    }
    image.reset(static_cast<std::int32_t>(width), static_cast<std::int32_t>(height));
    if (!image.pixels) {
        png_error(png, "an impossible size");
    }
    rows.resize(height);
    for (png_uint_32 y = 0; y < height; ++y) {
        rows[y] = reinterpret_cast<png_bytep>(image.row(static_cast<std::int32_t>(y)));
    }
    png_read_image(png, rows.data());
    return true;
}

void set_text(png_text& text, const char* key, const char* value) {
    text = png_text();
    text.compression = PNG_TEXT_COMPRESSION_NONE;
    text.key = const_cast<char*>(key);
    text.text = const_cast<char*>(value);
}

// As with decode.
bool encode(png_structp png, png_infop info, DATA_FILE& file, const IMAGE& image) {
    if (setjmp(png_jmpbuf(png)) != 0) {
        return false;
    }
    png_set_write_fn(png, &file, write_to_file, flush_nothing);
    png_set_IHDR(png, info, static_cast<png_uint_32>(image.width),
                 static_cast<png_uint_32>(image.height), 8, PNG_COLOR_TYPE_RGB_ALPHA,
                 PNG_INTERLACE_NONE, PNG_COMPRESSION_TYPE_DEFAULT, PNG_FILTER_TYPE_DEFAULT);
    png_color_8 bits = {};
    bits.red = bits.green = bits.blue = bits.alpha = 8;
    png_set_sBIT(png, info, &bits);
    png_text texts[2];
    set_text(texts[0], "Author", "Created by Orlan Ltd Platform Library");
    set_text(texts[1], "Website", WEBSITE);
    png_set_text(png, info, texts, 2);
    png_write_info(png, info);
    png_set_bgr(png);
    for (std::int32_t y = 0; y < image.height; ++y) {
        png_write_row(png, reinterpret_cast<png_const_bytep>(image.row(y)));
    }
    png_write_end(png, info);
    return true;
}

}  // namespace

bool decode_png(const DATA_FILE& file, IMAGE& image, PICTURE_FAULT& fault) {
    image.reset(0, 0);
    unsigned char signature[SIGNATURE_BYTES];
    if (file.read_data_block(signature, SIGNATURE_BYTES) != SIGNATURE_BYTES ||
        png_sig_cmp(signature, 0, SIGNATURE_BYTES) != 0) {
        fault.set("not a PNG picture");
        fault.is_other_format = true;
        return false;
    }
    png_structp png = png_create_read_struct(PNG_LIBPNG_VER_STRING, &fault, fail, ignore_warning);
    png_infop info = png ? png_create_info_struct(png) : nullptr;
    std::vector<png_bytep> rows;
    bool done = false;
    if (info) {
        // The library takes a plain pointer and only hands it back to read_from_file.
        png_set_read_fn(png, const_cast<DATA_FILE*>(&file), read_from_file);
        done = decode(png, info, file, image, rows);
    }
    png_destroy_read_struct(&png, &info, nullptr);
    if (!done) {
        image.reset(0, 0);
    }
    return done;
}

unsigned char IMAGE::save_png(DATA_FILE* file) const {
    if (!file || !pixels || width < 1 || height < 1) {
        return 0;
    }
    png_structp png = png_create_write_struct(PNG_LIBPNG_VER_STRING, nullptr, fail, ignore_warning);
    png_infop info = png ? png_create_info_struct(png) : nullptr;
    const bool done = info && encode(png, info, *file, *this);
    png_destroy_write_struct(&png, &info);
    return done;
}
