#include <chrono>
#include <string>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

#include "DateFormatterUtilities.h"
#include "DateTestSupport.h"
#include "DateTranslator.h"
#include "Hooks.h"
#include "STime.h"

using DateTranslatorTest = DateTest;

TEST_F(DateTranslatorTest, NeverAndItsPrefix) {
    for (const char* text : {"never", "Never", "neverland"}) {
        DateTranslator translator(text);
        EXPECT_TRUE(translator.IsValid()) << text;
        EXPECT_TRUE(translator.GetTime().IsNever()) << text;
    }
    EXPECT_EQ(Understood("never"), "never");
}

TEST_F(DateTranslatorTest, RelativeWordsKeepTheTimeOfDayAndTakeModifiers) {
    EXPECT_EQ(Understood("today"), "2021-03-10T14:25:36Z");
    EXPECT_EQ(Understood("Now"), "2021-03-10T14:25:36Z");
    EXPECT_EQ(Understood("yesterday"), "2021-03-09T14:25:36Z");
    EXPECT_EQ(Understood("Tomorrow"), "2021-03-11T14:25:36Z");
    EXPECT_EQ(Understood("today 5pm"), "2021-03-10T17:00:00Z");
    EXPECT_EQ(Understood("tomorrow 9:30"), "2021-03-11T09:30:00Z");
    EXPECT_EQ(Understood("tomorrow 9:30:15 pm"), "2021-03-11T21:30:15Z");
    EXPECT_EQ(Understood("today+3"), "2021-03-13T14:25:36Z");
    EXPECT_EQ(Understood("today-3"), "2021-03-07T14:25:36Z");
    // Without a sign the number is no count of days; it sets the hour.
    EXPECT_EQ(Understood("today 3"), "2021-03-10T03:00:00Z");
    EXPECT_EQ(Understood("today 3 days"), "2021-03-13T03:00:00Z");
    EXPECT_EQ(Understood("today +1 week"), "2021-03-17T14:25:36Z");
    EXPECT_EQ(Understood("today -2 weeks"), "2021-02-24T14:25:36Z");
    EXPECT_EQ(Understood("today +1 month"), "2021-04-10T14:25:36Z");
    EXPECT_EQ(Understood("today +2 years"), "2023-03-10T14:25:36Z");
    EXPECT_EQ(Understood("today +3 hours"), "2021-03-10T17:25:36Z");
    EXPECT_EQ(Understood("today +10 minutes"), "2021-03-10T14:35:36Z");
    // There is no unit of seconds, and unknown units change nothing.
    EXPECT_EQ(Understood("today +10 seconds"), "2021-03-10T14:25:36Z");
    EXPECT_EQ(Understood("today +4 fortnights"), "2021-03-10T14:25:36Z");
    // Informal times: 930 is 9:30, 12pm leaves the time alone, 12:30 am is 0:30.
    EXPECT_EQ(Understood("today 930"), "2021-03-10T09:30:00Z");
    EXPECT_EQ(Understood("today 1745"), "2021-03-10T17:45:00Z");
    EXPECT_EQ(Understood("today 12pm"), "2021-03-10T14:25:36Z");
    EXPECT_EQ(Understood("today 12:30 am"), "2021-03-10T00:30:00Z");
    EXPECT_EQ(Understood("today 25"), "2021-03-10T14:25:36Z");
}

TEST_F(DateTranslatorTest, MonthEndOverflowIsTheCalendars) {
    StFixedNow endOfJanuary(1612087200.0);  // Sunday 31 January 2021, 10:00
    EXPECT_EQ(Understood("tomorrow"), "2021-02-01T10:00:00Z");
    EXPECT_EQ(Understood("today +1 month"), "2021-03-03T10:00:00Z");
    EXPECT_EQ(Understood("today -31"), "2020-12-31T10:00:00Z");
}

