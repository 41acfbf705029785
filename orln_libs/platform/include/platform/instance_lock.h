// INSTANCE_LOCK: one running instance per folder.
#ifndef PLATFORM_INSTANCE_LOCK_H
#define PLATFORM_INSTANCE_LOCK_H

#include <cstdint>

class DISK_MANAGER;

// Holds a lock file. The system lets go of it when the process ends, however it ends; the file
// itself stays, and carries the holder's process id as text. Programs that this one starts don't
// hold the lock.
class INSTANCE_LOCK {
public:
    INSTANCE_LOCK() = default;
    ~INSTANCE_LOCK() { release(); }
    INSTANCE_LOCK(const INSTANCE_LOCK&) = delete;
    INSTANCE_LOCK& operator=(const INSTANCE_LOCK&) = delete;

    // Takes the lock `name` in `folder` if nobody has it; doesn't wait. False if another holder
    // has it, which get_holder() then names, or if the file can't be made (get_holder() is 0 and
    // errno tells why). A lock that this object holds already is let go first.
    bool acquire(const DISK_MANAGER& folder, const char* name);

    void release();

    bool is_held() const { return descriptor >= 0; }

    // The process that holds the lock, as of the last acquire(); 0 if nobody or unknown.
    std::int32_t get_holder() const { return holder; }

private:
    int descriptor = -1;
    std::int32_t holder = 0;
};

#endif  // PLATFORM_INSTANCE_LOCK_H
