// The slots, the focal window and the tick. Opening windows and the settings are in
// window_manager_open.cpp and window_manager_settings.cpp.
#include "modules/winman/window_manager.h"

#include <algorithm>
#include <memory>
#include <utility>

#include "modules/3d/render_manager_base.h"
#include "modules/frameworks/windowed_application_framework.h"
#include "modules/winman/page_manager.h"
#include "modules/winman/window_info.h"
#include "modules/winman/wm_window.h"
#include "platform/image.h"
#include "platform/window_platform.h"

WM_WINDOW_MANAGER* WM_WINDOW_MANAGER::instance = nullptr;

namespace {

// A field of a slot or of its window, for an index that may have neither: `owner` is null then.

template <class OWNER, class FIELD>
FIELD read(const OWNER* owner, FIELD OWNER::*field, FIELD otherwise = FIELD()) {
    return owner != nullptr ? owner->*field : otherwise;
}

template <class OWNER, class OBJECT>
OBJECT* read(const OWNER* owner, std::unique_ptr<OBJECT> OWNER::*field) {
    return owner != nullptr ? (owner->*field).get() : nullptr;
}

template <class OWNER, class FIELD>
void write(OWNER* owner, FIELD OWNER::*field, FIELD value) {
    if (owner != nullptr) {
        owner->*field = value;
    }
}

template <class OWNER, class FIELD>
FIELD* find(OWNER* owner, FIELD OWNER::*field) {
    return owner != nullptr ? &(owner->*field) : nullptr;
}

}  // namespace

// --- Life ---

WM_WINDOW_MANAGER::WM_WINDOW_MANAGER()
    : supported_display_settings(10, 0, delete_entry<DISPLAY_SETTINGS>),
      windows(WINDOW_COUNT, 0, windows_remove_node_callback) {
    supported_display_settings.add(
        new DISPLAY_SETTINGS(WINDOWED_APPLICATION_FRAMEWORK::default_display_settings));
    for (signed char i = 0; i < WINDOW_COUNT; ++i) {
        windows.add(nullptr);
    }
}

WM_WINDOW_MANAGER::~WM_WINDOW_MANAGER() = default;

void WM_WINDOW_MANAGER::windows_remove_node_callback(void* entry) {
    delete static_cast<WM_WINDOW_INFO*>(entry);
}

void WM_WINDOW_MANAGER::create() {
    if (instance == nullptr) {
        instance = new WM_WINDOW_MANAGER;
    }
}

WM_WINDOW_MANAGER* WM_WINDOW_MANAGER::get_instance() {
    return instance != nullptr && !instance->shutting_down ? instance : nullptr;
}

void WM_WINDOW_MANAGER::shutdown() {
    save_all_data_to_config_file();
    for (signed char i = 0; i < WINDOW_COUNT; ++i) {
        delete_slot(i);
    }
    focal_window = focal_alerts_window = last_focal_window = -1;
}

void WM_WINDOW_MANAGER::destroy() {
    if (instance == nullptr) {
        return;
    }
    // While the manager can still be found, so that every object leaves it in order.
    for (signed char i = 0; i < WINDOW_COUNT; ++i) {
        instance->delete_slot(i);
    }
    instance->shutting_down = true;
    instance->windows.clear();
    instance->supported_display_settings.clear();
    delete instance;
    instance = nullptr;
}

// --- Slots ---

WM_WINDOW_INFO* WM_WINDOW_MANAGER::get_window_info(signed char index) const {
    return shutting_down ? nullptr : windows.get<WM_WINDOW_INFO>(index);
}

void WM_WINDOW_MANAGER::set_window_info(signed char index, WM_WINDOW_INFO* info) {
    if (index >= 0 && index < WINDOW_COUNT && get_window_info(index) != info) {
        delete_slot(index);
        windows[index] = info;
    }
}

void WM_WINDOW_MANAGER::delete_slot(signed char index) {
    const std::unique_ptr<WM_WINDOW_INFO> info(get_window_info(index));
    if (info != nullptr) {
        info->close_window();  // while its objects still find the slot
        windows[index] = nullptr;
    }
}

