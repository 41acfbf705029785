// The last resort for diagnostics: a console that needs nothing else to work, a pause for whoever
// watches, the call stack.
#ifndef KVCORE_DEBUGGER_H
#define KVCORE_DEBUGGER_H

namespace KVCORE {

class CALL_STACK;

// All operations may be called from any thread.
class DEBUGGER_POSIX {
public:
    // Writes to standard output at once. Allocates nothing, so it also serves when memory is out. A
    // null text does nothing.
    static void print(const char* text);

    // Stops in the debugger that traces this process; without one the process goes on.
    static void pause();
    static bool is_attached();

    // Records the calling thread's stack: at most `limit` frames are taken, and the innermost
    // `skipped` of them dropped; 0 skipped begins with this operation itself.
    static void get_current_stack(CALL_STACK& stack, int skipped, int limit);

    static constexpr int MAX_STACK_FRAMES = 128;
};

using DEBUGGER = DEBUGGER_POSIX;

}  // namespace KVCORE

#endif  // KVCORE_DEBUGGER_H
