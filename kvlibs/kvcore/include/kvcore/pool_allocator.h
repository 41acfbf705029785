// Pools of fixed-size slots.
#ifndef KVCORE_POOL_ALLOCATOR_H
#define KVCORE_POOL_ALLOCATOR_H

#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

#include "kvcore/initialisable.h"
#include "kvcore/memory.h"

namespace KVCORE {

class LOG_CHANNEL;

// For the pools' reports. Disabled, and silent in this build.
extern LOG_CHANNEL POOL_REPORT_CHANNEL;

// Gives out slots of one size, cut from blocks of many. The chain of free slots lives inside the
// free slots, so giving out and taking back are a few instructions. Blocks are made on first use.
// No lock: a pool belongs to one thread. Slots that are still out when the pool resets or ends are
// gone with their blocks.
class POOL_ALLOCATOR_BASE : public INITIALISABLE_OBJECT {
public:
    // `name` isn't copied. A slot holds `slot_size` bytes, rounded up to whole pointers. With
    // `clear_on_allocation` each slot is zero when it is given out; with `release_when_empty` the
    // return of the last slot frees all blocks but the first.
    POOL_ALLOCATOR_BASE(const char* name, int slots_per_block, std::size_t slot_size,
                        bool clear_on_allocation, bool release_when_empty)
    noexcept;
    ~POOL_ALLOCATOR_BASE() override;

    // A slot, aligned for any type whose size the slot's is a multiple of. Null only for a pool of
    // no slots per block. The size asked for has no effect.
    void* alloc_slot(std::size_t size) {
        (void)size;
        if (!free_list) {
            add_block();
            if (!free_list) {
                return nullptr;
            }
        }
        void* const slot = free_list;
        free_list = *static_cast<void**>(slot);
        --free_count;
        ++used_count;
        if (clear_on_allocation) {
            MEMORY_LIBC::clear(slot, slot_size);
        }
        return slot;
    }
    // Takes a slot of this pool back; null does nothing.
    void free_slot(void* pointer) {
        if (!pointer) {
            return;
        }
        *static_cast<void**>(pointer) = free_list;
        free_list = pointer;
        ++free_count;
        --used_count;
        if (used_count == 0 && release_when_empty) {
            free_blocks(FREE_MODE::ALL_BUT_FIRST);
        }
    }

    // Frees every block: all slots given out are gone, and the pool starts anew.
    void reset();
    void free_all_memory();

    std::int32_t get_num_blocks() const noexcept;
    std::int32_t get_free_count() const noexcept { return free_count; }
    std::int32_t get_used_count() const noexcept { return used_count; }
    std::size_t get_slot_size() const noexcept { return slot_size; }
    const char* get_name() const noexcept { return name; }

    // Reports for a development build; they do nothing here.
    void validate_pool() const noexcept {}
    void report() const noexcept {}
    void report_detailed() const noexcept {}
    void report_csv() const noexcept {}

protected:
    RESULT do_initialisation() override;
    RESULT do_shutdown() override;

private:
    enum class FREE_MODE { ALL_BUT_FIRST = 0, ALL = 1 };

    void add_block();
    void prepare_block(void* block) noexcept;
    void free_blocks(FREE_MODE mode);

    std::unique_ptr<std::vector<void*>> blocks;
    std::size_t slot_size;
    int slots_per_block;
    void* free_list = nullptr;
    std::int32_t free_count = 0;
    std::int32_t used_count = 0;
    const char* name;
    bool clear_on_allocation;
    bool release_when_empty;
};

// A pool that POOL_MANAGER starts and stops, once it was told of it. The destructor takes the pool
// from the manager's chain.
class MANAGED_POOL_ALLOCATOR : public POOL_ALLOCATOR_BASE {
public:
    using POOL_ALLOCATOR_BASE::POOL_ALLOCATOR_BASE;
    ~MANAGED_POOL_ALLOCATOR() override;

private:
    friend class POOL_MANAGER;

    MANAGED_POOL_ALLOCATOR* next = nullptr;
};

}  // namespace KVCORE

#endif  // KVCORE_POOL_ALLOCATOR_H
