// Life, items and geometry of WM_FLOATING_MENU. Input is in wm_floating_menu_input.cpp.
#include "modules/winman/wm_floating_menu.h"

#include <algorithm>

#include "../gui/to_short.h"
#include "modules/winman/page_manager.h"
#include "modules/winman/wm_button.h"
#include "modules/winman/wm_grid.h"
#include "modules/winman/wm_manager.h"
#include "modules/winman/wm_menu.h"
#include "modules/winman/wm_script.h"
#include "platform/font_manager.h"
#include "wm_floating_menu_tools.h"

EFFECT_INFO WM_FLOATING_MENU::default_floating_menu_effect_info = {0, 0, 0, 224};

namespace {

// The arrow of a sub-menu needs half the height and this much.
constexpr std::int32_t ARROW_MARGIN = 5;

// One of the buttons at the ends, with its arrow in the middle.
class MENU_SCROLL_BUTTON : public WM_BUTTON {
public:
    MENU_SCROLL_BUTTON(const WM_STYLE_SET& style, SCROBJ_ARROW_TYPE direction,
                       WM_CALLBACK callback_, void* data1, void* data2, signed char window_)
        : WM_BUTTON(0, 0, 0, 0, style, "", nullptr, callback_, data1, data2,
                    BUTTON_EVENT_PRESS | BUTTON_EVENT_REPEAT, window_, 1, 0),
          arrow(direction) {
        allowed_focus = false;  // the arrow keys scroll
    }
    void draw_object() override {
        WM_BUTTON::draw_object();
        const auto left = static_cast<std::int16_t>(x + (width - height) / 2);
        draw_arrow(left, y, static_cast<std::int16_t>(left + height - 1),
                   static_cast<std::int16_t>(y + height - 1), text, arrow, 1, -1, -1);
    }

private:
    const SCROBJ_ARROW_TYPE arrow;
};

// Without a look of its own, for what the popup's frame holds.
WM_STYLE_SET make_bare_style() {
    WM_STYLE_SET style;
    style.bg_colour = COLOUR_INVISIBLE;
    style.border_left_gap = style.border_right_gap = style.border_top_gap =
        style.border_bottom_gap = 0;
    style.cell_left_gap = style.cell_right_gap = style.cell_top_gap = style.cell_bottom_gap = 0;
    style.x_spacing = style.y_spacing = 0;
    style.flags = STYLE_GRID_NO_SCROLLBAR;
    return style;
}

}  // namespace

WM_FLOATING_MENU::WM_FLOATING_MENU(std::int16_t x_, std::int16_t y_, const char* title_text,
                                   const WM_STYLE_SET& popup, const WM_STYLE_SET& title_set,
                                   const WM_STYLE_SET& item, const WM_STYLE_SET& alternate_item,
                                   const WM_STYLE_SET& separator, unsigned char alternate,
                                   unsigned char not_owned_, const WM_STYLE_SET* child_item,
                                   const WM_STYLE_SET* child_alternate,
                                   const EFFECT_INFO* effect_info, const WM_STYLE_SET* child_menu,
                                   signed char window_, unsigned char defer)
    : WM_DIALOG(x_, y_, 1, 1, title_text, defer, popup, title_set, make_bare_style(),
                effect_info != nullptr ? effect_info : &default_floating_menu_effect_info, window_),
      grid_style(make_bare_style()),
      item_style(item),
      alternate_item_style(alternate_item),
      separator_style(separator),
      child_item_style(child_item != nullptr ? *child_item : item),
      child_alternate_style(child_alternate != nullptr ? *child_alternate : alternate_item),
      child_menu_style(child_menu != nullptr ? *child_menu : item),
      alternate_rows(alternate != 0) {
    type_flags |= WMF_FLOATING_MENU;
    not_owned = not_owned_ != 0;
    draggable = false;
    const WM_REGION inner = get_contents_region();
    grid = new WM_GRID(inner.left, inner.top, inner.right, inner.bottom, 1, nullptr, grid_style,
                       grid_style, window_);
    grid->allowed_focus = false;
    add_object(grid, 0);
    calc_new_size();
}

WM_FLOATING_MENU::~WM_FLOATING_MENU() = default;

// --- Items ---

