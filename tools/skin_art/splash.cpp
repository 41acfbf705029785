// The splash picture. The program writes its status into the light card at the right and shows the
// wait animation below the name, centred on column 111.
#include <cairo-ft.h>
#include <ft2build.h>
#include FT_FREETYPE_H

#include "canvas.h"
#include "failure.h"
#include "families.h"
#include "palette.h"
#include "picture_output.h"
#include "tile_mark.h"

namespace {

constexpr int WIDTH = 446;
constexpr int HEIGHT = 208;
constexpr double CENTRE = 111;  // of the left half
// Round the program's status box, which is 195 x 158 at 230, 25.
constexpr BOX STATUS_CARD = {220, 14, 215, 180};

void write_centred(CANVAS& canvas, const std::filesystem::path& font, const char* text,
                   double baseline, double size, COLOUR colour) {
    FT_Library library = nullptr;
    FT_Face face = nullptr;
    if (FT_Init_FreeType(&library) != 0 || FT_New_Face(library, font.c_str(), 0, &face) != 0) {
        fail("%s: the font can't be read", font.c_str());
    }
    cairo_font_face_t* cairo_face = cairo_ft_font_face_create_for_ft_face(face, 0);
    cairo_t* context = canvas.get_context();
    cairo_save(context);
    cairo_set_font_face(context, cairo_face);
    cairo_set_font_size(context, size);
    cairo_font_options_t* options = cairo_font_options_create();
    cairo_font_options_set_antialias(options, CAIRO_ANTIALIAS_GRAY);
    cairo_font_options_set_hint_style(options, CAIRO_HINT_STYLE_NONE);
    cairo_font_options_set_hint_metrics(options, CAIRO_HINT_METRICS_OFF);
    cairo_set_font_options(context, options);
    cairo_font_options_destroy(options);
    cairo_text_extents_t extents;
    cairo_text_extents(context, text, &extents);
    cairo_move_to(context, CENTRE - extents.width / 2 - extents.x_bearing, baseline);
    // As a path, so that no glyph cache outlives the face.
    cairo_text_path(context, text);
    cairo_set_source_rgb(context, colour.red() / 255.0, colour.green() / 255.0,
                         colour.blue() / 255.0);
    cairo_fill(context);
    cairo_set_font_face(context, nullptr);
    cairo_restore(context);
    cairo_font_face_destroy(cairo_face);
    cairo_debug_reset_static_data();
    FT_Done_Face(face);
    FT_Done_FreeType(library);
}

}  // namespace

void draw_splash(const PALETTE& palette, const std::filesystem::path& font,
                 PICTURE_OUTPUT& output) {
    CANVAS canvas(WIDTH, HEIGHT);
    const BOX all = canvas.all();
    canvas.fill(all, 0, palette["page_top"], palette["page_bottom"]);
    draw_tile_mark(canvas, {CENTRE - 26, 30, 52, 52}, palette);
    write_centred(canvas, font, "Tessarine", 122, 31, palette["ink"]);

    canvas.shadow(STATUS_CARD.moved(0, 2), 6, palette.faded("shadow", 0.10), 6);
    canvas.fill(STATUS_CARD, 6, palette["surface"]);
    canvas.frame(STATUS_CARD, 6, palette["line"]);
    canvas.frame(all, 0, palette["line_strong"]);
    canvas.fill({0, 0, all.width, 3}, 0, palette["accent"]);
    output.put_jpeg(canvas, "splash_screen");
}