WM_PAGE_MANAGER* WM_WINDOW_MANAGER::get_page_manager(signed char index) const {
    return read(get_window_info(index), &WM_WINDOW_INFO::page_manager);
}

WM_WINDOW* WM_WINDOW_MANAGER::get_window(signed char index) const {
    return read(get_window_info(index), &WM_WINDOW_INFO::window);
}

void* WM_WINDOW_MANAGER::get_window_handle(signed char index) const {
    return read(get_window(index), &WM_WINDOW::handle);
}

void* WM_WINDOW_MANAGER::get_monitor_handle(signed char index) const {
    return read(get_window(index), &WM_WINDOW::monitor_handle);
}

IMAGE* WM_WINDOW_MANAGER::get_back_buffer(signed char index) const {
    return read(get_window_info(index), &WM_WINDOW_INFO::back_buffer);
}

void* WM_WINDOW_MANAGER::get_back_buffer_data(signed char index) const {
    return read(get_window_info(index), &WM_WINDOW_INFO::back_buffer_data);
}

void WM_WINDOW_MANAGER::set_back_buffer_data(signed char index, void* data) {
    write(get_window_info(index), &WM_WINDOW_INFO::back_buffer_data, data);
}

WM_SCREEN_OBJECT* WM_WINDOW_MANAGER::get_focal_object(signed char index) const {
    return read(get_window_info(index), &WM_WINDOW_INFO::focal_object);
}

void WM_WINDOW_MANAGER::set_focal_object(signed char index, WM_SCREEN_OBJECT* object) {
    write(get_window_info(index), &WM_WINDOW_INFO::focal_object, object);
}

unsigned char WM_WINDOW_MANAGER::get_focal_object_monitored(signed char index) const {
    return read(get_window_info(index), &WM_WINDOW_INFO::focal_object_monitored, true);
}

void WM_WINDOW_MANAGER::set_focal_object_monitored(signed char index, unsigned char monitored) {
    write(get_window_info(index), &WM_WINDOW_INFO::focal_object_monitored, monitored != 0);
}

WM_SCREEN_OBJECT* WM_WINDOW_MANAGER::get_right_mouse_object(signed char index) const {
    return read(get_window_info(index), &WM_WINDOW_INFO::right_mouse_object);
}

void WM_WINDOW_MANAGER::set_right_mouse_object(signed char index, WM_SCREEN_OBJECT* object) {
    write(get_window_info(index), &WM_WINDOW_INFO::right_mouse_object, object);
}

WM_SCREEN_OBJECT* WM_WINDOW_MANAGER::get_mouse_wheel_focus(signed char index) const {
    return read(get_window_info(index), &WM_WINDOW_INFO::mouse_wheel_focus);
}

void WM_WINDOW_MANAGER::set_mouse_wheel_focus(signed char index, WM_SCREEN_OBJECT* object) {
    write(get_window_info(index), &WM_WINDOW_INFO::mouse_wheel_focus, object);
}

bool WM_WINDOW_MANAGER::has_mouse_wheel_focus(const WM_SCREEN_OBJECT* object) const {
    return object != nullptr && is_object_on_focal_window(object) &&
           get_mouse_wheel_focus(object->window) == object;
}

PTRLLIST* WM_WINDOW_MANAGER::get_modal_screen_objects(signed char index) const {
    return find(get_window_info(index), &WM_WINDOW_INFO::modal_screen_objects);
}

unsigned char WM_WINDOW_MANAGER::get_monitor_modals(signed char index) const {
    return read(get_window_info(index), &WM_WINDOW_INFO::monitor_modals, true);
}

void WM_WINDOW_MANAGER::set_monitor_modals(signed char index, unsigned char on) {
    write(get_window_info(index), &WM_WINDOW_INFO::monitor_modals, on != 0);
}

WM_SCREEN_OBJECT* WM_WINDOW_MANAGER::get_active_menu(signed char index) const {
    return read(get_window_info(index), &WM_WINDOW_INFO::active_menu);
}

