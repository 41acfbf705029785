// The user's folders and programs, as the desktop's conventions place them (kvcore/user_folders.h).
#ifndef PLATFORM_LINUXCODE_USER_FOLDERS_H
#define PLATFORM_LINUXCODE_USER_FOLDERS_H

#include <string>

// Where programs keep the user's data: $XDG_DATA_HOME, by default ".local/share" in the home
// folder. Created when missing. Empty if there is no such place.
std::string user_preferences_folder();

// The user's documents: XDG_DOCUMENTS_DIR of "user-dirs.dirs", by default "Documents" in the home
// folder. Neither created nor checked. Empty if there is no home folder.
std::string user_documents_folder();

// The absolute path of a program that the search path leads to; empty if there is none.
std::string find_program(const char* name);

#endif  // PLATFORM_LINUXCODE_USER_FOLDERS_H
