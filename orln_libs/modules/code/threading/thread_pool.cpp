#include "modules/threading/thread_pool.h"

#include <unistd.h>

#include <algorithm>
#include <utility>

#include "kvcore/log_manager.h"
#include "kvcore/time_units.h"
#include "platform/process_tools.h"

namespace {

// A queue without work for longer than this is retired by update().
constexpr std::uint32_t IDLE_LIMIT_MS = 60000;

}  // namespace

std::atomic<THREAD_POOL*> THREAD_POOL::instance_{nullptr};

THREAD_POOL::THREAD_POOL(std::int32_t stack_size, START_CALLBACK start_callback,
                         END_CALLBACK end_callback, void* user)
    : stack_size_(stack_size),
      start_callback_(start_callback),
      end_callback_(end_callback),
      user_(user) {
    pthread_key_create(&data_key_, nullptr);
}

THREAD_POOL::~THREAD_POOL() {
    pthread_key_delete(data_key_);
}

THREAD_POOL* THREAD_POOL::startup(std::int32_t stack_size, START_CALLBACK start_callback,
                                  END_CALLBACK end_callback, void* user) {
    if (get_instance()) {
        return nullptr;
    }
    auto* const pool = new THREAD_POOL(stack_size, start_callback, end_callback, user);
    instance_.store(pool, std::memory_order_release);
    return pool;
}

void THREAD_POOL::shutdown() {
    exit_threads();
    delete instance_.exchange(nullptr, std::memory_order_acq_rel);
}

THREAD_POOL* THREAD_POOL::get_instance() {
    return instance_.load(std::memory_order_acquire);
}

THREAD_POOL::QUEUES::iterator THREAD_POOL::find_position(std::int32_t type, std::int32_t id) {
    return std::lower_bound(queues_.begin(), queues_.end(), std::pair(type, id),
                            [](const std::unique_ptr<THREAD_QUEUE>& queue, const auto& pair) {
                                return std::pair(queue->type, queue->id) < pair;
                            });
}

THREAD_QUEUE* THREAD_POOL::find_queue(std::int32_t type, std::int32_t id) {
    const auto position = find_position(type, id);
    const bool found =
        position != queues_.end() && (*position)->type == type && (*position)->id == id;
    return found ? position->get() : nullptr;
}

bool THREAD_POOL::submit_request(THREAD_REQUEST* request, std::int32_t type, std::int32_t id) {
    THREAD_POOL* const pool = get_instance();
    if (!pool || !request) {
        return false;
    }
    MUTEX_LOCKER pool_guard(pool->lock_);
    const std::uint32_t now = get_ms_count();
    request->submit_time_ms = now;
    THREAD_QUEUE* queue = pool->find_queue(type, id);
    if (!queue) {
        const auto position = pool->find_position(type, id);
        queue =
            pool->queues_.insert(position, std::make_unique<THREAD_QUEUE>(pool, type, id))->get();
        pool->start_thread(*queue);
    }
    MUTEX_LOCKER queue_guard(queue->lock);
    queue->append(request, now);
    queue->signal();
    return true;
}

void THREAD_POOL::start_thread(THREAD_QUEUE& queue) {
    pthread_attr_t attributes;
    pthread_attr_init(&attributes);
    pthread_attr_setdetachstate(&attributes, PTHREAD_CREATE_DETACHED);
    if (stack_size_ > 0) {
        // Refused below the system's minimum, which leaves the default in force.
        pthread_attr_setstacksize(&attributes, static_cast<std::size_t>(stack_size_));
    }
    // Counted before it runs, so that exit_threads also waits for a thread that has only just been
    // made. The new thread reads its index under the pool's lock.
    pthread_t thread{};
    if (pthread_create(&thread, &attributes, &THREAD_POOL::thread_function, &queue) == 0) {
        queue.thread_index = thread_count_++;
    }
    pthread_attr_destroy(&attributes);
}

void THREAD_POOL::wake(std::int32_t type, std::int32_t id) {
    THREAD_POOL* const pool = get_instance();
    if (!pool) {
        return;
    }
    MUTEX_LOCKER pool_guard(pool->lock_);
    THREAD_QUEUE* const queue = pool->find_queue(type, id);
    if (!queue) {
        return;
    }
    {
        MUTEX_LOCKER queue_guard(queue->lock);
        queue->signalled = true;
    }
    // Without the queue's lock, or the thread would wake only to wait for it. The pool's lock keeps
    // the queue alive.
    pthread_cond_signal(&queue->wake);
}

bool THREAD_POOL::get_thread_busy(std::int32_t type, std::int32_t id) {
    THREAD_POOL* const pool = get_instance();
    if (!pool) {
        return false;
    }
    MUTEX_LOCKER pool_guard(pool->lock_);
    THREAD_QUEUE* const queue = pool->find_queue(type, id);
    if (!queue) {
        return false;
    }
    MUTEX_LOCKER queue_guard(queue->lock);
    return queue->current || queue->head;
}

std::int32_t THREAD_POOL::get_number_of_threads() {
    THREAD_POOL* const pool = get_instance();
    if (!pool) {
        return -1;
    }
    MUTEX_LOCKER guard(pool->lock_);
    return pool->thread_count_;
}

std::uint32_t THREAD_POOL::get_thread_id() {
    return get_instance() ? static_cast<std::uint32_t>(gettid()) : 0;
}

