// The named roots and the stored paths that begin with them.
#include <unistd.h>

#include <cerrno>
#include <climits>
#include <cstdlib>
#include <cstring>
#include <initializer_list>
#include <mutex>
#include <string>

#include "disk_path.h"
#include "platform/application_identity.h"
#include "platform/disk_manager.h"
#include "platform/process_tools.h"
#include "user_folders.h"

bool DISK_MANAGER::use_local_add_ons_path = false;

namespace {

// The maker's folder, in the user's documents and preferences.
constexpr char MAKER_FOLDER[] = "Corvane";
// Levels from the executable's folder, "NAME.app/Contents/Linux", to the folder with the bundle.
constexpr int BUNDLE_DEPTH = 3;

constexpr char VOLUME_WORD[] = "$ROOT";

struct ROOT {
    FOLDER_ID folder;
    const char* word;
};

// In the order in which a stored path is compared with the words.
constexpr ROOT WORDS[] = {{FOLDER_BASE, "$BASE"},
                          {FOLDER_APPDATA, "$APPDATA"},
                          {FOLDER_USERDATA, "$USERDATA"},
                          {FOLDER_TEMP, "$TEMP"},
                          {FOLDER_ADD_ONS, "$ADD_ONS"}};

// In the order in which a folder is compared with the roots: a folder that lies below two of them
// comes out under the nearer one, and one that is two of them under the first.
constexpr ROOT ROOTS[] = {{FOLDER_BASE, "$BASE"},
                          {FOLDER_ADD_ONS, "$ADD_ONS"},
                          {FOLDER_APPDATA, "$APPDATA"},
                          {FOLDER_USERDATA, "$USERDATA"},
                          {FOLDER_TEMP, "$TEMP"}};

// The base folder, worked out at the first use.
struct BASE_FOLDER {
    std::mutex lock;
    std::string path;  // empty until then
};

BASE_FOLDER& base_folder() {
    static BASE_FOLDER base;
    return base;
}

// The base folder as the executable's place gives it; empty if the system doesn't tell.
std::string base_of_executable() {
    char executable[PATH_MAX];
    const ssize_t length = readlink("/proc/self/exe", executable, sizeof executable);
    if (length <= 0 || length == static_cast<ssize_t>(sizeof executable)) {
        return "";
    }
    std::string path(executable, static_cast<std::size_t>(length));
    for (int level = 0; level < 1 + BUNDLE_DEPTH && path.size() > 1; ++level) {
        const std::size_t slash = path.rfind('/');
        path.resize(slash == 0 ? 1 : slash);
    }
    return path;
}

}  // namespace

bool DISK_MANAGER::get_base_dir() {
    BASE_FOLDER& base = base_folder();
    const std::lock_guard<std::mutex> guard(base.lock);
    if (base.path.empty()) {
        base.path = base_of_executable();
    }
    if (!base.path.empty() && set_real_path(base.path.c_str())) {
        return true;
    }
    move_to_top();
    return false;
}

bool DISK_MANAGER::set_base_folder(const char* path) {
    std::string chosen;
    if (path) {
        DISK_MANAGER cursor;
        if (!cursor.move_to_whole_path(path)) {
            return false;
        }
        chosen = cursor.path;
    }
    BASE_FOLDER& base = base_folder();
    const std::lock_guard<std::mutex> guard(base.lock);
    base.path = chosen;
    return true;
}

bool DISK_MANAGER::goto_os_path(FOLDER_ID folder) {
    const char* name = identified_application_name();
    const char* unique = identified_unique_data_folder();
    std::string start;
    std::initializer_list<const char*> components;
    const auto below_start = {MAKER_FOLDER, name};
    const auto temp = {MAKER_FOLDER, name, unique, "temp"};
    const auto add_ons = {MAKER_FOLDER, name, unique, "add_ons"};
    switch (folder) {
        case FOLDER_USERDATA:
            start = user_documents_folder();
            components = below_start;
            break;
        case FOLDER_TEMP:
            start = user_preferences_folder();
            components = temp;
            break;
        case FOLDER_ADD_ONS:
            start = user_preferences_folder();
            components = add_ons;
            break;
        default:
            break;
    }
    bool reached = !start.empty() && move_to_whole_path(start.c_str());
    for (const char* component : components) {
        reached = reached && (component[0] == '\0' || move_down(component, true));
    }
    if (!reached) {
        get_base_dir();
    }
    return reached;
}

bool DISK_MANAGER::goto_app_data() {
    do {
        if (move_down("data")) {
            return true;
        }
        // The top itself is not searched, unless the application lies there.
    } while (move_up() && path[1] != '\0');
    return false;
}

