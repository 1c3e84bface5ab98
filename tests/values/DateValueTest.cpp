#include <gtest/gtest.h>

#include <algorithm>
#include <vector>

#include "DateTestSupport.h"
#include "DateValue.h"

namespace {

ValuePtr Date(const std::string& text) {
    return ValuePtr(Value::ForDate(text));
}

}  // namespace

TEST(DateValueTest, TextForms) {
    ValuePtr never(Value::Never());
    for (const char* t : {"", "never", "0"}) EXPECT_EQ(Date(t).get(), never.get()) << t;
    EXPECT_EQ(never->AsXML(), "never");
    EXPECT_EQ(ValuePtr(Value::Create(AttributeType::kDate, "never")).get(), never.get());

    auto iso = Date("2021-03-04T10:00:00Z");
    EXPECT_EQ(iso->AsXML(), "2021-03-04T10:00:00Z");
    EXPECT_EQ(iso->AsString(), "2021-03-04T10:00:00Z");
    EXPECT_EQ(iso->AsLong(), 1614852000);
    EXPECT_EQ(iso->AsDouble(), 1614852000.0);
    EXPECT_TRUE(iso->AsBoolean());
    EXPECT_EQ(iso->AsTime(), STime(1614852000.0));

    // Unreadable text is never.
    EXPECT_EQ(Date("not a date at all").get(), never.get());

    // A quoted expression is kept and resolved on first use.
    auto quoted = Date("\"2021-03-04T10:00:00Z\"");
    auto* held = dynamic_cast<DateValue*>(quoted.get());
    ASSERT_NE(held, nullptr);
    EXPECT_EQ(held->Expression(), "2021-03-04T10:00:00Z");
    EXPECT_EQ(quoted->AsString(), "\"2021-03-04T10:00:00Z\"");
    EXPECT_EQ(quoted->AsFormattedString("%Y"), "\"2021-03-04T10:00:00Z\"");
    EXPECT_EQ(quoted->AsDouble(), STime::Never().SecondsSince1970());  // not resolved by AsDouble
    EXPECT_EQ(quoted->AsXML(), "2021-03-04T10:00:00Z");
    EXPECT_EQ(quoted->AsDouble(), 1614852000.0);
    EXPECT_EQ(quoted->AsString(), "\"2021-03-04T10:00:00Z\"");  // the expression stays

    auto parens = Date("(2021-03-04T10:00:00Z)");
    EXPECT_EQ(dynamic_cast<DateValue*>(parens.get())->Expression(), "2021-03-04T10:00:00Z");
    EXPECT_EQ(parens->AsTime(), STime(1614852000.0));

    // Quotes not at the start: the length is (position of the last quote) - 1.
    auto odd = Date("ab\"cdef\"");
    EXPECT_EQ(dynamic_cast<DateValue*>(odd.get())->Expression(), "cdef\"");
    // A lone quote leaves an empty expression, which resolves to never.
    EXPECT_TRUE(Date("\"")->AsTime().IsNever());

    // Deeply nested expressions end as never instead of exhausting the stack.
    std::string deep(5000, '(');
    deep += "2021-03-04";
    deep += std::string(5000, ')');
    EXPECT_TRUE(Date(deep)->AsTime().IsNever());
}

TEST(DateValueTest, CompareEqualAndSort) {
    auto morning = Date("2021-03-04T08:00:00Z");
    auto evening = Date("2021-03-04T20:00:00Z");
    auto nextDay = Date("2021-03-05T08:00:00Z");
    ValuePtr never(Value::Never());

    EXPECT_EQ(morning->compare(evening.get()), -1);
    EXPECT_TRUE(morning->equal(evening.get()));  // same day
    EXPECT_FALSE(morning->equal(nextDay.get()));
    EXPECT_EQ(morning->compare(never.get()), -1);
    EXPECT_EQ(never->compare(morning.get()), 1);
    EXPECT_EQ(never->compare(never.get()), 0);

    std::vector<Value*> dates{never.get(), nextDay.get(), morning.get()};
    std::sort(dates.begin(), dates.end(), [](Value* a, Value* b) { return a->compare(b) < 0; });
    EXPECT_EQ(dates.front(), morning.get());
    EXPECT_EQ(dates.back(), never.get());
}

TEST(DateValueTest, ReferenceCounts) {
    DateValue* date = dynamic_cast<DateValue*>(Value::ForDate(STime(1000.0)));
    ASSERT_NE(date, nullptr);
    EXPECT_EQ(date->Count(), 1);
    Value* clone = date->Clone();
    EXPECT_EQ(clone, date);
    EXPECT_EQ(date->Count(), 2);
    clone->Delete();
    EXPECT_EQ(date->Count(), 1);
    EXPECT_EQ(date->AsDouble(), 1000.0);
    date->Delete();  // the last reference destroys it (checked by the sanitizer builds)

    // Balanced use of the shared never never destroys it.
    for (int i = 0; i < 3; ++i) ValuePtr n(Value::ForDate(STime::Never()));
    EXPECT_EQ(ValuePtr(Value::Never())->AsXML(), "never");
}

TEST(DateValueTest, Intervals) {
    auto interval = ValuePtr(Value::Create(AttributeType::kInterval, "1h30m"));
    EXPECT_EQ(interval->AsDouble(), 5400.0);
    EXPECT_EQ(interval->AsLong(), 5400);
    EXPECT_EQ(interval->AsXML(), STimeInterval(5400.0).ToString());
    EXPECT_EQ(interval->compare(ValuePtr(Value::ForInt(5400)).get()), 0);
    EXPECT_EQ(interval->compare(ValuePtr(Value::ForInt(6000)).get()), -1);
    EXPECT_TRUE(interval->equal(ValuePtr(interval->Clone()).get()));
    EXPECT_FALSE(ValuePtr(Value::ForInterval("0"))->AsBoolean());
}

