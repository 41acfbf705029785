#include "autopatch/add_on_panel.h"

#include <memory>
#include <string>
#include <utility>

#include "autopatch/add_on.h"
#include "kvcore/text_field.h"
#include "modules/gui/profile_grid.h"
#include "modules/gui/text_box.h"
#include "modules/winman/object_walk.h"
#include "modules/winman/wm_grid.h"
#include "modules/winman/wm_image.h"
#include "modules/winman/wm_manager.h"
#include "modules/winman/wm_script.h"
#include "panel_fixture.h"
#include "platform/image_cache.h"

namespace {

// A card of 600 by 300 in the style "DIALOG", with rows of 20 and 6 pixels between the grids.
class AddOnPanelTest : public PANEL_FIXTURE {
protected:
    void SetUp() override {
        PANEL_FIXTURE::SetUp();
        set_gaps("PANEL_BACKGROUND", 5, 5, 10, 10);
        for (const char* name : {"PROFILE_GRID", "PROFILE_TITLE_ONLY"}) {
            style(std::string("DIALOG_") + name);
        }
        sized_style("DIALOG_PROFILE_LABEL", 60, 12);
        sized_style("DIALOG_PROFILE_ENTRY", 60, 12);
        style("DIALOG_DESCRIPTION_TEXT_BOX_WORD").fg_colour = COLOUR(0xFF010203u);
        constant("DIALOG_PROFILE_ROW_HEIGHT", 20);
        constant("MIDDLE_AREA_PANEL_Y_SPACING", 6);
    }
    void TearDown() override {
        ADD_ON_PANEL::is_3d_capable = 1;
        PANEL_FIXTURE::TearDown();
    }

