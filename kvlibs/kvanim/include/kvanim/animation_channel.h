// One animation as it came from its file.
#ifndef KVANIM_ANIMATION_CHANNEL_H
#define KVANIM_ANIMATION_CHANNEL_H

#include <map>
#include <string_view>

#include "kvcore/reference_counter.h"
#include "kvmigration/string.h"

namespace KVANIM {

// A counted animation: its name, and what the animators' sheet says of it. A channel is filled by
// one thread, before it goes into the ANIMATION_MANAGER; afterwards it is only read.
class ANIMATION_CHANNEL : public KVCORE::REFERENCE_COUNTED_BASIC {
public:
    // Upper-case key to upper-case value.
    using METADATA = std::map<KVMIGRATION::STRING, KVMIGRATION::STRING>;

    ANIMATION_CHANNEL() = default;
    // The name is kept in upper case.
    explicit ANIMATION_CHANNEL(std::string_view channel_name);

    const KVMIGRATION::STRING& get_name() const { return name; }

    // Stores key and value, both in upper case; an older value of the key is replaced.
    void set_metadata(std::string_view key, std::string_view value);

    // The value stored under the key in any case; empty if there is none. Valid until the key gets
    // another value.
    const KVMIGRATION::STRING& get_metadata(std::string_view key) const;

    const METADATA& get_all_metadata() const { return metadata; }

    // Stores what the two texts of an animation file say. `first` is a row of the animators' sheet
    // if `second` is "unused": up to its first zero byte, columns parted by tabs. An empty column
    // isn't stored, neither are the two names in front and what stands behind the last known
    // column. Otherwise `first` is the "Action Type" and `second` the "Playback Mode". Any text is
    // safe.
    void init_metadata(std::string_view first, std::string_view second);

private:
    KVMIGRATION::STRING name;
    METADATA metadata;
};

}  // namespace KVANIM

#endif  // KVANIM_ANIMATION_CHANNEL_H
