#include "modules/gui/dialog_base.h"

#include <algorithm>
#include <iterator>
#include <utility>

#include "modules/gui/text_box.h"
#include "modules/winman/object_walk.h"
#include "modules/winman/window_info.h"
#include "modules/winman/window_manager.h"
#include "modules/winman/wm_button.h"
#include "modules/winman/wm_manager.h"
#include "modules/winman/wm_script.h"
#include "platform/keyboard.h"
#include "skin_lookup.h"
#include "to_short.h"

DIALOG_BASE* DIALOG_BASE::active_dialog = nullptr;

namespace {

constexpr std::int16_t DEFAULT_WIDTH = 400, DEFAULT_HEIGHT = 200;

SKIN_STYLE DIALOG_BACKGROUND_INDEX = {"DIALOG_BACKGROUND"};
SKIN_STYLE DIALOG_TITLE_INDEX = {"DIALOG_TITLE"};
SKIN_STYLE BLANK_INDEX = {"BLANK"};

WM_STYLE_SET& get_background_style(signed char kind) {
    static SKIN_STYLE DIALOG_BACKGROUND_CONFIRM_INDEX = {"DIALOG_BACKGROUND_CONFIRM"};
    static SKIN_STYLE DIALOG_BACKGROUND_WARNING_INDEX = {"DIALOG_BACKGROUND_WARNING"};
    static SKIN_STYLE DIALOG_BACKGROUND_ERROR_INDEX = {"DIALOG_BACKGROUND_ERROR"};
    switch (kind) {
        case DIALOG_KIND_PLAIN:
            return DIALOG_BACKGROUND_INDEX.get();
        case DIALOG_KIND_CONFIRM:
            return DIALOG_BACKGROUND_CONFIRM_INDEX.get();
        case DIALOG_KIND_WARNING:
            return DIALOG_BACKGROUND_WARNING_INDEX.get();
        default:
            return DIALOG_BACKGROUND_ERROR_INDEX.get();
    }
}

// A cancel button says "no" with the looks of a negative action, unless there is such an action.
WM_STYLE_SET& get_button_style(signed char type, bool only_button, bool has_negative_action) {
    static SKIN_STYLE DIALOG_BUTTON_ACKNOWLEDGE_INDEX = {"DIALOG_BUTTON_ACKNOWLEDGE"};
    static SKIN_STYLE DIALOG_BUTTON_CANCEL_INDEX = {"DIALOG_BUTTON_CANCEL"};
    static SKIN_STYLE DIALOG_BUTTON_POSITIVE_ACTION_INDEX = {"DIALOG_BUTTON_POSITIVE_ACTION"};
    static SKIN_STYLE DIALOG_BUTTON_NEGATIVE_ACTION_INDEX = {"DIALOG_BUTTON_NEGATIVE_ACTION"};
    static SKIN_STYLE DIALOG_BUTTON_NORMAL_INDEX = {"DIALOG_BUTTON_NORMAL"};
    static SKIN_STYLE DIALOG_BUTTON_HELP_INDEX = {"DIALOG_BUTTON_HELP"};
    static SKIN_STYLE DIALOG_BUTTON_NEXT_INDEX = {"DIALOG_BUTTON_NEXT"};
    static SKIN_STYLE DIALOG_BUTTON_BACK_INDEX = {"DIALOG_BUTTON_BACK"};
    switch (type) {
        case DIALOG_BUTTON_ACKNOWLEDGE:
            return DIALOG_BUTTON_ACKNOWLEDGE_INDEX.get();
        case DIALOG_BUTTON_CANCEL:
            return (has_negative_action ? DIALOG_BUTTON_CANCEL_INDEX
                                        : DIALOG_BUTTON_NEGATIVE_ACTION_INDEX)
                .get();
        case DIALOG_BUTTON_POSITIVE_ACTION:
            return DIALOG_BUTTON_POSITIVE_ACTION_INDEX.get();
        case DIALOG_BUTTON_NEGATIVE_ACTION:
            return DIALOG_BUTTON_NEGATIVE_ACTION_INDEX.get();
        case DIALOG_BUTTON_HELP:
            return DIALOG_BUTTON_HELP_INDEX.get();
        case DIALOG_BUTTON_NEXT:
            return (only_button ? DIALOG_BUTTON_NEXT_INDEX : DIALOG_BUTTON_NORMAL_INDEX).get();
        case DIALOG_BUTTON_BACK:
            return (only_button ? DIALOG_BUTTON_BACK_INDEX : DIALOG_BUTTON_NORMAL_INDEX).get();
        default:
            return DIALOG_BUTTON_NORMAL_INDEX.get();
    }
}

constexpr signed char ACTION_TYPES[] = {DIALOG_BUTTON_POSITIVE_ACTION,
                                        DIALOG_BUTTON_NEGATIVE_ACTION, DIALOG_BUTTON_OTHER_ACTION};

bool is_action_type(signed char type) {
    return std::find(std::begin(ACTION_TYPES), std::end(ACTION_TYPES), type) !=
           std::end(ACTION_TYPES);
}

bool has_type(const DIALOG_BUTTON_INFO* infos, int count, signed char type) {
    return std::any_of(infos, infos + count,
                       [type](const DIALOG_BUTTON_INFO& info) { return info.type == type; });
}

// The positive action ends up to the right of the negative one, or else of the cancel button.
void sort_button_infos(DIALOG_BUTTON_INFO* infos, int count) {
    const bool has_negative_action = has_type(infos, count, DIALOG_BUTTON_NEGATIVE_ACTION);
    for (int i = 0; i < count; ++i) {
        for (int j = i + 1; j < count; ++j) {
            const signed char later = infos[j].type;
            if (infos[i].type == DIALOG_BUTTON_POSITIVE_ACTION &&
                (later == DIALOG_BUTTON_NEGATIVE_ACTION ||
                 (later == DIALOG_BUTTON_CANCEL && !has_negative_action))) {
                std::swap(infos[i], infos[j]);
            }
        }
    }
}

bool is_opaque(const IMAGE& image) {
    for (std::int32_t y = 0; y < image.height; ++y) {
        const COLOUR* row = image.row(y);
        if (!std::all_of(row, row + image.width, [](COLOUR pixel) {
                return pixel.alpha() >= COLOUR::alpha_solid_threshold;
            })) {
            return false;
        }
    }
    return true;
}

// Consumes the key if it is the last one pressed.
bool take_key(KEY_TYPE key) {
    KEYBOARD keyboard;
    if (keyboard.peek_code() != key) {
        return false;
    }
    keyboard.get_code();
    return true;
}

}  // namespace

