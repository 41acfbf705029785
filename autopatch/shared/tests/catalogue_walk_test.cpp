// A folder tree of published add-ons becomes a catalogue, with checksums and sizes of the archives.
#include <gtest/gtest.h>
#include <png.h>
#include <zlib.h>

#include <algorithm>
#include <cstdarg>
#include <cstdio>

#include "autopatch/add_ons_manager.h"
#include "modules/frameworks/trace_output.h"
#include "temporary_installation.h"

namespace {

// Keeps the lines that are traced.
class RECORDING_SINK : public TRACE_SINK {
public:
    RECORDING_SINK() { former = TRACE_OUTPUT::set_sink(this); }
    ~RECORDING_SINK() override { TRACE_OUTPUT::set_sink(former); }
    void output(TRACE_LEVEL level, const char* format, std::va_list arguments) override {
        char line[1024];
        std::vsnprintf(line, sizeof line, format, arguments);
        lines.push_back((level == TRACE_LEVEL::FATAL ? "FATAL " : "") + std::string(line));
    }
    std::int64_t count(const std::string& line) const {
        return std::count(lines.begin(), lines.end(), line);
    }
    std::vector<std::string> lines;

private:
    TRACE_SINK* former;
};

std::uint32_t checksum(const std::string& content) {
    return static_cast<std::uint32_t>(crc32(0, reinterpret_cast<const Bytef*>(content.data()),
                                            static_cast<uInt>(content.size())));
}

class CatalogueWalk : public testing::Test {
protected:
    void write(const std::string& name, const std::string& content) {
        installation.write(installation.add_ons(name), content);
    }
    void write_tree() {
        write("app/defaults.cfg", "version\n\t12\nminimum_version\n\t10\n");
        write("app/app_win32.tar.gz", "windows");
        write("app/app_mac.tar.gz", "the mac archive");
        write("app/app_x11i86.tar.gz", "x11");
        write("skins/saffrane/skin.cfg",
              "name\n\tSaffrane\ndescription\n\tThe default\ninternal_version\n\t4\n");
        write("skins/saffrane/saffrane.tar.gz", "skin");
        write("skins/app/skin.cfg", "name\n\tnot walked\n");
        write("skins/no_file/readme", "");
        write("match3d/defaults.cfg",
              "version\n\t3\ntitle\n\t3D Match View\ndescription_file\n\tabout.txt\n");
        write("match3d/about.txt",
              "first\r\n\r\n" + std::string(767, 'l') + "\r\n" + std::string(800, 'm') + "\r\n");
        write("match3d/textures/defaults.cfg", "version\n\t5\ndescription\n\tone line\n");
        write("match3d/textures/textures.tar.gz", std::string(300000, 't'));
        write("match3d/textures/.hidden.tar.gz", std::string(400000, 't'));
        write("no_settings/sub/defaults.cfg", "version\n\t1\n");
        write("no_version/defaults.cfg", "title\n\tx\n");
        write("name_that_is_longer_than_thirty_two/defaults.cfg", "version\n\t1\n");
    }
    std::string paths(const PTRARRAY& list) const {
        std::string text;
        for (std::int32_t i = 0; i < list.get_count(); ++i) {
            text += (i ? " " : "") + std::string(list.get<ADD_ON>(i)->path);
        }
        return text;
    }

