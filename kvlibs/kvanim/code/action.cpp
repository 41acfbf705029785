#include "kvanim/action.h"

#include <algorithm>
#include <array>
#include <span>

#include "action_index.h"
#include "action_side.h"
#include "kvanim/animation_manager.h"
#include "kvmigration/array.h"

namespace KVANIM::ACTION {
namespace {

#define KVANIM_ACTION_ROW(number, name) number,
constexpr std::array<std::int32_t, COUNT> NUMBERS = {
#include "kvanim/action_table.def"
};

constexpr bool numbers_count_up() {
    for (std::int32_t row = 0; row < COUNT; row++) {
        if (NUMBERS[static_cast<std::size_t>(row)] != row) {
            return false;
        }
    }
    return true;
}
static_assert(numbers_count_up());

constexpr ACTION_INDEX INDEX;
static_assert(INDEX.is_complete(), "try another HASH_MULTIPLIER");

// Stands in for numbers that no row has.
constexpr TYPE FALLBACK = MOVE_STAND;

constexpr std::int32_t FRAMES_PER_SECOND = 60;
constexpr std::int32_t TICKS_PER_SECOND = 8;

bool has_row(TYPE type) {
    return type >= 0 && type < COUNT;
}

// A range of numbers, both ends included.
struct ACTION_RANGE {
    TYPE first;
    TYPE last;
};

bool is_in(std::span<const ACTION_RANGE> ranges, TYPE type) {
    return std::any_of(ranges.begin(), ranges.end(), [type](const ACTION_RANGE& range) {
        return type >= range.first && type <= range.last;
    });
}

void set_mirrors(KVMIGRATION::ARRAY<ACTION_LOOKUP>& rows) {
    for (ACTION_LOOKUP& row : rows) {
        row.mirrored_type = calculate_mirrored_type(row.name);
    }
}

KVMIGRATION::ARRAY<ACTION_LOOKUP> make_rows() {
    KVMIGRATION::ARRAY<ACTION_LOOKUP> rows;
    rows.reserve(COUNT);
    for (const std::string_view name : ACTION_NAMES) {
        rows.emplace_back(static_cast<TYPE>(rows.get_count()), name);
    }
    set_mirrors(rows);
    return rows;
}

// The one table. The first caller builds it, others meanwhile wait for it. It is never deleted, as
// threads may ask it until the process ends.
KVMIGRATION::ARRAY<ACTION_LOOKUP>& get_action_table() {
    static auto* const action_table = new KVMIGRATION::ARRAY<ACTION_LOOKUP>(make_rows());
    return *action_table;
}

const ACTION_LOOKUP& get_row(TYPE type) {
    return get_action_table()[has_row(type) ? type : FALLBACK];
}

// A word of the animators' sheet and what it stands for.
template <typename VALUE>
struct DEFINITION {
    std::string_view text;
    VALUE value;
};

template <typename VALUE>
VALUE find_definition(std::span<const DEFINITION<VALUE>> definitions, std::string_view text,
                      VALUE missing) {
    for (const DEFINITION<VALUE>& definition : definitions) {
        if (definition.text == text) {
            return definition.value;
        }
    }
    return missing;
}

}  // namespace

void build_action_table() {
    get_action_table();
}

void calculate_mirroring() {
    set_mirrors(get_action_table());
}

TYPE get_action_type(std::string_view name) {
    return INDEX.find(name);
}

std::string_view get_action_name(TYPE type) {
    if (type == NO_ANIMATION) {
        return "NO_ANIMATION";
    }
    return ACTION_NAMES[static_cast<std::size_t>(has_row(type) ? type : FALLBACK)];
}

TYPE get_mirrored_type(TYPE type) {
    return type == NO_ANIMATION ? UNKNOWN : get_row(type).mirrored_type;
}

TYPE calculate_mirrored_type(std::string_view name) {
    return get_action_type(swap_side(name));
}

KVMIGRATION::STRING get_metadata_string(TYPE type, std::string_view key) {
    const ANIMATION_MANAGER* manager = ANIMATION_MANAGER::get_instance();
    if (manager == nullptr) {
        return {};
    }
    const ACTION_LOOKUP& row = get_row(type);
    ANIMATION_MANAGER::CHANNEL channel = manager->find_animation(row.name);
    if (!channel) {
        channel = manager->find_animation(get_row(row.mirrored_type).name);
    }
    return channel ? channel->get_metadata(key) : KVMIGRATION::STRING();
}

KVMATH::FIXED_POINT calculate_start_ball_contact(TYPE type) {
    const KVMIGRATION::STRING contact = get_metadata_string(type, "Start Ball Contact");
    if (contact.empty()) {
        return 0;
    }
    std::int32_t frames = contact.get_value();
    const KVMIGRATION::STRING start = get_metadata_string(type, "Start Frame");
    if (!start.empty()) {
        frames -= start.get_value();
    }
    return KVMATH::FIXED_POINT(std::max(frames, 0)) / FRAMES_PER_SECOND * TICKS_PER_SECOND;
}

STANCE_TYPE calculate_end_stance(TYPE type) {
    static constexpr std::array<DEFINITION<STANCE_TYPE>, 4> stance_defs = {{
        {"RUN", STANCE_RUN},
        {"STAND", STANCE_STAND},
        {"SLIDING", STANCE_SLIDING},
        {"ON_FLOOR", STANCE_ON_FLOOR},
    }};
    return find_definition<STANCE_TYPE>(
        stance_defs, get_metadata_string(type, "Animation End Position"), STANCE_UNKNOWN);
}

HOLD_TYPE calculate_holding_type(TYPE type) {
    static constexpr std::array<DEFINITION<HOLD_TYPE>, 3> holding_defs = {{
        {"BOTH", HOLD_BOTH},
        {"LEFT", HOLD_LEFT},
        {"RIGHT", HOLD_RIGHT},
    }};
    return find_definition<HOLD_TYPE>(holding_defs, get_metadata_string(type, "Main hand"),
                                      HOLD_UNKNOWN);
}

void calculate_remaining_data() {
    // Set when the table is complete; a second thread waits for the first.
    static const bool extra_data_calculated = [] {
        for (ACTION_LOOKUP& row : get_action_table()) {
            row.start_ball_contact = calculate_start_ball_contact(row.type);
            row.end_stance = calculate_end_stance(row.type);
            row.hold_type = calculate_holding_type(row.type);
        }
        return true;
    }();
    static_cast<void>(extra_data_calculated);
}

HOLD_TYPE get_hold_type(TYPE type) {
    calculate_remaining_data();
    return get_row(type).hold_type;
}

STANCE_TYPE get_end_stance(TYPE type) {
    calculate_remaining_data();
    return get_row(type).end_stance;
}

KVMATH::FIXED_POINT get_start_ball_contact(TYPE type) {
    calculate_remaining_data();
    return type == UNKNOWN || !has_row(type) ? KVMATH::FIXED_POINT()
                                             : get_row(type).start_ball_contact;
}

bool action_can_have_other_tracks(TYPE type) {
    static constexpr std::array<ACTION_RANGE, 5> RANGES = {{
        {MOVE_STAND, RUN_LEFT_135DEG},
        {WALK_RIGHT_135DEG, MOVE_SPRINT_BACKWARDS_RIGHT_135DEG},
        {STAND_OFF_BALL_IN_PLAY, STAND_OFF_BALL_DEAD_TIME_V8},
        {STOP_BALL_FOOT_RIGHT, RUN_STOP_BALL_FOOT_RIGHT_RUN_LOW},
        {LINESMAN_IDLE_STAND_07, LINESMAN_WALK_RIGHT_90DEG_SIDEWAYS},
    }};
    return is_in(RANGES, type);
}

bool is_kick_action(TYPE type) {
    static constexpr std::array<ACTION_RANGE, 1> RANGES = {
        {{KICK_LEFT_LOW_SOFT, KICK_OVERHEAD_RIGHT}}};
    return is_in(RANGES, type);
}

bool is_slide_tackle_action(TYPE type) {
    static constexpr std::array<ACTION_RANGE, 2> RANGES = {{
        {TACKLE_LEFT_SLIDING, SLIDE_TACKLE_90_DEGREE_RIGHT_V3},
        {SLIDE_TACKLE_DEGREE_LEFT, SLIDE_TACKLE_LEFT_LOW},
    }};
    return is_in(RANGES, type);
}

}  // namespace KVANIM::ACTION
