// The links in the launcher's texts.
#include <strings.h>

#include "launcher/launcher.h"
#include "modules/gui/gui_skin.h"
#include "modules/gui/text_box.h"
#include "modules/gui/text_box_link.h"
#include "platform/process_tools.h"

namespace {

constexpr std::intptr_t OPEN_ADDRESS = 1;

}  // namespace

WM_SCREEN_OBJECT* LAUNCHER::create_text_box_tag_object_callback(
    TEXT_BOX& /*box*/, const char* style_prefix, TEXT_BOX_TAG& tag, const char* word,
    COLOUR& colours, signed char /*style*/, std::int16_t /*font_x_delta*/,
    std::int16_t /*font_y_delta*/, unsigned char enabled, signed char window) {
    static std::int32_t TEXT_BOX_BUTTON_INDEX = -1;
    const bool is_link = ::strcasecmp(tag.type, "url") == 0;
    auto* button = new TEXT_BOX_LINK(
        GUI_SKIN::get_style_set("TEXT_BOX_BUTTON", style_prefix, &TEXT_BOX_BUTTON_INDEX), word,
        nullptr, is_link ? handle_tag_callback : nullptr,
        is_link ? reinterpret_cast<void*>(OPEN_ADDRESS) : nullptr, is_link ? &tag : nullptr,
        window);
    if (colours != COLOUR_INVISIBLE) {
        button->text = colours;
        button->highlight_text = colours.with_alpha(button->highlight_text.alpha());
        button->mouse_over_text = colours.with_alpha(button->mouse_over_text.alpha());
    }
    button->enabled = enabled != 0;
    return button;
}

WM_MESG LAUNCHER::handle_tag_callback(WM_SCREEN_OBJECT* /*object*/, void* value, void* tag) {
    if (reinterpret_cast<std::intptr_t>(value) == OPEN_ADDRESS && tag != nullptr) {
        open_url_in_default_browser(static_cast<const TEXT_BOX_TAG*>(tag)->value);
    }
    return WM_MESG_NONE;
}
