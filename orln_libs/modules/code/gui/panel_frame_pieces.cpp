// The frame's construction out of the pieces of the skin.
#include <algorithm>
#include <vector>

#include "modules/gui/panel_frame.h"
#include "modules/winman/style_set.h"
#include "modules/winman/wm_button.h"
#include "modules/winman/wm_manager.h"
#include "modules/winman/wm_script.h"
#include "panel_frame_data.h"
#include "skin_lookup.h"
#include "to_short.h"

namespace {

SKIN_STYLE PANEL_FRAME_BACKGROUND_INDEX{"PANEL_FRAME_BACKGROUND"};
SKIN_STYLE PANEL_FRAME_TOP_MID_INDEX{"PANEL_FRAME_TOP_MID"};
SKIN_STYLE PANEL_FRAME_TOP_MID_SELECTED_INDEX{"PANEL_FRAME_TOP_MID_SELECTED"};
SKIN_STYLE PANEL_FRAME_TITLE_INDEX{"PANEL_FRAME_TITLE"};
SKIN_STYLE PANEL_FRAME_ICON_BAR_INDEX{"PANEL_FRAME_ICON_BAR"};
SKIN_STYLE PANEL_FRAME_CENTRE_HOLDER_INDEX{"PANEL_FRAME_CENTRE_HOLDER"};

SKIN_CONSTANT PANEL_FRAME_MAIN_TAB_START_X_INDEX{"PANEL_FRAME_MAIN_TAB_START_X"};
SKIN_CONSTANT PANEL_FRAME_MAIN_TAB_X_GAP_INDEX{"PANEL_FRAME_MAIN_TAB_X_GAP"};
SKIN_CONSTANT PANEL_FRAME_SUB_TAB_START_X_INDEX{"PANEL_FRAME_SUB_TAB_START_X"};
SKIN_CONSTANT PANEL_FRAME_SUB_TAB_X_GAP_INDEX{"PANEL_FRAME_SUB_TAB_X_GAP"};
SKIN_CONSTANT PANEL_FRAME_ICON_BAR_WIDTH_INDEX{"PANEL_FRAME_ICON_BAR_WIDTH"};

// The first and last piece of the top row, without tabs and with.
SKIN_STYLE TOP_FIRST_INDEX[] = {{"PANEL_FRAME_TOP_NO_TABS_FIRST"}, {"PANEL_FRAME_TOP_FIRST"}};
SKIN_STYLE TOP_LAST_INDEX[] = {{"PANEL_FRAME_TOP_NO_TABS_LAST"}, {"PANEL_FRAME_TOP_LAST"}};

// Tabs by their position in the row, each as an ordinary and as the selected one.
enum TAB_POSITION { TAB_FIRST, TAB_MID, TAB_LAST };
SKIN_STYLE MAIN_TAB_INDEX[][2] = {
    {{"PANEL_FRAME_TAB_FIRST"}, {"PANEL_FRAME_TAB_FIRST_SELECTED"}},
    {{"PANEL_FRAME_TAB_MID"}, {"PANEL_FRAME_TAB_MID_SELECTED"}},
    {{"PANEL_FRAME_TAB_LAST"}, {"PANEL_FRAME_TAB_LAST_SELECTED"}},
};
SKIN_STYLE SUB_TAB_INDEX[][2] = {
    {{"PANEL_FRAME_SUB_FIRST"}, {"PANEL_FRAME_SUB_FIRST_SELECTED"}},
    {{"PANEL_FRAME_SUB_MID"}, {"PANEL_FRAME_SUB_MID_SELECTED"}},
    {{"PANEL_FRAME_SUB_LAST"}, {"PANEL_FRAME_SUB_LAST_SELECTED"}},
};

// The lower row and the centre, as they are and as holders of objects.
SKIN_STYLE BOTTOM_FIRST_INDEX[] = {{"PANEL_FRAME_BOTTOM_FIRST"},
                                   {"PANEL_FRAME_BOTTOM_FIRST_HOLDER"}};
SKIN_STYLE BOTTOM_MID_INDEX[] = {{"PANEL_FRAME_BOTTOM_MID"}, {"PANEL_FRAME_BOTTOM_MID_HOLDER"}};
SKIN_STYLE BOTTOM_LAST_INDEX[] = {{"PANEL_FRAME_BOTTOM_LAST"}, {"PANEL_FRAME_BOTTOM_LAST_HOLDER"}};
SKIN_STYLE CENTRE_INDEX[] = {{"PANEL_FRAME_CENTRE"}, {"PANEL_FRAME_CENTRE_HOLDER"}};
SKIN_STYLE CENTRE_SMALL_BORDER_INDEX[] = {{"PANEL_FRAME_CENTRE_SMALL_BORDER"},
                                          {"PANEL_FRAME_CENTRE_HOLDER_SMALL_BORDER"}};

TAB_POSITION get_position(std::int32_t index, std::int32_t count) {
    return index == 0 ? TAB_FIRST : index == count - 1 ? TAB_LAST : TAB_MID;
}

// A size below 1 hides the piece.
void place_piece(WM_SCRIPT& piece, std::int32_t left, std::int32_t top, std::int32_t width,
                 std::int32_t height) {
    piece.resize(to_short(std::max(width, 0)), to_short(std::max(height, 0)), 0);
    piece.move(to_short(left), to_short(top));
    if (width > 0 && height > 0) {
        piece.request_draw(0, 0);
    } else {
        piece.hide(0, 0);
    }
}

// In its natural size.
WM_SCRIPT* make_piece(WM_SCREEN_OBJECT& holder, const WM_STYLE_SET& style) {
    auto* piece = new WM_SCRIPT(0, 0, -1, -1, style, "", holder.window);
    // A frame's own add_object would take the piece for content.
    holder.WM_SCREEN_OBJECT::add_object(piece, 0);
    return piece;
}

}  // namespace

