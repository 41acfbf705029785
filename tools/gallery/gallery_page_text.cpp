#include "gallery_page_text.h"

#include <strings.h>

#include <cinttypes>
#include <cstdio>

#include "gallery_camera.h"
#include "modules/gui/gui_skin.h"
#include "modules/gui/text_box.h"
#include "modules/gui/text_box_link.h"
#include "modules/winman/style_set.h"
#include "modules/winman/window_manager.h"

namespace {

constexpr signed char WINDOW = WM_WINDOW_MANAGER::MAIN_WINDOW;

std::string colour_tag(const char* type, COLOUR colour) {
    char tag[48];
    std::snprintf(tag, sizeof tag, "<:%s#%" PRIu32 ">", type, colour.value);
    return tag;
}

std::string make_tagged_text() {
    const COLOUR good = GUI_SKIN::get_colour("GOOD"), weak = GUI_SKIN::get_colour("WEAK");
    const COLOUR behind = COLOUR(GUI_SKIN::get_colour("ACCENT")).with_alpha(70);
    return "Words can be <:style_on#bold>bold<:style_off#bold>, "
           "<:style_on#italic>italic<:style_off#italic>, <:style#3>both<:style#0> or "
           "<:style_on#faded>faded<:style_off#faded>, in " +
           colour_tag("colour", good) + "one colour" + "<:default#> or " +
           colour_tag("fg_colour", weak) + "another<:default#>, and " +
           colour_tag("bg_colour", behind) + "on a colour<:default#>.\n" +
           "Sizes: <:font_x_size#-3><:font_y_size#-3>small<:default#>, usual, "
           "<:font_x_size#4><:font_y_size#4>large<:default#>, "
           "<:font_x_size#10><:font_y_size#10>largest<:default#>\n"
           "Over a line: <:separator#>\n"
           "A link leads to <the club page:url#www.tessarine.example/club>, another one to <Ada "
           "Northgate:url#www.tessarine.example/ada>'s page, and this is <a callback:callback#12,"
           "34> with two numbers.\n"
           "\n"
           "Note: <:fix_indent#>what stands behind this place goes on there in the lines that "
           "follow, until the indent ends. <:unfix_indent#>\n"
           "1. <:fix_indent#>Points: a) <:fix_indent#>an indent within the indent, so that its "
           "lines "
           "begin further to the right than those of the other "
           "one.<:unfix_indent#><:unfix_indent#>\n"
           "2. Back at the edge.\n"
           "<:separator#>\n"
           "Averyverylongwordthatnolinecanholdisbrokenwhereverthelineendsandgoesoninthenextoneofthe"
           "m"
           ".\n\n"
           "The text is higher than its box.\nThe bar at its right,\nthe wheel of the mouse\n"
           "and the keys\nscroll it.\n\n<:style_on#bold>Without a tag, < is just a sign.";
}

constexpr const char* LONG_TEXT =
    "The season begins in August, and by then the squad should be settled, the staff be hired and "
    "the tickets be on sale. Whoever waits for the last day of the window pays more than the "
    "player is worth, and whoever buys in June pays for a holiday.\n"
    "The last line of a paragraph isn't stretched.";

}  // namespace

void GALLERY_PAGE_TEXT::build() {
    const std::int32_t width = get_inner_width() / 2 - 8, right = get_inner_width() / 2 + 8;
    add_heading(0, 0, width, "Tags");
    tagged = add_text_box(0, 28, width, get_inner_height() - 36, make_tagged_text().c_str(), -1,
                          nullptr, TBF_MULTI_LINE | TBF_SELECTABLE | TBF_POPUP_MENU, BOX);

    add_heading(right, 0, width, "Lines");
    add_text_box(right, 28, width, 118, LONG_TEXT, -1, nullptr, TBF_MULTI_LINE, 0);
    add_text_box(right, 154, width, 118, LONG_TEXT, -1, nullptr, TBF_MULTI_LINE | TBF_JUSTIFY, 0);
    TEXT_BOX* disabled =
        add_text_box(right, 280, width, 56, "A disabled box is <:style_on#bold>fainter.", -1,
                     nullptr, TBF_MULTI_LINE, 0);
    disabled->set_enabled(0);

    TEXT_BOX* prefixed =
        add_text_box(right, 346, width / 2 - 4, 30, "with a prefix", -1, nullptr, 0, 0);
    prefixed->set_prefix_text("One line");
    add_text_box(right + width / 2 + 4, 346, width / 2 - 4, 30,
                 "One line that is longer than its box, so that it is its hint", -1, nullptr, 0, 0);
    auto* own_size = add(new TEXT_BOX(to_short(right), 386, -1, -1, "As large as its text", -1,
                                      nullptr, 0, "", nullptr, nullptr, nullptr, WINDOW));
    own_size->set_hint_text("A <:style_on#bold>hint");
    add_text_box(right + width / 2 + 4, 386, width / 2 - 4, 30,
                 "No tags: <:"
                 "style#1>",
                 -1, nullptr, TBF_NO_TAGS, 0);
}

void GALLERY_PAGE_TEXT::forget() {
    tagged = nullptr;
}

WM_SCREEN_OBJECT* GALLERY_PAGE_TEXT::create_link(TEXT_BOX& /*box*/, const char* style_prefix,
                                                 TEXT_BOX_TAG& tag, const char* word,
                                                 COLOUR& /*colours*/, signed char /*style*/,
                                                 std::int16_t /*font_x_delta*/,
                                                 std::int16_t /*font_y_delta*/,
                                                 unsigned char enabled, signed char window) {
    const bool is_url = ::strcasecmp(tag.type, "url") == 0;
    if (!is_url && ::strcasecmp(tag.type, "callback") != 0) {
        return nullptr;
    }
    auto* link = new TEXT_BOX_LINK(GUI_SKIN::get_style_set("TEXT_BOX_BUTTON", style_prefix), word,
                                   tag.value, handle_callback, to_data(LINK), &tag, window);
    link->enabled = enabled != 0;
    return link;
}

WM_MESG GALLERY_PAGE_TEXT::act(WM_SCREEN_OBJECT& object, std::int32_t command) {
    if (command == LINK) {
        const auto& tag = *static_cast<const TEXT_BOX_TAG*>(object.callback_data2);
        report(std::string("The link leads to ") + tag.value);
    } else if (tagged != nullptr && tagged->tag_clicked) {
        report("The callback's numbers are " + std::to_string(tagged->tag_data1) + " and " +
               std::to_string(tagged->tag_data2));
    }
    return WM_MESG_NONE;
}

void GALLERY_PAGE_TEXT::take_pictures(GALLERY_CAMERA& camera) {
    camera.move_to(*tagged, 60, 20);
    camera.press();
    camera.move_to(*tagged, 200, 60);
    camera.release();
    camera.take("selection");
    camera.click(*tagged, MOUSE_BUTTON_RIGHT);
    camera.take("menu");
    camera.key(KEY_ESCAPE);
    camera.leave();
    tagged->set_scroll_to_bottom();
    camera.tick(2);
    camera.take("bottom");
}
