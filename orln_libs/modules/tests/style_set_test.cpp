// Style sets: their stored form, their files, their images.
#include "modules/winman/style_set.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <string>
#include <vector>

#include "platform/config_file.h"
#include "platform/image_cache.h"
#include "platform/message.h"
#include "skin_fixture.h"

namespace {

constexpr const char* FILE_NAME = "set.ss";

signed char find_font(const char* name, void* data) {
    EXPECT_STREQ("fonts", static_cast<const char*>(data));
    return std::strcmp(name, "Round") == 0 ? 4 : -1;
}

const char* find_font_name(signed char font, void*) {
    return font == 4 ? "Round" : nullptr;
}

class StyleSet : public SkinTest {
protected:
    StyleSet() { std::filesystem::create_directories(path_of("skins/s")); }

    bool read(WM_STYLE_SET& target, const WM_STYLE_SET* default_set) {
        CONFIG_FILE file(FILE_NAME, true, FOLDER_BASE, false);
        char fonts[] = "fonts";
        return target.read_from_config_file(file, find_font, fonts, cursor("skins/s"), default_set);
    }
    bool read_text(WM_STYLE_SET& target, const std::string& text, const WM_STYLE_SET* default_set) {
        put("skins/s/set.ss", text);
        return read(target, default_set);
    }
    bool write(const WM_STYLE_SET& source, const WM_STYLE_SET* default_set) {
        CONFIG_FILE file(FILE_NAME, true, FOLDER_BASE, false);
        return source.write_to_config_file(file, find_font_name, nullptr, cursor("skins/s"),
                                           default_set);
    }

