// Life, geometry and effects of dialogs. Dragging is in wm_dialog_drag.cpp, drawing in
// wm_dialog_redraw.cpp.
#include "modules/winman/wm_dialog.h"

#include <algorithm>
#include <new>

#include "../gui/to_short.h"
#include "control_failure.h"
#include "modules/winman/object_walk.h"
#include "modules/winman/page_manager.h"
#include "modules/winman/page_tool_manager.h"
#include "modules/winman/window_info.h"
#include "modules/winman/window_manager.h"
#include "modules/winman/wm_manager.h"
#include "modules/winman/wm_script.h"
#include "modules/winman/wm_window.h"
#include "platform/keyboard.h"
#include "platform/mouse.h"

EFFECT_INFO WM_DIALOG::default_dialog_effect_info = {0, 150, 2000, 192};
bool WM_DIALOG::drag_contents = true;
bool WM_DIALOG::darken_background = false, WM_DIALOG::grey_background = false;
WM_DIALOG* WM_DIALOG::active_dialog = nullptr;

namespace {

constexpr unsigned char CACHE_FLAGS = 8;

// A cell gap that isn't given is none.
std::int32_t cell_gap(std::int16_t gap) {
    return std::max<std::int32_t>(gap, 0);
}

bool is_text(const char* text) {
    return text != nullptr && text[0] != '\0';
}

// The value at `elapsed` of `duration` on the way from `from` to `to`.
std::int32_t interpolate(std::int32_t from, std::int32_t to, std::uint32_t elapsed,
                         std::uint32_t duration) {
    return static_cast<std::int32_t>(from - std::int64_t{elapsed} * (from - to) / duration);
}

}  // namespace

WM_DIALOG::WM_DIALOG(std::int16_t x_, std::int16_t y_, std::int16_t width_, std::int16_t height_,
                     const char* title_text, unsigned char defer, const WM_STYLE_SET& dialog,
                     const WM_STYLE_SET& title_bar, const WM_STYLE_SET& contents_set,
                     const EFFECT_INFO* effect_info, signed char window_)
    : WM_SCREEN_OBJECT(dialog.visible, nullptr, nullptr, nullptr, window_),
      defer_refresh(defer != 0),
      dialog_style(dialog),
      title_style(title_bar),
      contents_style(contents_set) {
    if (dialog_style.image_filename != nullptr) {
        set_images(dialog_style.image_path, dialog_style.image_filename, &dialog_style);
    }
    setup(x_, y_, width_, height_, title_text, effect_info);
}

WM_DIALOG::~WM_DIALOG() {
    if (active_dialog == this) {
        active_dialog = nullptr;
    }
    if (has_shaded) {
        mark_entire_redraw_area();
    }
    if (outline_shown) {  // removed in the middle of a drag
        mark_redraw_subarea(drag_x, drag_y, to_short(drag_x + width - 1),
                            to_short(drag_y + height - 1), REDRAW_GAP);
    }
    defer_refresh = false;
    run_pending_refresh();
}

void WM_DIALOG::setup(std::int16_t new_x, std::int16_t new_y, std::int16_t new_width,
                      std::int16_t new_height, const char* title_text,
                      const EFFECT_INFO* effect_info) {
    type_flags |= WMF_DIALOG;
    width = new_width;
    height = new_height;
    std::int32_t window_width = 0, window_height = 0;
    get_window_size(window_width, window_height);
    x = new_x == -1 ? to_short((window_width - width) / 2) : new_x;
    y = new_y == -1 ? to_short((window_height - height) / 2) : new_y;
    start_x = target_x = x;
    start_y = target_y = y;
    if (is_text(title_text)) {
        add_title(title_text);
    }
    contents = new WM_MANAGER(x, y, 1, 1, 1, window);
    contents->type_flags |= WMF_MANAGER;
    WM_SCREEN_OBJECT::add_object(contents, 0);
    place_children();
    draggable = true;
    effect = effect_info != nullptr ? *effect_info : default_dialog_effect_info;
    clear();
    // The key that closed the last dialog doesn't close this one.
    KEYBOARD keyboard;
    if (keyboard.peek_code() == KEY_ESCAPE) {
        keyboard.get_code();
    }
}

