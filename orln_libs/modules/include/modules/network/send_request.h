// A framed message on its way to a socket, and the queue of them.
#ifndef MODULES_NETWORK_SEND_REQUEST_H
#define MODULES_NETWORK_SEND_REQUEST_H

#include <cstdint>
#include <memory>

#include "modules/network/network_manager_info.h"

struct SEND_REQUEST {
    NETWORK_CONNECTION connection;
    std::unique_ptr<unsigned char[]> data;  // the bytes to send behind the prefix
    std::uint32_t size = 0;
    std::uint32_t sent = 0;  // of the prefix and the data together
    unsigned char prefix[5] = {};
    std::uint32_t hold = 0;  // the hold of the connection that it was queued under; 0 for none
    SEND_REQUEST* next = nullptr;
    SEND_REQUEST* previous = nullptr;

    std::uint32_t total() const { return static_cast<std::uint32_t>(sizeof prefix) + size; }
};

// A doubly linked list of requests in the order of `append`, which owns them. No lock of its own.
class SEND_QUEUE {
public:
    SEND_QUEUE() = default;
    ~SEND_QUEUE() { clear(); }
    SEND_QUEUE(const SEND_QUEUE&) = delete;
    SEND_QUEUE& operator=(const SEND_QUEUE&) = delete;

    SEND_REQUEST* get_head() const { return head; }
    std::int32_t get_count() const { return count; }

    void append(std::unique_ptr<SEND_REQUEST> request);
    // Deletes a request of this queue and yields the one behind it.
    SEND_REQUEST* remove(SEND_REQUEST* request);
    // Takes over all requests of `other`, which end up in front of those that are here.
    void prepend_all(SEND_QUEUE& other);
    void clear();

private:
    SEND_REQUEST* head = nullptr;
    SEND_REQUEST* tail = nullptr;
    std::int32_t count = 0;
};

#endif  // MODULES_NETWORK_SEND_REQUEST_H
