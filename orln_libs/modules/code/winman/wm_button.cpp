// Making and changing buttons. Input is in wm_button_monitor.cpp and wm_button_drag.cpp, drawing in
// wm_button_draw.cpp.
#include "modules/winman/wm_button.h"

#include <algorithm>
#include <string>

#include "../gui/to_short.h"
#include "control_failure.h"
#include "flag_map.h"
#include "modules/winman/label_drawing.h"
#include "modules/winman/page_tool_manager.h"
#include "modules/winman/style_set.h"
#include "modules/winman/window_info.h"
#include "platform/font_manager.h"

bool WM_BUTTON::mouseovers_enabled = true;
std::uint32_t WM_BUTTON::auto_repeat_rate = 30;
std::uint32_t WM_BUTTON::auto_repeat_threshhold = 300;

namespace {

constexpr const char* TITLE_FAILURE = "WM_BUTTON::setup() - unable to set title";
constexpr unsigned char BUTTON_CACHE_FLAGS = 8;

struct STATE_BOX {
    IMAGE_BOX WM_BUTTON::*box;
    STYLE_BOX style_box;
    const char* suffix;
};

// The boxes that take part in recolouring come first.
constexpr STATE_BOX STATE_BOXES[] = {
    {&WM_BUTTON::up_box, STYLE_BOX_UP, "_up"},
    {&WM_BUTTON::down_box, STYLE_BOX_DOWN, "_down"},
    {&WM_BUTTON::disabled_box, STYLE_BOX_DISABLED, "_disabled"},
    {&WM_BUTTON::over_box, STYLE_BOX_OVER, "_over"},
    {&WM_BUTTON::active_up_box, STYLE_BOX_ACTIVE_UP, "_active_up"},
    {&WM_BUTTON::active_down_box, STYLE_BOX_ACTIVE_DOWN, "_active_down"},
    {&WM_BUTTON::active_disabled_box, STYLE_BOX_ACTIVE_DISABLED, "_active_disabled"},
    {&WM_BUTTON::active_over_box, STYLE_BOX_ACTIVE_OVER, "_active_over"},
    {&WM_BUTTON::highlighted_box, STYLE_BOX_HIGHLIGHTED, "_highlighted"},
    {&WM_BUTTON::flashing_box, STYLE_BOX_FLASHING, "_flashing"},
    {&WM_BUTTON::dragging_box, STYLE_BOX_DRAGGING, "_dragging"},
};
constexpr std::size_t RECOLOURED_BOXES = 9;

constexpr FLAG_PAIR BUTTON_FLAGS_OF_STYLE[] = {
    {STYLE_LEFT_JUSTIFY_TEXT, BUTTON_LEFT_JUSTIFY_TEXT},
    {STYLE_RIGHT_JUSTIFY_TEXT, BUTTON_RIGHT_JUSTIFY_TEXT},
    {STYLE_TOP_ALIGN_TEXT, BUTTON_TOP_ALIGN_TEXT},
    {STYLE_BOTTOM_ALIGN_TEXT, BUTTON_BOTTOM_ALIGN_TEXT},
    {STYLE_SHADOW_TEXT, BUTTON_SHADOW_TEXT},
    {STYLE_INSET_TEXT, BUTTON_INSET_TEXT},
    {STYLE_ICON_LEFT, BUTTON_ICON_LEFT},
    {STYLE_ICON_RIGHT, BUTTON_ICON_RIGHT},
    {STYLE_ICON_TOP, BUTTON_ICON_TOP},
    {STYLE_ICON_BOTTOM, BUTTON_ICON_BOTTOM},
    {STYLE_ICON_ATTACH_TO_TEXT, BUTTON_ICON_ATTACH_TO_TEXT},
    {STYLE_WRAP_TEXT, BUTTON_WRAP_TEXT},
    {STYLE_DONT_RESIZE_IMAGE, BUTTON_DONT_RESIZE_IMAGE},
    {STYLE_DONT_MASK_CLICK, BUTTON_DONT_MASK_CLICK},
};

void replace_if_set(COLOUR& colour, COLOUR styled) {
    colour = styled.is_set() ? styled : colour;
}

}  // namespace

