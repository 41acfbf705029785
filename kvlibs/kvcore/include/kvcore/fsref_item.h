// An object of the platform's file system.
#ifndef KVCORE_FSREF_ITEM_H
#define KVCORE_FSREF_ITEM_H

#include <string>

#include "kvcore/file_item.h"
#include "kvcore/file_reference.h"

namespace KVCORE {

// An item over a stable reference. Codes are errno values.
//
// An alias is a symbolic link. A path and a listing lead to what an alias stands for, get_item to
// the alias itself: its content and size are then those of its object, while renaming, moving and
// removing concern the alias.
//
// A name holds no "/", and a file without a type has no dot at its end on disk: FILE_TYPE_NONE and
// no extension are the same. Locked means that nobody has the right to write; a locked item isn't
// removed. The birth time of a file can't be written, so that a creation date that was set is kept
// in the attribute "user.kvcore.created" of the file, where the volume has such attributes.
class FSREF_ITEM final : public FILE_ITEM {
public:
    // The code of a move to something that is no FSREF_ITEM.
    static constexpr std::int32_t WRONG_TARGET = 0x6D6F7621;  // 'mov!'

    // Each yields null if no object stands there.
    static HANDLE create(const FILE_PATH& path);
    static HANDLE create(const FILE_REFERENCE& reference);
    // A path as the platform has it, in UTF-8.
    static HANDLE create(const std::string& platform_path);

    FILE_NAME get_name() const override;
    FILE_TYPE get_type() const override;
    FILE_PATH get_path() const override;
    bool is_container() const override;
    bool is_file() const override;
    bool is_root() const override;
    bool is_volume() const override;
    RESULT get_permissions(FILE_PERMISSIONS& permissions) const override;
    RESULT set_permissions(const FILE_PERMISSIONS& permissions) override;
    std::int64_t get_size() const override;
    DATE get_date(DATE_TYPE type) const override;
    RESULT set_date(DATE_TYPE type, const DATE& date) override;
    HANDLE get_parent() const override;
    RESULT rename_as(const FILE_NAME& name, const FILE_TYPE& type) override;
    RESULT move_to(const FILE_NAME& name, const FILE_TYPE& type, const HANDLE& target) override;
    // The copy appears only once it is complete.
    HANDLE copy_to(const FILE_NAME& name, const FILE_TYPE& type, const HANDLE& target) override;
    RESULT remove(FILE_ITEMS_FLAGS flags) override;
    REFERENCE_COUNTER<INPUT_STREAM> open_to_read() const override;
    REFERENCE_COUNTER<OUTPUT_STREAM> open_to_write(FILE_WRITE_MODE mode) const override;
    bool exists(const FILE_NAME& name, const FILE_TYPE& type) const override;
    HANDLE get_item(const FILE_NAME& name, const FILE_TYPE& type) const override;
    // In the order of the names' bytes.
    RESULT get_items(const FILE_NAME& name, const FILE_TYPE& type,
                     REFERENCE_COUNTER<FILE_ITEMS>& items, FILE_ITEMS_FLAGS flags) const override;
    HANDLE create_item(const FILE_NAME& name, const FILE_TYPE& type) const override;

private:
    explicit FSREF_ITEM(FILE_REFERENCE reference) : reference_(std::move(reference)) {}

    // What is known of the object now; an alias counts as what it leads to.
    bool query(std::string& path, struct stat& status) const;
    RESULT list(const FILE_NAME& name, const FILE_TYPE& type, REFERENCE_COUNTER<FILE_ITEMS>& items,
                FILE_ITEMS_FLAGS flags) const;
    // The path in `target` that this item gets by a move or a copy. Yields 0, or a code.
    int make_target_path(const FILE_NAME& name, const FILE_TYPE& type, const HANDLE& target,
                         const std::string& own_path, std::string& path) const;

    FILE_REFERENCE reference_;
};

}  // namespace KVCORE

#endif  // KVCORE_FSREF_ITEM_H
