// PNG and JPEG files: written and read back, stretched, and refused when they are damaged, absurd
// or something else. Every refusal through IMAGE::load names the file in the trace.
#include <gtest/gtest.h>
#include <zlib.h>

#include <cstdint>
#include <cstdlib>
#include <string>

#include "platform/data_file.h"
#include "platform/disk_manager.h"
#include "platform/image.h"
#include "platform/image_load.h"
#include "temp_folder.h"
#include "trace_capture.h"

namespace {

class ImageFiles : public testing::Test {
protected:
    // A picture of large plain areas, which JPEG keeps well.
    static void draw(IMAGE& target) {
        target.reset(48, 32);
        target.fill_rect(0, 0, 23, 31, COLOUR_RED);
        target.fill_rect(24, 0, 47, 31, COLOUR_BLUE);
        target.fill_rect(0, 16, 47, 31, COLOUR_WHITE);
    }
    template <class SAVE>
    bool write(const char* name, SAVE save) const {
        DATA_FILE* file = folder.cursor().open_data_file(name, FILE_WRITE, BYTEORDER_LITTLE);
        const bool saved = save(file);
        return DISK_MANAGER::close(file) && saved;
    }
    std::string make_png() const {
        IMAGE drawn;
        draw(drawn);
        EXPECT_TRUE(write("made", [&](DATA_FILE* f) { return drawn.save_png(f); }));
        return folder.get("made");
    }
    std::string make_jpg(bool progressive = false) const {
        IMAGE drawn;
        draw(drawn);
        EXPECT_TRUE(
            write("made", [&](DATA_FILE* f) { return drawn.save_jpg(f, 90, progressive); }));
        return folder.get("made");
    }
    // Loads these bytes; a refusal must leave the image empty and name the file.
    bool load(const std::string& bytes, const char* file_name = "picture") {
        folder.put(file_name, bytes);
        image.reset(3, 3);
        TRACE_CAPTURE trace;
        const bool loaded = image.load(folder.cursor(), "picture");
        const std::string text = trace.end();
        EXPECT_EQ(loaded, image.pixels != nullptr);
        EXPECT_EQ(loaded, text.empty()) << text;
        if (!loaded) {
            EXPECT_NE(std::string::npos, text.find("\"" + std::string(file_name) + "\" refused"))
                << text;
        }
        std::filesystem::remove(folder.path() / file_name);
        return loaded;
    }
    void expect_near(COLOUR expected, COLOUR actual, int tolerance) {
        EXPECT_NEAR(expected.red(), actual.red(), tolerance);
        EXPECT_NEAR(expected.green(), actual.green(), tolerance);
        EXPECT_NEAR(expected.blue(), actual.blue(), tolerance);
        EXPECT_EQ(255, actual.alpha());
    }

