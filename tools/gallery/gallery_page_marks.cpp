#include "gallery_page_marks.h"

#include "gallery_camera.h"
#include "modules/gui/gui_skin.h"
#include "modules/winman/style_set.h"
#include "modules/winman/window_manager.h"
#include "modules/winman/wm_animation.h"
#include "modules/winman/wm_button.h"
#include "modules/winman/wm_check_box.h"
#include "modules/winman/wm_image.h"
#include "modules/winman/wm_progress_bar.h"

namespace {

constexpr signed char WINDOW = WM_WINDOW_MANAGER::MAIN_WINDOW;
constexpr std::int32_t FULL = 100;
constexpr std::uint32_t RUN_STEP_MS = 100;

}  // namespace

void GALLERY_PAGE_MARKS::build() {
    const std::int32_t middle = get_inner_width() / 2 + 10;
    build_check_boxes();
    build_images(186);
    build_bars(middle);
    build_animations(middle, 330);
    start_ms = WM_SCREEN_OBJECT::now_ms;
}

void GALLERY_PAGE_MARKS::forget() {
    first_box = nullptr;
    overlaid = nullptr;
    playing = fading = nullptr;
    running = nullptr;
}

// --- Check boxes ---

WM_CHECK_BOX* GALLERY_PAGE_MARKS::add_check_box(std::int32_t y, const char* text, bool checked,
                                                bool enabled) {
    auto* box = new WM_CHECK_BOX(0, to_short(y), style("DIALOG_CHECK_BOX"), text, handle_callback,
                                 to_data(CHECKED), nullptr, WINDOW);
    box->set_checked(checked);
    box->set_enabled(enabled);
    return add(box);
}

void GALLERY_PAGE_MARKS::build_check_boxes() {
    add_heading(0, 0, 300, "Check boxes");
    first_box = add_check_box(30, "Not checked", false, true);
    add_check_box(56, "Checked", true, true);
    add_check_box(82, "Not checked, disabled", false, false);
    add_check_box(108, "Checked, disabled", true, false);
    add_check_box(134, nullptr, true, true);
    add_label(30, 134, 200, "without a label");
}

// --- Pictures ---

WM_IMAGE* GALLERY_PAGE_MARKS::add_image(std::int32_t x, std::int32_t y, std::int32_t width,
                                        std::int32_t height) {
    auto* image =
        new WM_IMAGE(to_short(x), to_short(y), to_short(width), to_short(height), 1,
                     handle_callback, to_data(PICTURE), nullptr, IMAGE_CLICK_ON_RELEASE, WINDOW);
    image->image.copy_pixels_from(*GUI_SKIN::get_image("APP_LOGO"));
    return add(image);
}

void GALLERY_PAGE_MARKS::build_images(std::int32_t y) {
    add_heading(0, y, 300, "Pictures");
    add_image(0, y + 30, -1, -1);
    add_label(0, y + 122, 130, "natural size");
    add_image(146, y + 30, 64, 44);
    add_label(146, y + 78, 90, "reduced");
    add_image(146, y + 108, 260, 60);
    add_label(146, y + 172, 90, "stretched");
    overlaid = add_image(236, y + 30, 96, 66);
    overlaid->overlay_colour = 0x60D98A1Eu;
    overlaid->allowed_focus = true;
    overlaid->set_hint_text("Takes the focus, and tells where it was clicked");
    add_label(346, y + 52, 90, "can be clicked");
}

// --- Progress bars ---

WM_PROGRESS_BAR* GALLERY_PAGE_MARKS::add_bar(std::int32_t x, std::int32_t y, std::int32_t width,
                                             std::int32_t height, const char* label,
                                             std::int32_t pos, std::uint32_t flags) {
    WM_STYLE_SET look = style("DIALOG_PROGRESS_BAR");
    look.flags = flags;
    auto* bar = new WM_PROGRESS_BAR(to_short(x), to_short(y), to_short(width), to_short(height),
                                    label, FULL, look, WINDOW, (flags & STYLE_PB_VERTICAL) != 0);
    bar->set_pos(pos, 0);
    return add(bar);
}