TEST_F(DateTranslatorTest, NumbersAreYearsOrSeconds) {
    EXPECT_EQ(Understood("1066"), "1066-06-15T00:00:00Z");
    EXPECT_EQ(Understood("2499"), "2499-06-15T00:00:00Z");
    EXPECT_EQ(Understood("1500000000"), "2017-07-14T02:40:00Z");
    EXPECT_EQ(Understood("2500"), "1970-01-01T00:41:40Z");
    EXPECT_EQ(Understood("-2500"), "1969-12-31T23:18:20Z");
    EXPECT_EQ(Understood(" 1500000000.5 "), "2017-07-14T02:40:00Z");
    // 0 is the year 0, that is 1 BC, which is told in the plain form.
    STime zero = STime::For("0");
    EXPECT_FALSE(zero.IsNever());
    EXPECT_EQ(zero.Era(), 0);
    EXPECT_EQ(zero.Year(), 1);
    EXPECT_EQ(zero.ISO8601DateString(), "0000-06-15 00:00:00 +0000");
}

TEST_F(DateTranslatorTest, SlashDatesReadMonthFirst) {
    EXPECT_EQ(Understood("3/15"), "2021-03-15T00:00:00Z");
    EXPECT_EQ(Understood("12/1999"), "1999-12-01T00:00:00Z");
    EXPECT_EQ(Understood("2/30/2021"), "2021-03-02T00:00:00Z");
    // A time after the date is let go, unless the detector reads both.
    EXPECT_EQ(Understood("3/15/99 25:30"), "1999-03-15T00:00:00Z");
    EXPECT_EQ(Understood("3/15/99 10:30"), "1999-03-15T10:30:00Z");
    EXPECT_TRUE(STime::For("13/15/2021").IsNever());
    EXPECT_TRUE(STime::For("3/32/2021").IsNever());
    // The locale's short form is read first and keeps the time of day.
    EXPECT_EQ(Understood("3/15/2021"), "2021-03-15T14:25:36Z");
    EXPECT_EQ(Understood("3/4/21, 3:04 PM"), "2021-03-04T15:04:00Z");
    // The locale's own text reads back, narrow spaces and all.
    STime moment = STime::For("2021-03-04 15:04");
    EXPECT_EQ(STime::For(moment.AsShortString()), moment);
}

TEST_F(DateTranslatorTest, LocaleFormsWithModifiers) {
    EXPECT_EQ(Understood("March 3, 2021"), "2021-03-03T14:25:36Z");
    EXPECT_EQ(Understood("Mar 3, 2021"), "2021-03-03T14:25:36Z");
    EXPECT_EQ(Understood("Mar 3, 2021, 10:15:00 AM"), "2021-03-03T10:15:00Z");
    EXPECT_EQ(Understood("3/4/21 +2 days"), "2021-03-06T14:25:36Z");
    EXPECT_EQ(Understood("March 3, 2021 -1 week"), "2021-02-24T14:25:36Z");
}

TEST_F(DateTranslatorTest, TheFirstConversionOfATextIsKept) {
    EXPECT_EQ(Understood("4/1/21"), "2021-04-01T14:25:36Z");
    StFixedNow later(kWednesday + 3600);
    EXPECT_EQ(Understood("4/1/21"), "2021-04-01T14:25:36Z");
    DateFormatterUtilities::Get().Reset();
    EXPECT_EQ(Understood("4/1/21"), "2021-04-01T15:25:36Z");
}

TEST_F(DateTranslatorTest, MonthNamesWithDayAndYearInEitherOrder) {
    EXPECT_EQ(Understood("January 1999"), "1999-01-01T00:00:00Z");
    EXPECT_EQ(Understood("Jan 5 2021 10:30 pm"), "2021-01-05T22:30:00Z");
    EXPECT_EQ(Understood("March 3 2021"), "2021-03-03T00:00:00Z");
    EXPECT_EQ(Understood("March 3"), "2000-03-03T00:00:00Z");
    EXPECT_EQ(Understood("Feb 2 21"), "2021-02-02T00:00:00Z");
    EXPECT_EQ(Understood("5 January 2021 10:30"), "2021-01-05T10:30:00Z");
    EXPECT_EQ(Understood("5 January 2021 10 30"), "2021-01-05T00:00:00Z");
    EXPECT_EQ(Understood("5 January 2021 +3 days"), "2021-01-08T00:00:00Z");
    EXPECT_EQ(Understood("5 Jan 75"), "1975-01-05T00:00:00Z");
    // Month names match exactly.
    EXPECT_TRUE(STime::For("january 5 2021").IsNever());
    EXPECT_TRUE(STime::For("Smarch 5 2021").IsNever());
    EXPECT_TRUE(STime::For("5 Smarch 2021").IsNever());
}

