// Texts with tags, as the server and the catalogue send them: split into words, freed of their
// tags, laid out in text boxes of all kinds, and edited there.
//
// An input is four bytes for the kind of box, the text up to its first 0, and then what the user
// does with it, one byte for each step.
#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <string>
#include <string_view>

#include "modules/gui/tagged_text.h"
#include "modules/gui/text_box.h"
#include "modules/gui/text_box_link.h"
#include "modules/gui/text_box_word.h"
#include "modules/winman/page_manager.h"
#include "modules/winman/page_tool_manager.h"
#include "modules/winman/style_set.h"
#include "modules/winman/window_info.h"
#include "modules/winman/window_manager.h"
#include "modules/winman/wm_button.h"
#include "modules/winman/wm_grid.h"
#include "modules/winman/wm_script.h"
#include "modules/winman/wm_window.h"
#include "platform/image.h"
#include "platform/keyboard.h"
#include "platform/mouse.h"
#include "platform/window_platform.h"

namespace {

constexpr std::int16_t WINDOW_WIDTH = 200, WINDOW_HEIGHT = 150;

void require(bool condition) {
    if (!condition) {
        std::abort();
    }
}

// A skin without fonts: every character is one pixel wide.
void make_skin() {
    for (const char* name :
         {"TEXT_BOX_BACKGROUND", "TEXT_BOX_GRID", "TEXT_BOX_SCROLLBAR", "TEXT_BOX_INFO",
          "TEXT_BOX_SEPARATOR", "TEXT_BOX_WORD", "TEXT_BOX_WORD_BOLD", "TEXT_BOX_WORD_ITALIC",
          "TEXT_BOX_WORD_BOLD_ITALIC"}) {
        auto style = std::make_unique<WM_STYLE_SET>();
        style->set_name(name);
        style->font_x_sz = style->font_y_sz = 10;
        style->x_spacing = style->y_spacing = 0;
        WM_PAGE_TOOL_MANAGER::get_instance().style_sets.add(style.release());
    }
    WM_PAGE_TOOL_MANAGER::get_instance().sort_style_sets();
}

// A window without a native one, which has the focus.
void make_window() {
    ::setenv("SDL_VIDEODRIVER", "dummy", 1);
    WM_WINDOW_MANAGER::create();
    WM_WINDOW_MANAGER& manager = *WM_WINDOW_MANAGER::get_instance();
    const OPEN_GRAPHICS_SIZES size = make_graphics_sizes(WINDOW_WIDTH, WINDOW_HEIGHT);
    require(manager.add_window(0, 1, size, size, size));
    manager.get_window_info(0)->back_buffer->reset(WINDOW_WIDTH, WINDOW_HEIGHT);
    manager.set_window_as_focal_window(WM_WINDOW_MANAGER::MAIN_WINDOW);
}

WM_MESG use_link(WM_SCREEN_OBJECT* /*object*/, void* /*data1*/, void* tag) {
    require(static_cast<const TEXT_BOX_TAG*>(tag)->value[0] == 'l');
    return WM_MESG_NONE;
}

WM_SCREEN_OBJECT* make_object(TEXT_BOX& box, const char* /*prefix*/, TEXT_BOX_TAG& tag,
                              const char* word, COLOUR& /*colour*/, signed char /*style*/,
                              std::int16_t /*x_delta*/, std::int16_t /*y_delta*/,
                              unsigned char /*enabled*/, signed char window) {
    require(std::strstr(tag.name, word) != nullptr && *word != '\0');
    require(box.tags.get_count() > 0);
    if (std::strcmp(tag.type, "callback") == 0) {
        return new WM_BUTTON(0, 0, 5, 7, WM_STYLE_SET(), word, nullptr, nullptr, nullptr, nullptr,
                             1, window, 1, 0);
    }
    if (tag.value[0] == 'l') {
        return new TEXT_BOX_LINK(WM_STYLE_SET(), word, nullptr, use_link, nullptr, &tag, window);
    }
    return tag.value[0] == 'w' ? new WM_SCRIPT(0, 0, -1, -1, WM_STYLE_SET(), word, window)
                               : nullptr;
}

// Changes the text while a button in it runs.
WM_MESG handle_box(WM_SCREEN_OBJECT* object, void* /*data1*/, void* /*data2*/) {
    auto& box = static_cast<TEXT_BOX&>(*object);
    if (box.tag_clicked) {
        box.append_text("a");
        box.insert_text("<b:callback#1,2>");
    }
    return WM_MESG_NONE;
}

void check_splitting(const std::string& text) {
    const TAGGED_TEXT tagged(text.c_str());
    require(tagged.text == text);
    std::size_t length = 0;
    for (std::int32_t i = 0; i < tagged.words.get_count(); ++i) {
        length += std::strlen(tagged.words.get<TAGGED_TEXT_WORD>(i)->text);
    }
    require(length <= text.size());
    std::string plain = text;
    TAGGED_TEXT::remove_tags_from_text(plain.data());
    require(std::strlen(plain.c_str()) <= text.size());
}

// The rows cover the text from its start to where the layout ended, in order.
void check_rows(const TEXT_BOX& box) {
    const auto length = static_cast<std::int32_t>(box.text.size());
    require(box.grid->row_count >= 1 && box.grid->row_count <= TEXT_BOX::MAX_ROWS);
    std::int32_t reached = 0, plain = 0;
    for (std::int16_t row = 0; row < box.grid->row_count; ++row) {
        const std::int16_t columns = box.grid->rows[static_cast<std::size_t>(row)]->columns;
        require(columns >= 1);
        for (std::int16_t column = 0; column < columns; ++column) {
            const auto* word = static_cast<TEXT_BOX_WORD*>(box.grid->get_object(column, row));
            require(word != nullptr && word->width >= 0);
            const bool is_end = column == columns - 1;
            require(!is_end || word->text.empty());
            require(word->text_start >= reached || word->continuation || is_end);
            require(word->text_end >= word->text_start && word->text_start <= length);
            reached = std::max(reached, word->text_start);
            plain += word->objects.get_count() == 0 ? word->get_text_length() : 0;
        }
    }
    require(plain >= box.plain_length && reached <= length);
}

void check_box(const std::string& text, std::uint32_t kind) {
    constexpr std::uint32_t FLAGS = TBF_MULTI_LINE | TBF_EDITABLE | TBF_PASSWORD | TBF_NO_TAGS |
                                    TBF_FIXED_SIZE | TBF_SHOW_REMAINING | TBF_JUSTIFY;
    const auto right = static_cast<std::int16_t>(static_cast<std::int32_t>(kind & 127) - 8);
    const auto bottom = static_cast<std::int16_t>(static_cast<std::int32_t>(kind >> 7 & 127) - 8);
    TEXT_BOX box(0, 0, right, bottom, text.c_str(), -1, nullptr, (kind >> 16) & FLAGS, "", nullptr,
                 nullptr, nullptr, 0);
    if (box.grid != nullptr) {
        check_rows(box);
    }
    box.append_text("<more:x#>");
    box.resize(40, 60, 1);
    require(box.grid != nullptr);
    check_rows(box);
}

// A user at a box on a page.
class EDITING {
public:
    EDITING(const std::string& first_text, std::uint32_t kind)
        : text(first_text),
          page(*WM_WINDOW_MANAGER::get_instance()->get_window_info(0)->page_manager),
          box(*new TEXT_BOX(0, 0, static_cast<std::int16_t>(20 + (kind & 127)),
                            static_cast<std::int16_t>(12 + (kind >> 7 & 127)), text.c_str(), 300,
                            nullptr, ((kind >> 16) & 0x7FFF) | TBF_EDITABLE, "", handle_box,
                            nullptr, nullptr, 0)) {
        page.get_area(0)->add_object(&box, 0);
        box.take_focus(kind >> 15 & 1);
        check();
    }
    ~EDITING() {
        page.get_area(0)->remove_object(&box, 1, 0);
        MOUSE::release_all();
        KEYBOARD::set_modifiers(0);
        KEYBOARD().clear_buffer();
        set_clipboard_text("");
    }
    EDITING(const EDITING&) = delete;
    EDITING& operator=(const EDITING&) = delete;

