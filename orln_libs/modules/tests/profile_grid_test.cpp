#include <cstdint>
#include <filesystem>
#include <memory>
#include <string>

#include "kvcore/text_field.h"
#include "modules/gui/dialog_profile_grid.h"
#include "modules/gui/panel_profile_grid.h"
#include "modules/winman/wm_button.h"
#include "modules/winman/wm_grid.h"
#include "modules/winman/wm_image.h"
#include "modules/winman/wm_script.h"
#include "panel_fixture.h"
#include "platform/image_cache.h"

namespace {

// 600 by 100, without a prefix: two columns, five rows of 20.
class ProfileGridTest : public PANEL_FIXTURE {
protected:
    void SetUp() override {
        PANEL_FIXTURE::SetUp();
        style("PROFILE_GRID");
        style("PROFILE_GRID_REPORT").y_spacing = 2;
        sized_style("PROFILE_LABEL", 60, 12);
        sized_style("PROFILE_ENTRY", 30, 12);
    }

    using GRID = std::unique_ptr<PROFILE_GRID>;

    static GRID make(signed char mode, int columns = 2, int fill_rows = 5, int width = 600) {
        return std::make_unique<PROFILE_GRID>(
            std::int16_t{0}, std::int16_t{0}, static_cast<std::int16_t>(width - 1),
            std::int16_t{99}, mode, static_cast<std::int16_t>(columns), nullptr,
            static_cast<std::int16_t>(fill_rows), nullptr, nullptr, nullptr, nullptr,
            std::int8_t{0});
    }
    static std::string look_of(const WM_SCRIPT* script, const std::string& name) {
        style(name);  // a name that the grid hasn't asked for yet exists from now on
        return script != nullptr && script->bg == colour_of(name) ? name : "another";
    }
    static WM_GRID& cell(PROFILE_GRID& grid, int column, int row) {
        return *static_cast<WM_GRID*>(grid.grid->get_object(static_cast<std::int16_t>(column),
                                                            static_cast<std::int16_t>(row)));
    }
};

TEST_F(ProfileGridTest, FlagsChooseTheStylesAndTheLowestOneWins) {
    const auto grid = make(PROFILE_GRID::MODE_FILLED);
    struct {
        int bit;
        const char* label;
        const char* entry;
    } const cases[] = {
        {4, "PROFILE_LABEL_CENTRED", "PROFILE_ENTRY"},
        {6, "PROFILE_LABEL_GREYED_OUT", "PROFILE_ENTRY"},
        {8, "PROFILE_LABEL_GREYED_OUT_WITH_ICON", "PROFILE_ENTRY"},
        {9, "PROFILE_LABEL_ITALIC", "PROFILE_ENTRY"},
        {12, "PROFILE_LABEL_BOLD_WITH_ICON", "PROFILE_ENTRY"},
        {13, "PROFILE_LABEL", "PROFILE_ENTRY_ATTRIBUTE_VERY_GOOD"},
        {16, "PROFILE_LABEL", "PROFILE_ENTRY_ATTRIBUTE_WEAK"},
        {17, "PROFILE_LABEL", "PROFILE_ENTRY_BOLD_ATTRIBUTE_VERY_GOOD"},
        {20, "PROFILE_LABEL", "PROFILE_ENTRY_BOLD_ATTRIBUTE_WEAK"},
        {21, "PROFILE_LABEL", "PROFILE_ENTRY_POSITIVE_CASH"},
        {24, "PROFILE_LABEL", "PROFILE_ENTRY_NEGATIVE_CASH_CENTRED"},
        {26, "PROFILE_LABEL", "PROFILE_ENTRY_NEGATIVE_CASH_LEFT_ALIGNED"},
        {27, "PROFILE_LABEL", "PROFILE_ENTRY_STAT"},
        {30, "PROFILE_LABEL", "PROFILE_ENTRY_STAT_AVERAGE_RATING"},
        {31, "PROFILE_LABEL", "PROFILE_ENTRY_BOLD"},
        {32, "PROFILE_LABEL", "PROFILE_ENTRY_LEFT_ALIGNED"},
        {35, "PROFILE_LABEL", "PROFILE_ENTRY"},
    };
    for (const auto& expected : cases) {
        style(expected.label);
        style(expected.entry);
        const WM_SCRIPT* value = grid->add_script(0, 1, "a", "b", 1ull << expected.bit);
        EXPECT_EQ(expected.label, look_of(grid->get_label_script(0, 1), expected.label));
        EXPECT_EQ(expected.entry, look_of(value, expected.entry)) << expected.bit;
    }
    grid->add_script(0, 1, "a", "b",
                     PROFILE_GRID::LABEL_BOLD | PROFILE_GRID::LABEL_CENTRED |
                         PROFILE_GRID::VALUE_BOLD | PROFILE_GRID::VALUE_STAT);
    EXPECT_EQ("PROFILE_LABEL_CENTRED",
              look_of(grid->get_label_script(0, 1), "PROFILE_LABEL_CENTRED"));
    EXPECT_EQ("PROFILE_ENTRY_STAT",
              look_of(static_cast<WM_SCRIPT*>(grid->get_entry_object(0, 1)), "PROFILE_ENTRY_STAT"));
}

TEST_F(ProfileGridTest, TitlesLookByTheirColumnAndFlags) {
    for (const char* name :
         {"ONLY", "FIRST", "MIDDLE", "LAST", "MIDDLE_CENTRED", "LAST_WITH_ICON", "BACK", "NEXT"}) {
        style(std::string("PROFILE_TITLE_") + name);
    }
    const auto single = make(PROFILE_GRID::MODE_FILLED, 1);
    EXPECT_EQ("PROFILE_TITLE_ONLY",
              look_of(single->add_title_script(0, 0, "t", 0), "PROFILE_TITLE_ONLY"));
    const auto grid = make(PROFILE_GRID::MODE_FILLED, 3);
    const auto look = [&](int column, unsigned long long flags, const std::string& name) {
        return look_of(grid->add_title_script(static_cast<std::int16_t>(column), 2, "t", flags),
                       name);
    };
    EXPECT_EQ("PROFILE_TITLE_FIRST", look(0, 0, "PROFILE_TITLE_FIRST"));
    EXPECT_EQ("PROFILE_TITLE_MIDDLE_CENTRED", look(1, 3, "PROFILE_TITLE_MIDDLE_CENTRED"));
    EXPECT_EQ("PROFILE_TITLE_LAST_WITH_ICON", look(2, 2, "PROFILE_TITLE_LAST_WITH_ICON"));
    EXPECT_EQ("PROFILE_TITLE_BACK", look(1, 4, "PROFILE_TITLE_BACK"));
    EXPECT_EQ("PROFILE_TITLE_NEXT", look(1, 8, "PROFILE_TITLE_NEXT"));
    EXPECT_EQ(nullptr, grid->add_title_script(3, 0, "t", 0)) << "no such column";
}

TEST_F(ProfileGridTest, TheModeSaysWhereTitlesMayStand) {
    for (const int mode : {0, 1, 2, 3, 4, -1}) {
        const auto grid = make(static_cast<signed char>(mode));
        EXPECT_EQ(mode >= 0 && mode <= 3, grid->add_title_script(0, 0, "t", 0) != nullptr);
        EXPECT_EQ(mode == 0 || mode == 1 || mode == 3,
                  grid->add_title_button(0, 2, "t", 0, nullptr, nullptr, nullptr) != nullptr)
            << mode;
    }
}

TEST_F(ProfileGridTest, RowsGetTheirHeightFromTheMode) {
    const auto row_height = [](signed char mode) {
        const auto grid = make(mode);
        grid->add_script(0, 0, "a", "b", 0);
        return grid->grid->rows[0]->height;
    };
    EXPECT_EQ(20, row_height(PROFILE_GRID::MODE_FILLED));
    EXPECT_EQ(20, row_height(PROFILE_GRID::MODE_PICTURES));
    EXPECT_EQ(WM_GRID::calc_min_row_height(style("PROFILE_GRID_REPORT"), nullptr),
              row_height(PROFILE_GRID::MODE_REPORT));
    constant("PROFILE_ROW_HEIGHT", 15);
    EXPECT_EQ(13, row_height(PROFILE_GRID::MODE_REPORT)) << "less the style's spacing";
    EXPECT_EQ(30, row_height(PROFILE_GRID::MODE_DOUBLE));
    constant("DIALOG_PROFILE_ROW_HEIGHT", 40);
    style("DIALOG_PROFILE_GRID_REPORT");
    DIALOG_PROFILE_GRID dialog(0, 0, 99, 99, PROFILE_GRID::MODE_REPORT, 1, nullptr, 0, nullptr,
                               nullptr, nullptr, 0);
    EXPECT_EQ(40, dialog.grid->row_height);
    EXPECT_STREQ("PANEL",
                 PANEL_PROFILE_GRID(0, 0, 99, 99, 0, 1, nullptr, 5, nullptr, nullptr, nullptr, 0)
                     .skin_prefix);
}

TEST_F(ProfileGridTest, CellsAreNestedAndANewOneReplacesTheOldOne) {
    const auto grid = make(PROFILE_GRID::MODE_FILLED);
    auto* object = new TEST_OBJECT(0, 0, 5, 5);
    EXPECT_EQ(object, grid->add_object(1, 2, "label", object, 0));
    EXPECT_EQ(object, grid->get_entry_object(1, 2));
    EXPECT_STREQ("label", grid->get_label_script(1, 2)->get_text());
    EXPECT_EQ(nullptr, grid->get_title_object(1, 2));
    EXPECT_EQ(3, grid->get_number_of_rows());
    EXPECT_EQ(2, grid->get_number_of_columns(2));
    EXPECT_EQ(0, grid->get_number_of_columns(3));

    CALL_RECORD record;
    WM_BUTTON* button =
        grid->add_button(1, 2, "other", "press", 0, CALL_RECORD::callback, &record, nullptr);
    EXPECT_EQ(0, TEST_OBJECT::alive);
    EXPECT_EQ(button, grid->get_entry_object(1, 2));
    EXPECT_STREQ("press", button->get_title_text());
    EXPECT_STREQ("other", grid->get_label_script(1, 2)->get_text());

    WM_SCRIPT* title = grid->add_title_script(1, 2, "title", 0);
    EXPECT_EQ(title, grid->get_title_object(1, 2));
    EXPECT_EQ(nullptr, grid->get_entry_object(1, 2));
    EXPECT_EQ(nullptr, grid->get_label_script(1, 2));

    TEST_OBJECT refused(0, 0, 5, 5);
    EXPECT_EQ(nullptr, grid->add_object(2, 0, "", &refused, 0)) << "no such column";
    EXPECT_EQ(nullptr, grid->add_object(0, -1, "", &refused, 0));
    EXPECT_EQ(nullptr, grid->add_object(0, 0, "", nullptr, 0));
    EXPECT_EQ(nullptr, grid->get_entry_object(7, 7));
}

TEST_F(ProfileGridTest, AButtonInACellIsClicked) {
    PROFILE_GRID* grid = make(PROFILE_GRID::MODE_FILLED, 1, 5, 200).release();
    area().add_object(grid, 0);
    CALL_RECORD record;
    WM_BUTTON* button =
        grid->add_button(0, 1, "", "press", 0, CALL_RECORD::callback, &record, nullptr);
    draw_all();
    EXPECT_EQ(60, button->x) << "behind the label";
    click(100, 30);
    EXPECT_EQ(1, record.calls);
    EXPECT_EQ(button, record.object);
}

TEST_F(ProfileGridTest, LayoutFlagsDivideTheCell) {
    const auto grid = make(PROFILE_GRID::MODE_FILLED);
    const auto widths = [&](unsigned long long flags) {
        const WM_SCRIPT* value = grid->add_script(0, 1, "", "b", flags);
        grid->grid->check_scrolling();
        return std::make_pair(int{grid->get_label_script(0, 1)->width}, int{value->width});
    };
    EXPECT_EQ(std::make_pair(60, 240), widths(0));
    EXPECT_EQ(std::make_pair(200, 100), widths(PROFILE_GRID::LAYOUT_FIXED_LABEL));
    EXPECT_EQ(std::make_pair(300, 0), widths(PROFILE_GRID::LAYOUT_LABEL_ONLY));
    EXPECT_EQ(std::make_pair(0, 300), widths(PROFILE_GRID::LAYOUT_VALUE_ONLY));
    EXPECT_EQ(std::make_pair(200, 100),
              widths(PROFILE_GRID::LAYOUT_FIXED_LABEL | PROFILE_GRID::LAYOUT_VALUE_ONLY));
}

// One column of 600, rows of 20, a border of 2: a picture may be 347 by 76 in row 1.
class ProfilePictureTest : public ProfileGridTest {
protected:
    void SetUp() override {
        ProfileGridTest::SetUp();
        constant("PROFILE_PICTURE_IMAGE_BORDER_SIZE", 2);
        grid = make(PROFILE_GRID::MODE_PICTURES, 1);
        for (std::int16_t row = 0; row < 5; ++row) {
            grid->add_script(0, row, "label", "value", 0);
        }
    }
    void TearDown() override {
        grid.reset();
        ProfileGridTest::TearDown();
    }