    static std::unique_ptr<ADD_ON> make_add_on(ADD_ON::ADD_ON_TYPE type, int version, int size) {
        auto add_on = std::make_unique<ADD_ON>();
        add_on->type = type;
        add_on->version = static_cast<std::uint16_t>(version);
        add_on->file_size = static_cast<std::uint32_t>(size);
        add_on->set_title("Winter pack");
        add_on->add_description_line("First line");
        add_on->add_description_line("");
        add_on->add_description_line("Third line");
        return add_on;
    }
    static std::unique_ptr<ADD_ON_PANEL> make_panel(const ADD_ON& add_on) {
        return std::make_unique<ADD_ON_PANEL>(
            std::int16_t{10}, std::int16_t{20}, std::int16_t{600}, std::int16_t{300}, &add_on,
            "DIALOG", std::int8_t{0}, nullptr, nullptr, nullptr, static_cast<unsigned char>(0));
    }
    // 0 the facts, 1 the description.
    static PROFILE_GRID& grid_of(const ADD_ON_PANEL& panel, int number) {
        OBJECT_WALK walk(panel.internal->objects, OBJECT_WALK::FORWARD);
        WM_SCREEN_OBJECT* grid = walk.next();
        return *static_cast<PROFILE_GRID*>(number == 0 ? grid : walk.next());
    }
    static const char* title_of(const PROFILE_GRID& grid) {
        return static_cast<WM_SCRIPT*>(grid.get_title_object(0, 0))->get_text();
    }
    // "label: value" of a row.
    static std::string fact(const ADD_ON_PANEL& panel, int row) {
        const auto at = static_cast<std::int16_t>(row);
        const PROFILE_GRID& facts = grid_of(panel, 0);
        return std::string(facts.get_label_script(0, at)->get_text()) + ": " +
               static_cast<WM_SCRIPT*>(facts.get_entry_object(0, at))->get_text();
    }
    static std::string description_of(const ADD_ON_PANEL& panel) {
        return static_cast<TEXT_BOX*>(grid_of(panel, 1).special_object)->get_text();
    }
    static const IMAGE& picture_of(const ADD_ON_PANEL& panel) {
        OBJECT_WALK walk(grid_of(panel, 0).grid->objects, OBJECT_WALK::FORWARD);
        while (WM_SCREEN_OBJECT* object = walk.next()) {
            if (object->type_flags & WMF_IMAGE) {
                return static_cast<WM_IMAGE*>(object)->image;
            }
        }
        static const IMAGE none;
        return none;
    }
    // A named image of the skin, without a file.
    static void put_image(const char* name, int width, int height) {
        auto* entry = new CACHE_ENTRY;
        KVCORE::copy_text_field(entry->path, name);
        KVCORE::copy_text_field(entry->filename, name);
        entry->image.reset(width, height);
        entry->image.cache_entry = entry;
        entry->width = entry->orig_width = entry->image.width;
        entry->height = entry->orig_height = entry->image.height;
        IMAGE_CACHE& cache = WM_PAGE_TOOL_MANAGER::non_styleset_image_cache;
        ASSERT_TRUE(cache.entries.add(entry));
        cache.entries.sort();
        auto* info = new WM_PTM_IMAGE_INFO;
        info->set_name(name);
        info->image = cache.duplicate(&entry->image);
        tools().images.add(info);
        tools().sort_images();
    }
};

TEST_F(AddOnPanelTest, ShowsASkin) {
    const auto skin = make_add_on(ADD_ON::ADD_ON_SKIN, 12, 1536);
    const auto panel = make_panel(*skin);
    EXPECT_EQ(skin.get(), panel->add_on);
    EXPECT_STREQ("Winter pack", title_of(grid_of(*panel, 0)));
    EXPECT_EQ("Add On Name: Winter pack", fact(*panel, 1));
    EXPECT_EQ("Type: Skin", fact(*panel, 2));
    EXPECT_EQ("Build Number: 12", fact(*panel, 3));
    EXPECT_EQ("Size: 1.5 kb", fact(*panel, 4));
    EXPECT_STREQ("Description", title_of(grid_of(*panel, 1)));
    EXPECT_EQ("First line\n\nThird line\n", description_of(*panel));
}

TEST_F(AddOnPanelTest, ShowsAClientThatIsNotInstalled) {
    const auto client = make_add_on(ADD_ON::ADD_ON_APPLICATION, 0, 0);
    const auto panel = make_panel(*client);
    EXPECT_STREQ("Application", title_of(grid_of(*panel, 0)));
    EXPECT_EQ("Add On Name: Application", fact(*panel, 1));
    EXPECT_EQ("Type: Client", fact(*panel, 2));
    EXPECT_EQ("Build Number: Not installed", fact(*panel, 3));
    EXPECT_EQ("Size: ???", fact(*panel, 4));
    const std::string site = ADD_ON_PANEL::WEB_SITE;
    EXPECT_EQ(
        "First line\n\nThird line\n\n"
        "For more information and for news and support visit "
        "<:colour#4294901760><" +
            site + ":url#" + site + "><:colour#4278256131>.",
        description_of(*panel));
}

TEST_F(AddOnPanelTest, TheMatchViewWarnsWhereItCantRun) {
    auto* part = make_add_on(ADD_ON::ADD_ON_MISC, 3, 1000).release();
    const auto match = make_add_on(ADD_ON::ADD_ON_MISC, 3, 1000);
    match->set_path("match3d");
    part->set_parent(*match);
    EXPECT_EQ("Type: Miscellaneous", fact(*make_panel(*match), 2));
    EXPECT_EQ("Size: 2.0 kb", fact(*make_panel(*match), 4)) << "with all its parts";
    EXPECT_EQ("First line\n\nThird line\n", description_of(*make_panel(*part)));
    ADD_ON_PANEL::is_3d_capable = 0;
    EXPECT_EQ(
        "First line\n\nThird line\n\n<:colour#4294901760>Warning:<:colour#4278256131> It "
        "appears that your system is unable to run 3D. This add on may not work as "
        "expected.\nPlease ensure that are running the latest drivers for your graphics "
        "card.\n",
        description_of(*make_panel(*part)));
}

TEST_F(AddOnPanelTest, TheGridsShareTheCard) {
    const auto skin = make_add_on(ADD_ON::ADD_ON_SKIN, 1, 1);
    const auto panel = make_panel(*skin);
    const PROFILE_GRID& facts = grid_of(*panel, 0);
    const PROFILE_GRID& text = grid_of(*panel, 1);
    EXPECT_EQ(15, facts.grid->x);
    EXPECT_EQ(30, facts.grid->y);
    EXPECT_EQ(590, facts.grid->width);
    EXPECT_EQ(100, facts.grid->height);
    EXPECT_EQ(136, text.grid->y);
    EXPECT_EQ(280 - 106, text.grid->height);
    // 174 pixels for 8 rows.
    EXPECT_EQ(21, text.grid->row_height);
    EXPECT_EQ(157, text.special_object->y);
    EXPECT_EQ(7 * 21, text.special_object->height);
}

TEST_F(AddOnPanelTest, ThePictureIsTheAddOnsOrTheLogo) {
    const auto skin = make_add_on(ADD_ON::ADD_ON_SKIN, 1, 1);
    EXPECT_EQ(0, picture_of(*make_panel(*skin)).width) << "neither is there";
    put_image("APP_LOGO", 40, 30);
    EXPECT_EQ(40, picture_of(*make_panel(*skin)).width);
    put_image("DIALOG_APP_LOGO", 50, 30);
    EXPECT_EQ(50, picture_of(*make_panel(*skin)).width);
    skin->image->reset(64, 48);
    EXPECT_EQ(64, picture_of(*make_panel(*skin)).width);
    skin->image->reset(800, 800);
    const auto panel = make_panel(*skin);
    EXPECT_EQ(80, picture_of(*panel).height);
    EXPECT_EQ(80, picture_of(*panel).width) << "in its proportions";
    for (const auto& [width, height] : {std::pair{1, 2000}, std::pair{2000, 1}}) {
        skin->image->reset(width, height);
        const auto thin_panel = make_panel(*skin);
        const IMAGE& thin = picture_of(*thin_panel);
        EXPECT_GT(thin.width * thin.height, 0) << width;
        EXPECT_LE(thin.height, 80) << width;
    }
}

TEST_F(AddOnPanelTest, ATinyCardAndASkinWithoutConstantsDoNoHarm) {
    const auto skin = make_add_on(ADD_ON::ADD_ON_SKIN, 1, 1);
    ADD_ON_PANEL tiny(0, 0, 5, 5, skin.get(), "DIALOG", 0, nullptr, nullptr, nullptr, 0);
    tools().constants.clear();
    const auto panel = make_panel(*skin);
    EXPECT_GT(grid_of(*panel, 0).grid->row_height, 0);
    EXPECT_EQ("Type: Skin", fact(*panel, 2));
}

}  // namespace
