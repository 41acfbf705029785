#include "gallery_page_dialogs.h"

#include <iterator>

#include "gallery_camera.h"
#include "modules/gui/message_box.h"
#include "modules/gui/text_box.h"
#include "modules/winman/page_manager.h"
#include "modules/winman/style_set.h"
#include "modules/winman/window_manager.h"
#include "modules/winman/wm_button.h"
#include "modules/winman/wm_check_box.h"
#include "modules/winman/wm_script.h"

namespace {

constexpr signed char WINDOW = WM_WINDOW_MANAGER::MAIN_WINDOW;
constexpr std::int32_t BUTTON_WIDTH = 210, STEP = 40;

const char* const TITLES[] = {
    "",
    "Message",
    "Question",
    "Warning",
    "Error",
    "Four buttons",
    "Do not show this again",
    "Please wait",
    "Long text",
    "With controls",
    "Fades",
    "Slides from above",
    "Slides in from the edge",
    "Translucent while dragged",
};

constexpr const char* LONG_MESSAGE =
    "A message box grows until its text fits. <:style_on#bold>Its text has tags<:style_off#bold>, "
    "as every text box has, so that what matters can stand out, and <links:url#www.tessarine."
    "example/support> can lead on.\n\nThis one says rather more than a message box should, to show "
    "how far that goes: whoever has read up to here is the exception, and everybody else presses "
    "the button that stands out.\n\n1. <:fix_indent#>The first thing to be known.<:unfix_indent#>\n"
    "2. <:fix_indent#>The second one, which takes so many words that it goes on in another "
    "line.<:unfix_indent#>";

}  // namespace

void GALLERY_PAGE_DIALOGS::build() {
    build_buttons(0, "Message boxes", PLAIN, LONG_TEXT);
    build_buttons(BUTTON_WIDTH + 30, "Dialogs", CONTROLS, TRANSLUCENT);
    build_settings(2 * (BUTTON_WIDTH + 30));
}

void GALLERY_PAGE_DIALOGS::forget() {
}

void GALLERY_PAGE_DIALOGS::build_buttons(std::int32_t x, const char* heading, std::int32_t first,
                                         std::int32_t last) {
    add_heading(x, 0, BUTTON_WIDTH, heading);
    for (std::int32_t command = first; command <= last; ++command) {
        add_plain_button(x, 30 + (command - first) * STEP, BUTTON_WIDTH, TITLES[command], command);
    }
}

void GALLERY_PAGE_DIALOGS::build_settings(std::int32_t x) {
    const struct {
        const char* text;
        std::int32_t command;
        bool on;
    } settings[] = {
        {"Drag an outline", DRAG_OUTLINE, !WM_DIALOG::drag_contents},
        {"Darken what is behind", DARKEN, WM_DIALOG::darken_background},
        {"Grey what is behind", GREY, WM_DIALOG::grey_background},
    };
    add_heading(x, 0, 300, "Settings");
    std::int32_t y = 34;
    for (const auto& [text, command, on] : settings) {
        auto* box = add(new WM_CHECK_BOX(to_short(x), to_short(y), style("DIALOG_CHECK_BOX"), text,
                                         handle_callback, to_data(command), nullptr, WINDOW));
        box->set_checked(on);
        y += 28;
    }
}

// --- Dialogs ---

