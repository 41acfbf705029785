// An allocation never fails back to the caller, and pools hand out every slot once.
#include "kvcore/memory.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <set>
#include <vector>

#include "kvcore/pool_allocator.h"
#include "kvcore/pool_manager.h"

// The sanitizers end the process themselves where the C library returns null, unless told not to.
extern "C" const char* __asan_default_options() {
    return "allocator_may_return_null=1";
}
extern "C" const char* __tsan_default_options() {
    return "allocator_may_return_null=1";
}

namespace {

using KVCORE::MEMORY_BASE;
using KVCORE::MEMORY_LIBC;

// Beyond what any allocator has; volatile, so that the compiler doesn't warn of it.
volatile std::size_t impossible_size = SIZE_MAX / 4;

// Frees nothing, and counts in the order of the calls.
class USELESS_HANDLER : public KVCORE::MEMORY_HANDLER {
public:
    void handle_out_of_memory(std::size_t size, std::int32_t attempt) override {
        if (size == impossible_size && attempt == ++calls) {
            std::fprintf(stderr, "attempt %d\n", attempt);
        }
    }

private:
    std::int32_t calls = 0;
};

TEST(Memory, AllocatesClearsAndReallocates) {
    auto* block = static_cast<unsigned char*>(MEMORY_LIBC::allocate(64, MEMORY_LIBC::CLEAR));
    EXPECT_TRUE(std::all_of(block, block + 64, [](unsigned char b) { return b == 0; }));
    MEMORY_LIBC::set(block, 0xAB, 64);
    block = static_cast<unsigned char*>(MEMORY_LIBC::reallocate(block, 4096));
    EXPECT_EQ(64, std::count(block, block + 64, 0xAB)) << "contents stay";
    block = static_cast<unsigned char*>(MEMORY_LIBC::reallocate(block, 8192, MEMORY_LIBC::CLEAR));
    EXPECT_EQ(8192, std::count(block, block + 8192, 0)) << "the whole block, old contents included";
    EXPECT_EQ(nullptr, MEMORY_LIBC::reallocate(block, 0));
    EXPECT_EQ(nullptr, MEMORY_LIBC::reallocate(nullptr, 0));
    MEMORY_LIBC::free(nullptr);
    EXPECT_EQ(0, MEMORY_BASE::validate_ptr(reinterpret_cast<void*>(8), 1));
}

TEST(Memory, CopiesComparesAndTakesNullForNothing) {
    char text[] = "abcdef";
    MEMORY_LIBC::copy_overlapped(text + 1, text, 5);
    EXPECT_STREQ("aabcde", text);
    MEMORY_LIBC::copy(text, "xyz", 3);
    EXPECT_STREQ("xyzcde", text);
    EXPECT_LT(MEMORY_LIBC::compare("a\x01", "a\xFF", 2), 0) << "bytes are unsigned";
    MEMORY_LIBC::copy(nullptr, nullptr, 0);
    MEMORY_LIBC::clear(nullptr, 0);
    EXPECT_EQ(0, MEMORY_LIBC::compare(nullptr, nullptr, 0));
}

TEST(Memory, HandlerIsReplacedAndYielded) {
    USELESS_HANDLER first;
    USELESS_HANDLER second;
    EXPECT_EQ(nullptr, MEMORY_BASE::set_memory_handler(&first));
    EXPECT_EQ(&first, MEMORY_BASE::set_memory_handler(&second));
    EXPECT_EQ(&second, MEMORY_BASE::set_memory_handler(nullptr));
}

TEST(MemoryDeathTest, WithoutHandlerTheFirstFailureStopsTheProcess) {
    EXPECT_DEATH((void)MEMORY_LIBC::allocate(impossible_size), "process aborted: 'omem'");
    EXPECT_DEATH((void)MEMORY_LIBC::allocate(impossible_size, MEMORY_LIBC::CLEAR), "'omem'");
    EXPECT_DEATH((void)MEMORY_LIBC::reallocate(nullptr, impossible_size), "'omem'");
}

TEST(MemoryDeathTest, HandlerIsAskedThirtyOneTimes) {
    EXPECT_DEATH(
        {
            USELESS_HANDLER handler;
            MEMORY_BASE::set_memory_handler(&handler);
            (void)MEMORY_LIBC::allocate(impossible_size);
        },
        testing::AllOf(testing::HasSubstr("attempt 1\n"), testing::HasSubstr("attempt 31\n"),
                       testing::HasSubstr("'omem'"),
                       testing::Not(testing::HasSubstr("attempt 32"))));
}

struct RECORD {
    std::uint64_t words[3];
};

class POOL_TEST : public testing::Test {
protected:
    KVCORE::POOL_ALLOCATOR_BASE pool{"test", 4, sizeof(RECORD), false, false};
};

TEST_F(POOL_TEST, GivesSlotsInOrderOfAddressAndGrowsByBlocks) {
    EXPECT_EQ(0, pool.get_num_blocks());
    char* const first = static_cast<char*>(pool.alloc_slot(sizeof(RECORD)));
    for (int i = 1; i < 4; ++i) {
        EXPECT_EQ(first + i * static_cast<int>(sizeof(RECORD)), pool.alloc_slot(sizeof(RECORD)));
    }
    EXPECT_EQ(1, pool.get_num_blocks());
    EXPECT_EQ(0, pool.get_free_count());
    void* const fifth = pool.alloc_slot(0);
    EXPECT_EQ(2, pool.get_num_blocks());
    EXPECT_EQ(3, pool.get_free_count());
    EXPECT_EQ(5, pool.get_used_count());
    pool.free_slot(fifth);
    EXPECT_EQ(fifth, pool.alloc_slot(0)) << "the last slot to come back goes out first";
    pool.free_slot(nullptr);
    EXPECT_EQ(5, pool.get_used_count());
}

TEST_F(POOL_TEST, ResetForgetsEverySlot) {
    for (int i = 0; i < 9; ++i) {
        std::memset(pool.alloc_slot(0), 0xEE, sizeof(RECORD));
    }
    EXPECT_EQ(3, pool.get_num_blocks());
    pool.reset();
    EXPECT_EQ(0, pool.get_used_count());
    EXPECT_EQ(0, pool.get_free_count());
    EXPECT_EQ(0, pool.get_num_blocks());
    EXPECT_NE(nullptr, pool.alloc_slot(0));
    EXPECT_EQ(1, pool.get_num_blocks());
    pool.free_all_memory();
    EXPECT_EQ(0, pool.get_num_blocks());
}

TEST(Pool, ReleaseWhenEmptyKeepsTheFirstBlockWhole) {
    KVCORE::POOL_ALLOCATOR_BASE pool("release", 3, 40, false, true);
    std::vector<void*> slots;
    for (int i = 0; i < 8; ++i) {
        slots.push_back(pool.alloc_slot(40));
    }
    const std::set<void*> first_block(slots.begin(), slots.begin() + 3);
    for (void* slot : slots) {
        pool.free_slot(slot);
    }
    EXPECT_EQ(1, pool.get_num_blocks());
    EXPECT_EQ(3, pool.get_free_count());
    std::set<void*> again;
    for (int i = 0; i < 3; ++i) {
        again.insert(pool.alloc_slot(40));
    }
    EXPECT_EQ(first_block, again);
    EXPECT_EQ(1, pool.get_num_blocks());
}

TEST(Pool, ClearsSlotsAndRoundsTheirSizeUp) {
    KVCORE::POOL_ALLOCATOR_BASE pool("clear", 8, 13, true, false);
    EXPECT_EQ(16u, pool.get_slot_size());
    auto* slot = static_cast<unsigned char*>(pool.alloc_slot(13));
    std::memset(slot, 0x55, 13);
    pool.free_slot(slot);
    slot = static_cast<unsigned char*>(pool.alloc_slot(13));
    EXPECT_EQ(13, std::count(slot, slot + 13, 0)) << "the chain's link is cleared as well";

    KVCORE::POOL_ALLOCATOR_BASE small("small", 2, 1, false, false);
    EXPECT_EQ(sizeof(void*), small.get_slot_size());
    KVCORE::POOL_ALLOCATOR_BASE none("none", 0, 8, false, false);
    EXPECT_EQ(nullptr, none.alloc_slot(8));
}

// What a pool gives out is what came back or was never out, whatever the order.
TEST(Pool, NeverGivesASlotTwice) {
    KVCORE::POOL_ALLOCATOR_BASE pool("random", 16, 24, false, true);
    std::vector<void*> held;
    std::set<void*> out;
    std::uint32_t state = 12345;
    for (int step = 0; step < 20000; ++step) {
        state = state * 1664525u + 1013904223u;
        if ((state >> 16) % 5 < (step / 4000 % 2 == 0 ? 3u : 2u) || held.empty()) {
            void* const slot = pool.alloc_slot(24);
            ASSERT_TRUE(out.insert(slot).second);
            held.push_back(slot);
        } else {
            const std::size_t i = (state >> 8) % held.size();
            out.erase(held[i]);
            pool.free_slot(held[i]);
            held[i] = held.back();
            held.pop_back();
        }
        ASSERT_EQ(static_cast<std::int32_t>(held.size()), pool.get_used_count());
    }
}

TEST(PoolManager, StartsAndStopsPoolsByCount) {
    KVCORE::POOL_MANAGER manager;
    EXPECT_EQ(&manager, KVCORE::POOL_MANAGER::get_instance());
    KVCORE::MANAGED_POOL_ALLOCATOR early("early", 4, 8, false, false);
    KVCORE::MANAGED_POOL_ALLOCATOR late("late", 4, 8, false, false);
    manager.remember_pool(&early);
    manager.remember_pool(&early);
    EXPECT_FALSE(early.is_initialised());
    manager.initialise();
    manager.initialise();
    EXPECT_EQ(1, early.get_initialised_count());
    manager.remember_pool(&late);
    EXPECT_EQ(1, late.get_initialised_count()) << "initialised at once";
    late.initialise();
    (void)early.alloc_slot(8);
    (void)late.alloc_slot(8);
    manager.shutdown();
    EXPECT_EQ(1, early.get_num_blocks()) << "one start is still counted";
    manager.shutdown();
    EXPECT_EQ(0, early.get_num_blocks());
    EXPECT_EQ(1, late.get_num_blocks()) << "someone else holds this one";
    EXPECT_EQ(1, late.get_initialised_count());
    manager.initialise();
    EXPECT_FALSE(early.is_initialised()) << "the chain was unlinked";
    {
        KVCORE::MANAGED_POOL_ALLOCATOR brief("brief", 4, 8, false, false);
        manager.remember_pool(&brief);
    }
    manager.shutdown();  // would touch `brief` if it were still in the chain
}

}  // namespace
