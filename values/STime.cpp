#include "STime.h"

#include <atomic>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <cstring>

#include "DateFormatterUtilities.h"
#include "DateText.h"
#include "DateTranslator.h"
#include "Log.h"

namespace {

std::atomic<bool> nowIsFixed{false};
std::atomic<double> fixedNow{0.0};

// ICU dates beyond this many milliseconds are refused by the calendar.
constexpr double kCalendarLimit = 1.8e17;

bool CalendarCanHold(double seconds) { return std::isfinite(seconds) && std::fabs(seconds * 1000.0) < kCalendarLimit; }

// Sets the calendar to the instant; false when the calendar cannot hold it.
bool SetCalendar(icu::Calendar& calendar, double seconds) {
    if (!CalendarCanHold(seconds))
        return false;
    UErrorCode status = U_ZERO_ERROR;
    calendar.setTime(seconds * 1000.0, status);
    return U_SUCCESS(status);
}

long Field(icu::Calendar& calendar, UCalendarDateFields field) {
    UErrorCode status = U_ZERO_ERROR;
    long value = calendar.get(field, status);
    return U_SUCCESS(status) ? value : 0;
}

std::string Format(icu::DateFormat& formatter, double seconds) {
    icu::UnicodeString out;
    formatter.format(seconds * 1000.0, out);
    return DateUTF8(out);
}

// Sums and products of calendar fields stop at the limits of long; the
// calendar then refuses the date.
long Sum(long a, long b) {
    long out;
    if (__builtin_add_overflow(a, b, &out))
        return a < 0 ? -LONG_MAX : LONG_MAX;
    return out;
}

long Product(long a, long b) {
    long out;
    if (__builtin_mul_overflow(a, b, &out))
        return (a < 0) != (b < 0) ? -LONG_MAX : LONG_MAX;
    return out;
}

const char* const kRFCDays[] = {"Sun", "Mon", "Tue", "Wed", "Thu", "Fri", "Sat"};
const char* const kRFCMonths[] = {"Jan", "Feb", "Mar", "Apr", "May", "Jun",
                                  "Jul", "Aug", "Sep", "Oct", "Nov", "Dec"};

} // namespace

// ---------------------------------------------------------------------------
// Construction

STime::STime() : seconds(Now().seconds) {}

STime::STime(double secondsSince1970) : seconds(std::isnan(secondsSince1970) ? kNeverSeconds : secondsSince1970) {}

STime::STime(int month, int day, int year) {
    DateComponents components;
    components.month = month;
    components.day = day;
    components.year = year;
    components.hour = 0;
    components.minute = 0;
    components.second = 0;
    seconds = FromComponents(components).seconds;
}

STime::STime(long month, long day, long year, long hour, long minute, long second) {
    DateComponents components;
    if (year < 0) {
        components.era = 0;
        year = Sum(1, Product(year, -1));
    }
    components.month = month;
    components.day = day;
    components.year = year;
    components.hour = hour;
    components.minute = minute;
    components.second = second;
    seconds = FromComponents(components).seconds;
}

STime STime::Now() {
    if (nowIsFixed.load())
        return STime(fixedNow.load());
    auto since = std::chrono::system_clock::now().time_since_epoch();
    return STime(std::chrono::duration<double>(since).count());
}

STime STime::Never() { return STime(kNeverSeconds); }

STime STime::FromUnixEpoch(double secondsSince1970) { return STime(secondsSince1970); }

STime STime::FromUDate(double udate) { return STime(udate / 1000.0); }

void STime::SetFixedNow(double secondsSince1970) {
    fixedNow.store(secondsSince1970);
    nowIsFixed.store(true);
}

void STime::ClearFixedNow() { nowIsFixed.store(false); }

