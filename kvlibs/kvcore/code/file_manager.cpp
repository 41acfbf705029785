#include "kvcore/file_manager.h"

namespace KVCORE {

RESULT FILE_MANAGER_BASE::do_initialisation() {
    special_items_ = std::make_unique<SPECIAL_ITEMS>();
    return RESULT();
}

RESULT FILE_MANAGER_BASE::do_shutdown() {
    special_items_.reset();
    return RESULT();
}

FILE_ITEM::HANDLE FILE_MANAGER_BASE::get_special_item(const SYMBOL& symbol) {
    return special_items_ ? (*special_items_)[symbol] : nullptr;
}

void FILE_MANAGER_BASE::register_special_item(const SYMBOL& symbol, const FILE_ITEM::HANDLE& item) {
    if (special_items_) {
        (*special_items_)[symbol] = item;
    }
}

}  // namespace KVCORE