// Dates read from a file keep their text only when it is not the instant's
// own universal-time form; that form is then made again by arithmetic, which
// must agree with the calendar services to the byte.
TEST(DateValueTest, WrittenFormsAgreeWithTheCalendar) {
    std::vector<std::string> texts = {"1583-01-01T00:00:00Z", "1600-02-29T12:34:56Z", "1899-12-31T23:59:59Z",
                                      "1900-02-28T00:00:01Z", "1970-01-01T00:00:00Z", "1969-12-31T23:59:59Z",
                                      "2000-02-29T06:07:08Z", "2024-12-31T23:59:59Z", "2100-03-01T00:00:00Z",
                                      "9999-12-31T23:59:59Z"};
    // A spread of instants over four centuries, one every 1,000,003 minutes.
    for (double s = -11000000000.0; s < 4000000000.0; s += 60000180.0)
        texts.push_back(ValuePtr(Value::ForDate(STime(s)))->AsXML());
    for (const std::string& text : texts) {
        // Read by arithmetic, and by the calendar when given as an offset.
        EXPECT_EQ(STime::For(text), STime::For(text.substr(0, 19) + "+00:00")) << text;
        ValuePtr read(Value::ForDate(text));
        EXPECT_EQ(read->AsXML(), text);
        EXPECT_EQ(read->AsString(), text);
        // Made from the instant alone, the text comes from the calendar.
        EXPECT_EQ(ValuePtr(Value::ForDate(read->AsTime()))->AsXML(), text);
    }
    // Texts that are not the universal form are written as the instant's
    // ISO 8601 text.
    EXPECT_EQ(ValuePtr(Value::ForDate("2026-01-01"))->AsXML(), "2026-01-01T00:00:00Z");
    EXPECT_EQ(ValuePtr(Value::ForDate("2026-1-2"))->AsXML(), "2026-01-02T00:00:00Z");
    EXPECT_EQ(ValuePtr(Value::ForDate("1500-06-01T00:00:00Z"))->AsXML(), "1500-06-01T00:00:00Z");
    // Fields out of range are left to the general reader.
    STime ignored;
    for (const char* text : {"2026-02-29T00:00:00Z", "1900-02-29T00:00:00Z", "2026-13-01T00:00:00Z",
                             "2026-04-31T00:00:00Z", "2026-01-01T24:00:00Z", "2026-01-01T00:60:00Z",
                             "2026-01-01T00:00:60Z", "1582-12-31T00:00:00Z", "2026-01-01 00:00:00Z",
                             "2026-01-01T00:00:00", "+026-01-01T00:00:00Z"})
        EXPECT_FALSE(STime::FromUniversalText(text, ignored)) << text;
    EXPECT_TRUE(STime::FromUniversalText("2000-02-29T23:59:59Z", ignored));
    EXPECT_EQ(ignored.UniversalText(), "2000-02-29T23:59:59Z");
    EXPECT_EQ(STime(0.5).UniversalText(), "");
    EXPECT_EQ(STime::Never().UniversalText(), "");
}

// A date given as free text is written as the instant it stood for when it
// was given, never as the text: "tomorrow" read back a day later must still
// be the same day.
TEST_F(DateTest, TypedTextIsWrittenAsTheInstant) {
    for (const char* text : {"tomorrow", "friday", "now", "1066", "3/15", "7/2000", "1500000000", "-2500",
                             "2021-03-04", "tomorrow+1 day", "next friday 5pm"}) {
        ValuePtr date(Value::ForDate(text));
        STime time = date->AsTime();
        ASSERT_FALSE(time.IsNever()) << text;
        EXPECT_EQ(time, STime::For(text)) << text;
        EXPECT_EQ(date->AsXML(), time.ISO8601DateString()) << text;
        EXPECT_EQ(date->AsString(), date->AsXML()) << text;
        // The written form reads back as the same instant.
        EXPECT_EQ(ValuePtr(Value::ForDate(date->AsXML()))->AsTime(), time) << text;
        ValuePtr copy(date->Clone());
        EXPECT_EQ(copy->AsXML(), date->AsXML()) << text;
    }
    EXPECT_EQ(ValuePtr(Value::ForDate("tomorrow"))->AsXML(), "2021-03-11T14:25:36Z");
    EXPECT_EQ(ValuePtr(Value::ForDate("1500000000"))->AsXML(), "2017-07-14T02:40:00Z");
    EXPECT_EQ(ValuePtr(Value::ForDate("never"))->AsXML(), "never");
    EXPECT_EQ(ValuePtr(Value::Create(AttributeType::kDate, "friday"))->AsString(), "2021-03-12T14:25:36Z");
}

// The universal form given in a zone with an offset is written with that
// zone's offset, as every other date there is.
TEST(DateValueZones, UniversalTextFollowsTheLocalZone) {
    {
        StDateEnvironment berlin("Europe/Berlin", "en_US.UTF-8", kWednesday);
        ValuePtr date(Value::ForDate("2021-03-04T10:00:00Z"));
        EXPECT_EQ(date->AsXML(), "2021-03-04T11:00:00+01:00");
        EXPECT_EQ(date->AsTime(), STime(1614852000.0));
    }
    StDateEnvironment universal("UTC", "en_US.UTF-8", kWednesday);
    EXPECT_EQ(ValuePtr(Value::ForDate("2021-03-04T10:00:00Z"))->AsXML(), "2021-03-04T10:00:00Z");
}