STime STime::FromComponents(const DateComponents& c) {
    return OnDateServices([&] {
        auto& utilities = DateFormatterUtilities::Get();
        icu::Calendar& calendar = utilities.Calendar();
        std::unique_ptr<icu::TimeZone> savedZone;
        if (!c.timeZone.empty()) {
            icu::UnicodeString local;
            calendar.getTimeZone().getID(local);
            if (local != DateUnicode(c.timeZone)) {
                savedZone.reset(calendar.getTimeZone().clone());
                calendar.adoptTimeZone(icu::TimeZone::createTimeZone(DateUnicode(c.timeZone)));
            }
        }
        calendar.clear();
        // Fields far outside any calendar would overflow ICU's arithmetic;
        // such a date is no date.
        const long limit = 100000000;
        auto fits = [&](long v) { return !c.Has(v) || (v > -limit && v < limit); };
        bool ok = fits(c.era) && fits(c.year) && fits(c.month) && fits(c.day) && fits(c.hour) && fits(c.minute) &&
                  fits(c.second);
        if (ok) {
            if (c.Has(c.era))
                calendar.set(UCAL_ERA, static_cast<int32_t>(c.era));
            if (c.Has(c.year))
                calendar.set(UCAL_YEAR, static_cast<int32_t>(c.year));
            if (c.Has(c.month))
                calendar.set(UCAL_MONTH, static_cast<int32_t>(c.month - 1));
            if (c.Has(c.day))
                calendar.set(UCAL_DATE, static_cast<int32_t>(c.day));
            calendar.set(UCAL_HOUR_OF_DAY, c.Has(c.hour) ? static_cast<int32_t>(c.hour) : 0);
            calendar.set(UCAL_MINUTE, c.Has(c.minute) ? static_cast<int32_t>(c.minute) : 0);
            calendar.set(UCAL_SECOND, c.Has(c.second) ? static_cast<int32_t>(c.second) : 0);
        }
        UErrorCode status = U_ZERO_ERROR;
        UDate date = ok ? calendar.getTime(status) : 0;
        if (savedZone)
            calendar.adoptTimeZone(savedZone.release());
        if (!ok || U_FAILURE(status))
            return Never();
        return FromUDate(date);
    });
}

STime STime::For(const std::string& text) { return For(text, nullptr); }

STime STime::For(const std::string& text, Node* context) {
    DateTranslator translator(text, context);
    return translator.GetTime();
}

bool STime::CanBeDate(const std::string& text) {
    DateTranslator translator(text);
    return translator.IsValid();
}

bool STime::IsDate(const std::string& text) {
    if (text.empty())
        return false;
    std::string trimmed = DateText::TrimQuotes(text);
    if (!trimmed.empty() && trimmed[0] == '#')
        return false;
    bool number = true;
    for (size_t i = 0; i < trimmed.size() && number; ++i) {
        char c = trimmed[i];
        number = DateText::IsSpace(c) || DateText::IsDigit(c) || c == '.' || (c == '-' && i == 0);
    }
    if (number)
        return false;
    return CanBeDate(text);
}

std::string STime::GetRegionCode() { return DateTranslator::GetRegionCode(); }

void STime::SetRegionCode(const std::string& code) { DateTranslator::SetRegionCode(code); }

long STime::operator-(const STime& other) const {
    DateComponents difference = GetComponents(kSecondUnit, other, *this);
    return difference.Has(difference.second) ? difference.second : 100000000;
}

// ---------------------------------------------------------------------------
// Text forms

std::string STime::AsString() const { return AsShortString(); }

std::string STime::AsShortString() const {
    if (IsNever())
        return "never";
    return OnDateServices([&] { return Format(DateFormatterUtilities::Get().ShortFormatter(), seconds); });
}

std::string STime::TimeString() const {
    if (IsNever())
        return "never";
    return OnDateServices([&] { return Format(DateFormatterUtilities::Get().TimeFormatter(), seconds); });
}

std::string STime::ShortDateString() const {
    if (IsNever())
        return "never";
    return OnDateServices([&] { return Format(DateFormatterUtilities::Get().ShortDateFormatter(), seconds); });
}

std::string STime::MediumDateString() const {
    if (IsNever())
        return "never";
    return OnDateServices([&] { return Format(DateFormatterUtilities::Get().MediumFormatter(), seconds); });
}

std::string STime::LongDateString() const {
    if (IsNever())
        return "never";
    return OnDateServices([&] { return Format(DateFormatterUtilities::Get().LongDateFormatter(), seconds); });
}

std::string STime::ISO8601DateString() const {
    if (IsNever())
        return "never";
    return OnDateServices([&] {
        auto& utilities = DateFormatterUtilities::Get();
        icu::Calendar& calendar = utilities.Calendar();
        if (SetCalendar(calendar, seconds) && Field(calendar, UCAL_ERA) == 0) {
            // Before the common era the plain description of the instant is
            // given: universal time with the signed astronomical year.
            UErrorCode status = U_ZERO_ERROR;
            icu::SimpleDateFormat description(icu::UnicodeString("uuuu-MM-dd HH:mm:ss Z"), icu::Locale("en_US_POSIX"),
                                              status);
            description.setTimeZone(*icu::TimeZone::getGMT());
            return Format(description, seconds);
        }
        return Format(utilities.ISO8601Formatter(), seconds);
    });
}

