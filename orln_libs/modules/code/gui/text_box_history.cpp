// Undo and redo of text boxes. The history holds whole texts; while its position is 0 or more, the
// entry there is the text on show, and those above it are what can be done again.
#include <algorithm>
#include <cstring>

#include "modules/gui/text_box.h"

namespace {

// The oldest states are forgotten beyond this: the count, and the size of as many texts like the
// present one. Undo needs two.
constexpr std::size_t MAX_HISTORY = 1000, MIN_HISTORY = 2;
constexpr std::size_t MAX_HISTORY_BYTES = 16 << 20;

}  // namespace

void TEXT_BOX::push_history() {
    char* copy = new char[text.size() + 1];
    std::memcpy(copy, text.c_str(), text.size() + 1);
    if (!history.add(copy)) {
        delete[] copy;
    }
    const std::size_t limit =
        std::clamp(MAX_HISTORY_BYTES / (text.size() + 1), MIN_HISTORY, MAX_HISTORY);
    while (static_cast<std::size_t>(history.get_count()) > limit) {
        history.remove(0);
    }
}

void TEXT_BOX::cut_history(std::int32_t count) {
    while (history.get_count() > count) {
        history.remove(history.get_count() - 1);
    }
}

// Before each change by the user.
void TEXT_BOX::take_snapshot() {
    if (flags & TBF_PASSWORD) {
        return;  // no copies of a secret
    }
    const std::int32_t position = history_position;
    history_position = -1;
    if (position >= 0) {
        cut_history(position + 1);
        const char* state = history.get<char>(position);
        if (state != nullptr && text == state) {
            return;
        }
    }
    push_history();
}

WM_MESG TEXT_BOX::handle_undo_request() {
    if (!(flags & TBF_EDITABLE) || history.is_empty() || history_position == 0) {
        return WM_MESG_NONE;
    }
    if (history_position < 0) {
        push_history();
        history_position = history.get_count() - 2;
    } else {
        --history_position;
    }
    if (const char* state = history.get<char>(history_position)) {
        set_text(state, 1);
    }
    return notify_change();
}

WM_MESG TEXT_BOX::handle_redo_request() {
    if (!(flags & TBF_EDITABLE) || history.is_empty() || history_position < 0) {
        return WM_MESG_NONE;
    }
    ++history_position;
    if (const char* state = history.get<char>(history_position)) {
        set_text(state, 1);
    }
    if (history_position >= history.get_count() - 1) {
        cut_history(history.get_count() - 1);
        history_position = -1;
    }
    return notify_change();
}
