// ERROR_PAGE: why no client could be started, with a link to the support article.
#ifndef LAUNCHER_ERROR_PAGE_H
#define LAUNCHER_ERROR_PAGE_H

#include "autopatch/autopatch_types.h"
#include "modules/winman/page_base.h"

class ERROR_PAGE : public WM_PAGE_BASE {
public:
    // Becomes the next page of the manager's current area.
    ERROR_PAGE(WM_PAGE_MANAGER& manager, AUTOPATCH_ERROR_CODE code);

    void create(WM_PAGE_MANAGER& manager) override;
    // Whatever it is: ends the launcher.
    WM_MESG handle(WM_SCREEN_OBJECT* object, void* value, void* unused) override;
    // Escape is the button.
    WM_MESG monitor() override;

private:
    AUTOPATCH_ERROR_CODE error_code;
};

#endif  // LAUNCHER_ERROR_PAGE_H
