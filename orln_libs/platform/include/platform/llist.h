// LLIST, a doubly linked list with a built-in cursor, and PTRLLIST, the same of pointers.
//
// A walk sets the cursor and asks until nothing comes:
//
//     list.set_cursor(list.get_head());
//     while (void* info = list.get_info_inc()) ...
//
// No locks: a list belongs to its owner's thread or to the lock held around it.
#ifndef PLATFORM_LLIST_H
#define PLATFORM_LLIST_H

#include <cstddef>
#include <cstdint>

// A node. Its info lies behind it in the same block of memory.
struct alignas(std::max_align_t) LISTNODE {
    unsigned char* info;
    LISTNODE* next;
    LISTNODE* previous;
};

class LLIST {
public:
    using REMOVE_CALLBACK = void (*)(void* info);

    explicit LLIST(REMOVE_CALLBACK remove_callback = nullptr) : callback(remove_callback) {}
    virtual ~LLIST() { clear(); }
    LLIST(const LLIST&) = delete;
    LLIST& operator=(const LLIST&) = delete;

    // The cursor's info, and the cursor moves on to the next or the previous node. Null when the
    // cursor is null.
    virtual void* get_info_inc() const;
    virtual void* get_info_dec() const;

    // Unlinks the node whose info is this very pointer, calls the callback and frees the node. The
    // cursor becomes null if it stood there. False if there is no such node.
    virtual bool remove_node(void* info);

    // Copies `size` bytes into a new node: before the cursor's node, or at the tail when the
    // cursor is null. The cursor stays. A negative size or a null info gives a node without
    // content.
    virtual bool add_node(void* info, std::int16_t size);

    // Calls the callback, if one is set, with the node's info.
    virtual void call_remove_node_callback(LISTNODE* node);

    // Removes each node from the head on, with the callback. A callback may itself remove nodes.
    void clear();

    std::int32_t get_count() const { return count; }
    LISTNODE* get_head() const { return head; }
    LISTNODE* get_tail() const { return tail; }
    LISTNODE* get_cursor() const { return cursor; }
    void set_cursor(LISTNODE* node) const { cursor = node; }
    void set_remove_callback(REMOVE_CALLBACK function) { callback = function; }

protected:
    REMOVE_CALLBACK get_remove_callback() const { return callback; }

private:
    void unlink(LISTNODE* node);

    std::int32_t count = 0;
    LISTNODE* head = nullptr;
    LISTNODE* tail = nullptr;
    mutable LISTNODE* cursor = nullptr;
    REMOVE_CALLBACK callback;
};

// A list of pointers. The nodes hold the pointer values; the callback is given the pointer.
class PTRLLIST : public LLIST {
public:
    using LLIST::LLIST;
    ~PTRLLIST() override { clear(); }  // while the callback still gets pointers

    void* get_info_inc() const override;
    void* get_info_dec() const override;
    // Removes the first node that holds this pointer.
    bool remove_node(void* pointer) override;
    // The size has no effect.
    bool add_node(void* pointer, std::int16_t size = 0) override;
    void call_remove_node_callback(LISTNODE* node) override;
};

#endif  // PLATFORM_LLIST_H