void GALLERY_PAGE_MARKS::build_bars(std::int32_t x) {
    const std::uint32_t bar_only = STYLE_PB_ONLY_DRAW_BAR;
    const std::int32_t width = get_inner_width() - x - 70;
    add_heading(x, 0, 300, "Progress bars");
    add_bar(x, 26, width, 36, nullptr, 0, bar_only);
    add_bar(x, 62, width, 36, nullptr, 37, bar_only);
    add_bar(x, 98, width, 36, nullptr, 100, bar_only);
    add_bar(x, 134, width, 36, nullptr, 62, bar_only)
        ->set_custom_bar_string("Downloading 2 of 3   62% - 812.5 Kb/s", 0);
    add_bar(x, 170, width, 36, nullptr, 45, bar_only | STYLE_PB_POSITION_TEXT_ON_BAR);
    add_bar(x, 206, width, 36, nullptr, 45,
            bar_only | STYLE_PB_POSITION_TEXT_ON_BAR | STYLE_PB_DRAW_ALT_PERCENTAGE);
    running = add_bar(x, 242, width, 36, nullptr, 0, bar_only);
    running->set_custom_bar_string("Running", 0);
    add_bar(x, 278, width, 36, "With a label", 30, 0);
    add_bar(x + width + 14, 30, 20, 240, nullptr, 70, bar_only | STYLE_PB_VERTICAL);
    add_bar(x + width + 44, 30, 20, 240, nullptr, 10, bar_only | STYLE_PB_VERTICAL);
}

// --- Animations ---

void GALLERY_PAGE_MARKS::build_animations(std::int32_t x, std::int32_t y) {
    IMAGE& sheet = *GUI_SKIN::get_image("PLEASE_WAIT_ANIMATION");
    const std::int16_t frames =
        GUI_SKIN::get_constant("MESSAGE_BOX_PLEASE_WAIT_ANIMATION_FRAME_COUNT");
    const std::int16_t delay =
        GUI_SKIN::get_constant("MESSAGE_BOX_PLEASE_WAIT_ANIMATION_FRAME_RATE");
    add_heading(x, y, 300, "Animations");
    playing = add(new WM_ANIMATION(to_short(x), to_short(y + 34), &sheet, frames, delay, 1,
                                   handle_callback, to_data(ANIMATION), nullptr,
                                   ANIMATION_CALLBACK_ON_RELEASE, WINDOW));
    playing->clickable = true;
    playing->set_hint_text("Can be clicked");
    add_plain_button(x + 80, y + 36, 120, "Stop or go on", PLAY);
    fading = add(new WM_ANIMATION(to_short(x), to_short(y + 84), &sheet, frames, delay, 1, nullptr,
                                  nullptr, nullptr, ANIMATION_CALLBACK_ON_BOTH, WINDOW));
    fading->alpha = 96;
    add_plain_button(x + 80, y + 86, 120, "Fade", FADE);
}

// --- What happens ---

void GALLERY_PAGE_MARKS::work() {
    if (running != nullptr) {
        const std::uint32_t steps = (WM_SCREEN_OBJECT::now_ms - start_ms) / RUN_STEP_MS;
        running->set_pos(static_cast<std::int32_t>(steps % (FULL + 1)), 0);
    }
}

WM_MESG GALLERY_PAGE_MARKS::act(WM_SCREEN_OBJECT& object, std::int32_t command) {
    switch (command) {
        case CHECKED:
            report(static_cast<WM_CHECK_BOX&>(object).checked ? "Checked" : "Not checked any more");
            break;
        case PICTURE: {
            const auto& image = static_cast<WM_IMAGE&>(object);
            report("Clicked at " + std::to_string(image.click_x) + ", " +
                   std::to_string(image.click_y));
            break;
        }
        case ANIMATION:
            report("The animation was clicked");
            break;
        case PLAY:
            playing->playing = !playing->playing;
            break;
        case FADE:
            (fading->alpha > 128 ? fading->fading_out : fading->fading_in) = true;
            break;
        default:
            break;
    }
    return WM_MESG_NONE;
}

void GALLERY_PAGE_MARKS::take_pictures(GALLERY_CAMERA& camera) {
    camera.click(*first_box->label);
    camera.leave();
    camera.take("focus");
    camera.click(*overlaid);
    camera.wait(700);
    camera.take("picture");
}
