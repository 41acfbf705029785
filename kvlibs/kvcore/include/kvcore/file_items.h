// The result of a listing.
#ifndef KVCORE_FILE_ITEMS_H
#define KVCORE_FILE_ITEMS_H

#include <cstdint>

#include "kvcore/dynamic_array.h"
#include "kvcore/reference_counter.h"

namespace KVCORE {

class FILE_ITEM;

// Items in the order in which they were found: all of them, and apart from that the files and the
// containers. An index isn't checked: the caller keeps it below the count.
class FILE_ITEMS : public REFERENCE_COUNTED<FILE_ITEMS, BASE_REFERENCE_COUNTED_TRAITS> {
public:
    FILE_ITEMS();
    ~FILE_ITEMS() override;

    void add_item(const REFERENCE_COUNTER<FILE_ITEM>& item, bool is_container);

    std::int32_t get_count() const { return items_.get_count(); }
    std::int32_t get_file_count() const { return files_.get_count(); }
    std::int32_t get_container_count() const { return containers_.get_count(); }
    const REFERENCE_COUNTER<FILE_ITEM>& get_item(std::int32_t i) const { return items_[i]; }
    const REFERENCE_COUNTER<FILE_ITEM>& get_file(std::int32_t i) const { return files_[i]; }
    const REFERENCE_COUNTER<FILE_ITEM>& get_container(std::int32_t i) const {
        return containers_[i];
    }

private:
    DYNAMIC_ARRAY<REFERENCE_COUNTER<FILE_ITEM>> items_;
    DYNAMIC_ARRAY<REFERENCE_COUNTER<FILE_ITEM>> files_;
    DYNAMIC_ARRAY<REFERENCE_COUNTER<FILE_ITEM>> containers_;
};

}  // namespace KVCORE

#endif  // KVCORE_FILE_ITEMS_H