    void step(std::uint8_t what) {
        constexpr KEY_TYPE KEYS[] = {KEY_LEFT,   KEY_RIGHT,     KEY_UP,     KEY_DOWN,
                                     KEY_HOME,   KEY_END,       KEY_DELETE, KEY_BACKSPACE,
                                     KEY_RETURN, KEY_PAGE_DOWN, KEY_INSERT, KEY_ESCAPE};
        const std::size_t detail = what >> 3;
        const std::uint32_t shift = detail >= 16 ? std::uint32_t{KEYBOARD_MODIFIER_SHIFT} : 0;
        KEYBOARD::set_modifiers(shift);
        switch (what & 7) {
            case 0:
                KEYBOARD::set_modifiers(KEYBOARD_MODIFIER_CONTROL | shift);
                [[fallthrough]];
            case 1:
                KEYBOARD::process_key_event(KEYS[detail % std::size(KEYS)]);
                break;
            case 2:
                KEYBOARD::set_modifiers(0);
                KEYBOARD::process_char_event(
                    static_cast<unsigned char>("ab  <>:#\n\x7F"[detail % 10]), 0);
                break;
            case 3:
                KEYBOARD::set_modifiers(KEYBOARD_MODIFIER_CONTROL | shift);
                KEYBOARD::process_char_event(static_cast<unsigned char>("acvxz"[detail % 5]), 0);
                break;
            case 4:
                MOUSE::set_position(0, static_cast<std::int16_t>(detail * 5),
                                    static_cast<std::int16_t>(detail % 7 * 9));
                break;
            case 5:
                MOUSE::process_mouse_button(detail & 2 ? MOUSE_BUTTON_RIGHT : MOUSE_BUTTON_LEFT,
                                            detail & 1);
                break;
            case 6:
                set_clipboard_text(text.substr(std::min(text.size(), detail * 4), 40).c_str());
                break;
            default:
                change(detail);
        }
        page.monitor(0);
        check();
    }

private:
    // What the program does with its box.
    void change(std::size_t detail) {
        switch (detail % 10) {
            case 0:
                box.set_text(text.c_str());
                break;
            case 1:
                box.insert_text("<b:callback#1,2>");
                break;
            case 2:
                box.set_flags(box.flags ^ TBF_MULTI_LINE);
                break;
            case 3:
                box.resize(static_cast<std::int16_t>(20 + detail * 3), 40, 0);
                break;
            case 4:
                box.set_default_text(detail >= 16 ? "default" : nullptr);
                break;
            case 5:
                WM_WINDOW_MANAGER::get_instance()->set_window_as_focal_window(
                    static_cast<signed char>(detail >= 16));
                break;
            case 6:
                box.set_enabled(detail < 16);
                break;
            case 7:
                box.take_focus(detail >= 16);
                break;
            case 8:
                box.handle_undo_request();
                break;
            default:
                box.refresh();
        }
    }

