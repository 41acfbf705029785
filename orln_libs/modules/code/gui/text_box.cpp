// Life, text, size and scrolling of text boxes.
#include "modules/gui/text_box.h"

#include <algorithm>
#include <cstring>

#include "kvcore/text_field.h"
#include "modules/gui/gui_skin.h"
#include "modules/gui/tagged_text.h"
#include "modules/winman/wm_grid.h"
#include "modules/winman/wm_script.h"
#include "platform/image.h"
#include "to_short.h"

TEXT_BOX::CREATE_TAG_OBJECT TEXT_BOX::create_tag_object_callback = nullptr;

namespace {

void delete_history_entry(void* entry) {
    delete[] static_cast<char*>(entry);
}

const char* or_empty(const char* text) {
    return text != nullptr ? text : "";
}

bool is_focusable(std::uint32_t flags) {
    return (flags & (TBF_SELECTABLE | TBF_EDITABLE)) != 0;
}

}  // namespace

TEXT_BOX::TEXT_BOX(std::int16_t x1, std::int16_t y1, std::int16_t x2, std::int16_t y2,
                   const char* text_, std::int32_t max_length, const char* valid_chars_,
                   std::uint32_t flags_, const char* style_prefix_, WM_CALLBACK callback_,
                   void* data1, void* data2, signed char window_)
    : WM_SCREEN_OBJECT(1, callback_, data1, data2, window_),
      text(or_empty(text_)),
      valid_chars(valid_chars_),
      flags(flags_),
      tags(0, 0, delete_entry<TEXT_BOX_TAG>),
      history(0, 0, delete_history_entry),
      retired_tags(0, 0, delete_entry<TEXT_BOX_TAG>) {
    KVCORE::copy_text_field(style_prefix, style_prefix_);
    type_flags |= WMF_COMPOSITE;
    allowed_focus = is_focusable(flags);
    set_max_text_length(max_length < 1 ? DEFAULT_MAX_LENGTH : max_length);
    x = x1;
    y = y1;
    const bool fixed = (flags & TBF_FIXED_SIZE) != 0;
    auto_width = x2 < 0 && !fixed;
    auto_height = y2 < 0 && !fixed;
    width = auto_width ? INT16_MAX : to_short(x2 - x1 + 1);
    height = auto_height ? INT16_MAX : to_short(y2 - y1 + 1);
    make_background();
    refresh();
}

TEXT_BOX::~TEXT_BOX() {
    close_edit_menu();
    discard_children();
}

void TEXT_BOX::make_background() {
    const WM_STYLE_SET& style = GUI_SKIN::get_style_set("TEXT_BOX_BACKGROUND", style_prefix);
    const std::int16_t right = to_short(std::max(x + width - 1, 0));
    const std::int16_t bottom = to_short(std::max(y + height - 1, 0));
    background = new WM_SCRIPT(x, y, right, bottom, style, "", window);
    add_object(background, 0);
}

void TEXT_BOX::discard_children() {
    grid = nullptr;
    info = nullptr;
    prefix_word = nullptr;
    WM_SCREEN_OBJECT* const discarded = background;
    background = nullptr;
    // A button whose callback is running stays until that is over.
    const bool retires = tag_clicked && retired == nullptr;
    remove_object(discarded, !retires, 0);
    if (retires) {
        retired.reset(discarded);
        retire_tags();
    }
    tags.clear();
}

void TEXT_BOX::drop_retired() {
    retired.reset();
    retired_tags.clear();
}

// What stands in the retired background may still refer to them.
void TEXT_BOX::retire_tags() {
    retired_tags.set(&tags);
    tags.set_delete_function(nullptr);
    tags.clear();
    tags.set_delete_function(delete_entry<TEXT_BOX_TAG>);
}

void TEXT_BOX::rebuild() {
    const SCROLL_PLACE scrolled = get_scroll_place();
    IMAGE icon;
    icon.copy_pixels_from(get_icon_image());
    discard_children();
    make_background();
    if (icon.width > 0) {
        set_icon_image(icon);
    }
    refresh();
    set_scroll_place(scrolled);
}

