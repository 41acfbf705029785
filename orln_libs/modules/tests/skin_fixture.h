// A folder "$APPDATA/skins" of a test's own, with what is needed to make small skins of real files.
#ifndef MODULES_TESTS_SKIN_FIXTURE_H
#define MODULES_TESTS_SKIN_FIXTURE_H

#include <gtest/gtest.h>

#include <cstdint>
#include <filesystem>
#include <string>

#include "modules/frameworks/trace_output.h"
#include "modules/gui/gui_skin.h"
#include "modules/winman/page_tool_manager.h"
#include "platform/colour.h"
#include "platform/config_file.h"
#include "platform/disk_manager.h"

class SkinTest : public testing::Test, private TRACE_SINK {
protected:
    SkinTest();
    ~SkinTest() override;

    // Paths are below the temporary folder: "skins/..." is "data/skins/...".
    std::filesystem::path path_of(const std::string& path) const;
    void put(const std::string& path, const std::string& content) const;
    std::string get(const std::string& path) const;
    bool has(const std::string& path) const { return std::filesystem::exists(path_of(path)); }
    DISK_MANAGER cursor(const std::string& path) const;

    // A picture of one colour.
    void put_png(const std::string& path, std::int32_t width, std::int32_t height,
                 COLOUR colour) const;
    // A real font under that name. False if this machine has none.
    bool put_font(const std::string& path) const;

    // A whole skin: default.ss (font_x_sz 9), the sets "BUTTON" (images "button", "button_up") and
    // "HINT", the constant "WIDTH", the colour "INK", the images "ARROW_UP" and "LOGO".
    void put_skin(const std::string& name, int internal_version) const;
    void put_style_set(const std::string& path, const std::string& name,
                       const std::string& image_filename, const std::string& more = "") const;

    // Another run of the program: nothing is in memory.
    void restart();
    bool load(const std::string& skin, bool generate = false);

private:
    std::filesystem::path root;  // first: the other members look for folders below

protected:
    WM_PAGE_TOOL_MANAGER& tools = WM_PAGE_TOOL_MANAGER::get_instance();
    std::string trace;  // every line that was traced
    CONFIG_FILE versions;
    GUI_SKIN skin;
    int callbacks = 0;

private:
    void output(TRACE_LEVEL level, const char* format, std::va_list arguments) override;
};

#endif  // MODULES_TESTS_SKIN_FIXTURE_H
