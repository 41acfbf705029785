#include "user_folders.h"

#include <pwd.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <vector>

namespace {

// More of "user-dirs.dirs" isn't read.
constexpr std::size_t USER_DIRS_LIMIT = 65536;

// A folder from the environment; one that isn't absolute counts as unset, as the rules demand.
std::string folder_from_environment(const char* variable) {
    const char* value = std::getenv(variable);
    return value && value[0] == '/' ? value : "";
}

std::string home_folder() {
    std::string home = folder_from_environment("HOME");
    if (!home.empty()) {
        return home;
    }
    passwd entry;
    passwd* found = nullptr;
    std::vector<char> buffer(16384);
    if (getpwuid_r(geteuid(), &entry, buffer.data(), buffer.size(), &found) == 0 && found &&
        found->pw_dir && found->pw_dir[0] == '/') {
        home = found->pw_dir;
    }
    return home;
}

std::string below_home(const char* path) {
    const std::string home = home_folder();
    return home.empty() ? home : home + "/" + path;
}

// Makes all components; readable by the user only, as the rules demand.
bool create_folders(const std::string& path) {
    for (std::size_t end = path.find('/', 1);; end = path.find('/', end + 1)) {
        if (mkdir(path.substr(0, end).c_str(), 0700) != 0 && errno != EEXIST) {
            struct stat info;  // a component of a system folder: EACCES, EROFS, ...
            if (stat(path.substr(0, end).c_str(), &info) != 0 || !S_ISDIR(info.st_mode)) {
                return false;
            }
        }
        if (end == std::string::npos) {
            return true;
        }
    }
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
    const std::string opening = "=\"";
    if (line.compare(i, opening.size(), opening) != 0) {
        return "";
    }
    i += opening.size();
    std::string value;
    const std::string home_word = "$HOME";
    if (line.compare(i, home_word.size(), home_word) == 0) {
        i += home_word.size();
        value = home_folder();
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

}  // namespace

std::string user_preferences_folder() {
    std::string folder = folder_from_environment("XDG_DATA_HOME");
    if (folder.empty()) {
        folder = below_home(".local/share");
    }
    return !folder.empty() && create_folders(folder) ? folder : "";
}

std::string user_documents_folder() {
    std::string config = folder_from_environment("XDG_CONFIG_HOME");
    if (config.empty()) {
        config = below_home(".config");
    }
    std::string documents;
    const std::string text = read_start_of_file(config + "/user-dirs.dirs");
    for (std::size_t start = 0; start < text.size();) {
        const std::size_t end = std::min(text.find('\n', start), text.size());
        const std::string value =
            parse_user_dir(text.substr(start, end - start), "XDG_DOCUMENTS_DIR");
        if (!value.empty()) {
            documents = value;  // the last line counts, as where the file is read by a shell
        }
        start = end + 1;
    }
    return documents.empty() ? below_home("Documents") : documents;
}

std::string find_program(const char* name) {
    const char* search_path = std::getenv("PATH");
    const std::string folders = search_path ? search_path : "/usr/local/bin:/usr/bin:/bin";
    for (std::size_t start = 0; start <= folders.size();) {
        const std::size_t end = std::min(folders.find(':', start), folders.size());
        const std::string file = folders.substr(start, end - start) + "/" + name;
        struct stat info;
        // Only absolute entries: what stands in the current folder is nobody's program.
        if (file[0] == '/' && end > start && stat(file.c_str(), &info) == 0 &&
            S_ISREG(info.st_mode) && access(file.c_str(), X_OK) == 0) {
            return file;
        }
        start = end + 1;
    }
    return "";
}