    static constexpr const char* HEAD = "name\n\tX\nimage_filename\n\t\nimage_path\n\t$HERE\n";
    WM_STYLE_SET set, defaults;
};

// Fills every stored field with a value of its own.
void fill(WM_STYLE_SET& set) {
    set.set_image_base_string("img");
    set.set_name("NAME");
    std::strcpy(set.image_path, "$BASE/x");
    COLOUR* colours[] = {&set.fg_colour,
                         &set.bg_colour,
                         &set.fading_colour,
                         &set.highlight_colour,
                         &set.highlight_text_colour,
                         &set.active_colour,
                         &set.active_text_colour,
                         &set.mouse_over_colour,
                         &set.mouse_over_text_colour,
                         &set.flashing_colour,
                         &set.flashing_text_colour,
                         &set.underline_colour,
                         &set.mouse_over_underline_colour};
    for (std::uint32_t i = 0; i < std::size(colours); ++i) {
        *colours[i] = COLOUR(0x01020300u + i);
    }
    set.visible = false;
    set.flags = 0x0A0B0C0D;
    set.shading_flags = 0x1112;
    set.font = 0x13;
    set.font_x_sz = 0x1415;
    set.font_y_sz = -2;
    set.border_left_gap = 0x1617;
    set.border_right_gap = 0xFFFE;
    set.border_top_gap = 0x18;
    set.border_bottom_gap = 0x19;
    set.cell_left_gap = -3;
    set.cell_right_gap = 0x1A;
    set.cell_top_gap = 0x1B;
    set.cell_bottom_gap = 0x1C;
    set.x_spacing = 0x1D;
    set.y_spacing = 0x1E;
    set.scrollbar_button_width = 0x1F;
    set.scrollbar_slider_width = 0x20;
    set.grid_scrollbar_width = 0x2122;
    set.recolourable = false;
}

TEST_F(StyleSet, StoredFormByByte) {
    fill(set);
    // What lies behind a shorter path in memory must not be stored.
    std::memset(set.image_path + 8, 0x5A, 100);
    MESSAGE message;
    ASSERT_TRUE(set.put_to_data_device(message));

    std::vector<std::uint8_t> expected = {3, 0, 0, 0,   'i', 'm', 'g', 4,
                                          0, 0, 0, 'N', 'A', 'M', 'E'};
    const std::string path = "$BASE/x";
    expected.insert(expected.end(), path.begin(), path.end());
    expected.resize(15 + 2048);
    for (std::uint8_t i = 0; i < 13; ++i) {
        expected.insert(expected.end(), {i, 3, 2, 1});
    }
    expected.insert(expected.end(),
                    {0,    0x0D, 0x0C, 0x0B, 0x0A, 0x12, 0x11, 0x13, 0x15, 0x14, 0xFE, 0xFF, 0x17,
                     0x16, 0xFE, 0xFF, 0x18, 0,    0x19, 0,    0xFD, 0xFF, 0x1A, 0,    0x1B, 0,
                     0x1C, 0,    0x1D, 0,    0x1E, 0,    0x1F, 0,    0x20, 0,    0x22, 0x21, 0});
    const std::vector<std::uint8_t> stored(message.get_buffer(),
                                           message.get_buffer() + message.get_length());
    EXPECT_EQ(expected, stored);

    WM_STYLE_SET again;
    message.set_pos(0, false);
    ASSERT_TRUE(again.get_from_data_device(message));
    EXPECT_TRUE(set == again);
    EXPECT_TRUE(again.images_loaded);
    again.grid_scrollbar_width = 1;
    EXPECT_FALSE(set == again);
    // Cut anywhere, it is refused.
    for (std::int32_t size = message.get_length() - 1; size >= 0; size -= size > 2063 ? 1 : 97) {
        MESSAGE cut;
        cut.write_data_block(message.get_buffer(), size);
        cut.set_pos(0, false);
        EXPECT_FALSE(again.get_from_data_device(cut)) << size;
    }
}

TEST_F(StyleSet, FilesNeedANameAndSayWhereTheirImagesAre) {
    EXPECT_FALSE(read(set, nullptr));
    EXPECT_FALSE(read_text(set, "image_filename\n\t\nimage_path\n\t$HERE\n", &defaults));
    EXPECT_FALSE(read_text(set, "name\n\tX\nimage_path\n\t$HERE\n", &defaults));
    EXPECT_FALSE(read_text(set, "name\n\tX\nimage_filename\n\ti\n", &defaults));
    EXPECT_STREQ("X", set.name);
    EXPECT_FALSE(read_text(set, HEAD, nullptr));
    EXPECT_TRUE(read_text(set, HEAD, &defaults));
    EXPECT_STREQ("$APPDATA/skins/s", set.image_path);
    EXPECT_EQ(nullptr, set.image_filename);
    EXPECT_TRUE(read_text(
        set, "name\n\tMY_DEFAULT\nimage_filename\n\tbase\nimage_path\n\t$TEMP/x\n", nullptr));
    EXPECT_STREQ("base", set.image_filename);
    EXPECT_STREQ("$TEMP/x", set.image_path);
    EXPECT_EQ(0u, set.flags);  // without defaults all bits are off, whatever a new set has
    EXPECT_EQ(-1, set.font);
    for (int box = 0; box < STYLE_BOX_COUNT; ++box) {
        EXPECT_EQ(nullptr, set.get_box(static_cast<STYLE_BOX>(box)));
    }
}

TEST_F(StyleSet, AbsentKeysComeFromTheDefaultsRefusedOnesAreTraced) {
    fill(defaults);
    const std::string head = HEAD;
    ASSERT_TRUE(read_text(set, head, &defaults));
    EXPECT_EQ(defaults.fg_colour, set.fg_colour);
    EXPECT_FALSE(set.visible);
    EXPECT_EQ(0x13, set.font);
    EXPECT_EQ(0x1617, set.border_left_gap);
    EXPECT_EQ(defaults.flags & 0x03FFFFFFu, set.flags);
    EXPECT_TRUE(set.recolourable);

    ASSERT_TRUE(read_text(set,
                          head + "fg_colour\n\t#80FF\nbg_colour\n\tFF112233\nfading_colour\n\t#zz\n"
                                 "active_colour\n\t#1FFFFFFFF\nvisible\n\t1\nfont_name\n\tRound\n"
                                 "x_spacing\n\t70000\ny_spacing\n\tmany\ncell_left_gap\n\t-7\n"
                                 "border_left_gap\n\t-1\nfont_x_sz\n\t30000\ndraw_border\n\t0\n"
                                 "recolourable\n\t0\nwrap_text\n\t12\n",
                          &defaults));
    EXPECT_EQ(COLOUR(0x80FFu), set.fg_colour);
    EXPECT_EQ(COLOUR_BLACK, set.bg_colour);
    EXPECT_EQ(COLOUR_INVISIBLE, set.fading_colour);
    EXPECT_EQ(COLOUR_INVISIBLE, set.active_colour);
    EXPECT_TRUE(set.visible);
    EXPECT_EQ(4, set.font);
    EXPECT_EQ(0x1D, set.x_spacing);
    EXPECT_EQ(0x1E, set.y_spacing);
    EXPECT_EQ(-7, set.cell_left_gap);
    EXPECT_EQ(0, set.get_object_left_gap());
    EXPECT_EQ(0x1415, set.font_x_sz);
    EXPECT_FALSE(set.has_flag(STYLE_DRAW_BORDER));
    EXPECT_TRUE(set.has_flag(STYLE_WRAP_TEXT));
    EXPECT_FALSE(set.recolourable);
    for (const char* refused :
         {"bg_colour", "fading_colour", "active_colour", "x_spacing", "y_spacing", "font_x_sz"}) {
        EXPECT_NE(std::string::npos, trace.find(std::string("\"").append(refused).append("\"")));
    }
    EXPECT_NE(std::string::npos, trace.find("skins/s/set.ss"));
    EXPECT_EQ(6, std::count(trace.begin(), trace.end(), '\n'));
}

TEST_F(StyleSet, TheNewerSpellingOfTheTopRowDecides) {
    const std::string head = HEAD;
    ASSERT_TRUE(read_text(set, head + "_grid_fix_top_row\n\t1\n", &defaults));
    EXPECT_TRUE(set.has_flag(STYLE_GRID_FIX_TOP_ROW));
    ASSERT_TRUE(
        read_text(set, head + "grid_fix_top_row\n\t0\n_grid_fix_top_row\n\t1\n", &defaults));
    EXPECT_FALSE(set.has_flag(STYLE_GRID_FIX_TOP_ROW));
    defaults.flags |= STYLE_GRID_FIX_TOP_ROW;
    ASSERT_TRUE(read_text(set, head, &defaults));
    EXPECT_TRUE(set.has_flag(STYLE_GRID_FIX_TOP_ROW));
    ASSERT_TRUE(read_text(set, head + "_grid_fix_top_row\n\t0\n", &defaults));
    EXPECT_FALSE(set.has_flag(STYLE_GRID_FIX_TOP_ROW));
}

TEST_F(StyleSet, WhatIsWrittenReadsBackTheSame) {
    fill(set);
    set.recolourable = true;
    set.flags &= 0x03FFFFFFu;
    set.font = 4;
    set.font_x_sz = 20;
    std::strcpy(set.image_path, "$APPDATA/skins/s");
    WM_STYLE_SET again;

    // With defaults only the difference is written.
    ASSERT_TRUE(write(set, &set));
    EXPECT_EQ("name\n\tNAME\nimage_filename\n\timg\nimage_path\n\t$HERE\n", get("skins/s/set.ss"));
    ASSERT_TRUE(read(again, &set));
    EXPECT_TRUE(set == again);

    ASSERT_TRUE(write(set, &defaults));
    ASSERT_TRUE(read(again, &defaults));
    EXPECT_TRUE(set == again);
    EXPECT_NE(std::string::npos, get("skins/s/set.ss").find("font_name\n\tRound\n"));

    // Against defaults with a font, none is a value of its own.
    defaults.font = 4;
    set.font = -1;
    set.set_image_base_string(nullptr);
    ASSERT_TRUE(write(set, &defaults));
    ASSERT_TRUE(read(again, &defaults));
    EXPECT_TRUE(set == again);

    // Without defaults everything is written.
    set.set_name("DEFAULT");
    ASSERT_TRUE(write(set, nullptr));
    ASSERT_TRUE(read(again, nullptr));
    EXPECT_TRUE(set == again);
    const std::string text = get("skins/s/set.ss");
    EXPECT_NE(std::string::npos, text.find("fg_colour\n\t#01020300\n"));
    EXPECT_NE(std::string::npos,
              text.find("visible\n\t0\nshading_flags\n\t4370\nfont_x_sz\n\t20\n"));
    EXPECT_NE(std::string::npos, text.find("cell_left_gap\n\t-3\n"));
    EXPECT_NE(std::string::npos, text.find("border_right_gap\n\t65534\n"));
    EXPECT_LT(text.find("\ngrid_type_lines"), text.find("\ngrid_column_dividers"));
    EXPECT_LT(text.find("\ngrid_column_dividers"), text.find("\ngrid_no_scrollbar"));
    EXPECT_EQ(std::string::npos, text.find("recolourable"));
    EXPECT_EQ(std::string::npos, text.find("_grid_fix_top_row\n\t_"));

    // A path that a configuration value would cut isn't written.
    std::memset(set.image_path, 'x', 300);
    EXPECT_FALSE(write(set, nullptr));
    EXPECT_EQ(text, get("skins/s/set.ss"));
}

TEST_F(StyleSet, FindsItsImagesAndSharesThemWithCopies) {
    IMAGE_CACHE& cache = WM_PAGE_TOOL_MANAGER::styleset_image_cache;
    put_png("skins/s/b.png", 4, 4, COLOUR_RED);
    put_png("skins/s/b_alt.png", 4, 4, COLOUR_RED);
    put_png("skins/s/b_over.png", 4, 4, COLOUR_RED);
    put_png("skins/s/b_over_solay.png", 4, 4, COLOUR_RED);
    put_png("skins/s/b_more_over.png", 4, 4, COLOUR_RED);
    ASSERT_TRUE(read_text(set, "name\n\tX\nimage_filename\n\tb\nimage_path\n\t$HERE\n", &defaults));
    EXPECT_TRUE(set.images_loaded);
    int boxes = 0;
    for (int box = 0; box < STYLE_BOX_COUNT; ++box) {
        boxes += set.get_box(static_cast<STYLE_BOX>(box)) != nullptr;
    }
    EXPECT_EQ(4, boxes);
    ASSERT_NE(nullptr, set.get_box(STYLE_BOX_ALTERNATE));
    ASSERT_NE(nullptr, set.get_box(STYLE_BOX_OVER));
    EXPECT_NE(nullptr, set.get_box(STYLE_BOX_OVER)->stretch_overlay);
    EXPECT_EQ(5, cache.entries.get_count());

    IMAGE* image = set.get_box(STYLE_BOX_BASE)->centre;
    {
        const WM_STYLE_SET copy = set;
        EXPECT_TRUE(copy == set);
        EXPECT_EQ(image, copy.get_box(STYLE_BOX_BASE)->centre);
        EXPECT_EQ(2, static_cast<CACHE_ENTRY*>(image->cache_entry)->use_count);
    }
    EXPECT_EQ(1, static_cast<CACHE_ENTRY*>(image->cache_entry)->use_count);

    set.recolourable = false;
    set.recolour(COLOUR_BLUE);
    EXPECT_EQ(image, set.get_box(STYLE_BOX_BASE)->centre);
    cache.recolour_in_place = true;
    set.recolourable = true;
    set.recolour(COLOUR_BLUE);
    cache.recolour_in_place = false;
    EXPECT_EQ(image, set.get_box(STYLE_BOX_BASE)->centre);
    EXPECT_LT(image->row(0)[0].red(), image->row(0)[0].blue());

    set.clear();
    cache.soft_clear();
    EXPECT_TRUE(cache.entries.is_empty());
    WM_STYLE_SET::cache_ibox_data = false;
    EXPECT_TRUE(read(set, &defaults));
    WM_STYLE_SET::cache_ibox_data = true;
    EXPECT_FALSE(set.images_loaded);
}

TEST_F(StyleSet, TextFlags) {
    struct {
        std::uint32_t flags;
        std::int16_t text_flags;
    } const CASES[] = {{STYLE_RIGHT_JUSTIFY_TEXT, 64}, {STYLE_LEFT_JUSTIFY_TEXT, 32},
                       {STYLE_TOP_ALIGN_TEXT, 8},      {STYLE_BOTTOM_ALIGN_TEXT, 16},
                       {STYLE_INSET_TEXT, 2},          {STYLE_SHADOW_TEXT, 1},
                       {STYLE_DRAW_BORDER, 0},         {0x3FFFFFF, 123}};
    for (const auto& [flags, text_flags] : CASES) {
        set.flags = flags;
        EXPECT_EQ(text_flags, set.get_text_drawing_flags());
    }
}

}  // namespace
