#include "trash.h"

#include <fcntl.h>
#include <unistd.h>

#include <cctype>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <ctime>

#include "file_names.h"
#include "file_operations.h"
#include "kvcore/file_stream_helper_posix.h"
#include "kvcore/user_folders.h"

namespace KVCORE {
namespace {

constexpr int NAME_ATTEMPTS = 10000;

// The path as the notes of the trash have it, in the form of a URL.
std::string escape(const std::string& path) {
    std::string text;
    for (const char c : path) {
        if (std::isalnum(static_cast<unsigned char>(c)) || std::strchr("/-_.~", c)) {
            text.push_back(c);
        } else {
            char code[4];
            std::snprintf(code, sizeof code, "%%%02X",
                          static_cast<unsigned>(static_cast<unsigned char>(c)));
            text.append(code);
        }
    }
    return text;
}

std::string make_note(const std::string& path) {
    char date[32] = "";
    const std::time_t now = std::time(nullptr);
    tm local;
    if (::localtime_r(&now, &local)) {
        std::strftime(date, sizeof date, "%Y-%m-%dT%H:%M:%S", &local);
    }
    std::string note("[Trash Info]\nPath=");
    note.append(escape(path)).append("\nDeletionDate=").append(date).append("\n");
    return note;
}

bool is_on_volume(const std::string& folder, dev_t device) {
    struct stat status;
    return ::stat(folder.c_str(), &status) == 0 && status.st_dev == device;
}

// The topmost folder on the volume of an object.
std::string find_volume(const std::string& path, dev_t device) {
    std::string folder = get_folder(path);
    while (folder != "/" && is_on_volume(get_folder(folder), device)) {
        folder = get_folder(folder);
    }
    return folder;
}

// The trash for an object; empty if there can be none.
std::string find_trash(const std::string& path, const struct stat& status) {
    std::string trash = find_user_folder(USER_FOLDER::DATA);
    if (!trash.empty()) {
        trash = join_path(trash, "Trash");
        if (create_folders(trash) && is_on_volume(trash, status.st_dev)) {
            return trash;
        }
    }
    std::string name(".Trash-");
    name.append(std::to_string(::getuid()));
    trash = join_path(find_volume(path, status.st_dev), name);
    struct stat found;
    // Not through a link that somebody else may have put there.
    const bool own = (::mkdir(trash.c_str(), 0700) == 0 || errno == EEXIST) &&
                     ::lstat(trash.c_str(), &found) == 0 && S_ISDIR(found.st_mode) &&
                     found.st_uid == ::getuid();
    return own ? trash : std::string();
}

// Writes the note for a name that is free; `name` takes that name. The note reserves it.
int reserve_name(const std::string& info, const std::string& note, std::string& name) {
    const std::string wanted = name;
    for (int attempt = 1; attempt <= NAME_ATTEMPTS; ++attempt) {
        if (attempt > 1) {
            name = wanted;
            name.append(".").append(std::to_string(attempt));
        }
        std::string path = join_path(info, name);
        path.append(".trashinfo");
        FILE_STREAM_HELPER_POSIX file(
            ::open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0600));
        if (!file.is_open()) {
            if (errno == EEXIST) {
                continue;
            }
            return errno;
        }
        std::int64_t done = 0;
        const auto size = static_cast<std::int64_t>(note.size());
        int code = file.write(reinterpret_cast<const unsigned char*>(note.data()), size, done);
        code = code == 0 && done < size ? EIO : code;
        const int closed = file.close();
        code = code == 0 ? closed : code;
        if (code != 0) {
            ::unlink(path.c_str());
        }
        return code;
    }
    return EEXIST;
}

}  // namespace

int move_to_trash(const std::string& path, const struct stat& status, std::string& trashed) {
    const std::string trash = find_trash(path, status);
    const std::string files = join_path(trash, "files");
    const std::string info = join_path(trash, "info");
    if (trash.empty() || !create_folders(files) || !create_folders(info)) {
        return EACCES;
    }
    std::string name(get_last_component(path));
    int code = reserve_name(info, make_note(path), name);
    if (code != 0) {
        return code;
    }
    trashed = join_path(files, name);
    code = rename_without_replacing(path, trashed);
    if (code != 0) {
        std::string note = join_path(info, name);
        ::unlink(note.append(".trashinfo").c_str());
    }
    return code;
}

}  // namespace KVCORE
