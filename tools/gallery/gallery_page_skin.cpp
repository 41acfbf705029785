#include "gallery_page_skin.h"

#include <algorithm>
#include <cinttypes>
#include <cstdio>

#include "modules/winman/page_tool_manager.h"
#include "modules/winman/style_set.h"
#include "modules/winman/window_manager.h"
#include "modules/winman/wm_image.h"
#include "modules/winman/wm_script.h"
#include "platform/image.h"

namespace {

constexpr signed char WINDOW = WM_WINDOW_MANAGER::MAIN_WINDOW;
constexpr std::int32_t COLOUR_COLUMNS = 2, COLOUR_STEP = 21, SWATCH_WIDTH = 40;
constexpr std::int32_t FONT_STEP = 44;
constexpr std::int32_t WIDEST_PICTURE = 384, HIGHEST_PICTURE = 88;
constexpr const char* SAMPLE = "Sphinx of black quartz, judge my vow 0123456789";

}  // namespace

void GALLERY_PAGE_SKIN::build() {
    const std::int32_t left = get_inner_width() / 2 - 16, right = left + 24;
    build_colours(left);
    build_fonts(right, get_inner_width() - right);
    build_images(right, 36 + FONT_STEP * 5);
}

void GALLERY_PAGE_SKIN::build_colours(std::int32_t width) {
    const PTRARRAY& colours = WM_PAGE_TOOL_MANAGER::get_instance().colours;
    add_heading(0, 0, width, "Colours");
    const std::int32_t step = width / COLOUR_COLUMNS;
    const std::int32_t rows = (colours.get_count() + COLOUR_COLUMNS - 1) / COLOUR_COLUMNS;
    for (std::int32_t i = 0; i < colours.get_count(); ++i) {
        const auto& colour = *colours.get<WM_PTM_COLOUR_INFO>(i);
        const std::int32_t x = i / rows * step, y = 28 + i % rows * COLOUR_STEP;
        WM_STYLE_SET swatch = style("BLANK");
        swatch.bg_colour = colour.colour;
        WM_SCRIPT* sample =
            add(new WM_SCRIPT(to_short(x), to_short(y), to_short(x + SWATCH_WIDTH - 1),
                              to_short(y + COLOUR_STEP - 4), swatch, "", WINDOW));
        char text[64];
        std::snprintf(text, sizeof text, "#%08" PRIX32, colour.colour.value);
        sample->set_hint_text(text);
        add_label(x + SWATCH_WIDTH + 6, y - 1, step - SWATCH_WIDTH - 10, colour.name);
    }
}

void GALLERY_PAGE_SKIN::build_fonts(std::int32_t x, std::int32_t width) {
    const PTRARRAY& fonts = WM_PAGE_TOOL_MANAGER::get_instance().fonts;
    add_heading(x, 0, width, "Fonts");
    for (std::int32_t i = 0; i < fonts.get_count(); ++i) {
        const auto& font = *fonts.get<WM_PTM_FONT_INFO>(i);
        const std::int32_t y = 28 + i * FONT_STEP;
        WM_STYLE_SET look = style("DIALOG_LABEL");
        look.font = font.font_index;
        look.font_x_sz = look.font_y_sz = 17;
        add_label(x, y, width, font.name);
        add(new WM_SCRIPT(to_short(x), to_short(y + 18), to_short(x + width - 1), to_short(y + 41),
                          look, SAMPLE, WINDOW));
    }
}

void GALLERY_PAGE_SKIN::build_images(std::int32_t x, std::int32_t y) {
    const PTRARRAY& images = WM_PAGE_TOOL_MANAGER::get_instance().images;
    add_heading(x, y, 300, "Pictures");
    y += 30;
    const std::int32_t left = x;
    std::int32_t row_height = 0;
    for (std::int32_t i = 0; i < images.get_count(); ++i) {
        const IMAGE* picture = images.get<WM_PTM_IMAGE_INFO>(i)->image;
        if (picture == nullptr || picture->width == 0) {
            continue;
        }
        std::int32_t width = std::min<std::int32_t>(picture->width, WIDEST_PICTURE);
        const std::int32_t height =
            std::min<std::int32_t>(picture->height * width / picture->width, HIGHEST_PICTURE);
        width = std::min(width, picture->width * height / picture->height);
        if (x + width > get_inner_width()) {
            x = left;
            y += row_height + 8;
            row_height = 0;
        }
        auto* image = add(new WM_IMAGE(to_short(x), to_short(y), to_short(width), to_short(height),
                                       1, nullptr, nullptr, nullptr, 0, WINDOW));
        image->image.copy_pixels_from(*picture);
        image->set_hint_text(images.get<WM_PTM_IMAGE_INFO>(i)->name);
        row_height = std::max(row_height, height);
        x += width + 12;
    }
}
