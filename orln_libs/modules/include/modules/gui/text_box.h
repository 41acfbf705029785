// TEXT_BOX: shows and edits text with inline tags for colour, style, font size, indents, separators
// and embedded controls.
//
// The text is 8-bit and holds its own tags (text_box_tag.h), so the tag language is also the form
// in which rich text is stored. It is laid out as a WM_GRID in which each row is a line and each
// cell a TEXT_BOX_WORD; scrolling, hit testing and redraw come from the grid. What a tag changes:
//
//     fg_colour, colour            decimal COLOUR     the text
//     bg_colour                    decimal COLOUR     what lies behind the words
//     style_on, style_off          bold, italic, faded
//     style                        decimal            all TEXT_BOX_STYLE bits at once
//     font_x_size, font_y_size     -10 to 10          is added to the style's font size
//     fix_indent, unfix_indent     -                  wrapped lines begin at this place; no more
//     separator                    -                  a line across the rest of the box
//     default                      -                  ends all of the above
//     any other                    free               the name stands as an embedded object, made
//                                                     by create_tag_object_callback, or as words
//
// Positions in the text are held as a cell of the grid with an offset inside its word, and all
// layout is made anew by `refresh` after every change. Of a text, 1000 rows are laid out.
//
// Main thread only.
#ifndef MODULES_GUI_TEXT_BOX_H
#define MODULES_GUI_TEXT_BOX_H

#include <cstdint>
#include <memory>
#include <string>

#include "modules/gui/text_box_substitution.h"
#include "modules/gui/text_box_tag.h"
#include "modules/winman/object_hint.h"
#include "modules/winman/owned_text.h"
#include "modules/winman/screen_object.h"
#include "platform/colour.h"
#include "platform/ptrarray.h"

class IMAGE;
class TEXT_BOX_WORD;
struct TEXT_BOX_POSITION;
struct TEXT_BOX_RANGE;
class WM_GRID;
class WM_SCRIPT;
class WM_STYLE_SET;

enum TEXT_BOX_FLAG : std::uint32_t {
    TBF_MULTI_LINE = 0x00000001,     // several rows; otherwise a line feed counts as a space
    TBF_SELECTABLE = 0x00000002,     // a selection can be made
    TBF_EDITABLE = 0x00000004,       // takes input, keeps spaces at line ends, shows a caret
    TBF_POPUP_MENU = 0x00000008,     // a right click opens the edit menu
    TBF_SUBSTITUTIONS = 0x00000010,  // what is typed runs through the substitutions
    TBF_PASSWORD = 0x00000020,       // each character shows as "*"; no copying, no undo
    TBF_NOTIFY_CHANGE = 0x00000040,  // the callback runs after every change
    TBF_RETURN_FIRES = 0x00000080,   // Return runs the callback, clears the history, breaks no line
    TBF_NO_TAGS = 0x00000100,        // "<" is an ordinary character; "<" and ">" may be typed
    TBF_FIXED_SIZE = 0x00000200,     // negative x2 and y2 don't ask for the text's own size
    TBF_CLICK_FIRES = 0x00000400,    // a left press in the box runs the callback with `clicked`
    TBF_CLICK_SELECTS_ALL = 0x00000800,  // a click that gives the focus to a text selects it all
    TBF_LEADING_SPACE = 0x00001000,      // a space may stand first
    TBF_NO_TRAILING_SPACE = 0x00002000,  // a space may not be typed at the end
    TBF_SHOW_REMAINING = 0x00004000,     // a line below tells how many characters are left
    TBF_JUSTIFY = 0x00008000,            // wrapped lines are stretched to the full width
    TBF_HARD_LIMIT = 0x00010000,         // text beyond the limit is refused; else the limit grows
};

// The bits of a style byte.
enum TEXT_BOX_STYLE : signed char {
    TEXT_BOX_BOLD = 1,
    TEXT_BOX_ITALIC = 2,
    TEXT_BOX_FADED = 4,
};

