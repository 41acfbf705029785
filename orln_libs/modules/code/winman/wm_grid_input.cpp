// Input, time and focus of WM_GRID.
#include "modules/winman/object_walk.h"
#include "modules/winman/window_info.h"
#include "modules/winman/window_manager.h"
#include "platform/keyboard.h"
#include "platform/mouse.h"
#include "wm_grid_tools.h"

using wm_grid::index_of;

namespace {

// Keeps hits within a rectangle for the length of a block.
class HIT_CLIP {
public:
    HIT_CLIP(signed char of_window, std::int32_t left, std::int32_t top, std::int32_t right,
             std::int32_t bottom)
        : window(of_window) {
        WM_REGION* region = find();
        if (region == nullptr) {
            return;
        }
        saved = *region;
        if (saved.is_set()) {
            left = std::max<std::int32_t>(left, saved.left);
            top = std::max<std::int32_t>(top, saved.top);
            right = std::min<std::int32_t>(right, saved.right);
            bottom = std::min<std::int32_t>(bottom, saved.bottom);
        }
        region->left = to_short(std::max(left, 0));  // below 0 would mean no clipping at all
        region->top = to_short(top);
        region->right = to_short(right);
        region->bottom = to_short(bottom);
    }
    ~HIT_CLIP() {
        if (WM_REGION* region = find()) {
            *region = saved;
        }
    }
    HIT_CLIP(const HIT_CLIP&) = delete;
    HIT_CLIP& operator=(const HIT_CLIP&) = delete;

private:
    // Input may have closed the window.
    WM_REGION* find() const {
        WM_WINDOW_MANAGER* manager = WM_WINDOW_MANAGER::get_instance();
        return manager != nullptr ? manager->get_is_in_me_region(window) : nullptr;
    }

    const signed char window;
    WM_REGION saved;
};

// The first object that may have the focus: this one, or one in it.
WM_SCREEN_OBJECT* find_focusable(WM_SCREEN_OBJECT* object) {
    if (object == nullptr || !object->visible) {
        return nullptr;
    }
    if (object->can_have_focus()) {
        return object;
    }
    OBJECT_WALK walk(object->objects, OBJECT_WALK::FORWARD);
    while (WM_SCREEN_OBJECT* child = walk.next()) {
        if (WM_SCREEN_OBJECT* found = find_focusable(child)) {
            return found;
        }
    }
    WM_SCREEN_OBJECT* found = nullptr;
    if (object->type_flags & WMF_GRID) {
        object->visit_cells(
            [](WM_SCREEN_OBJECT* cell, void* data) {
                auto& result = *static_cast<WM_SCREEN_OBJECT**>(data);
                result = find_focusable(cell);
                return result == nullptr;
            },
            &found);
    }
    return found;
}

}  // namespace

// --- Focus ---

bool WM_GRID::can_have_focus() {
    if (!get_allowed_focus() || !is_overflowing()) {
        return false;
    }
    bool in_cells = false;
    for_visible_rows([&](std::int16_t row) {
        for (std::int16_t column = 0; !in_cells && column < rows[index_of(row)]->columns;
             ++column) {
            in_cells = find_focusable_in_cell(column, row) != nullptr;
        }
        return !in_cells;
    });
    return !in_cells;
}

WM_SCREEN_OBJECT* WM_GRID::find_focusable_in_cell(std::int16_t column, std::int16_t row) const {
    return find_focusable(get_object(column, row));
}

// The ancestor that stands in this grid, perhaps the object itself.
WM_SCREEN_OBJECT* WM_GRID::get_cell_of(WM_SCREEN_OBJECT* object) const {
    while (object != nullptr && object->parent != this) {
        object = object->parent;
    }
    return object;
}

bool WM_GRID::find_focal_cell(std::int16_t& column, std::int16_t& row) const {
    const WM_WINDOW_INFO* info = get_window_info();
    WM_WINDOW_MANAGER* manager = WM_WINDOW_MANAGER::get_instance();
    if (info == nullptr || !manager->is_object_on_focal_window(this)) {
        return false;
    }
    return get_object_cell(get_cell_of(info->focal_object), column, row);
}

WM_SCREEN_OBJECT* WM_GRID::find_focal_child_object() const {
    std::int16_t column = 0, row = 0;
    return find_focal_cell(column, row) ? get_object(column, row) : nullptr;
}

bool WM_GRID::give_child_object_focus(std::int16_t column, std::int16_t row) {
    WM_SCREEN_OBJECT* target = find_focusable_in_cell(column, row);
    if (target == nullptr) {
        return false;
    }
    target->take_focus(1);
    set_scroll_to_row(row, 0);
    return find_focal_child_object() == get_object(column, row);
}

