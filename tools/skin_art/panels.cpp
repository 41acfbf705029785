// Frames of pages, their tabs, and the rows of tables in them.
//
// A frame is one card, drawn whole as its background. Its pieces lie on that inside its edge: a row
// with the tabs or, without tabs, just the round upper corners; the title's band; the content,
// which needs no picture; the round lower corners or a band that holds controls.
#include <string>

#include "canvas.h"
#include "families.h"
#include "palette.h"
#include "picture_output.h"

namespace {

constexpr double RADIUS = 7;        // of the card
constexpr double INNER_RADIUS = 6;  // within its edge
constexpr int MARGIN = 4;           // of the shadow

void put_frame_card(const PALETTE& palette, PICTURE_OUTPUT& output, const std::string& name) {
    CANVAS canvas(MARGIN * 2 + 56, MARGIN * 2 + 56);
    const BOX body = canvas.all().inset(MARGIN);
    canvas.shadow(body.moved(0, 1), RADIUS, palette.faded("shadow", 0.18), 3);
    canvas.erase(body, RADIUS);
    canvas.fill(body, RADIUS, palette["surface"]);
    canvas.frame(body, RADIUS, palette["line"]);
    output.put_nine(canvas, name, MARGIN + 8);
}

// A piece of a row at the frame's edge, which keeps its height.
void put_row_piece(PICTURE_OUTPUT& output, const std::string& name, int height,
                   const CORNERS& corners, COLOUR face, COLOUR upper_line = COLOUR_INVISIBLE) {
    constexpr int WIDTH = 32;
    CANVAS canvas(WIDTH, height);
    canvas.fill(canvas.all(), corners, face);
    canvas.fill({0, 0, WIDTH, 1}, 0, upper_line);
    output.put_across(canvas, name, corners.top_left + corners.bottom_left > 0 ? 7 : 1,
                      corners.top_right + corners.bottom_right > 0 ? 7 : 1);
}

constexpr CORNERS UPPER_LEFT{INNER_RADIUS, 0, 0, 0};
constexpr CORNERS UPPER_RIGHT{0, INNER_RADIUS, 0, 0};
constexpr CORNERS LOWER_RIGHT{0, 0, INNER_RADIUS, 0};
constexpr CORNERS LOWER_LEFT{0, 0, 0, INNER_RADIUS};

void put_top_row(const PALETTE& palette, PICTURE_OUTPUT& output) {
    constexpr int WITH_TABS = 34;
    constexpr int WITHOUT_TABS = 7;
    const COLOUR face = palette["band"];
    put_row_piece(output, "frame_top_first", WITH_TABS, UPPER_LEFT, face);
    put_row_piece(output, "frame_top_last", WITH_TABS, UPPER_RIGHT, face);
    put_row_piece(output, "frame_top_no_tabs_first", WITHOUT_TABS, UPPER_LEFT, face);
    put_row_piece(output, "frame_top_no_tabs_last", WITHOUT_TABS, UPPER_RIGHT, face);
    CANVAS mid(32, 16);
    mid.fill(mid.all(), 0, face);
    output.put_nine(mid, "frame_top_mid", 2);
}

void put_title_and_bottom(const PALETTE& palette, PICTURE_OUTPUT& output) {
    CANVAS title(32, 24);
    title.fill(title.all(), 0, palette["band"]);
    title.fill({0, 23, 32, 1}, 0, palette["line"]);
    output.put_nine(title, "frame_title", 4);

    constexpr int PLAIN = 9;
    constexpr int HOLDER = 44;
    const COLOUR face = palette["surface"];
    put_row_piece(output, "frame_bottom_first", PLAIN, LOWER_LEFT, face);
    put_row_piece(output, "frame_bottom_mid", PLAIN, 0, face);
    put_row_piece(output, "frame_bottom_last", PLAIN, LOWER_RIGHT, face);
    const COLOUR band = palette["band"];
    const COLOUR line = palette["line"];
    put_row_piece(output, "frame_bottom_first_holder", HOLDER, LOWER_LEFT, band, line);
    put_row_piece(output, "frame_bottom_mid_holder", HOLDER, 0, band, line);
    put_row_piece(output, "frame_bottom_last_holder", HOLDER, LOWER_RIGHT, band, line);
}

void put_icon_bar(const PALETTE& palette, PICTURE_OUTPUT& output) {
    CANVAS canvas(32, 32);
    canvas.fill(canvas.all(), 5, palette["groove"]);
    output.put_nine(canvas, "frame_icon_bar", 6);
}

constexpr int TAB_WIDTH = 40;

// The line under the selected tab is part of the row behind it.
void put_tab(PICTURE_OUTPUT& output, const std::string& name, COLOUR face, COLOUR edge) {
    constexpr int HEIGHT = 32;
    CANVAS canvas(TAB_WIDTH, HEIGHT);
    const BOX body = {2, 4, TAB_WIDTH - 4, HEIGHT - 8};
    canvas.fill(body, 5, face);
    canvas.frame(body, 5, edge);
    output.put_across(canvas, name, 10, 10);
}

void put_sub_tab(PICTURE_OUTPUT& output, const std::string& name, COLOUR face, COLOUR edge) {
    CANVAS canvas(TAB_WIDTH, 24);
    const BOX body = canvas.all().inset(1);
    canvas.fill(body, 11, face);
    canvas.frame(body, 11, edge);
    output.put_across(canvas, name, 13, 13);
}

void put_title_cell(const PALETTE& palette, PICTURE_OUTPUT& output, const std::string& name,
                    const CORNERS& corners) {
    const auto put_state = [&](const char* state, COLOUR face) {
        CANVAS canvas(24, 20);
        canvas.fill(canvas.all(), corners, face);
        canvas.fill({0, 19, 24, 1}, 0, palette["line"]);
        output.put_nine(canvas, name + state, 6);
    };
    put_state("", palette["band"]);
    put_state("_over", palette["accent_wash"]);
}

void put_row(PICTURE_OUTPUT& output, const std::string& name, COLOUR face, COLOUR line) {
    CANVAS canvas(40, 16);
    canvas.fill(canvas.all(), 0, face);
    canvas.fill({0, 15, 40, 1}, 0, line);
    output.put_nine(canvas, name, 4);
}

}  // namespace