void WM_WINDOW_MANAGER::set_active_menu(signed char index, WM_SCREEN_OBJECT* menu) {
    write(get_window_info(index), &WM_WINDOW_INFO::active_menu, menu);
}

WM_SCREEN_OBJECT* WM_WINDOW_MANAGER::get_active_dialog(signed char index) const {
    return read(get_window_info(index), &WM_WINDOW_INFO::active_dialog);
}

void WM_WINDOW_MANAGER::set_active_dialog(signed char index, WM_SCREEN_OBJECT* dialog) {
    write(get_window_info(index), &WM_WINDOW_INFO::active_dialog, dialog);
}

WM_REGION* WM_WINDOW_MANAGER::get_is_in_me_region(signed char index) const {
    return find(get_window_info(index), &WM_WINDOW_INFO::is_in_me_region);
}

WM_REGION* WM_WINDOW_MANAGER::get_update_region(signed char index) const {
    return find(get_window_info(index), &WM_WINDOW_INFO::update_region);
}

std::int32_t WM_WINDOW_MANAGER::get_number_of_pending_update_regions(signed char index) const {
    return read(get_window_info(index), &WM_WINDOW_INFO::pending_count);
}

WM_REGION* WM_WINDOW_MANAGER::get_pending_update_region(signed char index,
                                                        std::int32_t number) const {
    WM_WINDOW_INFO* info = get_window_info(index);
    return info != nullptr && number >= 0 && number < info->pending_count
               ? &info->pending_regions[number]
               : nullptr;
}

void WM_WINDOW_MANAGER::clear_pending_update_regions(signed char index) {
    if (WM_WINDOW_INFO* info = get_window_info(index)) {
        info->clear_pending_update_regions();
    }
}

void WM_WINDOW_MANAGER::add_pending_update_region(signed char index, std::int16_t x1,
                                                  std::int16_t y1, std::int16_t x2, std::int16_t y2,
                                                  std::int16_t gap) {
    if (WM_WINDOW_INFO* info = get_window_info(index)) {
        info->add_pending_update_region({.top = y1, .left = x1, .right = x2, .bottom = y2}, gap);
    }
}

void WM_WINDOW_MANAGER::set_min_dimensions(signed char index, OPEN_GRAPHICS_SIZES min,
                                           OPEN_GRAPHICS_SIZES extended_min) {
    if (WM_WINDOW* window = get_window(index)) {
        window->set_min_dimensions(min, extended_min);
    }
}

void WM_WINDOW_MANAGER::set_max_dimensions(signed char index, OPEN_GRAPHICS_SIZES max) {
    write(get_window(index), &WM_WINDOW::max_dimensions, max);
}

OPEN_GRAPHICS_SIZES WM_WINDOW_MANAGER::get_min_dimensions(signed char index) const {
    const WM_WINDOW* window = get_window(index);
    if (window == nullptr) {
        return 0;
    }
    const OPEN_GRAPHICS_SIZES min = window->get_min_dimensions(), cap = get_application_minimum();
    return make_graphics_sizes(std::min(graphics_width(min), graphics_width(cap)),
                               std::min(graphics_height(min), graphics_height(cap)));
}

OPEN_GRAPHICS_SIZES WM_WINDOW_MANAGER::get_max_dimensions(signed char index) const {
    return read(get_window(index), &WM_WINDOW::max_dimensions);
}

OPEN_GRAPHICS_SIZES WM_WINDOW_MANAGER::get_display_dimensions(signed char index) const {
    const WM_WINDOW* window = get_window(index);
    return window != nullptr ? window->get_size() : 0;
}

void WM_WINDOW_MANAGER::set_display_dimensions(signed char index, OPEN_GRAPHICS_SIZES size) {
    if (WM_WINDOW* window = get_window(index)) {
        window->set_size(size);
    }
}

bool WM_WINDOW_MANAGER::is_borderless_window(signed char index) {
    return index == ALERTS_WINDOW || index == SPLASH_WINDOW;
}

bool WM_WINDOW_MANAGER::is_window_data_saveable(signed char index) {
    return index >= 0 && index < WINDOW_COUNT && !is_borderless_window(index);
}

