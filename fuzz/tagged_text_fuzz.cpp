// Texts with tags, as the server and the catalogue send them: split into words, freed of their
// tags, and laid out in text boxes of all kinds.
#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <string>

#include "modules/gui/tagged_text.h"
#include "modules/gui/text_box.h"
#include "modules/gui/text_box_word.h"
#include "modules/winman/page_tool_manager.h"
#include "modules/winman/style_set.h"
#include "modules/winman/wm_grid.h"
#include "modules/winman/wm_script.h"

namespace {

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

WM_SCREEN_OBJECT* make_object(TEXT_BOX& box, const char* /*prefix*/, TEXT_BOX_TAG& tag,
                              const char* word, COLOUR& /*colour*/, signed char /*style*/,
                              std::int16_t /*x_delta*/, std::int16_t /*y_delta*/,
                              unsigned char /*enabled*/, signed char window) {
    require(std::strstr(tag.name, word) != nullptr && *word != '\0');
    require(box.tags.get_count() > 0);
    return tag.value[0] == 'w' ? new WM_SCRIPT(0, 0, -1, -1, WM_STYLE_SET(), word, window)
                               : nullptr;
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

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size < 4 || size > 4096) {
        return 0;
    }
    static const bool has_skin = (make_skin(), true);
    require(has_skin);
    std::uint32_t kind = 0;
    std::memcpy(&kind, data, sizeof kind);
    TEXT_BOX::create_tag_object_callback = kind >> 31 ? make_object : nullptr;
    // Texts end at their first 0, as everywhere in the system.
    const char* begin = reinterpret_cast<const char*>(data) + sizeof kind;
    const std::string text(begin, ::strnlen(begin, size - sizeof kind));
    check_splitting(text);
    check_box(text, kind);
    return 0;
}