TEST_F(DateTranslatorTest, WeekdaysAreAlwaysAhead) {
    // Now is a Wednesday.
    EXPECT_EQ(Understood("monday"), "2021-03-15T14:25:36Z");
    EXPECT_EQ(Understood("Mon"), "2021-03-15T14:25:36Z");
    EXPECT_EQ(Understood("Mon."), "2021-03-15T14:25:36Z");
    EXPECT_EQ(Understood("Thursday"), "2021-03-11T14:25:36Z");
    EXPECT_EQ(Understood("Wednesday"), "2021-03-17T14:25:36Z");
    EXPECT_EQ(Understood("Wedn"), "2021-03-17T14:25:36Z");
    EXPECT_EQ(Understood("T"), "2021-03-16T14:25:36Z");
    EXPECT_EQ(Understood("friday 9:15"), "2021-03-12T09:15:00Z");
    EXPECT_EQ(Understood("friday +1 week"), "2021-03-19T14:25:36Z");
    EXPECT_TRUE(STime::For("Sunny").IsNever());
}

TEST_F(DateTranslatorTest, ISO8601InBothForms) {
    EXPECT_EQ(Understood("2021-03-04"), "2021-03-04T00:00:00Z");
    EXPECT_EQ(Understood("2021-03-04T10:00:00Z"), "2021-03-04T10:00:00Z");
    EXPECT_EQ(Understood("2021-03-04T10:00:00+01:00"), "2021-03-04T09:00:00Z");
    EXPECT_EQ(Understood("2021-03-04 10:30"), "2021-03-04T10:30:00Z");
    EXPECT_EQ(Understood("2021-03-04T10:30:45"), "2021-03-04T10:30:45Z");
    EXPECT_EQ(Understood("2021-03-04 10:30 pm"), "2021-03-04T22:30:00Z");
    EXPECT_EQ(Understood("1999-12-31,23.59"), "1999-12-31T23:59:00Z");
    EXPECT_TRUE(STime::For("2021-13-01").IsNever());
    EXPECT_TRUE(STime::For("2021-12-32").IsNever());
    STime caesar = STime::For("-0044-03-15");
    EXPECT_EQ(caesar.Era(), 0);
    EXPECT_EQ(caesar.Year(), 45);
    EXPECT_EQ(caesar.Month(), 3);
    EXPECT_EQ(caesar.Day(), 15);
    // Every date's own ISO text reads back as the same instant.
    for (const char* text : {"1066", "3/15", "tomorrow 9:30", "January 1999", "1500000000"}) {
        STime time = STime::For(text);
        EXPECT_EQ(STime::For(time.ISO8601DateString()), time) << text;
    }
}

TEST_F(DateTranslatorTest, AttributeReferencesGoThroughTheHook) {
    std::vector<std::string> asked;
    StHooks hooks;
    hooks->readAttribute = [&](Node*, const std::string& name) {
        asked.push_back(name);
        return name == "Due" ? std::string("2021-03-04") : std::string();
    };
    Node* note = reinterpret_cast<Node*>(0x1);
    EXPECT_EQ(STime::For("$Due+1 day", note).ISO8601DateString(), "2021-03-05T00:00:00Z");
    EXPECT_EQ(STime::For("$Due -2 weeks", note).ISO8601DateString(), "2021-02-18T00:00:00Z");
    // A time of day in the modifier has no effect.
    EXPECT_EQ(STime::For("$Due +1 day 5pm", note).ISO8601DateString(), "2021-03-05T00:00:00Z");
    // A reference that ends the text names its last letter twice.
    STime::For("$Due", note);
    ASSERT_EQ(asked.size(), 4u);
    EXPECT_EQ(asked[0], "Due");
    EXPECT_EQ(asked[3], "Duee");
    // Without a note the base is now.
    EXPECT_EQ(STime::For("$Due+1 day").ISO8601DateString(), "2021-03-11T14:25:36Z");
    hooks->readAttribute = nullptr;
    EXPECT_EQ(STime::For("$Due+1", note).ISO8601DateString(), "2021-03-11T14:25:36Z");
}

