#include <gtest/gtest.h>

#include <atomic>
#include <functional>
#include <mutex>
#include <thread>
#include <vector>

#include "kvcore/log_channel.h"
#include "kvcore/log_handler.h"
#include "kvcore/log_manager.h"
#include "kvcore/log_message.h"
#include "kvcore/sync_event.h"
#include "modules/threading/callback_request.h"
#include "modules/threading/mutex.h"
#include "modules/threading/thread_condition.h"
#include "modules/threading/thread_pool.h"
#include "platform/process_tools.h"

namespace {

using KVCORE::MILLISECONDS;
using KVCORE::SYNC_EVENT;

constexpr MILLISECONDS LONG{20000};

// A request made of functions; counts those that live.
class TEST_REQUEST : public THREAD_REQUEST {
public:
    explicit TEST_REQUEST(std::function<void(TEST_REQUEST&)> work) : work_(std::move(work)) {
        ++alive;
    }
    ~TEST_REQUEST() override { --alive; }

    void do_work(void* thread_data) override {
        data = thread_data;
        work_(*this);
    }
    bool can_discard(THREAD_REQUEST&) override { return discardable; }
    void cancel() override { cancelled = true; }

    bool discardable = false;
    std::atomic<bool> cancelled{false};
    void* data = nullptr;
    static inline std::atomic<int> alive{0};

private:
    std::function<void(TEST_REQUEST&)> work_;
};

void submit(std::function<void(TEST_REQUEST&)> work, std::int32_t type, std::int32_t id) {
    ASSERT_TRUE(THREAD_POOL::submit_request(new TEST_REQUEST(std::move(work)), type, id));
}

// Waits until the queue (type, id) has done all that it had.
void drain(std::int32_t type, std::int32_t id) {
    while (THREAD_POOL::get_thread_busy(type, id)) {
        orln_sleep(1);
    }
}

class ThreadPoolTest : public testing::Test {
protected:
    void SetUp() override {
        ASSERT_NE(THREAD_POOL::startup(1024, nullptr, nullptr, nullptr), nullptr);
    }
    void TearDown() override {
        THREAD_POOL::shutdown();
        EXPECT_EQ(TEST_REQUEST::alive, 0);
    }
};

TEST(MutexTest, TryLockFailsWhileHeld) {
    MUTEX mutex;
    EXPECT_EQ(mutex.lock(), 1);
    unsigned char taken = 1;
    std::thread([&] { taken = mutex.try_lock(); }).join();
    EXPECT_EQ(taken, 0);
    EXPECT_EQ(mutex.unlock(), 1);
    EXPECT_EQ(mutex.try_lock(), 1);
    mutex.unlock();
    {
        MUTEX_LOCKER guard(mutex);
        EXPECT_EQ(mutex.try_lock(), 0);
    }
    EXPECT_EQ(mutex.try_lock(), 1);
    mutex.unlock();
}

TEST(ThreadPoolWithoutInstanceTest, EverythingIsANoOp) {
    TEST_REQUEST request([](TEST_REQUEST&) {});
    EXPECT_FALSE(THREAD_POOL::submit_request(&request, 1, 1));
    EXPECT_EQ(THREAD_POOL::get_number_of_threads(), -1);
    EXPECT_EQ(THREAD_POOL::get_thread_id(), 0u);
    EXPECT_EQ(THREAD_POOL::get_thread_data(), nullptr);
    EXPECT_FALSE(THREAD_POOL::get_thread_busy(1, 1));
    THREAD_POOL::set_thread_data(&request);
    THREAD_POOL::wake(1, 1);
    THREAD_POOL::exit_threads();
    THREAD_POOL::shutdown();
    std::uint32_t id = 0;
    EXPECT_TRUE(THREAD_POOL::update(id));
    EXPECT_FALSE(request.is_exiting_thread());
    request.sleep();  // not in a queue
}

TEST_F(ThreadPoolTest, StartsOnceAndWithoutThreads) {
    EXPECT_EQ(THREAD_POOL::startup(0, nullptr, nullptr, nullptr), nullptr);
    EXPECT_NE(THREAD_POOL::get_instance(), nullptr);
    EXPECT_EQ(THREAD_POOL::get_number_of_threads(), 0);
    EXPECT_FALSE(THREAD_POOL::submit_request(nullptr, 1, 1));
    THREAD_POOL::wake(1, 1);
    THREAD_POOL::exit_threads();
    EXPECT_EQ(THREAD_POOL::get_number_of_threads(), 0);
}

TEST_F(ThreadPoolTest, OnePairRunsInOrderOnOneThread) {
    std::vector<int> order;
    std::vector<std::uint32_t> threads;
    for (int i = 0; i < 200; ++i) {
        submit(
            [&, i](TEST_REQUEST&) {
                order.push_back(i);
                threads.push_back(THREAD_POOL::get_thread_id());
            },
            5, -1);
    }
    EXPECT_EQ(THREAD_POOL::get_number_of_threads(), 1);
    drain(5, -1);
    THREAD_POOL::exit_threads();
    ASSERT_EQ(order.size(), 200u);
    for (int i = 0; i < 200; ++i) {
        ASSERT_EQ(order[static_cast<std::size_t>(i)], i);
        ASSERT_EQ(threads[static_cast<std::size_t>(i)], threads[0]);
    }
    EXPECT_NE(threads[0], THREAD_POOL::get_thread_id());
}

TEST_F(ThreadPoolTest, DifferentPairsRunAtOnce) {
    // Each needs the others to be at work before it ends.
    std::atomic<int> at_work{0};
    std::atomic<int> met{0};
    const std::pair<std::int32_t, std::int32_t> pairs[] = {{2, 7}, {1, 0}, {2, -1}, {-3, 5}};
    for (const auto& [type, id] : pairs) {
        submit(
            [&](TEST_REQUEST& request) {
                ++at_work;
                while (at_work < 4 && !request.is_exiting_thread()) {
                    orln_sleep(1);
                }
                ++met;
            },
            type, id);
    }
    EXPECT_EQ(THREAD_POOL::get_number_of_threads(), 4);
    for (const auto& [type, id] : pairs) {
        drain(type, id);
    }
    EXPECT_EQ(met, 4);
    // The queues stay, and serve again.
    submit([](TEST_REQUEST&) {}, 2, 7);
    EXPECT_EQ(THREAD_POOL::get_number_of_threads(), 4);
}

TEST_F(ThreadPoolTest, NewRequestsReplaceDiscardableOnes) {
    SYNC_EVENT started;
    SYNC_EVENT go;
    std::vector<int> done;
    std::atomic<bool> saw_cancel{false};
    auto* const current = new TEST_REQUEST([&](TEST_REQUEST& request) {
        started.set();
        go.await(LONG);
        saw_cancel = request.cancelled.load();
        done.push_back(0);
    });
    current->discardable = true;
    ASSERT_TRUE(THREAD_POOL::submit_request(current, 1, 1));
    ASSERT_TRUE(started.await(LONG));
    for (int i = 1; i <= 5; ++i) {
        auto* const waiting = new TEST_REQUEST([&done, i](TEST_REQUEST&) { done.push_back(i); });
        ASSERT_TRUE(THREAD_POOL::submit_request(waiting, 1, 1));
        waiting->discardable = i != 2 && i != 4;  // the thread is busy with `current`
    }
    EXPECT_TRUE(current->cancelled);
    // 1 and 3 went when their successors came; 5 goes now, at the tail.
    EXPECT_EQ(TEST_REQUEST::alive, 4);
    submit([&](TEST_REQUEST&) { done.push_back(6); }, 1, 1);
    EXPECT_EQ(TEST_REQUEST::alive, 4);
    go.set();
    drain(1, 1);
    THREAD_POOL::exit_threads();
    EXPECT_TRUE(saw_cancel);
    EXPECT_EQ(done, (std::vector<int>{0, 2, 4, 6}));
}

TEST_F(ThreadPoolTest, DelaysCountFromSubmission) {
    std::uint32_t started[3] = {};
    const std::uint32_t begin = get_ms_count();
    submit([](TEST_REQUEST&) { orln_sleep(400); }, 1, 1);
    for (int i = 0; i < 3; ++i) {
        auto* const request =
            new TEST_REQUEST([&started, i](TEST_REQUEST&) { started[i] = get_ms_count(); });
        request->delay_ms = i == 0 ? 500 : 400;
        ASSERT_TRUE(THREAD_POOL::submit_request(request, 1, 1));
        THREAD_POOL::wake(1, 1);  // doesn't shorten a delay
    }
    drain(1, 1);
    THREAD_POOL::exit_threads();
    EXPECT_GE(started[0] - begin, 499u);
    // About 100 ms were left of the first delay at its turn; those behind it had waited long
    // enough.
    EXPECT_LT(started[0] - begin, 850u);
    EXPECT_LT(started[2] - started[0], 350u);
}

TEST_F(ThreadPoolTest, ExitDoesNotWaitForADelay) {
    bool ran = false;
    auto* const request = new TEST_REQUEST([&](TEST_REQUEST&) { ran = true; });
    request->delay_ms = 60000;
    ASSERT_TRUE(THREAD_POOL::submit_request(request, 1, 1));
    orln_sleep(20);
    const std::uint32_t begin = get_ms_count();
    THREAD_POOL::exit_threads();
    EXPECT_LT(get_ms_count() - begin, 5000u);
    EXPECT_FALSE(ran);
    EXPECT_EQ(TEST_REQUEST::alive, 0);
}

TEST_F(ThreadPoolTest, EveryWakeReachesALongRunner) {
    // The launcher's pattern: work, sleep, work. A wake counts even if it comes before the sleep.
    std::atomic<int> rounds{0};
    SYNC_EVENT round_done;
    submit(
        [&](TEST_REQUEST& request) {
            while (!request.is_exiting_thread()) {
                ++rounds;
                round_done.set();
                request.sleep();
            }
        },
        2, -1);
    for (int i = 0; i < 500; ++i) {
        ASSERT_TRUE(round_done.await(LONG)) << i;
        // Often the runner isn't asleep yet.
        THREAD_POOL::wake(2, -1);
    }
    EXPECT_GE(rounds, 500);
    EXPECT_TRUE(THREAD_POOL::get_thread_busy(2, -1));
    THREAD_POOL::exit_threads();
    EXPECT_EQ(THREAD_POOL::get_number_of_threads(), 0);
    EXPECT_FALSE(THREAD_POOL::get_thread_busy(2, -1));
}

TEST_F(ThreadPoolTest, ExitDestroysWhatWaits) {
    SYNC_EVENT started;
    int ran = 0;
    submit(
        [&](TEST_REQUEST& request) {
            started.set();
            while (!request.is_exiting_thread()) {
                request.sleep();
            }
            request.sleep();  // returns at once now
        },
        1, 1);
    for (int i = 0; i < 3; ++i) {
        submit([&](TEST_REQUEST&) { ++ran; }, 1, 1);
    }
    ASSERT_TRUE(started.await(LONG));
    THREAD_POOL::exit_threads();
    EXPECT_EQ(ran, 0);
    EXPECT_EQ(TEST_REQUEST::alive, 0);
    // The pool serves on after it.
    submit([&](TEST_REQUEST&) { ++ran; }, 1, 1);
    drain(1, 1);
    THREAD_POOL::exit_threads();
    EXPECT_EQ(ran, 1);
}

TEST_F(ThreadPoolTest, WhatIsSubmittedDuringTheExitEndsAsWell) {
    SYNC_EVENT started;
    submit(
        [&](TEST_REQUEST& request) {
            started.set();
            while (!request.is_exiting_thread()) {
                request.sleep();
            }
            const auto wait_for_exit = [](TEST_REQUEST& other) {
                while (!other.is_exiting_thread()) {
                    other.sleep();
                }
            };
            submit(wait_for_exit, 1, 1);
            submit(wait_for_exit, 3, 3);
        },
        1, 1);
    ASSERT_TRUE(started.await(LONG));
    THREAD_POOL::exit_threads();
    EXPECT_EQ(THREAD_POOL::get_number_of_threads(), 0);
    EXPECT_EQ(TEST_REQUEST::alive, 0);
}

TEST_F(ThreadPoolTest, ExitReleasesConditions) {
    THREAD_CONDITION condition;
    auto gone = std::make_unique<THREAD_CONDITION>();
    gone.reset();
    SYNC_EVENT started;
    submit(
        [&](TEST_REQUEST&) {
            started.set();
            condition.await();
        },
        1, 1);
    ASSERT_TRUE(started.await(LONG));
    THREAD_POOL::exit_threads();
    EXPECT_FALSE(condition.await(MILLISECONDS(0)));
}

TEST_F(ThreadPoolTest, ThreadDataBelongsToTheThread) {
    int mine = 0;
    int theirs = 0;
    THREAD_POOL::set_thread_data(&mine);
    void* seen = &mine;
    submit(
        [&](TEST_REQUEST&) {
            seen = THREAD_POOL::get_thread_data();
            THREAD_POOL::set_thread_data(&theirs);
        },
        1, 1);
    drain(1, 1);
    EXPECT_EQ(THREAD_POOL::get_thread_data(), &mine);
    THREAD_POOL::exit_threads();
    EXPECT_EQ(seen, nullptr);
}

TEST_F(ThreadPoolTest, UpdateReportsAThreadThatDoesNotSleep) {
    std::atomic<std::uint32_t> worker{0};
    SYNC_EVENT started;
    SYNC_EVENT go;
    const auto stay_awake = [&](std::uint32_t watchdog_ms) {
        submit(
            [&, watchdog_ms](TEST_REQUEST& request) {
                request.set_delayed_time(watchdog_ms);
                worker = THREAD_POOL::get_thread_id();
                started.set();
                go.await(LONG);
            },
            1, 1);
        EXPECT_TRUE(started.await(LONG));
        orln_sleep(40);
    };
    const auto count_reports = [&worker] {
        int reports = 0;
        for (int i = 0; i < 4; ++i) {
            std::uint32_t id = 0;
            if (!THREAD_POOL::update(id)) {
                EXPECT_EQ(id, worker);
                ++reports;
            }
        }
        return reports;
    };
    submit([](TEST_REQUEST&) {}, 0, 0);
    drain(0, 0);
    stay_awake(30);
    EXPECT_EQ(count_reports(), 1);  // once for each time awake
    go.set();
    drain(1, 1);
    stay_awake(0);
    EXPECT_EQ(count_reports(), 0);
    go.set();
    drain(1, 1);
}

// Makes its queue look as if the last submission were more than a minute ago.
class AGEING_REQUEST : public THREAD_REQUEST {
public:
    void do_work(void*) override {
        MUTEX_LOCKER guard(queue->lock);
        queue->last_submit_ms -= 60001;
    }
};

TEST_F(ThreadPoolTest, UpdateRetiresAQueueWithoutWork) {
    std::atomic<std::uint32_t> thread{0};
    submit([&](TEST_REQUEST&) { thread = THREAD_POOL::get_thread_id(); }, 4, 4);
    submit([](TEST_REQUEST&) {}, 9, 9);
    drain(4, 4);
    drain(9, 9);
    std::uint32_t id = 0;
    for (int i = 0; i < 4; ++i) {
        EXPECT_TRUE(THREAD_POOL::update(id));
    }
    EXPECT_EQ(THREAD_POOL::get_number_of_threads(), 2);

    ASSERT_TRUE(THREAD_POOL::submit_request(new AGEING_REQUEST, 4, 4));
    drain(4, 4);
    for (int i = 0; i < 2; ++i) {
        EXPECT_TRUE(THREAD_POOL::update(id));
    }
    for (int i = 0; i < 2000 && THREAD_POOL::get_number_of_threads() > 1; ++i) {
        orln_sleep(1);
    }
    EXPECT_EQ(THREAD_POOL::get_number_of_threads(), 1);
    // The pair starts afresh.
    const std::uint32_t retired = thread;
    submit([&](TEST_REQUEST&) { thread = THREAD_POOL::get_thread_id(); }, 4, 4);
    EXPECT_EQ(THREAD_POOL::get_number_of_threads(), 2);
    drain(4, 4);
    EXPECT_NE(thread, retired);
}

// --- the pool's callbacks -----------------------------------------------------------------------

struct CALLBACK_LOG {
    std::mutex mutex;
    std::vector<std::int32_t> started;
    std::vector<void*> ended;
};

void* on_start(std::int32_t index, void* user) {
    auto& log = *static_cast<CALLBACK_LOG*>(user);
    const std::lock_guard guard(log.mutex);
    log.started.push_back(index);
    return reinterpret_cast<void*>(static_cast<std::intptr_t>(index) + 100);
}

void on_end(std::int32_t, void* user, void* thread_data) {
    auto& log = *static_cast<CALLBACK_LOG*>(user);
    const std::lock_guard guard(log.mutex);
    log.ended.push_back(thread_data);
}

void note_data(CALLBACK_REQUEST& request, void* thread_data) {
    *static_cast<void**>(request.get_user_1()) = thread_data;
    *static_cast<void**>(request.get_user_2()) = &request;
}

TEST(ThreadPoolCallbackTest, ThreadDataReachesRequestsAndTheEndCallback) {
    CALLBACK_LOG log;
    ASSERT_NE(THREAD_POOL::startup(256 * 1024, &on_start, &on_end, &log), nullptr);
    void* data = nullptr;
    void* request = nullptr;
    ASSERT_TRUE(THREAD_POOL::submit_request(new CALLBACK_REQUEST(nullptr), 0, 0));
    ASSERT_TRUE(
        THREAD_POOL::submit_request(new CALLBACK_REQUEST(&note_data, &data, &request), 0, 0));
    drain(0, 0);
    THREAD_POOL::shutdown();
    EXPECT_EQ(log.started, std::vector<std::int32_t>{0});
    EXPECT_EQ(data, reinterpret_cast<void*>(std::intptr_t{100}));
    EXPECT_NE(request, nullptr);
    EXPECT_EQ(log.ended, std::vector<void*>{data});
    EXPECT_EQ(THREAD_POOL::get_instance(), nullptr);
}

// --- with the log -------------------------------------------------------------------------------

KVCORE::LOG_CHANNEL pool_test_channel("POOL_TEST", KVCORE::LOG_CHANNEL::STREAM_OUTPUT);

class COUNTING_HANDLER : public KVCORE::LOG_HANDLER {
public:
    explicit COUNTING_HANDLER(int& count) : count_(count) {}
    std::uint32_t output(const KVCORE::LOG_MESSAGE&) override {
        ++count_;
        return 0;
    }

private:
    int& count_;
};

TEST_F(ThreadPoolTest, ExitHandlesTheMessagesOfThreadsThatWait) {
    int handled = 0;
    KVCORE::LOG_MANAGER::install_handler(std::make_unique<COUNTING_HANDLER>(handled));
    ASSERT_EQ(KVCORE::LOG_MANAGER::initialise(), 0);
    SYNC_EVENT started;
    for (std::int32_t id = 0; id < 3; ++id) {
        submit(
            [&](TEST_REQUEST& request) {
                started.set();
                do {
                    KVCORE_LOG(pool_test_channel, KVCORE::LOG_CHANNEL::SEVERE, << "waiting");
                } while (!request.is_exiting_thread());
            },
            1, id);
    }
    ASSERT_TRUE(started.await(LONG));
    orln_sleep(20);
    THREAD_POOL::exit_threads();
    EXPECT_GE(handled, 3);
    KVCORE::LOG_MANAGER::shutdown();
}

TEST_F(ThreadPoolTest, ManyThreadsSubmitWakeAndEnd) {
    std::atomic<int> done{0};
    std::vector<std::thread> submitters;
    for (int t = 0; t < 3; ++t) {
        submitters.emplace_back([&done, t] {
            for (int i = 0; i < 300; ++i) {
                submit([&done](TEST_REQUEST&) { ++done; }, i % 4, t % 2);
                THREAD_POOL::wake(i % 4, t % 2);
                THREAD_POOL::get_thread_busy(i % 4, 0);
            }
        });
    }
    for (auto& submitter : submitters) {
        submitter.join();
    }
    for (std::int32_t type = 0; type < 4; ++type) {
        drain(type, 0);
        drain(type, 1);
    }
    EXPECT_EQ(done, 900);
    EXPECT_EQ(THREAD_POOL::get_number_of_threads(), 8);
}

}  // namespace
