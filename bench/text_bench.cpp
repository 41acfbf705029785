// Text: 10,000 glyphs from the cache into a picture, beside cairo's image surface and SDL_ttf, all
// with the same font at the same pixel size.
#include <SDL2/SDL.h>
#include <SDL2/SDL_ttf.h>
#include <benchmark/benchmark.h>
#include <cairo-ft.h>
#include <cairo.h>

#include <cstdint>
#include <string>
#include <vector>

#include "platform/disk_manager.h"
#include "platform/font_manager.h"
#include "platform/image.h"

namespace {

constexpr char FONT_FOLDER[] = "/usr/share/fonts/opentype/inter";
constexpr char FONT_NAME[] = "Inter-Regular.otf";
constexpr int WIDTH = 1024;
constexpr int LINE_HEIGHT = 20;
constexpr int LINES = 100;
constexpr int HEIGHT = LINES * LINE_HEIGHT;
constexpr int GLYPHS_PER_LINE = 100;
constexpr int PIXEL_SIZE = 15;  // text of IMAGE is rasterised at its size less 1

// One hundred characters, 10,000 in all lines.
std::string make_line(int line) {
    static constexpr char WORDS[] =
        "Season tickets for the new stadium are on sale; 4,312 seats left in the north stand. "
        "Kick-off "
        "15:30. ";
    std::string text;
    for (int i = 0; i < GLYPHS_PER_LINE; ++i) {
        text += WORDS[static_cast<std::size_t>(line + i) % (sizeof WORDS - 1)];
    }
    return text;
}

void count_glyphs(benchmark::State& state) {
    state.SetItemsProcessed(state.iterations() * LINES * GLYPHS_PER_LINE);
}

void text_image(benchmark::State& state) {
    DISK_MANAGER disk;
    FONT_MANAGER& fonts = FONT_MANAGER::get_instance();
    fonts.free_font(-1);
    if (!disk.move_down(FONT_FOLDER, false, true) || fonts.load_font(FONT_NAME, 0, &disk) != 0) {
        state.SkipWithError("no font");
        return;
    }
    std::string lines[LINES];
    for (int i = 0; i < LINES; ++i) {
        lines[i] = make_line(i);
    }
    IMAGE image(WIDTH, HEIGHT);
    image.clear(COLOUR_WHITE);
    for (auto _ : state) {
        for (int i = 0; i < LINES; ++i) {
            image.render_string(2, i * LINE_HEIGHT, COLOUR_BLACK, COLOUR_INVISIBLE,
                                COLOUR_INVISIBLE, 0, 0, PIXEL_SIZE + 1, PIXEL_SIZE + 1,
                                lines[i].c_str());
        }
        benchmark::ClobberMemory();
    }
    count_glyphs(state);
}

// Cairo's own glyph drawing: the glyphs of each line are looked up beforehand, which spares it the
// conversion of the text, and positions are whole pixels as ours are.
void text_cairo(benchmark::State& state) {
    FT_Library library = nullptr;
    FT_Face face = nullptr;
    FT_Init_FreeType(&library);
    if (FT_New_Face(library, (std::string(FONT_FOLDER) + "/" + FONT_NAME).c_str(), 0, &face) != 0) {
        state.SkipWithError("no font");
        return;
    }
    FT_Set_Pixel_Sizes(face, PIXEL_SIZE, PIXEL_SIZE);
    cairo_surface_t* surface = cairo_image_surface_create(CAIRO_FORMAT_ARGB32, WIDTH, HEIGHT);
    cairo_t* cairo = cairo_create(surface);
    cairo_set_source_rgb(cairo, 1, 1, 1);
    cairo_paint(cairo);
    cairo_set_source_rgb(cairo, 0, 0, 0);
    cairo_font_face_t* font = cairo_ft_font_face_create_for_ft_face(face, 0);
    cairo_set_font_face(cairo, font);
    cairo_set_font_size(cairo, PIXEL_SIZE);
    cairo_font_options_t* options = cairo_font_options_create();
    cairo_font_options_set_antialias(options, CAIRO_ANTIALIAS_GRAY);
    cairo_font_options_set_hint_metrics(options, CAIRO_HINT_METRICS_ON);
    cairo_set_font_options(cairo, options);
    std::vector<cairo_glyph_t> glyphs[LINES];
    for (int i = 0; i < LINES; ++i) {
        double x = 2;
        for (const char c : make_line(i)) {
            const FT_UInt index = FT_Get_Char_Index(face, static_cast<unsigned char>(c));
            FT_Load_Glyph(face, index, FT_LOAD_DEFAULT);
            glyphs[i].push_back({index, x, double(i * LINE_HEIGHT + 14)});
            x += double(face->glyph->advance.x >> 6);
        }
    }
    for (auto _ : state) {
        for (const auto& line : glyphs) {
            cairo_show_glyphs(cairo, line.data(), static_cast<int>(line.size()));
        }
        cairo_surface_flush(surface);
        benchmark::ClobberMemory();
    }
    count_glyphs(state);
    cairo_font_options_destroy(options);
    cairo_destroy(cairo);
    cairo_surface_destroy(surface);
    cairo_font_face_destroy(font);
    cairo_debug_reset_static_data();
    FT_Done_Face(face);
    FT_Done_FreeType(library);
}

// SDL_ttf renders a line into a surface of its own, which is blended onto the target.
void text_sdl_ttf(benchmark::State& state) {
    TTF_Init();
    TTF_Font* font = TTF_OpenFont((std::string(FONT_FOLDER) + "/" + FONT_NAME).c_str(), PIXEL_SIZE);
    if (!font) {
        state.SkipWithError("no font");
        return;
    }
    SDL_Surface* target =
        SDL_CreateRGBSurfaceWithFormat(0, WIDTH, HEIGHT, 32, SDL_PIXELFORMAT_ARGB8888);
    SDL_FillRect(target, nullptr, 0xFFFFFFFFu);
    std::string lines[LINES];
    for (int i = 0; i < LINES; ++i) {
        lines[i] = make_line(i);
    }
    const SDL_Color black = {0, 0, 0, 255};
    for (auto _ : state) {
        for (int i = 0; i < LINES; ++i) {
            SDL_Surface* text = TTF_RenderUTF8_Blended(font, lines[i].c_str(), black);
            SDL_Rect place = {2, i * LINE_HEIGHT, 0, 0};
            SDL_BlitSurface(text, nullptr, target, &place);
            SDL_FreeSurface(text);
        }
        benchmark::ClobberMemory();
    }
    count_glyphs(state);
    SDL_FreeSurface(target);
    TTF_CloseFont(font);
    TTF_Quit();
}

BENCHMARK(text_image);
BENCHMARK(text_cairo);
BENCHMARK(text_sdl_ttf);

}  // namespace
