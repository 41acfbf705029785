// Any object in a file system.
#ifndef KVCORE_FILE_ITEM_H
#define KVCORE_FILE_ITEM_H

#include <cstdint>

#include "kvcore/date.h"
#include "kvcore/file_items.h"
#include "kvcore/file_name.h"
#include "kvcore/file_path.h"
#include "kvcore/file_type.h"
#include "kvcore/reference_counter.h"
#include "kvcore/result.h"
#include "kvcore/stream.h"

namespace KVCORE {

// Which date of an item; any other value is that of the last change to the content.
enum DATE_TYPE : std::int32_t { DATE_OF_CREATION = 0, DATE_OF_CHANGE = 1 };

// How a file is opened for writing; any other value opens it at its end.
enum FILE_WRITE_MODE : std::int32_t { WRITE_FROM_START = 0, WRITE_AT_END = 1 };

struct FILE_PERMISSIONS {
    static constexpr std::uint32_t LOCKED = 1;
    std::uint32_t bits = 0;

    bool is_locked() const { return (bits & LOCKED) != 0; }
};

// Bits of get_items and remove.
using FILE_ITEMS_FLAGS = std::uint32_t;
// get_items: descend into listed containers. remove: remove a container's content first.
inline constexpr FILE_ITEMS_FLAGS FILE_ITEMS_DESCEND = 1;
// remove: leave the item and its content in place.
inline constexpr FILE_ITEMS_FLAGS FILE_ITEMS_KEEP = 4;
// remove: clear the lock first.
inline constexpr FILE_ITEMS_FLAGS FILE_ITEMS_UNLOCK = 8;
// remove: move the item to the trash, with its content.
inline constexpr FILE_ITEMS_FLAGS FILE_ITEMS_TRASH = 16;
// get_items: an alias is listed as itself, a file, and not as what it leads to.
inline constexpr FILE_ITEMS_FLAGS FILE_ITEMS_ALIASES = 32;

// A live reference to an object that exists, where a FILE_PATH is only text. The base is an object
// that can do nothing. Operations with a RESULT yield 0, 1 for a general failure, or the platform's
// code; queries yield an empty value on failure, and operations with a handle null. An item is used
// by one thread at a time.
class FILE_ITEM : public REFERENCE_COUNTED<FILE_ITEM, BASE_REFERENCE_COUNTED_TRAITS> {
public:
    using HANDLE = REFERENCE_COUNTER<FILE_ITEM>;

    ~FILE_ITEM() override = default;

    virtual FILE_NAME get_name() const { return FILE_NAME(); }
    virtual FILE_TYPE get_type() const { return FILE_TYPE_NONE; }
    virtual FILE_PATH get_path() const { return FILE_PATH(); }
    virtual bool is_container() const { return false; }
    virtual bool is_file() const { return false; }
    virtual bool is_hidden() const { return false; }
    virtual bool is_root() const { return false; }
    virtual bool is_volume() const { return false; }
    virtual RESULT get_permissions(FILE_PERMISSIONS&) const { return RESULT(1); }
    virtual RESULT set_permissions(const FILE_PERMISSIONS&) { return RESULT(1); }
    // Bytes of a file's content.
    virtual std::int64_t get_size() const { return 0; }
    virtual DATE get_date(DATE_TYPE) const { return DATE(); }
    virtual RESULT set_date(DATE_TYPE, const DATE&) { return RESULT(1); }
    virtual HANDLE get_parent() const { return nullptr; }
    // A name or type that is "unchanged" is the item's own. Nothing that exists is replaced.
    virtual RESULT rename_as(const FILE_NAME&, const FILE_TYPE&) { return RESULT(1); }
    virtual RESULT move_to(const FILE_NAME&, const FILE_TYPE&, const HANDLE&) { return RESULT(1); }
    // Yields the copy.
    virtual HANDLE copy_to(const FILE_NAME&, const FILE_TYPE&, const HANDLE&) { return nullptr; }
    virtual RESULT remove(FILE_ITEMS_FLAGS) { return RESULT(1); }
    virtual RESULT touch() const { return RESULT(1); }
    virtual REFERENCE_COUNTER<INPUT_STREAM> open_to_read() const { return nullptr; }
    virtual REFERENCE_COUNTER<OUTPUT_STREAM> open_to_write(FILE_WRITE_MODE) const {
        return nullptr;
    }
    // Something of this name in this container.
    virtual bool exists(const FILE_NAME&, const FILE_TYPE&) const { return false; }
    virtual HANDLE get_item(const FILE_NAME&, const FILE_TYPE&) const { return nullptr; }
    // Adds what is in this container to `items`, which is made when there is something and it is
    // null. Names and types other than "any" are filters.
    virtual RESULT get_items(const FILE_NAME&, const FILE_TYPE&, REFERENCE_COUNTER<FILE_ITEMS>&,
                             FILE_ITEMS_FLAGS) const {
        return RESULT(1);
    }
    // What exists already is yielded as it is.
    virtual HANDLE create_item(const FILE_NAME&, const FILE_TYPE&) const { return nullptr; }

    // Built on the above.
    bool container_exists(const FILE_NAME& name) const;
    HANDLE get_container(const FILE_NAME& name) const;
    HANDLE create_container(const FILE_NAME& name) const;
    // A file in this container; null if there is none.
    REFERENCE_COUNTER<INPUT_STREAM> open_file_to_read(const FILE_NAME& name,
                                                      const FILE_TYPE& type) const;
    // Makes the file if there is none.
    REFERENCE_COUNTER<OUTPUT_STREAM> open_file_to_write(const FILE_NAME& name,
                                                        const FILE_TYPE& type,
                                                        FILE_WRITE_MODE mode) const;
    // An item in this container; 1 if there is none.
    RESULT remove_item(const FILE_NAME& name, const FILE_TYPE& type, FILE_ITEMS_FLAGS flags) const;
    RESULT remove_container(const FILE_NAME& name, FILE_ITEMS_FLAGS flags) const;
    // Calls remove on everything directly inside until one fails. An alias is removed itself, what
    // it leads to isn't touched.
    RESULT remove_content(FILE_ITEMS_FLAGS flags) const;
    // get_parent n times.
    HANDLE get_ancestor(std::int32_t n) const;
    // Makes a container in `target` and copies each item of this one there. Stops at the first
    // failure and yields the new container; null if the target has such a container already.
    HANDLE copy_container_manually(const FILE_NAME& name, const HANDLE& target) const;
    // With FILE_ITEMS_DESCEND, lists the containers of `items` from index `first` on, those that
    // come up on the way included. A container is entered once only, however many aliases lead to
    // it, so that the walk ends.
    RESULT get_items_recursive(std::int32_t first, const FILE_NAME& name, const FILE_TYPE& type,
                               REFERENCE_COUNTER<FILE_ITEMS>& items, FILE_ITEMS_FLAGS flags) const;
};

}  // namespace KVCORE

#endif  // KVCORE_FILE_ITEM_H
