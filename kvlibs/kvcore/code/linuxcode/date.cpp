#include "kvcore/date.h"

#include <cerrno>
#include <cmath>
#include <limits>

#include "kvcore/time_units.h"

namespace KVCORE {
namespace {

// 2001-01-01 00:00:00 in seconds since 1970.
constexpr double EPOCH = 978307200.0;
constexpr std::int32_t SECONDS_A_DAY = 86400;

// Yields false for a year beyond the platform's range.
bool get_local(const DATE_POSIX& date, tm& local) {
    const auto time = date.convert_to<std::time_t>();
    return ::localtime_r(&time, &local) != nullptr;
}

// Days since some fixed day, by the calendar. Source of the algorithm: H. Hinnant,
// chrono-Compatible Low-Level Date Algorithms, days_from_civil.
std::int64_t get_day_number(const tm& local) {
    const std::int64_t month = local.tm_mon + 1;
    const std::int64_t year = local.tm_year + std::int64_t{1900} - (month <= 2 ? 1 : 0);
    const std::int64_t era = (year >= 0 ? year : year - 399) / 400;
    const std::int64_t year_of_era = year - era * 400;
    const std::int64_t day_of_year =
        (153 * (month + (month > 2 ? -3 : 9)) + 2) / 5 + local.tm_mday - 1;
    return era * 146097 + year_of_era * 365 + year_of_era / 4 - year_of_era / 100 + day_of_year;
}

// Seconds since midnight as the clock shows them.
double get_time_of_day(const DATE_POSIX& date, const tm& local) {
    const double seconds = date.get_seconds();
    return local.tm_hour * 3600.0 + local.tm_min * 60.0 + local.tm_sec +
           (seconds - std::floor(seconds));
}

}  // namespace

DATE_POSIX::DATE_POSIX(const GREGORIAN_DATE& date) {
    tm local{};
    // A year that would overflow the field is far beyond the range of mktime as well.
    local.tm_year = date.year > std::numeric_limits<std::int32_t>::min() + 1900
                        ? date.year - 1900
                        : std::numeric_limits<std::int32_t>::min();
    local.tm_mon = date.month - 1;
    local.tm_mday = date.day;
    local.tm_hour = date.hour;
    local.tm_min = date.minute;
    local.tm_sec = date.second;
    local.tm_isdst = -1;
    errno = 0;
    const std::time_t time = ::mktime(&local);
    if (time != -1 || errno == 0) {
        seconds_ = static_cast<double>(time) - EPOCH;
    }
}

DATE_POSIX::DATE_POSIX(const timespec& time)
    : seconds_(static_cast<double>(time.tv_sec) - EPOCH + static_cast<double>(time.tv_nsec) / 1e9) {
}

std::int32_t DATE_POSIX::compare(const DATE_POSIX& other) const {
    return TIME_DETAIL::from_real<std::int32_t>(seconds_ - other.seconds_);
}

std::int32_t DATE_POSIX::subtract(const DATE_POSIX& other) const {
    if (seconds_ < other.seconds_) {
        return -other.subtract(*this);
    }
    tm late;
    tm early;
    if (!get_local(*this, late) || !get_local(other, early)) {
        return TIME_DETAIL::from_real<std::int32_t>((seconds_ - other.seconds_) / SECONDS_A_DAY);
    }
    std::int64_t days = get_day_number(late) - get_day_number(early);
    if (days > 0 && get_time_of_day(*this, late) < get_time_of_day(other, early)) {
        --days;
    }
    return TIME_DETAIL::from_real<std::int32_t>(static_cast<double>(days));
}

void DATE_POSIX::get_gregorian(GREGORIAN_DATE& date) const {
    date = GREGORIAN_DATE();
    tm local;
    if (get_local(*this, local) &&
        local.tm_year <= std::numeric_limits<std::int32_t>::max() - 1900) {
        date.year = local.tm_year + 1900;
        date.month = static_cast<std::int8_t>(local.tm_mon + 1);
        date.day = static_cast<std::int8_t>(local.tm_mday);
        date.hour = static_cast<std::int8_t>(local.tm_hour);
        date.minute = static_cast<std::int8_t>(local.tm_min);
        date.second = static_cast<std::int8_t>(local.tm_sec);
    }
}

template <>
double DATE_POSIX::convert_to<double>() const {
    return seconds_;
}

template <>
std::time_t DATE_POSIX::convert_to<std::time_t>() const {
    return TIME_DETAIL::from_real<std::int64_t>(std::floor(seconds_) + EPOCH);
}

template <>
timespec DATE_POSIX::convert_to<timespec>() const {
    timespec time;
    time.tv_sec = convert_to<std::time_t>();
    const double fraction = seconds_ - std::floor(seconds_);
    time.tv_nsec = static_cast<long>(fraction * 1e9);
    return time;
}

}  // namespace KVCORE
