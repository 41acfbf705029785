#include "platform/ptrarray.h"

#include <algorithm>
#include <cstdlib>
#include <limits>

#include "kvcore/memory.h"

namespace {

constexpr std::int32_t DEFAULT_GROW_STEP = 10;

}  // namespace

PTRARRAY::PTRARRAY(std::int32_t grow, std::int32_t initial, DELETE_FUNCTION delete_with,
                   COMPARE_FUNCTION compare_with)
    : grow_step(grow),
      initial_size(initial),
      delete_function(delete_with),
      compare_function(compare_with) {
}

bool PTRARRAY::reallocate(std::int32_t new_capacity) {
    void* block = KVCORE::MEMORY_LIBC::reallocate(
        data, static_cast<std::size_t>(new_capacity) * sizeof(void*));
    if (!block) {
        return false;
    }
    data = static_cast<void**>(block);
    capacity = new_capacity;
    return true;
}

bool PTRARRAY::grow() {
    if (!data && initial_size > grow_step) {
        return reallocate(initial_size);
    }
    if (grow_step <= 0) {
        grow_step = DEFAULT_GROW_STEP;
    }
    if (capacity > std::numeric_limits<std::int32_t>::max() - grow_step) {
        return false;
    }
    return reallocate(capacity + grow_step);
}

bool PTRARRAY::add(void* entry) {
    if (count == capacity && !grow()) {
        return false;
    }
    data[count++] = entry;
    return true;
}

bool PTRARRAY::allocate(std::int32_t n) {
    return n <= capacity || reallocate(n);
}

bool PTRARRAY::remove(std::int32_t index) {
    if (index < 0 || index >= count) {
        return false;
    }
    if (delete_function) {
        delete_function(data[index]);
    }
    std::copy(data + index + 1, data + count, data + index);
    --count;
    return true;
}

bool PTRARRAY::remove_quick(std::int32_t index) {
    if (index < 0 || index >= count) {
        return false;
    }
    if (delete_function) {
        delete_function(data[index]);
    }
    data[index] = data[--count];
    return true;
}

void PTRARRAY::clear() {
    if (delete_function) {
        for (std::int32_t i = 0; i < count; ++i) {
            delete_function(data[i]);
        }
    }
    KVCORE::MEMORY_LIBC::free(data);
    data = nullptr;
    capacity = 0;
    count = 0;
}

void PTRARRAY::set(const PTRARRAY* other) {
    if (other == this) {
        return;
    }
    clear();
    if (!other) {
        return;
    }
    grow_step = other->grow_step;
    initial_size = other->initial_size;
    if (other->capacity > 0 && reallocate(other->capacity)) {
        std::copy(other->data, other->data + other->count, data);
        count = other->count;
    }
}

void PTRARRAY::sort(COMPARE_FUNCTION compare) {
    if (!compare) {
        compare = compare_function;
    }
    if (compare && count > 1) {
        std::qsort(data, static_cast<std::size_t>(count), sizeof(void*), compare);
    }
}

std::int32_t PTRARRAY::find(const void* key, COMPARE_FUNCTION compare) const {
    if (count == 0) {
        return -1;
    }
    if (!compare) {
        compare = compare_function;
    }
    if (compare) {
        const void* found =
            std::bsearch(&key, data, static_cast<std::size_t>(count), sizeof(void*), compare);
        return found ? static_cast<std::int32_t>(static_cast<void* const*>(found) - data) : -1;
    }
    void* const* end = data + count;
    void* const* found = std::find(const_cast<void* const*>(data), end, key);
    return found == end ? -1 : static_cast<std::int32_t>(found - data);
}
