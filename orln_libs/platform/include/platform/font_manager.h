// FONT_MANAGER: the loaded fonts, and a cache of their glyphs.
//
// Strings are 8-bit, one byte a character (its code is that of the font's Unicode table, so Latin
// 1). Other characters travel inside a string as a run of codes: a byte 1 begins and ends it, and
// within it four hexadecimal digits are one character, with or without a "," behind them. Where
// fewer than four digits stand they are skipped. TEXT_WALKER (text_walker.h) reads such strings.
// Line feeds and carriage returns are characters without a width, and a tab is as wide as a blank.
//
// For the main thread only.
#ifndef PLATFORM_FONT_MANAGER_H
#define PLATFORM_FONT_MANAGER_H

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>

class DISK_MANAGER;
struct FT_FaceRec_;

// A rasterised character.
class FONT_GLYPH {
public:
    FONT_GLYPH() = default;
    FONT_GLYPH(const FONT_GLYPH& other) { *this = other; }
    FONT_GLYPH& operator=(const FONT_GLYPH& other);

    // As it was made: no sizes, no data.
    void clear();
    // Room for `size` bytes, at least one, not initialised. Running out of memory is fatal.
    void alloc_data(std::int32_t size);
    // Allocates and copies.
    void set_data(const unsigned char* bytes, std::int32_t size);
    void free_data();

    std::int16_t x_size = 0, y_size = 0;    // the size that the bitmap was made for
    std::int16_t advance = 0;               // pixels to the next character
    std::int16_t left = 0, top = 0;         // from the pen to the bitmap; up is positive
    std::int16_t width = 0, height = 0;     // of the bitmap
    std::int16_t pitch = 0;                 // bytes a row
    std::unique_ptr<unsigned char[]> data;  // coverage, 0 to 255; never null once rendered
    std::int32_t data_size = 0;             // bytes of data
    // The distance of two lines, and the line that glyphs stand on as an offset from the bottom of
    // a line, which is negative; in units of the font, of which only the ratio counts.
    std::int16_t face_height = 0, face_ascender = 0;
};

// A loaded font.
class FONT_TYPE {
public:
    FONT_TYPE() = default;
    ~FONT_TYPE() { free_font_type(); }
    FONT_TYPE(FONT_TYPE&& other) noexcept { *this = static_cast<FONT_TYPE&&>(other); }
    FONT_TYPE& operator=(FONT_TYPE&& other) noexcept;

    // Opens a font file that is known to be one. Failure is fatal.
    void setup(const DISK_MANAGER* disk, const char* filename);
    // Frees the face, its glyphs and the file.
    void free_font_type();
    bool is_font_loaded() const { return face != nullptr; }
    // The glyph of a code from 0 to 255, which may not have been rendered yet. With `create` it is
    // made if it isn't there; otherwise null. Null for any other code.
    FONT_GLYPH* get_glyph(std::int32_t code, unsigned char create);

    std::int32_t file_size = 0;  // of the file in `memory` while it is read; -1 once loaded
    std::array<std::unique_ptr<FONT_GLYPH>, 256> glyphs;
    std::unique_ptr<char[]> memory;  // the file, with FONT_MANAGER::use_memory_font
    FT_FaceRec_* face = nullptr;     // owned
};

class FONT_MANAGER {
public:
    // A larger file is no font.
    static constexpr std::int64_t MAX_FONT_FILE_BYTES = std::int64_t{64} << 20;
    // Fonts have the indices 0 to 126.
    static constexpr std::int16_t MAX_FONTS = 127;
    // Text has the sizes 1 to this; any other is as a size below 1.
    static constexpr std::int32_t MAX_TEXT_SIZE = 2048;

    // Starts FreeType at the first use; failure is fatal. Fonts are freed at the process's exit.
    static FONT_MANAGER& get_instance();
    FONT_MANAGER(const FONT_MANAGER&) = delete;
    FONT_MANAGER& operator=(const FONT_MANAGER&) = delete;

    // Loads a font file of the folder into the slot `index`, which must be free; -1 means any. The
    // font's index; -1 if there is no such file, the slot is taken or can't exist, or the file is
    // damaged or no scalable font. What was wrong with a file is told to platform_debug_stream with
    // its name.
    std::int8_t load_font(const char* filename, std::int8_t index, const DISK_MANAGER* disk);
    // -1 frees all. An index without a font is ignored.
    void free_font(std::int8_t index);

    bool is_font_valid(std::int8_t index) const;
    // Whether text can be drawn and measured.
    bool can_draw_text(std::int8_t index, std::int32_t text_x_size,
                       std::int32_t text_y_size) const {
        return text_x_size >= 1 && text_y_size >= 1 && text_x_size <= MAX_TEXT_SIZE &&
               text_y_size <= MAX_TEXT_SIZE && is_font_valid(index);
    }
    // Null for an index outside the table. The next load_font may move it.
    FONT_TYPE* get_font_ptr(std::int16_t index) const;

    // The width in pixels of `count` characters, -1 for all; the only measure of a text there is,
    // since its height is `y_size`. With an invalid font or a size below 1, the bytes of the
    // string. `in_code` tells that it begins inside a run of codes. Null is empty.
    std::int32_t get_string_width(std::int8_t font, std::int32_t x_size, std::int32_t y_size,
                                  const char* text, std::int32_t count = -1,
                                  unsigned char in_code = 0);
    // The width of one character, as the operation above counts it.
    std::int32_t get_char_width(std::int8_t font, std::int32_t x_size, std::int32_t y_size,
                                std::uint16_t code);

    // Rasterises the character for that size unless the glyph is that already. Text of a size is
    // made of glyphs of the size less 1. Nothing happens for an invalid font; failure is fatal.
    void render_glyph(FONT_GLYPH* glyph, std::uint32_t code, std::int8_t font, std::int32_t x_size,
                      std::int32_t y_size);

    // The rendered glyph of a character of a text: the cached one for codes up to 255, otherwise
    // `temporary`. The font must be valid.
    const FONT_GLYPH& get_text_glyph(std::int8_t font, std::int32_t x_size, std::int32_t y_size,
                                     std::uint16_t code, FONT_GLYPH& temporary);

    std::int8_t font = 0;                   // the current font
    std::int16_t x_size = 18, y_size = 18;  // the current size

private:
    std::unique_ptr<FONT_TYPE[]> font_types;
    std::int16_t font_count = 0;

public:
    // Fonts are read into memory whole instead of being read from disk as they are needed. Set
    // before fonts are loaded.
    static bool use_memory_font;

private:
    FONT_MANAGER();
    ~FONT_MANAGER();
    void grow_table(std::int16_t count);
};

#endif  // PLATFORM_FONT_MANAGER_H
