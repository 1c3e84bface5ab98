#include <algorithm>
#include <vector>

#include <gtest/gtest.h>

#include "DateTestSupport.h"
#include "Log.h"
#include "STime.h"

using DateCalendarTest = DateTest;

TEST_F(DateCalendarTest, NeverIsTheDistantPast) {
    STime never = STime::Never();
    EXPECT_TRUE(never.IsNever());
    EXPECT_EQ(never.ISO8601DateString(), "never");
    EXPECT_EQ(never.Year(), 1);
    EXPECT_EQ(never.Month(), 1);
    EXPECT_EQ(never.Day(), 1);
    EXPECT_EQ(never.Hour(), 0);
    std::vector<STime> times = {STime(2021.0), never, STime(-1e11), STime::Now()};
    std::sort(times.begin(), times.end());
    EXPECT_TRUE(times.front() == STime(-1e11));
    EXPECT_TRUE(times[1].IsNever());
    // A NaN instant is never as well.
    EXPECT_TRUE(STime(std::numeric_limits<double>::quiet_NaN()).IsNever());
    EXPECT_TRUE(STime::FromUnixEpoch(0) == STime(0.0));
    EXPECT_FALSE(STime(0.0).IsNever());
}

TEST_F(DateCalendarTest, ConstructorsAndFields) {
    STime day(3, 15, 2021);
    EXPECT_EQ(day.ISO8601DateString(), "2021-03-15T00:00:00Z");
    EXPECT_EQ(day.DayOfWeek(), 2);  // Monday
    EXPECT_EQ(day.WeekOfYear(), 12);
    STime moment(3L, 15L, 2021L, 17L, 4L, 5L);
    EXPECT_EQ(moment.Year(), 2021);
    EXPECT_EQ(moment.Month(), 3);
    EXPECT_EQ(moment.Day(), 15);
    EXPECT_EQ(moment.Hour(), 17);
    EXPECT_EQ(moment.Minute(), 4);
    EXPECT_EQ(moment.Second(), 5);
    EXPECT_TRUE(moment.SameDayAs(day));
    EXPECT_FALSE(moment.SameDayAs(day.AddSeconds(-1)));
    // A negative year counts back from 1 BC.
    STime bc(1L, 1L, -1L, 0L, 0L, 0L);
    EXPECT_EQ(bc.Era(), 0);
    EXPECT_EQ(bc.Year(), 2);
    // Out-of-range fields roll forward.
    EXPECT_EQ(STime(2, 30, 2021).ISO8601DateString(), "2021-03-02T00:00:00Z");
    EXPECT_EQ(STime(13, 1, 2021).ISO8601DateString(), "2022-01-01T00:00:00Z");
    EXPECT_EQ(day.ForDay(40).ISO8601DateString(), "2021-04-09T00:00:00Z");
    EXPECT_EQ(day.ForHour(24).ISO8601DateString(), "2021-03-16T00:00:00Z");
    EXPECT_EQ(day.ForMonth(13).ISO8601DateString(), "2022-01-15T00:00:00Z");
    EXPECT_EQ(day.ForYear(1999).ISO8601DateString(), "1999-03-15T00:00:00Z");
    EXPECT_EQ(day.SetTime(9, 30).ISO8601DateString(), "2021-03-15T09:30:00Z");
    EXPECT_EQ(moment.SetTime(9, 30, 0).ISO8601DateString(), "2021-03-15T09:30:00Z");
    EXPECT_EQ(day.AddSeconds(90).ISO8601DateString(), "2021-03-15T00:01:30Z");
    DateComponents c = moment.GetComponents();
    EXPECT_EQ(c.era, 1);
    EXPECT_EQ(c.weekday, 2);
    EXPECT_EQ(c.timeZone, "UTC");
    EXPECT_FALSE(c.Has(c.weekOfYear));
}

