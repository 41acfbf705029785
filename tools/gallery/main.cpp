// The gallery's process entry: options that only print are answered here.
#include <stdlib.h>

#include <cstdio>

#include "gallery_options.h"
#include "gallery_pages.h"
#include "modules/frameworks/application_loop.h"
#include "modules/frameworks/orln_application.h"

int main(int argc, char** argv) {
    GALLERY_OPTIONS options;
    std::string error;
    const bool valid = parse_gallery_options(argc, argv, options, error);
    if (options.help) {
        std::fputs(GALLERY_HELP, stdout);
        return 0;
    }
    if (options.list_pages) {
        for (const GALLERY_PAGE_ENTRY& page : get_gallery_pages()) {
            std::puts(page.name);
        }
        return 0;
    }
    if (!valid) {
        std::fprintf(stderr, "gallery: %s\n", error.c_str());
        return 2;
    }
    if (is_hidden(options)) {
        ::setenv("SDL_VIDEODRIVER", "dummy", 1);
    }
    return run_application(argc, argv, ORLN_APPLICATION::create);
}
