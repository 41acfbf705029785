#include "kvcore/user_folders.h"

#include <pwd.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <string_view>
#include <vector>

namespace KVCORE {
namespace {

// More of "user-dirs.dirs" isn't read.
constexpr std::size_t USER_DIRS_LIMIT = 65536;

// A folder from the environment; one that isn't absolute counts as unset, as the rules demand.
std::string get_folder_from_environment(const char* variable) {
    const char* value = std::getenv(variable);
    return value && value[0] == '/' ? value : "";
}

std::string get_home_folder() {
    std::string home = get_folder_from_environment("HOME");
    if (!home.empty()) {
        return home;
    }
    passwd entry;
    passwd* found = nullptr;
    std::vector<char> buffer(16384);
    if (::getpwuid_r(::geteuid(), &entry, buffer.data(), buffer.size(), &found) == 0 && found &&
        found->pw_dir && found->pw_dir[0] == '/') {
        home = found->pw_dir;
    }
    return home;
}

std::string get_below_home(const char* path) {
    std::string folder = get_home_folder();
    return folder.empty() ? folder : folder.append("/").append(path);
}

std::string get_base_folder(const char* variable, const char* below_home) {
    const std::string folder = get_folder_from_environment(variable);
    return folder.empty() ? get_below_home(below_home) : folder;
}

std::string read_start_of_file(const std::string& path) {
    std::string text;
    std::unique_ptr<std::FILE, int (*)(std::FILE*)> file(std::fopen(path.c_str(), "re"),
                                                         std::fclose);
    if (file) {
        text.resize(USER_DIRS_LIMIT);
        text.resize(std::fread(text.data(), 1, text.size(), file.get()));
    }
    return text;
}

// The value of a line NAME="VALUE", where VALUE is absolute or begins with $HOME/ and a backslash
// takes the next character as it is. Empty if the line is anything else.
std::string parse_user_dir(const std::string& line, const char* name) {
    std::size_t i = line.find_first_not_of(" \t");
    const std::size_t name_length = std::strlen(name);
    if (i == std::string::npos || line.compare(i, name_length, name) != 0) {
        return "";
    }
    i += name_length;
    constexpr std::string_view opening = "=\"";
    if (line.compare(i, opening.size(), opening) != 0) {
        return "";
    }
    i += opening.size();
    std::string value;
    constexpr std::string_view home_word = "$HOME";
    if (line.compare(i, home_word.size(), home_word) == 0) {
        i += home_word.size();
        value = get_home_folder();
        if (value.empty() || i >= line.size() || (line[i] != '/' && line[i] != '"')) {
            return "";
        }
    }
    for (; i < line.size() && line[i] != '"'; ++i) {
        if (line[i] == '\\' && i + 1 < line.size()) {
            ++i;
        }
        value += line[i];
    }
    return i < line.size() && !value.empty() && value[0] == '/' ? value : "";
}

std::string get_user_dir(const char* name, const char* below_home) {
    std::string dirs = get_base_folder("XDG_CONFIG_HOME", ".config");
    const std::string text = read_start_of_file(dirs.append("/user-dirs.dirs"));
    std::string folder;
    for (std::size_t start = 0; start < text.size();) {
        const std::size_t end = std::min(text.find('\n', start), text.size());
        const std::string value = parse_user_dir(text.substr(start, end - start), name);
        if (!value.empty()) {
            folder = value;  // the last line counts, as where the file is read by a shell
        }
        start = end + 1;
    }
    return folder.empty() ? get_below_home(below_home) : folder;
}

}  // namespace

std::string find_user_folder(USER_FOLDER folder) {
    switch (folder) {
        case USER_FOLDER::CACHE:
            return get_base_folder("XDG_CACHE_HOME", ".cache");
        case USER_FOLDER::DATA:
            return get_base_folder("XDG_DATA_HOME", ".local/share");
        case USER_FOLDER::DOCUMENTS:
            return get_user_dir("XDG_DOCUMENTS_DIR", "Documents");
        case USER_FOLDER::LOGS:
            return get_base_folder("XDG_STATE_HOME", ".local/state");
        case USER_FOLDER::PICTURES:
            return get_user_dir("XDG_PICTURES_DIR", "Pictures");
        case USER_FOLDER::PREFERENCES:
            return get_base_folder("XDG_CONFIG_HOME", ".config");
        case USER_FOLDER::SHARED_DOCUMENTS:
            return get_user_dir("XDG_PUBLICSHARE_DIR", "Public");
        case USER_FOLDER::TEMPORARY: {
            const std::string temporary = get_folder_from_environment("TMPDIR");
            return temporary.empty() ? "/tmp" : temporary;
        }
    }
    return std::string();
}

bool create_folders(const std::string& path) {
    if (path.empty()) {
        return false;
    }
    for (std::size_t end = path.find('/', 1);; end = path.find('/', end + 1)) {
        const std::string folder = path.substr(0, end);
        if (::mkdir(folder.c_str(), 0700) != 0) {
            // It is there, or is a part of the system that nobody may write to.
            struct stat status;
            if (::stat(folder.c_str(), &status) != 0 || !S_ISDIR(status.st_mode)) {
                return false;
            }
        }
        if (end == std::string::npos) {
            return true;
        }
    }
}

}  // namespace KVCORE
