#include "gallery_sheet.h"

#include <algorithm>
#include <cstring>

#include "modules/gui/gui_skin.h"
#include "modules/winman/page_tool_manager.h"
#include "platform/font_manager.h"
#include "platform/image.h"

namespace {

constexpr std::int32_t WIDTH = 860;
constexpr std::int32_t MARGIN = 12;
constexpr std::int32_t SAMPLE_X = 300;
constexpr std::int32_t BOXES_X = 420;
constexpr std::int32_t CAPTION_HEIGHT = 12;
constexpr std::int32_t BOX_GAP = 10;
constexpr std::int32_t NAME_HEIGHT = 18;
constexpr std::int32_t GROUP_GAP = 8;
constexpr std::int32_t MAX_IMAGE_HEIGHT = 100;
constexpr std::int16_t NAME_SIZE = 12;
constexpr std::int16_t CAPTION_SIZE = 10;

constexpr const char* CAPTIONS[STYLE_BOX_COUNT] = {
    "",
    "up",
    "down",
    "disabled",
    "over",
    "active_up",
    "active_down",
    "active_disabled",
    "active_over",
    "highlighted",
    "alternate",
    "flashing",
    "dragging",
    "bg",
    "empty",
    "full",
    "bar",
    "bar_disabled",
    "bar_over",
    "slider_up",
    "slider_down",
    "slider_disabled",
    "slider_over",
    "less_up",
    "less_down",
    "less_disabled",
    "less_over",
    "more_up",
    "more_down",
    "more_disabled",
    "more_over",
};

struct SIZE {
    std::int32_t width, height;
};

// A size in which the box looks as in use.
SIZE get_show_size(const IMAGE_BOX& box) {
    if (box.top_left) {
        const std::int32_t ends_x = box.top_left->width + box.top_right->width;
        const std::int32_t ends_y = box.top_left->height + box.bottom_left->height;
        return box.top_left->width < 6 && ends_y > 12 ? SIZE{ends_x + 4, 56}
                                                      : SIZE{ends_x + 56, ends_y + 14};
    }
    if (box.left) {
        return {box.left->width + box.right->width + 56, box.left->height};
    }
    return {box.centre->width, box.centre->height};
}

bool fits(const WM_STYLE_SET& set, const GALLERY_FAMILY& family) {
    return std::any_of(family.prefixes.begin(), family.prefixes.end(),
                       [&set](const std::string& prefix) {
                           return std::strncmp(set.name, prefix.c_str(), prefix.size()) == 0;
                       });
}

bool looks_like(const WM_STYLE_SET& a, const WM_STYLE_SET& b) {
    return OWNED_TEXT::compare(a.image_filename, b.image_filename) == 0 && a.font == b.font &&
           a.font_y_sz == b.font_y_sz && a.fg_colour == b.fg_colour;
}

class SHEET_DRAWING {
public:
    explicit SHEET_DRAWING(IMAGE& target)
        : sheet(target),
          ink(GUI_SKIN::get_colour("INK")),
          caption_ink(GUI_SKIN::get_colour("INK_SOFT")),
          regular(GUI_SKIN::get_font("Inter-Regular")) {}

    // Sets that look alike share a picture. Yields the height that they take; draws only with
    // `draw`, because the height must be known before there is a sheet.
    std::int32_t put_sets(const std::vector<const WM_STYLE_SET*>& sets, std::int32_t y, bool draw) {
        const WM_STYLE_SET& first = *sets.front();
        std::int32_t bottom = y + NAME_HEIGHT * static_cast<std::int32_t>(sets.size());
        std::int32_t x = BOXES_X;
        std::int32_t line_y = y;
        std::int32_t line_height = 0;
        for (int which = 0; which < STYLE_BOX_COUNT; ++which) {
            IMAGE_BOX* box = first.get_box(static_cast<STYLE_BOX>(which));
            if (!box) {
                continue;
            }
            const SIZE size = get_show_size(*box);
            const std::int32_t caption_width = FONT_MANAGER::get_instance().get_string_width(
                regular, CAPTION_SIZE, CAPTION_SIZE, CAPTIONS[which], -1, 0);
            const std::int32_t cell_width = std::max(size.width, caption_width);
            if (x != BOXES_X && x + cell_width > WIDTH - MARGIN) {
                x = BOXES_X;
                line_y += line_height + 4;
                line_height = 0;
            }
            if (draw) {
                put_box(*box, CAPTIONS[which], x, line_y, size);
            }
            line_height = std::max(line_height, size.height + CAPTION_HEIGHT);
            bottom = std::max(bottom, line_y + line_height);
            x += cell_width + BOX_GAP;
        }
        if (draw) {
            std::int32_t name_y = y + 1;
            for (const WM_STYLE_SET* set : sets) {
                put_text(set->name, MARGIN, name_y, ink, regular, NAME_SIZE);
                name_y += NAME_HEIGHT;
            }
            put_sample(first, y);
        }
        return bottom - y + GROUP_GAP;
    }

    // The same for a named image.
    std::int32_t put_image(const WM_PTM_IMAGE_INFO& info, std::int32_t y, bool draw) {
        IMAGE picture;
        picture.keep_aspect = true;
        picture.copy_pixels_from(*info.image);
        if (picture.height > MAX_IMAGE_HEIGHT) {
            picture.resize(IMAGE::NO_SIZE, MAX_IMAGE_HEIGHT, 1);
        }
        if (draw) {
            put_text(info.name, MARGIN, y + 1, ink, regular, NAME_SIZE);
            picture.put(SAMPLE_X, y, &sheet, IMAGE_COPY_BLEND);
        }
        return std::max<std::int32_t>(picture.height, NAME_HEIGHT) + GROUP_GAP;
    }

private:
    void put_text(const char* text, std::int32_t x, std::int32_t y, COLOUR colour, signed char font,
                  std::int16_t size) {
        sheet.process_and_render_string(x, y, colour, COLOUR_INVISIBLE, COLOUR_INVISIBLE, font,
                                        size, size, text, 0, -1, 0);
    }