// --- Construction ---

DIALOG_BASE::DIALOG_BASE(std::int16_t x_, std::int16_t y_, std::int16_t width_,
                         std::int16_t height_, const char* title_text, unsigned char defer,
                         signed char kind, const DIALOG_BUTTON_INFO* infos, int count,
                         signed char window_)
    : WM_DIALOG(x_, y_, width_ < 0 ? DEFAULT_WIDTH : width_, height_ < 0 ? DEFAULT_HEIGHT : height_,
                title_text, defer, get_background_style(kind), DIALOG_TITLE_INDEX.get(),
                BLANK_INDEX.get(), nullptr, window_) {
    setup_buttons(infos, count);
    opaque = is_frame_opaque();
    alpha = 255;
}

DIALOG_BASE::DIALOG_BASE(std::int16_t x_, std::int16_t y_, std::int16_t width_,
                         std::int16_t height_, const char* title_text, unsigned char defer,
                         signed char kind, signed char window_)
    : DIALOG_BASE(x_, y_, width_, height_, title_text, defer, kind, nullptr, 0, window_) {
}

DIALOG_BASE::DIALOG_BASE(std::int16_t x_, std::int16_t y_, std::int16_t width_,
                         std::int16_t height_, const char* title_text, unsigned char defer,
                         signed char kind, const char* text1, void* data1_1, void* data2_1,
                         signed char type1, WM_CALLBACK callback1, signed char window_)
    : DIALOG_BASE(x_, y_, width_, height_, title_text, defer, kind,
                  std::array{DIALOG_BUTTON_INFO{text1, data1_1, data2_1, type1, callback1}}.data(),
                  1, window_) {
}

