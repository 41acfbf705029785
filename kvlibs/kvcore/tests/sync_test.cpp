#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <memory>
#include <mutex>
#include <thread>
#include <vector>

#include "kvcore/atomic_queue.h"
#include "kvcore/semaphore.h"
#include "kvcore/sync_event.h"
#include "kvcore/sync_mutex.h"
#include "kvcore/thread.h"

namespace KVCORE {
namespace {

constexpr MILLISECONDS SHORT{20};
constexpr MILLISECONDS LONG{20000};

TEST(SyncMutexTest, KeepsOthersOutAndLetsItsHolderIn) {
    SYNC_MUTEX mutex;
    int counter = 0;
    const auto count = [&] {
        for (int i = 0; i < 20000; ++i) {
            std::lock_guard outer(mutex);
            std::lock_guard inner(mutex);
            ++counter;
        }
    };
    std::thread other(count);
    count();
    other.join();
    EXPECT_EQ(counter, 40000);
}

TEST(SyncEventTest, TwoSetsSatisfyOneWait) {
    SYNC_EVENT event;
    EXPECT_FALSE(event.await(SHORT));
    event.set();
    event.set();
    EXPECT_TRUE(event.await(SHORT));
    EXPECT_FALSE(event.await(SHORT));
    EXPECT_FALSE(event.await(MILLISECONDS(0)));
    event.unlock();
    event.lock();
    EXPECT_FALSE(event.await(MILLISECONDS(-1)));
}

TEST(SyncEventTest, EachSetReleasesOneWaiter) {
    SYNC_EVENT event;
    SYNC_EVENT released;
    std::atomic<int> count{0};
    std::vector<std::thread> waiters;
    for (int i = 0; i < 3; ++i) {
        waiters.emplace_back([&] {
            event.await();
            ++count;
            released.set();
        });
    }
    for (int i = 1; i <= 3; ++i) {
        event.set();
        ASSERT_TRUE(released.await(LONG));
        EXPECT_EQ(count.load(), i);
    }
    for (auto& waiter : waiters) {
        waiter.join();
    }
}

TEST(SemaphoreTest, CountsUpToItsMaximum) {
    SEMAPHORE_POSIX semaphore(SEMAPHORE_POSIX::MAXIMUM + 5);
    EXPECT_FALSE(semaphore.increment());
    for (int i = 0; i < SEMAPHORE_POSIX::MAXIMUM; ++i) {
        ASSERT_TRUE(semaphore.decrement(MILLISECONDS(0)));
    }
    EXPECT_FALSE(semaphore.decrement(MILLISECONDS(0)));
    EXPECT_FALSE(semaphore.decrement(SHORT));
    std::thread other([&] { semaphore.increment(); });
    EXPECT_TRUE(semaphore.decrement(LONG));
    other.join();
}

TEST(AtomicQueueTest, PassesEverythingOnceAndInOrder) {
    ATOMIC_QUEUE<int> queue;
    constexpr int count = 20000;
    std::vector<int> first;
    std::vector<int> second;
    std::atomic<int> taken{0};
    const auto consume = [&](std::vector<int>& got) {
        int item = 0;
        while (taken.load() < count) {
            if (queue.pop(item, MILLISECONDS(5))) {
                got.push_back(item);
                ++taken;
            }
        }
    };
    std::thread one(consume, std::ref(first));
    std::thread two(consume, std::ref(second));
    for (int i = 0; i < count; ++i) {
        queue.push(i);
    }
    one.join();
    two.join();
    EXPECT_TRUE(std::is_sorted(first.begin(), first.end()));
    EXPECT_TRUE(std::is_sorted(second.begin(), second.end()));
    std::vector<int> all(first);
    all.insert(all.end(), second.begin(), second.end());
    std::sort(all.begin(), all.end());
    ASSERT_EQ(all.size(), static_cast<std::size_t>(count));
    for (int i = 0; i < count; ++i) {
        ASSERT_EQ(all[static_cast<std::size_t>(i)], i);
    }
}

TEST(AtomicQueueTest, HoldsMoreThanTheSemaphoreCounts) {
    ATOMIC_QUEUE<std::unique_ptr<int>> queue;
    std::unique_ptr<int> item;
    EXPECT_FALSE(queue.pop(item, ATOMIC_QUEUE_BASE::DONT_WAIT));
    EXPECT_FALSE(queue.pop(item, SHORT));
    constexpr int count = SEMAPHORE_POSIX::MAXIMUM + 10;
    for (int i = 0; i < count; ++i) {
        queue.push(std::make_unique<int>(i));
    }
    for (int i = 0; i < count; ++i) {
        ASSERT_TRUE(queue.pop(item, i % 2 ? ATOMIC_QUEUE_BASE::DONT_WAIT : LONG));
        ASSERT_EQ(*item, i);
    }
    EXPECT_FALSE(queue.pop(item, SHORT));
}

class RECORDING_THREAD : public THREAD {
public:
    ~RECORDING_THREAD() override { join(); }

    SYNC_EVENT go;
    std::vector<std::pair<char, STATE>> steps;
    bool was_current = false;
    bool was_application = true;

protected:
    void run() override {
        steps.emplace_back('r', get_state());
        was_current = is_current();
        was_application = is_application();
        go.await();
    }
    void thread_starting() override { steps.emplace_back('s', get_state()); }
    void thread_finished() override { steps.emplace_back('f', get_state()); }
};

TEST(ThreadTest, GoesThroughItsStates) {
    ASSERT_EQ(THREAD::initialise(), 0);
    EXPECT_TRUE(THREAD::is_application());
    EXPECT_GE(THREAD::get_cpu_count(), 1);
    RECORDING_THREAD thread;
    EXPECT_FALSE(thread.is_valid());
    thread.join();  // never started: nothing to wait for
    ASSERT_TRUE(thread.start());
    EXPECT_FALSE(thread.start());
    EXPECT_FALSE(thread.is_current());

    std::thread second_joiner([&] {
        thread.join();
        EXPECT_EQ(thread.get_state(), THREAD::FINISHED);
    });
    thread.go.set();
    thread.join();
    second_joiner.join();
    EXPECT_TRUE(thread.is_valid());
    EXPECT_TRUE(thread.was_current);
    EXPECT_FALSE(thread.was_application);
    const std::vector<std::pair<char, THREAD::STATE>> expected{
        {'s', THREAD::STARTING}, {'r', THREAD::RUNNING}, {'f', THREAD::FINISHED}};
    EXPECT_EQ(thread.steps, expected);
    THREAD::shutdown();
    EXPECT_FALSE(THREAD::is_application());
}

TEST(ThreadTest, SleepsAtLeastItsTime) {
    const auto before = std::chrono::steady_clock::now();
    THREAD::sleep(MICROSECONDS(15000));
    EXPECT_GE(std::chrono::steady_clock::now() - before, std::chrono::milliseconds(15));
}

}  // namespace
}  // namespace KVCORE
