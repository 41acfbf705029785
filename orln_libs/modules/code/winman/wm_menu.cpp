#include "modules/winman/wm_menu.h"

#include <algorithm>

#include "../gui/to_short.h"
#include "modules/winman/object_walk.h"
#include "modules/winman/page_manager.h"
#include "modules/winman/style_set.h"
#include "modules/winman/window_info.h"
#include "modules/winman/wm_grid.h"
#include "platform/mouse.h"

std::int32_t WM_MENU::menu_mode = MODE_BY_TYPE;
EFFECT_INFO WM_MENU::default_menu_effect_info = {0, 0, 0, 224};

namespace {

// A popup that fits on neither side of its button stays beside it with at least so many rows.
constexpr std::int32_t LEAST_ROWS_BESIDE = 4;

bool is_upright(MENU_TYPE type) {
    return type == MENU_BELOW || type == MENU_ABOVE;
}

MENU_TYPE get_opposite(MENU_TYPE type) {
    switch (type) {
        case MENU_BELOW:
            return MENU_ABOVE;
        case MENU_ABOVE:
            return MENU_BELOW;
        case MENU_LEFT:
            return MENU_RIGHT;
        default:
            return MENU_LEFT;
    }
}

}  // namespace

WM_MENU::WM_MENU(std::int16_t x1, std::int16_t y1, std::int16_t x2, std::int16_t y2,
                 const char* title_text, MENU_TYPE type, const WM_STYLE_SET& button,
                 const WM_STYLE_SET& popup_style, const WM_STYLE_SET& popup_title,
                 const WM_STYLE_SET& item, const WM_STYLE_SET& alternate,
                 const WM_STYLE_SET& separator, unsigned char alternate_rows,
                 const EFFECT_INFO* effect, signed char window_, const char* popup_title_text,
                 const char* hint_text, const WM_STYLE_SET* child_item,
                 const WM_STYLE_SET* child_alternate, const WM_STYLE_SET* child_menu)
    : WM_BUTTON(x1, y1, x2, y2, button, title_text, hint_text, menu_callback, this, nullptr,
                BUTTON_EVENT_PRESS, window_, 1, 0),
      popup(std::make_unique<WM_FLOATING_MENU>(
          x1, y1, popup_title_text, popup_style, popup_title, item, alternate, separator,
          alternate_rows, static_cast<unsigned char>(1), child_item, child_alternate,
          effect != nullptr ? effect : &default_menu_effect_info, child_menu, window_,
          static_cast<unsigned char>(0))),
      menu_type(type) {
    type_flags |= WMF_MENU;
    if (menu_mode == MODE_PUSH) {
        button_type = BUTTON_TYPE_PUSH;
    } else if (menu_mode == MODE_HOVER_FIRE) {
        button_type = BUTTON_TYPE_HOVER_FIRE;
    }
    popup->owner_menu = this;
    popup->hide(0, 0);
    if (is_upright(type)) {
        popup->min_width = width;
    }
}

WM_MENU::~WM_MENU() {
    remove_from_group();
    forget_popup();
}

// --- Opening and closing ---

WM_MESG WM_MENU::menu_callback(WM_SCREEN_OBJECT* /*object*/, void* data1, void* /*data2*/) {
    auto& menu = *static_cast<WM_MENU*>(data1);
    if (menu.popup_open && menu.popup->visible) {
        menu.start_closing_popup();
    } else {
        menu.open();
    }
    return WM_MESG_NONE;
}

void WM_MENU::open() {
    if (popup_open) {
        close_at_once();  // with its sub-menus, whose items the popup may be about to move
    }
    if (open_callback != nullptr) {
        open_callback(this, open_data1, open_data2);
    }
    add_modal_object(popup.get(), 0);
    popup->reset();
    popup->WM_DIALOG::clear();
    popup->request_draw(0, 0);
    position_popup();
    // Its own requests count only once the button is on the back buffer, which in a popup that was
    // opened in this tick isn't so yet.
    mark_redraw_subarea(popup->x, popup->y, to_short(popup->x + popup->width - 1),
                        to_short(popup->y + popup->height - 1), REDRAW_GAP);
    popup_open = true;
    opened_x = MOUSE::x;
    opened_y = MOUSE::y;
    request_draw(0, 0);
}

