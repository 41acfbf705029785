#include "launcher/window_pictures.h"

#include <atomic>
#include <csignal>
#include <filesystem>

#include "modules/winman/window_manager.h"
#include "platform/window_platform.h"

namespace {

// One update asks for the page, the next builds it, the third runs its monitor, the fourth draws
// what that changed.
constexpr std::int32_t UPDATES_UNTIL_COMPLETE = 4;

std::atomic<std::int32_t> signals{0};
static_assert(std::atomic<std::int32_t>::is_always_lock_free, "counted by a signal handler");

void count_signal(int) {
    ++signals;
}

}  // namespace

bool WINDOW_PICTURES::start(const std::string& name) {
    std::error_code error;
    const std::filesystem::path path = std::filesystem::absolute(name, error);
    if (error || !folder.move_down(path.c_str(), false, true)) {
        return false;
    }
    struct sigaction action {};
    action.sa_handler = count_signal;
    started = ::sigaction(SIGUSR1, &action, nullptr) == 0;
    return started;
}

void WINDOW_PICTURES::monitor(LAUNCHER_PAGE page) {
    if (!started || page == PAGE_NONE) {
        return;
    }
    updates_of_page = page == last_page ? updates_of_page + 1 : 1;
    last_page = page;
    if (!is_complete()) {
        return;
    }
    if (updates_of_page == UPDATES_UNTIL_COMPLETE) {
        take(page, std::string(get_page_name(page)) + ".png");
    }
    while (asked_for < signals) {
        ++asked_for;
        take(page, "picture_" + std::to_string(asked_for) + ".png");
    }
}

void WINDOW_PICTURES::leave_page() {
    if (started && last_page != PAGE_NONE && !is_complete()) {
        take(last_page, std::string(get_page_name(last_page)) + ".png");
    }
    last_page = PAGE_NONE;
    updates_of_page = 0;
}

bool WINDOW_PICTURES::is_complete() const {
    return updates_of_page >= UPDATES_UNTIL_COMPLETE;
}

void WINDOW_PICTURES::take(LAUNCHER_PAGE page, const std::string& name) const {
    const WM_WINDOW_MANAGER* manager = WM_WINDOW_MANAGER::get_instance();
    const signed char window =
        page == PAGE_SPLASH ? WM_WINDOW_MANAGER::SPLASH_WINDOW : WM_WINDOW_MANAGER::MAIN_WINDOW;
    const std::string unfinished = name + ".part";
    if (manager != nullptr &&
        save_window_picture(manager->get_window_handle(window), folder, unfinished.c_str())) {
        folder.move(unfinished.c_str(), folder, name.c_str());
    }
}