class TEXT_BOX : public WM_SCREEN_OBJECT {
public:
    static constexpr int TEXT_SIZE = 256;
    static constexpr std::int32_t DEFAULT_MAX_LENGTH = 256;
    // The last of them only shows where the text is cut off.
    static constexpr std::int16_t MAX_ROWS = 1001;

    // Makes the object that stands for one word of a tag's name, or null for a plain word. Without
    // a size of its own it gets none; the box takes ownership. The tag lives until the next
    // refresh, which deletes the object first.
    using CREATE_TAG_OBJECT = WM_SCREEN_OBJECT* (*)(TEXT_BOX& box, const char* style_prefix,
                                                    TEXT_BOX_TAG& tag, const char* word,
                                                    COLOUR& colours, signed char style,
                                                    std::int16_t font_x_delta,
                                                    std::int16_t font_y_delta,
                                                    unsigned char enabled, signed char window);

    // Negative x2 or y2 ask for the size of the text, see TBF_FIXED_SIZE. A `max_length` below 1
    // is DEFAULT_MAX_LENGTH; it is never below the text's length. `valid_chars`: when not null,
    // only these characters may be typed. Texts are copied; null is empty. `flags`: TEXT_BOX_FLAG.
    TEXT_BOX(std::int16_t x1, std::int16_t y1, std::int16_t x2, std::int16_t y2, const char* text,
             std::int32_t max_length, const char* valid_chars, std::uint32_t flags,
             const char* style_prefix, WM_CALLBACK callback, void* data1, void* data2,
             signed char window);
    ~TEXT_BOX() override;

    // --- Text ---

    // An equal text does nothing without `force`. The limit rises to the text's length. The cursor
    // of an editable box goes to the end.
    void set_text(const char* source, unsigned char force = 0);
    // At the cursor (without one, at the end), or behind the text. True for success; false, with
    // nothing changed, for a text beyond the limit with TBF_HARD_LIMIT. On an empty box: set_text.
    bool insert_text(const char* more);
    bool append_text(const char* more);
    const char* get_text() const { return text.c_str(); }
    // Null or empty: none.
    void set_prefix_text(const char* source);
    void set_default_text(const char* source);
    // Never below the text's length.
    void set_max_text_length(std::int32_t length);
    void set_enabled(unsigned char on);
    void set_flags(std::uint32_t new_flags);
    // Without its tags it becomes the hint; null or empty: none.
    void set_hint_text(const char* source);
    const char* get_hint_text() const;

    // The picture of `background`; an empty one if there is none.
    void set_icon_image(const IMAGE& image);
    void clear_icon_image();
    IMAGE& get_icon_image();

    // --- Scrolling: the position is the grid's, its greatest value is the top ---

    std::int32_t get_scroll_position() const;
    void set_scroll_position(std::int32_t position);
    bool get_scrolled_to_top() const;
    bool get_scrolled_to_bottom() const;
    void set_scroll_to_top();
    void set_scroll_to_bottom();
    // The text is higher than the box.
    bool get_scrolling() const;

    bool get_valid() const { return background != nullptr; }

    // Makes the layout anew. The argument is not used.
    void refresh(unsigned char unused = 0);
    // The style that the tags so far ask for: a copy of the word style set of the style byte, with
    // the colours that aren't invisible, and the differences in font size.
    void set_style_set(const COLOUR& fg, const COLOUR& bg, signed char style, std::int16_t x_delta,
                       std::int16_t y_delta, WM_STYLE_SET& out) const;

    // --- WM_SCREEN_OBJECT ---

    void hide(unsigned char modals, unsigned char children) override;
    WM_MESG monitor() override;
    // Negative sizes ask for the text's own, see TBF_FIXED_SIZE. The last argument has no effect.
    void resize(std::int16_t new_width, std::int16_t new_height, unsigned char draw) override;
    bool can_have_focus() override;
    // With `keep_position` the cursor and the selection stay where they are; otherwise a selectable
    // text is selected, and the cursor goes to its end. What was typed before is dropped.
    void take_focus(unsigned char keep_position) override;