void WM_MENU::start_closing_popup() {
    if (popup_open && popup->visible) {
        popup->close_linked_popup(0);
        popup->start_closing();
    }
    pressed = pressed_inside = false;
}

void WM_MENU::close_at_once() {
    popup->hide_with_popup_children();
    forget_popup();
}

void WM_MENU::forget_popup() {
    if (!popup_open) {
        return;
    }
    popup_open = false;
    const WM_WINDOW_INFO* info = get_window_info();
    if (info != nullptr && contains_object(info->modal_screen_objects, popup.get())) {
        remove_modal_object(popup.get(), 0, 0);
    }
    // Its monitor, which would see the pointer leave, wasn't called while the popup was open.
    pressed = pressed_inside = mouse_over_now = false;
    if (visible) {
        request_draw(0, 0);
    }
}

// --- The popup's place ---

// A chain of sub-menus goes on to one side.
void WM_MENU::keep_direction() {
    WM_SCREEN_OBJECT* before = owner_menu;
    if (before == nullptr || is_upright(menu_type)) {
        return;
    }
    const WM_FLOATING_MENU* in = popup->get_parent_popup();
    // The menu whose popup this button is in stands on the side that the chain comes from.
    if (in == nullptr || before == in) {
        return;
    }
    if (menu_type == MENU_RIGHT && before->x > x) {
        menu_type = MENU_LEFT;
    } else if (menu_type == MENU_LEFT && before->x + before->width < x) {
        menu_type = MENU_RIGHT;
    }
}

// The side, and the height that it leaves to the popup.
void WM_MENU::choose_side() {
    std::int16_t x1 = 0, y1 = 0, x2 = 0, y2 = 0;
    WM_PAGE_MANAGER* pages = get_page_manager();
    if (pages == nullptr) {
        return;
    }
    pages->get_popup_area(x1, y1, x2, y2);
    const auto get_room = [&](MENU_TYPE type) {
        switch (type) {
            case MENU_BELOW:
                return y2 - (y + height + y_offset) + 1;
            case MENU_ABOVE:
                return y - y_offset - y1;
            case MENU_LEFT:
                return x - x_offset - x1;
            default:
                return x2 - (x + width + x_offset) + 1;
        }
    };
    const std::int32_t needed = is_upright(menu_type) ? popup->height : popup->width;
    const MENU_TYPE other = get_opposite(menu_type);
    if (needed <= get_room(menu_type)) {
        return;
    }
    if (needed <= get_room(other)) {
        menu_type = other;
        return;
    }
    if (!is_upright(menu_type)) {
        return;
    }
    const MENU_TYPE larger = get_room(menu_type) >= get_room(other) ? menu_type : other;
    const std::int32_t least =
        popup->get_title_height() + LEAST_ROWS_BESIDE * popup->grid->row_height;
    if (get_room(larger) >= least) {
        menu_type = larger;
        popup->max_height = to_short(get_room(larger));
        popup->calc_new_size();
    }
}

void WM_MENU::place_popup() {
    std::int32_t px = x, py = y;
    switch (menu_type) {
        case MENU_BELOW:
            py = y + height + y_offset;
            break;
        case MENU_ABOVE:
            py = y - popup->height - y_offset;
            break;
        case MENU_LEFT:
            px = x - popup->width - x_offset;
            break;
        default:
            px = x + width + x_offset;
            break;
    }
    std::int16_t x1 = 0, y1 = 0, x2 = 0, y2 = 0;
    if (WM_PAGE_MANAGER* pages = get_page_manager()) {
        pages->get_popup_area(x1, y1, x2, y2);
        px = std::max<std::int32_t>(std::min(px, x2 + 1 - popup->width), x1);
        py = std::max<std::int32_t>(std::min(py, y2 + 1 - popup->height), y1);
    }
    popup->move(to_short(px), to_short(py));
}

void WM_MENU::position_popup() {
    keep_direction();
    popup->max_height = 0;
    popup->calc_new_size();
    choose_side();
    place_popup();
    set_arrow();
}

