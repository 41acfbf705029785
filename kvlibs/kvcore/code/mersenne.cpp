#include "kvcore/mersenne.h"

#include <mutex>

namespace KVCORE {

MERSENNE::MERSENNE(std::uint32_t seed) {
    if (seed != 0) {
        set_seed(seed);
    }
}

void MERSENNE::set_seed(std::uint32_t seed) {
    mt19937_seed(state_, seed);
    mt19937_twist(state_);
    index_ = MT19937_WORDS;
}

std::uint32_t MERSENNE::random() {
    if (!thread_safe_) {
        return mt19937_temper(next_word());
    }
    std::lock_guard guard(mutex_);
    return mt19937_temper(next_word());
}

std::int32_t MERSENNE::random(std::int32_t n) {
    return static_cast<std::int32_t>(scale_random_bits(random() & 0x7FFFFFFFu, n));
}

std::uint32_t MERSENNE::get_state(std::int32_t i) const {
    return i >= 0 && i < MT19937_WORDS ? state_[static_cast<std::size_t>(i)] : 0;
}

void MERSENNE::set_state(std::int32_t i, std::uint32_t value) {
    if (i >= 0 && i < MT19937_WORDS) {
        state_[static_cast<std::size_t>(i)] = value;
    }
}

std::uint32_t MERSENNE::next_word() {
    if (index_ == 0) {
        mt19937_twist(state_);
        index_ = MT19937_WORDS;
    }
    return state_[--index_];
}

}  // namespace KVCORE