TEST_F(DateCalendarTest, DifferencesCountWholeCalendarUnits) {
    STime a = STime::For("2021-01-31 10:00");
    STime b = STime::For("2021-03-15 09:00");
    EXPECT_EQ(b.DaysSince(a), 42);
    EXPECT_EQ(a.DaysSince(b), -42);
    EXPECT_EQ(b.WeeksSince(a), 6);
    EXPECT_EQ(STime::For("2021-02-13 10:00").WeeksSince(a), 1);
    EXPECT_EQ(a.WeeksSince(STime::For("2021-02-13 10:00")), -1);
    EXPECT_EQ(b.MonthsSince(a), 1);
    EXPECT_EQ(b.HoursSince(a), 1031);
    EXPECT_EQ(b.MinutesSince(a), 61860);
    EXPECT_EQ(b.SecondsSince(a), 3711600);
    EXPECT_EQ(b - a, 3711600);
    EXPECT_EQ(b.YearsSince(STime::For("2020-03-15 09:00")), 1);
    EXPECT_EQ(b.YearsSince(STime::For("2020-03-15 09:01")), 0);
    EXPECT_EQ(STime::For("2000-03-31").MonthsSince2000(), 2);
    EXPECT_EQ(STime(kWednesday - 90).SecondsAgo(), 90);
    // Seconds beyond 32 bits are counted too.
    EXPECT_EQ(STime(4e9) - STime(0.0), 4000000000L);
    EXPECT_EQ(STime(1e300) - STime(0.0), 100000000);
}

TEST_F(DateCalendarTest, DaysFollowTheLocalCalendarAcrossDaylightSaving) {
    StDateEnvironment berlin("Europe/Berlin", "de_DE.UTF-8", kWednesday);
    STime saturday = STime::For("2021-03-27 12:00");
    STime sunday = STime::For("2021-03-28 12:00");
    EXPECT_EQ(sunday.DaysSince(saturday), 1);
    EXPECT_EQ(sunday.HoursSince(saturday), 23);
    EXPECT_EQ(saturday.Add("+1 day"), sunday);
    // Hours are added on the wall clock too: 24 of them are 23 on that day.
    EXPECT_EQ(saturday.Add("+24 hours").ISO8601DateString(), "2021-03-28T12:00:00+02:00");
}

TEST_F(DateCalendarTest, ModifiersAndTimesInText) {
    STime base = STime::For("2021-03-10 14:25:36");
    EXPECT_EQ(base.Add("+3"), base.Add("3 days"));
    EXPECT_EQ(base.Add("3"), base);
    EXPECT_EQ(base.Add(""), base);
    EXPECT_EQ(base.Add("x"), base);
    EXPECT_EQ(base.Add(" -1 year").Year(), 2020);
    EXPECT_TRUE(STime::Never().Add("+3 days").IsNever());
    EXPECT_EQ(base.SetTime("5:15 pm").ISO8601DateString(), "2021-03-10T17:15:00Z");
    EXPECT_EQ(base.SetTime("12:15 AM").ISO8601DateString(), "2021-03-10T00:15:00Z");
    EXPECT_EQ(base.SetTime("12:15 pm").ISO8601DateString(), "2021-03-10T12:15:00Z");
    EXPECT_EQ(base.SetTime("at 8:05:09").ISO8601DateString(), "2021-03-10T08:05:09Z");
    EXPECT_EQ(base.SetTime(":30"), base);
    EXPECT_EQ(base.SetTime("7p").ISO8601DateString(), "2021-03-10T19:00:00Z");
    EXPECT_EQ(base.InformalTimeAbbreviation("101").ISO8601DateString(), "2021-03-10T01:01:00Z");
    EXPECT_EQ(base.InformalTimeAbbreviation("100"), base);
    EXPECT_EQ(base.InformalTimeAbbreviation("2400"), base);
    EXPECT_EQ(base.InformalTimeAbbreviation("pm"), base);
}

TEST_F(DateCalendarTest, AnInstantBeyondTheCalendarIsLogged) {
    StLogCapture log;
    STime far(1e300);
    EXPECT_EQ(far.Year(), 0);
    EXPECT_TRUE(log.Contains("STime: an instant beyond the calendar has no date"));
    EXPECT_TRUE(far.ForDay(3).IsNever());
}
