// The store of all animations.
#ifndef KVANIM_ANIMATION_MANAGER_H
#define KVANIM_ANIMATION_MANAGER_H

#include <map>
#include <string_view>
#include <vector>

#include "kvanim/animation_channel.h"
#include "kvcore/manual_singleton.h"
#include "kvcore/reference_counter.h"
#include "kvmigration/string.h"

namespace KVANIM {

// Animations by name. Without a lock: the thread that loads the animations fills it, and while it
// does no other thread uses it.
class ANIMATION_MANAGER : public KVCORE::MANUAL_SINGLETON<ANIMATION_MANAGER> {
public:
    using CHANNEL = KVCORE::REFERENCE_COUNTER<ANIMATION_CHANNEL>;

    // Takes a share in the channel, under its name. An animation of that name that is here already
    // stays; so does all else if `channel` is null.
    void add_animation(const CHANNEL& channel);

    // The animation of that name, in any case; null if there is none.
    CHANNEL find_animation(std::string_view name) const;

    // Replaces `out` by the channels, in the order of their names, whose metadata under `key` (in
    // any case) is exactly `value`. Stored values are in upper case.
    void find_by_metadata(std::string_view key, std::string_view value,
                          std::vector<CHANNEL>& out) const;

    // Lets go of all channels.
    void release_animations();

private:
    std::map<KVMIGRATION::STRING, CHANNEL> animations;
};

}  // namespace KVANIM

#endif  // KVANIM_ANIMATION_MANAGER_H
