// Small services of the process: fatal exit, console, message box, sleeping, the clock, starting
// other programs. All may be called from any thread.
#ifndef PLATFORM_PROCESS_TOOLS_H
#define PLATFORM_PROCESS_TOOLS_H

#include <cstdint>
#include <string>

class DISK_MANAGER;

// Ends the process at once with code 1, without running destructors: other threads may still be
// at work. The text goes to standard error; null says nothing.
[[noreturn]] void exit_app(const char* text);

// Writes to standard output, unchanged. Null is ignored.
void write_to_console(const char* text);

// Tells the user something: a line "title: text" on standard error, and a message box that waits
// for the user where the process has opened a display (window_platform.h). Each text is cut to 255
// characters; a null text does nothing. The flag has no effect.
void display_message(const char* title, const char* text, unsigned char flag);

// What display_message() shows its box with, null for none. Gets both texts cut, line feeds in
// place, and returns whether it could show them. The window layer installs it.
using MESSAGE_DISPLAY = bool (*)(const char* title, const char* text);
void set_message_box(MESSAGE_DISPLAY box);

// Reports a failed assertion through display_message() and returns. `condition` may be null; with
// a null `message` nothing happens.
void handle_assert(const char* message, const char* condition);

// Milliseconds of a clock that never goes back. It wraps at about 49 days: compare by unsigned
// difference.
std::uint32_t get_ms_count();

// Sleep for at least this time, signals notwithstanding.
void orln_sleep(std::uint32_t ms);
void orln_sleep_microseconds(std::uint32_t us);

// Starts the file or bundle `name` of that folder as a program of its own (launch_service.h) and
// ends this process with code 0. Returns only on failure: false, with the cause in `reason` if
// that isn't null.
bool run_program(DISK_MANAGER& folder, const char* name, std::string* reason = nullptr);

// Shows an address in the user's browser; "http://" is put before one that doesn't begin with
// "http". False if no browser could be started.
bool open_url_in_default_browser(const char* url);

#endif  // PLATFORM_PROCESS_TOOLS_H
