#include "gallery_page_profiles.h"

#include "gallery_camera.h"
#include "modules/gui/gui_skin.h"
#include "modules/gui/panel_profile_grid.h"
#include "modules/winman/style_set.h"
#include "modules/winman/window_manager.h"
#include "modules/winman/wm_button.h"
#include "modules/winman/wm_progress_bar.h"
#include "modules/winman/wm_script.h"
#include "platform/image.h"

namespace {

constexpr signed char WINDOW = WM_WINDOW_MANAGER::MAIN_WINDOW;

struct CELL {
    const char* label;
    const char* value;
    unsigned long long flags;
};

// One column of labels and values; an empty label ends it.
constexpr CELL FIRST[] = {
    {"Entry", "28", 0},
    {"Bold", "28", PROFILE_GRID::VALUE_BOLD},
    {"Left aligned", "28", PROFILE_GRID::VALUE_LEFT_ALIGNED},
    {"Very good", "19", PROFILE_GRID::VALUE_ATTRIBUTE_VERY_GOOD},
    {"Good", "15", PROFILE_GRID::VALUE_ATTRIBUTE_GOOD},
    {"Ok", "11", PROFILE_GRID::VALUE_ATTRIBUTE_OK},
    {"Weak", "4", PROFILE_GRID::VALUE_ATTRIBUTE_WEAK},
    {"Very good, bold", "19", PROFILE_GRID::VALUE_BOLD_ATTRIBUTE_VERY_GOOD},
    {"Good, bold", "15", PROFILE_GRID::VALUE_BOLD_ATTRIBUTE_GOOD},
    {"Ok, bold", "11", PROFILE_GRID::VALUE_BOLD_ATTRIBUTE_OK},
    {"Weak, bold", "4", PROFILE_GRID::VALUE_BOLD_ATTRIBUTE_WEAK},
    {"Fixed width", "yes", PROFILE_GRID::LAYOUT_FIXED_LABEL | PROFILE_GRID::VALUE_LEFT_ALIGNED},
};
constexpr CELL SECOND[] = {
    {"Balance", "12 500 000", PROFILE_GRID::VALUE_POSITIVE_CASH},
    {"Loan", "-3 200 000", PROFILE_GRID::VALUE_NEGATIVE_CASH},
    {"Income", "8 400", PROFILE_GRID::VALUE_POSITIVE_CASH_CENTRED},
    {"Wages", "-7 100", PROFILE_GRID::VALUE_NEGATIVE_CASH_CENTRED},
    {"Prize", "500", PROFILE_GRID::VALUE_POSITIVE_CASH_LEFT_ALIGNED},
    {"Fine", "-50", PROFILE_GRID::VALUE_NEGATIVE_CASH_LEFT_ALIGNED},
    {"Goals", "14", PROFILE_GRID::VALUE_STAT},
    {"Yellow cards", "5", PROFILE_GRID::VALUE_STAT_YELLOW_CARDS},
    {"Red cards", "1", PROFILE_GRID::VALUE_STAT_RED_CARDS},
    {"Average rating", "7.31", PROFILE_GRID::VALUE_STAT_AVERAGE_RATING},
    {"Label only", "", PROFILE_GRID::LAYOUT_LABEL_ONLY},
    {"", "Value only", PROFILE_GRID::LAYOUT_VALUE_ONLY},
};
constexpr CELL LABELS[] = {
    {"Greyed out", "-", PROFILE_GRID::LABEL_GREYED_OUT},
    {"Italic", "2", PROFILE_GRID::LABEL_ITALIC},
    {"Bold", "3", PROFILE_GRID::LABEL_BOLD},
    {"Greyed out, centred", "",
     PROFILE_GRID::LABEL_GREYED_OUT_CENTRED | PROFILE_GRID::LAYOUT_LABEL_ONLY},
    {"Centred", "", PROFILE_GRID::LABEL_CENTRED | PROFILE_GRID::LAYOUT_LABEL_ONLY},
};
constexpr CELL ICON_LABELS[] = {
    {"With icon", "1", PROFILE_GRID::LABEL_WITH_ICON},
    {"Greyed out with icon", "2", PROFILE_GRID::LABEL_GREYED_OUT_WITH_ICON},
    {"Italic with icon", "3", PROFILE_GRID::LABEL_ITALIC_WITH_ICON},
    {"Bold with icon", "4", PROFILE_GRID::LABEL_BOLD_WITH_ICON},
};

}  // namespace

PROFILE_GRID* GALLERY_PAGE_PROFILES::add_grid(std::int32_t x, std::int32_t y, std::int32_t width,
                                              std::int32_t height, std::int32_t mode,
                                              std::int16_t columns, std::int16_t fill_rows) {
    return add(new PANEL_PROFILE_GRID(to_short(x), to_short(y), to_short(x + width - 1),
                                      to_short(y + height - 1), static_cast<signed char>(mode),
                                      columns, nullptr, fill_rows, nullptr, nullptr, nullptr,
                                      WINDOW));
}

