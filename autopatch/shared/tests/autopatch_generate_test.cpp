// The catalogue that a fresh installation ships with, made from a build tree.
#include <gtest/gtest.h>

#include <filesystem>
#include <string>

#include "autopatch/add_ons_manager.h"
#include "platform/disk_manager.h"
#include "temporary_installation.h"

namespace {

namespace fs = std::filesystem;

class GenerateCatalogue : public testing::Test {
protected:
    // The program runs somewhere below the tree's root.
    GenerateCatalogue() {
        put("shared/code/europe/main/version.h",
            "// 1\n #define BUILD_NUMBER 7\n#define BUILD_NUMBER 0\n#define BUILD_NUMBERS 8\n"
            "#define BUILD_NUMBER 70000\n#define BUILD_NUMBER 9\n");
        put("client/add_ons/skins/saffrane/skin.cfg", "internal_version\n\t31\n");
        put("client/add_ons/match3d/defaults.cfg", "version\n\t41\n");
        put("client/add_ons/match3d/anims/defaults.cfg", "version\n\t42\n");
        put("client/add_ons/match3d/textures/defaults.cfg", "version\n\t43\n");
        fs::create_directories(tree() / "client" / "build" / "base");
        EXPECT_TRUE(DISK_MANAGER::set_base_folder((tree() / "client" / "build" / "base").c_str()));
        fs::create_directories(tree() / "client" / "build" / "add_ons");
    }

    fs::path tree() const { return installation.root / "oqvl"; }
    void put(const std::string& path, const std::string& content) const {
        TEMPORARY_INSTALLATION::write(tree() / path, content);
    }
    void remove(const std::string& path) const { fs::remove_all(tree() / path); }
    std::string generate(bool generate_3d) {
        testing::internal::CaptureStdout();
        manager.verify_on_save = true;
        manager.generate_data(generate_3d);
        EXPECT_FALSE(manager.verify_on_save);
        return testing::internal::GetCapturedStdout();
    }

    TEMPORARY_INSTALLATION installation;
    ADD_ONS_MANAGER manager;
};

TEST_F(GenerateCatalogue, ListsApplicationAndSkin) {
    remove("client/add_ons/match3d");
    auto old = std::make_unique<ADD_ON>();
    old->set_path("old");
    manager.set_add_on(old.get(), 1);
    EXPECT_EQ(
        "  Got application build number 4464\n"  // 70000 in 16 bits
        "  Got default skin (saffrane) build number 31\n",
        generate(false));

    ADD_ONS_MANAGER stored;
    stored.initialise();
    ASSERT_EQ(2, stored.installed.get_count());
    const ADD_ON& application = *stored.installed.get<ADD_ON>(0);
    EXPECT_EQ(ADD_ON::ADD_ON_APPLICATION, application.type);
    EXPECT_EQ(4464, application.version);
    EXPECT_STREQ("app", application.path);
    EXPECT_STREQ("Application", application.title);
    EXPECT_EQ(0, application.description_count);
    EXPECT_TRUE(application.is_valid(true));
    EXPECT_TRUE(application.get_enabled());
    const ADD_ON& skin = *stored.installed.get<ADD_ON>(1);
    EXPECT_EQ(ADD_ON::ADD_ON_SKIN, skin.type);
    EXPECT_EQ(31, skin.version);
    EXPECT_STREQ("saffrane", skin.path);
    EXPECT_STREQ("saffrane", skin.title);
    EXPECT_TRUE(fs::exists(tree() / "client" / "build" / "add_ons" / "add_ons.bin"));
}

TEST_F(GenerateCatalogue, ListsTheMatchViewWithTheComponentsThatAreThere) {
    EXPECT_EQ(
        "  Got application build number 4464\n"
        "  Got default skin (saffrane) build number 31\n"
        "  Got 3D main add on build number 41\n"
        "  Got 3D add on (anims) build number 42\n"
        "  Got 3D add on (textures) build number 43\n",
        generate(true));
    ADD_ONS_MANAGER stored;
    stored.initialise();
    ASSERT_EQ(3, stored.installed.get_count());
    const ADD_ON& view = *stored.installed.get<ADD_ON>(2);
    EXPECT_STREQ("match3d", view.path);
    EXPECT_STREQ("3D Match View", view.title);
    EXPECT_TRUE(view.is_valid(true));
    ASSERT_EQ(2, view.get_child_count());
    EXPECT_STREQ("textures", view.get_child(1)->path);
    EXPECT_EQ(43, view.get_child(1)->version);
    EXPECT_EQ(&view, view.get_child(1)->parent);

    // The same tree makes the same file.
    const fs::path file = tree() / "client" / "build" / "add_ons" / "add_ons.bin";
    const auto first = TEMPORARY_INSTALLATION::read(file);
    generate(true);
    EXPECT_EQ(first, TEMPORARY_INSTALLATION::read(file));
}

TEST_F(GenerateCatalogue, WhateverIsMissingEndsTheProgram) {
    const auto ends_with = [this](const char* text) {
        EXPECT_EXIT(manager.generate_data(true), testing::ExitedWithCode(1), text);
    };
    put("client/add_ons/match3d/textures/defaults.cfg", "version\n\tnew\n");
    ends_with("Failed to get 3D component \\(textures\\) version number");
    // What came before is on the disk.
    ADD_ONS_MANAGER stored;
    stored.initialise();
    EXPECT_EQ(2, stored.installed.get_count());
    remove("client/add_ons/match3d/defaults.cfg");
    ends_with("Failed to get match 3D version number");
    remove("client/add_ons/match3d");
    ends_with("Failed to get to match 3D folder");
    remove("client/add_ons/skins/saffrane/skin.cfg");
    ends_with("Failed to get default skin version number");
    remove("client/add_ons/skins");
    ends_with("Failed to get to default skin folder");
    remove("shared/code/europe/main/version.h");
    ends_with("Failed to get to open version file");
    remove("shared");
    ends_with("Failed to get to shared/main folder");
}

}  // namespace