// The tabs of a row, and where they may stand: from a place (without the frame's margin) to the
// limit. All are pixels from the frame's left edge.
struct PANEL_FRAME::TAB_ROW {
    PTRARRAY& buttons;
    std::int32_t start, gap, limit;
};

void PANEL_FRAME::build_pieces(std::int32_t selected) {
    background = make_piece(*this, PANEL_FRAME_BACKGROUND_INDEX.get(skin_prefix));
    place_piece(*background, x, y, width, height);
    const std::int32_t limit = build_top(selected);
    build_sub_row(selected, limit);
    build_bottom();
    build_centre();
}

// Yields the limit of both rows of tabs.
std::int32_t PANEL_FRAME::build_top(std::int32_t selected) {
    const INNER_RECT inner(*background);
    const bool tabbed = tab_count != 0;
    WM_SCRIPT* const first = make_piece(*background, TOP_FIRST_INDEX[tabbed].get(skin_prefix));
    WM_SCRIPT* const last = make_piece(*background, TOP_LAST_INDEX[tabbed].get(skin_prefix));
    const std::int32_t limit = inner.right() - last->width - x;

    std::int32_t row_height = std::max(first->height, last->height);
    if (tab_count >= 2) {
        row_height = std::max(row_height, make_main_tabs(selected, limit));
    }
    place_piece(*first, inner.left, inner.top, first->width, row_height);
    place_piece(*last, x + limit, inner.top, last->width, row_height);
    build_strips(selected, inner.left + first->width, x + limit, inner.top, row_height);
    place_main_tabs(inner.top + row_height);

    title_holder = make_piece(*background, PANEL_FRAME_TITLE_INDEX.get(skin_prefix));
    place_piece(*title_holder, inner.left, inner.top + row_height, inner.width,
                title_holder->height);
    return limit;
}

// Yields the height that the row takes with them.
std::int32_t PANEL_FRAME::make_main_tabs(std::int32_t selected, std::int32_t limit) {
    std::vector<std::int32_t> main_tabs;
    for (std::int32_t i = 0; i < tab_count; ++i) {
        if (!get_tab(i).is_sub_tab) {
            main_tabs.push_back(i);
        }
    }
    std::int32_t tallest = 0;
    const auto count = static_cast<std::int32_t>(main_tabs.size());
    for (std::int32_t i = 0; i < count; ++i) {
        const std::int32_t tab = main_tabs[static_cast<std::size_t>(i)];
        SKIN_STYLE& style = MAIN_TAB_INDEX[get_position(i, count)][tab == selected];
        WM_BUTTON* const button = make_tab(get_tab(tab), style.get(skin_prefix));
        tab_buttons.add(button);
        tallest = std::max<std::int32_t>(tallest, button->height);
    }
    if (selected >= 0) {
        append_to_tab_title(get_tab(selected).text);
    }
    fit_row({tab_buttons, PANEL_FRAME_MAIN_TAB_START_X_INDEX.get(skin_prefix),
             PANEL_FRAME_MAIN_TAB_X_GAP_INDEX.get(skin_prefix), limit});
    return tallest + PANEL_FRAME_TOP_MID_INDEX.get(skin_prefix).get_object_bottom_gap();
}

