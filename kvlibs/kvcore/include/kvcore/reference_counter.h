// Intrusive reference counting: the count lives in the object, the handle is one pointer wide.
//
//   class TEXTURE : public KVCORE::REFERENCE_COUNTED<TEXTURE> { ... };
//   KVCORE::REFERENCE_COUNTER<TEXTURE> texture(new TEXTURE);
//
// A fresh object has the count 0 and belongs to the first handle that takes it. Counts are atomic:
// threads may hold and drop handles of one object at the same time. One handle object is not to be
// changed by two threads at once.
#ifndef KVCORE_REFERENCE_COUNTER_H
#define KVCORE_REFERENCE_COUNTER_H

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <type_traits>
#include <utility>

namespace KVCORE {

// What happens to an object whose last handle is gone: it is deleted. A class that must end in
// another way (on another thread, say) hands its own traits to REFERENCE_COUNTED.
struct BASE_REFERENCE_COUNTED_TRAITS {
    template <typename T>
    static void destroy(T* object) {
        delete object;
    }
};

// The count of an object of class T, which derives from this.
template <typename T, typename TRAITS = BASE_REFERENCE_COUNTED_TRAITS>
class REFERENCE_COUNTED {
public:
    // Copying an object copies what it holds, never how many handles it has.
    REFERENCE_COUNTED(const REFERENCE_COUNTED&) noexcept {}
    REFERENCE_COUNTED& operator=(const REFERENCE_COUNTED&) noexcept { return *this; }

    // One holder more. For REFERENCE_COUNTER; others keep a handle.
    void add_reference() const noexcept { reference_count.fetch_add(1, std::memory_order_relaxed); }

    // One holder less. The last one ends the object on the calling thread.
    void release_reference() const {
        if (reference_count.fetch_sub(1, std::memory_order_acq_rel) == 1) {
            TRAITS::destroy(const_cast<T*>(static_cast<const T*>(this)));
        }
    }

    // The count at this moment; with other threads about it is a hint only.
    std::int32_t get_reference_count() const noexcept {
        return reference_count.load(std::memory_order_acquire);
    }

protected:
    REFERENCE_COUNTED() noexcept = default;
    virtual ~REFERENCE_COUNTED() = default;

private:
    friend TRAITS;

    mutable std::atomic<std::int32_t> reference_count{0};
};

// The count for a class hierarchy without wishes of its own.
class REFERENCE_COUNTED_BASIC : public REFERENCE_COUNTED<REFERENCE_COUNTED_BASIC> {
public:
    ~REFERENCE_COUNTED_BASIC() override = default;

protected:
    REFERENCE_COUNTED_BASIC() noexcept = default;
    REFERENCE_COUNTED_BASIC(const REFERENCE_COUNTED_BASIC&) noexcept = default;
    REFERENCE_COUNTED_BASIC& operator=(const REFERENCE_COUNTED_BASIC&) noexcept = default;
};

// A counted handle of T. Null is a legal value. T offers add_reference and release_reference.
template <typename T>
class REFERENCE_COUNTER {
public:
    constexpr REFERENCE_COUNTER() noexcept = default;
    constexpr REFERENCE_COUNTER(std::nullptr_t) noexcept {}

    // Takes a share in `counted`, which may be null.
    explicit REFERENCE_COUNTER(T* counted) noexcept : object(counted) {
        if (object) {
            object->add_reference();
        }
    }
    REFERENCE_COUNTER(const REFERENCE_COUNTER& other) noexcept : REFERENCE_COUNTER(other.object) {}
    REFERENCE_COUNTER(REFERENCE_COUNTER&& other)
    noexcept : object(std::exchange(other.object, nullptr)) {}

    // Handles of derived classes convert to handles of their bases.
    template <typename U>
    requires std::is_convertible_v<U*, T*> REFERENCE_COUNTER(const REFERENCE_COUNTER<U>& other)
    noexcept : REFERENCE_COUNTER(static_cast<T*>(other.get())) {}

    ~REFERENCE_COUNTER() {
        if (object) {
            object->release_reference();
        }
    }

    REFERENCE_COUNTER& operator=(REFERENCE_COUNTER other) noexcept {
        swap(other);
        return *this;
    }

    // Lets go of the object, or takes a share in another one.
    void reset(T* counted = nullptr) { *this = REFERENCE_COUNTER(counted); }
    void swap(REFERENCE_COUNTER& other) noexcept { std::swap(object, other.object); }

    T* get() const noexcept { return object; }
    T* operator->() const noexcept { return object; }
    T& operator*() const noexcept { return *object; }
    explicit operator bool() const noexcept { return object != nullptr; }
    bool is_null() const noexcept { return object == nullptr; }

    // Handles are equal when they hold the same object; the order is that of the addresses.
    friend bool operator==(const REFERENCE_COUNTER& a, const REFERENCE_COUNTER& b) noexcept {
        return a.object == b.object;
    }
    friend bool operator==(const REFERENCE_COUNTER& a, const T* b) noexcept {
        return a.object == b;
    }
    friend bool operator==(const REFERENCE_COUNTER& a, std::nullptr_t) noexcept {
        return a.object == nullptr;
    }
    friend bool operator<(const REFERENCE_COUNTER& a, const REFERENCE_COUNTER& b) noexcept {
        return std::less<const T*>()(a.object, b.object);
    }

private:
    T* object = nullptr;
};

}  // namespace KVCORE

#endif  // KVCORE_REFERENCE_COUNTER_H
