#include "gallery_page_fields.h"

#include "gallery_camera.h"
#include "kvcore/text_field.h"
#include "modules/gui/text_box.h"

namespace {

constexpr std::uint32_t FIELD =
    TBF_SELECTABLE | TBF_EDITABLE | TBF_NOTIFY_CHANGE | TBF_RETURN_FIRES | TBF_POPUP_MENU;
constexpr std::int32_t LABEL_WIDTH = 130, FIELD_WIDTH = 290, FIELD_HEIGHT = 28, STEP = 38;

}  // namespace

TEXT_BOX* GALLERY_PAGE_FIELDS::add_field(std::int32_t y, const char* label, const char* text,
                                         std::int32_t max_length, const char* valid_chars,
                                         std::uint32_t flags) {
    add_label(0, y + 4, LABEL_WIDTH, label);
    return add_text_box(LABEL_WIDTH, y, FIELD_WIDTH, FIELD_HEIGHT, text, max_length, valid_chars,
                        flags, CHANGED);
}

void GALLERY_PAGE_FIELDS::build() {
    TEXT_BOX_SUBSTITUTION substitution;
    KVCORE::copy_text_field(substitution.from, "(c)");
    KVCORE::copy_text_field(substitution.to, "\xA9");
    TEXT_BOX::add_substitution(substitution);

    add_heading(0, 0, 300, "One line");
    std::int32_t y = 28;
    name_field = add_field(y, "Text", "Northgate", -1, nullptr, FIELD);
    password_field = add_field(y += STEP, "Password", "secret", -1, nullptr, FIELD | TBF_PASSWORD);
    add_field(y += STEP, "Digits only", "1907", 8, "0123456789", FIELD);
    add_field(y += STEP, "At most 12", "12 letters", 12, nullptr, FIELD | TBF_HARD_LIMIT);
    add_field(y += STEP, "Default text", "", -1, nullptr, FIELD)
        ->set_default_text("<:style_on#faded>Search for a player");
    add_field(y += STEP, "With a prefix", "tessarine.example", -1, nullptr, FIELD)
        ->set_prefix_text("www.");
    add_field(y += STEP, "Click selects all", "All of it", -1, nullptr,
              FIELD | TBF_CLICK_SELECTS_ALL);
    add_field(y += STEP, "(c) becomes \xA9", "", -1, nullptr, FIELD | TBF_SUBSTITUTIONS);
    add_field(y += STEP, "Longer than the box",
              "A text that goes on and on, well beyond the edge of the field that it is in", -1,
              nullptr, FIELD);
    add_field(y += STEP, "Read only", "Can be selected and copied", -1, nullptr,
              TBF_SELECTABLE | TBF_POPUP_MENU);
    add_field(y += STEP, "Disabled", "Nothing to be done", -1, nullptr, FIELD)->set_enabled(0);

    const std::int32_t x = LABEL_WIDTH + FIELD_WIDTH + 24, width = get_inner_width() - x;
    add_heading(x, 0, 300, "Several lines");
    editor = add_text_box(
        x, 28, width, 216,
        "The editor wraps its lines, and holds as many as are typed.\n\n"
        "Control with Z undoes, and with Shift redoes; X, C and V cut, copy and paste; A selects "
        "all. A right click opens the same as a menu.\n\n"
        "Double clicks select words, and Control with an arrow key goes from word to word.",
        4000, nullptr,
        TBF_MULTI_LINE | TBF_SELECTABLE | TBF_EDITABLE | TBF_NOTIFY_CHANGE | TBF_POPUP_MENU |
            TBF_NO_TAGS | TBF_LEADING_SPACE,
        CHANGED);
    limited = add_text_box(x, 256, width, 110, "Counts what is left.", 120, nullptr,
                           TBF_MULTI_LINE | TBF_SELECTABLE | TBF_EDITABLE | TBF_NOTIFY_CHANGE |
                               TBF_SHOW_REMAINING | TBF_HARD_LIMIT | TBF_POPUP_MENU,
                           CHANGED);
    add_text_box(x, 378, width, 60, "Several lines to read,\nwhich can be selected.", -1, nullptr,
                 TBF_MULTI_LINE | TBF_SELECTABLE | TBF_POPUP_MENU, 0);
}

void GALLERY_PAGE_FIELDS::forget() {
    name_field = password_field = editor = limited = nullptr;
}

WM_MESG GALLERY_PAGE_FIELDS::act(WM_SCREEN_OBJECT& object, std::int32_t /*command*/) {
    const auto& box = static_cast<TEXT_BOX&>(object);
    const std::string text = box.get_text();
    if (box.return_pressed) {
        report("Return was pressed");
    } else if (box.flags & TBF_PASSWORD) {
        report("The password has " + std::to_string(text.size()) + " characters");
    } else {
        report("The text is \"" + text.substr(0, 80) + "\"");
    }
    return WM_MESG_NONE;
}

void GALLERY_PAGE_FIELDS::take_pictures(GALLERY_CAMERA& camera) {
    camera.move_to(*name_field, name_field->width - 10, name_field->height / 2);
    camera.press();
    camera.release();
    camera.leave();
    camera.take("focus");
    camera.type(" United");
    camera.take("typed");
    camera.key(KEY_HOME, KEYBOARD_MODIFIER_SHIFT);
    camera.take("selected");

    camera.move_to(*limited, 20, 20);
    camera.press();
    camera.release();
    camera.leave();
    camera.type(
        " Up to one hundred and twenty characters may be typed here, and not one more than"
        " that is taken.");
    camera.take("limit");

    camera.move_to(*editor, 30, 20);
    camera.press();
    camera.move_to(*editor, 200, 70);
    camera.release();
    camera.press(MOUSE_BUTTON_RIGHT);
    camera.release(MOUSE_BUTTON_RIGHT);
    camera.leave();
    camera.take("menu");
    camera.key(KEY_ESCAPE);
}