WM_BUTTON::WM_BUTTON(std::int16_t x1, std::int16_t y1, std::int16_t x2, std::int16_t y2,
                     const WM_STYLE_SET& style, const char* title_text, const char* hint_text,
                     WM_CALLBACK callback_, void* data1, void* data2, unsigned char events,
                     signed char window_, unsigned char clickable_, unsigned char owner_shading)
    : WM_SCREEN_OBJECT(style.visible, callback_, data1, data2, window_),
      clickable(clickable_ != 0) {
    type_flags |= WMF_BUTTON;
    allowed_focus = clickable && callback != nullptr;
    set_flags(style, owner_shading != 0);
    if (style.image_filename != nullptr) {
        set_images(style.image_path, style.image_filename, &style);
    }
    setup(x1, y1, x2, y2, title_text, style.bg_colour,
          style.active_colour.is_set() ? style.active_colour : style.bg_colour,
          style.highlight_colour, BUTTON_TYPE_PUSH, style.font, style.font_x_sz, style.font_y_sz,
          style.border_left_gap, style.border_right_gap, style.border_top_gap,
          style.border_bottom_gap, style.x_spacing, style.y_spacing, events);
    set_styled_colours(style);
    set_hint_text(hint_text);
}

WM_BUTTON::~WM_BUTTON() {
    if (dragging) {
        leave_modal_list();
    }
}

void WM_BUTTON::set_flags(const WM_STYLE_SET& style, bool owner_shading) {
    button_flags =
        map_flags(BUTTON_FLAGS_OF_STYLE, style.flags) | (owner_shading ? BUTTON_OWNER_SHADING : 0u);
    if (style.has_flag(STYLE_DRAW_BORDER)) {
        shading_flags = static_cast<std::int16_t>(style.shading_flags & ~BUTTON_SHADING_PRESSED);
    }
}

void WM_BUTTON::set_styled_colours(const WM_STYLE_SET& style) {
    replace_if_set(text, style.fg_colour);
    replace_if_set(fading, style.fading_colour);
    replace_if_set(active_text, style.active_text_colour);
    replace_if_set(highlight_text, style.highlight_text_colour);
    replace_if_set(mouse_over, style.mouse_over_colour);
    replace_if_set(mouse_over_text, style.mouse_over_text_colour);
    replace_if_set(flashing_bg, style.flashing_colour);
    replace_if_set(flashing_text, style.flashing_text_colour);
    replace_if_set(underline, style.underline_colour);
    replace_if_set(mouse_over_underline, style.mouse_over_underline_colour);
}

void WM_BUTTON::setup(std::int16_t x1, std::int16_t y1, std::int16_t x2, std::int16_t y2,
                      const char* title_text, COLOUR new_bg, COLOUR new_active_bg,
                      COLOUR new_highlight, BUTTON_TYPE type, signed char new_font,
                      std::int16_t new_font_x_sz, std::int16_t new_font_y_sz, std::uint16_t left,
                      std::uint16_t right, std::uint16_t top, std::uint16_t bottom,
                      std::uint16_t x_spacing, std::uint16_t y_spacing, unsigned char events) {
    set_text_or_stop(title, title_text != nullptr ? title_text : "", TITLE_FAILURE);
    bg = new_bg;
    active_bg = new_active_bg;
    highlight = new_highlight;
    button_type = type;
    callback_flags = events;
    FONT_MANAGER& fonts = FONT_MANAGER::get_instance();
    font = new_font == -1 ? fonts.font : new_font;
    font_x_sz = new_font_x_sz == -1 ? fonts.x_size : new_font_x_sz;
    font_y_sz = new_font_y_sz == -1 ? fonts.y_size : new_font_y_sz;
    left_gap = WM_STYLE_SET::given_gap(left);
    right_gap = WM_STYLE_SET::given_gap(right);
    top_gap = WM_STYLE_SET::given_gap(top);
    bottom_gap = WM_STYLE_SET::given_gap(bottom);
    icon_x_spacing = WM_STYLE_SET::given_gap(x_spacing, left_gap);
    icon_y_spacing = WM_STYLE_SET::given_gap(y_spacing, top_gap);
    x = x1;
    y = y1;
    width = to_short(x2 < 0 ? left_gap + right_gap + get_text_width(title) : x2 - x1 + 1);
    height =
        to_short(y2 < 0 ? LABEL_DRAWING::get_natural_height(up_box, font_y_sz, top_gap, bottom_gap)
                        : y2 - y1 + 1);
}

