// Life, tree, input, time and focus of screen objects. Drawing is in screen_object_redraw.cpp.
#include "modules/winman/screen_object.h"

#include <utility>

#include "modules/winman/object_walk.h"
#include "modules/winman/page_manager.h"
#include "modules/winman/window_info.h"
#include "modules/winman/window_manager.h"
#include "platform/keyboard.h"
#include "platform/mouse.h"
#include "platform/process_tools.h"

std::uint32_t WM_SCREEN_OBJECT::now_ms = 0;
std::uint32_t (*WM_SCREEN_OBJECT::millisecond_clock)() = get_ms_count;
std::uint16_t WM_SCREEN_OBJECT::flashing_flags = 0;
std::int16_t WM_SCREEN_OBJECT::hint_delay_time = 500;
std::int16_t WM_SCREEN_OBJECT::object_effects_delay = 200;
COLOUR WM_SCREEN_OBJECT::outline_colour, WM_SCREEN_OBJECT::border_colour;

namespace {

// The area of a modal object that belongs to an object of area `area`.
std::int16_t get_modal_area(std::int16_t area) {
    return area >= 0 ? static_cast<std::int16_t>(-2 - area) : area;
}

// Takes the last object out of the list; null if it is empty.
WM_SCREEN_OBJECT* take_last(PTRLLIST& list) {
    if (list.get_tail() == nullptr) {
        return nullptr;
    }
    list.set_cursor(list.get_tail());
    auto* object = static_cast<WM_SCREEN_OBJECT*>(list.get_info_dec());
    list.remove_node(object);
    return object;
}

// Deletes a child that was taken out, or hides it if it isn't owned. A button is `not_owned` while
// it is dragged, which hiding ends.
void dispose_of_child(WM_SCREEN_OBJECT* child) {
    if (child->not_owned) {
        child->hide(0, 0);
        child->parent = nullptr;
    }
    if (!child->not_owned) {
        delete child;
    }
}

// The same of a modal object. A button that was dragged stays its parent's child.
void dispose_of_modal(WM_SCREEN_OBJECT* modal) {
    if (!modal->not_owned) {
        delete modal;
        return;
    }
    modal->hide(0, 0);
    if (modal->parent != nullptr && !contains_object(modal->parent->objects, modal)) {
        modal->parent = nullptr;
    }
}

// Sets the clock and the blink phases in the outermost update.
class UPDATE_TIMING {
public:
    UPDATE_TIMING() : outermost(!std::exchange(update_timing, true)) {
        if (outermost) {
            WM_SCREEN_OBJECT::update_now_ms();
            WM_SCREEN_OBJECT::flashing_flags =
                WM_SCREEN_OBJECT::compute_flashing_flags(WM_SCREEN_OBJECT::now_ms);
        }
    }
    ~UPDATE_TIMING() {
        if (outermost) {
            update_timing = false;
        }
    }
    UPDATE_TIMING(const UPDATE_TIMING&) = delete;
    UPDATE_TIMING& operator=(const UPDATE_TIMING&) = delete;

private:
    static inline bool update_timing = false;
    const bool outermost;
};

}  // namespace

WM_SCREEN_OBJECT::WM_SCREEN_OBJECT(unsigned char visible_, WM_CALLBACK callback_, void* data1,
                                   void* data2, signed char window_)
    : window(window_ == -1 ? static_cast<signed char>(0) : window_),
      visible(visible_ != 0),
      draw_requested(visible_ != 0),
      callback(callback_),
      callback_data1(data1),
      callback_data2(data2) {
}

WM_SCREEN_OBJECT::~WM_SCREEN_OBJECT() {
    if (WM_WINDOW_INFO* info = get_window_info()) {
        info->forget_object(this);
    }
    WM_SCREEN_OBJECT::clear_objects(0, 1);
}

WM_WINDOW_INFO* WM_SCREEN_OBJECT::get_window_info() const {
    WM_WINDOW_MANAGER* manager = WM_WINDOW_MANAGER::get_instance();
    return manager != nullptr ? manager->get_window_info(window) : nullptr;
}

