// What the command line asks of the launcher.
#ifndef LAUNCHER_LAUNCHER_OPTIONS_H
#define LAUNCHER_LAUNCHER_OPTIONS_H

#include <string>

// For tests and benchmarks only; the help text doesn't name them.
struct LAUNCHER_TEST_OPTIONS {
    // "--screenshot=FOLDER": the windows are opened whether or not somebody can see them, and
    // pictures of them are stored there (window_pictures.h). Empty: no pictures.
    std::string picture_folder;
    // "--lateness=FILE": how late the updates came (update_lateness.h) is written there when the
    // launcher ends or starts the client. Empty: not counted.
    std::string lateness_file;
};

#endif  // LAUNCHER_LAUNCHER_OPTIONS_H