void GALLERY_PAGE_PROFILES::build() {
    constexpr std::int32_t GAP = 12, UPPER = 26 * 13;
    const std::int32_t left = 480, right = get_inner_width() - left - GAP;
    const std::int32_t lower = get_inner_height() - UPPER - GAP - 6;
    build_values(left, UPPER);
    build_pictures(left + GAP, right, 26 * 8);
    build_report(left + GAP, 26 * 8 + GAP, right, UPPER - 26 * 8 - GAP);
    build_double(0, UPPER + GAP, get_inner_width(), lower);
}

void GALLERY_PAGE_PROFILES::forget() {
    values = report_grid = nullptr;
}

// Each look of a value, in rows that fill the box.
void GALLERY_PAGE_PROFILES::build_values(std::int32_t width, std::int32_t height) {
    values = add_grid(0, 0, width, height, PROFILE_GRID::MODE_FILLED, 2, 13);
    values->add_title_button(0, 0, "Player", PROFILE_GRID::TITLE_BACK, handle_callback,
                             to_data(TITLE), nullptr);
    values->add_title_button(1, 0, "Club", PROFILE_GRID::TITLE_NEXT, handle_callback,
                             to_data(TITLE), nullptr);
    std::int16_t row = 1;
    for (const CELL& cell : FIRST) {
        values->add_script(0, row++, cell.label, cell.value, cell.flags);
    }
    row = 1;
    for (const CELL& cell : SECOND) {
        values->add_script(1, row++, cell.label, cell.value, cell.flags);
    }
    values->add_button(0, 1, "A value to press", "28", 0, handle_callback, to_data(VALUE), nullptr);
    values->set_selected_row(5);
}

void GALLERY_PAGE_PROFILES::build_pictures(std::int32_t x, std::int32_t width,
                                           std::int32_t height) {
    PROFILE_GRID* grid = add_grid(x, 0, width, height, PROFILE_GRID::MODE_PICTURES, 1, 8);
    grid->add_title_script(0, 0, "Pictures at both sides", 0);
    std::int16_t row = 1;
    for (const char* label : {"Name", "Born", "Nation", "Height", "Club", "Contract", "Value"}) {
        grid->add_script(0, row++, label, "...", 0);
    }
    const IMAGE& logo = *GUI_SKIN::get_image("APP_LOGO");
    IMAGE small;
    small.resize_from(logo, 64, 44, 1);
    grid->add_left_picture_image(0, 1, logo, 1, nullptr, nullptr, nullptr);
    grid->add_right_picture_image(0, 3, small, 1, nullptr, nullptr, nullptr);
}

// Rows of a fixed height, which scroll, and the looks of labels.
void GALLERY_PAGE_PROFILES::build_report(std::int32_t x, std::int32_t y, std::int32_t width,
                                         std::int32_t height) {
    report_grid = add_grid(x, y, width, height, PROFILE_GRID::MODE_REPORT, 3, 0);
    report_grid->add_title_script(0, 0, "First", 0);
    report_grid->add_title_script(1, 0, "Middle", PROFILE_GRID::TITLE_CENTRED);
    report_grid->add_title_script(2, 0, "Last", 0);
    std::int16_t row = 1;
    for (const CELL& cell : LABELS) {
        for (std::int16_t column = 0; column < 3; ++column) {
            report_grid->add_script(column, row, cell.label, cell.value, cell.flags);
        }
        ++row;
    }
}

// Rows of double height with icons, and an object over several cells.
void GALLERY_PAGE_PROFILES::build_double(std::int32_t x, std::int32_t y, std::int32_t width,
                                         std::int32_t height) {
    PROFILE_GRID* grid = add_grid(x, y, width, height, PROFILE_GRID::MODE_DOUBLE, 4, 0);
    IMAGE icon;
    get_icon(icon, 20, 14);
    for (std::int16_t column = 0; column < 4; ++column) {
        const CELL& cell = ICON_LABELS[column];
        grid->add_script(column, 0, cell.label, cell.value, cell.flags);
        if (WM_SCRIPT* label = grid->get_label_script(column, 0)) {
            label->icon.copy_pixels_from(icon);
        }
    }
    grid->add_script(0, 1, "Double height", "yes", 0);
    auto* bar =
        new WM_PROGRESS_BAR(0, 0, 100, 36, nullptr, 100, style("DIALOG_PROGRESS_BAR"), WINDOW, 0);
    bar->set_pos(40, 0);
    bar->set_custom_bar_string("The special object, over three cells", 0);
    grid->set_special_object(1, 1, 3, 1, bar);
}

WM_MESG GALLERY_PAGE_PROFILES::act(WM_SCREEN_OBJECT& object, std::int32_t command) {
    report(std::string(command == TITLE ? "The title \"" : "The value \"") +
           static_cast<WM_BUTTON&>(object).get_title_text() + "\" was pressed");
    return WM_MESG_NONE;
}

void GALLERY_PAGE_PROFILES::take_pictures(GALLERY_CAMERA& camera) {
    if (WM_SCREEN_OBJECT* value = values->get_entry_object(0, 1)) {
        camera.move_to(*value);
        camera.take("over");
        camera.leave();
    }
    report_grid->set_scroll_to_bottom();
    camera.tick(2);
    camera.take("scrolled");
}