signed char WM_WINDOW_MANAGER::get_window_index(const void* handle) const {
    signed char without = 0;
    for (signed char i = 0; i < WINDOW_COUNT; ++i) {
        const WM_WINDOW* window = get_window(i);
        if (window == nullptr) {
            continue;
        }
        if (handle != nullptr && window->handle == handle) {
            return i;
        }
        without = window->handle == nullptr ? i : without;
    }
    return without;
}

signed char WM_WINDOW_MANAGER::get_window_index(const IMAGE* back_buffer) const {
    signed char without = 0;
    for (signed char i = 0; i < WINDOW_COUNT; ++i) {
        const WM_WINDOW_INFO* info = get_window_info(i);
        if (info == nullptr) {
            continue;
        }
        if (back_buffer != nullptr && info->back_buffer.get() == back_buffer) {
            return i;
        }
        without = info->back_buffer == nullptr ? i : without;
    }
    return without;
}

signed char WM_WINDOW_MANAGER::get_modal_window_index() const {
    for (signed char i = 0; i < WINDOW_COUNT; ++i) {
        const WM_PAGE_MANAGER* manager = get_page_manager(i);
        if (manager != nullptr && manager->areas[0]->get_active_modal_object_count(-1) > 0) {
            return i;
        }
    }
    return -1;
}

// --- The focal window ---

void WM_WINDOW_MANAGER::set_window_as_focal_window(signed char index) {
    if (shutting_down || index < 0 || index >= WINDOW_COUNT) {
        return;
    }
    signed char& focal = index == ALERTS_WINDOW ? focal_alerts_window : focal_window;
    if (focal != index) {
        // The objects with the focus look as if without in a window that isn't focal.
        for (const signed char changed : {std::exchange(focal, index), index}) {
            WM_SCREEN_OBJECT* object = get_focal_object(changed);
            if (object != nullptr && object->visible) {
                object->request_draw(0, 0);
            }
        }
    }
    last_focal_window = index;
}

void WM_WINDOW_MANAGER::set_window_as_focal_window(void* handle) {
    set_window_as_focal_window(handle != nullptr ? get_window_index(handle) : MAIN_WINDOW);
}

bool WM_WINDOW_MANAGER::is_object_on_focal_window(const WM_SCREEN_OBJECT* object) const {
    if (shutting_down || object == nullptr) {
        return false;
    }
    return object->window == (object->window == ALERTS_WINDOW ? focal_alerts_window : focal_window);
}

bool WM_WINDOW_MANAGER::set_to_window(signed char index) {
    if (shutting_down || index >= WINDOW_COUNT ||
        (index > MAIN_WINDOW && !can_create_child_window(index))) {
        return false;
    }
    set_window_as_focal_window(index);
    return true;
}

void WM_WINDOW_MANAGER::leave_focal_window(signed char index) {
    if (index == ALERTS_WINDOW) {
        focal_alerts_window = -1;
    }
    if (focal_window == index) {
        focal_window = MAIN_WINDOW;
    }
    if (last_focal_window == index) {
        last_focal_window = focal_window;
    }
}

void WM_WINDOW_MANAGER::bring_window_to_front(signed char index) {
    WM_WINDOW* window = get_window(index);
    if (window == nullptr || window->handle == nullptr) {
        return;
    }
    const bool was_minimised = window->state == WM_WINDOW::MINIMISED;
    if (auto* application = ORLN_WINDOWED_APPLICATION::get_instance()) {
        application->handle_window_restored(window->handle);
    }
    platform_bring_window_to_front(window->handle, was_minimised);
    set_window_as_focal_window(index);
}

void WM_WINDOW_MANAGER::send_notification(signed char index) {
    WM_WINDOW* window = get_window(index);
    if (window != nullptr && index != focal_window && index != ALERTS_WINDOW) {
        window->notify(notification_count);
    }
}

bool WM_WINDOW_MANAGER::show_alert_as_desktop_alert() const {
    const WM_WINDOW* window = get_main_window();
    return window != nullptr &&
           (window->state == WM_WINDOW::HIDDEN || window->state == WM_WINDOW::MINIMISED);
}

