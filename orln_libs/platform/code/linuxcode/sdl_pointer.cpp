// Pointer shapes, clipboard, message box.
#include <cstring>
#include <string>
#include <thread>

#include "platform/text_encoding.h"
#include "platform/window_platform.h"
#include "sdl_platform.h"

namespace {

struct SDL_TEXT_DELETER {
    void operator()(char* text) const { SDL_free(text); }
};

SDL_SystemCursor find_cursor(char id) {
    switch (id) {
        case 1:
        case 2:
            return SDL_SYSTEM_CURSOR_HAND;
        case 3:
        case 4:
            return SDL_SYSTEM_CURSOR_SIZEALL;
        case 5:
        case 6:
            return SDL_SYSTEM_CURSOR_IBEAM;
        case 8:
            return SDL_SYSTEM_CURSOR_SIZEWE;
        default:
            return SDL_SYSTEM_CURSOR_ARROW;
    }
}

}  // namespace

void change_mouse_icon(char id) {
    WINDOW_SYSTEM& system = WINDOW_SYSTEM::open();
    const SDL_SystemCursor shape = find_cursor(id);
    if (shape == system.cursor_shown) {
        return;
    }
    system.cursor_shown = shape;
    auto& cursor = system.cursors[shape];
    if (!cursor) {
        cursor.reset(SDL_CreateSystemCursor(shape));
    }
    SDL_SetCursor(cursor ? cursor.get() : SDL_GetDefaultCursor());
}

bool is_text_in_clipboard() {
    WINDOW_SYSTEM::open();
    return SDL_HasClipboardText() == SDL_TRUE;
}

void get_clipboard_text(char* buffer, std::int32_t size) {
    if (!buffer || size < 1) {
        return;
    }
    WINDOW_SYSTEM::open();
    const std::unique_ptr<char, SDL_TEXT_DELETER> text(SDL_GetClipboardText());
    const std::string system_text = text ? utf8_to_system(text.get()) : std::string();
    const std::size_t length = std::min(system_text.size(), static_cast<std::size_t>(size - 1));
    std::memcpy(buffer, system_text.data(), length);
    buffer[length] = '\0';
}

void set_clipboard_text(const char* text) {
    if (text) {
        WINDOW_SYSTEM::open();
        SDL_SetClipboardText(system_to_utf8(text).c_str());
    }
}

bool show_message_box(const char* title, const char* text) {
    const WINDOW_SYSTEM* system = WINDOW_SYSTEM::find();
    if (!system || !system->display || !system->is_own_thread()) {
        return false;
    }
    return SDL_ShowSimpleMessageBox(SDL_MESSAGEBOX_INFORMATION, system_to_utf8(title).c_str(),
                                    system_to_utf8(text).c_str(), nullptr) == 0;
}
