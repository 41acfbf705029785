// What the tags of a text do to its layout, and the objects that stand for them.
#include <algorithm>
#include <charconv>
#include <cstring>
#include <limits>
#include <memory>
#include <utility>

#include "kvcore/text_field.h"
#include "modules/gui/gui_skin.h"
#include "modules/gui/text_box_link.h"
#include "modules/winman/wm_button.h"
#include "modules/winman/wm_grid.h"
#include "modules/winman/wm_script.h"
#include "platform/font_manager.h"
#include "text_box_layout.h"
#include "text_piece.h"
#include "to_short.h"

namespace {

constexpr std::int32_t MAX_FONT_DELTA = 10;
constexpr std::intptr_t TAG_CALLBACK = 7;  // the first value of handle_callback
constexpr std::string_view POSSESSIVE = "'s";

// The number at the start of a text, behind blanks; 0 if there is none, and the nearest one if it
// doesn't fit.
template <class NUMBER>
NUMBER read_number(std::string_view text) {
    text.remove_prefix(std::min(text.find_first_not_of(" \t"), text.size()));
    text.remove_prefix(text.starts_with('+') ? 1 : 0);
    NUMBER number = 0;
    const auto result = std::from_chars(text.data(), text.data() + text.size(), number);
    if (result.ec == std::errc::result_out_of_range) {
        using LIMITS = std::numeric_limits<NUMBER>;
        return text.starts_with('-') ? LIMITS::min() : LIMITS::max();
    }
    return number;
}

// "%ld,%ld": blanks may stand before each number, and anything behind the second.
bool read_two_numbers(const char* text, std::int32_t& first, std::int32_t& second) {
    const char* const end = text + std::strlen(text);
    const auto read = [&](std::int32_t& number) {
        text += std::strspn(text, " \t");
        const auto result = std::from_chars(text, end, number);
        text = result.ptr;
        return result.ec == std::errc();
    };
    return read(first) && *text++ == ',' && read(second);
}

void* to_data(std::intptr_t number) {
    return reinterpret_cast<void*>(number);
}

std::int32_t to_number(const void* data) {
    return static_cast<std::int32_t>(reinterpret_cast<std::intptr_t>(data));
}

// 0 for an unknown name.
std::int32_t find_style_bit(std::string_view name) {
    if (name == "bold") {
        return TEXT_BOX_BOLD;
    }
    if (name == "italic") {
        return TEXT_BOX_ITALIC;
    }
    return name == "faded" ? TEXT_BOX_FADED : 0;
}

std::int16_t read_font_delta(std::string_view value) {
    return to_short(std::clamp(read_number<std::int32_t>(value), -MAX_FONT_DELTA, MAX_FONT_DELTA));
}

}  // namespace

// --- Styles ---

void TEXT_BOX::set_style_set(const COLOUR& fg, const COLOUR& bg, signed char style,
                             std::int16_t x_delta, std::int16_t y_delta, WM_STYLE_SET& out) const {
    static constexpr const char* NAMES[] = {"TEXT_BOX_WORD", "TEXT_BOX_WORD_BOLD",
                                            "TEXT_BOX_WORD_ITALIC", "TEXT_BOX_WORD_BOLD_ITALIC"};
    out = GUI_SKIN::get_style_set(NAMES[style & (TEXT_BOX_BOLD | TEXT_BOX_ITALIC)], style_prefix);
    if (fg.is_set()) {
        out.fg_colour = fg;
    }
    if (bg.is_set()) {
        out.bg_colour = bg;
    }
    if (style & TEXT_BOX_FADED) {
        const COLOUR full = out.fg_colour;
        out.fg_colour = full.with_alpha(static_cast<unsigned char>(full.alpha() / 2));
    }
    const FONT_MANAGER& fonts = FONT_MANAGER::get_instance();
    const auto change_size = [](std::int16_t& size, std::int16_t current, std::int16_t delta) {
        if (delta != 0) {
            size = to_short(std::max((size < 0 ? current : size) + delta, 1));
        }
    };
    change_size(out.font_x_sz, fonts.x_size, x_delta);
    change_size(out.font_y_sz, fonts.y_size, y_delta);
}

TEXT_BOX_WORD::SHARED_STYLE TEXT_BOX_LAYOUT::get_style(const TEXT_BOX_LOOK& wanted) {
    for (const STYLE_CACHE::ENTRY& entry : styles.entries) {
        if (entry.style != nullptr && entry.look == wanted) {
            return entry.style;
        }
    }
    auto made = std::make_shared<WM_STYLE_SET>();
    box.set_style_set(wanted.fg, wanted.bg, wanted.style, wanted.x_delta, wanted.y_delta, *made);
    STYLE_CACHE::ENTRY& entry = styles.entries[styles.next];
    styles.next = (styles.next + 1) % styles.entries.size();
    entry.look = wanted;
    entry.style = std::move(made);
    return entry.style;
}

// --- Tags that change the state ---