    TEMPORARY_INSTALLATION installation;
    ADD_ONS_MANAGER manager;
    RECORDING_SINK sink;
};

TEST_F(CatalogueWalk, FindsEachAddOnWithItsFacts) {
    write_tree();
    manager.get_list();
    EXPECT_EQ("app saffrane match3d textures name_that_is_longer_than_thirty_",
              paths(manager.installed));
    EXPECT_EQ(4, manager.top_level_count);
    EXPECT_EQ("app", paths(manager.mandatory));
    EXPECT_EQ(1, sink.count("textures version 5 added to download list"));

    ADD_ON& app = *manager.get_add_on("app", 0);
    EXPECT_EQ(ADD_ON::ADD_ON_APPLICATION, app.type);
    EXPECT_EQ(12, app.version);
    EXPECT_EQ(10, app.minimum_version);
    EXPECT_STREQ("Build 12", app.get_description_line(0));
    EXPECT_EQ(15u, app.file_size);
    EXPECT_EQ(checksum("windows"), manager.get_crc(&app, CRC_INFO::PLATFORM_WINDOWS));
    EXPECT_EQ(checksum("the mac archive"), manager.get_crc(&app, CRC_INFO::PLATFORM_MAC));
    EXPECT_EQ(checksum("x11"), manager.get_crc(&app, CRC_INFO::PLATFORM_X11_I86));
    EXPECT_EQ(0u, manager.get_crc(&app, 2));

    ADD_ON& skin = *manager.get_add_on("Saffrane", 1);
    EXPECT_EQ(ADD_ON::ADD_ON_SKIN, skin.type);
    EXPECT_EQ(4, skin.version);
    EXPECT_EQ(4, skin.minimum_version);
    EXPECT_TRUE(skin.enabled);
    EXPECT_STREQ("The default", skin.get_description_line(0));
    EXPECT_EQ(checksum("skin"), manager.get_crc(&skin, CRC_INFO::PLATFORM_MAC));

    ADD_ON& match = *manager.get_add_on("match3d", 0);
    EXPECT_STREQ("3D Match View", match.title);
    ASSERT_EQ(5, match.description_count);
    EXPECT_STREQ("first", match.get_description_line(0));
    EXPECT_STREQ("", match.get_description_line(1));
    EXPECT_EQ(std::string(767, 'l'), match.get_description_line(2));
    EXPECT_EQ(0u, manager.get_crc(&match, 0));
    ADD_ON& textures = *manager.get_add_on("textures", 0);
    EXPECT_EQ(&match, textures.parent);
    EXPECT_STREQ("textures", textures.title);
    EXPECT_STREQ("one line", textures.get_description_line(0));
    EXPECT_EQ(400000u, textures.file_size);
    EXPECT_EQ(checksum(std::string(300000, 't')), manager.get_crc(&textures, 1));

    manager.get_list();  // a second walk replaces the first
    EXPECT_EQ(4, manager.top_level_count);
    EXPECT_EQ(7, manager.crc_infos.get_count());
    ADD_ON other;
    EXPECT_EQ(0u, manager.get_crc(&other, 0));
}

TEST_F(CatalogueWalk, BringsTheTextsOfFilesIntoTheSystemsOwn) {
    write("utf8/defaults.cfg",
          "version\n\t1\ntitle\n\tCaf\xC3\xA9 \xE2\x82\xAC\ndescription_file\n\tabout.txt\n");
    // The 767th character has its bytes on both sides of a line's limit.
    write("utf8/about.txt", std::string(766, 'a') + "\xC3\xA9\xC3\x9F\n");
    write("latin/defaults.cfg", "version\n\t1\ndescription\n\tgro\xDF\n");
    manager.get_list();
    ADD_ON& utf8 = *manager.get_add_on("utf8", 0);
    EXPECT_STREQ("Caf\xE9 ?", utf8.title);
    ASSERT_EQ(2, utf8.description_count);
    EXPECT_EQ(std::string(766, 'a') + "\xE9", utf8.get_description_line(0));
    EXPECT_STREQ("\xDF", utf8.get_description_line(1));
    EXPECT_STREQ("gro\xDF", manager.get_add_on("latin", 0)->get_description_line(0));
}

TEST_F(CatalogueWalk, TakesThePictureOfTheFolder) {
    write("a/defaults.cfg", "version\n\t1\n");
    write("b/defaults.cfg", "version\n\t1\n");
    write("b/add_on.png", "not a picture");
    png_image picture{};
    picture.version = PNG_IMAGE_VERSION;
    picture.width = picture.height = 2;
    picture.format = PNG_FORMAT_BGRA;
    const std::uint32_t pixels[4] = {0xFFFF0000u, 0xFF00FF00u, 0xFF0000FFu, 0xFFFFFFFFu};
    ASSERT_NE(0, png_image_write_to_file(&picture, installation.add_ons("a/add_on.png").c_str(), 0,
                                         pixels, 0, nullptr));
    manager.get_list();
    const IMAGE& image = *manager.get_add_on("a", 0)->image;
    ASSERT_EQ(2, image.width);
    EXPECT_EQ(COLOUR_GREEN, image.row(0)[1]);
    EXPECT_EQ(COLOUR_BLUE, image.row(1)[0]);
    EXPECT_EQ(0, manager.get_add_on("b", 0)->image->width);
    EXPECT_EQ(1, sink.count("The picture of add-on b can't be loaded."));
}

TEST_F(CatalogueWalk, RemovingAFoundRecordTakesAllThatRefersToIt) {
    write_tree();
    manager.get_list();
    manager.remove_add_on(manager.get_add_on("match3d", 0), 0, 1);
    EXPECT_EQ("app saffrane name_that_is_longer_than_thirty_", paths(manager.installed));
    EXPECT_EQ(5, manager.crc_infos.get_count());
    manager.remove_add_on(manager.get_add_on("app", 0), 0, 1);
    EXPECT_EQ("", paths(manager.mandatory));
}

TEST_F(CatalogueWalk, MandatoryFileNamesAddOnsByPath) {
    write_tree();
    installation.write(
        installation.root / "base/data/mandatory_add_ons.txt",
        std::string("match3d\n\nunknown\n" + std::string(300, 'x') + "\nsaffrane\ntextures"));
    manager.get_list();
    EXPECT_EQ("app match3d textures saffrane", paths(manager.mandatory));
    EXPECT_EQ(1, sink.count("Add on Saffrane added to mandatory list"));
    EXPECT_EQ(1, sink.count("WARNING: Add on textures appears twice in the mandatory file."));
    manager.clear_available();
    EXPECT_EQ("", paths(manager.mandatory));
}

TEST_F(CatalogueWalk, AMissingApplicationIsFatalAndLinksInCirclesEnd) {
    write("ring/defaults.cfg", "version\n\t1\n");
    std::filesystem::create_directory_symlink(installation.add_ons("ring"),
                                              installation.add_ons("ring/ring"));
    manager.get_list();
    EXPECT_EQ(1, sink.count("FATAL Did not find application add-on!!!"));
    EXPECT_EQ(ADD_ON::MAX_DEPTH + 1, manager.installed.get_count());
}

TEST_F(CatalogueWalk, ChecksumOfAFile) {
    std::string content(700001, '\0');
    for (std::size_t i = 0; i < content.size(); ++i) {
        content[i] = static_cast<char>(i * i / 7);
    }
    write("file", content);
    write("empty", "");
    DISK_MANAGER disk(FOLDER_ADD_ONS);
    EXPECT_EQ(checksum(content), get_crc_from_file(disk, "file"));
    EXPECT_EQ(0u, get_crc_from_file(disk, "empty"));
    EXPECT_EQ(0u, get_crc_from_file(disk, "missing"));
    EXPECT_EQ(0u, manager.get_archive_size(disk));
}

}  // namespace
