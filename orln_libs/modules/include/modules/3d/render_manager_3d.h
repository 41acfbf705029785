// RENDER_MANAGER_3D: brings every window of the toolkit to the screen.
//
// Windows take the software path: the dirty rectangle of the back buffer is copied straight to the
// platform's window. The object is made for a second path as well, a render thread that composes
// back buffers with 3D scenes; the locks below are what keeps the two threads apart. The render
// core behind that thread isn't part of this build, so start_render_thread starts nothing and
// is_3d_capable says so.
#ifndef MODULES_3D_RENDER_MANAGER_3D_H
#define MODULES_3D_RENDER_MANAGER_3D_H

#include <atomic>
#include <cstdint>
#include <vector>

#include "modules/3d/render_manager_base.h"
#include "modules/threading/mutex.h"
#include "modules/threading/thread_condition.h"

namespace ORLN_3D {

// Something that a render thread draws behind a window's own picture. Not owned by the manager.
class OBJECT_3D {
public:
    virtual ~OBJECT_3D() = default;

    signed char window = 0;
    bool visible = true;
};

// Made after THREAD_POOL, deleted before it and after the windows. Lock order: a state mutex is
// taken after the back buffer's mutex and never held while waiting for that.
class RENDER_MANAGER_3D : public RENDER_MANAGER_BASE {
public:
    static constexpr int WINDOW_COUNT = 5;
    static constexpr std::int32_t FRAMES_PER_SECOND_LIMIT = 60;
    static constexpr std::int32_t FRAME_TIME = 16;  // in milliseconds
    static constexpr float FRAME_TIME_SECONDS = static_cast<float>(FRAME_TIME) / 1000.0f;

    RENDER_MANAGER_3D();
    // Ends the render thread, if one runs.
    ~RENDER_MANAGER_3D() override;

    void render_window(WM_WINDOW& window, bool wait) override;
    void add_window(WM_WINDOW& window) const override;
    void remove_window(WM_WINDOW& window) const override;
    void resize_window(WM_WINDOW& window) const override;
    // True until the path is decided, which in a program without a render thread is never.
    bool get_use_3d_rendering() const override;
    bool is_3d_capable() const override { return is_3d_capable_flag; }
    void monitor() override {}
    // Any thread, under its own THREAD_ID; once for each unlock. A bad index is never locked.
    bool lock_backbuffer(int index, THREAD_ID thread, unsigned char wait) override;
    void unlock_backbuffer(int index) override;
    void set_main_thread_rendering(unsigned char on) override;
    void pause_render_thread() override;
    void resume_render_thread() override;
    void wait_for_render_loop(bool skip_os_events) const override;
    const KVCORE::STRING& get_graphics_hardware() const override { return graphics_hardware; }

    // Starts the render loop on the pool's queue (thread_id, -1); below 0 nothing. Without a render
    // core a warning is traced and no thread starts: false.
    bool start_render_thread(std::int32_t thread_id);
    bool start_render_thread();
    // Unless `dont_wait`, returns once the loop has ended; meanwhile log and events go on.
    void stop_render_thread(bool dont_wait);
    // Keeps a waiting main thread alive: the log's queue and, unless skipped, the events.
    static void perform_os_tasks(bool skip_os_events);

    void add_object(OBJECT_3D* object) { objects.push_back(object); }
    // The first equal pointer.
    void remove_object(const OBJECT_3D* object);
    const std::vector<OBJECT_3D*>& get_objects() const { return objects; }

    // The next power of two, for a texture that covers a side of that many pixels; 0 stays 0.
    static std::int32_t round_up_to_power_of_two(std::int32_t size);

private:
    bool initialised = false;       // the path is decided
    bool use_3d_rendering = false;  // the 3D path is in force
    bool is_3d_capable_flag = false;
    KVCORE::STRING graphics_hardware;
    std::vector<OBJECT_3D*> objects;
    std::int32_t render_thread_id = -1;

    std::atomic<bool> main_thread_rendering{false};
    std::atomic<bool> render_thread_running{false};
    std::atomic<bool> exit_render_thread{false};
    std::atomic<bool> pause_requested{false};
    std::atomic<std::int32_t> pause_waiters{0};
    mutable std::atomic<std::int32_t> loop_waiters{0};
    mutable std::atomic<bool> loop_pass_pending{false};
    THREAD_CONDITION paused_event;  // the render thread has arrived at the pause
    THREAD_CONDITION wake_event;    // wakes a paused render thread

    MUTEX backbuffer_mutex[WINDOW_COUNT];        // held by the owner of the buffer
    MUTEX backbuffer_state_mutex[WINDOW_COUNT];  // guards the next two
    THREAD_ID backbuffer_owner[WINDOW_COUNT] = {};
    std::int32_t backbuffer_depth[WINDOW_COUNT] = {};
};

}  // namespace ORLN_3D

#endif  // MODULES_3D_RENDER_MANAGER_3D_H
