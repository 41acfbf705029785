// Counted start and stop: however many parts of a program start a service, the first one
// initialises it and the last one to stop shuts it down.
#ifndef KVCORE_INITIALISABLE_H
#define KVCORE_INITIALISABLE_H

#include <cstdint>

#include "kvcore/result.h"

namespace KVCORE {

// The pattern for an object. Starting and stopping belong to one thread.
class INITIALISABLE_OBJECT {
public:
    INITIALISABLE_OBJECT(const INITIALISABLE_OBJECT&) = delete;
    INITIALISABLE_OBJECT& operator=(const INITIALISABLE_OBJECT&) = delete;

    // Counts a start; the first runs do_initialisation and yields its result. A first start that
    // fails leaves the count at 0, so that it needs no shutdown and the next one tries again.
    RESULT initialise() {
        if (++initialised_count > 1) {
            return RESULT();
        }
        const RESULT result = do_initialisation();
        if (result != 0) {
            initialised_count = 0;
        }
        return result;
    }
    // Counts a stop; the last runs do_shutdown and yields its result. A stop without a start does
    // nothing.
    RESULT shutdown() {
        if (initialised_count == 0) {
            return RESULT();
        }
        --initialised_count;
        return initialised_count == 0 ? do_shutdown() : RESULT();
    }
    bool is_initialised() const { return initialised_count > 0; }
    std::int32_t get_initialised_count() const { return initialised_count; }

protected:
    INITIALISABLE_OBJECT() = default;
    virtual ~INITIALISABLE_OBJECT() = default;

    virtual RESULT do_initialisation() = 0;
    virtual RESULT do_shutdown() = 0;

private:
    std::int32_t initialised_count = 0;
};

// The same for a class that has no object: T, which derives from this, offers static
// do_initialisation and do_shutdown, open to this class.
template <typename T>
class INITIALISABLE_CLASS {
public:
    static RESULT initialise() {
        if (++initialised_count > 1) {
            return RESULT();
        }
        const RESULT result = T::do_initialisation();
        if (result != 0) {
            initialised_count = 0;
        }
        return result;
    }
    static RESULT shutdown() {
        if (initialised_count == 0) {
            return RESULT();
        }
        --initialised_count;
        return initialised_count == 0 ? T::do_shutdown() : RESULT();
    }
    static bool is_initialised() { return initialised_count > 0; }
    static std::int32_t get_initialised_count() { return initialised_count; }

private:
    static inline std::int32_t initialised_count = 0;
};

}  // namespace KVCORE

#endif  // KVCORE_INITIALISABLE_H
