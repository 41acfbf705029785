#include <gtest/gtest.h>

#include <array>
#include <cstdint>
#include <random>
#include <thread>
#include <vector>

#include "kvcore/mersenne.h"
#include "kvcore/processor.h"
#include "kvcore/random.h"
#include "kvcore/timing.h"

namespace KVCORE {
namespace {

TEST(MersenneTest, YieldsThePublishedOutputInReversedBlocks) {
    for (const std::uint32_t seed : {1u, 5489u, 0xFFFFFFFFu}) {
        std::mt19937 published(seed);
        MERSENNE generator(seed);
        for (int block = 0; block < 3; ++block) {
            std::array<std::uint32_t, 624> words{};
            for (auto& word : words) {
                word = static_cast<std::uint32_t>(published());
            }
            for (std::size_t i = words.size(); i-- > 0;) {
                ASSERT_EQ(generator.random(), words[i]) << "seed " << seed << " block " << block;
            }
        }
    }
}

TEST(MersenneTest, SeedZeroLeavesItUnseeded) {
    MERSENNE unseeded(0);
    EXPECT_EQ(unseeded.get_state(0), 0u);
    EXPECT_EQ(unseeded.get_index(), 0u);

    MERSENNE seeded;
    seeded.set_seed(0);
    std::mt19937 published(0);
    published.discard(623);
    EXPECT_EQ(seeded.random(), static_cast<std::uint32_t>(published()));
}

TEST(MersenneTest, StateAndIndexKeepTheirRanges) {
    MERSENNE generator(7);
    EXPECT_EQ(generator.get_state(624), 0u);
    EXPECT_EQ(generator.get_state(-1), 0u);
    generator.set_state(624, 1);
    generator.set_state(-1, 1);
    generator.set_state(623, 99);
    EXPECT_EQ(generator.get_state(623), 99u);
    generator.set_index(625 + 3);
    EXPECT_EQ(generator.get_index(), 3u);

    // Another generator with the same state and index goes on alike, over the end of the block.
    MERSENNE copy;
    for (std::int32_t i = 0; i < 624; ++i) {
        copy.set_state(i, generator.get_state(i));
    }
    copy.set_index(3);
    for (int i = 0; i < 10; ++i) {
        ASSERT_EQ(copy.random(), generator.random());
    }
}

TEST(RandomTest, NumbersStayInTheirRangesAndReachTheirEnds) {
    RANDOM random(42);
    std::array<int, 5> seen{};
    for (int i = 0; i < 2000; ++i) {
        const std::int32_t n = random.get_random_number(5);
        ASSERT_GE(n, 0);
        ASSERT_LT(n, 5);
        ++seen[static_cast<std::size_t>(n)];
        const std::int32_t between = random.get_random_number(10, -10);
        ASSERT_GE(between, -10);
        ASSERT_LT(between, 10);
        const double real = random.get_random_real(3.0, 2.0);
        ASSERT_GE(real, 2.0);
        ASSERT_LT(real, 3.0);
        const std::int32_t wide = random.get_random_number(INT32_MIN, INT32_MAX);
        ASSERT_LT(wide, INT32_MAX);
    }
    for (const int count : seen) {
        EXPECT_GT(count, 300);
    }
}

TEST(RandomTest, RealsAreMillionths) {
    RANDOM random(9);
    MERSENNE same(9);
    EXPECT_DOUBLE_EQ(random.get_random_real(2.0), same.random(1000000) * 2.0 / 1000000);
}

TEST(RandomTest, UnseededObjectsDiffer) {
    RANDOM::static_seed();
    RANDOM a;
    RANDOM b;
    EXPECT_NE(a.get_seed(), b.get_seed());
    EXPECT_EQ(RANDOM(a.get_seed()).random(), a.random());
}

TEST(RandomTest, ThreadSafeGeneratorDrawsEachWordOnce) {
    RANDOM random(3);
    random.set_thread_safe(true);
    std::vector<std::uint32_t> first;
    std::vector<std::uint32_t> second;
    const auto draw = [&random](std::vector<std::uint32_t>& words) {
        for (int i = 0; i < 5000; ++i) {
            words.push_back(random.random());
        }
    };
    std::thread other(draw, std::ref(second));
    draw(first);
    other.join();

    first.insert(first.end(), second.begin(), second.end());
    std::sort(first.begin(), first.end());
    RANDOM alone(3);
    std::vector<std::uint32_t> expected;
    for (int i = 0; i < 10000; ++i) {
        expected.push_back(alone.random());
    }
    std::sort(expected.begin(), expected.end());
    EXPECT_EQ(first, expected);
}

TEST(TimeUnitsTest, ConvertIntoEachOther) {
    EXPECT_EQ(MILLISECONDS(MICROSECONDS(1999)).get_value(), 1);
    EXPECT_EQ(MILLISECONDS(MICROSECONDS(-1999)).get_value(), -1);
    EXPECT_EQ(MICROSECONDS(NANOSECONDS(1999)).get_value(), 1);
    EXPECT_EQ(MILLISECONDS(NANOSECONDS(5999999)).get_value(), 5);
    EXPECT_EQ(NANOSECONDS(MILLISECONDS(7)).get_value(), 7000000);
    EXPECT_EQ(MICROSECONDS(SECONDS(1.5)).get_value(), 1500000);
    EXPECT_DOUBLE_EQ(SECONDS(MILLISECONDS(250)).get_value(), 0.25);
    EXPECT_DOUBLE_EQ(SECONDS(NANOSECONDS(1)).get_value(), 1e-9);
}

TEST(TimeUnitsTest, StayAtTheEndsOfTheirRanges) {
    EXPECT_EQ(MILLISECONDS(SECONDS(1e9)).get_value(), INT32_MAX);
    EXPECT_EQ(MILLISECONDS(SECONDS(-1e9)).get_value(), INT32_MIN);
    EXPECT_EQ(MILLISECONDS(NANOSECONDS(INT64_MAX)).get_value(), INT32_MAX);
    EXPECT_EQ(NANOSECONDS(MICROSECONDS(INT64_MAX)).get_value(), INT64_MAX);
    EXPECT_EQ(NANOSECONDS(MICROSECONDS(INT64_MIN)).get_value(), INT64_MIN);
    EXPECT_EQ(NANOSECONDS(SECONDS(1e300)).get_value(), INT64_MAX);
    EXPECT_EQ(MICROSECONDS(SECONDS(std::nan(""))).get_value(), 0);
}

TEST(TimeUnitsTest, TicksFollowTheClock) {
    EXPECT_EQ(MICROSECONDS(SYSTEM_TICKS(MILLISECONDS(3))).get_value(), 3000);
    EXPECT_DOUBLE_EQ(get_ticks_ratio(SYSTEM_TICKS(SECONDS(3.0)), SYSTEM_TICKS(SECONDS(2.0))), 1.5);

    const SYSTEM_TICKS before = TIMING::get_system_ticks();
    std::this_thread::sleep_for(std::chrono::milliseconds(20));
    SYSTEM_TICKS after;
    SYSTEM_TICKS::get_current_value(after);
    EXPECT_GE(MILLISECONDS(after - before), MILLISECONDS(20));
    // Sleeping costs no processor time to speak of.
    const THREAD_TICKS idle_before = TIMING::get_thread_ticks();
    std::this_thread::sleep_for(std::chrono::milliseconds(50));
    EXPECT_LT(MILLISECONDS(TIMING::get_thread_ticks() - idle_before), MILLISECONDS(40));
}

TEST(ProcessorTest, CountsCoresAndThreadsOfTheSystemText) {
    const auto info = PROCESSOR_LINUX::parse_cpu_info(
        "processor\t: 0\nvendor_id\t: GenuineIntel\ncpu MHz\t\t: 2400.5\nphysical id\t: 0\n"
        "core id\t\t: 0\n\nprocessor\t: 1\nphysical id\t: 0\ncore id\t\t: 0\n\n"
        "processor\t: 2\nphysical id\t: 1\ncore id\t\t: 0\n");
    EXPECT_EQ(info.kind, PROCESSOR_LINUX::INTEL);
    EXPECT_DOUBLE_EQ(info.mhz, 2400.5);
    EXPECT_EQ(info.threads, 3);
    EXPECT_EQ(info.cores, 2);

    const auto other = PROCESSOR_LINUX::parse_cpu_info("processor : 0\nprocessor : 1\nBogoMIPS");
    EXPECT_EQ(other.kind, PROCESSOR_LINUX::UNKNOWN);
    EXPECT_EQ(other.cores, 2);
    EXPECT_EQ(PROCESSOR_LINUX::parse_cpu_info("").threads, 0);

    EXPECT_GE(PROCESSOR_LINUX::get_max_threads(), PROCESSOR_LINUX::get_current_threads());
    EXPECT_GE(PROCESSOR_LINUX::get_current_threads(), 1);
}

}  // namespace
}  // namespace KVCORE
