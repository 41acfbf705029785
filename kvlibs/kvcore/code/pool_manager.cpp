#include "kvcore/pool_manager.h"

#include "kvcore/pool_allocator.h"

namespace KVCORE {

POOL_MANAGER::~POOL_MANAGER() {
    while (head) {
        forget_pool(head);
    }
}

RESULT POOL_MANAGER::remember_pool(MANAGED_POOL_ALLOCATOR* pool) {
    if (is_remembered(pool)) {
        return RESULT();
    }
    pool->next = head;
    head = pool;
    return is_initialised() ? pool->initialise() : RESULT();
}

void POOL_MANAGER::forget_pool(MANAGED_POOL_ALLOCATOR* pool) noexcept {
    for (MANAGED_POOL_ALLOCATOR** link = &head; *link; link = &(*link)->next) {
        if (*link == pool) {
            *link = pool->next;
            pool->next = nullptr;
            return;
        }
    }
}

bool POOL_MANAGER::is_remembered(const MANAGED_POOL_ALLOCATOR* pool) const noexcept {
    const MANAGED_POOL_ALLOCATOR* linked = head;
    while (linked && linked != pool) {
        linked = linked->next;
    }
    return linked != nullptr;
}

RESULT POOL_MANAGER::do_initialisation() {
    RESULT result;
    for (MANAGED_POOL_ALLOCATOR* pool = head; pool; pool = pool->next) {
        result += pool->initialise();
    }
    return result;
}

RESULT POOL_MANAGER::do_shutdown() {
    RESULT result;
    while (head) {
        MANAGED_POOL_ALLOCATOR* const pool = head;
        forget_pool(pool);
        result += pool->shutdown();
    }
    return result;
}

}  // namespace KVCORE
