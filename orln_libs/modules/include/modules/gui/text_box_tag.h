// TEXT_BOX_TAG: a tag of the inline language of text boxes, and how one is found in a text.
//
// A tag stands in a text as
//
//     <name:type#value>
//
// `name` is text that the tag itself shows; it is empty for a tag that only changes how the text
// behind it looks, as in "<:colour#4294901760>".
#ifndef MODULES_GUI_TEXT_BOX_TAG_H
#define MODULES_GUI_TEXT_BOX_TAG_H

#include <cstdint>
#include <string_view>

// Each text is cut at 255 characters.
class TEXT_BOX_TAG {
public:
    static constexpr int TEXT_SIZE = 256;

    char name[TEXT_SIZE] = "";
    char type[TEXT_SIZE] = "";
    char value[TEXT_SIZE] = "";
};

// Where the pieces of a tag lie in its text, as indices of the text.
struct TEXT_BOX_TAG_PLACE {
    std::int32_t start = 0;      // the "<"
    std::int32_t name_end = 0;   // the ":" behind the name, which begins behind the "<"
    std::int32_t type_end = 0;   // the "#"
    std::int32_t value_end = 0;  // the ">"
};

// Finds the tags of one text. The places of the characters that make tags are remembered, so that
// finding out about every "<" of a text takes time in proportion to its length, whatever it holds.
// The text stays the caller's, unchanged for as long as the finder is used.
class TEXT_BOX_TAG_FINDER {
public:
    explicit TEXT_BOX_TAG_FINDER(std::string_view text);

    // The text has a whole tag at the "<" at index `start`. The name ends at the last ":" before
    // the ">"; the type ends at the next "#", which must also stand before the ">". So a ":" in the
    // value keeps a tag from being one.
    bool find(std::int32_t start, TEXT_BOX_TAG_PLACE& place);
    // Copies the three texts.
    void read(const TEXT_BOX_TAG_PLACE& place, TEXT_BOX_TAG& tag) const;
    // The same without a copy.
    std::string_view get_name(const TEXT_BOX_TAG_PLACE& place) const;
    std::string_view get_type(const TEXT_BOX_TAG_PLACE& place) const;
    std::string_view get_value(const TEXT_BOX_TAG_PLACE& place) const;

private:
    // A search for one character: none lies from `from` up to `found`.
    struct SEARCH {
        char wanted;
        std::int32_t from = -1;
        std::int32_t found = -1;
    };
    // The first place at or after `from`, or the text's length.
    std::int32_t find_char(SEARCH& search, std::int32_t from);
    std::string_view get_piece(std::int32_t from, std::int32_t to) const;

    const std::string_view text;
    // The last ":" before the ">" at `last_colon_end`.
    std::int32_t last_colon = -1, last_colon_end = -1;
    SEARCH colon{':'}, hash{'#'}, end{'>'};
};

#endif  // MODULES_GUI_TEXT_BOX_TAG_H
