// A singleton whose life its owner decides: made with `new` where the order of start-up is known,
// deleted where the order of shutdown is.
//
//   class FILE_MANAGER : public KVCORE::MANUAL_SINGLETON<FILE_MANAGER> { ... };
//   new FILE_MANAGER;                      // start-up
//   FILE_MANAGER::get_instance()->...      // in between
//   delete FILE_MANAGER::get_instance();   // shutdown
#ifndef KVCORE_MANUAL_SINGLETON_H
#define KVCORE_MANUAL_SINGLETON_H

#include <cassert>

namespace KVCORE {

// T derives from this. Making and deleting belong to one thread, at times when no other thread uses
// the instance.
template <typename T>
class MANUAL_SINGLETON {
public:
    // The one object; null before it is made and after it is gone.
    static T* get_instance() noexcept { return static_cast<T*>(instance); }

    MANUAL_SINGLETON(const MANUAL_SINGLETON&) = delete;
    MANUAL_SINGLETON& operator=(const MANUAL_SINGLETON&) = delete;

protected:
    MANUAL_SINGLETON() noexcept {
        assert(instance == nullptr);
        instance = this;
    }
    ~MANUAL_SINGLETON() {
        if (instance == this) {
            instance = nullptr;
        }
    }

private:
    static inline MANUAL_SINGLETON* instance = nullptr;
};

}  // namespace KVCORE

#endif  // KVCORE_MANUAL_SINGLETON_H
