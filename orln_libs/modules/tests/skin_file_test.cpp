// The tables of a skin: read from loose files, written to and read from "skin.bin".
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cstring>
#include <string>
#include <vector>

#include "modules/winman/page_tool_manager.h"
#include "platform/data_file.h"
#include "platform/font_manager.h"
#include "platform/image_cache.h"
#include "skin_fixture.h"

namespace {

constexpr const char* FOLDER = "skins/s";
constexpr const char* FILE_NAME = "skin.bin";
constexpr const char* STORED = "skins/s/skin.bin";

class SkinFile : public SkinTest {
protected:
    SkinFile() { std::filesystem::create_directories(path_of(FOLDER)); }

    void read_loose_files() {
        tools.load_fonts(cursor("skins/s/fonts"), 1);
        EXPECT_TRUE(tools.load_style_sets(cursor("skins/s/style_sets"), 0, 1));
        EXPECT_TRUE(tools.load_style_sets(cursor("skins/s/style_sets"), 0, 0));
        EXPECT_TRUE(tools.load_constants(cursor("skins/s/constants")));
        EXPECT_TRUE(tools.load_images(cursor("skins/s/images")));
        EXPECT_TRUE(tools.load_colours(cursor("skins/s/colours")));
    }
    bool save(std::uint16_t version = 7) { return tools.save(cursor(FOLDER), FILE_NAME, version); }
    bool load_file() { return tools.load(cursor(FOLDER), FILE_NAME); }
    bool load_header() { return tools.load_header(cursor(FOLDER), FILE_NAME); }

