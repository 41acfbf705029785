#include "platform/random_session.h"

#include <gtest/gtest.h>

#include <array>
#include <random>
#include <vector>

namespace {

constexpr std::int32_t SEED = 0x1234 << 10;
constexpr std::int32_t WIDEST = INT32_MAX;

// Draws that show 31 random bits nearly as they are.
std::vector<std::int32_t> draw(RANDOM_SESSION& session, int count) {
    std::vector<std::int32_t> values;
    for (int i = 0; i < count; ++i) {
        values.push_back(session.get_random_number(0, WIDEST));
    }
    return values;
}

std::int32_t scaled(std::uint32_t word, std::int64_t range) {
    return static_cast<std::int32_t>((static_cast<std::int64_t>(word & 0x7FFFFFFFu) * range) >> 31);
}

TEST(RandomSessionTest, DrawsTheFirstPublishedBlockBackwardsThenReseeds) {
    std::mt19937 published(static_cast<std::uint32_t>(SEED));
    std::array<std::uint32_t, 624> words{};
    for (auto& word : words) {
        word = static_cast<std::uint32_t>(published());
    }
    RANDOM_SESSION session(SEED | 623);
    for (std::size_t i = words.size(); i-- > 0;) {
        ASSERT_EQ(session.get_random_number(0, WIDEST), scaled(words[i], WIDEST)) << i;
    }

    // The next block is that of another seed, the state's word 397 without its low bits.
    KVCORE::MT19937_STATE state{};
    KVCORE::mt19937_seed(state, static_cast<std::uint32_t>(SEED));
    KVCORE::mt19937_twist(state);
    RANDOM_SESSION next(static_cast<std::int32_t>((state[397] & ~0x3FFu) | 623));
    EXPECT_EQ(draw(session, 700), draw(next, 700));
}

TEST(RandomSessionTest, AnIndexResumesTheSequenceAnywhere) {
    RANDOM_SESSION session(SEED);
    draw(session, 1);  // position 0 was the only word of this block
    for (int round = 0; round < 20; ++round) {
        draw(session, 37);
        const std::int32_t index = session.get_random_index();
        const std::vector<std::int32_t> expected = draw(session, 1500);
        RANDOM_SESSION resumed;
        resumed.set_random_index(index);
        ASSERT_EQ(resumed.get_random_index(), index);
        ASSERT_EQ(draw(resumed, 1500), expected) << "round " << round;
    }
}

TEST(RandomSessionTest, PositionsAbove623CountAs623) {
    RANDOM_SESSION a(SEED | 1000);
    RANDOM_SESSION b(SEED | 623);
    EXPECT_EQ(a.get_random_index(), SEED | 623);
    EXPECT_EQ(draw(a, 5), draw(b, 5));
    // An index with all bits set, which a used-up session yields, is a good one too.
    RANDOM_SESSION used_up(SEED);
    draw(used_up, 1);
    RANDOM_SESSION again(used_up.get_random_index());
    draw(again, 1300);
}

TEST(RandomSessionTest, RangesExcludeTheirUpperEnd) {
    set_random_index(SEED | 600);
    std::array<int, 5> seen{};
    for (int i = 0; i < 3000; ++i) {
        const std::int32_t up = get_random_number(5);
        ASSERT_TRUE(up >= 0 && up < 5);
        ++seen[static_cast<std::size_t>(up)];
        const std::int32_t down = get_random_number(-5);
        ASSERT_TRUE(down >= -5 && down <= -1);
        const std::int32_t between = get_random_number(7, 3);
        ASSERT_TRUE(between >= 3 && between < 7);
        const double real = get_random_double(4.0);
        ASSERT_TRUE(real >= 0.0 && real < 4.0);
        const double reversed = get_random_double(2.0, 1.0);
        ASSERT_TRUE(reversed > 1.0 && reversed <= 2.0);
        ASSERT_LT(get_random_number(INT32_MIN), 0);
        ASSERT_LT(get_random_number(INT32_MIN, INT32_MAX), INT32_MAX);
    }
    for (const int count : seen) {
        EXPECT_GT(count, 450);
    }
}

TEST(RandomSessionTest, EmptyRangesDrawNothing) {
    set_random_index(SEED | 600);
    EXPECT_EQ(get_random_number(0), 0);
    EXPECT_EQ(get_random_number(3, 3), 3);
    EXPECT_EQ(get_random_index(), SEED | 600);
    get_random_number(1);
    EXPECT_EQ(get_random_index(), SEED | 599);
}

TEST(RandomSessionTest, DoublesAreMillionths) {
    RANDOM_SESSION reals(SEED | 50);
    RANDOM_SESSION whole(SEED | 50);
    EXPECT_DOUBLE_EQ(reals.get_random_double(3.0),
                     whole.get_random_number(0, 1000000) * 3.0 / 1000000);
    EXPECT_DOUBLE_EQ(reals.get_random_double(5.0, 9.0),
                     5.0 + 4.0 * whole.get_random_number(0, 1000000) / 1000000);
}

}  // namespace
