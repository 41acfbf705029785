#include "gallery_pages.h"

#include "gallery_page_buttons.h"
#include "gallery_page_dialogs.h"
#include "gallery_page_fields.h"
#include "gallery_page_grids.h"
#include "gallery_page_marks.h"
#include "gallery_page_menus.h"
#include "gallery_page_panels.h"
#include "gallery_page_profiles.h"
#include "gallery_page_skin.h"
#include "gallery_page_text.h"

namespace {

template <class PAGE>
GALLERY_PAGE* make(GALLERY& gallery) {
    return new PAGE(gallery);
}

}  // namespace

const std::vector<GALLERY_PAGE_ENTRY>& get_gallery_pages() {
    static const std::vector<GALLERY_PAGE_ENTRY> PAGES = {
        {"buttons", "Buttons", make<GALLERY_PAGE_BUTTONS>},
        {"marks", "Marks", make<GALLERY_PAGE_MARKS>},
        {"text", "Text", make<GALLERY_PAGE_TEXT>},
        {"fields", "Fields", make<GALLERY_PAGE_FIELDS>},
        {"grids", "Grids", make<GALLERY_PAGE_GRIDS>},
        {"menus", "Menus", make<GALLERY_PAGE_MENUS>},
        {"dialogs", "Dialogs", make<GALLERY_PAGE_DIALOGS>},
        {"panels", "Panels", make<GALLERY_PAGE_PANELS>},
        {"profiles", "Profiles", make<GALLERY_PAGE_PROFILES>},
        {"skin", "Skin", make<GALLERY_PAGE_SKIN>},
    };
    return PAGES;
}

int find_gallery_page(std::string_view name) {
    const std::vector<GALLERY_PAGE_ENTRY>& pages = get_gallery_pages();
    for (std::size_t i = 0; i < pages.size(); ++i) {
        if (name == pages[i].name) {
            return static_cast<int>(i);
        }
    }
    return -1;
}