namespace {

constexpr double kFirstUniversalSecond = -12212553600.0;  // 1583-01-01T00:00:00Z
constexpr double kEndUniversalSecond = 253402300800.0;    // 10000-01-01T00:00:00Z

// Days since 1970 of a proleptic Gregorian date, and back.
int64_t DaysFromCivil(int64_t year, int64_t month, int64_t day) {
    year -= month <= 2 ? 1 : 0;
    int64_t era = (year >= 0 ? year : year - 399) / 400;
    int64_t yearOfEra = year - era * 400;
    int64_t dayOfYear = (153 * (month > 2 ? month - 3 : month + 9) + 2) / 5 + day - 1;
    int64_t dayOfEra = yearOfEra * 365 + yearOfEra / 4 - yearOfEra / 100 + dayOfYear;
    return era * 146097 + dayOfEra - 719468;
}

void CivilFromDays(int64_t days, int64_t& year, int64_t& month, int64_t& day) {
    int64_t z = days + 719468;
    int64_t era = (z >= 0 ? z : z - 146096) / 146097;
    int64_t dayOfEra = z - era * 146097;
    int64_t yearOfEra = (dayOfEra - dayOfEra / 1460 + dayOfEra / 36524 - dayOfEra / 146096) / 365;
    int64_t dayOfYear = dayOfEra - (365 * yearOfEra + yearOfEra / 4 - yearOfEra / 100);
    int64_t mp = (5 * dayOfYear + 2) / 153;
    day = dayOfYear - (153 * mp + 2) / 5 + 1;
    month = mp < 10 ? mp + 3 : mp - 9;
    year = yearOfEra + era * 400 + (month <= 2 ? 1 : 0);
}

}  // namespace

bool STime::LocalZoneIsUniversal() { return DateFormatterUtilities::Get().ZoneIsUniversal(); }

std::string STime::UniversalText() const {
    if (!(seconds >= kFirstUniversalSecond && seconds < kEndUniversalSecond) || seconds != std::floor(seconds))
        return {};
    int64_t total = static_cast<int64_t>(seconds);
    int64_t days = total >= 0 ? total / 86400 : -((-total + 86399) / 86400);
    int64_t rest = total - days * 86400;
    int64_t year = 0, month = 0, day = 0;
    CivilFromDays(days, year, month, day);
    std::string text = "0000-00-00T00:00:00Z";
    auto put = [&text](size_t end, int64_t number) {
        for (size_t i = end; number > 0; number /= 10)
            text[--i] = static_cast<char>('0' + number % 10);
    };
    put(4, year);
    put(7, month);
    put(10, day);
    put(13, rest / 3600);
    put(16, rest / 60 % 60);
    put(19, rest % 60);
    return text;
}

bool STime::FromUniversalText(std::string_view text, STime& time) {
    // YYYY-MM-DDTHH:MM:SSZ
    static constexpr char kShape[] = "dddd-dd-ddTdd:dd:ddZ";
    if (text.size() != 20)
        return false;
    for (size_t i = 0; i < 20; ++i) {
        bool digit = text[i] >= '0' && text[i] <= '9';
        if (kShape[i] == 'd' ? !digit : text[i] != kShape[i])
            return false;
    }
    auto number = [&](size_t at, size_t length) {
        int64_t n = 0;
        for (size_t i = at; i < at + length; ++i)
            n = n * 10 + (text[i] - '0');
        return n;
    };
    int64_t year = number(0, 4), month = number(5, 2), day = number(8, 2);
    int64_t hour = number(11, 2), minute = number(14, 2), second = number(17, 2);
    static constexpr int kDaysInMonth[] = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
    bool leap = (year % 4 == 0 && year % 100 != 0) || year % 400 == 0;
    if (year < 1583 || month < 1 || month > 12 || day < 1 ||
        day > kDaysInMonth[month - 1] + (month == 2 && leap ? 1 : 0) || hour > 23 || minute > 59 || second > 59)
        return false;
    time = STime(static_cast<double>(DaysFromCivil(year, month, day) * 86400 + hour * 3600 + minute * 60 + second));
    return true;
}

