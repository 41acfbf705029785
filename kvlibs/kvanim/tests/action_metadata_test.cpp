// The columns of the action table that come from the animators' sheet.
#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "kvanim/action.h"
#include "kvanim/animation_channel.h"
#include "kvanim/animation_manager.h"

using namespace KVANIM;
using namespace KVANIM::ACTION;

namespace {

using CHANNEL = ANIMATION_MANAGER::CHANNEL;

CHANNEL make_channel(std::string_view name) {
    return CHANNEL(new ANIMATION_CHANNEL(name));
}

// A row of the sheet with the columns that the table reads.
std::string make_sheet_row(const std::string& start_frame, const std::string& contact,
                           const std::string& end_position, const std::string& hand) {
    return "old\tnew\tstand\trun\tpass\tlooped\ta kick\ttype\t" + start_frame + '\t' + contact +
           "\t40\t50\t" + end_position + '\t' + hand;
}

class ActionMetadata : public testing::Test {
protected:
    void add(std::string_view name, const std::string& sheet_row) {
        const CHANNEL channel = make_channel(name);
        channel->init_metadata(sheet_row, "unused");
        manager->add_animation(channel);
    }

    double contact(const std::string& start_frame, const std::string& contact_frame) {
        manager->release_animations();
        add("FOUL_KICK", make_sheet_row(start_frame, contact_frame, "", ""));
        return calculate_start_ball_contact(FOUL_KICK).to_double();
    }

