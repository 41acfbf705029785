// The pages of the gallery, in the order of their tabs.
#ifndef GALLERY_PAGES_H
#define GALLERY_PAGES_H

#include <string_view>
#include <vector>

class GALLERY;
class GALLERY_PAGE;

struct GALLERY_PAGE_ENTRY {
    const char* name;   // on the command line, and of pictures
    const char* title;  // on the tab
    // Makes the page, which the page manager owns and shows next.
    GALLERY_PAGE* (*make)(GALLERY& gallery);
};

const std::vector<GALLERY_PAGE_ENTRY>& get_gallery_pages();
// The index, or -1.
int find_gallery_page(std::string_view name);

#endif  // GALLERY_PAGES_H