void draw_panel_frame(const PALETTE& palette, PICTURE_OUTPUT& output) {
    put_frame_card(palette, output, "frame_background");
    put_frame_card(palette, output, "card");
    put_top_row(palette, output);
    put_title_and_bottom(palette, output);
    put_icon_bar(palette, output);
}

void draw_tabs(const PALETTE& palette, PICTURE_OUTPUT& output) {
    CANVAS row(32, 16);
    row.fill(row.all(), 0, palette["band"]);
    row.fill({0, 14, 32, 2}, 0, palette["accent"]);
    output.put_nine(row, "frame_top_mid_selected", 2);

    const COLOUR none = COLOUR_INVISIBLE;
    const COLOUR accent = palette["accent"];
    const COLOUR wash = palette["accent_wash"];
    const COLOUR edge = palette.faded("accent", 0.6);
    for (const std::string tab : {"tab", "tab_selected"}) {
        put_tab(output, tab + "_up", none, none);
        put_tab(output, tab + "_over", wash, edge);
        put_tab(output, tab + "_down", blend(wash, accent, 0.3), accent);
        put_tab(output, tab + "_disabled", none, none);
    }

    put_sub_tab(output, "sub_tab_up", none, none);
    put_sub_tab(output, "sub_tab_over", wash, edge);
    put_sub_tab(output, "sub_tab_down", blend(wash, accent, 0.3), accent);
    put_sub_tab(output, "sub_tab_disabled", none, none);
    for (const char* state : {"up", "down", "disabled"}) {
        put_sub_tab(output, std::string("sub_tab_selected_") + state, wash, palette["accent_dark"]);
    }
    put_sub_tab(output, "sub_tab_selected_over", blend(wash, accent, 0.15), palette["accent_dark"]);
}

void draw_profile_rows(const PALETTE& palette, PICTURE_OUTPUT& output) {
    put_title_cell(palette, output, "title_only", {4, 4, 0, 0});
    put_title_cell(palette, output, "title_first", {4, 0, 0, 0});
    put_title_cell(palette, output, "title_middle", 0);
    put_title_cell(palette, output, "title_last", {0, 4, 0, 0});
    const COLOUR line = palette.faded("line", 0.7);
    put_row(output, "row", palette["surface"], line);
    put_row(output, "row_alternate", palette["row_alternate"], line);
    put_row(output, "row_highlighted", palette["row_selected"], line);
}
