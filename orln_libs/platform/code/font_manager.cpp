#include "platform/font_manager.h"

#include <ft2build.h>
#include FT_FREETYPE_H
#include FT_OUTLINE_H

#include <cstdlib>
#include <cstring>
#include <new>
#include <string>
#include <utility>

#include "image_fatal.h"
#include "picture_decode.h"
#include "platform/data_file.h"
#include "platform/disk_manager.h"
#include "platform/text_walker.h"

bool FONT_MANAGER::use_memory_font = false;

namespace {

// FreeType itself, from the first use of FONT_MANAGER on.
FT_Library freetype = nullptr;

// A glyph that reaches further than this many times the font's size is damaged.
constexpr FT_Pos MAX_GLYPH_SIZES = 16;
// Every font is tried out at this size before it is taken.
constexpr FT_UInt TRIAL_SIZE = 17;

// Outlines only: bitmaps within a font may have any depth.
constexpr FT_Int32 LOAD_FLAGS = FT_LOAD_DEFAULT | FT_LOAD_NO_BITMAP;

bool has_text_glyph(std::uint32_t code) {
    return code != '\n' && code != '\r';
}

// The loaded outline is within reason for its size; nothing larger is ever rasterised.
bool is_sane_outline(FT_Face face) {
    if (face->glyph->format != FT_GLYPH_FORMAT_OUTLINE) {
        return false;
    }
    FT_BBox box;
    FT_Outline_Get_CBox(&face->glyph->outline, &box);
    const FT_Pos size =
        1 + (face->size->metrics.x_ppem > face->size->metrics.y_ppem ? face->size->metrics.x_ppem
                                                                     : face->size->metrics.y_ppem);
    const FT_Pos reach = MAX_GLYPH_SIZES * size * 64;
    return box.xMin >= -reach && box.yMin >= -reach && box.xMax <= reach && box.yMax <= reach;
}

// The file has as many bytes as are read from it.
bool is_font_size(const DISK_MANAGER& disk, const char* filename, const char*& reason) {
    DATA_FILE* file =
        disk.open_data_file(filename, FILE_READ, BYTEORDER_LITTLE, DATA_FILE::min_cache_sz);
    const std::int64_t size = file ? file->get_size() : -1;
    DISK_MANAGER::close(file);
    if (size < 0) {
        reason = "it can't be opened";
    } else if (size > FONT_MANAGER::MAX_FONT_FILE_BYTES) {
        reason = "too large";
    }
    return reason == nullptr;
}

// Whether a face can be used: scalable, and with a sound outline behind every 8-bit code.
bool is_sound_face(FT_Face face, const char*& reason) {
    if (!FT_IS_SCALABLE(face)) {
        reason = "not a scalable font";
    } else if (FT_Set_Pixel_Sizes(face, TRIAL_SIZE, TRIAL_SIZE) != 0) {
        reason = "damaged sizes";
    }
    for (FT_ULong code = 0; !reason && code < 256; ++code) {
        if (FT_Load_Char(face, code, LOAD_FLAGS) != 0 || !is_sane_outline(face) ||
            FT_Render_Glyph(face->glyph, FT_RENDER_MODE_NORMAL) != 0) {
            reason = "damaged glyphs";
        }
    }
    return reason == nullptr;
}

// Tries out a font file; what is wrong with it is traced.
bool is_sound_font(const DISK_MANAGER& disk, const char* filename) {
    const char* reason = nullptr;
    if (is_font_size(disk, filename, reason)) {
        FT_Face face = nullptr;
        if (FT_New_Face(freetype, disk.get_path_string(filename), 0, &face) != 0) {
            reason = "not a font, or damaged";
        } else {
            is_sound_face(face, reason);
            FT_Done_Face(face);
        }
    }
    if (reason) {
        trace_refused_file("font", filename, reason);
    }
    return reason == nullptr;
}

std::int16_t limit_to_short(std::int64_t value) {
    return static_cast<std::int16_t>(value > 32767 ? 32767 : value < -32768 ? -32768 : value);
}

}  // namespace

// --- FONT_GLYPH ---

FONT_GLYPH& FONT_GLYPH::operator=(const FONT_GLYPH& other) {
    if (this == &other) {
        return *this;
    }
    x_size = other.x_size;
    y_size = other.y_size;
    advance = other.advance;
    left = other.left;
    top = other.top;
    width = other.width;
    height = other.height;
    pitch = other.pitch;
    face_height = other.face_height;
    face_ascender = other.face_ascender;
    if (other.data) {
        set_data(other.data.get(), other.data_size);
    } else {
        free_data();
    }
    return *this;
}

void FONT_GLYPH::clear() {
    *this = FONT_GLYPH();
}

