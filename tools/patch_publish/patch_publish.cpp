// patch_publish: packs a folder as a version of an add-on and publishes it.
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <map>
#include <string>

#include "add_on_packer.h"
#include "autopatch/add_on.h"

namespace {

constexpr const char* HELP =
    "usage: patch_publish --publish DIR --version N [--source FOLDER] [OPTIONS]\n"
    "\n"
    "Packs FOLDER into the published layout that patch_server serves. The new version takes the\n"
    "place of the old one in one step; a running server picks it up by itself.\n"
    "\n"
    "  --publish DIR            the published folder\n"
    "  --version N              build number, 1 to 65535\n"
    "  --source FOLDER          what to pack; without it the add-on is a composite of others\n"
    "  --type app|misc|skin     what it is (app: the game client)\n"
    "  --path NAME              the add-on's folder name (app for the client)\n"
    "  --parent NAME            the composite add-on that this one belongs to\n"
    "  --platform NAME          of the client: x11i86 (default), win32, mac\n"
    "  --minimum-version N      the oldest build that is still accepted (default: --version)\n"
    "  --title TEXT             title for display\n"
    "  --description TEXT       one line of description\n"
    "  --description-file FILE  a text of several lines\n"
    "  --picture FILE           a PNG picture\n"
    "  --mandatory              every installation must have it (the client always is)\n"
    "  --help                   show this text\n";

bool parse_version(const char* text, std::uint16_t& version) {
    char* end = nullptr;
    const unsigned long value = std::strtoul(text, &end, 10);
    version = static_cast<std::uint16_t>(value);
    return *text != '\0' && *text != '-' && *end == '\0' && value >= 1 && value <= 65535;
}

int refuse(const std::string& reason) {
    std::fprintf(stderr, "patch_publish: %s\n", reason.c_str());
    return 1;
}

int refuse_arguments(const std::string& reason) {
    refuse(reason + " (see --help)");
    return 2;
}

// The folders of the published folder that hold no add-on of that name.
bool is_reserved(const std::string& name) {
    return name == "data" || name == "skins";
}

}  // namespace

int main(int argc, char** argv) {
    PUBLISH_SETTINGS settings;
    std::string version, minimum_version;
    const std::map<std::string, std::string*> options = {
        {"--publish", &settings.publish},
        {"--version", &version},
        {"--source", &settings.source},
        {"--type", &settings.type},
        {"--path", &settings.path},
        {"--parent", &settings.parent},
        {"--platform", &settings.platform},
        {"--minimum-version", &minimum_version},
        {"--title", &settings.title},
        {"--description", &settings.description},
        {"--description-file", &settings.description_file},
        {"--picture", &settings.picture},
    };
    for (int i = 1; i < argc; ++i) {
        if (std::strcmp(argv[i], "--help") == 0) {
            std::fputs(HELP, stdout);
            return 0;
        }
        if (std::strcmp(argv[i], "--mandatory") == 0) {
            settings.mandatory = true;
            continue;
        }
        const auto option = options.find(argv[i]);
        if (option == options.end()) {
            return refuse_arguments(std::string("unknown argument ") + argv[i]);
        }
        if (++i == argc) {
            return refuse_arguments(option->first + " needs a value");
        }
        *option->second = argv[i];
    }
    if (settings.publish.empty() || !parse_version(version.c_str(), settings.version)) {
        return refuse_arguments("--publish DIR and --version N (1 to 65535) are needed");
    }
    settings.minimum_version = settings.version;
    if (!minimum_version.empty() &&
        !parse_version(minimum_version.c_str(), settings.minimum_version)) {
        return refuse_arguments("--minimum-version is a number from 1 to 65535");
    }
    if (settings.type != "app" && settings.type != "misc" && settings.type != "skin") {
        return refuse_arguments("--type is one of app, misc, skin");
    }
    if (settings.type == "app") {
        settings.path = "app";
    }
    if (!is_plain_folder_name(settings.path.c_str()) || settings.path[0] == '.' ||
        settings.path.size() > 32) {
        return refuse_arguments("--path is a plain folder name of at most 32 characters");
    }
    if (is_reserved(settings.path) || is_reserved(settings.parent)) {
        return refuse_arguments("no add-on can be called data or skins");
    }
    if (!settings.parent.empty() && !is_plain_folder_name(settings.parent.c_str())) {
        return refuse_arguments("--parent is a plain folder name");
    }
    if (settings.type == "app" && settings.source.empty()) {
        return refuse_arguments("the client needs --source");
    }
    if (settings.platform != "x11i86" && settings.platform != "win32" &&
        settings.platform != "mac") {
        return refuse_arguments("--platform is one of x11i86, win32, mac");
    }
    std::string reason;
    if (!publish_add_on(settings, reason)) {
        return refuse(reason);
    }
    std::printf("Published %s version %u in %s\n", settings.path.c_str(),
                static_cast<unsigned>(settings.version), settings.publish.c_str());
    return 0;
}