WM_PAGE_MANAGER* WM_SCREEN_OBJECT::get_page_manager() {
    if (window == -1) {
        window = 0;
    }
    WM_WINDOW_MANAGER* manager = WM_WINDOW_MANAGER::get_instance();
    return manager != nullptr ? manager->get_page_manager(window) : nullptr;
}

// --- The tree ---

void WM_SCREEN_OBJECT::add_object(WM_SCREEN_OBJECT* object, unsigned char relative) {
    if (object != nullptr && object != this) {
        take_in(*object, objects, area, relative != 0);
    }
}

void WM_SCREEN_OBJECT::take_in(WM_SCREEN_OBJECT& object, PTRLLIST& list, std::int16_t object_area,
                               bool relative) {
    if (relative) {
        object.move(static_cast<std::int16_t>(object.get_x() + get_x()),
                    static_cast<std::int16_t>(object.get_y() + get_y()));
    }
    object.set_area(object_area);
    append_object(list, &object);
    if (object.visible && drawn) {
        const WM_REGION region = object.get_region();
        mark_redraw_subarea(region.left, region.top, region.right, region.bottom, REDRAW_GAP);
    }
    object.parent = this;
}

void WM_SCREEN_OBJECT::remove_object(WM_SCREEN_OBJECT* object, unsigned char delete_it,
                                     unsigned char make_relative) {
    if (object == nullptr || !contains_object(objects, object)) {
        return;
    }
    object->hide(0, 0);
    objects.remove_node(object);
    if (delete_it && !object->not_owned) {
        delete object;
        return;
    }
    release_removed(*object, make_relative != 0);
}

// Gives an object that was taken out to the caller.
void WM_SCREEN_OBJECT::release_removed(WM_SCREEN_OBJECT& object, bool make_relative) {
    object.set_area(area < -1 ? static_cast<std::int16_t>(-2 - area) : std::int16_t{0});
    object.parent = nullptr;
    if (make_relative) {
        object.move(static_cast<std::int16_t>(object.get_x() - get_x()),
                    static_cast<std::int16_t>(object.get_y() - get_y()));
    }
}

void WM_SCREEN_OBJECT::add_modal_object(WM_SCREEN_OBJECT* object, unsigned char relative) {
    WM_WINDOW_INFO* info = get_window_info();
    if (info != nullptr && object != nullptr && object != this) {
        take_in(*object, info->modal_screen_objects, get_modal_area(area), relative != 0);
    }
}

void WM_SCREEN_OBJECT::remove_modal_object(WM_SCREEN_OBJECT* object, unsigned char delete_it,
                                           unsigned char make_relative) {
    WM_WINDOW_INFO* info = get_window_info();
    if (info == nullptr || object == nullptr ||
        !contains_object(info->modal_screen_objects, object)) {
        return;
    }
    mark_own_rectangle();
    info->modal_screen_objects.remove_node(object);
    if (delete_it && !object->not_owned) {
        delete object;
        return;
    }
    if (object->visible) {
        object->mark_own_rectangle();
    }
    release_removed(*object, make_relative != 0);
}

void WM_SCREEN_OBJECT::clear_modals(WM_WINDOW_INFO& info, bool all_modals) {
    PTRLLIST& modals = info.modal_screen_objects;
    if (all_modals) {
        while (WM_SCREEN_OBJECT* object = take_last(modals)) {
            dispose_of_modal(object);
        }
        return;
    }
    OBJECT_WALK walk(modals, OBJECT_WALK::BACKWARD);
    while (WM_SCREEN_OBJECT* object = walk.next()) {
        if (object->hide_on_screen_refresh()) {
            object->hide(0, 0);
            modals.remove_node(object);
            object->parent = nullptr;
        }
    }
}

void WM_SCREEN_OBJECT::clear_objects(unsigned char all_modals, unsigned char children) {
    WM_WINDOW_INFO* info = get_window_info();
    if (info != nullptr && info->modal_screen_objects.get_count() != 0) {
        clear_modals(*info, all_modals != 0);
    }
    while (WM_SCREEN_OBJECT* object = children ? take_last(objects) : nullptr) {
        if (info != nullptr) {
            info->modal_screen_objects.remove_node(object);
        }
        dispose_of_child(object);
    }
    if (visible) {
        mark_own_rectangle();
    }
}