WM_SCREEN_OBJECT* WM_FLOATING_MENU::append_item(WM_SCREEN_OBJECT* item) {
    grid->set_row_height(item->height);
    const std::int16_t item_width = item->width;
    if (grid->add_object(0, grid->row_count, item) == nullptr) {
        delete item;
        return nullptr;
    }
    widest_item = std::max(widest_item, item_width);
    // That of the scroll buttons, also behind a separator.
    tallest_item = std::max(tallest_item, grid->row_height);
    grid->set_row_height(tallest_item);
    return item;
}

const WM_STYLE_SET& WM_FLOATING_MENU::choose_style(const WM_STYLE_SET* style,
                                                   const WM_STYLE_SET* alternate,
                                                   const WM_STYLE_SET& own) const {
    const bool odd = alternate_rows && grid->row_count % 2 != 0;
    if (style != nullptr) {
        return odd && alternate != nullptr ? *alternate : *style;
    }
    return odd && &own == &item_style ? alternate_item_style : own;
}

WM_BUTTON* WM_FLOATING_MENU::add_button(const char* text, WM_CALLBACK item_callback, void* data1,
                                        void* data2, unsigned char separator_before,
                                        const WM_STYLE_SET* style, const WM_STYLE_SET* alternate) {
    if (separator_before) {
        add_seperator();
    }
    auto* button =
        new WM_BUTTON(0, 0, -1, -1, choose_style(style, alternate, item_style), text, nullptr,
                      item_callback, data1, data2, BUTTON_EVENT_RELEASE, window, 1, 0);
    button->allowed_focus = true;  // also one that only closes the menu
    if (append_item(button) == nullptr) {
        return nullptr;
    }
    ++item_count;
    calc_new_size();
    return button;
}

WM_MENU* WM_FLOATING_MENU::add_menu(const char* text, unsigned char separator_before,
                                    unsigned char dont_mask, const WM_STYLE_SET* style,
                                    const WM_STYLE_SET* alternate) {
    if (separator_before) {
        add_seperator();
    }
    auto* menu = new WM_MENU(0, 0, -1, -1, text, MENU_RIGHT,
                             choose_style(style, alternate, child_menu_style), dialog_style,
                             title_style, child_item_style, child_alternate_style, separator_style,
                             alternate_rows, nullptr, window, nullptr, nullptr, &child_item_style,
                             &child_alternate_style, &child_menu_style);
    menu->x_offset = menu->y_offset = WM_MENU::SUB_MENU_OFFSET;
    menu->button_type = BUTTON_TYPE_HOVER_FIRE;
    menu->button_flags |= BUTTON_RIGHT_ARROW | (dont_mask ? BUTTON_DONT_MASK_CLICK : 0u);
    menu->reserved_right = to_short(menu->height / 2 + ARROW_MARGIN);
    menu->width = to_short(menu->width + menu->reserved_right);
    menu->owner_menu = owner_menu != nullptr ? static_cast<WM_SCREEN_OBJECT*>(owner_menu) : this;
    if (append_item(menu) == nullptr) {
        return nullptr;
    }
    ++item_count;
    ++menu_count;
    calc_new_size();
    return menu;
}

WM_SCRIPT* WM_FLOATING_MENU::add_script(const char* text, const WM_STYLE_SET* style,
                                        const WM_STYLE_SET* alternate) {
    auto* script =
        new WM_SCRIPT(0, 0, -1, -1, choose_style(style, alternate, item_style), text, window);
    script = static_cast<WM_SCRIPT*>(append_item(script));
    calc_new_size();
    return script;
}

WM_SCRIPT* WM_FLOATING_MENU::add_seperator() {
    auto* script = new WM_SCRIPT(0, 0, -1, -1, separator_style, "", window);
    return static_cast<WM_SCRIPT*>(append_item(script));
}

WM_BUTTON* WM_FLOATING_MENU::get_button(std::int16_t row) const {
    WM_SCREEN_OBJECT* item = grid->get_object(0, row);
    return item != nullptr && (item->type_flags & WMF_BUTTON) ? static_cast<WM_BUTTON*>(item)
                                                              : nullptr;
}