void THREAD_POOL::set_thread_data(void* data) {
    if (THREAD_POOL* const pool = get_instance()) {
        pthread_setspecific(pool->data_key_, data);
    }
}

void* THREAD_POOL::get_thread_data() {
    THREAD_POOL* const pool = get_instance();
    return pool ? pthread_getspecific(pool->data_key_) : nullptr;
}

void* THREAD_POOL::thread_function(void* argument) {
    THREAD_QUEUE* const queue = static_cast<THREAD_QUEUE*>(argument);
    THREAD_POOL* const pool = queue->pool;
    std::int32_t index = 0;
    {
        MUTEX_LOCKER guard(pool->lock_);
        index = queue->thread_index;
    }
    void* const thread_data =
        pool->start_callback_ ? pool->start_callback_(index, pool->user_) : nullptr;
    pool->run_requests(*queue, thread_data);
    if (pool->end_callback_) {
        pool->end_callback_(index, pool->user_, thread_data);
    }
    // Nobody submits to an exiting queue: it lost its name together with the flag.
    queue->destroy_waiting();
    MUTEX_LOCKER guard(pool->lock_);
    delete queue;
    // The last use of the pool: shutdown may go on from here.
    --pool->thread_count_;
    return nullptr;
}

void THREAD_POOL::run_requests(THREAD_QUEUE& queue, void* thread_data) {
    MUTEX_LOCKER guard(queue.lock);
    queue.thread_id = static_cast<std::uint32_t>(gettid());
    while (!queue.exiting) {
        THREAD_REQUEST* const request = queue.take_first();
        if (!request) {
            queue.wait_for_signal();
            continue;
        }
        queue.set_awake();
        const std::uint32_t waited = get_ms_count() - request->submit_time_ms;
        // A request whose delay the exit cuts short isn't begun any more.
        const bool due =
            request->delay_ms <= waited || queue.wait_for_delay(request->delay_ms - waited);
        if (due) {
            queue.lock.unlock();
            request->do_work(thread_data);
            queue.lock.lock();
        }
        queue.current = nullptr;
        // Without the lock: what a destructor does is the request's own business.
        queue.lock.unlock();
        delete request;
        queue.lock.lock();
    }
}

bool THREAD_POOL::update(std::uint32_t& thread_id) {
    KVCORE::LOG_MANAGER::process_queue();
    THREAD_POOL* const pool = get_instance();
    return pool ? pool->look_at_next_queue(thread_id) : true;
}

bool THREAD_POOL::look_at_next_queue(std::uint32_t& thread_id) {
    MUTEX_LOCKER pool_guard(lock_);
    if (queues_.empty()) {
        return true;
    }
    if (update_index_ >= queues_.size()) {
        update_index_ = 0;
    }
    const auto position = queues_.begin() + static_cast<std::ptrdiff_t>(update_index_);
    THREAD_QUEUE& queue = **position;
    const std::uint32_t now = get_ms_count();
    bool idle = false;
    {
        MUTEX_LOCKER queue_guard(queue.lock);
        idle = !queue.current && !queue.head && now - queue.last_submit_ms > IDLE_LIMIT_MS;
        if (!idle && queue.awake_since_ms != 0 && queue.watchdog_ms != 0 &&
            now - queue.awake_since_ms >= queue.watchdog_ms) {
            queue.awake_since_ms = 0;
            thread_id = queue.thread_id;
            ++update_index_;
            return false;
        }
    }
    if (idle) {
        // No request can come between: that needs the pool's lock.
        retire(position);
    } else {
        ++update_index_;
    }
    return true;
}

void THREAD_POOL::retire(QUEUES::iterator position) {
    std::unique_ptr<THREAD_QUEUE> queue = std::move(*position);
    queues_.erase(position);
    bool has_thread = false;
    {
        MUTEX_LOCKER guard(queue->lock);
        queue->request_exit();
        has_thread = queue->thread_index >= 0;
    }
    if (has_thread) {
        // The thread deletes it, but not before it gets the pool's lock.
        queue.release();
    }
}

void THREAD_POOL::exit_threads() {
    if (THREAD_POOL* const pool = get_instance()) {
        pool->end_all_threads();
    }
}

void THREAD_POOL::end_all_threads() {
    lock_.lock();
    {
        MUTEX_LOCKER guard(conditions_lock_);
        for (THREAD_CONDITION* const condition : conditions_) {
            condition->set();
        }
    }
    for (;;) {
        // In each turn: a thread that is still at work may submit, and so make new ones.
        while (!queues_.empty()) {
            retire(queues_.end() - 1);
        }
        if (thread_count_ == 0) {
            break;
        }
        lock_.unlock();
        KVCORE::LOG_MANAGER::process_queue();
        orln_sleep(1);
        lock_.lock();
    }
    lock_.unlock();
}

void THREAD_POOL::add_condition(THREAD_CONDITION* condition) {
    if (THREAD_POOL* const pool = get_instance()) {
        MUTEX_LOCKER guard(pool->conditions_lock_);
        pool->conditions_.push_back(condition);
    }
}

void THREAD_POOL::remove_condition(THREAD_CONDITION* condition) {
    if (THREAD_POOL* const pool = get_instance()) {
        MUTEX_LOCKER guard(pool->conditions_lock_);
        std::erase(pool->conditions_, condition);
    }
}
