// THREAD_DATA: what a thread hands to THREAD_POOL::set_thread_data, which takes nothing else in a
// program of these frameworks, when it wants a number of its own in the headings of the output
// family.
#ifndef MODULES_FRAMEWORKS_THREAD_DATA_H
#define MODULES_FRAMEWORKS_THREAD_DATA_H

class THREAD_DATA {
public:
    virtual ~THREAD_DATA() = default;
    virtual int get_number() const = 0;
};

#endif  // MODULES_FRAMEWORKS_THREAD_DATA_H
