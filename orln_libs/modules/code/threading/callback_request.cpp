#include "modules/threading/callback_request.h"

void CALLBACK_REQUEST::do_work(void* thread_data) {
    if (callback_) {
        callback_(*this, thread_data);
    }
}
