// A message that waits on its connection for the end of the key exchange.
#ifndef MODULES_NETWORK_PENDING_MESSAGE_H
#define MODULES_NETWORK_PENDING_MESSAGE_H

#include "modules/network/network_manager_info.h"
#include "platform/network_message.h"

class PENDING_MESSAGE : public NETWORK_MESSAGE {
public:
    NETWORK_MESSAGE_CALLBACK reply_handler = nullptr;
    void* reply_user = nullptr;
    PENDING_MESSAGE* next = nullptr;
    PENDING_MESSAGE* previous = nullptr;
};

#endif  // MODULES_NETWORK_PENDING_MESSAGE_H