void WM_MENU::set_arrow() {
    constexpr std::uint32_t UPRIGHT = BUTTON_UP_ARROW | BUTTON_DOWN_ARROW;
    constexpr std::uint32_t SIDEWAYS = BUTTON_LEFT_ARROW | BUTTON_RIGHT_ARROW;
    const std::uint32_t axis = is_upright(menu_type) ? UPRIGHT : SIDEWAYS;
    if ((button_flags & axis) == 0) {
        return;
    }
    constexpr BUTTON_FLAG ARROWS[] = {BUTTON_DOWN_ARROW, BUTTON_UP_ARROW, BUTTON_LEFT_ARROW,
                                      BUTTON_RIGHT_ARROW};
    button_flags = (button_flags & ~axis) | ARROWS[menu_type];
}

// --- Groups ---

void WM_MENU::add_to_group(WM_MENU* other) {
    if (other == nullptr || other == this) {
        return;
    }
    remove_from_group();
    if (other->group_next == nullptr) {
        other->group_next = other->group_prev = other;
    }
    group_prev = other;
    group_next = other->group_next;
    group_next->group_prev = this;
    other->group_next = this;
}

void WM_MENU::remove_from_group() {
    if (group_next == nullptr) {
        return;
    }
    group_next->group_prev = group_prev;
    group_prev->group_next = group_next;
    // One alone is no group.
    if (group_next->group_next == group_next) {
        group_next->group_next = group_next->group_prev = nullptr;
    }
    group_next = group_prev = nullptr;
}

WM_MENU* WM_MENU::find_group_member_at_pos(std::int16_t px, std::int16_t py) {
    WM_MENU* member = group_next != nullptr ? this : nullptr;
    while (member != nullptr && !member->is_in_it(px, py)) {
        member = member->group_next != this ? member->group_next : nullptr;
    }
    return member;
}

// --- The passes ---

WM_MESG WM_MENU::monitor() {
    if (popup_open && !popup->visible) {
        forget_popup();
    }
    return WM_BUTTON::monitor();
}

WM_MESG WM_MENU::update(unsigned char modal_pass) {
    const WM_MESG result = WM_BUTTON::update(modal_pass);
    if (!modal_pass && popup_open && popup->visible && !popup->is_animating()) {
        close_behind_pointer();
    }
    return result;
}

// The popup takes all input, so it is from here that the pointer is seen on another menu.
void WM_MENU::close_behind_pointer() {
    const std::int16_t px = MOUSE::x, py = MOUSE::y;
    // Opened by a key, it stays while the pointer rests.
    const bool moved = px != opened_x || py != opened_y;
    if (!moved || is_in_it(px, py) || popup->is_in_menu(px, py)) {
        return;
    }
    WM_MENU* member = find_group_member_at_pos(px, py);
    if (member != nullptr && member->enabled && member->visible) {
        close_at_once();
        member->open();
        return;
    }
    WM_FLOATING_MENU* in = popup->get_parent_popup();
    if (in != nullptr && in->is_in_me(px, py)) {
        start_closing_popup();
    }
}

void WM_MENU::hide(unsigned char modals, unsigned char children) {
    if (popup_open) {
        close_at_once();
    }
    WM_BUTTON::hide(modals, children);
}

bool WM_MENU::find_object(WM_SCREEN_OBJECT* object) {
    return WM_BUTTON::find_object(object) || object == popup.get() || popup->find_object(object);
}

void WM_MENU::move(std::int16_t new_x, std::int16_t new_y) {
    const bool moves = new_x != x || new_y != y;
    WM_BUTTON::move(new_x, new_y);
    if (moves && popup_open && popup->visible) {
        position_popup();
    }
}

void WM_MENU::resize(std::int16_t new_width, std::int16_t new_height, unsigned char children) {
    WM_BUTTON::resize(new_width, new_height, children);
    if (is_upright(menu_type)) {
        popup->min_width = width;
    }
    if (popup_open && popup->visible) {
        position_popup();
    }
}

// The popup gets its area when it is shown.
void WM_MENU::set_area(std::int16_t new_area) {
    WM_BUTTON::set_area(new_area);
    if (!popup_open) {
        popup->set_area(new_area);
    }
}

void WM_MENU::draw_object() {
    const bool was_pressed = pressed;
    pressed = pressed || (popup_open && popup->visible);
    WM_BUTTON::draw_object();
    pressed = was_pressed;
}
