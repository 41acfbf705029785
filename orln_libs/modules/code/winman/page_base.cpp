#include "modules/winman/page_base.h"

#include "modules/winman/page_manager.h"
#include "modules/winman/screen_object.h"
#include "modules/winman/wm_area.h"

namespace {

// The page on show in the current area; null if there is none, or it isn't a WM_PAGE_BASE.
WM_PAGE_BASE* get_current_page(const WM_PAGE_MANAGER& manager) {
    const WM_AREA* area = manager.get_current_area();
    if (area == nullptr || area->get_current().create != WM_PAGE_BASE::create_callback) {
        return nullptr;
    }
    return static_cast<WM_PAGE_BASE*>(area->get_current().data);
}

}  // namespace

void WM_PAGE_BASE::setup(std::int32_t in_area, WM_PAGE_MANAGER& manager, unsigned char keep,
                         unsigned char use_monitor, std::uint32_t page_unique) {
    page_manager = &manager;
    area = in_area;
    unique = page_unique;
    manager.set_next_page(in_area, create_callback, destroy_callback, this,
                          use_monitor ? monitor_callback : nullptr, keep, page_unique,
                          objects_deleting_callback);
    if (WM_AREA* of_page = manager.get_area(in_area)) {
        of_page->next_screen.compare = data_compare_func;
    }
}

WM_AREA* WM_PAGE_BASE::get_area() const {
    return page_manager != nullptr ? page_manager->get_area(area) : nullptr;
}

void WM_PAGE_BASE::add_object(WM_SCREEN_OBJECT* object, unsigned char relative) {
    if (WM_AREA* of_page = get_area()) {
        of_page->add_object(object, relative);
    }
}

void WM_PAGE_BASE::remove_object(WM_SCREEN_OBJECT* object, unsigned char delete_it,
                                 unsigned char make_relative) {
    if (WM_AREA* of_page = get_area()) {
        of_page->remove_object(object, delete_it, make_relative);
    }
}

std::int16_t WM_PAGE_BASE::get_width() {
    WM_AREA* of_page = get_area();
    return of_page != nullptr ? of_page->get_width() : std::int16_t{0};
}

std::int16_t WM_PAGE_BASE::get_height() {
    WM_AREA* of_page = get_area();
    return of_page != nullptr ? of_page->get_height() : std::int16_t{0};
}

WM_MESG WM_PAGE_BASE::handle(WM_SCREEN_OBJECT* /*object*/, void* /*data1*/, void* /*data2*/) {
    return WM_MESG_NONE;
}

void WM_PAGE_BASE::create_callback(WM_PAGE_MANAGER& manager) {
    if (WM_PAGE_BASE* page = get_current_page(manager)) {
        page->create(manager);
    }
}

void WM_PAGE_BASE::destroy_callback(void*& data) {
    delete static_cast<WM_PAGE_BASE*>(data);
    data = nullptr;
}

WM_MESG WM_PAGE_BASE::monitor_callback(WM_PAGE_MANAGER& manager) {
    WM_PAGE_BASE* page = get_current_page(manager);
    return page != nullptr ? page->monitor() : WM_MESG_NONE;
}

void WM_PAGE_BASE::objects_deleting_callback(WM_PAGE_MANAGER& manager) {
    if (WM_PAGE_BASE* page = get_current_page(manager)) {
        page->objects_deleting();
    }
}

unsigned char WM_PAGE_BASE::data_compare_func(void* left, void* right) {
    auto* left_page = static_cast<WM_PAGE_BASE*>(left);
    auto* right_page = static_cast<WM_PAGE_BASE*>(right);
    return left_page != nullptr && right_page != nullptr && *left_page == *right_page;
}

WM_MESG WM_PAGE_BASE::handle_callback(WM_SCREEN_OBJECT* object, void* data1, void* data2) {
    WM_PAGE_MANAGER* manager = object != nullptr ? object->get_page_manager() : nullptr;
    WM_PAGE_BASE* page = manager != nullptr ? get_current_page(*manager) : nullptr;
    return page != nullptr ? page->handle(object, data1, data2) : WM_MESG_NONE;
}
