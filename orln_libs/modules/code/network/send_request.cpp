#include "modules/network/send_request.h"

#include <utility>

void SEND_QUEUE::append(std::unique_ptr<SEND_REQUEST> request) {
    SEND_REQUEST* const added = request.release();
    added->next = nullptr;
    added->previous = tail;
    (tail ? tail->next : head) = added;
    tail = added;
    ++count;
}

SEND_REQUEST* SEND_QUEUE::remove(SEND_REQUEST* request) {
    SEND_REQUEST* const next = request->next;
    (request->previous ? request->previous->next : head) = next;
    (next ? next->previous : tail) = request->previous;
    --count;
    delete request;
    return next;
}

void SEND_QUEUE::prepend_all(SEND_QUEUE& other) {
    if (!other.head) {
        return;
    }
    other.tail->next = head;
    (head ? head->previous : tail) = other.tail;
    head = std::exchange(other.head, nullptr);
    other.tail = nullptr;
    count += std::exchange(other.count, 0);
}

void SEND_QUEUE::clear() {
    while (head) {
        remove(head);
    }
}
