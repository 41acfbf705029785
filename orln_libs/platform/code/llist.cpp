#include "platform/llist.h"

#include <cstring>

#include "kvcore/memory.h"

namespace {

void* stored_pointer(const LISTNODE* node) {
    void* pointer = nullptr;
    std::memcpy(&pointer, node->info, sizeof pointer);
    return pointer;
}

}  // namespace

void* LLIST::get_info_inc() const {
    if (!cursor) {
        return nullptr;
    }
    void* info = cursor->info;
    cursor = cursor->next;
    return info;
}

void* LLIST::get_info_dec() const {
    if (!cursor) {
        return nullptr;
    }
    void* info = cursor->info;
    cursor = cursor->previous;
    return info;
}

bool LLIST::remove_node(void* info) {
    LISTNODE* node = head;
    while (node && node->info != info) {
        node = node->next;
    }
    if (!node) {
        return false;
    }
    unlink(node);
    call_remove_node_callback(node);
    KVCORE::MEMORY_LIBC::free(node);
    return true;
}

bool LLIST::add_node(void* info, std::int16_t size) {
    const std::size_t length = info && size > 0 ? static_cast<std::size_t>(size) : 0;
    auto* node = static_cast<LISTNODE*>(KVCORE::MEMORY_LIBC::allocate(sizeof(LISTNODE) + length));
    if (!node) {
        return false;
    }
    node->info = reinterpret_cast<unsigned char*>(node + 1);
    if (length != 0) {
        std::memcpy(node->info, info, length);
    }
    node->next = cursor;
    node->previous = cursor ? cursor->previous : tail;
    (node->previous ? node->previous->next : head) = node;
    (node->next ? node->next->previous : tail) = node;
    ++count;
    return true;
}

void LLIST::call_remove_node_callback(LISTNODE* node) {
    if (callback) {
        callback(node->info);
    }
}

void LLIST::clear() {
    while (LISTNODE* node = head) {
        unlink(node);
        call_remove_node_callback(node);
        KVCORE::MEMORY_LIBC::free(node);
    }
    cursor = nullptr;
}

void LLIST::unlink(LISTNODE* node) {
    (node->previous ? node->previous->next : head) = node->next;
    (node->next ? node->next->previous : tail) = node->previous;
    if (cursor == node) {
        cursor = nullptr;
    }
    --count;
}

void* PTRLLIST::get_info_inc() const {
    const LISTNODE* node = get_cursor();
    LLIST::get_info_inc();
    return node ? stored_pointer(node) : nullptr;
}

void* PTRLLIST::get_info_dec() const {
    const LISTNODE* node = get_cursor();
    LLIST::get_info_dec();
    return node ? stored_pointer(node) : nullptr;
}

bool PTRLLIST::remove_node(void* pointer) {
    for (LISTNODE* node = get_head(); node; node = node->next) {
        if (stored_pointer(node) == pointer) {
            return LLIST::remove_node(node->info);
        }
    }
    return false;
}

bool PTRLLIST::add_node(void* pointer, std::int16_t) {
    return LLIST::add_node(&pointer, sizeof pointer);
}

void PTRLLIST::call_remove_node_callback(LISTNODE* node) {
    if (get_remove_callback()) {
        get_remove_callback()(stored_pointer(node));
    }
}