TEST_F(DateTranslatorTest, InvalidTextIsNeverForSTimeAndNowForTheTranslator) {
    for (const char* text : {"xyz", "hello world", "$", "#ff0000", "+", "-", ":", "/", "---", "a/b/c"}) {
        DateTranslator translator(text);
        if (std::string(text) == "$") {
            // "$" is an attribute reference to nothing: now.
            EXPECT_TRUE(translator.IsValid());
            continue;
        }
        EXPECT_FALSE(translator.IsValid()) << text;
        EXPECT_TRUE(translator.GetTime().IsNever()) << text;
        EXPECT_TRUE(STime::For(text).IsNever()) << text;
        EXPECT_EQ(DateTranslator::For(text), STime::Now()) << text;
    }
}

TEST_F(DateTranslatorTest, IsDateTellsDatesFromNumbersAndColours) {
    EXPECT_FALSE(STime::IsDate(""));
    EXPECT_FALSE(STime::IsDate("#ff0000"));
    EXPECT_FALSE(STime::IsDate("123"));
    EXPECT_FALSE(STime::IsDate("-12.5"));
    EXPECT_FALSE(STime::IsDate("\" 42 \""));
    EXPECT_FALSE(STime::IsDate("xyz"));
    EXPECT_TRUE(STime::IsDate("\"2021-03-04\""));
    EXPECT_TRUE(STime::IsDate("today"));
    EXPECT_TRUE(STime::IsDate("3/15"));
    EXPECT_TRUE(STime::CanBeDate("123"));
}

TEST_F(DateTranslatorTest, FollowsTheZoneAndTheLocale) {
    {
        StDateEnvironment york("America/New_York", "en_US.UTF-8", kWednesday);
        EXPECT_EQ(Understood("2021-03-04"), "2021-03-04T00:00:00-05:00");
        EXPECT_EQ(Understood("today 5pm"), "2021-03-10T17:00:00-05:00");
        EXPECT_EQ(STime::For("today 5pm").SecondsSince1970(), 1615413600.0);
        // Daylight saving time starts on 14 March 2021.
        EXPECT_EQ(Understood("today +7"), "2021-03-17T09:25:36-04:00");
    }
    {
        StDateEnvironment berlin("Europe/Berlin", "de_DE.UTF-8", kWednesday);
        EXPECT_EQ(Understood("15.03.21"), "2021-03-15T15:25:36+01:00");
        EXPECT_EQ(Understood("Montag"), "2021-03-15T15:25:36+01:00");
        EXPECT_EQ(Understood("Mo."), "2021-03-15T15:25:36+01:00");
        EXPECT_EQ(Understood("März 5 2021"), "2021-03-05T00:00:00+01:00");
        EXPECT_EQ(Understood("5 März 2021 10:30"), "2021-03-05T10:30:00+01:00");
    }
    EXPECT_EQ(Understood("2021-03-04"), "2021-03-04T00:00:00Z");
}

TEST_F(DateTranslatorTest, TheRegionCodeOverridesTheEnvironment) {
    EXPECT_EQ(STime::GetRegionCode(), "");
    EXPECT_TRUE(STime::For("15.03.21").IsNever());
    STime::SetRegionCode("de_DE");
    EXPECT_EQ(STime::GetRegionCode(), "de_DE");
    EXPECT_EQ(DateTranslator::CurrentLocale(), "de_DE");
    EXPECT_EQ(Understood("15.03.21"), "2021-03-15T14:25:36Z");
    STime::SetRegionCode("0");
    EXPECT_EQ(STime::GetRegionCode(), "");
    EXPECT_TRUE(STime::For("15.03.21").IsNever());
}

