// Names, numbers and mirrors of the action table: everything that needs no animations.
#include <gtest/gtest.h>

#include <cctype>
#include <cstdint>
#include <limits>
#include <map>
#include <random>
#include <string>
#include <thread>
#include <vector>

#include "../code/action_side.h"
#include "kvanim/action.h"

using namespace KVANIM::ACTION;

namespace {

TYPE type_of(std::int32_t number) {
    return static_cast<TYPE>(number);
}

std::string name_of(std::int32_t number) {
    return std::string(get_action_name(type_of(number)));
}

std::string upper(std::string text) {
    for (char& c : text) {
        if (static_cast<unsigned char>(c) < 0x80) {
            c = static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
        }
    }
    return text;
}

// What get_action_type has to answer, by way of an ordinary map.
TYPE expected_type(const std::string& name) {
    static const std::map<std::string, TYPE> rows = [] {
        std::map<std::string, TYPE> result;
        for (std::int32_t number = 0; number < COUNT; number++) {
            result.emplace(name_of(number), type_of(number));
        }
        return result;
    }();
    const auto row = rows.find(upper(name));
    return row == rows.end() ? UNKNOWN : row->second;
}

// The name with its side swapped; empty if it has none.
std::string other_side(const std::string& name) {
    for (const auto& [side, other] : {std::pair<std::string, std::string>{"_LEFT", "_RIGHT"},
                                      std::pair<std::string, std::string>{"_RIGHT", "_LEFT"}}) {
        const std::size_t position = name.find(side);
        if (position != std::string::npos) {
            return std::string(name).replace(position, side.size(), other);
        }
    }
    return {};
}

const std::vector<std::int32_t> NUMBERS_WITHOUT_ROW = {-2,
                                                       COUNT,
                                                       COUNT + 1,
                                                       65536 + 195,
                                                       std::numeric_limits<std::int32_t>::max(),
                                                       std::numeric_limits<std::int32_t>::min()};

// Landmarks over the whole table: a row too many or too few shifts one of them.
TEST(ActionTable, numbers_stand_for_their_names) {
    EXPECT_EQ(COUNT, 947);
    const std::map<std::int32_t, std::string> landmarks = {
        {0, "UNKNOWN"},
        {2, "GK_WALK_CATCH"},
        {195, "MOVE_STAND"},
        {249, "RUN_LEFT_135DEG"},
        {363, "TACKLE_LEFT_SLIDING"},
        {387, "HANDBALL_RIGHT_HIGHT"},
        {472, "SLIDE_TACKLE_DEGREE_RIGHT_REST"},
        {484, "GET_UP_OFF_GROUND_v2"},
        {550, "KICK_LEFT_LOW_SOFT"},
        {703, "KICK_OVERHEAD_RIGHT"},
        {738, "STAND_DEJECTION_MISS_GOALL"},
        {832, "LINESMAN_WALK_RIGHT_90DEG_SIDEWAYS"},
        {946, "PLAYER_SIGNALLING_SAFETY_V2"}};
    for (const auto& [number, name] : landmarks) {
        EXPECT_EQ(name_of(number), name) << number;
    }
}

// Recordings and the match feed know movements by number, so no row may move or be renamed: the
// FNV-1a sum of all names in order. A row added at the end doesn't change it.
TEST(ActionTable, no_row_has_moved_or_changed_its_name) {
    std::uint64_t sum = 0xCBF29CE484222325;
    for (std::int32_t number = 0; number < 947; number++) {
        for (const char c : name_of(number) + '\n') {
            sum = (sum ^ static_cast<unsigned char>(c)) * 0x100000001B3;
        }
    }
    EXPECT_EQ(sum, 0xC70739651AA262CBU);
}

TEST(ActionTable, every_row_is_found_by_its_name_in_any_case) {
    for (std::int32_t number = 0; number < COUNT; number++) {
        const std::string name = name_of(number);
        std::string lower = name;
        for (char& c : lower) {
            c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
        }
        // A name with a small letter can't equal a text in upper case.
        const std::int32_t found = name == upper(name) ? number : UNKNOWN;
        EXPECT_EQ(get_action_type(name), found) << name;
        EXPECT_EQ(get_action_type(lower), found) << name;
        EXPECT_EQ(get_action_name(type_of(number)).data()[name.size()], '\0') << name;
    }
    EXPECT_EQ(get_action_type("gk_walk_catch"), 2);
    EXPECT_EQ(get_action_type("GET_UP_OFF_GROUND_V2"), UNKNOWN);
    EXPECT_EQ(get_action_type(""), UNKNOWN);
    EXPECT_EQ(get_action_type({}), UNKNOWN);
    EXPECT_EQ(get_action_type("NO_ANIMATION"), UNKNOWN);
}

// Every byte value at both ends and inside of names of all lengths, letters cut and added.
TEST(ActionTable, near_misses_are_not_found) {
    std::mt19937 random(7);
    for (std::int32_t number = 0; number < COUNT; number++) {
        const std::string name = name_of(number);
        const std::vector<std::string> misses = {name.substr(1), name.substr(0, name.size() - 1),
                                                 name + '_',     '_' + name,
                                                 name + '\0',    name + std::string(100, 'X')};
        for (const std::string& miss : misses) {
            EXPECT_EQ(get_action_type(miss), expected_type(miss)) << miss;
        }
        for (int byte = 0; byte < 256; byte++) {
            std::string changed = name;
            changed[random() % changed.size()] = static_cast<char>(byte);
            EXPECT_EQ(get_action_type(changed), expected_type(changed)) << changed;
        }
    }
}

TEST(ActionTable, mirrors_swap_the_side_and_come_back) {
    std::vector<std::string> without_partner;
    std::int32_t pairs = 0;
    for (std::int32_t number = 0; number < COUNT; number++) {
        const std::string name = name_of(number);
        const std::string partner = other_side(name);
        const TYPE mirror = get_mirrored_type(type_of(number));
        EXPECT_EQ(mirror, calculate_mirrored_type(name)) << name;
        if (partner.empty()) {
            EXPECT_EQ(mirror, expected_type(name)) << name;
        } else if (mirror == UNKNOWN) {
            EXPECT_EQ(expected_type(partner), UNKNOWN) << name;
            without_partner.push_back(name);
        } else {
            EXPECT_EQ(name_of(mirror), partner);
            EXPECT_EQ(get_mirrored_type(mirror), number) << name;
            pairs++;
        }
    }
    EXPECT_EQ(pairs % 2, 0);
    const std::vector<std::string> expected = {"HANDBALL_LEFT_HIGH",
                                               "HANDBALL_RIGHT_HIGHT",
                                               "SLIDE_TACKLE_DEGREE_RIGHT_REST",
                                               "THROW_IN_LEFT_POINT",
                                               "CELEBRATION_RIGHT_HAND_ALOFT_JOGGING",
                                               "CELEBRATION_RUNNING_RIGHT_SIDE_START",
                                               "CELEBRATION_RUNNING_RIGHT_SIDE_LOOP",
                                               "CELEBRATION_RUNNING_RIGHT_SIDE_END",
                                               "SUBS_WARMUP_RIGHTKNEE_STRETCH"};
    EXPECT_EQ(without_partner, expected);
    EXPECT_EQ(get_mirrored_type(GK_SMOTHER_LEFT), 5);
    EXPECT_EQ(get_mirrored_type(GK_SMOTHER_RIGHT), 3);
}

TEST(ActionTable, setting_the_mirrors_anew_changes_none) {
    std::vector<TYPE> mirrors;
    for (std::int32_t number = 0; number < COUNT; number++) {
        mirrors.push_back(get_mirrored_type(type_of(number)));
    }
    build_action_table();
    calculate_mirroring();
    for (std::int32_t number = 0; number < COUNT; number++) {
        EXPECT_EQ(get_mirrored_type(type_of(number)), mirrors[static_cast<std::size_t>(number)]);
    }
}

TEST(ActionTable, the_first_side_of_a_name_is_swapped) {
    EXPECT_EQ(swap_side("A_LEFT_B_LEFT"), "A_RIGHT_B_LEFT");
    EXPECT_EQ(swap_side("A_RIGHT_B_RIGHT"), "A_LEFT_B_RIGHT");
    // The left one is looked for first, wherever it stands.
    EXPECT_EQ(swap_side("A_RIGHT_B_LEFT_C"), "A_RIGHT_B_RIGHT_C");
    EXPECT_EQ(swap_side("_LEFT"), "_RIGHT");
    EXPECT_EQ(swap_side("LEFT_FOOT"), "LEFT_FOOT");
    EXPECT_EQ(swap_side(""), "");
    for (const std::size_t size : {1016U, 1017U, 1018U, 100000U}) {
        const std::string name = std::string("_RIGHT").append(size - 6, 'A');
        EXPECT_EQ(swap_side(name) == name, size > 1017) << size;
    }
    // The side is looked for in capitals, the row in any case.
    EXPECT_EQ(calculate_mirrored_type("gk_smother_left"), GK_SMOTHER_LEFT);
    EXPECT_EQ(calculate_mirrored_type("gk_smother_LEFT"), GK_SMOTHER_RIGHT);
    EXPECT_EQ(calculate_mirrored_type(""), UNKNOWN);
}

TEST(ActionTable, numbers_without_a_row_stand_for_move_stand) {
    EXPECT_EQ(get_action_name(NO_ANIMATION), "NO_ANIMATION");
    EXPECT_EQ(get_mirrored_type(NO_ANIMATION), UNKNOWN);
    for (const std::int32_t number : NUMBERS_WITHOUT_ROW) {
        EXPECT_EQ(name_of(number), "MOVE_STAND") << number;
        EXPECT_EQ(get_mirrored_type(type_of(number)), MOVE_STAND) << number;
    }
}

TEST(ActionTable, kinds_of_action_are_ranges_of_numbers) {
    std::int32_t other_tracks = 0;
    std::int32_t kicks = 0;
    std::int32_t slide_tackles = 0;
    for (std::int32_t number = -10; number < COUNT + 10; number++) {
        other_tracks += action_can_have_other_tracks(type_of(number));
        kicks += is_kick_action(type_of(number));
        slide_tackles += is_slide_tackle_action(type_of(number));
    }
    EXPECT_EQ(other_tracks, 55 + 38 + 10 + 16 + 12);
    EXPECT_EQ(kicks, 154);
    EXPECT_EQ(slide_tackles, 18 + 22);
    // With these counts, both ends of each range tell where it lies.
    for (const std::int32_t number : {195, 249, 253, 290, 512, 521, 704, 719, 821, 832}) {
        EXPECT_TRUE(action_can_have_other_tracks(type_of(number))) << number;
    }
    for (const std::int32_t number : {550, 703}) {
        EXPECT_TRUE(is_kick_action(type_of(number))) << number;
    }
    for (const std::int32_t number : {363, 380, 448, 469}) {
        EXPECT_TRUE(is_slide_tackle_action(type_of(number))) << number;
    }
    for (const std::int32_t number : NUMBERS_WITHOUT_ROW) {
        EXPECT_FALSE(action_can_have_other_tracks(type_of(number))) << number;
        EXPECT_FALSE(is_kick_action(type_of(number))) << number;
        EXPECT_FALSE(is_slide_tackle_action(type_of(number))) << number;
    }
}

TEST(ActionTable, threads_may_ask_first_at_the_same_time) {
    std::vector<std::thread> threads;
    std::vector<std::int32_t> wrong(4);
    for (std::int32_t& count : wrong) {
        threads.emplace_back([&count] {
            for (std::int32_t number = 0; number < COUNT; number++) {
                count += get_mirrored_type(type_of(number)) !=
                         calculate_mirrored_type(get_action_name(type_of(number)));
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    EXPECT_EQ(wrong, std::vector<std::int32_t>(4));
}

}  // namespace