// The cell of that column, or else the first one that takes it.
bool WM_GRID::give_row_focus(std::int16_t row, std::int16_t column) {
    WM_SCREEN_OBJECT* target = find_focusable_in_cell(column, row);
    for (std::int16_t other = 0; target == nullptr && other < rows[index_of(row)]->columns;
         ++other) {
        target = find_focusable_in_cell(other, row);
    }
    if (target != nullptr) {
        target->take_focus(1);
    }
    return target != nullptr;
}

// The focus stays on a row that is in view: it goes to the nearest one that takes it.
void WM_GRID::keep_focus_in_view() {
    std::int16_t column = 0, row = 0;
    if (first_visible == -1 || !find_focal_cell(column, row) || is_row_in_view(row)) {
        return;
    }
    const bool forward = row < first_visible;
    std::int16_t candidate = forward ? first_visible : last_visible;
    while (candidate >= first_visible && candidate <= last_visible) {
        if (give_row_focus(candidate, column)) {
            // A row that is in view only in part stays so: the user has just scrolled there.
            shown_focal = get_window_info()->focal_object;
            return;
        }
        candidate = to_short(candidate + (forward ? 1 : -1));
    }
}

// The focus walk also goes to rows that are in view in part. Not under a held button, from which
// the row would run away.
void WM_GRID::show_focal_row() {
    const WM_WINDOW_INFO* info = get_window_info();
    if (info == nullptr || info->focal_object == shown_focal || MOUSE::buttons != 0) {
        return;
    }
    shown_focal = info->focal_object;
    std::int16_t column = 0, row = 0;
    if (find_focal_cell(column, row) && !is_row_visible(row)) {
        set_scroll_to_row(row, 0);
    }
}

// --- Keys ---

void WM_GRID::move_focus_by_keys() {
    KEYBOARD keyboard;
    const KEY_TYPE key = keyboard.peek_code();
    if (key != KEY_LEFT && key != KEY_RIGHT && key != KEY_UP && key != KEY_DOWN) {
        return;
    }
    std::int16_t column = 0, row = 0;
    if (!find_focal_cell(column, row) || !is_row_in_view(row)) {
        return;
    }
    const bool along_row = key == KEY_LEFT || key == KEY_RIGHT;
    const auto step = static_cast<std::int16_t>(key == KEY_RIGHT || key == KEY_DOWN ? 1 : -1);
    bool moved = false;
    if (along_row) {
        const std::int16_t columns = rows[index_of(row)]->columns;
        for (std::int16_t other = to_short(column + step); !moved && other >= 0 && other < columns;
             other = to_short(other + step)) {
            moved = give_child_object_focus(other, row);
        }
    } else {
        for (std::int16_t other = to_short(row + step); !moved && other >= 0 && other < row_count;
             other = to_short(other + step)) {
            moved = give_child_object_focus(column, other);
        }
    }
    if (moved) {
        keyboard.get_code();
    }
}

// What no cell has used.
void WM_GRID::scroll_by_keys() {
    if (!is_overflowing()) {
        return;
    }
    KEYBOARD keyboard;
    std::int32_t step = 0;
    switch (keyboard.peek_code()) {
        case KEY_UP:
            step = get_movement(SCROLLBAR_LINE_UP);
            break;
        case KEY_DOWN:
            step = get_movement(SCROLLBAR_LINE_DOWN);
            break;
        case KEY_PAGE_UP:
            step = get_movement(SCROLLBAR_PAGE_UP);
            break;
        case KEY_PAGE_DOWN:
            step = get_movement(SCROLLBAR_PAGE_DOWN);
            break;
        case KEY_HOME:
            step = get_scroll_position();
            break;
        case KEY_END:
            step = -scroll.value.long_value;
            break;
        default:
            return;
    }
    std::int16_t column = 0, row = 0;
    if ((has_focus() || find_focal_cell(column, row)) &&
        set_scroll_value(scroll.value.long_value + step)) {
        keyboard.get_code();
    }
}

// --- The wheel ---

// What has the wheel stands in a cell, and the pointer is still on it.
bool WM_GRID::is_wheel_taken_inside(WM_SCREEN_OBJECT* holder) const {
    if (holder == nullptr || holder == scrollbar.get() || get_cell_of(holder) == nullptr) {
        return false;
    }
    const bool is_bar_of_grid = (holder->type_flags & WMF_SCROLLBAR) != 0 &&
                                holder->parent != nullptr &&
                                (holder->parent->type_flags & WMF_GRID) != 0;
    WM_SCREEN_OBJECT* on = is_bar_of_grid ? holder->parent : holder;
    return on->is_in_me(MOUSE::x, MOUSE::y);
}

