#include "modules/3d/render_manager_base.h"

namespace ORLN_3D {

void RENDER_MANAGER_BASE::render_window(WM_WINDOW& /*window*/, bool /*wait*/) {
}

void RENDER_MANAGER_BASE::add_window(WM_WINDOW& /*window*/) const {
}

void RENDER_MANAGER_BASE::remove_window(WM_WINDOW& /*window*/) const {
}

void RENDER_MANAGER_BASE::resize_window(WM_WINDOW& /*window*/) const {
}

bool RENDER_MANAGER_BASE::lock_backbuffer(int /*index*/, THREAD_ID /*thread*/,
                                          unsigned char /*wait*/) {
    return true;
}

void RENDER_MANAGER_BASE::unlock_backbuffer(int /*index*/) {
}

void RENDER_MANAGER_BASE::set_main_thread_rendering(unsigned char /*on*/) {
}

void RENDER_MANAGER_BASE::wait_for_render_loop(bool /*skip_os_events*/) const {
}

const KVCORE::STRING& RENDER_MANAGER_BASE::get_graphics_hardware() const {
    static const KVCORE::STRING none;
    return none;
}

}  // namespace ORLN_3D
