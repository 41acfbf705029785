// The skins as they are built: they define everything that the program asks for, compile without a
// warning, and can be read.
#include <gtest/gtest.h>
#include <stdlib.h>
#include <sys/wait.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <set>
#include <string>
#include <vector>

#include "modules/frameworks/trace_output.h"
#include "modules/gui/gui_skin.h"
#include "modules/winman/page_tool_manager.h"
#include "modules/winman/screen_object_looks.h"
#include "platform/config_file.h"
#include "platform/data_file.h"
#include "platform/disk_manager.h"
#include "platform/font_manager.h"
#include "platform/image.h"
#include "platform/image_cache.h"
#include "platform/image_load.h"

namespace fs = std::filesystem;

namespace {

using NAMES = std::vector<std::string>;

NAMES with_prefixes(const NAMES& prefixes, const NAMES& names) {
    NAMES all;
    for (const std::string& prefix : prefixes) {
        for (const std::string& name : names) {
            all.push_back(prefix.empty() ? name : prefix + "_" + name);
        }
    }
    return all;
}

void append(NAMES& to, const NAMES& names) {
    to.insert(to.end(), names.begin(), names.end());
}

// Every style set that the program looks up, under every prefix that it uses.
NAMES get_needed_style_sets() {
    NAMES names = {"BLANK",
                   "DEFAULT",
                   "DIALOG_BACKGROUND",
                   "DIALOG_BACKGROUND_CONFIRM",
                   "DIALOG_BACKGROUND_ERROR",
                   "DIALOG_BACKGROUND_WARNING",
                   "DIALOG_CHECK_BOX",
                   "DIALOG_LABEL",
                   "DIALOG_LAYOUT_GRID",
                   "DIALOG_PROGRESS_BAR",
                   "DIALOG_TITLE",
                   "HINT",
                   "PANEL_BACKGROUND",
                   "PANEL_BACKGROUND_EXTENDED"};
    append(names, with_prefixes({"DIALOG_BUTTON"},
                                {"ACKNOWLEDGE", "BACK", "CANCEL", "HELP", "NEGATIVE_ACTION", "NEXT",
                                 "NORMAL", "POSITIVE_ACTION"}));
    append(names, with_prefixes({"FLOATING_MENU"},
                                {"ITEM", "ITEM_ALTERNATE", "POPUP", "SEPARATOR", "TITLE"}));
    append(names,
           with_prefixes({"", "DIALOG_MESSAGE", "DIALOG_DESCRIPTION", "PANEL_FRAME_TITLE",
                          "DIALOG_PANEL_FRAME_TITLE"},
                         with_prefixes({"TEXT_BOX"}, {"BACKGROUND", "BUTTON", "GRID", "INFO",
                                                      "SCROLLBAR", "SEPARATOR", "WORD", "WORD_BOLD",
                                                      "WORD_BOLD_ITALIC", "WORD_ITALIC"})));
    NAMES frame = {"BACKGROUND",
                   "BOTTOM_FIRST",
                   "BOTTOM_FIRST_HOLDER",
                   "BOTTOM_LAST",
                   "BOTTOM_LAST_HOLDER",
                   "BOTTOM_MID",
                   "BOTTOM_MID_HOLDER",
                   "CENTRE",
                   "CENTRE_HOLDER",
                   "CENTRE_HOLDER_SMALL_BORDER",
                   "CENTRE_SMALL_BORDER",
                   "ICON_BAR",
                   "TITLE",
                   "TOP_FIRST",
                   "TOP_LAST",
                   "TOP_MID",
                   "TOP_MID_SELECTED",
                   "TOP_NO_TABS_FIRST",
                   "TOP_NO_TABS_LAST"};
    for (const char* kind : {"TAB_", "SUB_"}) {
        for (const char* place : {"FIRST", "MID", "LAST"}) {
            frame.push_back(std::string(kind) + place);
            frame.push_back(std::string(kind) + place + "_SELECTED");
        }
    }
    append(names, with_prefixes({"PANEL_FRAME", "DIALOG_PANEL_FRAME"}, frame));

    NAMES profile = {"GRID", "GRID_REPORT", "SCROLLBAR", "TITLE_BACK", "TITLE_NEXT"};
    append(profile, with_prefixes({"LABEL"}, {"BOLD", "BOLD_WITH_ICON", "CENTRED", "GREYED_OUT",
                                              "GREYED_OUT_CENTRED", "GREYED_OUT_WITH_ICON",
                                              "ITALIC", "ITALIC_WITH_ICON", "WITH_ICON"}));
    append(profile, with_prefixes({"ENTRY_ATTRIBUTE", "ENTRY_BOLD_ATTRIBUTE"},
                                  {"VERY_GOOD", "GOOD", "OK", "WEAK"}));
    append(profile, with_prefixes({"ENTRY"},
                                  {"BOLD", "LEFT_ALIGNED", "NEGATIVE_CASH", "NEGATIVE_CASH_CENTRED",
                                   "NEGATIVE_CASH_LEFT_ALIGNED", "POSITIVE_CASH",
                                   "POSITIVE_CASH_CENTRED", "POSITIVE_CASH_LEFT_ALIGNED", "STAT",
                                   "STAT_AVERAGE_RATING", "STAT_RED_CARDS", "STAT_YELLOW_CARDS"}));
    append(profile, {"LABEL", "ENTRY"});
    for (const char* place : {"TITLE_ONLY", "TITLE_FIRST", "TITLE_MIDDLE", "TITLE_LAST"}) {
        append(profile,
               {place, std::string(place) + "_CENTRED", std::string(place) + "_WITH_ICON"});
    }
    append(names, with_prefixes({"", "PANEL", "DIALOG"}, with_prefixes({"PROFILE"}, profile)));
    return names;
}

NAMES get_needed_constants() {
    NAMES names = {"DIALOG_AUTO_RESIZE_X_AMOUNT",
                   "DIALOG_AUTO_RESIZE_Y_AMOUNT",
                   "DIALOG_DEFAULT_CONTROL_HEIGHT",
                   "DIALOG_DEFAULT_CONTROL_WIDTH",
                   "LAUNCHER_PANEL_ROW_HEIGHT",
                   "MESSAGE_BOX_HEIGHT",
                   "MESSAGE_BOX_PLEASE_WAIT_ANIMATION_FRAME_COUNT",
                   "MESSAGE_BOX_PLEASE_WAIT_ANIMATION_FRAME_RATE",
                   "MESSAGE_BOX_WIDTH",
                   "MIDDLE_AREA_PANEL_Y_SPACING"};
    append(names, with_prefixes({"PANEL_FRAME", "DIALOG_PANEL_FRAME"},
                                {"ICON_BAR_WIDTH", "MAIN_TAB_START_X", "MAIN_TAB_X_GAP",
                                 "SUB_TAB_START_X", "SUB_TAB_X_GAP"}));
    append(names, with_prefixes({"PROFILE", "PANEL_PROFILE", "DIALOG_PROFILE"},
                                {"PICTURE_IMAGE_BORDER_SIZE", "ROW_HEIGHT"}));
    return names;
}

const NAMES NEEDED_IMAGES = {"APP_LOGO",
                             "ARROW_DOWN",
                             "ARROW_DOWN_DISABLED",
                             "ARROW_LEFT",
                             "ARROW_LEFT_DISABLED",
                             "ARROW_RIGHT",
                             "ARROW_RIGHT_DISABLED",
                             "ARROW_UP",
                             "ARROW_UP_DISABLED",
                             "BACKGROUND",
                             "PLEASE_WAIT_ANIMATION"};

std::string read_file(const fs::path& file) {
    std::ifstream in(file, std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(in), {});
}

// The files of a folder, by their path from there on.
std::map<std::string, std::string> read_tree(const fs::path& folder) {
    std::map<std::string, std::string> files;
    for (const auto& entry : fs::recursive_directory_iterator(folder)) {
        if (entry.is_regular_file()) {
            files[fs::relative(entry.path(), folder)] = read_file(entry.path());
        }
    }
    return files;
}

// How much light a colour gives off, 0 to 1.
double get_luminance(COLOUR colour) {
    const auto linear = [](int channel) {
        const double share = channel / 255.0;
        return share <= 0.04045 ? share / 12.92 : std::pow((share + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * linear(colour.red()) + 0.7152 * linear(colour.green()) +
           0.0722 * linear(colour.blue());
}

// 1 (none) to 21 (black on white), as the Web Content Accessibility Guidelines define it.
double get_contrast(COLOUR a, COLOUR b) {
    const double first = get_luminance(a) + 0.05;
    const double second = get_luminance(b) + 0.05;
    return std::max(first, second) / std::min(first, second);
}

// The colour in the middle of the box on that ground.
COLOUR get_face(IMAGE_BOX& box, COLOUR ground) {
    IMAGE picture(120, 40);
    picture.clear(ground);
    box.draw(0, 0, 119, 39, &picture, 1, IMAGE_COPY_BLEND);
    return picture.row(20)[60];
}

class BuiltSkinTest : public testing::Test, private TRACE_SINK {
protected:
    BuiltSkinTest() {
        std::string pattern = (fs::temp_directory_path() / "built_skin_XXXXXX").string();
        EXPECT_NE(nullptr, ::mkdtemp(pattern.data()));
        root = fs::canonical(pattern);
        copy_skins(root / "base");
        EXPECT_TRUE(DISK_MANAGER::set_base_folder((root / "base").c_str()));
        DISK_MANAGER::use_local_add_ons_path = true;
        restart();
        TRACE_OUTPUT::set_sink(this);
    }
    ~BuiltSkinTest() override {
        TRACE_OUTPUT::set_sink(nullptr);
        restart();
        DISK_MANAGER::use_local_add_ons_path = false;
        DISK_MANAGER::set_base_folder(nullptr);
        std::error_code ignored;
        fs::remove_all(root, ignored);
    }

    // The loose files alone.
    static void copy_skins(const fs::path& base) {
        const fs::path skins = base / "data" / "skins";
        fs::create_directories(base / "data");
        fs::copy(fs::path(SKIN_DATA_FOLDER) / "skins", skins, fs::copy_options::recursive);
        for (const auto& folder : fs::directory_iterator(skins)) {
            EXPECT_TRUE(fs::remove(folder.path() / "skin.bin")) << folder.path();
        }
    }

    // Another run of the program: nothing is in memory.
    void restart() {
        WM_SCREEN_OBJECT_LOOKS::hint_style_set.clear();
        tools.clear();
        tools.default_style_set.reset();
        WM_PAGE_TOOL_MANAGER::styleset_image_cache.soft_clear();
        WM_PAGE_TOOL_MANAGER::non_styleset_image_cache.soft_clear();
        FONT_MANAGER::get_instance().free_font(-1);
        WM_STYLE_SET::cache_flags = 1;
        GUI_SKIN::forget_skin_path();
    }
    bool load(const char* name, bool generate = false) {
        CONFIG_FILE versions("versions.cfg", true, FOLDER_APPDATA, false);
        return skin.load(name, versions, generate, nullptr, nullptr, 1);
    }
    fs::path skin_folder(const char* name) const { return root / "base" / "data" / "skins" / name; }

    fs::path root;
    WM_PAGE_TOOL_MANAGER& tools = WM_PAGE_TOOL_MANAGER::get_instance();
    GUI_SKIN skin;
    std::string trace;

private:
    void output(TRACE_LEVEL, const char* format, std::va_list arguments) override {
        char line[4096];
        std::vsnprintf(line, sizeof line, format, arguments);
        trace.append(line).append("\n");
    }
};

class EverySkinTest : public BuiltSkinTest, public testing::WithParamInterface<const char*> {};

TEST_P(EverySkinTest, DefinesAllThatTheProgramAsksFor) {
    ASSERT_TRUE(load(GetParam()));
    for (const std::string& name : get_needed_style_sets()) {
        const WM_STYLE_SET* set = tools.find_style_set(name.c_str());
        ASSERT_NE(nullptr, set) << name;
        EXPECT_TRUE(FONT_MANAGER::get_instance().is_font_valid(set->font)) << name;
        EXPECT_GE(set->font_y_sz, 11) << name;
    }
    for (const std::string& name : get_needed_constants()) {
        ASSERT_NE(nullptr, tools.find_constant(name.c_str())) << name;
        EXPECT_GT(tools.find_constant(name.c_str())->value, 0) << name;
    }
    for (const std::string& name : NEEDED_IMAGES) {
        EXPECT_GT(GUI_SKIN::get_image(name.c_str())->width, 0) << name;
    }
    EXPECT_TRUE(GUI_SKIN::get_colour("ACCENT").is_set());
    EXPECT_EQ("", trace);  // nothing was refused or missing on the way
    EXPECT_GT(WM_SCREEN_OBJECT_LOOKS::up_arrow_image.width, 0);
    EXPECT_TRUE(FONT_MANAGER::get_instance().is_font_valid(FONT_MANAGER::get_instance().font));
}

TEST_P(EverySkinTest, HasWholePicturesWhereverItNamesSome) {
    ASSERT_TRUE(load(GetParam()));
    for (std::int32_t i = 0; i < tools.style_sets.get_count(); ++i) {
        const auto* set = tools.style_sets.get<WM_STYLE_SET>(i);
        int boxes = 0;
        for (int which = 0; which < STYLE_BOX_COUNT; ++which) {
            const IMAGE_BOX* box = set->get_box(static_cast<STYLE_BOX>(which));
            if (!box) {
                continue;
            }
            ++boxes;
            SCOPED_TRACE(static_cast<const char*>(set->name));
            if (box->top_left) {
                for (const IMAGE* piece : {box->top, box->top_right, box->left, box->right,
                                           box->bottom_left, box->bottom, box->bottom_right}) {
                    EXPECT_NE(nullptr, piece) << which;
                }
            } else if (box->left || box->right) {
                EXPECT_TRUE(box->left && box->right) << which;
            }
        }
        EXPECT_EQ(set->image_filename != nullptr, boxes > 0) << static_cast<const char*>(set->name);
    }
}

TEST_P(EverySkinTest, ButtonsShowTheirStates) {
    ASSERT_TRUE(load(GetParam()));
    const auto picture_of = [](const WM_STYLE_SET& set, STYLE_BOX which) {
        IMAGE picture(60, 32);
        IMAGE_BOX* box = set.get_box(which);
        EXPECT_NE(nullptr, box) << static_cast<const char*>(set.name) << " " << which;
        if (box) {
            box->draw(0, 0, 59, 31, &picture, 1, IMAGE_COPY_SOLID);
        }
        std::string pixels;
        for (std::int32_t y = 0; y < picture.height; ++y) {
            pixels.append(reinterpret_cast<const char*>(picture.row(y)), 60 * sizeof(COLOUR));
        }
        return pixels;
    };
    const std::map<const char*, std::vector<STYLE_BOX>> needed = {
        {"DIALOG_BUTTON_NORMAL",
         {STYLE_BOX_UP, STYLE_BOX_OVER, STYLE_BOX_DOWN, STYLE_BOX_DISABLED, STYLE_BOX_ACTIVE_UP,
          STYLE_BOX_ACTIVE_OVER, STYLE_BOX_ACTIVE_DOWN, STYLE_BOX_ACTIVE_DISABLED}},
        {"DIALOG_BUTTON_ACKNOWLEDGE",
         {STYLE_BOX_UP, STYLE_BOX_OVER, STYLE_BOX_DOWN, STYLE_BOX_DISABLED}},
        {"DIALOG_CHECK_BOX",
         {STYLE_BOX_UP, STYLE_BOX_OVER, STYLE_BOX_DOWN, STYLE_BOX_DISABLED, STYLE_BOX_ACTIVE_UP,
          STYLE_BOX_ACTIVE_OVER, STYLE_BOX_ACTIVE_DOWN, STYLE_BOX_ACTIVE_DISABLED}},
        {"FLOATING_MENU_ITEM", {STYLE_BOX_UP, STYLE_BOX_OVER, STYLE_BOX_DOWN}},
        {"DIALOG_PROGRESS_BAR", {STYLE_BOX_EMPTY, STYLE_BOX_FULL}},
        {"PROFILE_GRID", {STYLE_BOX_BASE, STYLE_BOX_ALTERNATE, STYLE_BOX_HIGHLIGHTED}},
        {"TEXT_BOX_SCROLLBAR",
         {STYLE_BOX_BAR, STYLE_BOX_SLIDER_UP, STYLE_BOX_SLIDER_OVER, STYLE_BOX_SLIDER_DOWN}},
    };
    for (const auto& [name, boxes] : needed) {
        std::set<std::string> pictures;
        for (const STYLE_BOX which : boxes) {
            EXPECT_TRUE(pictures.insert(picture_of(GUI_SKIN::get_style_set(name), which)).second)
                << name << ": " << which << " looks like another state";
        }
    }
}

TEST_P(EverySkinTest, TextsCanBeRead) {
    ASSERT_TRUE(load(GetParam()));
    const COLOUR page = GUI_SKIN::get_image("BACKGROUND")->row(250)[100];
    const auto face_of = [page](const char* set, STYLE_BOX which = STYLE_BOX_BASE) {
        IMAGE_BOX* box = GUI_SKIN::get_style_set(set).get_box(which);
        EXPECT_NE(nullptr, box) << set;
        return box ? get_face(*box, page) : COLOUR_INVISIBLE;
    };
    const COLOUR dialog = face_of("DIALOG_BACKGROUND");
    const COLOUR frame = face_of("PANEL_FRAME_BACKGROUND");
    const COLOUR band = face_of("PANEL_FRAME_TITLE");
    const COLOUR row = face_of("PROFILE_GRID", STYLE_BOX_ALTERNATE);
    const struct {
        const char* text;
        COLOUR ground;
        double least;
    } texts[] = {
        {"DIALOG_TITLE", dialog, 7},
        {"DIALOG_MESSAGE_TEXT_BOX_WORD", dialog, 7},
        {"DIALOG_MESSAGE_TEXT_BOX_BUTTON", dialog, 4.5},
        {"DIALOG_DESCRIPTION_TEXT_BOX_WORD", frame, 7},
        {"DIALOG_LABEL", page, 7},
        {"DIALOG_CHECK_BOX", page, 7},
        {"DIALOG_PANEL_FRAME_TITLE_TEXT_BOX_WORD", band, 7},
        {"DIALOG_PROFILE_LABEL", row, 4.5},
        {"DIALOG_PROFILE_ENTRY", row, 7},
        {"DIALOG_PROFILE_ENTRY_ATTRIBUTE_OK", row, 4.5},
        {"DIALOG_PROFILE_ENTRY_NEGATIVE_CASH", row, 4.5},
        {"DIALOG_PROFILE_TITLE_ONLY", face_of("DIALOG_PROFILE_TITLE_ONLY"), 7},
        {"TEXT_BOX_WORD", face_of("TEXT_BOX_BACKGROUND"), 7},
        {"FLOATING_MENU_ITEM", face_of("FLOATING_MENU_POPUP"), 7},
        {"HINT", face_of("HINT"), 7},
        {"DIALOG_BUTTON_NORMAL", face_of("DIALOG_BUTTON_NORMAL", STYLE_BOX_UP), 7},
        {"DIALOG_BUTTON_NORMAL", face_of("DIALOG_BUTTON_NORMAL", STYLE_BOX_DOWN), 7},
        {"DIALOG_BUTTON_ACKNOWLEDGE", face_of("DIALOG_BUTTON_ACKNOWLEDGE", STYLE_BOX_UP), 7},
        {"DIALOG_BUTTON_ACKNOWLEDGE", face_of("DIALOG_BUTTON_ACKNOWLEDGE", STYLE_BOX_DOWN), 4.5},
        {"DIALOG_PROGRESS_BAR", face_of("DIALOG_PROGRESS_BAR", STYLE_BOX_EMPTY), 4.5},
        {"DIALOG_PROGRESS_BAR", face_of("DIALOG_PROGRESS_BAR", STYLE_BOX_FULL), 4.5},
    };
    for (const auto& [text, ground, least] : texts) {
        const COLOUR colour = GUI_SKIN::get_style_set(text).fg_colour;
        EXPECT_GE(get_contrast(colour, ground), least)
            << text << ": " << std::hex << colour.value << " on " << ground.value;
    }
}

TEST_P(EverySkinTest, CompilesToTheSameBytesTwice) {
    ASSERT_TRUE(load(GetParam(), true));
    const std::string first = read_file(skin_folder(GetParam()) / "skin.bin");
    ASSERT_FALSE(first.empty());
    restart();
    ASSERT_TRUE(load(GetParam(), true));
    EXPECT_TRUE(first == read_file(skin_folder(GetParam()) / "skin.bin"));

    // And what is loaded from it is what was compiled.
    const WM_STYLE_SET compiled = GUI_SKIN::get_style_set("DIALOG_PROFILE_TITLE_ONLY");
    restart();
    fs::remove_all(skin_folder(GetParam()) / "style_sets");
    ASSERT_TRUE(load(GetParam()));
    const WM_STYLE_SET& loaded = GUI_SKIN::get_style_set("DIALOG_PROFILE_TITLE_ONLY");
    EXPECT_TRUE(compiled == loaded);
    EXPECT_NE(nullptr, loaded.get_box(STYLE_BOX_BASE));
    EXPECT_EQ("", trace);
}

INSTANTIATE_TEST_SUITE_P(Skins, EverySkinTest, testing::Values("saffrane", "vesper"),
                         [](const auto& skin) { return std::string(skin.param); });

TEST_F(BuiltSkinTest, DarkSkinOverridesTintsAndInherits) {
    ASSERT_TRUE(load("saffrane"));
    const COLOUR light_ink = GUI_SKIN::get_style_set("DIALOG_LABEL").fg_colour;
    const std::int32_t base_sets = tools.style_sets.get_count();
    restart();
    ASSERT_TRUE(load("vesper"));

    // Overrides.
    EXPECT_EQ(base_sets, tools.style_sets.get_count());
    EXPECT_GT(get_luminance(GUI_SKIN::get_style_set("DIALOG_LABEL").fg_colour),
              get_luminance(light_ink) + 0.5);
    EXPECT_LT(get_luminance(GUI_SKIN::get_image("BACKGROUND")->row(250)[100]), 0.05);
    const WM_STYLE_SET& dialog = GUI_SKIN::get_style_set("DIALOG_BACKGROUND");
    EXPECT_NE(nullptr, std::strstr(dialog.image_path, "vesper")) << dialog.image_path;

    // What is drawn grey has the hue of "recolour_skin_to"; the accent keeps its own.
    const COLOUR face = get_face(*dialog.get_box(STYLE_BOX_BASE), COLOUR_BLACK);
    EXPECT_LT(get_luminance(face), 0.05);
    EXPECT_GT(face.blue(), face.green());
    EXPECT_GT(face.green(), face.red());
    const COLOUR accent = get_face(
        *GUI_SKIN::get_style_set("DIALOG_BUTTON_ACKNOWLEDGE").get_box(STYLE_BOX_UP), COLOUR_BLACK);
    EXPECT_GT(accent.red(), accent.blue() + 80);

    // Inherits.
    EXPECT_FALSE(fs::exists(skin_folder("vesper") / "fonts"));
    EXPECT_FALSE(fs::exists(skin_folder("vesper") / "constants"));
    EXPECT_EQ(40, GUI_SKIN::get_constant("LAUNCHER_PANEL_ROW_HEIGHT"));
    EXPECT_NE(-1, GUI_SKIN::get_font("Inter-SemiBold"));
}

// --- The pictures of the splash window ---

class DataPictureTest : public testing::Test {
protected:
    static bool load(const char* name, IMAGE& image) {
        DISK_MANAGER disk;
        return disk.move_down(SKIN_DATA_FOLDER, false, true) && image.load(disk, name, -1, -1);
    }
};

TEST_F(DataPictureTest, SplashHasALightAndCalmPlaceForTheStatus) {
    IMAGE splash;
    ASSERT_TRUE(load("splash_screen.jpg", splash));
    ASSERT_EQ(446, splash.width);
    ASSERT_EQ(208, splash.height);
    const COLOUR success(0xFF00C800);
    for (std::int32_t y = 25; y < 25 + 158; ++y) {
        for (std::int32_t x = 230; x < 230 + 195; ++x) {
            const COLOUR pixel = splash.row(y)[x];
            ASSERT_GT(get_luminance(pixel), 0.9) << x << "," << y;
            ASSERT_GT(get_contrast(success, pixel), 2) << x << "," << y;
        }
    }
}

TEST_F(DataPictureTest, AnimationHasTwelveFramesThatFitTheSplash) {
    IMAGE strip;
    ASSERT_TRUE(load("please_wait_animation.png", strip));
    ASSERT_EQ(0, strip.width % 12);
    const std::int32_t width = strip.width / 12;
    EXPECT_LE(150 + strip.height, 208);
    EXPECT_LE(111 + width / 2, 220);
    std::set<std::string> frames;
    for (int frame = 0; frame < 12; ++frame) {
        std::string pixels;
        for (std::int32_t y = 0; y < strip.height; ++y) {
            pixels.append(reinterpret_cast<const char*>(strip.row(y) + frame * width),
                          static_cast<std::size_t>(width) * sizeof(COLOUR));
        }
        EXPECT_TRUE(frames.insert(pixels).second) << frame;
    }
}

// --- The generator ---

class SkinArtTest : public testing::Test {
protected:
    SkinArtTest() {
        std::string pattern = (fs::temp_directory_path() / "skin_art_XXXXXX").string();
        EXPECT_NE(nullptr, ::mkdtemp(pattern.data()));
        root = fs::canonical(pattern);
    }
    ~SkinArtTest() override {
        std::error_code ignored;
        fs::remove_all(root, ignored);
    }

    // The exit status; what it wrote to the error stream is in `message`.
    int run(const fs::path& sources) {
        const std::string command = std::string(SKIN_ART_PROGRAM) + " " + sources.string() + " " +
                                    SKIN_FONT_FOLDER + " " + (root / "out").string() + " 2>" +
                                    (root / "message").string();
        const int status = std::system(command.c_str());
        message = read_file(root / "message");
        return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    }
    // A copy of the sources that a test may damage.
    fs::path copy_sources() const {
        fs::copy(SKIN_SOURCE_FOLDER, root / "sources", fs::copy_options::recursive);
        return root / "sources";
    }

    fs::path root;
    std::string message;
};

TEST_F(SkinArtTest, WritesTheSameBytesEveryTime) {
    ASSERT_EQ(0, run(SKIN_SOURCE_FOLDER)) << message;
    const auto here = read_tree(root / "out");
    const auto built = read_tree(SKIN_DATA_FOLDER);
    EXPECT_GT(here.size(), 1000u);
    for (const auto& [name, content] : here) {
        const auto found = built.find(name);
        ASSERT_NE(built.end(), found) << name;
        EXPECT_TRUE(content == found->second) << name;
    }
}

TEST_F(SkinArtTest, RefusesAnUnknownColourAPictureThatNothingDrawsAndABadPalette) {
    const fs::path sources = copy_sources();
    const fs::path blank = sources / "saffrane" / "style_sets" / "blank.ss";
    const std::string good = read_file(blank);
    std::ofstream(blank) << good << "fg_colour\n\t$puce\n";
    EXPECT_EQ(1, run(sources));
    EXPECT_NE(std::string::npos, message.find("puce")) << message;
    std::ofstream(blank) << "name\n\tBLANK\nimage_filename\n\tnowhere\nimage_path\n\t$HERE\n";
    EXPECT_EQ(1, run(sources));
    EXPECT_NE(std::string::npos, message.find("nowhere")) << message;
    std::ofstream(blank) << good;
    std::ofstream(sources / "saffrane" / "palette.cfg", std::ios::app) << "puce\n\t#12345\n";
    EXPECT_EQ(1, run(sources));
    EXPECT_NE(std::string::npos, message.find("palette.cfg")) << message;
}

}  // namespace
