// The action table: every movement that a person on the pitch can show.
//
// A row's number, name and mirror are compiled in. Its other columns, end stance, hand and ball
// contact, come from the metadata of the row's animation (animation_channel.h), so the animations
// are to be loaded before the first question for one of those.
//
// The table has three stages: empty; with names and mirrors, from the first call of any reader; and
// complete, from the first get_hold_type, get_end_stance, get_start_ball_contact or
// calculate_remaining_data. Completing happens once: a row whose animation wasn't known then keeps
// the values for "not known". The table lives until the process ends.
//
// Threads: names, mirrors and the is_ questions may be asked on any thread. Completing the table
// reads the ANIMATION_MANAGER, which has no lock, so the first question for metadata belongs to the
// thread that loads the animations; afterwards any thread may ask.
#ifndef KVANIM_ACTION_H
#define KVANIM_ACTION_H

#include <cstdint>
#include <string_view>

#include "kvmath/fixed_point.h"
#include "kvmigration/string.h"

namespace KVANIM::ACTION {

// The number of a movement. A value that was read from outside may be any 32-bit number; every
// operation here takes it and has an answer for it.
enum TYPE : std::int32_t {
    NO_ANIMATION = -1,  // no action, and so no animation
#define KVANIM_ACTION_ROW(number, name) name = number,
#include "kvanim/action_table.def"
};

// How many movements there are: they are numbered from 0 to COUNT - 1.
inline constexpr std::int32_t COUNT = 0
#define KVANIM_ACTION_ROW(number, name) +1
#include "kvanim/action_table.def"
    ;

// The hands that hold the ball in a movement.
enum HOLD_TYPE : std::int32_t { HOLD_UNKNOWN = -1, HOLD_BOTH, HOLD_LEFT, HOLD_RIGHT };

// How a person is left when a movement has played to its end.
enum STANCE_TYPE : std::int32_t {
    STANCE_UNKNOWN = -1,
    STANCE_RUN,
    STANCE_STAND,
    STANCE_SLIDING,
    STANCE_ON_FLOOR
};

// One row of the table.
struct ACTION_LOOKUP {
    ACTION_LOOKUP(TYPE row_type, std::string_view row_name) : type(row_type), name(row_name) {}

    TYPE type;                                // its own number
    TYPE mirrored_type = UNKNOWN;             // the same movement on the other side
    STANCE_TYPE end_stance = STANCE_UNKNOWN;  // metadata
    HOLD_TYPE hold_type = HOLD_UNKNOWN;       // metadata
    KVMATH::FIXED_POINT start_ball_contact;   // ticks from the start to the touch; metadata
    std::string_view name;                    // zero-terminated, lives as long as the process
};

// Gives the table its rows, with names and mirrors, unless it has them. The readers below call it
// themselves; a host calls it to have the cost, some microseconds, at a time of its choosing.
void build_action_table();

// Sets the mirror of each row anew, by calculate_mirrored_type. Building the table has done so.
// Not while other threads use the table.
void calculate_mirroring();

// The row of that name; UNKNOWN if there is none. The name may come in lower or mixed case: it is
// put in upper case (ASCII) and then compared exactly. So GET_UP_OFF_GROUND_v2, the one row with a
// small letter in its name, is never found by it.
TYPE get_action_type(std::string_view name);

// The row's name, zero-terminated; for NO_ANIMATION "NO_ANIMATION". Any other value that no row has
// gives the name of MOVE_STAND.
std::string_view get_action_name(TYPE type);

// The same movement on the other side, the row itself if its name has no side, UNKNOWN if the table
// lacks the other side. NO_ANIMATION gives UNKNOWN, any other value that no row has the mirror of
// MOVE_STAND.
TYPE get_mirrored_type(TYPE type);

// The row that mirrors a row of this name: the first "_LEFT" in it is replaced by "_RIGHT" or,
// where there is none, the first "_RIGHT" by "_LEFT", and the row of the result is looked up as in
// get_action_type. A name without a side is looked up as it is.
TYPE calculate_mirrored_type(std::string_view name);

// The metadata under `key` of the row's animation or, where the row has none, of its mirror's: one
// line of the animators' sheet serves both sides. Empty without an ANIMATION_MANAGER, without an
// animation on either side, or without the key. A value that no row has stands for MOVE_STAND.
KVMIGRATION::STRING get_metadata_string(TYPE type, std::string_view key);

// The columns that come from metadata, read anew at each call.
//
// Ticks (8 a second) from the animation's start to the touch of the ball: the frames, of 60 a
// second, from "Start Frame" to "Start Ball Contact"; 0 if the contact is missing or comes before
// the start. Not rounded: cut at the last fractional bit of frames / 60.
KVMATH::FIXED_POINT calculate_start_ball_contact(TYPE type);
// What "Animation End Position" says.
STANCE_TYPE calculate_end_stance(TYPE type);
// What "Main hand" says.
HOLD_TYPE calculate_holding_type(TYPE type);

// Fills those columns for all rows, the first time it is called.
void calculate_remaining_data();

// The columns as calculate_remaining_data, which these call, has found them. A value that no row
// has gives those of MOVE_STAND.
HOLD_TYPE get_hold_type(TYPE type);
STANCE_TYPE get_end_stance(TYPE type);
// 0 for UNKNOWN and for a value that no row has.
KVMATH::FIXED_POINT get_start_ball_contact(TYPE type);

// Whether an upper-body animation may play over this movement.
bool action_can_have_other_tracks(TYPE type);
bool is_kick_action(TYPE type);
bool is_slide_tackle_action(TYPE type);

}  // namespace KVANIM::ACTION

#endif  // KVANIM_ACTION_H