std::int32_t WM_BUTTON::get_text_width(const char* of_text) const {
    return *of_text == '\0'
               ? 0
               : FONT_MANAGER::get_instance().get_string_width(font, font_x_sz, font_y_sz, of_text);
}

bool WM_BUTTON::set_images(const char* path, const char* base, const WM_STYLE_SET* style) {
    clear_images();
    if (base == nullptr) {
        return false;
    }
    if (style != nullptr && style->images_loaded) {
        for (const STATE_BOX& state : STATE_BOXES) {
            if (const IMAGE_BOX* box = style->get_box(state.style_box)) {
                this->*state.box = *box;
            }
        }
        const IMAGE_BOX* plain = style->get_box(STYLE_BOX_BASE);
        if (plain != nullptr && !up_box.are_images_valid()) {
            up_box = *plain;
        }
        if (plain != nullptr && !down_box.are_images_valid()) {
            down_box = *plain;
        }
        return is_graphical();
    }
    for (const STATE_BOX& state : STATE_BOXES) {
        IMAGE_BOX& box = this->*state.box;
        box.cache = &WM_PAGE_TOOL_MANAGER::styleset_image_cache;
        box.load_images(path, (std::string(base) + state.suffix).c_str(), BUTTON_CACHE_FLAGS);
    }
    for (IMAGE_BOX* box : {&up_box, &down_box}) {
        if (!box->are_images_valid()) {
            box->load_images(path, base, BUTTON_CACHE_FLAGS);
        }
    }
    return is_graphical();
}

void WM_BUTTON::clear_images() {
    for (const STATE_BOX& state : STATE_BOXES) {
        (this->*state.box).clear_images();
    }
}

void WM_BUTTON::set_colours(COLOUR colour, COLOUR second, COLOUR third, unsigned char tri) {
    bg = active_bg = colour;
    text = second;
    for (std::size_t i = 0; is_graphical() && i < RECOLOURED_BOXES; ++i) {
        IMAGE_BOX& box = this->*STATE_BOXES[i].box;
        if (tri) {
            box.set_trialpha_colours(colour, second, third);
        } else {
            box.recolour(colour);
        }
    }
    request_draw(0, 0);
}

bool WM_BUTTON::set_string(const char* new_text, unsigned char grow) {
    if (new_text == nullptr) {
        return false;
    }
    if (hint_is_cut_text) {
        set_hint_text(nullptr);
    }
    set_text_or_stop(title, new_text, TITLE_FAILURE);
    if (grow) {
        const std::int32_t needed = get_text_width(title) + 1;
        resize(to_short(std::max<std::int32_t>(width, needed)), height, 0);
    }
    if (visible) {
        request_draw(0, 0);
    }
    return true;
}

bool WM_BUTTON::set_hint_text(const char* hint_text) {
    hint_is_cut_text = false;
    return hint.set_text(hint_text);
}

void WM_BUTTON::request_draw(unsigned char modals, unsigned char children) {
    WM_SCREEN_OBJECT::request_draw(modals, children);
    if (dragging) {
        const WM_REGION region = get_drag_region();
        mark_redraw_subarea(region.left, region.top, region.right, region.bottom, REDRAW_GAP);
    }
}

void WM_BUTTON::hide(unsigned char modals, unsigned char children) {
    hint.reset();
    icon_hint.reset();
    if (dragging) {
        request_draw(0, 0);  // the picture at the pointer goes too
        leave_modal_list();
        stop_drag_tracking();
    }
    pressed = pressed_inside = mouse_over_now = false;
    WM_SCREEN_OBJECT::hide(modals, children);
}

WM_MESG WM_BUTTON::update(unsigned char modal_pass) {
    const WM_MESG result = WM_SCREEN_OBJECT::update(modal_pass);
    if (visible && flash_text.get_str_length() > 0) {
        const bool now = (flash_mask & flashing_flags) != 0;
        if (now != flashing) {
            flashing = now;
            request_draw(0, 0);
        }
    }
    return result;
}

bool WM_BUTTON::can_have_focus() {
    return focus_owner == nullptr && enabled && get_allowed_focus();
}

void WM_BUTTON::take_focus(unsigned char forward) {
    if (focus_owner != nullptr) {
        focus_owner->take_focus(forward);
    } else {
        WM_SCREEN_OBJECT::take_focus(forward);
    }
}

bool WM_BUTTON::is_focused() const {
    return has_focus() || (focus_owner != nullptr && allowed_focus && focus_owner->has_focus());
}