    std::unique_ptr<ANIMATION_MANAGER> manager = std::make_unique<ANIMATION_MANAGER>();
};

TEST(AnimationChannel, metadata_is_kept_in_upper_case) {
    const CHANNEL channel = make_channel("Foul_Kick");
    EXPECT_EQ(channel->get_name(), "FOUL_KICK");
    channel->set_metadata("Main hand", "left");
    EXPECT_EQ(channel->get_metadata("mAIN HAND"), "LEFT");
    channel->set_metadata("MAIN HAND", "Right");
    EXPECT_EQ(channel->get_metadata("Main hand"), "RIGHT");
    EXPECT_EQ(channel->get_metadata("hand"), "");
    EXPECT_EQ(channel->get_all_metadata().size(), 1U);
}

TEST(AnimationChannel, a_sheet_row_fills_twelve_keys) {
    const CHANNEL channel = make_channel("A");
    channel->init_metadata("c1\tc2\tc3\tc4\tc5\tc6\tc7\tc8\tc9\tc10\tc11\tc12\tc13\tc14\tc15\tc16",
                           "unused");
    const ANIMATION_CHANNEL::METADATA expected = {{"STARTING POS", "C3"},
                                                  {"ENDING POS", "C4"},
                                                  {"ACTION TYPE", "C5"},
                                                  {"PLAYBACK MODE", "C6"},
                                                  {"ACTION DESCRIPTION", "C7"},
                                                  {"KV TYPE", "C8"},
                                                  {"START FRAME", "C9"},
                                                  {"START BALL CONTACT", "C10"},
                                                  {"END BALL CONTACT", "C11"},
                                                  {"END FRAME", "C12"},
                                                  {"ANIMATION END POSITION", "C13"},
                                                  {"MAIN HAND", "C14"}};
    EXPECT_EQ(channel->get_all_metadata(), expected);
}

TEST(AnimationChannel, incomplete_sheet_rows) {
    const auto read = [](std::string_view first) {
        const CHANNEL channel = make_channel("A");
        channel->init_metadata(first, "unused");
        return channel->get_all_metadata();
    };
    EXPECT_TRUE(read("").empty());
    EXPECT_TRUE(read("a\tb").empty());
    EXPECT_TRUE(read(std::string(30, '\t')).empty());
    EXPECT_EQ(read("\t\t\tend\t\tonce"),
              (ANIMATION_CHANNEL::METADATA{{"ENDING POS", "END"}, {"PLAYBACK MODE", "ONCE"}}));
    // The zero ends the row, within a column and before one.
    constexpr std::string_view CUT("a\tb\tsta\0rt\tend", 14);
    EXPECT_EQ(read(CUT), (ANIMATION_CHANNEL::METADATA{{"STARTING POS", "STA"}}));
    EXPECT_TRUE(read(std::string_view("\0a\tb\tc", 6)).empty());
}

TEST(AnimationChannel, other_files_have_two_plain_entries) {
    const CHANNEL channel = make_channel("A");
    channel->init_metadata("walk\tslowly", "looped");
    EXPECT_EQ(channel->get_all_metadata(),
              (ANIMATION_CHANNEL::METADATA{{"ACTION TYPE", "WALK\tSLOWLY"},
                                           {"PLAYBACK MODE", "LOOPED"}}));
    // The mark is exact.
    const CHANNEL marked = make_channel("B");
    marked->init_metadata("a\tb\tc", "UNUSED");
    EXPECT_EQ(marked->get_metadata("Playback Mode"), "UNUSED");
    EXPECT_EQ(marked->get_metadata("Starting Pos"), "");
}

TEST(AnimationManager, the_first_animation_of_a_name_stays) {
    ANIMATION_MANAGER manager;
    const CHANNEL first = make_channel("walk");
    manager.add_animation(first);
    manager.add_animation(make_channel("WALK"));
    manager.add_animation(nullptr);
    EXPECT_EQ(manager.find_animation("Walk"), first);
    EXPECT_EQ(first->get_reference_count(), 2);
    EXPECT_EQ(manager.find_animation("run"), nullptr);
    manager.release_animations();
    EXPECT_EQ(manager.find_animation("walk"), nullptr);
    EXPECT_EQ(first->get_reference_count(), 1);
}

TEST(AnimationManager, animations_are_found_by_metadata_in_name_order) {
    ANIMATION_MANAGER manager;
    for (const char* name : {"zeta", "alpha", "beta"}) {
        const CHANNEL channel = make_channel(name);
        channel->init_metadata(name[0] == 'b' ? "walk" : "run", "looped");
        manager.add_animation(channel);
    }
    std::vector<CHANNEL> found = {make_channel("stale")};
    manager.find_by_metadata("action type", "RUN", found);
    ASSERT_EQ(found.size(), 2U);
    EXPECT_EQ(found[0]->get_name(), "ALPHA");
    EXPECT_EQ(found[1]->get_name(), "ZETA");
    manager.find_by_metadata("action type", "run", found);
    EXPECT_TRUE(found.empty());
}

TEST_F(ActionMetadata, comes_from_the_row_or_from_its_mirror) {
    add("gk_smother_left", make_sheet_row("", "", "stand", "left"));
    add("hold_that_no_row_has", make_sheet_row("", "", "run", "both"));
    EXPECT_EQ(get_metadata_string(GK_SMOTHER_LEFT, "Main hand"), "LEFT");
    EXPECT_EQ(get_metadata_string(GK_SMOTHER_RIGHT, "Main hand"), "LEFT");
    EXPECT_EQ(get_metadata_string(GK_SMOTHER_LEFT, "no such key"), "");
    EXPECT_EQ(get_metadata_string(GK_WALK_CATCH, "Main hand"), "");
    // Its own animation goes first, even if it lacks the key.
    add("gk_smother_right", make_sheet_row("", "", "run", ""));
    EXPECT_EQ(get_metadata_string(GK_SMOTHER_RIGHT, "Main hand"), "");
    EXPECT_EQ(get_metadata_string(GK_SMOTHER_RIGHT, "animation end position"), "RUN");
    // An animation is found in any case, so the row with a small letter has one.
    add("get_up_off_ground_V2", make_sheet_row("", "", "stand", ""));
    EXPECT_EQ(calculate_end_stance(GET_UP_OFF_GROUND_v2), STANCE_STAND);

    add("move_stand", make_sheet_row("", "", "sliding", ""));
    EXPECT_EQ(calculate_end_stance(NO_ANIMATION), STANCE_SLIDING);
    EXPECT_EQ(calculate_end_stance(static_cast<TYPE>(5000)), STANCE_SLIDING);

    manager.reset();
    EXPECT_EQ(get_metadata_string(GK_SMOTHER_LEFT, "Main hand"), "");
    EXPECT_EQ(calculate_holding_type(GK_SMOTHER_LEFT), HOLD_UNKNOWN);
}

TEST_F(ActionMetadata, contact_is_in_ticks_from_the_start_frame) {
    EXPECT_EQ(contact("10", "70"), 8.0);
    EXPECT_EQ(contact("", "30"), 4.0);
    EXPECT_EQ(contact("40", "39"), 0.0);
    EXPECT_EQ(contact("40", ""), 0.0);
    EXPECT_EQ(contact("", "none"), 0.0);
    EXPECT_EQ(contact("frame 2", "-62"), 8.0);  // the digits count, a sign doesn't
    EXPECT_EQ(contact("0", "99999999999999999999"), contact("0", "2147483647"));
    EXPECT_EQ(contact("99999999999999999999", "5"), 0.0);
    // One frame, in steps of 2^-28: cut before the ticks are taken.
    EXPECT_EQ(contact("0", "1"), static_cast<double>((1 << 28) / 60 * 8) / (1 << 28));
}

TEST_F(ActionMetadata, stance_and_hand_are_words) {
    const std::vector<std::pair<std::string, STANCE_TYPE>> stances = {
        {"run", STANCE_RUN},           {"stand", STANCE_STAND}, {"SLIDING", STANCE_SLIDING},
        {"On_Floor", STANCE_ON_FLOOR}, {"", STANCE_UNKNOWN},    {"on floor", STANCE_UNKNOWN},
        {"RUNS", STANCE_UNKNOWN}};
    for (const auto& [word, stance] : stances) {
        manager->release_animations();
        add("FOUL_PUNCH", make_sheet_row("1", "2", word, "both"));
        EXPECT_EQ(calculate_end_stance(FOUL_PUNCH), stance) << word;
    }
    EXPECT_EQ(STANCE_ON_FLOOR, 3);
    const std::vector<std::pair<std::string, HOLD_TYPE>> hands = {
        {"both", HOLD_BOTH}, {"Left", HOLD_LEFT}, {"RIGHT", HOLD_RIGHT}, {"L", HOLD_UNKNOWN}};
    for (const auto& [word, hand] : hands) {
        manager->release_animations();
        add("FOUL_PUNCH", make_sheet_row("1", "2", "run", word));
        EXPECT_EQ(calculate_holding_type(FOUL_PUNCH), hand) << word;
    }
    EXPECT_EQ(HOLD_RIGHT, 2);
}

// The only case that completes the process's table: what it finds then stays for good.
TEST_F(ActionMetadata, the_table_is_completed_once) {
    add("move_stand", make_sheet_row("0", "15", "stand", "right"));
    add("gk_smother_left", make_sheet_row("10", "70", "on_floor", "both"));
    add("unknown", make_sheet_row("0", "60", "run", "left"));
    calculate_remaining_data();
    add("gk_walk_catch", make_sheet_row("10", "70", "on_floor", "both"));
    manager.reset();

    for (const TYPE type : {GK_SMOTHER_LEFT, GK_SMOTHER_RIGHT}) {
        EXPECT_EQ(get_end_stance(type), STANCE_ON_FLOOR);
        EXPECT_EQ(get_hold_type(type), HOLD_BOTH);
        EXPECT_EQ(get_start_ball_contact(type), 8);
    }
    EXPECT_EQ(get_end_stance(GK_WALK_CATCH), STANCE_UNKNOWN);
    EXPECT_EQ(get_hold_type(GK_WALK_CATCH), HOLD_UNKNOWN);
    EXPECT_EQ(get_start_ball_contact(GK_WALK_CATCH), 0);

    EXPECT_EQ(get_start_ball_contact(MOVE_STAND), 2);
    for (const TYPE type : {NO_ANIMATION, static_cast<TYPE>(COUNT), static_cast<TYPE>(-77)}) {
        EXPECT_EQ(get_end_stance(type), STANCE_STAND);
        EXPECT_EQ(get_hold_type(type), HOLD_RIGHT);
        EXPECT_EQ(get_start_ball_contact(type), 0);
    }
    EXPECT_EQ(get_end_stance(UNKNOWN), STANCE_RUN);
    EXPECT_EQ(get_start_ball_contact(UNKNOWN), 0);
}

}  // namespace