    // The callback of the box's own buttons and menu items: data1 1 to 6 an item of the edit menu,
    // 7 a "callback" tag; data2 the box.
    static WM_MESG handle_callback(WM_SCREEN_OBJECT* object, void* data1, void* data2);

    // --- Cursor. A position is a cell (column, row), the pixels `x` from its word's left edge and
    // the characters `offset` from its word's start; -1 none ---

    void move_cursor(std::int16_t column, std::int16_t row, std::int16_t x, std::int32_t offset);
    void show_cursor();
    void hide_cursor();

    // Each is given a position and stores the one that it finds. True if it is another one.
    bool find_text_start(std::int16_t column, std::int16_t row, std::int16_t x, std::int32_t offset,
                         std::int16_t& out_column, std::int16_t& out_row, std::int16_t& out_x,
                         std::int32_t& out_offset);
    bool find_line_start(std::int16_t column, std::int16_t row, std::int16_t x, std::int32_t offset,
                         std::int16_t& out_column, std::int16_t& out_row, std::int16_t& out_x,
                         std::int32_t& out_offset);
    bool find_text_end(std::int16_t column, std::int16_t row, std::int16_t x, std::int32_t offset,
                       std::int16_t& out_column, std::int16_t& out_row, std::int16_t& out_x,
                       std::int32_t& out_offset);
    bool find_line_end(std::int16_t column, std::int16_t row, std::int16_t x, std::int32_t offset,
                       std::int16_t& out_column, std::int16_t& out_row, std::int16_t& out_x,
                       std::int32_t& out_offset);
    bool find_previous_char(std::int16_t column, std::int16_t row, std::int16_t x,
                            std::int32_t offset, std::int16_t& out_column, std::int16_t& out_row,
                            std::int16_t& out_x, std::int32_t& out_offset);
    bool find_next_char(std::int16_t column, std::int16_t row, std::int16_t x, std::int32_t offset,
                        std::int16_t& out_column, std::int16_t& out_row, std::int16_t& out_x,
                        std::int32_t& out_offset);
    bool find_previous_word(std::int16_t column, std::int16_t row, std::int16_t x,
                            std::int32_t offset, std::int16_t& out_column, std::int16_t& out_row,
                            std::int16_t& out_x, std::int32_t& out_offset);
    bool find_next_word(std::int16_t column, std::int16_t row, std::int16_t x, std::int32_t offset,
                        std::int16_t& out_column, std::int16_t& out_row, std::int16_t& out_x,
                        std::int32_t& out_offset);
    bool find_previous_line(std::int16_t column, std::int16_t row, std::int16_t x,
                            std::int32_t offset, std::int16_t& out_column, std::int16_t& out_row,
                            std::int16_t& out_x, std::int32_t& out_offset);
    bool find_next_line(std::int16_t column, std::int16_t row, std::int16_t x, std::int32_t offset,
                        std::int16_t& out_column, std::int16_t& out_row, std::int16_t& out_x,
                        std::int32_t& out_offset);
    // The character nearest to a point of the window.
    bool find_nearest_char(std::int16_t px, std::int16_t py, std::int16_t& column,
                           std::int16_t& row, std::int16_t& out_x, std::int32_t& offset);
    // Between a position and an index of `text`. False if there is none.
    bool get_text_index_from_char(std::int16_t column, std::int16_t row, std::int16_t x,
                                  std::int32_t offset, std::int32_t& index);
    bool get_char_from_text_index(std::int32_t index, std::int16_t& column, std::int16_t& row,
                                  std::int16_t& x, std::int32_t& offset);

    // --- Selection ---

    // From the cursor to the position; with `extend` only the moving end of the selection follows.
    void update_selection(std::int16_t column, std::int16_t row, std::int16_t x,
                          std::int32_t offset, unsigned char extend);
    void show_selection();
    void hide_selection();
    void clear_selection();
    void select_all();
    bool has_selection() const { return start_row >= 0 && end_row >= 0; }

    // --- Clipboard and history ---