void FONT_GLYPH::alloc_data(std::int32_t size) {
    data_size = size > 1 ? size : 1;
    data.reset(new (std::nothrow) unsigned char[static_cast<std::size_t>(data_size)]);
    if (!data) {
        stop_with_error("FONT_GLYPH::alloc_data() - unable to allocate memory");
    }
    data[0] = 0;
}

void FONT_GLYPH::set_data(const unsigned char* bytes, std::int32_t size) {
    alloc_data(size);
    if (bytes && size > 0) {
        std::memcpy(data.get(), bytes, static_cast<std::size_t>(size));
    }
}

void FONT_GLYPH::free_data() {
    data.reset();
    data_size = 0;
}

// --- FONT_TYPE ---

FONT_TYPE& FONT_TYPE::operator=(FONT_TYPE&& other) noexcept {
    std::swap(file_size, other.file_size);
    std::swap(glyphs, other.glyphs);
    std::swap(memory, other.memory);
    std::swap(face, other.face);
    return *this;
}

void FONT_TYPE::setup(const DISK_MANAGER* disk, const char* filename) {
    free_font_type();
    FT_Error error = 1;
    if (FONT_MANAGER::use_memory_font) {
        DATA_FILE* file = disk->open_data_file(filename, FILE_READ, BYTEORDER_LITTLE);
        const std::int64_t size = file ? file->get_size() : 0;
        if (size > 0 && size <= FONT_MANAGER::MAX_FONT_FILE_BYTES) {
            file_size = static_cast<std::int32_t>(size);
            memory.reset(new (std::nothrow) char[static_cast<std::size_t>(size)]);
            if (!memory) {
                stop_with_error("FONT_MANAGER::load_font() - unable to allocate font memory");
            }
            if (file->read_data_block(memory.get(), file_size) == file_size) {
                error = FT_New_Memory_Face(freetype, reinterpret_cast<FT_Byte*>(memory.get()),
                                           file_size, 0, &face);
            }
        }
        DISK_MANAGER::close(file);
    } else {
        error = FT_New_Face(freetype, disk->get_path_string(filename), 0, &face);
    }
    if (error != 0) {
        face = nullptr;
        stop_with_error("FONT_TYPE::setup() - unable to load font face");
    }
    file_size = -1;
}

void FONT_TYPE::free_font_type() {
    if (face) {
        FT_Done_Face(face);
        face = nullptr;
    }
    for (auto& glyph : glyphs) {
        glyph.reset();
    }
    memory.reset();  // which the face read from
    file_size = 0;
}

FONT_GLYPH* FONT_TYPE::get_glyph(std::int32_t code, unsigned char create) {
    if (code < 0 || code >= static_cast<std::int32_t>(glyphs.size())) {
        return nullptr;
    }
    auto& glyph = glyphs[static_cast<std::size_t>(code)];
    if (!glyph && create) {
        glyph.reset(new (std::nothrow) FONT_GLYPH);
        if (!glyph) {
            stop_with_error("FONT_TYPE::get_glyph() - unable to allocate font memory");
        }
    }
    return glyph.get();
}

// --- FONT_MANAGER ---

FONT_MANAGER& FONT_MANAGER::get_instance() {
    static FONT_MANAGER instance;
    return instance;
}

FONT_MANAGER::FONT_MANAGER() {
    if (FT_Init_FreeType(&freetype) != 0) {
        stop_with_error("FONT_MANAGER::FONT_MANAGER() - unable to initialise font system");
    }
}

FONT_MANAGER::~FONT_MANAGER() {
    free_font(-1);
    font_types.reset();
    FT_Done_FreeType(freetype);
    freetype = nullptr;
}

void FONT_MANAGER::grow_table(std::int16_t count) {
    std::unique_ptr<FONT_TYPE[]> table(new (std::nothrow)
                                           FONT_TYPE[static_cast<std::size_t>(count)]);
    if (!table) {
        stop_with_error("FONT_MANAGER::load_font() - unable to allocate font memory");
    }
    for (std::int16_t i = 0; i < font_count; ++i) {
        table[static_cast<std::size_t>(i)] = std::move(font_types[static_cast<std::size_t>(i)]);
    }
    font_types = std::move(table);
    font_count = count;
}

std::int8_t FONT_MANAGER::load_font(const char* filename, std::int8_t index,
                                    const DISK_MANAGER* disk) {
    if (!filename || !disk || !DISK_MANAGER::file_exists(*disk, filename)) {
        return -1;
    }
    std::int16_t slot = index;
    if (index == -1) {
        for (slot = 0; slot < font_count && get_font_ptr(slot)->is_font_loaded();) {
            ++slot;
        }
    }
    if (slot < 0 || slot >= MAX_FONTS || (slot < font_count && get_font_ptr(slot)->face) ||
        !is_sound_font(*disk, filename)) {
        return -1;
    }
    if (slot >= font_count) {
        grow_table(static_cast<std::int16_t>(slot + 1));
    }
    get_font_ptr(slot)->setup(disk, filename);
    return static_cast<std::int8_t>(slot);
}