WM_BUTTON* PANEL_FRAME::make_tab(const PANEL_FRAME_TAB& tab, const WM_STYLE_SET& style) {
    auto* button = new WM_BUTTON(0, 0, -1, -1, style, tab.text, nullptr, handle_callback, this,
                                 pointer_from(tab.id), BUTTON_EVENT_RELEASE, window, 1, 0);
    button->right_callback = alt_handle_callback;
    button->right_mode = RIGHT_ON_RELEASE;
    button->right_data1 = pointer_from(tab.sub_id);
    button->right_data2 = this;
    button->enabled = tab.id >= 0;
    if (tab.activated) {
        button->set_activated(1);
    }
    return button;
}

// Puts the tabs side by side and, where they reach the limit, narrows all of them.
void PANEL_FRAME::fit_row(const TAB_ROW& row) {
    const std::int32_t margin = background->left_gap;
    const std::int32_t count = row.buttons.get_count();
    std::int32_t left = margin + row.start;
    for (std::int32_t i = 0; i < count; ++i) {
        auto* button = row.buttons.get<WM_BUTTON>(i);
        button->move(to_short(x + left), button->y);
        left += button->width + row.gap;
    }
    const std::int32_t last_right = left - row.gap - 1;
    if (count == 0 || last_right < row.limit) {
        return;
    }
    const std::int32_t room = row.limit - PANEL_FRAME_MAIN_TAB_START_X_INDEX.get(skin_prefix);
    const std::int32_t taken = std::max(last_right - row.start, 1);
    const std::int32_t percent = std::clamp(room * 100 / taken, 1, 100);
    if (percent == 100) {
        return;
    }
    left = margin + row.start;
    for (std::int32_t i = 0; i < count; ++i) {
        auto* button = row.buttons.get<WM_BUTTON>(i);
        const std::int32_t narrowed = std::max(button->width * percent / 100, 1);
        button->resize(to_short(narrowed), button->height, 0);
        button->move(to_short(x + left), button->y);
        button->set_hint_text(button->get_title_text());
        left += narrowed + row.gap;
    }
}

// Fills the top row between its end pieces: a strip under each tab, and what is left.
void PANEL_FRAME::build_strips(std::int32_t selected, std::int32_t left, std::int32_t right,
                               std::int32_t top, std::int32_t row_height) {
    const auto add_strip = [&](bool under_selected, std::int32_t to) {
        to = std::min(to, right);
        if (to > left) {
            SKIN_STYLE& style =
                under_selected ? PANEL_FRAME_TOP_MID_SELECTED_INDEX : PANEL_FRAME_TOP_MID_INDEX;
            place_piece(*make_piece(*background, style.get(skin_prefix)), left, top, to - left,
                        row_height);
            left = to;
        }
    };
    const std::int32_t gap = PANEL_FRAME_MAIN_TAB_X_GAP_INDEX.get(skin_prefix);
    std::int32_t button_index = 0;
    for (std::int32_t i = 0; i < tab_count && button_index < tab_buttons.get_count(); ++i) {
        if (get_tab(i).is_sub_tab) {
            continue;
        }
        const auto& button = *tab_buttons.get<WM_BUTTON>(button_index++);
        add_strip(false, button.x);
        add_strip(i == selected, button.x + button.width + gap);
    }
    add_strip(false, right);
}

// On the lower edge of the row, but for the strips' own.
void PANEL_FRAME::place_main_tabs(std::int32_t row_bottom) {
    const std::int32_t tab_bottom =
        row_bottom - PANEL_FRAME_TOP_MID_INDEX.get(skin_prefix).get_object_bottom_gap();
    for (std::int32_t i = 0; i < tab_buttons.get_count(); ++i) {
        auto* button = tab_buttons.get<WM_BUTTON>(i);
        button->move(button->x, to_short(tab_bottom - button->height));
        background->add_object(button, 0);
    }
}