DIALOG_BASE::DIALOG_BASE(std::int16_t x_, std::int16_t y_, std::int16_t width_,
                         std::int16_t height_, const char* title_text, unsigned char defer,
                         signed char kind, const char* text1, void* data1_1, void* data2_1,
                         signed char type1, const char* text2, void* data1_2, void* data2_2,
                         signed char type2, WM_CALLBACK callback1, WM_CALLBACK callback2,
                         signed char window_)
    : DIALOG_BASE(x_, y_, width_, height_, title_text, defer, kind,
                  std::array{DIALOG_BUTTON_INFO{text1, data1_1, data2_1, type1, callback1},
                             DIALOG_BUTTON_INFO{text2, data1_2, data2_2, type2, callback2}}
                      .data(),
                  2, window_) {
}

DIALOG_BASE::DIALOG_BASE(std::int16_t x_, std::int16_t y_, std::int16_t width_,
                         std::int16_t height_, const char* title_text, unsigned char defer,
                         signed char kind, const char* text1, void* data1_1, void* data2_1,
                         signed char type1, const char* text2, void* data1_2, void* data2_2,
                         signed char type2, const char* text3, void* data1_3, void* data2_3,
                         signed char type3, WM_CALLBACK callback1, WM_CALLBACK callback2,
                         WM_CALLBACK callback3, signed char window_)
    : DIALOG_BASE(x_, y_, width_, height_, title_text, defer, kind,
                  std::array{DIALOG_BUTTON_INFO{text1, data1_1, data2_1, type1, callback1},
                             DIALOG_BUTTON_INFO{text2, data1_2, data2_2, type2, callback2},
                             DIALOG_BUTTON_INFO{text3, data1_3, data2_3, type3, callback3}}
                      .data(),
                  3, window_) {
}

DIALOG_BASE::DIALOG_BASE(std::int16_t x_, std::int16_t y_, std::int16_t width_,
                         std::int16_t height_, const char* title_text, unsigned char defer,
                         signed char kind, const char* text1, void* data1_1, void* data2_1,
                         signed char type1, const char* text2, void* data1_2, void* data2_2,
                         signed char type2, const char* text3, void* data1_3, void* data2_3,
                         signed char type3, const char* text4, void* data1_4, void* data2_4,
                         signed char type4, WM_CALLBACK callback1, WM_CALLBACK callback2,
                         WM_CALLBACK callback3, WM_CALLBACK callback4, signed char window_)
    : DIALOG_BASE(x_, y_, width_, height_, title_text, defer, kind,
                  std::array{DIALOG_BUTTON_INFO{text1, data1_1, data2_1, type1, callback1},
                             DIALOG_BUTTON_INFO{text2, data1_2, data2_2, type2, callback2},
                             DIALOG_BUTTON_INFO{text3, data1_3, data2_3, type3, callback3},
                             DIALOG_BUTTON_INFO{text4, data1_4, data2_4, type4, callback4}}
                      .data(),
                  4, window_) {
}

DIALOG_BASE::~DIALOG_BASE() {
    WM_WINDOW_INFO* info = get_window_info();
    if (info != nullptr && info->active_dialog == this) {
        info->active_dialog = nullptr;
    }
}

