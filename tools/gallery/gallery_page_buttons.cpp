#include "gallery_page_buttons.h"

#include <iterator>

#include "gallery_camera.h"
#include "modules/winman/style_set.h"
#include "modules/winman/window_manager.h"
#include "modules/winman/wm_button.h"
#include "modules/winman/wm_script.h"

namespace {

constexpr signed char WINDOW = WM_WINDOW_MANAGER::MAIN_WINDOW;
constexpr std::int32_t NAME_WIDTH = 72, LOOK_WIDTH = 82, LOOK_GAP = 2;
constexpr std::int32_t ROW_HEIGHT = 35;
constexpr std::int32_t LIVE_COLUMNS = 5, LIVE_GAP = 10;

// A button that keeps the look that it was given.
class STILL_BUTTON : public WM_BUTTON {
public:
    using WM_BUTTON::WM_BUTTON;

    WM_MESG monitor() override { return WM_MESG_NONE; }
    WM_MESG update(unsigned char /*modal_pass*/) override { return WM_MESG_NONE; }
    bool can_have_focus() override { return false; }
};

WM_MESG do_nothing(WM_SCREEN_OBJECT*, void*, void*) {
    return WM_MESG_NONE;
}

const struct {
    const char* name;
    void (*apply)(WM_BUTTON& button);
} LOOKS[] = {
    {"Normal", [](WM_BUTTON&) {}},
    {"Over", [](WM_BUTTON& button) { button.mouse_over_now = true; }},
    {"Down",
     [](WM_BUTTON& button) {
         button.button_flags |= BUTTON_OWNER_SHADING;
         button.shading_flags |= BUTTON_SHADING_PRESSED;
     }},
    {"Pressed", [](WM_BUTTON& button) { button.pressed = true; }},
    {"Disabled", [](WM_BUTTON& button) { button.enabled = false; }},
    {"Active", [](WM_BUTTON& button) { button.activated = true; }},
    {"Active over", [](WM_BUTTON& button) { button.activated = button.mouse_over_now = true; }},
    {"Active down",
     [](WM_BUTTON& button) {
         button.activated = true;
         button.button_flags |= BUTTON_OWNER_SHADING;
         button.shading_flags |= BUTTON_SHADING_PRESSED;
     }},
    {"Active off",
     [](WM_BUTTON& button) {
         button.activated = true;
         button.enabled = false;
     }},
    {"Blinking", [](WM_BUTTON& button) { button.flashing = true; }},
};

// The looks that come from colours, where a style has no pictures.
void make_colour_style(WM_STYLE_SET& look) {
    look.set_image_base_string(nullptr);
    look.clear_runtime_cache();
    look.bg_colour = 0xFF7C8CA0;
    look.fg_colour = COLOUR_WHITE;
    look.highlight_colour = 0xFF41506A;
    look.mouse_over_colour = 0xFF93A5BC;
    look.active_colour = 0xFF2F7D6B;
    look.active_text_colour = 0xFFE6FFF6;
    look.flashing_colour = 0xFFC2482E;
    look.flashing_text_colour = 0xFFFFF0C0;
}

}  // namespace

void GALLERY_PAGE_BUTTONS::build() {
    build_looks(0);
    const std::int32_t live = 20 + ROW_HEIGHT * 7 + 6;
    add_heading(0, live, 300, "To be tried");
    build_live(live + 28);
    build_icons(live + 28 + 42);
    build_arrows(live + 28 + 42 * 2 + 16);
    build_drawing(live + 28 + 42 * 3 + 16);
}

void GALLERY_PAGE_BUTTONS::forget() {
    presses = 0;
    press_button = drag_button = drop_button = icon_button = nullptr;
}

// --- Looks ---

