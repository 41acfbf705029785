// Text boxes in a window without a native window, in a small skin made in memory. There is no font,
// so every character is one pixel wide; lines are 10 pixels high.
#ifndef MODULES_TESTS_TEXT_BOX_FIXTURE_H
#define MODULES_TESTS_TEXT_BOX_FIXTURE_H

#include <memory>
#include <string>
#include <vector>

#include "modules/gui/text_box.h"
#include "modules/gui/text_box_word.h"
#include "modules/winman/page_tool_manager.h"
#include "modules/winman/wm_grid.h"
#include "modules/winman/wm_script.h"
#include "winman_fixture.h"

class TextBoxFixture : public WINMAN_FIXTURE {
protected:
    static constexpr int LINE_HEIGHT = 10, BAR_WIDTH = 5;

    void SetUp() override {
        WINMAN_FIXTURE::SetUp();
        add_style("TEXT_BOX_BACKGROUND").flags |= STYLE_LEFT_JUSTIFY_TEXT;
        add_style("TEXT_BOX_GRID");
        add_style("TEXT_BOX_SCROLLBAR").grid_scrollbar_width = BAR_WIDTH;
        add_style("TEXT_BOX_INFO");
        add_style("TEXT_BOX_SEPARATOR").font_y_sz = 2;
        for (const char* name : {"TEXT_BOX_WORD", "TEXT_BOX_WORD_BOLD", "TEXT_BOX_WORD_ITALIC",
                                 "TEXT_BOX_WORD_BOLD_ITALIC"}) {
            add_style(name);
        }
    }
    void TearDown() override {
        TEXT_BOX::create_tag_object_callback = nullptr;
        WINMAN_FIXTURE::TearDown();
        WM_PAGE_TOOL_MANAGER::get_instance().clear();
    }

    // Black on nothing, without gaps.
    static WM_STYLE_SET& add_style(const char* name) {
        auto* style = new WM_STYLE_SET;
        style->set_name(name);
        style->fg_colour = COLOUR_BLACK;
        style->bg_colour = COLOUR_INVISIBLE;
        style->font_x_sz = style->font_y_sz = LINE_HEIGHT;
        style->x_spacing = style->y_spacing = 0;
        WM_PAGE_TOOL_MANAGER& tools = WM_PAGE_TOOL_MANAGER::get_instance();
        tools.style_sets.add(style);
        tools.sort_style_sets();
        return *style;
    }
    static WM_STYLE_SET& style(const char* name) {
        return *WM_PAGE_TOOL_MANAGER::get_instance().find_style_set(name);
    }

    // A box in area 0, which owns it. A size of 0 asks for the text's own.
    static TEXT_BOX& make(const std::string& text, std::uint32_t flags = TBF_MULTI_LINE,
                          int width = 20, int height = 100, std::int32_t limit = -1) {
        const auto far_edge = [](int size) {
            return static_cast<std::int16_t>(size == 0 ? -1 : size - 1);
        };
        auto* box = new TEXT_BOX(0, 0, far_edge(width), far_edge(height), text.c_str(), limit,
                                 nullptr, flags, "", nullptr, nullptr, nullptr, 0);
        area().add_object(box, 0);
        return *box;
    }

    static TEXT_BOX_WORD& word(const TEXT_BOX& box, int column, int row) {
        return static_cast<TEXT_BOX_WORD&>(*box.grid->get_object(static_cast<std::int16_t>(column),
                                                                 static_cast<std::int16_t>(row)));
    }
    static int word_count(const TEXT_BOX& box, int row) {
        return box.grid->rows[static_cast<std::size_t>(row)]->columns;
    }
    static int offset(const TEXT_BOX& box, int row) {
        return box.grid->rows[static_cast<std::size_t>(row)]->x_offset;
    }
    // What a word shows, itself or in the word that it holds.
    static std::string shown(const TEXT_BOX_WORD& of) {
        OBJECT_WALK walk(of.objects, OBJECT_WALK::FORWARD);
        const WM_SCREEN_OBJECT* child = walk.next();
        const auto* inner = dynamic_cast<const TEXT_BOX_WORD*>(child);
        return inner != nullptr ? inner->text : of.text;
    }
    // The words of a row that take room, with "|" between them.
    static std::string row_text(const TEXT_BOX& box, int row) {
        std::string result;
        for (int column = 0; column < word_count(box, row) - 1; ++column) {
            const TEXT_BOX_WORD& one = word(box, column, row);
            if (one.width > 0) {
                result += (result.empty() ? "" : "|") + shown(one);
            }
        }
        return result;
    }
    static std::vector<std::string> lines(const TEXT_BOX& box) {
        std::vector<std::string> result;
        for (int row = 0; row < box.grid->row_count; ++row) {
            result.push_back(row_text(box, row));
        }
        return result;
    }
    static int row_width(const TEXT_BOX& box, int row) {
        int width = 0;
        for (int column = 0; column < word_count(box, row) - 1; ++column) {
            width += word(box, column, row).width;
        }
        return width;
    }
    static std::string span(const TEXT_BOX& box, int column, int row) {
        const TEXT_BOX_WORD& of = word(box, column, row);
        return std::to_string(of.text_start) + "-" + std::to_string(of.text_end);
    }
};

#endif  // MODULES_TESTS_TEXT_BOX_FIXTURE_H
