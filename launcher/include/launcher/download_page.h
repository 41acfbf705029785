// DOWNLOAD_PAGE: how the download goes, and the way to the client when it is complete.
//
//     +--------------------------------------------------+
//     |  [ Downloading 1 of 2   37% - 812.4 Kb/s       ]  |
//     |                    ( Cancel )                    |
//     |  +- Currently Downloading --------------------+  |
//     |  |  the add-on                                |  |
//     |  +--------------------------------------------+  |
//     |  [x] Launch the game when the download is ...    |
//     +--------------------------------------------------+
//
// Main thread only; the engine's fields are read under the engine's mutex.
#ifndef LAUNCHER_DOWNLOAD_PAGE_H
#define LAUNCHER_DOWNLOAD_PAGE_H

#include <cstdint>

#include "modules/winman/page_base.h"

class ADD_ON;
class ADD_ON_PANEL;
class PANEL_FRAME;
class WM_BUTTON;
class WM_CHECK_BOX;
class WM_GRID;
class WM_PROGRESS_BAR;
struct AUTOPATCH_PROGRESS;

class DOWNLOAD_PAGE : public WM_PAGE_BASE {
public:
    // What the page's controls send to `handle`.
    enum VALUE : std::intptr_t {
        VALUE_CANCEL = 1,
        VALUE_YES = 2,
        VALUE_NO = 3,
        VALUE_LAUNCH = 4,
    };

    // Becomes the next page of the manager's current area.
    explicit DOWNLOAD_PAGE(WM_PAGE_MANAGER& manager);

    void create(WM_PAGE_MANAGER& manager) override;
    // Asks before it cancels; starts the client; ends the launcher. Whatever the check box says is
    // the launcher's "AUTO_LAUNCH" from then on.
    WM_MESG handle(WM_SCREEN_OBJECT* object, void* value, void* unused) override;
    // Shows what changed, and finishes the page once nothing is left to fetch. Escape asks to
    // cancel, as the button does.
    WM_MESG monitor() override;
    void objects_deleting() override;

private:
    void create_grids();
    void create_frame();
    void create_check_box();
    void set_all_downloaded();
    void show_progress(const AUTOPATCH_PROGRESS& progress);
    void show_add_on(const ADD_ON* add_on);
    void forget_objects();
    bool is_question_open() const;
    bool take_escape();
    WM_MESG ask_to_cancel();

    // The controls, while the page is on show; owned by the page's area and by each other.
    WM_GRID* main_grid;        // the layout
    WM_GRID* button_grid;      // the row of the buttons
    WM_BUTTON* action_button;  // "Cancel", later "Launch Game"
    WM_CHECK_BOX* launch_check_box;
    WM_PROGRESS_BAR* progress_bar;  // null once all is downloaded
    ADD_ON_PANEL* add_on_panel;     // the current add-on; null at first
    PANEL_FRAME* panel_frame;       // holds add_on_panel
    bool all_downloaded;            // set_all_downloaded has run
    std::int32_t shown_percent;     // -1 at first
    double shown_rate;              // the same
};

#endif  // LAUNCHER_DOWNLOAD_PAGE_H
