// The log value that holds a KVCORE::STRING.
#ifndef KVCORE_STRING_LOGGABLE_H
#define KVCORE_STRING_LOGGABLE_H

#include "kvcore/loggable.h"
#include "kvcore/string.h"

namespace KVCORE {

// Shares the string's buffer.
class STRING_LOGGABLE : public LOGGABLE {
public:
    explicit STRING_LOGGABLE(const STRING& text) : text_(text), proxy_(text_) {}
    const char* get_as_c8() const override { return proxy_.as_c8(); }
    const char16_t* get_as_c16() const override { return proxy_.as_c16(); }

private:
    const STRING text_;
    mutable STRING::STRING_PROXY proxy_;
};

}  // namespace KVCORE

#endif  // KVCORE_STRING_LOGGABLE_H
