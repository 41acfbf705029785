#include "platform/random_session.h"

#include <algorithm>
#include <ctime>

namespace {

constexpr std::uint32_t POSITION_MASK = 0x3FF;
constexpr std::int32_t LAST_POSITION = KVCORE::MT19937_WORDS - 1;
// A used-up block takes its next seed from this word.
constexpr std::size_t RESEED_WORD = 397;
constexpr std::int64_t DOUBLE_STEPS = 1000000;

}  // namespace

RANDOM_SESSION global_session;

RANDOM_SESSION::RANDOM_SESSION() {
    fill(static_cast<std::uint32_t>(std::time(nullptr)) << 10);
}

void RANDOM_SESSION::fill(std::uint32_t seed) {
    seed_ = seed;
    KVCORE::mt19937_seed(state_, seed);
    KVCORE::mt19937_twist(state_);
}

std::uint32_t RANDOM_SESSION::draw() {
    if (position_ < 0) {
        position_ = LAST_POSITION;
        fill(state_[RESEED_WORD] & ~POSITION_MASK);
    }
    const std::uint32_t word = state_[static_cast<std::size_t>(position_)];
    --position_;
    return KVCORE::mt19937_temper(word) & 0x7FFFFFFFu;
}

std::int32_t RANDOM_SESSION::get_random_number(std::int32_t a, std::int32_t b) {
    if (a == b) {
        return a;
    }
    const auto [lower, higher] = std::minmax(a, b);
    const std::int64_t range = std::int64_t{higher} - lower;
    return static_cast<std::int32_t>(lower + KVCORE::scale_random_bits(draw(), range));
}

double RANDOM_SESSION::get_random_double(double max) {
    const auto n = static_cast<double>(KVCORE::scale_random_bits(draw(), DOUBLE_STEPS));
    return n * max / DOUBLE_STEPS;
}

double RANDOM_SESSION::get_random_double(double a, double b) {
    const auto n = static_cast<double>(KVCORE::scale_random_bits(draw(), DOUBLE_STEPS));
    return a + (b - a) * n / DOUBLE_STEPS;
}

std::int32_t RANDOM_SESSION::get_random_index() const {
    return static_cast<std::int32_t>(seed_ | static_cast<std::uint32_t>(position_));
}

void RANDOM_SESSION::set_random_index(std::int32_t index) {
    const auto bits = static_cast<std::uint32_t>(index);
    position_ = std::min(static_cast<std::int32_t>(bits & POSITION_MASK), LAST_POSITION);
    fill(bits & ~POSITION_MASK);
}

std::int32_t get_random_number(std::int32_t n) {
    return global_session.get_random_number(0, n);
}

std::int32_t get_random_number(std::int32_t a, std::int32_t b) {
    return global_session.get_random_number(a, b);
}

double get_random_double(double max) {
    return global_session.get_random_double(max);
}

double get_random_double(double a, double b) {
    return global_session.get_random_double(a, b);
}

std::int32_t get_random_index() {
    return global_session.get_random_index();
}

void set_random_index(std::int32_t index) {
    global_session.set_random_index(index);
}
