// Starts and stops the registered pools together.
#ifndef KVCORE_POOL_MANAGER_H
#define KVCORE_POOL_MANAGER_H

#include "kvcore/initialisable.h"
#include "kvcore/manual_singleton.h"

namespace KVCORE {

class MANAGED_POOL_ALLOCATOR;

// Keeps a chain of pools, newest first, which it doesn't own. For one thread.
class POOL_MANAGER : public INITIALISABLE_OBJECT, public MANUAL_SINGLETON<POOL_MANAGER> {
public:
    POOL_MANAGER() = default;
    ~POOL_MANAGER() override;

    // Links the pool at the head of the chain. A pool that comes after the manager was initialised
    // is initialised at once; its result is yielded. A pool that is in the chain already stays as
    // it is.
    RESULT remember_pool(MANAGED_POOL_ALLOCATOR* pool);
    // Takes a pool from the chain and leaves its count alone.
    void forget_pool(MANAGED_POOL_ALLOCATOR* pool) noexcept;

    // Reports for a development build; they show nothing here.
    void list_pools() const noexcept {}
    void report() const noexcept {}

protected:
    // Initialises each pool of the chain, and adds the results.
    RESULT do_initialisation() override;
    // Lowers each pool's count, shuts down those that reach 0, and unlinks the whole chain.
    RESULT do_shutdown() override;

private:
    bool is_remembered(const MANAGED_POOL_ALLOCATOR* pool) const noexcept;

    MANAGED_POOL_ALLOCATOR* head = nullptr;
};

}  // namespace KVCORE

#endif  // KVCORE_POOL_MANAGER_H
