#include "modules/network/transfer_ring.h"

#include <algorithm>
#include <cmath>

namespace {

constexpr std::size_t FIRST_CAPACITY = 16;

}  // namespace

void TRANSFER_RING::record(std::uint32_t now_ms, std::uint32_t bytes) {
    if (bytes == 0) {
        return;
    }
    const std::lock_guard<std::mutex> guard(lock);
    // The slot at `next` is free (stamp 0) or holds the oldest transfer.
    const std::size_t capacity = transfers.size();
    if (capacity == 0 || (transfers[next].time_ms != 0 && capacity < MAX_TRANSFERS &&
                          now_ms - transfers[next].time_ms < WINDOW_MS)) {
        std::rotate(transfers.begin(), transfers.begin() + static_cast<std::ptrdiff_t>(next),
                    transfers.end());
        next = capacity;
        transfers.resize(
            std::min(std::max(capacity * 2, FIRST_CAPACITY), std::size_t{MAX_TRANSFERS}));
    }
    transfers[next] = {now_ms, bytes};
    next = (next + 1) % transfers.size();
}

double TRANSFER_RING::get_rate(std::uint32_t now_ms) const {
    const std::lock_guard<std::mutex> guard(lock);
    const std::size_t capacity = transfers.size();
    std::uint64_t bytes = 0;
    std::uint32_t oldest_ms = now_ms;
    for (std::size_t back = 1; back <= capacity; ++back) {
        const TRANSFER& transfer = transfers[(next + capacity - back) % capacity];
        if (transfer.time_ms == 0 || now_ms - transfer.time_ms >= WINDOW_MS) {
            break;
        }
        bytes += transfer.bytes;
        oldest_ms = transfer.time_ms;
    }
    if (oldest_ms == now_ms) {
        return 0.0;
    }
    const double rate = static_cast<double>(bytes) * 1000.0 / ((now_ms - oldest_ms) * 1024.0);
    return std::round(rate * 10.0) / 10.0;
}

void TRANSFER_RING::clear() {
    const std::lock_guard<std::mutex> guard(lock);
    transfers = {};
    next = 0;
}

std::size_t TRANSFER_RING::get_capacity() const {
    const std::lock_guard<std::mutex> guard(lock);
    return transfers.size();
}
