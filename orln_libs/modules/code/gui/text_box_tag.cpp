#include "modules/gui/text_box_tag.h"

#include <algorithm>

#include "text_piece.h"

namespace {

// std::string_view's own find ends at the text's end with npos.
std::int32_t find_from(std::string_view text, char wanted, std::int32_t from) {
    const std::size_t found = text.find(wanted, static_cast<std::size_t>(from));
    return static_cast<std::int32_t>(std::min(found, text.size()));
}

}  // namespace

TEXT_BOX_TAG_FINDER::TEXT_BOX_TAG_FINDER(std::string_view text_) : text(text_) {
}

std::int32_t TEXT_BOX_TAG_FINDER::find_char(SEARCH& search, std::int32_t from) {
    if (search.from < 0 || from < search.from || from > search.found) {
        search.from = from;
        search.found = find_from(text, search.wanted, from);
    }
    return search.found;
}

bool TEXT_BOX_TAG_FINDER::find(std::int32_t start, TEXT_BOX_TAG_PLACE& place) {
    const auto length = static_cast<std::int32_t>(text.size());
    const std::int32_t first = find_char(colon, start + 1);
    if (first == length) {
        return false;
    }
    const std::int32_t close = find_char(end, first + 1);
    if (close == length) {
        return false;
    }
    // A ":" further on, but before the ">", ends the name in its place.
    if (close != last_colon_end) {
        last_colon = static_cast<std::int32_t>(text.rfind(':', static_cast<std::size_t>(close)));
        last_colon_end = close;
    }
    const std::int32_t name_end = last_colon;
    const std::int32_t type_end = find_char(hash, name_end + 1);
    if (type_end >= close) {
        return false;
    }
    place = {start, name_end, type_end, close};
    return true;
}

std::string_view TEXT_BOX_TAG_FINDER::get_piece(std::int32_t from, std::int32_t to) const {
    return text.substr(static_cast<std::size_t>(from), static_cast<std::size_t>(to - from));
}

std::string_view TEXT_BOX_TAG_FINDER::get_name(const TEXT_BOX_TAG_PLACE& place) const {
    return get_piece(place.start + 1, place.name_end);
}

std::string_view TEXT_BOX_TAG_FINDER::get_type(const TEXT_BOX_TAG_PLACE& place) const {
    return get_piece(place.name_end + 1, place.type_end);
}

std::string_view TEXT_BOX_TAG_FINDER::get_value(const TEXT_BOX_TAG_PLACE& place) const {
    return get_piece(place.type_end + 1, place.value_end);
}

void TEXT_BOX_TAG_FINDER::read(const TEXT_BOX_TAG_PLACE& place, TEXT_BOX_TAG& tag) const {
    copy_text_piece(tag.name, get_name(place));
    copy_text_piece(tag.type, get_type(place));
    copy_text_piece(tag.value, get_value(place));
}