bool WM_SCREEN_OBJECT::find_object(WM_SCREEN_OBJECT* object) {
    OBJECT_WALK walk(objects, OBJECT_WALK::FORWARD);
    while (WM_SCREEN_OBJECT* child = walk.next()) {
        if (child == object || child->find_object(object)) {
            return true;
        }
    }
    return false;
}

void WM_SCREEN_OBJECT::set_area(std::int16_t new_area) {
    area = new_area;
    OBJECT_WALK walk(objects, OBJECT_WALK::FORWARD);
    while (WM_SCREEN_OBJECT* child = walk.next()) {
        child->set_area(new_area);
    }
}

bool WM_SCREEN_OBJECT::get_visible(unsigned char with_parents) const {
    if (!visible) {
        return false;
    }
    for (const WM_SCREEN_OBJECT* up = parent; with_parents && up != nullptr; up = up->parent) {
        if (!up->visible) {
            return false;
        }
    }
    return true;
}

// --- Modal objects ---

std::int32_t WM_SCREEN_OBJECT::get_modal_object_count() const {
    const WM_WINDOW_INFO* info = get_window_info();
    return info != nullptr ? info->modal_screen_objects.get_count() : 0;
}

std::int32_t WM_SCREEN_OBJECT::get_active_modal_object_count(std::int16_t in_area) const {
    const WM_WINDOW_INFO* info = get_window_info();
    if (info == nullptr) {
        return 0;
    }
    std::int32_t count = 0;
    OBJECT_WALK walk(info->modal_screen_objects, OBJECT_WALK::FORWARD);
    while (const WM_SCREEN_OBJECT* object = walk.next()) {
        const bool counts = in_area == -1 || object->area < 0 || object->area == in_area;
        count += object->visible && counts ? 1 : 0;
    }
    return count;
}

std::int16_t WM_SCREEN_OBJECT::get_active_modal_object_area() const {
    if (const WM_WINDOW_INFO* info = get_window_info()) {
        OBJECT_WALK walk(info->modal_screen_objects, OBJECT_WALK::BACKWARD);
        while (const WM_SCREEN_OBJECT* object = walk.next()) {
            if (object->visible && object->area != -1) {
                return object->area;
            }
        }
    }
    return -1;
}

bool WM_SCREEN_OBJECT::is_modal_object() const {
    const WM_WINDOW_INFO* info = get_window_info();
    return info != nullptr && contains_object(info->modal_screen_objects, this);
}

// --- Input ---

WM_MESG WM_SCREEN_OBJECT::monitor_modals(WM_WINDOW_INFO& info, bool& taken) {
    WM_SCREEN_OBJECT* modal = nullptr;
    {
        OBJECT_WALK walk(info.modal_screen_objects, OBJECT_WALK::BACKWARD);
        do {
            modal = walk.next();
        } while (modal != nullptr && !modal->visible);
    }
    taken = modal != nullptr;
    if (!taken) {
        return WM_MESG_NONE;
    }
    if (modal->area >= 0) {
        modal->set_area(get_modal_area(area));
    }
    modal->close_requested = false;
    info.monitor_modals = false;
    if (modal->hide_on_screen_refresh()) {
        // A hint only passes the input on: the focus stays, unless it has been hidden.
        info.focal_object_monitored =
            info.focal_object == nullptr || info.focal_object->get_visible(1);
    }
    const WM_MESG result = modal->monitor();
    WM_WINDOW_INFO* after = get_window_info();
    if (after == nullptr) {
        return result;
    }
    after->monitor_modals = true;
    // The callback may have removed it already.
    const bool still_there = contains_object(after->modal_screen_objects, modal);
    if (result == WM_MESG_REMOVE_MODAL || (still_there && modal->close_requested)) {
        remove_modal_object(modal, 1, 0);
        return WM_MESG_NONE;
    }
    return result;
}