bool WM_DIALOG::set_images(const char* path, const char* base, const WM_STYLE_SET* style) {
    box.clear_images();
    if (base == nullptr) {
        return false;
    }
    if (style != nullptr && style->images_loaded) {
        const IMAGE_BOX* frame = style->get_box(STYLE_BOX_BASE);
        frame = frame != nullptr ? frame : style->get_box(STYLE_BOX_UP);
        if (frame != nullptr) {
            box = *frame;
        }
    } else {
        box.cache = &WM_PAGE_TOOL_MANAGER::styleset_image_cache;
        box.load_images(path, base, CACHE_FLAGS);
    }
    return is_graphical();
}

// --- Geometry ---

void WM_DIALOG::get_window_size(std::int32_t& window_width, std::int32_t& window_height) const {
    const WM_WINDOW_INFO* info = get_window_info();
    const bool known = info != nullptr && info->window != nullptr;
    window_width = known ? info->window->width : 0;
    window_height = known ? info->window->height : 0;
}

std::int32_t WM_DIALOG::get_left_gap() const {
    return dialog_style.get_object_left_gap() + contents_style.get_object_left_gap() +
           cell_gap(dialog_style.cell_left_gap);
}

std::int32_t WM_DIALOG::get_right_gap() const {
    return dialog_style.get_object_right_gap() + contents_style.get_object_right_gap() +
           cell_gap(dialog_style.cell_right_gap);
}

std::int32_t WM_DIALOG::get_bottom_gap() const {
    return dialog_style.get_object_bottom_gap() + contents_style.get_object_bottom_gap() +
           cell_gap(dialog_style.cell_bottom_gap);
}

std::int16_t WM_DIALOG::get_title_height() const {
    const std::int32_t title_bar = title != nullptr ? title->height + dialog_style.y_spacing : 0;
    return to_short(dialog_style.get_object_top_gap() + title_bar +
                    contents_style.get_object_top_gap() + cell_gap(dialog_style.cell_top_gap));
}

WM_REGION WM_DIALOG::get_contents_region() const {
    const std::int32_t left = x + get_left_gap(), top = y + get_title_height();
    WM_REGION region;
    region.left = to_short(left);
    region.top = to_short(top);
    // Never without a size, which a manager takes as that of the window.
    region.right = to_short(std::max(x + width - 1 - get_right_gap(), left));
    region.bottom = to_short(std::max(y + height - 1 - get_bottom_gap(), top));
    return region;
}

void WM_DIALOG::add_title(const char* text) {
    title = new (std::nothrow) WM_SCRIPT(0, 0, 0, -1, title_style, text, window);
    if (title == nullptr) {
        stop_on_control_failure("WM_DIALOG::setup() - unable to allocate title");
    }
    WM_SCREEN_OBJECT::add_object(title, 0);
}

void WM_DIALOG::place_children() {
    if (title != nullptr) {
        const std::int32_t left = dialog_style.get_object_left_gap();
        const std::int32_t right = dialog_style.get_object_right_gap();
        title->move(to_short(x + left), to_short(y + dialog_style.get_object_top_gap()));
        title->resize(to_short(std::max(width - left - right, 1)), title->height, 0);
    }
    const WM_REGION region = get_contents_region();
    const std::int16_t inner_width = to_short(region.right - region.left + 1);
    const std::int16_t inner_height = to_short(region.bottom - region.top + 1);
    contents->move(region.left, region.top);
    if (contents->width != inner_width || contents->height != inner_height) {
        contents->resize(inner_width, inner_height, 0);
    }
}

std::int16_t WM_DIALOG::get_x() {
    return !is_sliding() ? x : opening ? target_x : start_x;
}

std::int16_t WM_DIALOG::get_y() {
    return !is_sliding() ? y : opening ? target_y : start_y;
}

void WM_DIALOG::move(std::int16_t new_x, std::int16_t new_y) {
    const std::int32_t dx = new_x - get_x(), dy = new_y - get_y();
    if (dx == 0 && dy == 0) {
        return;
    }
    mark_own_rectangle();
    start_x = to_short(start_x + dx);
    start_y = to_short(start_y + dy);
    target_x = to_short(target_x + dx);
    target_y = to_short(target_y + dy);
    WM_SCREEN_OBJECT::move(to_short(x + dx), to_short(y + dy));
}

