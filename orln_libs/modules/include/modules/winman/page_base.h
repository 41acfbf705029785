// WM_PAGE_BASE: a page as an object with virtual operations.
//
//     class MY_PAGE : public WM_PAGE_BASE {
//     public:
//         explicit MY_PAGE(WM_PAGE_MANAGER& manager) { setup(-1, manager, 0, 1, 0); }
//         void create(WM_PAGE_MANAGER& manager) override { add_object(new WM_BUTTON(...), 1); }
//     };
//     new MY_PAGE(manager);  // then return WM_MESG_CHANGE_PAGE from a callback
//
// The page manager owns the page from setup on; it lives as long as its entry in the history, its
// controls only while it is on show.
#ifndef MODULES_WINMAN_PAGE_BASE_H
#define MODULES_WINMAN_PAGE_BASE_H

#include <cstdint>

#include "modules/winman/wm_mesg.h"

class WM_AREA;
class WM_PAGE_MANAGER;

class WM_PAGE_BASE {
public:
    WM_PAGE_BASE() = default;
    WM_PAGE_BASE(const WM_PAGE_BASE&) = delete;
    WM_PAGE_BASE& operator=(const WM_PAGE_BASE&) = delete;
    virtual ~WM_PAGE_BASE() = default;

    // Those of the page's area.
    virtual void add_object(WM_SCREEN_OBJECT* object, unsigned char relative);
    virtual void remove_object(WM_SCREEN_OBJECT* object, unsigned char delete_it,
                               unsigned char make_relative);
    virtual std::int16_t get_width();
    virtual std::int16_t get_height();
    // Builds the controls, each time that the page comes on show.
    virtual void create(WM_PAGE_MANAGER& manager) = 0;
    // What the page's controls call, by way of handle_callback.
    virtual WM_MESG handle(WM_SCREEN_OBJECT* object, void* data1, void* data2);
    // Once per tick while the page is on show.
    virtual WM_MESG monitor() { return WM_MESG_NONE; }
    // The controls are about to be deleted.
    virtual void objects_deleting() {}
    // Whether `other` is the same page.
    virtual bool operator==(WM_PAGE_BASE& other) { return unique == other.unique; }

    // For a page's constructor: makes this the next page of the area. Without `use_monitor` the
    // page's monitor isn't called. `unique` as in WM_PAGE_MANAGER::set_next_page.
    void setup(std::int32_t area, WM_PAGE_MANAGER& manager, unsigned char keep,
               unsigned char use_monitor, std::uint32_t unique);

    // The functions of its WM_SCREEN_INFO.
    static void create_callback(WM_PAGE_MANAGER& manager);
    static void destroy_callback(void*& data);
    static WM_MESG monitor_callback(WM_PAGE_MANAGER& manager);
    static void objects_deleting_callback(WM_PAGE_MANAGER& manager);
    static unsigned char data_compare_func(void* left, void* right);
    // The callback that the controls of a page are made with: finds the page on show in the current
    // area of the object's window and asks its `handle`. 0 without one.
    static WM_MESG handle_callback(WM_SCREEN_OBJECT* object, void* data1, void* data2);

    std::uint32_t unique = 0;
    std::int32_t area = -1;  // -1: the current area
    WM_PAGE_MANAGER* page_manager = nullptr;

private:
    WM_AREA* get_area() const;
};

#endif  // MODULES_WINMAN_PAGE_BASE_H
