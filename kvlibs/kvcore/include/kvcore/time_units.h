// The time units: small values that convert into each other and into ticks of the platform.
//
// A unit is made from its raw number explicitly, MILLISECONDS(500), and converts to every other
// unit on its own. Between integer units, neighbours differ by 1000; towards a larger unit the
// fraction is cut off, and a value beyond the target's range stays at the end of that range.
#ifndef KVCORE_TIME_UNITS_H
#define KVCORE_TIME_UNITS_H

#include <compare>
#include <concepts>
#include <cstdint>
#include <limits>

namespace KVCORE {

namespace TIME_DETAIL {

// `value` times `factor`, kept within the range of INT.
template <std::signed_integral INT>
constexpr INT scale_up(std::int64_t value, std::int64_t factor) {
    if (value > std::numeric_limits<INT>::max() / factor) {
        return std::numeric_limits<INT>::max();
    }
    if (value < std::numeric_limits<INT>::min() / factor) {
        return std::numeric_limits<INT>::min();
    }
    return static_cast<INT>(value * factor);
}

// `value` divided by `divisor`, kept within the range of INT.
template <std::signed_integral INT>
constexpr INT scale_down(std::int64_t value, std::int64_t divisor) {
    return scale_up<INT>(value / divisor, 1);
}

// A real number cut to an integer, kept within the range of INT; what is no number becomes 0.
template <std::signed_integral INT>
constexpr INT from_real(double value) {
    if (!(value == value)) {
        return 0;
    }
    // 2^31 or 2^63: exact as a double, and the first value beyond the range.
    constexpr double limit = -static_cast<double>(std::numeric_limits<INT>::min());
    if (value >= limit) {
        return std::numeric_limits<INT>::max();
    }
    if (value < -limit) {
        return std::numeric_limits<INT>::min();
    }
    return static_cast<INT>(value);
}

}  // namespace TIME_DETAIL

// The raw number of a unit, with its order and its sums.
template <typename UNIT, typename NUMBER>
class TIME_UNIT {
public:
    constexpr TIME_UNIT() = default;
    constexpr explicit TIME_UNIT(NUMBER value) : value_(value) {}

    constexpr NUMBER get_value() const { return value_; }

    friend constexpr auto operator<=>(const UNIT& a, const UNIT& b) {
        return a.get_value() <=> b.get_value();
    }
    friend constexpr bool operator==(const UNIT& a, const UNIT& b) {
        return a.get_value() == b.get_value();
    }
    friend constexpr UNIT operator+(const UNIT& a, const UNIT& b) {
        return UNIT(static_cast<NUMBER>(a.get_value() + b.get_value()));
    }
    friend constexpr UNIT operator-(const UNIT& a, const UNIT& b) {
        return UNIT(static_cast<NUMBER>(a.get_value() - b.get_value()));
    }

private:
    NUMBER value_ = 0;
};

class SECONDS;
class MILLISECONDS;
class MICROSECONDS;
class NANOSECONDS;

class SECONDS : public TIME_UNIT<SECONDS, double> {
public:
    using TIME_UNIT::TIME_UNIT;
    constexpr SECONDS(MILLISECONDS t);
    constexpr SECONDS(MICROSECONDS t);
    constexpr SECONDS(NANOSECONDS t);
};

class MILLISECONDS : public TIME_UNIT<MILLISECONDS, std::int32_t> {
public:
    using TIME_UNIT::TIME_UNIT;
    constexpr MILLISECONDS(SECONDS t);
    constexpr MILLISECONDS(MICROSECONDS t);
    constexpr MILLISECONDS(NANOSECONDS t);
};

class MICROSECONDS : public TIME_UNIT<MICROSECONDS, std::int64_t> {
public:
    using TIME_UNIT::TIME_UNIT;
    constexpr MICROSECONDS(SECONDS t);
    constexpr MICROSECONDS(MILLISECONDS t);
    constexpr MICROSECONDS(NANOSECONDS t);
};

class NANOSECONDS : public TIME_UNIT<NANOSECONDS, std::int64_t> {
public:
    using TIME_UNIT::TIME_UNIT;
    constexpr NANOSECONDS(SECONDS t);
    constexpr NANOSECONDS(MILLISECONDS t);
    constexpr NANOSECONDS(MICROSECONDS t);
};

constexpr SECONDS::SECONDS(MILLISECONDS t) : TIME_UNIT(t.get_value() / 1000.0) {
}
constexpr SECONDS::SECONDS(MICROSECONDS t)
    : TIME_UNIT(static_cast<double>(t.get_value()) / 1000000.0) {
}
constexpr SECONDS::SECONDS(NANOSECONDS t)
    : TIME_UNIT(static_cast<double>(t.get_value()) / 1000000000.0) {
}

constexpr MILLISECONDS::MILLISECONDS(SECONDS t)
    : TIME_UNIT(TIME_DETAIL::from_real<std::int32_t>(t.get_value() * 1000.0)) {
}
constexpr MILLISECONDS::MILLISECONDS(MICROSECONDS t)
    : TIME_UNIT(TIME_DETAIL::scale_down<std::int32_t>(t.get_value(), 1000)) {
}
constexpr MILLISECONDS::MILLISECONDS(NANOSECONDS t)
    : TIME_UNIT(TIME_DETAIL::scale_down<std::int32_t>(t.get_value(), 1000000)) {
}

constexpr MICROSECONDS::MICROSECONDS(SECONDS t)
    : TIME_UNIT(TIME_DETAIL::from_real<std::int64_t>(t.get_value() * 1000000.0)) {
}
constexpr MICROSECONDS::MICROSECONDS(MILLISECONDS t)
    : TIME_UNIT(TIME_DETAIL::scale_up<std::int64_t>(t.get_value(), 1000)) {
}
constexpr MICROSECONDS::MICROSECONDS(NANOSECONDS t)
    : TIME_UNIT(TIME_DETAIL::scale_down<std::int64_t>(t.get_value(), 1000)) {
}

constexpr NANOSECONDS::NANOSECONDS(SECONDS t)
    : TIME_UNIT(TIME_DETAIL::from_real<std::int64_t>(t.get_value() * 1000000000.0)) {
}
constexpr NANOSECONDS::NANOSECONDS(MILLISECONDS t)
    : TIME_UNIT(TIME_DETAIL::scale_up<std::int64_t>(t.get_value(), 1000000)) {
}
constexpr NANOSECONDS::NANOSECONDS(MICROSECONDS t)
    : TIME_UNIT(TIME_DETAIL::scale_up<std::int64_t>(t.get_value(), 1000)) {
}

// A reading or a difference of the platform's tick counter. A tick is one nanosecond.
class TICKS_POSIX {
public:
    constexpr TICKS_POSIX() = default;
    constexpr explicit TICKS_POSIX(std::int64_t ticks) : ticks_(ticks) {}
    constexpr TICKS_POSIX(SECONDS t) : ticks_(NANOSECONDS(t).get_value()) {}
    constexpr TICKS_POSIX(MILLISECONDS t) : ticks_(NANOSECONDS(t).get_value()) {}
    constexpr TICKS_POSIX(MICROSECONDS t) : ticks_(NANOSECONDS(t).get_value()) {}
    constexpr TICKS_POSIX(NANOSECONDS t) : ticks_(t.get_value()) {}

