// Typing and deleting in text boxes: what may be entered, and what it is replaced by.
#include <cstring>
#include <string_view>

#include "modules/gui/text_box.h"
#include "text_box_position.h"

namespace {

constexpr char LINE_FEED = '\n';
// Records that replace each other's texts come to an end.
constexpr int MAX_REPLACEMENTS = 100;

std::int32_t find_substitution(const TEXT_BOX_SUBSTITUTION& wanted) {
    for (std::int32_t i = 0; i < TEXT_BOX::substitution_array.get_count(); ++i) {
        const auto* record = TEXT_BOX::substitution_array.get<TEXT_BOX_SUBSTITUTION>(i);
        if (std::strcmp(record->from, wanted.from) == 0) {
            return i;
        }
    }
    return -1;
}

}  // namespace

PTRARRAY TEXT_BOX::substitution_array(0, 0, TEXT_BOX::delete_substitution_callback);

// --- Substitutions ---

void TEXT_BOX::delete_substitution_callback(void* substitution) {
    delete static_cast<TEXT_BOX_SUBSTITUTION*>(substitution);
}

void TEXT_BOX::add_substitution(const TEXT_BOX_SUBSTITUTION& substitution) {
    const std::int32_t index = find_substitution(substitution);
    if (index >= 0) {
        *substitution_array.get<TEXT_BOX_SUBSTITUTION>(index) = substitution;
        return;
    }
    auto* copy = new TEXT_BOX_SUBSTITUTION(substitution);
    if (!substitution_array.add(copy)) {
        delete copy;
    }
}

void TEXT_BOX::delete_substitution(const TEXT_BOX_SUBSTITUTION& substitution) {
    substitution_array.remove(find_substitution(substitution));
}

// Replaces what has just been typed, up to the cursor at `index`; yields where the cursor is then.
std::int32_t TEXT_BOX::substitute(std::int32_t index) {
    int replacements = 0;
    for (std::int32_t i = 0; i < substitution_array.get_count(); ++i) {
        const auto* record = substitution_array.get<TEXT_BOX_SUBSTITUTION>(i);
        const std::string_view from(record->from), to(record->to);
        const auto from_length = static_cast<std::int32_t>(from.size());
        const auto to_length = static_cast<std::int32_t>(to.size());
        const auto length = static_cast<std::int32_t>(text.size());
        if (from.empty() || from_length > index ||
            length - from_length + to_length > max_text_length) {
            continue;
        }
        const auto start = static_cast<std::size_t>(index - from_length);
        if (std::string_view(text).substr(start, from.size()) != from) {
            continue;
        }
        text.replace(start, from.size(), to);
        index += to_length - from_length;
        if (++replacements >= MAX_REPLACEMENTS) {
            break;
        }
        i = -1;  // begin again
    }
    return index;
}

// --- Typing ---

bool TEXT_BOX::is_char_allowed(char character, const TEXT_BOX_RANGE& replaced) const {
    const auto length = static_cast<std::int32_t>(text.size());
    if ((character == '<' || character == '>') && !(flags & TBF_NO_TAGS)) {
        return false;
    }
    if (character == ' ' && ((replaced.start == 0 && !(flags & TBF_LEADING_SPACE)) ||
                             (replaced.end == length && (flags & TBF_NO_TRAILING_SPACE)))) {
        return false;
    }
    if (valid_chars != nullptr && std::strchr(valid_chars, character) == nullptr) {
        return false;
    }
    return length - replaced.get_length() < max_text_length;
}

WM_MESG TEXT_BOX::type_char(char character) {
    TEXT_BOX_RANGE replaced;
    if (!(flags & TBF_EDITABLE) || !get_selected_range(replaced) ||
        !is_char_allowed(character, replaced)) {
        return WM_MESG_NONE;
    }
    take_snapshot();
    text.replace(static_cast<std::size_t>(replaced.start),
                 static_cast<std::size_t>(replaced.get_length()), 1, character);
    std::int32_t index = replaced.start + 1;
    if (flags & TBF_SUBSTITUTIONS) {
        index = substitute(index);
    }
    refresh_at(index);
    return notify_change();
}

WM_MESG TEXT_BOX::handle_return() {
    if (!(flags & TBF_EDITABLE)) {
        return WM_MESG_NONE;
    }
    if (flags & TBF_RETURN_FIRES) {
        return_pressed = true;
        const WM_MESG result = run_callback();
        return_pressed = false;
        history.clear();
        history_position = -1;
        return result;
    }
    return (flags & TBF_MULTI_LINE) ? type_char(LINE_FEED) : WM_MESG_NONE;
}

// The selection, or else the character behind or before the cursor.
WM_MESG TEXT_BOX::delete_char(bool forward) {
    TEXT_BOX_RANGE range;
    if (!(flags & TBF_EDITABLE) || !get_selected_range(range)) {
        return WM_MESG_NONE;
    }
    if (!has_selection()) {
        const TEXT_BOX_NAVIGATOR navigator(*this);
        if (!(forward ? navigator.get_next_range(get_cursor(), range)
                      : navigator.get_previous_range(get_cursor(), range))) {
            return WM_MESG_NONE;
        }
    }
    take_snapshot();
    text.erase(static_cast<std::size_t>(range.start), static_cast<std::size_t>(range.get_length()));
    refresh_at(range.start);
    return notify_change();
}

WM_MESG TEXT_BOX::notify_change() {
    return (flags & TBF_NOTIFY_CHANGE) ? run_callback() : WM_MESG_NONE;
}
