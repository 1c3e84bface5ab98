#include <cmath>
#include <string>

#include <gtest/gtest.h>

#include "DateTestSupport.h"
#include "STimeInterval.h"

using IntervalTest = DateTest;

TEST_F(IntervalTest, ReadsTheTextForms) {
    struct Case {
        const char* text;
        double seconds;
    } cases[] = {
        {"90", 90},
        {"-90", -90},
        {" 42 ", 42},
        {"5d", 5 * 86400},
        {"2d 3", 2 * 86400 + 3 * 3600},
        {"2 days 03:04:05", 2 * 86400 + 3 * 3600 + 4 * 60 + 5},
        {"1 day 01:00:00", 90000},
        {"1d 2:30", 86400 + 2 * 60 + 30},
        {"1h30m", 5400},
        {"1h30m15", 5415},
        {"1h30", 5400},
        {"2h", 7200},
        {"12:34", 12 * 60 + 34},
        {"12:34:56", 12 * 3600 + 34 * 60 + 56},
        {"-01:30", -90},
        // Any letter but d and h separates like a colon.
        {"5m", 300},
        {"5s", 300},
        {"1x2y3", 3600 + 120 + 3},
        {"", 0},
        {"abc", 0},
        {"-", 0},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(STimeInterval::FromString(c.text), c.seconds) << c.text;
        EXPECT_EQ(STimeInterval(std::string(c.text)).Seconds(), c.seconds) << c.text;
    }
}

TEST_F(IntervalTest, WritesAndReadsBack) {
    EXPECT_EQ(STimeInterval(3661).ToString(), "01:01:01");
    EXPECT_EQ(STimeInterval(-90).ToString(), "-01:30");
    EXPECT_EQ(STimeInterval(90000).ToString(), "1 day 01:00:00");
    EXPECT_EQ(STimeInterval(172799).ToString(), "1 day 23:59:59");
    EXPECT_EQ(STimeInterval(172800).ToString(), "2 days 00:00:00");
    EXPECT_EQ(STimeInterval(0).ToString(), "00:00");
    EXPECT_EQ(STimeInterval(59.6).ToString(), "01:00");
    EXPECT_EQ(STimeInterval(3599.4).ToString(), "59:59");
    EXPECT_EQ(STimeInterval(-3600).ToString(), "-01:00:00");
    EXPECT_EQ(STimeInterval(std::nan("")).ToString(), "00:00");
    EXPECT_EQ(STimeInterval(1e300).ToString().substr(0, 6), "104166");
    for (double seconds : {0.0, 1.0, 59.0, 60.0, 3599.0, 3600.0, 3661.0, 86399.0, 86400.0, 90061.0, 172800.0,
                           1234567.0, -1.0, -90.0, -3661.0, -90061.0}) {
        STimeInterval interval(seconds);
        EXPECT_EQ(STimeInterval(interval.ToString()).Seconds(), seconds) << interval.ToString();
    }
    // Other formats are the plain text.
    EXPECT_EQ(STimeInterval(3661).ToString("x"), "01:01:01");
    EXPECT_EQ(STimeInterval(3661).ToString(""), "01:01:01");
}

TEST_F(IntervalTest, FieldsOfTheDisplay) {
    STimeInterval interval(-(2 * 86400 + 3 * 3600 + 4 * 60 + 5.4));
    EXPECT_EQ(interval.AsDays(), 2);
    EXPECT_EQ(interval.AsHours(), 3);
    EXPECT_EQ(interval.AsMinutes(), 4);
    EXPECT_EQ(interval.AsSeconds(), 5);
    EXPECT_EQ(STimeInterval(59.5).AsSeconds(), 0);
    EXPECT_EQ(STimeInterval(59.5).AsMinutes(), 1);
    STimeInterval a(5), b(5.0);
    EXPECT_TRUE(a == b);
    a = 6.0;
    EXPECT_TRUE(a != b);
}

TEST_F(IntervalTest, WordAndPositionalFormsShowTwoUnits) {
    EXPECT_EQ(STimeInterval(3661).ToString("L"), "1 hour, 1 minute");
    EXPECT_EQ(STimeInterval(7200).ToString("L"), "2 hours");
    EXPECT_EQ(STimeInterval(90061).ToString("L"), "1 day, 1 hour");
    EXPECT_EQ(STimeInterval(86460).ToString("L"), "1 day");
    EXPECT_EQ(STimeInterval(45).ToString("L"), "45 seconds");
    EXPECT_EQ(STimeInterval(-45).ToString("L"), "-45 seconds");
    EXPECT_EQ(STimeInterval(3661).ToString("l"), "1:01");
    EXPECT_EQ(STimeInterval(61).ToString("l"), "1:01");
    STime::SetRegionCode("de_DE");
    EXPECT_EQ(STimeInterval(7260).ToString("L"), "2 Stunden, 1 Minute");
    STime::SetRegionCode("");
}
