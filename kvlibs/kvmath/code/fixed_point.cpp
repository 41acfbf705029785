#include "kvmath/fixed_point.h"

#include "fixed_point_tables.h"
#include "kvmath/scalar.h"

#include <bit>

namespace KVMATH {

namespace {

constexpr std::int64_t PI_RAW = SCALAR<FIXED_POINT>::PI.get_raw();
constexpr std::int64_t TWO_PI_RAW = SCALAR<FIXED_POINT>::TWO_PI.get_raw();
constexpr std::int64_t HALF_PI_RAW = SCALAR<FIXED_POINT>::HALF_PI.get_raw();
constexpr std::int64_t ONE = 0x10000000;

constexpr std::int64_t EXPONENTIAL_OVERFLOW = 0x18429946E;   // ln(2^35)
constexpr std::int64_t EXPONENTIAL_UNDERFLOW = 0x13687A9F2;  // -ln(2^-28)

// One over the growth of a vector in the thirty steps, times 2^31.
constexpr std::int64_t CORDIC_GAIN_CORRECTION = 583195932;

std::int32_t correct_gain(std::int32_t value) {
    return static_cast<std::int32_t>((value * CORDIC_GAIN_CORRECTION) >> 31);
}

// Sums that wrap, so that a vector beyond the stated length gives a wrong one, and no more.
std::int32_t add(std::int32_t a, std::int32_t b) {
    return static_cast<std::int32_t>(static_cast<std::uint32_t>(a) + static_cast<std::uint32_t>(b));
}

std::int32_t subtract(std::int32_t a, std::int32_t b) {
    return static_cast<std::int32_t>(static_cast<std::uint32_t>(a) - static_cast<std::uint32_t>(b));
}

struct CORDIC_STATE {
    std::int32_t x;
    std::int32_t y;
    std::int32_t angle;

