#include "modules/winman/label_drawing.h"

#include <algorithm>

#include "active_area.h"
#include "flag_map.h"
#include "modules/winman/image_box.h"
#include "platform/font_manager.h"
#include "platform/image.h"

namespace {

constexpr FLAG_PAIR TEXT_FLAGS[] = {
    {LABEL_LEFT_JUSTIFY_TEXT, IMAGE_TEXT_LEFT},  {LABEL_RIGHT_JUSTIFY_TEXT, IMAGE_TEXT_RIGHT},
    {LABEL_TOP_ALIGN_TEXT, IMAGE_TEXT_TOP},      {LABEL_BOTTOM_ALIGN_TEXT, IMAGE_TEXT_BOTTOM},
    {LABEL_SHADOW_TEXT, IMAGE_TEXT_SHADOW},      {LABEL_INSET_TEXT, IMAGE_TEXT_INSET},
    {LABEL_CHISELLED_TEXT, IMAGE_TEXT_CHISELLED}};

constexpr std::uint32_t ICON_PLACES =
    LABEL_ICON_LEFT | LABEL_ICON_RIGHT | LABEL_ICON_TOP | LABEL_ICON_BOTTOM;

}  // namespace

std::int32_t LABEL_DRAWING::get_natural_height(const IMAGE_BOX& box, std::int32_t font_y_size,
                                               std::int32_t top_gap, std::int32_t bottom_gap) {
    const bool three_across = box.left != nullptr && box.centre != nullptr &&
                              box.right != nullptr && box.top == nullptr && box.bottom == nullptr &&
                              box.top_left == nullptr && box.top_right == nullptr &&
                              box.bottom_left == nullptr && box.bottom_right == nullptr;
    return three_across ? box.natural_height(box.centre) : top_gap + bottom_gap + font_y_size;
}

// What the gaps leave.
LABEL_DRAWING::BOX LABEL_DRAWING::get_inner_box() const {
    return {x + left_gap, y + top_gap, x + width - right_gap - 1, y + height - bottom_gap - 1};
}

// Where IMAGE puts a line of this width between two columns.
std::int32_t LABEL_DRAWING::get_text_x(const BOX& box, std::int32_t text_width) const {
    if (flags & LABEL_LEFT_JUSTIFY_TEXT) {
        return box.x1;
    }
    if (flags & LABEL_RIGHT_JUSTIFY_TEXT) {
        return std::max(box.x2 - text_width, box.x1);
    }
    return box.x1 + std::max(0, (box.x2 - box.x1 + 1 - text_width) / 2);
}

std::int32_t LABEL_DRAWING::get_text_y(const BOX& box) const {
    if (flags & LABEL_TOP_ALIGN_TEXT) {
        return box.y1;
    }
    if (flags & LABEL_BOTTOM_ALIGN_TEXT) {
        return std::max(box.y2 - font_y_size, box.y1);
    }
    return box.y1 + std::max(0, (box.y2 - box.y1 + 1 - font_y_size) / 2);
}

// Widens a gap where the text would enter the margin on that side. A wrapped text fills the whole
// rectangle.
void LABEL_DRAWING::keep_clear_of_margins(std::int32_t text_width) {
    const bool wrap = (flags & LABEL_WRAP_TEXT) != 0;
    // Twice: keeping clear of a margin may move a centred text into the opposite one.
    for (int pass = 0; pass < 2; ++pass) {
        if (reserved_left > left_gap &&
            (wrap || get_text_x(get_inner_box(), text_width) < x + reserved_left)) {
            left_gap = reserved_left;
        }
        if (reserved_right > right_gap &&
            (wrap ||
             get_text_x(get_inner_box(), text_width) + text_width > x + width - reserved_right)) {
            right_gap = reserved_right;
        }
        if (reserved_top > top_gap && (wrap || get_text_y(get_inner_box()) < y + reserved_top)) {
            top_gap = reserved_top;
        }
        if (reserved_bottom > bottom_gap &&
            (wrap || get_text_y(get_inner_box()) + font_y_size > y + height - reserved_bottom)) {
            bottom_gap = reserved_bottom;
        }
    }
}

// The cell in a gap, or the whole control.
LABEL_DRAWING::BOX LABEL_DRAWING::get_icon_cell() const {
    const BOX whole = {x, y, x + width - 1, y + height - 1};
    if (flags & LABEL_ICON_LEFT) {
        return {whole.x1, whole.y1, x + left_gap - 1, whole.y2};
    }
    if (flags & LABEL_ICON_RIGHT) {
        return {x + width - right_gap, whole.y1, whole.x2, whole.y2};
    }
    if (flags & LABEL_ICON_TOP) {
        return {whole.x1, whole.y1, whole.x2, y + top_gap - 1};
    }
    if (flags & LABEL_ICON_BOTTOM) {
        return {whole.x1, y + height - bottom_gap, whole.x2, whole.y2};
    }
    return whole;
}