    void check() {
        if (box.default_text == nullptr) {
            check_rows(box);
        }
        const auto length = static_cast<std::int32_t>(box.text.size());
        require(length <= box.max_text_length);
        require(box.history_position >= -1 &&
                (box.history_position < 0 || box.history_position < box.history.get_count()));
        std::int32_t cursor = -1, start = -1, end = -1;
        if (box.cursor_row >= 0) {
            require(box.get_text_index_from_char(box.cursor_column, box.cursor_row, box.cursor_x,
                                                 box.cursor_offset, cursor));
            require(cursor >= 0 && cursor <= length);
        }
        if (box.has_selection()) {
            require(box.get_text_index_from_char(box.start_column, box.start_row, box.start_x,
                                                 box.start_offset, start) &&
                    box.get_text_index_from_char(box.end_column, box.end_row, box.end_x,
                                                 box.end_offset, end));
            require(start < end);
        }
    }

    const std::string text;
    WM_PAGE_MANAGER& page;
    TEXT_BOX& box;
};

void check_editing(const std::string& text, std::string_view steps, std::uint32_t kind) {
    constexpr std::size_t MAX_STEPS = 100;
    WM_WINDOW_MANAGER::get_instance()->set_window_as_focal_window(WM_WINDOW_MANAGER::MAIN_WINDOW);
    EDITING editing(text.substr(0, 400), kind);
    for (const char what : steps.substr(0, MAX_STEPS)) {
        WM_SCREEN_OBJECT::now_ms += 20;
        editing.step(static_cast<std::uint8_t>(what));
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size < 4 || size > 4096) {
        return 0;
    }
    static const bool is_ready = (make_skin(), make_window(), true);
    require(is_ready);
    std::uint32_t kind = 0;
    std::memcpy(&kind, data, sizeof kind);
    TEXT_BOX::create_tag_object_callback = kind >> 31 ? make_object : nullptr;
    const std::string_view rest(reinterpret_cast<const char*>(data) + sizeof kind,
                                size - sizeof kind);
    const std::string text(rest.substr(0, rest.find('\0')));
    check_splitting(text);
    check_box(text, kind);
    if (rest.size() > text.size()) {
        check_editing(text, rest.substr(text.size() + 1), kind);
    }
    return 0;
}