void WM_DIALOG::resize(std::int16_t new_width, std::int16_t new_height, unsigned char children) {
    const std::int32_t dw = new_width - width, dh = new_height - height;
    if (dw == 0 && dh == 0) {
        return;
    }
    erase_outline();
    WM_SCREEN_OBJECT::resize(new_width, new_height, 0);
    place_children();
    if (children) {
        OBJECT_WALK walk(contents->objects, OBJECT_WALK::FORWARD);
        while (WM_SCREEN_OBJECT* object = walk.next()) {
            object->resize(to_short(object->width + dw), to_short(object->height + dh), children);
        }
    }
}

void WM_DIALOG::centre_x() {
    std::int32_t window_width = 0, window_height = 0;
    get_window_size(window_width, window_height);
    move(to_short((window_width - width) / 2), get_y());
}

void WM_DIALOG::centre_y() {
    std::int32_t window_width = 0, window_height = 0;
    get_window_size(window_width, window_height);
    move(get_x(), to_short((window_height - height) / 2));
}

// --- The tree ---

void WM_DIALOG::add_object(WM_SCREEN_OBJECT* object, unsigned char relative) {
    contents->add_object(object, relative);
}

void WM_DIALOG::remove_object(WM_SCREEN_OBJECT* object, unsigned char delete_it,
                              unsigned char make_relative) {
    contents->remove_object(object, delete_it, make_relative);
}

void WM_DIALOG::set_title(const char* text) {
    if (!is_text(text)) {
        if (title == nullptr) {
            return;
        }
        WM_SCREEN_OBJECT::remove_object(title, 1, 0);
        title = nullptr;
    } else if (title != nullptr) {
        title->set_text(text);
        return;
    } else {
        add_title(text);
    }
    place_children();
    if (visible) {
        request_draw(0, 0);
    }
}

// --- Effects ---

void WM_DIALOG::start_fade(unsigned char target) {
    const auto has_effect = [this](EFFECT_FLAG flag) { return (effect.flags & flag) != 0; };
    start_alpha = alpha;
    target_alpha = target;
    start_time = 0;
    duration = start_alpha != 0 && target_alpha != 0 ? effect.reshade_time : effect.time;
    closing = target == 0;
    bool fades = !no_effects;
    if (target > alpha) {
        fades = fades && has_effect(alpha == 0 ? EFFECT_FADE_IN : EFFECT_BRIGHTEN);
    } else if (target < alpha) {
        fades = fades && has_effect(target == 0 ? EFFECT_FADE_OUT : EFFECT_DIM);
    }
    if (!fades && alpha != target) {
        alpha = target;
        if (visible) {
            mark_own_rectangle();
        }
    }
}

void WM_DIALOG::start_animation(unsigned char opening_slide) {
    finish_slide();
    start_x = target_x = x;
    start_y = target_y = y;
    const bool slides =
        (effect.flags & (opening_slide ? EFFECT_SLIDE_IN : EFFECT_SLIDE_OUT)) != 0 && !no_effects;
    if (!slides) {
        return;
    }
    opening = opening_slide != 0;
    closing = closing || !opening;
    start_time = 0;
    duration = effect.time;
    std::int32_t window_width = 0, window_height = 0;
    get_window_size(window_width, window_height);
    const bool edge = (effect.flags & EFFECT_SLIDE_FROM_EDGE) != 0;
    std::int32_t away_x = x, away_y = y;
    if (effect.flags & EFFECT_SLIDE_ABOVE) {
        away_y = edge ? -height : y - height;
    } else if (effect.flags & EFFECT_SLIDE_BELOW) {
        away_y = edge ? window_height : y + height;
    }
    if (effect.flags & EFFECT_SLIDE_LEFT) {
        away_x = edge ? -width : x - width;
    } else if (effect.flags & EFFECT_SLIDE_RIGHT) {
        away_x = edge ? window_width : x + width;
    }
    if (opening) {
        start_x = to_short(away_x);
        start_y = to_short(away_y);
        WM_SCREEN_OBJECT::move(start_x, start_y);
    } else {
        target_x = to_short(away_x);
        target_y = to_short(away_y);
    }
}

bool WM_DIALOG::is_animating() const {
    return alpha != target_alpha || is_sliding();
}

// Puts the dialog where it belongs: at the end of an opening slide, the beginning of a closing one.
void WM_DIALOG::finish_slide() {
    if (!is_sliding()) {
        return;
    }
    const std::int16_t place_x = get_x(), place_y = get_y();
    WM_SCREEN_OBJECT::move(place_x, place_y);
    start_x = target_x = place_x;
    start_y = target_y = place_y;
}

