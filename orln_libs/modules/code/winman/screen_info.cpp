#include "modules/winman/screen_info.h"

#include "platform/text_tools.h"

WM_SCREEN_INFO::WM_SCREEN_INFO() : unique(static_cast<std::uint32_t>(get_unique_id())) {
}

void WM_SCREEN_INFO::reset() {
    *this = WM_SCREEN_INFO();
}

void WM_SCREEN_INFO::clear() {
    const DESTROY function = destroy;
    void* destroyed = data;
    reset();  // first, as the function may look at the history
    if (function != nullptr) {
        function(destroyed);
    }
}

void WM_SCREEN_INFO::make_way_for(const void* next_data) {
    if (data != nullptr && data == next_data) {
        reset();
    } else {
        clear();
    }
}

bool WM_SCREEN_INFO::operator==(const WM_SCREEN_INFO& other) const {
    if (create != other.create || destroy != other.destroy || monitor != other.monitor ||
        compare != other.compare || objects_deleting != other.objects_deleting ||
        unique != other.unique) {
        return false;
    }
    return compare != nullptr ? compare(data, other.data) != 0 : data == other.data;
}