bool DISK_MANAGER::goto_add_ons() {
    if (use_local_add_ons_path) {
        if (move_up() && move_down("add_ons")) {
            return true;
        }
        get_base_dir();
    } else if (goto_os_path(FOLDER_ADD_ONS)) {
        return true;
    }
    do {
        if (move_down("add_ons")) {
            return true;
        }
    } while (move_up() && path[1] != '\0');
    get_base_dir();
    return move_up() && move_down("add_ons");
}

bool DISK_MANAGER::goto_path(FOLDER_ID folder) {
    if (folder < FOLDER_BASE || folder > FOLDER_ADD_ONS) {
        display_message("Error", "DISK_MANAGER::goto_path() - unknown path", 0);
        exit_app("Application was unable to continue");
    }
    if (!get_base_dir()) {
        return false;
    }
    bool reached = true;
    switch (folder) {
        case FOLDER_BASE:
            break;
        case FOLDER_APPDATA:
            reached = goto_app_data();
            break;
        case FOLDER_USERDATA:
            reached = goto_os_path(folder) || move_down("user_data", true);
            break;
        case FOLDER_TEMP:
            reached = goto_os_path(folder) || move_down("temp", true);
            break;
        case FOLDER_ADD_ONS:
            reached = goto_add_ons();
            break;
    }
    if (!reached) {
        get_base_dir();
    }
    return reached;
}

bool DISK_MANAGER::set_relative_path(const char* stored, bool create) {
    if (!stored) {
        errno = EINVAL;
        return false;
    }
    const auto begins_with = [stored](const char* word) {
        return std::strncmp(stored, word, std::strlen(word)) == 0;
    };
    const char* rest = nullptr;
    bool reached = false;
    for (const ROOT& root : WORDS) {
        if (begins_with(root.word)) {
            reached = goto_path(root.folder);
            rest = stored + std::strlen(root.word);
            break;
        }
    }
    if (!rest && begins_with(VOLUME_WORD)) {
        const char* number = stored + std::strlen(VOLUME_WORD);
        std::int16_t index = 0;
        reached = std::sscanf(number, "%hd", &index) == 1 && change_to_drive(index);
        rest = number + std::strcspn(number, "/");
    }
    if (!reached) {  // don't walk on from the wrong place
        get_base_dir();
        return false;
    }
    if (*rest == '/') {
        ++rest;
    }
    bool whole = true;
    while (*rest) {
        const std::size_t length = std::strcspn(rest, "/");
        char name[NAME_SIZE];
        if (length < sizeof name) {
            std::memcpy(name, rest, length);
            name[length] = '\0';
            whole &= move_down(name, create);
        } else {
            errno = ENAMETOOLONG;
            whole = false;
        }
        rest += length;
        if (*rest == '/') {
            ++rest;
        }
    }
    return whole;
}

bool DISK_MANAGER::calc_relative_path(char* out, DISK_MANAGER cursor) {
    constexpr int ROOT_COUNT = sizeof ROOTS / sizeof ROOTS[0];
    FILE_IDENTITY identities[ROOT_COUNT] = {};
    bool known[ROOT_COUNT] = {};
    bool base_reached = false;
    for (int i = 0; i < ROOT_COUNT; ++i) {
        DISK_MANAGER root;
        struct stat info;
        if (ROOTS[i].folder == FOLDER_ADD_ONS && !base_reached) {
            continue;
        }
        known[i] = root.goto_path(ROOTS[i].folder) && stat(root.path, &info) == 0;
        if (known[i]) {
            identities[i] = identity_of(info);
        }
        base_reached = base_reached || (known[i] && ROOTS[i].folder == FOLDER_BASE);
    }

    const std::string whole = cursor.path;
    const auto write = [&](const char* word) {
        // What lies between the root and the folder; the top's own slash isn't part of it.
        const std::size_t root_length = cursor.path[1] == '\0' ? 0 : std::strlen(cursor.path);
        const char* below = whole.size() == 1 ? "" : whole.c_str() + root_length;
        const int length = std::snprintf(out, PATH_SIZE, "%s%s", word, below);
        if (length >= PATH_SIZE) {
            out[0] = '\0';
            errno = ENAMETOOLONG;
        }
        return length < PATH_SIZE;
    };
    do {
        struct stat info;
        if (stat(cursor.path, &info) != 0) {
            continue;
        }
        for (int i = 0; i < ROOT_COUNT; ++i) {
            if (known[i] && identities[i] == identity_of(info)) {
                return write(ROOTS[i].word);
            }
        }
    } while (cursor.move_up());
    char word[16];
    std::snprintf(word, sizeof word, "%s%d", VOLUME_WORD, cursor.get_current_drive());
    return write(word);
}