WM_MESG WM_SCREEN_OBJECT::monitor() {
    WM_WINDOW_INFO* info = get_window_info();
    if (visible && has_focus()) {  // a hidden one is to lose it
        info->focal_object_monitored = true;
        last_focus_time = now_ms;
    }
    if (info != nullptr && info->monitor_modals && info->modal_screen_objects.get_count() != 0) {
        bool taken = false;
        const WM_MESG result = monitor_modals(*info, taken);
        if (taken) {
            return result;
        }
    }
    if (!visible) {
        return WM_MESG_NONE;
    }
    {
        OBJECT_WALK walk(objects, OBJECT_WALK::BACKWARD);
        while (WM_SCREEN_OBJECT* child = walk.next()) {
            const WM_MESG result = child->monitor();
            if (result == WM_MESG_REMOVE_OBJECT) {
                remove_object(child, 1, 1);
            } else if (result != WM_MESG_NONE) {
                return result;
            }
        }
    }
    info = get_window_info();
    return right_callback != nullptr && info != nullptr ? monitor_right_button(*info)
                                                        : WM_MESG_NONE;
}

WM_MESG WM_SCREEN_OBJECT::monitor_right_button(WM_WINDOW_INFO& info) {
    const KEYBOARD keyboard;
    std::int16_t px = MOUSE::x, py = MOUSE::y;
    bool down = MOUSE::is_down(MOUSE_BUTTON_RIGHT);
    const bool return_down = keyboard.get_key_value(KEY_RETURN) != 0;
    // Control and Return are the keyboard's right click.
    if (has_focus() && keyboard.get_key_value(KEY_CONTROL) && (return_down || return_was_down)) {
        down = return_down;
        px = static_cast<std::int16_t>(get_x() + get_width() / 2);
        py = static_cast<std::int16_t>(get_y() + get_height() / 2);
    }
    return_was_down = return_down;
    if (down && info.right_mouse_object == nullptr && is_in_it(px, py)) {
        info.right_mouse_object = this;
        take_focus(1);
        if (right_mode == RIGHT_ON_PRESS || right_mode == RIGHT_ON_BOTH) {
            return right_callback(this, right_data1, right_data2);
        }
    } else if (!down && info.right_mouse_object == this) {
        info.right_mouse_object = nullptr;
        if (is_in_it(px, py) && (right_mode == RIGHT_ON_RELEASE || right_mode == RIGHT_ON_BOTH)) {
            return right_callback(this, right_data1, right_data2);
        }
    }
    return WM_MESG_NONE;
}

// --- Time ---

void WM_SCREEN_OBJECT::update_now_ms() {
    now_ms = millisecond_clock();
}

std::uint16_t WM_SCREEN_OBJECT::compute_flashing_flags(std::uint32_t ms) {
    // Half periods of the square waves. A pulse of the same pair comes once in two of them and
    // lasts a tenth of that.
    constexpr std::uint32_t HALF_PERIODS[] = {50, 125, 250, 500, 1000, 2000, 4000, 8000};
    std::uint32_t flags = 0;
    std::uint32_t bit = 1;
    for (const std::uint32_t half : HALF_PERIODS) {
        flags |= (ms / half) % 2 == 0 ? bit : 0;
        flags |= ms / (half / 5) == ms / (half * 2) * 10 ? bit << 1 : 0;
        bit <<= 2;
    }
    return static_cast<std::uint16_t>(flags);
}

WM_MESG WM_SCREEN_OBJECT::update_modals() {
    WM_WINDOW_INFO* info = get_window_info();
    if (info == nullptr) {
        return WM_MESG_NONE;
    }
    OBJECT_WALK walk(info->modal_screen_objects, OBJECT_WALK::FORWARD);
    while (WM_SCREEN_OBJECT* modal = walk.next()) {
        const WM_MESG result = modal->update(0);
        const bool still_there = contains_object(info->modal_screen_objects, modal);
        if (result == WM_MESG_REMOVE_MODAL || (still_there && modal->close_requested)) {
            remove_modal_object(modal, 1, 0);
        } else if (result != WM_MESG_NONE) {
            return result;
        }
    }
    return WM_MESG_NONE;
}

