// The stored form of a picture, its memory, and loading PNG files that may be hostile.
#include <gtest/gtest.h>
#include <png.h>
#include <stdlib.h>
#include <unistd.h>

#include <cstdint>
#include <cstdio>
#include <fstream>
#include <string>
#include <vector>

#include "platform/data_file.h"
#include "platform/image.h"
#include "platform/image_load.h"
#include "platform/message.h"

namespace {

using BYTES = std::vector<std::uint8_t>;

void fill(MESSAGE& message, const BYTES& bytes, bool big_endian = false) {
    message.clear();
    message.set_byte_order(big_endian ? 1 : 0);
    message.write_data_block(bytes.data(), static_cast<std::int32_t>(bytes.size()));
    message.set_pos(0, false);
}

BYTES store(const IMAGE& image, bool big_endian = false) {
    MESSAGE message;
    message.set_byte_order(big_endian ? 1 : 0);
    EXPECT_EQ(1, image.put_to_data_device(message));
    return BYTES(message.get_buffer(), message.get_buffer() + message.get_length());
}

bool is_whole(const IMAGE& image) {
    return image.active_left == 0 && image.active_top == 0 &&
           image.active_right == image.width - 1 && image.active_bottom == image.height - 1 &&
           image.dirty_left == 0 && image.dirty_top == 0 && image.dirty_right == image.width - 1 &&
           image.dirty_bottom == image.height - 1;
}

TEST(ImageForm, IsFixedByteByByteInBothOrdersWithoutThePadding) {
    IMAGE image(1, 2);
    EXPECT_EQ(2, image.stride);
    image.row(0)[0] = 0x11223344u;
    image.row(0)[1] = COLOUR_RED;  // padding
    image.row(1)[0] = 0xAABBCCDDu;
    const BYTES little = {1, 1, 0, 2, 0, 0x44, 0x33, 0x22, 0x11, 0xDD, 0xCC, 0xBB, 0xAA};
    const BYTES big = {1, 0, 1, 0, 2, 0x11, 0x22, 0x33, 0x44, 0xAA, 0xBB, 0xCC, 0xDD};
    EXPECT_EQ(little, store(image));
    EXPECT_EQ(big, store(image, true));
    for (const bool order : {false, true}) {
        MESSAGE message;
        fill(message, order ? big : little, order);
        IMAGE read(7, 7);
        ASSERT_EQ(1, read.get_from_data_device(message));
        EXPECT_TRUE(read == image);
        EXPECT_EQ(0u, read.row(0)[1].value);
        EXPECT_TRUE(is_whole(read));
    }
    EXPECT_EQ((BYTES{1, 0, 0, 0, 0}), store(IMAGE()));
}

TEST(ImageForm, NothingIsAllocatedThatTheBytesDoNotJustify) {
    const auto read = [](BYTES bytes, std::size_t pixels, IMAGE& image) {
        bytes.resize(bytes.size() + 4 * pixels);
        MESSAGE message;
        fill(message, bytes);
        return image.get_from_data_device(message) == 1;
    };
    IMAGE image(2, 2);
    EXPECT_FALSE(read({1, 0xFF, 0x7F, 0xFF, 0x7F}, 100, image));  // 32767 by 32767
    EXPECT_FALSE(read({1, 3, 0, 1, 0}, 2, image));
    EXPECT_FALSE(read({1, 0xFF, 0xFF, 1, 0}, 65535, image));  // the width is -1 as a short
    EXPECT_FALSE(read({1, 0xFF, 0x7F, 1, 0}, 32767, image));  // the stride would be
    EXPECT_FALSE(read({1, 1, 0, 0, 0x80}, 32768, image));
    EXPECT_FALSE(read({1, 0xFF, 0xFF, 0, 0}, 0, image));
    EXPECT_FALSE(read({1, 1, 0, 1}, 0, image));
    EXPECT_EQ(2, image.width);  // refused before anything happened

    EXPECT_TRUE(read({9, 0xFE, 0x7F, 1, 0}, 32766, image));  // any version
    EXPECT_EQ(32766, image.stride);
    EXPECT_TRUE(read({1, 1, 0, 0xFF, 0x7F}, 32767, image));
    EXPECT_EQ(32767, image.height);
    EXPECT_TRUE(read({1, 0, 0, 5, 0}, 0, image));
    EXPECT_EQ(0, image.height);
    EXPECT_EQ(nullptr, image.pixels);

    image.locked = true;
    EXPECT_FALSE(read({1, 1, 0, 1, 0}, 1, image));
}

TEST(Image, ResetKeepsPixelsOfTheSameSizeAndZeroesNewOnes) {
    IMAGE image(3, 2);
    EXPECT_EQ(4, image.stride);
    EXPECT_TRUE(image.usable && is_whole(image));
    for (int i = 0; i < 8; ++i) {
        EXPECT_EQ(COLOUR_INVISIBLE, image.pixels[static_cast<std::size_t>(i)]);
    }
    image.row(1)[2] = COLOUR_BLUE;
    image.dirty_left = image.active_left = -1;
    image.max_width = 10;
    image.reset(3, 2);
    EXPECT_EQ(COLOUR_BLUE, image.row(1)[2]);
    EXPECT_TRUE(is_whole(image));
    EXPECT_EQ(0, image.max_width);

    image.locked = true;
    image.reset(1, 1);
    EXPECT_EQ(3, image.width);
    image.locked = false;
    for (const auto& [width, height] : {std::pair{0, 5}, {5, 0}, {-1, 5}, {32767, 1}}) {
        image.reset(3, 2);
        image.reset(static_cast<std::int16_t>(width), static_cast<std::int16_t>(height));
        EXPECT_EQ(0, image.width + image.height + image.stride);
        EXPECT_FALSE(image.usable);
        EXPECT_EQ(-1, image.dirty_left);
        EXPECT_EQ(-1, image.active_bottom);
    }
    image.reset(3, 2);
    EXPECT_EQ(COLOUR_INVISIBLE, image.row(1)[2]);
}

TEST(Image, EqualityAndCopyingAreAboutPixels) {
    IMAGE image(3, 2);
    image.row(1)[2] = COLOUR_GREEN;
    IMAGE copy(9, 9);
    copy.copy_pixels_from(image);
    EXPECT_TRUE(copy == image);
    copy.row(0)[3] = COLOUR_RED;  // padding
    EXPECT_TRUE(copy == image);
    copy.row(0)[0] = COLOUR_RED;
    EXPECT_FALSE(copy == image);
    copy.copy_pixels_from(IMAGE());
    EXPECT_EQ(nullptr, copy.pixels);
    EXPECT_TRUE(copy == IMAGE());
    EXPECT_FALSE(copy == image);
}

class PngLoading : public testing::Test {
protected:
    PngLoading() : path(testing::TempDir() + "picture_XXXXXX") { ::close(mkstemp(path.data())); }
    ~PngLoading() override { std::remove(path.c_str()); }

