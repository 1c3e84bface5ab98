#pragma once
// STime: one instant, a double count of seconds since 1 January 1970 UTC.
//
// The value carries no time zone; every calendar question is answered in the
// user's current calendar and local time zone (from LANG/LC_TIME/LC_ALL and
// TZ, or the region code set through the action language's locale function).
//
// `never` is not a flag: it is the distant-past instant, 0001-01-01T00:00:00Z
// in the calendar's reckoning, so it sorts before every other instant. Most
// operations treat it as an ordinary instant; the text forms answer "never".
#include <climits>
#include <cstdint>
#include <string>
#include <string_view>

class Node;
class STimeInterval;

// The fields of a calendar date, in the manner of the platform's date
// components. A field left at kUndefined takes no part.
struct DateComponents {
    static constexpr long kUndefined = LONG_MIN;

    long era = kUndefined;
    long year = kUndefined;
    long month = kUndefined;
    long day = kUndefined;
    long hour = kUndefined;
    long minute = kUndefined;
    long second = kUndefined;
    long weekday = kUndefined;    // 1 is Sunday
    long weekOfYear = kUndefined;
    std::string timeZone;         // zone id; empty: the local zone

    bool Has(long field) const { return field != kUndefined; }
};

// Which fields GetComponents fills.
enum DateUnit : unsigned {
    kEraUnit = 1u << 1,
    kYearUnit = 1u << 2,
    kMonthUnit = 1u << 3,
    kDayUnit = 1u << 4,
    kHourUnit = 1u << 5,
    kMinuteUnit = 1u << 6,
    kSecondUnit = 1u << 7,
    kWeekdayUnit = 1u << 9,
    kWeekOfYearUnit = 1u << 13,
    kTimeZoneUnit = 1u << 21,
};

class STime {
public:
    // The distant past, 0001-01-01T00:00:00Z, as seconds since 1970.
    static constexpr double kNeverSeconds = -62135769600.0;

    // Construction.
    STime();                                  // the current instant
    explicit STime(double secondsSince1970);  // seconds since 1 January 1970
    // Midnight of that calendar day; the year is taken as it stands.
    STime(int month, int day, int year);
    // A negative year sets the era to 0 and uses 1 minus the year (-1 is 2 BC).
    STime(long month, long day, long year, long hour, long minute, long second);

    static STime Now();
    static STime Never();
    static STime FromUnixEpoch(double secondsSince1970);
    // The instant of an ICU date (milliseconds since 1970); NaN gives never.
    static STime FromUDate(double udate);
    // The calendar's date for the components; out-of-range fields (day 40,
    // hour 24, month 13) are carried forward by the calendar.
    static STime FromComponents(const DateComponents& components);

    // Free text to a date. An untranslatable text gives never.
    static STime For(const std::string& text);
    static STime For(const std::string& text, Node* context);
    static bool CanBeDate(const std::string& text);
    // The stricter test that tells dates from numbers and colours.
    static bool IsDate(const std::string& text);
    static std::string GetRegionCode();
    static void SetRegionCode(const std::string& code);

    // Comparison of instants.
    bool operator==(const STime& other) const { return seconds == other.seconds; }
    bool operator!=(const STime& other) const { return seconds != other.seconds; }
    bool operator>(const STime& other) const { return seconds > other.seconds; }
    bool operator<(const STime& other) const { return seconds < other.seconds; }
    bool operator>=(const STime& other) const { return seconds >= other.seconds; }
    bool operator<=(const STime& other) const { return seconds <= other.seconds; }
    // Whole seconds of calendar difference; 100000000 when the calendar has no answer.
    long operator-(const STime& other) const;

