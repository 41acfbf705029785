// What the command line asks of the gallery.
#ifndef GALLERY_OPTIONS_H
#define GALLERY_OPTIONS_H

#include <string>

struct GALLERY_OPTIONS {
    std::string data;  // the folder that holds "skins"
    std::string skin = "saffrane";
    std::string page;          // the one to begin with; empty: the first
    std::string pictures;      // the folder for pictures; empty: a window is shown
    bool check_focus = false;  // walk the focus through all pages in place of that
    bool help = false;
    bool list_pages = false;
};

// Nobody sees the window.
inline bool is_hidden(const GALLERY_OPTIONS& options) {
    return options.check_focus || !options.pictures.empty();
}

// False with a sentence in `error` if the arguments don't make sense.
bool parse_gallery_options(int argc, char** argv, GALLERY_OPTIONS& options, std::string& error);

extern const char* const GALLERY_HELP;

#endif  // GALLERY_OPTIONS_H
