#include "gallery_page_grids.h"

#include <iterator>

#include "gallery_camera.h"
#include "modules/gui/gui_skin.h"
#include "modules/gui/parameter.h"
#include "modules/winman/style_set.h"
#include "modules/winman/window_manager.h"
#include "modules/winman/wm_button.h"
#include "modules/winman/wm_grid.h"
#include "modules/winman/wm_image.h"
#include "modules/winman/wm_script.h"
#include "modules/winman/wm_scrollbar.h"

namespace {

constexpr signed char WINDOW = WM_WINDOW_MANAGER::MAIN_WINDOW;
constexpr std::int32_t TOP = 28, GRID_HEIGHT = 236;
constexpr std::int32_t FULL = 100;

const char* const PLAYERS[][3] = {
    {"Ada Northgate", "Keeper", "17"},  {"Bela Krause", "Back", "14"},
    {"Chidi Okafor", "Back", "15"},     {"Dana Lind", "Midfield", "11"},
    {"Emil Vasquez", "Midfield", "18"}, {"Fatou Keita", "Forward", "16"},
    {"Goran Petrov", "Forward", "9"},   {"Hana Sato", "Midfield", "13"},
    {"Ines Duarte", "Back", "12"},      {"Jonas Weiss", "Keeper", "8"},
    {"Kofi Mensah", "Forward", "14"},   {"Lena Berg", "Midfield", "17"},
};

}  // namespace

GALLERY_PAGE_GRIDS::GALLERY_PAGE_GRIDS(GALLERY& owner) : GALLERY_PAGE(owner) {
}

GALLERY_PAGE_GRIDS::~GALLERY_PAGE_GRIDS() = default;

void GALLERY_PAGE_GRIDS::build() {
    const std::int32_t gap = 16;
    const std::int32_t width = (get_inner_width() - 2 * gap) / 3;
    build_table(width);
    build_long_grid(width + gap, width);
    build_layouts(2 * (width + gap), width);
    build_bars();
}

void GALLERY_PAGE_GRIDS::forget() {
    table = long_grid = nullptr;
    first_bar = nullptr;
    values.clear();
}

// A row of titles that stays, a row that is highlighted, and lines between the columns.
void GALLERY_PAGE_GRIDS::build_table(std::int32_t width) {
    constexpr std::int16_t COLUMNS = 3, LAYOUT[COLUMNS] = {3, 2, -58};
    WM_STYLE_SET look = style("PROFILE_GRID");
    look.flags |= STYLE_GRID_FIX_TOP_ROW | STYLE_GRID_COLUMN_DIVIDERS;
    add_heading(0, 0, width, "Fixed top row, arrow keys");
    table = add(new WM_GRID(0, TOP, to_short(width - 1), TOP + GRID_HEIGHT - 1, COLUMNS, LAYOUT,
                            look, style("PROFILE_SCROLLBAR"), WINDOW));
    table->set_row_height(26);
    table->keyboard_navigation = true;
    table->add_script(0, 0, style("PROFILE_TITLE_FIRST"), "Player");
    table->add_script(1, 0, style("PROFILE_TITLE_MIDDLE"), "Position");
    table->add_script(2, 0, style("PROFILE_TITLE_LAST"), "Form");
    std::int16_t row = 1;
    for (const auto& player : PLAYERS) {
        table->add_button(0, row, style("PROFILE_ENTRY_LEFT_ALIGNED"), player[0], nullptr,
                          handle_callback, to_data(CELL), nullptr, BUTTON_EVENT_RELEASE);
        table->add_script(1, row, style("PROFILE_LABEL"), player[1]);
        table->add_button(2, row, style("PROFILE_ENTRY"), player[2], nullptr, handle_callback,
                          to_data(CELL), nullptr, BUTTON_EVENT_RELEASE);
        ++row;
    }
    table->rows[3]->highlighted = true;
}

void GALLERY_PAGE_GRIDS::build_long_grid(std::int32_t x, std::int32_t width) {
    constexpr std::int16_t COLUMNS = 2, LAYOUT[COLUMNS] = {-70, 1};
    add_heading(x, 0, width, "Ten thousand rows");
    long_grid =
        add(new WM_GRID(to_short(x), TOP, to_short(x + width - 1), TOP + GRID_HEIGHT - 1, COLUMNS,
                        LAYOUT, style("PROFILE_GRID"), style("PROFILE_SCROLLBAR"), WINDOW));
    long_grid->set_row_height(26);
    const WM_STYLE_SET &label = style("PROFILE_LABEL"), &entry = style("PROFILE_ENTRY");
    for (std::int16_t row = 0; row < LONG_ROWS; ++row) {
        const std::string number = std::to_string(row + 1);
        long_grid->add_script(0, row, label, number.c_str());
        long_grid->add_script(1, row, entry, ("Row " + number).c_str());
    }
}