std::string STime::RFC822DateString() const {
    DateComponents c = GetComponents(kYearUnit | kMonthUnit | kDayUnit | kHourUnit | kMinuteUnit | kSecondUnit |
                                     kWeekdayUnit);
    int offsetHours = OnDateServices([&] {
        const icu::TimeZone& zone = DateFormatterUtilities::Get().TimeZone();
        int32_t raw = 0, dst = 0;
        UErrorCode status = U_ZERO_ERROR;
        zone.getOffset(Now().GetUDate(), false, raw, dst, status);
        return static_cast<int>((raw + dst) / 1000 / 3600);
    });
    long weekday = c.Has(c.weekday) ? c.weekday : 1;
    long month = c.Has(c.month) ? c.month : 1;
    if (weekday < 1 || weekday > 7)
        weekday = 1;
    if (month < 1 || month > 12)
        month = 1;
    char buffer[128];
    std::snprintf(buffer, sizeof buffer, "%s, %ld %s %ld %02ld:%02ld:%02lu %+03i00", kRFCDays[weekday - 1],
                  c.Has(c.day) ? c.day : 0, kRFCMonths[month - 1], c.Has(c.year) ? c.year : 0,
                  c.Has(c.hour) ? c.hour : 0, c.Has(c.minute) ? c.minute : 0,
                  static_cast<unsigned long>(c.Has(c.second) ? c.second : 0), offsetHours);
    return buffer;
}

std::string STime::AsExportString(const std::string& format) const {
    if (IsNever())
        return "never";
    if (format.empty())
        return AsString();
    DateComponents c = GetComponents();
    auto value = [](long v) { return v == DateComponents::kUndefined ? 0 : v; };
    long year = value(c.year), month = value(c.month), day = value(c.day);
    long hour = value(c.hour), minute = value(c.minute), second = value(c.second);

    std::string out;
    // Like a stream: the fill character stays once set, the width applies to
    // one field only.
    char fill = ' ';
    auto put = [&](long number, int width) {
        std::string digits = std::to_string(number);
        if (static_cast<int>(digits.size()) < width)
            out.append(width - digits.size(), fill);
        out += digits;
    };
    for (size_t i = 0; i < format.size(); ++i) {
        char code = format[i];
        char next = i + 1 < format.size() ? format[i + 1] : '\0';
        switch (code) {
        case '*':
            out += RFC822DateString();
            break;
        case '=':
            out += ISO8601DateString();
            break;
        case 'D':
            fill = '0';
            put(day, 2);
            break;
        case 'H': {
            long h = hour % 12;
            put(h == 0 ? 12 : h, 0);
            break;
        }
        case 'L':
            out += LongDateString();
            break;
        case 'M':
            if (next == 'M') {
                ++i;
                out += LocalMonthsLong();
            } else if (next == '0') {
                ++i;
                fill = '0';
                put(month, 2);
            } else {
                out += LocalMonthsShort();
            }
            break;
        case 'U': {
            char buffer[64];
            std::snprintf(buffer, sizeof buffer, "%.0f", SecondsSince1970());
            out += buffer;
            break;
        }
        case 'W':
            out += LocalWeekdayLong();
            break;
        case 'Y':
            fill = '0';
            put(year % 100, 2);
            break;
        case '\\':
            if (i + 1 < format.size()) {
                ++i;
                out += format[i];
            }
            break;
        case 'd':
            put(day, 0);
            break;
        case 'h':
            fill = '0';
            put(hour, 2);
            break;
        case 'l':
            out += ShortDateString();
            break;
        case 'm':
            if (next == 'm') {
                ++i;
                fill = '0';
                put(minute, 2);
            } else {
                put(month, 0);
            }
            break;
        case 'n':
            out += MediumDateString();
            break;
        case 'p':
            out += hour < 12 ? "AM" : "PM";
            break;
        case 's':
            put(second, 2);
            break;
        case 't':
            out += TimeString();
            break;
        case 'w':
            out += LocalWeekdayShort();
            break;
        case 'y':
            put(year, 0);
            break;
        default:
            out += code;
            break;
        }
    }
    return out;
}

// ---------------------------------------------------------------------------
// Calendar fields

