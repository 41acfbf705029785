#include "modules/winman/wm_script.h"

#include <string>

#include "../gui/to_short.h"
#include "active_area.h"
#include "control_face.h"
#include "flag_map.h"
#include "modules/winman/label_drawing.h"
#include "modules/winman/object_hint.h"
#include "modules/winman/page_tool_manager.h"
#include "modules/winman/style_set.h"
#include "platform/font_manager.h"
#include "platform/keyboard.h"
#include "platform/mouse.h"

namespace {

constexpr std::int32_t DARKEN_PERCENT = 50;
constexpr unsigned char CACHE_FLAGS = 8;

constexpr FLAG_PAIR SCRIPT_FLAGS_OF_STYLE[] = {
    {STYLE_LEFT_JUSTIFY_TEXT, SCRIPT_LEFT_JUSTIFY_TEXT},
    {STYLE_RIGHT_JUSTIFY_TEXT, SCRIPT_RIGHT_JUSTIFY_TEXT},
    {STYLE_TOP_ALIGN_TEXT, SCRIPT_TOP_ALIGN_TEXT},
    {STYLE_BOTTOM_ALIGN_TEXT, SCRIPT_BOTTOM_ALIGN_TEXT},
    {STYLE_SHADOW_TEXT, SCRIPT_SHADOW_TEXT},
    {STYLE_INSET_TEXT, SCRIPT_INSET_TEXT},
    {STYLE_ICON_LEFT, SCRIPT_ICON_LEFT},
    {STYLE_ICON_RIGHT, SCRIPT_ICON_RIGHT},
    {STYLE_ICON_TOP, SCRIPT_ICON_TOP},
    {STYLE_ICON_BOTTOM, SCRIPT_ICON_BOTTOM},
    {STYLE_ICON_ATTACH_TO_TEXT, SCRIPT_ICON_ATTACH_TO_TEXT},
    {STYLE_WRAP_TEXT, SCRIPT_WRAP_TEXT},
    {STYLE_DONT_RESIZE_IMAGE, SCRIPT_DONT_RESIZE_IMAGE},
    {STYLE_DONT_MASK_CLICK, SCRIPT_DONT_MASK_CLICK},
};

constexpr FLAG_PAIR LABEL_FLAGS_OF_SCRIPT[] = {
    {SCRIPT_LEFT_JUSTIFY_TEXT, LABEL_LEFT_JUSTIFY_TEXT},
    {SCRIPT_RIGHT_JUSTIFY_TEXT, LABEL_RIGHT_JUSTIFY_TEXT},
    {SCRIPT_TOP_ALIGN_TEXT, LABEL_TOP_ALIGN_TEXT},
    {SCRIPT_BOTTOM_ALIGN_TEXT, LABEL_BOTTOM_ALIGN_TEXT},
    {SCRIPT_SHADOW_TEXT, LABEL_SHADOW_TEXT},
    {SCRIPT_INSET_TEXT, LABEL_INSET_TEXT},
    {SCRIPT_CHISELLED_TEXT, LABEL_CHISELLED_TEXT},
    {SCRIPT_ICON_LEFT, LABEL_ICON_LEFT},
    {SCRIPT_ICON_RIGHT, LABEL_ICON_RIGHT},
    {SCRIPT_ICON_TOP, LABEL_ICON_TOP},
    {SCRIPT_ICON_BOTTOM, LABEL_ICON_BOTTOM},
    {SCRIPT_ICON_ATTACH_TO_TEXT, LABEL_ICON_ATTACH_TO_TEXT},
    {SCRIPT_WRAP_TEXT, LABEL_WRAP_TEXT},
};

const char* string_of(const PARAMETER& parameter) {
    const char* string = parameter.value.string_value;
    return parameter.type == PARAMETER::TYPE_STRING && string != nullptr ? string : "";
}

void set_hint(std::unique_ptr<OBJECT_HINT>& hint, WM_SCREEN_OBJECT& owner, const char* text) {
    if (hint == nullptr) {
        hint = std::make_unique<OBJECT_HINT>(owner);
    }
    hint->set_text(text);
}

// Recolours the box from its original, which is kept at the first call.
void recolour_box(IMAGE_BOX& box, std::unique_ptr<IMAGE_BOX>& original, COLOUR first, COLOUR second,
                  COLOUR third, bool tri) {
    if (!box.are_images_valid()) {
        return;
    }
    if (original == nullptr) {
        original = std::make_unique<IMAGE_BOX>(box);
    } else {
        box = *original;
    }
    if (tri) {
        box.set_trialpha_colours(first, second, third);
    } else {
        box.recolour(first);
    }
}

// Takes the first of the style's boxes that can be drawn.
void take_box(IMAGE_BOX& box, const WM_STYLE_SET& style, STYLE_BOX wanted, STYLE_BOX otherwise) {
    for (const STYLE_BOX which : {wanted, otherwise}) {
        const IMAGE_BOX* found = style.get_box(which);
        if (found != nullptr && found->are_images_valid()) {
            box = *found;
            return;
        }
    }
    box.clear_images();
}

}  // namespace

