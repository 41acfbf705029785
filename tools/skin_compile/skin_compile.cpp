// skin_compile: compiles the skins of an installation where they stand, so that it brings their
// "skin.bin" along and needn't be able to write it.
#include <cstdio>
#include <cstring>

#include "modules/gui/gui_skin.h"
#include "platform/config_file.h"
#include "platform/disk_manager.h"

namespace {

constexpr const char* USAGE =
    "usage: skin_compile BASE NAME...\n"
    "Writes \"skin.bin\" into the folders data/skins/NAME of the installation BASE.\n";

// What the loading of a skin notes for the application; no part of an installation.
constexpr const char* VERSIONS_FILE = "skin_versions.cfg";

bool compile(const char* name) {
    CONFIG_FILE versions(VERSIONS_FILE, true, FOLDER_APPDATA, false);
    GUI_SKIN skin;
    const bool compiled = skin.load(name, versions, 1, nullptr, nullptr, 1);
    if (!compiled) {
        std::fprintf(stderr, "skin_compile: %s: the skin can't be compiled\n", name);
    }
    return compiled;
}

}  // namespace

int main(int argc, char** argv) {
    if (argc == 2 && std::strcmp(argv[1], "--help") == 0) {
        std::fputs(USAGE, stdout);
        return 0;
    }
    if (argc < 3) {
        std::fputs(USAGE, stderr);
        return 2;
    }
    DISK_MANAGER data;
    if (!DISK_MANAGER::set_base_folder(argv[1]) || !data.goto_path(FOLDER_APPDATA)) {
        std::fprintf(stderr, "skin_compile: there is no installation in %s\n", argv[1]);
        return 1;
    }
    bool compiled = true;
    for (int i = 2; i < argc && compiled; ++i) {
        compiled = compile(argv[i]);
    }
    data.remove(VERSIONS_FILE, true);
    return compiled ? 0 : 1;
}
