// LAUNCHER_PAGE: what the launcher has on show.
#ifndef LAUNCHER_LAUNCHER_PAGE_H
#define LAUNCHER_LAUNCHER_PAGE_H

enum LAUNCHER_PAGE : unsigned char {
    PAGE_NONE = 0,
    PAGE_SPLASH = 1,
    PAGE_DOWNLOAD = 2,
    PAGE_ERROR = 4,
};

// "splash", "download", "error"; "none" for anything else.
const char* get_page_name(LAUNCHER_PAGE page);

#endif  // LAUNCHER_LAUNCHER_PAGE_H
