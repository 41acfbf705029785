// Points in time as the file layer has them.
#ifndef KVCORE_DATE_H
#define KVCORE_DATE_H

#include <ctime>

#include <cstdint>

namespace KVCORE {

// A date of the Gregorian calendar, in the time zone of the process.
struct GREGORIAN_DATE {
    std::int32_t year = 0;
    std::int8_t month = 0;  // 1 to 12
    std::int8_t day = 0;    // 1 to 31
    std::int8_t hour = 0;
    std::int8_t minute = 0;
    std::int8_t second = 0;
};

// Seconds since the start of 2001, Greenwich time, with the operations that need the platform.
class DATE_POSIX {
public:
    constexpr DATE_POSIX() = default;
    constexpr explicit DATE_POSIX(double seconds) : seconds_(seconds) {}
    // Fields out of their range carry over, as in mktime. A year beyond the range of the platform
    // makes the date 0.
    explicit DATE_POSIX(const GREGORIAN_DATE& date);
    explicit DATE_POSIX(const timespec& time);

    constexpr double get_seconds() const { return seconds_; }
    // The difference in seconds, cut to an integer; below 0 if this date is earlier.
    std::int32_t compare(const DATE_POSIX& other) const;
    // Whole days from `other` to this date by the calendar of the time zone, so that a day at the
    // change of summer time counts as one; below 0 if this date is earlier.
    std::int32_t subtract(const DATE_POSIX& other) const;
    // A year beyond the range of the platform leaves all fields 0.
    void get_gregorian(GREGORIAN_DATE& date) const;

    // The date as a double, as a timespec (the time of files) or as a time_t, whose fraction is
    // cut towards the past.
    template <typename T>
    T convert_to() const;

protected:
    double seconds_ = 0.0;
};

template <>
double DATE_POSIX::convert_to<double>() const;
template <>
timespec DATE_POSIX::convert_to<timespec>() const;
template <>
std::time_t DATE_POSIX::convert_to<std::time_t>() const;

class DATE : public DATE_POSIX {
public:
    using DATE_POSIX::DATE_POSIX;
    constexpr DATE() = default;
};

}  // namespace KVCORE

#endif  // KVCORE_DATE_H
