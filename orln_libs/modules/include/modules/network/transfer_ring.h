// The record of one direction's latest transfers, from which a rate is computed.
//
// At most 10000 transfers are held. The ring starts empty and grows only while what it would
// overwrite is young enough to count, so an idle connection costs next to nothing. Any thread may
// ask for the rate while another one records.
#ifndef MODULES_NETWORK_TRANSFER_RING_H
#define MODULES_NETWORK_TRANSFER_RING_H

#include <cstddef>
#include <cstdint>
#include <mutex>
#include <vector>

class TRANSFER_RING {
public:
    static constexpr std::size_t MAX_TRANSFERS = 10000;
    static constexpr std::uint32_t WINDOW_MS = 5000;  // older transfers don't count

    // Records `bytes` moved at `now_ms`; 0 bytes record nothing.
    void record(std::uint32_t now_ms, std::uint32_t bytes);

    // KiB per second over the last WINDOW_MS, rounded to one decimal place; 0.0 when nothing was
    // moved, or all of it in this very millisecond. A transfer stamped 0 ends the walk back.
    double get_rate(std::uint32_t now_ms) const;

    void clear();
    std::size_t get_capacity() const;

private:
    struct TRANSFER {
        std::uint32_t time_ms;
        std::uint32_t bytes;
    };

    mutable std::mutex lock;
    std::vector<TRANSFER> transfers;
    std::size_t next = 0;  // the slot of the next transfer once the ring is full
};

#endif  // MODULES_NETWORK_TRANSFER_RING_H