void DIALOG_BASE::setup_buttons(const DIALOG_BUTTON_INFO* infos, int count) {
    count = std::clamp(count, 0, MAX_BUTTONS);
    std::array<DIALOG_BUTTON_INFO, MAX_BUTTONS> sorted;
    for (int i = 0; i < count; ++i) {
        DIALOG_BUTTON_INFO& info = sorted[static_cast<std::size_t>(i)] = infos[i];
        info.callback = info.callback != nullptr ? info.callback : infos[0].callback;
    }
    sort_button_infos(sorted.data(), count);
    const bool has_negative_action = has_type(sorted.data(), count, DIALOG_BUTTON_NEGATIVE_ACTION);
    for (std::size_t i = 0; i < static_cast<std::size_t>(count); ++i) {
        const DIALOG_BUTTON_INFO& info = sorted[i];
        BUTTON_RECORD& record = buttons[i];
        record.button = new WM_BUTTON(
            0, 0, -1, -1, get_button_style(info.type, count == 1, has_negative_action), info.text,
            nullptr, handle_callback, this, nullptr, BUTTON_EVENT_RELEASE, window, 1, 0);
        record.button->allowed_focus = true;
        record.text = record.button->title;
        record.data1 = info.data1;
        record.data2 = info.data2;
        record.type = info.type;
        record.callback = info.callback;
    }
    const std::int32_t inner_width = WM_DIALOG::contents->width;
    const std::int32_t inner_height = WM_DIALOG::contents->height;
    place_buttons(count, inner_width, inner_height);
    const std::int32_t below =
        count > 0 ? buttons[0].button->height + DIALOG_BACKGROUND_INDEX.get().y_spacing : 0;
    contents = new WM_MANAGER(0, 0, to_short(inner_width),
                              to_short(std::max(inner_height - below, 1)), 1, window);
    contents->type_flags |= WMF_MANAGER;
    WM_DIALOG::add_object(contents, 1);
    for (const BUTTON_RECORD& record : buttons) {
        WM_DIALOG::add_object(record.button, 1);  // does nothing for an unused record
    }
    if (count >= 2) {
        BUTTON_RECORD* const end = buttons.data() + count;
        BUTTON_RECORD* focal = end - 1;
        for (BUTTON_RECORD* record = end; record-- != buttons.data();) {
            if (record->type == DIALOG_BUTTON_POSITIVE_ACTION) {
                focal = record;
                break;
            }
        }
        focal->button->take_focus(1);
    }
}

// All of them stand on the bottom edge.
void DIALOG_BASE::place_buttons(int count, std::int32_t inner_width, std::int32_t inner_height) {
    const std::int32_t spacing = DIALOG_BACKGROUND_INDEX.get().x_spacing;
    const auto place = [&](int number, std::int32_t left) {
        WM_BUTTON& button = *buttons[static_cast<std::size_t>(number)].button;
        button.move(to_short(left), to_short(inner_height - button.height));
    };
    if (count == 1) {
        place(0, (inner_width - buttons[0].button->width) / 2);
        return;
    }
    // From the right, but for the first button of three or four and for help.
    std::int32_t right = inner_width;
    for (int i = count; i-- > 0;) {
        const BUTTON_RECORD& record = buttons[static_cast<std::size_t>(i)];
        const bool at_left = i == 0 && (count > 2 || record.type == DIALOG_BUTTON_HELP);
        right -= spacing + record.button->width;
        place(i, at_left ? spacing : right);
    }
}

// The contents, at least, hide what is behind them. Pieces of the frame count as far as they reach
// into the contents.
bool DIALOG_BASE::is_frame_opaque() const {
    if (!box.are_images_valid()) {
        return dialog_style.bg_colour.alpha() >= COLOUR::alpha_solid_threshold;
    }
    const WM_REGION inner = get_contents_region();
    const std::int32_t left = inner.left - x, top = inner.top - y;
    const std::int32_t right = x + width - 1 - inner.right, bottom = y + height - 1 - inner.bottom;
    struct PIECE {
        const IMAGE* image;
        std::int32_t gap_across, gap_down;
    };
    const PIECE pieces[] = {
        {box.centre, 0, 0},
        {box.left, left, 0},
        {box.right, right, 0},
        {box.top, 0, top},
        {box.bottom, 0, bottom},
        {box.top_left, left, top},
        {box.top_right, right, top},
        {box.bottom_left, left, bottom},
        {box.bottom_right, right, bottom},
    };
    return std::all_of(std::begin(pieces), std::end(pieces), [](const PIECE& piece) {
        return piece.image == nullptr || piece.image->width <= piece.gap_across ||
               piece.image->height <= piece.gap_down || is_opaque(*piece.image);
    });
}

// --- Buttons ---

const DIALOG_BASE::BUTTON_RECORD* DIALOG_BASE::find_record(const WM_SCREEN_OBJECT* button) const {
    for (const BUTTON_RECORD& record : buttons) {
        if (record.button != nullptr && record.button == button) {
            return &record;
        }
    }
    return nullptr;
}

const DIALOG_BASE::BUTTON_RECORD* DIALOG_BASE::find_record(signed char type) const {
    for (const BUTTON_RECORD& record : buttons) {
        if (record.button != nullptr && (record.type == type || type == ANY_TYPE)) {
            return &record;
        }
    }
    return nullptr;
}