    WM_IMAGE* add_left(int row, int width, int height, bool border = false) {
        IMAGE picture(width, height);
        picture.clear(COLOUR_GREEN);
        return grid->add_left_picture_image(0, static_cast<std::int16_t>(row), picture, border,
                                            nullptr, nullptr, nullptr);
    }
    std::string left_gaps() const {
        std::string gaps;
        for (int row = 0; row < 5; ++row) {
            gaps += std::to_string(cell(*grid, 0, row).grid_style.border_left_gap) + " ";
        }
        return gaps;
    }

    GRID grid;
};

TEST_F(ProfilePictureTest, APicturePushesTheRowsBesideItAside) {
    const WM_IMAGE* image = add_left(1, 30, 30, true);
    ASSERT_NE(nullptr, image);
    EXPECT_EQ(2, image->x);
    EXPECT_EQ(22, image->y);
    EXPECT_EQ(COLOUR_BLACK, image->image.row(0)[7]);
    EXPECT_EQ(COLOUR_BLACK, image->image.row(29)[29]);
    EXPECT_EQ(COLOUR_GREEN, image->image.row(15)[15]);
    EXPECT_EQ("0 34 34 0 0 ", left_gaps());
    EXPECT_EQ(34, grid->get_left_border_adjustment(0, 2));
    EXPECT_EQ(0, grid->get_left_border_adjustment(0, 3));
    EXPECT_EQ(0, grid->get_right_border_adjustment(0, 2));
    grid->grid->check_scrolling();
    EXPECT_EQ(34, grid->get_label_script(0, 1)->x);

    // The widest of the pictures beside a row counts, and cells that come later get it too.
    add_left(2, 50, 20);
    EXPECT_EQ("0 34 54 54 0 ", left_gaps());
    grid->add_script(0, 2, "new", "value", 0);
    EXPECT_EQ("0 34 54 54 0 ", left_gaps());

    IMAGE picture(10, 10);
    const WM_IMAGE* right =
        grid->add_right_picture_image(0, 4, picture, 0, nullptr, nullptr, nullptr);
    EXPECT_EQ(599 - 10 - 2, right->x);
    EXPECT_EQ(14, cell(*grid, 0, 4).grid_style.border_right_gap);

    grid->delete_rows(1, 1);
    EXPECT_EQ(4, grid->get_number_of_rows());
    EXPECT_EQ(54, cell(*grid, 0, 2).grid_style.border_left_gap) << "was row 3";
    grid->add_script(0, 4, "label", "value", 0);
    EXPECT_EQ("0 34 54 54 0 ", left_gaps());
    grid->clear_left_picture_images();
    EXPECT_EQ("0 0 0 0 0 ", left_gaps());
    EXPECT_EQ(1, grid->right_images.get_count());
    grid->clear();
    EXPECT_EQ(0, grid->right_images.get_count());
    EXPECT_EQ(0, grid->get_number_of_rows());
}

TEST_F(ProfileGridTest, RowsMoveUpBesidePicturesOfAnyColumn) {
    constant("PROFILE_PICTURE_IMAGE_BORDER_SIZE", 2);
    const auto grid = make(PROFILE_GRID::MODE_PICTURES);
    for (std::int16_t row = 0; row < 5; ++row) {
        grid->add_script(1, row, "label", "value", 0);
    }
    IMAGE picture(30, 10);
    grid->add_left_picture_image(1, 1, picture, 0, nullptr, nullptr, nullptr);
    grid->set_current_layout(1, nullptr);  // of rows to come
    grid->delete_rows(1, 1);
    EXPECT_EQ(34, cell(*grid, 1, 1).grid_style.border_left_gap) << "was row 2";
}

TEST_F(ProfilePictureTest, PicturesAreMadeToFit) {
    const WM_IMAGE* image = add_left(1, 400, 30);
    EXPECT_EQ(599 - 4 - 249, image->width);
    EXPECT_EQ(30, image->height) << "each side on its own";
    image = add_left(4, 10, 300);
    EXPECT_EQ(10, image->width);
    EXPECT_EQ(19 - 4 + 1, image->height);
}

TEST_F(ProfilePictureTest, PicturesStandOnlyBelowTheTitleInTheirMode) {
    EXPECT_EQ(nullptr, add_left(0, 10, 10));
    EXPECT_EQ(nullptr, add_left(5, 10, 10)) << "beyond the rows that fit";
    EXPECT_EQ(nullptr, add_left(-1, 10, 10));
    IMAGE picture(10, 10);
    EXPECT_EQ(nullptr, grid->add_right_picture_image(1, 1, picture, 0, nullptr, nullptr, nullptr));
    const auto filled = make(PROFILE_GRID::MODE_FILLED);
    EXPECT_EQ(nullptr, filled->add_left_picture_image(0, 1, picture, 0, nullptr, nullptr, nullptr));
}

TEST_F(ProfilePictureTest, ThePictureOfACacheKeepsItsProportions) {
    IMAGE_CACHE cache;
    // A picture that is in the cache already, so that no file is needed.
    auto* entry = new CACHE_ENTRY;
    KVCORE::copy_text_field(entry->path, "$BASE/pictures");
    KVCORE::copy_text_field(entry->filename, "wide");
    entry->image.reset(400, 190);
    entry->image.cache_entry = entry;
    entry->width = entry->orig_width = 400;
    entry->height = entry->orig_height = 190;
    ASSERT_TRUE(cache.entries.add(entry));

    const WM_IMAGE* image = grid->add_left_picture_image(0, 1, cache, "$BASE/pictures", "wide", 0,
                                                         0, nullptr, nullptr, nullptr);
    ASSERT_NE(nullptr, image);
    EXPECT_EQ(76, image->height);
    EXPECT_EQ(160, image->width);
    for (std::int32_t i = 0; i < cache.entries.get_count(); ++i) {
        EXPECT_EQ(0, cache.entries.get<CACHE_ENTRY>(i)->use_count) << "given back";
    }
}

TEST_F(ProfilePictureTest, APictureThatCantBeOpenedIsEmptyAndInPlace) {
    IMAGE_CACHE cache;
    const WM_IMAGE* image = grid->add_right_picture_image(
        0, 1, cache, "$BASE/no_such_folder", "missing", 1, 1, nullptr, nullptr, nullptr);
    ASSERT_NE(nullptr, image);
    EXPECT_EQ(0, image->width);
    EXPECT_EQ(22, image->y);
    EXPECT_EQ(1, grid->right_images.get_count());
}

TEST_F(ProfileGridTest, ASpecialObjectCoversARangeOfCells) {
    const auto grid = make(PROFILE_GRID::MODE_PICTURES);
    auto* first = new TEST_OBJECT(0, 0, 5, 5);
    EXPECT_EQ(1, grid->set_special_object(0, 1, 1, 2, first));
    EXPECT_EQ(0, first->x);
    EXPECT_EQ(20, first->y);
    EXPECT_EQ(600, first->width);
    EXPECT_EQ(40, first->height);
    auto* second = new TEST_OBJECT(0, 0, 5, 5);
    EXPECT_EQ(1, grid->set_special_object(second));
    EXPECT_EQ(1, TEST_OBJECT::alive) << "the earlier one has gone";
    EXPECT_EQ(20, second->y);
    EXPECT_EQ(300, second->width);
    EXPECT_EQ(80, second->height);
    TEST_OBJECT refused(0, 0, 5, 5);
    EXPECT_EQ(0, grid->set_special_object(0, 1, 2, 2, &refused));
    EXPECT_EQ(second, grid->special_object);
    EXPECT_EQ(1, grid->set_special_object(1, 1, 1, 1, second)) << "the same one elsewhere";
    EXPECT_EQ(300, second->x);
    EXPECT_EQ(20, second->height);
    grid->clear_special_object();
    EXPECT_EQ(1, TEST_OBJECT::alive);
}

TEST_F(ProfileGridTest, OneRowIsSelected) {
    const auto grid = make(PROFILE_GRID::MODE_FILLED);
    for (std::int16_t row = 0; row < 3; ++row) {
        grid->add_script(0, row, "a", "b", 0);
    }
    EXPECT_EQ(-1, grid->get_selected_row());
    grid->set_selected_row(2);
    EXPECT_EQ(2, grid->get_selected_row());
    EXPECT_TRUE(grid->selection_changed);
    grid->set_selected_row(0);
    EXPECT_EQ(0, grid->get_selected_row());
    EXPECT_FALSE(grid->get_highlighted(2));
    grid->selection_changed = false;
    grid->set_selected_row(3);
    grid->set_selected_row(-2);
    EXPECT_EQ(0, grid->get_selected_row());
    EXPECT_FALSE(grid->selection_changed);
    grid->set_selected_row(-1);
    EXPECT_EQ(-1, grid->get_selected_row());
}

TEST_F(ProfileGridTest, ManyRowsScroll) {
    constant("PROFILE_ROW_HEIGHT", 20);
    const auto grid = make(PROFILE_GRID::MODE_REPORT);
    for (std::int16_t row = 0; row < 10; ++row) {
        grid->add_script(0, row, "a", "b", 0);
    }
    EXPECT_TRUE(grid->is_scroll_at_top());
    EXPECT_FALSE(grid->is_scroll_at_bottom());
    const std::int32_t top = grid->get_scroll_position();
    EXPECT_GT(top, 90);
    grid->set_scroll_to_bottom();
    EXPECT_TRUE(grid->is_scroll_at_bottom());
    EXPECT_EQ(0, grid->get_scroll_position());
    grid->set_scroll_position(30);
    EXPECT_EQ(30, grid->get_scroll_position());
    EXPECT_FALSE(grid->is_scroll_at_top());
    grid->set_scroll_position(100000);
    EXPECT_TRUE(grid->is_scroll_at_top());
}

}  // namespace