DateComponents STime::GetComponents() const {
    return GetComponents(kEraUnit | kYearUnit | kMonthUnit | kDayUnit | kHourUnit | kMinuteUnit | kSecondUnit |
                         kWeekdayUnit | kTimeZoneUnit);
}

DateComponents STime::GetComponents(unsigned flags) const {
    return OnDateServices([&] {
        DateComponents c;
        auto& utilities = DateFormatterUtilities::Get();
        icu::Calendar& calendar = utilities.Calendar();
        if (!SetCalendar(calendar, seconds)) {
            LogLine("STime: an instant beyond the calendar has no date");
            return c;
        }
        if (flags & kEraUnit)
            c.era = Field(calendar, UCAL_ERA);
        if (flags & kYearUnit)
            c.year = Field(calendar, UCAL_YEAR);
        if (flags & kMonthUnit)
            c.month = Field(calendar, UCAL_MONTH) + 1;
        if (flags & kDayUnit)
            c.day = Field(calendar, UCAL_DATE);
        if (flags & kHourUnit)
            c.hour = Field(calendar, UCAL_HOUR_OF_DAY);
        if (flags & kMinuteUnit)
            c.minute = Field(calendar, UCAL_MINUTE);
        if (flags & kSecondUnit)
            c.second = Field(calendar, UCAL_SECOND);
        if (flags & kWeekdayUnit)
            c.weekday = Field(calendar, UCAL_DAY_OF_WEEK);
        if (flags & kWeekOfYearUnit)
            c.weekOfYear = Field(calendar, UCAL_WEEK_OF_YEAR);
        if (flags & kTimeZoneUnit) {
            icu::UnicodeString id;
            calendar.getTimeZone().getID(id);
            c.timeZone = DateUTF8(id);
        }
        return c;
    });
}

DateComponents STime::GetComponents(unsigned flags, const STime& from, const STime& to) {
    return OnDateServices([&] {
        DateComponents c;
        icu::Calendar& calendar = DateFormatterUtilities::Get().Calendar();
        if (!SetCalendar(calendar, from.seconds) || !CalendarCanHold(to.seconds)) {
            LogLine("STime: an instant beyond the calendar has no date");
            return c;
        }
        const double target = to.seconds * 1000.0;
        // Largest unit first; each step advances the calendar by what it
        // counted, so that smaller units count the remainder.
        const std::pair<unsigned, UCalendarDateFields> units[] = {
            {kEraUnit, UCAL_ERA},   {kYearUnit, UCAL_YEAR},       {kMonthUnit, UCAL_MONTH},
            {kDayUnit, UCAL_DATE},  {kHourUnit, UCAL_HOUR_OF_DAY}, {kMinuteUnit, UCAL_MINUTE},
            {kSecondUnit, UCAL_SECOND}};
        for (const auto& [flag, field] : units) {
            if (!(flags & flag))
                continue;
            long count = 0;
            if (field == UCAL_HOUR_OF_DAY || field == UCAL_MINUTE || field == UCAL_SECOND) {
                // Elapsed time: exact arithmetic, which also counts beyond
                // the 32 bits of the calendar's own difference.
                UErrorCode status = U_ZERO_ERROR;
                double rest = (target - calendar.getTime(status)) / 1000.0;
                double unit = field == UCAL_HOUR_OF_DAY ? 3600.0 : field == UCAL_MINUTE ? 60.0 : 1.0;
                count = static_cast<long>(std::trunc(rest / unit));
                calendar.setTime(calendar.getTime(status) + count * unit * 1000.0, status);
            } else {
                UErrorCode status = U_ZERO_ERROR;
                count = calendar.fieldDifference(target, field, status);
                if (U_FAILURE(status))
                    return DateComponents();
            }
            switch (field) {
            case UCAL_ERA:
                c.era = count;
                break;
            case UCAL_YEAR:
                c.year = count;
                break;
            case UCAL_MONTH:
                c.month = count;
                break;
            case UCAL_DATE:
                c.day = count;
                break;
            case UCAL_HOUR_OF_DAY:
                c.hour = count;
                break;
            case UCAL_MINUTE:
                c.minute = count;
                break;
            default:
                c.second = count;
                break;
            }
        }
        return c;
    });
}

int STime::DayOfWeek() const {
    DateComponents c = GetComponents(kWeekdayUnit);
    return c.Has(c.weekday) ? static_cast<int>(c.weekday) : 0;
}