WM_BUTTON* DIALOG_BASE::get_button(signed char type) const {
    const BUTTON_RECORD* record = find_record(type);
    return record != nullptr ? record->button : nullptr;
}

int DIALOG_BASE::get_number_of_buttons(signed char type) const {
    return static_cast<int>(
        std::count_if(buttons.begin(), buttons.end(), [type](const BUTTON_RECORD& record) {
            return record.button != nullptr && (record.type == type || type == ANY_TYPE);
        }));
}

void DIALOG_BASE::set_button_text(signed char type, const char* text) {
    for (BUTTON_RECORD& record : buttons) {
        if (record.button != nullptr && record.type == type) {
            record.button->set_string(text != nullptr ? text : "", 0);
            record.text = record.button->title;
        }
    }
}

bool DIALOG_BASE::get_button_enabled(signed char type) const {
    const BUTTON_RECORD* record = find_record(type);
    return record != nullptr && record->button->enabled;
}

void DIALOG_BASE::set_button_enabled(signed char type, unsigned char on) {
    for (const BUTTON_RECORD& record : buttons) {
        if (record.button != nullptr && (record.type == type || type == ANY_TYPE)) {
            record.button->enabled = on != 0;
            record.button->pressed = record.button->pressed && on;
            if (record.button->visible) {
                record.button->request_draw(0, 0);
            }
        }
    }
}

// As the button itself does on a click.
WM_MESG DIALOG_BASE::press(const BUTTON_RECORD& record) {
    WM_BUTTON& button = *record.button;
    return button.enabled ? button.callback(&button, button.callback_data1, button.callback_data2)
                          : WM_MESG_NONE;
}

WM_MESG DIALOG_BASE::call_button_callback(signed char type) {
    for (const BUTTON_RECORD& record : buttons) {
        if (record.button != nullptr && record.type == type && record.button->enabled) {
            return press(record);
        }
    }
    return WM_MESG_NONE;
}

WM_MESG DIALOG_BASE::handle_callback(WM_SCREEN_OBJECT* button, void* dialog, void* /*unused*/) {
    auto& self = *static_cast<DIALOG_BASE*>(dialog);
    const BUTTON_RECORD* found = self.find_record(button);
    if (self.actioned || found == nullptr) {
        return WM_MESG_NONE;
    }
    for (BUTTON_RECORD& record : self.buttons) {
        record.was_enabled = record.button != nullptr && record.button->enabled;
    }
    if (is_action_type(found->type)) {
        for (const signed char type : ACTION_TYPES) {
            self.set_button_enabled(type, 0);
        }
    }
    self.actioned = found->type > 0;
    return found->callback != nullptr ? found->callback(button, found->data1, found->data2)
                                      : WM_MESG_NONE;
}

void DIALOG_BASE::reset_actioned() {
    if (!actioned) {
        return;
    }
    actioned = false;
    for (const BUTTON_RECORD& record : buttons) {
        if (record.button == nullptr) {
            continue;
        }
        record.button->enabled = record.was_enabled;
        record.button->pressed = record.button->pressed && record.was_enabled;
        if (record.button->visible) {
            record.button->request_draw(0, 0);
        }
    }
}

// --- The passes ---

WM_MESG DIALOG_BASE::monitor() {
    active_dialog = this;
    WM_WINDOW_MANAGER* manager = WM_WINDOW_MANAGER::get_instance();
    if (manager == nullptr || !visible) {
        return WM_DIALOG::monitor();
    }
    manager->set_active_dialog(window, this);
    if (manager->is_object_on_focal_window(this)) {
        const BUTTON_RECORD* record = nullptr;
        if (take_key(KEY_ESCAPE)) {
            record = find_record(DIALOG_BUTTON_CANCEL);
            record = record != nullptr ? record : find_record(DIALOG_BUTTON_ACKNOWLEDGE);
        } else if (take_key(KEY_F1)) {
            record = find_record(DIALOG_BUTTON_HELP);
        }
        if (record != nullptr) {
            return press(*record);
        }
    }
    return WM_DIALOG::monitor();
}

WM_MESG DIALOG_BASE::update(unsigned char modal_pass) {
    // Whatever the action led to is over when another dialog has had its turn.
    if (active_dialog != this) {
        reset_actioned();
    }
    return WM_DIALOG::update(modal_pass);
}