DIALOG_BASE* GALLERY_PAGE_DIALOGS::make(std::int32_t command) {
    const auto answer = to_data(ANSWER);
    const char* const title = TITLES[command];
    switch (command) {
        case CONFIRM:
            return new MESSAGE_BOX(title,
                                   "Are you sure that you wish to cancel the download? It will "
                                   "resume next time you start the application",
                                   0, DIALOG_KIND_CONFIRM, "Yes", answer, nullptr,
                                   DIALOG_BUTTON_POSITIVE_ACTION, "No", answer, nullptr,
                                   DIALOG_BUTTON_CANCEL, handle_callback, handle_callback, WINDOW);
        case WARNING:
            return new MESSAGE_BOX(title, "The squad has no second keeper.", 0, DIALOG_KIND_WARNING,
                                   "Go on", answer, nullptr, DIALOG_BUTTON_OTHER_ACTION, "Back",
                                   answer, nullptr, DIALOG_BUTTON_CANCEL, "Help", answer, nullptr,
                                   DIALOG_BUTTON_HELP, handle_callback, nullptr, nullptr, WINDOW);
        case ERROR:
            return new MESSAGE_BOX(title, "The disk is full.", 0, DIALOG_KIND_ERROR, "Ok", answer,
                                   nullptr, DIALOG_BUTTON_ACKNOWLEDGE, handle_callback, WINDOW);
        case FOUR_BUTTONS:
            return new MESSAGE_BOX(
                title, "A sequence of pages has a way back.", 0, DIALOG_KIND_PLAIN, "Help", answer,
                nullptr, DIALOG_BUTTON_HELP, "Back", answer, nullptr, DIALOG_BUTTON_BACK, "Next",
                answer, nullptr, DIALOG_BUTTON_NEXT, "Cancel", answer, nullptr,
                DIALOG_BUTTON_CANCEL, handle_callback, nullptr, nullptr, nullptr, WINDOW);
        case DO_NOT_SHOW:
            return new MESSAGE_BOX("A hint", "Right clicks on a name open its menu.",
                                   MESSAGE_BOX_DO_NOT_SHOW_AGAIN, DIALOG_KIND_PLAIN, "Ok", answer,
                                   nullptr, DIALOG_BUTTON_ACKNOWLEDGE, handle_callback, WINDOW);
        case PLEASE_WAIT:
            return new MESSAGE_BOX(title, "The fixtures are being drawn.", MESSAGE_BOX_PLEASE_WAIT,
                                   DIALOG_KIND_PLAIN, "Cancel", answer, nullptr,
                                   DIALOG_BUTTON_CANCEL, handle_callback, WINDOW);
        case LONG_TEXT:
            return new MESSAGE_BOX(title, LONG_MESSAGE, 0, DIALOG_KIND_CONFIRM, "Ok", answer,
                                   nullptr, DIALOG_BUTTON_ACKNOWLEDGE, handle_callback, WINDOW);
        case CONTROLS:
            return make_with_controls();
        default:
            return new MESSAGE_BOX(title, "A message box that can be dragged by its title.", 0,
                                   DIALOG_KIND_PLAIN, "Ok", answer, nullptr,
                                   DIALOG_BUTTON_ACKNOWLEDGE, handle_callback, WINDOW);
    }
}

DIALOG_BASE* GALLERY_PAGE_DIALOGS::make_with_controls() {
    const auto answer = to_data(ANSWER);
    auto* dialog = new DIALOG_BASE(-1, -1, 460, 260, TITLES[CONTROLS], 0, DIALOG_KIND_PLAIN, "Save",
                                   answer, nullptr, DIALOG_BUTTON_POSITIVE_ACTION, "Cancel", answer,
                                   nullptr, DIALOG_BUTTON_CANCEL, handle_callback, nullptr, WINDOW);
    // As far as the buttons below.
    const std::int32_t width = dialog->contents->get_width() - style("DIALOG_BACKGROUND").x_spacing;
    dialog->add_object(new WM_SCRIPT(0, 6, 79, 33, style("DIALOG_LABEL"), "Name", WINDOW), 1);
    dialog->add_object(
        new TEXT_BOX(90, 6, to_short(width - 1), 33, "Northgate", -1, nullptr,
                     TBF_SELECTABLE | TBF_EDITABLE, "", nullptr, nullptr, nullptr, WINDOW),
        1);
    dialog->add_object(new WM_CHECK_BOX(90, 46, style("DIALOG_CHECK_BOX"), "Plays at home", nullptr,
                                        nullptr, nullptr, WINDOW),
                       1);
    return dialog;
}