// --- Text ---

bool TEXT_BOX::shows_default_text() const {
    return default_text != nullptr && *default_text != '\0' && !has_focus();
}

const char* TEXT_BOX::get_shown_text() const {
    return shows_default_text() ? static_cast<const char*>(default_text) : text.c_str();
}

void TEXT_BOX::set_text(const char* source, unsigned char force) {
    source = or_empty(source);
    if (!force && text == source) {
        return;
    }
    text = source;
    set_max_text_length(max_text_length);
    show_changed_text();
}

void TEXT_BOX::show_changed_text() {
    refresh();
    if (flags & TBF_EDITABLE) {
        move_cursor_to_end();
    }
}

// Without TBF_HARD_LIMIT the limit makes room for the text.
bool TEXT_BOX::is_within_limit(const char* more) {
    const std::size_t length = text.size() + std::strlen(more);
    if (length > INT32_MAX) {
        return false;
    }
    const auto new_length = static_cast<std::int32_t>(length);
    if (new_length > max_text_length) {
        if (flags & TBF_HARD_LIMIT) {
            return false;
        }
        max_text_length = new_length;
    }
    return true;
}

bool TEXT_BOX::insert_text(const char* more) {
    std::int32_t index = 0;
    const bool has_cursor =
        !text.empty() && cursor_row >= 0 && !default_text_shown &&
        get_text_index_from_char(cursor_column, cursor_row, cursor_x, cursor_offset, index);
    if (!has_cursor) {
        return append_text(more);
    }
    more = or_empty(more);
    if (!is_within_limit(more)) {
        return false;
    }
    index = std::clamp(index, 0, static_cast<std::int32_t>(text.size()));
    text.insert(static_cast<std::size_t>(index), more);
    show_changed_text();
    return true;
}

bool TEXT_BOX::append_text(const char* more) {
    more = or_empty(more);
    if (!is_within_limit(more)) {
        return false;
    }
    if (text.empty()) {
        set_text(more);
        return true;
    }
    text += more;
    show_changed_text();
    return true;
}

void TEXT_BOX::set_prefix_text(const char* source) {
    prefix_text.set(source);
    if (!(flags & TBF_MULTI_LINE) && !shows_default_text()) {
        refresh_in_place();
    }
}

void TEXT_BOX::set_default_text(const char* source) {
    const bool was_shown = shows_default_text();
    default_text.set(source);
    if (was_shown || shows_default_text()) {
        refresh();
    }
}

void TEXT_BOX::set_max_text_length(std::int32_t length) {
    max_text_length = std::max(length, static_cast<std::int32_t>(text.size()));
    show_info();
}

void TEXT_BOX::set_enabled(unsigned char on) {
    if (enabled != (on != 0)) {
        enabled = on != 0;
        refresh_in_place();
    }
}

void TEXT_BOX::set_flags(std::uint32_t new_flags) {
    if (flags != new_flags) {
        flags = new_flags;
        allowed_focus = is_focusable(flags);
        refresh_in_place();
    }
}

void TEXT_BOX::set_hint_text(const char* source) {
    std::string plain(or_empty(source));
    if (!(flags & TBF_NO_TAGS)) {
        TAGGED_TEXT::remove_tags_from_text(plain.data());
    }
    hint.set_text(plain.c_str());
    hint_set = false;
}

const char* TEXT_BOX::get_hint_text() const {
    return hint.get_text();
}

// A single line that doesn't fit can be read in the hint, unless the owner has set another, or the
// text is a secret.
void TEXT_BOX::update_fit_hint(bool wanted) {
    const bool too_long = wanted && !(flags & (TBF_MULTI_LINE | TBF_PASSWORD)) && grid != nullptr &&
                          text_extent > text_width;
    if (too_long && (hint_set || !hint.is_set())) {
        set_hint_text(text.c_str());
        hint_set = hint.is_set();
    } else if (!too_long && hint_set) {
        hint.set_text(nullptr);
        hint_set = false;
    }
}

