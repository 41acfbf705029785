#include "kvanim/animation_manager.h"

#include <string>

namespace KVANIM {

void ANIMATION_MANAGER::add_animation(const CHANNEL& channel) {
    if (channel) {
        animations.try_emplace(channel->get_name(), channel);
    }
}

ANIMATION_MANAGER::CHANNEL ANIMATION_MANAGER::find_animation(std::string_view name) const {
    const auto entry = animations.find(KVMIGRATION::toupper(std::string(name)));
    return entry == animations.end() ? CHANNEL() : entry->second;
}

void ANIMATION_MANAGER::find_by_metadata(std::string_view key, std::string_view value,
                                         std::vector<CHANNEL>& out) const {
    out.clear();
    for (const auto& [name, channel] : animations) {
        if (channel->get_metadata(key) == value) {
            out.push_back(channel);
        }
    }
}

void ANIMATION_MANAGER::release_animations() {
    animations.clear();
}

}  // namespace KVANIM