    void write(const BYTES& bytes) const {
        std::ofstream(path, std::ios::binary)
            .write(reinterpret_cast<const char*>(bytes.data()),
                   static_cast<std::streamsize>(bytes.size()));
    }
    BYTES read() const {
        std::ifstream in(path, std::ios::binary);
        return {std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
    }
    bool load(IMAGE& image) const {
        DATA_FILE file(std::fopen(path.c_str(), "rb"), FILE_READ, 0, false);
        return load_png(file, image);
    }
    // Writes rows of packed samples as they are.
    void write_png(int width, int height, int depth, int colour_type, BYTES samples,
                   bool interlaced = false) const {
        std::FILE* out = std::fopen(path.c_str(), "wb");
        png_structp png = png_create_write_struct(PNG_LIBPNG_VER_STRING, nullptr, nullptr, nullptr);
        png_infop info = png_create_info_struct(png);
        png_init_io(png, out);
        png_set_IHDR(png, info, static_cast<png_uint_32>(width), static_cast<png_uint_32>(height),
                     depth, colour_type, interlaced ? PNG_INTERLACE_ADAM7 : PNG_INTERLACE_NONE,
                     PNG_COMPRESSION_TYPE_DEFAULT, PNG_FILTER_TYPE_DEFAULT);
        if (colour_type == PNG_COLOR_TYPE_PALETTE) {
            const png_color palette[2] = {{255, 0, 0}, {0, 0, 255}};
            const png_byte alpha[1] = {0};
            png_set_PLTE(png, info, palette, 2);
            png_set_tRNS(png, info, alpha, 1, nullptr);
        }
        png_write_info(png, info);
        std::vector<png_bytep> rows;
        for (int y = 0; y < height; ++y) {
            rows.push_back(samples.data() + static_cast<std::size_t>(y) * samples.size() /
                                                static_cast<std::size_t>(height));
        }
        png_write_image(png, rows.data());
        png_write_end(png, nullptr);
        png_destroy_write_struct(&png, &info);
        std::fclose(out);
    }

    std::string path;
};

TEST_F(PngLoading, EveryKindOfPictureBecomes32BitPixels) {
    IMAGE image;
    write_png(1, 2, 8, PNG_COLOR_TYPE_RGB_ALPHA, {255, 0, 255, 127, 0, 255, 0, 255});
    ASSERT_TRUE(load(image));
    EXPECT_EQ(COLOUR(0x7FFF00FFu), image.row(0)[0]);
    EXPECT_EQ(COLOUR_GREEN, image.row(1)[0]);

    write_png(3, 1, 8, PNG_COLOR_TYPE_RGB, {255, 0, 0, 0, 0, 255, 0, 0, 0});
    ASSERT_TRUE(load(image));
    EXPECT_EQ(COLOUR_RED, image.row(0)[0]);
    EXPECT_EQ(COLOUR_BLUE, image.row(0)[1]);
    EXPECT_EQ(COLOUR_BLACK, image.row(0)[2]);

    write_png(2, 1, 1, PNG_COLOR_TYPE_PALETTE, {0x40});
    ASSERT_TRUE(load(image));
    EXPECT_EQ(0, image.row(0)[0].alpha());
    EXPECT_EQ(COLOUR_BLUE, image.row(0)[1]);

    write_png(2, 1, 1, PNG_COLOR_TYPE_GRAY, {0x40});
    ASSERT_TRUE(load(image));
    EXPECT_EQ(COLOUR_BLACK, image.row(0)[0]);
    EXPECT_EQ(COLOUR_WHITE, image.row(0)[1]);

    write_png(1, 1, 16, PNG_COLOR_TYPE_GRAY_ALPHA, {255, 255, 0x80, 0});
    ASSERT_TRUE(load(image));
    EXPECT_EQ(COLOUR(0x80FFFFFFu), image.row(0)[0]);

    // A mid grey is corrected for a screen gamma of 1.7: 255 * (128 / 255) ^ (0.45455 * 1.7)^-1.
    write_png(1, 1, 8, PNG_COLOR_TYPE_GRAY, {128});
    ASSERT_TRUE(load(image));
    EXPECT_NEAR(104.6, image.row(0)[0].red(), 1.0);
}

TEST_F(PngLoading, InterlacedPicturesAreWhole) {
    BYTES samples;
    for (int i = 0; i < 9 * 9; ++i) {
        samples.push_back(i % 2 == 0 ? 255 : 0);
    }
    IMAGE image;
    write_png(9, 9, 8, PNG_COLOR_TYPE_GRAY, samples, true);
    ASSERT_TRUE(load(image));
    EXPECT_TRUE(is_whole(image));
    for (int i = 0; i < 9 * 9; ++i) {
        EXPECT_EQ(i % 2 == 0 ? COLOUR_WHITE : COLOUR_BLACK, image.row(i / 9)[i % 9]);
    }
}

TEST_F(PngLoading, DamagedForeignAndOversizedFilesAreRefused) {
    IMAGE image;
    write_png(40, 40, 8, PNG_COLOR_TYPE_GRAY, BYTES(40 * 40, 7));
    const BYTES good = read();
    ASSERT_TRUE(load(image));
    for (std::size_t size = 0; size + 12 < good.size(); size += 3) {  // 12: the end chunk
        write(BYTES(good.begin(), good.begin() + static_cast<std::ptrdiff_t>(size)));
        ASSERT_FALSE(load(image)) << size;
        EXPECT_EQ(nullptr, image.pixels);
    }
    BYTES flipped = good;
    flipped[good.size() / 2] ^= 0x10;
    write(flipped);
    EXPECT_FALSE(load(image));
    write(BYTES(100, 'x'));
    EXPECT_FALSE(load(image));

    write_png(4096, 1, 1, PNG_COLOR_TYPE_GRAY, BYTES(512));
    EXPECT_TRUE(load(image));
    write_png(4097, 1, 1, PNG_COLOR_TYPE_GRAY, BYTES(513));
    EXPECT_FALSE(load(image));
    write_png(1, 4097, 1, PNG_COLOR_TYPE_GRAY, BYTES(4097));
    EXPECT_FALSE(load(image));

    write(good);
    image.reset(2, 2);
    image.locked = true;
    EXPECT_FALSE(load(image));
    EXPECT_EQ(2, image.width);
}

}  // namespace