void FONT_MANAGER::free_font(std::int8_t index) {
    for (std::int16_t i = 0; i < font_count; ++i) {
        if (index == -1 || index == i) {
            get_font_ptr(i)->free_font_type();
        }
    }
}

bool FONT_MANAGER::is_font_valid(std::int8_t index) const {
    const FONT_TYPE* type = get_font_ptr(index);
    return type && type->is_font_loaded();
}

FONT_TYPE* FONT_MANAGER::get_font_ptr(std::int16_t index) const {
    return index >= 0 && index < font_count ? &font_types[static_cast<std::size_t>(index)]
                                            : nullptr;
}

const FONT_GLYPH& FONT_MANAGER::get_text_glyph(std::int8_t index, std::int32_t width,
                                               std::int32_t height, std::uint16_t code,
                                               FONT_GLYPH& temporary) {
    FONT_GLYPH* glyph = get_font_ptr(index)->get_glyph(code == '\t' ? ' ' : code, 1);
    if (!glyph) {
        glyph = &temporary;
        glyph->x_size = glyph->y_size = 0;
        glyph->free_data();
    }
    render_glyph(glyph, code == '\t' ? ' ' : code, index, width - 1, height - 1);
    return *glyph;
}

std::int32_t FONT_MANAGER::get_char_width(std::int8_t index, std::int32_t width,
                                          std::int32_t height, std::uint16_t code) {
    if (!can_draw_text(index, width, height)) {
        return 1;
    }
    FONT_GLYPH temporary;
    return has_text_glyph(code) ? get_text_glyph(index, width, height, code, temporary).advance : 0;
}

std::int32_t FONT_MANAGER::get_string_width(std::int8_t index, std::int32_t width,
                                            std::int32_t height, const char* text,
                                            std::int32_t count, unsigned char in_code) {
    if (!text) {
        return 0;
    }
    if (!can_draw_text(index, width, height)) {
        return static_cast<std::int32_t>(std::strlen(text));
    }
    FONT_GLYPH temporary;
    std::int32_t total = 0;
    TEXT_WALKER walker(text, in_code != 0);
    for (std::int32_t i = 0; i != count && walker.next(); ++i) {
        if (has_text_glyph(walker.code)) {
            total += get_text_glyph(index, width, height, walker.code, temporary).advance;
        }
    }
    return total;
}

void FONT_MANAGER::render_glyph(FONT_GLYPH* glyph, std::uint32_t code, std::int8_t index,
                                std::int32_t width, std::int32_t height) {
    if (glyph->data && glyph->x_size == width && glyph->y_size == height) {
        return;
    }
    if (!is_font_valid(index)) {
        return;
    }
    FT_Face face = get_font_ptr(index)->face;
    glyph->free_data();
    width = width < 0 ? 0 : limit_to_short(width);
    height = height < 0 ? 0 : limit_to_short(height);
    if (FT_Set_Pixel_Sizes(face, static_cast<FT_UInt>(width), static_cast<FT_UInt>(height)) != 0) {
        stop_with_error("FONT_MANAGER::render_glyph() - unable to set font pixel size");
    }
    if (FT_Load_Char(face, code, LOAD_FLAGS) != 0) {
        stop_with_error("FONT_MANAGER::render_glyph() - unable to render font glyph");
    }
    FT_GlyphSlot slot = face->glyph;
    const bool is_drawn = is_sane_outline(face);
    if (is_drawn && FT_Render_Glyph(slot, FT_RENDER_MODE_NORMAL) != 0) {
        stop_with_error("FONT_MANAGER::render_glyph() - unable to render font glyph");
    }
    const FT_Bitmap bitmap = is_drawn ? slot->bitmap : FT_Bitmap();
    glyph->x_size = static_cast<std::int16_t>(width);
    glyph->y_size = static_cast<std::int16_t>(height);
    glyph->advance = limit_to_short(slot->advance.x >> 6);
    glyph->left = limit_to_short(is_drawn ? slot->bitmap_left : 0);
    glyph->top = limit_to_short(is_drawn ? slot->bitmap_top : 0);
    glyph->width = limit_to_short(bitmap.width);
    glyph->height = limit_to_short(bitmap.rows);
    glyph->pitch = limit_to_short(std::abs(bitmap.pitch));
    glyph->face_height = face->height;
    glyph->face_ascender = face->descender;
    glyph->set_data(bitmap.buffer, std::int32_t{glyph->pitch} * glyph->height);
}
