#include "kvcore/file_item.h"

#include <set>
#include <vector>

namespace KVCORE {

FILE_ITEMS::FILE_ITEMS() = default;
FILE_ITEMS::~FILE_ITEMS() = default;

void FILE_ITEMS::add_item(const REFERENCE_COUNTER<FILE_ITEM>& item, bool is_container) {
    items_.add(item);
    (is_container ? containers_ : files_).add(item);
}

bool FILE_ITEM::container_exists(const FILE_NAME& name) const {
    return exists(name, FILE_TYPE_CONTAINER);
}

FILE_ITEM::HANDLE FILE_ITEM::get_container(const FILE_NAME& name) const {
    return get_item(name, FILE_TYPE_CONTAINER);
}

FILE_ITEM::HANDLE FILE_ITEM::create_container(const FILE_NAME& name) const {
    return create_item(name, FILE_TYPE_CONTAINER);
}

REFERENCE_COUNTER<INPUT_STREAM> FILE_ITEM::open_file_to_read(const FILE_NAME& name,
                                                             const FILE_TYPE& type) const {
    const HANDLE item = get_item(name, type);
    return item ? item->open_to_read() : nullptr;
}

REFERENCE_COUNTER<OUTPUT_STREAM> FILE_ITEM::open_file_to_write(const FILE_NAME& name,
                                                               const FILE_TYPE& type,
                                                               FILE_WRITE_MODE mode) const {
    const HANDLE item = create_item(name, type);
    return item ? item->open_to_write(mode) : nullptr;
}

RESULT FILE_ITEM::remove_item(const FILE_NAME& name, const FILE_TYPE& type,
                              FILE_ITEMS_FLAGS flags) const {
    const HANDLE item = get_item(name, type);
    return item ? item->remove(flags) : RESULT(1);
}

RESULT FILE_ITEM::remove_container(const FILE_NAME& name, FILE_ITEMS_FLAGS flags) const {
    return remove_item(name, FILE_TYPE_CONTAINER, flags);
}

RESULT FILE_ITEM::remove_content(FILE_ITEMS_FLAGS flags) const {
    REFERENCE_COUNTER<FILE_ITEMS> items;
    RESULT result = get_items(FILE_NAME_ANY, FILE_TYPE_ANY, items, FILE_ITEMS_ALIASES);
    for (std::int32_t i = 0; result == 0 && items && i < items->get_count(); ++i) {
        result = items->get_item(i)->remove(flags);
    }
    return result;
}

FILE_ITEM::HANDLE FILE_ITEM::get_ancestor(std::int32_t n) const {
    // The handle only reads the item that it begins with.
    HANDLE item(const_cast<FILE_ITEM*>(this));
    for (; n > 0 && item; --n) {
        item = item->get_parent();
    }
    return item;
}

FILE_ITEM::HANDLE FILE_ITEM::copy_container_manually(const FILE_NAME& name,
                                                     const HANDLE& target) const {
    const FILE_NAME new_name = name == FILE_NAME_UNCHANGED ? get_name() : name;
    if (!target || target->container_exists(new_name)) {
        return nullptr;
    }
    // Listed ahead, so that a copy into this very container doesn't meet itself.
    REFERENCE_COUNTER<FILE_ITEMS> items;
    const RESULT listed = get_items(FILE_NAME_ANY, FILE_TYPE_ANY, items, FILE_ITEMS_KEEP);
    const HANDLE copy = target->create_container(new_name);
    if (!copy || listed != 0) {
        return copy;
    }
    for (std::int32_t i = 0; items && i < items->get_count(); ++i) {
        if (!items->get_item(i)->copy_to(FILE_NAME_UNCHANGED, FILE_TYPE_UNCHANGED, copy)) {
            break;
        }
    }
    return copy;
}

RESULT FILE_ITEM::get_items_recursive(std::int32_t first, const FILE_NAME& name,
                                      const FILE_TYPE& type, REFERENCE_COUNTER<FILE_ITEMS>& items,
                                      FILE_ITEMS_FLAGS flags) const {
    RESULT result;
    if ((flags & FILE_ITEMS_DESCEND) == 0 || !items) {
        return result;
    }
    // Containers that wait, as ranges of the list: the order is that of calls within calls, and no
    // depth of folders runs the stack out.
    struct RANGE {
        std::int32_t next;
        std::int32_t end;
    };
    std::vector<RANGE> waiting{{first, items->get_container_count()}};
    std::set<STRING> entered{get_path().get_string()};
    while (!waiting.empty()) {
        RANGE& range = waiting.back();
        if (range.next >= range.end) {
            waiting.pop_back();
            continue;
        }
        const HANDLE container = items->get_container(range.next++);
        if (entered.insert(container->get_path().get_string()).second) {
            const std::int32_t before = items->get_container_count();
            result += container->get_items(name, type, items, flags & ~FILE_ITEMS_DESCEND);
            waiting.push_back({before, items->get_container_count()});
        }
    }
    return result;
}

}  // namespace KVCORE
