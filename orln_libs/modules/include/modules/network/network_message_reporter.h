// Statistics over the three durations of a message's way through a server: from its first stamp to
// the second, from the second to the third, and from the third to the moment it is sent.
#ifndef MODULES_NETWORK_NETWORK_MESSAGE_REPORTER_H
#define MODULES_NETWORK_NETWORK_MESSAGE_REPORTER_H

#include <cstdint>

class NETWORK_MESSAGE;

class NETWORK_MESSAGE_REPORTER {
public:
    static constexpr std::uint32_t REPORT_INTERVAL_MS = 120000;

    // `millisecond_clock` null takes `get_ms_count`.
    explicit NETWORK_MESSAGE_REPORTER(std::uint32_t (*millisecond_clock)() = nullptr);

    // Counts the message; only if all three of its stamps aren't 0.
    void add_message(const NETWORK_MESSAGE& message);

    // Yields 0 until REPORT_INTERVAL_MS have passed since the start. Then gives the count and the
    // minimum, maximum and average of each duration in milliseconds, all 0 for a count of 0,
    // starts anew and yields 1.
    unsigned char report(std::uint32_t& count, std::uint32_t& min1, std::uint32_t& max1,
                         std::uint32_t& avg1, std::uint32_t& min2, std::uint32_t& max2,
                         std::uint32_t& avg2, std::uint32_t& min3, std::uint32_t& max3,
                         std::uint32_t& avg3);

private:
    struct DURATION {
        std::uint32_t minimum = 0;
        std::uint32_t maximum = 0;
        std::uint64_t sum = 0;

        void add(std::uint32_t ms, bool first);
        void give(std::uint32_t count, std::uint32_t& min, std::uint32_t& max,
                  std::uint32_t& avg) const;
    };

    std::uint32_t (*clock)();
    DURATION durations[3];
    std::uint32_t message_count = 0;
    std::uint32_t start_ms;
};

#endif  // MODULES_NETWORK_NETWORK_MESSAGE_REPORTER_H