// --- Geometry ---

void DIALOG_BASE::resize(std::int16_t new_width, std::int16_t new_height, unsigned char children) {
    const std::int32_t dw = new_width - width, dh = new_height - height;
    WM_DIALOG::resize(new_width, new_height, 0);
    const int count = get_number_of_buttons(ANY_TYPE);
    for (int i = 0; i < count; ++i) {
        WM_BUTTON& button = *buttons[static_cast<std::size_t>(i)].button;
        const std::int32_t dx = count == 1 ? dw / 2 : i == 0 && count > 2 ? 0 : dw;
        button.move(to_short(button.x + dx), to_short(button.y + dh));
    }
    if (dw != 0 || dh != 0) {
        contents->resize(to_short(contents->width + dw), to_short(contents->height + dh), 0);
    }
    if (children) {
        OBJECT_WALK walk(contents->objects, OBJECT_WALK::FORWARD);
        while (WM_SCREEN_OBJECT* object = walk.next()) {
            object->resize(to_short(object->width + dw), to_short(object->height + dh), children);
        }
    }
}

void DIALOG_BASE::add_object(WM_SCREEN_OBJECT* object, unsigned char relative) {
    contents->add_object(object, relative);
}

void DIALOG_BASE::remove_object(WM_SCREEN_OBJECT* object, unsigned char delete_it,
                                unsigned char make_relative) {
    contents->remove_object(object, delete_it, make_relative);
}

bool DIALOG_BASE::is_obscuring(std::int16_t x1, std::int16_t y1, std::int16_t x2, std::int16_t y2) {
    if (!opaque || !visible || alpha != 255 || is_sliding()) {
        return false;
    }
    WM_REGION region;
    region.left = x1;
    region.top = y1;
    region.right = x2;
    region.bottom = y2;
    return get_contents_region().contains(region);
}

void DIALOG_BASE::expand_text_box(TEXT_BOX& text_box, std::int16_t& added_x,
                                  std::int16_t& added_y) {
    static SKIN_CONSTANT DIALOG_AUTO_RESIZE_X_AMOUNT_INDEX = {"DIALOG_AUTO_RESIZE_X_AMOUNT"};
    static SKIN_CONSTANT DIALOG_AUTO_RESIZE_Y_AMOUNT_INDEX = {"DIALOG_AUTO_RESIZE_Y_AMOUNT"};
    const std::int32_t amount_x =
        std::max<std::int32_t>(DIALOG_AUTO_RESIZE_X_AMOUNT_INDEX.get(), 0);
    const std::int32_t amount_y =
        std::max<std::int32_t>(DIALOG_AUTO_RESIZE_Y_AMOUNT_INDEX.get(), 0);
    std::int32_t max_x = 0, max_y = 0;
    get_window_size(max_x, max_y);
    // A dialog as large as the window grows no more, whatever its text.
    max_x = amount_x > 0 ? std::max(max_x - width, 0) : 0;
    max_y = amount_y > 0 ? std::max(max_y - height, 0) : 0;
    const std::int32_t first_width = text_box.get_width(), first_height = text_box.get_height();
    std::int32_t total_x = 0, total_y = 0;
    const auto fits = [&] { return text_box.get_valid() && !text_box.get_scrolling(); };
    const auto grow_by = [&](std::int32_t steps) {
        total_x = std::clamp(total_x + steps * amount_x, 0, max_x);
        total_y = std::clamp(total_y + steps * amount_y, 0, max_y);
        text_box.resize(to_short(first_width + total_x), to_short(first_height + total_y), 0);
    };
    for (std::int32_t step = 64;;) {
        while (!fits() && (total_x < max_x || total_y < max_y)) {
            grow_by(step);
        }
        if (step < 2 || (total_x == 0 && total_y == 0)) {
            break;
        }
        step /= 2;
        while (fits() && (total_x > 0 || total_y > 0)) {
            grow_by(-step);
        }
        step = step > 1 ? step / 2 : step;
    }
    added_x = to_short(total_x);
    added_y = to_short(total_y);
    if (total_x != 0 || total_y != 0) {
        resize(to_short(width + total_x), to_short(height + total_y), 0);
        centre_x();
        centre_y();
    }
}
