// The user's folders, as the desktop's conventions place them. Source of the rules: the XDG base
// directories and the xdg-user-dirs tool of freedesktop.org.
#ifndef KVCORE_USER_FOLDERS_H
#define KVCORE_USER_FOLDERS_H

#include <cstdint>
#include <string>

namespace KVCORE {

enum class USER_FOLDER : std::uint8_t {
    CACHE,             // $XDG_CACHE_HOME, by default ".cache" in the home folder
    DATA,              // $XDG_DATA_HOME, ".local/share"
    DOCUMENTS,         // XDG_DOCUMENTS_DIR of "user-dirs.dirs", "Documents"
    LOGS,              // $XDG_STATE_HOME, ".local/state"
    PICTURES,          // XDG_PICTURES_DIR of "user-dirs.dirs", "Pictures"
    PREFERENCES,       // $XDG_CONFIG_HOME, ".config"
    SHARED_DOCUMENTS,  // XDG_PUBLICSHARE_DIR of "user-dirs.dirs", "Public"
    TEMPORARY          // $TMPDIR, "/tmp"
};

// The absolute path, neither created nor checked; empty if there is no home folder.
std::string find_user_folder(USER_FOLDER folder);

// Makes a folder and those above it that are missing, readable by the user only. False if it isn't
// there in the end.
bool create_folders(const std::string& path);

}  // namespace KVCORE

#endif  // KVCORE_USER_FOLDERS_H
