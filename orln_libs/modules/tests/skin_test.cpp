// Skins as the program loads them: current, out of date, damaged, built on each other.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "modules/gui/gui_skin.h"
#include "modules/winman/screen_object_looks.h"
#include "platform/font_manager.h"
#include "platform/image_cache.h"
#include "skin_fixture.h"

namespace {

class GuiSkin : public SkinTest {
protected:
    // A skin that has nothing of its own but a description.
    void put_derived(const std::string& name, const std::string& base, int version) {
        std::string text = "internal_version\n\t";
        text.append(std::to_string(version)).append("\nbase_skin_folder\n\t").append(base);
        put(std::string("skins/").append(name).append("/skin.cfg"), text.append("\n"));
    }
    std::string version_of(const std::string& name) {
        char value[CONFIG_FILE::value_size];
        CONFIG_FILE file("versions.cfg", false, FOLDER_APPDATA, false);
        return file.read(versions.get_base_path(), name.c_str(), value) ? value : "none";
    }
    // Loads as another run of the program would.
    bool run(const std::string& name, bool generate = false) {
        restart();
        return load(name, generate);
    }
    bool is_rebuilt(const std::string& name, const std::string& run_skin) {
        const auto file = path_of(std::string("skins/").append(name).append("/skin.bin"));
        const auto old_time = std::filesystem::file_time_type{};
        std::filesystem::last_write_time(file, old_time);
        EXPECT_TRUE(run(run_skin)) << trace;
        return std::filesystem::last_write_time(file) != old_time;
    }
};

TEST_F(GuiSkin, IsGeneratedLoadedAndLookedUp) {
    put_skin("s", 3);
    EXPECT_TRUE(run("s", true)) << trace;
    EXPECT_TRUE(skin.is_loaded());
    EXPECT_EQ(nullptr, skin.get_skin_loading());
    EXPECT_GE(callbacks, 5);
    EXPECT_EQ("3", version_of("s"));
    const std::string generated = get("skins/s/skin.bin");
    EXPECT_TRUE(run("s", true));
    EXPECT_TRUE(generated == get("skins/s/skin.bin"));
    EXPECT_FALSE(is_rebuilt("s", "s"));
    EXPECT_EQ("", trace);

    EXPECT_STREQ("A skin", skin.name);
    EXPECT_STREQ("Somebody", skin.author);
    EXPECT_STREQ("1.0", skin.display_version);
    EXPECT_EQ(COLOUR(0xFFEEDDCC), WM_SCREEN_OBJECT_LOOKS::hint_style_set.bg_colour);
    EXPECT_EQ(5, WM_SCREEN_OBJECT_LOOKS::up_arrow_image.height);
    EXPECT_EQ(0, WM_SCREEN_OBJECT_LOOKS::down_arrow_image.height);

    // The index is found once, used, and corrected when it has gone stale.
    std::int32_t index = -1;
    EXPECT_EQ(COLOUR(0xFF102030), GUI_SKIN::get_style_set("BUTTON", nullptr, &index).fg_colour);
    EXPECT_EQ(0, index);
    index = 2;
    EXPECT_STREQ("BUTTON", GUI_SKIN::get_style_set("BUTTON", "", &index).name);
    EXPECT_EQ(0, index);
    index = 0;
    EXPECT_EQ(nullptr, GUI_SKIN::get_style_set("NOTHING", nullptr, &index).name);
    EXPECT_EQ(-1, index);
    EXPECT_EQ(4, GUI_SKIN::get_image("UP", "ARROW", &index)->width);
    EXPECT_EQ(0, index);
    EXPECT_EQ(4, GUI_SKIN::get_image("UP", "ARROW", &index)->width);
    EXPECT_EQ(0, GUI_SKIN::get_image("P", "ARROW_U", &index)->width);
    EXPECT_EQ(-1, index);
    EXPECT_EQ(COLOUR(0xFF0000AA), GUI_SKIN::get_colour("INK"));
    EXPECT_EQ(COLOUR_INVISIBLE, GUI_SKIN::get_colour("NOTHING"));
    EXPECT_EQ(-1, GUI_SKIN::get_font("NOTHING"));
    std::int16_t constant = 9;
    EXPECT_EQ(120, GUI_SKIN::get_constant("WIDTH", nullptr, &constant));
    EXPECT_EQ(0, constant);
    EXPECT_EQ(0, GUI_SKIN::get_constant("NOTHING", "A", &constant));
    EXPECT_EQ(0, GUI_SKIN::get_constant(nullptr));
}

TEST_F(GuiSkin, IsRebuiltWhenItHasChangedOrDoesntRead) {
    put_skin("s", 3);
    EXPECT_TRUE(run("s"));  // never compiled
    const std::string compiled = get("skins/s/skin.bin");
    EXPECT_FALSE(is_rebuilt("s", "s"));

    put_skin("s", 4);
    EXPECT_TRUE(is_rebuilt("s", "s"));
    EXPECT_EQ(4, get("skins/s/skin.bin")[2]);
    EXPECT_EQ("4", version_of("s"));
    EXPECT_FALSE(is_rebuilt("s", "s"));

    // Damaged in the middle of the pictures: nothing of it gets into the new one.
    const std::string good = get("skins/s/skin.bin");
    std::string damaged = good.substr(0, good.size() - 10);
    const std::size_t pixels = damaged.find(std::string(16, '\xFF'));
    ASSERT_NE(std::string::npos, pixels);
    damaged[pixels] = 0;
    put("skins/s/skin.bin", damaged);
    EXPECT_TRUE(is_rebuilt("s", "s"));
    EXPECT_NE(std::string::npos, trace.find("skins/s/skin.bin"));
    EXPECT_TRUE(good == get("skins/s/skin.bin"));
    put("skins/s/skin.bin", "");
    EXPECT_TRUE(is_rebuilt("s", "s"));

    // A run that was killed while it wrote has left the old file and a piece of the new one.
    put("skins/s/skin.bin.tmp", damaged);
    EXPECT_FALSE(is_rebuilt("s", "s"));
    put_skin("s", 5);
    EXPECT_TRUE(is_rebuilt("s", "s"));
    EXPECT_FALSE(has("skins/s/skin.bin.tmp"));
}

TEST_F(GuiSkin, ADamagedDescriptionIsNoEnd) {
    put_skin("s", 3);
    ASSERT_TRUE(run("s")) << trace;
    // Noise instead of keys: the version is lost, so the skin is built anew, once.
    std::string noise(700, '\0');
    for (std::size_t i = 0; i < noise.size(); ++i) {
        noise[i] = static_cast<char>(i * i * 7 + i / 3);
    }
    put("skins/s/skin.cfg", noise);
    EXPECT_TRUE(is_rebuilt("s", "s"));
    EXPECT_STREQ("", skin.author);
    EXPECT_EQ(0, tools.internal_version);
    EXPECT_FALSE(is_rebuilt("s", "s"));
    put("skins/s/skin.cfg", "internal_version\n\tfour\n");
    EXPECT_FALSE(is_rebuilt("s", "s"));
    EXPECT_NE(std::string::npos, trace.find("skins/s/skin.cfg: the value \"four\"")) << trace;
    // Where there is none, the compiled skin is all there is.
    std::filesystem::remove(path_of("skins/s/skin.cfg"));
    std::filesystem::create_directories(path_of("skins/s/skin.cfg"));
    EXPECT_FALSE(is_rebuilt("s", "s"));
    EXPECT_NE(std::string::npos, trace.find("skins/s/skin.cfg: the skin's description"));
    EXPECT_FALSE(run("s", true));
}

TEST_F(GuiSkin, NeedsAllItsPartsAndADescription) {
    EXPECT_FALSE(run("s"));
    EXPECT_FALSE(run(""));
    EXPECT_FALSE(skin.load(nullptr, versions, 0, nullptr, nullptr, 1));
    EXPECT_FALSE(run("../skins/s"));
    EXPECT_FALSE(has("skins/s"));
    EXPECT_FALSE(run("s", true));
    EXPECT_TRUE(has("skins/s"));

    put_skin("s", 3);
    ASSERT_TRUE(run("s"));
    const std::string compiled = get("skins/s/skin.bin");
    std::filesystem::remove_all(path_of("skins/s/colours"));
    EXPECT_FALSE(run("s", true));
    EXPECT_NE(std::string::npos, trace.find("colours"));
    EXPECT_FALSE(skin.is_loaded());
    EXPECT_TRUE(compiled == get("skins/s/skin.bin"));  // the former one stays

    // A compiled skin is all that is needed.
    for (const char* part : {"skin.cfg", "style_sets", "constants", "images", "fonts"}) {
        std::filesystem::remove_all(path_of(std::string("skins/s/").append(part)));
    }
    EXPECT_TRUE(run("s")) << trace;
    EXPECT_STREQ("", skin.name);
    EXPECT_FALSE(run("s", true));

    // Where nothing can be stored, what was read is used.
    put_skin("unwritable", 2);
    std::filesystem::create_directories(path_of("skins/unwritable/skin.bin/not_empty"));
    EXPECT_FALSE(run("unwritable", true));
    EXPECT_TRUE(run("unwritable")) << trace;
    EXPECT_NE(std::string::npos, trace.find("skins/unwritable/skin.bin"));

    // An empty table makes a skin useless, compiled or not.
    put_skin("t", 1);
    put("skins/t/constants/sizes.cfg", "");
    EXPECT_FALSE(run("t"));
    EXPECT_TRUE(has("skins/t/skin.bin"));
    EXPECT_FALSE(run("t"));
}

TEST_F(GuiSkin, DerivedSkinsHoldTheirBaseAndFollowIt) {
    put_skin("base", 1);
    put_derived("derived", "base", 8);
    put_style_set("skins/derived/style_sets/button.ss", "BUTTON", "face", "y_spacing\n\t6\n");
    put_png("skins/derived/style_sets/face.png", 2, 2, COLOUR_YELLOW);
    put("skins/derived/constants/c.cfg", "WIDTH\n\t200\nHEIGHT\n\t50\n");
    const auto check = [this] {
        const WM_STYLE_SET& button = GUI_SKIN::get_style_set("BUTTON");
        EXPECT_EQ(6, button.y_spacing);
        EXPECT_EQ(9, button.font_x_sz);  // from the base skin's default
        ASSERT_NE(nullptr, button.get_box(STYLE_BOX_BASE));
        EXPECT_EQ(COLOUR_YELLOW, button.get_box(STYLE_BOX_BASE)->centre->row(0)[0]);
        EXPECT_EQ(nullptr, button.get_box(STYLE_BOX_UP));
        EXPECT_EQ(200, GUI_SKIN::get_constant("WIDTH"));
        EXPECT_EQ(50, GUI_SKIN::get_constant("HEIGHT"));
        EXPECT_EQ(COLOUR(0xFF0000AA), GUI_SKIN::get_colour("INK"));
        EXPECT_EQ(7, GUI_SKIN::get_image("LOGO")->width);
    };
    ASSERT_TRUE(run("derived")) << trace;
    check();
    EXPECT_EQ("1", version_of("base"));
    EXPECT_EQ("8", version_of("derived"));
    const std::string from_files = get("skins/derived/skin.bin");
    ASSERT_TRUE(run("derived"));
    check();

    // Built on the compiled base, it is the same as built on its files.
    std::filesystem::remove(path_of("skins/derived/skin.bin"));
    ASSERT_TRUE(run("derived")) << trace;
    check();
    EXPECT_TRUE(from_files == get("skins/derived/skin.bin"));

    // A damaged one is built on the base anew, whose pictures must be in it.
    put("skins/derived/skin.bin", from_files.substr(0, from_files.size() - 3));
    ASSERT_TRUE(run("derived"));
    EXPECT_TRUE(from_files == get("skins/derived/skin.bin"));

    put_skin("base", 2);
    EXPECT_TRUE(is_rebuilt("derived", "derived"));
    EXPECT_FALSE(is_rebuilt("derived", "derived"));
    // Alone, without the base's folder.
    std::filesystem::remove_all(path_of("skins/base"));
    EXPECT_FALSE(is_rebuilt("derived", "derived"));
    check();
}

TEST_F(GuiSkin, ChainsOfBaseSkinsEnd) {
    const auto level = [](int i) { return std::string("level").append(std::to_string(i)); };
    for (int i = 0; i < 40; ++i) {
        put_derived(level(i), level(i + 1), 1);
    }
    put_skin(level(31), 1);
    EXPECT_TRUE(run(level(0))) << trace;
    EXPECT_TRUE(run(level(0)));
    std::filesystem::remove_all(path_of("skins"));
    std::filesystem::create_directories(path_of("skins"));
    for (int i = 0; i < 40; ++i) {
        put_derived(level(i), level(i + 1), 1);
    }
    put_skin(level(32), 1);
    EXPECT_FALSE(run(level(0)));
    EXPECT_NE(std::string::npos, trace.find("have no end"));
    EXPECT_TRUE(run(level(1)));

    put_skin("self", 1);
    put("skins/self/skin.cfg", "internal_version\n\t1\nbase_skin_folder\n\tself\n");
    EXPECT_FALSE(run("self"));
    put_derived("ping", "pong", 1);
    put_derived("pong", "ping", 1);
    EXPECT_FALSE(run("ping"));
    EXPECT_FALSE(run("ping", true));

    // A base that isn't there is no base.
    put_skin("orphan", 1);
    put("skins/orphan/skin.cfg", "internal_version\n\t1\nbase_skin_folder\n\t../orphan\n");
    EXPECT_TRUE(run("orphan")) << trace;
}

TEST_F(GuiSkin, TintsItsImagesAndNamesItsFont) {
    put_skin("s", 1);
    const std::string config = get("skins/s/skin.cfg");
    put("skins/s/skin.cfg", config +
                                "recolour_skin_to\n\t#FF0000FF\nfont_name\n\tRound\n"
                                "font_x_sz\n\t14\nfont_y_sz\n\t99999\n");
    put("skins/s/style_sets/plain.ss",
        "name\n\tPLAIN\nimage_filename\n\tplain\nimage_path\n\t$HERE\nrecolourable\n\t0\n");
    put_png("skins/s/style_sets/plain.png", 2, 2, COLOUR_RED);
    const bool has_font = put_font("skins/s/fonts/Round.otf");
    FONT_MANAGER& fonts = FONT_MANAGER::get_instance();
    fonts.y_size = 18;
    ASSERT_TRUE(run("s")) << trace;
    ASSERT_TRUE(run("s")) << trace;
    const COLOUR tinted =
        GUI_SKIN::get_style_set("BUTTON").get_box(STYLE_BOX_UP)->centre->row(0)[0];
    EXPECT_GT(tinted.blue(), tinted.green());
    EXPECT_EQ(COLOUR_RED,
              GUI_SKIN::get_style_set("PLAIN").get_box(STYLE_BOX_BASE)->centre->row(0)[0]);
    EXPECT_FALSE(WM_PAGE_TOOL_MANAGER::styleset_image_cache.recolour_in_place);
    EXPECT_FALSE(WM_PAGE_TOOL_MANAGER::styleset_image_cache.discard_unused);
    EXPECT_EQ(14, fonts.x_size);
    EXPECT_EQ(18, fonts.y_size);
    EXPECT_NE(std::string::npos, trace.find("font_y_sz"));
    if (has_font) {
        EXPECT_NE(-1, GUI_SKIN::get_font("Round"));
        EXPECT_EQ(GUI_SKIN::get_font("Round"), fonts.font);
        EXPECT_TRUE(fonts.is_font_valid(fonts.font));
    }
    put("skins/s/skin.cfg", config + "recolour_skin_to\n\tblue\n");
    ASSERT_TRUE(run("s", true));
    EXPECT_NE(std::string::npos, trace.find("recolour_skin_to"));
}

TEST_F(GuiSkin, TheFolderOfSkinsIsMade) {
    for (const bool generating : {true, false}) {
        std::filesystem::remove_all(path_of("skins"));
        GUI_SKIN::forget_skin_path();
        EXPECT_FALSE(skin.load("s", versions, 1, nullptr, nullptr, generating));
        const std::string skins = generating ? "skins" : "add_ons/skins";
        EXPECT_TRUE(has(skins + "/s"));
        EXPECT_STREQ(path_of(skins).c_str(), GUI_SKIN::get_skin_path(generating).get_path_string());
    }
}

TEST_F(GuiSkin, SkinsAreSeededFromTheApplicationsData) {
    put_skin("s", 1);
    EXPECT_STREQ(path_of("skins").c_str(), GUI_SKIN::get_skin_path(1).get_path_string());
    EXPECT_STREQ(path_of("skins").c_str(), GUI_SKIN::get_skin_path(0).get_path_string());

    GUI_SKIN::forget_skin_path();
    EXPECT_STREQ(path_of("add_ons/skins").c_str(), GUI_SKIN::get_skin_path(0).get_path_string());
    EXPECT_TRUE(has("add_ons/skins/s/skin.cfg"));
    EXPECT_TRUE(skin.load("s", versions, 0, nullptr, nullptr, 0)) << trace;
    EXPECT_TRUE(has("add_ons/skins/s/skin.bin"));
    EXPECT_FALSE(has("skins/s/skin.bin"));
    EXPECT_STREQ("$ADD_ONS/skins/s/style_sets", GUI_SKIN::get_style_set("BUTTON").image_path);

    // The places that were remembered in one skin are found anew in another, and back.
    std::int32_t style = -1;
    std::int16_t constant = -1;
    EXPECT_STREQ("HINT", GUI_SKIN::get_style_set("HINT", nullptr, &style).name);
    EXPECT_EQ(120, GUI_SKIN::get_constant("WIDTH", nullptr, &constant));
    put_skin("other", 1);
    put_style_set("skins/other/style_sets/a.ss", "A", "");
    put("skins/other/constants/sizes.cfg", "ABOVE\n\t1\nWIDTH\n\t77\n");
    GUI_SKIN::set_skin_path(cursor("skins"));
    EXPECT_TRUE(skin.load("other", versions, 0, nullptr, nullptr, 0)) << trace;
    EXPECT_STREQ("HINT", GUI_SKIN::get_style_set("HINT", nullptr, &style).name);
    EXPECT_EQ(77, GUI_SKIN::get_constant("WIDTH", nullptr, &constant));
    EXPECT_EQ(0, GUI_SKIN::get_constant("GONE", nullptr, &constant));
    EXPECT_EQ(77, GUI_SKIN::get_constant("WIDTH", nullptr, &constant));
    EXPECT_TRUE(skin.load("s", versions, 0, nullptr, nullptr, 0)) << trace;
    EXPECT_STREQ("HINT", GUI_SKIN::get_style_set("HINT", nullptr, &style).name);
    EXPECT_EQ(nullptr, GUI_SKIN::get_style_set("A", nullptr, &style).name);
    EXPECT_EQ(120, GUI_SKIN::get_constant("WIDTH", nullptr, &constant));
    std::filesystem::remove_all(path_of("skins/other"));

    // Once a skin has been compiled there, nothing is copied any more.
    put_skin("t", 1);
    GUI_SKIN::forget_skin_path();
    GUI_SKIN::get_skin_path(0);
    EXPECT_FALSE(has("add_ons/skins/t"));
    EXPECT_FALSE(has("add_ons/skins/copying"));
    // A copy that was cut short, with a compiled skin among what it had copied.
    put("add_ons/skins/copying", "");
    GUI_SKIN::forget_skin_path();
    GUI_SKIN::get_skin_path(0);
    EXPECT_TRUE(has("add_ons/skins/t/skin.cfg"));
    EXPECT_FALSE(has("add_ons/skins/copying"));

    put_skin("own", 1);
    skin.set_custom_skin_path(cursor("skins"));
    EXPECT_TRUE(skin.load("own", versions, 0, nullptr, nullptr, 0)) << trace;
    EXPECT_TRUE(has("skins/own/skin.bin"));
}

}  // namespace
