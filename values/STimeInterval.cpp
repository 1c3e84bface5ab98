#include "STimeInterval.h"

#include <cmath>
#include <cstdio>
#include <vector>

#include <unicode/measfmt.h>
#include <unicode/measunit.h>
#include <unicode/measure.h>

#include "DateFormatterUtilities.h"
#include "DateText.h"

namespace {

// Whole seconds, rounded; what cannot be a count of seconds counts as 0 or
// the largest count.
long long WholeSeconds(double seconds) {
    if (std::isnan(seconds))
        return 0;
    const double limit = 9.0e18;
    if (seconds >= limit)
        return static_cast<long long>(limit);
    if (seconds <= -limit)
        return -static_cast<long long>(limit);
    return std::llround(seconds);
}

unsigned long long Magnitude(double seconds) {
    long long whole = WholeSeconds(seconds);
    return whole < 0 ? static_cast<unsigned long long>(-whole) : static_cast<unsigned long long>(whole);
}

} // namespace

long STimeInterval::AsDays() const { return static_cast<long>(Magnitude(seconds) / 86400); }
long STimeInterval::AsHours() const { return static_cast<long>(Magnitude(seconds) % 86400 / 3600); }
long STimeInterval::AsMinutes() const { return static_cast<long>(Magnitude(seconds) % 3600 / 60); }
long STimeInterval::AsSeconds() const { return static_cast<long>(Magnitude(seconds) % 60); }

double STimeInterval::FromString(const std::string& text) {
    DateText in(text);
    in.SkipSpace();
    double sign = 1;
    if (in.Peek() == '-') {
        in.Get();
        sign = -1;
    }
    long number = 0, days = 0, hours = 0, minutes = 0, secs = 0;
    char c = 0;
    in.ReadLong(number);
    if (!in.ReadChar(c)) {
        secs = number;
    } else {
        bool done = false;
        char separator = c;
        if (c == 'd') {
            days = number;
            // Anything up to the hours is skipped.
            int next;
            while ((next = in.Peek()) != -1 && !DateText::IsDigit(static_cast<char>(next)))
                in.Get();
            if (in.Peek() == -1) {
                done = true;
            } else {
                in.ReadLong(hours);
                if (!in.ReadChar(separator))
                    done = true;
            }
        } else {
            hours = number;
        }
        if (!done) {
            if (separator == 'h') {
                char unit = 0;
                in.ReadLong(minutes);
                if (in.ReadChar(unit) && unit == 'm')
                    in.ReadLong(secs);
            } else {
                char last = 0;
                in.ReadLong(minutes);
                bool more = in.ReadChar(last);
                in.ReadLong(secs);
                if (!more) {
                    // Two fields: minutes and seconds.
                    secs = minutes;
                    minutes = hours;
                    hours = 0;
                }
            }
        }
    }
    double total = static_cast<double>(days) * 86400.0 + static_cast<double>(hours) * 3600.0 +
                   static_cast<double>(minutes) * 60.0 + static_cast<double>(secs);
    return total * sign;
}

std::string STimeInterval::ToString() const {
    long long whole = WholeSeconds(seconds);
    const char* prefix = "";
    unsigned long long n = static_cast<unsigned long long>(whole);
    if (whole < 0) {
        prefix = "-";
        n = static_cast<unsigned long long>(-whole);
    }
    long d = static_cast<long>(n / 86400), h = static_cast<long>(n % 86400 / 3600), m = static_cast<long>(n % 3600 / 60),
         s = static_cast<long>(n % 60);
    char buffer[128];
    if (n < 86400) {
        if (n < 3600)
            std::snprintf(buffer, sizeof buffer, "%s%.2ld:%.2ld", prefix, m, s);
        else
            std::snprintf(buffer, sizeof buffer, "%s%.2ld:%.2ld:%.2ld", prefix, h, m, s);
    } else {
        std::snprintf(buffer, sizeof buffer, "%s%ld %s %.2ld:%.2ld:%.2ld", prefix, d, n < 172800 ? "day" : "days", h,
                      m, s);
    }
    return buffer;
}

std::string STimeInterval::ToString(const std::string& format) const {
    if (format != "l" && format != "L")
        return ToString();
    long long whole = WholeSeconds(seconds);
    unsigned long long n = whole < 0 ? static_cast<unsigned long long>(-whole) : static_cast<unsigned long long>(whole);
    const long long fields[4] = {static_cast<long long>(n / 86400), static_cast<long long>(n % 86400 / 3600),
                                 static_cast<long long>(n % 3600 / 60), static_cast<long long>(n % 60)};
    // At most two units: the largest one present and the one below it; a
    // unit that is zero is left out.
    int first = 0;
    while (first < 3 && fields[first] == 0)
        ++first;
    std::vector<int> shown{first};
    if (first < 3 && fields[first + 1] != 0)
        shown.push_back(first + 1);

    return OnDateServices([&] {
        UErrorCode status = U_ZERO_ERROR;
        bool words = format == "L";
        UMeasureFormatWidth width = words ? UMEASFMT_WIDTH_WIDE : UMEASFMT_WIDTH_NUMERIC;
        // Positional text has no place for days; with days the narrow
        // abbreviations stand in ("1d 3h").
        if (!words && first == 0)
            width = UMEASFMT_WIDTH_NARROW;
        icu::MeasureFormat formatter(DateFormatterUtilities::Get().CurrentLocale(), width, status);
        if (U_FAILURE(status))
            return ToString();
        std::vector<icu::Measure> measures;
        measures.reserve(shown.size());
        for (int index : shown) {
            icu::MeasureUnit* unit = nullptr;
            switch (index) {
            case 0:
                unit = icu::MeasureUnit::createDay(status);
                break;
            case 1:
                unit = icu::MeasureUnit::createHour(status);
                break;
            case 2:
                unit = icu::MeasureUnit::createMinute(status);
                break;
            default:
                unit = icu::MeasureUnit::createSecond(status);
                break;
            }
            measures.emplace_back(icu::Formattable(static_cast<int64_t>(fields[index])), unit, status);
        }
        icu::UnicodeString out;
        icu::FieldPosition position(icu::FieldPosition::DONT_CARE);
        formatter.formatMeasures(measures.data(), static_cast<int32_t>(measures.size()), out, position, status);
        if (U_FAILURE(status))
            return ToString();
        std::string text = DateUTF8(out);
        return whole < 0 ? "-" + text : text;
    });
}
