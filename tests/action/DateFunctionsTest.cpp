// Date functions of action code: making dates, reading and setting their
// parts, differences and intervals. Expected texts come from the date type
// itself where the locale or the time zone decides the form.
#include <gtest/gtest.h>

#include "ActionTestDocument.h"

#include <string>

#include "STime.h"
#include "STimeInterval.h"

namespace {

class DateFunctionsTest : public ActionTestDocument {
protected:
    void SetUp() override {
        ActionTestDocument::SetUp();
        // Thursday 4 March 2021, 10:30:15 local time.
        due = STime(3, 4, 2021).SetTime(10, 30, 15);
        a->SetTime("Due", due);
    }

    STime due = STime::Never();
};

TEST_F(DateFunctionsTest, MakingDates) {
    EXPECT_EQ(Eval("date(2021, 3, 4)"), STime(3, 4, 2021).ISO8601DateString());
    EXPECT_EQ(Eval("date(2021, 3, 4, 18, 5)"), STime(3, 4, 2021).SetTime(18, 5).ISO8601DateString());
    // Out-of-range parts roll forward through the calendar.
    EXPECT_EQ(Eval("date(2021, 13, 1)"), STime(1, 1, 2022).ISO8601DateString());
    EXPECT_EQ(Eval("date(2021, 2, 30)"), STime(3, 2, 2021).ISO8601DateString());
    // One argument: the date read and written in the short form.
    EXPECT_EQ(Eval("date($Due)"), due.AsString());
    EXPECT_EQ(Eval("date(\"2021-03-04\")"), STime::For("2021-03-04").AsString());
    // A made date keeps every second when another function reads it.
    EXPECT_EQ(Eval("second(date($Due))"), "15");
    EXPECT_EQ(Eval("minute(date(2021, 3, 4, 18, 5))"), "5");
    // Numbers no calendar holds end as some date, not as a fault.
    EXPECT_FALSE(Eval("date(1e300, -1e300, 99999999999)").empty());
}

TEST_F(DateFunctionsTest, ReadingParts) {
    struct Case {
        const char* expression;
        std::string expected;
    };
    const Case cases[] = {
        {"$Due.year", "2021"},
        {"$Due.month", "3"},
        {"$Due.day", "4"},
        {"$Due.hour", "10"},
        {"$Due.minute", "30"},
        {"$Due.second", "15"},
        {"$Due.weekday", "5"},
        {"$Due.week", std::to_string(due.WeekOfYear())},
        {"year($Due)", "2021"},
        {"month($Due)", "3"},
        {"day($Due)", "4"},
        {"hour($Due)", "10"},
        {"minute($Due)", "30"},
        {"second($Due)", "15"},
        {"week($Due)", std::to_string(due.WeekOfYear())},
        {"year(\"2019-12-31\")", "2019"},
        {"time($Due)", "10:30"},
        {"time(date(2021, 3, 4, 9, 5))", "9:05"},
    };
    for (const Case& c : cases)
        EXPECT_EQ(Eval(c.expression), c.expected) << c.expression;
    // A note without the date reads the never date, whose clock is zero.
    EXPECT_EQ(Eval("hour($Due)", b), "0");
    EXPECT_EQ(Eval("$Due.minute", b), "0");
}

TEST_F(DateFunctionsTest, SettingParts) {
    EXPECT_EQ(Eval("year($Due, 2020)"), due.ForYear(2020).AsString());
    EXPECT_EQ(Eval("hour($Due, 7)"), due.SetTime(7, 30).AsString());
    // Set parts are read back exactly, the rest of the date kept.
    struct Case {
        const char* expression;
        const char* expected;
    };
    const Case cases[] = {
        {"year(year($Due, 1999))", "1999"},
        {"month(year($Due, 1999))", "3"},
        {"month(month($Due, 11))", "11"},
        {"day(month($Due, 11))", "4"},
        {"day(day($Due, 20))", "20"},
        {"hour(hour($Due, 7))", "7"},
        {"minute(hour($Due, 7))", "30"},
        {"minute(minute($Due, 5))", "5"},
        {"hour(minute($Due, 5))", "10"},
        {"second(second($Due, 9))", "9"},
        {"minute(second($Due, 9))", "30"},
        // Day 32 of March is the first of April.
        {"month(day($Due, 32))", "4"},
    };
    for (const Case& c : cases)
        EXPECT_EQ(Eval(c.expression), c.expected) << c.expression;
    // The week only reads: a second argument changes nothing.
    EXPECT_EQ(Eval("week($Due, 2)"), std::to_string(due.WeekOfYear()));

    // The setting form answers a date: assigned, it is a date again.
    Do("$Due = day($Due, 25)");
    EXPECT_EQ(Eval("$Due.day"), "25");
    EXPECT_EQ(Eval("$Due.month"), "3");
}

TEST_F(DateFunctionsTest, ChangingTheTimeOfDay) {
    EXPECT_EQ(Eval("hour(time($Due, \"14:45\"))"), "14");
    EXPECT_EQ(Eval("minute(time($Due, \"14:45\"))"), "45");
    EXPECT_EQ(Eval("second(time($Due, \"14:45\"))"), "0");
    EXPECT_EQ(Eval("hour(time($Due, \"2:05 pm\"))"), "14");
    EXPECT_EQ(Eval("day(time($Due, \"2:05 pm\"))"), "4");
    EXPECT_EQ(Eval("hour(time($Due, 8, 7))"), "8");
    EXPECT_EQ(Eval("minute(time($Due, 8, 7))"), "7");
    EXPECT_EQ(Eval("time($Due, 8, 7)"), due.SetTime(8, 7).AsString());
}

TEST_F(DateFunctionsTest, PartsOfAnIntervalAreDisplayFields) {
    // 1 day, 2 hours, 3 minutes and 4 seconds.
    a->Set("Span", std::to_string(86400 + 2 * 3600 + 3 * 60 + 4));
    EXPECT_EQ(Eval("day($Span)"), "1");
    EXPECT_EQ(Eval("hour($Span)"), "2");
    EXPECT_EQ(Eval("$Span.minute"), "3");
    EXPECT_EQ(Eval("$Span.second"), "4");
    // The sign is not a field.
    a->Set("Span", "-3661");
    EXPECT_EQ(Eval("hour($Span)"), "1");
    EXPECT_EQ(Eval("minute($Span)"), "1");
}

TEST_F(DateFunctionsTest, DifferencesInWholeUnits) {
    struct Case {
        const char* expression;
        const char* expected;
    };
    const Case cases[] = {
        {"days(date(2021, 1, 1), date(2021, 3, 1))", "59"},
        {"days(date(2021, 3, 1), date(2021, 1, 1))", "-59"},
        {"weeks(date(2021, 1, 1), date(2021, 3, 1))", "8"},
        {"months(date(2021, 1, 31), date(2021, 3, 1))", "1"},
        {"months(date(2021, 1, 1), date(2021, 3, 1))", "2"},
        {"years(date(2000, 6, 1), date(2021, 5, 31))", "20"},
        {"years(date(2000, 6, 1), date(2021, 6, 1))", "21"},
        {"hours(date(2021, 1, 1, 10, 0), date(2021, 1, 1, 12, 59))", "2"},
        {"minutes(date(2021, 1, 1, 10, 0), date(2021, 1, 1, 12, 59))", "179"},
        {"seconds(date(2021, 1, 1, 10, 0), date(2021, 1, 1, 10, 2))", "120"},
        {"days($Due, day($Due, 14))", "10"},
        // One date is no difference.
        {"days($Due)", ""},
        {"months($Due)", ""},
    };
    for (const Case& c : cases)
        EXPECT_EQ(Eval(c.expression), c.expected) << c.expression;
}

TEST_F(DateFunctionsTest, Intervals) {
    EXPECT_EQ(Eval("interval(date(2021, 1, 1, 10, 0), date(2021, 1, 2, 11, 1))"), "1 day 01:01:00");
    EXPECT_EQ(Eval("interval(date(2021, 1, 2, 11, 1), date(2021, 1, 1, 10, 0))"), "-1 day 01:01:00");
    EXPECT_EQ(Eval("interval(date(2021, 1, 1, 10, 0), date(2021, 1, 1, 10, 30))"), "30:00");
    EXPECT_EQ(Eval("interval($Due)"), "");
    // The answer is an interval: assigned, it reads back as one.
    Do("$Span = interval(date(2021, 1, 1, 10, 0), date(2021, 1, 1, 13, 0))");
    EXPECT_EQ(Get("Span"), "03:00:00");
    EXPECT_EQ(Eval("hour($Span)"), "3");
}

TEST_F(DateFunctionsTest, MissingArgumentsAnswerNothing) {
    // Empty parentheses are no argument, not the date an empty text reads as.
    for (const char* expression : {"date()", "time()", "hour()", "year()", "week()", "days()", "interval()"})
        EXPECT_EQ(Eval(expression), "") << expression;
}

}  // namespace