void TEXT_BOX::move_cursor_to_end() {
    std::int16_t column = -1, row = -1, at_x = -1;
    std::int32_t offset = -1;
    if (grid == nullptr || grid->row_count == 0 || default_text_shown) {
        return;
    }
    find_text_end(-1, -1, -1, -1, column, row, at_x, offset);
    move_cursor(column, row, at_x, offset);
    if (has_focus()) {
        show_cursor();
    }
}

// --- Icon ---

void TEXT_BOX::set_icon_image(const IMAGE& image) {
    if (background != nullptr) {
        background->icon.copy_pixels_from(image);
        redraw();
    }
}

void TEXT_BOX::clear_icon_image() {
    if (background != nullptr) {
        background->icon.reset(0, 0);
        redraw();
    }
}

IMAGE& TEXT_BOX::get_icon_image() {
    static IMAGE blank;
    return background != nullptr ? background->icon : blank;
}

// --- Scrolling ---

std::int32_t TEXT_BOX::get_scroll_position() const {
    return grid != nullptr ? grid->scroll.value.long_value : 0;
}

void TEXT_BOX::set_scroll_position(std::int32_t position) {
    if (grid != nullptr) {
        grid->scroll.set(grid->scroll.value, position);
        grid->check_scrolling();
    }
}

bool TEXT_BOX::get_scrolled_to_top() const {
    return grid == nullptr || grid->scroll.value.long_value >= grid->scroll.max.long_value;
}

bool TEXT_BOX::get_scrolled_to_bottom() const {
    return grid == nullptr || grid->scroll.value.long_value <= grid->scroll.min.long_value;
}

void TEXT_BOX::set_scroll_to_top() {
    if (grid != nullptr) {
        set_scroll_position(grid->scroll.max.long_value);
    }
}

void TEXT_BOX::set_scroll_to_bottom() {
    if (grid != nullptr) {
        set_scroll_position(grid->scroll.min.long_value);
    }
}

bool TEXT_BOX::get_scrolling() const {
    return grid != nullptr && grid->is_overflowing();
}

TEXT_BOX::SCROLL_PLACE TEXT_BOX::get_scroll_place() const {
    return {get_scrolling() && get_scrolled_to_bottom(),
            grid != nullptr ? grid->get_scroll_position() : 0};
}

void TEXT_BOX::set_scroll_place(const SCROLL_PLACE& place) {
    if (grid != nullptr) {
        grid->set_scroll_to_position(place.at_bottom ? INT32_MAX : place.above);
        grid->check_scrolling();
    }
}

// --- Object ---

void TEXT_BOX::hide(unsigned char modals, unsigned char children) {
    hint.reset();
    WM_SCREEN_OBJECT::hide(modals, children);
}

void TEXT_BOX::resize(std::int16_t new_width, std::int16_t new_height, unsigned char /*draw*/) {
    if (new_width == width && new_height == height) {
        return;
    }
    const bool fixed = (flags & TBF_FIXED_SIZE) != 0;
    auto_width = new_width < 0 && !fixed;
    auto_height = new_height < 0 && !fixed;
    WM_SCREEN_OBJECT::resize(auto_width ? INT16_MAX : new_width,
                             auto_height ? INT16_MAX : new_height, 0);
    rebuild();
    update_fit_hint(true);
    if (flags & TBF_EDITABLE) {
        move_cursor_to_end();
    }
}

void TEXT_BOX::redraw() {
    if (visible) {
        mark_own_rectangle();
    }
}

void TEXT_BOX::clear_positions() {
    cursor_column = cursor_row = cursor_x = -1;
    start_column = start_row = start_x = -1;
    end_column = end_row = end_x = -1;
    cursor_offset = start_offset = end_offset = -1;
    cursor_at_start = false;
}

WM_MESG TEXT_BOX::run_callback() {
    return callback != nullptr ? callback(this, callback_data1, callback_data2) : WM_MESG_NONE;
}