WM_MENU* WM_FLOATING_MENU::get_menu(std::int16_t row) const {
    WM_SCREEN_OBJECT* item = grid->get_object(0, row);
    return item != nullptr && (item->type_flags & WMF_MENU) ? static_cast<WM_MENU*>(item) : nullptr;
}

std::int16_t WM_FLOATING_MENU::get_row_count() const {
    return grid->row_count;
}

// What is only a line between items.
bool WM_FLOATING_MENU::is_separator(std::int16_t row) const {
    const WM_SCREEN_OBJECT* item = grid->get_object(0, row);
    return item != nullptr && (item->type_flags & WMF_SCRIPT) &&
           static_cast<const WM_SCRIPT*>(item)->get_text()[0] == '\0';
}

void WM_FLOATING_MENU::clear(unsigned char new_size) {
    grid->clear(1);
    clear_scrolling_buttons();
    item_count = menu_count = 0;
    widest_item = tallest_item = 0;
    if (new_size) {
        calc_new_size();
    }
}

void WM_FLOATING_MENU::set_childrens_allowed_focus(unsigned char allowed) {
    for (std::int16_t row = 0; row < grid->row_count; ++row) {
        if (WM_BUTTON* button = get_button(row)) {
            button->allowed_focus = allowed != 0;
        }
    }
}

void WM_FLOATING_MENU::set_title(const char* text) {
    WM_DIALOG::set_title(text);
    calc_new_size();
}

// --- Size and scrolling ---

void WM_FLOATING_MENU::calc_new_size() {
    std::int32_t area_width = INT16_MAX, area_height = INT16_MAX;
    std::int16_t x1 = 0, y1 = 0, x2 = 0, y2 = 0;
    WM_PAGE_MANAGER* pages = get_page_manager();
    if (pages != nullptr) {
        pages->get_popup_area(x1, y1, x2, y2);
        area_width = x2 - x1 + 1;
        area_height = y2 - y1 + 1;
    }
    const std::int32_t frame_width =
        dialog_style.get_object_left_gap() + dialog_style.get_object_right_gap() +
        dialog_style.get_cell_left_gap() + dialog_style.get_cell_right_gap();
    const std::int32_t frame_height = get_title_height() + dialog_style.get_object_bottom_gap() +
                                      dialog_style.get_cell_bottom_gap();
    std::int32_t wanted_width = std::max<std::int32_t>(widest_item + frame_width, min_width);
    if (title != nullptr) {
        std::int16_t title_gap = 0;
        WM_SCRIPT::calc_xgap_from_style_set(title_style, title_gap);
        wanted_width = std::max(wanted_width, title_gap + frame_width +
                                                  FONT_MANAGER::get_instance().get_string_width(
                                                      title->font, title->font_x_sz,
                                                      title->font_y_sz, title->get_text()));
    }
    const std::int32_t limit =
        max_height > 0 ? std::min<std::int32_t>(max_height, area_height) : area_height;
    std::int32_t wanted_height = frame_height + grid->get_rows_height();
    if (wanted_height > limit) {
        // Whole rows, where they are all alike.
        const std::int32_t row = std::max<std::int32_t>(grid->row_height, 1);
        wanted_height = frame_height + std::max((limit - frame_height) / row, 1) * row;
    }
    resize(to_short(std::max(std::min(wanted_width, area_width), 1)),
           to_short(std::max(std::min(wanted_height, area_height), 1)), 0);
    if (owner_menu == nullptr && pages != nullptr) {
        const std::int32_t left = std::min<std::int32_t>(get_x(), x2 + 1 - width);
        const std::int32_t top = std::min<std::int32_t>(get_y(), y2 + 1 - height);
        move(to_short(std::max<std::int32_t>(left, x1)), to_short(std::max<std::int32_t>(top, y1)));
    }
}

void WM_FLOATING_MENU::resize(std::int16_t new_width, std::int16_t new_height,
                              unsigned char children) {
    WM_DIALOG::resize(new_width, new_height, children);
    check_for_scrolling_buttons();
}

void WM_FLOATING_MENU::check_for_scrolling_buttons() {
    if (grid != nullptr) {
        show_from(grid->get_scroll_position());
    }
}

