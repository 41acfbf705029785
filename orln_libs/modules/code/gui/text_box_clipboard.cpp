// Cut, copy and paste of text boxes.
#include <algorithm>
#include <cstring>
#include <string>
#include <string_view>
#include <vector>

#include "kvcore/text_field.h"
#include "modules/gui/text_box.h"
#include "platform/window_platform.h"
#include "text_box_position.h"
#include "text_piece.h"

namespace {

constexpr std::int32_t CLIPBOARD_SIZE = 4096;
constexpr char TOO_BIG[] = "Pasted text is too big";

bool is_control(char character) {
    return static_cast<unsigned char>(character) < ' ' || character == '\x7F';
}

// Control characters go; of several lines their ends stay, all as line feeds.
std::string remove_control_chars(std::string_view source, bool multi_line) {
    std::string result;
    result.reserve(source.size());
    for (std::size_t i = 0; i < source.size(); ++i) {
        const char c = source[i];
        if (!is_control(c)) {
            result += c;
        } else if (multi_line && (c == '\r' || c == '\n')) {
            result += '\n';
            i += c == '\r' && i + 1 < source.size() && source[i + 1] == '\n' ? 1 : 0;
        }
    }
    return result;
}

// Only whole tags stay, up to the first "<" that begins none, and of these no indents.
std::string remove_broken_tags(std::string_view source) {
    TEXT_BOX_TAG_FINDER finder(source);
    std::string result;
    result.reserve(source.size());
    TEXT_BOX_TAG_PLACE place;
    for (std::size_t i = 0; i < source.size();) {
        const std::size_t tag = std::min(source.find('<', i), source.size());
        result += source.substr(i, tag - i);
        if (tag == source.size() || !finder.find(static_cast<std::int32_t>(tag), place)) {
            break;
        }
        i = static_cast<std::size_t>(place.value_end) + 1;
        const std::string_view type = finder.get_type(place);
        if (!is_same_word(type, "fix_indent") && !is_same_word(type, "unfix_indent")) {
            result += source.substr(tag, i - tag);
        }
    }
    return result;
}

}  // namespace

void TEXT_BOX::remove_invalid_chars(char* source) const {
    if (source == nullptr) {
        return;
    }
    std::string result = remove_control_chars(source, (flags & TBF_MULTI_LINE) != 0);
    if (!(flags & TBF_LEADING_SPACE)) {
        result.erase(0, result.find_first_not_of(' '));
    }
    if (flags & TBF_NO_TRAILING_SPACE) {
        result.erase(result.find_last_not_of(' ') + 1);
    }
    if (!(flags & TBF_NO_TAGS)) {
        result = remove_broken_tags(result);
    }
    // It has only become shorter.
    std::memcpy(source, result.c_str(), result.size() + 1);
}

WM_MESG TEXT_BOX::handle_copy_request() {
    TEXT_BOX_RANGE range;
    if (has_selection() && !(flags & TBF_PASSWORD) && get_selected_range(range)) {
        std::string copy = text.substr(static_cast<std::size_t>(range.start),
                                       static_cast<std::size_t>(range.get_length()));
        remove_invalid_chars(copy.data());
        set_clipboard_text(copy.c_str());
    }
    return WM_MESG_NONE;
}

WM_MESG TEXT_BOX::handle_cut_request() {
    TEXT_BOX_RANGE range;
    if (!(flags & TBF_EDITABLE) || (flags & TBF_PASSWORD) || !has_selection() ||
        !get_selected_range(range)) {
        return WM_MESG_NONE;
    }
    handle_copy_request();
    return delete_char(true);
}

// The text stays as it is.
WM_MESG TEXT_BOX::refuse_paste(const TEXT_BOX_RANGE& range) {
    if (info != nullptr) {
        KVCORE::copy_text_field(info_message, TOO_BIG);
        info_message_time = now_ms;
        show_info();
    }
    cursor_at_start = false;
    move_cursor_to_index(range.end);
    if (has_focus()) {
        show_cursor_or_selection();
    }
    return WM_MESG_NONE;
}

WM_MESG TEXT_BOX::handle_paste_request() {
    if (!(flags & TBF_EDITABLE) || !is_text_in_clipboard()) {
        return WM_MESG_NONE;
    }
    std::vector<char> pasted(CLIPBOARD_SIZE, '\0');
    get_clipboard_text(pasted.data(), CLIPBOARD_SIZE);
    remove_invalid_chars(pasted.data());
    TEXT_BOX_RANGE range;
    if (pasted[0] == '\0' || !get_selected_range(range)) {
        return WM_MESG_NONE;
    }
    const std::int32_t room =
        max_text_length - (static_cast<std::int32_t>(text.size()) - range.get_length());
    if (room <= 0) {
        return refuse_paste(range);
    }
    get_clipboard_text(pasted.data(), std::min(room, CLIPBOARD_SIZE - 1) + 1);
    remove_invalid_chars(pasted.data());
    std::string inserted(pasted.data());
    if (inserted.empty()) {
        return refuse_paste(range);
    }
    if (valid_chars != nullptr) {
        for (char& c : inserted) {
            c = std::strchr(valid_chars, c) != nullptr ? c : '?';
        }
    }
    take_snapshot();
    text.replace(static_cast<std::size_t>(range.start),
                 static_cast<std::size_t>(range.get_length()), inserted);
    refresh_at(range.start + static_cast<std::int32_t>(inserted.size()));
    return notify_change();
}
