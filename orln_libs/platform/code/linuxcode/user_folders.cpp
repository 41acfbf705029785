#include "user_folders.h"

#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>

#include "kvcore/user_folders.h"

std::string user_preferences_folder() {
    const std::string folder = KVCORE::find_user_folder(KVCORE::USER_FOLDER::DATA);
    return KVCORE::create_folders(folder) ? folder : "";
}

std::string user_documents_folder() {
    return KVCORE::find_user_folder(KVCORE::USER_FOLDER::DOCUMENTS);
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