WM_SCRIPT::WM_SCRIPT(std::int16_t x1, std::int16_t y1, std::int16_t x2, std::int16_t y2,
                     const WM_STYLE_SET& style, const char* new_text, signed char window_)
    : WM_SCREEN_OBJECT(style.visible, nullptr, nullptr, nullptr, window_),
      flashing_bg(style.flashing_colour),
      flashing_text(style.flashing_text_colour),
      script_flags(map_flags(SCRIPT_FLAGS_OF_STYLE, style.flags)),
      shading_flags(static_cast<std::int16_t>(style.shading_flags & ~1)) {
    type_flags |= WMF_SCRIPT;
    if (style.image_filename != nullptr) {
        set_images(style.image_path, style.image_filename, &style);
    }
    setup(x1, y1, x2, y2, new_text, style.fg_colour, style.bg_colour, style.font, style.font_x_sz,
          style.font_y_sz, style.border_left_gap, style.border_right_gap, style.border_top_gap,
          style.border_bottom_gap, style.x_spacing, style.y_spacing);
    if (style.fading_colour.is_set()) {
        fading = style.fading_colour;
    }
}

WM_SCRIPT::~WM_SCRIPT() = default;

void WM_SCRIPT::setup(std::int16_t x1, std::int16_t y1, std::int16_t x2, std::int16_t y2,
                      const char* new_text, COLOUR new_text_colour, COLOUR background,
                      signed char new_font, std::int16_t new_font_x_sz, std::int16_t new_font_y_sz,
                      std::uint16_t left, std::uint16_t right, std::uint16_t top,
                      std::uint16_t bottom, std::uint16_t x_spacing, std::uint16_t y_spacing) {
    FONT_MANAGER& fonts = FONT_MANAGER::get_instance();
    text.set(text.value, new_text);
    text_colour = new_text_colour;
    bg = background;
    font = new_font == -1 ? fonts.font : new_font;
    font_x_sz = new_font_x_sz < 1 ? fonts.x_size : new_font_x_sz;
    font_y_sz = new_font_y_sz < 1 ? fonts.y_size : new_font_y_sz;
    left_gap = WM_STYLE_SET::given_gap(left);
    right_gap = WM_STYLE_SET::given_gap(right);
    top_gap = WM_STYLE_SET::given_gap(top);
    bottom_gap = WM_STYLE_SET::given_gap(bottom);
    icon_x_spacing = WM_STYLE_SET::given_gap(x_spacing, left_gap);
    icon_y_spacing = WM_STYLE_SET::given_gap(y_spacing, top_gap);
    x = x1;
    y = y1;
    const std::int32_t new_width =
        x2 < 0
            ? left_gap + right_gap + fonts.get_string_width(font, font_x_sz, font_y_sz, get_text())
            : x2 - x1 + 1;
    const std::int32_t new_height =
        y2 < 0 ? LABEL_DRAWING::get_natural_height(up_box, font_y_sz, top_gap, bottom_gap)
               : y2 - y1 + 1;
    width = to_short(new_width);
    height = to_short(new_height);
}

void WM_SCRIPT::set_text(const char* new_text) {
    if (hint_is_cut_text) {
        set_hint_text(nullptr);
    }
    text.set(text.value, new_text);
    if (visible) {
        request_draw(0, 0);
    }
}

const char* WM_SCRIPT::get_text() const {
    return string_of(text);
}

// --- Looks ---

