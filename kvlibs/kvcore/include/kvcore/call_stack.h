// The routines through which a thread came to a point.
#ifndef KVCORE_CALL_STACK_H
#define KVCORE_CALL_STACK_H

#include <cstddef>
#include <string>
#include <vector>

namespace KVCORE {

// Holds return addresses, innermost first, and finds names only when asked. Recorded by
// DEBUGGER_POSIX::get_current_stack.
class CALL_STACK {
public:
    std::size_t get_count() const { return addresses_.size(); }
    bool is_empty() const { return addresses_.empty(); }

    // The routine's name, or its module and offset where no name is known. Empty for an index
    // beyond the count.
    std::string get_routine_name(std::size_t index) const;

    // Replaces the content.
    void set(const void* const* addresses, std::size_t count);

private:
    std::vector<const void*> addresses_;
};

}  // namespace KVCORE

#endif  // KVCORE_CALL_STACK_H