    static std::string text(const std::string& value) {
        return std::string{static_cast<char>(value.size()), 0, 0, 0} + value;
    }
    static std::string path(const std::string& value) {
        return value + std::string(2048 - value.size(), '\0');
    }
    static std::string bytes(std::initializer_list<int> values) {
        std::string result;
        for (const int value : values) {
            result += static_cast<char>(value);
        }
        return result;
    }
    static std::string count(int value) { return bytes({value, 0, 0, 0}); }
};

TEST_F(SkinFile, StoredFormByByte) {
    put_png("skins/s/i/p.png", 1, 2, COLOUR(0x40FF00FF));
    put("skins/s/i/i.cfg", "PIC\n\tp\n");
    put("skins/s/c/c.cfg", "C\n\t#A0B0C0D0\n");
    ASSERT_TRUE(tools.load_images(cursor("skins/s/i")));
    WM_PAGE_TOOL_MANAGER::add_constant("N", "-2", nullptr);
    ASSERT_TRUE(tools.load_colours(cursor("skins/s/c")));
    auto font = std::make_unique<WM_PTM_FONT_INFO>();
    font->set_name("F");
    font->set_filename("F.otf");
    tools.fonts.add(font.release());
    ASSERT_TRUE(save(0x0203));

    const std::string empty_cache = bytes({2}) + count(0);
    const std::string folder = "$APPDATA/skins/s/i";
    const std::string cache = bytes({2}) + count(1) + text(folder) + text("p") +
                              bytes({1, 0, 2, 0, 1, 0, 2, 0}) +
                              bytes({1, 1, 0, 2, 0, 0xFF, 0, 0xFF, 0x40, 0xFF, 0, 0xFF, 0x40});
    const std::string expected =
        bytes({22, 0, 3, 2}) + empty_cache + cache + count(0) + count(1) + text("F") +
        text("F.otf") + path("$APPDATA/fonts") + bytes({0xFF}) + count(1) + text("C") +
        bytes({0xD0, 0xC0, 0xB0, 0xA0}) + count(1) + text("PIC") + text("p") + path(folder) +
        count(1) + text("N") + bytes({0xFE, 0xFF});
    EXPECT_TRUE(expected == get(STORED));
    EXPECT_FALSE(has("skins/s/skin.bin.tmp"));

    // The older versions have no internal version; the oldest has a byte more and a cache less.
    const std::string tables = expected.substr(4 + empty_cache.size() + cache.size());
    put(STORED, bytes({21, 0}) + empty_cache + cache + tables);
    restart();
    EXPECT_TRUE(load_file());
    EXPECT_EQ(21, WM_PAGE_TOOL_MANAGER::file_version);
    EXPECT_EQ(0, tools.internal_version);
    ASSERT_NE(nullptr, tools.find_image("PIC"));
    EXPECT_NE(nullptr, tools.find_image("PIC")->image);
    put(STORED, bytes({20, 0, 99}) + empty_cache + tables);
    restart();
    EXPECT_TRUE(load_file());
    EXPECT_EQ(20, WM_PAGE_TOOL_MANAGER::file_version);
    EXPECT_EQ(-2, tools.find_constant("N")->value);
    for (const int version : {19, 23}) {
        put(STORED, bytes({version, 0, 3, 2}) + empty_cache + cache + tables);
        EXPECT_FALSE(load_header());
        EXPECT_FALSE(load_file());
        EXPECT_FALSE(tools.loaded);
        EXPECT_EQ(0, tools.internal_version);
    }
}

TEST_F(SkinFile, SavedTablesComeBackWithoutTheDisk) {
    put_skin("s", 1);
    read_loose_files();
    const WM_STYLE_SET button = *tools.find_style_set("BUTTON");
    EXPECT_EQ(9, button.font_x_sz);
    ASSERT_TRUE(save());
    const std::string stored = get(STORED);
    restart();
    std::filesystem::remove_all(path_of("skins/s/style_sets"));
    std::filesystem::remove_all(path_of("skins/s/images"));

    ASSERT_TRUE(load_file());
    EXPECT_EQ(7, tools.internal_version);
    EXPECT_EQ(8, WM_STYLE_SET::cache_flags);
    EXPECT_EQ(3, tools.style_sets.get_count());
    ASSERT_NE(nullptr, tools.find_style_set("BUTTON"));
    EXPECT_TRUE(button == *tools.find_style_set("BUTTON"));
    const IMAGE_BOX* box = tools.find_style_set("BUTTON")->get_box(STYLE_BOX_UP);
    ASSERT_NE(nullptr, box);
    EXPECT_EQ(COLOUR_GREEN, box->centre->row(1)[2]);
    ASSERT_NE(nullptr, tools.find_image("ARROW_UP")->image);
    EXPECT_EQ(5, tools.find_image("ARROW_UP")->image->height);
    EXPECT_EQ(COLOUR(0xFF0000AA), tools.find_colour("INK")->colour);
    std::int16_t index = -7;
    EXPECT_EQ(120, tools.find_constant("WIDTH", &index)->value);
    EXPECT_EQ(0, index);
    EXPECT_EQ(nullptr, tools.find_constant("width", &index));
    EXPECT_EQ(-1, index);
    // What was read is what is written.
    ASSERT_TRUE(save(0));
    EXPECT_TRUE(stored == get(STORED));
    // Read once more over itself, nothing is there twice.
    ASSERT_TRUE(load_file());
    EXPECT_EQ(3, tools.style_sets.get_count());
    ASSERT_TRUE(save(0));
    EXPECT_TRUE(stored == get(STORED));
}

TEST_F(SkinFile, ADamagedFileIsRefusedAndChangesNothing) {
    put_skin("s", 1);
    read_loose_files();
    ASSERT_TRUE(save());
    const std::string stored = get(STORED);
    const std::int32_t cached = WM_PAGE_TOOL_MANAGER::styleset_image_cache.entries.get_count();
    const auto is_unchanged = [&] {
        return tools.style_sets.get_count() == 3 && tools.colours.get_count() == 1 &&
               tools.find_style_set("BUTTON")->get_box(STYLE_BOX_UP) &&
               WM_PAGE_TOOL_MANAGER::styleset_image_cache.entries.get_count() == cached &&
               !WM_PAGE_TOOL_MANAGER::styleset_image_cache.entries.get<CACHE_ENTRY>(0)->stale;
    };
    for (std::size_t size = 0; size < stored.size(); size += size < 400 ? 1 : 211) {
        put(STORED, stored.substr(0, size));
        trace.clear();
        EXPECT_FALSE(load_file()) << size;
        EXPECT_TRUE(is_unchanged()) << size;
        EXPECT_NE(std::string::npos, trace.find("skins/s/skin.bin")) << size;
    }
    // Counts and sizes that the file doesn't bear out: of cache entries, of a picture, of a table.
    const std::size_t picture = stored.find(std::string{3, 0, 2, 0, 3, 0, 2, 0, 1}) + 9;
    const std::size_t sets = stored.size() - 2 - 4 - 5 - 4;  // the last table's
    for (const std::size_t at : {std::size_t{5}, picture, picture + 2, sets}) {
        std::string damaged = stored;
        damaged[at + 1] = '\x7F';
        put(STORED, damaged);
        EXPECT_FALSE(load_file()) << at;
        EXPECT_TRUE(is_unchanged()) << at;
    }
    put(STORED, stored);
    EXPECT_TRUE(load_file());
}

TEST_F(SkinFile, AFailedSaveKeepsTheFormerFile) {
    put_skin("s", 1);
    read_loose_files();
    // What a killed run left is in nobody's way.
    std::filesystem::create_symlink(path_of("skins/s/skin.cfg"), path_of("skins/s/skin.bin.tmp"));
    ASSERT_TRUE(save());
    EXPECT_EQ("name", get("skins/s/skin.cfg").substr(0, 4));
    std::filesystem::rename(path_of(STORED), path_of("skins/s/kept"));
    std::filesystem::create_directories(path_of("skins/s/skin.bin/not_empty"));
    trace.clear();
    EXPECT_FALSE(save());
    EXPECT_TRUE(has("skins/s/skin.bin/not_empty"));
    EXPECT_FALSE(has("skins/s/skin.bin.tmp"));
    EXPECT_NE(std::string::npos, trace.find("skins/s/skin.bin"));
}

TEST_F(SkinFile, AKillAtAnyMomentLeavesAWholeFile) {
    put_skin("s", 1);
    read_loose_files();
    ASSERT_TRUE(save());
    for (int round = 0; round < 20; ++round) {
        const pid_t child = ::fork();
        ASSERT_NE(-1, child);
        if (child == 0) {
            for (std::uint16_t version = 1;; ++version) {
                save(static_cast<std::uint16_t>(version | 1));
            }
        }
        ::usleep(static_cast<useconds_t>(500 + round * 137));
        ::kill(child, SIGKILL);
        int status = 0;
        ASSERT_EQ(child, ::waitpid(child, &status, 0));
        ASSERT_TRUE(load_file()) << trace;
    }
}

TEST_F(SkinFile, FoldersOverrideTheirSubfolders) {
    put("skins/s/x/deep/a.cfg", "ONE\n\t#FF000001\nTWO\n\t#FF000002\n");
    put("skins/s/x/b.cfg", "ONE\n\t#FF000003\nTHREE\n\tno colour\nTWO\n\tneither\n");
    // A link back to a folder that is being read has no end.
    std::filesystem::create_directory_symlink(path_of("skins/s/x"), path_of("skins/s/x/deep/loop"));
    ASSERT_TRUE(tools.load_colours(cursor("skins/s/x")));
    ASSERT_EQ(3, tools.colours.get_count());
    EXPECT_EQ(COLOUR(0xFF000003), tools.find_colour("ONE")->colour);
    EXPECT_EQ(COLOUR(0xFF000002), tools.find_colour("TWO")->colour);
    EXPECT_EQ(COLOUR_BLACK, tools.find_colour("THREE")->colour);
    EXPECT_NE(std::string::npos, trace.find("skins/s/x/b.cfg"));

    put("skins/s/n/a.cfg", "A\n\t5\nB\n\t-32768\nC\n\t100000\nD\n\tx\nE\n\t12px\n");
    put("skins/s/n/b.cfg", "A\n\t99999\n");
    trace.clear();
    ASSERT_TRUE(tools.load_constants(cursor("skins/s/n")));
    EXPECT_EQ(5, tools.find_constant("A")->value);
    EXPECT_EQ(-32768, tools.find_constant("B")->value);
    EXPECT_EQ(0, tools.find_constant("C")->value);
    EXPECT_EQ(0, tools.find_constant("D")->value);
    EXPECT_EQ(12, tools.find_constant("E")->value);
    EXPECT_EQ(3, std::count(trace.begin(), trace.end(), '\n'));
    EXPECT_NE(std::string::npos, trace.find("skins/s/n/b.cfg"));
}

TEST_F(SkinFile, ALaterImageClosesTheEarlierOne) {
    IMAGE_CACHE& cache = WM_PAGE_TOOL_MANAGER::non_styleset_image_cache;
    put_png("skins/s/one/p.png", 2, 2, COLOUR_RED);
    put("skins/s/one/i.cfg", "PIC\n\tp\n");
    put_png("skins/s/two/p.png", 3, 3, COLOUR_RED);
    put("skins/s/two/i.cfg", "PIC\n\tp\nGONE\n\tmissing\n");
    put("skins/s/two/p.jpg", "not a picture");
    ASSERT_TRUE(tools.load_images(cursor("skins/s/one")));
    ASSERT_TRUE(tools.load_images(cursor("skins/s/two")));
    EXPECT_EQ(2, tools.images.get_count());
    EXPECT_EQ(3, tools.find_image("PIC")->image->width);
    EXPECT_EQ(nullptr, tools.find_image("GONE")->image);
    EXPECT_NE(std::string::npos, trace.find("missing"));
    for (std::int32_t i = 0; i < cache.entries.get_count(); ++i) {
        EXPECT_STREQ("$APPDATA/skins/s/two", cache.entries.get<CACHE_ENTRY>(i)->path);
    }
}

TEST_F(SkinFile, StyleSetsAreRewrittenInNormalForm) {
    put_style_set("skins/s/default.ss", "DEFAULT", "", "x_spacing\n\t4\n");
    put_style_set("skins/s/sub/a.ss", "A", "", "x_spacing\n\t4\ny_spacing\n\t8\nfancy\n\t1\n");
    put("skins/s/broken.ss", "image_filename\n\tx\n");
    const auto read = [this](unsigned char rewrite) {
        EXPECT_TRUE(tools.load_style_sets(cursor(FOLDER), rewrite, 1));
        EXPECT_TRUE(tools.load_style_sets(cursor(FOLDER), rewrite, 0));
    };
    read(1);
    EXPECT_EQ("name\n\tA\nimage_filename\n\t\nimage_path\n\t$HERE\ny_spacing\n\t8\n",
              get("skins/s/sub/a.ss"));
    EXPECT_NE(std::string::npos, get("skins/s/default.ss").find("pb_vertical\n\t0\n"));
    EXPECT_EQ("image_filename\n\tx\n", get("skins/s/broken.ss"));
    EXPECT_NE(std::string::npos, trace.find("skins/s/broken.ss: the style set is refused"));
    const WM_STYLE_SET before = *tools.find_style_set("A");
    restart();
    read(0);
    EXPECT_TRUE(before == *tools.find_style_set("A"));
    ASSERT_NE(nullptr, tools.default_style_set);
    EXPECT_EQ(4, tools.default_style_set->x_spacing);
    // Without a default, only a default set is read.
    EXPECT_FALSE(tools.load_style_sets(cursor("skins/s/sub"), 0, 1));
}

TEST_F(SkinFile, AFontKeepsItsIndexWhenItIsReplaced) {
    if (!put_font("skins/s/one/Round.otf") || !put_font("skins/s/one/Square.otf") ||
        !put_font("skins/s/two/Round.otf")) {
        GTEST_SKIP() << "this machine has no font";
    }
    put("skins/s/two/Broken.otf", "no font");
    ASSERT_TRUE(put_font("skins/s/two/Angular.otf"));  // comes first, but must not take its index
    ASSERT_TRUE(tools.load_fonts(cursor("skins/s/one"), 1));
    const signed char square = tools.find_font("Square")->font_index;
    const signed char round = tools.find_font("Round")->font_index;
    ASSERT_NE(-1, square);
    ASSERT_NE(-1, round);
    ASSERT_TRUE(tools.load_fonts(cursor("skins/s/two"), 0));
    EXPECT_EQ(4, tools.fonts.get_count());
    EXPECT_EQ(round, tools.find_font("Round")->font_index);
    EXPECT_STREQ("$APPDATA/skins/s/two", tools.find_font("Round")->path);
    EXPECT_EQ(square, tools.find_font("Square")->font_index);
    EXPECT_EQ(-1, tools.find_font("Broken")->font_index);
    EXPECT_NE(std::string::npos, trace.find("Broken.otf"));
    EXPECT_EQ(square, WM_PAGE_TOOL_MANAGER::style_set_read_find_font("Square", nullptr));
    EXPECT_STREQ("Square", WM_PAGE_TOOL_MANAGER::style_set_write_find_font(square, nullptr));
    EXPECT_EQ(-1, WM_PAGE_TOOL_MANAGER::style_set_read_find_font("None", nullptr));
    EXPECT_EQ(nullptr, WM_PAGE_TOOL_MANAGER::style_set_write_find_font(-1, nullptr));

    ASSERT_TRUE(save());
    FONT_MANAGER::get_instance().free_font(-1);
    ASSERT_TRUE(load_file());
    EXPECT_EQ(square, tools.find_font("Square")->font_index);
    EXPECT_TRUE(FONT_MANAGER::get_instance().is_font_valid(square));
}

}  // namespace
