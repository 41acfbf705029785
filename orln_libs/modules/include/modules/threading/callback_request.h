// A THREAD_REQUEST whose work is a plain function.
#ifndef MODULES_THREADING_CALLBACK_REQUEST_H
#define MODULES_THREADING_CALLBACK_REQUEST_H

#include "modules/threading/thread_request.h"

class CALLBACK_REQUEST : public THREAD_REQUEST {
public:
    // `thread_data` is that of THREAD_REQUEST::do_work.
    using CALLBACK = void (*)(CALLBACK_REQUEST& request, void* thread_data);

    // A null callback makes a request that does nothing. The user values are not owned.
    explicit CALLBACK_REQUEST(CALLBACK callback, void* user_1 = nullptr, void* user_2 = nullptr)
        : callback_(callback), user_1_(user_1), user_2_(user_2) {}

    void do_work(void* thread_data) override;

    void* get_user_1() const { return user_1_; }
    void* get_user_2() const { return user_2_; }

private:
    CALLBACK callback_;
    void* user_1_;
    void* user_2_;
};

#endif  // MODULES_THREADING_CALLBACK_REQUEST_H
