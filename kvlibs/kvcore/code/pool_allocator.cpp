#include "kvcore/pool_allocator.h"

#include <limits>

#include "kvcore/log_channel.h"
#include "kvcore/pool_manager.h"

namespace KVCORE {

LOG_CHANNEL POOL_REPORT_CHANNEL("POOL_REPORT_CHANNEL");

namespace {

// Room for the chain's link, and no slot at an odd address.
std::size_t round_up_slot(std::size_t size) noexcept {
    constexpr std::size_t link = sizeof(void*);
    return size <= link ? link : (size + link - 1) / link * link;
}

}  // namespace

POOL_ALLOCATOR_BASE::POOL_ALLOCATOR_BASE(const char* pool_name, int slot_count, std::size_t size,
                                         bool clear, bool release) noexcept
    : slot_size(round_up_slot(size)),
      slots_per_block(slot_count > 0 ? slot_count : 0),
      name(pool_name),
      clear_on_allocation(clear),
      release_when_empty(release) {
}

POOL_ALLOCATOR_BASE::~POOL_ALLOCATOR_BASE() {
    reset();
}

void POOL_ALLOCATOR_BASE::add_block() {
    if (slots_per_block == 0) {
        return;
    }
    const std::size_t count = static_cast<std::size_t>(slots_per_block);
    // A product out of range asks for what no allocator has, and ends there.
    const std::size_t size = slot_size > std::numeric_limits<std::size_t>::max() / count
                                 ? std::numeric_limits<std::size_t>::max()
                                 : slot_size * count;
    if (!blocks) {
        blocks = std::make_unique<std::vector<void*>>();
    }
    blocks->push_back(MEMORY_LIBC::allocate(size));
    prepare_block(blocks->back());
    free_count += slots_per_block;
}

void POOL_ALLOCATOR_BASE::prepare_block(void* block) noexcept {
    // From the last slot to the first, so that the chain runs in the order of the addresses.
    char* const first = static_cast<char*>(block);
    for (std::size_t i = static_cast<std::size_t>(slots_per_block); i-- > 0;) {
        void* const slot = first + i * slot_size;
        *static_cast<void**>(slot) = free_list;
        free_list = slot;
    }
}

void POOL_ALLOCATOR_BASE::free_blocks(FREE_MODE mode) {
    const std::size_t kept = mode == FREE_MODE::ALL || blocks->empty() ? 0 : 1;
    for (std::size_t i = kept; i < blocks->size(); ++i) {
        MEMORY_LIBC::free((*blocks)[i]);
    }
    blocks->resize(kept);
    free_list = nullptr;
    free_count = 0;
    used_count = 0;
    if (kept == 1) {
        prepare_block(blocks->front());
        free_count = slots_per_block;
    }
    if (mode == FREE_MODE::ALL) {
        blocks.reset();
    }
}

void POOL_ALLOCATOR_BASE::reset() {
    if (blocks) {
        free_blocks(FREE_MODE::ALL);
    }
}

void POOL_ALLOCATOR_BASE::free_all_memory() {
    reset();
}

std::int32_t POOL_ALLOCATOR_BASE::get_num_blocks() const noexcept {
    return blocks ? static_cast<std::int32_t>(blocks->size()) : 0;
}

RESULT POOL_ALLOCATOR_BASE::do_initialisation() {
    return RESULT();
}

RESULT POOL_ALLOCATOR_BASE::do_shutdown() {
    reset();
    return RESULT();
}

MANAGED_POOL_ALLOCATOR::~MANAGED_POOL_ALLOCATOR() {
    if (POOL_MANAGER* const manager = POOL_MANAGER::get_instance()) {
        manager->forget_pool(this);
    }
}

}  // namespace KVCORE