// --- Showing, hiding, closing ---

void WM_WINDOW_MANAGER::close_window(signed char index) {
    if (get_window_info(index) == nullptr) {
        return;
    }
    save_all_data_to_config_file();
    delete_slot(index);
    leave_focal_window(index);
}

void WM_WINDOW_MANAGER::remove_window(signed char index) {
    close_window(index);
}

void WM_WINDOW_MANAGER::close_child_windows() {
    for (signed char i = 1; i < WINDOW_COUNT; ++i) {
        close_window(i);
    }
}

void WM_WINDOW_MANAGER::hide_window(signed char index) {
    WM_WINDOW_INFO* info = get_window_info(index);
    if (info == nullptr) {
        return;
    }
    WM_WINDOW& window = *info->window;
    if (index == ALERTS_WINDOW) {
        window.set_target_positions(window.x, static_cast<std::int16_t>(-window.height));
        window.move_window_to_target_positions();
        window.set_target_positions(window.x, 1);
    }
    info->hide_window();
    if (focal_window == index) {
        focal_window = MAIN_WINDOW;
    }
}

void WM_WINDOW_MANAGER::show_window(signed char index) {
    if (WM_WINDOW* window = get_window(index)) {
        if (window->x != -1 && window->y != -1) {
            window->move(window->x, window->y);
        }
        window->show();
        set_window_as_focal_window(index);
    }
}

void WM_WINDOW_MANAGER::blit_window(signed char index, unsigned char wait) {
    if (WM_WINDOW* window = get_window(index)) {
        window->blit(wait);
    }
}

void WM_WINDOW_MANAGER::blit_window(const WM_SCREEN_OBJECT* object, unsigned char wait) {
    if (object != nullptr) {
        blit_window(object->window, wait);
    }
}

// --- The tick ---

WM_MESG WM_WINDOW_MANAGER::monitor(unsigned char blit) {
    if (shutting_down) {
        return WM_MESG_NONE;
    }
    mouse_icon = 0;
    const signed char modal_window = get_modal_window_index();
    WM_MESG main_result = WM_MESG_NONE;
    bool locked_out = false;
    for (signed char i = 0; i < WINDOW_COUNT; ++i) {
        if ((modal_window != -1 && i != modal_window) || get_page_manager(i) == nullptr) {
            continue;
        }
        WM_MESG result = WM_MESG_NONE;
        if (!monitor_window(i, blit, result)) {
            locked_out = true;
        } else if (i == MAIN_WINDOW) {
            main_result = result;
        } else {
            act_on_child(i, blit, result);
        }
    }
    if (!locked_out) {
        change_mouse_icon(static_cast<char>(mouse_icon));
    }
    return main_result;
}

// False if another thread has the window's back buffer.
bool WM_WINDOW_MANAGER::monitor_window(signed char index, unsigned char blit, WM_MESG& result) {
    ORLN_3D::RENDER_MANAGER_BASE* renderer = ORLN_3D::RENDER_MANAGER_BASE::get_instance();
    if (renderer != nullptr && !renderer->lock_backbuffer(index, ORLN_3D::THREAD_ID_MAIN, 0)) {
        return false;
    }
    result = get_page_manager(index)->monitor(blit);
    if (renderer != nullptr) {
        renderer->unlock_backbuffer(index);
    }
    return true;
}

void WM_WINDOW_MANAGER::act_on_child(signed char index, unsigned char blit, WM_MESG result) {
    WM_WINDOW_INFO& info = *get_window_info(index);
    if (result == WM_MESG_QUIT) {
        info.close_window();
        leave_focal_window(index);
        return;
    }
    WM_WINDOW& window = *info.window;
    const bool has_target = window.target_x != -1 || window.target_y != -1;
    if (result == WM_MESG_NONE && window.target_pending && has_target) {
        unsigned char failed = 0, changed = 0;
        draw_window(index, 0, failed, changed);
        monitor_window(index, blit, result);
        window.move_window_to_target_positions();
    }
}