int STime::WeekOfYear() const {
    DateComponents c = GetComponents(kWeekOfYearUnit);
    return c.Has(c.weekOfYear) ? static_cast<int>(c.weekOfYear) : 0;
}

int STime::Month() const {
    DateComponents c = GetComponents(kMonthUnit);
    return c.Has(c.month) ? static_cast<int>(c.month) : 0;
}

int STime::Day() const {
    DateComponents c = GetComponents(kDayUnit);
    return c.Has(c.day) ? static_cast<int>(c.day) : 0;
}

int STime::Year() const {
    DateComponents c = GetComponents(kYearUnit);
    return c.Has(c.year) ? static_cast<int>(c.year) : 0;
}

int STime::Era() const {
    DateComponents c = GetComponents(kEraUnit);
    return c.Has(c.era) ? static_cast<int>(c.era) : 0;
}

int STime::Hour() const {
    if (IsNever())
        return 0;
    DateComponents c = GetComponents(kHourUnit);
    return c.Has(c.hour) ? static_cast<int>(c.hour) : 0;
}

int STime::Minute() const {
    if (IsNever())
        return 0;
    DateComponents c = GetComponents(kMinuteUnit);
    return c.Has(c.minute) ? static_cast<int>(c.minute) : 0;
}

int STime::Second() const {
    if (IsNever())
        return 0;
    DateComponents c = GetComponents(kSecondUnit);
    return c.Has(c.second) ? static_cast<int>(c.second) : 0;
}

bool STime::SameDayAs(const STime& other) const {
    DateComponents a = GetComponents(kYearUnit | kMonthUnit | kDayUnit);
    DateComponents b = other.GetComponents(kYearUnit | kMonthUnit | kDayUnit);
    return a.year == b.year && a.month == b.month && a.day == b.day;
}

// ---------------------------------------------------------------------------
// Differences

namespace {

double Single(unsigned unit, const STime& from, const STime& to) {
    DateComponents c = STime::GetComponents(unit, from, to);
    long v = DateComponents::kUndefined;
    switch (unit) {
    case kYearUnit:
        v = c.year;
        break;
    case kMonthUnit:
        v = c.month;
        break;
    case kDayUnit:
        v = c.day;
        break;
    case kHourUnit:
        v = c.hour;
        break;
    case kMinuteUnit:
        v = c.minute;
        break;
    default:
        v = c.second;
        break;
    }
    return v == DateComponents::kUndefined ? 0.0 : static_cast<double>(v);
}

} // namespace

double STime::DaysSince(const STime& other) const { return Single(kDayUnit, other, *this); }
double STime::MinutesSince(const STime& other) const { return Single(kMinuteUnit, other, *this); }
double STime::HoursSince(const STime& other) const { return Single(kHourUnit, other, *this); }
double STime::YearsSince(const STime& other) const { return Single(kYearUnit, other, *this); }
double STime::MonthsSince(const STime& other) const { return Single(kMonthUnit, other, *this); }

double STime::WeeksSince(const STime& other) const {
    long days = static_cast<long>(DaysSince(other));
    return static_cast<double>(days / 7);
}

double STime::SecondsSince(const STime& other) const { return seconds - other.seconds; }

double STime::SecondsAgo() const { return Now().seconds - seconds; }

double STime::MonthsSince2000() const { return MonthsSince(STime(1, 1, 2000)); }

// ---------------------------------------------------------------------------
// Replacing components

STime STime::ForYear(long year) const {
    DateComponents c = GetComponents();
    if (!c.Has(c.year))
        return Never();
    c.year = year;
    return FromComponents(c);
}

STime STime::ForMonth(long month) const {
    DateComponents c = GetComponents();
    if (!c.Has(c.year))
        return Never();
    c.month = month;
    return FromComponents(c);
}

STime STime::ForDay(long day) const {
    DateComponents c = GetComponents();
    if (!c.Has(c.year))
        return Never();
    c.day = day;
    return FromComponents(c);
}

STime STime::ForHour(long hour) const {
    DateComponents c = GetComponents();
    if (!c.Has(c.year))
        return Never();
    c.hour = hour;
    return FromComponents(c);
}

STime STime::ForMinute(long minute) const {
    DateComponents c = GetComponents();
    if (!c.Has(c.year))
        return Never();
    c.minute = minute;
    return FromComponents(c);
}

STime STime::ForSecond(long second) const {
    DateComponents c = GetComponents();
    if (!c.Has(c.year))
        return Never();
    c.second = second;
    return FromComponents(c);
}

