#include "launcher/error_page.h"

#include "launcher/launcher.h"
#include "launcher/page_texts.h"
#include "modules/gui/gui_skin.h"
#include "modules/gui/text_box.h"
#include "modules/winman/style_set.h"
#include "modules/winman/window_manager.h"
#include "modules/winman/wm_button.h"
#include "platform/keyboard.h"

namespace {

constexpr signed char WINDOW = WM_WINDOW_MANAGER::MAIN_WINDOW;

std::int16_t to_short(std::int32_t value) {
    return static_cast<std::int16_t>(value);
}

}  // namespace

ERROR_PAGE::ERROR_PAGE(WM_PAGE_MANAGER& manager, AUTOPATCH_ERROR_CODE code) : error_code(code) {
    setup(-1, manager, 0, 1, 0);
}

void ERROR_PAGE::create(WM_PAGE_MANAGER& /*manager*/) {
    static std::int16_t DIALOG_DEFAULT_CONTROL_HEIGHT_INDEX = -1;
    static std::int32_t DIALOG_BACKGROUND_INDEX = -1, DIALOG_BUTTON_ACKNOWLEDGE_INDEX = -1;
    LAUNCHER::setup_background();
    const std::int16_t control_height = GUI_SKIN::get_constant(
        "DIALOG_DEFAULT_CONTROL_HEIGHT", nullptr, &DIALOG_DEFAULT_CONTROL_HEIGHT_INDEX);
    const WM_STYLE_SET& background =
        GUI_SKIN::get_style_set("DIALOG_BACKGROUND", nullptr, &DIALOG_BACKGROUND_INDEX);
    const std::int32_t left = background.get_object_left_gap();
    const std::int32_t top = background.get_object_top_gap();
    const std::int32_t right = get_width() - background.get_object_right_gap() - 1;
    const std::int32_t text_height = get_height() - 2 * control_height;

    const std::string text = make_error_text(error_code);
    add_object(new TEXT_BOX(to_short(left), to_short(top), to_short(right),
                            to_short(top + text_height - 1), text.c_str(), -1, nullptr,
                            TBF_MULTI_LINE | TBF_FIXED_SIZE, "DIALOG_MESSAGE", nullptr, nullptr,
                            nullptr, WINDOW),
               0);

    auto* ok = new WM_BUTTON(0, 0, -1, -1,
                             GUI_SKIN::get_style_set("DIALOG_BUTTON_ACKNOWLEDGE", nullptr,
                                                     &DIALOG_BUTTON_ACKNOWLEDGE_INDEX),
                             "Ok", nullptr, handle_callback, nullptr, nullptr, BUTTON_EVENT_RELEASE,
                             WINDOW, 1, 0);
    ok->move(to_short((get_width() - ok->width) / 2),
             to_short(get_height() - control_height - ok->height / 2));
    add_object(ok, 0);
    ok->take_focus(0);
}

WM_MESG ERROR_PAGE::handle(WM_SCREEN_OBJECT* /*object*/, void* /*value*/, void* /*unused*/) {
    return WM_MESG_QUIT;
}

WM_MESG ERROR_PAGE::monitor() {
    KEYBOARD keyboard;
    if (keyboard.peek_code() != KEY_ESCAPE ||
        WM_WINDOW_MANAGER::get_instance()->get_focal_window() != WINDOW) {
        return WM_MESG_NONE;
    }
    keyboard.get_code();
    return WM_MESG_QUIT;
}