// Rows of different columns and heights, and buttons in them; without a scroll bar.
void GALLERY_PAGE_GRIDS::build_layouts(std::int32_t x, std::int32_t width) {
    constexpr std::int16_t ONE[] = {1}, TWO[] = {-90, 1}, THREE[] = {1, 2, 1};
    WM_STYLE_SET look = style("DIALOG_LAYOUT_GRID");
    look.x_spacing = look.y_spacing = 6;
    add_heading(x, 0, width, "Rows of their own layout");
    auto* grid = add(new WM_GRID(to_short(x), TOP, to_short(x + width - 1), TOP + GRID_HEIGHT - 1,
                                 1, ONE, look, style("BLANK"), WINDOW));
    const WM_STYLE_SET &label = style("DIALOG_LABEL"), &button = style("DIALOG_BUTTON_NORMAL");
    const auto add_cell_button = [&](std::int16_t column, std::int16_t row, const char* text) {
        grid->add_button(column, row, button, text, nullptr, handle_callback, to_data(CELL),
                         nullptr, BUTTON_EVENT_RELEASE);
    };
    grid->set_row_height(38);
    add_cell_button(0, 0, "One column");
    grid->set_current_layout(static_cast<std::int16_t>(std::size(TWO)), TWO);
    grid->add_script(0, 1, label, "90 pixels");
    add_cell_button(1, 1, "The rest");
    grid->set_current_layout(static_cast<std::int16_t>(std::size(THREE)), THREE);
    for (std::int16_t column = 0; column < 3; ++column) {
        add_cell_button(column, 2, column == 1 ? "Two parts" : "One");
    }
    grid->set_current_layout(1, ONE);
    grid->set_row_height(70);
    IMAGE logo;
    get_icon(logo, 96, 66);
    if (WM_IMAGE* picture = grid->add_image(0, 3, logo, nullptr, nullptr, nullptr, 0)) {
        picture->auto_resize = false;
    }
}

// --- Scroll bars ---

WM_SCROLLBAR* GALLERY_PAGE_GRIDS::add_bar(std::int32_t x, std::int32_t y, std::int32_t width,
                                          std::int32_t height, std::uint32_t flags, bool enabled) {
    WM_STYLE_SET look = style("PROFILE_SCROLLBAR");
    look.flags |= flags;
    if (flags & STYLE_SB_HORIZONTAL) {
        // The skins have pictures of standing bars only.
        look.set_image_base_string(nullptr);
        look.clear_runtime_cache();
        look.bg_colour = GUI_SKIN::get_colour("GROOVE");
        look.fg_colour = GUI_SKIN::get_colour("SLIDER_OVER");
        look.highlight_colour = GUI_SKIN::get_colour("ACCENT");
    }
    auto value = std::make_unique<PARAMETER>(PARAMETER::TYPE_LONG);
    value->set(value->max, FULL);
    value->set(value->value, FULL / 2);
    auto* bar = new WM_SCROLLBAR(to_short(x), to_short(y), to_short(x + width - 1),
                                 to_short(y + height - 1), value.get(), look, handle_callback,
                                 to_data(MOVED), nullptr, WINDOW, nullptr,
                                 enabled ? "Arrow keys move it, too" : nullptr);
    bar->page_step = FULL / 5;
    bar->enabled = enabled;
    values.push_back(std::move(value));
    return add(bar);
}

void GALLERY_PAGE_GRIDS::build_bars() {
    const std::int32_t y = TOP + GRID_HEIGHT + 14, width = 380;
    constexpr std::int32_t THICK = 16, STEP = 30;
    add_heading(0, y, 300, "Scroll bars");
    first_bar = add_bar(130, y + 32, width, THICK, STYLE_SB_HORIZONTAL, true);
    add_label(0, y + 30, 120, "Lying");
    add_bar(130, y + 32 + STEP, width, THICK, STYLE_SB_HORIZONTAL | STYLE_SB_WITH_BUTTONS, true);
    add_label(0, y + 30 + STEP, 120, "With buttons");
    add_bar(130, y + 32 + 2 * STEP, width, THICK, STYLE_SB_HORIZONTAL, false);
    add_label(0, y + 30 + 2 * STEP, 120, "Disabled");
    const std::int32_t height = get_inner_height() - y - 10;
    add_bar(width + 180, y, THICK, height, 0, true);
    add_bar(width + 220, y, THICK, height, STYLE_SB_WITH_BUTTONS, true);
    add_bar(width + 260, y, THICK, height, 0, false);
    add_bar(width + 300, y, THICK, height, STYLE_SB_WITH_BUTTONS, false);
}

WM_MESG GALLERY_PAGE_GRIDS::act(WM_SCREEN_OBJECT& object, std::int32_t command) {
    if (command == MOVED) {
        const PARAMETER& value = *static_cast<WM_SCROLLBAR&>(object).slew_var;
        report("The scroll bar stands at " + std::to_string(value.value.long_value));
    } else {
        report(std::string("\"") + static_cast<WM_BUTTON&>(object).get_title_text() +
               "\" was pressed");
    }
    return WM_MESG_NONE;
}

void GALLERY_PAGE_GRIDS::take_pictures(GALLERY_CAMERA& camera) {
    table->give_child_object_focus(0, 1);
    for (int i = 0; i < 9; ++i) {
        camera.key(KEY_DOWN);
    }
    camera.take("arrow_keys");

    long_grid->set_scroll_to_row(LONG_ROWS / 2, 1);
    camera.tick(2);
    const WM_REGION slider = first_bar->get_slider_region();
    camera.move((slider.left + slider.right) / 2, (slider.top + slider.bottom) / 2);
    camera.take("over_slider");
    camera.press();
    camera.move_to(*first_bar, 300, 8);
    camera.take("drag");
    camera.release();
}