    // Text forms; all give "never" for never except RFC822DateString.
    std::string AsString() const;          // same as AsShortString
    std::string AsShortString() const;     // short date, short time
    std::string TimeString() const;        // short time
    std::string ShortDateString() const;   // short date
    std::string MediumDateString() const;  // medium date, short time
    std::string LongDateString() const;    // long date
    std::string ISO8601DateString() const; // e.g. 2021-03-04T10:00:00Z in the local zone
    // The instant in universal time as "YYYY-MM-DDTHH:MM:SSZ", worked out
    // without the calendar services; "" when that form cannot stand for it
    // exactly (fractions of a second, years outside 1583-9999, before which
    // the calendar in use is not the Gregorian one).
    std::string UniversalText() const;
    // Whether ISO8601DateString gives UniversalText wherever the latter is
    // not empty: the local zone is universal time.
    static bool LocalZoneIsUniversal();
    // The reverse: reads exactly that form (valid fields, years 1583-9999).
    static bool FromUniversalText(std::string_view text, STime& time);
    std::string RFC822DateString() const;  // e.g. Thu, 4 Mar 2021 10:00:00 +0000
    // The date format codes of the export language and .format().
    std::string AsExportString(const std::string& format) const;

    bool IsNever() const { return seconds == kNeverSeconds; }

    // Calendar fields in the local calendar and zone.
    int DayOfWeek() const;  // 1 is Sunday
    int WeekOfYear() const;
    int Month() const;
    int Day() const;
    int Year() const;
    int Hour() const;       // 0 for never
    int Minute() const;     // 0 for never
    int Second() const;     // 0 for never
    int Era() const;
    bool SameDayAs(const STime& other) const;

    // Differences from `other` to this, in whole calendar units (signed, truncated).
    double DaysSince(const STime& other) const;
    double MinutesSince(const STime& other) const;
    double HoursSince(const STime& other) const;
    double WeeksSince(const STime& other) const;
    double YearsSince(const STime& other) const;
    double SecondsSince(const STime& other) const;  // exact
    double MonthsSince(const STime& other) const;
    double SecondsAgo() const;                      // now minus this
    double MonthsSince2000() const;                 // from 1 January 2000, local midnight
    double SecondsSince1970() const { return seconds; }

    // One component replaced, rebuilt through the calendar.
    STime ForYear(long year) const;
    STime ForMonth(long month) const;
    STime ForDay(long day) const;
    STime ForHour(long hour) const;
    STime ForMinute(long minute) const;
    STime ForSecond(long second) const;
    STime SetTime(long hour, long minute) const;
    STime SetTime(long hour, long minute, long second) const;

    // Date arithmetic from text: "+3 days", "-2 weeks", "+1 month" ...
    STime Add(const std::string& text) const;
    // A time of day from text: "9:30", "5:15 pm", "930", "5pm".
    STime SetTime(const std::string& text) const;
    STime InformalTimeAbbreviation(const std::string& text) const;
    STime AddSeconds(double delta) const { return STime(seconds + delta); }

    // Names in the current locale.
    std::string LocalWeekdayLong() const;
    std::string LocalWeekdayShort() const;
    std::string LocalMonthsLong() const;
    std::string LocalMonthsShort() const;

    // The instant as an ICU date (milliseconds since 1970).
    double GetUDate() const { return seconds * 1000.0; }

    DateComponents GetComponents() const;  // era..second, weekday, time zone
    DateComponents GetComponents(unsigned flags) const;
    // The difference from `from` to `to` in the requested units.
    static DateComponents GetComponents(unsigned flags, const STime& from, const STime& to);

    // The process clock. Tests fix "now" so that relative words give known
    // dates; ClearFixedNow returns to the system clock.
    static void SetFixedNow(double secondsSince1970);
    static void ClearFixedNow();

private:
    double seconds;
};

// Scope guard that fixes the current instant while it lives.
class StFixedNow {
public:
    explicit StFixedNow(double secondsSince1970) { STime::SetFixedNow(secondsSince1970); }
    explicit StFixedNow(const STime& now) { STime::SetFixedNow(now.SecondsSince1970()); }
    ~StFixedNow() { STime::ClearFixedNow(); }
    StFixedNow(const StFixedNow&) = delete;
    StFixedNow& operator=(const StFixedNow&) = delete;
};
