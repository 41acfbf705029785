#include "gallery_options.h"

#include <filesystem>
#include <string_view>

#include "gallery_pages.h"

const char* const GALLERY_HELP =
    "usage: gallery [OPTION...]\n"
    "\n"
    "Shows the controls of the toolkit in a window.\n"
    "\n"
    "  --page=NAME          the page to begin with\n"
    "  --list-pages         names of the pages\n"
    "  --skin=NAME          the skin to begin with, a folder of \"skins\" (saffrane)\n"
    "  --data=FOLDER        the application data, which holds \"skins\"\n"
    "  --screenshot=FOLDER  stores pictures of all pages, or of that of --page, and of their\n"
    "                       states there, without a display; then ends\n"
    "  --check-focus        walks the focus through the pages, without a display, and tells where\n"
    "                       it can't be seen; then ends\n"
    "  --help               this text\n"
    "\n"
    "Keys: Tab and Shift-Tab move the focus, Return and Space press, Control with Page Up and\n"
    "Page Down change the page. What a control reports is also written to standard output.\n";

namespace {

bool take_value(std::string_view argument, std::string_view option, std::string& value) {
    if (argument.substr(0, option.size()) != option) {
        return false;
    }
    value = argument.substr(option.size());
    return true;
}

}  // namespace

bool parse_gallery_options(int argc, char** argv, GALLERY_OPTIONS& options, std::string& error) {
    options = GALLERY_OPTIONS();
    options.data = GALLERY_DATA;
    for (int i = 1; i < argc; ++i) {
        const std::string_view argument = argv[i];
        if (argument == "--help") {
            options.help = true;
        } else if (argument == "--check-focus") {
            options.check_focus = true;
        } else if (argument == "--list-pages") {
            options.list_pages = true;
        } else if (!take_value(argument, "--page=", options.page) &&
                   !take_value(argument, "--skin=", options.skin) &&
                   !take_value(argument, "--data=", options.data) &&
                   !take_value(argument, "--screenshot=", options.pictures)) {
            error = "unknown argument " + std::string(argument) + ", see --help";
            return false;
        }
    }
    if (!options.page.empty() && find_gallery_page(options.page) < 0) {
        error = "there is no page " + options.page + ", see --list-pages";
        return false;
    }
    std::error_code ignored;
    const std::filesystem::path skin =
        std::filesystem::path(options.data) / "skins" / options.skin / "skin.cfg";
    if (options.skin.empty() || options.skin.find('/') != std::string::npos ||
        !std::filesystem::is_regular_file(skin, ignored)) {
        error = "there is no skin " + options.skin + " in " + options.data;
        return false;
    }
    return true;
}
