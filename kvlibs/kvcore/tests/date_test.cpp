// Dates in a time zone with summer time.
#include "kvcore/date.h"

#include <gtest/gtest.h>
#include <stdlib.h>

#include <limits>

namespace {

using KVCORE::DATE;
using KVCORE::GREGORIAN_DATE;

// Central European time, by its rule, so that no table of zones is needed.
class Date : public testing::Test {
protected:
    Date() {
        ::setenv("TZ", "CET-1CEST,M3.5.0,M10.5.0/3", 1);
        ::tzset();
    }
    ~Date() override {
        ::unsetenv("TZ");
        ::tzset();
    }
};

TEST_F(Date, CountsFromTheStartOf2001) {
    const DATE epoch;
    EXPECT_EQ(978307200, epoch.convert_to<std::time_t>());
    GREGORIAN_DATE fields;
    epoch.get_gregorian(fields);
    EXPECT_EQ(2001, fields.year);
    EXPECT_EQ(1, fields.month);
    EXPECT_EQ(1, fields.day);
    EXPECT_EQ(1, fields.hour) << "an hour ahead of Greenwich";

    const GREGORIAN_DATE summer{2024, 7, 15, 12, 30, 59};
    const DATE date(summer);
    date.get_gregorian(fields);
    EXPECT_EQ(12, fields.hour);
    EXPECT_EQ(59, fields.second);
    EXPECT_EQ(1721039459, date.convert_to<std::time_t>());
}

TEST_F(Date, ComparesInSecondsAndSubtractsInDays) {
    EXPECT_EQ(0, DATE(10.9).compare(DATE(10.0)));
    EXPECT_EQ(-1, DATE(10.0).compare(DATE(11.5)));
    EXPECT_EQ(std::numeric_limits<std::int32_t>::max(), DATE(1e12).compare(DATE(0.0)));

    const auto days = [](GREGORIAN_DATE a, GREGORIAN_DATE b) { return DATE(a).subtract(DATE(b)); };
    // The last day of March 2024 has 23 hours.
    EXPECT_EQ(1, days({2024, 3, 31, 12, 0, 0}, {2024, 3, 30, 12, 0, 0}));
    EXPECT_EQ(0, days({2024, 3, 31, 11, 59, 59}, {2024, 3, 30, 12, 0, 0}));
    EXPECT_EQ(-1, days({2024, 3, 30, 12, 0, 0}, {2024, 3, 31, 12, 0, 0}));
    EXPECT_EQ(366, days({2025, 1, 1, 0, 0, 0}, {2024, 1, 1, 0, 0, 0}));
    EXPECT_EQ(0, days({2024, 5, 1, 23, 59, 59}, {2024, 5, 1, 0, 0, 0}));
}

TEST_F(Date, ConvertsToTheTimesOfFiles) {
    const timespec time{1721039459, 999999000};
    const DATE date(time);
    const auto back = date.convert_to<timespec>();
    EXPECT_EQ(time.tv_sec, back.tv_sec);
    EXPECT_NEAR(static_cast<double>(time.tv_nsec), static_cast<double>(back.tv_nsec), 1000.0);
    const auto before = DATE(-0.25).convert_to<timespec>();
    EXPECT_EQ(978307199, before.tv_sec);
    EXPECT_EQ(750000000, before.tv_nsec);

    GREGORIAN_DATE fields;
    for (const double absurd : {1e300, -1e300, std::numeric_limits<double>::quiet_NaN()}) {
        DATE(absurd).get_gregorian(fields);
        (void)DATE(absurd).convert_to<timespec>();
        (void)DATE(absurd).subtract(DATE());
    }
    EXPECT_EQ(0.0, DATE(GREGORIAN_DATE{std::numeric_limits<std::int32_t>::min(), 1, 1, 0, 0, 0})
                       .get_seconds());
}

}  // namespace