    // On the ground that such texts stand on, for controls that bring it along.
    void put_sample(const WM_STYLE_SET& set, std::int32_t y) {
        IMAGE_BOX* ground = set.get_box(STYLE_BOX_UP);
        ground = ground ? ground : set.get_box(STYLE_BOX_BASE);
        if (ground && !(ground->left && !ground->top_left && ground->left->height > 20) &&
            !set.get_box(STYLE_BOX_DOWN) && !set.get_box(STYLE_BOX_OVER)) {
            return;  // a frame, or a line
        }
        if (set.get_box(STYLE_BOX_BAR) || set.get_box(STYLE_BOX_FULL)) {
            return;
        }
        const std::int32_t shift = ground && ground->left ? 8 : 0;
        if (shift != 0) {
            ground->draw(SAMPLE_X - 12, static_cast<std::int16_t>(y), SAMPLE_X + 88,
                         static_cast<std::int16_t>(y + 31), &sheet, 1, IMAGE_COPY_BLEND);
        }
        put_text("Text 128", SAMPLE_X, y + 1 + shift, set.fg_colour, set.font, set.font_y_sz);
    }

    void put_box(IMAGE_BOX& box, const char* caption, std::int32_t x, std::int32_t y,
                 const SIZE& size) {
        box.draw(static_cast<std::int16_t>(x), static_cast<std::int16_t>(y),
                 static_cast<std::int16_t>(x + size.width - 1),
                 static_cast<std::int16_t>(y + size.height - 1), &sheet, 1, IMAGE_COPY_BLEND);
        put_text(caption, x, y + size.height, caption_ink, regular, CAPTION_SIZE);
    }

    IMAGE& sheet;
    COLOUR ink, caption_ink;
    signed char regular;
};

// Makes a sheet of the height that `put(y, draw)` yields, and has it drawn.
template <class PUT>
void draw_lines(IMAGE& sheet, const PUT& put) {
    sheet.reset(WIDTH, put(MARGIN, false) + 2 * MARGIN - GROUP_GAP);
    sheet.clear(GUI_SKIN::get_image("BACKGROUND")->row(100)[0]);
    put(MARGIN, true);
}

}  // namespace

const std::vector<GALLERY_FAMILY>& get_gallery_families() {
    static const std::vector<GALLERY_FAMILY> FAMILIES = {
        {"buttons", {"DIALOG_BUTTON_", "DIALOG_CHECK_BOX", "TEXT_BOX_BUTTON"}},
        {"dialogs",
         {"DIALOG_BACKGROUND", "DIALOG_LABEL", "DIALOG_TITLE", "FLOATING_MENU_", "HINT"}},
        {"bars", {"DIALOG_PROGRESS_BAR", "TEXT_BOX_SCROLLBAR", "PROFILE_SCROLLBAR"}},
        {"text",
         {"TEXT_BOX_BACKGROUND", "TEXT_BOX_INFO", "TEXT_BOX_SEPARATOR", "TEXT_BOX_WORD",
          "PANEL_FRAME_TITLE_TEXT_BOX_WORD"}},
        {"panels",
         {"PANEL_BACKGROUND", "PANEL_FRAME_BACKGROUND", "PANEL_FRAME_BOTTOM", "PANEL_FRAME_ICON",
          "PANEL_FRAME_SUB", "PANEL_FRAME_TAB", "PANEL_FRAME_TOP"}},
        {"profile", {"PROFILE_ENTRY", "PROFILE_GRID", "PROFILE_LABEL", "PROFILE_TITLE"}},
    };
    return FAMILIES;
}

void draw_gallery_sheet(const GALLERY_FAMILY& family, IMAGE& sheet) {
    const PTRARRAY& sets = WM_PAGE_TOOL_MANAGER::get_instance().style_sets;
    std::vector<std::vector<const WM_STYLE_SET*>> groups;
    for (std::int32_t i = 0; i < sets.get_count(); ++i) {
        const auto* set = sets.get<WM_STYLE_SET>(i);
        if (!fits(*set, family)) {
            continue;
        }
        const auto found = std::find_if(groups.begin(), groups.end(), [set](const auto& group) {
            return looks_like(*group.front(), *set);
        });
        if (found != groups.end()) {
            found->push_back(set);
        } else {
            groups.push_back({set});
        }
    }
    SHEET_DRAWING drawing(sheet);
    draw_lines(sheet, [&](std::int32_t y, bool draw) {
        std::int32_t height = 0;
        for (const auto& group : groups) {
            height += drawing.put_sets(group, y + height, draw);
        }
        return height;
    });
}

void draw_image_sheet(IMAGE& sheet) {
    const PTRARRAY& images = WM_PAGE_TOOL_MANAGER::get_instance().images;
    SHEET_DRAWING drawing(sheet);
    draw_lines(sheet, [&](std::int32_t y, bool draw) {
        std::int32_t height = 0;
        for (std::int32_t i = 0; i < images.get_count(); ++i) {
            height += drawing.put_image(*images.get<WM_PTM_IMAGE_INFO>(i), y + height, draw);
        }
        return height;
    });
}
