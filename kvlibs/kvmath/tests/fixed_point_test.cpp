// The fixed-point scalar: arithmetic against wider integers, its functions against long double and
// against plain transcriptions of their algorithms.
#include "kvmath/fixed_point.h"
#include "kvmath/angle.h"
#include "kvmath/scalar.h"

#include "../code/fixed_point_tables.h"
#include "test_scalar.h"

#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <cstdint>
#include <limits>
#include <random>
#include <vector>

namespace {

using KVMATH::FIXED_POINT;
using KVMATH::SCALAR;

__extension__ using WIDE = __int128;

constexpr std::int64_t ONE = 0x10000000;
constexpr std::int64_t LARGEST = std::numeric_limits<std::int64_t>::max();
constexpr std::int64_t LOWEST = std::numeric_limits<std::int64_t>::min();

FIXED_POINT raw(std::int64_t value) {
    return FIXED_POINT::from_raw(value);
}

std::int64_t saturate(WIDE wide) {
    return wide > LARGEST ? LARGEST : wide < LOWEST ? LOWEST : static_cast<std::int64_t>(wide);
}

long double real(FIXED_POINT value) {
    return static_cast<long double>(value.get_raw()) / ONE;
}

// Values of all sizes and both signs, with those at the limits of the range and of fast ways.
std::vector<std::int64_t> get_samples(int count) {
    std::vector<std::int64_t> samples = {0,         1,         -1,           2,
                                         ONE,       -ONE,      ONE - 1,      ONE / 2,
                                         -ONE / 2,  LARGEST,   LARGEST - 1,  LOWEST + 1,
                                         LOWEST,    1LL << 34, -(1LL << 34), (1LL << 34) - 1,
                                         1LL << 35, 1LL << 62, -(1LL << 62)};
    std::mt19937_64 engine(1);
    for (int i = 0; i < count; ++i) {
        const auto value = static_cast<std::int64_t>(engine());
        samples.push_back(value >> (engine() % 64));
    }
    return samples;
}

TEST(fixed_point, arithmetic_is_that_of_wide_integers_and_saturates) {
    const std::vector<std::int64_t> samples = get_samples(400);
    for (const std::int64_t a : samples) {
        EXPECT_EQ((-raw(a)).get_raw(), saturate(-static_cast<WIDE>(a)));
        for (const std::int64_t b : samples) {
            ASSERT_EQ((raw(a) + raw(b)).get_raw(), saturate(static_cast<WIDE>(a) + b));
            ASSERT_EQ((raw(a) - raw(b)).get_raw(), saturate(static_cast<WIDE>(a) - b));
            // The product is the nearest step within the range.
            const WIDE product = static_cast<WIDE>(a) * b;
            const WIDE result = (raw(a) * raw(b)).get_raw();
            if (product > static_cast<WIDE>(LARGEST) * ONE) {
                ASSERT_EQ(result, LARGEST) << a << " * " << b;
            } else if (product < static_cast<WIDE>(LOWEST) * ONE) {
                ASSERT_EQ(result, LOWEST) << a << " * " << b;
            } else {
                const WIDE error = result * ONE - product;
                ASSERT_TRUE(error <= ONE / 2 && error >= -ONE / 2) << a << " * " << b;
            }
            if (b != 0) {
                ASSERT_EQ((raw(a) / raw(b)).get_raw(), saturate(static_cast<WIDE>(a) * ONE / b));
                ASSERT_EQ((raw(a) % raw(b)).get_raw(),
                          static_cast<std::int64_t>(static_cast<WIDE>(a) % b));
            }
            ASSERT_EQ(raw(a) < raw(b), a < b);
        }
    }
}

TEST(fixed_point, a_division_by_zero_has_an_answer) {
    EXPECT_EQ((FIXED_POINT(3) / 0).get_raw(), LARGEST);
    EXPECT_EQ((FIXED_POINT(-3) / 0).get_raw(), LOWEST);
    EXPECT_EQ(FIXED_POINT(0) / 0, 0);
    EXPECT_EQ(FIXED_POINT(3) % 0, 0);
}

TEST(fixed_point, conversions_keep_to_the_range) {
    EXPECT_EQ(FIXED_POINT(1).get_raw(), ONE);
    EXPECT_EQ(FIXED_POINT(std::uint8_t{200}).get_raw(), 200 * ONE);
    EXPECT_EQ(FIXED_POINT(std::numeric_limits<std::int32_t>::min()).get_raw(), LOWEST / 16);
    EXPECT_EQ(FIXED_POINT(std::numeric_limits<std::uint64_t>::max()).get_raw(), LARGEST);
    EXPECT_EQ(FIXED_POINT(LOWEST).get_raw(), LOWEST);
    EXPECT_EQ(FIXED_POINT(0.5).get_raw(), ONE / 2);
    EXPECT_EQ(FIXED_POINT(-1e30f).get_raw(), LOWEST);
    EXPECT_EQ(FIXED_POINT(3.5e10).get_raw(), LARGEST);
    EXPECT_EQ(FIXED_POINT(std::numeric_limits<double>::infinity()).get_raw(), LARGEST);
    EXPECT_EQ(FIXED_POINT(std::nan("")).get_raw(), 0);
    EXPECT_EQ(FIXED_POINT(std::ldexp(0.75, -28)).get_raw(), 1);
    EXPECT_EQ(FIXED_POINT(std::ldexp(-0.75, -28)).get_raw(), -1);
    EXPECT_EQ(raw(ONE / 4).to_double(), 0.25);
    EXPECT_EQ(raw(-3 * ONE).to_float(), -3.0f);
    EXPECT_EQ(raw(LOWEST).to_double(), std::ldexp(-1.0, 35));

    const std::array<std::array<double, 3>, 5> rows = {
        {{2.5, 2, 3}, {-2.5, -2, -3}, {2.49, 2, 2}, {-0.51, 0, -1}, {7, 7, 7}}};
    for (const auto& [value, truncated, rounded] : rows) {
        EXPECT_EQ(FIXED_POINT(value).truncate(), truncated);
        EXPECT_EQ(FIXED_POINT(value).round(), rounded);
    }
    EXPECT_EQ(static_cast<std::int32_t>(raw(-5 * ONE / 2)), -2);
    EXPECT_EQ(static_cast<std::int8_t>(FIXED_POINT(200)), 127);
    EXPECT_EQ(static_cast<std::uint32_t>(FIXED_POINT(-1)), 0u);
    EXPECT_EQ(raw(LARGEST).round(), std::int64_t{1} << 35);
    EXPECT_EQ(raw(LOWEST).round(), -(std::int64_t{1} << 35));
}

TEST(fixed_point, tables_are_their_rules_rounded) {
    for (int i = 0; i < 30; ++i) {
        EXPECT_EQ(KVMATH::ARC_TAN_TABLE[i], std::llround(std::atan(std::ldexp(1.0L, 1 - i)) * ONE));
    }
    for (int n = 1; n <= 35; ++n) {
        EXPECT_EQ(KVMATH::LOG_TWO_POWER_N_REVERSED[35 - n], std::llround(std::log(2.0L) * n * ONE));
    }
    EXPECT_EQ(KVMATH::LOG_TWO_POWER_N_REVERSED[35], 0);
    for (int n = 1; n <= 28; ++n) {
        EXPECT_EQ(KVMATH::LOG_ONE_PLUS_TWO_POWER_MINUS_N[n - 1],
                  std::llround(std::log1p(std::ldexp(1.0L, -n)) * ONE));
        EXPECT_EQ(KVMATH::LOG_ONE_OVER_ONE_MINUS_TWO_POWER_MINUS_N[n - 1],
                  std::llround(-std::log1p(-std::ldexp(1.0L, -n)) * ONE));
    }
    EXPECT_EQ(SCALAR<FIXED_POINT>::PI.get_raw(), 843314856);
    EXPECT_EQ(SCALAR<FIXED_POINT>::TWO_PI.get_raw(), 1686629713);
    EXPECT_EQ(SCALAR<FIXED_POINT>::HALF_PI.get_raw(), 421657428);
}

TEST(fixed_point, square_root_is_the_integer_root_of_the_shifted_value) {
    for (const std::int64_t value : get_samples(20000)) {
        const std::int64_t root = raw(value).square_root().get_raw();
        if (value <= 0) {
            ASSERT_EQ(root, 0);
            continue;
        }
        const WIDE square = static_cast<WIDE>(value) * ONE;
        ASSERT_LE(static_cast<WIDE>(root) * root, square) << value;
        ASSERT_GT(static_cast<WIDE>(root + 1) * (root + 1), square) << value;
    }
    EXPECT_EQ(KVMATH::get_square_root(FIXED_POINT(9)), 3);
}

// The two tables walked down as they stand, each entry tried again while it fits.
std::int64_t walk_exponential(std::int64_t x) {
    std::uint64_t r = ONE;
    if (x >= 0) {
        for (int n = 35; n >= 1; --n) {
            while (x >= KVMATH::LOG_TWO_POWER_N_REVERSED[35 - n]) {
                x -= KVMATH::LOG_TWO_POWER_N_REVERSED[35 - n];
                r <<= n;
            }
        }
        for (int k = 1; k <= 28; ++k) {
            while (x >= KVMATH::LOG_ONE_PLUS_TWO_POWER_MINUS_N[k - 1]) {
                x -= KVMATH::LOG_ONE_PLUS_TWO_POWER_MINUS_N[k - 1];
                r += r >> k;
            }
        }
        return r > static_cast<std::uint64_t>(LARGEST) ? LARGEST : static_cast<std::int64_t>(r);
    }
    for (int n = 28; n >= 1; --n) {
        while (-x >= KVMATH::LOG_TWO_POWER_N_REVERSED[35 - n]) {
            x += KVMATH::LOG_TWO_POWER_N_REVERSED[35 - n];
            r >>= n;
        }
    }
    for (int k = 1; k <= 28; ++k) {
        while (-x >= KVMATH::LOG_ONE_OVER_ONE_MINUS_TWO_POWER_MINUS_N[k - 1]) {
            x += KVMATH::LOG_ONE_OVER_ONE_MINUS_TWO_POWER_MINUS_N[k - 1];
            r -= r >> k;
        }
    }
    return static_cast<std::int64_t>(r);
}

TEST(fixed_point, exponential_walks_the_tables_within_the_range) {
    constexpr std::int64_t OVERFLOW_AT = 0x18429946E;
    constexpr std::int64_t UNDERFLOW_AT = -0x13687A9F2;
    EXPECT_EQ(FIXED_POINT(0).exponential(), 1);
    EXPECT_EQ(raw(OVERFLOW_AT).exponential().get_raw(), LARGEST);
    EXPECT_EQ(raw(LARGEST).exponential().get_raw(), LARGEST);
    EXPECT_EQ(raw(UNDERFLOW_AT - 1).exponential(), 0);
    EXPECT_EQ(raw(LOWEST).exponential(), 0);
    EXPECT_EQ(raw(UNDERFLOW_AT).exponential().get_raw(), 1);

    std::mt19937_64 engine(2);
    std::uniform_int_distribution<std::int64_t> inside(UNDERFLOW_AT, OVERFLOW_AT - 1);
    std::vector<std::int64_t> samples;
    for (int i = 0; i < 20000; ++i) {
        samples.push_back(inside(engine));
    }
    for (const std::int64_t entry : KVMATH::LOG_TWO_POWER_N_REVERSED) {
        for (std::int64_t x : {entry - 1, entry, entry + 1, 2 * entry, -entry - 1, -entry}) {
            if (x >= UNDERFLOW_AT && x < OVERFLOW_AT) {
                samples.push_back(x);
            }
        }
    }
    for (const std::int64_t x : samples) {
        const std::int64_t result = raw(x).exponential().get_raw();
        ASSERT_EQ(result, walk_exponential(x)) << x;
        const long double exact = std::exp(real(raw(x)));
        // Above 1 an error of the tables' roundings, below 1 one of the shifted-out bits.
        const long double tolerance = std::max(exact, 1.0L) * 1e-7L;
        ASSERT_NEAR(static_cast<double>(real(raw(result))), static_cast<double>(exact),
                    static_cast<double>(tolerance))
            << x;
    }
}

// Each step as it is written: both from the old values, in 32 bits.
void step_cordic(std::int32_t* x, std::int32_t* y, std::int32_t* angle, bool polarise) {
    for (int i = -1; i <= 28; ++i) {
        const std::int32_t across = i < 0 ? *y * 2 : *y >> i;
        const std::int32_t along = i < 0 ? *x * 2 : *x >> i;
        const bool forwards = polarise ? *y < 0 : *angle >= 0;
        *x += forwards ? -across : across;
        *y += forwards ? along : -along;
        *angle += forwards ? -KVMATH::ARC_TAN_TABLE[i + 1] : KVMATH::ARC_TAN_TABLE[i + 1];
    }
    *x = static_cast<std::int32_t>((*x * std::int64_t{583195932}) >> 31);
    *y = polarise ? *angle : static_cast<std::int32_t>((*y * std::int64_t{583195932}) >> 31);
}

TEST(fixed_point, cordic_takes_the_thirty_steps) {
    std::mt19937 engine(3);
    std::uniform_int_distribution<std::int32_t> component(-400000000, 400000000);
    std::uniform_int_distribution<std::int32_t> any_angle(-760000000, 760000000);
    for (int i = 0; i < 5000; ++i) {
        const std::int32_t x = component(engine);
        const std::int32_t y = component(engine);
        const std::int32_t angle = any_angle(engine);
        std::array<std::int32_t, 3> expected = {x, y, angle};
        std::array<std::int32_t, 2> result = {x, y};
        step_cordic(&expected[0], &expected[1], &expected[2], false);
        FIXED_POINT::perform_cordic_rotation(&result[0], &result[1], angle);
        ASSERT_EQ(result[0], expected[0]);
        ASSERT_EQ(result[1], expected[1]);

        expected = {std::abs(x), y, 0};
        result = {std::abs(x), y};
        step_cordic(&expected[0], &expected[1], &expected[2], true);
        FIXED_POINT::perform_cordic_polarization(&result[0], &result[1]);
        ASSERT_EQ(result[0], expected[0]);
        ASSERT_EQ(result[1], expected[1]);
    }
    // A vector far too long gives no result, but no fault either.
    std::int32_t x = std::numeric_limits<std::int32_t>::min();
    std::int32_t y = std::numeric_limits<std::int32_t>::max();
    FIXED_POINT::perform_cordic_rotation(&x, &y, 1);
    FIXED_POINT::perform_cordic_polarization(&x, &y);
}

TEST(fixed_point, sine_and_cosine_of_any_angle) {
    std::vector<std::int64_t> angles = {0,          1,          -1,         421657428,
                                        421657429,  843314856,  843314857,  843314855,
                                        1686629712, 1686629713, -421657428, -1686629713};
    std::mt19937_64 engine(4);
    for (int i = 0; i < 20000; ++i) {
        angles.push_back(static_cast<std::int64_t>(engine()) >> (24 + engine() % 20));
    }
    for (const std::int64_t angle : angles) {
        FIXED_POINT s;
        FIXED_POINT c;
        FIXED_POINT::sin_cos(raw(angle), &s, &c);
        // The angle comes round after the truncated two pi.
        const long double reduced = static_cast<long double>(angle % 1686629713) / ONE;
        ASSERT_NEAR(static_cast<double>(real(s)), static_cast<double>(std::sin(reduced)), 1e-7)
            << angle;
        ASSERT_NEAR(static_cast<double>(real(c)), static_cast<double>(std::cos(reduced)), 1e-7)
            << angle;
    }
    for (const std::int64_t whole_turns : {std::int64_t{0}, std::int64_t{1686629713}, LOWEST}) {
        FIXED_POINT s;
        FIXED_POINT c(7);
        FIXED_POINT::sin_cos(raw(whole_turns), &s, nullptr);
        EXPECT_EQ(c, 7);
        FIXED_POINT::sin_cos(raw(whole_turns), nullptr, &c);
        if (whole_turns != LOWEST) {
            EXPECT_LE(std::abs(s.get_raw()), 16);
            EXPECT_LE(std::abs(c.get_raw() - ONE), 16);
        }
    }
}

TEST(fixed_point, polar_coordinates_of_all_sizes_and_quadrants) {
    std::mt19937_64 engine(5);
    for (int i = 0; i < 20000; ++i) {
        const int shift = static_cast<int>(engine() % 36);
        const std::int64_t x = static_cast<std::int64_t>(engine()) >> shift;
        const std::int64_t y = static_cast<std::int64_t>(engine()) >> shift;
        FIXED_POINT radius;
        FIXED_POINT angle;
        FIXED_POINT::to_polar(raw(x), raw(y), &radius, &angle);
        const long double length =
            std::min(std::hypot(real(raw(x)), real(raw(y))), real(raw(LARGEST)));
        ASSERT_NEAR(static_cast<double>(real(radius) / length), 1.0,
                    static_cast<double>(2e-7L / std::min(1.0L, length)));
        ASSERT_NEAR(static_cast<double>(real(angle)),
                    static_cast<double>(std::atan2(real(raw(y)), real(raw(x)))),
                    static_cast<double>(2e-7L / std::min(1.0L, length)))
            << x << " " << y;
    }
    FIXED_POINT radius;
    FIXED_POINT angle(9);
    FIXED_POINT::to_polar(300, -400, &radius, &angle);
    EXPECT_NEAR(radius.to_double(), 500.0, 1e-4);
    EXPECT_NEAR(angle.to_double(), std::atan2(-4.0, 3.0), 1e-7);
    FIXED_POINT::to_polar(raw(LOWEST), raw(LOWEST), &radius, nullptr);
    EXPECT_EQ(radius.get_raw(), LARGEST);
    FIXED_POINT::to_polar(-2, 0, nullptr, &angle);
    EXPECT_LE(angle.get_raw(), 843314856);
    EXPECT_NEAR(angle.to_double(), 3.14159265, 1e-7);
    FIXED_POINT::to_polar(0, 0, &radius, &angle);
    EXPECT_EQ(radius, 0);
    EXPECT_EQ(angle, 0);
}

TEST(fixed_point, lengths_are_exact_and_never_overflow) {
    const std::vector<std::int64_t> samples = get_samples(2000);
    for (std::size_t i = 0; i + 3 < samples.size(); ++i) {
        long double sum = 0;
        for (std::size_t k = 0; k < 4; ++k) {
            sum += real(raw(samples[i + k])) * real(raw(samples[i + k]));
        }
        const long double length = std::min(std::sqrt(sum), real(raw(LARGEST)));
        const FIXED_POINT result = KVMATH::get_length(raw(samples[i]), raw(samples[i + 1]),
                                                      raw(samples[i + 2]), raw(samples[i + 3]));
        ASSERT_NEAR(static_cast<double>(real(result) - length), 0.0,
                    static_cast<double>(length * 1e-18L + 4e-9L));
    }
    EXPECT_EQ(KVMATH::get_length(raw(3), raw(4)).get_raw(), 5);
    EXPECT_EQ(KVMATH::get_length(raw(LOWEST), raw(LOWEST), raw(LOWEST), raw(LOWEST)).get_raw(),
              LARGEST);
}

TEST(fixed_point, arc_functions_invert_sine_and_cosine) {
    for (int i = -1000; i <= 1000; ++i) {
        const double cosine = i / 1000.0;
        EXPECT_NEAR(KVMATH::get_arc_cos(FIXED_POINT(cosine)).to_double(), std::acos(cosine), 2e-7);
    }
    EXPECT_EQ(KVMATH::get_arc_cos(FIXED_POINT(5)), KVMATH::get_arc_cos(FIXED_POINT(1)));
    // Short vectors have an angle as good as that of long ones.
    for (const double size : {1e-6, 1e-3, 1.0, 1e5, 3e10}) {
        const FIXED_POINT x(size * 0.6);
        const FIXED_POINT y(size * -0.8);
        EXPECT_NEAR(KVMATH::get_arc_tan2(y, x).to_double(),
                    std::atan2(y.to_double(), x.to_double()), 1e-7);
    }
    EXPECT_EQ(KVMATH::get_arc_tan2(FIXED_POINT(0), FIXED_POINT(0)), 0);
}

template <typename T>
class angle_test : public testing::Test {};
TYPED_TEST_SUITE(angle_test, KVMATH::TEST::SCALARS);

TYPED_TEST(angle_test, angles_come_round_and_take_the_short_way) {
    using T = TypeParam;
    constexpr double TWO_PI = 6.283185307;
    for (double angle = -20.0; angle < 20.0; angle += 0.37) {
        const double result = static_cast<double>(KVMATH::normalise_angle(T(angle)));
        EXPECT_GE(result, 0.0);
        EXPECT_LT(result, TWO_PI);
        EXPECT_NEAR(std::cos(result), std::cos(angle), 1e-5);
        EXPECT_NEAR(std::sin(result), std::sin(angle), 1e-5);
    }
    struct CASE {
        double a;
        double b;
        double f;
        double expected;
    };
    for (const CASE& c :
         {CASE{TWO_PI - 0.1, 0.1, 0.75, 0.05}, CASE{0.1, TWO_PI - 0.1, 0.75, TWO_PI - 0.05},
          CASE{1.0, 2.0, 0.25, 1.25}, CASE{-1.0, 9.0, 1.0, 9.0 - TWO_PI}}) {
        EXPECT_NEAR(static_cast<double>(KVMATH::interpolate_angle(T(c.a), T(c.b), T(c.f))),
                    c.expected, 1e-5);
    }
}

}  // namespace
