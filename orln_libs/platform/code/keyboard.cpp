#include "platform/keyboard.h"

#include <array>
#include <cinttypes>
#include <deque>
#include <memory>

#include "platform/debug_stream.h"
#include "platform/process_tools.h"

bool (*KEYBOARD::handle_global_keypress_callback)(KEY_TYPE key) = nullptr;
std::uint32_t KEYBOARD::last_event_time = 0;

namespace {

constexpr std::size_t DEFAULT_BUFFER_SIZE = 10;

struct KEYBOARD_STATE {
    KEY_TYPE code = KEY_NONE;
    std::array<bool, KEY_TYPE_COUNT> down{};
    std::deque<unsigned char> characters;
    std::size_t buffer_size = DEFAULT_BUFFER_SIZE;

    void forget_key() {
        if (has_mark(code)) {
            down[static_cast<std::size_t>(code)] = false;
        }
        code = KEY_NONE;
    }
    // The marks from KEY_CONTROL on follow the modifier keys.
    static bool has_mark(KEY_TYPE key) { return key > KEY_NONE && key < KEY_CONTROL; }
};

std::unique_ptr<KEYBOARD_STATE> state;
std::int32_t instances = 0;

}  // namespace

KEYBOARD::KEYBOARD() {
    if (instances++ == 0) {
        state = std::make_unique<KEYBOARD_STATE>();
    }
}

KEYBOARD::~KEYBOARD() {
    if (--instances == 0) {
        state.reset();
    }
}

KEY_TYPE KEYBOARD::get_code() {
    const KEY_TYPE code = state->code;
    state->forget_key();
    return code;
}

KEY_TYPE KEYBOARD::peek_code() const {
    return state->code;
}

unsigned char KEYBOARD::get_key_value(KEY_TYPE key) const {
    return key > KEY_NONE && key < KEY_TYPE_COUNT && state->down[static_cast<std::size_t>(key)];
}

unsigned char KEYBOARD::get_char() {
    const unsigned char character = peek_char();
    if (!state->characters.empty()) {
        state->characters.pop_front();
    }
    return character;
}

unsigned char KEYBOARD::peek_char() const {
    return state->characters.empty() ? static_cast<unsigned char>(0) : state->characters.front();
}

void KEYBOARD::clear_buffer() {
    state->forget_key();
    state->characters.clear();
}

void KEYBOARD::set_buffer_sz(std::int32_t size) {
    state->characters.clear();
    state->buffer_size = size < 1 ? 1 : static_cast<std::size_t>(size);
}

void KEYBOARD::process_key_event(KEY_TYPE key) {
    last_event_time = get_ms_count();
    if (!state || (handle_global_keypress_callback && handle_global_keypress_callback(key))) {
        return;
    }
    // A key that nobody read isn't down for ever.
    state->forget_key();
    state->code = key;
    if (KEYBOARD_STATE::has_mark(key)) {
        state->down[static_cast<std::size_t>(key)] = true;
    }
}

void KEYBOARD::process_char_event(std::uint32_t character, unsigned char replace) {
    if (!state) {
        return;
    }
    if (character > 0xFF) {
        if (platform_debug_stream.flags != 0) {
            platform_debug_stream.printf("Unicode char dropped %08" PRIX32 "\n", character);
        }
        character = '?';
    } else if (character == '\r') {
        character = '\n';
    }
    const auto byte = static_cast<unsigned char>(character);
    if (replace && !state->characters.empty()) {
        state->characters.back() = byte;
    } else if (state->characters.size() < state->buffer_size) {
        state->characters.push_back(byte);
    }
}

void KEYBOARD::set_modifiers(std::uint32_t bits) {
    if (!state) {
        return;
    }
    const bool control = (bits & KEYBOARD_MODIFIER_CONTROL) != 0;
    state->down[KEY_SHIFT] = (bits & KEYBOARD_MODIFIER_SHIFT) != 0;
    state->down[KEY_CONTROL] = control;
    state->down[KEY_COMMAND] = control;
    state->down[KEY_ALT] = (bits & KEYBOARD_MODIFIER_ALT) != 0;
}
