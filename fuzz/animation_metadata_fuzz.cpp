// The two texts of an animation file, parted by a line feed, as metadata of a row of the action
// table; and the first of them as a name. Whatever they hold, keys and values come out clean and
// the table's answers stay in range.
#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <string_view>

#include "kvanim/action.h"
#include "kvanim/animation_channel.h"
#include "kvanim/animation_manager.h"

namespace {

using namespace KVANIM;

void check(bool holds) {
    if (!holds) {
        std::abort();
    }
}

bool has_no_small_letter(std::string_view text) {
    return std::none_of(text.begin(), text.end(), [](char c) { return c >= 'a' && c <= 'z'; });
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view input(reinterpret_cast<const char*>(data), size);
    const std::size_t first_size = std::min(input.find('\n'), size);
    const std::string_view first = input.substr(0, first_size);
    const std::string_view second = input.substr(std::min(first_size + 1, size));

    const ANIMATION_MANAGER::CHANNEL channel(new ANIMATION_CHANNEL("FOUL_KICK"));
    channel->init_metadata(first, second);
    check(channel->get_all_metadata().size() <= 12);
    for (const auto& [key, value] : channel->get_all_metadata()) {
        check(has_no_small_letter(key) && has_no_small_letter(value));
        check(channel->get_metadata(key) == value);
        if (second == "unused") {
            check(!value.empty() &&
                  value.find_first_of(std::string_view("\t\0", 2)) == std::string::npos);
        }
    }

    ANIMATION_MANAGER manager;
    manager.add_animation(channel);
    check(ACTION::calculate_start_ball_contact(ACTION::FOUL_KICK) >= 0);
    const ACTION::STANCE_TYPE stance = ACTION::calculate_end_stance(ACTION::FOUL_KICK);
    check(stance >= ACTION::STANCE_UNKNOWN && stance <= ACTION::STANCE_ON_FLOOR);
    const ACTION::HOLD_TYPE hold = ACTION::calculate_holding_type(ACTION::FOUL_KICK);
    check(hold >= ACTION::HOLD_UNKNOWN && hold <= ACTION::HOLD_RIGHT);

    const ACTION::TYPE type = ACTION::get_action_type(first);
    check(type >= 0 && type < ACTION::COUNT);
    check(type == ACTION::UNKNOWN || ACTION::get_action_name(type).size() == first.size());
    const ACTION::TYPE mirror = ACTION::calculate_mirrored_type(first);
    check(mirror >= 0 && mirror < ACTION::COUNT);
    return 0;
}
