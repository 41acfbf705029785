#include "picture_output.h"

#include <cstdio>
// jpeglib.h needs <cstdio> before it.
#include <jpeglib.h>
#include <png.h>

#include <cstdint>
#include <memory>
#include <vector>

#include "canvas.h"
#include "failure.h"

namespace {

// The toolkit shows pictures on a screen of this gamma. Pictures that say that they were made for
// one are shown with the very colours of the palette.
constexpr double SCREEN_GAMMA = 1.7;
constexpr int JPEG_QUALITY = 93;

struct CLOSE_FILE {
    void operator()(std::FILE* file) const { std::fclose(file); }
};
using FILE_POINTER = std::unique_ptr<std::FILE, CLOSE_FILE>;

FILE_POINTER open_file(const std::filesystem::path& path) {
    FILE_POINTER file(std::fopen(path.c_str(), "wb"));
    if (!file) {
        fail("%s: the file can't be written", path.c_str());
    }
    return file;
}

void check_written(const FILE_POINTER& file, const std::filesystem::path& path) {
    if (std::fflush(file.get()) != 0 || std::ferror(file.get()) != 0) {
        fail("%s: the file can't be written", path.c_str());
    }
}

[[noreturn]] void fail_png(png_structp, png_const_charp reason) {
    fail("libpng: %s", reason);
}

void ignore_png_warning(png_structp, png_const_charp) {
}

// Pixels as bytes of red, green, blue and, with `alpha`, alpha.
std::vector<unsigned char> to_bytes(const std::vector<std::uint32_t>& pixels, bool alpha) {
    std::vector<unsigned char> bytes;
    bytes.reserve(pixels.size() * 4);
    for (const std::uint32_t value : pixels) {
        const COLOUR pixel(value);
        bytes.push_back(pixel.red());
        bytes.push_back(pixel.green());
        bytes.push_back(pixel.blue());
        if (alpha) {
            bytes.push_back(pixel.alpha());
        }
    }
    return bytes;
}

void write_png(const std::filesystem::path& path, const std::vector<std::uint32_t>& pixels,
               int width, int height) {
    const FILE_POINTER file = open_file(path);
    png_structp png =
        png_create_write_struct(PNG_LIBPNG_VER_STRING, nullptr, fail_png, ignore_png_warning);
    png_infop info = png_create_info_struct(png);
    png_init_io(png, file.get());
    png_set_compression_level(png, 9);
    png_set_IHDR(png, info, png_uint_32(width), png_uint_32(height), 8, PNG_COLOR_TYPE_RGB_ALPHA,
                 PNG_INTERLACE_NONE, PNG_COMPRESSION_TYPE_DEFAULT, PNG_FILTER_TYPE_DEFAULT);
    png_set_gAMA(png, info, 1 / SCREEN_GAMMA);
    png_write_info(png, info);
    std::vector<unsigned char> bytes = to_bytes(pixels, true);
    for (int y = 0; y < height; ++y) {
        png_write_row(png, bytes.data() + std::ptrdiff_t(y) * width * 4);
    }
    png_write_end(png, nullptr);
    png_destroy_write_struct(&png, &info);
    check_written(file, path);
}

}  // namespace

PICTURE_OUTPUT::PICTURE_OUTPUT(const std::filesystem::path& folder) : path(folder) {
    std::error_code error;
    std::filesystem::create_directories(path, error);
    if (error) {
        fail("%s: the folder can't be created", path.c_str());
    }
}

void PICTURE_OUTPUT::put_part(const CANVAS& canvas, const std::string& name, int x, int y,
                              int width, int height) {
    if (x < 0 || y < 0 || width < 1 || height < 1 || x + width > canvas.get_width() ||
        y + height > canvas.get_height()) {
        fail("The picture \"%s\" is too small for its pieces", name.c_str());
    }
    const std::vector<std::uint32_t> all = canvas.get_pixels();
    std::vector<std::uint32_t> part;
    for (int row = y; row < y + height; ++row) {
        const auto start = all.begin() + std::ptrdiff_t(row) * canvas.get_width() + x;
        part.insert(part.end(), start, start + width);
    }
    write_png(path / (name + ".png"), part, width, height);
}

void PICTURE_OUTPUT::put(const CANVAS& canvas, const std::string& name) {
    put_part(canvas, name, 0, 0, canvas.get_width(), canvas.get_height());
}

void PICTURE_OUTPUT::put_nine(const CANVAS& canvas, const std::string& name, const SIDES& sides) {
    const int x[] = {0, sides.left, canvas.get_width() - sides.right, canvas.get_width()};
    const int y[] = {0, sides.top, canvas.get_height() - sides.bottom, canvas.get_height()};
    constexpr const char* ROWS[] = {"_top", "_mid", "_bottom"};
    constexpr const char* COLUMNS[] = {"_left", "_mid", "_right"};
    for (int row = 0; row < 3; ++row) {
        for (int column = 0; column < 3; ++column) {
            put_part(canvas, name + ROWS[row] + COLUMNS[column], x[column], y[row],
                     x[column + 1] - x[column], y[row + 1] - y[row]);
        }
    }
}

void PICTURE_OUTPUT::put_across(const CANVAS& canvas, const std::string& name, int left,
                                int right) {
    const int width = canvas.get_width();
    const int height = canvas.get_height();
    put_part(canvas, name + "_left", 0, 0, left, height);
    put_part(canvas, name + "_mid", left, 0, width - left - right, height);
    put_part(canvas, name + "_right", width - right, 0, right, height);
}

void PICTURE_OUTPUT::put_jpeg(const CANVAS& canvas, const std::string& name) {
    const std::filesystem::path file_path = path / (name + ".jpg");
    const FILE_POINTER file = open_file(file_path);
    jpeg_compress_struct jpeg;
    jpeg_error_mgr errors;
    jpeg.err = jpeg_std_error(&errors);
    jpeg_create_compress(&jpeg);
    jpeg_stdio_dest(&jpeg, file.get());
    jpeg.image_width = JDIMENSION(canvas.get_width());
    jpeg.image_height = JDIMENSION(canvas.get_height());
    jpeg.input_components = 3;
    jpeg.in_color_space = JCS_RGB;
    jpeg_set_defaults(&jpeg);
    jpeg_set_quality(&jpeg, JPEG_QUALITY, TRUE);
    // Colour at full resolution, for the sake of the edges of the name.
    jpeg.comp_info[0].h_samp_factor = jpeg.comp_info[0].v_samp_factor = 1;
    jpeg_start_compress(&jpeg, TRUE);
    std::vector<unsigned char> bytes = to_bytes(canvas.get_pixels(), false);
    while (jpeg.next_scanline < jpeg.image_height) {
        JSAMPROW row = bytes.data() + std::size_t{jpeg.next_scanline} * jpeg.image_width * 3;
        jpeg_write_scanlines(&jpeg, &row, 1);
    }
    jpeg_finish_compress(&jpeg);
    jpeg_destroy_compress(&jpeg);
    check_written(file, file_path);
}
