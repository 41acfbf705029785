#include "modules/network/network_message_reporter.h"

#include <algorithm>

#include "platform/network_message.h"
#include "platform/process_tools.h"

NETWORK_MESSAGE_REPORTER::NETWORK_MESSAGE_REPORTER(std::uint32_t (*millisecond_clock)())
    : clock(millisecond_clock ? millisecond_clock : &get_ms_count), start_ms(clock()) {
}

void NETWORK_MESSAGE_REPORTER::DURATION::add(std::uint32_t ms, bool first) {
    minimum = first ? ms : std::min(minimum, ms);
    maximum = first ? ms : std::max(maximum, ms);
    sum += ms;
}

void NETWORK_MESSAGE_REPORTER::DURATION::give(std::uint32_t count, std::uint32_t& min,
                                              std::uint32_t& max, std::uint32_t& avg) const {
    min = minimum;
    max = maximum;
    avg = count == 0 ? 0 : static_cast<std::uint32_t>(sum / count);
}

void NETWORK_MESSAGE_REPORTER::add_message(const NETWORK_MESSAGE& message) {
    if (message.time_1 == 0 || message.time_2 == 0 || message.time_3 == 0) {
        return;
    }
    const bool first = message_count == 0;
    durations[0].add(message.time_2 - message.time_1, first);
    durations[1].add(message.time_3 - message.time_2, first);
    durations[2].add(clock() - message.time_3, first);
    ++message_count;
}

unsigned char NETWORK_MESSAGE_REPORTER::report(std::uint32_t& count, std::uint32_t& min1,
                                               std::uint32_t& max1, std::uint32_t& avg1,
                                               std::uint32_t& min2, std::uint32_t& max2,
                                               std::uint32_t& avg2, std::uint32_t& min3,
                                               std::uint32_t& max3, std::uint32_t& avg3) {
    const std::uint32_t now = clock();
    if (now - start_ms < REPORT_INTERVAL_MS) {
        return 0;
    }
    count = message_count;
    durations[0].give(count, min1, max1, avg1);
    durations[1].give(count, min2, max2, avg2);
    durations[2].give(count, min3, max3, avg3);
    for (DURATION& duration : durations) {
        duration = DURATION();
    }
    message_count = 0;
    start_ms = now;
    return 1;
}
