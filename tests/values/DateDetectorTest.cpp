#include <string>

#include <gtest/gtest.h>

#include "DateDetector.h"
#include "DateTestSupport.h"

using DateDetectorTest = DateTest;

namespace {
std::string Detected(const std::string& text) {
    STime found;
    if (!DateDetector::FindFirstDate(text, STime::Now(), found))
        return "none";
    return found.ISO8601DateString();
}
} // namespace

TEST_F(DateDetectorTest, TimesOfDay) {
    // Now is Wednesday 10 March 2021, 14:25:36.
    EXPECT_EQ(Detected("5pm"), "2021-03-10T17:00:00Z");
    EXPECT_EQ(Detected("5 PM"), "2021-03-10T17:00:00Z");
    EXPECT_EQ(Detected("5:30 p.m."), "2021-03-10T17:30:00Z");
    EXPECT_EQ(Detected("12am"), "2021-03-10T00:00:00Z");
    EXPECT_EQ(Detected("12pm"), "2021-03-10T12:00:00Z");
    EXPECT_EQ(Detected("lunch at 12:30"), "2021-03-10T12:30:00Z");
    EXPECT_EQ(Detected("noon"), "2021-03-10T12:00:00Z");
    EXPECT_EQ(Detected("13pm"), "none");
    EXPECT_EQ(Detected("25:00"), "none");
}

TEST_F(DateDetectorTest, RelativePhrases) {
    EXPECT_EQ(Detected("next friday"), "2021-03-12T14:25:36Z");
    EXPECT_EQ(Detected("last friday"), "2021-03-05T14:25:36Z");
    EXPECT_EQ(Detected("next wednesday"), "2021-03-17T14:25:36Z");
    EXPECT_EQ(Detected("last wednesday"), "2021-03-03T14:25:36Z");
    EXPECT_EQ(Detected("next week"), "2021-03-17T14:25:36Z");
    EXPECT_EQ(Detected("last month"), "2021-02-10T14:25:36Z");
    EXPECT_EQ(Detected("in 3 days"), "2021-03-13T14:25:36Z");
    EXPECT_EQ(Detected("in an hour"), "2021-03-10T15:25:36Z");
    EXPECT_EQ(Detected("2 hours ago"), "2021-03-10T12:25:36Z");
    EXPECT_EQ(Detected("3 weeks from now"), "2021-03-31T14:25:36Z");
    EXPECT_EQ(Detected("call me tomorrow at noon"), "2021-03-11T12:00:00Z");
    EXPECT_EQ(Detected("the day after tomorrow"), "2021-03-12T14:25:36Z");
    EXPECT_EQ(Detected("meeting friday at 5pm"), "2021-03-12T17:00:00Z");
    EXPECT_EQ(Detected("next friday at 9"), "2021-03-12T09:00:00Z");
}

TEST_F(DateDetectorTest, CalendarDates) {
    EXPECT_EQ(Detected("March 3rd"), "2021-03-03T12:00:00Z");
    EXPECT_EQ(Detected("the 3rd of April 2022"), "2022-04-03T12:00:00Z");
    EXPECT_EQ(Detected("at 9am on March 3"), "2021-03-03T09:00:00Z");
    EXPECT_EQ(Detected("Mar 3, 2021 at 10:15 am"), "2021-03-03T10:15:00Z");
    EXPECT_EQ(Detected("due 3/15/2021"), "2021-03-15T12:00:00Z");
    EXPECT_EQ(Detected("due 2021-03-15"), "2021-03-15T12:00:00Z");
    EXPECT_EQ(Detected("ship it by Sept 9"), "2021-09-09T12:00:00Z");
}

TEST_F(DateDetectorTest, LeavesTheTranslatorsOwnFormsAlone) {
    // At the start of a text these shapes belong to later steps.
    for (const char* text : {"friday", "March 3 2021", "3 March 2021", "3/15", "1066", "hello", "friday at 5", "",
                             "may I", "in a while", "5 things", "12:345"})
        EXPECT_EQ(Detected(text), "none") << text;
}

TEST_F(DateDetectorTest, ReadsTheLocalesNames) {
    StDateEnvironment berlin("Europe/Berlin", "de_DE.UTF-8", kWednesday);
    EXPECT_EQ(Detected("Termin am 3. März, 10:30"), "2021-03-03T10:30:00+01:00");
    EXPECT_EQ(Detected("bis 15/3"), "2021-03-15T12:00:00+01:00");
}