void WM_FLOATING_MENU::clear_scrolling_buttons() {
    const WM_REGION inner = get_contents_region();
    show_scroll_button(scroll_top_button, false, false);
    show_scroll_button(scroll_bottom_button, true, false);
    grid->move(inner.left, inner.top);
    grid->resize(to_short(inner.right - inner.left + 1), to_short(inner.bottom - inner.top + 1), 0);
    first_row = 0;
    last_row = to_short(grid->row_count - 1);
}

// Lays the popup out with this many pixels of its rows above the view.
void WM_FLOATING_MENU::show_from(std::int32_t position) {
    const WM_REGION inner = get_contents_region();
    const std::int32_t room = inner.bottom - inner.top + 1;
    const std::int32_t total = grid->get_rows_height();
    if (total <= room) {
        clear_scrolling_buttons();
        return;
    }
    const std::int32_t button = grid->row_height;
    // The last position has the upper button, but not the lower one.
    position = std::clamp(position, 0, std::max(total - (room - button), 0));
    const bool with_top = position > 0;
    std::int32_t rows_height = room - (with_top ? button : 0);
    const bool with_bottom = position + rows_height < total;
    rows_height = std::max(rows_height - (with_bottom ? button : 0), 1);
    const std::int32_t top = inner.top + (with_top ? button : 0);
    show_scroll_button(scroll_top_button, false, with_top);
    show_scroll_button(scroll_bottom_button, true, with_bottom);
    grid->move(inner.left, to_short(top));
    grid->resize(to_short(inner.right - inner.left + 1), to_short(rows_height), 0);
    grid->set_scroll_to_position(position);
    first_row = std::max<std::int16_t>(grid->first_visible, 0);
    while (first_row < grid->last_visible && !grid->is_row_visible(first_row)) {
        ++first_row;
    }
    last_row = grid->last_visible;
    while (last_row > first_row && !grid->is_row_visible(last_row)) {
        --last_row;
    }
}

void WM_FLOATING_MENU::show_scroll_button(WM_BUTTON*& button, bool bottom, bool shown) {
    if (!shown) {
        // It may be the one whose callback is running.
        if (button != nullptr) {
            button->hide(0, 0);
        }
        return;
    }
    if (button == nullptr) {
        button = new MENU_SCROLL_BUTTON(item_style, bottom ? SCROBJ_ARROW_DOWN : SCROBJ_ARROW_UP,
                                        scrolling_callback, this, bottom ? this : nullptr, window);
        add_object(button, 0);
    }
    const WM_REGION inner = get_contents_region();
    button->resize(to_short(inner.right - inner.left + 1), grid->row_height, 0);
    button->move(inner.left, bottom ? to_short(inner.bottom - grid->row_height + 1) : inner.top);
    if (!button->visible) {
        button->request_draw(0, 0);
    }
}

WM_MESG WM_FLOATING_MENU::scrolling_callback(WM_SCREEN_OBJECT* /*object*/, void* data1,
                                             void* data2) {
    static_cast<WM_FLOATING_MENU*>(data1)->scroll_rows(data2 != nullptr ? 1 : -1);
    return WM_MESG_NONE;
}

// The edge of a row at or next to a position.
std::int32_t WM_FLOATING_MENU::align_to_row(std::int32_t position, bool down) const {
    std::int32_t edge = 0;
    for (std::int16_t row = 0; row < grid->row_count; ++row) {
        const std::int32_t next = grid->rows[static_cast<std::size_t>(row)]->bottom;
        if (next > position) {
            return edge < position && down ? next : edge;
        }
        edge = next;
    }
    return edge;
}

void WM_FLOATING_MENU::scroll_rows(std::int32_t steps) {
    std::int32_t position = grid->get_scroll_position();
    for (; steps != 0; steps += steps > 0 ? -1 : 1) {
        // Not to a separator: the view would begin with a line.
        do {
            position =
                steps > 0 ? align_to_row(position + 1, true) : align_to_row(position - 1, false);
        } while (position > 0 && position < grid->get_rows_height() &&
                 is_separator(find_row_from(*grid, position)));
    }
    show_from(position);
}