void WM_GRID::follow_pointer_with_wheel() {
    WM_WINDOW_MANAGER* manager = WM_WINDOW_MANAGER::get_instance();
    if (manager == nullptr || scrollbar == nullptr) {
        return;
    }
    WM_SCREEN_OBJECT* holder = manager->get_mouse_wheel_focus(window);
    if (is_in_me(MOUSE::x, MOUSE::y)) {
        if (holder != scrollbar.get() && !is_wheel_taken_inside(holder)) {
            manager->set_mouse_wheel_focus(window, scrollbar.get());
            MOUSE::wheel_pos = 0;
        }
    } else if (holder == scrollbar.get()) {
        manager->set_mouse_wheel_focus(window, nullptr);
    }
}

// --- The passes ---

WM_MESG WM_GRID::monitor_row(std::int16_t row) {
    for (std::int16_t column = rows[index_of(row)]->columns; column-- > 0;) {
        // The rows may be others after a callback.
        WM_SCREEN_OBJECT* object = get_object(column, row);
        if (object == nullptr) {
            continue;
        }
        const WM_MESG result = object->monitor();
        if (result == WM_MESG_REMOVE_OBJECT) {
            remove_object(object, 1, 1);
        } else if (result != WM_MESG_NONE) {
            return result;
        }
    }
    return WM_MESG_NONE;
}

// From the last to the first, as children are. Cells react only where they are in view.
WM_MESG WM_GRID::monitor_cells() {
    const VIEW view = get_view();
    const std::int32_t right = view.right - get_bar_width();
    if (has_fixed_row() && row_count > 0) {
        const HIT_CLIP clip(window, view.left, view.top, right, view.bottom);
        const WM_MESG result = monitor_row(0);
        if (result != WM_MESG_NONE) {
            return result;
        }
    }
    const HIT_CLIP clip(window, view.left, view.top + get_fixed_height(), right, view.bottom);
    for (std::int16_t row = last_visible; row >= first_visible && row >= 0; --row) {
        const WM_MESG result = row < row_count ? monitor_row(row) : WM_MESG_NONE;
        if (result != WM_MESG_NONE) {
            return result;
        }
    }
    return WM_MESG_NONE;
}

WM_MESG WM_GRID::monitor() {
    if (visible) {
        check_scrolling();
        show_focal_row();
        follow_pointer_with_wheel();
        if (keyboard_navigation) {
            move_focus_by_keys();
        }
    }
    WM_MESG result = WM_SCREEN_OBJECT::monitor();
    const WM_WINDOW_INFO* info = get_window_info();
    const bool under_modal =
        info != nullptr && info->monitor_modals && get_active_modal_object_count(-1) > 0;
    if (result != WM_MESG_NONE || !visible || under_modal) {
        return result;
    }
    if (scrollbar != nullptr) {
        result = scrollbar->monitor();
        check_scrolling();
    }
    if (result == WM_MESG_NONE) {
        result = monitor_cells();
    }
    if (result == WM_MESG_NONE) {
        scroll_by_keys();
    }
    return result;
}

WM_MESG WM_GRID::update_row(std::int16_t row) {
    WM_MESG result = WM_MESG_NONE;
    for (std::int16_t column = 0;
         result == WM_MESG_NONE && row < row_count && column < rows[index_of(row)]->columns;
         ++column) {
        if (WM_SCREEN_OBJECT* object = get_object(column, row)) {
            result = object->update(0);
        }
    }
    return result;
}

WM_MESG WM_GRID::update(unsigned char modal_pass) {
    WM_MESG result = WM_SCREEN_OBJECT::update(modal_pass);
    if (modal_pass || !visible) {
        return result;
    }
    if (result == WM_MESG_NONE && scrollbar != nullptr) {
        result = scrollbar->update(0);
    }
    if (result == WM_MESG_NONE) {
        for_visible_rows([&](std::int16_t row) {
            result = update_row(row);
            return result == WM_MESG_NONE;
        });
    }
    check_scrolling();
    return result;
}

WM_SCREEN_OBJECT* WM_GRID::find_object_at_pos(std::int16_t px, std::int16_t py) {
    WM_SCREEN_OBJECT* found = WM_SCREEN_OBJECT::find_object_at_pos(px, py);
    if (found != this) {
        return found;
    }
    if (scrollbar != nullptr && scrollbar->is_in_me(px, py)) {
        return scrollbar.get();
    }
    const VIEW view = get_view();
    const auto look_into = [&](std::int16_t row, std::int32_t top) {
        const HIT_CLIP clip(window, view.left, top, view.right - get_bar_width(), view.bottom);
        for (std::int16_t column = 0; found == this && column < rows[index_of(row)]->columns;
             ++column) {
            WM_SCREEN_OBJECT* object = get_object(column, row);
            WM_SCREEN_OBJECT* inner =
                object != nullptr && object->visible ? object->find_object_at_pos(px, py) : nullptr;
            found = inner != nullptr ? inner : found;
        }
        return found == this;
    };
    const std::int32_t fixed = get_fixed_height();
    for_visible_rows([&](std::int16_t row) {
        return look_into(row, row == 0 && fixed > 0 ? view.top : view.top + fixed);
    });
    return found;
}
