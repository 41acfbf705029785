// The seeded Mersenne Twister of the core library.
#ifndef KVCORE_MERSENNE_H
#define KVCORE_MERSENNE_H

#include <cstdint>

#include "kvcore/mt19937.h"
#include "kvcore/sync_mutex.h"

namespace KVCORE {

// Yields the MT19937 output for its seed in blocks of 624, each block's words in reverse order. One
// thread at a time, unless set_thread_safe(true) was called: then random() may be called from any.
class MERSENNE {
public:
    // Unseeded: set_seed comes before the first draw.
    MERSENNE() = default;
    // Seeded, unless `seed` is 0.
    explicit MERSENNE(std::uint32_t seed);

    void set_seed(std::uint32_t seed);

    // 32 random bits.
    std::uint32_t random();
    // From 0 to n - 1; for a negative n from n to 0.
    std::int32_t random(std::int32_t n);

    // Words 0 to 623 of the state. Beyond them get_state yields 0 and set_state does nothing.
    std::uint32_t get_state(std::int32_t i) const;
    void set_state(std::int32_t i, std::uint32_t value);

    // The words left in the block; set modulo 625.
    std::uint32_t get_index() const { return index_; }
    void set_index(std::uint32_t index) { index_ = index % (MT19937_WORDS + 1); }

    // Whether random() takes a lock. To be set before the object is shared.
    void set_thread_safe(bool thread_safe) { thread_safe_ = thread_safe; }

private:
    std::uint32_t next_word();

    MT19937_STATE state_{};
    std::uint32_t index_ = 0;
    bool thread_safe_ = false;
    SYNC_MUTEX mutex_;
};

}  // namespace KVCORE

#endif  // KVCORE_MERSENNE_H