// Takes the icon's room from the text's: a justified text moves by all of it, a centred one by
// half. Yields the cell beside the text that this leaves.
LABEL_DRAWING::BOX LABEL_DRAWING::attach_icon(BOX& text_box, std::int32_t text_width) const {
    const std::int32_t room_x = icon->width + icon_x_spacing;
    const std::int32_t room_y = icon->height + icon_y_spacing;
    const auto text_left = [&] { return get_text_x(text_box, text_width); };
    const auto text_right = [&] { return std::min(text_left() + text_width - 1, text_box.x2); };
    BOX cell = text_box;
    if (flags & LABEL_ICON_LEFT) {
        text_box.x1 += room_x;
        cell.x1 = text_left() - room_x;
        cell.x2 = cell.x1 + icon->width - 1;
        return cell;
    }
    if (flags & LABEL_ICON_RIGHT) {
        text_box.x2 -= room_x;
        cell.x1 = text_right() + 1 + icon_x_spacing;
        cell.x2 = cell.x1 + icon->width - 1;
        return cell;
    }
    if (flags & LABEL_ICON_TOP) {
        text_box.y1 += room_y;
        cell.y1 = get_text_y(text_box) - room_y;
    } else {
        text_box.y2 -= room_y;
        cell.y1 = std::min(get_text_y(text_box) + font_y_size, text_box.y2 + 1) + icon_y_spacing;
    }
    cell.y2 = cell.y1 + icon->height - 1;
    if (flags & LABEL_LEFT_JUSTIFY_TEXT) {
        cell.x2 = cell.x1 + icon->width - 1;
    } else if (flags & LABEL_RIGHT_JUSTIFY_TEXT) {
        cell.x1 = cell.x2 - icon->width + 1;
    }
    return cell;
}

void LABEL_DRAWING::draw_icon(IMAGE& target, const BOX& cell) {
    icon_left = cell.x1;
    icon_right = cell.x2;
    const SAVED_ACTIVE_AREA saved(&target);
    target.add_rect_to_active_area(cell.x1 + offset, cell.y1 + offset, cell.x2 + offset,
                                   cell.y2 + offset);
    icon->put(cell.x1 + (cell.x2 - cell.x1 + 1 - icon->width) / 2 + offset,
              cell.y1 + (cell.y2 - cell.y1 + 1 - icon->height) / 2 + offset, &target,
              IMAGE_COPY_BLEND, icon_alpha);
}

void LABEL_DRAWING::draw_text(IMAGE& target, const BOX& text_box) {
    const auto text_flags = static_cast<std::int32_t>(map_flags(TEXT_FLAGS, flags));
    const BOX at = {text_box.x1 + offset, text_box.y1 + offset, text_box.x2 + offset,
                    text_box.y2 + offset};
    if (flags & LABEL_WRAP_TEXT) {
        target.draw_multi_line_string(at.x1, at.y1, at.x2, at.y2, text_colour, COLOUR_INVISIBLE,
                                      underline, font, font_x_size, font_y_size, text, text_flags);
    } else {
        target.draw_single_line_string(at.x1, at.y1, at.x2, at.y2, text_colour, COLOUR_INVISIBLE,
                                       underline, font, font_x_size, font_y_size, text, text_flags,
                                       &was_cut);
    }
}

void LABEL_DRAWING::draw(IMAGE& target) {
    const bool wrap = (flags & LABEL_WRAP_TEXT) != 0;
    const bool has_icon = icon != nullptr && icon->height > 0;
    const bool attached = has_icon && (flags & LABEL_ICON_ATTACH_TO_TEXT) && (flags & ICON_PLACES);
    const BOX gap_cell = get_icon_cell();
    std::int32_t text_width = 0;
    if (*text != '\0' && !wrap) {
        text_width =
            FONT_MANAGER::get_instance().get_string_width(font, font_x_size, font_y_size, text);
    }
    keep_clear_of_margins(text_width);
    BOX text_box = get_inner_box();
    if (wrap) {
        text_width = text_box.x2 - text_box.x1 + 1;
    }
    if (has_icon) {
        const BOX cell = attached ? attach_icon(text_box, text_width) : gap_cell;
        draw_icon(target, cell);
    }
    if (*text != '\0') {
        const SAVED_ACTIVE_AREA saved(&target);
        const BOX inner = get_inner_box();
        target.add_rect_to_active_area(inner.x1, inner.y1, inner.x2 + offset, inner.y2 + offset);
        draw_text(target, text_box);
    }
}