bool WM_SCRIPT::set_images(const char* path, const char* base, const WM_STYLE_SET* style) {
    clear_images();
    if (base == nullptr) {
        return false;
    }
    if (style != nullptr && style->images_loaded) {
        take_box(up_box, *style, STYLE_BOX_UP, STYLE_BOX_BASE);
        take_box(flashing_box, *style, STYLE_BOX_FLASHING, STYLE_BOX_FLASHING);
        return is_graphical();
    }
    up_box.cache = flashing_box.cache = &WM_PAGE_TOOL_MANAGER::styleset_image_cache;
    const std::string name = base;
    if (!up_box.load_images(path, (name + "_up").c_str(), CACHE_FLAGS)) {
        up_box.load_images(path, base, CACHE_FLAGS);
    }
    flashing_box.load_images(path, (name + "_flashing").c_str(), CACHE_FLAGS);
    return is_graphical();
}

void WM_SCRIPT::clear_images() {
    up_box.clear_images();
    flashing_box.clear_images();
    saved_box.reset();
    saved_flash_box.reset();
}

void WM_SCRIPT::set_colours(COLOUR first, COLOUR second, COLOUR third, unsigned char tri) {
    bg = first;
    text_colour = second;
    recolour_box(up_box, saved_box, first, second, third, tri != 0);
    if (visible) {
        request_draw(0, 0);
    }
}

void WM_SCRIPT::set_flashing_colours(COLOUR first, COLOUR second, COLOUR third, unsigned char tri) {
    flashing_bg = first;
    flashing_text = second;
    recolour_box(flashing_box, saved_flash_box, first, second, third, tri != 0);
    if (visible) {
        request_draw(0, 0);
    }
}

void WM_SCRIPT::calc_xgap_from_style_set(const WM_STYLE_SET& style, std::int16_t& gap) {
    gap = to_short(style.get_object_left_gap() + style.get_object_right_gap());
}

void WM_SCRIPT::calc_ygap_from_style_set(const WM_STYLE_SET& style, std::int16_t& gap) {
    gap = to_short(style.get_object_top_gap() + style.get_object_bottom_gap());
}

// --- Hints ---

void WM_SCRIPT::set_hint_text(const char* hint_text) {
    hint_is_cut_text = false;
    set_hint(hint, *this, hint_text);
}

void WM_SCRIPT::set_icon_hint_text(const char* hint_text) {
    set_hint(icon_hint, *this, hint_text);
}

const char* WM_SCRIPT::get_hint_text() const {
    return hint != nullptr ? hint->get_text() : nullptr;
}

const char* WM_SCRIPT::get_icon_hint_text() const {
    return icon_hint != nullptr ? icon_hint->get_text() : nullptr;
}

void WM_SCRIPT::update_hint_time(std::uint32_t time, std::int16_t px, std::int16_t py) {
    if (hint != nullptr) {
        hint->update_hint_time(time, px, py);
    }
}

void WM_SCRIPT::update_icon_hint_time(std::uint32_t time, std::int16_t px, std::int16_t py) {
    if (icon_hint != nullptr) {
        icon_hint->update_hint_time(time, px, py);
    }
}

// --- The passes ---

void WM_SCRIPT::hide(unsigned char modals, unsigned char children) {
    for (OBJECT_HINT* each : {hint.get(), icon_hint.get()}) {
        if (each != nullptr) {
            each->reset();
        }
    }
    WM_SCREEN_OBJECT::hide(modals, children);
}

// As the topmost modal object a hint takes all input of the window: its owner must get it.
WM_MESG WM_SCRIPT::monitor_hint() {
    if (!owner->get_visible(1)) {
        return WM_MESG_REMOVE_MODAL;  // what the owner stands in was hidden
    }
    const WM_MESG result = owner->monitor();
    if (result != WM_MESG_NONE) {
        return result;
    }
    const KEYBOARD keyboard;
    const bool key = keyboard.peek_code() != KEY_NONE || keyboard.peek_char() != 0;
    return key || MOUSE::buttons != 0 ? WM_MESG_REMOVE_MODAL : WM_MESG_NONE;
}

