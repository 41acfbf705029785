#include "kvanim/animation_channel.h"

#include <array>
#include <string>

namespace KVANIM {
namespace {

using KVMIGRATION::STRING;

constexpr std::string_view ROW_MARK = "unused";
constexpr char COLUMN_END = '\t';

// The columns of a row of the animators' sheet. Those without a key aren't stored: "Original Name"
// and "New Name", as the channel's name comes from its file.
constexpr std::array<std::string_view, 14> COLUMN_KEYS = {
    "",
    "",
    "Starting Pos",
    "Ending Pos",
    "Action Type",
    "Playback Mode",
    "Action Description",
    "KV Type",
    "Start Frame",
    "Start Ball Contact",
    "End Ball Contact",
    "End Frame",
    "Animation End Position",
    "Main hand",
};

STRING to_upper(std::string_view text) {
    return KVMIGRATION::toupper(std::string(text));
}

}  // namespace

ANIMATION_CHANNEL::ANIMATION_CHANNEL(std::string_view channel_name) : name(to_upper(channel_name)) {
}

void ANIMATION_CHANNEL::set_metadata(std::string_view key, std::string_view value) {
    metadata.insert_or_assign(to_upper(key), to_upper(value));
}

const STRING& ANIMATION_CHANNEL::get_metadata(std::string_view key) const {
    static const STRING MISSING;
    const auto entry = metadata.find(to_upper(key));
    return entry == metadata.end() ? MISSING : entry->second;
}

void ANIMATION_CHANNEL::init_metadata(std::string_view first, std::string_view second) {
    if (second != ROW_MARK) {
        set_metadata("Action Type", first);
        set_metadata("Playback Mode", second);
        return;
    }
    std::string_view rest = first.substr(0, first.find('\0'));
    for (const std::string_view key : COLUMN_KEYS) {
        const std::string_view column = rest.substr(0, rest.find(COLUMN_END));
        if (!key.empty() && !column.empty()) {
            set_metadata(key, column);
        }
        if (column.size() == rest.size()) {
            break;
        }
        rest.remove_prefix(column.size() + 1);
    }
}

}  // namespace KVANIM