const TEXT_BOX_LAYOUT::STATE_TAG* TEXT_BOX_LAYOUT::find_state_tag(std::string_view type) {
    static constexpr STATE_TAG TAGS[] = {
        {"fg_colour", &TEXT_BOX_LAYOUT::take_fg_colour},
        {"colour", &TEXT_BOX_LAYOUT::take_fg_colour},
        {"bg_colour", &TEXT_BOX_LAYOUT::take_bg_colour},
        {"style_on", &TEXT_BOX_LAYOUT::take_style_on},
        {"style_off", &TEXT_BOX_LAYOUT::take_style_off},
        {"style", &TEXT_BOX_LAYOUT::take_style},
        {"font_x_size", &TEXT_BOX_LAYOUT::take_font_x_size},
        {"font_y_size", &TEXT_BOX_LAYOUT::take_font_y_size},
        {"fix_indent", &TEXT_BOX_LAYOUT::take_fix_indent},
        {"unfix_indent", &TEXT_BOX_LAYOUT::take_unfix_indent},
        {"separator", &TEXT_BOX_LAYOUT::take_separator},
        {"default", &TEXT_BOX_LAYOUT::take_default},
    };
    for (const STATE_TAG& tag : TAGS) {
        if (is_same_word(tag.type, type)) {
            return &tag;
        }
    }
    return nullptr;
}

void TEXT_BOX_LAYOUT::take_tag(const TEXT_BOX_TAG_PLACE& place) {
    at = place.value_end + 1;
    const STATE_TAG* const state_tag = find_state_tag(finder.get_type(place));
    if (state_tag != nullptr) {
        (this->*state_tag->action)(place);
    } else {
        take_named_tag(place);
    }
}

void TEXT_BOX_LAYOUT::take_fg_colour(const TEXT_BOX_TAG_PLACE& place) {
    look.fg = read_number<std::uint32_t>(finder.get_value(place));
}

void TEXT_BOX_LAYOUT::take_bg_colour(const TEXT_BOX_TAG_PLACE& place) {
    look.bg = read_number<std::uint32_t>(finder.get_value(place));
}

void TEXT_BOX_LAYOUT::take_style_on(const TEXT_BOX_TAG_PLACE& place) {
    look.style = static_cast<signed char>(look.style | find_style_bit(finder.get_value(place)));
}

void TEXT_BOX_LAYOUT::take_style_off(const TEXT_BOX_TAG_PLACE& place) {
    look.style = static_cast<signed char>(look.style & ~find_style_bit(finder.get_value(place)));
}

void TEXT_BOX_LAYOUT::take_style(const TEXT_BOX_TAG_PLACE& place) {
    look.style = static_cast<signed char>(read_number<std::int32_t>(finder.get_value(place)));
}

void TEXT_BOX_LAYOUT::take_font_x_size(const TEXT_BOX_TAG_PLACE& place) {
    look.x_delta = read_font_delta(finder.get_value(place));
}

void TEXT_BOX_LAYOUT::take_font_y_size(const TEXT_BOX_TAG_PLACE& place) {
    look.y_delta = read_font_delta(finder.get_value(place));
}

void TEXT_BOX_LAYOUT::take_fix_indent(const TEXT_BOX_TAG_PLACE& /*place*/) {
    if (indent_count < indents.size()) {
        indents[indent_count++] = to_short(line_x + indent);
    }
}

void TEXT_BOX_LAYOUT::take_unfix_indent(const TEXT_BOX_TAG_PLACE& /*place*/) {
    indent_count = indent_count > 0 ? indent_count - 1 : 0;
}

void TEXT_BOX_LAYOUT::take_default(const TEXT_BOX_TAG_PLACE& /*place*/) {
    look = TEXT_BOX_LOOK();
    indent_count = 0;
    if (line.is_empty()) {
        indent = 0;  // nothing stands on the line yet
    }
}

// The word is as high as the row, so that the separator keeps its own height in the middle of it. A
// box that is about to take the width of its text takes none from a separator.
void TEXT_BOX_LAYOUT::take_separator(const TEXT_BOX_TAG_PLACE& place) {
    const std::int32_t width = box.auto_width ? 1 : std::max(get_room() - line_x - 1, 1);
    const std::int32_t row_height =
        box.grid->row_height - WM_GRID::calc_y_cell_gap_from_style_set(box.grid->grid_style);
    auto* const script = new WM_SCRIPT(
        0, 0, to_short(width - 1), -1,
        GUI_SKIN::get_style_set("TEXT_BOX_SEPARATOR", box.style_prefix), "", box.window);
    script->y = to_short(std::max(row_height - script->height, 0) / 2);
    place_object(script, std::max<std::int32_t>(row_height, script->height), false, place, true);
}

// --- Tags that stand for something ---

