#include "kvmigration/string_array.h"

#include <algorithm>

namespace KVMIGRATION {

void STRING_ARRAY::set(STRING text, std::int32_t index) {
    if (index < 0) {
        return;
    }
    while (get_count() <= index) {
        add(STRING());
    }
    *entries[index] = std::move(text);
}

std::int32_t STRING_ARRAY::find(const STRING_ARRAY& pattern, std::int32_t first,
                                std::int32_t last) const {
    const std::int32_t pattern_count = pattern.get_count();
    if (pattern_count == 0) {
        return -1;
    }
    const std::int32_t end =
        std::min(last < 0 ? get_count() : last, get_count() - pattern_count + 1);
    for (std::int32_t i = std::max(first, 0); i < end; ++i) {
        std::int32_t matched = 0;
        while (matched < pattern_count && *entries[i + matched] == *pattern.entries[matched]) {
            ++matched;
        }
        if (matched == pattern_count) {
            return i;
        }
    }
    return -1;
}

bool STRING_ARRAY::find_and_replace(const STRING_ARRAY& pattern, const STRING& replacement) {
    const std::int32_t pattern_count = pattern.get_count();
    bool replaced = false;
    std::int32_t match = find(pattern, 0, -1);
    while (match >= 0) {
        replaced = true;
        *entries[match] = replacement;
        const auto behind = entries.begin() + match + 1;
        entries.erase(behind, behind + (pattern_count - 1));
        match = find(pattern, match + pattern_count, -1);
    }
    return replaced;
}

}  // namespace KVMIGRATION