WM_MESG WM_SCRIPT::monitor() {
    if (owner != nullptr) {
        return monitor_hint();
    }
    const WM_MESG result = WM_SCREEN_OBJECT::monitor();
    if (result != WM_MESG_NONE || !visible || (hint == nullptr && icon_hint == nullptr)) {
        return result;
    }
    const std::int16_t px = MOUSE::x, py = MOUSE::y;
    const bool over = is_in_it(px, py);
    const bool button_down = MOUSE::buttons != 0;
    if (icon_hint == nullptr) {
        hint->monitor(over, button_down, px, py);
    } else if (hint == nullptr) {
        icon_hint->monitor(over, button_down, px, py);
    } else {
        const bool over_icon = OBJECT_HINT::is_over_icon(px, icon_left, icon_right, icon_x_spacing,
                                                         (script_flags & SCRIPT_ICON_RIGHT) != 0);
        OBJECT_HINT::monitor_both(*hint, *icon_hint, over_icon, over, button_down, px, py);
    }
    return WM_MESG_NONE;
}

WM_MESG WM_SCRIPT::update(unsigned char modal_pass) {
    const WM_MESG result = WM_SCREEN_OBJECT::update(modal_pass);
    if (result != WM_MESG_NONE || modal_pass || !visible || string_of(flash_text)[0] == '\0') {
        return result;
    }
    const bool now_flashing = (flash_mask & flashing_flags) != 0;
    if (now_flashing != flashing) {
        flashing = now_flashing;
        request_draw(0, 0);
    }
    return WM_MESG_NONE;
}

bool WM_SCRIPT::is_in_it(std::int16_t px, std::int16_t py) {
    const bool masked = is_graphical() && (script_flags & SCRIPT_DONT_MASK_CLICK) == 0;
    return is_in_face(*this, masked ? &up_box : nullptr, px, py);
}

// --- Drawing ---

void WM_SCRIPT::draw_background(IMAGE& buffer) {
    if (is_graphical()) {
        IMAGE_BOX& box = flashing && flashing_box.are_images_valid() ? flashing_box : up_box;
        box.draw(x, y, to_short(x + width - 1), to_short(y + height - 1), &buffer,
                 (script_flags & SCRIPT_DONT_RESIZE_IMAGE) == 0, IMAGE_COPY_BLEND);
        return;
    }
    if (!has_background) {
        return;
    }
    const bool flash_colour = flashing && flashing_bg.is_set();
    if ((script_flags & SCRIPT_DARKEN) != 0 && !flash_colour) {
        buffer.darken_rect(x, y, x + width - 1, y + height - 1, DARKEN_PERCENT);
        return;
    }
    FACE_FADE fade = FACE_FADE::NONE;
    if (script_flags & SCRIPT_HORIZONTAL_FADE) {
        fade = FACE_FADE::ACROSS;
    } else if (script_flags & SCRIPT_VERTICAL_FADE) {
        fade = FACE_FADE::DOWN;
    }
    fill_face(buffer, *this, flash_colour ? flashing_bg : bg, fading, fade);
}

void WM_SCRIPT::draw_object() {
    IMAGE* buffer = get_back_buffer(-1);
    if (buffer == nullptr) {
        return;
    }
    const SAVED_ACTIVE_AREA saved(buffer);
    buffer->add_rect_to_active_area(x, y, x + width - 1, y + height - 1);
    draw_background(*buffer);

    LABEL_DRAWING label(*this);
    label.flags = map_flags(LABEL_FLAGS_OF_SCRIPT, script_flags);
    label.text = flashing && string_of(flash_text)[0] != '\0' ? string_of(flash_text) : get_text();
    label.text_colour = flashing && flashing_text.is_set() ? flashing_text : text_colour;
    if (!enabled) {
        label.flags &= ~std::uint32_t{LABEL_SHADOW_TEXT | LABEL_INSET_TEXT};
        if (!is_graphical()) {
            label.text_colour = LABEL_DRAWING::get_disabled_colour(label.text_colour);
            label.icon_alpha = LABEL_DRAWING::DISABLED_ICON_ALPHA;
        }
    }
    label.draw(*buffer);
    icon_left = to_short(label.icon_left);
    icon_right = to_short(label.icon_right);
    if (label.was_cut && owner == nullptr && get_hint_text() == nullptr) {
        set_hint_text(label.text);
        hint_is_cut_text = true;
    }
}