    WM_MESG handle_copy_request();
    WM_MESG handle_cut_request();
    WM_MESG handle_paste_request();
    WM_MESG handle_undo_request();
    WM_MESG handle_redo_request();
    WM_MESG handle_select_all_request();
    // Makes a text, in place, one that may be pasted into this box.
    void remove_invalid_chars(char* source) const;

    // The first replaces a record with the same `from`. The record is copied.
    static void add_substitution(const TEXT_BOX_SUBSTITUTION& substitution);
    static void delete_substitution(const TEXT_BOX_SUBSTITUTION& substitution);

    char style_prefix[TEXT_SIZE] = "";  // of its look-ups in the skin
    std::string text;                   // with its tags
    std::int32_t max_text_length = DEFAULT_MAX_LENGTH;
    OWNED_TEXT valid_chars;           // null: all; empty: none
    std::uint32_t flags = 0;          // TEXT_BOX_FLAG
    OWNED_TEXT default_text;          // takes the place of the text while the box has no focus
    OWNED_TEXT prefix_text;           // a label in front of a single line
    WM_SCRIPT* background = nullptr;  // child: the frame
    WM_GRID* grid = nullptr;          // child of `background`: the lines
    WM_SCRIPT* info = nullptr;        // child of `background`: the line below the text
    char remaining_text[TEXT_SIZE] = "";
    char info_message[TEXT_SIZE] = "";    // takes the place of it for a second
    std::uint32_t info_message_time = 0;  // now_ms of its setting
    OBJECT_HINT hint{*this};
    bool hint_set = false;        // the hint for a text that doesn't fit has been made
    std::int16_t text_width = 0;  // pixels for one line
    bool auto_width = false, auto_height = false;  // shrink to the text at the next refresh
    PTRARRAY tags;  // TEXT_BOX_TAG*, owned: those that stand for words, in their order
    std::int16_t cursor_column = -1, cursor_row = -1, cursor_x = -1;
    std::int32_t cursor_offset = -1;
    std::int16_t start_column = -1, start_row = -1, start_x = -1;
    std::int32_t start_offset = -1;
    std::int16_t end_column = -1, end_row = -1, end_x = -1;
    std::int32_t end_offset = -1;
    bool cursor_at_start = false;  // the cursor is the selection's start, not its end
    // A press began outside the text. What was held at the last monitor, and where.
    bool left_outside = false, right_outside = false;
    bool last_left = false, last_right = false;
    std::int16_t last_x = -1, last_y = -1;
    bool had_focus = false;
    PTRARRAY history;  // char*, owned, from array new: states of the text
    std::int32_t history_position = -1;
    bool enabled = true;
    // The reason for the callback, while it runs.
    bool return_pressed = false, clicked = false, tag_clicked = false;
    std::int32_t tag_data1 = -1, tag_data2 = -1;  // the numbers of the "callback" tag
    std::int32_t plain_length = 0;                // characters outside tags, of the last refresh

    // Set by the application; null: tags show as plain words.
    static CREATE_TAG_OBJECT create_tag_object_callback;
    static PTRARRAY substitution_array;  // TEXT_BOX_SUBSTITUTION*, owned, in the order of adding

private:
    friend class TEXT_BOX_LAYOUT;

