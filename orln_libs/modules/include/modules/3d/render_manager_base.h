// RENDER_MANAGER_BASE: what the toolkit and the frameworks know of the render manager.
#ifndef MODULES_3D_RENDER_MANAGER_BASE_H
#define MODULES_3D_RENDER_MANAGER_BASE_H

#include <cstdint>

#include "kvcore/manual_singleton.h"
#include "kvcore/string.h"

class WM_WINDOW;

namespace ORLN_3D {

// Who holds a back buffer.
enum THREAD_ID : std::int32_t {
    THREAD_ID_NONE = 0,
    THREAD_ID_MAIN = 1,
    THREAD_ID_RENDER = 2,
};

// The defaults are those of a program without a screen. Callers test get_instance() for null.
class RENDER_MANAGER_BASE : public KVCORE::MANUAL_SINGLETON<RENDER_MANAGER_BASE> {
public:
    RENDER_MANAGER_BASE() = default;

    // Shows a window's back buffer; with `wait` it is on the screen when the call returns.
    virtual void render_window(WM_WINDOW& window, bool wait);
    // A window was opened, is about to be closed, has another size.
    virtual void add_window(WM_WINDOW& window) const;
    virtual void remove_window(WM_WINDOW& window) const;
    virtual void resize_window(WM_WINDOW& window) const;
    virtual bool get_use_3d_rendering() const { return false; }
    virtual bool is_3d_capable() const { return false; }
    virtual void monitor() {}
    // A recursive lock of a window's back buffer. Without `wait` false if another thread has it.
    virtual bool lock_backbuffer(int index, THREAD_ID thread, unsigned char wait);
    virtual void unlock_backbuffer(int index);
    // While on, each render_window shows one complete frame, driven by the main thread.
    virtual void set_main_thread_rendering(unsigned char on);
    // Between the two the render thread touches no window.
    virtual void pause_render_thread() {}
    virtual void resume_render_thread() {}
    // Returns after a whole pass of the render loop, at once when none runs.
    virtual void wait_for_render_loop(bool skip_os_events) const;
    virtual const KVCORE::STRING& get_graphics_hardware() const;
    virtual ~RENDER_MANAGER_BASE() = default;
};

}  // namespace ORLN_3D

#endif  // MODULES_3D_RENDER_MANAGER_BASE_H