void WM_FLOATING_MENU::auto_scroll_to_row(std::int16_t row, unsigned char centre) {
    std::int32_t top = 0, bottom = 0;
    if (!grid->get_row_y_pos(row, top, bottom) || grid->is_row_visible(row)) {
        return;
    }
    const WM_REGION inner = get_contents_region();
    // With both buttons there.
    const std::int32_t room = std::max(inner.bottom - inner.top + 1 - 2 * grid->row_height,
                                       std::int32_t{grid->row_height});
    std::int32_t position = top;
    if (centre) {
        position = align_to_row(std::max((top + bottom + 1 - room) / 2, 0), false);
    } else if (bottom >= grid->get_scroll_position() + grid->get_inner_height()) {
        position = align_to_row(std::max(bottom + 1 - room, 0), true);
    }
    // The first row needs no room for a button above it.
    show_from(row == 0 ? 0 : position);
}

std::int32_t WM_FLOATING_MENU::get_scroll_position() const {
    return grid->scroll.value.long_value;
}

void WM_FLOATING_MENU::set_scroll_position(std::int32_t position) {
    show_from(grid->scroll.max.long_value - position);
}

// --- Showing and linked popups ---

WM_FLOATING_MENU* WM_FLOATING_MENU::get_parent_popup() const {
    WM_SCREEN_OBJECT* before = owner_menu != nullptr ? owner_menu->owner_menu : nullptr;
    if (before == nullptr) {
        return nullptr;
    }
    return before->type_flags & WMF_FLOATING_MENU ? static_cast<WM_FLOATING_MENU*>(before)
                                                  : static_cast<WM_MENU*>(before)->popup.get();
}

void WM_FLOATING_MENU::reset() {
    typed_count = 0;
    was_visible = false;
    buttons_were_down = escape_was_down = false;
    reset_buttons();
    show_from(0);
}

void WM_FLOATING_MENU::reset_buttons() {
    const auto reset_button = [](WM_BUTTON* button) {
        if (button == nullptr) {
            return;
        }
        if (button->visible && (button->pressed || button->mouse_over_now)) {
            button->request_draw(0, 0);
        }
        button->pressed = button->pressed_inside = button->press_held = false;
        button->mouse_over_now = button->last_left = false;
    };
    for (std::int16_t row = 0; row < grid->row_count; ++row) {
        reset_button(get_button(row));
    }
    reset_button(scroll_top_button);
    reset_button(scroll_bottom_button);
}

bool WM_FLOATING_MENU::is_in_menu(std::int16_t px, std::int16_t py) {
    bool inside = is_in_me(px, py);
    for_sub_menus([&](WM_MENU& menu) {
        inside =
            inside || (menu.popup_open && menu.popup->visible && menu.popup->is_in_menu(px, py));
    });
    return inside;
}

bool WM_FLOATING_MENU::is_object_in_this_menu(WM_SCREEN_OBJECT* object) {
    return object != nullptr && (object == this || find_object(object));
}

void WM_FLOATING_MENU::close_linked_popup(unsigned char parents) {
    for_sub_menus([](WM_MENU& menu) { menu.start_closing_popup(); });
    WM_FLOATING_MENU* before = parents ? get_parent_popup() : nullptr;
    for (; before != nullptr; before = before->get_parent_popup()) {
        if (before->visible) {
            before->start_closing();
        }
    }
}

void WM_FLOATING_MENU::hide_linked_popup(unsigned char parents) {
    for_sub_menus([](WM_MENU& menu) {
        if (menu.popup_open) {
            menu.close_at_once();
        }
    });
    WM_FLOATING_MENU* before = parents ? get_parent_popup() : nullptr;
    for (; before != nullptr; before = before->get_parent_popup()) {
        before->WM_DIALOG::hide(0, 0);
        before->was_visible = false;
    }
}

void WM_FLOATING_MENU::hide_with_popup_children() {
    hide_linked_popup(0);
    WM_DIALOG::hide(0, 0);
}

void WM_FLOATING_MENU::hide(unsigned char modals, unsigned char children) {
    hide_linked_popup(0);
    was_visible = false;
    WM_DIALOG::hide(modals, children);
    // Its button looked pressed so far, and under another modal object its monitor isn't called.
    if (owner_menu != nullptr && owner_menu->visible) {
        owner_menu->request_draw(0, 0);
    }
}

void WM_FLOATING_MENU::start_closing() {
    // Left before its first monitor, it doesn't count as shown again there.
    was_visible = visible;
    WM_DIALOG::start_closing();
}