    void make_background();
    // Deletes the background with all that stands in it.
    void discard_children();
    void retire_tags();
    void drop_retired();
    // The same at the present size, with a new layout.
    void rebuild();
    // A new layout with the cursor of an editable text at its place.
    void refresh_in_place();
    // Who reads the end of a text goes on with it; else the same lines stay in view.
    struct SCROLL_PLACE {
        bool at_bottom;
        std::int32_t above;  // pixels above the view
    };
    SCROLL_PLACE get_scroll_place() const;
    void set_scroll_place(const SCROLL_PLACE& place);
    struct PLACES;
    PLACES find_places();
    void make_grid(const PLACES& places);
    void make_info(const PLACES& places);
    void make_prefix(const PLACES& places);
    void lay_out();
    void shrink_to_text();
    // Turns a finished line into a row of the grid: `words` are TEXT_BOX_WORD*, the last of them
    // the end of the line. Gaps beyond the `fixed_indent` are stretched with `justify`.
    void create_text_box_words(std::int16_t row, std::int16_t indent, std::int16_t fixed_indent,
                               PTRARRAY& words, unsigned char justify);
    // The layout shows the default text.
    bool shows_default_text() const;
    const char* get_shown_text() const;
    void clear_positions();
    void move_cursor_to_end();
    void show_changed_text();
    void update_fit_hint(bool wanted);
    void redraw();
    bool is_within_limit(const char* more);
    // Shows the info message, or else the count of characters left.
    void show_info();
    // Asks the callback.
    WM_MESG run_callback();
    // One of the items 1 to 6 of the edit menu.
    WM_MESG handle_menu_item(std::int32_t item);
    WM_MESG run_tag_callback(const WM_SCREEN_OBJECT& button);
    static void delete_substitution_callback(void* substitution);

    // Cursor and selection, see code/gui/text_box_position.h.
    TEXT_BOX_POSITION get_cursor() const;
    // The cursor or, of a selection, the end where the cursor stands.
    TEXT_BOX_POSITION get_moving_end() const;
    // The word that shows the caret, and where in it; null without a cursor.
    TEXT_BOX_WORD* find_caret_word(std::int16_t& caret_x) const;
    // Without scrolling.
    void set_cursor(const TEXT_BOX_POSITION& position);
    bool move_cursor_to_index(std::int32_t index);
    void show_cursor_or_selection();
    void refresh_at(std::int32_t index);
    void scroll_into_view(const TEXT_BOX_POSITION& position);
    void scroll_line_into_view(const TEXT_BOX_POSITION& position);
    std::int16_t get_line_shift() const;
    void set_line_shift(std::int16_t shift);
    void move_line(std::int16_t x_offset);
    // What the selection covers or, without one, an empty range at the cursor. False without
    // either, and while the default text is shown.
    bool get_selected_range(TEXT_BOX_RANGE& range) const;
    bool is_all_selected() const;

    // Input, in the order of a tick.
    struct MOUSE_TICK;
    MOUSE_TICK track_mouse();
    WM_MESG monitor_input(const MOUSE_TICK& mouse);
    void show_focus_loss();
    void show_focus_return();
    void take_focus_by_click(const MOUSE_TICK& mouse);
    void select_by_mouse(const MOUSE_TICK& mouse);
    bool is_over_text(std::int16_t px, std::int16_t py);
    void open_edit_menu();
    void close_edit_menu();
    WM_MESG monitor_keys();
    WM_MESG handle_typed_chars(bool& return_typed);
    WM_MESG handle_shortcut(unsigned char letter, bool shift);
    WM_MESG handle_key(std::int32_t key);
    void move_by_key(std::int32_t key, bool extend, bool control);
    void end_info_message();

    // Changes of the text.
    WM_MESG handle_return();
    WM_MESG type_char(char character);
    bool is_char_allowed(char character, const TEXT_BOX_RANGE& replaced) const;
    std::int32_t substitute(std::int32_t index);
    WM_MESG delete_char(bool forward);
    WM_MESG notify_change();
    WM_MESG refuse_paste(const TEXT_BOX_RANGE& range);
    void take_snapshot();
    void push_history();
    void cut_history(std::int32_t count);

    TEXT_BOX_WORD* prefix_word = nullptr;  // child of `background`: shows prefix_text
    std::int32_t text_extent = 0;          // pixels of the longest line
    std::int32_t reached_index = 0;        // of `text`, by the last refresh
    // The former background and its tags, if a tag's callback has changed the text while it was
    // running.
    PTRARRAY retired_tags;
    std::unique_ptr<WM_SCREEN_OBJECT> retired;
    bool default_text_shown = false;        // by the last refresh
    WM_SCREEN_OBJECT* edit_menu = nullptr;  // the one opened last, which may be gone
};

#endif  // MODULES_GUI_TEXT_BOX_H
