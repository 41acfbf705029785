// What this program supplies to ORLN_APPLICATION: its names, its data folders and its creation.
#include <cstdio>
#include <cstring>
#include <string_view>

#include "launcher/launcher.h"

namespace {

// The rest of an argument that begins with `option`.
void take_value(const char* argument, std::string_view option, std::string& value) {
    const std::string_view text = argument;
    if (text.substr(0, option.size()) == option) {
        value = text.substr(option.size());
    }
}

}  // namespace

bool ORLN_APPLICATION::only_allow_one_instance() {
    return true;
}

bool ORLN_APPLICATION::should_close() {
    return true;
}

const char* ORLN_APPLICATION::get_instance_title() {
    return "Tessarine Launcher";
}

const char* ORLN_APPLICATION::get_application_name() {
    return LAUNCHER::instance ? LAUNCHER::instance->get_folder_name() : nullptr;
}

const char* ORLN_APPLICATION::get_unique_data_folder() {
    const char* cluster = LAUNCHER::instance ? LAUNCHER::instance->get_cluster_id() : "";
    return cluster[0] != '\0' ? cluster : nullptr;
}

const char* ORLN_APPLICATION::get_unique_identifier() {
    static char identifier[300];
    const char* cluster = get_unique_data_folder();
    std::snprintf(identifier, sizeof identifier, "Corvane.QVL%s", cluster ? cluster : "");
    return identifier;
}

void ORLN_APPLICATION::create(short argc, char** argv) {
    bool generate = false;
    bool generate_3d = false;
    LAUNCHER_TEST_OPTIONS test_options;
    for (short i = 1; i < argc; ++i) {
        generate = generate || std::strstr(argv[i], "--gendata") != nullptr;
        generate_3d = generate_3d || std::strstr(argv[i], "--generate-3d") != nullptr;
        take_value(argv[i], "--screenshot=", test_options.picture_folder);
        take_value(argv[i], "--lateness=", test_options.lateness_file);
    }
    // The instance belongs to ORLN_APPLICATION, whose shutdown deletes it.
    new LAUNCHER(generate, generate_3d, test_options);
}
