#include "kvcore/file_path.h"

namespace KVCORE {
namespace {

// The index of the last `unit`, -1 without one.
std::int32_t find_last(const STRING& text, char16_t unit) {
    const std::int32_t length = text.get_length();
    const std::int32_t index = text.find_char_reverse(unit);
    return index < length ? index : -1;
}

}  // namespace

void FILE_PATH::set_value(const STRING& text, CONTAINER_TYPE type) {
    text_ = text;
    clean_path(type);
}

void FILE_PATH::clean_path(CONTAINER_TYPE type) {
    text_ = text_.replace_chars('\\', '/');
    if (text_.is_empty()) {
        return;
    }
    if (type == NAMES_FILE) {
        if (is_container()) {
            text_ = text_.delete_last_char();
        }
        if (find_last(text_, u'.') <= find_last(text_, u'/')) {
            text_ = text_.add('.');
        }
        return;
    }
    const std::int32_t dot = find_last(text_, u'.');
    const bool has_type = type == FROM_TEXT && dot > 0 && dot > find_last(text_, u'/');
    if (!has_type && !is_container()) {
        text_ = text_.add('/');
    }
}

bool FILE_PATH::is_relative() const {
    if (text_.get_first_char() == u'/') {
        return false;
    }
    const std::int32_t length = text_.get_length();
    const std::int32_t colon = text_.find_char(':');
    const std::int32_t slash = text_.find_char('/');
    return length < 3 || colon == length || slash == length || colon > slash;
}

STRING FILE_PATH::get_name_and_type() const {
    const STRING text = is_container() ? text_.delete_last_char() : text_;
    return text.get_substring(find_last(text, u'/') + 1, STRING::MAX_LENGTH);
}

FILE_NAME FILE_PATH::get_name() const {
    const STRING component = get_name_and_type();
    const std::int32_t dot = find_last(component, u'.');
    return FILE_NAME(dot > 0 && !is_container() ? component.get_left(dot) : component);
}

STRING FILE_PATH::get_type_text() const {
    if (is_container()) {
        return FILE_TYPE_CONTAINER.get_string();
    }
    const STRING component = get_name_and_type();
    const std::int32_t dot = find_last(component, u'.');
    return dot < 0 ? FILE_TYPE_NONE.get_string() : component.get_substring(dot, STRING::MAX_LENGTH);
}

FILE_TYPE FILE_PATH::get_type() const {
    // A copy: a symbol keeps its text for good, and this one may be borrowed from anywhere.
    return FILE_TYPE(STRING(TEXT_VIEW(get_type_text())));
}

FILE_PATH FILE_PATH::get_parent() const {
    const STRING text = is_container() ? text_.delete_last_char() : text_;
    const std::int32_t slash = find_last(text, u'/');
    return slash < 0 ? ROOT_PATH : FILE_PATH(text.get_left(slash + 1));
}

FILE_PATH FILE_PATH::append_path(const FILE_PATH& other) const {
    if (!other.is_relative()) {
        return FILE_PATH(other, FROM_TEXT);
    }
    FILE_PATH base(*this, FROM_TEXT);
    const std::int32_t step = PARENT_PATH.get_length();
    std::int32_t start = 0;
    while (other.text_.get_substring(start, start + step - 1) == PARENT_PATH) {
        base = base.get_parent();
        start += step;
    }
    return FILE_PATH(base.text_.add(other.text_.get_substring(start, STRING::MAX_LENGTH)));
}

FILE_PATH FILE_PATH::append_name_and_type(const FILE_NAME& name, const FILE_TYPE& type) const {
    if (type == FILE_TYPE_CONTAINER) {
        return append_path(FILE_PATH(name, NAMES_CONTAINER));
    }
    STRING combined;
    combine_name_and_type(name, type, combined);
    return FILE_PATH(text_.add(combined));
}

void FILE_PATH::combine_name_and_type(const FILE_NAME& name, const FILE_TYPE& type, STRING& out) {
    if (type == FILE_TYPE_CONTAINER) {
        out = name.get_string();
    } else if (type == FILE_TYPE_ANY || type == FILE_TYPE_ANY_FILE) {
        out = name.get_string().add(WILDCARD_TYPE);
    } else {
        out = name.get_string().add(type.get_string());
    }
}

}  // namespace KVCORE
