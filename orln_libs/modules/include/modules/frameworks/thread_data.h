// THREAD_DATA: what a pool thread's start callback yields when the thread wants a number of its own
// in the headings of the output family.
#ifndef MODULES_FRAMEWORKS_THREAD_DATA_H
#define MODULES_FRAMEWORKS_THREAD_DATA_H

class THREAD_DATA {
public:
    virtual ~THREAD_DATA() = default;
    virtual int get_number() const = 0;
};

#endif  // MODULES_FRAMEWORKS_THREAD_DATA_H
