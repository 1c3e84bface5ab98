#include <string>

#include <gtest/gtest.h>

#include "DateTestSupport.h"
#include "STime.h"

using DateFormatTest = DateTest;

namespace {
// Thursday 4 March 2021, 09:05:07 UTC.
const STime kThursday(1614848707.0);
}

TEST_F(DateFormatTest, FieldCodes) {
    EXPECT_EQ(kThursday.AsExportString("D/M0/y"), "04/03/2021");
    EXPECT_EQ(kThursday.AsExportString("d.m.Y"), "4.3.21");
    EXPECT_EQ(kThursday.AsExportString("h:mm"), "09:05");
    EXPECT_EQ(kThursday.AsExportString("H p"), "9 AM");
    EXPECT_EQ(kThursday.AsExportString("W, MM d"), "Thursday, March 4");
    EXPECT_EQ(kThursday.AsExportString("w M y"), "Thu Mar 2021");
    EXPECT_EQ(kThursday.AsExportString("U"), "1614848707");
    EXPECT_EQ(kThursday.AsExportString("="), "2021-03-04T09:05:07Z");
    EXPECT_EQ(kThursday.AsExportString("*"), "Thu, 4 Mar 2021 09:05:07 +0000");
    EXPECT_EQ(kThursday.AsExportString("l"), kThursday.ShortDateString());
    EXPECT_EQ(kThursday.AsExportString("L"), "March 4, 2021");
    EXPECT_EQ(kThursday.AsExportString("n"), kThursday.MediumDateString());
    EXPECT_EQ(kThursday.AsExportString("t"), kThursday.TimeString());
    EXPECT_EQ(kThursday.AsExportString(""), kThursday.AsString());
    // Anything else, white space included, is copied.
    EXPECT_EQ(kThursday.AsExportString("[x] q"), "[x] q");
    EXPECT_EQ(kThursday.AsExportString("\\d\\M"), "dM");
    EXPECT_EQ(kThursday.AsExportString("\\d"), "d");
    EXPECT_EQ(kThursday.AsExportString("y\\"), "2021");
}

TEST_F(DateFormatTest, HoursOnBothClocks) {
    STime midnight = STime::For("2021-03-04 00:30");
    EXPECT_EQ(midnight.AsExportString("H:mm p"), "12:30 AM");
    EXPECT_EQ(midnight.AsExportString("h"), "00");
    STime evening = STime::For("2021-03-04 23:05");
    EXPECT_EQ(evening.AsExportString("H:mm p"), "11:05 PM");
    STime noon = STime::For("2021-03-04 12:00");
    EXPECT_EQ(noon.AsExportString("H p"), "12 PM");
}

TEST_F(DateFormatTest, SecondsPadWithTheFillLastSet) {
    EXPECT_EQ(kThursday.AsExportString("s"), " 7");
    EXPECT_EQ(kThursday.AsExportString("h:mm:s"), "09:05:07");
    EXPECT_EQ(kThursday.AsExportString("d m s"), "4 3  7");
    EXPECT_EQ(kThursday.AsExportString("D s"), "04 07");
    STime late = STime::For("2005-11-24 13:45:30");
    EXPECT_EQ(late.AsExportString("s"), "30");
    EXPECT_EQ(late.AsExportString("Y M0 D"), "05 11 24");
}

TEST_F(DateFormatTest, NeverIsNeverWhateverTheFormat) {
    STime never = STime::Never();
    for (const char* format : {"", "D/M0/y", "=", "*", "s", "\\d"})
        EXPECT_EQ(never.AsExportString(format), "never") << format;
    EXPECT_EQ(never.AsString(), "never");
    EXPECT_EQ(never.AsShortString(), "never");
    EXPECT_EQ(never.TimeString(), "never");
    EXPECT_EQ(never.ShortDateString(), "never");
    EXPECT_EQ(never.MediumDateString(), "never");
    EXPECT_EQ(never.LongDateString(), "never");
    EXPECT_EQ(never.ISO8601DateString(), "never");
    // The RFC 822 text has no such test.
    EXPECT_NE(never.RFC822DateString(), "never");
}

TEST_F(DateFormatTest, StyledTextsFollowTheLocale) {
    EXPECT_EQ(kThursday.LongDateString(), "March 4, 2021");
    EXPECT_NE(kThursday.MediumDateString().find("Mar 4, 2021"), std::string::npos);
    EXPECT_NE(kThursday.AsShortString().find("3/4/21"), std::string::npos);
    EXPECT_NE(kThursday.TimeString().find("9:05"), std::string::npos);
    EXPECT_EQ(kThursday.AsString(), kThursday.AsShortString());
    {
        StDateEnvironment paris("Europe/Paris", "fr_FR.UTF-8", kWednesday);
        EXPECT_EQ(kThursday.LongDateString(), "4 mars 2021");
        EXPECT_EQ(kThursday.AsExportString("W d MM h:mm"), "jeudi 4 mars 10:05");
        EXPECT_EQ(kThursday.AsExportString("="), "2021-03-04T10:05:07+01:00");
    }
    EXPECT_EQ(kThursday.LongDateString(), "March 4, 2021");
}

TEST_F(DateFormatTest, RFC822UsesFixedNamesAndWholeHours) {
    STime sunday = STime::For("2021-01-03 18:04:05");
    EXPECT_EQ(sunday.RFC822DateString(), "Sun, 3 Jan 2021 18:04:05 +0000");
    StDateEnvironment kolkata("Asia/Kolkata", "de_DE.UTF-8", kWednesday);
    // Half an hour of the zone is lost.
    EXPECT_EQ(sunday.RFC822DateString(), "Sun, 3 Jan 2021 23:34:05 +0500");
    StDateEnvironment york("America/New_York", "en_US.UTF-8", kWednesday);
    EXPECT_EQ(sunday.RFC822DateString(), "Sun, 3 Jan 2021 13:04:05 -0500");
}

TEST_F(DateFormatTest, ISOTextBeforeTheCommonEra) {
    STime old(3, 15, -44, 12, 0, 0);
    EXPECT_EQ(old.Era(), 0);
    EXPECT_EQ(old.ISO8601DateString(), "-0044-03-15 12:00:00 +0000");
    EXPECT_EQ(STime(7, 1, 1, 0, 0, 0).ISO8601DateString(), "0001-07-01T00:00:00Z");
}