    constexpr operator SECONDS() const { return NANOSECONDS(ticks_); }
    constexpr operator MILLISECONDS() const { return NANOSECONDS(ticks_); }
    constexpr operator MICROSECONDS() const { return NANOSECONDS(ticks_); }
    constexpr operator NANOSECONDS() const { return NANOSECONDS(ticks_); }

    constexpr std::int64_t get_value() const { return ticks_; }

protected:
    std::int64_t ticks_ = 0;
};

// The quotient a / b. A divisor of 0 yields what the division of reals yields.
constexpr double get_ticks_ratio(const TICKS_POSIX& a, const TICKS_POSIX& b) {
    return static_cast<double>(a.get_value()) / static_cast<double>(b.get_value());
}

// Ticks of one clock. Readings of different clocks don't mix.
template <typename CLOCK>
class CLOCK_TICKS : public TICKS_POSIX {
public:
    using TICKS_POSIX::TICKS_POSIX;

    friend constexpr auto operator<=>(const CLOCK& a, const CLOCK& b) {
        return a.get_value() <=> b.get_value();
    }
    friend constexpr bool operator==(const CLOCK& a, const CLOCK& b) {
        return a.get_value() == b.get_value();
    }
    friend constexpr CLOCK operator+(const CLOCK& a, const CLOCK& b) {
        return CLOCK(a.get_value() + b.get_value());
    }
    friend constexpr CLOCK operator-(const CLOCK& a, const CLOCK& b) {
        return CLOCK(a.get_value() - b.get_value());
    }
};

// The monotonic clock of the machine.
class SYSTEM_TICKS : public CLOCK_TICKS<SYSTEM_TICKS> {
public:
    using CLOCK_TICKS::CLOCK_TICKS;
    // Reads the clock into `ticks`.
    static void get_current_value(SYSTEM_TICKS& ticks);
};

// Reads the same clock as SYSTEM_TICKS.
class PROCESS_TICKS : public CLOCK_TICKS<PROCESS_TICKS> {
public:
    using CLOCK_TICKS::CLOCK_TICKS;
    static void get_current_value(PROCESS_TICKS& ticks);
};

// Processor time that the calling thread has used.
class THREAD_TICKS : public CLOCK_TICKS<THREAD_TICKS> {
public:
    using CLOCK_TICKS::CLOCK_TICKS;
    static void get_current_value(THREAD_TICKS& ticks);
};

}  // namespace KVCORE

#endif  // KVCORE_TIME_UNITS_H