void GALLERY_PAGE_BUTTONS::build_looks(std::int32_t y) {
    std::int32_t x = NAME_WIDTH;
    for (const auto& look : LOOKS) {
        WM_SCRIPT* label = add_label(x, y, LOOK_WIDTH, look.name);
        label->script_flags &= ~static_cast<std::uint32_t>(SCRIPT_LEFT_JUSTIFY_TEXT);
        x += LOOK_WIDTH + LOOK_GAP;
    }
    WM_STYLE_SET colours = style("DIALOG_BUTTON_NORMAL");
    make_colour_style(colours);
    y += 20;
    add_looks(y, -1, "Plain", style("DIALOG_BUTTON_NORMAL"), "Button");
    add_looks(y + ROW_HEIGHT, -1, "Main", style("DIALOG_BUTTON_POSITIVE_ACTION"), "Button");
    add_looks(y + ROW_HEIGHT * 2, -1, "Menu item", style("FLOATING_MENU_ITEM"), "Item");
    add_looks(y + ROW_HEIGHT * 3, -1, "Tab", style("PANEL_FRAME_TAB_MID"), "Tab");
    add_looks(y + ROW_HEIGHT * 4, -1, "Sub-tab", style("PANEL_FRAME_SUB_MID"), "Sub-tab");
    add_looks(y + ROW_HEIGHT * 5, -1, "Link", style("TEXT_BOX_BUTTON"), "A link");
    add_looks(y + ROW_HEIGHT * 6, 28, "Colours", colours, "Button");
}

void GALLERY_PAGE_BUTTONS::add_looks(std::int32_t y, std::int32_t height, const char* name,
                                     const WM_STYLE_SET& look, const char* text) {
    add_label(0, y + 7, NAME_WIDTH, name);
    std::int32_t x = NAME_WIDTH;
    for (const auto& state : LOOKS) {
        auto* button =
            add(new STILL_BUTTON(to_short(x), to_short(y), to_short(x + LOOK_WIDTH - 1),
                                 to_short(height < 0 ? -1 : y + height - 1), look, text, nullptr,
                                 do_nothing, nullptr, nullptr, BUTTON_EVENT_RELEASE, WINDOW, 1, 0));
        button->move(button->x, to_short(button->y + (ROW_HEIGHT - button->height) / 2));
        state.apply(*button);
        x += LOOK_WIDTH + LOOK_GAP;
    }
}

// --- Buttons that work ---

WM_BUTTON* GALLERY_PAGE_BUTTONS::add_live(std::int32_t column, std::int32_t y, const char* text,
                                          const char* hint) {
    const std::int32_t width = (get_inner_width() - LIVE_GAP * (LIVE_COLUMNS - 1)) / LIVE_COLUMNS;
    return add_button(column * (width + LIVE_GAP), y, width, -1, style("DIALOG_BUTTON_NORMAL"),
                      text, hint, PRESSED);
}

void GALLERY_PAGE_BUTTONS::build_live(std::int32_t y) {
    press_button = add_live(0, y, "Press", "Counts how often it was pressed");
    WM_BUTTON* hover = add_live(1, y, "Highlights on hover", nullptr);
    hover->button_type = BUTTON_TYPE_HOVER_HIGHLIGHT;
    WM_BUTTON* fire = add_live(2, y, "Fires on hover", nullptr);
    fire->button_type = BUTTON_TYPE_HOVER_FIRE;
    fire->callback_flags = BUTTON_EVENT_PRESS | BUTTON_EVENT_RELEASE;
    fire->callback_data1 = to_data(HOVERED);
    WM_BUTTON* repeat = add_live(3, y, "Repeats while held", nullptr);
    repeat->callback_flags = BUTTON_EVENT_PRESS | BUTTON_EVENT_REPEAT;
    repeat->callback_data1 = to_data(REPEATED);
    WM_BUTTON* blinks = add_live(4, y, "Blinks", nullptr);
    blinks->flash_text.set(blinks->flash_text.value, "Blinks!");
    blinks->flashing_text = 0xFFC2482E;
}

void GALLERY_PAGE_BUTTONS::build_icons(std::int32_t y) {
    const struct {
        const char* text;
        std::uint32_t flags;
        std::int32_t height;
    } buttons[] = {
        {"Icon left", BUTTON_ICON_LEFT, 32},
        {"Icon right", BUTTON_ICON_RIGHT, 32},
        {"Beside the text", BUTTON_ICON_LEFT | BUTTON_ICON_ATTACH_TO_TEXT, 32},
        {"Above", BUTTON_ICON_TOP, 50},
        {"Below", BUTTON_ICON_BOTTOM, 50},
    };
    WM_STYLE_SET look = style("PANEL_BACKGROUND_EXTENDED");  // stretches in both directions
    look.border_left_gap = look.border_right_gap = 30;
    look.border_top_gap = look.border_bottom_gap = 6;
    const std::int32_t width = (get_inner_width() - LIVE_GAP * (LIVE_COLUMNS - 1)) / LIVE_COLUMNS;
    for (std::int32_t i = 0; i < LIVE_COLUMNS; ++i) {
        const auto& [text, flags, height] = buttons[i];
        WM_BUTTON* button =
            add_button(i * (width + LIVE_GAP), y, width, height, look, text, nullptr, PRESSED);
        button->button_flags |= flags;
        if (height > 32) {
            (flags & BUTTON_ICON_TOP ? button->top_gap : button->bottom_gap) = 24;
        }
        get_icon(button->icon, 22, 15);
        button->set_icon_hint_text("The icon has a hint of its own");
        icon_button = i == 0 ? button : icon_button;
    }
}

