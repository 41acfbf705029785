#include "modules/3d/render_manager_3d.h"

#include <algorithm>
#include <bit>

#include "kvcore/log_manager.h"
#include "modules/frameworks/trace_output.h"
#include "modules/winman/wm_window.h"
#include "platform/process_tools.h"
#include "platform/window_platform.h"

namespace ORLN_3D {

namespace {

constexpr std::uint32_t STOP_POLL_MS = 10;
constexpr std::uint32_t LOOP_POLL_MS = 100;

bool is_window(int index) {
    return index >= 0 && index < RENDER_MANAGER_3D::WINDOW_COUNT;
}

}  // namespace

RENDER_MANAGER_3D::RENDER_MANAGER_3D() : graphics_hardware("Unknown") {
}

RENDER_MANAGER_3D::~RENDER_MANAGER_3D() {
    stop_render_thread(false);
}

void RENDER_MANAGER_3D::render_window(WM_WINDOW& window, bool /*wait*/) {
    swap_screens(window.handle, window.index);
}

// Without a render thread there is nothing that windows would have to be told to.

void RENDER_MANAGER_3D::add_window(WM_WINDOW& /*window*/) const {
    if (use_3d_rendering || !initialised) {
        wait_for_render_loop(true);
    }
}

void RENDER_MANAGER_3D::remove_window(WM_WINDOW& /*window*/) const {
    if (use_3d_rendering) {
        wait_for_render_loop(true);
    }
}

void RENDER_MANAGER_3D::resize_window(WM_WINDOW& /*window*/) const {
    if (use_3d_rendering) {
        wait_for_render_loop(true);
    }
}

bool RENDER_MANAGER_3D::get_use_3d_rendering() const {
    return !initialised || use_3d_rendering;
}

// --- The lock of a back buffer ---

bool RENDER_MANAGER_3D::lock_backbuffer(int index, THREAD_ID thread, unsigned char wait) {
    if (main_thread_rendering) {
        return true;
    }
    if (!is_window(index)) {
        return false;
    }
    MUTEX& state = backbuffer_state_mutex[index];
    state.lock();
    if (backbuffer_owner[index] != thread) {
        state.unlock();
        const bool locked =
            wait ? backbuffer_mutex[index].lock() != 0 : backbuffer_mutex[index].try_lock() != 0;
        if (!locked) {
            return false;
        }
        state.lock();
    }
    ++backbuffer_depth[index];
    backbuffer_owner[index] = thread;
    state.unlock();
    return true;
}

void RENDER_MANAGER_3D::unlock_backbuffer(int index) {
    if (main_thread_rendering || !is_window(index)) {
        return;
    }
    const MUTEX_LOCKER state(backbuffer_state_mutex[index]);
    if (backbuffer_depth[index] == 0 || --backbuffer_depth[index] != 0) {
        return;
    }
    backbuffer_owner[index] = THREAD_ID_NONE;
    backbuffer_mutex[index].unlock();
}

void RENDER_MANAGER_3D::set_main_thread_rendering(unsigned char on) {
    if (on) {
        pause_render_thread();
    }
    main_thread_rendering = on != 0;
    if (!on) {
        resume_render_thread();
    }
}

// --- The render thread ---

bool RENDER_MANAGER_3D::start_render_thread(std::int32_t thread_id) {
    render_thread_id = thread_id;
    return start_render_thread();
}

bool RENDER_MANAGER_3D::start_render_thread() {
    if (render_thread_id >= 0) {
        TRACE_OUTPUT::output_warning(
            "3D rendering is not available; windows are drawn by software");
    }
    return false;
}

void RENDER_MANAGER_3D::stop_render_thread(bool dont_wait) {
    if (!render_thread_running) {
        return;
    }
    exit_render_thread = true;
    pause_requested = false;
    wake_event.set();
    while (!dont_wait && render_thread_running) {
        perform_os_tasks(false);
        orln_sleep(STOP_POLL_MS);
    }
}

void RENDER_MANAGER_3D::pause_render_thread() {
    if (exit_render_thread || !render_thread_running) {
        return;
    }
    pause_requested = true;
    ++pause_waiters;
    paused_event.await();
    --pause_waiters;
}

void RENDER_MANAGER_3D::resume_render_thread() {
    pause_requested = false;
    wake_event.set();
}

void RENDER_MANAGER_3D::wait_for_render_loop(bool skip_os_events) const {
    ++loop_waiters;
    loop_pass_pending = true;
    while (render_thread_running && loop_pass_pending) {
        perform_os_tasks(skip_os_events);
        orln_sleep(LOOP_POLL_MS);
    }
    --loop_waiters;
}

void RENDER_MANAGER_3D::perform_os_tasks(bool skip_os_events) {
    KVCORE::LOG_MANAGER::process_queue();
    if (!skip_os_events) {
        process_os_events();
    }
}

// --- Objects and textures ---

void RENDER_MANAGER_3D::remove_object(const OBJECT_3D* object) {
    const auto found = std::find(objects.begin(), objects.end(), object);
    if (found != objects.end()) {
        objects.erase(found);
    }
}

std::int32_t RENDER_MANAGER_3D::round_up_to_power_of_two(std::int32_t size) {
    return size <= 0 ? 0
                     : static_cast<std::int32_t>(std::bit_ceil(static_cast<std::uint32_t>(size)));
}

}  // namespace ORLN_3D
