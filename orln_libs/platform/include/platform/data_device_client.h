// The interface of everything that can be stored or sent.
#ifndef PLATFORM_DATA_DEVICE_CLIENT_H
#define PLATFORM_DATA_DEVICE_CLIENT_H

class DATA_DEVICE;

// A client sees only a DATA_DEVICE, so the same code fills a file and a network message. Both
// operations test each primitive and yield 0 at once when one fails; 1 is success. After a failed
// read the object is half filled, and its owner clears or deletes it.
class DATA_DEVICE_CLIENT {
public:
    virtual unsigned char get_from_data_device(const DATA_DEVICE& device) = 0;
    virtual unsigned char put_to_data_device(DATA_DEVICE& device) const = 0;
    virtual ~DATA_DEVICE_CLIENT() = default;
};

#endif  // PLATFORM_DATA_DEVICE_CLIENT_H