void GALLERY_PAGE_BUTTONS::build_arrows(std::int32_t y) {
    const struct {
        const char* text;
        std::uint32_t flags;
        bool enabled;
    } buttons[] = {
        {"Left arrow", BUTTON_LEFT_ARROW, true},      {"Right arrow", BUTTON_RIGHT_ARROW, true},
        {"Up arrow", BUTTON_UP_ARROW, true},          {"Down arrow", BUTTON_DOWN_ARROW, true},
        {"Disabled arrow", BUTTON_DOWN_ARROW, false},
    };
    std::int32_t column = 0;
    for (const auto& [text, flags, enabled] : buttons) {
        WM_BUTTON* button = add_live(column++, y, text, nullptr);
        button->button_flags |= flags;
        button->enabled = enabled;
    }
}

void GALLERY_PAGE_BUTTONS::build_drawing(std::int32_t y) {
    WM_STYLE_SET look = style("DIALOG_BUTTON_NORMAL");
    make_colour_style(look);
    look.fading_colour = 0xFFD9A441;
    const std::int32_t width = (get_inner_width() - LIVE_GAP * (LIVE_COLUMNS - 1)) / LIVE_COLUMNS;
    const std::int32_t step = width + LIVE_GAP;
    add_button(0, y, width, 30, look, "Horizontal fade", nullptr, PRESSED)->button_flags |=
        BUTTON_HFADED_BACKGROUND | BUTTON_SHADOW_TEXT;
    add_button(step, y, width, 30, look, "Vertical fade", nullptr, PRESSED)->button_flags |=
        BUTTON_VFADED_BACKGROUND | BUTTON_INSET_TEXT;
    add_live(2, y, "A text that is too long for its button", nullptr);
    drag_button = add_live(3, y, "Drag me", nullptr);
    drag_button->drag_callback = drag_callback;
    drag_button->drag_data1 = this;
    drag_button->drag_flags =
        BUTTON_DRAG_STARTED | BUTTON_DROPPED_ON_OTHER | BUTTON_DROPPED_ON_ITSELF;
    drop_button = add_live(4, y, "Drop it here", nullptr);
}

// --- What they report ---

WM_MESG GALLERY_PAGE_BUTTONS::act(WM_SCREEN_OBJECT& object, std::int32_t command) {
    auto& button = static_cast<WM_BUTTON&>(object);
    ++presses;
    const char* what = command == REPEATED  ? " repeats, "
                       : command == HOVERED ? " was crossed, "
                                            : " was pressed, ";
    report(std::string("\"") + button.get_title_text() + "\"" + what + std::to_string(presses) +
           " events so far");
    return WM_MESG_NONE;
}

WM_MESG GALLERY_PAGE_BUTTONS::drag_callback(WM_SCREEN_OBJECT* /*self*/, WM_SCREEN_OBJECT* target,
                                            std::int16_t x, std::int16_t y, std::uint32_t event,
                                            void* page, void* /*unused*/) {
    auto& on = *static_cast<GALLERY_PAGE_BUTTONS*>(page);
    const std::string place = " at " + std::to_string(x) + ", " + std::to_string(y);
    on.report(event == BUTTON_DRAG_STARTED ? "A drag began" + place
              : target == on.drop_button   ? "Dropped on its target" + place
                                           : "Dropped elsewhere" + place);
    return WM_MESG_NONE;
}

void GALLERY_PAGE_BUTTONS::take_pictures(GALLERY_CAMERA& camera) {
    camera.move_to(*press_button);
    camera.wait(700);
    camera.take("hint");
    camera.press();
    camera.take("pressed");
    camera.release();
    camera.leave();
    camera.take("focus");

    camera.move_to(*drag_button);
    camera.press();
    camera.move(drop_button->x + 20, drop_button->y - 20);
    camera.take("drag");
    camera.move_to(*drop_button);
    camera.release();
}