    // A micro-rotation by +angle for sign 0, by -angle for sign -1; "^ sign, - sign" negates
    // without a branch, which no predictor could learn.
    void turn(std::int32_t shifted_x, std::int32_t shifted_y, std::int32_t step,
              std::int32_t sign) {
        x = subtract(x, subtract(shifted_y ^ sign, sign));
        y = add(y, subtract(shifted_x ^ sign, sign));
        angle = subtract(angle, subtract(step ^ sign, sign));
    }
};

// The thirty steps; get_sign picks the direction of each from the state before it.
template <typename GET_SIGN>
inline void run_cordic(CORDIC_STATE& state, GET_SIGN get_sign) {
    state.turn(add(state.x, state.x), add(state.y, state.y), ARC_TAN_TABLE[0], get_sign(state));
    for (int i = 0; i <= 28; ++i) {
        state.turn(state.x >> i, state.y >> i, ARC_TAN_TABLE[i + 1], get_sign(state));
    }
}

std::uint64_t get_size(std::int64_t value) {
    return value < 0 ? 0 - static_cast<std::uint64_t>(value) : static_cast<std::uint64_t>(value);
}

// The largest n up to limit with ln(2^n) at or below x; x isn't negative and below ln(2^36). A
// walk down the table ends at the same n; this one begins beside it.
int find_power_of_two(std::int64_t x, int limit) {
    constexpr std::int64_t ONE_OVER_LN_2 = 1477;  // times 2^10, from below
    int n = static_cast<int>((x * ONE_OVER_LN_2) >> (10 + FIXED_POINT::FRACTION_BITS));
    if (n > limit) {
        n = limit;
    }
    while (n < limit && x >= LOG_TWO_POWER_N_REVERSED[35 - (n + 1)]) {
        ++n;
    }
    while (n > 0 && x < LOG_TWO_POWER_N_REVERSED[35 - n]) {
        --n;
    }
    return n;
}

// All ones if the condition holds, else 0. The functions below choose with such masks: their
// branches would follow the bits of the operands, which no predictor can learn.
std::uint64_t get_mask(bool condition) {
    return 0 - static_cast<std::uint64_t>(condition);
}

// e^x for x from 0 to below EXPONENTIAL_OVERFLOW. Pseudo-division: x is made up of logarithms
// of numbers by which a multiplication is a shift or a shift and a sum.
std::int64_t get_growth(std::int64_t exponent) {
    std::uint64_t result = ONE;
    for (int n = find_power_of_two(exponent, 35); n > 0; n = find_power_of_two(exponent, 1)) {
        exponent -= LOG_TWO_POWER_N_REVERSED[35 - n];
        result <<= n;
    }
    auto x = static_cast<std::uint64_t>(exponent);
    for (int k = 1; k <= 28; ++k) {
        // Twice an entry is no less than the one before it: no entry fits a second time.
        const auto entry = static_cast<std::uint64_t>(LOG_ONE_PLUS_TWO_POWER_MINUS_N[k - 1]);
        const std::uint64_t fits = get_mask(x >= entry);
        x -= entry & fits;
        result += (result >> k) & fits;
    }
    constexpr std::uint64_t LARGEST = 0x7FFFFFFFFFFFFFFF;
    return static_cast<std::int64_t>(result < LARGEST ? result : LARGEST);
}

// e^-x for x from 0 to EXPONENTIAL_UNDERFLOW.
std::int64_t get_decay(std::int64_t exponent) {
    std::uint64_t result = ONE;
    for (int n = find_power_of_two(exponent, 28); n > 0; n = find_power_of_two(exponent, 1)) {
        exponent -= LOG_TWO_POWER_N_REVERSED[35 - n];
        result >>= n;
    }
    auto x = static_cast<std::uint64_t>(exponent);
    const auto try_entry = [&](int k) {
        const auto entry =
            static_cast<std::uint64_t>(LOG_ONE_OVER_ONE_MINUS_TWO_POWER_MINUS_N[k - 1]);
        const std::uint64_t fits = get_mask(x >= entry);
        x -= entry & fits;
        result -= (result >> k) & fits;
    };
    // Up to here, twice an entry can be less than the one before it: it may fit a second time.
    constexpr int LAST_TWICE = 15;
    for (int k = 1; k <= LAST_TWICE; ++k) {
        try_entry(k);
        try_entry(k);
    }
    for (int k = LAST_TWICE + 1; k <= 28; ++k) {
        try_entry(k);
    }
    return static_cast<std::int64_t>(result);
}

}  // namespace

FIXED_POINT FIXED_POINT::square_root() const {
    if (raw_ <= 0) {
        return 0;
    }
    auto remainder = static_cast<std::uint64_t>(raw_);
    std::uint64_t root = 0;
    // The root of raw * 2^28 has 14 bits more than that of raw. In the first rounds the value's
    // own bits come in, in the last fourteen zeros.
    std::uint64_t trial = std::uint64_t{1} << ((63 - std::countl_zero(remainder)) & ~1);
    for (; trial != 0; trial >>= 2) {
        const std::uint64_t candidate = root + trial;
        const std::uint64_t fits = get_mask(remainder >= candidate);
        remainder -= candidate & fits;
        root = (root >> 1) + (trial & fits);
    }
    for (int i = 0; i < FRACTION_BITS / 2; ++i) {
        remainder <<= 2;
        const std::uint64_t candidate = (root << 2) | 1;
        const std::uint64_t fits = get_mask(remainder >= candidate);
        remainder -= candidate & fits;
        root = (root << 1) | (fits & 1);
    }
    return from_raw(static_cast<std::int64_t>(root));
}

FIXED_POINT FIXED_POINT::exponential() const {
    if (raw_ >= EXPONENTIAL_OVERFLOW) {
        return from_raw(MAX_RAW);
    }
    if (raw_ < -EXPONENTIAL_UNDERFLOW) {
        return 0;
    }
    return from_raw(raw_ >= 0 ? get_growth(raw_) : get_decay(-raw_));
}

void FIXED_POINT::sin_cos(FIXED_POINT angle, FIXED_POINT* sine, FIXED_POINT* cosine) {
    std::int64_t a = angle.raw_ % TWO_PI_RAW;
    if (a < 0) {
        a += TWO_PI_RAW;
    }
    const bool negate_sine = a > PI_RAW;
    if (negate_sine) {
        a = TWO_PI_RAW - a;
    }
    const bool negate_cosine = a > HALF_PI_RAW;
    if (negate_cosine) {
        a = PI_RAW - a;
    }
    auto x = static_cast<std::int32_t>(ONE);
    std::int32_t y = 0;
    perform_cordic_rotation(&x, &y, static_cast<std::int32_t>(a));
    if (sine != nullptr) {
        *sine = from_raw(negate_sine ? -y : y);
    }
    if (cosine != nullptr) {
        *cosine = from_raw(negate_cosine ? -x : x);
    }
}

void FIXED_POINT::to_polar(FIXED_POINT x, FIXED_POINT y, FIXED_POINT* radius, FIXED_POINT* angle) {
    std::uint64_t size_x = get_size(x.raw_);
    std::uint64_t size_y = get_size(y.raw_);
    const int bits = 64 - std::countl_zero(size_x | size_y);
    const int halvings = bits > FRACTION_BITS ? bits - FRACTION_BITS : 0;
    auto length = static_cast<std::int32_t>(size_x >> halvings);
    auto theta = static_cast<std::int32_t>(size_y >> halvings);
    if (bits != 0) {
        perform_cordic_polarization(&length, &theta);
    }
    if (radius != nullptr) {
        *radius = from_raw(saturate(static_cast<WIDE>(length) << halvings));
    }
    if (angle != nullptr) {
        std::int64_t result = theta > 0 ? theta : 0;
        if (x.raw_ < 0) {
            result = PI_RAW - result;
        }
        *angle = from_raw(y.raw_ < 0 ? -result : result);
    }
}

void FIXED_POINT::perform_cordic_rotation(std::int32_t* x, std::int32_t* y, std::int32_t angle) {
    CORDIC_STATE state{*x, *y, angle};
    run_cordic(state, [](const CORDIC_STATE& s) { return s.angle >> 31; });
    *x = correct_gain(state.x);
    *y = correct_gain(state.y);
}

void FIXED_POINT::perform_cordic_polarization(std::int32_t* x, std::int32_t* y) {
    CORDIC_STATE state{*x, *y, 0};
    run_cordic(state, [](const CORDIC_STATE& s) { return ~(s.y >> 31); });
    *x = correct_gain(state.x);
    *y = state.angle;
}

}  // namespace KVMATH