WM_MESG WM_SCREEN_OBJECT::update(unsigned char modal_pass) {
    const UPDATE_TIMING timing;
    if (modal_pass) {
        return update_modals();
    }
    if (!visible) {
        return WM_MESG_NONE;
    }
    OBJECT_WALK walk(objects, OBJECT_WALK::FORWARD);
    while (WM_SCREEN_OBJECT* child = walk.next()) {
        const WM_MESG result = child->update(0);
        if (result != WM_MESG_NONE) {
            return result;
        }
    }
    return WM_MESG_NONE;
}

// --- Hit testing ---

bool WM_SCREEN_OBJECT::is_in_me(std::int16_t px, std::int16_t py) {
    WM_WINDOW_MANAGER* manager = WM_WINDOW_MANAGER::get_instance();
    if (!visible || manager == nullptr || !manager->is_object_on_focal_window(this)) {
        return false;
    }
    const WM_REGION* clip = manager->get_is_in_me_region(window);
    if (clip != nullptr && clip->is_set() && !clip->contains(px, py)) {
        return false;
    }
    const std::int32_t left = get_x(), top = get_y();
    return px >= left && px < left + get_width() && py >= top && py < top + get_height();
}

bool WM_SCREEN_OBJECT::is_in_child(std::int16_t px, std::int16_t py) {
    OBJECT_WALK walk(objects, OBJECT_WALK::FORWARD);
    while (WM_SCREEN_OBJECT* child = walk.next()) {
        if (child->visible && child->is_in_it(px, py)) {
            return true;
        }
    }
    return false;
}

bool WM_SCREEN_OBJECT::is_in_it(std::int16_t px, std::int16_t py) {
    return visible && (is_in_me(px, py) || is_in_child(px, py));
}

WM_SCREEN_OBJECT* WM_SCREEN_OBJECT::find_object_at_pos(std::int16_t px, std::int16_t py) {
    if (!visible || !is_in_it(px, py)) {
        return nullptr;
    }
    WM_SCREEN_OBJECT* found = this;
    OBJECT_WALK walk(objects, OBJECT_WALK::FORWARD);
    while (WM_SCREEN_OBJECT* child = walk.next()) {
        WM_SCREEN_OBJECT* inner = child->visible ? child->find_object_at_pos(px, py) : nullptr;
        found = inner != nullptr ? inner : found;
    }
    return found;
}

// --- Focus ---

bool WM_SCREEN_OBJECT::get_allowed_focus() const {
    WM_WINDOW_MANAGER* manager = WM_WINDOW_MANAGER::get_instance();
    return allowed_focus && manager != nullptr && manager->is_object_on_focal_window(this);
}

bool WM_SCREEN_OBJECT::has_focus() const {
    WM_WINDOW_MANAGER* manager = WM_WINDOW_MANAGER::get_instance();
    return manager != nullptr && manager->is_object_on_focal_window(this) &&
           manager->get_focal_object(window) == this;
}

void WM_SCREEN_OBJECT::take_focus(unsigned char /*forward*/) {
    WM_WINDOW_INFO* info = get_window_info();
    if (info == nullptr || !can_have_focus() || info->focal_object == this || !visible) {
        return;
    }
    focus_lost = false;
    if (info->active_dialog != nullptr && info->active_dialog->is_dragging()) {
        return;
    }
    WM_SCREEN_OBJECT* old = std::exchange(info->focal_object, this);
    if (old != nullptr) {
        if (old->visible) {
            old->request_draw(0, 0);
        }
        old->focus_lost = true;
        if (old->focus_callback != nullptr) {
            old->focus_callback(old, old->focus_data);
        }
    }
    if (visible) {
        request_draw(0, 0);
    }
    if (focus_callback != nullptr) {
        focus_callback(this, focus_data);
    }
    info->focal_object_monitored = true;
    last_focus_time = now_ms;
}

void WM_SCREEN_OBJECT::give_focus_to_next_object() {
    WM_PAGE_MANAGER* manager = get_page_manager();
    if (manager != nullptr && has_focus()) {
        manager->focus_next_requested = true;
    }
}

void WM_SCREEN_OBJECT::give_focus_to_prev_object() {
    WM_PAGE_MANAGER* manager = get_page_manager();
    if (manager != nullptr && has_focus()) {
        manager->focus_prev_requested = true;
    }
}