void TEXT_BOX_LAYOUT::take_named_tag(const TEXT_BOX_TAG_PLACE& place) {
    auto tag = std::make_unique<TEXT_BOX_TAG>();
    finder.read(place, *tag);
    take_possessive(place, *tag);
    const std::string_view name(tag->name);
    // The objects refer to the tag, so it has to outlive them.
    TEXT_BOX_TAG& kept = *tag;
    if (name.empty() || !box.tags.add(tag.get())) {
        return;
    }
    static_cast<void>(tag.release());
    const auto link = std::make_shared<TEXT_BOX_LINK::WORDS>();
    for (std::size_t start = 0; start < name.size() && !stopped;) {
        const bool spaces = name[start] == ' ';
        std::size_t end = start;
        while (end < name.size() && (name[end] == ' ') == spaces) {
            ++end;
        }
        const std::string piece(name.substr(start, end - start));
        WM_SCREEN_OBJECT* const object = create_tag_object(kept, piece);
        if (auto* const link_word = dynamic_cast<TEXT_BOX_LINK*>(object)) {
            link_word->join(link);
        }
        place_object(object, object->get_height(), spaces, place, start == 0);
        start = end;
    }
}

void TEXT_BOX_LAYOUT::take_possessive(const TEXT_BOX_TAG_PLACE& place, TEXT_BOX_TAG& tag) {
    const std::string_view rest = text.substr(static_cast<std::size_t>(at));
    const bool ends = rest.size() == POSSESSIVE.size() || rest.starts_with("'s ");
    const std::size_t length = finder.get_name(place).size();
    if (rest.starts_with(POSSESSIVE) && ends && length + POSSESSIVE.size() < sizeof tag.name) {
        KVCORE::copy_text_field(tag.name + length, sizeof tag.name - length, POSSESSIVE.data());
        at += static_cast<std::int32_t>(POSSESSIVE.size());
    }
}

WM_SCREEN_OBJECT* TEXT_BOX_LAYOUT::create_tag_object(TEXT_BOX_TAG& tag, const std::string& piece) {
    COLOUR colour = look.fg;
    WM_SCREEN_OBJECT* object = nullptr;
    if (TEXT_BOX::create_tag_object_callback != nullptr && !hides_text) {
        object = TEXT_BOX::create_tag_object_callback(box, box.style_prefix, tag, piece.c_str(),
                                                      colour, look.style, look.x_delta,
                                                      look.y_delta, box.enabled, box.window);
    }
    if (object == nullptr) {
        auto* const plain =
            new TEXT_BOX_WORD(0, 0, -1, -1, get_style(look), get_displayed(piece), box.window);
        plain->enabled = box.enabled;
        return plain;
    }
    set_tag_callback(*object, tag);
    return object;
}

void TEXT_BOX_LAYOUT::set_tag_callback(WM_SCREEN_OBJECT& object, const TEXT_BOX_TAG& tag) {
    std::int32_t first = 0, second = 0;
    if (!(object.type_flags & WMF_BUTTON) || std::strcmp(tag.type, "callback") != 0 ||
        !read_two_numbers(tag.value, first, second)) {
        return;
    }
    auto& button = static_cast<WM_BUTTON&>(object);
    button.callback_flags = BUTTON_EVENT_RELEASE;
    button.callback = TEXT_BOX::handle_callback;
    button.callback_data1 = to_data(TAG_CALLBACK);
    button.callback_data2 = &box;
    button.right_data1 = to_data(first);
    button.right_data2 = to_data(second);
}

// The object stands in an empty word of its own size.
void TEXT_BOX_LAYOUT::place_object(WM_SCREEN_OBJECT* object, std::int32_t height, bool spaces,
                                   const TEXT_BOX_TAG_PLACE& place, bool first) {
    auto holder = std::make_unique<TEXT_BOX_WORD>(std::int16_t{0}, std::int16_t{0}, std::int16_t{0},
                                                  std::int16_t{0}, get_style(TEXT_BOX_LOOK()),
                                                  std::string(spaces ? " " : ""), box.window);
    holder->width = object->get_width();
    holder->height = to_short(height);
    holder->text_start = place.start;
    holder->text_end = place.value_end;
    holder->continuation = !first;
    holder->add_object(object, 1);
    // Another object takes the height that the line has.
    const bool is_text = dynamic_cast<const TEXT_BOX_WORD*>(object) != nullptr;
    this->place(std::move(holder), is_text ? height : 0);
}

// --- The callback of the objects ---

WM_MESG TEXT_BOX::handle_callback(WM_SCREEN_OBJECT* object, void* data1, void* data2) {
    auto* const box = static_cast<TEXT_BOX*>(data2);
    const std::int32_t item = to_number(data1);
    if (box == nullptr || object == nullptr) {
        return WM_MESG_NONE;
    }
    return item == TAG_CALLBACK ? box->run_tag_callback(*object) : box->handle_menu_item(item);
}

WM_MESG TEXT_BOX::run_tag_callback(const WM_SCREEN_OBJECT& button) {
    if (!tag_clicked) {
        drop_retired();  // that of the last callback makes room for the button that runs now
    }
    tag_clicked = true;
    tag_data1 = to_number(button.right_data1);
    tag_data2 = to_number(button.right_data2);
    const WM_MESG result = run_callback();
    tag_clicked = false;
    tag_data1 = tag_data2 = -1;
    return result;
}