void WM_DIALOG::clear() {
    finish_slide();
    opening = true;
    alpha = start_alpha = (effect.flags & EFFECT_FADE_IN) != 0 && !no_effects ? 0 : 255;
    target_alpha = 255;
    duration = effect.time;
    start_time = 0;
    closing = false;
    remove_when_hidden = false;
    start_animation(1);
}

void WM_DIALOG::start_closing() {
    dragging = false;
    erase_outline();
    remove_when_hidden = true;
    const bool slides_out = (effect.flags & EFFECT_SLIDE_OUT) != 0 && !no_effects;
    // A fade that is only a jump would leave nothing of the slide to be seen.
    if ((effect.flags & EFFECT_FADE_OUT) != 0 || !slides_out) {
        start_fade(0);
    }
    start_animation(0);
}

bool WM_DIALOG::defer_page_refresh() {
    if (!defer_refresh || !visible) {
        return false;
    }
    refresh_pending = true;
    return true;
}

void WM_DIALOG::run_pending_refresh() {
    WM_PAGE_MANAGER* pages = refresh_pending ? get_page_manager() : nullptr;
    refresh_pending = false;
    for (std::int16_t i = 0; pages != nullptr && i < pages->get_area_count(); ++i) {
        pages->refresh_page_next_monitor(i);
    }
}

void WM_DIALOG::hide(unsigned char modals, unsigned char children) {
    dragging = false;
    erase_outline();
    finish_slide();
    closing = false;
    WM_SCREEN_OBJECT::hide(modals, children);
    if (has_shaded) {
        has_shaded = false;
        mark_entire_redraw_area();
    }
    fade_image.reset(0, 0);
    under_image.reset(0, 0);
    run_pending_refresh();
}

// --- The passes ---

void WM_DIALOG::step_effects() {
    if (start_time == 0) {
        start_time = now_ms != 0 ? now_ms : now_ms - 1;  // 0 stands for "not begun"
    }
    const std::uint32_t elapsed = now_ms - start_time;
    if (elapsed < duration) {
        alpha =
            static_cast<unsigned char>(interpolate(start_alpha, target_alpha, elapsed, duration));
        WM_SCREEN_OBJECT::move(to_short(interpolate(start_x, target_x, elapsed, duration)),
                               to_short(interpolate(start_y, target_y, elapsed, duration)));
    } else {
        alpha = target_alpha;
        // The place that the slide leaves is marked while it still counts.
        mark_own_rectangle();
        WM_SCREEN_OBJECT::move(target_x, target_y);
    }
    request_draw(0, 0);
}

bool WM_DIALOG::is_closed() const {
    return closing && !is_animating();
}

WM_MESG WM_DIALOG::update(unsigned char modal_pass) {
    if (!modal_pass && !visible && !dragging) {
        return WM_MESG_NONE;
    }
    WM_MESG result = WM_SCREEN_OBJECT::update(modal_pass);
    if (result != WM_MESG_NONE || modal_pass) {
        return result;
    }
    if (is_animating()) {
        step_effects();
        result = WM_MESG_HANDLED;
    }
    if (is_closed()) {
        if (!opening) {
            WM_SCREEN_OBJECT::move(start_x, start_y);
            target_x = start_x;
            target_y = start_y;
            opening = true;
        }
        hide(0, 0);
        result = remove_when_hidden ? WM_MESG_REMOVE_MODAL : result;
    }
    return result;
}

WM_MESG WM_DIALOG::monitor() {
    if (!visible && !dragging) {
        return WM_MESG_NONE;
    }
    const bool left = MOUSE::is_down(MOUSE_BUTTON_LEFT);
    const bool pressed_now = left && !left_was_down;
    left_was_down = left;
    if ((type_flags & WMF_FLOATING_MENU) == 0) {
        active_dialog = this;
        if (WM_WINDOW_INFO* info = get_window_info()) {
            info->active_dialog = this;
        }
    }
    if (dragging) {
        continue_drag();
        return WM_MESG_HANDLED;
    }
    const WM_MESG result = WM_SCREEN_OBJECT::monitor();
    if (result == WM_MESG_NONE && pressed_now && draggable && !closing &&
        in_drag_area(MOUSE::x, MOUSE::y)) {
        start_drag();
        return WM_MESG_HANDLED;
    }
    return result;
}