STime STime::SetTime(long hour, long minute) const { return ForHour(hour).ForMinute(minute); }

STime STime::SetTime(long hour, long minute, long second) const {
    return ForHour(hour).ForMinute(minute).ForSecond(second);
}

// ---------------------------------------------------------------------------
// Modifiers in text

STime STime::Add(const std::string& text) const {
    if (text.empty() || IsNever())
        return *this;
    DateText in(text);
    char first = 0;
    if (!in.ReadChar(first))
        return *this;
    bool explicitSign = false;
    long sign = 1;
    if (first == '+' || first == '-') {
        explicitSign = true;
        sign = first == '-' ? -1 : 1;
    } else if (DateText::IsDigit(first)) {
        in.PutBack();
    } else {
        return *this;
    }
    long n = 0;
    std::string word;
    in.ReadLong(n);
    in.ReadWord(word);
    n = Product(n, sign);

    DateComponents c = GetComponents();
    if (!c.Has(c.year))
        return *this;
    if (word == "day" || word == "days" || (word.empty() && explicitSign))
        c.day = Sum(c.day, n);
    else if (word == "week" || word == "weeks")
        c.day = Sum(c.day, Product(7, n));
    else if (word == "month" || word == "months")
        c.month = Sum(c.month, n);
    else if (word == "year" || word == "years")
        c.year = Sum(c.year, n);
    else if (word == "hour" || word == "hours")
        c.hour = Sum(c.hour, n);
    else if (word == "minute" || word == "minutes")
        c.minute = Sum(c.minute, n);
    return FromComponents(c);
}

STime STime::SetTime(const std::string& text) const {
    if (text.empty())
        return *this;
    size_t colon = text.find(':');
    if (colon == std::string::npos || colon == 0)
        return InformalTimeAbbreviation(text);
    // Back up over the hour's digits, then one more character.
    size_t start = colon;
    while (start > 0 && DateText::IsDigit(text[start - 1]))
        --start;
    if (start > 0)
        --start;
    DateText in(text.substr(start));
    long hour = 0, minute = 0, second = 0;
    char separator = 0;
    in.ReadLong(hour);
    in.ReadChar(separator);
    in.ReadLong(minute);
    if (in.Peek() == ':') {
        in.Get();
        in.ReadLong(second);
    }
    std::string word;
    in.ReadWord(word);
    bool pm = word.find("pm") != std::string::npos || word.find("PM") != std::string::npos;
    bool am = word.find("am") != std::string::npos || word.find("AM") != std::string::npos;
    if (hour < 12 && pm)
        hour += 12;
    else if (hour == 12 && am)
        hour -= 12;
    DateComponents c = GetComponents();
    c.hour = hour;
    c.minute = minute;
    c.second = second;
    return FromComponents(c);
}

STime STime::InformalTimeAbbreviation(const std::string& text) const {
    if (text.empty() || !DateText::IsDigit(text[0]))
        return *this;
    DateText in(text);
    long n = 0;
    char following = 0;
    in.ReadLong(n);
    in.ReadChar(following);
    long hour = n, minute = 0;
    if (n >= 101) {
        hour = n / 100;
        minute = n % 100;
    }
    if ((following == 'p' || following == 'P') && hour < 13)
        hour += 12;
    if (hour >= 24)
        return *this;
    DateComponents c = GetComponents();
    c.hour = hour;
    c.minute = minute;
    c.second = 0;
    return FromComponents(c);
}

// ---------------------------------------------------------------------------
// Names in the locale

std::string STime::LocalWeekdayLong() const {
    return OnDateServices([&] {
        auto& utilities = DateFormatterUtilities::Get();
        return Format(utilities.PatternFormatter(utilities.PatternForTemplate("EEEE")), seconds);
    });
}

std::string STime::LocalWeekdayShort() const {
    return OnDateServices([&] { return Format(DateFormatterUtilities::Get().PatternFormatter("EEE"), seconds); });
}

std::string STime::LocalMonthsLong() const {
    return OnDateServices([&] { return Format(DateFormatterUtilities::Get().PatternFormatter("MMMM"), seconds); });
}

std::string STime::LocalMonthsShort() const {
    return OnDateServices([&] { return Format(DateFormatterUtilities::Get().PatternFormatter("MMM"), seconds); });
}
