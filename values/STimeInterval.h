#pragma once
// STimeInterval: a duration in seconds, which may be negative.
//
// Text in:  "90" (seconds), "5d", "2d 3" (days and hours), "1h30m", "12:34"
//           (minutes:seconds), "12:34:56" (hours:minutes:seconds), "-1:00".
// Text out: "01:30", "01:01:01", "1 day 01:00:00", "2 days 00:00:00"; the
//           formats "l" (positional) and "L" (words, in the locale) use at most
//           two non-zero units.
#include <string>

class STimeInterval {
public:
    STimeInterval() = default;
    explicit STimeInterval(double secondsValue) : seconds(secondsValue) {}
    explicit STimeInterval(const std::string& text) : seconds(FromString(text)) {}

    STimeInterval& operator=(double secondsValue) {
        seconds = secondsValue;
        return *this;
    }
    bool operator==(const STimeInterval& other) const { return seconds == other.seconds; }
    bool operator!=(const STimeInterval& other) const { return seconds != other.seconds; }

    double Seconds() const { return seconds; }

    // Fields of the display, not totals: the seconds are rounded, the sign is
    // dropped, and each answers its own part (hours within the day ...).
    long AsDays() const;
    long AsHours() const;
    long AsMinutes() const;
    long AsSeconds() const;

    std::string ToString() const;
    // "l": positional ("1:30"), "L": words ("1 hour, 30 minutes"); any other
    // format gives ToString().
    std::string ToString(const std::string& format) const;

    // Reads the text forms above; unreadable parts count as 0.
    static double FromString(const std::string& text);

private:
    double seconds = 0.0;
};
