#include "kvcore/symbol.h"

namespace KVCORE {

BASE_SYMBOL_MANAGER::BASE_SYMBOL_MANAGER() : empty_entry(table.add(EMPTY_STRING, nullptr, true)) {
}

BASE_SYMBOL_MANAGER::ENTRY* BASE_SYMBOL_MANAGER::get_entry(const STRING& text) {
    return text.is_empty() ? empty_entry : table.add(text, nullptr, true);
}

SYMBOL_MANAGER& SYMBOL_MANAGER::get_instance() {
    // Never deleted: global symbols of other files may outlive any order of destruction.
    static SYMBOL_MANAGER* const instance = new SYMBOL_MANAGER;
    return *instance;
}

SYMBOL::SYMBOL() : entry(SYMBOL_MANAGER::get_instance().get_empty_entry()) {
}

SYMBOL::SYMBOL(const STRING& text, BASE_SYMBOL_MANAGER* manager)
    : entry((manager ? *manager : SYMBOL_MANAGER::get_instance()).get_entry(text)) {
}

}  // namespace KVCORE
