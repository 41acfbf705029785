// Edits that STRING and STRING_BUILDER share: each makes the edited text in a new buffer.
#ifndef KVCORE_TEXT_EDIT_H
#define KVCORE_TEXT_EDIT_H

#include <cstdint>

#include "kvcore/string_buffer.h"
#include "kvcore/text_view.h"

namespace KVCORE {

// The texts one behind the other, cut at the longest text that a string can hold.
REFERENCE_COUNTER<STRING_BUFFER> join_texts(TEXT_VIEW a, TEXT_VIEW b, TEXT_VIEW c = TEXT_VIEW());

// Every `from` of the text replaced by `to`, from left to right, without looking again at what was
// put in. Null if there is no `from`, so that nothing changes.
REFERENCE_COUNTER<STRING_BUFFER> replace_text(TEXT_VIEW text, TEXT_VIEW from, TEXT_VIEW to,
                                              CASE_MODE mode);

// A range of units within a text.
struct TEXT_RANGE {
    std::int32_t first;
    std::int32_t count;
};

// The units from `first` to `last`, inclusive, each clamped into a text of `length` units. A
// `first` beyond `last` means the whole text.
TEXT_RANGE clamp_deletion(std::int32_t length, std::int32_t first, std::int32_t last);

}  // namespace KVCORE

#endif  // KVCORE_TEXT_EDIT_H
