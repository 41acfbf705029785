// The keys of text boxes.
#include <cctype>

#include "modules/gui/text_box.h"
#include "platform/keyboard.h"
#include "shift_keys.h"
#include "text_box_position.h"

namespace {

// With Alt some layouts have characters behind Control.
bool is_shortcut_down(const KEYBOARD& keyboard) {
    return keyboard.get_key_value(KEY_COMMAND) && !keyboard.get_key_value(KEY_ALT);
}

bool is_return(KEY_TYPE key) {
    return key == KEY_RETURN || key == KEY_ENTER;
}

using STEP = bool (TEXT_BOX_NAVIGATOR::*)(const TEXT_BOX_POSITION& from,
                                          TEXT_BOX_POSITION& to) const;

// Null for a key that doesn't move the cursor.
STEP find_step(KEY_TYPE key, bool control) {
    switch (key) {
        case KEY_LEFT:
            return control ? &TEXT_BOX_NAVIGATOR::find_previous_word
                           : &TEXT_BOX_NAVIGATOR::find_previous_char;
        case KEY_RIGHT:
            return control ? &TEXT_BOX_NAVIGATOR::find_next_word
                           : &TEXT_BOX_NAVIGATOR::find_next_char;
        case KEY_UP:
            return &TEXT_BOX_NAVIGATOR::find_previous_line;
        case KEY_DOWN:
            return &TEXT_BOX_NAVIGATOR::find_next_line;
        case KEY_HOME:
            return control ? &TEXT_BOX_NAVIGATOR::find_text_start
                           : &TEXT_BOX_NAVIGATOR::find_line_start;
        case KEY_END:
            return control ? &TEXT_BOX_NAVIGATOR::find_text_end
                           : &TEXT_BOX_NAVIGATOR::find_line_end;
        default:
            return nullptr;
    }
}

}  // namespace

// Whatever was pressed is read, so that it reaches no other object.
WM_MESG TEXT_BOX::monitor_keys() {
    KEYBOARD keyboard;
    bool return_typed = false;
    WM_MESG result = handle_typed_chars(return_typed);
    const KEY_TYPE key = keyboard.get_code();
    if (result != WM_MESG_NONE || !has_focus()) {
        return result;
    }
    if (is_return(key)) {
        return return_typed ? WM_MESG_NONE : handle_return();
    }
    return handle_key(key);
}

WM_MESG TEXT_BOX::handle_typed_chars(bool& return_typed) {
    KEYBOARD keyboard;
    while (const unsigned char c = keyboard.get_char()) {
        WM_MESG result = WM_MESG_NONE;
        if (c == '\n') {
            return_typed = true;
            // Control and Return are the right click.
            const bool right_click = right_callback != nullptr && is_shortcut_down(keyboard);
            result = right_click ? WM_MESG_NONE : handle_return();
            if (flags & TBF_RETURN_FIRES) {
                return result;
            }
        } else if (is_shortcut_down(keyboard)) {
            result = handle_shortcut(c, is_shift_down(keyboard));
        } else if (c >= ' ' && c != 0x7F) {
            result = type_char(static_cast<char>(c));
        }
        // The callback may have taken the focus elsewhere.
        if (result != WM_MESG_NONE || !has_focus()) {
            return result;
        }
    }
    return WM_MESG_NONE;
}

WM_MESG TEXT_BOX::handle_shortcut(unsigned char letter, bool shift) {
    const bool secret = (flags & TBF_PASSWORD) != 0;
    switch (std::tolower(letter)) {
        case 'a':
            return handle_select_all_request();
        case 'c':
            return secret ? WM_MESG_NONE : handle_copy_request();
        case 'v':
            return handle_paste_request();
        case 'x':
            return secret ? WM_MESG_NONE : handle_cut_request();
        case 'z':
            if (secret) {
                return WM_MESG_NONE;
            }
            return shift ? handle_redo_request() : handle_undo_request();
        default:
            return WM_MESG_NONE;
    }
}

WM_MESG TEXT_BOX::handle_key(std::int32_t key) {
    const KEYBOARD keyboard;
    const bool shift = is_shift_down(keyboard);
    switch (key) {
        case KEY_BACKSPACE:
            return delete_char(false);
        case KEY_DELETE:
            return delete_char(true);
        case KEY_INSERT:
            return shift ? handle_paste_request() : WM_MESG_NONE;
        default:
            move_by_key(key, shift && (flags & TBF_SELECTABLE),
                        keyboard.get_key_value(KEY_CONTROL) != 0);
            return WM_MESG_NONE;
    }
}

void TEXT_BOX::move_by_key(std::int32_t key, bool extend, bool control) {
    const STEP step = find_step(static_cast<KEY_TYPE>(key), control);
    const TEXT_BOX_POSITION from = get_moving_end();
    if (step == nullptr || !from.is_set()) {
        return;
    }
    TEXT_BOX_POSITION to;
    const bool sideways = key == KEY_LEFT || key == KEY_RIGHT;
    if (!extend && has_selection() && sideways) {
        to = key == KEY_LEFT ? TEXT_BOX_POSITION{start_column, start_row, start_x, start_offset}
                             : TEXT_BOX_POSITION{end_column, end_row, end_x, end_offset};
    } else {
        (TEXT_BOX_NAVIGATOR(*this).*step)(from, to);
    }
    if (extend) {
        update_selection(to.column, to.row, to.x, to.offset, 1);
    } else {
        clear_selection();
    }
    move_cursor(to.column, to.row, to.x, to.offset);
    show_cursor_or_selection();
}
