#include "kvcore/log_channel.h"

#include <memory>

#include "kvcore/log_manager.h"
#include "kvcore/log_message.h"

namespace KVCORE {

namespace {

// Dropped: the recorder, log() and the call site, which the message names itself.
constexpr int SKIPPED_FRAMES = 3;
constexpr int FRAME_LIMIT = 57;

}  // namespace

LOG_CHANNEL::LOG_CHANNEL(const char* name, std::uint32_t flags, LOG_CHANNEL* parent)
    : flags_(flags & ~std::uint32_t{INSTALLED}), parent_(parent), name_(name ? name : "") {
    LOG_MANAGER::install_channel(*this);
}

void LOG_CHANNEL::set_flags(std::uint32_t flags) {
    LOG_MANAGER::lock();
    flags_.store((flags & ~std::uint32_t{INSTALLED}) | (get_flags() & INSTALLED),
                 std::memory_order_relaxed);
    LOG_MANAGER::unlock();
    LOG_MANAGER::update_handlers(*this);
}

std::uint32_t LOG_CHANNEL::log(LOGGABLE& root, std::uint32_t flags, const char* file,
                               std::int32_t line, const char* function, const char* date) {
    auto message = std::make_unique<LOG_MESSAGE>();
    message->code_file = file;
    message->function = function;
    message->file_date = date;
    message->code_line = line;
    message->channel = this;
    message->loggables.reset(root.release_next());
    message->setup_timestamp();
    message->flags = flags | get_flags();
    if (message->flags & RECORD_STACK) {
        DEBUGGER::get_current_stack(message->stack, SKIPPED_FRAMES, FRAME_LIMIT);
    }
    return LOG_MANAGER::log(std::move(message));
}

void* LOG_CHANNEL::get_handler_data(std::int32_t index) const {
    const auto slot = static_cast<std::size_t>(index);
    return index >= 0 && slot < handler_data_.size() ? handler_data_[slot] : nullptr;
}

void LOG_CHANNEL::set_handler_data(std::int32_t index, void* data) {
    if (index < 0) {
        return;
    }
    const auto slot = static_cast<std::size_t>(index);
    if (slot >= handler_data_.size()) {
        handler_data_.resize(slot + 1, nullptr);
    }
    handler_data_[slot] = data;
}

}  // namespace KVCORE
