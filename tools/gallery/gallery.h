// GALLERY: the application. One window with a page of controls for each family, in any skin.
#ifndef GALLERY_H
#define GALLERY_H

#include <memory>
#include <string>

#include "gallery_options.h"
#include "gallery_skins.h"
#include "modules/frameworks/windowed_application_framework.h"

class GALLERY_CAMERA;
class GALLERY_PAGE;

class GALLERY : public WINDOWED_APPLICATION_FRAMEWORK {
public:
    static constexpr std::uint16_t WIDTH = 960, HEIGHT = 640;

    explicit GALLERY(const GALLERY_OPTIONS& options);
    ~GALLERY() override;

    void initialize_areas(unsigned char load, signed char window) override;
    void handle_quit_request() override;
    bool monitor() override;
    std::int32_t get_build_number() const override { return -1; }
    void initialise() override;
    void destroy() override;
    void startup_manual_singletons() override;
    void shutdown_manual_singletons() override;

    // Makes that page the next one; the caller returns WM_MESG_CHANGE_PAGE, or calls show_next_page
    // outside of the pages' callbacks. Indices go round at the ends.
    void choose_page(int index);
    void show_next_page();
    int get_page_index() const { return page_index; }
    // Takes effect at the end of the update, when no page is on show.
    void choose_next_skin();
    // A line on standard output, where somebody tries the controls.
    void tell(const std::string& text) const;
    const GALLERY_SKINS& get_skins() const { return skins; }
    // The page made last, which the page manager owns.
    GALLERY_PAGE* get_page() const { return page; }

private:
    [[noreturn]] void fail(const std::string& text);
    void open_window();
    void change_skin();
    // Calls `work` for each page that is asked for, once it is on show.
    template <class WORK>
    void for_each_page(GALLERY_CAMERA& camera, WORK work);
    void take_pictures();
    void check_focus();

    GALLERY_OPTIONS options;
    GALLERY_SKINS skins;
    std::string next_skin;  // empty: no change
    int page_index = 0;
    GALLERY_PAGE* page = nullptr;
    bool is_running = false;
};

#endif  // GALLERY_H