TEST_F(DateTranslatorTest, PathologicalTextsAnswerQuickly) {
    std::vector<std::string> texts = {
        std::string(100000, '9'),
        "1" + std::string(20000, ' ') + "x",
        "99999999999999999999-01-01",
        "-99999999999-01-01T99:99:99",
        "3/15/999999999999999999999",
        "12/" + std::string(5000, '9'),
        "January " + std::string(3000, '7') + " " + std::string(3000, '7'),
        "today +9999999999999 days",
        "today +" + std::string(400, '9') + " years",
        "$" + std::string(10000, 'a') + "+1 day",
        "in 999999999 years",
        std::string(20000, '+'),
        std::string(20000, '-') + "1",
        "next " + std::string(5000, 'x') + " friday 5pm",
        "1e308",
        std::string(3000, '.'),
    };
    auto start = std::chrono::steady_clock::now();
    for (const std::string& text : texts) {
        DateTranslator translator(text);
        translator.GetTime().ISO8601DateString();
        translator.GetTime().AsExportString("D M0 y h:mm:s *");
    }
    double seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
    EXPECT_LT(seconds, 0.5);
    // Numbers too large for any field make no date, rather than a wrapped one.
    EXPECT_TRUE(STime::For("3/15/999999999999999999999").IsNever());
    EXPECT_TRUE(STime::For("12/99999999999999999999999").IsNever());
    EXPECT_TRUE(STime::For("today +9999999999999999999999 days").IsNever());
    EXPECT_TRUE(STime::For(std::string(400, '9')).IsNever());
    EXPECT_EQ(Understood("-99999999999-01-01"), "never");
}

TEST_F(DateTranslatorTest, ThreadsTranslateAndFormatTogether) {
    const std::vector<std::string> texts = {"2021-03-04", "today 5pm",  "3/15/2021", "monday",  "next friday",
                                            "1066",       "March 3, 2021", "12/1999", "in 3 days", "xyz"};
    std::vector<std::string> expected;
    for (const auto& text : texts)
        expected.push_back(STime::For(text).AsShortString());
    std::vector<std::thread> threads;
    std::vector<int> failures(4, 0);
    for (int t = 0; t < 4; ++t) {
        threads.emplace_back([&, t] {
            for (int round = 0; round < 50; ++round)
                for (size_t i = 0; i < texts.size(); ++i)
                    if (STime::For(texts[i]).AsShortString() != expected[i])
                        ++failures[t];
        });
    }
    for (auto& thread : threads)
        thread.join();
    for (int f : failures)
        EXPECT_EQ(f, 0);
}

TEST_F(DateTranslatorTest, EachLocalesOwnTextsReadBack) {
    const STime moment = STime::For("2021-11-23 16:47");
    for (const char* locale : {"en_US", "en_GB", "de_DE", "fr_FR", "es_ES", "it_IT", "nl_NL", "pt_BR", "sv_SE",
                               "pl_PL", "ru_RU", "ja_JP", "zh_CN", "ko_KR", "ar_EG", "hi_IN"}) {
        STime::SetRegionCode(locale);
        EXPECT_EQ(STime::For(moment.AsShortString()), moment) << locale << ": " << moment.AsShortString();
        // Date-only texts take the present time of day.
        STime longDate = STime::For(moment.LongDateString());
        EXPECT_TRUE(longDate.SameDayAs(moment)) << locale << ": " << moment.LongDateString();
        EXPECT_EQ(longDate.Hour(), 14) << locale << ": " << moment.LongDateString();
        STime shortDate = STime::For(moment.ShortDateString());
        EXPECT_TRUE(shortDate.SameDayAs(moment)) << locale << ": " << moment.ShortDateString();
    }
    STime::SetRegionCode("");
}