void PANEL_FRAME::build_sub_row(std::int32_t selected, std::int32_t limit) {
    if (selected < 0) {
        return;
    }
    std::int32_t count = 0;
    while (selected + 1 + count < tab_count && get_tab(selected + 1 + count).is_sub_tab) {
        ++count;
    }
    for (std::int32_t i = 0; i < count; ++i) {
        const PANEL_FRAME_TAB& tab = get_tab(selected + 1 + i);
        const bool active = is_active(tab);
        SKIN_STYLE& style = SUB_TAB_INDEX[get_position(i, count)][active];
        sub_tab_buttons.add(make_tab(tab, style.get(skin_prefix)));
        if (active) {
            append_to_tab_title(tab.text);
        }
    }
    if (frame_flags & FRAME_KEEP_SUB_ROW_END) {
        limit -= SUB_ROW_FREE_WIDTH;
    }
    fit_row({sub_tab_buttons, PANEL_FRAME_SUB_TAB_START_X_INDEX.get(skin_prefix),
             PANEL_FRAME_SUB_TAB_X_GAP_INDEX.get(skin_prefix), limit});
    const INNER_RECT inner(*title_holder);
    for (std::int32_t i = 0; i < count; ++i) {
        auto* button = sub_tab_buttons.get<WM_BUTTON>(i);
        button->move(button->x, to_short(inner.centre_y(button->height)));
        title_holder->add_object(button, 0);
    }
}

void PANEL_FRAME::build_bottom() {
    const bool holder = (frame_flags & FRAME_LOWER_HOLDER) != 0;
    bottom_first = make_piece(*background, BOTTOM_FIRST_INDEX[holder].get(skin_prefix));
    bottom_mid = make_piece(*background, BOTTOM_MID_INDEX[holder].get(skin_prefix));
    bottom_last = make_piece(*background, BOTTOM_LAST_INDEX[holder].get(skin_prefix));
    place_bottom(bottom_last->width);
}

void PANEL_FRAME::place_bottom(std::int32_t last_width) {
    const INNER_RECT inner(*background);
    const std::int32_t row_height =
        std::max({bottom_first->height, bottom_mid->height, bottom_last->height});
    const std::int32_t top = inner.bottom() - row_height;
    const std::int32_t last_left = inner.right() - last_width;
    const std::int32_t mid_left = inner.left + bottom_first->width;
    place_piece(*bottom_first, inner.left, top, bottom_first->width, row_height);
    place_piece(*bottom_mid, mid_left, top, last_left - mid_left, row_height);
    place_piece(*bottom_last, last_left, top, last_width, row_height);
}

void PANEL_FRAME::build_centre() {
    const bool holder = (frame_flags & FRAME_LOWER_HOLDER) != 0;
    SKIN_STYLE& style =
        frame_flags & FRAME_SMALL_BORDER ? CENTRE_SMALL_BORDER_INDEX[holder] : CENTRE_INDEX[holder];
    const INNER_RECT frame(*background);
    const std::int32_t top = title_holder->y + title_holder->height;
    centre = make_piece(*background, style.get(skin_prefix));
    place_piece(*centre, frame.left, top, frame.width, bottom_first->y - top);

    const INNER_RECT inner(*centre);
    std::int32_t content_width = inner.width;
    if (frame_flags & FRAME_ICON_BAR) {
        const std::int32_t bar_width = PANEL_FRAME_ICON_BAR_WIDTH_INDEX.get(skin_prefix);
        icon_bar = make_piece(*background, PANEL_FRAME_ICON_BAR_INDEX.get(skin_prefix));
        place_piece(*icon_bar, inner.right() - bar_width, inner.top, bar_width, inner.height);
        content_width -= bar_width + PANEL_FRAME_CENTRE_HOLDER_INDEX.get(skin_prefix).x_spacing;
    }
    // A side below 1 would mean that of the window.
    internal = new WM_MANAGER(to_short(inner.left), to_short(inner.top),
                              to_short(std::max(content_width, 1)),
                              to_short(std::max(inner.height, 1)), 1, window);
    internal->type_flags |= WMF_MANAGER;
    centre->add_object(internal, 0);
}