    TEMP_FOLDER folder;
    IMAGE image;
};

void put_be32(std::string& bytes, std::size_t at, std::uint32_t value) {
    for (std::size_t i = 0; i < 4; ++i) {
        bytes[at + i] = static_cast<char>(value >> (24 - 8 * i));
    }
}

// Writes a size into a PNG header, with its check sum.
std::string with_png_size(std::string bytes, std::uint32_t width, std::uint32_t height) {
    put_be32(bytes, 16, width);
    put_be32(bytes, 20, height);
    const uLong sum = crc32(0, reinterpret_cast<const Bytef*>(bytes.data() + 12), 17);
    put_be32(bytes, 29, static_cast<std::uint32_t>(sum));
    return bytes;
}

// Writes a size into a JPEG's frame header.
std::string with_jpg_size(std::string bytes, unsigned width, unsigned height) {
    for (std::size_t i = 2; i + 9 < bytes.size();) {
        const auto marker = static_cast<unsigned char>(bytes[i + 1]);
        if (marker == 0xC0 || marker == 0xC2) {
            bytes[i + 5] = static_cast<char>(height >> 8);
            bytes[i + 6] = static_cast<char>(height);
            bytes[i + 7] = static_cast<char>(width >> 8);
            bytes[i + 8] = static_cast<char>(width);
            return bytes;
        }
        i += 2 + (static_cast<unsigned char>(bytes[i + 2]) << 8) +
             static_cast<unsigned char>(bytes[i + 3]);
    }
    ADD_FAILURE() << "no frame header";
    return bytes;
}

TEST_F(ImageFiles, PngKeepsAllChannelsAndCarriesItsTexts) {
    IMAGE written(3, 2);
    written.row(0)[0] = 0x12FF00FFu;  // channels that the gamma correction leaves alone
    written.row(1)[2] = 0x0000FFFFu;
    ASSERT_TRUE(write("p.png", [&](DATA_FILE* f) { return written.save_png(f); }));
    ASSERT_TRUE(image.load(folder.cursor(), "p"));
    EXPECT_TRUE(written == image);
    const std::string bytes = folder.get("p.png");
    const std::string author("Author\0Created by Orlan Ltd Platform Library", 44);
    EXPECT_NE(std::string::npos, bytes.find(author));
    EXPECT_NE(std::string::npos, bytes.find(std::string("Website\0http", 12)));
    EXPECT_NE(std::string::npos, bytes.find("sBIT\x08\x08\x08\x08"));

    EXPECT_FALSE(write("e.png", [](DATA_FILE* f) { return IMAGE().save_png(f); }));
    EXPECT_FALSE(written.save_png(nullptr));
}

TEST_F(ImageFiles, JpegComesBackAlmostTheSameAndOpaque) {
    for (const bool progressive : {false, true}) {
        ASSERT_TRUE(load(make_jpg(progressive)));
        ASSERT_EQ(48, image.width);
        expect_near(COLOUR_RED, image.row(4)[4], 4);
        expect_near(COLOUR_BLUE, image.row(4)[40], 4);
        expect_near(COLOUR_WHITE, image.row(28)[20], 4);
    }
    IMAGE drawn;
    draw(drawn);
    EXPECT_FALSE(write("q", [&](DATA_FILE* f) { return drawn.save_jpg(f, 101, 0); }));
    EXPECT_FALSE(write("q", [&](DATA_FILE* f) { return drawn.save_jpg(f, -1, 0); }));
    EXPECT_FALSE(write("q", [&](DATA_FILE* f) { return IMAGE().save_jpg(f, 50, 0); }));
}

TEST_F(ImageFiles, JpegIsStretchedWhileItIsRead) {
    folder.put("p.jpg", make_jpg());
    IMAGE natural;
    ASSERT_TRUE(natural.load(folder.cursor(), "p"));
    for (const auto& [w, h] : {std::pair{96, 64}, {31, 100}, {20, 7}, {1, 1}, {48, 90}}) {
        DATA_FILE* file = folder.cursor().open_data_file("p.jpg", FILE_READ, BYTEORDER_LITTLE);
        ASSERT_TRUE(image.load_jpg(file, w, h));
        DISK_MANAGER::close(file);
        ASSERT_EQ(w, image.width);
        ASSERT_EQ(h, image.height);
        // Input row i goes to the rows behind the last one filled up to i * (h - 1) / 31.
        std::int32_t filled = 0;
        for (std::int32_t i = 0; i < 32; ++i) {
            for (; filled <= i * (h - 1) / 31; ++filled) {
                ASSERT_EQ(natural.row(i)[0], image.row(filled)[0]);
            }
        }
        ASSERT_EQ(h, filled);
        EXPECT_EQ(natural.row(h > 1 ? 31 : 0)[w > 1 ? 47 : 0], image.row(h - 1)[w - 1]);
    }
    ASSERT_TRUE(image.load(folder.cursor(), "p.jpg", 10, IMAGE::NO_SIZE));
    EXPECT_EQ(10, image.width);
    EXPECT_EQ(32, image.height);
}

TEST_F(ImageFiles, LoadTriesBothFormatsWithAndWithoutTheirExtensions) {
    const std::string png = make_png();
    const std::string jpg = make_jpg();
    for (const char* name : {"picture", "picture.png"}) {
        EXPECT_TRUE(load(png, name));
        EXPECT_EQ(COLOUR_RED, image.row(0)[0]);
    }
    EXPECT_TRUE(load(jpg));
    EXPECT_TRUE(load(jpg, "picture.jpg"));
    folder.put("x", jpg);  // a JPEG by that very name comes after a PNG with the extension
    folder.put("x.png", png);
    ASSERT_TRUE(image.load(folder.cursor(), "x", 24, 16));
    EXPECT_EQ(COLOUR_RED, image.row(0)[0]);
    EXPECT_EQ(24, image.width);

    TRACE_CAPTURE trace;
    EXPECT_FALSE(image.load(folder.cursor(), "nothing"));
    EXPECT_FALSE(image.load(folder.cursor(), ""));
    EXPECT_FALSE(image.load(folder.cursor(), nullptr));
    EXPECT_EQ("", trace.end());
    image.reset(2, 2);
    image.locked = true;
    EXPECT_FALSE(image.load(folder.cursor(), "x"));
    EXPECT_EQ(2, image.width);
}

TEST_F(ImageFiles, DamagedFilesAreRefusedByName) {
    EXPECT_FALSE(load("certainly no picture"));
    EXPECT_FALSE(load("certainly no picture", "picture.png"));
    EXPECT_FALSE(load("", "picture.jpg"));
    const std::string png = make_png();
    EXPECT_FALSE(load(png.substr(0, png.size() / 2), "picture.png"));
    for (const bool progressive : {false, true}) {
        const std::string jpg = make_jpg(progressive);
        for (std::size_t size = 0; size + 1 < jpg.size(); size += size < 700 ? 7 : 1) {
            ASSERT_FALSE(load(jpg.substr(0, size), "picture.jpg")) << size;
        }
        // Whatever byte is changed, it is a picture of its size or it is refused.
        for (std::size_t i = 0; i < jpg.size(); ++i) {
            std::string changed = jpg;
            changed[i] = static_cast<char>(changed[i] ^ (1 << (i % 8)));
            folder.put("picture", changed);
            IMAGE other;
            const bool loaded = other.load(folder.cursor(), "picture") == 1;
            ASSERT_EQ(loaded, other.width > 0) << i;
        }
        std::filesystem::remove(folder.path() / "picture");
    }
    EXPECT_FALSE(image.load(folder.cursor(), "picture", 32767, 32767));
}

TEST_F(ImageFiles, AbsurdSizesAreRefusedBeforeAnythingIsAllocated) {
    const std::string png = make_png();
    const std::string jpg = make_jpg();
    ASSERT_TRUE(load(with_png_size(png, 48, 32)));
    ASSERT_TRUE(load(with_jpg_size(jpg, 48, 32)));
    for (const auto& [w, h] : {std::pair{0u, 32u},
                               {48u, 0u},
                               {32767u, 32767u},
                               {4097u, 1u},
                               {0xFFFFFFFFu, 1u},
                               {0x80000000u, 0x80000000u},
                               {4096u, 4096u}}) {
        EXPECT_FALSE(load(with_png_size(png, w, h), "picture.png")) << w << ' ' << h;
    }
    for (const auto& [w, h] : {std::pair{0u, 32u},
                               {48u, 0u},
                               {32767u, 32767u},
                               {65535u, 65535u},
                               {4096u, 4096u},
                               {4097u, 1u}}) {
        EXPECT_FALSE(load(with_jpg_size(jpg, w, h), "picture.jpg")) << w << ' ' << h;
    }
}

TEST_F(ImageFiles, SpritesAreAFoldersPicturesSideBySide) {
    IMAGE cell(2, 3);
    for (const auto& [name, colour] :
         {std::pair{"s/b.png", COLOUR_BLUE}, {"s/a.png", COLOUR_RED}, {"s/c.png", COLOUR_GREEN}}) {
        folder.put(name, "");
        cell.clear(colour);
        ASSERT_TRUE(write("made", [&](DATA_FILE* f) { return cell.save_png(f); }));
        folder.put(name, folder.get("made"));
    }
    folder.put("s/readme.txt", "no picture");
    ASSERT_TRUE(image.create_sprite_image_from_path(folder.cursor(), "s"));
    ASSERT_EQ(6, image.width);
    ASSERT_EQ(3, image.height);
    EXPECT_EQ(COLOUR_RED, image.row(0)[1]);
    EXPECT_EQ(COLOUR_BLUE, image.row(2)[2]);
    EXPECT_EQ(COLOUR_GREEN, image.row(2)[5]);
    ASSERT_TRUE(image.create_sprite_image_from_path(folder.cursor("s"), nullptr, 5, 4));
    EXPECT_EQ(15, image.width);
    folder.put("s/d.png", "damaged");
    EXPECT_FALSE(image.create_sprite_image_from_path(folder.cursor(), "s"));
    EXPECT_FALSE(image.create_sprite_image_from_path(folder.cursor(), "none"));
    EXPECT_EQ(15, image.width);
}

}  // namespace