DIALOG_BASE* GALLERY_PAGE_DIALOGS::open(std::int32_t command) {
    DIALOG_BASE* dialog = make(command);
    const auto set_effect = [dialog](int flags, std::uint32_t time) {
        dialog->effect.flags = static_cast<std::uint16_t>(flags);
        dialog->effect.time = time;
        dialog->clear();
    };
    switch (command) {
        case FADE:
            set_effect(EFFECT_FADE_IN | EFFECT_FADE_OUT, 600);
            break;
        case SLIDE:
            set_effect(EFFECT_SLIDE_IN | EFFECT_SLIDE_OUT | EFFECT_SLIDE_ABOVE | EFFECT_FADE_IN |
                           EFFECT_FADE_OUT,
                       600);
            break;
        case SLIDE_FROM_EDGE:
            set_effect(
                EFFECT_SLIDE_IN | EFFECT_SLIDE_OUT | EFFECT_SLIDE_LEFT | EFFECT_SLIDE_FROM_EDGE,
                600);
            break;
        case TRANSLUCENT:
            dialog->effect.flags |= EFFECT_DIM | EFFECT_BRIGHTEN;
            dialog->effect.drag_alpha = 128;
            dialog->effect.reshade_time = 200;
            break;
        default:
            break;
    }
    page_manager->get_current_area()->add_modal_object(dialog, 0);
    return dialog;
}

WM_MESG GALLERY_PAGE_DIALOGS::act(WM_SCREEN_OBJECT& object, std::int32_t command) {
    switch (command) {
        case ANSWER:
            report(std::string("\"") + static_cast<WM_BUTTON&>(object).get_title_text() +
                   "\" was the answer");
            return WM_MESG_CLOSE_MODAL_DIALOGS;
        case DRAG_OUTLINE:
            WM_DIALOG::drag_contents = !static_cast<WM_CHECK_BOX&>(object).checked;
            return WM_MESG_NONE;
        case DARKEN:
            WM_DIALOG::darken_background = static_cast<WM_CHECK_BOX&>(object).checked;
            return WM_MESG_NONE;
        case GREY:
            WM_DIALOG::grey_background = static_cast<WM_CHECK_BOX&>(object).checked;
            return WM_MESG_NONE;
        default:
            open(command);
            return WM_MESG_NONE;
    }
}

// --- Pictures ---

void GALLERY_PAGE_DIALOGS::take_message(GALLERY_CAMERA& camera, std::int32_t command,
                                        const char* state) {
    open(command);
    camera.wait(400);
    camera.take(state);
    page_manager->close_modal_dialogs();
    camera.wait(400);
}

void GALLERY_PAGE_DIALOGS::take_pictures(GALLERY_CAMERA& camera) {
    const struct {
        std::int32_t command;
        const char* state;
    } messages[] = {
        {PLAIN, "message"},    {CONFIRM, "question"},  {WARNING, "warning"},
        {ERROR, "error"},      {FOUR_BUTTONS, "four"}, {DO_NOT_SHOW, "do_not_show"},
        {PLEASE_WAIT, "wait"}, {LONG_TEXT, "long"},    {CONTROLS, "controls"},
    };
    for (const auto& [command, state] : messages) {
        take_message(camera, command, state);
    }
    open(FADE);
    camera.wait(300);
    camera.take("fade");
    camera.wait(400);
    page_manager->close_modal_dialogs();
    camera.wait(700);

    open(SLIDE);
    camera.wait(300);
    camera.take("slide");
    camera.wait(400);
    page_manager->close_modal_dialogs();
    camera.wait(700);

    DIALOG_BASE* dialog = open(TRANSLUCENT);
    camera.wait(300);
    camera.move_to(*dialog, 100, 36);
    camera.press();
    camera.move(dialog->x + 40, dialog->y + 90);
    camera.wait(400);
    camera.take("drag");
    camera.release();
    page_manager->close_modal_dialogs();
    camera.wait(400);

    WM_DIALOG::darken_background = true;
    take_message(camera, CONFIRM, "darkened");
    WM_DIALOG::darken_background = false;
}
